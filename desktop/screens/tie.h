// Tie: one control of a screen and the widget that shows it. A tie makes its widget, shows what the control
// holds, and turns what the operator does to the widget into the form's acts. There is one kind of tie for
// each kind of control. It has no rules: the form decides what may be typed and what follows. A widget never
// edits itself; it shows what the control holds after a key.
//
//   class GaugeTie final : public TieOf<forms::Gauge, QSlider> {     // a kind of control that is new
//    public:
//     GaugeTie(Hand& hand, forms::Gauge& gauge) : TieOf(hand, gauge, *new QSlider(&hand.View())) {}
//    protected:
//     void ShowContents() override { Widget().setValue(Control().Value()); }
//   };
//
// ScreenView makes the ties, and passes on to them what the form reports and the events of their widgets.
#pragma once

#include <QObject>
#include <functional>

#include "forms/control.h"
#include "forms/listener.h"

class QEvent;
class QInputMethodEvent;
class QKeyEvent;
class QMouseEvent;
class QWidget;

namespace tarvik::desktop {

// What a tie needs of the screen's view: it carries out the operator's acts. Outlives the ties.
class Hand {
 public:
  virtual ~Hand() = default;

  // Runs an act. The view lives until the act is over, whatever it closes; then the screen comes to rest.
  virtual void Act(const std::function<void(forms::Form&)>& act) = 0;
  // A key for the form, as an act; false if it is none of the form's.
  virtual bool Press(const QKeyEvent& event) = 0;
  // True while the form itself moves the focus: a widget that receives it then reports no act.
  [[nodiscard]] virtual bool FormMovesFocus() const = 0;
  // The widget of the whole screen, parent of the ties' widgets.
  [[nodiscard]] virtual QWidget& View() = 0;
};

class Tie : public QObject {
 public:
  // The widget is its parent's; the control outlives the tie.
  Tie(Hand& hand, forms::Control& control, QWidget& widget);

  [[nodiscard]] forms::Control& Control() const { return control_; }
  [[nodiscard]] QWidget& Widget() const { return widget_; }

  // ---- what the form tells ----
  // Shows all that the control holds. Signals of the widget during this are not the operator's.
  void Show();
  virtual void Changed(forms::Aspect aspect);
  virtual void InHand(bool in_hand);  // it received or lost the focus
  virtual void ScreenShown() {}
  // Only for grids.
  virtual void CellChanged(int /*row*/, int /*col*/) {}
  virtual void RowsChanged(int /*from*/) {}
  virtual void CurrentCellMoved() {}
  // True for texts: a change of a text may be shown late, when the act is over, and a refused text is marked.
  [[nodiscard]] virtual bool HoldsText() const { return false; }

  // ---- what the operator does ----
  // An event on its way to the widget; true if it ends here.
  bool Takes(QEvent& event);

 protected:
  [[nodiscard]] Hand& TheHand() const { return hand_; }
  [[nodiscard]] bool Showing() const { return showing_; }
  // Runs `act` on the widget without the control hearing of it.
  void Quietly(const std::function<void()>& act);

  virtual void ShowContents() {}
  virtual void ShowState();  // whether it can be reached and seen

  // Each gives true if the event ends here.
  virtual bool KeyDown(QKeyEvent& event);
  virtual bool KeyUp() { return false; }
  virtual bool Composed(QInputMethodEvent& /*event*/) { return false; }
  virtual bool MouseDown(const QMouseEvent& event);
  virtual bool MouseUp(const QMouseEvent& /*event*/) { return false; }
  virtual bool DoubleClicked() { return false; }
  virtual bool Scrolled(QEvent& /*event*/) { return false; }

 private:
  void FocusArrived();

  Hand& hand_;
  forms::Control& control_;
  QWidget& widget_;
  bool showing_ = false;
};

// A tie that knows its control and its widget by their kinds.
template <class Kind, class Shown, class Base = Tie>
class TieOf : public Base {
 public:
  using ControlKind = Kind;

  TieOf(Hand& hand, Kind& control, Shown& widget)
      : Base(hand, control, widget), control_(control), widget_(widget) {}
  [[nodiscard]] Kind& Control() const { return control_; }
  [[nodiscard]] Shown& Widget() const { return widget_; }

 private:
  Kind& control_;
  Shown& widget_;
};

}  // namespace tarvik::desktop
