// How tables and words of the window of keys and routines look.
#pragma once

class QLabel;
class QString;
class QTableView;
class QWidget;

namespace tarvik::desktop::hooks {

QLabel* Label(const char* role, QWidget* parent);
// A table that holds rows, not cells: no grid, one height, arrow keys inside and Tab out.
void Dress(QTableView& table);
// The width of a text that stands for a column's usual contents.
int WidthOf(const QWidget& widget, const QString& sample);

}  // namespace tarvik::desktop::hooks
