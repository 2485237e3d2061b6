// Failures of whole events on goods-out: loading, finishing, closing, the host's list, a posting that breaks
// in the middle, and a log that cannot be written. Single steps are in failures_test.cpp.
#include "goods_out/columnas.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

// A host's form that names its list and fails in everything else.
class ListaRota : public service::LateBound {
 public:
  bool responde = false;
  std::string catalogo = "Salidas";
  std::vector<std::string> llamadas;
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

class FallasDeEventosDeSalida : public EscenarioDeSalidas {
 protected:
  frmSalidasWizard& Tres() { return Salida({{"A-100", "3"}, {"A-200", "2"}, {"A-100", "1"}}); }
  void Falla(const std::string& servicio, int veces = 1) {
    bitacora.FallaServicio(servicio, veces, "falla provocada");
  }
  void FallaSentencia(const std::string& patron, int veces = 1) {
    bitacora.Falla(patron, veces, "falla provocada");
  }
  void Acepta(frmSalidasWizard& f) {
    bitacora.respuestas.push_back(true);
    f.Command5_Click();
  }
  // Arms the failure when the question is put, behind the checks of the header.
  void FallaTrasLaPregunta(const std::string& servicio) {
    auto caja = plataforma.on_box;
    plataforma.on_box = [this, caja, servicio](forms::BoxKind clase, const std::string& texto, int estilo) {
      if (clase == forms::BoxKind::Question) Falla(servicio);
      return caja(clase, texto, estilo);
    };
  }
  Textos Procedimientos() {
    Textos nombres;
    for (const auto& reporte : Reportes()) {
      const auto desde = reporte.find("Function: ") + 10;
      std::string nombre = reporte.substr(desde, reporte.find("\r\n", desde) - desde);
      if (reporte.find("Description: falla provocada código duro: 0\r\n") == std::string::npos) nombre += "*";
      nombres.push_back(nombre);
    }
    return nombres;
  }
};

// ---- loading ----

TEST_F(FallasDeEventosDeSalida, AScreenLoadsWithoutABuilderADateOrItsSettings) {
  const std::pair<const char*, Textos> casos[] = {{"NuevoQuery", {"Form_Load", "Form_Load*"}},
                                                  {"FechaDeTrabajo", {"Form_Load"}},
                                                  {"FormateaTexto", {"Form_Load"}},
                                                  {"Parametros", {"Form_Load"}}};
  for (const auto& [servicio, reportes] : casos) {
    Olvida();
    Falla(servicio);
    frmSalidasWizard& f = NuevaSalida();
    EXPECT_EQ(Procedimientos(), reportes) << servicio;
    EXPECT_EQ(f.txtFields(campo::Almacen).Text(), std::string(servicio) == "Parametros" ? "" : "1")
        << servicio;
    EXPECT_TRUE(f.Visible());
    EXPECT_TRUE(f.Acumulado);
  }
}

TEST_F(FallasDeEventosDeSalida, ADocumentOpensWithoutItsLockOrItsLines) {
  DocumentoGuardado(2);
  for (const char* servicio : {"TipoSentencia", "AgregaCampo", "Condicion", "Ejecuta"}) {
    Olvida();
    Falla(servicio);
    frmSalidasWizard& f = ModificaSalida(7);
    EXPECT_EQ(Procedimientos(), (Textos{"Form_Load"})) << servicio;
    EXPECT_EQ(Uno("SELECT ocupado FROM salidas"), "0") << servicio;
    EXPECT_EQ(Celda(f, 2, columna_salida::Cantidad), "2.5");
    f.Discard();
  }
  Olvida();
  FallaSentencia("FROM salpart WHERE salida = \\(");
  frmSalidasWizard& f = ModificaSalida(7);
  EXPECT_EQ(Procedimientos(), (Textos{"Form_Load", "Form_Load*"}));
  EXPECT_EQ(Celda(f, 1, columna_salida::Articulo), "");
  EXPECT_EQ(Uno("SELECT ocupado FROM salidas"), "1");
}

TEST_F(FallasDeEventosDeSalida, AChangeThatFailsWhileLoadingBelongsToTheAssignment) {
  DocumentoGuardado(1);
  Sql("UPDATE salidas SET cliente = 'C1', direccionembarque = 'Calle', paraempleado = 1");
  FallaSentencia("FROM clients");
  Gancho("SALIDAS015", [](frmSalidasWizard&) { throw data::Error("falla provocada"); });
  frmSalidasWizard& f = ModificaSalida(7);
  EXPECT_EQ(Procedimientos(), (Textos{"Form_Load", "Form_Load"}));
  EXPECT_EQ(f.txtFields(campo::Cliente).Text(), "C1");
  EXPECT_EQ(f.txtFields(campo::NombreDelCliente).Text(), "");
  EXPECT_EQ(f.txtFields(campo::DireccionDeEmbarque).Text(), "Calle");
  EXPECT_EQ(f.Check1.Value(), 1);
}

TEST_F(FallasDeEventosDeSalida, TheEndOfTheLoadingDropsItsErrors) {
  Gancho("SALIDAS001", [](frmSalidasWizard&) { throw data::Error("falla provocada"); });
  Falla("PresentaForma");
  frmSalidasWizard& f = NuevaSalida();
  EXPECT_TRUE(Reportes().empty());
  EXPECT_TRUE(bitacora.presentadas.empty());
  EXPECT_TRUE(f.Visible());
}

// ---- finishing ----

TEST_F(FallasDeEventosDeSalida, AQuestionWithoutTextIsStillPutAndOneThatCannotBePutIsANo) {
  frmSalidasWizard& f = Tres();
  Falla("Pregunta");
  Acepta(f);
  EXPECT_EQ(Procedimientos(), (Textos{"Command5_Click"}));
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "PE");
  Olvida();
  bitacora.respuestas.clear();
  Falla("TraeMensaje");
  Acepta(f);
  EXPECT_EQ(Procedimientos(), (Textos{"Command5_Click"}));
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "CO");
}

TEST_F(FallasDeEventosDeSalida, AKeyThatCannotBeLookedUpIsRefused) {
  const std::pair<const char*, std::function<void(frmSalidasWizard&)>> casos[] = {
      {"No se encuentra el empleado indicado",
       [](frmSalidasWizard& f) {
         f.txtFields(campo::Empleado).Text("M7");
         f.Check1.Value(1);
       }},
      {"No existe la estación de trabajo",
       [](frmSalidasWizard& f) {
         f.txtFields(campo::EstacionDestino).Text("E2");
         f.SSCheck2.Value(1);
       }},
      {"No existe la sucursal indicada",
       [](frmSalidasWizard& f) { f.txtFields(campo::Sucursal).Text("NTE"); }},
      {"El cliente indicado no existe", [](frmSalidasWizard& f) { f.txtFields(campo::Cliente).Text("C1"); }}};
  const auto caja = plataforma.on_box;
  for (const auto& [aviso, prepara] : casos) {
    frmSalidasWizard& f = Salida({{"A-100", "1"}});
    prepara(f);
    Olvida();
    FallaTrasLaPregunta("ExisteClave");
    Acepta(f);
    plataforma.on_box = caja;
    EXPECT_EQ(Procedimientos(), (Textos{"Command5_Click"})) << aviso;
    EXPECT_EQ(bitacora.mensajes.back().texto, aviso);
    EXPECT_EQ(bitacora.mensajes.back().clase, "error");
    EXPECT_TRUE(f.Command5.Enabled());
    f.Discard();
  }
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salidas WHERE estado = 'CO'"), "0");
}

TEST_F(FallasDeEventosDeSalida, ADateThatCannotBeCheckedIsRefused) {
  frmSalidasWizard& f = Tres();
  Falla("FechaValida");
  Acepta(f);
  EXPECT_EQ(Procedimientos(), (Textos{"Command5_Click"}));
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "PE");
  EXPECT_TRUE(f.Command1.Enabled() && f.Command2.Enabled() && f.Command5.Enabled());
}

TEST_F(FallasDeEventosDeSalida, RoutinesThatFailDoNotKeepTheDocumentFromPostingAndPrinting) {
  frmSalidasWizard& f = Tres();
  for (const char* clave : {"SALIDAS016", "SALIDAS005", "SALIDAS006"}) {
    Gancho(clave, [](frmSalidasWizard&) { throw data::Error("falla provocada"); });
  }
  Acepta(f);
  EXPECT_EQ(Procedimientos(), (Textos{"Command5_Click", "Command1_Click", "Form_Unload"}));
  EXPECT_EQ(bitacora.movimientos.size(), 3u);
  EXPECT_EQ(bitacora.impresos.size(), 1u);
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(Uno("SELECT ocupado FROM salidas"), "0");
}

TEST_F(FallasDeEventosDeSalida, AHostsListThatFailsIsNotReported) {
  for (bool responde : {false, true}) {
    frmSalidasWizard& f = Tres();
    ListaRota rota;
    rota.responde = responde;
    f.Parent = &rota;
    Acepta(f);
    EXPECT_TRUE(Reportes().empty());
    // A list whose name cannot be told is left alone; the move of the focus is the closing's.
    EXPECT_EQ(rota.llamadas, responde ? (Textos{"LlenaSalidas", "ReseteaMenus", "EstableceMenus", "SetFocus"})
                                      : (Textos{"SetFocus"}));
    EXPECT_FALSE(f.Open());
  }
}

TEST_F(FallasDeEventosDeSalida, AStateThatCannotBeReadCountsAsPending) {
  frmSalidasWizard& f = Tres();
  ListaRota rota;
  rota.responde = true;
  rota.catalogo = "SalidasPendientes";
  f.Parent = &rota;
  f.Check3.Value(1);
  Gancho("SALIDAS016", [](frmSalidasWizard& g) { g.rstSalida = {}; });
  f.Command5_Click();
  EXPECT_EQ(rota.llamadas.front(), "LlenaSalidasPendientes");
  EXPECT_EQ(Procedimientos(), (Textos{"Form_Unload*"}));  // the lock is released by the row that is gone
}

TEST_F(FallasDeEventosDeSalida, APostingThatBreaksOnTheMiddleLineKeepsTheOthersAndTheDocumentPosted) {
  frmSalidasWizard& f = Tres();
  f.RichTextBox1.OnChange = [&] {
    if (f.RichTextBox1.Text() == "Afectando: A-200 2") Falla("Afecta");
  };
  Acepta(f);
  EXPECT_EQ(Procedimientos(), (Textos{"AfectaPartidas"}));
  EXPECT_EQ(bitacora.movimientos.size(), 2u);
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A-100'"), "6");
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A-200'"), "4");
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "CO");
  EXPECT_EQ(f.Costo, 3 * 61.5 * 2 + 61.5);  // the failed line adds the amount that stood there
  EXPECT_FALSE(f.Open());
}

TEST_F(FallasDeEventosDeSalida, AHeaderThatCannotBeSavedDoesNotKeepItsLinesFromStock) {
  frmSalidasWizard& f = Tres();
  FallaSentencia("^UPDATE salidas SET sucursal");
  Acepta(f);
  EXPECT_EQ(Procedimientos().front(), "SalvaSalida");
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "PE");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "3");
  EXPECT_FALSE(f.Open());
}

TEST_F(FallasDeEventosDeSalida, LinesThatCannotBeReadPostNothingAndTheScreenCloses) {
  frmSalidasWizard& f = Tres();
  FallaSentencia("FROM salpart WHERE \\(\\(\\(salida\\)=1\\)\\)$");
  Acepta(f);
  EXPECT_EQ(Procedimientos(), (Textos{"SalvaPartidas", "SalvaPartidas*", "AfectaPartidas*"}));
  EXPECT_TRUE(bitacora.movimientos.empty());
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "CO");
  EXPECT_FALSE(f.Open());
}

// ---- events without a trap, and the log ----

TEST_F(FallasDeEventosDeSalida, FieldsAndTheCellsBoxHaveNoTrap) {
  frmSalidasWizard& f = Tres();
  Falla("TeclaNumerica");
  Tecla(f, "1", f.txtFields(campo::Cantidad));
  f.txtFields(campo::SegundaClave).Text("7501");
  f.Enter(f.txtFields(campo::Cantidad));
  FallaSentencia("FROM clavesadd");
  Tecla(f, "1");
  f.txtFields(campo::Articulo).SetFocus();
  Falla("BuscaCatalogo");
  f.Enter(f.txtFields(campo::DireccionDeEmbarque));
  f.ClickCell(f.fg2, 1, 1);
  Tecla(f, "9");
  Falla("TeclaNumerica");
  Tecla(f, "8");
  EXPECT_TRUE(Reportes().empty());
  EXPECT_EQ(no_atrapados, Textos(4, "falla provocada"));
}

TEST_F(FallasDeEventosDeSalida, ThreeFailingStepsAreThreeBoxesAndThreeEntriesOfTheDay) {
  frmSalidasWizard& f = Tres();
  Fila(f, "A-200", "1");
  FallaSentencia("SELECT linea|SELECT id_salida|INSERT INTO salpart", 3);
  f.LlenaPartida();
  std::string diario;
  for (const auto& mensaje : bitacora.mensajes) diario += mensaje.texto;
  EXPECT_EQ(Procedimientos(), (Textos{"LlenaPartida", "CreaPartida", "CreaPartida*", "CreaPartida"}));
  EXPECT_EQ(ArchivoDelDia(), diario);
  EXPECT_TRUE(ArchivoDelDia().starts_with(
      "14:03:22 Ocurrió un error:\r\nModule: frmSalidasWiz\r\nFunction: LlenaPartida\r\nDescription: "));
}

TEST_F(FallasDeEventosDeSalida, ALogThatCannotBeWrittenEndsTheEventAndThePlatformIsTold) {
  frmSalidasWizard& f = Tres();
  Fila(f, "A-200", "1");
  f.Enter(f.txtFields(campo::Precio));
  Olvida();
  FallaSentencia("SELECT linea");
  bitacora.FallaServicio("AgregaArchivoLog", 1, "disco lleno");
  Tecla(f, "Enter");
  EXPECT_EQ(Reportes(), (Textos{Reporte("LlenaPartida")}));
  EXPECT_EQ(ArchivoDelDia(), "");
  EXPECT_EQ(no_atrapados, (Textos{"disco lleno"}));
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "3");
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-200");
}

}  // namespace
}  // namespace tarvik::tests
