// Lives on the embedded engine: whoever holds a number is known to live as long as his process does, and not
// a moment longer; and nobody else's handling of files takes that away.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "data/engine.h"
#include "data/error.h"
#include "tests/data/processes.h"
#include "tests/data/support.h"

namespace tarvik::data {
namespace {

using tests::ErrorOf;
using tests::OtherProgram;
using tests::TempFolder;

class FileLives : public testing::Test {
 protected:
  const TempFolder folder_;
  const std::string address_ = "sqlite:" + folder_.File("a.db");
  const std::string side_ = folder_.File("a.db-vidas");
};

TEST_F(FileLives, EndWithTheirConnection) {
  const auto base = OpenBase(address_);
  const auto one = base->Connect();
  auto other = base->Connect();
  EXPECT_FALSE(one->Lives(7));
  other->Live(7);
  EXPECT_TRUE(one->Lives(7));
  EXPECT_TRUE(other->Lives(7)) << "its own";
  EXPECT_FALSE(one->Lives(6));
  EXPECT_FALSE(one->Lives(8));
  other->Close();
  EXPECT_FALSE(one->Lives(7));
  other = base->Connect();
  other->Live(7);
  other.reset();
  EXPECT_FALSE(one->Lives(7));
}

TEST_F(FileLives, OneNumberIsOfOneAndAConnectionHasOne) {
  const auto base = OpenBase(address_);
  const auto one = base->Connect();
  const auto other = base->Connect();
  one->Live(7);
  one->Live(7);
  EXPECT_EQ(ErrorOf([&] { other->Live(7); }),
            "No se puede anotar quién trabaja en la base, con el número 7: ya lo tiene otro");
  one->Live(9);
  EXPECT_TRUE(other->Lives(9));
  EXPECT_FALSE(other->Lives(7));
  other->Live(7);
  EXPECT_TRUE(one->Lives(7));
  for (const std::int64_t number : {std::int64_t{0}, std::int64_t{-3}, INT64_MAX}) {
    EXPECT_NE(ErrorOf([&] { other->Live(number); }), "no error");
    EXPECT_FALSE(other->Lives(number));
  }
}

TEST_F(FileLives, OfAnotherProgramEndAtOnceHoweverItEnds) {
  OtherProgram killed([&](const OtherProgram::Say& say) {
    const auto connection = OpenBase(address_)->Connect();
    connection->Live(11);
    say("lives");
    ::pause();
  });
  ASSERT_EQ(killed.Hear(), "lives");
  const auto connection = OpenBase(address_)->Connect();
  EXPECT_TRUE(connection->Lives(11));
  killed.Kill();
  EXPECT_FALSE(connection->Lives(11));
}

TEST_F(FileLives, OfAStoppedProgramGoOn) {
  OtherProgram stopped([&](const OtherProgram::Say& say) {
    const auto connection = OpenBase(address_)->Connect();
    connection->Live(11);
    say("lives");
    ::pause();
  });
  ASSERT_EQ(stopped.Hear(), "lives");
  stopped.Stop();
  EXPECT_TRUE(OpenBase(address_)->Connect()->Lives(11));
}

TEST_F(FileLives, AreNotLostWhenSomebodyOpensAndClosesTheFile) {
  const auto base = OpenBase(address_);
  const auto holder = base->Connect();
  holder->Live(5);
  ::close(::open(side_.c_str(), O_RDWR));
  tests::ReadFile(side_);
  (void)base->Connect()->Lives(5);
  EXPECT_TRUE(base->Connect()->Lives(5));
  EXPECT_EQ(std::filesystem::file_size(side_), 0U) << "nothing is written";
}

TEST_F(FileLives, AQuestionMakesNoFile) {
  const auto connection = OpenBase(address_)->Connect();
  EXPECT_FALSE(connection->Lives(5));
  EXPECT_FALSE(std::filesystem::exists(side_));
}

TEST_F(FileLives, InAFolderThatMayNotBeWrittenIsToldWhy) {
  const auto here = OpenBase(address_)->Connect();  // so that what the engine needs beside the base is there
  here->Execute("CREATE TABLE t (a)");
  for (const char* end : {"", "-wal", "-shm"}) {
    ASSERT_EQ(::chmod((folder_.File("a.db") + end).c_str(), 0666), 0);
  }
  std::filesystem::remove(side_);
  ASSERT_EQ(::chmod(folder_.Path().c_str(), 0555), 0);
  const bool administrator = ::geteuid() == 0;
  if (administrator) {
    ASSERT_EQ(::seteuid(65534), 0);
  }
  bool lives = true;
  std::string error;
  const std::string written = ErrorOf([&] {
    const auto connection = OpenBase(address_)->Connect();
    lives = connection->Lives(5);
    error = ErrorOf([&] { connection->Live(5); });
    connection->Execute("INSERT INTO t VALUES (1)");
  });
  if (administrator) {
    ASSERT_EQ(::seteuid(0), 0);
  }
  ASSERT_EQ(::chmod(folder_.Path().c_str(), 0755), 0);
  EXPECT_FALSE(lives);
  EXPECT_EQ(error, "No se puede anotar quién trabaja en la base; no se puede escribir " + side_ +
                       ": Permission denied");
  EXPECT_EQ(written, "no error") << "nobody can stand in line there, and all work as well as they can";
}

TEST_F(FileLives, ThatMayNotBeLookedAtAreNotTakenForDead) {
  OpenBase(address_)->Connect()->Live(5);
  ASSERT_EQ(::chmod(folder_.File("a.db").c_str(), 0666), 0);
  ASSERT_EQ(::chmod(folder_.Path().c_str(), 0777), 0);
  ASSERT_EQ(::chmod(side_.c_str(), 0), 0);
  const bool administrator = ::geteuid() == 0;
  if (administrator) {
    ASSERT_EQ(::seteuid(65534), 0);
  }
  const std::string error = ErrorOf([&] { (void)OpenBase(address_)->Connect()->Lives(5); });
  if (administrator) {
    ASSERT_EQ(::seteuid(0), 0);
  }
  EXPECT_EQ(error,
            "No se puede saber quién trabaja en la base; no se puede leer " + side_ + ": Permission denied");
}

TEST(MemoryLives, AreOfTheirOwnBaseAlone) {
  const auto base = OpenBase("sqlite::memory:");
  const auto one = base->Connect();
  auto other = base->Connect();
  const auto elsewhere = OpenBase("sqlite::memory:")->Connect();
  other->Live(3);
  EXPECT_TRUE(one->Lives(3));
  EXPECT_FALSE(elsewhere->Lives(3));
  EXPECT_NE(ErrorOf([&] { one->Live(3); }), "no error");
  elsewhere->Live(3);
  other.reset();
  EXPECT_FALSE(one->Lives(3));
  EXPECT_TRUE(elsewhere->Lives(3));
}

TEST(MemoryLives, OfAClosedConnectionCanNotBeAsked) {
  const auto connection = OpenBase("sqlite::memory:")->Connect();
  connection->Live(3);
  connection->Close();
  EXPECT_EQ(ErrorOf([&] { (void)connection->Lives(3); }), "La base está cerrada");
  EXPECT_EQ(ErrorOf([&] { connection->Live(3); }), "La base está cerrada");
}

}  // namespace
}  // namespace tarvik::data
