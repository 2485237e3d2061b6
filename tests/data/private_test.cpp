// A new base and what stands beside it belong to its owner and group; a damaged base says what is safe to do.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>

#include "data/engine.h"
#include "data/error.h"
#include "data/schema.h"
#include "tests/data/support.h"

namespace tarvik::data {
namespace {

using tests::ErrorOf;
using tests::ReadFile;
using tests::TempFolder;
using tests::WriteFile;

// The user's mask for the time of a test.
class Mask {
 public:
  explicit Mask(mode_t mask) : before_(::umask(mask)) {}
  ~Mask() { ::umask(before_); }
  Mask(const Mask&) = delete;
  Mask& operator=(const Mask&) = delete;

 private:
  mode_t before_;
};

int ModeOf(const std::string& file) {
  struct stat found {};
  return ::stat(file.c_str(), &found) == 0 ? static_cast<int>(found.st_mode & 07777) : -1;
}

TEST(Private, ANewBaseAndAllBesideItBelongToOwnerAndGroup) {
  for (const auto& [mask, mode] : {std::pair{0000, 0660}, {0002, 0660}, {0022, 0640}, {0077, 0600}}) {
    const TempFolder folder;
    const Mask masked(static_cast<mode_t>(mask));
    const std::string file = folder.File("a.db");
    const auto connection = OpenBase("sqlite:" + file)->Connect();
    PrepareSchema(*connection);
    connection->Live(1);
    for (const char* end : {"", "-wal", "-shm", "-vidas"}) {
      EXPECT_EQ(ModeOf(file + end), mode) << end << " with the mask " << mask;
    }
  }
}

TEST(Private, TheFileIsPrivateBeforeAnythingIsWritten) {
  const TempFolder folder;
  const Mask masked(0);
  const std::string file = folder.File("a.db");
  // What another's hand has put there empty is asked to keep others out too; what has contents is his own.
  WriteFile(file, "");
  ASSERT_EQ(::chmod(file.c_str(), 0666), 0);
  OpenBase("sqlite:" + file);
  EXPECT_EQ(ModeOf(file), 0660);
  ASSERT_EQ(::chmod(file.c_str(), 0664), 0);
  OpenBase("sqlite:" + file)->Connect()->Execute("CREATE TABLE t (a)");
  EXPECT_EQ(ModeOf(file), 0664);
}

// --- Damaged ones ------------------------------------------------------------------------------

class Damaged : public testing::Test {
 protected:
  Damaged() {
    const auto connection = OpenBase("sqlite:" + file_)->Connect();
    PrepareSchema(*connection);
  }
  std::string Opened() {
    return ErrorOf([&] { OpenBase("sqlite:" + file_)->Connect(); });
  }
  void Backup(const std::string& name, int minutes_ago) {
    WriteFile(folder_.File(name), "x");
    std::filesystem::last_write_time(folder_.File(name), std::filesystem::file_time_type::clock::now() -
                                                             std::chrono::minutes(minutes_ago));
  }

  const TempFolder folder_;
  const std::string file_ = folder_.File("a.db");
  const std::string safe_ =
      "No se ha cambiado nada. No la borre: guarde una copia de a.db, a.db-wal y a.db-shm antes de hacer "
      "otra "
      "cosa. ";
};

TEST_F(Damaged, AHalfWrittenBaseIsToldWithWhatIsSafeAndNothingIsWritten) {
  const std::string half = ReadFile(file_).substr(0, 3 * 4096);
  WriteFile(file_, half);
  EXPECT_EQ(Opened(), "La base " + file_ + " está dañada. " + safe_ +
                          "No hay ningún respaldo (a.db*.respaldo) en su carpeta");
  EXPECT_EQ(ReadFile(file_), half);
}

TEST_F(Damaged, TheLastBackupIsNamed) {
  WriteFile(file_, ReadFile(file_).substr(0, 3 * 4096));
  Backup("a.db.2024-03-01.respaldo", 30);
  Backup("a.db.2024-03-05.respaldo", 5);
  Backup("a.db.2024-03-04.respaldo", 10);
  Backup("b.db.2024-03-06.respaldo", 1);
  Backup("a.db2.v2-20240306-101010.respaldo", 1);
  Backup("a.db.otra.v2-20240306-101010.respaldo", 1);
  Backup("a.db.2024-03-07.copia", 1);
  EXPECT_EQ(Opened(),
            "La base " + file_ + " está dañada. " + safe_ +
                "El último respaldo de su carpeta es a.db.2024-03-05.respaldo: restáurelo para seguir "
                "trabajando");
}

TEST_F(Damaged, AListOfTablesThatCanNotBeReadIsToldToo) {
  std::string bytes = ReadFile(file_);
  std::fill(bytes.begin() + 100, bytes.begin() + 4096, '\x55');
  WriteFile(file_, bytes);
  EXPECT_EQ(Opened().substr(0, file_.size() + 20),
            ("La base " + file_ + " está dañada. ").substr(0, file_.size() + 20));
}

TEST_F(Damaged, AFileWithoutItsFirstPageIsNoBaseButWhereABackupIsItWasOne) {
  std::string bytes = ReadFile(file_);
  std::fill(bytes.begin(), bytes.begin() + 4096, '\x55');
  WriteFile(file_, bytes);
  EXPECT_EQ(Opened(), "El archivo no es una base de datos: " + file_);
  Backup("a.db.respaldo", 5);
  EXPECT_EQ(Opened(),
            "El archivo no es una base de datos: " + file_ + ". Puede ser una base dañada. " + safe_ +
                "El último respaldo de su carpeta es a.db.respaldo: restáurelo para seguir trabajando");
}

}  // namespace
}  // namespace tarvik::data
