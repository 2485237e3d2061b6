// What the desktop's tests share: the one application of the process, on no screen, and what a test
// does to a box that waits for an answer. It knows no window of the program but the boxes.
#pragma once

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <functional>

#include "desktop/boxes/boxes.h"

namespace tarvik::desktop {

// Made at the first call, with no screen needed; lives to the end of the process.
inline QApplication& App() {
  static char name[] = "test";
  static char option[] = "-platform";
  static char value[] = "offscreen";
  static char* arguments[] = {name, option, value, nullptr};
  static int count = 3;
  // Not destroyed: tests may leave widgets to the end of the process.
  static auto* application = new QApplication(count, arguments);
  // A test's hand means every key that it presses; the tests of this very thing set it themselves.
  BoxesMustStand() = std::chrono::milliseconds(0);
  return *application;
}

// Runs once the next window that waits for an answer (a box, a dialog) is on show. Call it before
// the one that waits.
inline void WhenModal(std::function<void(QWidget&)> act) {
  QTimer::singleShot(0, [act = std::move(act)] {
    if (QWidget* modal = QApplication::activeModalWidget()) act(*modal);
  });
}

// A key to whatever has the focus in the window, as the window system would give it.
inline void Press(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QWidget* focus = window.focusWidget();
  QTest::keyClick(focus != nullptr ? focus : &window, key, modifiers);
}

inline void Type(QWidget& window, const QString& text) {
  QWidget* focus = window.focusWidget();
  QTest::keyClicks(focus != nullptr ? focus : &window, text);
}

}  // namespace tarvik::desktop
