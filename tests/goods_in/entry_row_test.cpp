// The entry row of goods-in: what the catalogue fills in for a typed article, and where the keys lead. What
// becomes of the row: lines_test.cpp.
#include "tests/goods_in/lines.h"

namespace tarvik::tests {
namespace {

TEST_F(Renglones, TheArticleBringsDescriptionUnitAndPriceWithItsTax) {
  frmEntradasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Articulo), "A-200");
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Clavo a granel");
  EXPECT_EQ(f.txtFields(campo::Unidad).Text(), "KG");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "50.00");  // 43.10 plus 16 %
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "");
  EXPECT_EQ(f.txtFields(campo::ImporteDelRenglon).Text(), "");
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
}

TEST_F(Renglones, DescriptionAndUnitComeTrimmedAndMissingOnesEmpty) {
  Sql("UPDATE prods SET descrip = '  Martillo  ', unidad = ' PZA ' WHERE articulo = 'A-100'");
  Sql("UPDATE prods SET descrip = NULL, unidad = NULL, precio1 = NULL WHERE articulo = 'A-200'");
  frmEntradasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Martillo");
  EXPECT_EQ(f.txtFields(campo::Unidad).Text(), "PZA");
  f.txtFields(campo::Articulo).Text("A-200");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "");
  EXPECT_EQ(f.txtFields(campo::Unidad).Text(), "");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "0.00");
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(Renglones, ThePriceFollowsThePatternOfTheContext) {
  anfitrion->Ambiente().Pon("FormatoImporte", "###,##0.0000");
  frmEntradasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Articulo), "A-200");
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "49.9960");
}

TEST_F(Renglones, TheKeyIsTrimmedForTheArticleAndAsTypedForTheSecondKey) {
  frmEntradasWizard& f = ConConcepto();
  Olvida();
  Teclea(f, f.txtFields(campo::Articulo), " A-9 ");
  Tecla(f, "Enter");
  EXPECT_EQ(Sentencias(),
            (Textos{"SELECT prods.descrip,unidad,precio1,impuestos.valor FROM prods INNER JOIN impuestos ON "
                    "prods.impuesto = impuestos.impuesto WHERE articulo = 'A-9'",
                    "SELECT * FROM clavesadd WHERE clave = ' A-9 '",
                    "SELECT * FROM prods WHERE modelo = ' A-9 '"}));
}

TEST_F(Renglones, AnUnknownKeyEmptiesOnlyThePriceAndTellsNothing) {
  frmEntradasWizard& f = ConConcepto();
  f.txtFields(campo::Articulo).Text("A-100");
  f.PonDescripcion();
  f.txtFields(campo::Cantidad).Text("2");
  Olvida();
  f.txtFields(campo::Articulo).Text("NADA");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "");
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Martillo de uña");
  EXPECT_EQ(f.txtFields(campo::Unidad).Text(), "PZA");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "2");
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_TRUE(Claves().empty());
}

TEST_F(Renglones, AnEmptyKeyEmptiesTheEntryRowSaveItsUnit) {
  frmEntradasWizard& f = ConConcepto();
  for (int campo : {1, 5, 6, 9, 25, 26, 27, 29}) f.txtFields(campo).Text("7");
  f.txtFields(campo::Articulo).Text("  ");
  Olvida();
  f.PonDescripcion();
  for (int campo : {1, 5, 6, 9, 24, 25, 26, 28, 29}) EXPECT_EQ(f.txtFields(campo).Text(), "") << campo;
  EXPECT_EQ(f.txtFields(campo::Unidad).Text(), "7");
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_TRUE(Claves().empty());
}

TEST_F(Renglones, TheArticleWinsOverASecondKeyOfTheSameText) {
  Sql("INSERT INTO clavesadd (clave, articulo, cantidad) VALUES ('A-100', 'A-200', 5)");
  frmEntradasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  EXPECT_EQ(f.txtFields(campo::SegundaClave).Text(), "");
}

TEST_F(Renglones, AnArticleWithoutTaxRateIsUnknownToTheLookupYetALineAtATypedPriceCanBeMade) {
  Sql("INSERT INTO prods (articulo, descrip, precio1, impuesto) VALUES ('LIBRE', 'Sin tasa', 10, 'NO')");
  frmEntradasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Articulo), "LIBRE");
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "");
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "");
  Teclea(f, f.txtFields(campo::Cantidad), "2");
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo::Precio), "7.5");
  f.LlenaPartida();
  EXPECT_TRUE(Numeros().empty());
  EXPECT_EQ(Uno("SELECT articulo FROM entpart"), "LIBRE");
}

TEST_F(Renglones, F9AndTheButtonStoreTheLineLikeEnterInThePrice) {
  frmEntradasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo::Cantidad), "3");
  Tecla(f, "F9");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "1");
  Teclea(f, f.txtFields(campo::Articulo), "A-200");
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo::Cantidad), "4");
  f.Click(f.Command6);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "2");
  Teclea(f, f.txtFields(campo::Articulo), "A-200");
  Tecla(f, "Tab");
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
  Teclea(f, f.txtFields(campo::Cantidad), "5");
  Tecla(f, "Tab");
  EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
  Tecla(f, "Tab");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "3");
}

TEST_F(Renglones, EnterLeadsThroughTheRowWithEachTextSelected) {
  frmEntradasWizard& f = ConConcepto();
  f.txtFields(campo::Cantidad).Text("33");
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Cantidad).SelStart(), 0);
  EXPECT_EQ(f.txtFields(campo::Cantidad).SelLength(), 2);
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Precio).SelLength(), 6);
}

TEST_F(Renglones, EnterSkipsWhatIsDisabled) {
  frmEntradasWizard& f = ConConcepto();
  f.txtFields(campo::Cantidad).Enabled(false);
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Olvida();
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_EQ(Sentencias(), (Textos{"SELECT * FROM prods WHERE modelo = 'A-100'"}));
  f.txtFields(campo::Cantidad).Enabled(true);
  f.txtFields(campo::Precio).Enabled(false);
  Tecla(f, "Enter", f.txtFields(campo::Cantidad));
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
}

TEST_F(Renglones, WhileALineIsBeingStoredEnterMakesNoSecondOne) {
  frmEntradasWizard& f = ConConcepto();
  bool procesando = false;
  Gancho("ENTRADA005", [&](frmEntradasWizard& g) { procesando = g.Procesando; });
  Renglon(f, "A-100", "3");
  EXPECT_TRUE(procesando);
  EXPECT_FALSE(f.Procesando);

  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  f.Procesando = true;
  Olvida();
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_TRUE(bitacora.sentencias.empty());
  f.Enter(f.txtFields(campo::Precio));
  Olvida();
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "1");
  Tecla(f, "Left");
  EXPECT_FALSE(f.Procesando);
}

TEST_F(Renglones, ARoutineMayKeepTheArticleFromBeingLookedUpOnce) {
  frmEntradasWizard& f = ConConcepto();
  Gancho("ENTRADA012", [](frmEntradasWizard& g) { g.CancelaProceso = true; });
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Olvida();
  Tecla(f, "Enter");
  EXPECT_FALSE(f.CancelaProceso);
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "");
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
  EXPECT_EQ(Claves(), (Textos{"ENTRADA012", "ENTRADA008"}));
  anfitrion->Gancho("ENTRADA012", {});
  f.Enter(f.txtFields(campo::Articulo));
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00");
}

TEST_F(Renglones, DownInTheArticleOpensTheListOfArticlesAndLeadsToTheQuantity) {
  frmEntradasWizard& f = ConConcepto();
  f.txtFields(campo::Cantidad).Text("12");
  bitacora.elige = [](forms::TextBox&) { return "A-100"; };
  Olvida();
  Tecla(f, "Down", f.txtFields(campo::Articulo));
  EXPECT_EQ(bitacora.selectores, (Textos{"ListaArticulos||txtFields(4)"}));
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00");
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Cantidad).SelLength(), 2);
  EXPECT_TRUE(listas.empty());
}

TEST_F(Renglones, DownWithAKeyThatIsNoModelOpensTheListToo) {
  frmEntradasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Articulo), "A-200");
  Olvida();
  Tecla(f, "Down");
  EXPECT_EQ(bitacora.selectores, (Textos{"ListaArticulos||txtFields(4)"}));
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-200");
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
}

}  // namespace
}  // namespace tarvik::tests
