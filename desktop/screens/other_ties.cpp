#include "desktop/screens/other_ties.h"

#include <QKeyEvent>

#include "desktop/screens/form_keys.h"
#include "forms/form.h"

namespace tarvik::desktop {

// ---- captions ----

CaptionTie::CaptionTie(Hand& hand, forms::Label& control) : TieOf(hand, control, *new QLabel(&hand.View())) {
  Widget().setProperty("role", "caption");
  Widget().setTextFormat(Qt::PlainText);
}

void CaptionTie::ShowContents() {
  Widget().setText(QString::fromStdString(Control().Caption()).remove(QLatin1Char('&')));
}

// A caption is never greyed.
void CaptionTie::ShowState() {
  if (Widget().isVisibleTo(&TheHand().View()) != Control().Visible())
    Widget().setVisible(Control().Visible());
}

bool CaptionTie::MouseUp(const QMouseEvent& /*event*/) {
  TheHand().Act([this](forms::Form& form) { form.Click(Control()); });
  return true;
}

// ---- grids ----

GridTie::GridTie(Hand& hand, forms::FlexGrid& control, Office& office)
    : TieOf(hand, control, *new GridView(office, control, &hand.View())) {
  connect(&Widget(), &GridView::Clicked, this, [this](int row, int col) {
    TheHand().Act([&](forms::Form& form) { form.ClickCell(Control(), row, col); });
  });
  connect(&Widget(), &GridView::DoubleClicked, this, [this](int row, int col) {
    TheHand().Act([&](forms::Form& form) { form.DoubleClickCell(Control(), row, col); });
  });
}

void GridTie::Changed(forms::Aspect aspect) {
  if (aspect == forms::Aspect::Layout) return Widget().LayoutChanged();
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
