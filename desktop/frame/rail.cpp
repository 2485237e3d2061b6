// The rail's items are painted here; ground, edge and hover come from the style sheet.
#include "desktop/frame/rail.h"

#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QVBoxLayout>
#include <functional>

#include "desktop/style/theme.h"

namespace tarvik::desktop {
namespace {

constexpr int kIcon = 2 * measure::kGrid;

// In a square of 16, lines alone: what the tools have, beside the lists.
void DrawTool(QPainter& painter, Glyph glyph, const std::function<void(QPointF)>& dot) {
  switch (glyph) {
    case Glyph::Review:
      painter.drawEllipse(QPointF(8, 8), 6, 6);
      return painter.drawPolyline(QPolygonF({{5.2, 8.2}, {7.2, 10.2}, {10.8, 6}}));
    case Glyph::Catalogue:
      for (const qreal y : {4.0, 8.0, 12.0}) {
        painter.drawLine(QPointF(6, y), QPointF(14, y));
        dot({2.6, y});
      }
      return;
    case Glyph::Settings:
      for (const auto& [y, knob] : {std::pair{4.0, 10.5}, {8.0, 5.0}, {12.0, 9.0}}) {
        painter.drawLine(QPointF(2, y), QPointF(14, y));
        dot({knob, y});
      }
      return;
    case Glyph::Hook: {
      QPainterPath path(QPointF(9, 2));
      path.lineTo(9, 10);
      path.arcTo(QRectF(3, 7, 6, 7), 0, -180);
      return painter.drawPath(path);
    }
    default:
      return painter.drawRoundedRect(QRectF(3, 3, 10, 10), 2, 2);
  }
}

// The same, for every glyph.
void DrawGlyph(QPainter& painter, Glyph glyph) {
  const auto tray = [&] { painter.drawPolyline(QPolygonF({{2, 10}, {2, 14}, {14, 14}, {14, 10}})); };
  const auto arrow = [&](bool down) {
    painter.drawLine(QPointF(8, 2), QPointF(8, 10.5));
    const qreal tip = down ? 10.5 : 2;
    const qreal wing = down ? 7.5 : 5;
    painter.drawPolyline(QPolygonF({{5, wing}, {8, tip}, {11, wing}}));
  };
  const auto dot = [&](QPointF at) {
    painter.save();
    painter.setBrush(painter.pen().color());
    painter.drawEllipse(at, 1.4, 1.4);
    painter.restore();
  };
  switch (glyph) {
    case Glyph::In:
      tray();
      return arrow(true);
    case Glyph::InPending:
      tray();
      arrow(true);
      return dot({14, 3});
    case Glyph::Out:
      tray();
      return arrow(false);
    case Glyph::OutPending:
      tray();
      arrow(false);
      return dot({14, 3});
    case Glyph::Stock:
      painter.drawPolygon(QPolygonF({{8, 1.5}, {14, 4.5}, {14, 11.5}, {8, 14.5}, {2, 11.5}, {2, 4.5}}));
      painter.drawPolyline(QPolygonF({{2, 4.5}, {8, 7.5}, {14, 4.5}}));
      return painter.drawLine(QPointF(8, 7.5), QPointF(8, 14.5));
    case Glyph::Transfer:
      painter.drawLine(QPointF(2, 5), QPointF(13.5, 5));
      painter.drawPolyline(QPolygonF({{10.5, 2}, {13.5, 5}, {10.5, 8}}));
      painter.drawLine(QPointF(2.5, 11), QPointF(14, 11));
      return painter.drawPolyline(QPolygonF({{5.5, 8}, {2.5, 11}, {5.5, 14}}));
    default:
      return DrawTool(painter, glyph, dot);
  }
}

}  // namespace

RailItem::RailItem(const Theme& theme, const QString& text, Glyph glyph, QWidget* parent)
    : QPushButton(parent), theme_(theme), text_(text), glyph_(glyph) {
  setProperty("role", "railItem");
  setFocusPolicy(Qt::TabFocus);
  Describe();
}

void RailItem::SetCount(int count, bool more) {
  if (count == count_ && more == more_) return;
  count_ = count;
  more_ = more;
  Describe();
  update();
}

void RailItem::SetNarrow(bool narrow) {
  narrow_ = narrow;
  Describe();
  updateGeometry();
  update();
}

void RailItem::Describe() {
  const QString whole = count_ > 0 ? QStringLiteral("%1, %2 en espera").arg(text_).arg(count_) : text_;
  setAccessibleName(whole);
  setToolTip(narrow_ ? whole : QString());
}

QSize RailItem::sizeHint() const {
  return {narrow_ ? measure::kRailNarrow : measure::kRail, QPushButton::sizeHint().height()};
}

void RailItem::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);
  option.text.clear();
  painter.drawControl(QStyle::CE_PushButton, option);

  painter.setRenderHint(QPainter::Antialiasing);
  const QColor ink = theme_.Color(Role::RailInk);
  const QColor soft = theme_.Color(isChecked() ? Role::RailInk : Role::RailSoft);
  const int left = narrow_ ? (width() - kIcon) / 2 : 2 * measure::kGrid;
  painter.save();
  painter.translate(left, (height() - kIcon) / 2);
  painter.setPen(QPen(soft, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  DrawGlyph(painter, glyph_);
  painter.restore();

  QFont font = painter.font();
  const QString count =
      count_ > 0 ? QString::number(count_) + (more_ ? QStringLiteral("+") : QString()) : QString();
  if (narrow_) {
    if (count.isEmpty()) return;
    font.setPixelSize(measure::kCaption);
    font.setWeight(QFont::Bold);
    painter.setFont(font);
    painter.setPen(ink);
    painter.drawText(rect().adjusted(0, 0, -measure::kGrid / 2, 0), Qt::AlignTop | Qt::AlignRight,
                     count_ > 99 ? QStringLiteral("99+") : count);
    return;
  }
  font.setWeight(isChecked() ? QFont::DemiBold : QFont::Normal);
  painter.setFont(font);
  painter.setPen(ink);
  int right = width() - 2 * measure::kGrid;
  if (!count.isEmpty()) {
    const int wide = painter.fontMetrics().horizontalAdvance(count);
    painter.setPen(soft);
    painter.drawText(QRect(right - wide, 0, wide, height()), Qt::AlignVCenter | Qt::AlignRight, count);
    right -= wide + measure::kGrid;
    painter.setPen(ink);
  }
  const int from = left + kIcon + measure::kGrid + measure::kGrid / 4;
  painter.drawText(QRect(from, 0, right - from, height()), Qt::AlignVCenter | Qt::AlignLeft,
                   painter.fontMetrics().elidedText(text_, Qt::ElideRight, right - from));
}

Rail::Rail(const Theme& theme, QWidget* parent)
    : QWidget(parent), theme_(theme), column_(new QVBoxLayout(this)) {
  setProperty("role", "rail");
  setAttribute(Qt::WA_StyledBackground);
  setAccessibleName(QStringLiteral("Listas y herramientas"));
  column_->setContentsMargins(0, measure::kGrid, 0, measure::kGrid);
  column_->setSpacing(0);
  column_->addStretch();
  SetNarrow(false);
}

void Rail::AddSection(const QString& title) {
  auto* label = new QLabel(title.toUpper(), this);
  label->setProperty("role", "railTitle");
  label->setVisible(!narrow_);
  column_->insertWidget(column_->count() - 1, label);
  titles_ += label;
}

RailItem* Rail::Add(const QString& text, Glyph glyph) {
  auto* item = new RailItem(theme_, text, glyph, this);
  item->SetNarrow(narrow_);
  column_->insertWidget(column_->count() - 1, item);
  items_ += item;
  return item;
}

RailItem* Rail::AddPage(const QString& text, Glyph glyph) {
  RailItem* item = Add(text, glyph);
  item->setCheckable(true);
  item->setAutoExclusive(true);
  return item;
}

RailItem* Rail::AddTool(const QString& text, Glyph glyph) { return Add(text, glyph); }

void Rail::SetNarrow(bool narrow) {
  narrow_ = narrow;
  setFixedWidth(narrow ? measure::kRailNarrow : measure::kRail);
  for (QLabel* title : titles_) title->setVisible(!narrow);
  for (RailItem* item : items_) item->SetNarrow(narrow);
}

}  // namespace tarvik::desktop
