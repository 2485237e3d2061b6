// Key codes, named once, and what a form gets of a key. No layout of a real
// keyboard: a view maps its toolkit's keys to these.
#pragma once

#include <optional>
#include <string_view>

namespace tarvik::forms {

inline constexpr int kKeyBack = 8;
inline constexpr int kKeyTab = 9;
inline constexpr int kKeyEnter = 13;
inline constexpr int kKeyEsc = 27;
inline constexpr int kKeySpace = 32;
inline constexpr int kKeyPageUp = 33;
inline constexpr int kKeyPageDown = 34;
inline constexpr int kKeyEnd = 35;
inline constexpr int kKeyHome = 36;
inline constexpr int kKeyLeft = 37;
inline constexpr int kKeyUp = 38;
inline constexpr int kKeyRight = 39;
inline constexpr int kKeyDown = 40;
inline constexpr int kKeyDelete = 46;
inline constexpr int kKeyF1 = 112;
inline constexpr int kKeyF2 = 113;
inline constexpr int kKeyF3 = 114;
inline constexpr int kKeyF5 = 116;
inline constexpr int kKeyF6 = 117;
inline constexpr int kKeyF8 = 119;
inline constexpr int kKeyF9 = 120;
inline constexpr int kKeyF12 = 123;

inline constexpr int kShift = 1;
inline constexpr int kControl = 2;
inline constexpr int kAlt = 4;

// One press. `code` is the virtual code; `character` is what KeyPress gets, 0 for a key that
// types nothing. Enter, Esc and Back have both: KeyPress sees 13, 27 and 8.
struct Key {
  int code = 0;
  int shift = 0;
  char32_t character = 0;
};

// The key that types a character: code 65 for "a" and "A", 190 for "." (never 46, which is Delete).
Key KeyFor(char32_t character);

// "Enter", "Tab", "Esc", "Up", "Down", "Left", "Right", "Delete", "Back", "Space", "Home", "End",
// "PageUp", "PageDown", "F1" to "F12", or one character. Nothing for any other name.
std::optional<Key> KeyNamed(std::string_view name);

}  // namespace tarvik::forms
