#include "desktop/screens/form_keys.h"

#include <QHash>
#include <QKeyEvent>
#include <QKeySequence>
#include <algorithm>
#include <optional>

namespace tarvik::desktop {

namespace {

std::optional<int> CodeOf(int key) {
  static const QHash<int, int> codes{
      {Qt::Key_Return, forms::kKeyEnter},      {Qt::Key_Enter, forms::kKeyEnter},
      {Qt::Key_Tab, forms::kKeyTab},           {Qt::Key_Backtab, forms::kKeyTab},
      {Qt::Key_Escape, forms::kKeyEsc},        {Qt::Key_Backspace, forms::kKeyBack},
      {Qt::Key_Delete, forms::kKeyDelete},     {Qt::Key_Left, forms::kKeyLeft},
      {Qt::Key_Right, forms::kKeyRight},       {Qt::Key_Up, forms::kKeyUp},
      {Qt::Key_Down, forms::kKeyDown},         {Qt::Key_Home, forms::kKeyHome},
      {Qt::Key_End, forms::kKeyEnd},           {Qt::Key_PageUp, forms::kKeyPageUp},
      {Qt::Key_PageDown, forms::kKeyPageDown},
  };
  if (key >= Qt::Key_F1 && key <= Qt::Key_F12) return forms::kKeyF1 + (key - Qt::Key_F1);
  const auto found = codes.find(key);
  return found == codes.end() ? std::nullopt : std::optional(*found);
}

// Whether a key's text is characters, of whatever script, and no control code.
bool Types(const QString& text) {
  constexpr char32_t kRubout = 0x7F;
  const QList<uint> characters = text.toUcs4();
  return !characters.isEmpty() && std::all_of(characters.begin(), characters.end(),
                                              [](uint sign) { return sign >= U' ' && sign != kRubout; });
}

// With Ctrl, Alt or the like a key is the menus'; but AltGr, which comes as both, types characters.
bool BelongsToTheMenus(const QKeyEvent& event) {
  const Qt::KeyboardModifiers held = event.modifiers();
  if (!(held & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))) return false;
  return !Types(event.text()) || !(held & Qt::AltModifier) || !(held & Qt::ControlModifier);
}

}  // namespace

std::vector<forms::Key> FormKeys(const QKeyEvent& event) {
  if (BelongsToTheMenus(event)) return {};
  if (const auto code = CodeOf(event.key())) {
    const bool shift = (event.modifiers() & Qt::ShiftModifier) || event.key() == Qt::Key_Backtab;
    const bool types = *code == forms::kKeyEnter || *code == forms::kKeyEsc || *code == forms::kKeyBack;
    return {{*code, shift ? forms::kShift : 0, types ? static_cast<char32_t>(*code) : 0}};
  }
  std::vector<forms::Key> keys;
  if (!Types(event.text())) return keys;
  for (const char32_t character : event.text().toStdU32String()) keys.push_back(forms::KeyFor(character));
  return keys;
}

bool MovesCaret(const QKeyEvent& event) {
  for (const auto known :
       {QKeySequence::MoveToNextChar, QKeySequence::MoveToPreviousChar, QKeySequence::MoveToNextWord,
        QKeySequence::MoveToPreviousWord, QKeySequence::MoveToStartOfLine, QKeySequence::MoveToEndOfLine,
        QKeySequence::MoveToStartOfDocument, QKeySequence::MoveToEndOfDocument, QKeySequence::SelectNextChar,
        QKeySequence::SelectPreviousChar, QKeySequence::SelectNextWord, QKeySequence::SelectPreviousWord,
        QKeySequence::SelectStartOfLine, QKeySequence::SelectEndOfLine, QKeySequence::SelectStartOfDocument,
        QKeySequence::SelectEndOfDocument, QKeySequence::Copy}) {
    if (event.matches(known)) return true;
  }
  return false;
}

}  // namespace tarvik::desktop
