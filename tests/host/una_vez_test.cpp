// A line moves once: the posting service is safe to call twice, and the base sees to it by itself.
#include "data/number.h"
#include "data/schema.h"
#include "host/movimientos.h"
#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class UnaVez : public Banco {
 protected:
  void SetUp() override {
    Banco::SetUp();
    Sql("INSERT INTO prods (articulo, costo_u, ALM1) VALUES ('A-100', 7.5, 0)");
    Sql("INSERT INTO prods (articulo, costo_u, ALM1) VALUES ('A-200', 3, 0)");
  }
  struct Linea {
    int renglon = 44;
    std::string articulo = "A-100";
    double cantidad = 3;
    double almacen = 1;
    std::string operacion = "EN";
  };
  double Afecta(const Linea& linea) {
    auto movimiento = anfitrion->NuevoMovimiento();
    movimiento->Ambiente(Ambiente());
    movimiento->EntSal(linea.operacion == "SA" ? "S" : "E");
    movimiento->Operacion(linea.operacion);
    movimiento->Articulo(linea.articulo);
    movimiento->Cantidad(linea.cantidad);
    movimiento->Precio(10);
    movimiento->Almacen(linea.almacen);
    movimiento->Movimiento(12);
    movimiento->Documento("12");
    if (linea.operacion == "EN") {
      movimiento->IdEntrada(linea.renglon);
    } else {
      movimiento->IdSalida(linea.renglon);
    }
    double amount = -1;
    movimiento->Afecta(amount);
    return amount;
  }
  double Existencia(const std::string& articulo = "A-100") {
    return data::ToNumber(
        Dato("SELECT SUM(existencia) FROM existenciaalmacen WHERE articulo = ?", {articulo}));
  }
  int Renglones() { return static_cast<int>(data::ToNumber(Dato("SELECT COUNT(*) FROM movsinv"))); }
};

TEST_F(UnaVez, ALineThatHasMovedSucceedsWithTheAmountOfThenAndMovesNothing) {
  EXPECT_EQ(Afecta({}), 30);
  EXPECT_EQ(Afecta({}), 30);
  EXPECT_EQ(Renglones(), 1);
  EXPECT_EQ(Existencia(), 3);
  EXPECT_EQ(data::ToNumber(Dato("SELECT ALM1 FROM prods WHERE articulo = 'A-100'")), 3);
  ASSERT_EQ(testigo.movimientos.size(), 2U) << "the record has it, with the amount of then";
  EXPECT_EQ(testigo.movimientos[1].second, 30);
}

// A base that held doubles when the rule came: the rule looks only at what came after it.
TEST_F(UnaVez, ALineThatMovedBeforeTheRuleCameMovesNoMoreEither) {
  Sql("DROP INDEX una_vez_entrada");
  Sql("INSERT INTO movsinv (operacion, id_entrada, articulo, almacen, ent_sal, cantidad, importe) VALUES "
      "('EN', 44, 'A-100', 1, 'E', 3, 30), ('EN', 900, 'A-200', 1, 'E', 0, 0), ('EN', 900, 'A-200', 1, 'E', "
      "0, 0)");
  data::PrepareSchema(anfitrion->Conexion());
  ASSERT_FALSE(data::RulesWithPast(anfitrion->Conexion()).empty());
  EXPECT_EQ(Afecta({}), 30) << "the amount of then";
  EXPECT_EQ(Renglones(), 3);
  EXPECT_EQ(Existencia(), 0) << "the base's own past is its own";
  EXPECT_EQ(Afecta({.renglon = 45}), 30) << "another line moves";
  EXPECT_EQ(Afecta({.renglon = 45}), 30);
  EXPECT_EQ(Renglones(), 4);
}

TEST_F(UnaVez, TheAmountOfThenIsThatOfTheCostOfThen) {
  EXPECT_EQ(Afecta({.operacion = "SA"}), 22.5);
  Sql("UPDATE prods SET costo_u = 99 WHERE articulo = 'A-100'");
  EXPECT_EQ(Afecta({.operacion = "SA"}), 22.5);
  EXPECT_EQ(Existencia(), -3);
}

TEST_F(UnaVez, ATransfersLineLeavesOnceAndArrivesOnce) {
  for (int i = 0; i < 2; ++i) {
    Afecta({.operacion = "SA"});
    Afecta({.almacen = 2, .operacion = "T+"});
  }
  EXPECT_EQ(Renglones(), 2);
  EXPECT_EQ(Existencia(), 0);
}

TEST_F(UnaVez, ALineOfTheSameNumberWithAnotherArticleOrWarehouseIsRefusedByName) {
  Afecta({});
  EXPECT_EQ(ErrorDe([&] { Afecta({.articulo = "A-200"}); }),
            "El renglón 44 ya se movió con el documento 12: artículo A-100, almacén 1. No se movió otra vez; "
            "revise la serie de los renglones");
  EXPECT_NE(ErrorDe([&] { Afecta({.almacen = 2}); }), "(ningún error)");
  EXPECT_EQ(Renglones(), 1);
  EXPECT_EQ(Existencia("A-200"), 0);
  EXPECT_EQ(testigo.movimientos.size(), 1U) << "what failed is not listed";
}

TEST_F(UnaVez, ALineOfGoodsInAndOneOfGoodsOutMayBearTheSameNumber) {
  Afecta({});
  Afecta({.operacion = "SA"});
  EXPECT_EQ(Renglones(), 2);
}

TEST_F(UnaVez, LinesWithoutANumberAreOutsideTheRule) {
  for (const int renglon : {0, 0, -1, -1}) Afecta({.renglon = renglon});
  EXPECT_EQ(Renglones(), 4);
  EXPECT_EQ(Existencia(), 12);
}

TEST_F(UnaVez, ARoutinesOwnOperationIsOutsideTheRule) {
  Afecta({.operacion = "TE"});
  Afecta({.operacion = "TE"});
  EXPECT_EQ(Renglones(), 2);
}

TEST_F(UnaVez, TheMarksOfTheOtherMatrixAreOutsideTheRule) {
  for (int i = 0; i < 2; ++i) {
    Sql("INSERT INTO movsinv (operacion, movimiento, articulo, cantidad, id_entrada, claveadd) VALUES ('EN', "
        "12, "
        "'A-100', 3, 44, '999')");
  }
  Afecta({});
  EXPECT_EQ(Existencia(), 3);
  EXPECT_EQ(Renglones(), 3);
}

TEST_F(UnaVez, TheBaseItselfRefusesASecondMovementFromWhereverItComes) {
  Afecta({});
  EXPECT_NE(
      ErrorDe([&] {
        Sql("INSERT INTO movsinv (operacion, movimiento, articulo, almacen, cantidad, id_entrada) VALUES "
            "('EN', 12, 'A-100', 1, 3, 44)");
      }),
      "(ningún error)");
}

TEST_F(UnaVez, ALineThatMovedWithAnotherQuantityIsToldOnceTheActIsOver) {
  Afecta({});
  cajas.clear();
  forma->Load();
  forma->Act([&] {
    Afecta({.cantidad = 8});
    EXPECT_TRUE(cajas.empty());
  });
  ASSERT_EQ(cajas.size(), 1U);
  EXPECT_EQ(
      cajas[0].texto,
      "El renglón 44 (A-100) ya se había movido con cantidad 3; ahora dice 8. La existencia quedó con la "
      "cantidad de entonces.");
  EXPECT_EQ(Existencia(), 3);
}

TEST_F(UnaVez, EightTimesATenthIsEightTenths) {
  for (int i = 1; i <= 8; ++i) Afecta({.renglon = i, .cantidad = 0.1});
  EXPECT_EQ(Existencia(), 0.8);
  EXPECT_EQ(data::ToNumber(Dato("SELECT ALM1 FROM prods WHERE articulo = 'A-100'")), 0.8);
  Afecta({.renglon = 1, .cantidad = 0.8, .operacion = "SA"});
  EXPECT_EQ(Existencia(), 0);
}

TEST_F(UnaVez, EachMovementKeepsTheBalanceBehindIt) {
  Afecta({.renglon = 1, .cantidad = 5});
  Afecta({.renglon = 1, .cantidad = 2, .operacion = "SA"});
  Afecta({.renglon = 2, .cantidad = 7, .almacen = 2});
  const auto rows = Sql("SELECT saldo FROM movsinv ORDER BY id");
  ASSERT_EQ(rows.rows.size(), 3U);
  EXPECT_EQ(data::ToNumber(rows.rows[0][0]), 5);
  EXPECT_EQ(data::ToNumber(rows.rows[1][0]), 3);
  EXPECT_EQ(data::ToNumber(rows.rows[2][0]), 7);
}

TEST_F(UnaVez, TwoStationsThatPostTheSameLineMoveItOnce) {
  Anfitrion other(opciones);
  auto there = other.NuevoMovimiento();
  there->Ambiente(other.Ambiente());
  there->EntSal("E");
  there->Operacion("EN");
  there->Articulo("A-100");
  there->Cantidad(3);
  there->Precio(10);
  there->Almacen(1);
  there->IdEntrada(44);
  double amount = 0;
  there->Afecta(amount);
  EXPECT_EQ(Afecta({}), amount);
  EXPECT_EQ(Existencia(), 3);
}

}  // namespace
}  // namespace tarvik::host
