#include "data/sqlite/handle.h"

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "data/error.h"
#include "data/patience.h"
#include "data/sqlite/waits.h"
#include "data/text.h"

namespace tarvik::data::sqlite {
namespace {

// What the operator can make sense of; the engine's own text follows it.
std::string_view Reason(int code, std::string_view engine_text) {
  switch (code) {
    case SQLITE_CONSTRAINT_FOREIGNKEY:
      return "El registro depende de otro que no existe o del que otros dependen";
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
      return "Ya existe un registro con esa clave";
    case SQLITE_CONSTRAINT_NOTNULL:
      return "Falta un dato obligatorio";
    case SQLITE_READONLY_DBMOVED:
      return "El archivo de la base fue movido o borrado";
    default:
      break;
  }
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
      return "La base está ocupada por otro proceso";
    case SQLITE_FULL:
      return "El disco está lleno";
    case SQLITE_READONLY:
      return "La base es de sólo lectura";
    case SQLITE_IOERR:
      return "No se puede leer o escribir el archivo de la base";
    case SQLITE_CANTOPEN:
      return "No se puede abrir el archivo de la base";
    case SQLITE_PERM:
      return "No hay permiso para usar la base";
    case SQLITE_AUTH:
      return "La sentencia pide algo que aquí no se permite";
    case SQLITE_CORRUPT:
      return "La base está dañada";
    case SQLITE_NOTADB:
      return "El archivo no es una base de datos";
    case SQLITE_NOMEM:
      return "No hay memoria suficiente";
    case SQLITE_TOOBIG:
      return "El dato o la sentencia es demasiado grande";
    case SQLITE_MISMATCH:
      return "El dato no es del tipo de la columna";
    case SQLITE_CONSTRAINT:
      return "El registro no cumple una regla de la base";
    default:
      break;
  }
  if (engine_text.starts_with("not authorized")) return "La sentencia pide algo que aquí no se permite";
  if (engine_text.find("no such table") != std::string_view::npos) return "La tabla no existe";
  if (engine_text.find("no such column") != std::string_view::npos ||
      engine_text.find("has no column named") != std::string_view::npos) {
    return "La columna no existe";
  }
  return "La base rechazó la sentencia";
}

Trouble TroubleOf(int code) {
  switch (code) {
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
      return Trouble::kDuplicate;
    default:
      break;
  }
  if (IsBusy(code)) return Trouble::kBusy;
  return (code & 0xFF) == SQLITE_INTERRUPT ? Trouble::kSlow : Trouble::kOther;
}

}  // namespace

bool IsBusy(int code) {
  return (code & 0xFF) == SQLITE_BUSY || (code & 0xFF) == SQLITE_LOCKED || (code & 0xFF) == SQLITE_PROTOCOL;
}

void Fail(sqlite3* handle, int code, std::string_view text) {
  const std::string engine_text = RepairUtf8(sqlite3_errmsg(handle));
  const std::string description = std::string(Reason(code, engine_text)) + ": " + engine_text;
  throw Error(description, TroubleOf(code)).With("sentencia", std::string(text));
}

int RunPlain(sqlite3* handle, const char* text) {
  return sqlite3_exec(handle, text, nullptr, nullptr, nullptr);
}

namespace {

namespace fs = std::filesystem;

// Whether a file beside a base is a backup of it: its name, perhaps with a version or a date after it, and
// ".respaldo". "tienda2.v2.respaldo" and "tienda.db.respaldo" are none of "tienda".
bool IsBackupOf(std::string_view base, std::string_view name) {
  constexpr std::string_view kEnd = ".respaldo";
  if (!name.starts_with(base) || !name.ends_with(kEnd) || name.size() < base.size() + kEnd.size())
    return false;
  std::string_view between = name.substr(base.size(), name.size() - base.size() - kEnd.size());
  if (between.empty()) return true;
  if (between[0] != '.' && between[0] != '-' && between[0] != '_') return false;
  between.remove_prefix(1);
  if (between.starts_with('v')) between.remove_prefix(1);
  return !between.empty() && between[0] >= '0' && between[0] <= '9';
}

// The last backup beside a base. Empty if there is none.
std::string LastBackup(const fs::path& file) {
  std::string last;
  fs::file_time_type last_time;
  std::error_code failed;
  for (fs::directory_iterator at(file.parent_path(), failed), end; !failed && at != end;
       at.increment(failed)) {
    const std::string name = at->path().filename().string();
    if (!IsBackupOf(file.filename().string(), name)) continue;
    std::error_code ignored;
    const auto time = at->last_write_time(ignored);
    if (!last.empty() && (time < last_time || (time == last_time && name < last))) continue;
    last = name;
    last_time = time;
  }
  return last;
}

// What is safe with a file that can't be read any more.
std::string WhatNow(const Place& place) {
  const std::string last = place.in_memory ? "" : LastBackup(place.file);
  const std::string name = fs::path(place.file).filename().string();
  return "No se ha cambiado nada. No la borre: guarde una copia de " + name + ", " + name + "-wal y " + name +
         "-shm antes de hacer otra cosa. " +
         (last.empty()
              ? "No hay ningún respaldo (" + name + "*.respaldo) en su carpeta"
              : "El último respaldo de su carpeta es " + last + ": restáurelo para seguir trabajando");
}

[[noreturn]] void FailToOpen(sqlite3* handle, int code, const Place& place) {
  const std::string engine_text =
      RepairUtf8(handle != nullptr ? sqlite3_errmsg(handle) : sqlite3_errstr(code));
  if ((code & 0xFF) == SQLITE_CORRUPT) {
    throw Error("La base " + place.name + " está dañada. " + RepairUtf8(WhatNow(place)))
        .With("motor", engine_text);
  }
  if ((code & 0xFF) == SQLITE_NOTADB) {
    // With a backup beside it, it was a base once.
    const bool was = !place.in_memory && !LastBackup(place.file).empty();
    throw Error("El archivo no es una base de datos: " + place.name +
                (was ? ". Puede ser una base dañada. " + RepairUtf8(WhatNow(place)) : ""))
        .With("motor", engine_text);
  }
  if (IsBusy(code)) {
    throw Error("No se puede abrir la base " + place.name + ": está ocupada por otro proceso", Trouble::kBusy)
        .With("motor", engine_text);
  }
  std::string reason = engine_text;
  if ((code & 0xFF) == SQLITE_FULL) reason = "el disco está lleno";
  if ((code & 0xFF) == SQLITE_CANTOPEN) {
    const fs::path path(place.file);
    std::error_code failed;
    if (!fs::exists(path.parent_path(), failed)) {
      reason = "no existe la carpeta";
    } else {
      reason = fs::is_directory(path, failed) ? "es una carpeta" : "no hay permiso";
    }
  }
  throw Error("No se puede abrir la base " + place.name + ": " + reason).With("motor", engine_text);
}

// True for a base with no table at all and for one of this program. Reads the file's header, so
// this is also where a file that is no base shows.
bool IsOursOrEmpty(sqlite3* handle, const Place& place) {
  sqlite3_stmt* prepared = nullptr;
  int code = sqlite3_prepare_v2(
      handle, "SELECT count(*) = 0 OR total(lower(name) = 'version_esquema') > 0 FROM sqlite_master", -1,
      &prepared, nullptr);
  const Statement statement(prepared);
  if (code != SQLITE_OK) FailToOpen(handle, code, place);
  code = sqlite3_step(statement.get());
  if (code != SQLITE_ROW) FailToOpen(handle, code, place);
  return sqlite3_column_int(statement.get(), 0) != 0;
}

// The engine takes a file too short for a header for an empty base, and would write over it.
void RequireRoomForHeader(const Place& place) {
  constexpr std::uintmax_t kHeader = 100;
  std::error_code failed;
  const std::uintmax_t size = place.in_memory ? 0 : std::filesystem::file_size(place.file, failed);
  if (!failed && size > 0 && size < kHeader) {
    throw Error("El archivo no es una base de datos: " + place.name);
  }
}

// What new files of this process are to lack; read without setting it, since other threads make files too.
mode_t Mask() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("Umask:")) return static_cast<mode_t>(std::stoul(line.substr(6), nullptr, 8));
  }
  return 022;
}

// Nothing was written into it yet; the files beside it will be as private as it is.
void MakePrivate(const std::string& file, bool was_there) {
  struct stat now {};
  if (::stat(file.c_str(), &now) != 0 || now.st_size != 0) return;
  const mode_t before = now.st_mode & 07777;
  const mode_t mode = was_there ? before & ~mode_t{0007} : mode_t{0660} & ~Mask();
  if (mode != before) ::chmod(file.c_str(), mode);  // another user's file keeps its mode
}

void Configure(sqlite3* opened, const Place& place) {
  sqlite3_extended_result_codes(opened, 1);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_ENABLE_FKEY, 1, nullptr);
  // "..." is a name and never a text, so that a mistyped name is an error.
  sqlite3_db_config(opened, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);

  const bool may_change = IsOursOrEmpty(opened, place) && sqlite3_db_readonly(opened, "main") == 0;
  if (may_change && !place.in_memory) {
    const int changed = RunPlain(opened, "PRAGMA journal_mode = WAL");
    // Busy: another connection opens the same new file and makes the same change.
    if (changed != SQLITE_OK && !IsBusy(changed)) FailToOpen(opened, changed, place);
  }
  const int synced = RunPlain(opened, "PRAGMA synchronous = FULL");
  if (synced != SQLITE_OK) FailToOpen(opened, synced, place);
}

}  // namespace

Handle OpenHandle(const Place& place) {
  RequireRoomForHeader(place);
  std::error_code failed;
  const bool was_there = place.in_memory || fs::exists(place.file, failed);
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(place.file.c_str(), &opened, place.flags, nullptr);
  Handle handle(opened);
  if (code != SQLITE_OK) FailToOpen(opened, code, place);
  if (!place.in_memory) MakePrivate(place.file, was_there);
  Patience patience;  // of the opening alone
  Waits waits(patience, nullptr);
  waits.Watch(opened);
  Configure(opened, place);
  sqlite3_busy_handler(opened, nullptr, nullptr);
  return handle;
}

Place FindPlace(std::string_view path) {
  Place place;
  if (path == ":memory:") {
    static std::atomic<unsigned> count = 0;
    place.name = ":memory:";
    place.file = "file:/tarvik-" + std::to_string(++count) + "?vfs=memdb";
    place.flags |= SQLITE_OPEN_URI;
    place.in_memory = true;
    return place;
  }
  if (path.empty()) throw Error("La dirección de la base no dice el archivo; por ejemplo, sqlite:almacen.db");
  if (path.find('\0') != std::string_view::npos) throw Error("La ruta de la base contiene un carácter nulo");
  place.name = RepairUtf8(path);
  // The whole path, so that it holds when the process changes its folder, and so that no name has
  // a meaning of its own for the engine.
  std::error_code failed;
  place.file = std::filesystem::absolute(std::filesystem::path(path), failed).string();
  if (failed) throw Error("No se puede abrir la base " + place.name + ": " + failed.message());
  return place;
}

}  // namespace tarvik::data::sqlite
