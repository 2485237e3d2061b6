#include "desktop/windows/hooks_looks.h"

#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTableView>
#include <utility>

#include "desktop/style/theme.h"

namespace tarvik::desktop::hooks {

namespace {

// Text that stands under its heading, and no mark around the single cell: the row is what is chosen.
class RowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QString text = std::exchange(cell.text, {});
    cell.state &= ~QStyle::State_HasFocus;
    const QStyle& style = *cell.widget->style();
    style.drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    const QRect room = cell.rect.adjusted(measure::kGrid, 0, -measure::kGrid, 0);
    const bool selected = (cell.state & QStyle::State_Selected) != 0;
    painter->save();
    painter->setFont(cell.font);
    painter->setPen(cell.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(room, static_cast<int>(cell.displayAlignment),
                      cell.fontMetrics.elidedText(text, Qt::ElideRight, room.width()));
    painter->restore();
  }
};

}  // namespace

QLabel* Label(const char* role, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setProperty("role", QLatin1String(role));
  label->setTextFormat(Qt::PlainText);
  return label;
}

void Dress(QTableView& table) {
  table.setAlternatingRowColors(true);
  table.setShowGrid(false);
  table.setWordWrap(false);
  table.setItemDelegate(new RowDelegate(&table));
  table.setTabKeyNavigation(false);
  table.setSelectionBehavior(QAbstractItemView::SelectRows);
  table.setEditTriggers(QAbstractItemView::NoEditTriggers);
  table.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table.verticalHeader()->hide();
  table.verticalHeader()->setDefaultSectionSize(measure::kRow);
  table.horizontalHeader()->setHighlightSections(false);
  table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

int WidthOf(const QWidget& widget, const QString& sample) {
  return widget.fontMetrics().horizontalAdvance(sample) + 3 * measure::kGrid;
}

}  // namespace tarvik::desktop::hooks
