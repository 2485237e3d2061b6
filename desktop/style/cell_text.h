// The texts of cells. A page of a list holds the same states, dates and names over and over, and every
// key paints it anew, so a text is shaped once and kept; shaping costs many times what painting does.
#pragma once

#include <QRect>
#include <QString>

class QPainter;

namespace tarvik::desktop {

// Both draw one line with the painter's font and pen, in the middle of the area's height, at its right or
// left end. A text that is too wide ends in an ellipsis; breaks and tabs in it are blanks. To be called
// on the window's thread.
void DrawCellText(QPainter& painter, const QRect& area, const QString& text, bool right = false);
// Each digit in the room of the widest, whatever the font's own are: columns of numbers stand one under
// the other.
void DrawFigures(QPainter& painter, const QRect& area, const QString& text, bool right);

}  // namespace tarvik::desktop
