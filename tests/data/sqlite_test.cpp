// The embedded engine: values, calls, procedures and errors, on a base in memory. Addresses and files:
// sqlite_files_test.cpp; units of work and other connections: sqlite_transactions_test.cpp.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "data/engine.h"
#include "data/error.h"
#include "data/recordset.h"
#include "tests/data/sqlite.h"
#include "tests/data/support.h"

namespace tarvik::data {
namespace {

using tests::Begins;
using tests::ErrorOf;
using tests::Single;

// One base in memory with one table, as most of these tests need it.
class SqliteMemory : public testing::Test {
 protected:
  SqliteMemory() : base_(OpenBase("sqlite::memory:")), connection_(base_->Connect()) {
    connection_->Execute("CREATE TABLE t (n INTEGER, r REAL, x TEXT, d DATE, f SMALLINT)");
  }
  EngineConnection& db() { return *connection_; }

  std::unique_ptr<Base> base_;
  std::unique_ptr<EngineConnection> connection_;
};

// --- Values ------------------------------------------------------------------------------------

TEST_F(SqliteMemory, ValuesComeBackByWhatIsStored) {
  db().Run("INSERT INTO t VALUES (?, ?, ?, ?, ?)", {7, 2.5, "Ñandú", Date{2024, 3, 5}, true});
  const Rows rows = db().Select("SELECT * FROM t");
  EXPECT_EQ(rows.columns, (std::vector<std::string>{"n", "r", "x", "d", "f"}));
  EXPECT_EQ(rows.rows.at(0), (std::vector<Value>{7, 2.5, "Ñandú", Date{2024, 3, 5}, 1}));
}

TEST_F(SqliteMemory, ANumberColumnGivesADoubleForAWholeNumberToo) {
  db().Execute("INSERT INTO t (r) VALUES (5)");
  EXPECT_EQ(Single(db(), "SELECT r FROM t"), Value(5.0));
}

TEST_F(SqliteMemory, NullsComeBackAsNull) {
  db().Run("INSERT INTO t VALUES (?, ?, ?, ?, ?)", {Value(), Value(), Value(), Value(), Value()});
  const Rows rows = db().Select("SELECT * FROM t");
  EXPECT_EQ(rows.rows.at(0), std::vector<Value>(5));
}

TEST_F(SqliteMemory, DateColumnsHoldDatesTimesAndWhatIsNeither) {
  const DateTime when{{2024, 3, 5}, {14, 3, 22}};
  for (const Value& value :
       {Value("2024-03-05"), Value(when), Value("pronto"), Value("2024-13-45"), Value("")}) {
    db().Run("INSERT INTO t (d) VALUES (?)", {value});
  }
  Recordset records(db().Select("SELECT d FROM t ORDER BY rowid"));
  for (const Value& expected :
       {Value(Date{2024, 3, 5}), Value(when), Value("pronto"), Value("2024-13-45"), Value("")}) {
    EXPECT_EQ(records.Fields("d"), expected);
    records.MoveNext();
  }
  EXPECT_EQ(Single(db(), "SELECT count(*) FROM t WHERE d = '2024-03-05'"), Value(1))
      << "stored as plain text";
  EXPECT_EQ(Single(db(), "SELECT count(*) FROM t WHERE d = '2024-03-05 14:03:22'"), Value(1));
}

TEST_F(SqliteMemory, ATextColumnIsNoDateWhateverItHolds) {
  db().Execute("INSERT INTO t (x) VALUES ('2024-03-05')");
  EXPECT_EQ(Single(db(), "SELECT x FROM t"), Value("2024-03-05"));
}

TEST_F(SqliteMemory, TextInANumberColumnStaysText) {
  db().Execute("INSERT INTO t (r, n) VALUES ('mucho', 'poco')");
  const Rows rows = db().Select("SELECT r, n FROM t");
  EXPECT_EQ(rows.rows.at(0), (std::vector<Value>{"mucho", "poco"}));
}

TEST_F(SqliteMemory, InvalidBytesAreRepairedOnReading) {
  db().Execute("INSERT INTO t (x) VALUES (CAST(x'4361F161' AS TEXT))");
  EXPECT_EQ(Single(db(), "SELECT x FROM t"), Value("Ca\uFFFDa"));
}

TEST_F(SqliteMemory, TextHoldsAnyCharacter) {
  const std::string text = "O'Hara; -- \" /* ? 😀\n";
  db().Run("INSERT INTO t (x) VALUES (?)", {text});
  EXPECT_EQ(Single(db(), "SELECT x FROM t"), Value(text));
  EXPECT_EQ(db().Run("SELECT count(*) FROM t WHERE x = ?", {text}).rows.at(0).at(0), Value(1));
}

// --- Calls -------------------------------------------------------------------------------------

TEST_F(SqliteMemory, SelectTakesOnlyASelect) {
  for (const char* text :
       {"DELETE FROM t", "WITH a AS (SELECT 1) DELETE FROM t", "exec p", "PRAGMA user_version"}) {
    EXPECT_EQ(ErrorOf([&] { db().Select(text); }), "Sólo se puede consultar con una sentencia SELECT")
        << text;
  }
}

TEST_F(SqliteMemory, EveryCallPassesTheGate) {
  db().Execute("INSERT INTO t (n) VALUES (1)");
  const std::string reason = "La sentencia contiene otra detrás de un punto y coma";
  EXPECT_EQ(ErrorOf([&] { db().Select("SELECT 1; DELETE FROM t"); }), reason);
  EXPECT_EQ(ErrorOf([&] { db().Execute("SELECT 1; DELETE FROM t"); }), reason);
  EXPECT_EQ(ErrorOf([&] { db().Run("SELECT 1; DELETE FROM t", {}); }), reason);
  EXPECT_EQ(Single(db(), "SELECT count(*) FROM t"), Value(1));
}

TEST_F(SqliteMemory, ASemicolonAtTheEndIsAllowed) {
  EXPECT_EQ(Single(db(), "SELECT 5 ; "), Value(5));
  EXPECT_EQ(Single(db(), "SELECT 5 ; "), Value(5)) << "the kept statement too";
}

TEST_F(SqliteMemory, NoRowsAreAnOrdinaryAnswer) {
  const Rows rows = db().Select("SELECT n AS Numero FROM t");
  EXPECT_EQ(rows.columns, std::vector<std::string>{"Numero"});
  EXPECT_TRUE(rows.rows.empty());
}

TEST_F(SqliteMemory, ExecuteGivesTheRowsOfASelectAndNoneOfOthers) {
  EXPECT_TRUE(db().Execute("INSERT INTO t (n) VALUES (3)").rows.empty());
  EXPECT_EQ(db().Execute("SELECT n FROM t").rows.size(), 1U);
  EXPECT_EQ(db().Run("UPDATE t SET n = n + 1 RETURNING n", {}).rows.at(0).at(0), Value(4));
}

TEST_F(SqliteMemory, RunWantsAValueForEachMark) {
  EXPECT_EQ(ErrorOf([&] { db().Run("SELECT ?, ?", {1}); }), "La sentencia espera 2 valores y recibió 1");
  EXPECT_EQ(ErrorOf([&] { db().Run("SELECT 1", {1}); }), "La sentencia espera 0 valores y recibió 1");
  EXPECT_EQ(ErrorOf([&] { db().Select("SELECT ?"); }), "La sentencia espera 1 valores y recibió 0");
  EXPECT_EQ(db().Run("SELECT ?, '?'", {"a"}).rows.at(0), (std::vector<Value>{"a", "?"}));
}

TEST_F(SqliteMemory, AKeptStatementKeepsNoValues) {
  db().Run("INSERT INTO t (n, x) VALUES (?, ?)", {1, "uno"});
  EXPECT_NE(ErrorOf([&] { db().Run("INSERT INTO t (n, x) VALUES (?, ?)", {2}); }), "no error");
  db().Run("INSERT INTO t (n, x) VALUES (?, ?)", {2, Value()});
  EXPECT_TRUE(db().Select("SELECT x FROM t WHERE n = 2").rows.at(0).at(0).IsNull());
}

TEST_F(SqliteMemory, AKeptStatementSeesATableThatAnotherConnectionChanged) {
  db().Execute("INSERT INTO t (n) VALUES (1)");
  EXPECT_EQ(db().Select("SELECT * FROM t").columns.size(), 5U);
  base_->Connect()->Execute("ALTER TABLE t ADD COLUMN nueva TEXT");
  const Rows rows = db().Select("SELECT * FROM t");
  EXPECT_EQ(rows.columns.size(), 6U);
  EXPECT_EQ(rows.rows.at(0).size(), 6U);
}

TEST_F(SqliteMemory, MoreStatementsThanAreKept) {
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 200; ++i) {
      ASSERT_EQ(Single(db(), "SELECT " + std::to_string(i)), Value(i));
    }
  }
  const std::string blanks(10000, ' ');
  EXPECT_EQ(Single(db(), "SELECT" + blanks + "7"), Value(7));
}

TEST_F(SqliteMemory, NoStatementStaysOpenBehindACall) {
  db().Execute("INSERT INTO t (n) VALUES (1)");
  db().Select("SELECT * FROM t");
  EXPECT_NE(ErrorOf([&] { db().Execute("INSERT INTO t (nada) VALUES (1)"); }), "no error");
  const auto started = std::chrono::steady_clock::now();
  base_->Connect()->Execute("DROP TABLE t");
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(1)) << "a lock was held";
}

TEST_F(SqliteMemory, ColumnsOfATable) {
  db().Execute("CREATE TABLE Otra (Uno INTEGER, DOS TEXT)");
  EXPECT_EQ(db().Columns("OTRA"), (std::vector<std::string>{"uno", "dos"}));
  EXPECT_TRUE(db().Columns("no_hay").empty());
  EXPECT_TRUE(db().Columns("x'); DROP TABLE t; --").empty());
}

TEST_F(SqliteMemory, ADoubleQuotedTextIsANameAndNeverAText) {
  EXPECT_TRUE(
      Begins(ErrorOf([&] { db().Select("SELECT * FROM t WHERE x = \"mal\""); }), "La columna no existe: "));
}

// --- Procedures --------------------------------------------------------------------------------

TEST_F(SqliteMemory, ExecRunsARegisteredProcedure) {
  std::vector<std::string> got;
  db().Register("TKMallaParam", [&](EngineConnection& connection, const std::vector<std::string>& arguments) {
    got = arguments;
    connection.Run("INSERT INTO t (x) VALUES (?)", {arguments.at(0)});
  });
  EXPECT_TRUE(db().Execute("exec tkmallaparam 'O''Hara','M1'").rows.empty());
  EXPECT_EQ(got, (std::vector<std::string>{"O'Hara", "M1"}));
  EXPECT_EQ(Single(db(), "SELECT x FROM t"), Value("O'Hara"));
}

TEST_F(SqliteMemory, ALaterProcedureReplacesOneOfTheSameName) {
  int called = 0;
  db().Register("Uno", [&](EngineConnection& connection, const std::vector<std::string>&) {
    connection.Register("UNO", [&](EngineConnection&, const std::vector<std::string>&) { called = 2; });
    called = 1;
  });
  db().Execute("exec uno");
  EXPECT_EQ(called, 1);
  db().Execute("exec uno");
  EXPECT_EQ(called, 2);
}

TEST_F(SqliteMemory, ExecOfAnUnknownProcedureIsAnError) {
  EXPECT_EQ(ErrorOf([&] { db().Execute("exec NoHay 'a'"); }), "No existe el procedimiento NoHay");
  db().Register("Falla",
                [](EngineConnection&, const std::vector<std::string>&) { throw Error("no se pudo"); });
  EXPECT_EQ(ErrorOf([&] { db().Execute("exec Falla"); }), "no se pudo");
}

// --- Errors ------------------------------------------------------------------------------------

TEST_F(SqliteMemory, ErrorsAreToldInSpanishWithTheEnginesOwnText) {
  EXPECT_EQ(ErrorOf([&] { db().Select("SELECT * FROM nada"); }), "La tabla no existe: no such table: nada");
  EXPECT_EQ(ErrorOf([&] { db().Select("SELECT nada FROM t"); }),
            "La columna no existe: no such column: nada");
  EXPECT_EQ(ErrorOf([&] { db().Execute("INSERT INTO t (nada) VALUES (1)"); }),
            "La columna no existe: table t has no column named nada");
  EXPECT_EQ(ErrorOf([&] { db().Execute("SELEC 1"); }),
            "La base rechazó la sentencia: near \"SELEC\": syntax error");
}

TEST_F(SqliteMemory, BrokenRulesAreTold) {
  db().Execute("CREATE TABLE padre (p INTEGER PRIMARY KEY)");
  db().Execute(
      "CREATE TABLE hijo (h TEXT NOT NULL PRIMARY KEY, p INTEGER REFERENCES padre (p), "
      "c INTEGER CHECK (c > 0))");
  db().Execute("INSERT INTO padre VALUES (1)");
  db().Execute("INSERT INTO hijo VALUES ('a', 1, 1)");
  EXPECT_EQ(
      ErrorOf([&] { db().Execute("INSERT INTO hijo VALUES ('b', 9, 1)"); }),
      "El registro depende de otro que no existe o del que otros dependen: FOREIGN KEY constraint failed");
  EXPECT_EQ(
      ErrorOf([&] { db().Execute("DELETE FROM padre"); }),
      "El registro depende de otro que no existe o del que otros dependen: FOREIGN KEY constraint failed");
  EXPECT_EQ(ErrorOf([&] { db().Execute("INSERT INTO hijo VALUES ('a', 1, 1)"); }),
            "Ya existe un registro con esa clave: UNIQUE constraint failed: hijo.h");
  EXPECT_EQ(ErrorOf([&] { db().Execute("INSERT INTO padre VALUES (1)"); }),
            "Ya existe un registro con esa clave: UNIQUE constraint failed: padre.p");
  EXPECT_EQ(ErrorOf([&] { db().Execute("INSERT INTO hijo VALUES (NULL, 1, 1)"); }),
            "Falta un dato obligatorio: NOT NULL constraint failed: hijo.h");
  EXPECT_TRUE(Begins(ErrorOf([&] { db().Execute("INSERT INTO hijo VALUES ('c', 1, 0)"); }),
                     "El registro no cumple una regla de la base: "));
  EXPECT_EQ(ErrorOf([&] { db().Execute("INSERT INTO padre VALUES ('texto')"); }),
            "El dato no es del tipo de la columna: datatype mismatch");
}

TEST_F(SqliteMemory, TheStatementStandsInTheContext) {
  try {
    db().Run("INSERT INTO nada VALUES (?)", {"secreto"});
    FAIL();
  } catch (const Error& error) {
    ASSERT_EQ(error.Context().size(), 1U);
    EXPECT_EQ(error.Context()[0].first, "sentencia");
    EXPECT_EQ(error.Context()[0].second, "INSERT INTO nada VALUES (?)");
  }
}

TEST_F(SqliteMemory, AFullBaseIsTold) {
  db().Execute("PRAGMA max_page_count = 4");
  EXPECT_EQ(ErrorOf([&] { db().Run("INSERT INTO t (x) VALUES (?)", {std::string(100000, 'x')}); }),
            "El disco está lleno: database or disk is full");
  EXPECT_EQ(Single(db(), "SELECT count(*) FROM t"), Value(0));
}

}  // namespace
}  // namespace tarvik::data
