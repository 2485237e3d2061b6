// Failures of whole events: loading, finishing, closing, the grid's own events, a posting that breaks
// in the middle, and a log that cannot be written. Single steps of the procedures are in
// failures_test.cpp and write_failures_test.cpp.
#include "goods_in/columnas.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

using Textos = std::vector<std::string>;

// A host's form on which everything fails.
class FormaRota : public service::LateBound {
 public:
  bool responde = false;
  std::string catalogo = "Entradas";
  Textos llamadas;
  data::Value Get(std::string_view) override {
    if (!responde) throw data::Error("falla provocada");
    return catalogo;
  }
  std::shared_ptr<service::LateBound> Object(std::string_view) override {
    throw data::Error("falla provocada");
  }
  void Call(std::string_view nombre, const std::vector<data::Value>&) override {
    llamadas.emplace_back(nombre);
    throw data::Error("falla provocada");
  }
};

class FallasDeEventos : public Escenario {
 protected:
  FallasDeEventos() { Catalogo(); }

  frmEntradasWizard& Tres() {
    frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "2"}, {"A-100", "1"}});
    viva_ = f.shared_from_this();
    Olvida();
    return f;
  }
  void Falla(const std::string& servicio, int veces = 1) {
    bitacora.FallaServicio(servicio, veces, "falla provocada");
  }
  void FallaSentencia(const std::string& patron, int veces = 1) {
    bitacora.Falla(patron, veces, "falla provocada");
  }
  void Finaliza(frmEntradasWizard& f) {
    bitacora.respuestas.push_back(true);
    f.Command5_Click();
  }
  // The procedures of the reports, "*" where the text is not the provoked one; boxes and log agree.
  Textos Procedimientos() {
    Textos nombres;
    std::string diario;
    for (const auto& mensaje : bitacora.mensajes) {
      if (mensaje.clase == "caja") diario += mensaje.texto;
    }
    EXPECT_EQ(ArchivoDelDia(), diario);
    for (const auto& reporte : Reportes()) {
      const auto desde = reporte.find("Function: ") + 10;
      std::string nombre = reporte.substr(desde, reporte.find("\r\n", desde) - desde);
      if (reporte.find("Description: falla provocada código duro: 0\r\n") == std::string::npos) nombre += "*";
      nombres.push_back(nombre);
    }
    return nombres;
  }

 private:
  std::shared_ptr<forms::Form> viva_;
};

// ---- loading ----

TEST_F(FallasDeEventos, AScreenLoadsWithoutAWorkingDate) {
  Falla("FechaDeTrabajo");
  frmEntradasWizard& f = Nueva();
  EXPECT_EQ(Procedimientos(), (Textos{"Form_Load"}));
  EXPECT_EQ(f.txtFields(campo::Almacen).Text(), "1");
  EXPECT_TRUE(f.Command5.Enabled());
}

TEST_F(FallasDeEventos, AScreenLoadsWithoutABuilder) {
  Falla("NuevoQuery");
  frmEntradasWizard& f = Nueva();
  EXPECT_EQ(Procedimientos(), (Textos{"Form_Load", "Form_Load*"}));
  EXPECT_EQ(f.txtFields(campo::Almacen).Text(), "1");
  EXPECT_TRUE(f.Visible());
}

TEST_F(FallasDeEventos, AChangeThatFailsDuringLoadingBelongsToTheAssignment) {
  Falla("FormateaTexto");
  frmEntradasWizard& f = Nueva();
  EXPECT_EQ(Procedimientos(), (Textos{"Form_Load"}));
  EXPECT_EQ(f.txtFields(campo::Almacen).Text(), "1");
}

TEST_F(FallasDeEventos, FromTheTailOfLoadingOnNothingIsReported) {
  Falla("PresentaForma");
  Nueva();
  Falla("BuscaCatalogo");
  Nueva();
  EXPECT_TRUE(Reportes().empty());
  EXPECT_EQ(bitacora.presentadas.size(), 1u);  // the second; the first one's showing failed
  EXPECT_EQ(ArchivoDelDia(), "");
}

TEST_F(FallasDeEventos, ADocumentOpensWithoutItsLock) {
  Tres().Click(*Ultima().Find("Command2"));
  for (const char* servicio : {"TipoSentencia", "AgregaCampo", "Condicion", "Ejecuta"}) {
    Olvida();
    std::filesystem::remove_all(ruta / "web");
    Falla(servicio);
    frmEntradasWizard& f = Modifica(1);
    EXPECT_EQ(Procedimientos(), (Textos{"Form_Load"})) << servicio;
    EXPECT_EQ(Uno("SELECT ocupado FROM entradas"), "0") << servicio;
    EXPECT_EQ(Celda(f, 3, columna_entrada::Cantidad), "1");
    f.Discard();
  }
}

TEST_F(FallasDeEventos, ADocumentWhoseLinesCannotBeReadOpensEmpty) {
  Tres().Click(*Ultima().Find("Command2"));
  Olvida();
  FallaSentencia("FROM entpart WHERE entrada = \\(");
  frmEntradasWizard& f = Modifica(1);
  EXPECT_EQ(Procedimientos(), (Textos{"Form_Load", "Form_Load*"}));
  EXPECT_EQ(Celda(f, 1, columna_entrada::Articulo), "");
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas"), "1");
  EXPECT_TRUE(f.Command5.Enabled());
}

// ---- finishing ----

TEST_F(FallasDeEventos, AQuestionWithoutTextIsStillPut) {
  frmEntradasWizard& f = Tres();
  Falla("TraeMensaje");
  Finaliza(f);
  EXPECT_EQ(Procedimientos(), (Textos{"Command5_Click"}));
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "CO");
}

TEST_F(FallasDeEventos, AQuestionThatCannotBePutIsANo) {
  frmEntradasWizard& f = Tres();
  Falla("Pregunta");
  Finaliza(f);
  EXPECT_EQ(Procedimientos(), (Textos{"Command5_Click"}));
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
  EXPECT_TRUE(f.Command5.Enabled());
}

TEST_F(FallasDeEventos, ADateThatCannotBeCheckedIsRefused) {
  frmEntradasWizard& f = Tres();
  Falla("FechaValida");
  Finaliza(f);
  EXPECT_EQ(Procedimientos(), (Textos{"Command5_Click"}));
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
  EXPECT_TRUE(f.Command2.Enabled());
  EXPECT_TRUE(f.Command5.Enabled());
}

TEST_F(FallasDeEventos, ARoutineThatFailsAfterPostingDoesNotKeepTheDocumentFromPrinting) {
  frmEntradasWizard& f = Tres();
  f.txtFields(campo::Concepto).Text("A++");
  Falla("BuscaCatalogo", 2);
  Finaliza(f);
  EXPECT_EQ(Procedimientos(), (Textos{"Command5_Click", "Command5_Click"}));
  EXPECT_EQ(bitacora.impresos.size(), 1u);
  EXPECT_FALSE(f.Open());
}

TEST_F(FallasDeEventos, AHostsListThatDoesNotAnswerIsLeftAlone) {
  frmEntradasWizard& f = Tres();
  FormaRota rota;
  f.Parent = &rota;
  Finaliza(f);
  EXPECT_EQ(Procedimientos(), (Textos{"Command5_Click"}));
  EXPECT_EQ(rota.llamadas, (Textos{"SetFocus"}));  // the closing's move of the focus, ignored
  EXPECT_FALSE(f.Open());
}

TEST_F(FallasDeEventos, AListThatCannotBeFilledStillGetsItsMenu) {
  frmEntradasWizard& f = Tres();
  FormaRota rota;
  rota.responde = true;
  f.Parent = &rota;
  Finaliza(f);
  EXPECT_EQ(Procedimientos(), (Textos{"Command5_Click", "Command5_Click"}));
  EXPECT_EQ(rota.llamadas, (Textos{"LlenaEntradas", "CreaMenuPopUp", "SetFocus"}));
  EXPECT_FALSE(f.Open());
}

TEST_F(FallasDeEventos, AStateThatCannotBeReadCountsAsPending) {
  frmEntradasWizard& f = Tres();
  FormaRota rota;
  rota.responde = true;
  rota.catalogo = "EntradasPendientes";
  f.Parent = &rota;
  f.rstEntrada = {};
  f.Check3.Value(1);
  f.Command5_Click();
  EXPECT_EQ(Procedimientos(), (Textos{"Command5_Click*", "Command5_Click", "Command5_Click"}));
  EXPECT_EQ(rota.llamadas.front(), "LlenaEntradasPendientes");
}

TEST_F(FallasDeEventos, APostingThatBreaksOnTheMiddleLineKeepsTheOthersAndTheDocumentPosted) {
  frmEntradasWizard& f = Tres();
  f.RichTextBox1.OnChange = [&] {
    if (f.RichTextBox1.Text() == "Afectando: A-200 2") Falla("Afecta");
  };
  Finaliza(f);
  EXPECT_EQ(Procedimientos(), (Textos{"AfectaPartidas"}));
  ASSERT_EQ(bitacora.movimientos.size(), 2u);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv WHERE articulo = 'A-200'"), "0");
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A-100'"), "4");
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(f.Costo, 348 + 348 + 116);  // the failed line adds the amount that stood there
  EXPECT_EQ(bitacora.impresos.size(), 1u);
  EXPECT_FALSE(f.Open());
  Olvida();
  movimientos->ModificaEntrada(1);
  EXPECT_EQ(Ultima().Modo, "CONSULTA");
}

TEST_F(FallasDeEventos, AHeaderThatCannotBeSavedDoesNotKeepItsLinesFromStock) {
  frmEntradasWizard& f = Tres();
  FallaSentencia("^UPDATE entradas SET tipo_doc");
  Finaliza(f);
  EXPECT_EQ(Procedimientos(), (Textos{"SalvaEntrada"}));
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "3");
}

TEST_F(FallasDeEventos, LinesThatCannotBeReadEndInTheDeadEnd) {
  frmEntradasWizard& f = Tres();
  FallaSentencia("FROM entpart");
  Finaliza(f);
  EXPECT_EQ(Procedimientos(), (Textos{"SalvaPartidas", "SalvaPartidas*"}));
  EXPECT_TRUE(f.Open());
  EXPECT_FALSE(f.Command5.Enabled());
  EXPECT_TRUE(bitacora.movimientos.empty());
}

// ---- closing ----

TEST_F(FallasDeEventos, AScreenClosesWhateverFailsOnTheWay) {
  const std::pair<const char*, const char*> casos[] = {
      {"BuscaCatalogo", "0"}, {"RegresaForma", "0"}, {"", "1"}};  // "": the lock's release
  for (const auto& [servicio, ocupado] : casos) {
    frmEntradasWizard& f = Tres();
    std::filesystem::remove_all(ruta / "web");
    if (*servicio) {
      Falla(servicio);
    } else {
      FallaSentencia("^UPDATE entradas SET ocupado = 0");
    }
    f.Command2_Click();
    EXPECT_EQ(Procedimientos(), (Textos{"Form_Unload"})) << servicio;
    EXPECT_FALSE(f.Open()) << servicio;
    EXPECT_EQ(Uno("SELECT ocupado FROM entradas WHERE entrada = ?", {f.Entrada}), ocupado) << servicio;
    EXPECT_EQ(bitacora.regresadas.size(), std::string(servicio) == "RegresaForma" ? 0u : 1u);
  }
}

// ---- the grid's events ----

TEST_F(FallasDeEventos, ACommitGoesOnBehindAStepThatFails) {
  frmEntradasWizard& f = Tres();
  f.ClickCell(f.fg2, 1, 1);
  Tecla(f, "9");
  f.txtEdit.OnChange = [] { throw data::Error("falla provocada"); };
  Tecla(f, "Enter");
  EXPECT_EQ(Procedimientos(), (Textos{"fg2_GotFocus"}));
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart WHERE id_entrada = 1"), "9");
  EXPECT_TRUE(no_atrapados.empty());
}

TEST_F(FallasDeEventos, TheSameHoldsOnLeavingTheCell) {
  frmEntradasWizard& f = Tres();
  f.ClickCell(f.fg2, 1, 1);
  Tecla(f, "9");
  f.txtEdit.OnChange = [] { throw data::Error("falla provocada"); };
  f.fg2.MoveTo(2, columna_entrada::Cantidad);
  EXPECT_EQ(Procedimientos(), (Textos{"fg2_LeaveCell"}));
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_EQ(f.fg2.Row(), 2);
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart WHERE id_entrada = 1"), "9");
}

TEST_F(FallasDeEventos, AChangeThatIsNotStoredIsReportedByTheSavingAndStaysOnTheScreen) {
  frmEntradasWizard& f = Tres();
  f.ClickCell(f.fg2, 1, 1);
  Tecla(f, "9");
  FallaSentencia("UPDATE entpart");
  Tecla(f, "Enter");
  EXPECT_EQ(Procedimientos(), (Textos{"SalvaCambios"}));
  EXPECT_EQ(Celda(f, 1, columna_entrada::Cantidad), "9");
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart WHERE id_entrada = 1"), "3");
}

TEST_F(FallasDeEventos, TheKeysOfTheGridTrapTheirTests) {
  frmEntradasWizard& f = Tres();
  f.fg2.MoveTo(1, columna_entrada::Cantidad);
  Falla("EstaVacio");
  int tecla = 13;
  f.fg2_KeyPress(tecla);
  Falla("EstaVacio");
  f.fg2_DblClick();
  EXPECT_EQ(Procedimientos(), (Textos{"fg2_KeyPress", "fg2_DblClick"}));
  EXPECT_FALSE(f.txtEdit.Visible());
}

TEST_F(FallasDeEventos, TheBoxItselfHasNoTrap) {
  frmEntradasWizard& f = Tres();
  f.ClickCell(f.fg2, 1, 1);
  Tecla(f, "9");
  Falla("TeclaNumerica");
  Tecla(f, "8");
  EXPECT_TRUE(Reportes().empty());
  EXPECT_EQ(no_atrapados, (Textos{"falla provocada"}));
  EXPECT_TRUE(f.txtEdit.Visible());
}

TEST_F(FallasDeEventos, TheReadingOfAModelHasNoTrapEither) {
  frmEntradasWizard& f = Tres();
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  FallaSentencia("WHERE modelo = 'A-100'$");
  Tecla(f, "Enter");
  EXPECT_TRUE(Reportes().empty());
  EXPECT_EQ(no_atrapados, (Textos{"falla provocada"}));
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
}

// ---- the log ----

TEST_F(FallasDeEventos, AnEntryIsFourLinesOfTheDaysFile) {
  frmEntradasWizard& f = Tres();
  bitacora.FallaServicio("TextoSql", 1, "uno\r\ndos");
  f.SalvaCambios();
  EXPECT_EQ(ArchivoDelDia(),
            "14:03:22 Ocurrió un error:\r\nModule: frmEntradasWi\r\nFunction: SalvaCambios\r\n"
            "Description: uno\r\ndos código duro: 0\r\n");
  EXPECT_EQ(bitacora.mensajes.back().texto, ArchivoDelDia());
  EXPECT_EQ(bitacora.mensajes.back().clase, "caja");
  EXPECT_EQ(bitacora.mensajes.back().estilo, 0);
  EXPECT_TRUE(std::filesystem::exists(ruta / "web" / "TarvikError05032024.Log"));
}

TEST_F(FallasDeEventos, ErrorsAcrossMidnightGoToTwoFiles) {
  frmEntradasWizard& f = Tres();
  reloj = {{2024, 3, 5}, {23, 59, 59}};
  Falla("TextoSql");
  f.SalvaCambios();
  const std::string primero = ArchivoDelDia();
  reloj = {{2024, 3, 6}, {0, 0, 0}};
  Falla("TextoSql");
  f.SalvaCambios();
  EXPECT_TRUE(primero.starts_with("23:59:59 "));
  EXPECT_TRUE(ArchivoDelDia().starts_with("00:00:00 "));
  EXPECT_EQ(std::count(primero.begin(), primero.end(), '\n'), 4);
}

TEST_F(FallasDeEventos, ALogThatCannotBeWrittenEndsTheEventAndThePlatformIsTold) {
  frmEntradasWizard& f = Tres();
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo::Cantidad), "3");
  Tecla(f, "Enter");
  FallaSentencia("SELECT ubicacion");
  bitacora.FallaServicio("AgregaArchivoLog", 1, "disco lleno");
  Tecla(f, "Enter");
  EXPECT_EQ(Reportes(), (Textos{Reporte("LlenaPartida")}));
  EXPECT_EQ(ArchivoDelDia(), "");
  EXPECT_EQ(no_atrapados, (Textos{"disco lleno"}));
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "3");
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  EXPECT_TRUE(f.Open());
}

}  // namespace
}  // namespace tarvik::tests
