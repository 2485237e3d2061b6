// The engine for many stations, on a server of the test's own: addresses, values, locks, refusals,
// transactions, sessions that are lost.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

#include "data/engine.h"
#include "data/error.h"
#include "data/schema.h"
#include "tests/data/support.h"
#include "tests/support/base_de_prueba.h"

namespace tarvik::data {
namespace {

using tests::BaseDePrueba;
using tests::ErrorOf;

bool Begins(const std::string& text, std::string_view front) { return text.starts_with(front); }

class Servidor : public testing::Test {
 protected:
  Servidor() : base(OpenBase(direccion.Direccion())), db(base->Connect()) {
    db->Execute("CREATE TABLE t (n BIGINT, r DOUBLE PRECISION, x TEXT, d DATE, f SMALLINT)");
  }
  static Value Single(EngineConnection& connection, std::string_view text) {
    return connection.Select(text).rows.at(0).at(0);
  }
  Value Single(std::string_view text) { return Single(*db, text); }

  BaseDePrueba direccion{BaseDePrueba::Con::kNada};
  std::unique_ptr<Base> base;
  std::unique_ptr<EngineConnection> db;
};

TEST_F(Servidor, TheStoriesAreReallyOnIt) {
  ASSERT_TRUE(Begins(direccion.Direccion(), "postgresql:"));
  EXPECT_EQ(db->Kind(), Dialect::Postgresql);
  EXPECT_TRUE(Begins(ToText(Single("SELECT version()")), "PostgreSQL"));
}

// --- Addresses ---

TEST_F(Servidor, NoPasswordIsShownWhereverItStands) {
  for (const char* address : {"postgresql://ana:secreto@/nada?host=/no/hay&port=1",
                              "postgresql://ana:se?secreto@/nada?host=/no/hay&port=1",
                              "postgresql://ana@/nada?host=/no/hay&port=1&password=secreto",
                              "postgresql://ana@/nada?host=/no/hay&port=1&passw%6Frd=secreto"}) {
    const std::string error = ErrorOf([&] { OpenBase(address); });
    EXPECT_TRUE(Begins(error, "No se puede abrir la base postgresql://ana@:1/nada?host=/no/hay: ")) << error;
    EXPECT_EQ(error.find("secreto"), std::string::npos) << error;
    EXPECT_EQ(error.find('\n'), std::string::npos) << error;
  }
  for (const char* address :
       {"postgresql://ana:secreto@[mal", "postgresql://ana:50%secreto@h/b",
        "postgresql:dbname=x password=secreto", "postgresql://h/b?password=sec%zzreto"}) {
    EXPECT_EQ(ErrorOf([&] { OpenBase(address); }),
              "No se entiende la dirección de la base; por ejemplo, postgresql://usuario@servidor/base");
  }
  std::string with_password = direccion.Direccion();
  with_password.replace(with_password.find("tarvik@"), 7, "tarvik:se%40c?reto@");
  EXPECT_EQ(OpenBase(with_password)->Address(), direccion.Direccion());
}

TEST_F(Servidor, ConnectionsOutliveTheirBaseAndShareIt) {
  const auto other = base->Connect();
  base.reset();
  db->Execute("INSERT INTO t (n) VALUES (1)");
  EXPECT_EQ(Single(*other, "SELECT count(*) FROM t"), Value(1));
}

TEST_F(Servidor, EveryUseBehindItsEndIsRefused) {
  db->Close();
  db->Close();
  db->Rollback();
  const std::string reason = "La base está cerrada";
  EXPECT_EQ(ErrorOf([&] { db->Select("SELECT 1"); }), reason);
  EXPECT_EQ(ErrorOf([&] { db->Execute("SELECT 1"); }), reason);
  EXPECT_EQ(ErrorOf([&] { db->Run("SELECT ?", {1}); }), reason);
  EXPECT_EQ(ErrorOf([&] { db->Columns("t"); }), reason);
  EXPECT_EQ(ErrorOf([&] { db->Begin(); }), reason);
  EXPECT_EQ(ErrorOf([&] { db->Commit(); }), reason);
}

// --- Values ---

TEST_F(Servidor, ValuesComeBackByWhatIsStored) {
  db->Run("INSERT INTO t VALUES (?, ?, ?, ?, ?)", {7, 2.5, "Ñandú", Date{2024, 3, 5}, true});
  db->Run("INSERT INTO t VALUES (?, ?, ?, ?, ?)", {Value(), 5, Value(), Value(), 0});
  const Rows rows = db->Select("SELECT * FROM t ORDER BY n");
  EXPECT_EQ(rows.columns, (std::vector<std::string>{"n", "r", "x", "d", "f"}));
  EXPECT_EQ(rows.rows.at(0), (std::vector<Value>{Value(), 5.0, Value(), Value(), 0})) << "no value is first";
  EXPECT_EQ(rows.rows.at(1), (std::vector<Value>{7, 2.5, "Ñandú", Date{2024, 3, 5}, 1}));
}

TEST_F(Servidor, OtherTypesAreReadAsWhatTheyMean) {
  const Rows rows = db->Select(
      "SELECT true, 2.50::numeric, SUM(7::bigint), '2024-03-05 14:03:22.5'::timestamp, '{\"a\":1}'::json, "
      "'x'::char(3)");
  EXPECT_EQ(rows.rows.at(0),
            (std::vector<Value>{1, 2.5, 7, DateTime{{2024, 3, 5}, {14, 3, 22}}, "{\"a\":1}", "x  "}));
}

TEST_F(Servidor, NumbersKeepEveryDigitAndTextsEverySign) {
  const std::string text = "O'Hara \\ \"?\" 📦 $1 --";
  db->Run("INSERT INTO t (r, x) VALUES (?, ?)", {0.1 + 0.2, text});
  EXPECT_EQ(Single("SELECT x FROM t"), Value(text));
  EXPECT_EQ(Single("SELECT r FROM t"), Value(0.1 + 0.2)) << "more than 15 digits of it";
  db->Run("UPDATE t SET r = ?, x = ?", {1e300, 0.1 + 0.2});
  EXPECT_EQ(db->Select("SELECT r, x FROM t").rows.at(0), (std::vector<Value>{1e300, "0.3"}));
  db->Run("UPDATE t SET x = ?", {text});
  db->Execute("INSERT INTO t (x) VALUES ('a\\b')");
  EXPECT_EQ(Single("SELECT x FROM t WHERE r IS NULL"), Value("a\\b"));
  EXPECT_EQ(ErrorOf([&] { db->Run("INSERT INTO t (x) VALUES (?)", {std::string("a\0b", 3)}); }),
            "El dato contiene un carácter nulo");
}

TEST_F(Servidor, AnEmptyFieldIsNoNumberAndNoDate) {
  db->Run("INSERT INTO t VALUES (?, ?, ?, ?, ?)", {"", "", "", "", ""});
  EXPECT_EQ(db->Select("SELECT * FROM t").rows.at(0), (std::vector<Value>{{}, {}, "", {}, {}}));
  EXPECT_TRUE(Begins(ErrorOf([&] { db->Run("INSERT INTO t (n) VALUES (?)", {"X1"}); }),
                     "El dato no es del tipo de la columna: "));
}

TEST_F(Servidor, ColumnsAreSpelledAsTheSchemaSpellsThem) {
  db->Execute("DROP TABLE t");
  PrepareSchema(*db);
  EXPECT_EQ(db->Select("SELECT clave, DATO1, Libre AS Suelta FROM clavesadd").columns,
            (std::vector<std::string>{"clave", "Dato1", "Suelta"}));
  EXPECT_EQ(db->Columns("CLAVESADD").at(3), "dato1");
  EXPECT_TRUE(db->Columns("no_hay").empty());
  EXPECT_TRUE(db->Columns("x'); DROP TABLE t; --").empty());
}

TEST_F(Servidor, TextsAreSortedAsByTheEmbeddedEngine) {
  db->Execute("DROP TABLE t");
  PrepareSchema(*db);
  for (const char* key : {"b", "A-1", "a", "B", "A1", "ñ", "Z"}) {
    db->Run("INSERT INTO prods (articulo) VALUES (?)", {key});
  }
  std::string order;
  for (const auto& row : db->Select("SELECT articulo FROM prods").rows) order += ToText(row[0]) + " ";
  EXPECT_EQ(order, "A-1 A1 B Z a b ñ ");
}

// --- Statements ---

TEST_F(Servidor, TakesOneStatementAndOnlyOne) {
  EXPECT_EQ(ErrorOf([&] { db->Select("DELETE FROM t"); }),
            "Sólo se puede consultar con una sentencia SELECT");
  EXPECT_EQ(ErrorOf([&] { db->Execute("SELECT 1; DROP TABLE t"); }),
            "La sentencia contiene otra detrás de un punto y coma");
  // What the gate takes for a name in brackets, the server does not: it has the last word.
  EXPECT_NE(ErrorOf([&] { db->Execute("SELECT (ARRAY[1; DROP TABLE t])"); }), "no error");
  EXPECT_EQ(Single("SELECT count(*) FROM t"), Value(0));
}

TEST_F(Servidor, RunWantsAValueForEachMark) {
  EXPECT_EQ(ErrorOf([&] { db->Run("SELECT ?, ?", {1}); }), "La sentencia espera 2 valores y recibió 1");
  EXPECT_EQ(ErrorOf([&] { db->Run("SELECT 1", {1}); }), "La sentencia espera 0 valores y recibió 1");
  EXPECT_EQ(db->Run("SELECT ?, '?'", {"a"}).rows.at(0), (std::vector<Value>{"a", "?"}));
  EXPECT_EQ(db->Run("INSERT INTO t (n) VALUES (?) RETURNING n + 1 AS m", {3}).rows.at(0).at(0), Value(4));
}

TEST_F(Servidor, LinesKeepTheirOrderHoweverOftenTheyAreCorrected) {
  db->Execute("DROP TABLE t");
  PrepareSchema(*db);
  db->Execute("INSERT INTO entradas (entrada) VALUES (7)");
  for (int i = 1; i <= 5; ++i) db->Run("INSERT INTO entpart (id_entrada, entrada) VALUES (?, 7)", {i});
  db->Execute("UPDATE entpart SET observ = 'otra' WHERE id_entrada = 2");
  std::string order;
  for (const auto& row : db->Select("SELECT * FROM entpart WHERE entrada = 7").rows) order += ToText(row[0]);
  EXPECT_EQ(order, "12345");
}

TEST_F(Servidor, AKeptStatementSeesATableThatAnotherConnectionChanged) {
  db->Execute("INSERT INTO t (n) VALUES (1)");
  EXPECT_EQ(db->Run("SELECT * FROM t WHERE n = ?", {1}).columns.size(), 5U);
  base->Connect()->Execute("ALTER TABLE t ADD COLUMN nueva TEXT");
  EXPECT_EQ(db->Run("SELECT * FROM t WHERE n = ?", {1}).columns.size(), 6U);
}

TEST_F(Servidor, MoreStatementsThanAreKept) {
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 150; ++i) {
      ASSERT_EQ(db->Run("SELECT ?::bigint + " + std::to_string(i), {1}).rows.at(0).at(0), Value(1 + i));
    }
  }
  EXPECT_EQ(Single("SELECT count(*) FROM pg_prepared_statements"), Value(64));
}

TEST_F(Servidor, AValueThatIsNoneOfAColumnsEqualsNone) {
  db->Run("INSERT INTO t (n, r, d) VALUES (?, ?, ?)", {2, 1.5, Date{2024, 3, 5}});
  const auto count = [&](const char* where, const Value& value) {
    return db->Run(std::string("SELECT COUNT(*) FROM t WHERE ") + where, {value}).rows.at(0).at(0);
  };
  EXPECT_EQ(count("n = ?", "X1"), Value(0));
  EXPECT_EQ(count("n = ?", 1.5), Value(0));
  EXPECT_EQ(count("n = ?", "2.0"), Value(1));
  EXPECT_EQ(count("r = ?", "1.50"), Value(1));
  EXPECT_EQ(count("NOT n = ?", "X1"), Value(1)) << "and is unlike all";
  EXPECT_EQ(count("n < ?", "X1"), Value(1));
  EXPECT_EQ(count("r <> ?", ""), Value(1));
  EXPECT_EQ(count("NOT r >= ?", "1,000"), Value(1));
  EXPECT_EQ(count("NOT d = ?", "pronto"), Value(1));
  EXPECT_EQ(count("d > ?", ""), Value(1));
  EXPECT_EQ(count("d = ?", "pronto"), Value(0));
  EXPECT_EQ(count("d = ?", "2024-03-05"), Value(1));
}

TEST_F(Servidor, AKeptStatementThatTheServerForgotCostsNothing) {
  const auto insert = [&] { db->Run("INSERT INTO t (n) VALUES (?)", {1}); };
  insert();
  db->Execute("DISCARD ALL");
  insert();
  db->Execute("DEALLOCATE ALL");
  Transaction unit(*db);
  insert();
  insert();
  unit.Commit();
  EXPECT_EQ(Single("SELECT count(*) FROM t"), Value(4));
}

// --- Procedures ---

TEST_F(Servidor, ExecRunsARegisteredProcedureOrOneOfTheServers) {
  std::vector<std::string> got;
  db->Register("TKMallaParam",
               [&](EngineConnection&, const std::vector<std::string>& given) { got = given; });
  db->Execute("exec tkmallaparam 'O''Hara','M1'");
  EXPECT_EQ(got, (std::vector<std::string>{"O'Hara", "M1"}));
  db->Execute(
      "CREATE PROCEDURE Anota(uno TEXT, otro TEXT) LANGUAGE SQL AS 'INSERT INTO t (x) VALUES (uno || otro)'");
  db->Execute("exec ANOTA 'O''','Hara'");
  EXPECT_EQ(Single("SELECT x FROM t"), Value("O'Hara"));
  db->Execute("CREATE FUNCTION borra() RETURNS VOID LANGUAGE SQL AS 'DELETE FROM t'");
  db->Execute("exec Borra");
  EXPECT_EQ(Single("SELECT count(*) FROM t"), Value(0));
  EXPECT_EQ(ErrorOf([&] { db->Execute("exec NoHay 'a'"); }), "No existe el procedimiento NoHay");
  EXPECT_EQ(ErrorOf([&] { db->Execute("exec pg_sleep '0.1'"); }), "No existe el procedimiento pg_sleep");
  EXPECT_EQ(ErrorOf([&] { db->Execute("exec anota 'a'"); }), "No existe el procedimiento anota");
}

// --- Errors ---

TEST_F(Servidor, ErrorsAreToldInSpanishWithTheServersOwnText) {
  EXPECT_EQ(ErrorOf([&] { db->Select("SELECT * FROM nada"); }),
            "La tabla no existe: relation \"nada\" does not exist");
  EXPECT_EQ(ErrorOf([&] { db->Select("SELECT nada FROM t"); }),
            "La columna no existe: column \"nada\" does not exist");
  EXPECT_EQ(ErrorOf([&] { db->Execute("SELEC 1"); }),
            "La base rechazó la sentencia: syntax error at or near \"SELEC\"");
  db->Execute("CREATE TABLE padre (p BIGINT PRIMARY KEY)");
  db->Execute("CREATE TABLE hijo (h TEXT PRIMARY KEY, p BIGINT REFERENCES padre, c BIGINT CHECK (c > 0))");
  db->Execute("INSERT INTO padre VALUES (1)");
  EXPECT_TRUE(Begins(ErrorOf([&] { db->Execute("INSERT INTO padre VALUES (1)"); }),
                     "Ya existe un registro con esa clave: "));
  EXPECT_TRUE(Begins(ErrorOf([&] { db->Execute("INSERT INTO hijo VALUES ('b', 9, 1)"); }),
                     "El registro depende de otro que no existe o del que otros dependen: "));
  EXPECT_TRUE(Begins(ErrorOf([&] { db->Execute("INSERT INTO hijo VALUES (NULL, 1, 1)"); }),
                     "Falta un dato obligatorio: "));
  EXPECT_TRUE(Begins(ErrorOf([&] { db->Execute("INSERT INTO hijo VALUES ('c', 1, 0)"); }),
                     "El registro no cumple una regla de la base: "));
}

TEST_F(Servidor, TheStatementStandsInTheContextAsItWasWritten) {
  try {
    db->Run("INSERT INTO nada VALUES (?)", {"secreto"});
    FAIL();
  } catch (const Error& error) {
    ASSERT_EQ(error.Context().size(), 1U);
    EXPECT_EQ(error.Context()[0].second, "INSERT INTO nada VALUES (?)");
  }
}

// --- Transactions and other stations ---

TEST_F(Servidor, ATransactionHoldsWholeOrNotAtAll) {
  const auto other = base->Connect();
  {
    Transaction transaction(*db);
    db->Execute("INSERT INTO t (n) VALUES (1)");
    EXPECT_EQ(Single(*other, "SELECT count(*) FROM t"), Value(0));
    EXPECT_EQ(ErrorOf([&] { db->Begin(); }), "Ya hay una transacción abierta");
  }
  EXPECT_EQ(Single("SELECT count(*) FROM t"), Value(0));
  {
    Transaction transaction(*db);
    db->Execute("INSERT INTO t (n) VALUES (1)");
    transaction.Commit();
  }
  EXPECT_EQ(Single(*other, "SELECT count(*) FROM t"), Value(1));
  EXPECT_EQ(ErrorOf([&] { db->Commit(); }), "No hay una transacción abierta");
}

TEST_F(Servidor, ATransactionOfWhichAPartFailedIsNeverTakenForCommitted) {
  db->Begin();
  db->Execute("INSERT INTO t (n) VALUES (1)");
  EXPECT_NE(ErrorOf([&] { db->Execute("INSERT INTO nada VALUES (1)"); }), "no error");
  EXPECT_EQ(ErrorOf([&] { db->Commit(); }), "La base deshizo la transacción: una de sus sentencias falló");
  EXPECT_EQ(Single("SELECT count(*) FROM t"), Value(0));
}

TEST_F(Servidor, NorIsOneThatARoutineBegan) {
  db->Execute("BEGIN");
  EXPECT_TRUE(db->InTransaction());
  db->Execute("INSERT INTO t (n) VALUES (1)");
  EXPECT_NE(ErrorOf([&] { db->Execute("INSERT INTO nada VALUES (1)"); }), "no error");
  EXPECT_EQ(ErrorOf([&] { db->Execute("COMMIT"); }),
            "La base deshizo la transacción: una de sus sentencias falló");
  EXPECT_FALSE(db->InTransaction());
  db->Execute("BEGIN");
  EXPECT_NE(ErrorOf([&] { db->Execute("INSERT INTO nada VALUES (1)"); }), "no error");
  EXPECT_EQ(ErrorOf([&] { db->Execute("ROLLBACK"); }), "no error");
  EXPECT_EQ(Single("SELECT count(*) FROM t"), Value(0));
}

TEST_F(Servidor, AServerSetUpForAnotherIsolationLosesNoUnit) {
  db->Execute(
      "DO 'BEGIN EXECUTE ''ALTER DATABASE '' || current_database() || '' SET default_transaction_isolation = "
      "serializable''; END'");
  const auto one = base->Connect();
  EXPECT_EQ(Single(*one, "SELECT current_setting('transaction_isolation')"), Value("read committed"));
}

TEST_F(Servidor, AStationWaitsForTheRowThatAnotherHolds) {
  db->Execute("INSERT INTO t (n) VALUES (1)");
  db->Begin();
  db->Execute("UPDATE t SET n = n + 1");
  std::string waited;
  std::thread second([&] {
    waited = ErrorOf([&] {
      const auto other = base->Connect();
      Transaction unit(*other);
      other->Execute("UPDATE t SET n = n * 10");
      unit.Commit();
    });
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  db->Commit();
  second.join();
  EXPECT_EQ(waited, "no error");
  EXPECT_EQ(Single("SELECT n FROM t"), Value(20));
}

TEST_F(Servidor, AUnitThatTouchesOtherRowsWaitsForNobody) {
  const auto other = base->Connect();
  db->Execute("INSERT INTO t (n) VALUES (1)");
  db->Execute("INSERT INTO t (n) VALUES (2)");
  Transaction unit(*db);
  db->Execute("UPDATE t SET r = 1 WHERE n = 1");
  const auto started = std::chrono::steady_clock::now();
  Transaction others(*other);
  other->Execute("UPDATE t SET r = 2 WHERE n = 2");
  others.Commit();
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(2));
}

TEST_F(Servidor, ManyStationsLoseNothing) {
  db->Execute("INSERT INTO t (n) VALUES (0)");
  std::vector<std::thread> threads;
  std::vector<std::string> errors(4);
  for (std::string& error : errors) {
    threads.emplace_back([&] {
      error = ErrorOf([&] {
        const auto connection = base->Connect();
        for (int i = 0; i < 25; ++i) connection->Run("UPDATE t SET n = n + ? RETURNING n", {1});
      });
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::string& error : errors) EXPECT_EQ(error, "no error");
  EXPECT_EQ(Single("SELECT n FROM t"), Value(100));
}

TEST_F(Servidor, ManyStationsMakeTheTablesAtOnce) {
  db->Execute("DROP TABLE t");
  std::vector<std::thread> threads;
  std::vector<std::string> errors(6);
  for (std::string& error : errors) {
    threads.emplace_back([&] { error = ErrorOf([&] { PrepareSchema(*base->Connect()); }); });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::string& error : errors) EXPECT_EQ(error, "no error");
  EXPECT_EQ(Single("SELECT count(*) FROM version_esquema"), Value(1));
}

TEST_F(Servidor, RowsThatBroughtTheirOwnNumbersRefuseNoneToCome) {
  db->Execute("DROP TABLE t");
  PrepareSchema(*db);
  for (int id : {1, 2, 30}) db->Run("INSERT INTO movsinv (id, operacion) VALUES (?, 'EN')", {id});
  PrepareSchema(*db);
  EXPECT_EQ(db->Run("INSERT INTO movsinv (operacion) VALUES ('EN') RETURNING id", {}).rows.at(0).at(0),
            Value(31));
  PrepareSchema(*db);
  EXPECT_EQ(db->Run("INSERT INTO movsinv (operacion) VALUES ('EN') RETURNING id", {}).rows.at(0).at(0),
            Value(32));
}

TEST_F(Servidor, AStationWithASchemaOfItsOwnWorksOnTheSameTables) {
  db->Execute("DROP TABLE t");
  PrepareSchema(*db);
  db->Execute("INSERT INTO prods (articulo) VALUES ('A')");
  db->Execute("CREATE SCHEMA tarvik");  // as the user is called: it comes first
  const auto other = base->Connect();
  ASSERT_EQ(Single(*other, "SELECT current_schema()"), Value("tarvik"));
  EXPECT_FALSE(PrepareSchema(*other));
  EXPECT_EQ(other->Columns("PRODS").at(0), "articulo");
  EXPECT_EQ(Single(*other, "SELECT articulo FROM prods"), Value("A"));
}

TEST_F(Servidor, WhatAnExtensionBroughtIsNobodysTable) {
  db->Execute("DROP TABLE t");
  db->Execute("CREATE EXTENSION pg_buffercache");
  EXPECT_TRUE(PrepareSchema(*db));
}

TEST_F(Servidor, ABaseOfOthersIsNotTouched) {
  EXPECT_EQ(ErrorOf([&] { PrepareSchema(*db); }), "La base no es de este programa");
  EXPECT_TRUE(db->Columns("entradas").empty());
}

}  // namespace
}  // namespace tarvik::data
