// Copies of a base, one way for each engine. It never reads or writes a base's file by itself: only the
// engine does.
#include "data/backup.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include "data/error.h"
#include "data/schema.h"

namespace tarvik::data {
namespace {

namespace fs = std::filesystem;

std::string One(EngineConnection& connection, std::string_view text) {
  return ToText(connection.Run(text, {}).rows.at(0).at(0));
}

// --- A file ------------------------------------------------------------------------------------

class FileBackup final : public Backup {
 public:
  explicit FileBackup(std::string file) : Backup(std::move(file)) {}
  ~FileBackup() override {
    if (kept_) return;
    std::error_code ignored;
    for (const char* behind : {"", "-wal", "-shm", "-journal"}) fs::remove(where_ + behind, ignored);
  }
  // Gets its final name once it is complete: a file of that name can be trusted.
  void Name(const std::string& name) {
    std::error_code failed;
    fs::rename(where_, name, failed);
    if (failed) throw Error("no se puede dar nombre al archivo " + name + ": " + failed.message());
    where_ = name;
  }
};

// A name that is free: two copies within a second get different ones.
std::string FreeName(const std::string& front) {
  std::string name = front + ".respaldo";
  std::error_code ignored;
  for (int more = 2; fs::exists(fs::symlink_status(name, ignored)); ++more) {
    name = front + "-" + std::to_string(more) + ".respaldo";
  }
  return name;
}

// An empty file that nobody else can read, for the engine to fill.
void MakePrivate(const std::string& file, const std::string& like) {
  std::error_code failed;
  if (!std::ofstream(file)) throw Error("no se puede escribir en la carpeta de la base");
  using enum fs::perms;
  const fs::perms wanted = fs::status(like, failed).permissions() & (group_read | group_write);
  if (!failed) fs::permissions(file, wanted | owner_read | owner_write, failed);
  if (failed) throw Error("no se puede proteger el archivo " + file + ": " + failed.message());
}

void LookThrough(const std::string& file, int version) {
  const auto copy = OpenBase("sqlite:" + file)->Connect();
  const std::string found = One(*copy, "PRAGMA quick_check(1)");
  if (found != "ok") throw Error("la copia no está sana: " + found);
  if (One(*copy, "SELECT COALESCE(MAX(version), 0) FROM version_esquema") != std::to_string(version)) {
    throw Error("la copia no es de la versión " + std::to_string(version));
  }
}

std::unique_ptr<Backup> CopyFile(EngineConnection& connection, const std::string& file, int version) {
  const std::string now = One(connection, "SELECT strftime('%Y%m%d-%H%M%S', 'now', 'localtime')");
  const std::string name = FreeName(file + ".v" + std::to_string(version) + "-" + now);
  auto backup = std::make_unique<FileBackup>(name + ".parcial");
  MakePrivate(backup->Where(), file);
  {
    const auto reader = OpenBase("sqlite:" + file)->Connect();
    // It only reads, but the engine cannot tell: without patience it does not queue with the writers, who
    // would all wait for the caller's lock.
    reader->Waiting().ActBegins();
    reader->Waiting().Vain();
    reader->Run("VACUUM INTO ?", {backup->Where()});
  }
  LookThrough(backup->Where(), version);
  backup->Name(name);
  return backup;
}

// --- A schema of the server --------------------------------------------------------------------

class SchemaBackup final : public Backup {
 public:
  SchemaBackup(EngineConnection& connection, std::string name)
      : Backup(std::move(name)), connection_(connection) {}
  ~SchemaBackup() override {
    if (kept_) return;
    try {
      connection_.Execute("DROP SCHEMA IF EXISTS " + where_ + " CASCADE");
    } catch (const Error&) {  // it is left there, and does no harm
    }
  }

 private:
  EngineConnection& connection_;
};

// Every statement of the next transaction sees the same instant.
class OneInstant {
 public:
  explicit OneInstant(EngineConnection& connection) : connection_(connection) {
    connection_.Execute("SET default_transaction_isolation = 'repeatable read'");
  }
  ~OneInstant() {
    try {
      connection_.Execute("SET default_transaction_isolation = 'read committed'");
    } catch (const Error&) {  // the session is gone, and a new one begins with that
    }
  }
  OneInstant(const OneInstant&) = delete;
  OneInstant& operator=(const OneInstant&) = delete;

 private:
  EngineConnection& connection_;
};

std::unique_ptr<Backup> CopySchema(EngineConnection& connection, int version) {
  const std::string now = One(connection, "SELECT to_char(now(), 'YYYYMMDD_HH24MISS')");
  const std::string front = "respaldo_v" + std::to_string(version) + "_" + now;
  std::string name = front;
  const auto taken = [&] {
    return !connection.Run("SELECT 1 FROM pg_catalog.pg_namespace WHERE nspname = ?", {name}).rows.empty();
  };
  for (int more = 2; taken(); ++more) name = front + "_" + std::to_string(more);

  std::vector<std::string> tables = {"retenciones"};  // of versions 1 and 2
  for (const Table& table : Schema()) tables.emplace_back(table.name);
  const OneInstant all(connection);
  Transaction whole(connection);
  connection.Execute("CREATE SCHEMA " + name);
  for (const std::string& table : tables) {
    if (connection.Columns(table).empty()) continue;
    connection.Execute("CREATE TABLE " + name + "." + table + " AS TABLE " + table);
  }
  whole.Commit();
  return std::make_unique<SchemaBackup>(connection, name);
}

}  // namespace

std::string FileOf(EngineConnection& connection) {
  if (connection.Kind() != Dialect::Sqlite) return {};
  // One in memory has a name too, but no file behind it.
  if (One(connection, "PRAGMA journal_mode") == "memory") return {};
  return One(connection, "SELECT file FROM pragma_database_list WHERE name = 'main'");
}

std::unique_ptr<Backup> BackUp(EngineConnection& connection, int version) {
  if (connection.Kind() == Dialect::Postgresql) return CopySchema(connection, version);
  const std::string file = FileOf(connection);
  return file.empty() ? nullptr : CopyFile(connection, file, version);
}

std::string OwnerOf(const std::string& file, bool& is_us) {
  struct stat about {};
  is_us = false;
  if (::stat(file.c_str(), &about) != 0) return {};
  is_us = about.st_uid == ::geteuid();
  struct passwd entry {};
  struct passwd* found = nullptr;
  std::array<char, 4096> room{};
  ::getpwuid_r(about.st_uid, &entry, room.data(), room.size(), &found);
  return found != nullptr ? std::string(entry.pw_name) : std::to_string(about.st_uid);
}

}  // namespace tarvik::data
