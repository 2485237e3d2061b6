// GridView: the view of a FlexGrid. Shows its cells, current cell and widths; keys and clicks go to
// the form by way of the screen's view.
#pragma once

#include <QAbstractTableModel>
#include <QStyledItemDelegate>
#include <QTableView>

#include "desktop/office.h"
#include "forms/flex_grid.h"

namespace tarvik::desktop {

inline constexpr int kTwipsAPixel = 15;

class GridView final : public QTableView {
  Q_OBJECT

 public:
  GridView(Office& office, forms::FlexGrid& grid, QWidget* parent);

  [[nodiscard]] forms::FlexGrid& Grid() const { return grid_; }
  // Columns whose texts are numbers: to the right, figures of equal width.
  void Numbers(const QList<int>& columns);
  // A column of numbers that warns where one is below zero.
  void Alarm(int column) { alarm_ = column; }
  // The column that takes the room left over.
  void Stretch(int column);
  // Rows with a name and a colour swatch of their own before them, from the grid's fixed columns; all
  // fixed rows as the heading; rows and columns that share the room in proportion; blocked cells
  // hatched; what is thinner than a pixel is hidden.
  void AsMatrix();
  // Where the grid's current cell is on the viewport; empty while it is scrolled out.
  [[nodiscard]] QRect CurrentCell() const;

  // The model said so.
  void Reset();
  void CellChanged(int row, int col);
  void RowsChanged(int from);
  void CurrentMoved();
  void LayoutChanged();

 signals:
  void Moved();  // scrolled, resized: what floats over a cell follows
  void Clicked(int row, int col);
  void DoubleClicked(int row, int col);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  class Model;
  class Painter;

  void RememberWidths();
  void Widths();
  void Proportions();

  Office& office_;
  forms::FlexGrid& grid_;
  Model* model_;
  QList<int> numbers_;
  bool matrix_ = false;
  int stretch_ = -1;
  int alarm_ = -1;
  bool live_ = false;  // shown once; before that changes are not followed one by one
  bool adjusting_ = false;
};

}  // namespace tarvik::desktop
