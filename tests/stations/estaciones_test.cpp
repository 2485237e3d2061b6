// The screen of a transfer between stations: how it is designed, what it does as it loads, what comes with
// the key of each routine, and what fails. Its fields, buttons and grid have files of their own.
#include "tests/stations/support.h"

namespace tarvik::tests {
namespace {

// ---- as designed ----

TEST_F(Estaciones, CaptionsAndSearches) {
  frmMovEstaciones& f = Abre();
  EXPECT_EQ(f.Name(), "frmMovEstaciones");
  EXPECT_EQ(f.Caption(), "Asistente para traspasos entre estaciones");
  EXPECT_EQ(f.lblLabel(0).Caption(), "Estación que entrega");
  EXPECT_EQ(f.Label1.Caption(), "Estación que recibe");
  EXPECT_EQ(f.lblLabel(1).Caption(), "Fecha de aplicación");
  EXPECT_EQ(f.lblLabel(2).Caption(), "Artículo");
  EXPECT_EQ(f.lblLabel(3).Caption(), "Cantidad");
  EXPECT_EQ(f.cmdConfirmar.Caption(), "Confirmar operación (F5)");
  EXPECT_EQ(f.cmdPendiente.Caption(), "Dejar como pendiente");
  EXPECT_EQ(f.cmdCancelar.Caption(), "Cancelar");
  EXPECT_EQ(f.Command1.Caption(), "");
  for (int caja : {0, 1}) {
    EXPECT_EQ(f.MultiCombo1(caja).buscar(), "Estaciones");
    EXPECT_EQ(f.MultiCombo1(caja).Field(), &f.txtFields(caja));
    EXPECT_EQ(f.txtFields(caja).Container(), &f.MultiCombo1(caja));
  }
  EXPECT_EQ(f.MultiCombo1.Count(), 2);
  EXPECT_EQ(f.txtFields.Count(), 5);
  EXPECT_EQ(f.lblLabel.Count(), 4);
}

TEST_F(Estaciones, FieldsHaveNoTypeAndStartEmpty) {
  frmMovEstaciones& f = Abre();
  f.txtFields.Each([](forms::TextBox& campo) {
    EXPECT_EQ(campo.Tag(), "") << campo.FullName();
    EXPECT_EQ(campo.Text(), "") << campo.FullName();
    EXPECT_EQ(campo.MaxLength(), 0) << campo.FullName();
  });
  for (forms::Control* control : f.Controls()) {
    EXPECT_TRUE(control->Enabled()) << control->FullName();
    EXPECT_TRUE(control->Visible()) << control->FullName();
  }
  EXPECT_FALSE(f.CancelaProceso);
  EXPECT_EQ(f.Id, 12);
}

TEST_F(Estaciones, TheKeyboardsWay) {
  frmMovEstaciones& f = Abre();
  Textos orden;
  for (forms::Control* control : f.TabOrder()) orden.push_back(control->FullName());
  ASSERT_EQ(orden.size(), 11u);
  EXPECT_EQ(Textos(orden.begin(), orden.begin() + 7),
            (Textos{"txtFields(0)", "txtFields(1)", "DTPicker1", "txtFields(2)", "txtFields(4)", "Command1",
                    "cmdConfirmar"}));
  const auto lugar = [&](const std::string& nombre) {
    return std::find(orden.begin(), orden.end(), nombre) - orden.begin();
  };
  EXPECT_GT(lugar("txtFields(3)"), lugar("cmdPendiente"));  // for show, behind the buttons
  EXPECT_GT(lugar("txtFields(3)"), lugar("cmdCancelar"));
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Entrega).HasFocus());
}

// ---- loading ----

TEST_F(Estaciones, LoadingFiresItsKeyWithTheDateOfTodayAndConnectsTheSearchesBehindIt) {
  bool visto = false;
  Gancho("MOVESTACIONES001", [&](frmMovEstaciones& f) {
    visto = true;
    EXPECT_EQ(f.DTPicker1.Value(), (data::Date{2024, 3, 5}));
    EXPECT_EQ(f.Id, 12);
    EXPECT_EQ(f.MultiCombo1(0).Conexion(), nullptr);
    EXPECT_EQ(f.MultiCombo1(1).Conexion(), nullptr);
    EXPECT_FALSE(f.Visible());
  });
  movimientos->movimientoEstacion(12, false);
  EXPECT_TRUE(visto);
  frmMovEstaciones& f = Ultima();
  EXPECT_EQ(Claves(), (Textos{"MOVESTACIONES001"}));
  for (int caja : {0, 1}) EXPECT_EQ(f.MultiCombo1(caja).Conexion(), &anfitrion->Ambiente().Conexion());
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_TRUE(bitacora.presentadas.empty());
}

TEST_F(Estaciones, WhatTheLoadingRoutineSetsStays) {
  Gancho("MOVESTACIONES001", [](frmMovEstaciones& f) {
    f.DTPicker1.Value(data::Date{2024, 2, 29});
    f.txtFields(campo_de_traspaso::Entrega).Text("E1");
    LlenaGrid(f, 2);
  });
  frmMovEstaciones& f = Abre();
  EXPECT_EQ(f.DTPicker1.Value(), (data::Date{2024, 2, 29}));
  EXPECT_EQ(f.txtFields(campo_de_traspaso::Entrega).Text(), "E1");
  EXPECT_EQ(f.txtFields(campo_de_traspaso::Entrega).SelLength(), 2);  // entered on show
  EXPECT_EQ(EnGrid(f), (Textos{"A-1", "A-2"}));
}

TEST_F(Estaciones, AVetoWhileLoadingIsNotLookedAtThen) {
  Veta("MOVESTACIONES001");
  frmMovEstaciones& f = Abre();
  EXPECT_TRUE(f.Visible());
  EXPECT_TRUE(f.CancelaProceso);  // and so it is the first button's
  f.Click(f.cmdCancelar);
  EXPECT_TRUE(f.Open());
  EXPECT_FALSE(f.CancelaProceso);
}

TEST_F(Estaciones, AnErrorWhileLoadingReachesTheCallerAndLeavesNoScreen) {
  Gancho("MOVESTACIONES001", [](frmMovEstaciones&) { throw data::Error("sin tabla de traspasos"); });
  for (bool modal : {false, true}) {
    try {
      movimientos->movimientoEstacion(12, modal);
      ADD_FAILURE() << "nothing was thrown";
    } catch (const data::Error& error) {
      EXPECT_STREQ(error.what(), "sin tabla de traspasos");
    }
    EXPECT_TRUE(plataforma.Screens().empty());
  }
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_EQ(ArchivoDelDia(), "");
}

TEST_F(Estaciones, WithoutAContextTheScreenDoesNotLoad) {
  movimientos->Ambiente = nullptr;
  EXPECT_THROW(movimientos->movimientoEstacion(12, false), data::Error);
  EXPECT_TRUE(plataforma.Screens().empty());
}

// ---- what comes with a key ----

// A host that notes how its routines are asked for, and lends all else from another.
class HostEspia final : public service::Host, private service::ConsultasCatalogo {
 public:
  explicit HostEspia(service::Host& otro) : otro_(otro) {}

  struct Llamada {
    std::string clave;
    forms::Form* pantalla;
    service::Ambiente* ambiente;
  };
  std::vector<Llamada> llamadas;

  forms::Platform& Plataforma() override { return otro_.Plataforma(); }
  service::Funciones& Funciones() override { return otro_.Funciones(); }
  service::ConsultasCatalogo& ConsultasCatalogo() override { return *this; }
  std::unique_ptr<service::MovimientoInventario> NuevoMovimiento() override {
    return otro_.NuevoMovimiento();
  }
  std::unique_ptr<service::BuscadorCatalogo> NuevoBuscador() override { return otro_.NuevoBuscador(); }
  std::unique_ptr<service::AuxiliarNumerico> NuevoAuxiliar() override { return otro_.NuevoAuxiliar(); }
  std::unique_ptr<service::ListaArticulos> NuevaLista() override { return otro_.NuevaLista(); }

 private:
  void BuscaCatalogo(const std::string& key, forms::Form& screen, service::Ambiente& ambiente) override {
    llamadas.push_back({key, &screen, &ambiente});
  }
  void ImprimeDocumento(const std::string&, std::int32_t, service::Ambiente&, forms::Form&) override {}

  service::Host& otro_;
};

TEST_F(Estaciones, EveryKeyComesWithItsScreenAndItsContext) {
  HostEspia espia(*anfitrion);
  auto f = std::make_shared<frmMovEstaciones>(espia);
  f->Ambiente = &anfitrion->Ambiente();
  f->Show(false);
  f->Enter(f->txtFields(campo_de_traspaso::Recibe));
  f->cmdCancelar_Click();
  Textos claves;
  for (const auto& llamada : espia.llamadas) {
    claves.push_back(llamada.clave);
    EXPECT_EQ(llamada.pantalla, f.get()) << llamada.clave;
    EXPECT_EQ(llamada.ambiente, &anfitrion->Ambiente()) << llamada.clave;
  }
  EXPECT_EQ(claves, (Textos{"MOVESTACIONES001", "MOVESTACIONES002", "MOVESTACIONES004", "MOVESTACIONES007"}));
}

// ---- failures ----

TEST_F(Estaciones, WhatFailsInAnEventIsToldToThePlatformAndNotReported) {
  frmMovEstaciones& f = Abre();
  LlenaGrid(f, 1);
  const auto sale = [&](const char* servicio, const std::function<void()>& acto) {
    Olvida();
    bitacora.FallaServicio(servicio, 1, "falla provocada");
    acto();
    EXPECT_EQ(no_atrapados, (Textos{"falla provocada"})) << servicio;
    EXPECT_TRUE(bitacora.mensajes.empty()) << servicio;
    EXPECT_TRUE(f.Open()) << servicio;
  };
  sale("EnviaTeclas", [&] { Tecla(f, "Enter", f.txtFields(campo_de_traspaso::Entrega)); });
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Entrega).HasFocus());
  sale("EnviaTeclas", [&] { Tecla(f, "Enter", f.DTPicker1); });
  f.Enter(f.txtFields(campo_de_traspaso::Entrega));
  sale("BuscaCatalogo", [&] { f.Enter(f.txtFields(campo_de_traspaso::Recibe)); });
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Recibe).HasFocus());  // the focus is where the hand went
  f.Enter(f.DTPicker1);
  sale("BuscaCatalogo", [&] { f.Click(f.Command1); });
  sale("Pregunta", [&] { Tecla(f, "Delete", f.grid); });
  EXPECT_EQ(f.grid.Rows(), 2);
  sale("BuscaCatalogo", [&] { f.Close(); });
  EXPECT_EQ(ArchivoDelDia(), "");
}

TEST_F(Estaciones, WhatFailsOnKeyUpIsIgnoredAndTheNextStepRuns) {
  frmMovEstaciones& f = Abre();
  f.Enter(f.txtFields(campo_de_traspaso::Articulo));
  Olvida();
  bitacora.FallaServicio("Muestra", 1, "falla provocada");
  Tecla(f, "Down");
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Articulo).HasFocus());
  plataforma.on_search_list = [](forms::SearchBox&) { throw data::Error("falla provocada"); };
  f.Enter(f.txtFields(campo_de_traspaso::Entrega));
  f.txtFields(campo_de_traspaso::Entrega).Text("E2");
  f.txtFields(campo_de_traspaso::Entrega).SelStart(2);
  Tecla(f, "Down");
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_EQ(f.txtFields(campo_de_traspaso::Entrega).SelStart(), 0);
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(Estaciones, MovingTheFocusWhereItCannotGoIsIgnored) {
  frmMovEstaciones& f = Abre();
  f.txtFields(campo_de_traspaso::Cantidad).Enabled(false);
  f.ColocaFoco(f.txtFields(campo_de_traspaso::Cantidad));
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Entrega).HasFocus());
  f.ColocaFoco(f.txtFields(campo_de_traspaso::Recibe));
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Recibe).HasFocus());
}

// ---- shown ----

TEST_F(Estaciones, AModalTransferReturnsOnceItIsClosed) {
  Textos orden;
  plataforma.on_modal = [&](forms::Form& forma) {
    auto& f = dynamic_cast<frmMovEstaciones&>(forma);
    orden.push_back(f.Visible() ? "visible" : "hidden");
    f.Click(f.cmdConfirmar);
    orden.push_back(f.Open() ? "open" : "closed");
  };
  movimientos->movimientoEstacion(12, true);
  EXPECT_EQ(orden, (Textos{"visible", "closed"}));
  EXPECT_EQ(Claves(),
            (Textos{"MOVESTACIONES001", "MOVESTACIONES002", "MOVESTACIONES006", "MOVESTACIONES007"}));
  EXPECT_TRUE(plataforma.Screens().empty());
}

TEST_F(Estaciones, TwoTransfersStandBesideEachOtherAndShareTheContext) {
  frmMovEstaciones& primera = Abre();
  movimientos->movimientoEstacion(13, false);
  frmMovEstaciones& segunda = Ultima();
  EXPECT_EQ(primera.Ambiente.Get(), segunda.Ambiente.Get());
  EXPECT_EQ(primera.Id, 12);
  EXPECT_EQ(segunda.Id, 13);
  segunda.Click(segunda.cmdCancelar);
  EXPECT_TRUE(primera.Open());
  EXPECT_EQ(plataforma.Screens().size(), 1u);
}

}  // namespace
}  // namespace tarvik::tests
