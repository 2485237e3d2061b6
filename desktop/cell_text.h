// Figures of equal width, whatever the font's own are: columns of numbers stand one under the other.
#pragma once

#include <QRect>
#include <QString>

class QPainter;

namespace tarvik::desktop {

// Draws the text with the painter's font and pen, each digit in the room of the widest, in the middle of
// the area's height, at its right or left end. A text that is too wide ends in an ellipsis.
void DrawFigures(QPainter& painter, const QRect& area, const QString& text, bool right);

}  // namespace tarvik::desktop
