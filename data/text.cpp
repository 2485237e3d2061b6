// UTF-8 text by characters. It knows no grammar of words, no collation and no locale.
#include "data/text.h"

#include <algorithm>

namespace tarvik::data {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

unsigned char Byte(std::string_view text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

// Bytes of the character at a position, and the character; 0 bytes if there is no valid one.
std::size_t Take(std::string_view text, std::size_t at, char32_t& character) {
  const unsigned char lead = Byte(text, at);
  if (lead < 0x80) {
    character = lead;
    return 1;
  }
  std::size_t length = 0;
  char32_t smallest = 0;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
    smallest = 0x80;
    character = lead & 0x1FU;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    smallest = 0x800;
    character = lead & 0x0FU;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    smallest = 0x10000;
    character = lead & 0x07U;
  } else {
    return 0;
  }
  if (text.size() - at < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned char next = Byte(text, at + i);
    if ((next & 0xC0U) != 0x80) return 0;
    character = (character << 6) | (next & 0x3FU);
  }
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  return character < smallest || character > 0x10FFFF || surrogate ? 0 : length;
}

// As Take(), an invalid byte being one character by itself.
std::size_t Step(std::string_view text, std::size_t at) {
  char32_t character = 0;
  return std::max<std::size_t>(1, Take(text, at, character));
}

char LowerAsciiLetter(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool ValidUtf8(std::string_view text) {
  char32_t character = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = Take(text, at, character);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

std::string RepairUtf8(std::string_view text) {
  std::string repaired;
  repaired.reserve(text.size());
  char32_t character = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = Take(text, at, character);
    if (length == 0) {
      repaired += Encode(kReplacement);
      ++at;
    } else {
      repaired.append(text, at, length);
      at += length;
    }
  }
  return repaired;
}

std::size_t Length(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); at += Step(text, at)) ++count;
  return count;
}

std::string Substring(std::string_view text, std::size_t first, std::size_t count) {
  std::size_t begin = 0;
  for (; first > 0 && begin < text.size(); --first) begin += Step(text, begin);
  std::size_t end = begin;
  for (; count > 0 && end < text.size(); --count) end += Step(text, end);
  return std::string(text.substr(begin, end - begin));
}

std::string Trim(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return std::string(text);
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return x == y || LowerAsciiLetter(x) == LowerAsciiLetter(y);
         });
}

std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), LowerAsciiLetter);
  return lower;
}

char32_t Upper(char32_t character) {
  if (character >= U'a' && character <= U'z') return character - U'a' + U'A';
  // 00E0 to 00FE are the small accented letters, the division sign among them apart.
  if (character >= 0xE0 && character <= 0xFE && character != 0xF7) return character - 0x20;
  switch (character) {
    case 0xFF:
      return 0x178;  // y with diaeresis
    case 0x153:
      return 0x152;  // oe
    case 0x161:
      return 0x160;  // s with caron
    case 0x17E:
      return 0x17D;  // z with caron
    default:
      return character;
  }
}

std::string Encode(char32_t character) {
  if (character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF)) character = kReplacement;
  std::string text;
  const auto put = [&text](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0U | (character >> 6));
    put(0x80U | (character & 0x3FU));
  } else if (character < 0x10000) {
    put(0xE0U | (character >> 12));
    put(0x80U | ((character >> 6) & 0x3FU));
    put(0x80U | (character & 0x3FU));
  } else {
    put(0xF0U | (character >> 18));
    put(0x80U | ((character >> 12) & 0x3FU));
    put(0x80U | ((character >> 6) & 0x3FU));
    put(0x80U | (character & 0x3FU));
  }
  return text;
}

char32_t Decode(std::string_view text) {
  if (text.empty()) return 0;
  char32_t character = 0;
  return Take(text, 0, character) == 0 ? kReplacement : character;
}

}  // namespace tarvik::data
