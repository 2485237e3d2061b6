// The line keeps its level from one day to the next: stock does not grow between two movements.
#include "desktop/lists/stock_chart.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "desktop/lists/cell_values.h"
#include "desktop/style/theme.h"

namespace tarvik::desktop {
namespace {

constexpr int kGrid = measure::kGrid;
constexpr int kAtLeft = 9 * kGrid;  // for the amounts
constexpr int kLabel = 2 * kGrid;   // height of a line of words

qint64 DayOf(const data::Date& date) { return QDate(date.year, date.month, date.day).toJulianDay(); }

QString DayText(qint64 day) { return QDate::fromJulianDay(day).toString(QStringLiteral("dd/MM/yyyy")); }

}  // namespace

StockChart::StockChart(const Theme& theme, std::string quantity_pattern, QWidget* parent)
    : QWidget(parent), theme_(theme), pattern_(std::move(quantity_pattern)) {
  setFixedHeight(20 * kGrid);
  setMouseTracking(true);
  setAccessibleName(QStringLiteral("Existencia en el tiempo"));
}

void StockChart::Show(const std::vector<host::DiaDeKardex>& days, const host::FiltroDeKardex& range) {
  points_.clear();
  std::optional<double> before;
  for (const host::DiaDeKardex& day : days) {
    if (range.hasta && day.fecha > *range.hasta) break;
    if (range.desde && day.fecha < *range.desde) {
      before = day.saldo;
    } else {
      points_.push_back({DayOf(day.fecha), day.saldo});
    }
  }
  if (before && (points_.empty() || points_.front().day > DayOf(*range.desde))) {
    points_.insert(points_.begin(), {DayOf(*range.desde), *before});
  }
  least_ = most_ = 0;
  for (const Point& point : points_) {
    least_ = std::min(least_, point.stock);
    most_ = std::max(most_, point.stock);
  }
  if (least_ == most_) most_ = 1;
  hovered_.reset();
  setAccessibleDescription(Told());
  update();
}

void StockChart::Mark(std::optional<data::Date> day) {
  marked_ = day ? std::optional(DayOf(*day)) : std::nullopt;
  setAccessibleDescription(Told());
  update();
}

const StockChart::Point* StockChart::At(qint64 day) const {
  const auto after = std::upper_bound(points_.begin(), points_.end(), day,
                                      [](qint64 wanted, const Point& point) { return wanted < point.day; });
  return after == points_.begin() ? nullptr : &*std::prev(after);
}

const StockChart::Point* StockChart::Pointed() const {
  if (points_.empty()) return nullptr;
  if (hovered_) return At(*hovered_);
  return marked_ ? At(*marked_) : &points_.back();
}

QString StockChart::Told() const {
  const Point* point = Pointed();
  if (point == nullptr) return {};
  const qint64 day = hovered_ ? *hovered_ : point->day;
  return DayText(day) + QStringLiteral(":  ") + Formatted(point->stock, pattern_);
}

QRectF StockChart::Plot() const {
  return QRectF(rect()).adjusted(kAtLeft, kLabel + kGrid, -2 * kGrid, -kLabel - kGrid / 2.0);
}

double StockChart::Across(qint64 day) const {
  const QRectF plot = Plot();
  const auto days = static_cast<double>(points_.back().day - points_.front().day);
  if (days <= 0) return plot.left();
  return plot.left() + plot.width() * static_cast<double>(day - points_.front().day) / days;
}

double StockChart::Up(double stock) const {
  const QRectF plot = Plot();
  return plot.bottom() - plot.height() * (stock - least_) / (most_ - least_);
}

void StockChart::PaintLevel(QPainter& painter, double stock) const {
  const QRectF plot = Plot();
  const double y = std::round(Up(stock)) + 0.5;
  painter.setPen(QPen(theme_.Color(stock == 0 ? Role::SoftInk : Role::Border), 1));
  painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
  painter.setPen(theme_.Color(Role::SoftInk));
  painter.drawText(QRectF(0, y - kGrid, kAtLeft - kGrid, kLabel), Qt::AlignRight | Qt::AlignVCenter,
                   Formatted(stock, pattern_));
}

void StockChart::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(theme_.Color(Role::Border));
  painter.setBrush(theme_.Color(Role::Panel));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kGrid, kGrid);
  painter.setBrush(Qt::NoBrush);
  QFont small = font();
  small.setPixelSize(measure::kCaption);
  painter.setFont(small);
  if (points_.empty()) {
    painter.setPen(theme_.Color(Role::SoftInk));
    painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("Sin movimientos en estas fechas"));
    return;
  }
  const QRectF plot = Plot();
  PaintLevel(painter, 0);
  if (most_ > 0) PaintLevel(painter, most_);
  if (least_ < 0) PaintLevel(painter, least_);
  const QRectF foot(plot.left(), plot.bottom() + 2, plot.width(), kLabel);
  painter.drawText(foot, Qt::AlignLeft | Qt::AlignVCenter, DayText(points_.front().day));
  if (points_.size() > 1)
    painter.drawText(foot, Qt::AlignRight | Qt::AlignVCenter, DayText(points_.back().day));

  QPainterPath line(QPointF(plot.left(), Up(points_.front().stock)));
  for (const Point& point : points_) {
    line.lineTo(Across(point.day), line.currentPosition().y());
    line.lineTo(Across(point.day), Up(point.stock));
  }
  if (points_.size() == 1) line.lineTo(plot.right(), Up(points_.front().stock));
  painter.setPen(QPen(theme_.Color(Role::Accent), 1.5));
  painter.drawPath(line);

  const Point* point = Pointed();
  if (point == nullptr) return;
  const QPointF here(Across(hovered_ ? *hovered_ : point->day), Up(point->stock));
  painter.setPen(QPen(theme_.Color(Role::FieldBorder), 1));
  painter.drawLine(QPointF(here.x(), plot.top()), QPointF(here.x(), plot.bottom()));
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme_.Color(Role::Accent));
  painter.drawEllipse(here, 3.5, 3.5);
  small.setPixelSize(measure::kText);
  small.setWeight(QFont::DemiBold);
  painter.setFont(small);
  painter.setPen(theme_.Color(point->stock < 0 ? Role::Refused : Role::Ink));
  painter.drawText(QRectF(plot.left(), kGrid / 2.0, plot.width(), kLabel), Qt::AlignRight | Qt::AlignVCenter,
                   Told());
}

void StockChart::mouseMoveEvent(QMouseEvent* event) {
  if (points_.empty()) return;
  const QRectF plot = Plot();
  const double part = std::clamp((event->position().x() - plot.left()) / plot.width(), 0.0, 1.0);
  const auto days = static_cast<double>(points_.back().day - points_.front().day);
  hovered_ = points_.front().day + static_cast<qint64>(std::floor(part * days));
  update();
}

void StockChart::leaveEvent(QEvent*) {
  hovered_.reset();
  update();
}

}  // namespace tarvik::desktop
