// The marks that turn a goods-out into a transfer, a shipment or a loan: which field each one opens, which
// routine it calls and what it stores.
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class Traspasos : public EscenarioDeSalidas {
 protected:
  std::string Columna(const std::string& nombre) {
    return Uno("SELECT " + nombre + " FROM salidas WHERE salida = 1");
  }
  // A-100 in a document that stays pending, saved.
  void Guarda(frmSalidasWizard& f) {
    f.Check3.Value(1);
    f.Command5_Click();
  }
};

TEST_F(Traspasos, TheWarehouseMarkOpensItsFieldAndClosesItAgain) {
  frmSalidasWizard& f = NuevaSalida();
  EXPECT_TRUE(f.txtFields(campo::AlmacenDestino).Enabled());  // until the first click
  f.Click(f.SSCheck1);
  EXPECT_TRUE(f.txtFields(campo::AlmacenDestino).Enabled());
  EXPECT_TRUE(f.txtFields(campo::AlmacenDestino).HasFocus());
  f.Click(f.SSCheck1);
  EXPECT_FALSE(f.txtFields(campo::AlmacenDestino).Enabled());
  EXPECT_EQ(f.SSCheck1.Value(), 0);
}

TEST_F(Traspasos, InAReadDocumentTheWarehouseMarkDoesNothing) {
  DocumentoGuardado(1, "CO");
  Sql("UPDATE salidas SET estraspaso = 1, almt = 1");
  frmSalidasWizard& f = ConsultaSalida(7);
  EXPECT_EQ(f.SSCheck1.Value(), 1);
  EXPECT_FALSE(f.txtFields(campo::AlmacenDestino).Enabled());
  f.txtFields(campo::AlmacenDestino).Enabled(true);
  f.SSCheck1.Value(0);
  EXPECT_TRUE(f.txtFields(campo::AlmacenDestino).Enabled());
}

TEST_F(Traspasos, TheBranchMarkFollowsItsField) {
  frmSalidasWizard& f = NuevaSalida();
  Teclea(f, f.txtFields(campo::Sucursal), "n");
  EXPECT_EQ(f.Check5.Value(), 1);
  f.txtFields(campo::Sucursal).Text("");
  EXPECT_EQ(f.Check5.Value(), 0);
  f.txtFields(campo::Sucursal).Text("NTE");
  f.txtFields(campo::Sucursal).Text("  ");
  EXPECT_EQ(f.Check5.Value(), 0);
}

TEST_F(Traspasos, TheMarksOfStationAndEmployeeOnlyCallTheirRoutines) {
  frmSalidasWizard& f = NuevaSalida();
  f.SSCheck2.Visible(true);
  f.Enter(f.txtFields(campo::DireccionDeEmbarque));
  Olvida();
  f.Click(f.SSCheck2);
  f.Click(f.Check1);
  f.Click(f.Check1);
  EXPECT_EQ(Claves(), (Textos{"SALIDAS012", "SALIDAS015", "SALIDAS015"}));
  EXPECT_TRUE(f.txtFields(campo::EstacionDestino).Enabled());
  EXPECT_TRUE(f.txtFields(campo::Empleado).Enabled());
  EXPECT_TRUE(bitacora.sentencias.empty());
}

TEST_F(Traspasos, TheMarksHaveNoTrapAndTheSendHas) {
  frmSalidasWizard& f = NuevaSalida();
  bitacora.FallaServicio("BuscaCatalogo", 4, "falla provocada");
  EXPECT_THROW(f.SSCheck2_Click(), data::Error);
  EXPECT_THROW(f.Check1_Click(), data::Error);
  EXPECT_THROW(f.CreaEntradasDeTraspaso(), data::Error);
  EXPECT_TRUE(Reportes().empty());
  f.Command1_Click();
  EXPECT_EQ(Reportes(), (Textos{Reporte("Command1_Click")}));
}

TEST_F(Traspasos, ARoutineGetsTheScreenAndTheContext) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  forms::Form* vista = nullptr;
  host::AmbienteLocal* contexto = nullptr;
  anfitrion->Gancho("SALIDAS017", [&](forms::Form& forma, host::AmbienteLocal& ambiente) {
    vista = &forma;
    contexto = &ambiente;
  });
  f.CreaEntradasDeTraspaso();
  EXPECT_EQ(vista, &f);
  EXPECT_EQ(contexto, &anfitrion->Ambiente());
}

TEST_F(Traspasos, SendingAgainWorksInAReadDocumentAsOftenAsAsked) {
  DocumentoGuardado(1, "CO");
  frmSalidasWizard& f = ConsultaSalida(7);
  EXPECT_TRUE(f.Command1.Enabled());
  Olvida();
  Tecla(f, "F6");
  Tecla(f, "F6");
  EXPECT_EQ(Claves(), (Textos{"SALIDAS005", "SALIDAS005"}));
  EXPECT_TRUE(bitacora.sentencias.empty());
}

TEST_F(Traspasos, NoCodeShowsTheHiddenControlsARoutineMay) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  EXPECT_FALSE(f.SSCheck2.Visible());
  EXPECT_FALSE(f.txtFields(campo::EstacionDestino).Visible());
  EXPECT_FALSE(f.txtFields(campo::Compra).Visible());
  f.txtFields(campo::EstacionDestino).Visible(true);
  f.MultiCombo1(6).Visible(true);
  Teclea(f, f.txtFields(campo::EstacionDestino), "e2");
  EXPECT_EQ(f.txtFields(campo::EstacionDestino).Text(), "E2");
}

// ---- what is stored ----

TEST_F(Traspasos, APlainDocumentStoresEveryMarkOff) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  Guarda(f);
  for (const char* marca : {"estraspaso", "esparasucursal", "traspasoaestacion", "paraempleado", "almt"}) {
    EXPECT_EQ(Columna(marca), "0") << marca;
  }
  EXPECT_EQ(Columna("traspaso"), "(nulo)");
  EXPECT_EQ(Columna("estaciontraspaso"), "(nulo)");
  EXPECT_EQ(Columna("cliente"), "");
  EXPECT_EQ(Columna("empleado"), "");
}

TEST_F(Traspasos, ATargetWithoutTheMarkIsStoredAndMovesNothing) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  f.txtFields(campo::AlmacenDestino).Text("2");
  Finaliza(f);
  EXPECT_EQ(Columna("almt"), "2");
  EXPECT_EQ(Columna("estraspaso"), "0");
  EXPECT_EQ(Columna("traspaso"), "(nulo)");
  EXPECT_EQ(bitacora.movimientos.size(), 1u);
  EXPECT_EQ(CuentaClaves("SALIDAS017"), 0);
}

TEST_F(Traspasos, AStationWithoutAWarehouseIsStoredAndAddsNoMovement) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  f.SSCheck2.Value(1);
  f.txtFields(campo::EstacionDestino).Text("E2");
  Finaliza(f);
  EXPECT_EQ(Columna("traspasoaestacion"), "1");
  EXPECT_EQ(Columna("estaciontraspaso"), "E2");
  ASSERT_EQ(bitacora.movimientos.size(), 1u);
  EXPECT_EQ(Movido(0, "EstacionTraspaso"), "(nada)");
}

TEST_F(Traspasos, AnEmployeeIsStoredWhateverTheMarkSays) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  f.txtFields(campo::Empleado).Text("NADIE");
  Guarda(f);
  EXPECT_EQ(Columna("paraempleado"), "0");
  EXPECT_EQ(Columna("empleado"), "NADIE");
}

TEST_F(Traspasos, AStationThatWasStoredOnceStaysWhenTheMarkIsTakenOff) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  f.SSCheck2.Value(1);
  f.txtFields(campo::EstacionDestino).Text("E2");
  Guarda(f);
  frmSalidasWizard& g = ModificaSalida(1);
  g.SSCheck2.Value(0);
  g.txtFields(campo::EstacionDestino).Text("OTRA");
  Guarda(g);
  EXPECT_EQ(Columna("traspasoaestacion"), "0");
  EXPECT_EQ(Columna("estaciontraspaso"), "E2");
}

TEST_F(Traspasos, TheTransferNumberIsDrawnOnEverySaveAndStaysWithoutTheMark) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  f.SSCheck1.Value(1);
  f.txtFields(campo::AlmacenDestino).Text("2");
  Guarda(f);
  EXPECT_EQ(Columna("traspaso"), "1");
  Guarda(ModificaSalida(1));
  EXPECT_EQ(Columna("traspaso"), "2");
  frmSalidasWizard& g = ModificaSalida(1);
  g.SSCheck1.Value(0);
  Guarda(g);
  EXPECT_EQ(Columna("traspaso"), "2");
  EXPECT_EQ(Columna("estraspaso"), "0");
  EXPECT_EQ(CuentaClaves("SALIDAS017"), 0);  // pending all along
  EXPECT_EQ(CuentaClaves("SALIDAS005"), 0);
}

TEST_F(Traspasos, TheMarksCombineFreely) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  f.SSCheck1.Value(1);
  f.txtFields(campo::AlmacenDestino).Text("2");
  f.txtFields(campo::Sucursal).Text("NTE");
  f.Check1.Value(1);
  f.txtFields(campo::Empleado).Text("M7");
  f.txtFields(campo::Cliente).Text("C1");
  f.txtFields(campo::DireccionDeEmbarque).Text("  Calle Uno 1 ");
  f.DTPicker2.Value(data::Date{2024, 6, 1});
  Finaliza(f);
  EXPECT_EQ(Columna("estraspaso") + Columna("esparasucursal") + Columna("paraempleado"), "111");
  EXPECT_EQ(Columna("sucursal"), "NTE");
  EXPECT_EQ(Columna("cliente"), "C1");
  EXPECT_EQ(Columna("direccionembarque"), "Calle Uno 1");
  EXPECT_EQ(Columna("fecharetorno"), "2024-06-01");
  EXPECT_EQ(Columna("estado"), "CO");
  EXPECT_EQ(bitacora.movimientos.size(), 2u);
}

}  // namespace
}  // namespace tarvik::tests
