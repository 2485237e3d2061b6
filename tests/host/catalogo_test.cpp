// Hooks: which routine runs, what it may do, and what becomes of what it throws.
#include "host/catalogo_local.h"

#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class Ganchos : public Banco {
 protected:
  void Dispara(const std::string& key) {
    anfitrion->ConsultasCatalogo().BuscaCatalogo(key, *forma, Ambiente());
  }
};

TEST_F(Ganchos, AKeyWithNoRoutineDoesNothingAndIsTold) {
  Dispara("ENTRADA001");
  ASSERT_EQ(testigo.ganchos.size(), 1U);
  EXPECT_EQ(testigo.ganchos[0].first, "ENTRADA001");
  EXPECT_TRUE(testigo.ganchos[0].second.IsNull());
}

TEST_F(Ganchos, ARoutineGetsTheScreenAndTheContext) {
  forms::Form* seen = nullptr;
  anfitrion->Gancho("ENTRADA007", [&](forms::Form& form, AmbienteLocal& ambiente) {
    seen = &form;
    ambiente.Parametro("Visto", ambiente.ValorDeGancho());
  });
  Ambiente().ValorDeGancho(data::Value(4));
  Dispara("ENTRADA007");
  EXPECT_EQ(seen, forma.get());
  EXPECT_EQ(Ambiente().Parametro("Visto"), data::Value(4));
  EXPECT_EQ(testigo.ganchos[0].second, data::Value(4));
}

TEST_F(Ganchos, OnlyTheRoutineOfTheKeyRuns) {
  int runs = 0;
  anfitrion->Gancho("ENTRADA007", [&](forms::Form&, AmbienteLocal&) { ++runs; });
  Dispara("ENTRADA008");
  Dispara("entrada007");
  EXPECT_EQ(runs, 0);
}

TEST_F(Ganchos, TheLastRoutineWinsAndAnEmptyOneTakesItAway) {
  std::string ran;
  anfitrion->Gancho("AYUDA", [&](forms::Form&, AmbienteLocal&) { ran += "a"; });
  anfitrion->Gancho("AYUDA", [&](forms::Form&, AmbienteLocal&) { ran += "b"; });
  Dispara("AYUDA");
  anfitrion->Gancho("AYUDA", {});
  Dispara("AYUDA");
  EXPECT_EQ(ran, "b");
}

TEST_F(Ganchos, ARoutineThatLeavesItsTransactionOpenIsToldAndHoldsNobodyElsesWork) {
  bool ends = false;
  anfitrion->Gancho("AYUDA", [&](forms::Form&, AmbienteLocal& ambiente) {
    ambiente.Conexion().Execute("BEGIN");
    ambiente.Conexion().Execute("INSERT INTO modelos (modelo) VALUES ('M1')");
    if (ends) ambiente.Conexion().Execute("COMMIT");
  });
  EXPECT_EQ(ErrorDe([&] { Dispara("AYUDA"); }),
            "La rutina AYUDA dejó una transacción abierta; lo que hizo en ella se deshizo");
  EXPECT_FALSE(anfitrion->Conexion().InTransaction());
  EXPECT_EQ(Dato("SELECT COUNT(*) FROM modelos"), data::Value(0));

  ends = true;
  Dispara("AYUDA");
  EXPECT_EQ(Dato("SELECT COUNT(*) FROM modelos"), data::Value(1));

  anfitrion->Gancho("AYUDA", [&](forms::Form&, AmbienteLocal& ambiente) {
    ambiente.Conexion().Execute("BEGIN");
    throw std::runtime_error("se cayó");
  });
  EXPECT_EQ(ErrorDe([&] { Dispara("AYUDA"); }), "se cayó");
  EXPECT_FALSE(anfitrion->Conexion().InTransaction());
}

TEST_F(Ganchos, ARoutineMayTakeItselfAway) {
  auto alive = std::make_shared<int>(0);
  anfitrion->Gancho("AYUDA", [this, alive](forms::Form&, AmbienteLocal&) {
    anfitrion->Gancho("AYUDA", {});
    ++*alive;
  });
  Dispara("AYUDA");
  Dispara("AYUDA");
  EXPECT_EQ(*alive, 1);
}

TEST_F(Ganchos, WhatARoutineThrowsComesOutAsAnErrorWithItsText) {
  anfitrion->Gancho("AYUDA", [](forms::Form&, AmbienteLocal&) { throw std::out_of_range("fuera de rango"); });
  EXPECT_EQ(ErrorDe([&] { Dispara("AYUDA"); }), "fuera de rango");
  anfitrion->Gancho("AYUDA",
                    [](forms::Form&, AmbienteLocal&) { throw data::Error("propio").With("línea", "3"); });
  try {
    Dispara("AYUDA");
    FAIL() << "ningún error";
  } catch (const data::Error& error) {
    EXPECT_STREQ(error.what(), "propio");
    EXPECT_EQ(error.Context().size(), 1U);
  }
}

TEST_F(Ganchos, AKeyThatIsMadeToFailNeitherRunsNorIsTold) {
  int runs = 0;
  anfitrion->Gancho("AYUDA", [&](forms::Form&, AmbienteLocal&) { ++runs; });
  testigo.falla_servicio = "BuscaCatalogo";
  EXPECT_EQ(ErrorDe([&] { Dispara("AYUDA"); }), "falla provocada");
  EXPECT_EQ(runs, 0);
  EXPECT_TRUE(testigo.ganchos.empty());
}

}  // namespace
}  // namespace tarvik::host
