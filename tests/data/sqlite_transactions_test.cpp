// The embedded engine: units of work, and connections that write to one base at the same time.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "data/engine.h"
#include "data/error.h"
#include "data/schema.h"
#include "tests/data/sqlite.h"
#include "tests/data/support.h"

namespace tarvik::data {
namespace {

using tests::ErrorOf;
using tests::Single;
using tests::TempFolder;

TEST(Transactions, HoldWholeOrNotAtAll) {
  const TempFolder folder;
  const auto base = OpenBase("sqlite:" + folder.File("a.db"));
  const auto connection = base->Connect();
  const auto other = base->Connect();
  connection->Execute("CREATE TABLE t (a)");
  {
    Transaction transaction(*connection);
    connection->Execute("INSERT INTO t VALUES (1)");
    EXPECT_EQ(Single(*other, "SELECT count(*) FROM t"), Value(0)) << "others read on and see nothing yet";
  }
  EXPECT_EQ(Single(*connection, "SELECT count(*) FROM t"), Value(0));
  {
    Transaction transaction(*connection);
    connection->Execute("INSERT INTO t VALUES (1)");
    connection->Execute("INSERT INTO t VALUES (2)");
    transaction.Commit();
  }
  EXPECT_EQ(Single(*other, "SELECT count(*) FROM t"), Value(2));
}

TEST(Transactions, InMemoryToo) {
  const auto connection = OpenBase("sqlite::memory:")->Connect();
  connection->Execute("CREATE TABLE t (a)");
  try {
    Transaction transaction(*connection);
    connection->Execute("INSERT INTO t VALUES (1)");
    connection->Execute("INSERT INTO nada VALUES (1)");
  } catch (const Error&) {
  }
  EXPECT_EQ(Single(*connection, "SELECT count(*) FROM t"), Value(0));
}

TEST(Transactions, DoNotNestAndEndOnce) {
  const auto connection = OpenBase("sqlite::memory:")->Connect();
  EXPECT_EQ(ErrorOf([&] { connection->Commit(); }), "No hay una transacción abierta");
  connection->Rollback();
  connection->Begin();
  EXPECT_EQ(ErrorOf([&] { connection->Begin(); }), "Ya hay una transacción abierta");
  connection->Commit();
  EXPECT_EQ(ErrorOf([&] { connection->Commit(); }), "No hay una transacción abierta");
}

TEST(OtherConnections, SeeWhatIsCommittedAtOnce) {
  const TempFolder folder;
  const auto base = OpenBase("sqlite:" + folder.File("a.db"));
  const auto one = base->Connect();
  const auto other = OpenBase("sqlite:" + folder.File("a.db"))->Connect();
  one->Execute("CREATE TABLE t (a)");
  for (int i = 1; i <= 3; ++i) {
    one->Run("INSERT INTO t VALUES (?)", {i});
    EXPECT_EQ(Single(*other, "SELECT max(a) FROM t"), Value(i));
  }
}

TEST(OtherConnections, AWriterWaitsForAnother) {
  const TempFolder folder;
  const auto base = OpenBase("sqlite:" + folder.File("a.db"));
  const auto one = base->Connect();
  one->Execute("CREATE TABLE t (a)");
  one->Begin();
  one->Execute("INSERT INTO t VALUES (1)");
  std::string waited;
  std::thread second([&] {
    const auto other = base->Connect();
    waited = ErrorOf([&] { other->Execute("INSERT INTO t VALUES (2)"); });
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  one->Commit();
  second.join();
  EXPECT_EQ(waited, "no error");
  EXPECT_EQ(Single(*one, "SELECT count(*) FROM t"), Value(2));
}

TEST(OtherConnections, ABaseThatStaysBusyIsTold) {
  const TempFolder folder;
  const auto base = OpenBase("sqlite:" + folder.File("a.db"));
  const auto one = base->Connect();
  const auto other = base->Connect();
  one->Execute("CREATE TABLE t (a)");
  one->Begin();
  const auto started = std::chrono::steady_clock::now();
  EXPECT_EQ(ErrorOf([&] { other->Begin(); }), "La base está ocupada por otro proceso: database is locked");
  EXPECT_GT(std::chrono::steady_clock::now() - started, std::chrono::seconds(4));
  one->Rollback();
  EXPECT_EQ(ErrorOf([&] { other->Execute("INSERT INTO t VALUES (1)"); }), "no error");
}

TEST(OtherConnections, ManyWritersLoseNothing) {
  const TempFolder folder;
  const auto base = OpenBase("sqlite:" + folder.File("a.db"));
  base->Connect()->Execute("CREATE TABLE s (v INTEGER)");
  base->Connect()->Execute("INSERT INTO s VALUES (0)");
  std::vector<std::thread> threads;
  std::vector<std::string> errors(4);
  for (std::string& error : errors) {
    threads.emplace_back([&] {
      error = ErrorOf([&] {
        const auto connection = base->Connect();
        for (int i = 0; i < 25; ++i) connection->Run("UPDATE s SET v = v + 1 RETURNING v", {});
      });
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::string& error : errors) EXPECT_EQ(error, "no error");
  EXPECT_EQ(Single(*base->Connect(), "SELECT v FROM s"), Value(100));
}

TEST(OtherConnections, ManyOpenANewFileAtOnce) {
  const TempFolder folder;
  std::vector<std::thread> threads;
  std::vector<std::string> errors(6);
  for (std::string& error : errors) {
    threads.emplace_back([&] {
      error = ErrorOf([&] { PrepareSchema(*OpenBase("sqlite:" + folder.File("a.db"))->Connect()); });
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::string& error : errors) EXPECT_EQ(error, "no error");
  const auto connection = OpenBase("sqlite:" + folder.File("a.db"))->Connect();
  EXPECT_EQ(Single(*connection, "SELECT count(*) FROM version_esquema"), Value(1));
}

}  // namespace
}  // namespace tarvik::data
