// FormKeys: a press at the keyboard as the keys of a form, and the keys that a text widget may keep.
#pragma once

#include <vector>

#include "forms/keys.h"

class QKeyEvent;

namespace tarvik::desktop {

// What the form is to hear of one press: one key, or one for each character that it types. Nothing for what
// belongs to the menus, or is no key of a form.
std::vector<forms::Key> FormKeys(const QKeyEvent& event);

// Keys by which a text widget moves its caret, selects or copies, and which it does by itself.
bool MovesCaret(const QKeyEvent& event);

}  // namespace tarvik::desktop
