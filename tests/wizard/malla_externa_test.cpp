// Down in the article field, on both wizards: a model's key goes to the colour and size matrix of another
// program, and the screen waits for its signal. Each story runs on the two screens, which differ by what
// stands in their row.
#include <algorithm>
#include <chrono>
#include <thread>

#include "tests/wizard/malla_externa.h"

namespace tarvik::tests {
namespace {

// ---- what the other program is told ----

TEST_P(MallaExterna, TheDocumentIsStoredThenTheParametersAndThenTheRoutine) {
  DocumentWizard& f = Pantalla();
  Textos visto;
  anfitrion->Gancho("TALLASYCOLORES001", [&](forms::Form& forma, host::AmbienteLocal&) {
    EXPECT_EQ(&forma, &f);
    visto = {
        Uno(std::string("SELECT estado FROM ") + GetParam().tabla + " WHERE " + GetParam().numero + " = 1"),
        Uno("SELECT modelo FROM mallaparam WHERE documento = '1' AND origen = ?", {GetParam().origen}),
        bitacora.sentencias.back()};
  });
  Abajo(f);
  EXPECT_EQ(visto, (Textos{GetParam().estado, "CAM", Parametros()}));
  EXPECT_EQ(Claves(), (Textos{"TALLASYCOLORES001"}));
  EXPECT_EQ(Uno("SELECT usuario || concepto FROM mallaparam"), std::string("ANA") + GetParam().concepto);
  SinNovedad(f);
}

TEST_P(MallaExterna, WhatIsStoredFirst) {
  DocumentWizard& f = Pantalla();
  Abajo(f);
  Textos antes(bitacora.sentencias.begin() + 1,
               std::find(bitacora.sentencias.begin(), bitacora.sentencias.end(), Parametros()));
  ASSERT_GE(antes.size(), 2u);
  if (Entra()) {
    EXPECT_TRUE(antes.back().starts_with("INSERT INTO entradas (")) << antes.back();
    EXPECT_EQ(CuentaSentencias("SELECT * FROM entpart"), 0);
  } else {
    EXPECT_EQ(antes.back(), "SELECT * FROM salpart WHERE (((salida)=1))");
    EXPECT_TRUE(antes[antes.size() - 2].starts_with("INSERT INTO salidas (")) << antes[antes.size() - 2];
  }
}

TEST_P(MallaExterna, ADocumentThatIsThereIsSavedUnderItsNumber) {
  DocumentWizard& f = Pantalla("A-100");
  f.PonDescripcion();
  f.txtFields(campo::Cantidad).Text("2");
  f.LlenaPartida();
  f.txtFields(campo::Articulo).Text("CAM");
  Olvida();
  Abajo(f);
  EXPECT_EQ(Uno(std::string("SELECT COUNT(*) FROM ") + GetParam().tabla), "1");
  EXPECT_EQ(CuentaSentencias(std::string("UPDATE ") + GetParam().tabla), 1);
  EXPECT_EQ(CuentaSentencias(Parametros()), 1);
  EXPECT_EQ(f.fg2.TextMatrix(1, 0), "A-100");
}

TEST_P(MallaExterna, ModelAndConceptAreTrimmedAndTheNumberIsPlain) {
  DocumentWizard& f = Pantalla("  CAM ");
  f.txtFields(campo::Concepto).Text(std::string(" ") + GetParam().concepto + "  ");
  Abajo(f);
  EXPECT_EQ(DeLaMalla(), Y(Principio(), {"select * from ControlProc"}));
}

// ---- the signal ----

TEST_P(MallaExterna, AMatrixThatIsNotAtWorkIsNotWaitedFor) {
  DocumentWizard& f = Pantalla();
  Reparte();
  Abajo(f);  // the signal stands at 1
  EXPECT_EQ(DeLaMalla(), Y(Principio(), {"select * from ControlProc"}));
  EXPECT_EQ(vueltas, 0);
  EXPECT_EQ(Uno(std::string("SELECT COUNT(*) FROM ") + GetParam().partidas), "0");
  SinNovedad(f);
}

TEST_P(MallaExterna, WithoutASignalNothingIsWaitedFor) {
  Sql("DELETE FROM ControlProc");
  DocumentWizard& f = Pantalla();
  Abajo(f);
  EXPECT_EQ(DeLaMalla(), Y(Principio(), {"select * from ControlProc"}));
  EXPECT_EQ(vueltas, 0);
  SinNovedad(f);
}

TEST_P(MallaExterna, ASignalThatIsNeitherIsNotWaitedForEither) {
  for (const data::Value& valor : {data::Value(), data::Value(2), data::Value(-1)}) {
    Control(valor);
    DocumentWizard& f = Pantalla();
    Abajo(f);
    EXPECT_EQ(DeLaMalla().back(), "select * from ControlProc");
    EXPECT_EQ(vueltas, 0);
    SinNovedad(f);
  }
}

TEST_P(MallaExterna, TheMatrixThatEndsAtOnceHasItsLinesMade) {
  DocumentWizard& f = Pantalla();
  Reparte();
  Control(0);
  al_esperar = [this] {
    Control(1);
    return false;
  };
  Abajo(f);
  EXPECT_EQ(vueltas, 1);
  EXPECT_EQ(DeLaMalla(),
            Y(Principio(), {"select * from ControlProc", "select * from ControlProc", Crea(), Lee()}));
  EXPECT_EQ(Uno(std::string("SELECT articulo FROM ") + GetParam().partidas), "CAM-AZ");
  SinNovedad(f);
}

TEST_P(MallaExterna, TheMatrixThatTakesItsTimeIsAskedForAgainAndAgain) {
  DocumentWizard& f = Pantalla();
  Control(0);
  al_esperar = [this] {
    if (vueltas == 50) Control(1);
    return false;
  };
  Abajo(f);
  EXPECT_EQ(vueltas, 50);
  EXPECT_EQ(CuentaSentencias("select * from ControlProc"), 51);
  EXPECT_EQ(CuentaSentencias(Crea()), 1);
  SinNovedad(f);
}

TEST_P(MallaExterna, ASignalThatBecomesAnythingElseEndsTheWaitWithNoLines) {
  for (const data::Value& valor : {data::Value(2), data::Value()}) {
    DocumentWizard& f = Pantalla();
    Control(0);
    vueltas = 0;
    al_esperar = [&] {
      Control(valor);
      return false;
    };
    Abajo(f);
    EXPECT_EQ(vueltas, 1);
    EXPECT_EQ(CuentaSentencias("exec TKCrea"), 0);
    EXPECT_EQ(DeLaMalla().back(), "select * from ControlProc");
    SinNovedad(f);
  }
}

// The other program works beside this one, on a connection of its own.
TEST_P(MallaExterna, AnotherProgramsSignalIsSeen) {
  DocumentWizard& f = Pantalla();
  Reparte();
  Control(0);
  auto suya = anfitrion->Base().Connect();
  plataforma.on_wait = [] { return false; };
  std::thread programa;
  anfitrion->Gancho("TALLASYCOLORES001", [&](forms::Form&, host::AmbienteLocal&) {
    programa = std::thread([&suya] {
      std::this_thread::sleep_for(std::chrono::milliseconds(30));
      suya->Run("UPDATE ControlProc SET controlproc = 1", {});
    });
  });
  Abajo(f);
  programa.join();
  EXPECT_EQ(CuentaSentencias(Crea()), 1);
  EXPECT_GT(CuentaSentencias("select * from ControlProc"), 1);
  EXPECT_EQ(Uno(std::string("SELECT COUNT(*) FROM ") + GetParam().partidas), "1");
  SinNovedad(f);
}

TEST_P(MallaExterna, NoEventOfTheScreenRunsDuringTheWait) {
  DocumentWizard& f = Pantalla();
  Control(0);
  bool corrio = false;
  bool durante = false;
  al_esperar = [&] {
    if (vueltas == 1) plataforma.Post([&] { corrio = true; });
    durante = durante || corrio;
    if (vueltas == 5) Control(1);
    return false;
  };
  Abajo(f);
  EXPECT_FALSE(durante);
  EXPECT_TRUE(corrio);  // afterwards
}

TEST_P(MallaExterna, OnlyTheEndOfTheProgramBreaksTheWaitAndNothingIsLost) {
  DocumentWizard& f = Pantalla("A-100");
  f.PonDescripcion();
  f.txtFields(campo::Cantidad).Text("2");
  f.LlenaPartida();
  f.txtFields(campo::Articulo).Text("CAM");
  f.txtFields(campo::Cantidad).Text("9");
  Olvida();
  Control(0);
  al_esperar = [this] { return vueltas == 20; };
  Abajo(f);
  EXPECT_EQ(vueltas, 20);
  EXPECT_EQ(CuentaSentencias("exec TKCrea"), 0);
  SinNovedad(f);
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "9");
  EXPECT_EQ(f.fg2.TextMatrix(1, 0), "A-100");
  EXPECT_EQ(Uno(std::string("SELECT estado FROM ") + GetParam().tabla), GetParam().estado);
  EXPECT_EQ(Uno(std::string("SELECT COUNT(*) FROM ") + GetParam().partidas), "1");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM mallaparam"), "1");
}

// ---- what comes back ----

// The other program's rows carry the document's own code, and are looked for under the other one.
TEST_P(MallaExterna, TheLinesThatWereMadeAreInTheBaseAndNotInTheGrid) {
  DocumentWizard& f = Pantalla();
  Reparte();
  Control(0);
  al_esperar = [this] {
    Control(1);
    return false;
  };
  Abajo(f);
  EXPECT_EQ(Uno("SELECT operacion FROM movsinv WHERE claveadd = '999'"), Entra() ? "EN" : "SA");
  EXPECT_EQ(Uno(std::string("SELECT articulo FROM ") + GetParam().partidas), "CAM-AZ");
  EXPECT_EQ(f.fg2.TextMatrix(1, 0), "");
  EXPECT_EQ(f.CuantasPartidas(), 0);
  SinNovedad(f);
}

TEST_P(MallaExterna, ARowThatIsFoundFillsTheGridToItsEndWhoseErrorLeavesTheEvent) {
  DocumentWizard& f = Pantalla();
  f.fg2.TextMatrix(1, 0, "A-100");
  f.fg2.TextMatrix(1, 1, "2");
  Planta();
  Control(0);
  al_esperar = [this] {
    Control(1);
    return false;
  };
  Abajo(f);
  const int ultimo = f.fg2.Rows() - 1;
  EXPECT_EQ(no_atrapados, (Textos{"La celda (" + std::to_string(ultimo + 1) + ", 0) está fuera de fg2"}));
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(ArchivoDelDia(), "");
  EXPECT_EQ(f.fg2.TextMatrix(1, 0), "A-100");  // behind the lines that were there
  EXPECT_EQ(f.fg2.TextMatrix(1, 1), "2");
  for (int renglon : {2, 3, ultimo}) {
    for (const auto& [columna, texto] : GetParam().celdas) {
      EXPECT_EQ(f.fg2.TextMatrix(renglon, columna), texto) << renglon << "," << columna;
    }
    for (int columna : GetParam().intactas) {
      EXPECT_EQ(f.fg2.TextMatrix(renglon, columna), "") << renglon << "," << columna;
    }
  }
  EXPECT_TRUE(f.Open());
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "CAM");
}

TEST_P(MallaExterna, ARowOfAnotherDocumentOrWithoutTheMarkIsNotTaken) {
  DocumentWizard& f = Pantalla();
  Planta();
  Sql("UPDATE movsinv SET movimiento = 2");
  Planta();
  Sql("UPDATE movsinv SET claveadd = '' WHERE movimiento = 1");
  Control(0);
  al_esperar = [this] {
    Control(1);
    return false;
  };
  Abajo(f);
  EXPECT_EQ(f.fg2.TextMatrix(1, 0), "");
  SinNovedad(f);
}

// ---- stock ----

TEST_P(MallaExterna, NoStockIsAskedForAndNoneIsMoved) {
  Sql("UPDATE prods SET Invent = 1");
  DocumentWizard& f = Pantalla();
  Reparte();
  Control(0);
  al_esperar = [this] {
    Control(1);
    return false;
  };
  Abajo(f);
  for (const auto& sentencia : bitacora.sentencias) {
    EXPECT_EQ(sentencia.find("existencia"), std::string::npos) << sentencia;
    EXPECT_EQ(sentencia.find("FROM prods"), std::string::npos) << sentencia;
  }
  EXPECT_TRUE(bitacora.movimientos.empty());
  SinNovedad(f);
}

INSTANTIATE_TEST_SUITE_P(Both, MallaExterna, ::testing::ValuesIn(kLados), NombreDelLado);

}  // namespace
}  // namespace tarvik::tests
