// The trap of a procedure and the stretch that ignores: which step fails, what is reported, what runs.
#include "service/report/trampa.h"

#include <gtest/gtest.h>

#include <vector>

#include "data/error.h"

namespace tarvik::service {
namespace {

class Oyente : public Reportero {
 public:
  std::vector<std::string> oidos;
  bool ReportaError(const std::string& modulo, const std::string& funcion,
                    const std::string& descripcion) override {
    oidos.push_back(modulo + "|" + funcion + "|" + descripcion);
    if (sin_bitacora) throw FallaDelReporte("no hay bitácora");
    return true;
  }
  [[nodiscard]] std::string Modulo() const override { return "frmEntradasWi"; }
  bool sin_bitacora = false;
};

class Trap : public ::testing::Test {
 protected:
  Oyente oyente;
  Trampa intenta{oyente, "SalvaCambios"};
  static void Falla(const char* texto) { throw data::Error(texto); }
};

TEST_F(Trap, AStepThatWorksReportsNothing) {
  bool hecho = false;
  EXPECT_TRUE(intenta([&] { hecho = true; }));
  EXPECT_TRUE(hecho);
  EXPECT_TRUE(oyente.oidos.empty());
}

TEST_F(Trap, AStepThatFailsIsReportedOnceWithModuleProcedureAndLineZero) {
  EXPECT_FALSE(intenta([] { Falla("no hay red"); }));
  EXPECT_EQ(oyente.oidos, std::vector<std::string>{"frmEntradasWi|SalvaCambios|no hay red código duro: 0"});
}

TEST_F(Trap, TheNextStepsRunOnWhatIsThere) {
  int valor = 1;
  intenta([&] {
    Falla("a");
    valor = 2;
  });
  EXPECT_EQ(valor, 1);
  intenta([&] { valor += 10; });
  EXPECT_EQ(valor, 11);
}

TEST_F(Trap, ThreeFailuresAreThreeReportsInTheirOrder) {
  for (const char* texto : {"a", "b", "c"}) intenta([&] { Falla(texto); });
  ASSERT_EQ(oyente.oidos.size(), 3u);
  EXPECT_NE(oyente.oidos[0].find("|a código"), std::string::npos);
  EXPECT_NE(oyente.oidos[2].find("|c código"), std::string::npos);
}

TEST_F(Trap, TheContextBesideAnErrorIsNeverInTheReport) {
  intenta([] { throw data::Error("no hay red").With("sentencia", "SELECT 1"); });
  EXPECT_EQ(oyente.oidos[0].find("SELECT"), std::string::npos);
}

TEST_F(Trap, AnyStandardErrorIsTrapped) {
  EXPECT_FALSE(intenta([] { throw std::out_of_range("fuera"); }));
  EXPECT_EQ(oyente.oidos, std::vector<std::string>{"frmEntradasWi|SalvaCambios|fuera código duro: 0"});
}

TEST_F(Trap, ATestGivesItsAnswerAndOneThatFailsCountsAsTrue) {
  EXPECT_TRUE(intenta.Si([] { return true; }));
  EXPECT_FALSE(intenta.Si([] { return false; }));
  EXPECT_TRUE(oyente.oidos.empty());
  EXPECT_TRUE(intenta.Si([]() -> bool { throw data::Error("no se lee"); }));
  EXPECT_EQ(oyente.oidos.size(), 1u);
}

TEST_F(Trap, ALoopsTestThatFailsEndsTheLoop) {
  int vueltas = 0;
  while (intenta.Mientras([&]() -> bool {
    if (vueltas == 3) throw data::Error("no sigue");
    return true;
  })) {
    ++vueltas;
  }
  EXPECT_EQ(vueltas, 3);
  EXPECT_EQ(oyente.oidos.size(), 1u);
  EXPECT_FALSE(intenta.Mientras([] { return false; }));
  EXPECT_EQ(oyente.oidos.size(), 1u);
}

TEST_F(Trap, AFailureOfTheReportPassesTheTrap) {
  oyente.sin_bitacora = true;
  EXPECT_THROW(intenta([] { Falla("a"); }), FallaDelReporte);
  EXPECT_EQ(oyente.oidos.size(), 1u);
  EXPECT_THROW(intenta.Si([]() -> bool { throw data::Error("b"); }), FallaDelReporte);
  EXPECT_EQ(oyente.oidos.size(), 2u);
}

TEST_F(Trap, AnOuterTrapDoesNotReportItAgain) {
  Oyente fuera;
  Trampa exterior{fuera, "Command5_Click"};
  EXPECT_THROW(exterior([] { throw FallaDelReporte("no hay bitácora"); }), FallaDelReporte);
  EXPECT_TRUE(fuera.oidos.empty());
}

TEST_F(Trap, WhatIsIgnoredIsDroppedAndTheNextStatementRuns) {
  Ignora ignora;
  bool hecho = false;
  ignora([] { Falla("a"); });
  ignora([&] { hecho = true; });
  EXPECT_TRUE(hecho);
  EXPECT_TRUE(ignora.Si([]() -> bool { throw data::Error("b"); }));
  EXPECT_FALSE(ignora.Si([] { return false; }));
}

TEST_F(Trap, AFailureOfTheReportPassesTheIgnoringStretchToo) {
  Ignora ignora;
  EXPECT_THROW(ignora([] { throw FallaDelReporte("no hay bitácora"); }), FallaDelReporte);
}

}  // namespace
}  // namespace tarvik::service
