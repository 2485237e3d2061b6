// The embedded engine: one file for a base, or one base in memory. Its C library is seen by the
// .cpp alone. It makes no tables: see data/schema.h.
#pragma once

#include <memory>
#include <string_view>

#include "data/engine.h"

namespace tarvik::data {

inline constexpr std::string_view kSqliteScheme = "sqlite:";

// For an address that begins with kSqliteScheme; otherwise as OpenBase().
//
// A file of ours, or a new one, is put into write-ahead mode: screens read while another station
// posts. In memory there is no such mode, so there a reader waits while another connection of the
// same base is inside a transaction.
std::unique_ptr<Base> OpenSqlite(std::string_view address);

}  // namespace tarvik::data
