// MallaExterna: Down in the article field on either wizard, with the other program's part played by the test.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/goods_out/support.h"

namespace tarvik::tests {

// What sets a wizard's matrix apart.
struct Lado {
  const char* nombre;
  const char* concepto;
  const char* origen;
  const char* procedimiento;
  const char* operacion;  // the code under which its rows are looked for
  const char* tabla;
  const char* partidas;
  const char* numero;
  const char* estado;  // what the save leaves: pending, or as the screen's own box says
  // Column of the grid, and what a planted row leaves there.
  std::vector<std::pair<int, std::string>> celdas;
  // Columns that a row doesn't reach.
  std::vector<int> intactas;
};

inline const Lado kLados[] = {
    {"GoodsIn",
     "COM",
     "EntradasInventario",
     "TKCreaEntradaTYC",
     "SA",
     "entradas",
     "entpart",
     "entrada",
     "PE",
     {{0, "CAM-AZ"}, {1, "3"}, {2, "61.5"}, {4, " Camisa"}, {5, "77"}, {6, "Caja"}, {7, "2"}},
     {3, 8, 9}},
    {"GoodsOut",
     "VTA",
     "SalidasInventario",
     "TKCreaSalidaTYC",
     "EN",
     "salidas",
     "salpart",
     "salida",
     "CO",
     {{0, "CAM-AZ"}, {1, "3"}, {3, "61.5"}, {5, " Camisa"}, {6, "88"}, {7, "Caja"}, {8, "2"}, {10, "999"}},
     {2, 4, 9}},
};

inline std::string NombreDelLado(const ::testing::TestParamInfo<Lado>& lado) { return lado.param.nombre; }

class MallaExterna : public EscenarioDeSalidas, public ::testing::WithParamInterface<Lado> {
 protected:
  MallaExterna() {
    Sql("INSERT INTO modelos (modelo, descrip) VALUES ('CAM', 'Camisa')");
    Sql("INSERT INTO prods (articulo, descrip, modelo) VALUES ('PAN-1', 'Pantalón', 'PAN')");
    plataforma.on_wait = [this] {
      ++vueltas;
      if (vueltas > 5000) throw data::Error("the wait goes on and on");
      return al_esperar && al_esperar();
    };
  }
  [[nodiscard]] bool Entra() const { return std::string(GetParam().tabla) == "entradas"; }

  // A new document with its concept, the cursor in the article. Forgets what was seen.
  DocumentWizard& Pantalla(const std::string& clave = "CAM") {
    if (Entra()) {
      movimientos->NuevaEntrada();
    } else {
      movimientos->NuevaSalida();
    }
    auto& f = dynamic_cast<DocumentWizard&>(*plataforma.Screens().back());
    viva_ = f.shared_from_this();
    Teclea(f, f.txtFields(campo::Concepto), GetParam().concepto);
    f.Enter(f.txtFields(campo::Articulo));
    f.txtFields(campo::Articulo).Text(clave);
    Olvida();
    return f;
  }
  void Abajo(DocumentWizard& f) { Tecla(f, "Down", f.txtFields(campo::Articulo)); }
  void Control(const data::Value& valor) { Sql("UPDATE ControlProc SET controlproc = ?", {valor}); }

  // The statements that are the matrix's own, in order.
  [[nodiscard]] Textos DeLaMalla() const {
    Textos textos;
    for (const auto& sentencia : bitacora.sentencias) {
      if (sentencia.find("modelos where") != std::string::npos || sentencia.starts_with("exec ") ||
          sentencia.find("ControlProc") != std::string::npos ||
          sentencia.find("claveadd = '999'") != std::string::npos) {
        textos.push_back(sentencia);
      }
    }
    return textos;
  }
  [[nodiscard]] static std::string Parametros(const std::string& documento = "1") {
    return std::string("exec TKMallaParam 'ANA','CAM','") + GetParam().concepto + "','" + documento + "','" +
           GetParam().origen + "'";
  }
  [[nodiscard]] static std::string Crea() { return std::string("exec ") + GetParam().procedimiento + " '1'"; }
  [[nodiscard]] static std::string Lee() {
    return std::string("select * from movsinv where operacion = '") + GetParam().operacion +
           "' and movimiento = 1 and claveadd = '999'";
  }
  static Textos Y(Textos primeras, std::initializer_list<std::string> demas) {
    primeras.insert(primeras.end(), demas);
    return primeras;
  }
  static Textos Principio() { return {"select * from modelos where modelo = 'CAM'", Parametros()}; }
  // Nothing was shown, nothing failed, and the operator is where he was.
  void SinNovedad(DocumentWizard& f) {
    EXPECT_TRUE(bitacora.mensajes.empty());
    EXPECT_TRUE(no_atrapados.empty()) << ::testing::PrintToString(no_atrapados);
    EXPECT_TRUE(bitacora.selectores.empty());
    EXPECT_TRUE(f.Open());
    EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
    EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "CAM");
  }
  // What the other program would leave for the procedure, one line.
  void Reparte() {
    Sql("INSERT INTO mallacelda (documento, origen, articulo, cantidad, precio, observ, prdescrip, "
        "prcantidad, "
        "claveadd) VALUES ('1', ?, 'CAM-AZ', 3, 61.5, 'Camisa', 'Caja', 2, '')",
        {GetParam().origen});
  }
  // A row under the code that the screen reads.
  void Planta() {
    Sql("INSERT INTO movsinv (operacion, movimiento, articulo, cantidad, Precio, Observ, id_entrada, "
        "id_salida, "
        "PrDescrip, PrCantidad, claveadd, f_movim) VALUES (?, 1, 'CAM-AZ', 3, 61.5, 'Camisa', 77, 88, "
        "'Caja', 2, "
        "'999', '2024-03-05')",
        {GetParam().operacion});
  }

  std::function<bool()> al_esperar;  // each turn of the wait; true: the program is to end
  int vueltas = 0;

 private:
  std::shared_ptr<forms::Form> viva_;
};

}  // namespace tarvik::tests
