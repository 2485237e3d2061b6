// What the tables of the lists have in common: how a cell is painted, and how a table behaves. It
// reads no data.
#pragma once

#include <QStyledItemDelegate>

class QSettings;
class QTableView;

namespace tarvik::desktop {

class Theme;

// Numbers with figures of equal width, chips for states, ink for what is negative. A cell asks for it
// by the roles below; without them it is plain text.
class CellDelegate : public QStyledItemDelegate {
 public:
  enum Role { FiguresRole = Qt::UserRole + 100, ChipRole, BelowZeroRole, SoftRole };

  explicit CellDelegate(const Theme& theme, QObject* parent) : QStyledItemDelegate(parent), theme_(theme) {}
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  void PaintChip(QPainter& painter, const QFont& cell, const QRect& area, const QString& state,
                 const QString& text) const;

  const Theme& theme_;
};

// Row height, selection by row, no grid, headers as their columns; one column takes the room left.
void DressTable(QTableView& table, const Theme& theme, const QString& accessible, int stretched);
// Widths in characters, for a table whose widths nobody has changed yet.
void SetWidths(QTableView& table, const QList<int>& characters);
void SaveWidths(const QTableView& table, QSettings& settings, const QString& name);
// False if none were kept.
bool LoadWidths(QTableView& table, QSettings& settings, const QString& name);

}  // namespace tarvik::desktop
