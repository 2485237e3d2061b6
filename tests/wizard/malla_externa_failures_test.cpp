// What fails while the matrix of another program is asked for or waited for. There is no trap here: it leaves
// the event.
#include "tests/wizard/malla_externa.h"

namespace tarvik::tests {
namespace {

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

INSTANTIATE_TEST_SUITE_P(Both, FallasDeMallaExterna, ::testing::ValuesIn(kLados), NombreDelLado);

}  // namespace
}  // namespace tarvik::tests
