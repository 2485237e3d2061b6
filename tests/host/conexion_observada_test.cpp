// The connection of the module: told to the witness first, then sent; the host's own goes past it.
#include "host/conexion_observada.h"

#include "data/recordset.h"
#include "forms/headless_platform.h"
#include "service/report/pantalla.h"
#include "tests/host/apoyo.h"
#include "tests/service/ajeno/anfitrion_ajeno.h"

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
  EXPECT_EQ(&MotorDe(Ambiente().Conexion()), &anfitrion->Conexion());
  EXPECT_EQ(&MotorDe(anfitrion->Conexion()), &anfitrion->Conexion());
  MotorDe(Ambiente().Conexion()).Select("SELECT * FROM entradas");
  EXPECT_TRUE(testigo.sentencias.empty());
}

TEST_F(ConexionDePrueba, WhatTheHostsServicesSendForThemselvesIsNotTold) {
  std::int32_t number = 0;
  std::string text;
  bool valid = false;
  double quantity = 0;
  Funciones().NuevoId("Salida", Ambiente().Conexion(), number);
  Funciones().ExisteClave("X", "articulo", "prods", Ambiente().Conexion());
  Funciones().TraeMensaje(1, Ambiente(), text);
  Funciones().FechaValida({2024, 3, 5}, Ambiente(), valid);
  Funciones().CantidadEnVenta("X", Ambiente().Conexion(), quantity);
  EXPECT_TRUE(testigo.sentencias.empty());
}

// A movement of this host's, told to stand on another context.
double Mueve(Anfitrion& host, service::Ambiente& ambiente) {
  const auto movement = host.NuevoMovimiento();
  movement->Ambiente(ambiente);
  movement->EntSal("E");
  movement->Articulo("A-100");
  movement->Almacen(1);
  movement->Cantidad(3);
  movement->Precio(10);
  double amount = -1;
  movement->Afecta(amount);
  return amount;
}

TEST_F(ConexionDePrueba, AMovementOnAnotherHostsContextIsWrittenInThatHostsBase) {
  Opciones elsewhere = opciones;
  elsewhere.base = "sqlite::memory:";
  Anfitrion other(elsewhere);
  EXPECT_EQ(Mueve(*anfitrion, other.Ambiente()), 30);
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM movsinv")), 0);
  const auto there = other.Conexion().Run("SELECT articulo, cantidad FROM movsinv", {});
  ASSERT_EQ(there.rows.size(), 1U);
  EXPECT_EQ(there.rows[0], (std::vector<data::Value>{"A-100", 3.0}));
}

TEST_F(ConexionDePrueba, OnAConnectionOfAnotherProgramNothingIsNumberedOrPosted) {
  ajeno::Ambiente foreign;
  const std::string refused =
      "La conexión es de otro programa: aquí no se numera ni se afecta nada en su base";
  EXPECT_EQ(ErrorDe([&] { Mueve(*anfitrion, foreign); }), refused);
  std::int32_t number = 7;
  EXPECT_EQ(ErrorDe([&] { Funciones().NuevoId("Salida", foreign.Conexion(), number); }), refused);
  EXPECT_EQ(number, 7);
  EXPECT_TRUE(foreign.conexion.escrito.empty());
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM movsinv")), 0);
  // Reading is any connection's.
  data::RecordsetRef rows;
  Funciones().AbreRecordset("SELECT * FROM entradas", foreign.Conexion(), rows);
  EXPECT_TRUE(rows->Eof());
}

// A routine sends what it likes; on a screen that it shows and waits for an operator types again.
TEST_F(ConexionDePrueba, TheFenceIsOpenForARoutineAndClosedOnTheScreenThatItWaitsFor) {
  const std::string text = "SELECT articulo FROM prods WHERE articulo = '' OR RTRIM(articulo) = 'x'";
  const auto refused = [&] { return ErrorDe([&] { Ambiente().Conexion().Select(text); }); };
  std::string inside, modal, behind;
  forms::HeadlessPlatform& own = plataforma;
  anfitrion->Gancho("X", [&](forms::Form& screen, AmbienteLocal&) {
    inside = refused();
    own.on_modal = [&](forms::Form&) { modal = refused(); };
    const auto shown = std::make_shared<forms::Form>(own, "frmAviso", "Aviso");
    shown->Show(true);
    behind = refused();
    (void)screen;
  });
  const auto screen = std::make_shared<forms::Form>(plataforma, "frmPantalla", "Pantalla");
  service::Dispara(*anfitrion, "X", *screen, anfitrion->Ambiente());
  EXPECT_EQ(inside, "(ningún error)");
  EXPECT_NE(modal.find("llama una función que aquí no se permite"), std::string::npos) << modal;
  EXPECT_EQ(behind, "(ningún error)");
  EXPECT_NE(refused(), "(ningún error)");
}

}  // namespace
}  // namespace tarvik::host
