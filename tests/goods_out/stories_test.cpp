// Goods-out as the warehouse lives it: a transfer, a loan, a shipment against a purchase, a document left
// for tomorrow.
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class HistoriasDeSalida : public EscenarioDeSalidas {
 protected:
  HistoriasDeSalida() {
    ControlaExistencia("A-100");
    ControlaExistencia("A-200");
    Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('PRE', 'S', 'Préstamo')");
  }
  std::string Existencia(const char* articulo, int almacen) {
    return Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = ? AND almacen = ?",
               {articulo, almacen});
  }
  void TodoEnOrden() {
    EXPECT_TRUE(no_atrapados.empty());
    EXPECT_TRUE(plataforma.Screens().empty());
    EXPECT_EQ(ArchivoDelDia(), "");  // not one failure
  }
};

TEST_F(HistoriasDeSalida, ATransferBetweenWarehousesMovesTheStockFromOneToTheOther) {
  frmSalidasWizard& f = NuevaSalida();
  Teclea(f, f.txtFields(campo::Concepto), "vta");
  f.Click(f.SSCheck1);
  Teclea(f, f.txtFields(campo::AlmacenDestino), "2");
  f.Enter(f.txtFields(campo::Articulo));
  Linea(f, "A-100", "4");
  Linea(f, "A-200", "1.5");
  bitacora.respuestas.push_back(true);
  Tecla(f, "F5");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::AfectaSalida});
  EXPECT_EQ(Existencia("A-100", 1), "6");
  EXPECT_EQ(Existencia("A-100", 2), "4");
  EXPECT_EQ(Existencia("A-200", 1), "2.5");
  EXPECT_EQ(Existencia("A-200", 2), "1.5");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv WHERE operacion = 'SA' AND ent_sal = 'S' AND almacen = 1"),
            "2");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv WHERE operacion = 'T+' AND tipo_doc = 'T+' AND ent_sal = 'E' "
                "AND almacen = 2 AND precio = 0"),
            "2");
  EXPECT_EQ(Uno("SELECT traspaso FROM salidas"), "1");
  EXPECT_EQ(CuentaClaves("SALIDAS017"), 1);
  TodoEnOrden();
}

TEST_F(HistoriasDeSalida, ALoanToAnEmployeeRemembersWhoAndUntilWhen) {
  frmSalidasWizard& f = NuevaSalida();
  Teclea(f, f.txtFields(campo::Concepto), "PRE");
  EXPECT_EQ(f.RichTextBox3.Text(), "Préstamo");
  f.Click(f.Check1);
  Teclea(f, f.txtFields(campo::Empleado), "m8");
  f.DTPicker2.Value(data::Date{2024, 3, 19});
  f.Enter(f.txtFields(campo::Articulo));
  Linea(f, "A-100", "1");
  bitacora.respuestas = {true, true};
  Tecla(f, "F5");
  EXPECT_EQ(bitacora.mensajes.back().texto, "No se encuentra el empleado indicado");
  EXPECT_TRUE(f.txtFields(campo::Empleado).HasFocus());
  f.txtFields(campo::Empleado).Text("");
  Teclea(f, f.txtFields(campo::Empleado), "m7");
  Tecla(f, "F5");
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "CO");
  frmSalidasWizard& g = ConsultaSalida(1);
  EXPECT_EQ(g.Check1.Value(), 1);
  EXPECT_EQ(g.txtFields(campo::Empleado).Text(), "M7");
  EXPECT_EQ(g.DTPicker2.Value(), (data::Date{2024, 3, 19}));
  g.Unload();
  TodoEnOrden();
}

TEST_F(HistoriasDeSalida, AShipmentToABranchAgainstAPurchaseIsAssignedAndSent) {
  // The deployment shows the purchase, and makes the branch's document when it is told to send.
  Gancho("SALIDAS001", [](frmSalidasWizard& g) { g.txtFields(campo::Compra).Visible(true); });
  Gancho("SALIDAS005", [&](frmSalidasWizard& g) {
    Sql("UPDATE salidas SET EntSuc = 900 + salida WHERE salida = ?", {g.Salida});
  });
  frmSalidasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Sucursal), "nte");
  EXPECT_EQ(f.Check5.Value(), 1);
  Teclea(f, f.txtFields(campo::Compra), "55");
  f.Enter(f.txtFields(campo::Articulo));
  Linea(f, "A-100", "2");
  Linea(f, "A-200", "1");
  Linea(f, "A-100", "3");
  bitacora.respuestas.push_back(true);
  Tecla(f, "F5");
  EXPECT_EQ(Uno("SELECT cantidad FROM compras2sucursal WHERE id_partida = 551"), "5");
  EXPECT_EQ(Uno("SELECT cantidad FROM compras2sucursal WHERE id_partida = 552"), "1");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM compras2sucursal"), "2");
  EXPECT_EQ(Existencia("A-100", 1), "5");
  frmSalidasWizard& g = ConsultaSalida(1);
  EXPECT_EQ(g.txtFields(campo::EntradaRemota).Text(), "901");
  EXPECT_EQ(g.txtFields(campo::Sucursal).Text(), "NTE");
  g.Unload();
  TodoEnOrden();
}

TEST_F(HistoriasDeSalida, LeftPendingTodayAndPostedTomorrowUnderANewFolio) {
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "3");
  f.Click(f.Label10(1));
  Tecla(f, "F5", f.txtFields(campo::Articulo));
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "PE");
  EXPECT_EQ(Uno("SELECT folio FROM salidas"), "1");
  EXPECT_EQ(Uno("SELECT ocupado FROM salidas"), "0");
  EXPECT_EQ(Existencia("A-100", 1), "10");

  reloj = {{2024, 3, 6}, {8, 0, 0}};
  frmSalidasWizard& g = ModificaSalida(1);
  EXPECT_EQ(g.Modo, "MODIFICACION");
  Linea(g, "A-100", "2");
  bitacora.respuestas.push_back(true);
  Tecla(g, "F5", g.txtFields(campo::Articulo));
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::AfectaSalida});
  EXPECT_EQ(Uno("SELECT salida FROM salidas"), "1");
  EXPECT_EQ(Uno("SELECT folio FROM salidas"), "2");
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "CO");
  EXPECT_EQ(Uno("SELECT usufecha FROM salidas"), "2024-03-06");
  EXPECT_EQ(Uno("SELECT f_emision FROM salidas"), "2024-03-05");
  EXPECT_EQ(Uno("SELECT movimiento FROM movsinv"), "2");
  EXPECT_EQ(Uno("SELECT f_movim FROM movsinv"), "2024-03-05");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "1");
  EXPECT_EQ(Existencia("A-100", 1), "5");
  TodoEnOrden();
}

TEST_F(HistoriasDeSalida, AnOperatorWithoutTheRightCannotTakeOutMoreThanThereIs) {
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "11");
  EXPECT_EQ(bitacora.mensajes.size(), 1u);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salidas"), "0");
  PermiteSinExistencia();
  bitacora.respuestas = {true, true};
  Tecla(f, "F9");
  Tecla(f, "F5", f.txtFields(campo::Articulo));
  EXPECT_EQ(Existencia("A-100", 1), "-1");
  TodoEnOrden();
}

}  // namespace
}  // namespace tarvik::tests
