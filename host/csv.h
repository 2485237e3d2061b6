// Comma-separated values for a spreadsheet: how a cell and a line of such a file are written. It opens no
// file.
#pragma once

#include <span>
#include <string>

#include "data/value.h"

namespace tarvik::host {

// A text as a cell, in quotes where it needs them. What a spreadsheet would take for a formula goes out with
// an apostrophe in front.
//   CeldaCsv("a,b") == "\"a,b\""   CeldaCsv("=1+1") == "'=1+1"
std::string CeldaCsv(const std::string& text);
// A number as a number, never as a formula; a date as yyyy-MM-dd; a text as above.
std::string CeldaCsv(const data::Value& value);
// Cells that are ready, as one line with its end, CR and LF.
std::string RenglonCsv(std::span<const std::string> cells);

}  // namespace tarvik::host
