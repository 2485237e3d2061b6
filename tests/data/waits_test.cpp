// How the embedded engine waits: as long as the act's patience lasts and no longer, with turns for a window,
// in the order in which all programs on the base came.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "data/engine.h"
#include "data/error.h"
#include "tests/data/processes.h"
#include "tests/data/support.h"

namespace tarvik::data {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;
using tests::ErrorOf;
using tests::OtherProgram;
using tests::TempFolder;

milliseconds Since(Clock::time_point began) {
  return std::chrono::duration_cast<milliseconds>(Clock::now() - began);
}

// A base with one table, and a second connection that can hold its write lock.
class Waits : public testing::TestWithParam<const char*> {
 protected:
  Waits()
      : base_(OpenBase(std::string(GetParam()) == "file" ? "sqlite:" + folder_.File("a.db")
                                                         : "sqlite::memory:")) {
    holder_ = base_->Connect();
    holder_->Execute("CREATE TABLE t (a)");
    connection_ = base_->Connect();
    connection_->Select("SELECT * FROM t");
  }
  void Insert() { connection_->Execute("INSERT INTO t VALUES (1)"); }
  // What an insert throws, and how long it took.
  std::pair<Trouble, milliseconds> Try() {
    const auto began = Clock::now();
    try {
      Insert();
    } catch (const Error& error) {
      EXPECT_EQ(std::string(error.what()), "La base está ocupada por otro proceso: database is locked");
      return {error.Kind(), Since(began)};
    }
    return {Trouble::kOther, Since(began)};
  }

  const TempFolder folder_;
  std::unique_ptr<Base> base_;
  std::unique_ptr<EngineConnection> holder_;
  std::unique_ptr<EngineConnection> connection_;
};

TEST_P(Waits, OneActWaitsOnceForABaseThatStaysBusy) {
  holder_->Begin();
  connection_->Waiting().ActBegins();
  const auto first = Try();
  EXPECT_EQ(first.first, Trouble::kBusy);
  EXPECT_GE(first.second, milliseconds(4900));
  EXPECT_LT(first.second, milliseconds(6500));
  for (int i = 0; i < 3; ++i) {
    const auto later = Try();
    EXPECT_EQ(later.first, Trouble::kBusy);
    EXPECT_LT(later.second, milliseconds(300));
  }
  EXPECT_EQ(connection_->Waiting().Left().count(), 0);
  holder_->Rollback();
  Insert();  // sent all the same, and so the base is back
  EXPECT_EQ(connection_->Waiting().Left(), Patience::kWhole);
  connection_->Waiting().ActEnds();
}

TEST_P(Waits, AWindowHasItsTurnsAndEndsTheWaitByItsWord) {
  holder_->Begin();
  int turns = 0;
  connection_->Waiting().turn = [&] { return ++turns < 20; };
  const auto tried = Try();
  EXPECT_EQ(tried.first, Trouble::kBusy);
  EXPECT_EQ(turns, 20);
  EXPECT_GE(tried.second, milliseconds(190));
  EXPECT_LT(tried.second, milliseconds(2000));
}

TEST_P(Waits, TheBaseIsTakenAsSoonAsItIsFree) {
  holder_->Begin();
  int turns = 0;
  connection_->Waiting().turn = [&] {
    if (++turns == 10) holder_->Commit();
    return true;
  };
  EXPECT_EQ(Try().first, Trouble::kOther);
  EXPECT_LT(turns, 15);
  EXPECT_EQ(connection_->Waiting().Left(), Patience::kWhole);
}

INSTANTIATE_TEST_SUITE_P(Engine, Waits, testing::Values("file", "memory"));

TEST(WaitsForOne, AQuestionThatNeedsNoLockDoesNotMakeTheActHopeAgain) {
  const TempFolder folder;
  const auto base = OpenBase("sqlite:" + folder.File("a.db"));
  const auto holder = base->Connect();
  const auto connection = base->Connect();
  holder->Execute("CREATE TABLE t (a)");
  holder->Begin();
  connection->Waiting().ActBegins();
  connection->Waiting().Vain();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(ErrorOf([&] { connection->Select("SELECT * FROM t"); }), "no error");
    const auto began = Clock::now();
    EXPECT_NE(ErrorOf([&] { connection->Execute("INSERT INTO t VALUES (1)"); }), "no error");
    EXPECT_LT(Since(began), milliseconds(300));
  }
}

TEST(WaitsForOne, WhatAUnitHasReadBeforeAnotherWroteIsNotWaitedFor) {
  const TempFolder folder;
  const auto base = OpenBase("sqlite:" + folder.File("a.db"));
  const auto one = base->Connect();
  const auto other = base->Connect();
  one->Execute("CREATE TABLE t (a)");
  one->Execute("BEGIN");
  one->Select("SELECT * FROM t");
  other->Execute("INSERT INTO t VALUES (1)");
  const auto began = Clock::now();
  try {
    one->Execute("INSERT INTO t VALUES (2)");
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Kind(), Trouble::kBusy);
  }
  EXPECT_LT(Since(began), milliseconds(500));
  one->Rollback();
  EXPECT_EQ(ErrorOf([&] { one->Execute("INSERT INTO t VALUES (2)"); }), "no error");
}

// Another program holds the base for half a second at a time, with no pause between: who came first is next.
TEST(WaitsInLine, ThoseWhoCameFirstGoFirst) {
  const TempFolder folder;
  const std::string address = "sqlite:" + folder.File("a.db");
  {
    const auto connection = OpenBase(address)->Connect();
    connection->Execute("CREATE TABLE t (n INTEGER PRIMARY KEY, who INTEGER)");
  }
  OtherProgram holder([&](const OtherProgram::Say& say) {
    const auto connection = OpenBase(address)->Connect();
    connection->Begin();
    say("held");
    std::this_thread::sleep_for(milliseconds(1500));
    connection->Commit();
  });
  ASSERT_EQ(holder.Hear(), "held");
  const auto comes = [&](int who) {
    return std::make_unique<OtherProgram>([&address, who](const OtherProgram::Say& say) {
      const auto connection = OpenBase(address)->Connect();
      say("comes");
      connection->Run("INSERT INTO t (who) VALUES (?)", {who});
      say("written");
    });
  };
  std::vector<std::unique_ptr<OtherProgram>> others;
  for (int who = 1; who <= 6; ++who) {
    others.push_back(comes(who));
    ASSERT_EQ(others.back()->Hear(), "comes");
    std::this_thread::sleep_for(milliseconds(100));
  }
  for (const auto& other : others) EXPECT_EQ(other->Hear(), "written");
  const Rows rows = OpenBase(address)->Connect()->Select("SELECT who FROM t ORDER BY n");
  std::vector<Value> order;
  for (const auto& row : rows.rows) order.push_back(row[0]);
  EXPECT_EQ(order, (std::vector<Value>{1, 2, 3, 4, 5, 6}));
}

TEST(WaitsInLine, WhoDiesInLineIsOutOfIt) {
  const TempFolder folder;
  const std::string address = "sqlite:" + folder.File("a.db");
  OpenBase(address)->Connect()->Execute("CREATE TABLE t (who INTEGER)");
  OtherProgram holder([&](const OtherProgram::Say& say) {
    const auto connection = OpenBase(address)->Connect();
    connection->Begin();
    say("held");
    std::this_thread::sleep_for(milliseconds(1000));
    connection->Commit();
  });
  ASSERT_EQ(holder.Hear(), "held");
  OtherProgram first([&](const OtherProgram::Say& say) {
    const auto connection = OpenBase(address)->Connect();
    say("comes");
    connection->Execute("INSERT INTO t VALUES (1)");
  });
  ASSERT_EQ(first.Hear(), "comes");
  std::this_thread::sleep_for(milliseconds(200));
  first.Kill();
  const auto connection = OpenBase(address)->Connect();
  const auto began = Clock::now();
  connection->Execute("INSERT INTO t VALUES (2)");
  EXPECT_LT(Since(began), milliseconds(2500));
  EXPECT_EQ(connection->Select("SELECT who FROM t").rows.size(), 1U);
}

// A program that was stopped in line, by a debugger or a full terminal, holds the others up for one patience
// at most, and refuses nobody.
TEST(WaitsInLine, WhoIsStoppedInLineRefusesNobody) {
  const TempFolder folder;
  const std::string address = "sqlite:" + folder.File("a.db");
  OpenBase(address)->Connect()->Execute("CREATE TABLE t (who INTEGER)");
  OtherProgram holder([&](const OtherProgram::Say& say) {
    const auto connection = OpenBase(address)->Connect();
    connection->Begin();
    say("held");
    std::this_thread::sleep_for(milliseconds(600));
    connection->Commit();
  });
  ASSERT_EQ(holder.Hear(), "held");
  OtherProgram stopped([&](const OtherProgram::Say& say) {
    const auto connection = OpenBase(address)->Connect();
    say("comes");
    connection->Execute("INSERT INTO t VALUES (1)");
    say("written");
  });
  ASSERT_EQ(stopped.Hear(), "comes");
  std::this_thread::sleep_for(milliseconds(200));
  stopped.Stop();
  const auto connection = OpenBase(address)->Connect();
  const auto began = Clock::now();
  EXPECT_EQ(ErrorOf([&] { connection->Execute("INSERT INTO t VALUES (2)"); }), "no error");
  EXPECT_EQ(ErrorOf([&] { connection->Execute("INSERT INTO t VALUES (3)"); }), "no error");
  EXPECT_LT(Since(began), seconds(9));
  stopped.GoOn();
  EXPECT_EQ(stopped.Hear(), "written");
}

// Eight programs that never pause, each line its own commit or each some lines a unit: nobody is refused, and
// nobody is served by luck.
TEST(WaitsInLine, EightProgramsThatNeverPauseAllComeToTheirTurn) {
  const TempFolder folder;
  const std::string address = "sqlite:" + folder.File("a.db");
  OpenBase(address)->Connect()->Execute("CREATE TABLE t (who INTEGER, line INTEGER)");
  constexpr int kPrograms = 8;
  constexpr int kLines = 60;
  std::vector<std::unique_ptr<OtherProgram>> programs;
  for (int who = 0; who < kPrograms; ++who) {
    programs.push_back(std::make_unique<OtherProgram>([&address, who](const OtherProgram::Say& say) {
      const auto connection = OpenBase(address)->Connect();
      milliseconds longest{0};
      for (int line = 0; line < kLines; ++line) {
        const auto began = Clock::now();
        if (who % 2 == 0) {
          connection->Run("INSERT INTO t VALUES (?, ?)", {who, line});
        } else {
          Transaction unit(*connection);
          for (int row = 0; row < 3; ++row) connection->Run("INSERT INTO t VALUES (?, ?)", {who, line});
          unit.Commit();
        }
        longest = std::max(longest, Since(began));
      }
      say(std::to_string(longest.count()));
    }));
  }
  for (const auto& program : programs) {
    const std::string longest = program->Hear();
    ASSERT_EQ(longest.substr(0, 6).find("error"), std::string::npos) << longest;
    EXPECT_LT(std::stoi(longest), 3000);
  }
  const auto connection = OpenBase(address)->Connect();
  EXPECT_EQ(connection->Select("SELECT COUNT(*) FROM t").rows.at(0).at(0), Value(kPrograms / 2 * kLines * 4));
}

}  // namespace
}  // namespace tarvik::data
