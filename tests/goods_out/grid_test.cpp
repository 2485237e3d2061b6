// The lines of goods-out in their grid: only quantities are corrected, in place; a line is removed; totals
// follow. What the stock check says of a correction is told in stock_test.cpp.
#include "goods_out/columnas.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class CuadriculaDeSalidas : public EscenarioDeSalidas {
 protected:
  // Two lines, the cell current, the record empty.
  frmSalidasWizard& EnLaCelda(int renglon, int columna) {
    frmSalidasWizard& f = Salida({{"A-100", "3"}, {"A-200", "2"}});
    f.ClickCell(f.fg2, renglon, columna);
    Olvida();
    return f;
  }
};

// ---- opening the box ----

TEST_F(CuadriculaDeSalidas, EnterSpaceADigitAndADoubleClickOpenTheQuantity) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Cantidad);
  f.fg2.Text("300");
  for (const char* tecla : {"Enter", "Space"}) {
    Tecla(f, tecla);
    EXPECT_TRUE(f.txtEdit.Visible()) << tecla;
    EXPECT_TRUE(f.txtEdit.HasFocus());
    EXPECT_EQ(f.txtEdit.Text(), "300");
    EXPECT_EQ(f.txtEdit.SelStart(), 3);
    Tecla(f, "Esc");
    EXPECT_FALSE(f.txtEdit.Visible());
  }
  Tecla(f, "7");
  EXPECT_EQ(f.txtEdit.Text(), "7");
  Tecla(f, "Esc");
  f.DoubleClickCell(f.fg2, 2, 1);
  EXPECT_EQ(f.txtEdit.Text(), "2");
  EXPECT_EQ(CuentaClaves("SALIDAS014"), 4);
  EXPECT_EQ(pitidos, 0);
}

TEST_F(CuadriculaDeSalidas, EveryOtherColumnIsBlockedWithABeep) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Cantidad);
  int esperados = 0;
  for (int columna : {0, 2, 3, 4, 5, 6, 7, 8, 9, 10}) {
    f.fg2.MoveTo(1, columna);
    f.MSFlexGridEdit(f.fg2, f.txtEdit, 32);
    EXPECT_EQ(pitidos, ++esperados) << columna;
    f.MSFlexGridEdit(f.fg2, f.txtEdit, '7');
    EXPECT_EQ(pitidos, ++esperados) << columna;
    EXPECT_EQ(f.txtEdit.Text(), "7");
    EXPECT_FALSE(f.txtEdit.Visible()) << columna;
  }
  EXPECT_TRUE(Claves().empty());
}

TEST_F(CuadriculaDeSalidas, ACharacterThatIsNoPartOfANumberIsRefusedWithoutABeep) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Cantidad);
  for (int columna : {0, 1, 3}) {
    f.fg2.MoveTo(1, columna);
    f.MSFlexGridEdit(f.fg2, f.txtEdit, 'a');
  }
  EXPECT_EQ(pitidos, 0);
  EXPECT_FALSE(f.txtEdit.Visible());
}

TEST_F(CuadriculaDeSalidas, AFreeRowOpensNothingAndGivesNoBeep) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Cantidad);
  for (int columna : {0, 1, 3}) {
    f.ClickCell(f.fg2, 3, columna);
    Tecla(f, "Space");
    Tecla(f, "7");
    f.DoubleClickCell(f.fg2, 3, columna);
  }
  EXPECT_EQ(pitidos, 0);
  EXPECT_FALSE(f.txtEdit.Visible());
}

TEST_F(CuadriculaDeSalidas, AReadDocumentIsNeverEditedAndItsBlockedColumnsStillBeep) {
  DocumentoGuardado(1, "CO");
  frmSalidasWizard& f = ConsultaSalida(7);
  Olvida();
  f.fg2.MoveTo(1, columna_salida::Cantidad);
  f.MSFlexGridEdit(f.fg2, f.txtEdit, 32);
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_EQ(pitidos, 0);
  EXPECT_TRUE(Claves().empty());
  f.fg2.MoveTo(1, columna_salida::Precio);
  f.MSFlexGridEdit(f.fg2, f.txtEdit, 32);
  EXPECT_EQ(pitidos, 1);
}

TEST_F(CuadriculaDeSalidas, ARoutineMayRefuseOnce) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Cantidad);
  Gancho("SALIDAS014", [](frmSalidasWizard& g) { g.CancelaProceso = true; });
  Tecla(f, "Enter");
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_FALSE(f.CancelaProceso);
  SinGancho("SALIDAS014");
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtEdit.Visible());
}

TEST_F(CuadriculaDeSalidas, TheBoxStandsExactlyOverTheCell) {
  frmSalidasWizard& f = EnLaCelda(2, columna_salida::Cantidad);
  f.fg2.Place(300, 500, 9000, 4000);
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtEdit.Left(), 300 + f.fg2.CellLeft());
  EXPECT_EQ(f.txtEdit.Top(), 500 + f.fg2.CellTop());
  EXPECT_EQ(f.txtEdit.Width(), 800);
  EXPECT_EQ(f.txtEdit.Height(), f.fg2.CellHeight());
}

// ---- committing ----

TEST_F(CuadriculaDeSalidas, EnterAsksTheStockStoresTheQuantityAndGoesToTheArticle) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Cantidad);
  Tecla(f, "5");
  Tecla(f, "Enter");
  EXPECT_EQ(bitacora.sentencias,
            (Textos{"SELECT * FROM prods WHERE articulo = 'A-100'",
                    "SELECT * FROM existenciaalmacen WHERE articulo = 'A-100' AND almacen = 1",
                    "UPDATE salpart SET cantidad = 5 WHERE id_salida = 1"}));
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_EQ(f.txtEdit.Text(), "");
  EXPECT_EQ(Celda(f, 1, columna_salida::Cantidad), "5");
  EXPECT_EQ(Celda(f, 1, columna_salida::Importe), "580");
  EXPECT_EQ(Celda(f, 1, columna_salida::Existencia), "5");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "680");
  EXPECT_EQ(f.txtFields(campo::Unidades).Text(), "7");
  EXPECT_EQ(f.UltimaPartida, 2);
}

TEST_F(CuadriculaDeSalidas, EscKeepsTheOldTextAndWritesNothing) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Cantidad);
  Tecla(f, "9");
  Tecla(f, "Esc");
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_TRUE(f.fg2.HasFocus());
  EXPECT_EQ(Celda(f, 1, columna_salida::Cantidad), "3");
  EXPECT_TRUE(bitacora.sentencias.empty());
}

TEST_F(CuadriculaDeSalidas, DownStoresTheOldRowAndThenGoesToTheNext) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Cantidad);
  Tecla(f, "9");
  Tecla(f, "Down");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart WHERE id_salida = 1"), "9");
  EXPECT_EQ(Celda(f, 2, columna_salida::Cantidad), "2");
  EXPECT_EQ(f.fg2.Row(), 2);
}

TEST_F(CuadriculaDeSalidas, LeavingTheCellWithTheBoxOpenColoursItAndStoresIt) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Cantidad);
  EXPECT_EQ(f.fg2.BackColor(1, 1), 0xFFFFE0);
  Tecla(f, "9");
  f.fg2.MoveTo(2, columna_salida::Cantidad);
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart WHERE id_salida = 1"), "9");
  EXPECT_EQ(f.fg2.BackColor(1, 1), 0xFFFFFF);
  EXPECT_EQ(f.fg2.BackColor(2, 1), 0xFFFFE0);
  EXPECT_FALSE(f.txtEdit.Visible());
}

TEST_F(CuadriculaDeSalidas, LeavingTheCellIsAskedAboutTooAndNoDropsTheEdit) {
  ControlaExistencia();
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Cantidad);
  f.fg2.Text("-2");
  Tecla(f, "9");
  bitacora.respuestas.push_back(false);
  f.fg2.MoveTo(2, columna_salida::Cantidad);
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::ExistenciaEncabezado, mensaje::ExistenciaDelAlmacen,
                                         mensaje::ExistenciaApartados, mensaje::ExistenciaContinua}));
  EXPECT_EQ(Celda(f, 1, columna_salida::Cantidad), "-2");
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_EQ(f.txtEdit.Text(), "");
  EXPECT_EQ(f.fg2.BackColor(1, 1), 0xFFFFFF);
  EXPECT_EQ(CuentaSentencias("UPDATE"), 0);
}

TEST_F(CuadriculaDeSalidas, ADisabledBoxIsNotCommitted) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Cantidad);
  Tecla(f, "9");
  f.txtEdit.Enabled(false);
  f.Enter(f.fg2);
  f.fg2.MoveTo(2, columna_salida::Cantidad);
  EXPECT_TRUE(f.txtEdit.Visible());
  EXPECT_EQ(Celda(f, 1, columna_salida::Cantidad), "3");
  EXPECT_TRUE(bitacora.sentencias.empty());
}

TEST_F(CuadriculaDeSalidas, InAnyOtherColumnTheStockIsNotAsked) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Precio);
  f.txtFields(campo::Articulo).SetFocus();
  Olvida();
  f.txtEdit.Text("7.5");
  f.txtEdit.Visible(true);
  f.Enter(f.fg2);
  EXPECT_EQ(bitacora.sentencias, (Textos{"UPDATE salpart SET precio = 7.5 WHERE id_salida = 1"}));
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "122.5");
}

TEST_F(CuadriculaDeSalidas, AQuantityThatReadsAsZeroIsTaken) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Cantidad);
  Tecla(f, "0");
  Tecla(f, "Enter");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart WHERE id_salida = 1"), "0");
  EXPECT_TRUE(bitacora.mensajes.empty());
}

// ---- removing ----

TEST_F(CuadriculaDeSalidas, DeleteOnTheArticleRemovesTheLineAtOnce) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Articulo);
  Tecla(f, "Delete");
  EXPECT_EQ(bitacora.sentencias, (Textos{"SELECT * FROM salpart WHERE id_salida = 1",
                                         "SELECT * FROM prods WHERE articulo = 'A-100'",
                                         "DELETE FROM salpart WHERE id_salida = 1"}));
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "1");
  EXPECT_EQ(Celda(f, 1, columna_salida::Articulo), "A-200");
  EXPECT_EQ(Celda(f, 2, columna_salida::Articulo), "");
  EXPECT_EQ(f.fg2.Rows(), 5000);
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Renglones).Text(), "1");
  EXPECT_EQ(f.txtFields(campo::Unidades).Text(), "2");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "100");
  EXPECT_EQ(f.UltimaPartida, 1);
}

TEST_F(CuadriculaDeSalidas, RemovingTheOnlyLineLeavesTheCountAndEmptiesTheSums) {
  frmSalidasWizard& f = Salida({{"A-100", "3"}});
  f.ClickCell(f.fg2, 1, 0);
  Tecla(f, "Delete");
  EXPECT_EQ(f.txtFields(campo::Renglones).Text(), "1");
  EXPECT_EQ(f.txtFields(campo::Unidades).Text(), "0");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "0");
  EXPECT_EQ(f.UltimaPartida, 1);
}

TEST_F(CuadriculaDeSalidas, ALineThatIsGoneFromTheBaseStaysInTheGrid) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Articulo);
  Sql("DELETE FROM salpart WHERE id_salida = 1");
  f.fg2.TextMatrix(1, columna_salida::Cantidad, "8");
  Tecla(f, "Delete");
  EXPECT_EQ(CuentaSentencias("DELETE"), 0);
  EXPECT_EQ(Celda(f, 1, columna_salida::Articulo), "A-100");
  EXPECT_TRUE(f.fg2.HasFocus());
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "1,028");  // the totals are worked out all the same
}

TEST_F(CuadriculaDeSalidas, DeleteElsewhereOrInAReadDocumentDoesNothing) {
  frmSalidasWizard& f = EnLaCelda(1, columna_salida::Cantidad);
  Tecla(f, "Delete");
  f.ClickCell(f.fg2, 3, 0);
  Tecla(f, "Delete");
  EXPECT_TRUE(bitacora.sentencias.empty());
  DocumentoGuardado(1, "CO");
  frmSalidasWizard& leida = ConsultaSalida(7);
  leida.fg2.MoveTo(1, columna_salida::Articulo);
  Olvida();
  int tecla = forms::kKeyDelete;
  leida.fg2_KeyDown(tecla, 0);
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_EQ(Celda(leida, 1, columna_salida::Articulo), "A-100");
}

// ---- totals ----

TEST_F(CuadriculaDeSalidas, TheTotalsAreWorkedOutFromTheGridUpToTheFirstFreeRow) {
  frmSalidasWizard& f = ConConcepto();
  const char* const renglones[3][3] = {{"1,000", "2", "1500"}, {"0.1", "3", ""}, {"5", "5", "5"}};
  for (int i = 0; i < 3; ++i) {
    const int renglon = i == 2 ? 4 : i + 1;
    f.fg2.TextMatrix(renglon, columna_salida::Articulo, "X");
    f.fg2.TextMatrix(renglon, columna_salida::Cantidad, renglones[i][0]);
    f.fg2.TextMatrix(renglon, columna_salida::Precio, renglones[i][1]);
    f.fg2.TextMatrix(renglon, columna_salida::ExistenciaDelAlmacen, renglones[i][2]);
  }
  f.CalculaImportes();
  EXPECT_EQ(Celda(f, 1, columna_salida::Importe), "2000");
  EXPECT_EQ(Celda(f, 1, columna_salida::Existencia), "500");
  EXPECT_EQ(Celda(f, 2, columna_salida::Importe), "0.3");
  EXPECT_EQ(Celda(f, 2, columna_salida::Existencia), "-0.1");
  EXPECT_EQ(Celda(f, 4, columna_salida::Importe), "");
  EXPECT_EQ(f.UltimaPartida, 2);
  EXPECT_EQ(f.txtFields(campo::Renglones).Text(), "2");
  EXPECT_EQ(f.txtFields(campo::Unidades).Text(), "1,000.1");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "2,000.3");
}

TEST_F(CuadriculaDeSalidas, WithoutLinesTheSumsAreZeroAndTheCountStaysAsItWas) {
  frmSalidasWizard& f = ConConcepto();
  f.CalculaImportes();
  EXPECT_EQ(f.txtFields(campo::Renglones).Text(), "");
  EXPECT_EQ(f.txtFields(campo::Unidades).Text(), "0");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "0");
  EXPECT_EQ(f.UltimaPartida, 0);
}

}  // namespace
}  // namespace tarvik::tests
