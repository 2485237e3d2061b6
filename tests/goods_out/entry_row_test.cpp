// The entry row of goods-out: what the catalogue fills in for a typed article, and where the keys lead. What
// becomes of the row: lines_test.cpp.
#include "tests/goods_out/lines.h"

namespace tarvik::tests {
namespace {

// ---- the entry row from the catalogue ----

TEST_F(RenglonesDeSalida, TheArticleBringsDescriptionUnitPriceWithItsTaxAndAQuantityOfOne) {
  frmSalidasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Articulo), "A-200");
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Clavo a granel");
  EXPECT_EQ(f.txtFields(campo::Unidad).Text(), "KG");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "50.00");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "1");
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Cantidad).SelStart(), 0);
  EXPECT_EQ(f.txtFields(campo::Cantidad).SelLength(), 1);
}

TEST_F(RenglonesDeSalida, AQuantityThatStandsThereIsKept) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Cantidad).Text("7");
  f.txtFields(campo::Articulo).Text("A-100");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "7");
  f.txtFields(campo::Cantidad).Text(" ");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "1");
  EXPECT_EQ(f.txtFields(campo::Cantidad).SelLength(), 1);
}

TEST_F(RenglonesDeSalida, TheLookupReadsAndTellsInThisOrder) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Articulo).Text("A-100");
  Olvida();
  std::string visto;
  Gancho("SALIDAS011", [&](frmSalidasWizard& g) {
    visto = g.txtFields(campo::Unidad).Text() + g.txtFields(campo::Cantidad).Text();
  });
  f.PonDescripcion();
  EXPECT_EQ(bitacora.sentencias, (Textos{kArticulo}));
  EXPECT_EQ(Claves(), (Textos{"SALIDAS011"}));
  EXPECT_EQ(visto, "PZA1");
  EXPECT_EQ(data::ToText(f.rstArticulo->Fields("articulo")), "A-100");
}

TEST_F(RenglonesDeSalida, AnUnknownOrEmptyKeyEmptiesNothingAndTellsNothing) {
  frmSalidasWizard& f = ConConcepto();
  Fila(f, "A-100", "2");
  for (const char* clave : {"NADA", "", " "}) {
    Olvida();
    f.txtFields(campo::Articulo).Text(clave);
    f.PonDescripcion();
    EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00") << clave;
    EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Martillo de uña");
    EXPECT_EQ(f.txtFields(campo::Unidad).Text(), "PZA");
    EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "2");
    EXPECT_TRUE(bitacora.mensajes.empty());
    EXPECT_TRUE(Claves().empty());
    EXPECT_EQ(bitacora.sentencias.size(), std::string(clave) == "NADA" ? 2u : 0u);
  }
}

TEST_F(RenglonesDeSalida, MissingTextsComeEmptyAndThePriceFollowsThePatternOfTheContext) {
  Sql("UPDATE prods SET descrip = NULL, unidad = NULL WHERE articulo = 'A-200'");
  anfitrion->Ambiente().Pon("FormatoImporte", "###,##0.0000");
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Articulo).Text("A-200");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "");
  EXPECT_EQ(f.txtFields(campo::Unidad).Text(), "");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "49.9960");
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(RenglonesDeSalida, AnArticleWithoutTaxRateIsUnknownToTheLookupYetMakesALine) {
  Sql("INSERT INTO prods (articulo, descrip, precio1, impuesto) VALUES ('LIBRE', 'Sin tasa', 10, 'NO')");
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Articulo).Text("LIBRE");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "");
  f.txtFields(campo::Cantidad).Text("2");
  f.LlenaPartida();
  EXPECT_EQ(Uno("SELECT articulo FROM salpart"), "LIBRE");
}

TEST_F(RenglonesDeSalida, LeavingTheArticleAsksARoutineThatMayKeepItFromBeingLookedUpOnce) {
  frmSalidasWizard& f = ConConcepto();
  Gancho("SALIDAS013", [](frmSalidasWizard& g) { g.CancelaProceso = true; });
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Olvida();
  Tecla(f, "Enter");
  EXPECT_FALSE(f.CancelaProceso);
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "");
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_EQ(Claves(), (Textos{"SALIDAS013"}));
  SinGancho("SALIDAS013");
  f.Enter(f.txtFields(campo::Articulo));
  Olvida();
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00");
  EXPECT_EQ(Claves(), (Textos{"SALIDAS013", "SALIDAS011"}));
}

TEST_F(RenglonesDeSalida, APriceTypedIsFormattedOnLeavingAndChangingItComputesNothing) {
  frmSalidasWizard& f = ConConcepto();
  Fila(f, "A-100", "2");
  f.Enter(f.txtFields(campo::Precio));
  Olvida();
  Teclea(f, f.txtFields(campo::Precio), "1234.5");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "2");
  EXPECT_TRUE(bitacora.sentencias.empty());
  f.Enter(f.txtFields(campo::DireccionDeEmbarque));
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "1,234.50");
}

// ---- keys of the entry row ----

TEST_F(RenglonesDeSalida, EnterAndTabLeadThroughTheRowWithEachTextSelected) {
  frmSalidasWizard& f = ConConcepto();
  for (const char* tecla : {"Enter", "Tab"}) {
    f.txtFields(campo::Cantidad).Text("33");
    Teclea(f, f.txtFields(campo::Articulo), "A-100");
    Tecla(f, tecla);
    EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus()) << tecla;
    EXPECT_EQ(f.txtFields(campo::Cantidad).SelLength(), 2);
    Tecla(f, tecla);
    EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
    EXPECT_EQ(f.txtFields(campo::Precio).SelLength(), 6);
    Tecla(f, tecla);
    EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
    RenglonVacio(f);
  }
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "66");
}

TEST_F(RenglonesDeSalida, EnterSkipsWhatIsDisabled) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Cantidad).Enabled(false);
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Olvida();
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_TRUE(bitacora.sentencias.empty());
  f.txtFields(campo::Cantidad).Enabled(true);
  f.txtFields(campo::Precio).Enabled(false);
  Tecla(f, "Enter", f.txtFields(campo::Cantidad));
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
  f.txtFields(campo::UnidadDePresentacion).Enabled(false);
  Tecla(f, "Enter", f.txtFields(campo::Presentaciones));
  EXPECT_TRUE(f.txtFields(campo::Presentaciones).HasFocus());
}

TEST_F(RenglonesDeSalida, EnterInThePresentationLeadsToItsUnitAndThenToThePrice) {
  frmSalidasWizard& f = ConConcepto();
  Tecla(f, "Enter", f.txtFields(campo::Presentaciones));
  EXPECT_TRUE(f.txtFields(campo::UnidadDePresentacion).HasFocus());
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
  for (int campo : {24, 25, 26, 27}) {
    Tecla(f, "Enter", f.txtFields(campo));
    EXPECT_TRUE(f.txtFields(campo).HasFocus()) << campo;
  }
}

TEST_F(RenglonesDeSalida, UpGoesToTheLastLineOnceThereIsOne) {
  frmSalidasWizard& f = ConConcepto();
  Tecla(f, "Up", f.txtFields(campo::Articulo));
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  Linea(f, "A-100", "1");
  Linea(f, "A-200", "1");
  f.fg2.Row(1);
  Tecla(f, "Up", f.txtFields(campo::Cliente));
  EXPECT_EQ(f.fg2.Row(), 2);
  EXPECT_TRUE(f.fg2.HasFocus());
}

TEST_F(RenglonesDeSalida, WhileALineIsBeingStoredEnterMakesNoSecondOne) {
  frmSalidasWizard& f = ConConcepto();
  bool procesando = false;
  Gancho("SALIDAS008", [&](frmSalidasWizard& g) { procesando = g.Procesando; });
  Linea(f, "A-100", "3");
  EXPECT_TRUE(procesando);
  EXPECT_FALSE(f.Procesando);
  Fila(f, "A-200", "1");
  f.Check4.Value(1);
  f.Procesando = true;
  for (int campo : {4, 6}) {
    f.Enter(f.txtFields(campo));
    Olvida();
    Tecla(f, "Enter");
    EXPECT_TRUE(f.txtFields(campo).HasFocus());
    EXPECT_TRUE(bitacora.sentencias.empty());
  }
  Tecla(f, "Left");
  EXPECT_FALSE(f.Procesando);
}

TEST_F(RenglonesDeSalida, AnyOtherKeyInAFieldEndsTheProcessingMark) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  for (const char* tecla : {"Up", "F2", "F8", "x", "Esc"}) {
    f.Procesando = true;
    Tecla(f, tecla, f.txtFields(campo::Cantidad));
    EXPECT_FALSE(f.Procesando) << tecla;
  }
}

TEST_F(RenglonesDeSalida, DownInTheArticleOpensTheListOfArticlesAndLeadsToTheQuantity) {
  frmSalidasWizard& f = ConConcepto();
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

}  // namespace
}  // namespace tarvik::tests
