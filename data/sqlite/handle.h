// The engine's handle of a base: how one is opened, where, and what its refusals mean to an operator. What is
// asked through it is the connection's: see sqlite_engine.cpp.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <string_view>

namespace tarvik::data::sqlite {

struct CloseHandle {
  void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
};
using Handle = std::unique_ptr<sqlite3, CloseHandle>;

struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

// Throws what the engine has refused, as an operator can make sense of it; the engine's own text follows.
[[noreturn]] void Fail(sqlite3* handle, int code, std::string_view text);

// The base is busy, and nothing was carried out: the same may be asked again.
bool IsBusy(int code);

// Runs a statement of the engine's own house-keeping, whose rows don't matter.
int RunPlain(sqlite3* handle, const char* text);

// How a base is opened, whoever asks for the connection.
struct Place {
  std::string name;  // for the operator
  std::string file;  // for the engine; of a base in memory a name that no other has
  int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
  bool in_memory = false;
};

// What follows the scheme of an address. Throws Error if that names no file.
Place FindPlace(std::string_view path);

// A new file belongs to its owner and group alone. Throws Error, with nothing written, for what can't be
// opened and what is no base; for a damaged one the text says what is safe to do, and which backup is the
// last.
Handle OpenHandle(const Place& place);

}  // namespace tarvik::data::sqlite
