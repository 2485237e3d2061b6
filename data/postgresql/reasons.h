// What a server says of a failure, for the operator and for the calling code. It throws nothing.
#pragma once

#include <string>
#include <string_view>

#include "data/error.h"
#include "data/postgresql/library.h"

namespace tarvik::data {

// A text of the server's or the library's on one line.
std::string OneLine(const char* text);

// The five characters of the standard; empty for a success and for a session that was lost.
std::string_view StateOf(const PGresult* result);

// What the operator can make sense of; the server's own text follows it.
std::string_view Reason(std::string_view state);

Trouble TroubleOf(std::string_view state);

}  // namespace tarvik::data
