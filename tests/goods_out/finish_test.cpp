// "&Finalizar (F5)" on goods-out from its checks to the closing of the screen: what stops it, in which
// order, what is left behind, printing and the host's list. What posting hands over is told in
// posting_test.cpp.
#include "goods_out/columnas.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class FinalizarSalida : public EscenarioDeSalidas {
 protected:
  frmSalidasWizard& ConDos() { return Salida({{"A-100", "3"}, {"A-200", "2"}}); }
  void NadaEscrito(frmSalidasWizard& f) {
    EXPECT_EQ(CuentaSentencias("UPDATE") + CuentaSentencias("INSERT"), 0);
    EXPECT_TRUE(f.Open());
    EXPECT_TRUE(f.Command1.Enabled());
    EXPECT_TRUE(f.Command2.Enabled());
    EXPECT_TRUE(f.Command5.Enabled());
    EXPECT_TRUE(bitacora.movimientos.empty());
    EXPECT_TRUE(bitacora.impresos.empty());
    EXPECT_EQ(CuentaClaves("SALIDAS016") + CuentaClaves("SALIDAS005"), 0);
  }
  // Refused by a plain text, behind the question.
  void RechazaCon(frmSalidasWizard& f, const std::string& texto, int campo) {
    Finaliza(f);
    ASSERT_EQ(bitacora.mensajes.size(), 2u);
    EXPECT_EQ(Numeros(), std::vector<int>{mensaje::AfectaSalida});
    EXPECT_EQ(bitacora.mensajes[1].clase, "error");
    EXPECT_EQ(bitacora.mensajes[1].texto, texto);
    EXPECT_TRUE(f.txtFields(campo).HasFocus());
    NadaEscrito(f);
  }
};

TEST_F(FinalizarSalida, AHeaderThatIsRefusedStopsItBeforeAnyQuestion) {
  frmSalidasWizard& f = ConDos();
  f.txtFields(campo::Almacen).Text("9");
  Olvida();
  Finaliza(f);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoExisteAlmacen});
  NadaEscrito(f);
}

TEST_F(FinalizarSalida, PostingIsAskedForAndNoLeavesAllAsItWas) {
  frmSalidasWizard& f = ConDos();
  Finaliza(f, false);
  ASSERT_EQ(bitacora.mensajes.size(), 1u);
  EXPECT_EQ(bitacora.mensajes[0].clase, "pregunta");
  EXPECT_EQ(bitacora.mensajes[0].texto, MensajeDeLaBase(mensaje::AfectaSalida));
  EXPECT_EQ(bitacora.mensajes[0].estilo, 1);
  NadaEscrito(f);
}

TEST_F(FinalizarSalida, APendingDocumentIsNotAskedAbout) {
  frmSalidasWizard& f = ConDos();
  f.Check3.Value(1);
  Finaliza(f);
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "PE");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "0");
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(CuentaClaves("SALIDAS016"), 1);
  EXPECT_EQ(CuentaClaves("SALIDAS005"), 0);
  EXPECT_EQ(bitacora.impresos, (std::vector<std::pair<std::string, std::int32_t>>{{"salida", 1}}));
}

TEST_F(FinalizarSalida, AnUnknownEmployeeIsRefusedWhereTheMarkIsSet) {
  frmSalidasWizard& f = ConDos();
  f.txtFields(campo::Empleado).Text("NADIE");
  f.Check1.Value(1);
  Olvida();
  RechazaCon(f, "No se encuentra el empleado indicado", 16);
}

TEST_F(FinalizarSalida, AnUnknownStationIsRefusedWhereTheMarkIsSet) {
  frmSalidasWizard& f = ConDos();
  f.txtFields(campo::EstacionDestino).Visible(true);
  f.MultiCombo1(6).Visible(true);
  f.txtFields(campo::EstacionDestino).Text("E9");
  f.SSCheck2.Value(1);
  Olvida();
  RechazaCon(f, "No existe la estación de trabajo", 9);
}

TEST_F(FinalizarSalida, AnUnknownBranchIsRefusedWhereTheMarkIsSet) {
  frmSalidasWizard& f = ConDos();
  f.txtFields(campo::Sucursal).Text("SUR");
  Olvida();
  RechazaCon(f, "No existe la sucursal indicada", 3);
}

TEST_F(FinalizarSalida, AnUnknownCustomerIsRefusedWhereOneIsGiven) {
  frmSalidasWizard& f = ConDos();
  f.txtFields(campo::Cliente).Text("C9");
  Olvida();
  RechazaCon(f, "El cliente indicado no existe", 13);
}

TEST_F(FinalizarSalida, WithoutTheirMarksEmployeeStationAndBranchAreNotChecked) {
  frmSalidasWizard& f = ConDos();
  f.txtFields(campo::Empleado).Text("NADIE");
  f.txtFields(campo::EstacionDestino).Text("E9");
  f.txtFields(campo::Sucursal).Text("SUR");
  f.Check5.Value(0);  // as a routine may
  Finaliza(f);
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "CO");
  EXPECT_EQ(Uno("SELECT sucursal FROM salidas"), "SUR");
}

TEST_F(FinalizarSalida, TheChecksRunInOrderForAPendingDocumentToo) {
  frmSalidasWizard& f = ConDos();
  f.Check3.Value(1);
  f.Check1.Value(1);
  f.SSCheck2.Value(1);
  f.txtFields(campo::Sucursal).Text("SUR");
  f.DTPicker1.Value(std::nullopt);
  f.txtFields(campo::Cliente).Text("C9");
  Sql("INSERT INTO movsinv (f_movim, cerrado) VALUES ('2024-04-01', 1)");
  const std::pair<std::string, std::function<void()>> pasos[] = {
      {"No se encuentra el empleado indicado", [&] { f.Check1.Value(0); }},
      {"No existe la estación de trabajo", [&] { f.SSCheck2.Value(0); }},
      {"No existe la sucursal indicada", [&] { f.txtFields(campo::Sucursal).Text(""); }},
      {MensajeDeLaBase(mensaje::NoEsFecha),
       [&] {
         f.DTPicker1.Value(data::Date{2024, 3, 5});
       }},
      {"El cliente indicado no existe", [&] { f.txtFields(campo::Cliente).Text(""); }},
      {MensajeDeLaBase(mensaje::PeriodoCerrado), [] {}}};
  for (const auto& [texto, remedio] : pasos) {
    Olvida();
    f.Command5_Click();
    ASSERT_EQ(bitacora.mensajes.size(), 1u) << texto;
    EXPECT_EQ(bitacora.mensajes[0].texto, texto);
    NadaEscrito(f);
    remedio();
  }
}

TEST_F(FinalizarSalida, WithoutADateItStopsAtThePickerUnlessThePickerIsBlocked) {
  frmSalidasWizard& f = ConDos();
  f.DTPicker1.Value(std::nullopt);
  f.Check3.Value(1);
  f.Command5_Click();
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoEsFecha});
  EXPECT_EQ(bitacora.mensajes[0].estilo, 64);
  EXPECT_TRUE(f.DTPicker1.HasFocus());
  NadaEscrito(f);
  f.DTPicker1.Enabled(false);
  Olvida();
  f.Command5_Click();
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoEsFecha});
  EXPECT_FALSE(f.Open());
}

TEST_F(FinalizarSalida, AllThreeButtonsAreDisabledBeforePendingEventsRun) {
  frmSalidasWizard& f = ConDos();
  bitacora.respuestas = {true, true};
  bool corrio = false;
  auto caja = plataforma.on_box;
  plataforma.on_box = [&](forms::BoxKind clase, const std::string& texto, int estilo) {
    if (clase == forms::BoxKind::Question) {
      plataforma.Post([&] {
        corrio = true;
        EXPECT_FALSE(f.Command1.Enabled() || f.Command2.Enabled() || f.Command5.Enabled());
        EXPECT_EQ(Uno("SELECT estado FROM salidas"), "PE");
        EXPECT_EQ(Uno("SELECT folio FROM salidas"), "(nulo)");
        f.Click(f.Command5);
        f.Click(f.Command2);
      });
    }
    return caja(clase, texto, estilo);
  };
  Tecla(f, "F5", f.txtFields(campo::Concepto));
  EXPECT_TRUE(corrio);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::AfectaSalida});
  EXPECT_EQ(bitacora.movimientos.size(), 2u);
}

TEST_F(FinalizarSalida, APostedFinishRunsItsStepsInOrder) {
  frmSalidasWizard& f = ConDos();
  Textos pasos;
  Gancho("SALIDAS016", [&](frmSalidasWizard& g) {
    pasos.push_back("016|" + Uno("SELECT estado FROM salidas") + "|" +
                    std::to_string(bitacora.movimientos.size()) + "|" + (g.rstPartidas->Eof() ? "-" : "r"));
  });
  Gancho("SALIDAS005", [&](frmSalidasWizard& g) {
    pasos.push_back("005|" + std::to_string(bitacora.movimientos.size()) + "|" +
                    std::to_string(bitacora.impresos.size()) + "|" +
                    data::ToText(g.rstSalida->Fields("estado")));
  });
  Finaliza(f);
  EXPECT_EQ(pasos, (Textos{"016|CO|0|r", "005|2|0|CO"}));
  EXPECT_EQ(bitacora.impresos, (std::vector<std::pair<std::string, std::int32_t>>{{"salida", 1}}));
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(Uno("SELECT ocupado FROM salidas"), "0");
  EXPECT_EQ(f.Modo, "MODIFICACION");
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(FinalizarSalida, NothingIsPrintedWhereNoPrintIsAskedFor) {
  frmSalidasWizard& f = ConDos();
  f.Check2.Value(0);
  Finaliza(f);
  EXPECT_TRUE(bitacora.impresos.empty());
  EXPECT_EQ(CuentaSentencias("SELECT * FROM defform"), 0);
}

TEST_F(FinalizarSalida, WithoutAPrintFormatTheDocumentStaysSavedAndPosted) {
  Sql("DELETE FROM defform");
  frmSalidasWizard& f = ConDos();
  Finaliza(f);
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::AfectaSalida, mensaje::SinFormato}));
  EXPECT_EQ(bitacora.mensajes.back().texto, MensajeDeLaBase(mensaje::SinFormato));
  EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
  EXPECT_TRUE(bitacora.impresos.empty());
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "CO");
  EXPECT_FALSE(f.Open());
}

TEST_F(FinalizarSalida, TheFormatOfGoodsOutIsTheOnePrinted) {
  Sql("UPDATE defform SET Salidas = 'remision'");
  frmSalidasWizard& f = ConDos();
  f.ImprimeSalida();
  EXPECT_EQ(bitacora.impresos, (std::vector<std::pair<std::string, std::int32_t>>{{"remision", 1}}));
}

// ---- without lines ----

TEST_F(FinalizarSalida, AnEmptyDocumentIsStoredAsPendingAndTheScreenCloses) {
  frmSalidasWizard& f = ConConcepto();
  Olvida();
  Finaliza(f);
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::AfectaSalida, mensaje::SalidaSinRenglones}));
  EXPECT_EQ(bitacora.mensajes.back().texto, MensajeDeLaBase(mensaje::SalidaSinRenglones));
  EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
  EXPECT_EQ(f.Check3.Value(), 1);
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "PE");
  EXPECT_EQ(Uno("SELECT ocupado FROM salidas"), "1");  // for good: its screen was never for change
  EXPECT_EQ(f.Modo, "ALTA");
  EXPECT_EQ(CuentaClaves("SALIDAS016"), 1);
  EXPECT_EQ(CuentaClaves("SALIDAS005"), 0);
  EXPECT_EQ(bitacora.impresos.size(), 1u);
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(FinalizarSalida, ItsListIsThePendingOneThoughItsStateCannotBeRead) {
  frmSalidasWizard& f = ConConcepto();
  anfitrion->Parent().catalogo_activo = "SalidasPendientes";
  Finaliza(f);
  EXPECT_EQ(bitacora.llamadas, (Textos{"LlenaSalidasPendientes(1)", "ReseteaMenus()", "EstableceMenus()"}));
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(FinalizarSalida, AnEmptyDocumentThatIsToStayPendingIsNotRemarkedOn) {
  frmSalidasWizard& f = ConConcepto();
  f.Check3.Value(1);
  Olvida();
  Finaliza(f);
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "PE");
}

TEST_F(FinalizarSalida, WithThePendingBoxBlockedAnEmptyDocumentIsMarkedPostedAndMovesNothing) {
  frmSalidasWizard& f = ConConcepto();
  f.Check3.Enabled(false);
  Olvida();
  Finaliza(f);
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::AfectaSalida, mensaje::SalidaSinRenglones}));
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "CO");
  EXPECT_TRUE(bitacora.movimientos.empty());
  EXPECT_EQ(CuentaClaves("SALIDAS005"), 1);
  EXPECT_FALSE(f.Open());
}

TEST_F(FinalizarSalida, ADocumentWhoseLinesAreGoneGoesOnToTheEnd) {
  frmSalidasWizard& f = ConDos();
  Sql("DELETE FROM salpart");
  Finaliza(f);
  EXPECT_FALSE(f.Open());
  EXPECT_TRUE(bitacora.movimientos.empty());
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "CO");
  EXPECT_EQ(CuentaClaves("SALIDAS005"), 1);
}

TEST_F(FinalizarSalida, LinesAreCountedInTheGrid) {
  frmSalidasWizard& f = ConDos();
  EXPECT_EQ(f.CuantasPartidas(), 2);
  f.fg2.TextMatrix(4, columna_salida::Articulo, "X");
  EXPECT_EQ(f.CuantasPartidas(), 2);
  for (int renglon = 1; renglon < 5000; ++renglon) f.fg2.TextMatrix(renglon, columna_salida::Articulo, "X");
  EXPECT_EQ(f.CuantasPartidas(), 4999);
}

// ---- a read document ----

TEST_F(FinalizarSalida, InAReadDocumentF5ClosesOnceTheHeaderPassesAndNothingElseIsChecked) {
  DocumentoGuardado(1, "CO");
  Sql("UPDATE salidas SET paraempleado = 1, empleado = 'NADIE', cliente = 'C9'");
  frmSalidasWizard& f = ConsultaSalida(7);
  EXPECT_FALSE(f.Command5.Enabled());
  Olvida();
  Tecla(f, "F5");
  EXPECT_FALSE(f.Open());
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(CuentaSentencias("UPDATE"), 0);
}

// ---- the host's list ----

TEST_F(FinalizarSalida, TheListOnShowIsRefilledWhereItFitsTheState) {
  struct {
    const char* catalogo;
    bool pendiente;
    Textos llamadas;
  } const casos[] = {
      {"Salidas", false, {"LlenaSalidas(#)", "ReseteaMenus()", "EstableceMenus()"}},
      {"SalidasPendientes", true, {"LlenaSalidasPendientes(#)", "ReseteaMenus()", "EstableceMenus()"}},
      {"SalidasPendientes", false, {}},
      {"Salidas", true, {}},
      {"Entradas", false, {}},
      {"EntradasPendientes", true, {}}};
  for (const auto& caso : casos) {
    frmSalidasWizard& f = ConDos();
    f.Check3.Value(caso.pendiente ? 1 : 0);
    anfitrion->Parent().catalogo_activo = caso.catalogo;
    bitacora.respuestas.assign(1, true);
    f.Command5_Click();
    Textos esperadas = caso.llamadas;
    if (!esperadas.empty()) {
      esperadas[0].replace(esperadas[0].find('#'), 1, std::to_string(f.Salida));
    }
    EXPECT_EQ(bitacora.llamadas, esperadas) << caso.catalogo << caso.pendiente;
    EXPECT_FALSE(f.Open());
  }
}

TEST_F(FinalizarSalida, WithoutAHostFormNothingIsRefilled) {
  movimientos->Parent = nullptr;
  frmSalidasWizard& f = ConDos();
  Finaliza(f);
  EXPECT_TRUE(bitacora.llamadas.empty());
  EXPECT_TRUE(Reportes().empty());
  EXPECT_FALSE(f.Open());
}

TEST_F(FinalizarSalida, ThePendingBoxOfAReopenedDocumentStartsClear) {
  frmSalidasWizard& f = ConDos();
  f.Check3.Value(1);
  f.Command5_Click();
  EXPECT_EQ(ModificaSalida(1).Check3.Value(), 0);
}

TEST_F(FinalizarSalida, ACloseThatARoutineRefusesLeavesTheButtonsDisabled) {
  frmSalidasWizard& f = ConDos();
  Gancho("SALIDAS006", [](frmSalidasWizard& g) { g.CancelaProceso = true; });
  Finaliza(f);
  EXPECT_TRUE(f.Open());
  EXPECT_FALSE(f.Command1.Enabled());
  EXPECT_FALSE(f.Command2.Enabled());
  EXPECT_FALSE(f.Command5.Enabled());
  EXPECT_EQ(Uno("SELECT ocupado FROM salidas"), "1");
}

}  // namespace
}  // namespace tarvik::tests
