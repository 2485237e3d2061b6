// The keys of the text fields of goods-in that lead on or open a list: Enter, Tab, F2, the double click,
// Down, F8 and F5.
#include "tests/goods_in/header.h"

namespace tarvik::tests {
namespace {

// ---- Enter ----

TEST_F(Encabezado, EnterWalksTheHeaderAndTheLine) {
  const std::pair<int, int> pasos[] = {{0, 14}, {14, 4}, {4, 5}, {5, 6}, {28, 29}, {29, 6}};
  for (auto [de, a] : pasos) {
    f().Enter(campo(de));
    Tecla(f(), "Enter");
    EXPECT_EQ(foco(), a) << de;
  }
}

TEST_F(Encabezado, TabWalksTheSameWay) {
  const std::pair<int, int> pasos[] = {{0, 14}, {14, 4}, {5, 6}, {28, 29}, {29, 6}};
  for (auto [de, a] : pasos) {
    f().Enter(campo(de));
    Tecla(f(), "Tab");
    EXPECT_EQ(foco(), a) << de;
  }
}

TEST_F(Encabezado, EnterInAnyOtherFieldDoesNothing) {
  for (int indice : {9, 24, 25, 26, 27}) {
    f().Enter(campo(indice));
    Tecla(f(), "Enter");
    EXPECT_EQ(foco(), indice);
  }
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(Encabezado, EachMoveTakesPlaceOnlyToAnEnabledField) {
  for (auto [de, a] : {std::pair{0, 14}, {14, 4}, {5, 6}, {28, 29}, {29, 6}}) {
    campo(a).Enabled(false);
    f().Enter(campo(de));
    Tecla(f(), "Enter");
    EXPECT_EQ(foco(), de);
    campo(a).Enabled(true);
  }
}

TEST_F(Encabezado, FromTheQuantityThePriceIsEnteredSelected) {
  campo(campo::Precio).Text("12.00");
  f().Enter(campo(campo::Cantidad));
  Tecla(f(), "Enter");
  EXPECT_EQ(campo(campo::Precio).SelLength(), 5);
}

TEST_F(Encabezado, EnterInThePriceStoresTheLineUnlessOneIsBeingStored) {
  f().Enter(campo(campo::Precio));
  f().Procesando = true;
  Tecla(f(), "Enter");
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_TRUE(f().Procesando);
  f().Procesando = false;
  Tecla(f(), "Enter");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinArticulo});
}

TEST_F(Encabezado, AnyOtherKeyEndsTheStoring) {
  f().Enter(campo(campo::UnidadDePresentacion));
  f().Procesando = true;
  Tecla(f(), "Tab");
  EXPECT_TRUE(f().Procesando);
  Tecla(f(), "a");
  EXPECT_FALSE(f().Procesando);
}

TEST_F(Encabezado, AnEmptyWarehouseIsPassedAndOnlyRefusedAtTheEnd) {
  campo(campo::Almacen).Text("");
  Tecla(f(), "Enter", campo(campo::Almacen));
  EXPECT_EQ(foco(), 4);
  EXPECT_TRUE(bitacora.mensajes.empty());
}

// ---- F2, double click, Down ----

TEST_F(Encabezado, F2OpensTheFieldsListWithTheFocusAlreadyOnTheArticle) {
  std::vector<int> focos;
  bitacora.elige = [&](forms::TextBox&) {
    focos.push_back(foco());
    return std::optional<std::string>();
  };
  for (int indice : {0, 14, 4}) Tecla(f(), "F2", campo(indice));
  EXPECT_EQ(bitacora.selectores,
            (Textos{"BuscadorCatalogo|Conceptos de entrada al inventario|txtFields(0)",
                    "BuscadorCatalogo|Almacenes|txtFields(14)", "BuscadorCatalogo|Articulos|txtFields(4)"}));
  EXPECT_EQ(focos, (std::vector<int>{4, 4, 4}));
}

TEST_F(Encabezado, AChoiceGoesToTheFieldItWasMadeFor) {
  bitacora.elige = [](forms::TextBox&) { return std::optional<std::string>("2"); };
  Tecla(f(), "F2", campo(campo::Almacen));
  EXPECT_EQ(campo(campo::Almacen).Text(), "2");
  EXPECT_EQ(foco(), 4);
}

TEST_F(Encabezado, ADoubleClickOpensTheSameListsAndTheNumericHelperForThePrice) {
  for (int indice : {0, 4, 14, 6, 5, 24, 29}) f().DoubleClick(campo(indice));
  EXPECT_EQ(bitacora.selectores,
            (Textos{"BuscadorCatalogo|Conceptos de entrada al inventario|txtFields(0)",
                    "BuscadorCatalogo|Articulos|txtFields(4)", "BuscadorCatalogo|Almacenes|txtFields(14)",
                    "AuxiliarNumerico||txtFields(6)"}));
}

TEST_F(Encabezado, APickerThatFailsLeavesTheEventUnreported) {
  bitacora.FallaServicio("Muestra", 1, "sin lista");
  f().DoubleClick(campo(campo::Concepto));
  EXPECT_EQ(no_atrapados, Textos{"sin lista"});
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(Encabezado, DownOpensTheSearchBoxOfAnyFieldButTheArticles) {
  campo(campo::SegundaClave).Text("7501");
  for (int indice : {0, 14, 24}) {
    Tecla(f(), "Down", campo(indice));
    EXPECT_EQ(campo(indice).SelStart(), 0) << indice;
    EXPECT_EQ(campo(indice).SelLength(), 0) << indice;
  }
  EXPECT_EQ(listas, (Textos{"txtFields(0)", "txtFields(14)", "txtFields(24)"}));
  listas.clear();
  Tecla(f(), "Down", campo(campo::Articulo));
  EXPECT_TRUE(listas.empty());
  EXPECT_EQ(bitacora.selectores.size(), 1u);
  EXPECT_EQ(bitacora.selectores[0].substr(0, 15), "ListaArticulos|");
}

TEST_F(Encabezado, DownInAPlainFieldFailsUnseenAndTheCaretGoesToTheFront) {
  campo(campo::UnidadDePresentacion).Text("Caja");
  f().Enter(campo(campo::UnidadDePresentacion));
  campo(campo::UnidadDePresentacion).SelStart(3);
  Tecla(f(), "Down");
  EXPECT_EQ(campo(campo::UnidadDePresentacion).SelStart(), 0);
  EXPECT_TRUE(listas.empty());
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_TRUE(Reportes().empty());
}

// ---- F8 ----

TEST_F(Encabezado, F8WalksThePresentation) {
  const std::pair<int, int> pasos[] = {{4, 24}, {5, 24}, {6, 24}, {24, 28}, {28, 29}, {29, 6}};
  for (auto [de, a] : pasos) {
    Tecla(f(), "F8", campo(de));
    EXPECT_EQ(foco(), a) << de;
  }
}

TEST_F(Encabezado, F8HasNoMeaningElsewhere) {
  for (int indice : {0, 14, 9, 25, 26, 27}) {
    f().Procesando = true;
    Tecla(f(), "F8", campo(indice));
    EXPECT_EQ(foco(), indice);
    EXPECT_FALSE(f().Procesando) << indice;
  }
}

TEST_F(Encabezado, F8EndsTheHandlingWhereItHasAMeaning) {
  f().Procesando = true;
  Tecla(f(), "F8", campo(campo::Presentaciones));
  EXPECT_TRUE(f().Procesando);
}

TEST_F(Encabezado, F8InTheSecondKeyFetchesItEvenWhereNoFocusCanGo) {
  f().Enter(campo(campo::SegundaClave));
  Tecla(f(), "F8");
  EXPECT_EQ(foco(), 28);
  campo(campo::Presentaciones).Enabled(false);
  f().Enter(campo(campo::SegundaClave));
  Olvida();
  Tecla(f(), "F8");
  EXPECT_EQ(CuentaSentencias("SELECT * FROM clavesadd WHERE clave = ''"), 1);
  EXPECT_EQ(foco(), 24);
}

// ---- F5 ----

TEST_F(Encabezado, F5InAnyFieldIsTheFinishAndEndsTheHandling) {
  f().Procesando = true;
  for (int indice : {0, 14, 4, 5, 6, 29}) {
    f().Enter(campo(indice));
    Olvida();
    Tecla(f(), "F5");
    EXPECT_EQ(Numeros(), std::vector<int>{mensaje::EntradaSinConcepto}) << indice;
    EXPECT_TRUE(f().Procesando) << indice;
  }
}

}  // namespace
}  // namespace tarvik::tests
