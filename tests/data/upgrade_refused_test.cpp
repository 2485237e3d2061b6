// Who may not bring a base to this version, and where it can't be copied first: they are told, and the base
// stays as it was.
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "data/backup.h"
#include "tests/data/old_base.h"

namespace tarvik::data {
namespace {

// --- Who may not, in a file -----------------------------------------------------------------------

// The administrator may write anywhere: what nobody in particular may is tried as nobody in particular.
class AsNobody {
 public:
  AsNobody() : administrator_(::geteuid() == 0) {
    if (administrator_ && ::seteuid(65534) != 0) ADD_FAILURE();
  }
  ~AsNobody() {
    if (administrator_ && ::seteuid(0) != 0) ADD_FAILURE();
  }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;

 private:
  bool administrator_;
};

TEST_F(Version2, AReadOnlyFileSaysWhoMustOpenItFirst) {
  if (on_server_) GTEST_SKIP() << "a file";
  old_.reset();
  base_.reset();
  ASSERT_EQ(::chmod(folder_.File("tienda.db").c_str(), 0444), 0);
  ASSERT_EQ(::chmod(folder_.Path().c_str(), 0777), 0);
  bool is_us = false;
  const std::string owner = OwnerOf(folder_.File("tienda.db"), is_us);
  EXPECT_TRUE(is_us);
  std::string error;
  {
    const AsNobody nobody;
    error = ErrorOf([&] { PrepareSchema(*OpenBase(address_)->Connect()); });
  }
  EXPECT_TRUE(error.starts_with("La base es de la versión 2 y este programa usa la " +
                                std::to_string(kSchemaVersion) +
                                ". Debe abrirla primero con este programa su dueño (" + owner + ")"))
      << error;
}

TEST_F(Version2, AFolderThatTakesNoBackupLeavesItAsItWas) {
  if (on_server_) GTEST_SKIP() << "a file";
  const std::string before = Contents(Old());
  // Another station has it open: the engine's own files are there.
  for (const char* behind : {"", "-wal", "-shm"}) {
    ASSERT_EQ(::chmod((folder_.File("tienda.db") + behind).c_str(), 0666), 0);
  }
  ASSERT_EQ(::chmod(folder_.Path().c_str(), 0555), 0);
  std::string error;
  {
    const AsNobody nobody;
    error = ErrorOf([&] { PrepareSchema(*OpenBase(address_)->Connect()); });
  }
  ASSERT_EQ(::chmod(folder_.Path().c_str(), 0777), 0);
  EXPECT_TRUE(error.starts_with("No se pudo respaldar la base antes de actualizarla de la versión 2 a la " +
                                std::to_string(kSchemaVersion) +
                                ", y "
                                "quedó como estaba: no se puede escribir en la carpeta de la base"))
      << error;
  ExpectOldVersionWhole(before);
  EXPECT_TRUE(Backups().empty());
}

TEST_F(Version2, ADiskWithNoRoomForTheBackupLeavesItAsItWas) {
  if (on_server_) GTEST_SKIP() << "a file";
  const std::string before = Contents(Old());
  // In a process of its own, where no file may grow beyond a few pages.
  std::string told = folder_.File("dicho.txt");
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const auto connection = OpenBase(address_)->Connect();
    ::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit few { 65536, 65536 };
    ::setrlimit(RLIMIT_FSIZE, &few);
    tests::WriteFile(told, ErrorOf([&] { PrepareSchema(*connection); }));
    ::_exit(0);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  const std::string error = tests::ReadFile(told);
  EXPECT_TRUE(error.starts_with("No se pudo respaldar la base antes de actualizarla de la versión 2 a la " +
                                std::to_string(kSchemaVersion) +
                                ", y "
                                "quedó como estaba: "))
      << error;
  ExpectOldVersionWhole(before);
  EXPECT_TRUE(Backups().empty());
}

// --- Who may not, on a server ---------------------------------------------------------------------

TEST_F(Version2, ARoleThatOnlyUsesTheTablesIsToldWhoMustOpenItFirstAndWorksAfterwards) {
  if (!on_server_) GTEST_SKIP() << "roles are a server's";
  const std::string role = "operador_" + std::to_string(::getpid());
  Old().Execute("CREATE ROLE " + role + " LOGIN");
  Old().Execute("GRANT SELECT, INSERT, UPDATE ON ALL TABLES IN SCHEMA public TO " + role);
  const std::string owner = ToText(Single("SELECT current_user"));
  std::string address = address_;
  address.replace(address.find(owner + "@"), owner.size(), role);
  {
    const auto connection = OpenBase(address)->Connect();
    EXPECT_EQ(ErrorOf([&] { PrepareSchema(*connection); }),
              "La base es de la versión 2 y este programa usa la " + std::to_string(kSchemaVersion) +
                  ". Debe abrirla primero con este programa su "
                  "dueño (" +
                  owner + "), que es quien puede actualizarla");
    EXPECT_EQ(Single("SELECT MAX(version) FROM version_esquema"), Value(2));

    PrepareSchema(Old());
    EXPECT_EQ(ErrorOf([&] { EXPECT_FALSE(PrepareSchema(*connection)); }), "no error");
    EXPECT_EQ(ErrorOf([&] {
                connection->Run("INSERT INTO tenencias (tipo, documento) VALUES ('Entrada', 3)", {});
                connection->Run("DELETE FROM tenencias WHERE documento = 3", {});
                PostAsVersion2(*connection, 50, 1);
              }),
              "no error");
    EXPECT_NE(ErrorOf([&] { connection->Run("DELETE FROM bitacora", {}); }), "no error")
        << "nobody takes anything out of the record";
    Old().Execute("DROP INDEX una_vez_salida");
    EXPECT_NE(ErrorOf([&] { PrepareSchema(*connection); }).find("(" + owner + ")"), std::string::npos);
  }
  Old().Execute("DROP OWNED BY " + role);
  Old().Execute("DROP ROLE " + role);
}

}  // namespace
}  // namespace tarvik::data
