// The painting of cells, and the manners that all tables of the lists share. It reads no data.
#include "desktop/list_cells.h"

#include <QHash>
#include <QHeaderView>
#include <QPainter>
#include <QSettings>
#include <QTableView>
#include <algorithm>
#include <array>

#include "desktop/theme.h"

namespace tarvik::desktop {
namespace {

constexpr int kPadding = measure::kGrid;

// How wide a font draws each sign that a figure is made of; measured once a font.
struct FigureWidths {
  int digit = 0;  // the widest
  std::array<int, 128> each{};
};

const FigureWidths& WidthsOf(const QFont& font) {
  static QHash<QString, FigureWidths> known;
  FigureWidths& widths = known[font.key()];
  if (widths.digit > 0) return widths;
  const QFontMetrics metrics(font);
  for (int sign = 0; sign < static_cast<int>(widths.each.size()); ++sign) {
    widths.each[static_cast<std::size_t>(sign)] = metrics.horizontalAdvance(QChar(sign));
  }
  widths.digit = *std::max_element(&widths.each['0'], &widths.each['9'] + 1);
  return widths;
}

// The font's own figures may differ in width; here each takes the room of the widest.
void DrawFigures(QPainter& painter, QRect area, const QString& text, bool right) {
  const FigureWidths& widths = WidthsOf(painter.font());
  auto own = [&](QChar sign) {
    return sign.unicode() < widths.each.size() ? widths.each[sign.unicode()]
                                               : painter.fontMetrics().horizontalAdvance(sign);
  };
  auto room = [&](QChar sign) { return sign.isDigit() ? widths.digit : own(sign); };
  if (!right) {
    int width = 0;
    for (const QChar sign : text) width += room(sign);
    area.setWidth(std::min(width, area.width()));
  }
  const QFontMetrics metrics = painter.fontMetrics();
  const int baseline = area.top() + (area.height() + metrics.ascent() - metrics.descent()) / 2;
  int x = area.right() + 1;
  for (auto at = text.size() - 1; at >= 0; --at) {
    const QChar sign = text.at(at);
    x -= room(sign);
    if (x < area.left() - widths.digit) return;
    painter.drawText(QPointF(x + (room(sign) - own(sign)) / 2.0, baseline), sign);
  }
}

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
