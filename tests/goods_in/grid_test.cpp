// The grid of lines: its design, the total, the colours of the current cell and the removal of a
// line. Editing a cell has a file of its own.
#include "goods_in/columnas.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

using Textos = std::vector<std::string>;

constexpr int kBlancoDeCelda = 0xFFFFFF;
constexpr int kCianDeCelda = 0xFFFFE0;

class Cuadricula : public Escenario {
 protected:
  Cuadricula() { Catalogo(); }
};

TEST_F(Cuadricula, TheGridIsFixedAtItsRowsAndColumns) {
  frmEntradasWizard& f = Nueva();
  EXPECT_EQ(f.fg2.Rows(), 5000);
  EXPECT_EQ(f.fg2.Cols(), 10);
  EXPECT_EQ(f.fg2.FixedRows(), 1);
  EXPECT_EQ(f.fg2.FixedCols(), 0);
  EXPECT_EQ(f.fg2.Row(), 1);
  EXPECT_EQ(f.fg2.Col(), columna_entrada::Articulo);
}

TEST_F(Cuadricula, TheHeadersAndWidthsAreThoseOfTheTable) {
  frmEntradasWizard& f = Nueva();
  const Textos titulos{"Artículo",      "QTY",          "Precio",  "Importe", "Descripción",
                       "No de Entrada", "Presentación", "Pr. QTY", "",        ""};
  for (int columna = 0; columna < 10; ++columna) {
    EXPECT_EQ(Celda(f, 0, columna), titulos[static_cast<std::size_t>(columna)]) << columna;
  }
  const int defecto = f.fg2.ColWidth(8);
  EXPECT_EQ(f.fg2.ColWidth(columna_entrada::Articulo), static_cast<int>(defecto * 1.5 + 0.5));
  const int anchos[] = {800, 900, 900, 4000, 0, 2000, 1000};
  for (int columna = 1; columna <= 7; ++columna)
    EXPECT_EQ(f.fg2.ColWidth(columna), anchos[columna - 1]) << columna;
  EXPECT_EQ(f.fg2.ColWidth(9), defecto);
}

TEST_F(Cuadricula, TheFloatingBoxIsHiddenAtFirst) { EXPECT_FALSE(Nueva().txtEdit.Visible()); }

TEST_F(Cuadricula, AStoredDocumentFillsTheGridAndItsTotal) {
  {
    frmEntradasWizard& f = Nueva();
    Teclea(f, f.txtFields(campo::Concepto), "COM");
    f.txtFields(campo::Articulo).Text("7501");
    f.txtFields(campo::Articulo).SetFocus();
    Tecla(f, "Enter");
    f.LlenaPartida();
    f.txtFields(campo::Cantidad).Text("");
    Renglon(f, "A-200", "2.5");
    f.Click(f.Command2);
  }
  frmEntradasWizard& f = Modifica(1);
  const Textos primero{"A-100", "12", "116", "1392", " Martillo de uña", "1", "CJ", "1", "", ""};
  const Textos segundo{"A-200", "2.5", "50", "125", " Clavo a granel", "2", "", "0", "", ""};
  for (int columna = 0; columna < 10; ++columna) {
    EXPECT_EQ(Celda(f, 1, columna), primero[static_cast<std::size_t>(columna)]) << columna;
    EXPECT_EQ(Celda(f, 2, columna), segundo[static_cast<std::size_t>(columna)]) << columna;
  }
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "1,517");
}

TEST_F(Cuadricula, TheTotalIsTheSumOfUnroundedProducts) {
  frmEntradasWizard& f = Nueva();
  const char* renglones[][3] = {
      {"A", "3", "0.1"}, {"B", "1,000", "1.2345"}, {"C", "x", "9"}, {"D", "2", "-1"}};
  int renglon = 0;
  for (const auto& [articulo, cantidad, precio] : renglones) {
    ++renglon;
    f.fg2.TextMatrix(renglon, columna_entrada::Articulo, articulo);
    f.fg2.TextMatrix(renglon, columna_entrada::Cantidad, cantidad);
    f.fg2.TextMatrix(renglon, columna_entrada::Precio, precio);
    f.fg2.TextMatrix(renglon, columna_entrada::Importe, "vieja");
  }
  f.CalculaImportes();
  EXPECT_EQ(Celda(f, 1, columna_entrada::Importe), "0.3");
  EXPECT_EQ(Celda(f, 2, columna_entrada::Importe), "1234.5");
  EXPECT_EQ(Celda(f, 3, columna_entrada::Importe), "0");
  EXPECT_EQ(Celda(f, 4, columna_entrada::Importe), "-2");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "1,232.8");
}

TEST_F(Cuadricula, TheTotalIsGroupedWithAtMostTwoDecimals) {
  frmEntradasWizard& f = Nueva();
  for (auto [precio, total] : {std::pair{"1234567.125", "1,234,567.13"},
                               {"1234.5", "1,234.5"},
                               {"7", "7"},
                               {"0.004", "0"},
                               {"999.995", "1,000"}}) {
    f.fg2.TextMatrix(1, columna_entrada::Articulo, "A");
    f.fg2.TextMatrix(1, columna_entrada::Cantidad, "1");
    f.fg2.TextMatrix(1, columna_entrada::Precio, precio);
    f.CalculaImportes();
    EXPECT_EQ(f.txtFields(campo::Total).Text(), total);
  }
}

TEST_F(Cuadricula, TheFirstFreeRowEndsTheTotal) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "1"}});
  f.fg2.TextMatrix(3, columna_entrada::Articulo, "A-200");
  f.fg2.TextMatrix(3, columna_entrada::Cantidad, "1");
  f.fg2.TextMatrix(3, columna_entrada::Precio, "50");
  f.CalculaImportes();
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "116");
  EXPECT_EQ(Celda(f, 3, columna_entrada::Importe), "");
}

TEST_F(Cuadricula, AnEmptyDocumentShowsZero) {
  frmEntradasWizard& f = Nueva();
  f.CalculaImportes();
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "0");
}

TEST_F(Cuadricula, TheTotalLeavesTheSumsOfTheRoutinesAlone) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "1"}});
  f.Importe = f.Iva = f.Total = f.Costo = 7;
  f.Check1_Click();
  EXPECT_EQ(f.Importe, 7);
  EXPECT_EQ(f.Iva, 7);
  EXPECT_EQ(f.Total, 7);
  EXPECT_EQ(f.Costo, 7);
}

TEST_F(Cuadricula, ARoutineMayAskForTheTotalByTheBoxThatIsNotThere) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "1"}});
  f.fg2.TextMatrix(1, columna_entrada::Cantidad, "2");
  f.Check1_Click();
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "232");
}

TEST_F(Cuadricula, TheCurrentCellIsLightCyanAndTheOneLeftWhite) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "1"}, {"A-200", "1"}});
  f.ClickCell(f.fg2, 1, 1);
  EXPECT_EQ(f.fg2.BackColor(1, 1), kCianDeCelda);
  Tecla(f, "Down");
  EXPECT_EQ(f.fg2.BackColor(1, 1), kBlancoDeCelda);
  EXPECT_EQ(f.fg2.BackColor(2, 1), kCianDeCelda);
  Tecla(f, "Left");
  EXPECT_EQ(f.fg2.BackColor(2, 1), kBlancoDeCelda);
  EXPECT_EQ(f.fg2.BackColor(2, 0), kCianDeCelda);
}

TEST_F(Cuadricula, TheHeaderRowIsNotColoured) {
  frmEntradasWizard& f = Nueva();
  f.fg2.MoveTo(0, columna_entrada::Precio);
  EXPECT_EQ(f.fg2.BackColor(0, 2), 0);
  f.fg2.MoveTo(1, columna_entrada::Precio);
  EXPECT_EQ(f.fg2.BackColor(0, 2), 0);
  EXPECT_EQ(f.fg2.BackColor(1, 2), kCianDeCelda);
}

TEST_F(Cuadricula, DeleteOnTheArticleRemovesTheLineAtOnceAndAsksNothing) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "1"}, {"A-200", "2"}, {"A-100", "3"}});
  f.ClickCell(f.fg2, 2, 0);
  Olvida();
  Tecla(f, "Delete");
  EXPECT_EQ(bitacora.sentencias, (Textos{"DELETE FROM entpart WHERE id_entrada = 2"}));
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "2");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Cantidad), "1");
  EXPECT_EQ(Celda(f, 2, columna_entrada::Cantidad), "3");
  EXPECT_EQ(Celda(f, 3, columna_entrada::Articulo), "");
  EXPECT_EQ(f.fg2.Rows(), 5000);
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "464");
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(Cuadricula, DeleteElsewhereDoesNothing) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "1"}});
  for (int columna : {1, 2, 3, 4, 6, 7}) {
    f.ClickCell(f.fg2, 1, columna);
    Olvida();
    Tecla(f, "Delete");
    EXPECT_TRUE(bitacora.sentencias.empty()) << columna;
  }
  f.ClickCell(f.fg2, 2, 0);
  Tecla(f, "Delete");
  EXPECT_TRUE(bitacora.sentencias.empty());
  f.ClickCell(f.fg2, 1, 0);
  Tecla(f, "Back");
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_EQ(Celda(f, 1, columna_entrada::Articulo), "A-100");
  EXPECT_EQ(f.fg2.Rows(), 5000);
}

TEST_F(Cuadricula, AReadDocumentLosesNoLine) {
  ConRenglones({{"A-100", "1"}});
  frmEntradasWizard& f = Consulta(1);
  f.ClickCell(f.fg2, 1, 0);
  Olvida();
  Tecla(f, "Delete");
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_EQ(Celda(f, 1, columna_entrada::Articulo), "A-100");
}

TEST_F(Cuadricula, AfterARemovalTheNextLineTakesTheRowThatIsFree) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "1"}, {"A-200", "2"}});
  f.ClickCell(f.fg2, 1, 0);
  Tecla(f, "Delete");
  Renglon(f, "A-100", "5");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Articulo), "A-200");
  EXPECT_EQ(Celda(f, 2, columna_entrada::Cantidad), "5");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "680");
  EXPECT_EQ(Celda(f, 2, columna_entrada::IdEntrada), "3");
}

TEST_F(Cuadricula, RemovingTheLastLineLeavesAnEmptyDocument) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "1"}});
  f.ClickCell(f.fg2, 1, 0);
  Tecla(f, "Delete");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "1");
}

}  // namespace
}  // namespace tarvik::tests
