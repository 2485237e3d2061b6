// Fallas: a table of provoked failures. Each case starts from a state, arms one failure, does one
// thing, and tells which procedures report it and what stands afterwards. It holds no case itself.
#pragma once

#include "goods_in/columnas.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace fallas {

using Textos = std::vector<std::string>;

class Fallas;

struct Caso {
  std::string nombre;
  std::string falla;  // an operation by its name; with ":" in front, a pattern of statements
  int veces = 1;
  // The procedures reported, in order. One with "*" fails as a consequence, with a text of its own.
  Textos reportan;
  std::function<void(Fallas&, frmEntradasWizard&)> dado;
  std::function<void(Fallas&, frmEntradasWizard&)> cuando;
  std::function<void(Fallas&, frmEntradasWizard&)> entonces;
};

class Fallas : public Escenario, public ::testing::WithParamInterface<Caso> {
 public:
  Fallas() { Catalogo(); }

  void Arma(const std::string& que, int veces) {
    if (que.empty()) return;
    if (que[0] == ':') {
      bitacora.Falla(que.substr(1), veces, "falla provocada");
    } else {
      bitacora.FallaServicio(que, veces, "falla provocada");
    }
  }
  // Boxes and log against the list of a case.
  void Compara(const Textos& esperados) {
    const Textos vistos = Reportes();
    std::string diario;
    for (const auto& mensaje : bitacora.mensajes) {
      if (mensaje.clase != "caja") continue;
      EXPECT_TRUE(
          mensaje.texto.starts_with("14:03:22 Ocurrió un error:\r\nModule: frmEntradasWi\r\nFunction: "));
      EXPECT_TRUE(mensaje.texto.ends_with(" código duro: 0\r\n"));
      EXPECT_EQ(mensaje.estilo, 0);
      diario += mensaje.texto;
    }
    EXPECT_EQ(ArchivoDelDia(), diario);
    ASSERT_EQ(vistos.size(), esperados.size()) << ::testing::PrintToString(vistos);
    for (std::size_t i = 0; i < vistos.size(); ++i) {
      if (esperados[i].ends_with("*")) {
        const std::string funcion = esperados[i].substr(0, esperados[i].size() - 1);
        EXPECT_NE(vistos[i].find("Function: " + funcion + "\r\n"), std::string::npos) << vistos[i];
        EXPECT_EQ(vistos[i].find("falla provocada"), std::string::npos) << vistos[i];
      } else {
        EXPECT_EQ(vistos[i], Reporte(esperados[i]));
      }
    }
    EXPECT_TRUE(no_atrapados.empty()) << ::testing::PrintToString(no_atrapados);
  }
  void Corre() {
    const Caso& caso = GetParam();
    frmEntradasWizard& f = Nueva();
    caso.dado(*this, f);
    ASSERT_TRUE(Reportes().empty());
    Olvida();
    Arma(caso.falla, caso.veces);
    caso.cuando(*this, f);
    Compara(caso.reportan);
    caso.entonces(*this, f);
    EXPECT_TRUE(f.Open());
  }
};

using Paso = std::function<void(Fallas&, frmEntradasWizard&)>;
using F = frmEntradasWizard;

inline std::string Nombre(const ::testing::TestParamInfo<Caso>& info) { return info.param.nombre; }

// ---- states to start from ----
inline void Concepto(Fallas&, F& f) {
  Escenario::Teclea(f, f.txtFields(campo::Concepto), "COM");
  f.txtFields(campo::Articulo).SetFocus();
}
inline Paso Articulo(const char* clave) {
  return [clave](Fallas& e, F& f) {
    Concepto(e, f);
    f.txtFields(campo::Articulo).Text(clave);
  };
}
inline void Fila(Fallas& e, F& f) {  // a complete entry row
  Concepto(e, f);
  f.txtFields(campo::Articulo).Text("A-100");
  f.PonDescripcion();
  f.txtFields(campo::Cantidad).Text("3");
}
inline void Presentacion(Fallas& e, F& f) {  // two boxes of twelve
  Concepto(e, f);
  f.txtFields(campo::SegundaClave).Text("7501");
  f.txtFields(campo::Presentaciones).Text("2");
}
inline void Documento(Fallas& e, F& f) {  // one line stored
  Concepto(e, f);
  Escenario::Renglon(f, "A-100", "3");
}
inline void SegundaFila(Fallas& e, F& f) {
  Documento(e, f);
  f.txtFields(campo::Articulo).Text("A-200");
  f.PonDescripcion();
  f.txtFields(campo::Cantidad).Text("2");
}
inline void Celda9(Fallas& e, F& f) {  // the quantity cell, changed to 9
  Documento(e, f);
  f.fg2.MoveTo(1, columna_entrada::Cantidad);
  f.fg2.Text("9");
}
inline void Leidas(Fallas& e, F& f) {  // three lines, read for posting
  Documento(e, f);
  Escenario::Renglon(f, "A-200", "2");
  Escenario::Renglon(f, "A-100", "1");
  f.SalvaPartidas();
}

// ---- what must be there afterwards ----
inline Paso Campo(int campo, const std::string& texto) {
  return [=](Fallas&, F& f) { EXPECT_EQ(f.txtFields(campo).Text(), texto) << campo; };
}
inline Paso Base(const std::string& consulta, const std::string& valor) {
  return [=](Fallas& e, F&) { EXPECT_EQ(e.Uno(consulta), valor) << consulta; };
}
inline Paso EnCuadricula(int renglon, int columna, const std::string& texto) {
  return [=](Fallas&, F& f) { EXPECT_EQ(f.fg2.TextMatrix(renglon, columna), texto) << columna; };
}
inline Paso Mensajes(std::vector<int> numeros) {
  return [=](Fallas& e, F&) { EXPECT_EQ(e.Numeros(), numeros); };
}
inline Paso Y(std::initializer_list<Paso> pasos) {
  return [pasos = std::vector<Paso>(pasos)](Fallas& e, F& f) {
    for (const auto& paso : pasos) paso(e, f);
  };
}
inline constexpr const char* kRenglones = "SELECT COUNT(*) FROM entpart";
inline constexpr const char* kDocumentos = "SELECT COUNT(*) FROM entradas";

// ---- what is done ----
inline void Describe(Fallas&, F& f) { f.PonDescripcion(); }
inline void Resuelve(Fallas&, F& f) { f.TraeSegundaClave(); }
inline void Calcula(Fallas&, F& f) { f.CalculaCantidad(); }
inline void Multiplica(Fallas&, F& f) { f.MultiplicaPrecio(); }
inline void Llena(Fallas&, F& f) { f.LlenaPartida(); }
inline void Renglon1(Fallas&, F& f) { f.NuevaPartida(); }
inline void Crea(Fallas&, F& f) { f.CreaEntrada(); }
inline void Salva(Fallas&, F& f) { f.SalvaEntrada("PE"); }
inline void SalvaCelda(Fallas&, F& f) { f.SalvaCambios(); }
inline void Afecta(Fallas&, F& f) { f.AfectaPartidas(); }
inline void Borra(Fallas&, F& f) {
  f.fg2.MoveTo(1, columna_entrada::Articulo);
  int tecla = 46;
  f.fg2_KeyDown(tecla, 0);
}
inline Paso Edita(int tecla) {
  return [tecla](Fallas&, F& f) {
    f.fg2.MoveTo(1, columna_entrada::Cantidad);
    f.MSFlexGridEdit(f.fg2, f.txtEdit, tecla);
  };
}
inline Textos Repite(const char* procedimiento, int veces) {
  return Textos(static_cast<std::size_t>(veces), procedimiento);
}

}  // namespace fallas
}  // namespace tarvik::tests
