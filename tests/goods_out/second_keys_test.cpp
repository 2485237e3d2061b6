// Second keys and presentations on goods-out: the key typed as an article or in its own field, the count of
// presentations, and whose quantity may be typed.
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class SegundasClavesDeSalida : public EscenarioDeSalidas {
 protected:
  void Campos(frmSalidasWizard& f, const std::vector<std::pair<int, std::string>>& esperados) {
    for (const auto& [campo, texto] : esperados) EXPECT_EQ(f.txtFields(campo).Text(), texto) << campo;
  }
};

TEST_F(SegundasClavesDeSalida, ASecondKeyTypedAsAnArticleFillsTheWholeRow) {
  frmSalidasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Olvida();
  Tecla(f, "Enter");
  Campos(f, {{4, "A-100"},
             {24, "7501"},
             {1, "Martillo de uña"},
             {27, "PZA"},
             {6, "116.00"},
             {25, "Caja"},
             {26, "Roja"},
             {28, "1"},
             {29, "CJ"},
             {5, "12"}});
  EXPECT_EQ(CuentaSentencias("SELECT articulo,clave,libre FROM clavesadd WHERE clave = '7501'"), 1);
  // Once for the field of the second key, once for resolving it, once for the article itself.
  EXPECT_EQ(Claves(), (Textos{"SALIDAS013", "SALIDAS011", "SALIDAS011", "SALIDAS011"}));
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(SegundasClavesDeSalida, APresentationThatFixesTheQuantityLeadsToItsCount) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Articulo).Text("7501");
  f.PonDescripcion();
  EXPECT_TRUE(f.txtFields(campo::Presentaciones).HasFocus());
  f.txtFields(campo::Presentaciones).Enabled(false);
  f.txtFields(campo::DireccionDeEmbarque).SetFocus();
  f.txtFields(campo::Articulo).Text("7501");
  f.PonDescripcion();
  EXPECT_TRUE(f.txtFields(campo::DireccionDeEmbarque).HasFocus());
}

TEST_F(SegundasClavesDeSalida, AFreePresentationLeavesTheFocusAndPutsThePrice) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::DireccionDeEmbarque).SetFocus();
  f.txtFields(campo::Articulo).Text("7502");
  f.PonDescripcion();
  EXPECT_TRUE(f.txtFields(campo::DireccionDeEmbarque).HasFocus());
  Campos(f, {{4, "A-100"}, {24, "7502"}, {6, "116.00"}, {5, "10"}, {28, "1"}, {29, "BL"}});
}

TEST_F(SegundasClavesDeSalida, AFreePresentationPutsThePriceOverWhatARoutinePut) {
  frmSalidasWizard& f = ConConcepto();
  Gancho("SALIDAS011", [](frmSalidasWizard& g) { g.txtFields(campo::Precio).Text("1"); });
  f.txtFields(campo::Articulo).Text("7502");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00");
  f.txtFields(campo::Articulo).Text("7501");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "1");
}

TEST_F(SegundasClavesDeSalida, TheArticleWinsOverASecondKeyOfTheSameText) {
  Sql("INSERT INTO clavesadd (clave, articulo, cantidad) VALUES ('A-100', 'A-200', 5)");
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Articulo).Text("A-100");
  f.PonDescripcion();
  Campos(f, {{4, "A-100"}, {24, ""}, {5, "1"}});
}

TEST_F(SegundasClavesDeSalida, InItsOwnFieldItResolvesTheArticleAndFillsThePresentation) {
  frmSalidasWizard& f = ConConcepto();
  Olvida();
  f.txtFields(campo::SegundaClave).Text("7501");
  Campos(f, {{4, "A-100"}, {25, "Caja"}, {26, "Roja"}, {28, "1"}, {29, "CJ"}, {5, "12"}, {6, "116.00"}});
  EXPECT_EQ(bitacora.sentencias.front(), "SELECT * FROM clavesadd WHERE clave = '7501'");
  EXPECT_EQ(CuentaClaves("SALIDAS011"), 1);
  EXPECT_EQ(data::ToText(f.rstClavesAdd->Fields("clave")), "7501");
}

TEST_F(SegundasClavesDeSalida, AKeyThatFixesNoQuantityLeavesQuantityAndPresentationAsTheyWere) {
  frmSalidasWizard& f = ConConcepto();
  for (auto [campo, texto] : {std::pair{5, "4"}, {28, "2"}, {29, "XX"}}) f.txtFields(campo).Text(texto);
  f.txtFields(campo::SegundaClave).Text("7503");
  Campos(f, {{4, "A-100"}, {25, "Suelto"}, {26, "Gris"}, {5, "4"}, {28, "2"}, {29, "XX"}});
}

TEST_F(SegundasClavesDeSalida, ClearingOrMistypingItEmptiesTheArticleToo) {
  frmSalidasWizard& f = ConConcepto();
  for (const char* clave : {"", "750"}) {
    f.txtFields(campo::SegundaClave).Text("7501");
    f.txtFields(campo::SegundaClave).Text(clave);
    Campos(f, {{4, ""},
               {25, ""},
               {26, ""},
               {27, ""},
               {28, ""},
               {29, ""},
               {5, "12"},
               {6, "116.00"},
               {1, "Martillo de uña"}});
  }
}

TEST_F(SegundasClavesDeSalida, AnArticleTypedFirstIsLostWithTheFirstLetterOfItsSecondKey) {
  frmSalidasWizard& f = ConConcepto();
  Fila(f, "A-200", "3");
  Teclea(f, f.txtFields(campo::SegundaClave), "7");
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "3");
}

// ---- the count of presentations ----

TEST_F(SegundasClavesDeSalida, ThreeBoxesOfTwelveAreThirtySix) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::SegundaClave).Text("7501");
  Olvida();
  f.txtFields(campo::Presentaciones).Text("3");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "36");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00");
  EXPECT_EQ(bitacora.sentencias, (Textos{"SELECT * FROM clavesadd WHERE clave = '7501'"}));
  f.txtFields(campo::Presentaciones).Text("0.1");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "1.2");
  f.txtFields(campo::Presentaciones).Text("1,000");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "12000");
  f.txtFields(campo::Presentaciones).Text("");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "0");
}

TEST_F(SegundasClavesDeSalida, TheCountMultipliesNothingWithoutAKeyOrForAFreeOneOrOneThatFixesNone) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Cantidad).Text("4");
  Olvida();
  f.txtFields(campo::Presentaciones).Text("3");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "4");
  EXPECT_TRUE(bitacora.sentencias.empty());
  for (const char* clave : {"7502", "7503"}) {
    f.txtFields(campo::SegundaClave).Text(clave);
    f.txtFields(campo::Cantidad).Text("4");
    f.txtFields(campo::Presentaciones).Text("5");
    EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "4") << clave;
    f.txtFields(campo::Presentaciones).Text("3");
  }
}

TEST_F(SegundasClavesDeSalida, AKeyThatIsGoneMultipliesNothing) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::SegundaClave).Text("7501");
  Sql("DELETE FROM clavesadd WHERE clave = '7501'");
  f.txtFields(campo::Presentaciones).Text("3");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "12");
}

TEST_F(SegundasClavesDeSalida, WhoseQuantityFollowsFromTheCountCannotBeTyped) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::SegundaClave).Text("7501");
  Teclea(f, f.txtFields(campo::Cantidad), "9");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "12");
  f.txtFields(campo::Presentaciones).Text("0");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "0");
  Teclea(f, f.txtFields(campo::Cantidad), "9");
  EXPECT_NE(f.txtFields(campo::Cantidad).Text(), "0");
}

TEST_F(SegundasClavesDeSalida, AFreeQuantityOrOneWithoutAKeyIsTypedAsAnyOther) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::SegundaClave).Text("7502");
  Teclea(f, f.txtFields(campo::Cantidad), "9a");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "9");
  f.txtFields(campo::SegundaClave).Text("");
  f.txtFields(campo::Presentaciones).Text("3");
  f.Enter(f.txtFields(campo::DireccionDeEmbarque));
  Teclea(f, f.txtFields(campo::Cantidad), "8");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "8");
  EXPECT_EQ(CuentaSentencias("SELECT * FROM clavesadd WHERE clave = '7502'"),
            4);  // resolved, count, two keys
}

TEST_F(SegundasClavesDeSalida, AFlagThatIsNeitherFreeNorFixedIsReadBothWays) {
  Sql("UPDATE clavesadd SET Libre = 2 WHERE clave = '7501'");
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Articulo).Text("7501");
  f.PonDescripcion();
  EXPECT_TRUE(f.txtFields(campo::Presentaciones).HasFocus());  // not True: the count is asked for
  f.txtFields(campo::Presentaciones).Text("3");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "12");  // not 0: the count multiplies nothing
  Teclea(f, f.txtFields(campo::Cantidad), "9");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "12");  // not True: the key is swallowed
}

// ---- F8 ----

TEST_F(SegundasClavesDeSalida, F8WalksFromTheLineToThePresentationAndBackToThePrice) {
  frmSalidasWizard& f = ConConcepto();
  for (int desde : {4, 5, 6}) {
    Tecla(f, "F8", f.txtFields(desde));
    EXPECT_TRUE(f.txtFields(campo::SegundaClave).HasFocus()) << desde;
  }
  for (int desde : {7, 8}) {
    f.txtFields(campo::DireccionDeEmbarque).SetFocus();
    int tecla = forms::kKeyF8;
    f.txtFields_KeyDown(desde, tecla, 0);
    EXPECT_TRUE(f.txtFields(campo::SegundaClave).HasFocus()) << desde;
  }
  Tecla(f, "F8");
  EXPECT_TRUE(f.txtFields(campo::Presentaciones).HasFocus());
  Tecla(f, "F8");
  EXPECT_TRUE(f.txtFields(campo::UnidadDePresentacion).HasFocus());
  Tecla(f, "F8");
  EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
  for (int desde : {0, 14, 13, 17, 25}) {
    Tecla(f, "F8", f.txtFields(desde));
    EXPECT_TRUE(f.txtFields(desde).HasFocus()) << desde;
  }
}

TEST_F(SegundasClavesDeSalida, F8ResolvesTheKeyEvenWhereItCannotGoOn) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::SegundaClave).Text("7501");
  f.txtFields(campo::Articulo).Text("A-200");
  f.txtFields(campo::Presentaciones).Enabled(false);
  Tecla(f, "F8", f.txtFields(campo::SegundaClave));
  EXPECT_TRUE(f.txtFields(campo::SegundaClave).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  f.txtFields(campo::SegundaClave).Enabled(false);
  Tecla(f, "F8", f.txtFields(campo::Cantidad));
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
}

// ---- what is stored ----

TEST_F(SegundasClavesDeSalida, ALineKeepsItsKeyItsCountAndItsPresentation) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::SegundaClave).Text("7501");
  f.txtFields(campo::Dato1).Text(" Caja ");
  f.txtFields(campo::Presentaciones).Text("3");
  f.LlenaPartida();
  EXPECT_EQ(Uno("SELECT claveadd FROM salpart"), "7501");
  EXPECT_EQ(Uno("SELECT prcantidad FROM salpart"), "3");
  EXPECT_EQ(Uno("SELECT prdescrip FROM salpart"), " Caja ");
  EXPECT_EQ(Uno("SELECT observ FROM salpart"), "Martillo de uña Caja");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "36");
  EXPECT_EQ(Uno("SELECT precio FROM salpart"), "116");
  const std::pair<int, const char*> celdas[] = {{0, "A-100"},  {1, "36"}, {5, "Martillo de uña Caja"},
                                                {7, " Caja "}, {8, "3"},  {10, "3"}};
  for (const auto& [columna, texto] : celdas) EXPECT_EQ(Celda(f, 1, columna), texto) << columna;
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "4,176");
  for (int campo : {1, 4, 5, 6, 24, 25, 26, 27, 28, 29}) EXPECT_EQ(f.txtFields(campo).Text(), "") << campo;
}

TEST_F(SegundasClavesDeSalida, AScannedBoxIsALineOfItsUnits) {
  frmSalidasWizard& f = ConConcepto();
  f.Check4.Value(1);
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Tecla(f, "Enter");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "12");
  EXPECT_EQ(Uno("SELECT claveadd FROM salpart"), "7501");
}

}  // namespace
}  // namespace tarvik::tests
