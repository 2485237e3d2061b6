#include "desktop/screens/grid_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSettings>

#include "desktop/style/cell_text.h"
#include "desktop/style/theme.h"
#include "forms/form.h"

namespace tarvik::desktop {

namespace {
constexpr int kLeastColumn = 56;  // of a matrix: a quantity of six figures
constexpr int kSwatch = 16;
}  // namespace

class GridView::Model final : public QAbstractTableModel {
 public:
  Model(GridView& view, forms::FlexGrid& grid) : QAbstractTableModel(&view), view_(view), grid_(grid) {}

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : rows_;
  }
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : columns_;
  }
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole || role == Qt::AccessibleTextRole) {
      return QString::fromStdString(grid_.TextMatrix(index.row() + grid_.FixedRows(), index.column()));
    }
    if (role == Qt::TextAlignmentRole) return Alignment(index.column());
    return {};
  }
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (orientation == Qt::Vertical) return RowHeader(section + grid_.FixedRows(), role);
    if (role == Qt::DisplayRole) {
      QStringList lines;
      for (int row = 0; row < grid_.FixedRows(); ++row) {
        lines += QString::fromStdString(grid_.TextMatrix(row, section));
      }
      lines.removeAll(QString());
      return lines.join(QLatin1Char('\n'));
    }
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
    Follow();
    if (rows_ == 0 || columns_ == 0) return;
    emit dataChanged(index(std::max(0, row - grid_.FixedRows()), 0),
                     index(rowCount() - 1, columnCount() - 1));
  }
  void ReadAnew() {
    beginResetModel();
    rows_ = RowsNow();
    columns_ = grid_.Cols();
    endResetModel();
  }
  [[nodiscard]] bool IsUpToDate() const { return columns_ == grid_.Cols() && rows_ == RowsNow(); }

 private:
  [[nodiscard]] int RowsNow() const { return std::max(0, grid_.Rows() - grid_.FixedRows()); }

  // Takes over the grid's number of rows; the difference is reported at the end of the table.
  void Follow() {
    const int now = RowsNow();
    if (now > rows_) {
      beginInsertRows({}, rows_, now - 1);
      rows_ = now;
      endInsertRows();
    } else if (now < rows_) {
      beginRemoveRows({}, now, rows_ - 1);
      rows_ = now;
      endRemoveRows();
    }
  }

  [[nodiscard]] QVariant RowHeader(int row, int role) const {
    if (!view_.matrix_ || row >= grid_.Rows()) return {};
    if (role == Qt::DisplayRole) {
      QStringList words;
      for (int column = 0; column < grid_.FixedCols(); ++column) {
        words += QString::fromStdString(grid_.TextMatrix(row, column));
      }
      words.removeAll(QString());
      return words.join(QStringLiteral("  "));
    }
    if (role == Qt::DecorationRole) {
      const int colour = grid_.BackColor(row, 0);
      const qreal ratio = view_.devicePixelRatioF();
      QPixmap swatch(QSize(kSwatch, kSwatch) * ratio);
      swatch.setDevicePixelRatio(ratio);
      swatch.fill(Qt::transparent);
      QPainter painter(&swatch);
      painter.setRenderHint(QPainter::Antialiasing);
      painter.setPen(view_.office_.theme.Color(Role::FieldBorder));
      painter.setBrush(QColor(colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF));
      painter.drawRoundedRect(QRectF(0.5, 0.5, kSwatch - 1, kSwatch - 1), 3, 3);
      return swatch;
    }
    if (role == Qt::TextAlignmentRole) return QVariant(Qt::AlignVCenter | Qt::AlignLeft);
    return {};
  }

  [[nodiscard]] QVariant Alignment(int column) const {
    return QVariant(Qt::AlignVCenter | (view_.numbers_.contains(column) ? Qt::AlignRight : Qt::AlignLeft));
  }

  GridView& view_;
  forms::FlexGrid& grid_;
  int rows_ = 0;
  int columns_ = 0;
};

// Rows by turns, the current cell in its own ink: light cyan, deep cyan in the dark.
class GridView::Painter final : public QStyledItemDelegate {
 public:
  explicit Painter(GridView& view) : QStyledItemDelegate(&view), view_(view) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const Theme& theme = view_.office_.theme;
    const forms::FlexGrid& grid = view_.grid_;
    const int row = index.row() + grid.FixedRows();
    const bool here = row == grid.Row() && index.column() == grid.Col();
    const bool used = !grid.TextMatrix(row, 0).empty();
    if (grid.Blocked(row, index.column())) {
      // A blocked cell has no ground of its own, only hatching.
      painter->fillRect(option.rect, theme.Color(Role::Blocked));
      painter->fillRect(option.rect, QBrush(theme.Color(Role::FieldBorder), Qt::BDiagPattern));
    } else {
      painter->fillRect(option.rect,
                        theme.Color(here ? Role::Cell : (index.row() % 2 ? Role::RowOther : Role::Row)));
    }
    if (here && (view_.hasFocus() || used)) {
      painter->setPen(
          QPen(theme.Color(view_.hasFocus() ? Role::Accent : Role::Border), view_.hasFocus() ? 2 : 1));
      painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
    }
    QFont font = option.font;
    if (here) font.setBold(true);
    painter->setFont(font);
    const QString text = index.data().toString();
    const bool alarming = index.column() == view_.alarm_ && text.startsWith(QLatin1Char('-'));
    painter->setPen(theme.Color(alarming ? Role::Refused : (here ? Role::CellInk : Role::Ink)));
    const QRect area = option.rect.adjusted(measure::kGrid, 0, -measure::kGrid, 0);
    const bool number = view_.numbers_.contains(index.column());
    (number ? DrawFigures : DrawCellText)(*painter, area, text, number);
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

void GridView::AsMatrix() {
  matrix_ = true;
  setShowGrid(true);
  verticalHeader()->show();
  verticalHeader()->setHighlightSections(false);
  verticalHeader()->setMinimumSectionSize(measure::kRow);
  horizontalHeader()->setDefaultAlignment(Qt::AlignCenter);
}

QRect GridView::CurrentCell() const {
  return visualRect(model_->index(grid_.Row() - grid_.FixedRows(), grid_.Col()));
}

void GridView::Reset() {
  live_ = true;
  model_->ReadAnew();
  Widths();
  CurrentMoved();
}

// Columns and rows share the room; those without width are spacers of the model.
void GridView::Proportions() {
  for (int column = 0; column < grid_.Cols(); ++column) {
    setColumnHidden(column, column < grid_.FixedCols() || grid_.ColWidth(column) < kTwipsAPixel);
  }
  for (int row = grid_.FixedRows(); row < grid_.Rows(); ++row) {
    setRowHidden(row - grid_.FixedRows(), grid_.RowHeight(row) < kTwipsAPixel);
  }
  horizontalHeader()->setMinimumSectionSize(kLeastColumn);
  horizontalHeader()->setMaximumSectionSize(kLeastColumn * 3);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  verticalHeader()->setMaximumSectionSize(measure::kRow * 2);
  verticalHeader()->setSectionResizeMode(QHeaderView::Stretch);
}

void GridView::Widths() {
  if (matrix_) return Proportions();
  adjusting_ = true;
  const QVariantList kept =
      office_.settings.value(QStringLiteral("columnas/") + QString::fromStdString(grid_.Owner().Name()))
          .toList();
  for (int column = 0; column < grid_.Cols(); ++column) {
    const int twips = grid_.ColWidth(column);
    const bool named = grid_.FixedRows() == 0 || !grid_.TextMatrix(0, column).empty();
    setColumnHidden(column, twips == 0 || !named);
    if (twips == 0 || !named) continue;
    const int kept_width = column < kept.size() ? kept[column].toInt() : 0;
    int designed =
        std::max(twips / kTwipsAPixel + 2 * measure::kGrid, horizontalHeader()->sectionSizeHint(column));
    if (numbers_.contains(column)) {
      // Room for a line's amount with thousands and cents.
      designed = std::max(designed,
                          fontMetrics().horizontalAdvance(QStringLiteral("000,000.00")) + 3 * measure::kGrid);
    }
    setColumnWidth(column, kept_width > 0 ? kept_width : designed);
  }
  for (int column = 0; column < grid_.Cols(); ++column) {
    horizontalHeader()->setSectionResizeMode(
        column, column == stretch_ ? QHeaderView::Stretch : QHeaderView::Interactive);
  }
  adjusting_ = false;
}

void GridView::RememberWidths() {
  if (!live_ || matrix_) return;
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
  if (!model_->IsUpToDate()) return Reset();
  scrollTo(model_->index(grid_.TopRow() - grid_.FixedRows(), grid_.Col()), QAbstractItemView::PositionAtTop);
  viewport()->update();
}

void GridView::CurrentMoved() {
  if (!live_ || grid_.Row() < grid_.FixedRows() || grid_.Row() >= grid_.Rows()) return;
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
