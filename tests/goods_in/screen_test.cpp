// The goods-in screen: its controls as designed, loading in the three modes, the lock.
#include "tests/goods_in/screen.h"
#include "goods_in/columnas.h"

namespace tarvik::tests {
namespace {

// ---- as designed ----

TEST_F(Pantalla, HasTheTitleUntilACallerReplacesIt) {
  EXPECT_EQ(Nueva().Caption(), "Asistente para entradas al inventario.");
  EXPECT_EQ(Ultima().Name(), "frmEntradasWizard");
}

TEST_F(Pantalla, EveryControlHasItsPlaceOnTheKeyboardsWay) {
  frmEntradasWizard& f = Nueva();
  const std::pair<int, int> campos[] = {{0, 0},  {14, 1}, {4, 3},   {5, 4},   {27, 5},  {6, 6},  {9, 7},
                                        {24, 8}, {25, 9}, {26, 10}, {28, 11}, {29, 12}, {1, 20}, {11, 43}};
  for (auto [indice, tab] : campos) EXPECT_EQ(f.txtFields(indice).TabIndex(), tab) << indice;
  EXPECT_EQ(f.txtFields.Count(), 14);
  EXPECT_EQ(f.Command3.TabIndex(), 2);
  EXPECT_EQ(f.DTPicker1.TabIndex(), 16);
  EXPECT_EQ(f.RichTextBox3.TabIndex(), 17);
  EXPECT_EQ(f.Check2.TabIndex(), 21);
  EXPECT_EQ(f.Check3.TabIndex(), 22);
  EXPECT_EQ(f.txtEdit.TabIndex(), 23);
  EXPECT_EQ(f.Command6.TabIndex(), 24);
  EXPECT_EQ(f.fg2.TabIndex(), 26);
  EXPECT_EQ(f.RichTextBox2.TabIndex(), 28);
  EXPECT_EQ(f.RichTextBox1.TabIndex(), 38);
  EXPECT_EQ(f.Command1.TabIndex(), 39);
  EXPECT_EQ(f.Check4.TabIndex(), 40);
  EXPECT_EQ(f.Command5.TabIndex(), 41);
  EXPECT_EQ(f.Command2.TabIndex(), 42);
}

TEST_F(Pantalla, TheLabelsAndButtonsReadAsTheOperatorKnowsThem) {
  frmEntradasWizard& f = Nueva();
  EXPECT_EQ(f.Label12.Caption(), "Concepto de la Entrada:");
  EXPECT_EQ(f.Label25.Caption(), "Almacen");
  EXPECT_EQ(f.Label17.Caption(), "Artículo");
  EXPECT_EQ(f.Label18.Caption(), "Cantidad");
  EXPECT_EQ(f.Label5.Caption(), "Unidad");
  EXPECT_EQ(f.Label19.Caption(), "Precio");
  EXPECT_EQ(f.Label6.Caption(), "Importe");
  EXPECT_EQ(f.Label4.Caption(), "Presentacion: (F8)");
  EXPECT_EQ(f.Label23.Caption(), "Fecha del documento");
  EXPECT_EQ(f.Label8.Caption(), "T O T  A L");
  EXPECT_EQ(f.Label10(0).Caption(), "Observaciones al movimiento de entrada.");
  EXPECT_EQ(f.Label10(1).Caption(), "Dejar como movimiento pendiente");
  EXPECT_EQ(f.Label10(2).Caption(), "Imprimir movimiento.");
  EXPECT_EQ(f.Command1.Caption(), "&Modelos");
  EXPECT_EQ(f.Command2.Caption(), "&Cancelar");
  EXPECT_EQ(f.Command3.Caption(), "");
  EXPECT_EQ(f.Command5.Caption(), "&Finalizar (F5)");
  EXPECT_EQ(f.Command6.Caption(), "..");
  EXPECT_EQ(f.Check4.Caption(), "Lector de Código de Barras");
}

TEST_F(Pantalla, TheStatesAtDesign) {
  frmEntradasWizard f(*anfitrion);
  EXPECT_FALSE(f.Command5.Enabled());
  EXPECT_FALSE(f.Command3.Visible());
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_FALSE(f.txtFields(campo::Descripcion).Enabled());
  EXPECT_FALSE(f.txtFields(campo::Total).Enabled());
  EXPECT_TRUE(f.txtFields(campo::Total).RightAligned());
  EXPECT_EQ(f.Check2.Value(), 1);
  EXPECT_EQ(f.Check3.Value(), 0);
  EXPECT_EQ(f.Timer1.Interval(), 0);
  EXPECT_FALSE(f.Timer1.Running());
  EXPECT_EQ(f.fg2.Rows(), 5000);
  EXPECT_EQ(f.fg2.Cols(), 10);
  EXPECT_EQ(f.fg2.FixedRows(), 1);
  EXPECT_EQ(f.fg2.FixedCols(), 0);
  EXPECT_EQ(f.Entrada, 0);
}

TEST_F(Pantalla, TheGridsHeadersAndWidths) {
  frmEntradasWizard sin_cargar(*anfitrion);
  const int de_fabrica = sin_cargar.fg2.ColWidth(columna_entrada::Articulo);
  frmEntradasWizard& f = Nueva();
  const std::pair<const char*, int> columnas[] = {{"Artículo", (de_fabrica * 3 + 1) / 2},
                                                  {"QTY", 800},
                                                  {"Precio", 900},
                                                  {"Importe", 900},
                                                  {"Descripción", 4000},
                                                  {"No de Entrada", 0},
                                                  {"Presentación", 2000},
                                                  {"Pr. QTY", 1000}};
  int columna = 0;
  for (auto [titulo, ancho] : columnas) {
    EXPECT_EQ(Celda(f, 0, columna), titulo);
    EXPECT_EQ(f.fg2.ColWidth(columna), ancho) << titulo;
    ++columna;
  }
  EXPECT_EQ(Celda(f, 0, 8), "");
  EXPECT_EQ(f.fg2.Row(), 1);
  EXPECT_EQ(f.fg2.Col(), columna_entrada::Articulo);
}

// ---- loading ----

TEST_F(Pantalla, ANewDocumentStartsAtTheWorkingDateAndTheStationsWarehouse) {
  anfitrion->Ambiente().Parametro("Almacen", 2);
  anfitrion->Ambiente().Pon("ValorFechaA", 3);
  data::Date esperada;
  anfitrion->Funciones().FechaDeTrabajo(3, 0, esperada);
  frmEntradasWizard& f = Nueva();
  EXPECT_EQ(f.DTPicker1.Value(), esperada);
  EXPECT_EQ(f.txtFields(campo::Almacen).Text(), "2");
  EXPECT_EQ(f.txtFields(campo::Concepto).Text(), "");
  EXPECT_EQ(f.NumeroDePartidas, 10);
  EXPECT_TRUE(f.Query);
  EXPECT_TRUE(f.Command5.Enabled());
}

TEST_F(Pantalla, AStoredDocumentFillsHeaderAndLines) {
  Documento(2);
  frmEntradasWizard& f = Modifica(7);
  EXPECT_EQ(f.txtFields(campo::Concepto).Text(), "COM");
  EXPECT_EQ(f.txtFields(campo::Almacen).Text(), "2");
  EXPECT_EQ(f.DTPicker1.Value(), (data::Date{2024, 2, 28}));
  EXPECT_EQ(f.RichTextBox3.Text(), "Compra vieja");
  EXPECT_EQ(f.RichTextBox2.Text(), "Frágil");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Articulo), "A-100");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Cantidad), "1.5");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Precio), "11.6");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Importe), "17.4");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Descripcion), " Martillo");
  EXPECT_EQ(Celda(f, 1, columna_entrada::IdEntrada), "71");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Presentacion), "Caja");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Presentaciones), "1");
  EXPECT_EQ(Celda(f, 2, columna_entrada::Descripcion), " ");
  EXPECT_EQ(Celda(f, 3, columna_entrada::Articulo), "");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "46.4");
  EXPECT_TRUE(f.rstPartidas->Eof());
  EXPECT_EQ(f.rstPartidas->CursorType(), 1);
  EXPECT_EQ(f.rstPartidas->LockType(), 3);
  EXPECT_EQ(f.fg2.Row(), 1);
  EXPECT_EQ(f.fg2.Col(), columna_entrada::Articulo);
  EXPECT_EQ(CuentaSentencias("SELECT * FROM entpart WHERE entrada = (7)"), 1);
}

TEST_F(Pantalla, NullColumnsOfTheHeaderShowAsNothing) {
  Sql("INSERT INTO entradas (entrada, estado) VALUES (?, ?)", {7, "PE"});
  frmEntradasWizard& f = Modifica(7);
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "");
  EXPECT_EQ(f.RichTextBox2.Text(), "");
  EXPECT_EQ(f.RichTextBox3.Text(), "");
  EXPECT_EQ(f.Modo, "MODIFICACION");
}

TEST_F(Pantalla, ForChangeTheLockIsTakenAndForReadingItIsNot) {
  Documento();
  Modifica(7);
  EXPECT_EQ(Ocupado(), "1");
  EXPECT_EQ(CuentaSentencias("UPDATE entradas SET ocupado = 1 WHERE entradas.entrada = 7"), 1);
}

TEST_F(Pantalla, ForReadingTheLockStaysAsItIs) {
  Documento(1);
  Consulta(7);
  EXPECT_EQ(Ocupado(), "0");
  EXPECT_EQ(CuentaSentencias("UPDATE"), 0);
}

TEST_F(Pantalla, ADocumentWithoutLinesKeepsItsStoredTotal) {
  Documento();
  frmEntradasWizard& f = Modifica(7);
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "23.2");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Articulo), "");
  EXPECT_EQ(Ocupado(), "1");
}

TEST_F(Pantalla, ForReadingOnlyGridCancelAndFinishStayEnabled) {
  Documento(1);
  frmEntradasWizard& f = Consulta(7);
  for (forms::Control* control : f.Controls()) {
    const std::string nombre = control->FullName();
    const bool abierto =
        control->IsLabel() || nombre == "fg2" || nombre == "Command2" || nombre == "Command5";
    EXPECT_EQ(control->Enabled(), abierto) << nombre;
  }
  EXPECT_EQ(f.ActiveControl(), &f.fg2);
}

TEST_F(Pantalla, InTheOtherModesTheControlsAreAsDesigned) {
  Documento();
  for (frmEntradasWizard* f : {&Nueva(), &Modifica(7)}) {
    EXPECT_TRUE(f->txtFields(campo::Concepto).Enabled());
    EXPECT_FALSE(f->txtFields(campo::Descripcion).Enabled());
    EXPECT_FALSE(f->txtFields(campo::Total).Enabled());
    EXPECT_TRUE(f->Check3.Enabled());
    EXPECT_TRUE(f->Command5.Enabled());
  }
}

TEST_F(Pantalla, TheSearchBoxesGetTheConnection) {
  frmEntradasWizard& f = Nueva();
  EXPECT_EQ(f.MultiCombo1.Count(), 4);
  f.MultiCombo1.Each(
      [&](forms::SearchBox& caja) { EXPECT_EQ(caja.Conexion(), &anfitrion->Ambiente().Conexion()); });
}

TEST_F(Pantalla, TheReaderStartsAsTheStationHasIt) {
  EXPECT_EQ(Nueva().Check4.Value(), 0);
  anfitrion->Ambiente().Parametro("Lector", 2);
  EXPECT_EQ(Nueva().Check4.Value(), 1);
}

TEST_F(Pantalla, TheLoadHookSeesTheScreenReadyAndNotYetShown) {
  std::string visto;
  Gancho("ENTRADA001", [&](frmEntradasWizard& f) {
    visto = f.Modo + "|" + std::to_string(f.Entrada) + "|" + f.txtFields(campo::Concepto).Text() + "|" +
            (f.Visible() ? "v" : "-") + "|" + (f.rstEntrada ? "r" : "-") + "|" +
            std::to_string(f.NumeroDePartidas);
  });
  Documento();
  Modifica(7);
  EXPECT_EQ(visto, "MODIFICACION|7|COM|-|r|10");
  EXPECT_EQ(bitacora.presentadas, std::vector<std::string>{"frmEntradasWizard"});
  Nueva();
  EXPECT_EQ(visto, "ALTA|0||-|r|10");
}

TEST_F(Pantalla, ALoadHookThatCancelsSkipsOnlyThePresentation) {
  Gancho("ENTRADA001", [](frmEntradasWizard& f) { f.CancelaProceso = true; });
  frmEntradasWizard& f = Nueva();
  EXPECT_TRUE(bitacora.presentadas.empty());
  EXPECT_FALSE(f.CancelaProceso);
  EXPECT_TRUE(f.Visible());
}

// ---- failures while loading ----

TEST_F(Pantalla, AStepOfTheLoadingThatFailsIsReportedAndTheLoadingGoesOn) {
  bitacora.FallaServicio("NuevoQuery", 1, "sin constructor");
  frmEntradasWizard& f = Nueva();
  ASSERT_EQ(Reportes().size(), 2u);  // the builder, and giving it the connection
  EXPECT_EQ(Reportes()[0], Reporte("Form_Load", "sin constructor"));
  EXPECT_EQ(f.txtFields(campo::Almacen).Text(), "1");
  EXPECT_EQ(bitacora.presentadas.size(), 1u);
}

TEST_F(Pantalla, LinesThatCannotBeReadAreReportedAndTheScreenOpens) {
  Documento(2);
  bitacora.Falla("FROM entpart", 1, "no se lee");
  frmEntradasWizard& f = Modifica(7);
  ASSERT_FALSE(Reportes().empty());
  EXPECT_EQ(Reportes()[0], Reporte("Form_Load", "no se lee"));
  EXPECT_EQ(Celda(f, 1, columna_entrada::Articulo), "");
  EXPECT_EQ(f.Caption(), "Entrada: 7");
  EXPECT_TRUE(f.Command5.Enabled());
}

TEST_F(Pantalla, ALockThatCannotBeTakenIsReportedOnceAndTheLinesAreRead) {
  Documento(1);
  bitacora.Falla("SET ocupado = 1", 1, "no se toma");
  frmEntradasWizard& f = Modifica(7);
  EXPECT_EQ(Reportes(), std::vector<std::string>{Reporte("Form_Load", "no se toma")});
  EXPECT_EQ(Celda(f, 1, columna_entrada::Articulo), "A-100");
  EXPECT_EQ(ArchivoDelDia(), bitacora.mensajes[0].texto);
}

TEST_F(Pantalla, AWorkingDateThatFailsLeavesTheRestOfTheLoading) {
  bitacora.FallaServicio("FechaDeTrabajo", 1, "sin fecha");
  frmEntradasWizard& f = Nueva();
  EXPECT_EQ(Reportes(), std::vector<std::string>{Reporte("Form_Load", "sin fecha")});
  EXPECT_EQ(f.txtFields(campo::Almacen).Text(), "1");
}

TEST_F(Pantalla, AWarehouseThatCannotBeReadIsReported) {
  bitacora.FallaServicio("Parametros", 1, "sin parámetros");
  frmEntradasWizard& f = Nueva();
  EXPECT_EQ(Reportes(), std::vector<std::string>{Reporte("Form_Load", "sin parámetros")});
  EXPECT_EQ(f.txtFields(campo::Almacen).Text(), "");
}

TEST_F(Pantalla, FromTheModesControlsOnEverythingIsIgnored) {
  bitacora.FallaServicio("BuscaCatalogo", 1, "gancho");
  bitacora.FallaServicio("PresentaForma", 1, "marco");
  frmEntradasWizard& f = Nueva();
  EXPECT_TRUE(Reportes().empty());
  EXPECT_TRUE(bitacora.presentadas.empty());
  EXPECT_TRUE(f.Visible());
  EXPECT_TRUE(no_atrapados.empty());
}

}  // namespace
}  // namespace tarvik::tests
