// Text helpers. All text is UTF-8; positions and lengths count characters (code points), never bytes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarvik::data {

bool ValidUtf8(std::string_view text);
// Invalid bytes become U+FFFD, one for each; valid text comes back unchanged.
std::string RepairUtf8(std::string_view text);

std::size_t Length(std::string_view text);
// `count` characters from character `first` on; clipped at the end, never throws.
std::string Substring(std::string_view text, std::size_t first, std::size_t count = std::string::npos);

// Without the blanks (U+0020) at both ends. Tabs and line ends stay.
std::string Trim(std::string_view text);

// Without regard to case, in ASCII letters: column and table names.
bool EqualsNoCase(std::string_view a, std::string_view b);
std::string LowerAscii(std::string_view text);
// Upper case of ASCII and of the accented letters of western European languages; others stay.
char32_t Upper(char32_t character);

std::string Encode(char32_t character);
// The first character of a text; 0 for an empty one, U+FFFD for invalid bytes.
char32_t Decode(std::string_view text);

}  // namespace tarvik::data
