// A server in trouble: busy rows, sessions that end, servers that answer nothing, questions without an end.
// How long an act waits in all, what is carried out, and what is said.
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <string>
#include <thread>

#include "data/engine.h"
#include "data/error.h"
#include "tests/data/support.h"
#include "tests/support/base_de_prueba.h"

namespace tarvik::data {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;
using tests::BaseDePrueba;
using tests::ErrorOf;

class EnApuros : public testing::Test {
 protected:
  EnApuros() : base(OpenBase(direccion.Direccion())), db(base->Connect()), other(base->Connect()) {
    db->Execute("CREATE TABLE t (n BIGINT, r DOUBLE PRECISION)");
    db->Execute("INSERT INTO t (n, r) VALUES (1, 0)");
    db->Waiting().turn = [this] {
      ++turns;
      if (on_turn) on_turn();
      return go_on;
    };
  }

  static Value Single(EngineConnection& connection, std::string_view text) {
    return connection.Run(text, {}).rows.at(0).at(0);
  }
  int Pid() { return static_cast<int>(ToNumber(Single(*db, "SELECT pg_backend_pid()"))); }
  void Cut() {
    other->Run(
        "SELECT pg_terminate_backend(pid, 2000) FROM pg_stat_activity WHERE datname = current_database() AND "
        "pid <> pg_backend_pid()",
        {});
  }
  struct Told {
    std::string text;
    Trouble trouble = Trouble::kOther;
    milliseconds took{0};
  };
  template <class Act>
  Told Try(Act act) {
    Told told{"no error"};
    const auto begun = Clock::now();
    try {
      act();
    } catch (const Error& error) {
      told.text = error.what();
      told.trouble = error.Kind();
    }
    told.took = std::chrono::duration_cast<milliseconds>(Clock::now() - begun);
    return told;
  }

  BaseDePrueba direccion{BaseDePrueba::Con::kNada};
  std::unique_ptr<Base> base;
  std::unique_ptr<EngineConnection> db;
  std::unique_ptr<EngineConnection> other;
  int turns = 0;
  bool go_on = true;
  std::function<void()> on_turn;
};

// --- Busy ---

TEST_F(EnApuros, ABusyRowCostsOneWaitAnActAndTheWindowPaints) {
  Transaction holds(*other);
  other->Execute("UPDATE t SET r = 9");
  db->Waiting().ActBegins();
  Told told = Try([&] { db->Execute("UPDATE t SET r = 1"); });
  EXPECT_EQ(told.trouble, Trouble::kBusy);
  EXPECT_TRUE(told.text.starts_with("La base está ocupada por otro proceso: ")) << told.text;
  EXPECT_GE(told.took, milliseconds(4900));
  EXPECT_LT(told.took, milliseconds(6000));
  EXPECT_GT(turns, 200);
  for (int i = 0; i < 20; ++i) {
    told = Try([&] { db->Run("UPDATE t SET r = ?", {1}); });
    EXPECT_EQ(told.trouble, Trouble::kBusy);
    EXPECT_LT(told.took, milliseconds(200));
  }
  // What is free goes through; a change that stands gives the patience back, a look does not, nor does a part
  // of a unit: the next one would wait as long again.
  EXPECT_EQ(Single(*db, "SELECT r FROM t"), Value(0.0));
  EXPECT_LT(Try([&] { db->Execute("UPDATE t SET r = 1"); }).took, milliseconds(200));
  {
    const Transaction unit(*db);
    db->Execute("INSERT INTO t (n) VALUES (7)");
    EXPECT_LT(Try([&] { db->Execute("UPDATE t SET r = 1 WHERE n = 1"); }).took, milliseconds(200));
  }
  db->Execute("INSERT INTO t (n) VALUES (8)");
  on_turn = [&] {
    on_turn = nullptr;
    other->Rollback();
  };
  EXPECT_EQ(Try([&] { db->Execute("UPDATE t SET r = 2"); }).text, "no error");
  EXPECT_EQ(Single(*db, "SHOW lock_timeout"), Value("5s"));
  EXPECT_EQ(Single(*db, "SELECT COUNT(*) FROM t"), Value(2));
}

TEST_F(EnApuros, AnActHasItsPatienceBackWhenTheNextBegins) {
  Transaction holds(*other);
  other->Execute("UPDATE t SET r = 9");
  db->Waiting().ActBegins();
  db->Waiting().Vain();
  EXPECT_LT(Try([&] { db->Execute("UPDATE t SET r = 1"); }).took, milliseconds(200));
  db->Waiting().ActEnds();
  db->Waiting().ActBegins();
  EXPECT_GT(Try([&] { db->Execute("UPDATE t SET r = 1"); }).took, milliseconds(4900));
}

TEST_F(EnApuros, OfTwoThatWaitForEachOtherOneIsToldAndMayBeginAgain) {
  db->Execute("INSERT INTO t (n, r) VALUES (2, 0)");
  Transaction one(*other);
  other->Execute("UPDATE t SET r = 1 WHERE n = 1");
  std::string others;
  std::thread waits;
  Told told;
  {
    Transaction two(*db);
    db->Execute("UPDATE t SET r = 1 WHERE n = 2");
    waits = std::thread([&] { others = ErrorOf([&] { other->Execute("UPDATE t SET r = 1 WHERE n = 2"); }); });
    std::this_thread::sleep_for(milliseconds(200));
    told = Try([&] { db->Execute("UPDATE t SET r = 1 WHERE n = 1"); });
  }
  waits.join();
  EXPECT_EQ((told.text == "no error") + (others == "no error"), 1);
  if (told.text != "no error") {
    EXPECT_EQ(told.trouble, Trouble::kBusy);
  }
}

TEST_F(EnApuros, ATableThatChangedInTheMiddleOfAUnitLetsItBeginAgain) {
  const auto reads = [&] { return db->Run("SELECT * FROM t WHERE n = ?", {1}).columns.size(); };
  EXPECT_EQ(reads(), 2U);
  other->Execute("ALTER TABLE t ADD COLUMN nueva TEXT");
  Told told;
  {
    Transaction unit(*db);
    db->Execute("INSERT INTO t (n) VALUES (5)");
    told = Try(reads);
  }
  EXPECT_EQ(told.trouble, Trouble::kBusy);
  Transaction unit(*db);
  db->Execute("INSERT INTO t (n) VALUES (5)");
  EXPECT_EQ(reads(), 3U);
  unit.Commit();
  EXPECT_EQ(Single(*db, "SELECT COUNT(*) FROM t"), Value(2));
}

// --- Sessions that end ---

TEST_F(EnApuros, ASessionThatEndedBetweenTwoStatementsIsNotNoticed) {
  Cut();
  EXPECT_EQ(ErrorOf([&] { db->Run("UPDATE t SET r = ?", {1}); }), "no error");
  Cut();
  EXPECT_EQ(ErrorOf([&] { db->Execute("UPDATE t SET r = r + 1"); }), "no error");
  Cut();
  {
    Transaction unit(*db);
    db->Execute("UPDATE t SET r = r + 1");
    unit.Commit();
  }
  EXPECT_EQ(Single(*db, "SELECT r FROM t"), Value(3.0));
}

TEST_F(EnApuros, WhatIsCutOnItsWayIsAskedAgainOrToldAsNotKnown) {
  const int cuts[] = {30, 30};
  for ([[maybe_unused]] int cut : cuts) {
    on_turn = [&] {
      on_turn = nullptr;
      Cut();
    };
    EXPECT_EQ(ErrorOf([&] { Single(*db, "SELECT pg_sleep(0.3)"); }), "no error");
  }
  on_turn = [&] {
    on_turn = nullptr;
    Cut();
  };
  const Told told = Try([&] { db->Execute("INSERT INTO t (n) SELECT 7 FROM pg_sleep(0.3)"); });
  EXPECT_EQ(told.trouble, Trouble::kLost);
  EXPECT_TRUE(told.text.starts_with("Se perdió la conexión con la base " + base->Address() + ": "))
      << told.text;
  EXPECT_EQ(Single(*db, "SELECT COUNT(*) FROM t"), Value(1));
}

TEST_F(EnApuros, AUnitThatIsCutHoldsNothingAndTakesNothingMore) {
  db->Begin();
  db->Execute("UPDATE t SET r = 5");
  Cut();
  for (int i = 0; i < 3; ++i) {
    const Told told = Try([&] { db->Run("UPDATE t SET n = ?", {5}); });
    EXPECT_EQ(told.trouble, Trouble::kLost) << told.text;
    EXPECT_TRUE(db->InTransaction());
  }
  EXPECT_EQ(Try([&] { db->Commit(); }).trouble, Trouble::kLost);
  EXPECT_FALSE(db->InTransaction());
  EXPECT_EQ(db->Run("SELECT n, r FROM t", {}).rows.at(0), (std::vector<Value>{1, 0.0}));

  db->Begin();
  db->Execute("UPDATE t SET r = 5");
  Cut();
  EXPECT_EQ(Try([&] { db->Commit(); }).trouble, Trouble::kLost);
  EXPECT_FALSE(db->InTransaction());
  EXPECT_EQ(Single(*db, "SELECT r FROM t"), Value(0.0));
}

TEST_F(EnApuros, TheFirstStatementOfAUnitIsSentAgainWithItsBeginning) {
  on_turn = [&] {
    on_turn = nullptr;
    Cut();
  };
  Transaction unit(*db);
  db->Execute("INSERT INTO t (n) SELECT 7 FROM pg_sleep(0.3)");
  db->Run("UPDATE t SET r = ?", {8});
  unit.Commit();
  EXPECT_EQ(db->Run("SELECT COUNT(*), MIN(r) FROM t", {}).rows.at(0), (std::vector<Value>{2, 8.0}));
}

TEST_F(EnApuros, AUnitWithoutAStatementIsNone) {
  {
    Transaction unit(*db);
    EXPECT_TRUE(db->InTransaction());
  }
  EXPECT_FALSE(db->InTransaction());
  Transaction unit(*db);
  EXPECT_NE(ErrorOf([&] { db->Run("SELEC ?", {1}); }), "no error");
  EXPECT_TRUE(db->InTransaction());
  db->Run("UPDATE t SET r = ?", {1});
  unit.Commit();
  EXPECT_EQ(Single(*db, "SELECT r FROM t"), Value(1.0));
}

// --- Servers that answer nothing ---

TEST_F(EnApuros, AServerProcessThatStopsIsLeftAndToldInTime) {
  const int pid = Pid();
  ASSERT_EQ(::kill(pid, SIGSTOP), 0);
  db->Waiting().ActBegins();
  Told told;
  {
    const Fence fence(*db, milliseconds(500));
    told = Try([&] { db->Select("SELECT r FROM t"); });
  }
  EXPECT_EQ(told.trouble, Trouble::kSlow);
  EXPECT_EQ(told.text, "La consulta tardó más de 0.5 segundos y se detuvo");
  EXPECT_LT(told.took, milliseconds(5000));
  EXPECT_GT(turns, 20);
  EXPECT_LT(Try([&] { db->Execute("UPDATE t SET r = 1"); }).took, milliseconds(1000));
  ::kill(pid, SIGCONT);
  EXPECT_EQ(Single(*db, "SELECT r FROM t"), Value(1.0));
}

TEST_F(EnApuros, AChangeThatGetsNoAnswerIsLeftAfterHalfAMinute) {
  const int pid = Pid();
  db->Waiting().ActBegins();
  db->Begin();
  db->Execute("UPDATE t SET r = 1");
  ASSERT_EQ(::kill(pid, SIGSTOP), 0);
  const Told told = Try([&] { db->Commit(); });
  EXPECT_EQ(told.trouble, Trouble::kLost) << told.text;
  EXPECT_GE(told.took, milliseconds(29000));
  EXPECT_LT(told.took, milliseconds(35000));
  ::kill(pid, SIGCONT);
}

// --- What never ends ---

TEST_F(EnApuros, AQuestionOfAScreenIsStoppedInTimeAndTheSessionStays) {
  db->Execute("INSERT INTO t (n) SELECT generate_series(1, 20000)");
  const int pid = Pid();
  const Fence fence(*db, milliseconds(1000));
  const Told told = Try([&] { db->Select("SELECT COUNT(*) FROM t, t AS u, t AS v WHERE t.n <> u.n + v.n"); });
  EXPECT_EQ(told.text, "La consulta tardó más de 1 segundo y se detuvo");
  EXPECT_EQ(told.trouble, Trouble::kSlow);
  EXPECT_LT(told.took, milliseconds(3000));
  EXPECT_EQ(Pid(), pid);
  EXPECT_EQ(ErrorOf([&] { db->Select("SELECT COUNT(*) FROM t"); }), "no error");
}

TEST_F(EnApuros, WhatAFieldBringsReachesNoFunctionAndNoOtherTable) {
  const Fence fence(*db, milliseconds(1000));
  for (const char* typed :
       {"' OR PG_ADVISORY_LOCK(1) IS NULL OR 'a'='b", "' OR PG_SLEEP(60) IS NULL OR 'a'='b",
        "' OR EXISTS (SELECT 1 FROM pg_roles) OR 'a'='b", "' UNION SELECT rolname FROM pg_roles WHERE 'a'='a",
        "' OR set_config('application_name', 'x #1', false) = '", "' OR pg_terminate_backend(1) OR 'a'='",
        "' OR (WITH RECURSIVE r AS (SELECT 1 UNION ALL SELECT 1 FROM r) SELECT COUNT(*) FROM r) > 0 OR "
        "'a'='"}) {
    for (const std::string front : {"SELECT * FROM t WHERE '' = '", "UPDATE t SET r = 1 WHERE '' = '"}) {
      const auto told = Try([&] { db->Execute(front + typed + "'"); });
      EXPECT_NE(told.text, "no error") << typed;
      EXPECT_LT(told.took, milliseconds(200)) << typed;
    }
  }
  EXPECT_EQ(Single(*other, "SELECT COUNT(*) FROM pg_locks WHERE locktype = 'advisory'"), Value(0));
}

TEST_F(EnApuros, ARoutineAndAProcedureTakeAsLongAsTheyTake) {
  EXPECT_EQ(ErrorOf([&] { db->Execute("SELECT pg_sleep(0.6)"); }), "no error");
  db->Execute("CREATE FUNCTION lenta() RETURNS VOID LANGUAGE SQL AS 'SELECT pg_sleep(0.6)'");
  db->Register("mia", [](EngineConnection& connection, const std::vector<std::string>&) {
    connection.Select("SELECT n FROM t UNION SELECT COUNT(*) FROM pg_sleep(0.6)");
  });
  const Fence fence(*db, milliseconds(200));
  EXPECT_EQ(ErrorOf([&] { db->Execute("exec lenta"); }), "no error");
  EXPECT_EQ(ErrorOf([&] { db->Execute("exec mia"); }), "no error");
}

TEST_F(EnApuros, AnEndThatIsAskedForIsAnEnd) {
  on_turn = [&] { go_on = turns < 20; };
  Told told = Try([&] { db->Execute("INSERT INTO t (n) SELECT 7 FROM pg_sleep(60)"); });
  EXPECT_EQ(told.text, "La sentencia se detuvo: el programa está terminando");
  EXPECT_LT(told.took, milliseconds(3000));
  Transaction holds(*other);
  other->Execute("UPDATE t SET r = 9");
  EXPECT_LT(Try([&] { db->Execute("UPDATE t SET r = 1"); }).took, milliseconds(3000));
  EXPECT_EQ(Single(*other, "SELECT COUNT(*) FROM t"), Value(1));
}

// --- Lives ---

TEST_F(EnApuros, ALifeEndsWithItsSessionAndNotBefore) {
  EXPECT_FALSE(other->Lives(12));
  db->Live(12);
  EXPECT_TRUE(other->Lives(12));
  EXPECT_TRUE(db->Lives(12));
  for (const int apart : {1, 2, 112, 120, 1212}) EXPECT_FALSE(other->Lives(apart)) << apart;
  Cut();
  EXPECT_FALSE(other->Lives(12));
  db->Changes();  // as a window does that nobody works at
  EXPECT_TRUE(other->Lives(12));
  db->Execute("DISCARD ALL");
  EXPECT_TRUE(other->Lives(12));
  {
    Transaction undone(*db);
    EXPECT_NE(ErrorOf([&] { db->Live(13); }), "no error");
    db->Execute("UPDATE t SET r = 1");
  }
  EXPECT_TRUE(other->Lives(12));
  db->Close();
  for (int i = 0; i < 100 && other->Lives(12); ++i) std::this_thread::sleep_for(milliseconds(10));
  EXPECT_FALSE(other->Lives(12));
}

TEST_F(EnApuros, OthersAreHeard) {
  const auto before = db->Changes();
  EXPECT_EQ(db->Changes(), before);
  other->Notify();
  std::this_thread::sleep_for(milliseconds(100));
  EXPECT_NE(db->Changes(), before);
}

}  // namespace
}  // namespace tarvik::data
