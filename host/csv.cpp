#include "host/csv.h"

#include <string_view>

namespace tarvik::host {

std::string CeldaCsv(const std::string& text) {
  std::string shown;
  if (!text.empty() && std::string_view("=+-@").find(text.front()) != std::string_view::npos) shown = '\'';
  shown += text;
  if (shown.find_first_of(",\"\r\n") == std::string::npos) return shown;
  std::string quoted(1, '"');
  for (const char character : shown) {
    if (character == '"') quoted += '"';
    quoted += character;
  }
  quoted += '"';
  return quoted;
}

std::string CeldaCsv(const data::Value& value) {
  const bool text = value.As<std::string>() != nullptr;
  return text ? CeldaCsv(*value.As<std::string>()) : data::ToText(value);
}

std::string RenglonCsv(std::span<const std::string> cells) {
  std::string line;
  for (const std::string& cell : cells) {
    if (&cell != cells.data()) line += ',';
    line += cell;
  }
  return line + "\r\n";
}

}  // namespace tarvik::host
