// One story for both directions: what sets goods-in and goods-out apart at the public class, and a
// bench that stores a document and looks at the screen that was opened. It tests nothing by itself.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "goods_out/frm_salidas_wizard.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {

struct Side {
  const char* nombre;
  const char *fn_nueva, *fn_modifica, *fn_consulta, *fn_elimina;
  void (*nueva)(EntradasSalidas&, bool);
  void (*modifica)(EntradasSalidas&, std::int32_t, bool);
  void (*consulta)(EntradasSalidas&, std::int32_t);
  void (*elimina)(EntradasSalidas&, std::int32_t);
  const char *tabla, *clave, *partidas, *clave_partida;
  const char *lee, *lee_condicion, *lee_para_borrar, *borra_partidas, *borra;
  const char *titulo_modifica, *titulo_consulta;  // of document 7, whose folio is 1007
  int no_existe, afectado, propio, ajeno, ajeno_fin;
  int no_existe_consulta;
  int no_existe_borra, propio_borra, ajeno_borra, ajeno_borra_fin;
};

inline const Side kEntradas{
    "GoodsIn",
    "NuevaEntrada",
    "ModificaEntrada",
    "ConsultaEntrada",
    "EliminaEntrada",
    [](EntradasSalidas& m, bool modal) { modal ? m.NuevaEntrada(true) : m.NuevaEntrada(); },
    [](EntradasSalidas& m, std::int32_t n, bool modal) {
      modal ? m.ModificaEntrada(n, true) : m.ModificaEntrada(n);
    },
    [](EntradasSalidas& m, std::int32_t n) { m.ConsultaEntrada(n); },
    [](EntradasSalidas& m, std::int32_t n) { m.EliminaEntrada(n); },
    "entradas",
    "entrada",
    "entpart",
    "id_entrada",
    "SELECT * FROM entradas WHERE entrada = ",
    "SELECT * FROM entradas WHERE (((entrada) = ",
    "SELECT * FROM entradas WHERE (((entrada) = ",
    "DELETE FROM entpart WHERE (((entpart.entrada) = ",
    "DELETE FROM entradas WHERE (((entradas.entrada) = ",
    "Entrada: 7",
    "Entrada: 7",
    72,
    73,
    74,
    75,
    76,
    110,
    147,
    148,
    149,
    150};

inline const Side kSalidas{
    "GoodsOut",
    "NuevaSalida",
    "ModificaSalida",
    "ConsultaSalida",
    "EliminaSalida",
    [](EntradasSalidas& m, bool modal) { modal ? m.NuevaSalida(true) : m.NuevaSalida(); },
    [](EntradasSalidas& m, std::int32_t n, bool modal) {
      modal ? m.ModificaSalida(n, true) : m.ModificaSalida(n);
    },
    [](EntradasSalidas& m, std::int32_t n) { m.ConsultaSalida(n); },
    [](EntradasSalidas& m, std::int32_t n) { m.EliminaSalida(n); },
    "salidas",
    "salida",
    "salpart",
    "id_salida",
    "SELECT * FROM salidas WHERE salida = ",
    "SELECT * FROM salidas WHERE (((salida) = ",
    "SELECT * FROM salidas WHERE (((salida) =",
    "DELETE FROM salpart WHERE (((Salida) = ",
    "DELETE FROM salidas WHERE (((salida) = ",
    "Salida: 1007",
    "Salida: 7",
    77,
    78,
    79,
    80,
    81,
    111,
    151,
    152,
    153,
    154};

// A failing story names its side, not its bytes.
inline void PrintTo(const Side& side, std::ostream* out) { *out << side.nombre; }

struct SideName {
  std::string operator()(const ::testing::TestParamInfo<Side>& info) const { return info.param.nombre; }
};

class DocumentStory : public Escenario, public ::testing::WithParamInterface<Side> {
 protected:
  static const Side& side() { return GetParam(); }

  void Documento(int numero, const data::Value& estado = "PE", const data::Value& ocupado = 0,
                 const char* usuario = "LUIS") {
    const bool salida = std::string(side().tabla) == "salidas";
    Sql(std::string("INSERT INTO ") + side().tabla + " (" + side().clave +
            (salida ? ", folio" : ", tipo_cam") + ", estado, ocupado, usuario) VALUES (?, ?, ?, ?, ?)",
        {numero, salida ? numero + 1000 : 1, estado, ocupado, usuario});
  }
  void Partida(int id, int documento) {
    Sql(std::string("INSERT INTO ") + side().partidas + " (" + side().clave_partida + ", " + side().clave +
            ", articulo, cantidad, precio) VALUES (?, ?, ?, ?, ?)",
        {id, documento, "A-100", 2, 10});
  }
  std::string Ocupado(int numero) {
    return Uno(std::string("SELECT ocupado FROM ") + side().tabla + " WHERE " + side().clave + " = ?",
               {numero});
  }
  std::string Cuantos(const char* tabla, int documento) {
    return Uno(std::string("SELECT COUNT(*) FROM ") + tabla + " WHERE " + side().clave + " = ?", {documento});
  }

  // ---- the screen opened last ----
  forms::Form& Pantalla() {
    if (plataforma.Screens().empty()) throw data::Error("no screen was opened");
    return *plataforma.Screens().back();
  }
  frmEntradasWizard* Entrada() { return dynamic_cast<frmEntradasWizard*>(&Pantalla()); }
  frmSalidasWizard& Salida() { return dynamic_cast<frmSalidasWizard&>(Pantalla()); }
  std::string Modo() { return Entrada() ? Entrada()->Modo : Salida().Modo; }
  std::int32_t Numero() { return Entrada() ? Entrada()->Entrada : Salida().Salida; }
  data::RecordsetRef Registro() { return Entrada() ? Entrada()->rstEntrada : Salida().rstSalida; }
  service::Ambiente* AmbienteDePantalla() {
    return Entrada() ? Entrada()->Ambiente.Get() : Salida().Ambiente.Get();
  }
  service::LateBound* ParentDePantalla() {
    return Entrada() ? Entrada()->Parent.Get() : Salida().Parent.Get();
  }

  // The one thing shown was this message.
  void ExpectMessage(const std::vector<int>& numeros, const std::string& texto, int estilo) {
    ASSERT_EQ(bitacora.mensajes.size(), 1u);
    EXPECT_EQ(bitacora.mensajes[0].clase, "mensaje");
    EXPECT_EQ(bitacora.mensajes[0].numeros, numeros);
    EXPECT_EQ(bitacora.mensajes[0].texto, texto);
    EXPECT_EQ(bitacora.mensajes[0].estilo, estilo);
  }
};

}  // namespace tarvik::tests
