// How the entry row of goods-in becomes a line: the row is checked, and one row of entpart and one of the
// grid come of it. Second keys and the barcode reader have files of their own; models are not tested here.
#include <algorithm>

#include "tests/goods_in/lines.h"

namespace tarvik::tests {
namespace {

TEST_F(Renglones, TheRoadOfALineFiresItsHooksInOrder) {
  frmEntradasWizard& f = ConConcepto();
  f.Enter(f.txtFields(campo::Articulo));
  Olvida();
  Renglon(f, "A-100", "3");
  std::vector<std::pair<std::string, std::string>> vistos;
  for (const auto& [clave, valor] : bitacora.ganchos) {
    vistos.emplace_back(clave, valor.IsNull() ? "(nada)" : data::ToText(valor));
  }
  const std::vector<std::pair<std::string, std::string>> esperados{
      {"ENTRADA012", "4"}, {"ENTRADA009", "(nada)"}, {"ENTRADA007", "4"},
      {"ENTRADA008", "5"}, {"ENTRADA007", "5"},      {"ENTRADA008", "6"},
      {"ENTRADA007", "6"}, {"ENTRADA008", "4"},      {"ENTRADA005", "4"}};
  EXPECT_EQ(vistos, esperados);
}

TEST_F(Renglones, TheFirstLineSendsItsStatementsInOrder) {
  frmEntradasWizard& f = ConConcepto();
  Olvida();
  Renglon(f, "A-100", "3");
  EXPECT_EQ(
      Sentencias(),
      (Textos{
          "SELECT prods.descrip,unidad,precio1,impuestos.valor FROM prods INNER JOIN impuestos ON "
          "prods.impuesto = impuestos.impuesto WHERE articulo = 'A-100'",
          "SELECT * FROM prods WHERE modelo = 'A-100'",
          "SELECT ubicacion FROM prods WHERE articulo = 'A-100'",
          "INSERT INTO entradas (entrada, ocupado, f_emision, tipo_doc, importe, costo, almacen, estado, "
          "observ, tipo_cam, moneda, datos, usuario, usufecha, usuhora) VALUES (1, 1, '2024-03-05', 'COM', "
          "0, 0, '1', 'PE', '', 1, '', 'Compra a proveedor', 'ANA', '2024-03-05', '14:03:22')",
          "SELECT * FROM entradas WHERE entrada = 1", "SELECT * FROM entradas WHERE (((entrada) = 1))",
          "INSERT INTO entpart (id_entrada, entrada, tipo_doc, no_referen, articulo, cantidad, precio, "
          "observ, partida, usuario, usufecha, Usuhora, prcantidad, prdescrip, claveadd) VALUES (1, 1, "
          "'COM', 1, 'A-100', 3, 116, 'Martillo de uña', 0, 'ANA', '2024-03-05', '14:03:22', 0, '', '')"}));
}

TEST_F(Renglones, OnlyTheFirstLineMakesTheDocument) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}});
  Olvida();
  Renglon(f, "A-200", "1");
  EXPECT_EQ(CuentaSentencias("INSERT INTO entradas"), 0);
  EXPECT_EQ(CuentaSentencias("SELECT * FROM entradas WHERE (((entrada) = 1))"), 1);
  EXPECT_EQ(CuentaSentencias("INSERT INTO entpart (id_entrada, entrada, tipo_doc, no_referen"), 1);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "1");
  EXPECT_EQ(Uno("SELECT id_entrada FROM entpart WHERE articulo = 'A-200'"), "2");
}

TEST_F(Renglones, TheLineTakesTheConceptOfTheStoredHeader) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}});
  f.txtFields(campo::Concepto).Text("A++");
  Renglon(f, "A-200", "1");
  EXPECT_EQ(Uno("SELECT tipo_doc FROM entpart WHERE articulo = 'A-200'"), "COM");
}

TEST_F(Renglones, TheGridShowsTheLineAndTheEntryRowIsFreeForTheNext) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "2.5"}});
  const Textos esperado{"A-200", "2.5", "50.00", "125", "Clavo a granel", "2", "", "", "", ""};
  for (int columna = 0; columna < 10; ++columna) {
    EXPECT_EQ(Celda(f, 2, columna), esperado[static_cast<std::size_t>(columna)]) << columna;
  }
  EXPECT_EQ(f.fg2.Row(), 2);
  EXPECT_EQ(Celda(f, 3, columna_entrada::Articulo), "");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "473");
  RenglonVacio(f);
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_FALSE(f.Procesando);
}

TEST_F(Renglones, TheAmountIsFirstWrittenWithTwoDecimalsAndThenRecomputed) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}});
  std::string antes;
  f.fg2.OnRowColChange = [&] { antes = Celda(f, 2, columna_entrada::Importe); };
  Renglon(f, "A-100", "1500");
  EXPECT_EQ(antes, "174,000.00");
  EXPECT_EQ(Celda(f, 2, columna_entrada::Importe), "174000");
}

TEST_F(Renglones, APriceInThousandsIsStoredWhole) {
  Sql("UPDATE prods SET precio1 = 2000 WHERE articulo = 'A-100'");
  frmEntradasWizard& f = ConRenglones({{"A-100", "2"}});
  EXPECT_EQ(Uno("SELECT precio FROM entpart"), "2320");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Precio), "2,320.00");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "4,640");
}

TEST_F(Renglones, WithoutASecondKeyTheAmountOfTheEntryRowIsNotComputed) {
  frmEntradasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo::Cantidad), "3");
  EXPECT_EQ(f.txtFields(campo::ImporteDelRenglon).Text(), "");
}

TEST_F(Renglones, AnEmptyArticleIsRefused) {
  frmEntradasWizard& f = ConConcepto();
  Tecla(f, "F9", f.txtFields(campo::Cantidad));
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinArticulo});
  EXPECT_EQ(bitacora.mensajes.back().texto, MensajeDeLaBase(mensaje::SinArticulo));
  EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
  EXPECT_EQ(bitacora.mensajes.back().clase, "mensaje");
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "0");
}

TEST_F(Renglones, AKeyThatIsNoArticleIsRefused) {
  frmEntradasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Articulo), "NADA");
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo::Cantidad), "3");
  Tecla(f, "F9");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoEsArticulo});
  EXPECT_EQ(bitacora.mensajes.back().texto, MensajeDeLaBase(mensaje::NoEsArticulo));
  EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "NADA");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "3");
}

TEST_F(Renglones, AKeyWithBlanksAroundItIsDescribedButMakesNoLine) {
  frmEntradasWizard& f = ConConcepto();
  Renglon(f, " A-100", "3");
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Martillo de uña");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoEsArticulo});
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
}

TEST_F(Renglones, AQuantityOfZeroOrLessIsRefused) {
  frmEntradasWizard& f = ConConcepto();
  for (const char* cantidad : {"", "0", "-1"}) {
    Olvida();
    f.txtFields(campo::Articulo).Text("A-100");
    f.PonDescripcion();
    f.txtFields(campo::Cantidad).Text(cantidad);
    f.LlenaPartida();
    EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinCantidad}) << cantidad;
    EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
    EXPECT_EQ(bitacora.mensajes.back().texto, MensajeDeLaBase(mensaje::SinCantidad));
    EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
    EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
    EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00");
  }
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "0");
}

TEST_F(Renglones, APriceOfZeroOrLessIsRefused) {
  frmEntradasWizard& f = ConConcepto();
  for (const char* precio : {"", "0", "-5", "12 pesos"}) {
    Olvida();
    f.txtFields(campo::Articulo).Text("A-100");
    f.txtFields(campo::Cantidad).Text("3");
    Tecla(f, "Enter", f.txtFields(campo::Cantidad));
    f.txtFields(campo::Precio).Text(precio);
    f.LlenaPartida();
    EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinPrecio}) << precio;
    EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
    EXPECT_EQ(bitacora.mensajes.back().texto, MensajeDeLaBase(mensaje::SinPrecio));
    EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
    EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "3");
  }
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "0");
}

TEST_F(Renglones, ARefusalAfterTabLeavesTheFocusOnThePriceAtFault) {
  Sql("UPDATE prods SET precio1 = 0 WHERE articulo = 'A-100'");
  frmEntradasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo::Cantidad), "3");
  Tecla(f, "Enter");
  Tecla(f, "Tab");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinPrecio});
  EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
}

TEST_F(Renglones, TheFocusOfARefusalMovesOnlyToAnEnabledField) {
  frmEntradasWizard& f = ConConcepto();
  f.txtFields(campo::Cantidad).Enabled(false);
  f.txtFields(campo::Articulo).Text("A-100");
  f.txtFields(campo::Concepto).SetFocus();
  f.LlenaPartida();
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinCantidad});
  EXPECT_TRUE(f.txtFields(campo::Concepto).HasFocus());
  f.txtFields(campo::Cantidad).Text("3");
  f.txtFields(campo::Precio).Enabled(false);
  Olvida();
  f.LlenaPartida();
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinPrecio});
  EXPECT_TRUE(f.txtFields(campo::Concepto).HasFocus());
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(Renglones, AKnownPriceBringsTheFocusToTheArticleBeforeTheChecks) {
  frmEntradasWizard& f = ConConcepto();
  f.txtFields(campo::Articulo).Text("NADA");
  f.txtFields(campo::Precio).Text("10");
  f.txtFields(campo::Cantidad).SetFocus();
  f.LlenaPartida();
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoEsArticulo});
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
}

TEST_F(Renglones, ARoutineMayRefuseALineAndTheEntryRowIsEmptiedAllTheSame) {
  frmEntradasWizard& f = ConConcepto();
  Gancho("ENTRADA005", [](frmEntradasWizard& g) { g.CancelaProceso = true; });
  Renglon(f, "A-100", "3");
  EXPECT_FALSE(f.CancelaProceso);
  EXPECT_EQ(f.Modo, "ALTA");
  EXPECT_EQ(f.Entrada, 0);
  EXPECT_EQ(Celda(f, 1, columna_entrada::Articulo), "");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "");
  RenglonVacio(f);
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "0");
  anfitrion->Gancho("ENTRADA005", {});
  Renglon(f, "A-100", "3");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "1");
}

TEST_F(Renglones, ARoutineMayChangeTheLineBeforeItIsStored) {
  frmEntradasWizard& f = ConConcepto();
  Gancho("ENTRADA009", [](frmEntradasWizard& g) { g.txtFields(campo::Precio).Text("7"); });
  Gancho("ENTRADA005", [](frmEntradasWizard& g) { g.txtFields(campo::Cantidad).Text("9"); });
  Renglon(f, "A-100", "3");
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart"), "9");
  EXPECT_EQ(Uno("SELECT precio FROM entpart"), "7");
}

TEST_F(Renglones, ARowBeyondTheTenthScrollsTheGrid) {
  frmEntradasWizard& f = ConConcepto();
  Usa(f, 9);
  const int antes = f.fg2.TopRow();
  Renglon(f, "A-100", "1");
  EXPECT_EQ(f.fg2.Row(), 10);
  EXPECT_EQ(f.fg2.TopRow(), antes);
  Renglon(f, "A-100", "1");
  EXPECT_EQ(f.fg2.Row(), 11);
  EXPECT_EQ(f.fg2.TopRow(), 4);
  f.NumeroDePartidas = 100;
  Renglon(f, "A-100", "1");
  EXPECT_EQ(f.fg2.Row(), 12);
  EXPECT_EQ(f.fg2.TopRow(), 4);
}

TEST_F(Renglones, TheFirstFreeRowTakesTheLine) {
  frmEntradasWizard& f = ConConcepto();
  Usa(f, 3);
  f.fg2.TextMatrix(2, columna_entrada::Articulo, "");
  Renglon(f, "A-100", "3");
  EXPECT_EQ(Celda(f, 2, columna_entrada::Articulo), "A-100");
  EXPECT_EQ(Celda(f, 4, columna_entrada::Articulo), "");
}

TEST_F(Renglones, TheLastRowOfTheGridTakesALineAndTheNextIsStoredAndNotShown) {
  frmEntradasWizard& f = ConConcepto();
  Usa(f, 4998);
  Renglon(f, "A-100", "3");
  EXPECT_EQ(Celda(f, 4999, columna_entrada::Articulo), "A-100");
  EXPECT_EQ(f.fg2.TopRow(), 4992);
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "5,346");
  Renglon(f, "A-200", "2");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "2");
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart WHERE articulo = 'A-200'"), "2");
  EXPECT_EQ(Celda(f, 4999, columna_entrada::Articulo), "A-100");
  EXPECT_EQ(f.fg2.Row(), 4999);
  EXPECT_EQ(f.fg2.Rows(), 5000);
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "5,346");
  RenglonVacio(f);
  EXPECT_TRUE(Reportes().empty());
}

}  // namespace
}  // namespace tarvik::tests
