// The painting of cells, and the manners that all tables of the lists share. It reads no data.
#include "desktop/list_cells.h"

#include <QHeaderView>
#include <QPainter>
#include <QSettings>
#include <QTableView>

#include "desktop/figures.h"
#include "desktop/theme.h"

namespace tarvik::desktop {
namespace {

constexpr int kPadding = measure::kGrid;

}  // namespace

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  QStyleOptionViewItem whole = option;
  initStyleOption(&whole, index);
  const QString text = whole.text;
  // The row is chosen, not the cell: one ground for all of it, no frame around one of them. The style
  // sheet has no say in a cell: asking it for each is most of what a page of a list costs.
  const bool selected = whole.state.testFlag(QStyle::State_Selected);
  if (selected) painter->fillRect(whole.rect, theme_.Color(tarvik::desktop::Role::Selection));
  if (text.isEmpty()) return;

  painter->save();
  tarvik::desktop::Role ink = selected ? tarvik::desktop::Role::SelectionInk : tarvik::desktop::Role::Ink;
  if (!selected && index.data(SoftRole).toBool()) ink = tarvik::desktop::Role::SoftInk;
  if (!selected && index.data(BelowZeroRole).toBool()) ink = tarvik::desktop::Role::Refused;
  painter->setPen(theme_.Color(ink));
  painter->setFont(whole.font);
  const QRect area = whole.rect.adjusted(kPadding, 0, -kPadding, 0);
  const QString chip = index.data(ChipRole).toString();
  if (!chip.isEmpty()) {
    const bool pending = chip == QLatin1String("pendiente");
    const bool posted = chip == QLatin1String("afectado");
    using R = tarvik::desktop::Role;
    QFont font = whole.font;
    font.setPixelSize(measure::kCaption);
    font.setWeight(QFont::DemiBold);
    painter->setFont(font);
    const QFontMetrics metrics(font);
    QRect pill(area.left(), 0, metrics.horizontalAdvance(text) + 2 * kPadding,
               metrics.height() + kPadding / 2);
    pill.moveTop(area.center().y() - pill.height() / 2 + 1);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(theme_.Color(pending ? R::WarningTint : posted ? R::GoodTint : R::Quiet));
    painter->drawRoundedRect(pill, pill.height() / 2.0, pill.height() / 2.0);
    painter->setPen(theme_.Color(pending ? R::Warning : posted ? R::Good : R::QuietInk));
    painter->drawText(pill, Qt::AlignCenter, text);
  } else if (index.data(FiguresRole).toBool()) {
    painter->setClipRect(whole.rect);
    DrawFigures(*painter, area, text, whole.displayAlignment.testFlag(Qt::AlignRight));
  } else {
    const QFontMetrics metrics = painter->fontMetrics();
    const bool fits = metrics.horizontalAdvance(text) <= area.width();
    painter->drawText(area, whole.displayAlignment,
                      fits ? text : metrics.elidedText(text, Qt::ElideRight, area.width()));
  }
  painter->restore();
}

QSize CellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  return {QStyledItemDelegate::sizeHint(option, index).width() + 2 * kPadding, measure::kRow};
}

void DressTable(QTableView& table, const Theme& theme, const QString& accessible, int stretched) {
  table.setAccessibleName(accessible);
  table.setItemDelegate(new CellDelegate(theme, &table));
  table.setSelectionBehavior(QAbstractItemView::SelectRows);
  table.setSelectionMode(QAbstractItemView::SingleSelection);
  table.setEditTriggers(QAbstractItemView::NoEditTriggers);
  table.setAlternatingRowColors(true);
  table.setShowGrid(false);
  table.setWordWrap(false);
  table.setTabKeyNavigation(false);
  table.setCornerButtonEnabled(false);
  table.setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  table.verticalHeader()->hide();
  table.verticalHeader()->setMinimumSectionSize(measure::kRow);
  table.verticalHeader()->setDefaultSectionSize(measure::kRow);
  table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  auto* header = table.horizontalHeader();
  header->setHighlightSections(false);
  header->setMinimumSectionSize(6 * measure::kGrid);
  header->setSectionsMovable(true);
  header->setSectionResizeMode(stretched, QHeaderView::Stretch);
}

void SetWidths(QTableView& table, const QList<int>& characters) {
  const int one = table.fontMetrics().averageCharWidth();
  for (int column = 0; column < characters.size(); ++column) {
    table.setColumnWidth(column, characters[column] * one + 2 * kPadding);
  }
}

void SaveWidths(const QTableView& table, QSettings& settings, const QString& name) {
  settings.setValue(QStringLiteral("columnas/") + name, table.horizontalHeader()->saveState());
}

bool LoadWidths(QTableView& table, QSettings& settings, const QString& name) {
  const QByteArray kept = settings.value(QStringLiteral("columnas/") + name).toByteArray();
  return !kept.isEmpty() && table.horizontalHeader()->restoreState(kept);
}

}  // namespace tarvik::desktop
