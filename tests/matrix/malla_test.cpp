// The matrix by itself: a quantity is spread over its cells key by key, and only an exact match is
// accepted. Where its cursor may go is told in recorrido_test.cpp.
#include <set>

#include "data/number.h"
#include "forms/listener.h"
#include "tests/matrix/support.h"

namespace tarvik::tests {
namespace {

class EnLaMalla : public EscenarioDeMalla {
 protected:
  // What the operator sees of the remainder.
  void Restan(const frmMallaModelos& m, const std::string& cuanto, int color) {
    EXPECT_EQ(m.txtRemanente.Text(), cuanto);
    EXPECT_EQ(m.txtRemanente.ForeColor(), color);
    EXPECT_EQ(m.cmdAceptar.Enabled(), color == kVerde);
  }
  // A paste into the open cell, which no key filter sees.
  static void Pega(frmMallaModelos& m, const std::string& texto) {
    Tecla(m, "Enter", m.fg2);
    m.Paste(texto);
    Tecla(m, "Enter");
  }
};

// ---- as designed ----

TEST_F(EnLaMalla, EveryControlAsDesigned) {
  frmMallaModelos m(*anfitrion);
  EXPECT_EQ(m.Name(), "frmMallaModelos");
  EXPECT_EQ(m.Caption(), "Modelos");
  EXPECT_EQ(m.Tag(), "");
  EXPECT_EQ(m.clrCeldaBloqueada, 0);
  EXPECT_EQ(m.Modulo(), "frmMallaModel");

  EXPECT_EQ(m.cmdAceptar.Caption(), "&Aceptar");
  EXPECT_EQ(m.cmdCancelar.Caption(), "&Cancelar");
  EXPECT_EQ(m.lblCantidadRestante.Caption(), "&Cantidad restante");
  EXPECT_EQ(m.txtRemanente.Text(), "0");
  EXPECT_TRUE(m.txtRemanente.RightAligned());
  EXPECT_EQ(m.txtRemanente.ForeColor(), kRojo);
  EXPECT_EQ(m.txtDescrip.Text(), "");
  EXPECT_EQ(m.txtCelda.Text(), "");

  for (forms::Control* control : m.Controls()) {
    EXPECT_EQ(control->Enabled(), control != &m.cmdAceptar) << control->Name();
    EXPECT_EQ(control->Visible(), control != &m.txtCelda) << control->Name();
  }
  EXPECT_EQ(m.Controls().size(), 8u);
  EXPECT_FALSE(m.AutoResizer1.Focusable());
}

TEST_F(EnLaMalla, TheKeyboardGoesFromTheGridToTheButtons) {
  frmMallaModelos& m = Malla(2, 2);
  std::set<int> lugares;
  for (forms::Control* control : m.TabOrder()) EXPECT_TRUE(lugares.insert(control->TabIndex()).second);
  EXPECT_EQ(lugares.size(), 4u);  // what is only read is not on the way
  EXPECT_TRUE(m.fg2.HasFocus());
  Tecla(m, "Tab");  // not to the cell's editor, which isn't there, nor to a button that is disabled
  EXPECT_TRUE(m.cmdCancelar.HasFocus());
}

TEST_F(EnLaMalla, LoadingAndShowingChangeNothing) {
  auto m = std::make_shared<frmMallaModelos>(*anfitrion);
  m->Show(false);
  EXPECT_EQ(m->Caption(), "Modelos");
  EXPECT_EQ(m->txtRemanente.Text(), "0");
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_TRUE(bitacora.ganchos.empty());
  EXPECT_TRUE(m->Unload());
}

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

// ---- the remainder ----

TEST_F(EnLaMalla, TheRemainderIsTheQuantityLessWhatStandsInTheCells) {
  frmMallaModelos& m = Malla(2, 2, "10");
  Pon(m, "3");
  Pon(m, "2.5");
  Pon(m, "1");
  Restan(m, "3.5", kRojoOscuro);
  EXPECT_TRUE(m.fg2.HasFocus());
}

TEST_F(EnLaMalla, HeadersAreNotCountedAndEveryOtherCellIs) {
  frmMallaModelos& m = Malla(2, 2, "10");
  m.fg2.TextMatrix(0, 3, "40");  // a size that is a number
  m.fg2.TextMatrix(1, 3, "41");
  m.fg2.TextMatrix(3, 0, "42");
  m.fg2.TextMatrix(3, 1, "43");
  for (auto [fila, columna] : {Casilla{2, 2}, Casilla{2, 5}, Casilla{5, 2}, Casilla{5, 5}, Casilla{3, 3}}) {
    m.fg2.TextMatrix(fila, columna, "1");
  }
  m.CalculaSuma();
  Restan(m, "5", kRojoOscuro);
}

TEST_F(EnLaMalla, TenthsThatAddUpLeaveNothingOver) {
  frmMallaModelos& m = Malla(1, 2, "0.3");
  Pon(m, "0.1");
  Restan(m, "0.2", kRojoOscuro);
  Pon(m, "0.2");
  Restan(m, "0", kVerde);
}

TEST_F(EnLaMalla, AHundredthIsNotForgivenAndMakesItWhole) {
  frmMallaModelos& m = Malla(1, 3, "10");
  Pon(m, "9.99");
  EXPECT_NE(data::Val(m.txtRemanente.Text()), 0);
  EXPECT_FALSE(m.cmdAceptar.Enabled());
  Pon(m, "0.01");
  Restan(m, "0", kVerde);
}

TEST_F(EnLaMalla, ATextCountsAsItsLeadingNumber) {
  frmMallaModelos& m = Malla(1, 3, "20");
  Pega(m, "12a");
  EXPECT_EQ(m.fg2.TextMatrix(3, 3), "12a");
  Restan(m, "8", kRojoOscuro);
  Pega(m, "a12");
  Restan(m, "8", kRojoOscuro);
  Pega(m, "1.2.3");
  Restan(m, "6.8", kRojoOscuro);
}

TEST_F(EnLaMalla, ANegativeQuantityRaisesTheRemainder) {
  frmMallaModelos& m = Malla(1, 2, "10");
  Pega(m, "-5");
  Restan(m, "15", kRojoOscuro);
}

TEST_F(EnLaMalla, AQuantityOverTheTotalIsANegativeRemainder) {
  frmMallaModelos& m = Malla(1, 2, "10");
  Pon(m, "12");
  Restan(m, "-2", kRojoOscuro);
  EXPECT_TRUE(m.fg2.HasFocus());
}

TEST_F(EnLaMalla, TheQuantityIsTheTagsLeadingNumber) {
  frmMallaModelos& m = Malla(1, 2, "12 cajas");
  Pon(m, "10");
  Restan(m, "2", kRojoOscuro);
}

TEST_F(EnLaMalla, AnExactMatchLeadsToTheButtonAndOneMoreEnterAccepts) {
  frmMallaModelos& m = Malla(1, 2, "10");
  Pon(m, "4");
  Pon(m, "6");
  Restan(m, "0", kVerde);
  EXPECT_TRUE(m.cmdAceptar.HasFocus());
  EXPECT_TRUE(m.Visible());  // that Enter was the cell's
  EXPECT_EQ(m.Tag(), "10");
  Tecla(m, "Enter");
  EXPECT_FALSE(m.Visible());
  EXPECT_EQ(m.Tag(), "Hecho");
}

TEST_F(EnLaMalla, AcceptingHidesAndDoesNotUnload) {
  frmMallaModelos& m = Malla(1, 2, "10");
  Pon(m, "10");
  m.Click(m.cmdAceptar);
  EXPECT_FALSE(m.Visible());
  EXPECT_TRUE(m.Open());
  EXPECT_EQ(m.fg2.TextMatrix(3, 3), "10");
}

TEST_F(EnLaMalla, ACellEmptiedAfterwardsDisablesTheButtonAgain) {
  frmMallaModelos& m = Malla(1, 2, "10");
  Pon(m, "10");
  Restan(m, "0", kVerde);
  m.ClickCell(m.fg2, 3, 3);
  Tecla(m, "Delete");
  Restan(m, "10", kRojoOscuro);
  m.Click(m.cmdAceptar);
  EXPECT_TRUE(m.Visible());
  EXPECT_EQ(m.Tag(), "10");
}

TEST_F(EnLaMalla, AHiddenRemainderCountsNothing) {
  frmMallaModelos& m = Malla(1, 2, "0");
  m.txtRemanente.Visible(false);
  m.lblCantidadRestante.Visible(false);
  m.cmdAceptar.Enabled(true);
  Pon(m, "7");
  EXPECT_EQ(m.txtRemanente.Text(), "0");
  EXPECT_EQ(m.txtRemanente.ForeColor(), kRojo);
  EXPECT_TRUE(m.cmdAceptar.Enabled());
  EXPECT_TRUE(m.fg2.HasFocus());
  m.Click(m.cmdAceptar);
  EXPECT_EQ(m.Tag(), "Hecho");
}

// ---- the ways out ----

TEST_F(EnLaMalla, TheButtonAndTheCloseBoxLeaveTheQuantityInTheTag) {
  frmMallaModelos& primera = Malla(1, 2, "10");
  auto viva = primera.shared_from_this();
  Pon(primera, "10");
  primera.Click(primera.cmdCancelar);
  EXPECT_FALSE(primera.Open());
  EXPECT_EQ(primera.Tag(), "10");
  frmMallaModelos& segunda = Malla(1, 2, "10");
  Pon(segunda, "10");
  segunda.Close();
  EXPECT_FALSE(segunda.Open());
  EXPECT_EQ(segunda.Tag(), "10");
  EXPECT_TRUE(plataforma.Screens().empty());
}

TEST_F(EnLaMalla, NothingIsShownSentOrFiredByAWholeDistribution) {
  frmMallaModelos& m = Malla(2, 2, "10");
  Pon(m, "4");
  Pon(m, "6");
  Tecla(m, "Enter");
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_TRUE(bitacora.ganchos.empty());
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_EQ(pitidos, 0);
}

// ---- the window ----

TEST_F(EnLaMalla, TheControlsFollowTheWindowInProportion) {
  frmMallaModelos& m = Malla(2, 2);
  const int ancho = 2 * m.cmdCancelar.Left();
  EXPECT_GT(ancho, 0);
  const int antes[] = {m.fg2.Left(), m.fg2.Top(), m.fg2.Width(), m.fg2.Height()};
  m.Resize(2 * 9240, 3 * 5355);
  EXPECT_EQ(m.cmdCancelar.Left(), ancho);
  EXPECT_EQ(m.fg2.Left(), 2 * antes[0]);
  EXPECT_EQ(m.fg2.Top(), 3 * antes[1]);
  EXPECT_EQ(m.fg2.Width(), 2 * antes[2]);
  EXPECT_EQ(m.fg2.Height(), 3 * antes[3]);
  for (forms::Control* control : std::initializer_list<forms::Control*>{
           &m.fg2, &m.txtRemanente, &m.lblCantidadRestante, &m.txtDescrip, &m.cmdAceptar, &m.cmdCancelar}) {
    EXPECT_GT(control->Width(), 0) << control->Name();
    EXPECT_LE(control->Left() + control->Width(), 2 * 9240) << control->Name();
    EXPECT_LE(control->Top() + control->Height(), 3 * 5355) << control->Name();
  }
}

TEST_F(EnLaMalla, TheOpenEditorStaysOverItsCellWhenTheWindowChanges) {
  frmMallaModelos& m = Malla(2, 2);
  Tecla(m, "Enter", m.fg2);
  const int antes = m.txtCelda.Left();
  m.Resize(2 * 9240, 2 * 5355);
  EXPECT_EQ(m.txtCelda.Left(), antes);
  EXPECT_EQ(m.txtCelda.Width(), m.fg2.CellWidth());
}

// ---- failures ----

// A window that fails to show a change, the next time that the one which it waits for comes.
class VistaRota : public forms::FormListener {
 public:
  explicit VistaRota(forms::Form& forma) : forma_(forma) { forma_.Listen(*this); }
  ~VistaRota() override { forma_.StopListening(*this); }
  VistaRota(const VistaRota&) = delete;
  VistaRota& operator=(const VistaRota&) = delete;

  forms::Control* control = nullptr;  // whose change fails
  forms::Aspect aspecto = forms::Aspect::Text;
  forms::FlexGrid* celdas = nullptr;  // whose cells' changes fail

  void ControlChanged(forms::Control& cual, forms::Aspect que) override {
    if (&cual == control && que == aspecto) Revienta();
  }
  void CellChanged(forms::FlexGrid& cual, int, int) override {
    if (&cual == celdas) Revienta();
  }

 private:
  [[noreturn]] void Revienta() {
    control = nullptr;
    celdas = nullptr;
    throw data::Error("falla provocada");
  }
  forms::Form& forma_;
};

class FallasDeMalla : public EnLaMalla {
 protected:
  // One box that names the procedure, nothing in the day's log, and the lack of a folder told to the
  // platform.
  void Reportada(const std::string& procedimiento) {
    EXPECT_EQ(Reportes(), (Textos{Reporte(procedimiento, "falla provocada", "frmMallaModel")}));
    EXPECT_TRUE(bitacora.mensajes.at(0).texto.starts_with("14:03:22 Ocurrió un error:\r\n"));
    EXPECT_EQ(bitacora.mensajes.at(0).estilo, 0);
    EXPECT_EQ(ArchivoDelDia(), "");
    EXPECT_FALSE(std::filesystem::exists(ruta / "web"));
    EXPECT_EQ(no_atrapados, (Textos{"La variable de objeto no está establecida"}));
  }
};

TEST_F(FallasDeMalla, OpeningACellThatCannotBeShown) {
  frmMallaModelos& m = Malla(2, 2);
  m.fg2.TextMatrix(3, 3, "4");
  VistaRota vista(m);
  vista.control = &m.txtCelda;
  m.DoubleClickCell(m.fg2, 3, 3);
  Reportada("fg2_DblClick");
  EXPECT_FALSE(m.txtCelda.Visible());  // the event ended there
  EXPECT_TRUE(m.Open());
  EXPECT_EQ(m.fg2.TextMatrix(3, 3), "4");
  Tecla(m, "Enter");  // and the next one is whole again
  EXPECT_TRUE(m.txtCelda.HasFocus());
}

TEST_F(FallasDeMalla, EnterOnTheGridReportsTheOpeningOnce) {
  frmMallaModelos& m = Malla(2, 2);
  VistaRota vista(m);
  vista.control = &m.txtCelda;
  vista.aspecto = forms::Aspect::Geometry;
  Tecla(m, "Enter", m.fg2);
  Reportada("fg2_DblClick");
}

TEST_F(FallasDeMalla, ADigitThatCannotBePut) {
  frmMallaModelos& m = Malla(2, 2);
  VistaRota vista(m);
  vista.control = &m.txtCelda;  // an empty cell is opened with no change of text
  Tecla(m, "7", m.fg2);
  Reportada("fg2_KeyPress");
  EXPECT_TRUE(m.txtCelda.Visible());
}

TEST_F(FallasDeMalla, ACellThatCannotBeEmptied) {
  frmMallaModelos& m = Malla(2, 2);
  m.fg2.TextMatrix(3, 3, "4");
  VistaRota vista(m);
  vista.celdas = &m.fg2;
  Tecla(m, "Delete", m.fg2);
  Reportada("fg2_KeyDown");
}

TEST_F(FallasDeMalla, EnteringACellWhoseEditorCannotBeHidden) {
  frmMallaModelos& m = Malla(2, 2);
  Tecla(m, "Enter", m.fg2);
  VistaRota vista(m);
  vista.control = &m.txtCelda;
  vista.aspecto = forms::Aspect::Visible;
  m.ClickCell(m.fg2, 4, 4);
  Reportada("fg2_EnterCell");
  EXPECT_EQ(Cursor(m), (Casilla{4, 4}));
}

TEST_F(FallasDeMalla, ARemainderThatCannotBeShown) {
  frmMallaModelos& m = Malla(2, 2);
  VistaRota vista(m);
  vista.control = &m.txtRemanente;
  Pon(m, "4");  // the editor's event has no trap; the sum has its own
  Reportada("CalculaSuma");
  EXPECT_EQ(m.fg2.TextMatrix(3, 3), "4");
  EXPECT_EQ(Cursor(m), (Casilla{3, 4}));
}

TEST_F(FallasDeMalla, DeleteReportsAFailedSumOnce) {
  frmMallaModelos& m = Malla(2, 2);
  m.fg2.TextMatrix(3, 3, "4");
  VistaRota vista(m);
  vista.control = &m.txtRemanente;
  vista.aspecto = forms::Aspect::Colour;
  Tecla(m, "Delete", m.fg2);
  Reportada("CalculaSuma");
}

TEST_F(FallasDeMalla, TheEditorsEventsHaveNoTrap) {
  frmMallaModelos& m = Malla(2, 2);
  Teclea(m, m.fg2, "4");
  VistaRota vista(m);
  vista.celdas = &m.fg2;
  Tecla(m, "Enter");
  EXPECT_EQ(no_atrapados, (Textos{"falla provocada"}));
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(Cursor(m), (Casilla{3, 3}));  // the event ended there
  EXPECT_EQ(m.txtRemanente.Text(), "10");
}

TEST_F(FallasDeMalla, TheReportersCallThrowsWhoeverCalls) {
  frmMallaModelos& m = Malla(2, 2);
  EXPECT_THROW((void)m.ReportaError("m", "f", "d"), service::FallaDelReporte);
  EXPECT_EQ(Reportes(), (Textos{"Module: m\r\nFunction: f\r\nDescription: d\r\n"}));
}

TEST_F(FallasDeMalla, MovingTheFocusToAButtonThatIsNotThereIsIgnored) {
  frmMallaModelos& m = Malla(2, 2);
  m.cmdAceptar.Visible(false);
  Pon(m, "10");
  Restan(m, "0", kVerde);
  EXPECT_TRUE(m.fg2.HasFocus());
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_TRUE(Reportes().empty());
}

}  // namespace
}  // namespace tarvik::tests
