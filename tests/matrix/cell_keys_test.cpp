// The keys and the mouse on the matrix by itself, and in the editor that opens over a cell.
#include "tests/matrix/grid.h"

namespace tarvik::tests {
namespace {

// ---- keys on the grid ----

TEST_F(EnLaMalla, EnterOpensTheCellOverItselfWithItsTextSelected) {
  frmMallaModelos& m = Malla(2, 2);
  m.fg2.TextMatrix(3, 3, "125");
  Tecla(m, "Enter", m.fg2);
  EXPECT_TRUE(m.txtCelda.Visible());
  EXPECT_TRUE(m.txtCelda.HasFocus());
  EXPECT_EQ(m.txtCelda.Text(), "125");
  EXPECT_EQ(m.txtCelda.SelStart(), 0);
  EXPECT_EQ(m.txtCelda.SelLength(), 3);
  EXPECT_EQ(Cursor(m), (Casilla{3, 3}));
}

TEST_F(EnLaMalla, TheEditorLiesOverTheCell) {
  frmMallaModelos& m = Malla(3, 3);
  m.fg2.ColWidth(0, 1600);
  m.fg2.ColWidth(1, 360);
  m.fg2.ColWidth(2, 10);
  m.fg2.RowHeight(2, 10);
  m.fg2.RowHeight(4, 300);
  m.ClickCell(m.fg2, 4, 4);
  Tecla(m, "Enter");
  EXPECT_EQ(m.txtCelda.Left(), 1600 + 360 + 10 + m.fg2.ColWidth(3));
  EXPECT_EQ(m.txtCelda.Top(), m.fg2.RowHeight(0) + m.fg2.RowHeight(1) + 10 + m.fg2.RowHeight(3));
  EXPECT_EQ(m.txtCelda.Width(), m.fg2.ColWidth(4));
  EXPECT_EQ(m.txtCelda.Height(), 300);
}

TEST_F(EnLaMalla, DeleteAndBackspaceEmptyTheCellAndCountAgain) {
  for (const char* tecla : {"Delete", "Back"}) {
    frmMallaModelos& m = Malla(2, 2);
    Pon(m, "4");
    Restan(m, "6", kRojoOscuro);
    m.ClickCell(m.fg2, 3, 3);
    Tecla(m, tecla);
    EXPECT_EQ(m.fg2.TextMatrix(3, 3), "") << tecla;
    Restan(m, "10", kRojoOscuro);
    EXPECT_FALSE(m.txtCelda.Visible());
    EXPECT_EQ(Cursor(m), (Casilla{3, 3}));
  }
}

// Either of the two events of Backspace is enough.
TEST_F(EnLaMalla, BackspaceEmptiesTheCellOnBothOfItsEvents) {
  frmMallaModelos& m = Malla(2, 2);
  m.fg2.Text("4");
  int tecla = 8;
  m.fg2_KeyDown(tecla, 0);
  EXPECT_EQ(m.fg2.Text(), "");
  m.fg2.Text("4");
  m.fg2_KeyPress(tecla);
  EXPECT_EQ(m.fg2.Text(), "");
  EXPECT_EQ(tecla, 8);  // nothing is swallowed
}

TEST_F(EnLaMalla, ADigitOpensTheCellAndReplacesItsText) {
  for (char digito = '0'; digito <= '9'; ++digito) {
    frmMallaModelos& m = Malla(2, 2);
    m.fg2.TextMatrix(3, 3, "125");
    Tecla(m, std::string(1, digito), m.fg2);
    EXPECT_TRUE(m.txtCelda.HasFocus());
    EXPECT_EQ(m.txtCelda.Text(), std::string(1, digito));
    EXPECT_EQ(m.txtCelda.SelStart(), 1);
    EXPECT_EQ(m.txtCelda.SelLength(), 0);
    EXPECT_EQ(m.fg2.TextMatrix(3, 3), "125");
  }
}

TEST_F(EnLaMalla, OtherKeysOnTheGridDoNothing) {
  frmMallaModelos& m = Malla(2, 2);
  m.fg2.TextMatrix(3, 3, "4");
  for (const char* tecla : {"a", "Z", ".", ",", "-", "+", "/", ":", "Space", "Esc", "F1", "F2", "F5", "F9"}) {
    Tecla(m, tecla, m.fg2);
    EXPECT_FALSE(m.txtCelda.Visible()) << tecla;
    EXPECT_TRUE(m.fg2.HasFocus()) << tecla;
    EXPECT_EQ(m.fg2.Text(), "4") << tecla;
    EXPECT_TRUE(m.Visible()) << tecla;
  }
}

TEST_F(EnLaMalla, ABlockedCellIsNeverOpened) {
  frmMallaModelos& m = Malla(2, 2);
  m.fg2.Blocked(3, 3, true);  // under the cursor
  for (const char* tecla : {"Enter", "5"}) {
    Tecla(m, tecla, m.fg2);
    EXPECT_FALSE(m.txtCelda.Visible()) << tecla;
    EXPECT_EQ(m.txtCelda.Text(), "") << tecla;
    EXPECT_TRUE(m.fg2.HasFocus()) << tecla;
  }
  m.fg2_DblClick();
  EXPECT_FALSE(m.txtCelda.Visible());
}

TEST_F(EnLaMalla, TheColourOfACellBlocksNothingByItself) {
  frmMallaModelos& m = Malla(2, 2);
  EXPECT_EQ(m.fg2.BackColor(3, 3), m.clrCeldaBloqueada);  // no colour of its own
  Tecla(m, "Enter", m.fg2);
  EXPECT_TRUE(m.txtCelda.Visible());
}

// ---- the mouse ----

TEST_F(EnLaMalla, ADoubleClickOpensAFreeCell) {
  frmMallaModelos& m = Malla(2, 2);
  m.fg2.TextMatrix(4, 4, "7");
  m.DoubleClickCell(m.fg2, 4, 4);
  EXPECT_EQ(Cursor(m), (Casilla{4, 4}));
  EXPECT_TRUE(m.txtCelda.HasFocus());
  EXPECT_EQ(m.txtCelda.Text(), "7");
}

TEST_F(EnLaMalla, ADoubleClickOnABlockedCellOrAHeaderOpensNothingAnywhere) {
  frmMallaModelos& m = Malla(2, 2, "10", {{4, 4}});
  for (auto [fila, columna] :
       {Casilla{4, 4}, Casilla{2, 3}, Casilla{3, 5}, Casilla{0, 3}, Casilla{3, 0}, Casilla{0, 0}}) {
    m.DoubleClickCell(m.fg2, fila, columna);
    EXPECT_FALSE(m.txtCelda.Visible()) << fila << "," << columna;
    EXPECT_FALSE(m.fg2.Blocked(m.fg2.Row(), m.fg2.Col()));
  }
}

TEST_F(EnLaMalla, MovingAwayHidesTheEditorAndDropsWhatWasTyped) {
  frmMallaModelos& m = Malla(2, 2);
  m.fg2.TextMatrix(3, 3, "4");
  Teclea(m, m.fg2, "99");
  m.ClickCell(m.fg2, 4, 3);
  EXPECT_FALSE(m.txtCelda.Visible());
  EXPECT_EQ(m.fg2.TextMatrix(3, 3), "4");
  EXPECT_EQ(m.fg2.TextMatrix(4, 3), "");
  EXPECT_EQ(m.txtRemanente.Text(), "10");
  Tecla(m, "Enter");
  EXPECT_EQ(m.txtCelda.Text(), "");  // of the new cell
}

// ---- keys in the editor ----

TEST_F(EnLaMalla, OnlyDigitsTheFullStopAndTheEditingKeysReachTheEditor) {
  frmMallaModelos& m = Malla(2, 2);
  for (int caracter = 1; caracter < 256; ++caracter) {
    int tecla = caracter;
    m.txtCelda_KeyPress(tecla);
    const bool pasa = (caracter >= '0' && caracter <= '9') || caracter == 27 || caracter == 13 ||
                      caracter == 46 || caracter == 8;
    EXPECT_EQ(tecla, pasa ? caracter : 0) << caracter;
  }
  Tecla(m, "Enter", m.fg2);
  Teclea(m, m.txtCelda, "1a2,-+ ñ.5");
  EXPECT_EQ(m.txtCelda.Text(), "12.5");
}

TEST_F(EnLaMalla, TheEditorIsEditedAsAnyField) {
  frmMallaModelos& m = Malla(2, 2);
  Teclea(m, m.fg2, "1234");
  Tecla(m, "Back");
  EXPECT_EQ(m.txtCelda.Text(), "123");
  Tecla(m, "Home");
  Tecla(m, "Delete");
  EXPECT_EQ(m.txtCelda.Text(), "23");
  Tecla(m, "Left");
  Tecla(m, "Up");
  Tecla(m, "F5");
  EXPECT_TRUE(m.txtCelda.HasFocus());
  EXPECT_EQ(Cursor(m), (Casilla{3, 3}));
  EXPECT_EQ(m.fg2.TextMatrix(3, 3), "");
}

TEST_F(EnLaMalla, EnterKeepsTheQuantityAndMovesOneCellToTheRight) {
  frmMallaModelos& m = Malla(2, 2);
  Teclea(m, m.fg2, "4");
  Tecla(m, "Enter");
  EXPECT_EQ(m.fg2.TextMatrix(3, 3), "4");
  EXPECT_FALSE(m.txtCelda.Visible());
  EXPECT_TRUE(m.fg2.HasFocus());
  EXPECT_EQ(Cursor(m), (Casilla{3, 4}));
  Restan(m, "6", kRojoOscuro);
}

TEST_F(EnLaMalla, EnterInTheLastSizeGoesToTheNextColour) {
  frmMallaModelos& m = Malla(2, 2);
  Pon(m, {3, 4}, "5");
  EXPECT_EQ(Cursor(m), (Casilla{4, 3}));
}

// Behind the last row the rows are over: the travel goes on down the columns.
TEST_F(EnLaMalla, EnterInTheLastCellGoesToTheTopOfAColumn) {
  frmMallaModelos& m = Malla(2, 2);
  Pon(m, {4, 4}, "5");
  EXPECT_EQ(Cursor(m), (Casilla{3, 3}));
  m.fg2.Blocked(3, 3, true);
  Pon(m, {4, 4}, "6");
  EXPECT_EQ(Cursor(m), (Casilla{4, 3}));  // the next one down, not the next one to the right
}

TEST_F(EnLaMalla, EscDropsWhatWasTyped) {
  frmMallaModelos& m = Malla(2, 2);
  m.fg2.TextMatrix(3, 3, "4");
  Teclea(m, m.fg2, "99");
  Tecla(m, "Esc");
  EXPECT_FALSE(m.txtCelda.Visible());
  EXPECT_TRUE(m.fg2.HasFocus());
  EXPECT_EQ(m.fg2.TextMatrix(3, 3), "4");
  EXPECT_EQ(Cursor(m), (Casilla{3, 3}));
  EXPECT_EQ(m.txtRemanente.Text(), "10");
  EXPECT_TRUE(m.Visible());
}

TEST_F(EnLaMalla, AnEmptiedEditorEmptiesTheCell) {
  frmMallaModelos& m = Malla(2, 2);
  Pon(m, "4");
  m.ClickCell(m.fg2, 3, 3);
  Tecla(m, "Enter");
  Tecla(m, "Delete");  // the whole text is selected
  Tecla(m, "Enter");
  EXPECT_EQ(m.fg2.TextMatrix(3, 3), "");
  Restan(m, "10", kRojoOscuro);
}

}  // namespace
}  // namespace tarvik::tests
