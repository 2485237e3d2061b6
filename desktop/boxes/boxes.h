// The boxes of the program: messages, questions, error reports and errors with no trap. They show a
// text and give an answer; they write no log and decide nothing.
#pragma once

#include <QString>
#include <chrono>
#include <memory>
#include <vector>

#include "forms/platform.h"

class QDialog;
class QKeyEvent;
class QWidget;

namespace tarvik::desktop {

// A key answers a box only if a hand can have meant it: pressed after the box has stood that long with no key
// down. 400 ms, unless a test sets another.
std::chrono::milliseconds& BoxesMustStand();

// Keys that came too early to answer a box: they were meant for what stood in front before.
using KeptKeys = std::vector<std::unique_ptr<QKeyEvent>>;
// Gives them to whatever has the focus now, in order; they are gone from the list.
// Where nothing has it they stay.
void GiveBack(KeptKeys& keys);

// Shows a box and waits. Gives true for Sí and for Aceptar, false for No and for closing a question.
// `kept` gets the keys that were kept back.
//   Keys: Enter takes the default button, S and N answer a question, Esc is No (or Aceptar where
//   there is nothing to refuse), Ctrl+C copies the text.
// `style` adds up as in forms/platform.h; a Question with style 1 is Sí/No too. A plain box whose
// text is an error report is laid out as one, with a button "Copiar" and the text as it stands.
bool ShowBox(QWidget* parent, forms::BoxKind kind, const QString& text, int style, KeptKeys* kept = nullptr);

// An error that no trap caught: what happened, what is safe, what to do. `noted`: the caller has
// written it to the program's log before.
void ShowUnhandled(QWidget* parent, const QString& text, bool noted, KeptKeys* kept = nullptr);

// The program could not open its base; the reason itself says what to do.
void ShowNotOpened(const QString& reason);

// The same boxes, not yet shown: exec() gives QDialog::Accepted for true.
std::unique_ptr<QDialog> MakeBox(QWidget* parent, forms::BoxKind kind, const QString& text, int style);
std::unique_ptr<QDialog> MakeUnhandled(QWidget* parent, const QString& text, bool noted);
std::unique_ptr<QDialog> MakeNotOpened(const QString& reason);

}  // namespace tarvik::desktop
