// TextosHostilesDeSalida: a goods-out into which one hostile text is pasted, and what must be left of the
// base when the document ends. The texts are in hostile_test.cpp.
#pragma once

#include <algorithm>
#include <map>

#include "data/text.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {

// What a text does to the statement that it is joined into, between quotes.
enum class Efecto {
  Ninguno,    // it is looked up as it stands
  OtroTexto,  // the statement runs, and asks for something else
  Rompe       // the statement is refused
};

struct Hostil {
  const char* nombre;
  std::string texto;
  Efecto efecto;
};

inline void PrintTo(const Hostil& hostil, std::ostream* donde) { *donde << hostil.nombre; }

class TextosHostilesDeSalida : public EscenarioDeSalidas, public ::testing::WithParamInterface<Hostil> {
 protected:
  using Cuenta = std::map<std::string, int>;

  TextosHostilesDeSalida() {
    DocumentoGuardado(2);
    // The deployment shows what the design hides, so that every field can be reached.
    Gancho("SALIDAS001", [](frmSalidasWizard& f) {
      f.SSCheck2.Visible(true);
      f.MultiCombo1(6).Visible(true);
      f.txtFields(campo::EstacionDestino).Visible(true);
      f.txtFields(campo::Compra).Visible(true);
    });
    antes_ = Foto();
  }

  [[nodiscard]] static bool Rompe() { return GetParam().efecto == Efecto::Rompe; }
  // The text as a field of one line keeps it.
  [[nodiscard]] static std::string Texto() { return data::RepairUtf8(GetParam().texto); }

  // A new document whose line of three hammers is stored.
  frmSalidasWizard& ConUnRenglon() {
    frmSalidasWizard& f = ConConcepto();
    Linea(f, "A-100", "3");
    Olvida();
    return f;
  }
  static void Pega(frmSalidasWizard& f, forms::Control& control) {
    f.Enter(control);
    f.Paste(GetParam().texto);
  }
  static void Escribe(frmSalidasWizard& f, int campo, const std::string& texto) {
    f.Enter(f.txtFields(campo));
    f.txtFields(campo).SelectAll();
    f.Paste(texto);
  }
  // The reports since the last look, counted by their procedures.
  Cuenta Fallas() {
    Cuenta cuenta;
    for (const auto& mensaje : bitacora.mensajes) {
      const std::string marca = "Function: ";
      const auto desde = mensaje.texto.find(marca);
      if (mensaje.clase != "caja" || desde == std::string::npos) continue;
      const auto fin = mensaje.texto.find("\r\n", desde);
      ++cuenta[mensaje.texto.substr(desde + marca.size(), fin - desde - marca.size())];
    }
    return cuenta;
  }
  static Cuenta SiRompe(const Cuenta& cuenta) { return Rompe() ? cuenta : Cuenta{}; }
  // The finish that leaves it pending is refused with this, and the hand stands where it can be mended.
  void FinalizaYSeRechaza(frmSalidasWizard& f, int campo, const std::string& aviso) {
    Olvida();
    f.Check3.Value(1);
    Tecla(f, "F5");
    ASSERT_FALSE(bitacora.mensajes.empty());
    EXPECT_NE(bitacora.mensajes.back().texto.find(aviso), std::string::npos)
        << bitacora.mensajes.back().texto.substr(0, 300);
    EXPECT_TRUE(f.Open());
    EXPECT_TRUE(f.txtFields(campo).HasFocus());
  }
  // Mended, the document is stored with its lines, and nothing else of the base has changed.
  void TerminaBien(frmSalidasWizard& f, int renglones = 1) {
    Olvida();
    f.Check3.Value(1);
    Tecla(f, "F5");
    EXPECT_EQ(Fallas(), Cuenta{});
    EXPECT_FALSE(f.Open());
    EXPECT_EQ(Uno("SELECT estado FROM salidas WHERE salida = 1"), "PE");
    EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart WHERE salida = 1"), std::to_string(renglones));
    EXPECT_EQ(Uno("SELECT cantidad FROM salpart WHERE salida = 1 AND articulo = 'A-100'"), "3");
    EXPECT_EQ(Foto(), antes_);
  }
  // Everything that no goods-out of the day may touch, another's pending document included.
  std::string Foto() {
    std::string foto;
    for (const char* consulta : {"tipominv", "ALMACEN", "impuestos", "prods", "clavesadd", "clients",
                                 "diremb", "empleados", "ESTACIONES", "sucursal", "compra2", "compra2part",
                                 "compras2sucursal", "usuarios", "existenciaalmacen", "movsinv", "defform",
                                 "salidas WHERE salida = 7", "salpart WHERE salida = 7"}) {
      std::vector<std::string> renglones;
      for (const auto& renglon : Sql(std::string("SELECT * FROM ") + consulta).rows) {
        std::string& texto = renglones.emplace_back("\n");
        for (const auto& valor : renglon) texto += data::ToText(valor) + "|";
      }
      std::sort(renglones.begin(), renglones.end());
      foto += consulta;
      for (const auto& renglon : renglones) foto += renglon;
      foto += '\n';
    }
    return foto;
  }

 private:
  std::string antes_;
};

}  // namespace tarvik::tests
