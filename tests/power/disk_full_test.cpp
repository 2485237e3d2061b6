// The disk is full from any write on while documents are entered and posted: every failed step says so,
// nothing is half, and when there is room again work goes on.
//
// A sample of the points by default; with TARVIK_POWER=all every one of them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "tests/power/shop.h"

namespace tarvik::tests {
namespace {

class FullDisk : public testing::Test {
 protected:
  const TempFolder folder_;
  const std::string path_ = "/tienda/almacen.db";

  static bool All() {
    const char* asked = std::getenv("TARVIK_POWER");
    return asked != nullptr && std::strcmp(asked, "all") == 0;
  }
};

TEST_F(FullDisk, IsToldAndLosesNothing) {
  Files rest;
  {
    const Disk disk;
    Shop(path_, folder_).Catalogue();
    rest = disk.Contents();
  }
  std::int64_t writes = 0;
  {
    const Disk disk(rest);
    Shop shop(path_, folder_);
    const std::int64_t before = disk.Writes();
    shop.Receives();
    shop.Sends();
    writes = disk.Writes() - before;
  }
  ASSERT_GT(writes, 100);
  const std::int64_t step = All() ? 1 : writes / 25 + 1;
  int told = 0;
  for (std::int64_t after = 0; after < writes; after += step) {
    SCOPED_TRACE("full after " + std::to_string(after) + " of " + std::to_string(writes) + " writes");
    Disk disk(rest);
    {
      Shop shop(path_, folder_);
      disk.FullAfter(after);
      shop.Receives();
      shop.Sends();
      ASSERT_TRUE(disk.WasFull());
      const auto reports = shop.Reports();
      EXPECT_FALSE(reports.empty()) << "a full disk that nobody is told of";
      EXPECT_NE(reports.front().find("El disco está lleno: database or disk is full"), std::string::npos)
          << reports.front();
      for (const std::string& report : reports) {
        told += report.find("El disco está lleno") != std::string::npos ? 1 : 0;
      }
      EXPECT_EQ(Unsound(shop.Connection()), "");
      disk.RoomAgain();
      shop.record.mensajes.clear();
      shop.Receives();
      EXPECT_TRUE(shop.Reports().empty()) << testing::PrintToString(shop.Reports());
    }
    const Disk* const same = &disk;
    ASSERT_GT(same->Acts().size(), 0U);
    Shop later(path_, folder_);
    EXPECT_EQ(Unsound(later.Connection()), "");
    later.Sends();
    EXPECT_TRUE(later.Reports().empty()) << testing::PrintToString(later.Reports());
    EXPECT_EQ(Unsound(later.Connection()), "");
  }
  EXPECT_GT(told, 0);
}

TEST_F(FullDisk, WhileANewBaseIsMadeLeavesNoneOrOneThatCanBeMade) {
  std::int64_t writes = 0;
  {
    const Disk disk;
    Shop(path_, folder_).Catalogue();
    writes = disk.Writes();
  }
  const std::int64_t step = All() ? 1 : writes / 25 + 1;
  for (std::int64_t after = 0; after < writes; after += step) {
    SCOPED_TRACE("full after " + std::to_string(after) + " of " + std::to_string(writes) + " writes");
    Disk disk;
    disk.FullAfter(after);
    const std::string error = ErrorOf([&] { Shop(path_, folder_).Catalogue(); });
    if (error != "no error") {
      EXPECT_NE(error.find("l disco está lleno"), std::string::npos) << error;
    }
    disk.RoomAgain();
    ASSERT_EQ(ErrorOf([&] { EXPECT_EQ(Unsound(Shop(path_, folder_).Connection()), ""); }), "no error");
  }
}

}  // namespace
}  // namespace tarvik::tests
