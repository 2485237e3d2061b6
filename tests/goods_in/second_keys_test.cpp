// Second keys and their presentations: typed in the article's place or in their own field, and what
// the entry row is left with. The barcode reader has a file of its own.
#include "goods_in/columnas.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

using Textos = std::vector<std::string>;

const char* const kLeeArticulo =
    "SELECT prods.descrip,unidad,precio1,impuestos.valor FROM prods INNER JOIN impuestos ON prods.impuesto = "
    "impuestos.impuesto WHERE articulo = ";

class SegundasClaves : public Escenario {
 protected:
  SegundasClaves() { Catalogo(); }

  frmEntradasWizard& EnElArticulo() {
    frmEntradasWizard& f = Nueva();
    Teclea(f, f.txtFields(campo::Concepto), "COM");
    f.Enter(f.txtFields(campo::Articulo));
    Olvida();
    return f;
  }
};

TEST_F(SegundasClaves, ASecondKeyInTheArticlesPlaceFillsTheRowWithOnePresentation) {
  frmEntradasWizard& f = EnElArticulo();
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  EXPECT_EQ(f.txtFields(campo::SegundaClave).Text(), "7501");
  EXPECT_EQ(f.txtFields(campo::Dato1).Text(), "Caja");
  EXPECT_EQ(f.txtFields(campo::Dato2).Text(), "Roja");
  EXPECT_EQ(f.txtFields(campo::Presentaciones).Text(), "1");
  EXPECT_EQ(f.txtFields(campo::UnidadDePresentacion).Text(), "CJ");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "12");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00");
  EXPECT_EQ(f.txtFields(campo::ImporteDelRenglon).Text(), "1,392.00");
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Martillo de uña");
  EXPECT_EQ(f.txtFields(campo::Unidad).Text(), "PZA");
  EXPECT_TRUE(f.txtFields(campo::Presentaciones).HasFocus());
}

TEST_F(SegundasClaves, TheDataOfASecondKeyComeTrimmedAndMissingOnesEmpty) {
  Sql("UPDATE clavesadd SET Dato1 = ' Caja ', Dato2 = NULL, unidad = '  CJ ' WHERE clave = '7501'");
  frmEntradasWizard& f = EnElArticulo();
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Dato1).Text(), "Caja");
  EXPECT_EQ(f.txtFields(campo::Dato2).Text(), "");
  EXPECT_EQ(f.txtFields(campo::UnidadDePresentacion).Text(), "CJ");
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(SegundasClaves, TheSecondKeyResolvesItselfInTheMiddleOfItsOwnLookup) {
  frmEntradasWizard& f = EnElArticulo();
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Tecla(f, "Enter");
  const std::string clave = "SELECT * FROM clavesadd WHERE clave = '7501'";
  EXPECT_EQ(bitacora.sentencias,
            (Textos{std::string(kLeeArticulo) + "'7501'",  // no article
                    clave,                                 // a second key: its article, then itself
                    clave, "SELECT articulo,descrip FROM prods WHERE articulo = 'A-100'",
                    std::string(kLeeArticulo) + "'A-100'",  // the record that the price comes from
                    clave,                                  // quantity, no presentation yet
                    clave,                                  // one presentation
                    clave,                                  // and once more by the lookup itself
                    "SELECT * FROM prods WHERE modelo = 'A-100'"}));
}

TEST_F(SegundasClaves, TheArticleIsAnnouncedTwiceForASecondKey) {
  frmEntradasWizard& f = EnElArticulo();
  Textos vistos;
  Gancho("ENTRADA009", [&](frmEntradasWizard& g) {
    vistos.push_back(g.txtFields(campo::SegundaClave).Text() + "|" + g.txtFields(campo::Dato1).Text() + "|" +
                     g.txtFields(campo::Presentaciones).Text() + "|" + g.txtFields(campo::Cantidad).Text());
  });
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Tecla(f, "Enter");
  EXPECT_EQ(vistos, (Textos{"7501|||", "7501|Caja|1|12"}));
  EXPECT_EQ(Claves(), (Textos{"ENTRADA012", "ENTRADA009", "ENTRADA008", "ENTRADA009", "ENTRADA007"}));
}

TEST_F(SegundasClaves, TheOrderOfAssignmentsIsSeenByWhoWatches) {
  frmEntradasWizard& f = EnElArticulo();
  Textos orden;
  for (int campo : {25, 26, 29, 9, 6, 1, 27}) {
    f.txtFields(campo).OnChange = [&orden, &f, campo] {
      orden.push_back(std::to_string(campo) + "=" + f.txtFields(campo).Text());
    };
  }
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Tecla(f, "Enter");
  EXPECT_EQ(orden,
            (Textos{"1=Martillo de uña", "6=116.00", "27=PZA", "25=Caja", "26=Roja", "9=1,392.00", "29=CJ"}));
}

TEST_F(SegundasClaves, APresentationOfAnArticleBecomesALineInUnitsOfTheArticle) {
  frmEntradasWizard& f = EnElArticulo();
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo::Presentaciones), "3");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "36");
  EXPECT_EQ(f.txtFields(campo::ImporteDelRenglon).Text(), "4,176.00");
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(campo::UnidadDePresentacion).HasFocus());
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
  Tecla(f, "Enter");
  const auto filas = Sql("SELECT articulo, cantidad, precio, prcantidad, prdescrip, claveadd FROM entpart");
  ASSERT_EQ(filas.rows.size(), 1u);
  Textos valores;
  for (const auto& valor : filas.rows[0]) valores.push_back(data::ToText(valor));
  EXPECT_EQ(valores, (Textos{"A-100", "36", "116", "3", "CJ", "7501"}));
  EXPECT_EQ(Celda(f, 1, columna_entrada::Cantidad), "36");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Presentacion), "CJ");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Presentaciones), "3");
}

TEST_F(SegundasClaves, EmptyingThePresentationLeavesAZeroBehindInTheQuantity) {
  frmEntradasWizard& f = EnElArticulo();
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Tecla(f, "Enter");
  f.LlenaPartida();
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart"), "12");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "0");
  for (int campo : {1, 4, 6, 9, 24, 25, 26, 27, 28, 29}) EXPECT_EQ(f.txtFields(campo).Text(), "") << campo;
}

TEST_F(SegundasClaves, AnEmptiedArticleLeavesTheSameZeroBehind) {
  frmEntradasWizard& f = EnElArticulo();
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Tecla(f, "Enter");
  f.txtFields(campo::Articulo).Text("");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "0");
  EXPECT_EQ(f.txtFields(campo::SegundaClave).Text(), "");
  EXPECT_EQ(f.txtFields(campo::Presentaciones).Text(), "");
}

TEST_F(SegundasClaves, F8WalksTheFieldsOfThePresentation) {
  frmEntradasWizard& f = EnElArticulo();
  for (int desde : {4, 5, 6}) {
    Tecla(f, "F8", f.txtFields(desde));
    EXPECT_TRUE(f.txtFields(campo::SegundaClave).HasFocus()) << desde;
  }
  Tecla(f, "F8");
  EXPECT_TRUE(f.txtFields(campo::Presentaciones).HasFocus());
  Tecla(f, "F8");
  EXPECT_TRUE(f.txtFields(campo::UnidadDePresentacion).HasFocus());
  Tecla(f, "F8");
  EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
  Tecla(f, "F8", f.RichTextBox1);
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
}

TEST_F(SegundasClaves, F8StaysWhereTheTargetIsDisabled) {
  frmEntradasWizard& f = EnElArticulo();
  for (auto [desde, hacia] : {std::pair{5, 24}, {28, 29}, {29, 6}}) {
    f.txtFields(hacia).Enabled(false);
    Tecla(f, "F8", f.txtFields(desde));
    EXPECT_TRUE(f.txtFields(desde).HasFocus()) << desde;
    f.txtFields(hacia).Enabled(true);
  }
  f.txtFields(campo::Articulo).Enabled(false);
  Tecla(f, "F8", f.RichTextBox1);
  EXPECT_TRUE(f.RichTextBox1.HasFocus());
}

TEST_F(SegundasClaves, F8InTheSecondKeyResolvesItEvenIfThePresentationIsDisabled) {
  frmEntradasWizard& f = EnElArticulo();
  Teclea(f, f.txtFields(campo::SegundaClave), "7501");
  f.txtFields(campo::Presentaciones).Enabled(false);
  f.txtFields(campo::Descripcion).Text("otra");
  Tecla(f, "F8");
  EXPECT_TRUE(f.txtFields(campo::SegundaClave).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Martillo de uña");
}

TEST_F(SegundasClaves, F8ElsewhereIsAnOrdinaryKey) {
  frmEntradasWizard& f = EnElArticulo();
  f.Procesando = true;
  Tecla(f, "F8", f.txtFields(campo::Concepto));
  EXPECT_TRUE(f.txtFields(campo::Concepto).HasFocus());
  EXPECT_FALSE(f.Procesando);
}

TEST_F(SegundasClaves, InItsOwnFieldTheSecondKeyBringsTheArticleAndNoPresentation) {
  frmEntradasWizard& f = EnElArticulo();
  Tecla(f, "F8", f.txtFields(campo::Articulo));
  Teclea(f, f.txtFields(campo::SegundaClave), "7501");
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Martillo de uña");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "0");
  for (int campo : {25, 26, 28, 29}) EXPECT_EQ(f.txtFields(campo).Text(), "") << campo;

  Tecla(f, "F8");
  Teclea(f, f.txtFields(campo::Presentaciones), "2");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "24");
  EXPECT_EQ(f.txtFields(campo::ImporteDelRenglon).Text(), "2,784.00");
  Tecla(f, "F8");
  Teclea(f, f.txtFields(campo::UnidadDePresentacion), " Caja ");
  Tecla(f, "F8");
  Tecla(f, "Enter");
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart"), "24");
  EXPECT_EQ(Uno("SELECT prcantidad FROM entpart"), "2");
  EXPECT_EQ(Uno("SELECT prdescrip FROM entpart"), "Caja");
  EXPECT_EQ(Uno("SELECT claveadd FROM entpart"), "7501");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Presentacion), " Caja ");
}

TEST_F(SegundasClaves, EachChangeOfTheSecondKeyIsAsked) {
  frmEntradasWizard& f = EnElArticulo();
  f.Enter(f.txtFields(campo::SegundaClave));
  Olvida();
  Teclea(f, f.txtFields(campo::SegundaClave), "75");
  EXPECT_EQ(bitacora.sentencias, (Textos{"SELECT * FROM clavesadd WHERE clave = '7'",
                                         "SELECT * FROM clavesadd WHERE clave = '75'"}));
}

TEST_F(SegundasClaves, ASecondKeyOfAnArticleThatIsGoneLeavesTheKeyAndIsReported) {
  Sql("UPDATE clavesadd SET articulo = 'BORRADO'");
  frmEntradasWizard& f = EnElArticulo();
  f.txtFields(campo::Articulo).Text("A-200");
  f.txtFields(campo::SegundaClave).Text("7501");
  const auto reportes = Reportes();
  ASSERT_EQ(reportes.size(), 2u);  // articulo, descrip
  for (const auto& reporte : reportes)
    EXPECT_NE(reporte.find("Function: TraeSegundaClave"), std::string::npos);
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-200");
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Clavo a granel");
}

TEST_F(SegundasClaves, AnUnknownSecondKeyEmptiesItsDataOnly) {
  frmEntradasWizard& f = EnElArticulo();
  f.txtFields(campo::Articulo).Text("A-100");
  f.PonDescripcion();
  f.txtFields(campo::Cantidad).Text("8");
  for (int campo : {25, 26, 29}) f.txtFields(campo).Text("x");
  f.txtFields(campo::SegundaClave).Text("NADA");
  for (int campo : {25, 26, 29}) EXPECT_EQ(f.txtFields(campo).Text(), "") << campo;
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "8");
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(SegundasClaves, ClearingTheSecondKeyLeavesArticleAndQuantity) {
  frmEntradasWizard& f = EnElArticulo();
  Teclea(f, f.txtFields(campo::SegundaClave), "7501");
  f.txtFields(campo::Cantidad).Text("8");
  f.txtFields(campo::Dato1).Text("x");
  f.txtFields(campo::Dato2).Text("y");
  f.txtFields(campo::UnidadDePresentacion).Text("z");
  f.txtFields(campo::SegundaClave).Text("");
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Martillo de uña");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "8");
  for (int campo : {25, 26, 28, 29}) EXPECT_EQ(f.txtFields(campo).Text(), "") << campo;
}

TEST_F(SegundasClaves, ClearingItWithAPresentationTakesTheQuantityOfThePresentationAway) {
  frmEntradasWizard& f = EnElArticulo();
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Tecla(f, "Enter");
  f.txtFields(campo::SegundaClave).Text("");
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  EXPECT_EQ(f.txtFields(campo::Presentaciones).Text(), "");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "0");  // the change of the presentation's own quantity
}

TEST_F(SegundasClaves, TheQuantityOfAPresentationIsThePlainProduct) {
  Sql("UPDATE clavesadd SET cantidad = 0.1 WHERE clave = '7501'");
  frmEntradasWizard& f = EnElArticulo();
  f.txtFields(campo::SegundaClave).Text("7501");
  f.txtFields(campo::Presentaciones).Text("3");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "0.3");
  f.txtFields(campo::Presentaciones).Text("12,345");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "1234.5");
  f.txtFields(campo::Presentaciones).Text("");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "0");
  Sql("UPDATE clavesadd SET cantidad = NULL WHERE clave = '7501'");
  f.txtFields(campo::Presentaciones).Text("3");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "0");
}

TEST_F(SegundasClaves, WithoutASecondKeyAPresentationMakesTheQuantityZero) {
  frmEntradasWizard& f = EnElArticulo();
  f.txtFields(campo::Cantidad).Text("8");
  Olvida();
  Teclea(f, f.txtFields(campo::Presentaciones), "2");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "0");
  EXPECT_EQ(bitacora.sentencias, (Textos{"SELECT * FROM clavesadd WHERE clave = ''"}));
}

TEST_F(SegundasClaves, TheAmountNeedsASecondKeyAndAQuantity) {
  frmEntradasWizard& f = EnElArticulo();
  f.txtFields(campo::Precio).Text("10");
  f.txtFields(campo::Cantidad).Text("3");
  EXPECT_EQ(f.txtFields(campo::ImporteDelRenglon).Text(), "");
  f.txtFields(campo::SegundaClave).Text("7501");
  f.txtFields(campo::Precio).Text("1000.5");
  f.txtFields(campo::Cantidad).Text("2");
  EXPECT_EQ(f.txtFields(campo::ImporteDelRenglon).Text(), "2,001.00");
  f.txtFields(campo::Cantidad).Text("-1");
  EXPECT_EQ(f.txtFields(campo::ImporteDelRenglon).Text(), "2,001.00");
  anfitrion->Ambiente().Pon("FormatoImporte", "0.0");
  f.txtFields(campo::Cantidad).Text("3");
  EXPECT_EQ(f.txtFields(campo::ImporteDelRenglon).Text(), "3001.5");
}

}  // namespace
}  // namespace tarvik::tests
