// Sound books, and stock that is apart from its movements: each damage is planted and found by name.
#include "tests/host/revision_apoyo.h"

namespace tarvik::tests {
namespace {

class RevisaExistencias : public Libros {
 protected:
  std::string Existencia(const std::string& articulo = "A-100", int almacen = 1) {
    return Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = ? AND almacen = ?",
               {articulo, almacen});
  }
};

TEST_F(RevisaExistencias, AnEmptyShopIsSound) { EXPECT_EQ(Dichas(Revisa(false, true)), ""); }

TEST_F(RevisaExistencias, ADayThroughTheScreensIsSound) {
  Dia();
  EXPECT_EQ(Dichas(Revisa()), "");
  EXPECT_EQ(Dichas(Revisa(true)), "");
  EXPECT_EQ(Dichas(host::Rapida(Quien())), "");
  EXPECT_TRUE(host::AbreSaldos(Quien()).empty());
  EXPECT_TRUE(Reparaciones().empty());
  EXPECT_EQ(Existencia(), "13");
}

TEST_F(RevisaExistencias, TenthsThatAddUpAreSound) {
  for (int i = 0; i < 8; ++i) Entrada({{"A-100", "0.1"}});
  Finaliza(Salida({{"A-100", "0.8"}}));
  EXPECT_EQ(Dichas(Revisa()), "");
}

TEST_F(RevisaExistencias, NoStockAndNoMovementAreSoundWhetherThereIsARowOrNot) {
  Sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, 'A-100', 0), (2, 'A-100', "
      "NULL)");
  EXPECT_EQ(Dichas(Revisa()), "");
}

TEST_F(RevisaExistencias, WhatARoutineMovesCountsAndIsOtherwiseSound) {
  Dia();
  auto movement = anfitrion->NuevoMovimiento();
  movement->Ambiente(anfitrion->Ambiente());
  movement->EntSal("S");
  movement->Operacion("TE");
  movement->Articulo("A-100");
  movement->Cantidad(2);
  movement->Precio(0);
  movement->Almacen(1);
  movement->Movimiento(9);
  movement->IdEntrada(1);
  double amount = 0;
  movement->Afecta(amount);
  EXPECT_EQ(Existencia(), "11");
  EXPECT_EQ(Dichas(Revisa()), "");
}

TEST_F(RevisaExistencias, MarksOfTheOtherMatrixAreOutside) {
  Dia();
  Sql("INSERT INTO movsinv (operacion, movimiento, articulo, cantidad, id_entrada, claveadd) VALUES ('EN', "
      "1, "
      "'A-100', 99, 1, '999'), ('SA', 1, 'A-100', 99, NULL, '999')");
  EXPECT_EQ(Dichas(Revisa()), "");
}

TEST_F(RevisaExistencias, StockThatWasChangedByHandIsFoundAndSetToItsMovements) {
  Dia();
  Sql("UPDATE existenciaalmacen SET existencia = 18 WHERE articulo = 'A-100' AND almacen = 1");
  const Observaciones found = Revisa();
  ASSERT_EQ(Fichas(found), (Textos{"existencia|-|-|-|A-100|1", "columna|-|-|-|A-100|1"})) << Dichas(found);
  EXPECT_EQ(found[0].texto,
            "La existencia de A-100 en el almacén 1 es 18 y sus movimientos suman 13. Puede ponerse la "
            "existencia en "
            "lo que suman sus movimientos");
  EXPECT_TRUE(found[0].reparable);
  EXPECT_FALSE(found[0].reparado);
  EXPECT_EQ(Existencia(), "18") << "looking changes nothing";

  const Observaciones mended = Revisa(true);
  ASSERT_EQ(mended.size(), 2U);
  EXPECT_TRUE(mended[0].reparado && mended[1].reparado);
  EXPECT_EQ(Existencia(), "13");
  EXPECT_EQ(Uno("SELECT ALM1 FROM prods WHERE articulo = 'A-100'"), "13");
  ASSERT_EQ(Reparaciones().size(), 2U);
  EXPECT_EQ(Reparaciones()[0], "La existencia de A-100 en el almacén 1 pasó de 18 a 13");
  EXPECT_EQ(Dichas(Revisa()), "");
}

TEST_F(RevisaExistencias, StockAndColumnThatWereChangedTogetherComeBackTogether) {
  Dia();
  Sql("UPDATE existenciaalmacen SET existencia = 18 WHERE articulo = 'A-100' AND almacen = 1");
  Sql("UPDATE prods SET ALM1 = 18 WHERE articulo = 'A-100'");
  EXPECT_EQ(Ficha(Una(true)), "existencia|-|-|-|A-100|1");
  EXPECT_EQ(Dichas(Revisa()), "") << "the column went with the stock";
}

TEST_F(RevisaExistencias, ARowOfStockThatIsGoneIsMadeAgain) {
  Dia();
  Sql("DELETE FROM existenciaalmacen WHERE articulo = 'A-200' AND almacen = 2");
  Sql("UPDATE prods SET ALM2 = 0 WHERE articulo = 'A-200'");
  EXPECT_EQ(Ficha(Una(true)), "existencia|-|-|-|A-200|2");
  EXPECT_EQ(Existencia("A-200", 2), "1");
  EXPECT_EQ(Dichas(Revisa()), "");
}

TEST_F(RevisaExistencias, TheFirstMovementThatIsWrongIsNamed) {
  Dia();
  // A quantity that was changed in the ledger.
  Sql("UPDATE movsinv SET cantidad = 1 WHERE id = 3");
  Observaciones found = Revisa();
  ASSERT_EQ(Fichas(found), (Textos{"existencia|-|-|3|A-100|1", "distinto|Salida|1|1|A-100|1"}))
      << Dichas(found);
  EXPECT_NE(found[0].texto.find("difieren desde el movimiento 3"), std::string::npos) << found[0].texto;
  Sql("UPDATE movsinv SET cantidad = 3 WHERE id = 3");

  // Stock that was changed between two movements: the next one shows it.
  Sql("UPDATE existenciaalmacen SET existencia = existencia + 2 WHERE articulo = 'A-100' AND almacen = 1");
  Sql("UPDATE prods SET ALM1 = ALM1 + 2 WHERE articulo = 'A-100'");
  Entrada({{"A-100", "1"}});
  Entrada({{"A-100", "1"}});
  EXPECT_EQ(Ficha(Una(true)), "existencia|-|-|8|A-100|1");
  EXPECT_EQ(Dichas(Revisa()), "");

  // A movement that is gone: the one behind it.
  Sql("DELETE FROM movsinv WHERE id = 8");
  found = Revisa();
  ASSERT_EQ(found.size(), 2U) << Dichas(found);
  EXPECT_EQ(Ficha(found[0]), "existencia|-|-|9|A-100|1");
  EXPECT_EQ(found[1].clase, "a medias");
}

TEST_F(RevisaExistencias, BehindARepairTheNextDamageIsNamedWhereItIs) {
  Dia();
  Sql("UPDATE existenciaalmacen SET existencia = existencia + 5 WHERE articulo = 'A-100' AND almacen = 1");
  Entrada({{"A-100", "2"}});
  EXPECT_EQ(Revisa(true).at(0).renglon, 8);
  EXPECT_EQ(Dichas(Revisa()), "");
  Sql("UPDATE existenciaalmacen SET existencia = existencia + 1 WHERE articulo = 'A-100' AND almacen = 1");
  Entrada({{"A-100", "2"}});
  EXPECT_EQ(Revisa().at(0).renglon, 9) << Dichas(Revisa());
}

TEST_F(RevisaExistencias, AMovementThatNeverMovedTheStockIsNamed) {
  Dia();
  Sql("INSERT INTO movsinv (operacion, ent_sal, articulo, almacen, cantidad) VALUES ('XX', 'E', 'A-100', 1, "
      "6)");
  EXPECT_EQ(Ficha(Una()), "existencia|-|-|8|A-100|1");
}

TEST_F(RevisaExistencias, WhereTheOpeningIsNotInTheLedgerNothingIsSetAndItCanBeEntered) {
  // Stock from before this program kept the books, with movements behind it and without.
  Sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, 'A-100', 10), (2, 'A-200', "
      "4.5)");
  Sql("UPDATE prods SET ALM1 = 10 WHERE articulo = 'A-100'");
  Sql("UPDATE prods SET ALM2 = 4.5 WHERE articulo = 'A-200'");
  Entrada({{"A-100", "3"}});
  const Observaciones found = Revisa(true);
  ASSERT_EQ(Fichas(found), (Textos{"existencia|-|-|-|A-100|1", "existencia|-|-|-|A-200|2"})) << Dichas(found);
  for (const auto& one : found) EXPECT_FALSE(one.reparable || one.reparado) << one.texto;
  EXPECT_EQ(found[0].texto,
            "La existencia de A-100 en el almacén 1 es 13 y sus movimientos suman 3. Su saldo de apertura no "
            "consta en "
            "los movimientos: la diferencia (10) puede asentarse como movimiento de apertura");
  EXPECT_EQ(Existencia(), "13");

  const Observaciones entered = host::AbreSaldos(Quien());
  ASSERT_EQ(entered.size(), 2U);
  EXPECT_TRUE(entered[0].reparado);
  EXPECT_EQ(Existencia(), "13") << "stock is as it was";
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv WHERE id_entrada IS NULL AND id_salida IS NULL AND movimiento "
                "IS NULL "
                "AND documento IS NULL"),
            "2");
  EXPECT_EQ(Dichas(Revisa()), "");
  EXPECT_TRUE(host::AbreSaldos(Quien()).empty()) << "once is enough";
  EXPECT_EQ(Reparaciones().size(), 2U);

  // Now the opening stands there, and what comes later is found and mended.
  Sql("UPDATE existenciaalmacen SET existencia = existencia - 1 WHERE articulo = 'A-100'");
  Sql("UPDATE prods SET ALM1 = ALM1 - 1 WHERE articulo = 'A-100'");
  Entrada({{"A-100", "2"}});
  const host::Observacion one = Una(true);
  EXPECT_EQ(one.renglon, std::stoll(Uno("SELECT MAX(id) FROM movsinv")));
  EXPECT_TRUE(one.reparado);
  EXPECT_EQ(Existencia(), "15");
  EXPECT_EQ(Dichas(Revisa()), "");
}

TEST_F(RevisaExistencias, AnOpeningThatAScriptEnteredFirstStandsInTheLedger) {
  Sql("INSERT INTO movsinv (operacion, ent_sal, articulo, almacen, cantidad) VALUES ('IN', 'E', 'A-100', 1, "
      "50)");
  Sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, 'A-100', 50)");
  Sql("UPDATE prods SET ALM1 = 50 WHERE articulo = 'A-100'");
  Entrada({{"A-100", "3"}});
  EXPECT_EQ(Dichas(Revisa()), "");
  Sql("UPDATE existenciaalmacen SET existencia = 49");
  const Observaciones found = Revisa(true);
  ASSERT_FALSE(found.empty());
  EXPECT_TRUE(found[0].reparado) << Dichas(found);
  EXPECT_EQ(Existencia(), "53");
}

TEST_F(RevisaExistencias, AFailureWhileOpeningsAreEnteredLeavesNone) {
  Sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, 'A-100', 10), (1, 'A-200', "
      "4)");
  Sql("ALTER TABLE bitacora RENAME COLUMN texto TO otra");
  EXPECT_THROW(host::AbreSaldos(Quien()), data::Error);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "0");
}

TEST_F(RevisaExistencias, AColumnThatIsNotTheStockIsFoundAndSet) {
  Dia();
  Sql("UPDATE prods SET ALM2 = 40 WHERE articulo = 'A-100'");
  Sql("UPDATE prods SET ALM9 = 1 WHERE articulo = 'A-200'");
  const Observaciones found = Revisa(true);
  ASSERT_EQ(Fichas(found), (Textos{"columna|-|-|-|A-100|2", "columna|-|-|-|A-200|9"})) << Dichas(found);
  EXPECT_EQ(found[0].texto,
            "La columna ALM2 del artículo A-100 dice 40 y su existencia es 4. Puede ponerse la columna en lo "
            "que dice "
            "la existencia");
  EXPECT_TRUE(found[0].reparado && found[1].reparado);
  EXPECT_EQ(Uno("SELECT ALM2 FROM prods WHERE articulo = 'A-100'"), "4");
  EXPECT_EQ(Uno("SELECT ALM9 FROM prods WHERE articulo = 'A-200'"), "0");
  EXPECT_EQ(Existencia(), "13");
  EXPECT_EQ(Dichas(Revisa()), "");
}

TEST_F(RevisaExistencias, ARepairThatFailsSaysSoAndTheOthersAreDone) {
  Dia();
  Sql("UPDATE existenciaalmacen SET existencia = 18 WHERE articulo = 'A-100' AND almacen = 1");
  Sql("UPDATE prods SET ALM2 = 40 WHERE articulo = 'A-100'");
  Sql("ALTER TABLE bitacora RENAME COLUMN texto TO otra");
  for (const auto& one : Revisa(true)) {
    EXPECT_FALSE(one.reparado);
    EXPECT_NE(one.texto.find(". No se pudo reparar: "), std::string::npos) << one.texto;
  }
  EXPECT_EQ(Existencia(), "18") << "no repair without its record";
  EXPECT_EQ(Uno("SELECT ALM2 FROM prods WHERE articulo = 'A-100'"), "40");
}

}  // namespace
}  // namespace tarvik::tests
