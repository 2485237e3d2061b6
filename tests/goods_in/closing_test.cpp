// How the goods-in screen closes: by its box, by Cancel, in each mode, and when a step of it fails.
#include "tests/goods_in/screen.h"

namespace tarvik::tests {
namespace {

TEST_F(Pantalla, TheCloseBoxUnloadsTenMillisecondsLater) {
  frmEntradasWizard& f = Nueva();
  f.Close();
  EXPECT_TRUE(f.Open());
  EXPECT_EQ(f.Timer1.Interval(), 10);
  EXPECT_TRUE(f.Timer1.Running());
  plataforma.Advance(9);
  EXPECT_TRUE(f.Open());
  auto viva = f.shared_from_this();
  plataforma.Advance(1);
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(bitacora.regresadas, std::vector<std::string>{"frmMaster"});
}

TEST_F(Pantalla, CancelClosesAtOnceAndAsksNothing) {
  auto viva = Nueva().shared_from_this();
  frmEntradasWizard& f = Ultima();
  f.Click(f.Command2);
  EXPECT_FALSE(f.Open());
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(Claves().back(), "ENTRADA006");
}

TEST_F(Pantalla, ARefusedCloseKeepsScreenAndLockAndIsAskedAgainOnTheNextTryOnly) {
  Documento();
  int veces = 0;
  Gancho("ENTRADA006", [&](frmEntradasWizard& f) { f.CancelaProceso = ++veces == 1; });
  auto viva = Modifica(7).shared_from_this();
  frmEntradasWizard& f = Ultima();
  f.Close();
  plataforma.Advance(1000);
  EXPECT_EQ(veces, 1);
  EXPECT_TRUE(f.Open());
  EXPECT_FALSE(f.CancelaProceso);
  EXPECT_EQ(Ocupado(), "1");
  EXPECT_TRUE(bitacora.regresadas.empty());
  f.Close();
  plataforma.Advance(10);
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(Ocupado(), "0");
}

TEST_F(Pantalla, ClosingForChangeReleasesTheLockByADirectStatement) {
  Documento();
  Modifica(7).Unload();
  EXPECT_EQ(bitacora.sentencias.back(), "UPDATE entradas SET ocupado = 0 WHERE entrada = 7");
  EXPECT_EQ(Ocupado(), "0");
}

TEST_F(Pantalla, ClosingForReadingLeavesAnothersLock) {
  Documento(0, "PE", 1, "LUIS");
  Consulta(7).Unload();
  EXPECT_EQ(Ocupado(), "1");
  EXPECT_EQ(CuentaSentencias("UPDATE"), 0);
}

TEST_F(Pantalla, ClosingANewDocumentBeforeAnyLineWritesNothing) {
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  f.Unload();
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "0");
  EXPECT_EQ(CuentaSentencias("INSERT") + CuentaSentencias("UPDATE"), 0);
}

TEST_F(Pantalla, ClosingAfterTheFirstLineLeavesAPendingUnlockedDocument) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "1"}});
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas"), "1");
  f.Unload();
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas"), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "1");
}

TEST_F(Pantalla, ClosingWithoutAHostFormGoesOn) {
  movimientos->Parent = nullptr;
  Nueva().Unload();
  EXPECT_TRUE(plataforma.Screens().empty());
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(bitacora.regresadas.size(), 1u);
}

TEST_F(Pantalla, EachStepOfClosingFailsAlone) {
  Documento();
  frmEntradasWizard& f = Modifica(7);
  bitacora.FallaServicio("BuscaCatalogo", 1, "gancho");
  bitacora.Falla("SET ocupado = 0", 1, "candado");
  bitacora.FallaServicio("SetFocus", 1, "foco");
  bitacora.FallaServicio("RegresaForma", 1, "regreso");
  f.Unload();
  EXPECT_EQ(Reportes(),
            (std::vector<std::string>{Reporte("Form_Unload", "gancho"), Reporte("Form_Unload", "candado"),
                                      Reporte("Form_Unload", "regreso")}));
  EXPECT_TRUE(plataforma.Screens().empty());
}

}  // namespace
}  // namespace tarvik::tests
