// The keys and labels of the goods-out screen that belong to no field; painting and resizing.
#include "tests/goods_out/screen.h"

namespace tarvik::tests {
namespace {

TEST_F(PantallaDeSalidas, F1AsksForHelpAndDoesNothingElse) {
  frmSalidasWizard& f = NuevaSalida();
  f.Enter(f.txtFields(campo::Almacen));
  Olvida();
  Tecla(f, "F1");
  EXPECT_EQ(Claves(), (Textos{"AYUDA"}));
  EXPECT_TRUE(f.txtFields(campo::Almacen).HasFocus());
}

TEST_F(PantallaDeSalidas, F2GoesToTheArticleFromWhereverTheFocusIs) {
  frmSalidasWizard& f = NuevaSalida();
  Tecla(f, "F2", f.Check3);
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
}

TEST_F(PantallaDeSalidas, F3TogglesTheReaderAndGoesToTheArticleOnlyWhenItTurnsItOn) {
  frmSalidasWizard& f = NuevaSalida();
  Tecla(f, "F3", f.txtFields(campo::Almacen));
  EXPECT_EQ(f.Check4.Value(), 1);
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  Tecla(f, "F3", f.txtFields(campo::Almacen));
  EXPECT_EQ(f.Check4.Value(), 0);
  EXPECT_TRUE(f.txtFields(campo::Almacen).HasFocus());
  f.txtFields(campo::Articulo).Enabled(false);
  Tecla(f, "F3");
  EXPECT_EQ(f.Check4.Value(), 1);
  EXPECT_TRUE(f.txtFields(campo::Almacen).HasFocus());
}

TEST_F(PantallaDeSalidas, F6SendsToTheBranchAndF9AndTheDottedButtonStoreTheLine) {
  frmSalidasWizard& f = NuevaSalida();
  Olvida();
  Tecla(f, "F6", f.txtFields(campo::Almacen));
  EXPECT_EQ(Claves(), (Textos{"SALIDAS005"}));
  Tecla(f, "F9");
  f.Click(f.Command6);
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::SinArticulo, mensaje::SinArticulo}));
}

TEST_F(PantallaDeSalidas, OnePressOfF5IsOneFinish) {
  frmSalidasWizard& f = NuevaSalida();
  Tecla(f, "F5", f.txtFields(campo::Articulo));
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SalidaSinConcepto});
  Tecla(f, "F5", f.fg2);
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::SalidaSinConcepto, mensaje::SalidaSinConcepto}));
}

TEST_F(PantallaDeSalidas, ClicksOnTheLabelsToggleTheirBoxesWhereEnabled) {
  frmSalidasWizard& f = NuevaSalida();
  f.Click(f.Label10(0));
  f.Click(f.Label10(1));
  f.Click(f.Label10(2));
  EXPECT_EQ(f.Check3.Value(), 1);
  EXPECT_EQ(f.Check2.Value(), 0);
  f.Click(f.Label10(1));
  EXPECT_EQ(f.Check3.Value(), 0);
  f.Check3.Enabled(false);
  f.Check2.Enabled(false);
  f.Click(f.Label10(1));
  f.Click(f.Label10(2));
  EXPECT_EQ(f.Check3.Value(), 0);
  EXPECT_EQ(f.Check2.Value(), 0);
}

TEST_F(PantallaDeSalidas, PaintingFiresItsHook) {
  frmSalidasWizard& f = NuevaSalida();
  Olvida();
  f.Paint();
  EXPECT_EQ(Claves(), (Textos{"SALIDAS007"}));
  bitacora.FallaServicio("BuscaCatalogo", 1, "falla provocada");
  f.Paint();
  EXPECT_EQ(Reportes(), (Textos{Reporte("Form_Paint")}));
}

TEST_F(PantallaDeSalidas, TheMiddlePanelTakesWhatTheOthersLeave) {
  frmSalidasWizard& f = NuevaSalida();
  f.Picture1.Height(2000);
  f.Picture3.Height(3000);
  f.fg2.Width(7000);
  f.Resize(12000, 9000);
  EXPECT_EQ(f.Picture2.Height(), 3800);
  EXPECT_EQ(f.fg2.Height(), 3500);
  EXPECT_EQ(f.wb.Width(), 4850);
  EXPECT_EQ(f.wb.Height(), 3500);
  f.Resize(100, 100);
  EXPECT_TRUE(Reportes().empty());
  EXPECT_TRUE(no_atrapados.empty());
}

TEST_F(PantallaDeSalidas, EnterInTheDayOfReturnGoesToTheArticle) {
  frmSalidasWizard& f = NuevaSalida();
  Tecla(f, "Left", f.DTPicker2);
  EXPECT_TRUE(f.DTPicker2.HasFocus());
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
}

}  // namespace
}  // namespace tarvik::tests
