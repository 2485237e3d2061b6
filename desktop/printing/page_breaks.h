// Where the pages of a text end that is laid out in one piece: between lines and between rows of a table,
// never through one. Short tables stay whole, the heading rows of a table come again on each of its pages,
// and the last page has at least the last two lines of the document above its totals. Only what is taller
// than a page by itself is divided, between two lines of its text.
#pragma once

#include <QList>

class QTextDocument;

namespace tarvik::desktop {

// One page's share of the text, in the text's own measures: from `top` to `bottom`, and above it once more
// the heading rows of the table that goes on, from `head_top` to `head_bottom`.
struct PageSlice {
  double top = 0;
  double bottom = 0;
  double head_top = 0;
  double head_bottom = 0;

  [[nodiscard]] double Head() const { return head_bottom - head_top; }
};

// At least one. The text must be laid out without pages of its own: its page size has a width alone.
QList<PageSlice> PageBreaks(const QTextDocument& document, double height);

}  // namespace tarvik::desktop
