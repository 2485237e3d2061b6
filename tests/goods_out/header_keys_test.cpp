// What each field of the goods-out header does on a key, on entering and on leaving.
#include "tests/goods_out/header.h"

namespace tarvik::tests {
namespace {

TEST_F(EncabezadoDeSalidas, EnterAndTabLeadThroughTheHeader) {
  frmSalidasWizard& f = Correcta();
  for (const char* tecla : {"Enter", "Tab"}) {
    const std::pair<int, int> pasos[] = {{0, 14}, {14, 4}, {13, 17}, {15, 16}, {16, 4}};
    for (const auto& [de, a] : pasos) {
      Tecla(f, tecla, f.txtFields(de));
      EXPECT_EQ(f.ActiveControl(), &f.txtFields(a)) << de << " " << tecla;
    }
  }
  f.txtFields(campo::Empleado).Enabled(false);
  Tecla(f, "Enter", f.txtFields(campo::NombreDelCliente));
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  f.txtFields(campo::Almacen).Enabled(false);
  Tecla(f, "Enter", f.txtFields(campo::Concepto));
  EXPECT_TRUE(f.txtFields(campo::Concepto).HasFocus());
}

TEST_F(EncabezadoDeSalidas, EnteringAFieldTrimsItsTextAndSelectsAll) {
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::DireccionDeEmbarque).Text("  Calle  ");
  f.Enter(f.txtFields(campo::DireccionDeEmbarque));
  EXPECT_EQ(f.txtFields(campo::DireccionDeEmbarque).Text(), "Calle");
  EXPECT_EQ(f.txtFields(campo::DireccionDeEmbarque).SelStart(), 0);
  EXPECT_EQ(f.txtFields(campo::DireccionDeEmbarque).SelLength(), 5);
}

TEST_F(EncabezadoDeSalidas, NoFieldButTheArticleHasAHook) {
  frmSalidasWizard& f = Correcta();
  for (int campo : {14, 2, 3, 13, 15, 17, 16, 5, 27, 6, 24, 28, 0}) f.Enter(f.txtFields(campo));
  EXPECT_TRUE(Claves().empty());
}

TEST_F(EncabezadoDeSalidas, TheTypeOfAFieldFiltersItsKeys) {
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::Concepto).Text("");
  for (int campo : {0, 3, 13, 16}) {
    Teclea(f, f.txtFields(campo), "aé1");
    EXPECT_EQ(f.txtFields(campo).Text(), "AÉ1") << campo;
  }
  for (int campo : {14, 2, 5}) {
    Teclea(f, f.txtFields(campo), "1a2");
    EXPECT_EQ(f.txtFields(campo).Text(), "12") << campo;
  }
  for (int campo : {17, 25}) {
    Teclea(f, f.txtFields(campo), "aB1");
    EXPECT_EQ(f.txtFields(campo).Text(), "aB1") << campo;
  }
}

TEST_F(EncabezadoDeSalidas, DownOpensTheListOfASearchBoxAndNothingElsewhere) {
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::Cliente).Text("C1");
  for (int campo : {0, 14, 2, 3, 13, 16, 24}) Tecla(f, "Down", f.txtFields(campo));
  EXPECT_EQ(listas, (Textos{"txtFields(0)", "txtFields(14)", "txtFields(2)", "txtFields(3)", "txtFields(13)",
                            "txtFields(16)", "txtFields(24)"}));
  listas.clear();
  Tecla(f, "Down", f.txtFields(campo::DireccionDeEmbarque));
  EXPECT_TRUE(listas.empty());
  EXPECT_TRUE(no_atrapados.empty());
}

TEST_F(EncabezadoDeSalidas, ADoubleClickOpensThePickerOfTheField) {
  frmSalidasWizard& f = Correcta();
  for (int campo : {0, 4, 14, 6, 2, 3, 13, 16, 5}) f.DoubleClick(f.txtFields(campo));
  f.txtFields_DblClick(8);
  EXPECT_EQ(
      bitacora.selectores,
      (Textos{"BuscadorCatalogo|Conceptos de salidas de inventario|txtFields(0)",
              "BuscadorCatalogo|Articulos|txtFields(4)", "BuscadorCatalogo|Almacenes|txtFields(14)",
              "AuxiliarNumerico||txtFields(6)", "BuscadorCatalogo|Impuestos por porcentaje|txtFields(8)"}));
}

TEST_F(EncabezadoDeSalidas, F2OpensThePickerOfTheFieldWithTheFocusOnTheArticle) {
  frmSalidasWizard& f = Correcta();
  bool en_articulo = false;
  bitacora.elige = [&](forms::TextBox&) -> std::optional<std::string> {
    en_articulo = f.txtFields(campo::Articulo).HasFocus();
    return "2";
  };
  Tecla(f, "F2", f.txtFields(campo::Almacen));
  EXPECT_EQ(bitacora.selectores, (Textos{"BuscadorCatalogo|Almacenes|txtFields(14)"}));
  EXPECT_TRUE(en_articulo);
  EXPECT_EQ(f.txtFields(campo::Almacen).Text(), "2");
}

TEST_F(EncabezadoDeSalidas, AFullFieldActsAsIfEnterHadBeenPressedOnlyWhereALengthIsSet) {
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::Concepto).Text("");
  Teclea(f, f.txtFields(campo::Concepto), "VTA");
  EXPECT_TRUE(f.txtFields(campo::Concepto).HasFocus());
  f.txtFields(campo::Concepto).Text("");
  f.txtFields(campo::Concepto).MaxLength(3);
  Teclea(f, f.txtFields(campo::Concepto), "VTA");
  EXPECT_TRUE(f.txtFields(campo::Almacen).HasFocus());
}

}  // namespace
}  // namespace tarvik::tests
