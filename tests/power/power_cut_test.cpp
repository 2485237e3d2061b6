// The power goes away at any point of entering and posting documents, and of making a new base: behind it the
// base opens, is sound, and holds whatever was acknowledged, and of what was under way all or nothing.
//
// A sample of the points by default; with TARVIK_POWER=all every one of them, each with several fates of what
// was not synced.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "tests/power/shop.h"

namespace tarvik::tests {
namespace {

bool All() {
  const char* asked = std::getenv("TARVIK_POWER");
  return asked != nullptr && std::strcmp(asked, "all") == 0;
}

// The base of a shop with its catalogue, at rest.
const Files& ShopAtRest(const std::string& path, const TempFolder& folder) {
  static const Files files = [&] {
    const Disk disk;
    Shop(path, folder).Catalogue();
    return disk.Contents();
  }();
  return files;
}

// What was done to a disk, and what was acknowledged when.
struct Recorded {
  Files beginning;
  std::vector<DiskAct> acts;
  std::vector<Commit> commits;
};

class PowerCut : public testing::Test {
 protected:
  const TempFolder folder_;
  const std::string path_ = "/tienda/almacen.db";  // on the disk of the tests' own only

  Recorded Day() {
    Recorded day{ShopAtRest(path_, folder_), {}, {}};
    const Disk disk(day.beginning);
    Commits commits(disk, 60);
    {
      Shop shop(path_, folder_);
      commits.Begin(path_);
      shop.Receives(12);
      shop.Sends(9);
      EXPECT_TRUE(shop.Reports().empty()) << testing::PrintToString(shop.Reports());
    }
    day.acts = disk.Acts();
    day.commits = commits.All();
    return day;
  }

  // What is wrong with the base behind a cut; empty if nothing is.
  static std::string Wrong(const std::string& path, const Recorded& recorded, std::size_t acts, Files found) {
    std::size_t acknowledged = 0;
    while (acknowledged + 1 < recorded.commits.size() && recorded.commits[acknowledged + 1].acts <= acts) {
      ++acknowledged;
    }
    const Disk disk(std::move(found));
    try {
      const auto connection = data::OpenBase("sqlite:" + path)->Connect();
      std::string wrong = Unsound(*connection);
      const std::string books = Books(path);
      const bool next =
          acknowledged + 1 < recorded.commits.size() && books == recorded.commits[acknowledged + 1].books;
      if (books != recorded.commits[acknowledged].books && !next) {
        wrong += "is not what was acknowledged with commit " + std::to_string(acknowledged);
      }
      return wrong;
    } catch (const data::Error& error) {
      return error.what();
    }
  }
};

TEST_F(PowerCut, WhileDocumentsAreEnteredAndPostedLosesNothingAndLeavesNothingHalf) {
  const Recorded day = Day();
  ASSERT_GT(day.commits.size(), 20U);
  ASSERT_GT(day.acts.size(), 500U);
  const std::size_t step = All() ? 1 : day.acts.size() / 150 + 1;
  const std::uint32_t fates = All() ? 3 : 1;
  Cut cut(day.beginning);
  int bad = 0;
  int looked_at = 0;
  for (std::size_t acts = 0; acts <= day.acts.size() && bad < 5; ++acts) {
    if (acts > 0) cut.Next(day.acts[acts - 1]);
    if (acts % step != 0 && acts != day.acts.size()) continue;
    for (std::uint32_t fate = 0; fate < fates; ++fate) {
      const auto seed = static_cast<std::uint32_t>(acts * 7 + fate);
      const std::string wrong = Wrong(path_, day, acts, cut.Found(seed));
      EXPECT_EQ(wrong, "") << "behind act " << acts << " of " << day.acts.size() << ", seed " << seed;
      bad += wrong.empty() ? 0 : 1;
      ++looked_at;
    }
  }
  RecordProperty("acts", static_cast<int>(day.acts.size()));
  RecordProperty("commits", static_cast<int>(day.commits.size()));
  RecordProperty("cuts", looked_at);
  std::cout << day.acts.size() << " acts, " << day.commits.size() << " commits, " << looked_at << " cuts\n";
}

// The program is killed and the machine goes on: everything that was written is there, synced or not.
TEST_F(PowerCut, AKilledProgramLosesNothingAtAnyPoint) {
  const Recorded day = Day();
  const std::size_t step = All() ? 1 : day.acts.size() / 50 + 1;
  Cut cut(day.beginning);
  for (std::size_t acts = 1; acts <= day.acts.size(); ++acts) {
    cut.Next(day.acts[acts - 1]);
    if (acts % step == 0) {
      ASSERT_EQ(Wrong(path_, day, acts, cut.Whole()), "") << "behind act " << acts;
    }
  }
}

TEST_F(PowerCut, BehindItWorkGoesOn) {
  const Recorded day = Day();
  const std::size_t step = All() ? 40 : day.acts.size() / 6 + 1;
  Cut cut(day.beginning);
  for (std::size_t acts = 1; acts <= day.acts.size(); ++acts) {
    cut.Next(day.acts[acts - 1]);
    if (acts % step != 0) continue;
    const Disk disk(cut.Found(static_cast<std::uint32_t>(acts)));
    Shop shop(path_, folder_);
    shop.Receives();
    shop.Sends();
    EXPECT_TRUE(shop.Reports().empty()) << "behind act " << acts << testing::PrintToString(shop.Reports());
    EXPECT_EQ(Unsound(shop.Connection()), "") << "behind act " << acts;
    const auto posted = shop.Connection().Run("SELECT COUNT(*) FROM salidas WHERE estado = 'CO'", {});
    EXPECT_GE(data::ToNumber(posted.rows.at(0).at(0)), 1) << "behind act " << acts;
  }
}

TEST_F(PowerCut, WhileANewBaseIsMadeLeavesOneThatIsMadeToItsEnd) {
  std::vector<DiskAct> acts;
  {
    const Disk disk;
    Shop(path_, folder_).Catalogue();
    acts = disk.Acts();
  }
  ASSERT_GT(acts.size(), 300U);
  const std::size_t step = All() ? 1 : acts.size() / 40 + 1;
  Cut cut({});
  for (std::size_t done = 1; done <= acts.size(); ++done) {
    cut.Next(acts[done - 1]);
    if (done % step != 0) continue;
    const Disk disk(cut.Found(static_cast<std::uint32_t>(done)));
    ASSERT_EQ(ErrorOf([&] {
                Shop shop(path_, folder_);
                EXPECT_EQ(Unsound(shop.Connection()), "");
                const auto texts = shop.Connection().Run("SELECT COUNT(*) FROM mensajes", {});
                EXPECT_GT(data::ToNumber(texts.rows.at(0).at(0)), 40);
              }),
              "no error")
        << "behind act " << done << " of " << acts.size();
  }
}

// What these tests would say if the engine were told not to sync.
TEST_F(PowerCut, ABaseThatIsNotSyncedIsFoundOut) {
  Recorded day{ShopAtRest(path_, folder_), {}, {}};
  {
    const Disk disk(day.beginning);
    Commits commits(disk, 60);
    const auto connection = data::OpenBase("sqlite:" + path_)->Connect();
    connection->Execute("PRAGMA synchronous = OFF");
    commits.Begin(path_);
    for (int i = 0; i < 20; ++i) connection->Run("INSERT INTO bitacora (texto) VALUES (?)", {i});
    day.acts = disk.Acts();
    day.commits = commits.All();
  }
  Cut cut(day.beginning);
  int wrong = 0;
  for (std::size_t acts = 1; acts <= day.acts.size(); ++acts) {
    cut.Next(day.acts[acts - 1]);
    wrong += Wrong(path_, day, acts, cut.Found(static_cast<std::uint32_t>(acts))).empty() ? 0 : 1;
  }
  EXPECT_GT(wrong, 10);
}

}  // namespace
}  // namespace tarvik::tests
