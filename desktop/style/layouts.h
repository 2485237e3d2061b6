// Layouts that the screens' views share: a band, a caption over a field.
#pragma once

#include <initializer_list>

class QBoxLayout;
class QWidget;

namespace tarvik::desktop {

// A framed band across the screen; `layout` is its row.
QWidget* Band(QBoxLayout** layout);
// A caption over a field. A width of 0 leaves it to the row.
QWidget* Under(QWidget* caption, QWidget* field, int width = 0);
// A row of buttons at the right end.
QWidget* AtRight(std::initializer_list<QWidget*> buttons);
// The place of a caption, where a field has none.
QWidget* BlankCaption();

}  // namespace tarvik::desktop
