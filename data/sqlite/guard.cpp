#include "data/sqlite/guard.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "data/text.h"

namespace tarvik::data::sqlite {
namespace {

// A step may take as long as the longest text takes. Few steps and a limit of some megabytes keep the looks
// at the clock a fraction of a second apart.
constexpr int kSteps = 100;              // of the engine, between two looks at the clock
constexpr int kLongestText = 2'000'000;  // that one value may become inside a statement

// Those of RequireHarmless as the engine names them, and what LIKE is to it.
constexpr std::array<std::string_view, 15> kHarmless = {"sum",   "count",    "min",    "max",     "avg",
                                                        "upper", "lower",    "trim",   "length",  "abs",
                                                        "round", "coalesce", "substr", "replace", "like"};

bool IsHarmless(std::string_view name) {
  return std::any_of(kHarmless.begin(), kHarmless.end(),
                     [&](std::string_view known) { return EqualsNoCase(known, name); });
}

// The engine's own tables: what is in the base, and what its settings are.
bool IsEngines(std::string_view table) {
  return EqualsNoCase(table.substr(0, 7), "sqlite_") || EqualsNoCase(table.substr(0, 7), "pragma_");
}

}  // namespace

void Guard::Watch(sqlite3* handle) {
  handle_ = handle;
  sqlite3_set_authorizer(handle, &Guard::Authorise, this);
}

int Guard::Authorise(void* self, int action, const char* first, const char* second, const char*,
                     const char* within) {
  if (!static_cast<const Guard*>(self)->on_) return SQLITE_OK;
  switch (action) {
    case SQLITE_ATTACH:
    case SQLITE_DETACH:
    case SQLITE_PRAGMA:
    case SQLITE_RECURSIVE:
    case SQLITE_CREATE_VTABLE:
    case SQLITE_DROP_VTABLE:
      return SQLITE_DENY;
    case SQLITE_FUNCTION:
      // What a trigger of the base calls was put there by whoever made the trigger.
      return within != nullptr || (second != nullptr && IsHarmless(second)) ? SQLITE_OK : SQLITE_DENY;
    case SQLITE_READ:
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
      return within == nullptr && first != nullptr && IsEngines(first) ? SQLITE_DENY : SQLITE_OK;
    default:
      return SQLITE_OK;
  }
}

// The time counts from here, where the engine has its locks and reads rows.
bool Guard::Progress() {
  if (began_ == Clock::time_point{}) began_ = Clock::now();
  time_up_ = Clock::now() - began_ > limit_;
  return time_up_;
}

Guard::Watched::Watched(Guard& guard, bool on, std::chrono::milliseconds limit) : guard_(guard), on_(on) {
  guard_.on_ = on;
  guard_.time_up_ = false;
  if (!on) return;
  length_ = sqlite3_limit(guard_.handle_, SQLITE_LIMIT_LENGTH, kLongestText);
  if (limit.count() <= 0) return;
  guard_.limit_ = limit;
  guard_.began_ = {};
  sqlite3_progress_handler(
      guard_.handle_, kSteps, [](void* self) { return static_cast<Guard*>(self)->Progress() ? 1 : 0; },
      &guard_);
}

Guard::Watched::~Watched() {
  guard_.on_ = false;
  if (!on_) return;
  sqlite3_limit(guard_.handle_, SQLITE_LIMIT_LENGTH, length_);
  sqlite3_progress_handler(guard_.handle_, 0, nullptr, nullptr);
}

}  // namespace tarvik::data::sqlite
