// StockChart: stock over time as one thin line, zero marked, with the value of the day under the cursor or of
// the day that is marked. It reads nothing.
#pragma once

#include <QWidget>
#include <optional>
#include <string>
#include <vector>

#include "host/kardex.h"

namespace tarvik::desktop {

class Theme;

class StockChart final : public QWidget {
  Q_OBJECT

 public:
  StockChart(const Theme& theme, std::string quantity_pattern, QWidget* parent = nullptr);

  // The days by date, of which those of the range are shown; what was there before it is its beginning.
  void Show(const std::vector<host::DiaDeKardex>& days, const host::FiltroDeKardex& range);
  // The day of the chosen movement.
  void Mark(std::optional<data::Date> day);
  // "20/11/2026: 28"; empty without any day.
  [[nodiscard]] QString Told() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  struct Point {
    qint64 day;  // Julian
    double stock;
  };
  [[nodiscard]] QRectF Plot() const;
  [[nodiscard]] double Across(qint64 day) const;
  [[nodiscard]] double Up(double stock) const;
  [[nodiscard]] const Point* At(qint64 day) const;  // the last one until that day
  [[nodiscard]] const Point* Pointed() const;
  void PaintLevel(QPainter& painter, double stock) const;

  const Theme& theme_;
  std::string pattern_;
  std::vector<Point> points_;
  double least_ = 0;
  double most_ = 0;
  std::optional<qint64> marked_;
  std::optional<qint64> hovered_;
};

}  // namespace tarvik::desktop
