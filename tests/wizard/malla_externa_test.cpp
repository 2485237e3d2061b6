// Down in the article field, on both wizards: a model's key goes to the colour and size matrix of another
// program, and the screen waits for its signal; any other key opens the list of articles. Each story runs
// on the two screens, which differ by what stands in their row.
#include <algorithm>
#include <chrono>
#include <thread>

#include "data/text.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

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

const Lado kLados[] = {
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

// ---- the list of articles ----

class SinModelo : public MallaExterna {};

TEST_P(SinModelo, AnyOtherKeyOpensTheListAndTheQuantityIsNext) {
  for (const char* clave : {"", "   ", "A-100", "PAN", "NADA", "cam-x"}) {
    DocumentWizard& f = Pantalla(clave);
    std::string valor = "sin tocar";
    bitacora.elige = [&](forms::TextBox& campo) -> std::optional<std::string> {
      EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
      valor = campo.Text();
      f.txtFields(campo::Cantidad).Text("12");
      return std::nullopt;
    };
    Abajo(f);
    EXPECT_EQ(bitacora.selectores, (Textos{"ListaArticulos||txtFields(4)"})) << clave;
    EXPECT_EQ(valor, clave);
    EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus()) << clave;
    EXPECT_EQ(f.txtFields(campo::Cantidad).SelStart(), 0) << clave;
    EXPECT_EQ(static_cast<std::size_t>(f.txtFields(campo::Cantidad).SelLength()),
              f.txtFields(campo::Cantidad).Text().size())
        << clave;
    EXPECT_EQ(CuentaSentencias("select * from modelos"), data::Trim(clave).empty() ? 0 : 1) << clave;
    EXPECT_EQ(CuentaSentencias("exec"), 0) << clave;
    EXPECT_EQ(CuentaSentencias("select * from ControlProc"), 0) << clave;
    EXPECT_EQ(Uno(std::string("SELECT COUNT(*) FROM ") + GetParam().tabla), "0") << clave;
    EXPECT_TRUE(no_atrapados.empty()) << clave;
    auto claves = Claves();
    EXPECT_EQ(std::count(claves.begin(), claves.end(), "TALLASYCOLORES001"), 0) << clave;
    f.Discard();
  }
}

TEST_P(SinModelo, TheQuantityIsSelectedWhereverTheListLeftTheFocus) {
  DocumentWizard& f = Pantalla("NADA");
  f.txtFields(campo::Cantidad).Text("12");
  bitacora.elige = [&](forms::TextBox&) {
    f.txtFields(campo::Cantidad).SetFocus();
    f.txtFields(campo::Cantidad).SelStart(1);
    return std::optional<std::string>();
  };
  Abajo(f);
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Cantidad).SelStart(), 0);
  EXPECT_EQ(f.txtFields(campo::Cantidad).SelLength(), 2);
}

TEST_P(SinModelo, TheArticleChosenGoesToTheFieldAndIsLookedUpAsItIsLeft) {
  DocumentWizard& f = Pantalla("");
  bitacora.elige = [](forms::TextBox&) { return std::optional<std::string>("A-100"); };
  Abajo(f);
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Martillo de uña");
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
}

TEST_P(SinModelo, AModelIsKnownByItsWholeKey) {
  DocumentWizard& f = Pantalla("CA");
  Abajo(f);
  EXPECT_EQ(bitacora.selectores.size(), 1u);
}

TEST_P(SinModelo, DownElsewhereIsNoMatrix) {
  DocumentWizard& f = Pantalla();
  Tecla(f, "Down", f.txtFields(campo::Cantidad));
  EXPECT_EQ(CuentaSentencias("select * from modelos"), 0);
  EXPECT_TRUE(bitacora.selectores.empty());
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

// ---- failures: there is no trap here ----

class FallasDeMallaExterna : public MallaExterna {
 protected:
  // What fails leaves the event; nothing behind it runs, and the screen stays with its data.
  void Sale(DocumentWizard& f, const std::string& texto = "falla provocada") {
    EXPECT_EQ(no_atrapados, (Textos{texto}));
    EXPECT_TRUE(bitacora.mensajes.empty());
    EXPECT_EQ(ArchivoDelDia(), "");
    EXPECT_TRUE(f.Open());
    EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "CAM");
  }
};

TEST_P(FallasDeMallaExterna, EachStatementLeavesTheEventAndNothingBehindItRuns) {
  const std::pair<std::string, std::string> casos[] = {
      {"from modelos where", "select * from modelos where modelo = 'CAM'"},
      {"exec TKMallaParam", Parametros()},
      {"from ControlProc", "select * from ControlProc"},
      {std::string("exec ") + GetParam().procedimiento, Crea()},
      {"claveadd = '999'", Lee()}};
  for (const auto& [patron, ultima] : casos) {
    for (const char* tabla : {"mallaparam", GetParam().partidas, GetParam().tabla}) {
      Sql(std::string("DELETE FROM ") + tabla);
    }
    Sql("DELETE FROM series");  // each document is number 1
    Control(0);
    DocumentWizard& f = Pantalla();
    al_esperar = [this] {
      Control(1);
      return false;
    };
    bitacora.Falla(patron, 1, "falla provocada");
    Abajo(f);
    Sale(f);
    EXPECT_EQ(bitacora.sentencias.back(), ultima);
    EXPECT_TRUE(bitacora.selectores.empty()) << patron;
    f.Discard();
  }
}

TEST_P(FallasDeMallaExterna, ASignalThatCannotBeReadDuringTheWaitEndsIt) {
  DocumentWizard& f = Pantalla();
  Control(0);
  al_esperar = [this] {
    if (vueltas == 3) bitacora.Falla("from ControlProc", 1, "falla provocada");
    return false;
  };
  Abajo(f);
  EXPECT_EQ(vueltas, 3);
  Sale(f);
}

TEST_P(FallasDeMallaExterna, ASignalThatDisappearsDuringTheWaitEndsItToo) {
  DocumentWizard& f = Pantalla();
  Control(0);
  al_esperar = [this] {
    Sql("DELETE FROM ControlProc");
    return false;
  };
  Abajo(f);
  EXPECT_EQ(vueltas, 1);
  EXPECT_EQ(CuentaSentencias("exec TKCrea"), 0);
  EXPECT_EQ(no_atrapados.size(), 1u);
  EXPECT_TRUE(f.Open());
}

TEST_P(FallasDeMallaExterna, ARoutineThatFailsLeavesTheEventBeforeTheWait) {
  DocumentWizard& f = Pantalla();
  Control(0);
  anfitrion->Gancho("TALLASYCOLORES001",
                    [](forms::Form&, host::AmbienteLocal&) { throw data::Error("sin programa de tallas"); });
  Abajo(f);
  Sale(f, "sin programa de tallas");
  EXPECT_EQ(CuentaSentencias("select * from ControlProc"), 0);
}

TEST_P(FallasDeMallaExterna, AListThatCannotBeShownLeavesTheEvent) {
  DocumentWizard& f = Pantalla("NADA");
  bitacora.FallaServicio("Muestra", 1, "falla provocada");
  Abajo(f);
  EXPECT_EQ(no_atrapados, (Textos{"falla provocada"}));
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_TRUE(bitacora.mensajes.empty());
}

// The save has its own trap: what fails there is reported, and the matrix is asked for all the same.
TEST_P(FallasDeMallaExterna, ADocumentThatCannotBeStoredIsReportedAndTheMatrixGoesOn) {
  DocumentWizard& f = Pantalla();
  bitacora.Falla(std::string("INSERT INTO ") + GetParam().tabla, 1, "falla provocada");
  Abajo(f);
  const std::string procedimiento = Entra() ? "SalvaEntrada" : "SalvaSalida";
  EXPECT_EQ(Reportes(), (Textos{Escenario::Reporte(procedimiento, "falla provocada",
                                                   Entra() ? "frmEntradasWi" : "frmSalidasWiz")}));
  EXPECT_EQ(CuentaSentencias(Parametros()), 1);
  EXPECT_TRUE(no_atrapados.empty());
}

TEST_P(FallasDeMallaExterna, AKeyWithAQuoteIsRefusedBeforeTheBase) {
  DocumentWizard& f = Pantalla("CA'M");
  Abajo(f);
  EXPECT_EQ(no_atrapados.size(), 1u);
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_TRUE(bitacora.selectores.empty());
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "CA'M");
}

std::string Nombre(const ::testing::TestParamInfo<Lado>& lado) { return lado.param.nombre; }
INSTANTIATE_TEST_SUITE_P(Both, MallaExterna, ::testing::ValuesIn(kLados), Nombre);
INSTANTIATE_TEST_SUITE_P(Both, SinModelo, ::testing::ValuesIn(kLados), Nombre);
INSTANTIATE_TEST_SUITE_P(Both, FallasDeMallaExterna, ::testing::ValuesIn(kLados), Nombre);

}  // namespace
}  // namespace tarvik::tests
