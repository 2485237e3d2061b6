// Keys by character and by name.
#include "forms/keys.h"

#include <array>
#include <string>
#include <utility>

#include "data/text.h"

namespace tarvik::forms {

namespace {

// Virtual codes of the characters that are neither letters nor digits, on the usual keyboard: a
// character's own number would collide with the arrows, Delete and the function keys.
constexpr std::array<std::pair<char, int>, 32> kPunctuation{{
    {';', 186}, {':', 186},  {'=', 187}, {'+', 187}, {',', 188},  {'<', 188}, {'-', 189}, {'_', 189},
    {'.', 190}, {'>', 190},  {'/', 191}, {'?', 191}, {'`', 192},  {'~', 192}, {'[', 219}, {'{', 219},
    {'|', 220}, {'\\', 220}, {']', 221}, {'}', 221}, {'\'', 222}, {'"', 222}, {'!', '1'}, {'@', '2'},
    {'#', '3'}, {'$', '4'},  {'%', '5'}, {'^', '6'}, {'&', '7'},  {'*', '8'}, {'(', '9'}, {')', '0'},
}};
constexpr int kComposed = 231;  // a character that no single key has

constexpr std::array<std::pair<std::string_view, int>, 13> kNames{{
    {"Enter", kKeyEnter},
    {"Tab", kKeyTab},
    {"Esc", kKeyEsc},
    {"Up", kKeyUp},
    {"Down", kKeyDown},
    {"Left", kKeyLeft},
    {"Right", kKeyRight},
    {"Delete", kKeyDelete},
    {"Back", kKeyBack},
    {"Home", kKeyHome},
    {"End", kKeyEnd},
    {"PageUp", kKeyPageUp},
    {"PageDown", kKeyPageDown},
}};

char32_t TypedBy(int code) {
  return code == kKeyEnter || code == kKeyEsc || code == kKeyBack ? static_cast<char32_t>(code) : 0;
}

}  // namespace

Key KeyFor(char32_t character) {
  if (character == '\n') character = kKeyEnter;
  if (character == kKeyTab) return {kKeyTab, 0, 0};
  int code = kComposed;
  if (character >= 'a' && character <= 'z') {
    code = static_cast<int>(character) - 'a' + 'A';
  } else if ((character >= 'A' && character <= 'Z') || (character >= '0' && character <= '9') ||
             character == ' ' || character == kKeyEnter || character == kKeyEsc || character == kKeyBack) {
    code = static_cast<int>(character);
  } else {
    for (auto [punctuation, its_code] : kPunctuation) {
      if (static_cast<char32_t>(punctuation) == character) code = its_code;
    }
  }
  return {code, character >= 'A' && character <= 'Z' ? kShift : 0, character};
}

std::optional<Key> KeyNamed(std::string_view name) {
  for (auto [known, code] : kNames) {
    if (known == name) return Key{code, 0, TypedBy(code)};
  }
  if (name == "Space") return KeyFor(' ');
  if (name.size() > 1 && name.front() == 'F' && name[1] >= '1' && name[1] <= '9') {
    std::string digits(name.substr(1));
    if (digits.find_first_not_of("0123456789") == std::string::npos && digits.size() <= 2) {
      int number = std::stoi(digits);
      if (number <= 12) return Key{kKeyF1 + number - 1, 0, 0};
    }
    return std::nullopt;
  }
  if (data::Length(name) == 1) return KeyFor(data::Decode(name));
  return std::nullopt;
}

}  // namespace tarvik::forms
