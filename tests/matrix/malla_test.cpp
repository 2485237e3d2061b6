// The matrix by itself: how it is designed, what remains to be spread, and the ways out: only an exact match
// is accepted. Its keys: cell_keys_test.cpp; where its cursor may go: recorrido_test.cpp.
#include <set>

#include "data/number.h"
#include "tests/matrix/grid.h"

namespace tarvik::tests {
namespace {

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

}  // namespace
}  // namespace tarvik::tests
