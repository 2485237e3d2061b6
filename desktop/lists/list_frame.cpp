#include "desktop/lists/list_frame.h"

#include <QLabel>
#include <QVBoxLayout>

#include "desktop/style/theme.h"

namespace tarvik::desktop {

ListFrame FrameOfList(QWidget& page, QLayout* head, QLabel& reason) {
  constexpr int kGap = 2 * measure::kGrid;
  auto* column = new QVBoxLayout(&page);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* body = new QVBoxLayout;
  body->setContentsMargins(kGap, kGap, kGap, measure::kGrid);
  body->setSpacing(measure::kGrid + measure::kGrid / 2);
  column->addLayout(body, 1);

  body->addLayout(head);
  reason.setProperty("role", "reason");
  reason.setWordWrap(true);
  reason.hide();
  body->addWidget(&reason);
  return {column, body};
}

}  // namespace tarvik::desktop
