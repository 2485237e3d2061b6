// The barcode reader: one scan is one line of quantity 1, with no further key. What a plain key or a
// second key does without the reader is told elsewhere.
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

using Textos = std::vector<std::string>;

class LectorDeBarras : public Escenario {
 protected:
  LectorDeBarras() {
    Catalogo();
    anfitrion->Ambiente().Parametro("Lector", 1);
  }
  frmEntradasWizard& EnElArticulo() {
    frmEntradasWizard& f = Nueva();
    Teclea(f, f.txtFields(campo::Concepto), "COM");
    f.Enter(f.txtFields(campo::Articulo));
    Olvida();
    return f;
  }
  static void Lee(frmEntradasWizard& f, const std::string& codigo, const std::string& final = "Enter") {
    Teclea(f, f.txtFields(campo::Articulo), codigo);
    Tecla(f, final);
  }
};

TEST_F(LectorDeBarras, TheSettingOfTheStationStartsTheReader) {
  EXPECT_EQ(Nueva().Check4.Value(), 1);
  anfitrion->Ambiente().Parametro("Lector", 0);
  EXPECT_EQ(Nueva().Check4.Value(), 0);
  anfitrion->Ambiente().Parametro("Lector", 2);
  EXPECT_EQ(Nueva().Check4.Value(), 1);
}

TEST_F(LectorDeBarras, OneScanIsOneLineAndTheNextScanCanFollow) {
  frmEntradasWizard& f = EnElArticulo();
  Lee(f, "A-100");
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "");
  Lee(f, "A-200");
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "2");
  EXPECT_EQ(Uno("SELECT SUM(cantidad) FROM entpart"), "2");
  EXPECT_EQ(Uno("SELECT precio FROM entpart WHERE articulo = 'A-100'"), "116");
  EXPECT_EQ(Uno("SELECT precio FROM entpart WHERE articulo = 'A-200'"), "50");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "166");
  EXPECT_TRUE(Numeros().empty());
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(LectorDeBarras, AReaderThatEndsItsCodesWithTabComesBackToTheArticleToo) {
  frmEntradasWizard& f = EnElArticulo();
  Lee(f, "A-100", "Tab");
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart"), "1");
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
}

TEST_F(LectorDeBarras, AScanLooksTheArticleUpTwiceAndThenMakesTheLine) {
  frmEntradasWizard& f = EnElArticulo();
  Lee(f, "A-100");
  Textos textos = bitacora.sentencias;
  std::erase_if(textos, [](const std::string& t) { return t.find("modelo<>''") != std::string::npos; });
  const std::string lee =
      "SELECT prods.descrip,unidad,precio1,impuestos.valor FROM prods INNER JOIN impuestos ON prods.impuesto "
      "= "
      "impuestos.impuesto WHERE articulo = 'A-100'";
  ASSERT_GE(textos.size(), 4u);
  EXPECT_EQ(textos[0], lee);
  EXPECT_EQ(textos[1], lee);
  EXPECT_EQ(std::count(textos.begin(), textos.end(), "SELECT ubicacion FROM prods WHERE articulo = 'A-100'"),
            1);
  EXPECT_EQ(textos.back(), "SELECT * FROM prods WHERE modelo = ''");
}

TEST_F(LectorDeBarras, WhileALineIsBeingStoredAScanDoesNothing) {
  frmEntradasWizard& f = EnElArticulo();
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  f.Procesando = true;
  Olvida();
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "");
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_TRUE(bitacora.sentencias.empty());
}

TEST_F(LectorDeBarras, AScannedSecondKeyMakesALineOfOneAndNotOfOnePresentation) {
  frmEntradasWizard& f = EnElArticulo();
  Lee(f, "7501");
  EXPECT_EQ(Uno("SELECT articulo FROM entpart"), "A-100");
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart"), "1");
  EXPECT_EQ(Uno("SELECT prcantidad FROM entpart"), "1");
  EXPECT_EQ(Uno("SELECT prdescrip FROM entpart"), "CJ");
  EXPECT_EQ(Uno("SELECT claveadd FROM entpart"), "7501");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "0");  // left behind as the presentation was emptied
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
}

TEST_F(LectorDeBarras, AnUnknownCodeIsRefusedAndStaysInTheField) {
  frmEntradasWizard& f = EnElArticulo();
  Lee(f, "NADA");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoEsArticulo});
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "NADA");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "1");
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
}

TEST_F(LectorDeBarras, ACodeAtNoPriceAsksForThePrice) {
  Sql("UPDATE prods SET precio1 = 0 WHERE articulo = 'A-100'");
  frmEntradasWizard& f = EnElArticulo();
  Lee(f, "A-100");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinPrecio});
  EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
}

TEST_F(LectorDeBarras, AfterAScanTheFirstArticleWithAnEmptyModelAnswersForTheEmptiedKey) {
  Sql("UPDATE prods SET modelo = 'M' WHERE articulo = 'A-100'");
  Sql("UPDATE prods SET modelo = '' WHERE articulo = 'A-200'");
  frmEntradasWizard& f = EnElArticulo();
  Lee(f, "A-100");
  EXPECT_EQ(f.txtFields(campo::Unidad).Text(), "KG");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "20");
  EXPECT_EQ(f.txtFields(campo::ImporteDelRenglon).Text(), "IVA");
  Lee(f, "A-100");  // the next scan overwrites unit and price
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart WHERE precio = 116"), "2");
}

TEST_F(LectorDeBarras, AScanGoesOnWithItsQuantityFieldDisabled) {
  frmEntradasWizard& f = EnElArticulo();
  f.txtFields(campo::Cantidad).Enabled(false);
  Lee(f, "A-100");
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart"), "1");
}

TEST_F(LectorDeBarras, ARoutineThatStopsTheLeavingDoesNotStopTheScan) {
  frmEntradasWizard& f = EnElArticulo();
  bool primera = true;
  Gancho("ENTRADA012", [&](frmEntradasWizard& g) { g.CancelaProceso = std::exchange(primera, false); });
  Lee(f, "A-100");
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart"), "1");
  EXPECT_FALSE(f.CancelaProceso);
}

TEST_F(LectorDeBarras, TheReaderSetsTheQuantityOfEveryLookup) {
  frmEntradasWizard& f = EnElArticulo();
  f.txtFields(campo::Articulo).Text("A-100");
  f.txtFields(campo::Cantidad).Text("8");
  std::string cantidad;
  Gancho("ENTRADA009", [&](frmEntradasWizard& g) { cantidad = g.txtFields(campo::Cantidad).Text(); });
  f.PonDescripcion();
  EXPECT_EQ(cantidad, "1");
  f.Check4.Value(0);
  f.txtFields(campo::Cantidad).Text("8");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "8");
}

TEST_F(LectorDeBarras, F3SwitchesTheReaderOffAndOnForThisScreenOnly) {
  frmEntradasWizard& f = EnElArticulo();
  Tecla(f, "F3", f.txtFields(campo::Concepto));
  EXPECT_EQ(f.Check4.Value(), 0);
  EXPECT_TRUE(f.txtFields(campo::Concepto).HasFocus());
  Lee(f, "A-100");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
  Tecla(f, "F3");
  EXPECT_EQ(f.Check4.Value(), 1);
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  f.Check4.Value(0);
  f.txtFields(campo::Articulo).Enabled(false);
  Tecla(f, "F3", f.txtFields(campo::Cantidad));
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
  EXPECT_EQ(data::ToText(anfitrion->Ambiente().Parametro("Lector")), "1");
}

}  // namespace
}  // namespace tarvik::tests
