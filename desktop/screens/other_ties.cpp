#include "desktop/screens/other_ties.h"

#include <QKeyEvent>

#include "desktop/screens/form_keys.h"
#include "forms/form.h"

namespace tarvik::desktop {

// ---- captions ----

CaptionTie::CaptionTie(Hand& hand, forms::Label& control)
    : Tie(hand, control, *new QLabel(&hand.View())),
      control_(control),
      label_(static_cast<QLabel&>(Widget())) {
  label_.setProperty("role", "caption");
  label_.setTextFormat(Qt::PlainText);
}

void CaptionTie::ShowContents() {
  label_.setText(QString::fromStdString(control_.Caption()).remove(QLatin1Char('&')));
}

// A caption is never greyed.
void CaptionTie::ShowState() {
  if (label_.isVisibleTo(&TheHand().View()) != control_.Visible()) label_.setVisible(control_.Visible());
}

bool CaptionTie::MouseUp(const QMouseEvent& /*event*/) {
  TheHand().Act([this](forms::Form& form) { form.Click(control_); });
  return true;
}

// ---- grids ----

GridTie::GridTie(Hand& hand, forms::FlexGrid& control, Office& office)
    : Tie(hand, control, *new GridView(office, control, &hand.View())),
      grid_(static_cast<GridView&>(Widget())) {
  connect(&grid_, &GridView::Clicked, this, [this](int row, int col) {
    TheHand().Act([&](forms::Form& form) { form.ClickCell(grid_.Grid(), row, col); });
  });
  connect(&grid_, &GridView::DoubleClicked, this, [this](int row, int col) {
    TheHand().Act([&](forms::Form& form) { form.DoubleClickCell(grid_.Grid(), row, col); });
  });
}

void GridTie::Changed(forms::Aspect aspect) {
  if (aspect == forms::Aspect::Layout) return grid_.LayoutChanged();
  Tie::Changed(aspect);
}

// The cell that was clicked brings the focus along.
bool GridTie::MouseDown(const QMouseEvent& /*event*/) { return !Control().CanTakeFocus(); }

// ---- pages ----

// It scrolls by the keys that move a caret.
bool PageTie::KeyDown(QKeyEvent& event) {
  if (Tie::KeyDown(event)) return true;
  if (MovesCaret(event)) return false;
  event.ignore();
  return true;
}

}  // namespace tarvik::desktop
