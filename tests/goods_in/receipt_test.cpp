// The road of one goods-in document, from its first key to posted stock.
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

class Recibo : public Escenario {
 protected:
  Recibo() { Catalogo(); }
};

TEST_F(Recibo, TheFirstLineMakesTheDocumentAndTheTotalFollows) {
  frmEntradasWizard& f = Nueva();
  EXPECT_EQ(f.Entrada, 0);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "0");
  Teclea(f, f.txtFields(campo::Concepto), "com");
  EXPECT_EQ(f.txtFields(campo::Concepto).Text(), "COM");
  Tecla(f, "Enter");
  Renglon(f, "A-100", "3");
  EXPECT_EQ(f.Entrada, 1);
  EXPECT_EQ(f.Modo, "MODIFICACION");
  EXPECT_EQ(f.Caption(), "Entrada: 1");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "348");
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas"), "1");
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart"), "3");
}

TEST_F(Recibo, F5PostsEveryLineAndStockFollowsTheLedger) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "2.5"}});
  bitacora.respuestas.push_back(true);
  Tecla(f, "F5", f.txtFields(campo::Concepto));
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::AfectaEntrada});
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A-200' AND almacen = 1"), "2.5");
  EXPECT_EQ(bitacora.movimientos.size(), 2u);
  EXPECT_TRUE(plataforma.Screens().empty());
  EXPECT_TRUE(Reportes().empty());
  EXPECT_TRUE(no_atrapados.empty());
}

}  // namespace
}  // namespace tarvik::tests
