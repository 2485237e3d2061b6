// Correcting a cell in place: what opens the floating box, which keys it takes, and that bringing the
// focus back to the grid is what stores the change.
#include "goods_in/columnas.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

using Textos = std::vector<std::string>;

class EdicionDeCeldas : public Escenario {
 protected:
  EdicionDeCeldas() { Catalogo(); }

  // Two lines, the cell current, the record empty.
  frmEntradasWizard& EnLaCelda(int renglon, int columna) {
    frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "2"}});
    f.ClickCell(f.fg2, renglon, columna);
    Olvida();
    return f;
  }
};

TEST_F(EdicionDeCeldas, EnterOpensTheBoxWithTheWholeTextAndTheCaretAtItsEnd) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  f.fg2.Text("300");
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtEdit.Visible());
  EXPECT_TRUE(f.txtEdit.HasFocus());
  EXPECT_EQ(f.txtEdit.Text(), "300");
  EXPECT_EQ(f.txtEdit.SelStart(), 3);
  EXPECT_EQ(f.txtEdit.SelLength(), 0);
  EXPECT_TRUE(bitacora.sentencias.empty());
}

// The headings have a row of their own, which a click reaches: what is typed there is told to be no line, and
// the document that begins afterwards is whole.
TEST_F(EdicionDeCeldas, AHeadingTypedOverBeforeTheFirstLineLeavesTheDocumentAlone) {
  frmEntradasWizard& f = Nueva();
  f.ClickCell(f.fg2, 0, 1);
  Teclea(f, f.fg2, "3");
  Tecla(f, "Enter");
  EXPECT_EQ(Reportes().size(), 1u);
  Olvida();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  Renglon(f, "A-100", "2");
  EXPECT_TRUE(Reportes().empty());
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart INNER JOIN entradas ON entradas.entrada = entpart.entrada"),
            "2");
}

TEST_F(EdicionDeCeldas, SpaceAndADoubleClickOpenItTheSameWay) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Precio);
  Tecla(f, "Space");
  EXPECT_TRUE(f.txtEdit.Visible());
  EXPECT_EQ(f.txtEdit.Text(), "116.00");
  Tecla(f, "Esc");
  f.DoubleClickCell(f.fg2, 2, 1);
  EXPECT_TRUE(f.txtEdit.Visible());
  EXPECT_EQ(f.txtEdit.Text(), "2");
  EXPECT_EQ(f.txtEdit.SelStart(), 1);
}

TEST_F(EdicionDeCeldas, ADigitOpensTheBoxAndReplacesTheText) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Tecla(f, "7");
  EXPECT_TRUE(f.txtEdit.Visible());
  EXPECT_EQ(f.txtEdit.Text(), "7");
  EXPECT_EQ(f.txtEdit.SelStart(), 1);
  Tecla(f, "5");
  EXPECT_EQ(f.txtEdit.Text(), "75");
}

TEST_F(EdicionDeCeldas, ACharacterThatIsNoPartOfANumberOpensNothing) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Tecla(f, "a");
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_EQ(f.txtEdit.Text(), "");
  EXPECT_EQ(pitidos, 0);
  EXPECT_TRUE(Claves().empty());
}

TEST_F(EdicionDeCeldas, TheBoxStandsExactlyOverTheCell) {
  frmEntradasWizard& f = EnLaCelda(2, columna_entrada::Precio);
  f.fg2.Place(300, 500, 9000, 4000);
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtEdit.Left(), 300 + f.fg2.CellLeft());
  EXPECT_EQ(f.txtEdit.Top(), 500 + f.fg2.CellTop());
  EXPECT_EQ(f.txtEdit.Width(), 900);
  EXPECT_EQ(f.txtEdit.Height(), f.fg2.CellHeight());
  EXPECT_GT(f.fg2.CellLeft(), 800);
}

TEST_F(EdicionDeCeldas, TheArticleIsBlockedWithABeep) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Articulo);
  Tecla(f, "Space");
  EXPECT_EQ(pitidos, 1);
  Tecla(f, "7");
  EXPECT_EQ(pitidos, 2);
  f.DoubleClickCell(f.fg2, 1, 0);
  EXPECT_EQ(pitidos, 3);
  Tecla(f, "a");  // no part of a number: refused before the column is looked at
  EXPECT_EQ(pitidos, 3);
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_TRUE(bitacora.sentencias.empty());
}

TEST_F(EdicionDeCeldas, AFreeRowOpensNothingAndGivesNoBeep) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Articulo);
  for (int columna : {0, 1, 2}) {
    f.ClickCell(f.fg2, 3, columna);
    Tecla(f, "Space");
    Tecla(f, "7");
    f.DoubleClickCell(f.fg2, 3, columna);
    EXPECT_FALSE(f.txtEdit.Visible()) << columna;
  }
  EXPECT_EQ(pitidos, 0);
}

TEST_F(EdicionDeCeldas, AFreeRowRefusesATypedCharacterEvenIfARoutineAsks) {
  frmEntradasWizard& f = EnLaCelda(3, columna_entrada::Cantidad);
  f.MSFlexGridEdit(f.fg2, f.txtEdit, '7');
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_EQ(f.txtEdit.Text(), "");
}

TEST_F(EdicionDeCeldas, ColumnsBehindThePriceAreNeverEditedAndTheHiddenTextDoesNoHarm) {
  for (int columna : {3, 4, 5, 6, 7}) {
    frmEntradasWizard& f = EnLaCelda(1, columna);
    f.MSFlexGridEdit(f.fg2, f.txtEdit, 32);
    EXPECT_FALSE(f.txtEdit.Visible()) << columna;
    EXPECT_EQ(f.txtEdit.Text(), Celda(f, 1, columna)) << columna;
    f.MSFlexGridEdit(f.fg2, f.txtEdit, '8');
    EXPECT_EQ(f.txtEdit.Text(), "8") << columna;
    f.MSFlexGridEdit(f.fg2, f.txtEdit, 'z');
    EXPECT_EQ(f.txtEdit.Text(), columna == 6 ? "z" : "8") << columna;
    EXPECT_FALSE(f.txtEdit.Visible()) << columna;
    EXPECT_EQ(pitidos, 0);
    f.Discard();
  }
}

TEST_F(EdicionDeCeldas, AReadDocumentIsNeverEdited) {
  ConRenglones({{"A-100", "3"}});
  frmEntradasWizard& f = Consulta(1);
  f.ClickCell(f.fg2, 1, 1);
  Olvida();
  Tecla(f, "Enter");
  Tecla(f, "7");
  f.DoubleClickCell(f.fg2, 1, 2);
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_TRUE(Claves().empty());
  f.ClickCell(f.fg2, 1, 0);
  Tecla(f, "Enter");
  EXPECT_EQ(pitidos, 1);
}

TEST_F(EdicionDeCeldas, ARoutineIsAskedBeforeAQuantityAndMayRefuseOnce) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Gancho("ENTRADA013", [](frmEntradasWizard& g) { g.CancelaProceso = true; });
  Tecla(f, "Enter");
  EXPECT_EQ(Claves(), (Textos{"ENTRADA013"}));
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_FALSE(f.CancelaProceso);
  anfitrion->Gancho("ENTRADA013", {});
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtEdit.Visible());
}

TEST_F(EdicionDeCeldas, NoRoutineIsAskedBeforeAPrice) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Precio);
  Tecla(f, "Enter");
  EXPECT_TRUE(Claves().empty());
  EXPECT_TRUE(f.txtEdit.Visible());
}

TEST_F(EdicionDeCeldas, EnterStoresTheQuantityAndTheTotalFollows) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Tecla(f, "5");
  Tecla(f, "Enter");
  EXPECT_TRUE(f.fg2.HasFocus());
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_EQ(f.txtEdit.Text(), "");
  EXPECT_EQ(bitacora.sentencias, (Textos{"UPDATE entpart SET cantidad = 5 WHERE id_entrada = 1"}));
  EXPECT_EQ(Celda(f, 1, columna_entrada::Cantidad), "5");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Importe), "580");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "680");
  EXPECT_EQ(f.fg2.Row(), 1);
}

TEST_F(EdicionDeCeldas, EnterStoresThePrice) {
  frmEntradasWizard& f = EnLaCelda(2, columna_entrada::Precio);
  f.fg2.Text("");
  Teclea(f, f.fg2, "1.5");
  Tecla(f, "Enter");
  EXPECT_EQ(bitacora.sentencias, (Textos{"UPDATE entpart SET precio = 1.5 WHERE id_entrada = 2"}));
  EXPECT_EQ(Uno("SELECT precio FROM entpart WHERE id_entrada = 2"), "1.5");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "351");
}

TEST_F(EdicionDeCeldas, EscKeepsTheOldTextAndWritesNothing) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Tecla(f, "9");
  Tecla(f, "Esc");
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_TRUE(f.fg2.HasFocus());
  EXPECT_EQ(Celda(f, 1, columna_entrada::Cantidad), "3");
  EXPECT_TRUE(bitacora.sentencias.empty());
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtEdit.Text(), "3");
}

TEST_F(EdicionDeCeldas, DownStoresTheOldRowAndThenGoesToTheNext) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Tecla(f, "9");
  Tecla(f, "Down");
  EXPECT_EQ(bitacora.sentencias, (Textos{"UPDATE entpart SET cantidad = 9 WHERE id_entrada = 1"}));
  EXPECT_EQ(f.fg2.Row(), 2);
  EXPECT_EQ(f.fg2.Col(), columna_entrada::Cantidad);
  EXPECT_EQ(Celda(f, 1, columna_entrada::Cantidad), "9");
  EXPECT_EQ(Celda(f, 2, columna_entrada::Cantidad), "2");
  EXPECT_TRUE(f.fg2.HasFocus());
}

TEST_F(EdicionDeCeldas, UpOnTheFirstRowStoresAndStays) {
  frmEntradasWizard& f = EnLaCelda(2, columna_entrada::Cantidad);
  Tecla(f, "9");
  Tecla(f, "Up");
  EXPECT_EQ(f.fg2.Row(), 1);
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart WHERE id_entrada = 2"), "9");
  Tecla(f, "8");
  Tecla(f, "Up");
  EXPECT_EQ(f.fg2.Row(), 1);
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart WHERE id_entrada = 1"), "8");
}

TEST_F(EdicionDeCeldas, DownOnTheLastRowStoresAndStays) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  for (int columna : {0, 1, 2, 5}) f.fg2.TextMatrix(4999, columna, Celda(f, 2, columna));
  f.ClickCell(f.fg2, 4999, 1);
  Tecla(f, "6");
  Tecla(f, "Down");
  EXPECT_EQ(f.fg2.Row(), 4999);
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart WHERE id_entrada = 2"), "6");
}

TEST_F(EdicionDeCeldas, PendingEventsAreLetThroughBeforeTheRowMoves) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Tecla(f, "9");
  int renglon = 0;
  std::string celda;
  plataforma.Post([&] {
    renglon = f.fg2.Row();
    celda = Celda(f, 1, columna_entrada::Cantidad);
  });
  int abajo = 40;
  f.EditKeyCode(f.fg2, f.txtEdit, abajo, 0);
  EXPECT_EQ(renglon, 1);
  EXPECT_EQ(celda, "9");
  EXPECT_EQ(f.fg2.Row(), 2);
}

TEST_F(EdicionDeCeldas, AClickOnAnotherCellStoresTheCellThatIsLeft) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Tecla(f, "9");
  f.ClickCell(f.fg2, 2, 2);
  EXPECT_EQ(bitacora.sentencias, (Textos{"UPDATE entpart SET cantidad = 9 WHERE id_entrada = 1"}));
  EXPECT_EQ(Celda(f, 1, columna_entrada::Cantidad), "9");
  EXPECT_EQ(Celda(f, 2, columna_entrada::Precio), "50.00");
  EXPECT_FALSE(f.txtEdit.Visible());
}

TEST_F(EdicionDeCeldas, LeavingTheCellWithTheBoxOpenStoresIt) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Tecla(f, "9");
  f.fg2.MoveTo(2, columna_entrada::Cantidad);
  EXPECT_EQ(bitacora.sentencias, (Textos{"UPDATE entpart SET cantidad = 9 WHERE id_entrada = 1"}));
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_EQ(f.fg2.BackColor(1, 1), 0xFFFFFF);
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "1,144");
}

TEST_F(EdicionDeCeldas, AnotherFieldTakesTheFocusAndTheBoxWaits) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Tecla(f, "9");
  f.Enter(f.txtFields(campo::Articulo));
  EXPECT_EQ(CuentaSentencias("UPDATE"), 0);
  EXPECT_TRUE(f.txtEdit.Visible());
  f.Enter(f.fg2);
  EXPECT_EQ(CuentaSentencias("UPDATE entpart SET cantidad = 9"), 1);
}

TEST_F(EdicionDeCeldas, TheFocusOnTheGridWithTheBoxHiddenStoresNothing) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  f.Enter(f.txtFields(campo::Almacen));
  Olvida();
  f.Enter(f.fg2);
  EXPECT_TRUE(bitacora.sentencias.empty());
}

TEST_F(EdicionDeCeldas, OnlyPartsOfNumbersAreTypedIntoTheBox) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Tecla(f, "1");
  Teclea(f, f.txtEdit, "x,2.5-");
  EXPECT_EQ(f.txtEdit.Text(), "12.5-");
  int tecla = 13;
  f.txtEdit_KeyPress(tecla);
  EXPECT_EQ(tecla, 0);
}

TEST_F(EdicionDeCeldas, InDescriptionAndPresentationEveryCharacterPasses) {
  for (auto [columna, espera] : {std::pair{4, 'x'}, {6, 'x'}, {1, '\0'}, {2, '\0'}, {3, '\0'}, {7, '\0'}}) {
    frmEntradasWizard& f = EnLaCelda(1, columna);
    int tecla = 'x';
    f.txtEdit_KeyPress(tecla);
    EXPECT_EQ(tecla, espera) << columna;
    tecla = 13;
    f.txtEdit_KeyPress(tecla);
    EXPECT_EQ(tecla, 0) << columna;
    f.Discard();
  }
}

TEST_F(EdicionDeCeldas, ALineMayBeBroughtToZero) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Tecla(f, "0");
  Tecla(f, "Enter");
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart WHERE id_entrada = 1"), "0");
  f.ClickCell(f.fg2, 2, 2);
  Tecla(f, "-");
  Tecla(f, "Enter");
  EXPECT_EQ(Uno("SELECT precio FROM entpart WHERE id_entrada = 2"), "0");
  EXPECT_EQ(Celda(f, 2, columna_entrada::Precio), "-");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "0");
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(EdicionDeCeldas, AnEmptiedCellIsANumberZero) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Tecla(f, "Enter");
  Tecla(f, "Back");
  Tecla(f, "Enter");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Cantidad), "");
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart WHERE id_entrada = 1"), "0");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "100");
}

TEST_F(EdicionDeCeldas, OtherKeysMeanNothingToTheBoxItself) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Tecla(f, "5");
  for (int codigo : {9, 33, 36, 37, 39, 46, 112}) {
    int tecla = codigo;
    f.EditKeyCode(f.fg2, f.txtEdit, tecla, 0);
    EXPECT_TRUE(f.txtEdit.HasFocus()) << codigo;
    EXPECT_TRUE(f.txtEdit.Visible()) << codigo;
  }
  EXPECT_TRUE(bitacora.sentencias.empty());
}

TEST_F(EdicionDeCeldas, AnEditTakesEffectInPosting) {
  frmEntradasWizard& f = EnLaCelda(1, columna_entrada::Cantidad);
  Tecla(f, "9");
  Tecla(f, "Enter");
  bitacora.respuestas.push_back(true);
  Tecla(f, "F5", f.txtFields(campo::Concepto));
  EXPECT_EQ(Uno("SELECT cantidad FROM movsinv WHERE articulo = 'A-100'"), "9");
  EXPECT_EQ(Uno("SELECT importe FROM entradas"), "1144");
}

}  // namespace
}  // namespace tarvik::tests
