#include "desktop/scanner/drawer.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QPainter>

#include "desktop/style/theme.h"

namespace tarvik::desktop {

using measure::kGrid;

namespace {

constexpr int kStrip = 3 * kGrid;
constexpr int kLeast = 25 * kGrid;  // what an open one needs

// Its words run upwards.
class StripButton final : public QAbstractButton {
 public:
  explicit StripButton(QWidget* parent) : QAbstractButton(parent) {
    setFixedWidth(kStrip);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    QFont small = font();
    small.setPixelSize(measure::kCaption);
    painter.setFont(small);
    QColor ink = palette().color(underMouse() ? QPalette::Highlight : QPalette::WindowText);
    ink.setAlphaF(underMouse() ? 1.0F : 0.75F);
    painter.setPen(ink);
    painter.rotate(-90);
    painter.drawText(QRect(-height(), 0, height() - kGrid, width()), Qt::AlignRight | Qt::AlignVCenter,
                     text());
  }
};

}  // namespace

Drawer::Drawer(QWidget* content, const QString& title, bool open, QWidget* parent)
    : QWidget(parent), content_(content), strip_(new StripButton(this)), open_(open) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(kGrid / 2);
  row->addWidget(strip_);
  row->addWidget(content_, 1);
  SetOpen(open);
  SetTitle(title);
  connect(strip_, &QAbstractButton::clicked, this, [this] {
    SetOpen(!open_);
    emit Turned(open_, true);
  });
}

QSize Drawer::sizeHint() const {
  return {kStrip + (open_ ? content_->sizeHint().width() : 0), content_->sizeHint().height()};
}

void Drawer::SetOpen(bool open) {
  open_ = open;
  content_->setVisible(open);
  setMinimumWidth(open ? kLeast : kStrip);
  setMaximumWidth(open ? QWIDGETSIZE_MAX : kStrip);
  updateGeometry();
}

void Drawer::SetTitle(const QString& title) {
  strip_->setText(title);
  strip_->setAccessibleName(title);
  strip_->setToolTip(title);
  strip_->update();
}

}  // namespace tarvik::desktop
