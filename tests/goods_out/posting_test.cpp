// Posting a goods-out: what is handed over for each line, the arrival of a transfer, the cost, and what is
// assigned against a purchase.
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class AfectacionDeSalida : public EscenarioDeSalidas {
 protected:
  // Document 1 with three lines, its folio not its number.
  frmSalidasWizard& Lista() {
    std::int32_t gastado = 0;
    for (int i = 0; i < 4; ++i) {
      anfitrion->Funciones().NuevoId("E1salida", anfitrion->Ambiente().Conexion(), gastado);
    }
    anfitrion->Ambiente().Pon("ClaveLocal", "L1");
    frmSalidasWizard& f = ConConcepto();
    Linea(f, "A-100", "3");
    f.txtFields(campo::SegundaClave).Text("7501");
    f.LlenaPartida();
    Linea(f, "A-200", "2");
    Olvida();
    return f;
  }
  void Comprueba(std::size_t cual, const std::vector<std::pair<const char*, std::string>>& esperadas) {
    for (const auto& [propiedad, valor] : esperadas) EXPECT_EQ(Movido(cual, propiedad), valor) << propiedad;
  }
  std::string Existencia(const char* articulo, int almacen) {
    return Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = ? AND almacen = ?",
               {articulo, almacen});
  }
};

TEST_F(AfectacionDeSalida, EachLineIsAnOutflowUnderTheFolio) {
  frmSalidasWizard& f = Lista();
  f.DTPicker1.Value(data::Date{2024, 3, 4});
  Finaliza(f);
  ASSERT_EQ(bitacora.movimientos.size(), 3u);
  Comprueba(0, {{"EntSal", "S"},
                {"Operacion", "SA"},
                {"ClaveLocal", "L1"},
                {"Usuario", "ANA"},
                {"Movimiento", "5"},
                {"Documento", "5"},
                {"TipoDoc", "VTA"},
                {"Almacen", "1"},
                {"Articulo", "A-100"},
                {"Cantidad", "3"},
                {"Precio", "116"},
                {"IdSalida", "1"},
                {"ClaveAdd", ""},
                {"Aplica", "1"},
                {"IdEntrada", "(nada)"},
                {"EstacionTraspaso", "(nada)"}});
  Comprueba(1, {{"Articulo", "A-100"}, {"Cantidad", "12"}, {"IdSalida", "2"}, {"ClaveAdd", "7501"}});
  Comprueba(2, {{"Articulo", "A-200"}, {"Cantidad", "2"}, {"Precio", "50"}, {"IdSalida", "3"}});
  EXPECT_EQ(Uno("SELECT salida FROM salidas"), "1");
  EXPECT_EQ(Uno("SELECT folio FROM salidas"), "5");
  EXPECT_EQ(Existencia("A-100", 1), "-5");
  EXPECT_EQ(Existencia("A-200", 1), "2");
  EXPECT_EQ(Existencia("A-100", 2), "(nada)");
}

TEST_F(AfectacionDeSalida, TheDateIsTheOneReadWhenTheDocumentWasMadeAllElseIsReadAfresh) {
  frmSalidasWizard& f = Lista();
  f.DTPicker1.Value(data::Date{2024, 3, 1});
  f.txtFields(campo::Almacen).Text("2");
  Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('PRE', 'S', 'Préstamo')");
  f.txtFields(campo::Concepto).Text("PRE");
  f.DTPicker1.Value(data::Date{2024, 3, 1});
  Finaliza(f);
  Comprueba(0, {{"Fecha", "2024-03-05"}, {"Almacen", "2"}, {"TipoDoc", "PRE"}});
  EXPECT_EQ(Uno("SELECT f_emision FROM salidas"), "2024-03-01");
}

TEST_F(AfectacionDeSalida, TheProgressCountsTheLines) {
  frmSalidasWizard& f = Lista();
  Textos avance;
  Textos cifras;
  auto viva = f.shared_from_this();
  f.RichTextBox1.OnChange = [&] {
    avance.push_back(f.RichTextBox1.Text());
    cifras.push_back(std::to_string(f.Afectando()->renglon) + "/" + std::to_string(f.Afectando()->de));
  };
  Finaliza(f);
  EXPECT_EQ(avance, (Textos{"Afectando: A-100 1", "Afectando: A-100 2", "Afectando: A-200 3"}));
  EXPECT_EQ(cifras, (Textos{"1/3", "2/3", "3/3"}));
  EXPECT_FALSE(f.Afectando());
}

TEST_F(AfectacionDeSalida, WithoutLinesNothingIsDoneAtAll) {
  frmSalidasWizard& f = Lista();
  Sql("DELETE FROM salpart");
  f.SSCheck1.Value(1);
  f.txtFields(campo::Compra).Text("55");
  f.txtFields(campo::Sucursal).Text("NTE");
  f.Costo = 9;
  bool hay = true;
  f.SalvaPartidas(hay);
  Olvida();
  f.AfectaPartidas();
  EXPECT_TRUE(bitacora.movimientos.empty());
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_EQ(CuentaClaves("SALIDAS017"), 0);
  EXPECT_EQ(f.Costo, 9);
}

TEST_F(AfectacionDeSalida, TheCostIsSummedUpAndNeverReachesAnyDocument) {
  Sql("INSERT INTO salidas (salida, costo) VALUES (90, 7)");
  frmSalidasWizard& f = Lista();
  Finaliza(f);
  EXPECT_EQ(f.Costo, 3 * 61.5 + 12 * 61.5 + 2 * 20);
  EXPECT_EQ(Uno("SELECT costo FROM salidas WHERE salida = 1"), "0");
  EXPECT_EQ(Uno("SELECT costo FROM salidas WHERE salida = 90"), "7");
  EXPECT_EQ(CuentaSentencias("UPDATE salidas SET costo"), 0);
}

TEST_F(AfectacionDeSalida, TheCostsStatementIsBuiltAndRunWithoutACondition) {
  frmSalidasWizard& f = Lista();
  f.SalvaSalida();
  bool hay = false;
  f.SalvaPartidas(hay);
  Olvida();
  bitacora.FallaServicio("Condicion", 9, "no se pide condición");
  bitacora.FallaServicio("Ejecuta", 1, "falla provocada");
  f.AfectaPartidas();
  EXPECT_EQ(Reportes(), (Textos{Reporte("AfectaPartidas")}));
  EXPECT_EQ(bitacora.movimientos.size(), 3u);
}

// ---- transfers ----

TEST_F(AfectacionDeSalida, ATransferArrivesLineByLineAtItsTarget) {
  frmSalidasWizard& f = Lista();
  f.SSCheck1.Value(1);
  f.txtFields(campo::AlmacenDestino).Text("2");
  int movidos = -1;
  Gancho("SALIDAS017", [&](frmSalidasWizard&) { movidos = static_cast<int>(bitacora.movimientos.size()); });
  Olvida();
  bitacora.respuestas.push_back(true);
  f.Command5_Click();
  ASSERT_EQ(bitacora.movimientos.size(), 6u);
  Comprueba(0,
            {{"EntSal", "S"}, {"Operacion", "SA"}, {"TipoDoc", "VTA"}, {"Almacen", "1"}, {"Precio", "116"}});
  Comprueba(1, {{"EntSal", "E"},
                {"Operacion", "T+"},
                {"TipoDoc", "T+"},
                {"Almacen", "2"},
                {"Precio", "0"},
                {"Movimiento", "5"},
                {"Documento", "5"},
                {"Articulo", "A-100"},
                {"Cantidad", "3"},
                {"IdSalida", "1"},
                {"ClaveAdd", ""},
                {"Usuario", "ANA"},
                {"Aplica", "1"},
                {"EstacionTraspaso", "(nada)"}});
  Comprueba(2,
            {{"EntSal", "S"}, {"Operacion", "SA"}, {"TipoDoc", "VTA"}, {"Almacen", "1"}, {"Precio", "116"}});
  Comprueba(3, {{"ClaveAdd", "7501"}, {"Cantidad", "12"}, {"Operacion", "T+"}});
  EXPECT_EQ(movidos, 6);
  EXPECT_EQ(Claves(), (Textos{"SALIDAS016", "SALIDAS017", "SALIDAS005", "SALIDAS006"}));
  EXPECT_EQ(Existencia("A-100", 1), "-5");
  EXPECT_EQ(Existencia("A-100", 2), "15");
  EXPECT_EQ(f.Costo, 15 * 61.5 + 2 * 20);  // the outflows alone
}

TEST_F(AfectacionDeSalida, ATransferToItsOwnWarehouseMovesBothWays) {
  frmSalidasWizard& f = Lista();
  f.SSCheck1.Value(1);
  f.txtFields(campo::AlmacenDestino).Text("1");
  Finaliza(f);
  EXPECT_EQ(bitacora.movimientos.size(), 6u);
  EXPECT_EQ(Existencia("A-100", 1), "10");
}

TEST_F(AfectacionDeSalida, TheArrivalCarriesTheStationTrimmed) {
  frmSalidasWizard& f = Lista();
  Sql("INSERT INTO ESTACIONES (ESTACION) VALUES ('E2 ')");
  f.SSCheck1.Value(1);
  f.txtFields(campo::AlmacenDestino).Text("2");
  f.SSCheck2.Value(1);
  f.txtFields(campo::EstacionDestino).Text("E2 ");
  Finaliza(f);
  ASSERT_EQ(bitacora.movimientos.size(), 6u);
  Comprueba(0, {{"EstacionTraspaso", "(nada)"}});
  Comprueba(1, {{"EstacionTraspaso", "E2"}});
  Comprueba(2, {{"EstacionTraspaso", "E2"}});  // one object serves the whole run: what was set stays set
  EXPECT_EQ(Uno("SELECT estaciontraspaso FROM salidas"), "E2 ");
}

TEST_F(AfectacionDeSalida, ARoutineOfATransferThatFailsIsReportedByThePosting) {
  frmSalidasWizard& f = Lista();
  f.SSCheck1.Value(1);
  f.txtFields(campo::AlmacenDestino).Text("2");
  Gancho("SALIDAS017", [](frmSalidasWizard&) { throw data::Error("sin destino"); });
  Finaliza(f);
  EXPECT_EQ(Reportes(), (Textos{Reporte("AfectaPartidas", "sin destino")}));
  EXPECT_EQ(f.Costo, 15 * 61.5 + 2 * 20);
  EXPECT_FALSE(f.Open());
}

// ---- against a purchase ----

TEST_F(AfectacionDeSalida, AShipmentAgainstAPurchaseAssignsTheSumOfEachArticle) {
  frmSalidasWizard& f = Lista();
  f.txtFields(campo::Compra).Text("55");
  f.txtFields(campo::Sucursal).Text("NTE");
  Finaliza(f);
  const data::Rows filas =
      Sql("SELECT id_partida, cantidad, sucursal, tipo FROM compras2sucursal ORDER BY id_partida");
  ASSERT_EQ(filas.rows.size(), 2u);
  const Textos esperadas[] = {{"551", "15", "NTE", "REAL"}, {"552", "2", "NTE", "REAL"}};
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 4; ++j) EXPECT_EQ(data::ToText(filas.rows[i][j]), esperadas[i][j]);
  }
  EXPECT_EQ(CuentaSentencias(
                "SELECT articulo, SUM(cantidad) As cantidad FROM salpart WHERE salida = 1 GROUP BY articulo"),
            1);
  EXPECT_EQ(CuentaSentencias("SELECT * FROM compra2part WHERE articulo = 'A-100' AND compra = 55"), 1);
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(AfectacionDeSalida, AnArticleThatThePurchaseDoesNotHaveIsPassedOverAndOfTwoLinesTheFirstCounts) {
  Sql("DELETE FROM compra2part WHERE Id = 552");
  Sql("INSERT INTO compra2part (Id, articulo, compra) VALUES (559, 'A-100', 55)");
  frmSalidasWizard& f = Lista();
  f.txtFields(campo::Compra).Text("55");
  f.txtFields(campo::Sucursal).Text("NTE");
  Finaliza(f);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM compras2sucursal"), "1");
  EXPECT_EQ(Uno("SELECT id_partida FROM compras2sucursal"), "551");
}

TEST_F(AfectacionDeSalida, WithoutAPurchaseOrWithoutABranchOrPendingNothingIsAssigned) {
  for (int caso : {0, 1, 2}) {
    frmSalidasWizard& f = Salida({{"A-100", "1"}});
    if (caso != 0) f.txtFields(campo::Compra).Text("55");
    if (caso != 1) f.txtFields(campo::Sucursal).Text("NTE");
    if (caso == 2) f.Check3.Value(1);
    bitacora.respuestas.assign(1, true);
    f.Command5_Click();
    EXPECT_FALSE(f.Open()) << caso;
    EXPECT_EQ(Uno("SELECT COUNT(*) FROM compras2sucursal"), "0") << caso;
  }
}

}  // namespace
}  // namespace tarvik::tests
