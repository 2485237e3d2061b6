// How the goods-out screen closes: by its box, by Cancel, in each mode, and when a step of it fails.
#include "tests/goods_out/screen.h"

namespace tarvik::tests {
namespace {

TEST_F(PantallaDeSalidas, TheCloseBoxAndCancelCloseAtOnceAndAskNothing) {
  frmSalidasWizard& f = NuevaSalida();
  f.Close();
  EXPECT_FALSE(f.Open());
  frmSalidasWizard& g = NuevaSalida();
  g.Click(g.Command2);
  EXPECT_FALSE(g.Open());
  frmSalidasWizard& h = NuevaSalida();
  h.Timer1_Timer();
  EXPECT_FALSE(h.Open());
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(Claves().back(), "SALIDAS006");
  EXPECT_EQ(bitacora.regresadas, (Textos{"frmMaster", "frmMaster", "frmMaster"}));
}

TEST_F(PantallaDeSalidas, ARefusedCloseKeepsScreenAndLockOnce) {
  DocumentoGuardado();
  int veces = 0;
  Gancho("SALIDAS006", [&](frmSalidasWizard& f) { f.CancelaProceso = ++veces == 1; });
  frmSalidasWizard& f = ModificaSalida(7);
  f.Close();
  EXPECT_TRUE(f.Open());
  EXPECT_FALSE(f.CancelaProceso);
  EXPECT_EQ(Ocupado(), "1");
  EXPECT_TRUE(bitacora.regresadas.empty());
  f.Close();
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(Ocupado(), "0");
}

TEST_F(PantallaDeSalidas, ClosingForChangeReleasesTheLockByTheNumberOfTheRow) {
  DocumentoGuardado();
  frmSalidasWizard& f = ModificaSalida(7);
  f.Salida = 99;
  f.Unload();
  EXPECT_EQ(bitacora.sentencias.back(), "UPDATE salidas SET ocupado = 0 WHERE salida = 7");
  EXPECT_EQ(Ocupado(), "0");
}

TEST_F(PantallaDeSalidas, ClosingANewDocumentBeforeAnyLineWritesNothing) {
  ConConcepto().Unload();
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salidas"), "0");
  EXPECT_EQ(CuentaSentencias("INSERT") + CuentaSentencias("UPDATE"), 0);
}

TEST_F(PantallaDeSalidas, ClosingAfterTheFirstLineLeavesAPendingUnlockedDocument) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  EXPECT_EQ(Uno("SELECT ocupado FROM salidas"), "1");
  f.Unload();
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "PE");
  EXPECT_EQ(Uno("SELECT ocupado FROM salidas"), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "1");
}

TEST_F(PantallaDeSalidas, ClosingWithoutAHostFormGoesOn) {
  movimientos->Parent = nullptr;
  NuevaSalida().Unload();
  EXPECT_TRUE(plataforma.Screens().empty());
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(bitacora.regresadas.size(), 1u);
}

TEST_F(PantallaDeSalidas, EachStepOfClosingFailsAlone) {
  DocumentoGuardado();
  frmSalidasWizard& f = ModificaSalida(7);
  bitacora.FallaServicio("BuscaCatalogo", 1, "gancho");
  bitacora.Falla("SET ocupado = 0", 1, "candado");
  bitacora.FallaServicio("SetFocus", 1, "foco");
  bitacora.FallaServicio("RegresaForma", 1, "regreso");
  f.Unload();
  EXPECT_EQ(Reportes(), (Textos{Reporte("Form_Unload", "gancho"), Reporte("Form_Unload", "candado"),
                                Reporte("Form_Unload", "regreso")}));
  EXPECT_TRUE(plataforma.Screens().empty());
}

}  // namespace
}  // namespace tarvik::tests
