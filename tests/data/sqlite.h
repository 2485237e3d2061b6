// What the tests of the embedded engine share: the front of a text, and the one value of a query.
#pragma once

#include <string>
#include <string_view>

#include "data/engine.h"

namespace tarvik::tests {

inline bool Begins(const std::string& text, std::string_view front) {
  return text.substr(0, front.size()) == front;
}

inline data::Value Single(data::Connection& connection, std::string_view text) {
  const data::Rows rows = connection.Select(text);
  return rows.rows.at(0).at(0);
}

}  // namespace tarvik::tests
