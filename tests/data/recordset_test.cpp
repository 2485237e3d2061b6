// The cursor, on rows from a connection that only notes what it is asked.
#include "data/recordset.h"

#include <gtest/gtest.h>

#include "data/error.h"
#include "tests/data/support.h"

namespace tarvik::data {
namespace {

using tests::ErrorOf;

class FakeConnection : public Connection {
 public:
  Rows Select(std::string_view text) override {
    asked.emplace_back(text);
    if (fails) throw Error("falla provocada");
    return answer;
  }
  Rows Execute(std::string_view) override { throw Error("no se esperaba"); }

  Rows answer{{"Entrada", "importe"}, {{1, 10.5}, {2, Value()}}};
  std::vector<std::string> asked;
  bool fails = false;
};

TEST(Recordset, WalksTheRows) {
  FakeConnection connection;
  Recordset records;
  records.Open("SELECT * FROM entradas", connection, kKeysetCursor, kOptimisticLock, kTextCommand);
  EXPECT_EQ(connection.asked, std::vector<std::string>{"SELECT * FROM entradas"});
  EXPECT_EQ(records.RecordCount(), 2);
  EXPECT_FALSE(records.Eof());
  EXPECT_EQ(records.Fields("entrada"), Value(1));
  EXPECT_EQ(records.Fields("IMPORTE"), Value(10.5));
  records.MoveNext();
  EXPECT_EQ(records.Fields("Entrada"), Value(2));
  EXPECT_TRUE(records.Fields("importe").IsNull());
  EXPECT_FALSE(records.Eof());
  records.MoveNext();
  EXPECT_TRUE(records.Eof());
  EXPECT_EQ(records.RecordCount(), 2) << "the count does not change on the way";
  EXPECT_EQ(connection.asked.size(), 1U) << "walking asks the connection for nothing";
}

TEST(Recordset, WithoutRowsIsAtItsEndAtOnce) {
  Recordset records(Rows{{"a"}, {}});
  EXPECT_TRUE(records.IsOpen());
  EXPECT_TRUE(records.Eof());
  EXPECT_EQ(records.RecordCount(), 0);
  EXPECT_EQ(ErrorOf([&] { (void)records.Fields("a"); }), "No hay un registro actual");
  EXPECT_EQ(ErrorOf([&] { records.MoveNext(); }), "No hay un registro siguiente");
}

TEST(Recordset, BehindTheLastRowThereIsNoField) {
  Recordset records(Rows{{"a"}, {{1}}});
  records.MoveNext();
  EXPECT_EQ(ErrorOf([&] { (void)records.Fields("a"); }), "No hay un registro actual");
  EXPECT_EQ(ErrorOf([&] { records.MoveNext(); }), "No hay un registro siguiente");
  EXPECT_TRUE(records.Eof());
}

TEST(Recordset, AColumnThatIsNotThereIsNamed) {
  Recordset records(Rows{{"a"}, {{1}}});
  EXPECT_EQ(ErrorOf([&] { (void)records.Fields("ALM12"); }), "No existe la columna ALM12 en la consulta");
}

TEST(Recordset, ClosedItAnswersNothing) {
  const Recordset records;
  EXPECT_FALSE(records.IsOpen());
  EXPECT_EQ(ErrorOf([&] { (void)records.Eof(); }), "La consulta está cerrada");
  EXPECT_EQ(ErrorOf([&] { (void)records.RecordCount(); }), "La consulta está cerrada");
  EXPECT_EQ(ErrorOf([&] { (void)records.Fields("a"); }), "La consulta está cerrada");
  Recordset other;
  EXPECT_EQ(ErrorOf([&] { other.MoveNext(); }), "La consulta está cerrada");
}

TEST(Recordset, AFailedOpeningLeavesItClosed) {
  FakeConnection connection;
  Recordset records;
  records.Open("SELECT 1", connection);
  connection.fails = true;
  EXPECT_EQ(ErrorOf([&] { records.Open("SELECT 2", connection); }), "falla provocada");
  EXPECT_FALSE(records.IsOpen());
  EXPECT_TRUE(records.All().rows.empty());
  EXPECT_EQ(ErrorOf([&] { (void)records.Eof(); }), "La consulta está cerrada");
}

TEST(Recordset, OpenedAgainItStandsOnTheFirstRow) {
  FakeConnection connection;
  Recordset records;
  records.Open("SELECT 1", connection);
  records.MoveNext();
  connection.answer = Rows{{"b"}, {{7}}};
  records.Open("SELECT 2", connection);
  EXPECT_EQ(records.Fields("b"), Value(7));
}

TEST(Recordset, KeepsTheTypesThatItsCallerSet) {
  FakeConnection connection;
  Recordset records;
  records.CursorType(kKeysetCursor);
  records.LockType(kOptimisticLock);
  records.Open("SELECT 1", connection, kAsSet, kAsSet, kAsSet);
  EXPECT_EQ(records.CursorType(), kKeysetCursor);
  EXPECT_EQ(records.LockType(), kOptimisticLock);
  records.Open("SELECT 1", connection, 2, 4);
  EXPECT_EQ(records.CursorType(), 2);
  EXPECT_EQ(records.LockType(), 4);
}

TEST(RecordsetRef, SharesOneRecordset) {
  RecordsetRef one(std::make_shared<Recordset>(Rows{{"a"}, {{1}, {2}}}));
  RecordsetRef other = one;
  ASSERT_TRUE(other);
  other->MoveNext();
  EXPECT_EQ(one->Fields("a"), Value(2));
  EXPECT_EQ((*one).RecordCount(), 2);
}

TEST(RecordsetRef, HoldingNothingItThrowsOnUse) {
  const RecordsetRef none;
  EXPECT_FALSE(none);
  EXPECT_EQ(ErrorOf([&] { (void)none->IsOpen(); }), "La consulta no se ha asignado");
  EXPECT_EQ(ErrorOf([&] { (void)(*none).IsOpen(); }), "La consulta no se ha asignado");
}

TEST(ErrorContext, StaysOutOfTheDescription) {
  try {
    try {
      throw Error("falla").With("sentencia", "SELECT 1");
    } catch (Error& error) {
      error.Add("documento", "7");
      throw;
    }
  } catch (const Error& error) {
    EXPECT_STREQ(error.what(), "falla");
    ASSERT_EQ(error.Context().size(), 2U);
    EXPECT_EQ(error.Context()[1], (std::pair<std::string, std::string>("documento", "7")));
  }
}

}  // namespace
}  // namespace tarvik::data
