// How cells are painted, and how all tables of the lists behave. It reads no data.
#include "desktop/style/list_cells.h"

#include <QHeaderView>
#include <QPainter>
#include <QSettings>
#include <QTableView>
#include <algorithm>

#include "desktop/style/cell_text.h"
#include "desktop/style/theme.h"

namespace tarvik::desktop {
namespace {

constexpr int kPadding = measure::kGrid;

}  // namespace

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  using Ink = tarvik::desktop::Role;
  // The whole row is selected: one ground, no frame around a single cell. Cells are painted without the
  // style, whose calls would be most of the cost of a page.
  const bool selected = option.state.testFlag(QStyle::State_Selected);
  if (selected) painter->fillRect(option.rect, theme_.Color(Ink::Selection));
  const QString text = index.data().toString();
  if (text.isEmpty()) return;

  const bool right = Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()).testFlag(Qt::AlignRight);
  const QRect area = option.rect.adjusted(kPadding, 0, -kPadding, 0);
  const QString chip = index.data(ChipRole).toString();
  if (!chip.isEmpty()) return PaintChip(*painter, option.font, area, chip, text);
  Ink ink = selected ? Ink::SelectionInk : Ink::Ink;
  if (!selected && index.data(SoftRole).toBool()) ink = Ink::SoftInk;
  if (!selected && index.data(BelowZeroRole).toBool()) ink = Ink::Refused;
  painter->setPen(theme_.Color(ink));
  painter->setFont(option.font);
  (index.data(FiguresRole).toBool() ? DrawFigures : DrawCellText)(*painter, area, text, right);
}

void CellDelegate::PaintChip(QPainter& painter, const QFont& cell, const QRect& area, const QString& state,
                             const QString& text) const {
  using Ink = tarvik::desktop::Role;
  const bool pending = state == QLatin1String("pendiente");
  const bool posted = state == QLatin1String("afectado");
  const bool half = state == QLatin1String("medias");
  QFont font = cell;
  font.setPixelSize(measure::kCaption);
  font.setWeight(QFont::DemiBold);
  const QFontMetrics metrics(font);
  const QString fits = metrics.elidedText(text, Qt::ElideRight, std::max(0, area.width() - 2 * kPadding));
  QRect pill(area.left(), 0, metrics.horizontalAdvance(fits) + 2 * kPadding, metrics.height() + kPadding / 2);
  pill.moveTop(area.center().y() - pill.height() / 2 + 1);
  painter.save();
  painter.setFont(font);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme_.Color(half      ? Ink::RefusedTint
                                : pending ? Ink::WarningTint
                                : posted  ? Ink::GoodTint
                                          : Ink::Quiet));
  painter.drawRoundedRect(pill, pill.height() / 2.0, pill.height() / 2.0);
  painter.setPen(theme_.Color(half      ? Ink::Refused
                              : pending ? Ink::Warning
                              : posted  ? Ink::Good
                                        : Ink::QuietInk));
  DrawCellText(painter, pill.adjusted(kPadding, 0, 0, 0), fits);
  painter.restore();
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
