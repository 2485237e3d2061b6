// What a fence keeps out on the embedded engine: by what the engine has understood of a statement, and by the
// clock. What the text alone shows is in harmless_test.cpp.
#include <gtest/gtest.h>

#include <chrono>

#include "data/engine.h"
#include "data/error.h"
#include "tests/data/support.h"

namespace tarvik::data {
namespace {

using std::chrono::milliseconds;
using tests::ErrorOf;

constexpr milliseconds kNone{0};

class Fenced : public testing::Test {
 protected:
  Fenced() : base_(OpenBase("sqlite::memory:")), connection_(base_->Connect()) {
    db().Execute("CREATE TABLE t (n INTEGER, x TEXT)");
    db().Execute("INSERT INTO t VALUES (1, 'uno')");
  }
  EngineConnection& db() { return *connection_; }
  // A table of so many rows.
  void Fill(int rows) {
    db().Run(
        "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < ?) INSERT INTO t SELECT i, "
        "'x' || i FROM c",
        {rows});
  }

  std::unique_ptr<Base> base_;
  std::unique_ptr<EngineConnection> connection_;
};

TEST_F(Fenced, TextsAreLookedAtInsideAndNotOutside) {
  const char* inside = "SELECT n FROM t WHERE n = (SELECT MIN(n) FROM t)";
  EXPECT_EQ(db().Select(inside).rows.size(), 1U);
  {
    const Fence fence(db(), kNone);
    EXPECT_EQ(ErrorOf([&] { db().Select(inside); }), "Una consulta no puede llevar otra dentro");
    EXPECT_EQ(ErrorOf([&] { db().Execute(inside); }), "Una consulta no puede llevar otra dentro");
    EXPECT_EQ(db().Run(inside, {}).rows.size(), 1U) << "Run is the host's own";
  }
  EXPECT_EQ(db().Select(inside).rows.size(), 1U);
}

TEST_F(Fenced, WhatWasPreparedOutsideIsNotRunInside) {
  const char* setting = "PRAGMA cache_size";
  const char* operated = "SELECT n FROM t WHERE x GLOB 'u*'";
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(db().Execute(setting).rows.size(), 1U);
    EXPECT_EQ(db().Select(operated).rows.size(), 1U);
    const Fence fence(db(), kNone);
    EXPECT_EQ(ErrorOf([&] { db().Execute(setting); }),
              "La sentencia pide algo que aquí no se permite: not authorized");
    EXPECT_EQ(ErrorOf([&] { db().Select(operated); }),
              "La sentencia pide algo que aquí no se permite: not authorized to use function: GLOB");
  }
}

TEST_F(Fenced, TheEnginesOwnTablesAndSettingsAreOutOfReach) {
  const Fence fence(db(), kNone);
  const std::string refused = "La sentencia pide algo que aquí no se permite: ";
  for (const char* text :
       {"SELECT name FROM sqlite_master", "SELECT sql FROM main.sqlite_schema",
        "SELECT * FROM SQLITE_TEMP_MASTER", "SELECT * FROM \"pragma_table_list\"", "ATTACH 'x.db' AS y",
        "DETACH main", "PRAGMA journal_mode = DELETE", "PRAGMA writable_schema"}) {
    EXPECT_EQ(ErrorOf([&] { db().Execute(text); }).substr(0, refused.size()), refused) << text;
  }
}

TEST_F(Fenced, OrdinaryStatementsGoThroughAndTriggersDoWhatTheyWereMadeFor) {
  db().Execute("CREATE TABLE historia (cuando TEXT, x TEXT)");
  db().Define(
      "CREATE TRIGGER anota AFTER INSERT ON t BEGIN INSERT INTO historia VALUES (datetime('now'), "
      "hex(new.x)); "
      "END");
  const Fence fence(db(), milliseconds{5000});
  db().Execute("INSERT INTO t (n, x) VALUES (2, 'SELECT (union) with')");
  db().Execute("UPDATE t SET x = UPPER(TRIM(x)) WHERE n = 2");
  EXPECT_EQ(db().Select("SELECT COUNT(*) FROM t WHERE x LIKE 'select (UNI%'").rows.at(0).at(0), Value(1));
  EXPECT_EQ(db().Select("SELECT x FROM historia").rows.size(), 1U);
  db().Execute("DELETE FROM t");
  EXPECT_TRUE(db().Select("SELECT * FROM t").rows.empty());
}

TEST_F(Fenced, AProcedureDoesInsideWhatItDoesOutside) {
  db().Register("P", [](EngineConnection& own, const std::vector<std::string>&) {
    own.Execute("INSERT INTO t (n) SELECT n + 1 FROM t");
    own.Select("SELECT hex(n) FROM t");
  });
  const Fence fence(db(), milliseconds{1});
  db().Execute("exec P");
  EXPECT_EQ(db().Select("SELECT * FROM t").rows.size(), 2U);
  EXPECT_NE(ErrorOf([&] { db().Select("SELECT hex(n) FROM t"); }), "no error") << "the fence stands again";
}

TEST_F(Fenced, AQuestionThatTakesTooLongIsStoppedAndSaysAfterHowMuch) {
  Fill(3000);
  const char* endless = "SELECT COUNT(*) FROM t a, t b, t c WHERE a.n + b.n + c.n < 0";
  const auto stops = [&](milliseconds limit, const std::string& figure) {
    const Fence fence(db(), limit);
    const auto began = std::chrono::steady_clock::now();
    try {
      db().Select(endless);
      FAIL() << "not stopped";
    } catch (const Error& error) {
      EXPECT_EQ(error.what(), "La consulta tardó más de " + figure + " y se detuvo");
      EXPECT_EQ(error.Kind(), Trouble::kSlow);
    }
    EXPECT_GE(std::chrono::steady_clock::now() - began, limit);
    EXPECT_LT(std::chrono::steady_clock::now() - began, limit + std::chrono::seconds(2));
    EXPECT_EQ(db().Select("SELECT COUNT(*) FROM t").rows.at(0).at(0), Value(3001)) << "and goes on";
  };
  stops(milliseconds{200}, "0.2 segundos");
  stops(milliseconds{1000}, "1 segundo");
}

// Few rows, each of which takes long: one value blown up in many steps.
TEST_F(Fenced, AnExpressionThatTakesLongIsStoppedInTimeToo) {
  const auto blown = [](int n) {
    const auto times = [](int count) { return std::string(static_cast<std::size_t>(count), 'a'); };
    return "LENGTH(REPLACE(REPLACE(REPLACE(x || 'aaaaaaaaaa', 'a', '" + times(250) + "'), 'a', '" +
           times(240) + "'), 'a', '" + times(90) + "')) = " + std::to_string(n);
  };
  Fill(300);
  db().Execute("UPDATE t SET x = 'aaaa'");
  std::string text = "SELECT n FROM t WHERE n = -1";
  for (int n = 0; n < 8; ++n) text += " OR " + blown(n);
  const Fence fence(db(), milliseconds{500});
  const auto began = std::chrono::steady_clock::now();
  EXPECT_NE(ErrorOf([&] { db().Select(text); }), "no error");
  EXPECT_LT(std::chrono::steady_clock::now() - began, milliseconds{2500});
}

TEST_F(Fenced, OnlyTheInnermostFencesLimitHoldsAndNoneStaysBehind) {
  Fill(1500);
  const char* long_one = "SELECT COUNT(*) FROM t a, t b WHERE a.x LIKE b.x";
  const Fence outer(db(), milliseconds{1});
  EXPECT_EQ(ErrorOf([&] { db().Select(long_one); }).substr(0, 18), "La consulta tardó");
  {
    const Fence inner(db(), kNone);
    EXPECT_EQ(ErrorOf([&] { db().Select(long_one); }), "no error");
  }
  EXPECT_EQ(ErrorOf([&] { db().Run(long_one, {}); }), "no error");
  EXPECT_NE(ErrorOf([&] { db().Select(long_one); }), "no error");
}

TEST_F(Fenced, AStoppedQuestionInsideAUnitLeavesTheUnitOpen) {
  Fill(3000);
  db().Begin();
  db().Execute("INSERT INTO t (n) VALUES (-1)");
  {
    const Fence fence(db(), milliseconds{50});
    EXPECT_NE(ErrorOf([&] { db().Select("SELECT COUNT(*) FROM t a, t b, t c WHERE a.n + b.n + c.n < 0"); }),
              "no error");
  }
  EXPECT_TRUE(db().InTransaction());
  db().Commit();
  EXPECT_EQ(db().Select("SELECT COUNT(*) FROM t WHERE n = -1").rows.at(0).at(0), Value(1));
}

TEST_F(Fenced, ATextThatBlowsItselfUpIsRefused) {
  std::string text = "'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx'";
  for (int i = 0; i < 5; ++i) text = "REPLACE(" + text + ", 'x', '" + std::string(64, 'x') + "')";
  const Fence fence(db(), milliseconds{5000});
  EXPECT_EQ(ErrorOf([&] { db().Select("SELECT n FROM t WHERE x = " + text); }),
            "El dato o la sentencia es demasiado grande: string or blob too big");
}

}  // namespace
}  // namespace tarvik::data
