// Posting: ledger and stock as one, and nothing of it where any part fails.
#include "host/movimientos.h"

#include <cmath>
#include <limits>

#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class Movimientos : public Banco {
 protected:
  void SetUp() override {
    Banco::SetUp();
    Sql("INSERT INTO prods (articulo, costo_u, ALM1) VALUES ('A-100', 7.5, 10)");
    movimiento = anfitrion->NuevoMovimiento();
    movimiento->Ambiente(Ambiente());
  }
  // An inflow of 3 at 11.6 into warehouse 1, of a line of its own.
  void Entrada(int renglon = 44) {
    movimiento->ClaveLocal("L");
    movimiento->EntSal("E");
    movimiento->Fecha({2024, 3, 1});
    movimiento->Almacen(1);
    movimiento->Movimiento(12);
    movimiento->TipoDoc("COM");
    movimiento->Usuario("ANA");
    movimiento->Documento("12");
    movimiento->Operacion("EN");
    movimiento->Articulo("A-100");
    movimiento->Cantidad(3);
    movimiento->Precio(11.6);
    movimiento->IdEntrada(renglon);
    movimiento->ClaveAdd("750");
    movimiento->Aplica(true);
  }
  double Afecta() {
    double amount = -1;
    movimiento->Afecta(amount);
    return amount;
  }
  double Existencia(double almacen = 1, const std::string& articulo = "A-100") {
    return data::ToNumber(Dato("SELECT existencia FROM existenciaalmacen WHERE almacen = ? AND articulo = ?",
                               {almacen, articulo}));
  }
  double Alm(const std::string& column) { return data::ToNumber(Dato("SELECT " + column + " FROM prods")); }
  int Renglones() { return static_cast<int>(data::ToNumber(Dato("SELECT COUNT(*) FROM movsinv"))); }

  std::unique_ptr<service::MovimientoInventario> movimiento;
};

TEST_F(Movimientos, AnInflowWritesItsLedgerRow) {
  Entrada();
  EXPECT_DOUBLE_EQ(Afecta(), 3 * 11.6);
  data::Recordset row(Sql("SELECT * FROM movsinv"));
  ASSERT_EQ(row.RecordCount(), 1);
  EXPECT_EQ(row.Fields("ent_sal"), data::Value("E"));
  EXPECT_EQ(row.Fields("clavelocal"), data::Value("L"));
  EXPECT_EQ(row.Fields("f_movim"), data::Value(data::Date{2024, 3, 1}));
  EXPECT_EQ(data::ToNumber(row.Fields("almacen")), 1);
  EXPECT_EQ(row.Fields("movimiento"), data::Value(12));
  EXPECT_EQ(row.Fields("tipo_doc"), data::Value("COM"));
  EXPECT_EQ(row.Fields("usuario"), data::Value("ANA"));
  EXPECT_EQ(row.Fields("documento"), data::Value("12"));
  EXPECT_EQ(row.Fields("operacion"), data::Value("EN"));
  EXPECT_EQ(row.Fields("articulo"), data::Value("A-100"));
  EXPECT_EQ(data::ToNumber(row.Fields("cantidad")), 3);
  EXPECT_EQ(data::ToNumber(row.Fields("precio")), 11.6);
  EXPECT_EQ(row.Fields("id_entrada"), data::Value(44));
  EXPECT_TRUE(row.Fields("id_salida").IsNull());
  EXPECT_EQ(row.Fields("claveadd"), data::Value("750"));
  EXPECT_TRUE(row.Fields("estaciontraspaso").IsNull());
  EXPECT_DOUBLE_EQ(data::ToNumber(row.Fields("importe")), 3 * 11.6);
  EXPECT_EQ(row.Fields("cerrado"), data::Value(0));
  EXPECT_EQ(row.Fields("usuhora"), data::Value("14:15:00"));
}

TEST_F(Movimientos, WhatIsNoNumberMovesNothing) {
  const double infinite = std::numeric_limits<double>::infinity();
  for (double figure : {std::nan(""), infinite, -infinite}) {
    Entrada();
    movimiento->Cantidad(figure);
    EXPECT_THROW(Afecta(), data::Error) << figure;
    Entrada();
    movimiento->Precio(figure);
    EXPECT_THROW(Afecta(), data::Error) << figure;
    Entrada();
    movimiento->Almacen(figure);
    EXPECT_THROW(Afecta(), data::Error) << figure;
  }
  EXPECT_EQ(Renglones(), 0);
  EXPECT_EQ(Alm("ALM1"), 10);
}

TEST_F(Movimientos, AnInflowAddsToTheStockOfItsWarehouseAndOfTheArticle) {
  Entrada();
  Afecta();
  EXPECT_EQ(Existencia(), 3);
  EXPECT_EQ(Alm("ALM1"), 13);
  EXPECT_TRUE(Dato("SELECT ALM2 FROM prods").IsNull());
  movimiento->IdEntrada(45);
  Afecta();
  EXPECT_EQ(Existencia(), 6);
  EXPECT_EQ(Alm("ALM1"), 16);
  EXPECT_EQ(Renglones(), 2);
}

TEST_F(Movimientos, AnOutflowTakesAwayAndIsWorthTheUnitCost) {
  Entrada();
  movimiento->EntSal("S");
  movimiento->Operacion("SA");
  movimiento->IdSalida(9);
  EXPECT_EQ(Afecta(), 22.5);
  EXPECT_EQ(Existencia(), -3);
  EXPECT_EQ(Alm("ALM1"), 7);
  EXPECT_EQ(Dato("SELECT id_salida FROM movsinv"), data::Value(9));
  EXPECT_EQ(data::ToNumber(Dato("SELECT importe FROM movsinv")), 22.5);
}

TEST_F(Movimientos, AnEmptyStockCountsAsNothing) {
  Sql("INSERT INTO existenciaalmacen (almacen, articulo) VALUES (2, 'A-100')");
  Entrada();
  movimiento->Almacen(2);
  Afecta();
  EXPECT_EQ(Existencia(2), 3);
  EXPECT_EQ(Alm("ALM2"), 3);
}

TEST_F(Movimientos, AnUnknownArticleMovesWithoutACost) {
  Entrada();
  movimiento->EntSal("S");
  movimiento->Articulo("NADA");
  EXPECT_EQ(Afecta(), 0);
  EXPECT_EQ(Existencia(1, "NADA"), -3);
}

TEST_F(Movimientos, AWarehouseWithoutAColumnOfItsOwnIsKeptInItsTable) {
  int renglon = 0;
  for (const double warehouse : {10.0, 1.5, -1.0}) {
    Entrada(++renglon);
    movimiento->Almacen(warehouse);
    Afecta();
    EXPECT_EQ(Existencia(warehouse), 3) << warehouse;
  }
  EXPECT_EQ(Alm("ALM1"), 10);
}

TEST_F(Movimientos, WithAplicaFalseNothingIsWrittenAndTheAmountIsGiven) {
  Entrada();
  movimiento->Aplica(false);
  EXPECT_DOUBLE_EQ(Afecta(), 3 * 11.6);
  movimiento->EntSal("S");
  EXPECT_EQ(Afecta(), 22.5);
  EXPECT_EQ(Renglones(), 0);
  EXPECT_EQ(Alm("ALM1"), 10);
  EXPECT_TRUE(Sql("SELECT * FROM existenciaalmacen").rows.empty());
}

TEST_F(Movimientos, AStepThatFailsLeavesNothingOfThePosting) {
  Entrada();
  Afecta();
  movimiento->IdEntrada(45);
  Sql("ALTER TABLE existenciaalmacen RENAME TO otra");
  double amount = -1;
  EXPECT_NE(ErrorDe([&] { movimiento->Afecta(amount); }), "(ningún error)");
  EXPECT_EQ(amount, -1);
  EXPECT_EQ(Renglones(), 1);
  EXPECT_EQ(Alm("ALM1"), 13);
  EXPECT_EQ(testigo.movimientos.size(), 1U);
  Sql("ALTER TABLE otra RENAME TO existenciaalmacen");
  Afecta();
  EXPECT_EQ(Existencia(), 6);
}

TEST_F(Movimientos, APostingThatIsMadeToFailWritesNothing) {
  Entrada();
  testigo.falla_servicio = "Afecta";
  EXPECT_EQ(ErrorDe([&] { Afecta(); }), "falla provocada");
  EXPECT_EQ(Renglones(), 0);
  EXPECT_TRUE(testigo.movimientos.empty());
}

TEST_F(Movimientos, WithoutArticleDirectionOrContextThereIsAnError) {
  movimiento->Articulo("A-100");
  EXPECT_EQ(ErrorDe([&] { Afecta(); }), "El movimiento no indica si es de entrada o de salida");
  movimiento->EntSal("X");
  EXPECT_EQ(ErrorDe([&] { Afecta(); }), "El movimiento no indica si es de entrada o de salida");
  movimiento->EntSal("E");
  movimiento->Articulo("  ");
  EXPECT_EQ(ErrorDe([&] { Afecta(); }), "El movimiento no tiene artículo");
  auto bare = anfitrion->NuevoMovimiento();
  double amount = 0;
  EXPECT_EQ(ErrorDe([&] { bare->Afecta(amount); }), "El movimiento no tiene ambiente");
  EXPECT_EQ(Renglones(), 0);
}

TEST_F(Movimientos, TheWitnessHearsTheSetPropertiesInOrder) {
  Entrada();
  Afecta();
  ASSERT_EQ(testigo.movimientos.size(), 1U);
  const Propiedades expected = {{"EntSal", "E"},       {"ClaveLocal", "L"}, {"Fecha", data::Date{2024, 3, 1}},
                                {"Almacen", 1.0},      {"Movimiento", 12},  {"TipoDoc", "COM"},
                                {"Usuario", "ANA"},    {"Documento", "12"}, {"Operacion", "EN"},
                                {"Articulo", "A-100"}, {"Cantidad", 3.0},   {"Precio", 11.6},
                                {"IdEntrada", 44},     {"ClaveAdd", "750"}, {"Aplica", 1}};
  EXPECT_EQ(testigo.movimientos[0].first, expected);
  EXPECT_DOUBLE_EQ(testigo.movimientos[0].second, 3 * 11.6);
}

TEST_F(Movimientos, AnEmptyTextIsASetPropertyAndKeepsItsPlace) {
  movimiento->EntSal("S");
  movimiento->Articulo("A-100");
  movimiento->ClaveAdd("");
  movimiento->EstacionTraspaso("E2");
  Afecta();
  EXPECT_EQ(
      testigo.movimientos[0].first,
      (Propiedades{{"EntSal", "S"}, {"Articulo", "A-100"}, {"ClaveAdd", ""}, {"EstacionTraspaso", "E2"}}));
  EXPECT_EQ(Dato("SELECT estaciontraspaso FROM movsinv"), data::Value("E2"));
}

// The second half of a transfer runs on the same object.
TEST_F(Movimientos, ATransferLeavesOneWarehouseAndArrivesInTheOther) {
  Entrada();
  movimiento->EntSal("S");
  movimiento->Operacion("SA");
  movimiento->IdSalida(9);
  Afecta();
  movimiento->EntSal("E");
  movimiento->Operacion("T+");
  movimiento->Almacen(2);
  movimiento->Precio(0);
  EXPECT_EQ(Afecta(), 0);
  EXPECT_EQ(Existencia(1), -3);
  EXPECT_EQ(Existencia(2), 3);
  EXPECT_EQ(Alm("ALM1"), 7);
  EXPECT_EQ(Alm("ALM2"), 3);
}

TEST_F(Movimientos, PostingIsNotAmongTheStatementsOfTheModule) {
  Entrada();
  Afecta();
  EXPECT_TRUE(testigo.sentencias.empty());
}

}  // namespace
}  // namespace tarvik::host
