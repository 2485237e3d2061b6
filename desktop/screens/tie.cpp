#include "desktop/screens/tie.h"

#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QWidget>

#include "desktop/style/theme.h"
#include "forms/form.h"

namespace tarvik::desktop {

namespace {

// A key of the screen is no shortcut of the window's.
bool IsTheScreens(const QKeyEvent& key) {
  return !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
}

}  // namespace

Tie::Tie(Hand& hand, forms::Control& control, QWidget& widget)
    : hand_(hand), control_(control), widget_(widget) {
  widget.setObjectName(QString::fromStdString(control.FullName()));
}

// ---- what the form tells ----

void Tie::Quietly(const std::function<void()>& act) {
  const QScopedValueRollback<bool> showing(showing_, true);
  act();
}

void Tie::Show() {
  Quietly([this] {
    ShowContents();
    ShowState();
  });
}

void Tie::ShowState() {
  widget_.setEnabled(control_.Enabled());
  if (widget_.isVisibleTo(&hand_.View()) != control_.Visible()) widget_.setVisible(control_.Visible());
}

void Tie::Changed(forms::Aspect /*aspect*/) { Show(); }

void Tie::InHand(bool in_hand) {
  widget_.setProperty("hand", in_hand);
  Restyle(widget_);
}

// ---- what the operator does ----

bool Tie::Takes(QEvent& event) {
  switch (event.type()) {
    case QEvent::ShortcutOverride:
      if (!IsTheScreens(static_cast<QKeyEvent&>(event))) return false;
      event.accept();
      return true;
    case QEvent::KeyPress:
      return KeyDown(static_cast<QKeyEvent&>(event));
    case QEvent::KeyRelease:
      return KeyUp();
    case QEvent::InputMethod:
      return Composed(static_cast<QInputMethodEvent&>(event));
    case QEvent::MouseButtonPress:
      return MouseDown(static_cast<QMouseEvent&>(event));
    case QEvent::MouseButtonRelease:
      return MouseUp(static_cast<QMouseEvent&>(event));
    case QEvent::MouseButtonDblClick:
      return DoubleClicked();
    case QEvent::Wheel:
      return Scrolled(event);
    case QEvent::FocusIn:
      FocusArrived();
      return false;
    default:
      return false;
  }
}

bool Tie::KeyDown(QKeyEvent& event) { return hand_.Press(event); }

bool Tie::MouseDown(const QMouseEvent& /*event*/) {
  if (!control_.CanTakeFocus()) return true;
  hand_.Act([this](forms::Form& form) { form.Enter(control_); });
  return false;
}

void Tie::FocusArrived() {
  if (hand_.FormMovesFocus() || control_.Owner().ActiveControl() == &control_ || !control_.CanTakeFocus()) {
    return;
  }
  hand_.Act([this](forms::Form& form) { form.Enter(control_); });
}

}  // namespace tarvik::desktop
