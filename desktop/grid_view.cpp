#include "desktop/grid_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSettings>

#include "desktop/theme.h"
#include "forms/form.h"

namespace tarvik::desktop {

namespace {
constexpr int kTwipsAPixel = 15;
}

class GridView::Model final : public QAbstractTableModel {
 public:
  Model(GridView& view, forms::FlexGrid& grid) : QAbstractTableModel(&view), view_(view), grid_(grid) {}

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : grid_.Rows() - grid_.FixedRows();
  }
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : grid_.Cols();
  }
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole || role == Qt::AccessibleTextRole) {
      return QString::fromStdString(grid_.TextMatrix(index.row() + grid_.FixedRows(), index.column()));
    }
    if (role == Qt::TextAlignmentRole) return Alignment(index.column());
    return {};
  }
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (orientation == Qt::Vertical) return {};
    if (role == Qt::DisplayRole) return QString::fromStdString(grid_.TextMatrix(0, section));
    if (role == Qt::TextAlignmentRole) return Alignment(section);
    return {};
  }
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex&) const override {
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  }

  void Changed(int row, int col) {
    const QModelIndex cell = index(row - grid_.FixedRows(), col);
    if (row < grid_.FixedRows()) {
      emit headerDataChanged(Qt::Horizontal, col, col);
    } else {
      emit dataChanged(cell, cell);
    }
  }
  void ChangedFrom(int row) {
    emit dataChanged(index(std::max(0, row - grid_.FixedRows()), 0),
                     index(rowCount() - 1, columnCount() - 1));
  }
  void ReadAnew() {
    beginResetModel();
    endResetModel();
  }

 private:
  [[nodiscard]] QVariant Alignment(int column) const {
    return QVariant(Qt::AlignVCenter | (view_.numbers_.contains(column) ? Qt::AlignRight : Qt::AlignLeft));
  }

  GridView& view_;
  forms::FlexGrid& grid_;
};

// Rows by turns, the current cell in its own ink: light cyan, deep cyan in the dark.
class GridView::Painter final : public QStyledItemDelegate {
 public:
  explicit Painter(GridView& view) : QStyledItemDelegate(&view), view_(view) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const Theme& theme = view_.office_.theme;
    const forms::FlexGrid& grid = view_.grid_;
    const bool here = index.row() + grid.FixedRows() == grid.Row() && index.column() == grid.Col();
    const bool used = !grid.TextMatrix(index.row() + grid.FixedRows(), 0).empty();
    painter->fillRect(option.rect,
                      theme.Color(here ? Role::Cell : (index.row() % 2 ? Role::RowOther : Role::Row)));
    if (here && (view_.hasFocus() || used)) {
      painter->setPen(
          QPen(theme.Color(view_.hasFocus() ? Role::Accent : Role::Border), view_.hasFocus() ? 2 : 1));
      painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
    }
    QFont font = option.font;
    if (here) font.setBold(true);
    painter->setFont(font);
    const bool alarming =
        index.column() == view_.alarm_ && index.data().toString().startsWith(QLatin1Char('-'));
    painter->setPen(theme.Color(alarming ? Role::Refused : (here ? Role::CellInk : Role::Ink)));
    const QString text = painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight,
                                                           option.rect.width() - 2 * measure::kGrid);
    painter->drawText(option.rect.adjusted(measure::kGrid, 0, -measure::kGrid, 0),
                      index.data(Qt::TextAlignmentRole).toInt(), text);
  }

 private:
  GridView& view_;
};

GridView::GridView(Office& office, forms::FlexGrid& grid, QWidget* parent)
    : QTableView(parent), office_(office), grid_(grid), model_(new Model(*this, grid)) {
  setModel(model_);
  setItemDelegate(new Painter(*this));
  setShowGrid(false);
  setSelectionMode(QAbstractItemView::NoSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setFocusPolicy(Qt::TabFocus);
  setTabKeyNavigation(false);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  setWordWrap(false);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(measure::kRow);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setSectionsMovable(false);
  horizontalHeader()->setMinimumSectionSize(0);
  connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
    if (!adjusting_) RememberWidths();
    emit Moved();
  });
}

void GridView::Numbers(const QList<int>& columns) { numbers_ = columns; }

void GridView::Stretch(int column) { stretch_ = column; }

QRect GridView::CurrentCell() const {
  return visualRect(model_->index(grid_.Row() - grid_.FixedRows(), grid_.Col()));
}

void GridView::Reset() {
  live_ = true;
  model_->ReadAnew();
  Widths();
  CurrentMoved();
}

void GridView::Widths() {
  adjusting_ = true;
  const QVariantList kept =
      office_.settings.value(QStringLiteral("columnas/") + QString::fromStdString(grid_.Owner().Name()))
          .toList();
  for (int column = 0; column < grid_.Cols(); ++column) {
    const int twips = grid_.ColWidth(column);
    const bool named = !grid_.TextMatrix(0, column).empty();
    setColumnHidden(column, twips == 0 || !named);
    if (twips == 0 || !named) continue;
    const int kept_width = column < kept.size() ? kept[column].toInt() : 0;
    setColumnWidth(column, kept_width > 0 ? kept_width : twips / kTwipsAPixel + 2 * measure::kGrid);
  }
  if (stretch_ >= 0) horizontalHeader()->setSectionResizeMode(stretch_, QHeaderView::Stretch);
  adjusting_ = false;
}

void GridView::RememberWidths() {
  if (!live_) return;
  QVariantList widths;
  for (int column = 0; column < grid_.Cols(); ++column) {
    widths.append(column == stretch_ || isColumnHidden(column) ? 0 : columnWidth(column));
  }
  office_.settings.setValue(QStringLiteral("columnas/") + QString::fromStdString(grid_.Owner().Name()),
                            widths);
}

void GridView::CellChanged(int row, int col) {
  if (live_) model_->Changed(row, col);
}

void GridView::RowsChanged(int from) {
  if (live_) model_->ChangedFrom(from);
}

void GridView::LayoutChanged() {
  if (!live_) return;
  scrollTo(model_->index(grid_.TopRow() - grid_.FixedRows(), grid_.Col()), QAbstractItemView::PositionAtTop);
  viewport()->update();
}

void GridView::CurrentMoved() {
  if (!live_ || grid_.Row() < grid_.FixedRows()) return;
  const QModelIndex here = model_->index(grid_.Row() - grid_.FixedRows(), grid_.Col());
  selectionModel()->setCurrentIndex(here, QItemSelectionModel::NoUpdate);
  scrollTo(here);
  viewport()->update();
  emit Moved();
}

void GridView::mousePressEvent(QMouseEvent* event) {
  const QModelIndex cell = indexAt(event->pos());
  if (cell.isValid() && event->button() == Qt::LeftButton) {
    emit Clicked(cell.row() + grid_.FixedRows(), cell.column());
  }
  event->accept();
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex cell = indexAt(event->pos());
  if (cell.isValid()) emit DoubleClicked(cell.row() + grid_.FixedRows(), cell.column());
  event->accept();
}

void GridView::keyPressEvent(QKeyEvent* event) { event->ignore(); }

void GridView::scrollContentsBy(int dx, int dy) {
  QTableView::scrollContentsBy(dx, dy);
  emit Moved();
}

void GridView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  emit Moved();
}

}  // namespace tarvik::desktop
