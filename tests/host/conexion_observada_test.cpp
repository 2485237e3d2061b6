// The connection of the module: told to the witness first, then sent; the host's own goes past it.
#include "host/conexion_observada.h"

#include "data/recordset.h"
#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class ConexionDePrueba : public Banco {};

TEST_F(ConexionDePrueba, EachStatementIsToldInOrder) {
  auto& connection = Ambiente().Conexion();
  connection.Execute("INSERT INTO entradas (entrada) VALUES (1)");
  data::Recordset rows;
  rows.Open("SELECT * FROM entradas", connection);
  EXPECT_EQ(rows.RecordCount(), 1);
  EXPECT_EQ(testigo.sentencias, (std::vector<std::string>{"INSERT INTO entradas (entrada) VALUES (1)",
                                                          "SELECT * FROM entradas"}));
}

TEST_F(ConexionDePrueba, AStatementThatTheWitnessFailsIsNotSent) {
  testigo.falla_sentencia = "DELETE";
  Sql("INSERT INTO entradas (entrada) VALUES (1)");
  EXPECT_EQ(ErrorDe([&] { Ambiente().Conexion().Execute("DELETE FROM entradas"); }), "falla provocada");
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM entradas")), 1);
  EXPECT_EQ(testigo.sentencias, std::vector<std::string>{"DELETE FROM entradas"});
}

TEST_F(ConexionDePrueba, TheEngineBehindItIsTheHostsOwnAndUnobserved) {
  EXPECT_EQ(&Ambiente().Conexion().Engine(), &anfitrion->Conexion());
  Ambiente().Conexion().Engine().Select("SELECT * FROM entradas");
  EXPECT_TRUE(testigo.sentencias.empty());
}

TEST_F(ConexionDePrueba, WhatTheHostsServicesSendForThemselvesIsNotTold) {
  std::int32_t number = 0;
  std::string text;
  bool valid = false;
  double quantity = 0;
  Funciones().NuevoId("Salida", Ambiente().Conexion(), 0, nullptr, number);
  Funciones().ExisteClave("X", "articulo", "prods", Ambiente().Conexion());
  Funciones().TraeMensaje(1, Ambiente(), text);
  Funciones().FechaValida({2024, 3, 5}, Ambiente(), true, valid);
  Funciones().CantidadEnVenta("X", 0, {}, Ambiente().Conexion(), quantity);
  EXPECT_TRUE(testigo.sentencias.empty());
}

}  // namespace
}  // namespace tarvik::host
