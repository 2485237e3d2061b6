// The keys, labels and buttons of the goods-in screen that belong to no field, and the moves of its focus.
#include "tests/goods_in/screen.h"

namespace tarvik::tests {
namespace {

TEST_F(Pantalla, F3TogglesTheReaderAndGoesToTheArticle) {
  frmEntradasWizard& f = Nueva();
  Tecla(f, "F3", f.txtFields(campo::Almacen));
  EXPECT_EQ(f.Check4.Value(), 1);
  EXPECT_EQ(f.ActiveControl(), &f.txtFields(campo::Articulo));
  f.Enter(f.txtFields(campo::Almacen));
  Tecla(f, "F3");
  EXPECT_EQ(f.Check4.Value(), 0);
  EXPECT_EQ(f.ActiveControl(), &f.txtFields(campo::Almacen));
  f.txtFields(campo::Articulo).Enabled(false);
  Tecla(f, "F3");
  EXPECT_EQ(f.Check4.Value(), 1);
  EXPECT_EQ(f.ActiveControl(), &f.txtFields(campo::Almacen));
}

TEST_F(Pantalla, F9AndTheDottedButtonStoreTheLineInEntry) {
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  Tecla(f, "F9");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinArticulo});
  Olvida();
  f.Click(f.Command6);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinArticulo});
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo::Cantidad), "2");
  Tecla(f, "F9");
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart"), "2");
}

TEST_F(Pantalla, ClicksOnTheLabelsToggleTheirBoxesWhereEnabled) {
  Documento();
  frmEntradasWizard& f = Nueva();
  f.Click(f.Label10(1));
  f.Click(f.Label10(2));
  f.Click(f.Label10(0));
  EXPECT_EQ(f.Check3.Value(), 1);
  EXPECT_EQ(f.Check2.Value(), 0);
  f.Click(f.Label10(1));
  EXPECT_EQ(f.Check3.Value(), 0);
  frmEntradasWizard& leida = Consulta(7);
  leida.Click(leida.Label10(1));
  leida.Click(leida.Label10(2));
  EXPECT_EQ(leida.Check3.Value(), 0);
  EXPECT_EQ(leida.Check2.Value(), 1);
}

TEST_F(Pantalla, TheHiddenButtonOnlyFiresItsHook) {
  frmEntradasWizard& f = Nueva();
  Olvida();
  f.Click(f.Command3);
  EXPECT_TRUE(Claves().empty());
  f.Command3_Click();
  EXPECT_EQ(Claves(), std::vector<std::string>{"ENTRADAS011"});
  bitacora.FallaServicio("BuscaCatalogo", 1, "sin trampa");
  EXPECT_THROW(f.Command3_Click(), data::Error);
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(Pantalla, TheModelsButtonDoesNothing) {
  frmEntradasWizard& f = Nueva();
  f.Enter(f.Command1);
  Olvida();
  f.Click(f.Command1);
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_TRUE(Claves().empty());
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(Pantalla, MovingTheFocusNeverReportsAnError) {
  frmEntradasWizard& f = Nueva();
  f.ColocaFoco(f.txtFields(campo::Descripcion));
  f.ColocaFoco(f.Command3);
  EXPECT_EQ(f.ActiveControl(), &f.txtFields(campo::Concepto));
  bitacora.FallaServicio("BuscaCatalogo", 5, "gancho");
  f.ColocaFoco(f.txtFields(campo::Almacen));
  EXPECT_EQ(f.ActiveControl(), &f.txtFields(campo::Almacen));
  EXPECT_TRUE(Reportes().empty());
  EXPECT_TRUE(no_atrapados.empty());
}

}  // namespace
}  // namespace tarvik::tests
