// The ledger of one article, headless: stock after each movement, wherever the ledger begins to keep it, and
// what the chart and the sums are made of, on every engine.
#include "host/kardex.h"

#include "host/listados.h"
#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class Kardex : public Banco {
 protected:
  void Movimiento(const char* operation, double quantity, const char* date, const data::Value& kept = {},
                  int warehouse = 1) {
    const bool in = std::string(operation) != "SA";
    Sql("INSERT INTO movsinv (operacion, ent_sal, articulo, almacen, cantidad, f_movim, saldo, movimiento, "
        "id_entrada, id_salida) VALUES (?, ?, 'A', ?, ?, ?, ?, 500, ?, ?)",
        {operation, in ? "E" : "S", warehouse, quantity, date, kept, ++line, line});
  }
  void Existencia(double stock) {
    Sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, 'A', ?)", {stock});
  }
  std::vector<PuntoDeKardex> Puntos() {
    LecturaDeKardex reading("A", 1);
    while (reading.Paso(anfitrion->Conexion())) continue;
    return std::move(reading).Puntos();
  }
  std::vector<double> Saldos() {
    std::vector<double> stock;
    for (const auto& point : Puntos()) stock.push_back(point.saldo);
    return stock;
  }
  int line = 0;
};

TEST_F(Kardex, StockIsAddedUpBackwardsFromTodayWhereTheLedgerKeepsNone) {
  Movimiento("EN", 10, "2024-01-02");
  Movimiento("SA", 4, "2024-01-03");
  Movimiento("T+", 0.1, "2024-01-04");
  Existencia(13.1);  // seven were there before the ledger began
  EXPECT_EQ(Saldos(), (std::vector<double>{17, 13, 13.1}));
}

TEST_F(Kardex, ARowThatKeepsItsStockIsBelieved) {
  Movimiento("EN", 10, "2024-01-02");
  Movimiento("SA", 4, "2024-01-03", 6);
  Movimiento("EN", 1, "2024-01-04", 7);
  Movimiento("SA", 9, "2024-01-04", {}, 2);  // another warehouse's
  Existencia(9);                             // somebody corrected it by hand
  EXPECT_EQ(Saldos(), (std::vector<double>{10, 6, 7}));
}

TEST_F(Kardex, ALongLedgerIsReadInSteps) {
  const int last = LecturaDeKardex::kPaso + 10;
  Sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?) INSERT INTO movsinv "
      "(operacion, ent_sal, articulo, almacen, cantidad, f_movim) SELECT 'EN', 'E', 'A', 1, 2, '2024-01-02' "
      "FROM "
      "n",
      {last});
  Existencia(2.0 * last);
  LecturaDeKardex reading("A", 1);
  EXPECT_TRUE(reading.Paso(anfitrion->Conexion()));
  EXPECT_FALSE(reading.Paso(anfitrion->Conexion()));
  const auto points = std::move(reading).Puntos();
  ASSERT_EQ(points.size(), static_cast<std::size_t>(last));
  EXPECT_EQ(points.front().saldo, 2);
  EXPECT_EQ(points.back().saldo, 2.0 * last);
}

TEST_F(Kardex, TheDaysFollowTheDatesOfTheMovements) {
  Movimiento("EN", 10, "2024-01-05");
  Movimiento("EN", 3, "2024-01-02");  // posted late
  Movimiento("SA", 4, "2024-01-05");
  Existencia(9);
  const auto days = ExistenciaPorDia(Puntos());
  ASSERT_EQ(days.size(), 2U);
  EXPECT_EQ(days[0].fecha, (data::Date{2024, 1, 2}));
  EXPECT_EQ(days[0].saldo, 3);
  EXPECT_EQ(days[1].saldo, 9);
  EXPECT_TRUE(ExistenciaPorDia({}).empty());
}

TEST_F(Kardex, ARangeOfDatesNarrowsTheRowsAndTheirSumsButNotTheStock) {
  Movimiento("EN", 10, "2024-01-02");
  Movimiento("SA", 4, "2024-01-03");
  Movimiento("EN", 1, "2024-01-04");
  Existencia(7);
  const FiltroDeKardex filter{"A", 1, data::Date{2024, 1, 3}, data::Date{2024, 1, 3}};
  CursorDeListado cursor(ListadoDeMovimientos(filter));
  const Renglones rows = cursor.Lee(anfitrion->Conexion(), 10);
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(data::ToNumber(De(rows[0], ColumnaDeMovimiento::kCambio)), -4);
  const auto points = Puntos();
  EXPECT_EQ(points[1].saldo, 6);
  const SumasDeKardex sums = SumaKardex(points, filter);
  EXPECT_EQ(sums.cuantos, 1);
  EXPECT_EQ(sums.entra, 0);
  EXPECT_EQ(sums.sale, 4);
  EXPECT_EQ(SumaKardex(points, {"A", 1}).entra, 11);
}

TEST_F(Kardex, AMovementKnowsItsDocumentNotOnlyItsFolio) {
  Sql("INSERT INTO entradas (entrada, estado) VALUES (7, 'CO')");
  Sql("INSERT INTO entpart (id_entrada, entrada) VALUES (1, 7)");
  Sql("INSERT INTO salidas (salida, folio, estado) VALUES (8, 500, 'CO')");
  Sql("INSERT INTO salpart (id_salida, salida) VALUES (2, 8)");
  Movimiento("EN", 1, "2024-01-02");
  Movimiento("SA", 1, "2024-01-02");
  Movimiento("SA", 1, "2024-01-02");  // its document was deleted
  CursorDeListado cursor(ListadoDeMovimientos({"A", 1}));
  const Renglones rows = cursor.Lee(anfitrion->Conexion(), 10);
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(DocumentoDelMovimiento(rows[0]), std::nullopt);
  EXPECT_EQ(DocumentoDelMovimiento(rows[1]), (Retenido{Tipo::Salida, 8}));
  EXPECT_EQ(DocumentoDelMovimiento(rows[2]), (Retenido{Tipo::Entrada, 7}));
}

}  // namespace
}  // namespace tarvik::host
