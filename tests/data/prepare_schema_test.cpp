// How a base gets the schema, and what it then holds its users to.
#include <gtest/gtest.h>

#include <algorithm>

#include "data/error.h"
#include "data/schema.h"
#include "data/text.h"
#include "tests/data/support.h"

namespace tarvik::data {
namespace {

using tests::ErrorOf;
using tests::ReadFile;
using tests::TempFolder;

using List = std::vector<std::string>;

// A base in memory that has the schema.
class Prepared : public testing::Test {
 protected:
  Prepared() : base_(OpenBase("sqlite::memory:")), connection_(base_->Connect()) {
    first_ = PrepareSchema(*connection_);
  }
  EngineConnection& db() { return *connection_; }
  Value Single(std::string_view text) { return db().Select(text).rows.at(0).at(0); }

  std::unique_ptr<Base> base_;
  std::unique_ptr<EngineConnection> connection_;
  bool first_ = false;
};

TEST_F(Prepared, AnEmptyBaseGetsEveryTableOnce) {
  EXPECT_TRUE(first_);
  for (const Table& table : Schema()) {
    List expected;
    for (const Column& column : table.columns) expected.push_back(LowerAscii(column.name));
    EXPECT_EQ(db().Columns(table.name), expected) << table.name;
  }
  EXPECT_EQ(Single("SELECT MAX(version) FROM version_esquema"), Value(kSchemaVersion));
  EXPECT_FALSE(PrepareSchema(db()));
  EXPECT_EQ(Single("SELECT COUNT(*) FROM version_esquema"), Value(1));
}

TEST_F(Prepared, TablesStartEmpty) {
  for (const Table& table : Schema()) {
    if (table.name == "version_esquema") continue;
    EXPECT_EQ(Single("SELECT COUNT(*) FROM " + std::string(table.name)), Value(0)) << table.name;
  }
}

TEST_F(Prepared, EveryColumnButTheKeysTakesANull) {
  for (const Table& table : Schema()) {
    if (!table.foreign_keys.empty() || table.name == "version_esquema") continue;
    std::string columns;
    std::string values;
    for (const auto name : table.key) {
      columns += (columns.empty() ? "" : ", ") + std::string(name);
      values += values.empty() ? "1" : ", 1";
    }
    EXPECT_EQ(ErrorOf([&] {
                db().Execute("INSERT INTO " + std::string(table.name) + " (" + columns + ") VALUES (" +
                             values + ")");
              }),
              "no error")
        << table.name;
  }
}

TEST_F(Prepared, KeysTakeNoNullAndNoSecondRow) {
  for (const Table& table : Schema()) {
    if (table.counted_key) continue;
    for (const auto missing : table.key) {
      std::string columns;
      std::string values;
      for (const auto name : table.key) {
        columns += (columns.empty() ? "" : ", ") + std::string(name);
        values += (values.empty() ? "" : ", ") + std::string(name == missing ? "NULL" : "1");
      }
      EXPECT_EQ(ErrorOf([&] {
                  db().Execute("INSERT INTO " + std::string(table.name) + " (" + columns + ") VALUES (" +
                               values + ")");
                }).substr(0, 25),
                "Falta un dato obligatorio")
          << table.name << '.' << missing;
    }
  }
  db().Execute("INSERT INTO entradas (entrada) VALUES (5)");
  EXPECT_EQ(ErrorOf([&] { db().Execute("INSERT INTO entradas (entrada) VALUES (5)"); }),
            "Ya existe un registro con esa clave: UNIQUE constraint failed: entradas.entrada");
}

TEST_F(Prepared, ADocumentNumberIsNeverDrawnByTheEngine) {
  EXPECT_NE(ErrorOf([&] { db().Execute("INSERT INTO salidas (estado) VALUES ('PE')"); }), "no error");
  EXPECT_EQ(Single("SELECT COUNT(*) FROM salidas"), Value(0));
}

TEST_F(Prepared, TheLedgersRowNumberIs) {
  db().Execute("INSERT INTO movsinv (articulo) VALUES ('A')");
  db().Execute("INSERT INTO movsinv (articulo) VALUES ('B')");
  EXPECT_EQ(Single("SELECT id FROM movsinv WHERE articulo = 'B'"), Value(2));
}

TEST_F(Prepared, ALineNeedsItsHeaderAndHoldsIt) {
  const std::string reason =
      "El registro depende de otro que no existe o del que otros dependen: FOREIGN KEY constraint failed";
  EXPECT_EQ(ErrorOf([&] { db().Execute("INSERT INTO entpart (id_entrada, entrada) VALUES (1, 7)"); }),
            reason);
  EXPECT_EQ(ErrorOf([&] { db().Execute("INSERT INTO salpart (id_salida, salida) VALUES (1, 7)"); }), reason);
  db().Execute("INSERT INTO entradas (entrada) VALUES (7)");
  db().Execute("INSERT INTO entpart (id_entrada, entrada) VALUES (1, 7)");
  EXPECT_EQ(ErrorOf([&] { db().Execute("DELETE FROM entradas WHERE (((entradas.entrada) = 7))"); }), reason);
  EXPECT_EQ(Single("SELECT COUNT(*) FROM entpart"), Value(1)) << "no cascade";
  db().Execute("DELETE FROM entpart WHERE (((entpart.entrada) = 7))");
  db().Execute("DELETE FROM entradas WHERE (((entradas.entrada) = 7))");
}

TEST_F(Prepared, ColumnsKeepTheirKinds) {
  db().Run("INSERT INTO salidas (salida, almacen, ocupado, f_emision, EntSuc) VALUES (?, ?, ?, ?, ?)",
           {3, 1, 1, Date{2024, 3, 5}, 15});
  const Rows rows =
      db().Select("SELECT salida, almacen, ocupado, f_emision, EntSuc, fecharetorno FROM salidas");
  EXPECT_EQ(rows.columns.at(4), "EntSuc");
  EXPECT_EQ(rows.rows.at(0), (std::vector<Value>{3, 1.0, 1, Date{2024, 3, 5}, "15", Value()}));
}

TEST_F(Prepared, WhatIsLookedUpHasAnIndex) {
  for (const auto& [text, index] : std::vector<std::pair<std::string, std::string>>{
           {"SELECT * FROM entpart WHERE entrada = (1)", "idx_entpart_entrada"},
           {"SELECT * FROM salpart WHERE (((salida)=1))", "idx_salpart_salida"},
           {"SELECT * FROM movsinv WHERE f_movim > '2024-01-01'", "idx_movsinv_f_movim"},
           {"select * from movsinv where operacion = 'EN' and movimiento = 1",
            "idx_movsinv_operacion_movimiento"},
           {"SELECT * FROM movsinv WHERE articulo = 'A' AND almacen = 1", "idx_movsinv_articulo_almacen"},
           {"SELECT * FROM clavesadd WHERE articulo = 'A'", "idx_clavesadd_articulo"},
           {"SELECT * FROM prods WHERE modelo = 'M'", "idx_prods_modelo_color_talla"},
           {"SELECT * FROM prods ORDER BY descrip LIMIT 1", "idx_prods_descrip"},
           {"SELECT * FROM compra2part WHERE articulo = 'A' AND compra = 1",
            "idx_compra2part_articulo_compra"},
           {"SELECT * FROM entradas WHERE estado = 'PE'", "idx_entradas_estado"},
           {"SELECT * FROM salidas WHERE estado = 'PE'", "idx_salidas_estado"},
       }) {
    std::string plan;
    const Rows steps = db().Execute("EXPLAIN QUERY PLAN " + text);
    for (const auto& row : steps.rows) plan += ToText(row.at(3)) + "\n";
    EXPECT_NE(plan.find("INDEX " + index), std::string::npos) << text << '\n' << plan;
  }
}

TEST_F(Prepared, ANewerBaseIsRefusedAndStaysAsItIs) {
  db().Run("INSERT INTO version_esquema (version) VALUES (?)", {kSchemaVersion + 1});
  db().Execute("DROP TABLE tallas");
  EXPECT_EQ(ErrorOf([&] { PrepareSchema(db()); }),
            "La base es de una versión más nueva (" + std::to_string(kSchemaVersion + 1) +
                ") que este programa (" + std::to_string(kSchemaVersion) + ")");
  EXPECT_TRUE(db().Columns("tallas").empty());
}

TEST_F(Prepared, WhatIsMissingIsMadeAndTheRestStays) {
  db().Execute("INSERT INTO prods (articulo, descrip) VALUES ('A', 'Camisa')");
  db().Execute("DROP TABLE tallas");
  db().Execute("DROP TABLE clavesadd");
  db().Execute("ALTER TABLE prods DROP COLUMN ALM9");
  EXPECT_FALSE(PrepareSchema(db()));
  EXPECT_EQ(db().Columns("tallas").size(), 2U);
  EXPECT_EQ(Single("SELECT COUNT(*) FROM sqlite_master WHERE name = 'idx_clavesadd_articulo'"), Value(1));
  EXPECT_EQ(db().Columns("prods").back(), "alm9");
  EXPECT_EQ(Single("SELECT descrip FROM prods"), Value("Camisa"));
  EXPECT_EQ(Single("SELECT COUNT(*) FROM version_esquema"), Value(1));
}

TEST_F(Prepared, AnOlderBaseGetsTheVersionAndItsIndexes) {
  db().Execute("DELETE FROM version_esquema");
  db().Execute("INSERT INTO version_esquema VALUES (0)");
  db().Execute("DROP INDEX idx_prods_modelo_color_talla");
  EXPECT_FALSE(PrepareSchema(db()));
  EXPECT_EQ(Single("SELECT MAX(version) FROM version_esquema"), Value(kSchemaVersion));
  EXPECT_EQ(Single("SELECT COUNT(*) FROM sqlite_master WHERE name = 'idx_prods_modelo_color_talla'"),
            Value(1));
}

TEST_F(Prepared, ATableOfTheDeployersOwnIsLeftAlone) {
  db().Execute("CREATE TABLE mis_notas (a TEXT)");
  EXPECT_FALSE(PrepareSchema(db()));
  EXPECT_EQ(db().Columns("mis_notas").size(), 1U);
}

TEST(PrepareSchemaOn, AForeignBaseIsRefusedAndStaysAsItIs) {
  const TempFolder folder;
  const std::string file = folder.File("ajena.db");
  {
    const auto connection = OpenBase("sqlite:" + file)->Connect();
    connection->Execute("PRAGMA journal_mode = DELETE");
    connection->Execute("CREATE TABLE prods (articulo TEXT)");
  }
  const std::string before = ReadFile(file);
  {
    const auto connection = OpenBase("sqlite:" + file)->Connect();
    EXPECT_EQ(ErrorOf([&] { PrepareSchema(*connection); }), "El archivo no es una base de este programa");
  }
  EXPECT_EQ(ReadFile(file), before);
}

TEST(PrepareSchemaOn, ABaseThatLacksNothingWaitsForNoWriter) {
  const TempFolder folder;
  const auto base = OpenBase("sqlite:" + folder.File("a.db"));
  const auto writer = base->Connect();
  PrepareSchema(*writer);
  const Transaction posting(*writer);
  const auto other = base->Connect();
  EXPECT_EQ(ErrorOf([&] { EXPECT_FALSE(PrepareSchema(*other)); }), "no error");
}

TEST(PrepareSchemaOn, AFailureLeavesNoHalfMadeBase) {
  const auto base = OpenBase("sqlite::memory:");
  const auto connection = base->Connect();
  connection->Execute("PRAGMA max_page_count = 20");
  EXPECT_EQ(ErrorOf([&] { PrepareSchema(*connection); }), "El disco está lleno: database or disk is full");
  EXPECT_EQ(connection->Select("SELECT * FROM sqlite_master").rows.size(), 0U);
  connection->Execute("PRAGMA max_page_count = 100000");
  EXPECT_TRUE(PrepareSchema(*connection)) << "the base is as empty as it was";
}

}  // namespace
}  // namespace tarvik::data
