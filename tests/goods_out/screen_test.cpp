// The goods-out screen: its controls as designed, loading in the three modes, the lock.
#include <set>

#include "goods_out/columnas.h"
#include "tests/goods_out/screen.h"

namespace tarvik::tests {
namespace {

// ---- as designed ----

TEST_F(PantallaDeSalidas, HasTheTitleUntilACallerReplacesIt) {
  EXPECT_EQ(NuevaSalida().Caption(), "Asistente para salidas de almacén.");
  EXPECT_EQ(UltimaSalida().Name(), "frmSalidasWizard");
  DocumentoGuardado();
  EXPECT_EQ(ModificaSalida(7).Caption(), "Salida: 70");
}

TEST_F(PantallaDeSalidas, TheKeyboardsWayFollowsHeaderLinesAndTotals) {
  frmSalidasWizard& f = NuevaSalida();
  const Textos esperado{"txtFields(0)",  "RichTextBox3",  "DTPicker1",     "txtFields(14)", "SSCheck1",
                        "txtFields(2)",  "Check5",        "txtFields(3)",  "SSCheck2",      "txtFields(9)",
                        "txtFields(13)", "txtFields(15)", "txtFields(7)",  "DTPicker2",     "txtFields(12)",
                        "RichTextBox1",  "Check1",        "txtFields(16)", "fg2",           "txtEdit",
                        "txtFields(4)",  "txtFields(24)", "txtFields(1)",  "txtFields(5)",  "txtFields(27)",
                        "txtFields(6)",  "txtFields(25)", "txtFields(26)", "txtFields(28)", "txtFields(29)",
                        "RichTextBox2",  "Combo1",        "txtFields(17)", "txtFields(10)", "txtFields(8)",
                        "txtFields(11)", "Check3",        "Check2",        "Check4",        "Command5",
                        "Command2",      "Command1",      "Command6"};
  Textos orden;
  int anterior = -1;
  for (forms::Control* control : f.TabOrder()) {
    orden.push_back(control->FullName());
    EXPECT_GT(control->TabIndex(), anterior) << control->FullName();
    anterior = control->TabIndex();
  }
  EXPECT_EQ(orden, esperado);
  EXPECT_GT(f.wb.TabIndex(), f.txtEdit.TabIndex());  // on the way, though it never takes the focus
  EXPECT_LT(f.wb.TabIndex(), f.txtFields(campo::Articulo).TabIndex());
  EXPECT_EQ(f.ActiveControl(), &f.txtFields(campo::Concepto));
}

TEST_F(PantallaDeSalidas, EveryFieldHasItsTypeAndItsSearch) {
  frmSalidasWizard& f = NuevaSalida();
  const std::pair<int, const char*> tipos[] = {
      {0, "U"}, {14, "SN"}, {2, "SN"}, {3, "U"}, {9, "U"},  {13, "U"}, {15, "U"}, {7, ""},
      {12, ""}, {16, "U"},  {4, ""},   {24, ""}, {1, "SD"}, {5, "SD"}, {27, ""},  {6, "N"},
      {25, ""}, {26, ""},   {28, ""},  {29, ""}, {17, ""},  {10, ""},  {8, ""},   {11, ""}};
  EXPECT_EQ(f.txtFields.Count(), static_cast<int>(std::size(tipos)));
  for (const auto& [campo, tipo] : tipos) EXPECT_EQ(f.txtFields(campo).Tag(), tipo) << campo;
  struct {
    int caja, campo;
    const char* busca;
  } const cajas[] = {{0, 0, "Conceptos de salidas de inventario"},
                     {1, 14, "Almacenes"},
                     {2, 4, "Articulos"},
                     {3, 2, "Almacenes"},
                     {4, 3, "sucursales"},
                     {5, 24, "Claves adicionales de articulos"},
                     {6, 9, "Estaciones"},
                     {7, 13, "Clientes"},
                     {8, 16, "Empleados"}};
  EXPECT_EQ(f.MultiCombo1.Count(), 9);
  for (const auto& [caja, campo, busca] : cajas) {
    EXPECT_EQ(f.MultiCombo1(caja).buscar(), busca) << caja;
    EXPECT_EQ(f.MultiCombo1(caja).Field(), &f.txtFields(campo)) << caja;
    EXPECT_EQ(f.MultiCombo1(caja).Conexion(), &anfitrion->Ambiente().Conexion()) << caja;
  }
}

TEST_F(PantallaDeSalidas, TheLabelsAndButtonsReadAsTheOperatorKnowsThem) {
  frmSalidasWizard& f = NuevaSalida();
  EXPECT_EQ(f.Label12.Caption(), "Concepto de la Salida.");
  EXPECT_EQ(f.Label23.Caption(), "Fecha del documento");
  EXPECT_EQ(f.Label25.Caption(), "Almacen");
  EXPECT_EQ(f.SSCheck1.Caption(), "Traspaso al almacen");
  EXPECT_EQ(f.Check5.Caption(), "Traspaso entre sucursales");
  EXPECT_EQ(f.SSCheck2.Caption(), "Traspaso a estación de trabajo");
  EXPECT_EQ(f.Label6.Caption(), "Cliente");
  EXPECT_EQ(f.Label1.Caption(), "Entrada remota");
  EXPECT_EQ(f.Label9.Caption(), "Fecha de retorno del material");
  EXPECT_EQ(f.Check1.Caption(), "Asignación a empleado");
  EXPECT_EQ(f.Label7.Caption(), "Hoja de distribución");
  EXPECT_EQ(f.Label17.Caption(), "Artículo");
  EXPECT_EQ(f.Label18.Caption(), "Cantidad");
  EXPECT_EQ(f.Label5.Caption(), "Unidad");
  EXPECT_EQ(f.Label19.Caption(), "Precio");
  EXPECT_EQ(f.Label4.Caption(), "Presentacion: (F8)");
  EXPECT_EQ(f.Label10(0).Caption(), "Observaciones al movimiento de entrada.");
  EXPECT_EQ(f.Label10(1).Caption(), "Dejar como movimiento pendiente");
  EXPECT_EQ(f.Label10(2).Caption(), "Imprimir movimiento.");
  EXPECT_EQ(f.Label11.Caption(), "Dirección de embarque");
  EXPECT_EQ(f.Label3.Caption(), "RENGLONES");
  EXPECT_EQ(f.Label2.Caption(), "UNIDADES");
  EXPECT_EQ(f.Label8.Caption(), "T O T  A L");
  EXPECT_EQ(f.Check4.Caption(), "Lector de Código de Barras");
  EXPECT_EQ(f.Command5.Caption(), "&Finalizar (F5)");
  EXPECT_EQ(f.Command2.Caption(), "&Cancelar");
  EXPECT_EQ(f.Command1.Caption(), "&Re enviar a sucursal");
  EXPECT_EQ(f.Command6.Caption(), "..");
}

TEST_F(PantallaDeSalidas, TheStatesAtDesign) {
  frmSalidasWizard f(*anfitrion);
  const std::set<int> cerrados{1, 7, 8, 10, 11};
  f.txtFields.Each([&](forms::TextBox& campo) {
    EXPECT_EQ(campo.Enabled(), !cerrados.contains(*campo.Index())) << campo.FullName();
    EXPECT_EQ(campo.Visible(), *campo.Index() != 9 && *campo.Index() != 12) << campo.FullName();
  });
  EXPECT_FALSE(f.SSCheck2.Visible());
  EXPECT_FALSE(f.MultiCombo1(6).Visible());
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_TRUE(f.Command1.Enabled());
  EXPECT_TRUE(f.Command5.Enabled());
  EXPECT_EQ(f.Check2.Value(), 1);
  for (forms::CheckBox* caja : {&f.Check1, &f.Check3, &f.Check4, &f.Check5, &f.SSCheck1, &f.SSCheck2}) {
    EXPECT_EQ(caja->Value(), 0) << caja->Name();
  }
  EXPECT_EQ(f.fg2.Rows(), 5000);
  EXPECT_EQ(f.fg2.Cols(), 11);
  EXPECT_EQ(f.fg2.FixedRows(), 1);
  EXPECT_EQ(f.fg2.FixedCols(), 0);
  EXPECT_EQ(f.Salida, 0);
  EXPECT_EQ(f.UltimaPartida, 0);
  EXPECT_FALSE(f.Acumulado);
}

TEST_F(PantallaDeSalidas, TheGridsHeadersAndWidths) {
  frmSalidasWizard sin_cargar(*anfitrion);
  const int de_fabrica = sin_cargar.fg2.ColWidth(columna_salida::Articulo);
  frmSalidasWizard& f = NuevaSalida();
  const std::pair<const char*, int> columnas[] = {{"Artículo", (de_fabrica * 3 + 1) / 2},
                                                  {"QTY", 800},
                                                  {"Existencia", 900},
                                                  {"Precio", 900},
                                                  {"Importe", 0},
                                                  {"Descripción", 4000},
                                                  {"No de salida", 0},
                                                  {"Presentación", 1000},
                                                  {"Pr. QTY", 1000},
                                                  {"", 0},
                                                  {"", 0}};
  int columna = 0;
  for (auto [titulo, ancho] : columnas) {
    EXPECT_EQ(Celda(f, 0, columna), titulo);
    EXPECT_EQ(f.fg2.ColWidth(columna), ancho) << columna;
    ++columna;
  }
  EXPECT_EQ(f.fg2.Row(), 1);
  EXPECT_EQ(f.fg2.Col(), columna_salida::Articulo);
}

TEST_F(PantallaDeSalidas, ThreePanelsHoldTheControls) {
  frmSalidasWizard& f = NuevaSalida();
  auto panel = [](const forms::Control& control) {
    const forms::Control* en = control.Container();
    while (en != nullptr && en->Container() != nullptr) en = en->Container();
    return en == nullptr ? std::string() : en->Name();
  };
  for (int campo : {0, 14, 2, 3, 9, 13, 15, 7, 12}) EXPECT_EQ(panel(f.txtFields(campo)), "Picture1") << campo;
  EXPECT_EQ(panel(f.txtFields(campo::Empleado)), "Picture2");
  EXPECT_EQ(panel(f.fg2), "Picture2");
  EXPECT_EQ(panel(f.txtEdit), "Picture2");
  EXPECT_EQ(panel(f.wb), "Picture2");
  for (int campo : {4, 24, 1, 5, 27, 6, 25, 26, 28, 29, 17, 10, 8, 11}) {
    EXPECT_EQ(panel(f.txtFields(campo)), "Picture3") << campo;
  }
  EXPECT_EQ(panel(f.Command5), "Picture3");
}

// ---- loading ----

TEST_F(PantallaDeSalidas, ANewDocumentStartsAtTheWorkingDateAndTheStationsWarehouse) {
  anfitrion->Ambiente().Parametro("Almacen", 2);
  anfitrion->Ambiente().Pon("ValorFechaA", 3);
  data::Date esperada;
  anfitrion->Funciones().FechaDeTrabajo(3, 0, esperada);
  frmSalidasWizard& f = NuevaSalida();
  EXPECT_EQ(f.DTPicker1.Value(), esperada);
  EXPECT_EQ(f.DTPicker2.Value(), esperada);
  EXPECT_EQ(f.txtFields(campo::Almacen).Text(), "2");
  EXPECT_EQ(f.txtFields(campo::Concepto).Text(), "");
  EXPECT_EQ(f.NumeroDePartidas, 7);
  EXPECT_TRUE(f.Acumulado);
  EXPECT_TRUE(f.Query);
  EXPECT_EQ(f.Modo, "ALTA");
}

TEST_F(PantallaDeSalidas, AStoredDocumentFillsHeaderAndLines) {
  DocumentoGuardado(2);
  Sql("UPDATE salidas SET cliente = 'C1', direccionembarque = 'Otra calle', estraspaso = 1, almt = 1, "
      "traspasoaestacion = 1, estaciontraspaso = 'E2', esparasucursal = 1, sucursal = 'NTE', EntSuc = 31, "
      "paraempleado = 1, empleado = 'M7', fecharetorno = '2024-06-01'");
  frmSalidasWizard& f = ModificaSalida(7);
  const std::pair<int, const char*> campos[] = {
      {0, "VTA"}, {14, "2"},         {3, "NTE"}, {7, "31"},
      {16, "M7"}, {9, "E2"},         {13, "C1"}, {15, "Ferretería del Sur"},
      {2, "1"},   {17, "Otra calle"}};
  for (const auto& [campo, texto] : campos) EXPECT_EQ(f.txtFields(campo).Text(), texto) << campo;
  EXPECT_EQ(f.Check5.Value(), 1);
  EXPECT_EQ(f.SSCheck1.Value(), 1);
  EXPECT_EQ(f.SSCheck2.Value(), 1);
  EXPECT_EQ(f.Check1.Value(), 1);
  EXPECT_EQ(f.DTPicker1.Value(), (data::Date{2024, 2, 28}));
  EXPECT_EQ(f.DTPicker2.Value(), (data::Date{2024, 6, 1}));
  EXPECT_EQ(f.RichTextBox3.Text(), "Venta vieja");
  EXPECT_EQ(f.RichTextBox2.Text(), "Frágil");
  const Textos primero{"A-100", "1.5", "-1.5", "11.6", "17.4", " Martillo", "71", "Caja", "1", "", ""};
  const Textos segundo{"A-100", "2.5", "-2.5", "11.6", "29", " ", "72", "Caja", "2", "", "7501"};
  for (int columna = 0; columna < 11; ++columna) {
    EXPECT_EQ(Celda(f, 1, columna), primero[static_cast<std::size_t>(columna)]) << columna;
    EXPECT_EQ(Celda(f, 2, columna), segundo[static_cast<std::size_t>(columna)]) << columna;
  }
  EXPECT_EQ(Celda(f, 3, columna_salida::Articulo), "");
  EXPECT_EQ(f.txtFields(campo::Renglones).Text(), "2");
  EXPECT_EQ(f.txtFields(campo::Unidades).Text(), "4");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "46.4");
  EXPECT_EQ(f.UltimaPartida, 2);
  EXPECT_EQ(f.rstPartidas->CursorType(), 1);
  EXPECT_EQ(f.rstPartidas->LockType(), 3);
  EXPECT_EQ(CuentaSentencias("SELECT * FROM salpart WHERE salida = (7)"), 1);
  EXPECT_EQ(f.fg2.Row(), 1);
  EXPECT_EQ(f.fg2.Col(), columna_salida::Articulo);
  EXPECT_EQ(f.Salida, 7);
}

TEST_F(PantallaDeSalidas, TheMarksThatAreSetFireTheirHooksWhileLoading) {
  DocumentoGuardado();
  Sql("UPDATE salidas SET traspasoaestacion = 1, paraempleado = 1");
  ModificaSalida(7);
  EXPECT_EQ(Claves(), (Textos{"SALIDAS012", "SALIDAS015", "SALIDAS009", "SALIDAS001"}));
  UltimaSalida().Discard();
  Sql("UPDATE salidas SET traspasoaestacion = 0, paraempleado = NULL, ocupado = 0");
  Olvida();
  ModificaSalida(7);
  EXPECT_EQ(Claves(), (Textos{"SALIDAS009", "SALIDAS001"}));
}

TEST_F(PantallaDeSalidas, NullColumnsOfTheHeaderShowAsNothingAndLeaveTheMarksOff) {
  Sql("INSERT INTO salidas (salida, estado) VALUES (?, ?)", {7, "PE"});
  frmSalidasWizard& f = ModificaSalida(7);
  for (int campo : {0, 14, 11, 3, 7, 16, 9, 13, 17, 2}) EXPECT_EQ(f.txtFields(campo).Text(), "") << campo;
  EXPECT_EQ(f.RichTextBox2.Text(), "");
  EXPECT_EQ(f.RichTextBox3.Text(), "");
  for (forms::CheckBox* caja : {&f.Check1, &f.Check5, &f.SSCheck1, &f.SSCheck2}) EXPECT_EQ(caja->Value(), 0);
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(PantallaDeSalidas, WithoutAStoredDayOfReturnThePickerStaysAsItWas) {
  DocumentoGuardado();
  frmSalidasWizard sin_cargar(*anfitrion);
  frmSalidasWizard& f = ModificaSalida(7);
  EXPECT_EQ(f.DTPicker2.Value(), sin_cargar.DTPicker2.Value());
  EXPECT_NE(f.DTPicker2.Value(), f.DTPicker1.Value());
}

TEST_F(PantallaDeSalidas, TheStoredDateAndDescriptionWinOverThoseOfTheConcept) {
  DocumentoGuardado();
  frmSalidasWizard& f = ModificaSalida(7);
  EXPECT_EQ(f.DTPicker1.Value(), (data::Date{2024, 2, 28}));
  EXPECT_EQ(f.RichTextBox3.Text(), "Venta vieja");
}

TEST_F(PantallaDeSalidas, AMarkThatIsStoredOffDoesNotTakeOffTheOneThatTheBranchHasSet) {
  DocumentoGuardado();
  Sql("UPDATE salidas SET sucursal = 'NTE', esparasucursal = 0");
  EXPECT_EQ(ModificaSalida(7).Check5.Value(), 1);
}

TEST_F(PantallaDeSalidas, ForChangeTheLockIsTaken) {
  DocumentoGuardado();
  ModificaSalida(7);
  EXPECT_EQ(Ocupado(), "1");
  EXPECT_EQ(CuentaSentencias("UPDATE salidas SET ocupado = 1 WHERE salidas.salida = 7"), 1);
}

TEST_F(PantallaDeSalidas, ForReadingTheLockStaysAsItIsOpenAndClosed) {
  DocumentoGuardado(1, "CO", 1);
  frmSalidasWizard& f = ConsultaSalida(7);
  f.Unload();
  EXPECT_EQ(Ocupado(), "1");
  EXPECT_EQ(CuentaSentencias("UPDATE"), 0);
}

TEST_F(PantallaDeSalidas, ADocumentWithoutLinesKeepsItsStoredTotal) {
  DocumentoGuardado();
  frmSalidasWizard& f = ModificaSalida(7);
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "23.2");
  EXPECT_EQ(f.txtFields(campo::Renglones).Text(), "");
  EXPECT_EQ(Celda(f, 1, columna_salida::Articulo), "");
}

TEST_F(PantallaDeSalidas, ForReadingOnlyGridResendAndCancelStayEnabled) {
  DocumentoGuardado(1);
  frmSalidasWizard& f = ConsultaSalida(7);
  const std::set<std::string> abiertos{"fg2", "Command1", "Command2"};
  for (forms::Control* control : f.Controls()) {
    if (dynamic_cast<forms::PictureBox*>(control) != nullptr) continue;  // told below by what it lets reach
    EXPECT_EQ(control->Enabled(), control->IsLabel() || abiertos.contains(control->FullName()))
        << control->FullName();
  }
}

TEST_F(PantallaDeSalidas, ForReadingGridResendAndCancelCanBeReachedByHand) {
  DocumentoGuardado(2);
  frmSalidasWizard& f = ConsultaSalida(7);
  f.ClickCell(f.fg2, 2, 1);
  EXPECT_EQ(f.fg2.Row(), 2);
  Olvida();
  f.Click(f.Command1);
  EXPECT_EQ(Claves(), (Textos{"SALIDAS005"}));
  f.Click(f.Command2);
  EXPECT_FALSE(f.Open());
}

TEST_F(PantallaDeSalidas, InTheOtherModesTheControlsAreAsDesigned) {
  DocumentoGuardado();
  for (frmSalidasWizard* f : {&NuevaSalida(), &ModificaSalida(7)}) {
    for (int campo : {0, 14, 2, 3, 13, 15, 16, 4, 5, 6, 24}) EXPECT_TRUE(f->txtFields(campo).Enabled());
    for (int campo : {1, 7, 8, 10, 11}) EXPECT_FALSE(f->txtFields(campo).Enabled()) << campo;
    EXPECT_TRUE(f->Command1.Enabled());
    EXPECT_TRUE(f->Command5.Enabled());
    EXPECT_TRUE(f->Check3.Enabled());
  }
}

TEST_F(PantallaDeSalidas, TheReaderStartsAsTheStationHasIt) {
  EXPECT_EQ(NuevaSalida().Check4.Value(), 0);
  anfitrion->Ambiente().Parametro("Lector", 2);
  EXPECT_EQ(NuevaSalida().Check4.Value(), 1);
}

TEST_F(PantallaDeSalidas, TheLoadHookComesLastAndBeforeTheScreenIsPresented) {
  std::string visto;
  Gancho("SALIDAS001", [&](frmSalidasWizard& f) {
    visto = f.Modo + "|" + std::to_string(f.NumeroDePartidas) + "|" + (f.Acumulado ? "a" : "-") + "|" +
            (f.wb.Location().empty() ? "-" : "h") + "|" + (f.Visible() ? "v" : "-") + "|" +
            std::to_string(bitacora.presentadas.size());
  });
  frmSalidasWizard& f = NuevaSalida();
  EXPECT_EQ(visto, "ALTA|7|a|h|-|0");
  EXPECT_EQ(bitacora.presentadas, (Textos{"frmSalidasWizard"}));
  EXPECT_TRUE(f.Visible());
}

TEST_F(PantallaDeSalidas, ALoadHookThatCancelsSkipsOnlyThePresentation) {
  Gancho("SALIDAS001", [](frmSalidasWizard& f) { f.CancelaProceso = true; });
  frmSalidasWizard& f = NuevaSalida();
  EXPECT_TRUE(bitacora.presentadas.empty());
  EXPECT_FALSE(f.CancelaProceso);
  EXPECT_TRUE(f.Open());
}

}  // namespace
}  // namespace tarvik::tests
