#include "desktop/printing/page_breaks.h"

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextLayout>
#include <QTextTable>
#include <algorithm>
#include <utility>

namespace tarvik::desktop {

namespace {

constexpr int kShort = 6;          // rows; totals and signatures are such tables
constexpr double kRounding = 0.1;  // of the layout, which counts in sixty-fourths

// A part of the text that no page's end goes through.
struct Unit {
  double top;
  double bottom;
  int first;  // position in the text
  int last;
  bool with_next = false;    // on one page with the unit that follows
  bool on_new_page = false;  // as the page itself demands
  bool goes_on = false;      // a row of a table whose heading comes again above it
  double head_top = 0;
  double head_bottom = 0;
  bool empty = false;  // a line without text

  [[nodiscard]] double Head() const { return goes_on ? head_bottom - head_top : 0; }
};

class Reading {
 public:
  explicit Reading(const QTextDocument& document)
      : document_(document), layout_(*document.documentLayout()) {}

  QList<Unit> Units() {
    const QTextFrame* root = document_.rootFrame();
    for (auto part = root->begin(); part != root->end(); ++part) {
      QTextFrame* frame = part.currentFrame();
      const qsizetype before = units_.size();
      QTextFormat::PageBreakFlags policy = QTextFormat::PageBreak_Auto;
      if (auto* table = qobject_cast<QTextTable*>(frame)) {
        AddTable(*table);
        policy = table->format().pageBreakPolicy();
      } else if (frame != nullptr) {
        AddFrame(*frame);
        policy = frame->frameFormat().pageBreakPolicy();
      } else {
        policy = part.currentBlock().blockFormat().pageBreakPolicy();
        if (!TakesNoRoom(root, part)) AddBlock(part.currentBlock());
      }
      if (units_.size() == before) {
        after_ = after_ || policy != QTextFormat::PageBreak_Auto;
        continue;
      }
      units_[before].on_new_page = after_ || (policy & QTextFormat::PageBreak_AlwaysBefore) != 0;
      after_ = (policy & QTextFormat::PageBreak_AlwaysAfter) != 0;
    }
    // The toolkit ends a text that ends with a table with an empty line.
    while (units_.size() > 1 && units_.back().empty) units_.removeLast();
    KeepTheEnd();
    return std::move(units_);
  }

 private:
  // The toolkit begins each table with an empty line before it, and gives that line no height.
  static bool TakesNoRoom(const QTextFrame* root, QTextFrame::iterator part) {
    const QTextBlock block = part.currentBlock();
    if (!Bare(block) || block.length() > 1 || ++part == root->end()) return false;
    return qobject_cast<QTextTable*>(part.currentFrame()) != nullptr;
  }

  // Without text, and without a ruler or a colour that would be seen.
  static bool Bare(const QTextBlock& block) {
    const QTextBlockFormat format = block.blockFormat();
    return block.text().trimmed().isEmpty() && !format.hasProperty(QTextFormat::BackgroundBrush) &&
           !format.hasProperty(QTextFormat::BlockTrailingHorizontalRulerWidth);
  }

  void AddBlock(const QTextBlock& block) {
    if (!block.isVisible()) return;
    const double top = layout_.blockBoundingRect(block).top();
    const QTextLayout& lines = *block.layout();
    const bool empty = Bare(block);
    for (int i = 0; i < lines.lineCount(); ++i) {
      const QTextLine line = lines.lineAt(i);
      units_.append({.top = top + line.y(),
                     .bottom = top + line.y() + line.height(),
                     .first = block.position(),
                     .last = block.position() + block.length() - 1,
                     .empty = empty});
    }
  }

  void AddFrame(QTextFrame& frame) {
    const QRectF place = layout_.frameBoundingRect(&frame);
    units_.append({.top = place.top(),
                   .bottom = place.bottom(),
                   .first = frame.firstPosition(),
                   .last = frame.lastPosition()});
  }

  // Where a cell begins: above its content by its padding and its border.
  [[nodiscard]] double TopOf(const QTextTable& table, const QTextTableCell& cell) const {
    const QTextTableCellFormat format = cell.format().toTableCellFormat();
    double above = format.hasProperty(QTextFormat::TableCellTopPadding) ? format.topPadding()
                                                                        : table.format().cellPadding();
    above += format.topBorder() + (table.format().borderCollapse() ? 0 : table.format().border());
    QTextFrame* frame = cell.begin().currentFrame();
    if (const auto* inner = qobject_cast<QTextTable*>(frame)) {
      return TopOf(*inner) - inner->format().topMargin() - above;
    }
    const QRectF place = frame != nullptr ? layout_.frameBoundingRect(frame)
                                          : layout_.blockBoundingRect(cell.firstCursorPosition().block());
    return place.top() - above;
  }

  // Where a table begins, with its own border and without its margin.
  [[nodiscard]] double TopOf(const QTextTable& table) const {
    const QTextTableFormat format = table.format();
    return TopOf(table, table.cellAt(0, 0)) -
           (format.borderCollapse() ? 0 : format.border() + format.cellSpacing());
  }

  // Where it ends, the same way. The toolkit tells a table's height with both margins, from where the content
  // of its first cell begins.
  [[nodiscard]] double BottomOf(QTextTable& table) const {
    const QRectF told = layout_.frameBoundingRect(&table);
    const QTextTableFormat format = table.format();
    return TopOf(table) + told.height() - format.topMargin() - format.bottomMargin();
  }

  // A unit for each row; for several where a cell reaches over them.
  void AddTable(QTextTable& table) {
    const qsizetype first = units_.size();
    const int rows = table.rows();
    const int heading = std::min(table.format().headerRowCount(), rows - 1);
    double head_bottom = 0;
    bool reaches = false;
    for (int row = 0; row < rows; ++row) {
      Unit unit = RowOf(table, row);
      if (row == 0) unit.top = std::min(unit.top, TopOf(table));
      if (row == heading) head_bottom = unit.top;
      unit.with_next = row < heading || (rows <= kShort && row + 1 < rows);
      unit.goes_on = heading > 0 && row > heading;
      const bool joined = std::exchange(reaches, ReachesOn(table, row));
      if (joined) {
        units_.back().last = std::max(units_.back().last, unit.last);
        units_.back().with_next = unit.with_next;
        continue;
      }
      if (row > 0) units_.back().bottom = unit.top;
      units_.append(unit);
    }
    units_.back().bottom = BottomOf(table);
    for (qsizetype i = first; i < units_.size(); ++i) {
      units_[i].head_top = units_[first].top;
      units_[i].head_bottom = head_bottom;
    }
    if (heading > 0 || rows > kShort) {
      lines_begin_ = std::min(first + heading, units_.size());
      lines_end_ = units_.size();
    }
  }

  Unit RowOf(const QTextTable& table, int row) const {
    Unit unit{.top = 0, .bottom = 0, .first = table.lastPosition(), .last = table.firstPosition()};
    bool found = false;
    for (int column = 0; column < table.columns(); ++column) {
      const QTextTableCell cell = table.cellAt(row, column);
      if (!cell.isValid()) continue;
      unit.first = std::min(unit.first, cell.firstPosition());
      unit.last = std::max(unit.last, cell.lastPosition());
      if (cell.row() != row) continue;
      const double begins = TopOf(table, cell);
      unit.top = found ? std::min(unit.top, begins) : begins;
      found = true;
    }
    return unit;
  }

  static bool ReachesOn(const QTextTable& table, int row) {
    for (int column = 0; column < table.columns(); ++column) {
      const QTextTableCell cell = table.cellAt(row, column);
      if (cell.isValid() && cell.row() + cell.rowSpan() - 1 > row) return true;
    }
    return false;
  }

  // The last two lines go with all that follows: nobody signs a page with one line on it, or none.
  void KeepTheEnd() {
    if (lines_end_ > lines_begin_) {
      const qsizetype from = std::max(lines_begin_, lines_end_ - 2);
      for (qsizetype i = from; i + 1 < units_.size(); ++i) units_[i].with_next = !units_[i + 1].on_new_page;
    } else if (units_.size() > 1 && !units_.back().on_new_page) {
      units_[units_.size() - 2].with_next = true;
    }
  }

  const QTextDocument& document_;
  const QAbstractTextDocumentLayout& layout_;
  QList<Unit> units_;
  bool after_ = false;
  qsizetype lines_begin_ = 0;  // of the last table with a heading
  qsizetype lines_end_ = 0;
};

// The last place up to `limit` that goes through no line of the unit.
double Between(const QTextDocument& document, const Unit& unit, double limit) {
  const QAbstractTextDocumentLayout& layout = *document.documentLayout();
  double place = limit;
  for (bool moved = true; moved;) {
    moved = false;
    for (QTextBlock block = document.findBlock(unit.first); block.isValid() && block.position() <= unit.last;
         block = block.next()) {
      const double top = layout.blockBoundingRect(block).top();
      for (int i = 0; i < block.layout()->lineCount(); ++i) {
        const QTextLine line = block.layout()->lineAt(i);
        const double begins = top + line.y();
        if (begins + kRounding >= place || begins + line.height() <= place + kRounding) continue;
        place = begins;
        moved = true;
      }
    }
  }
  return place > unit.top + kRounding ? place : limit;  // a picture that fills a page
}

class Filling {
 public:
  Filling(const QTextDocument& document, QList<Unit> units, double height)
      : document_(document), units_(std::move(units)), height_(height) {}

  QList<PageSlice> Pages() {
    for (qsizetype i = 0; i < units_.size();) {
      qsizetype last = i;
      while (last + 1 < units_.size() && units_[last].with_next && !units_[last + 1].on_new_page) ++last;
      if (units_[i].on_new_page) EndBefore(i);
      if (!Fits(start_, last) && Fits(i, last)) {
        EndBefore(i);
      } else if (!Fits(start_, last)) {
        for (; i <= last; ++i) AddAlone(i);
      }
      i = last + 1;
    }
    if (!units_.isEmpty()) EndBefore(units_.size());
    if (pages_.isEmpty()) pages_.append(PageSlice{});
    return pages_;
  }

 private:
  [[nodiscard]] bool Fits(qsizetype from, qsizetype to) const {
    return units_[from].Head() + units_[to].bottom - units_[from].top <= height_ + kRounding;
  }

  void AddAlone(qsizetype i) {
    if (!Fits(start_, i)) EndBefore(i);
    while (!Fits(start_, i)) {
      Unit& unit = units_[i];
      const double end = Between(document_, unit, unit.top + height_ - unit.Head());
      Add(unit, end);
      unit.top = end;
    }
  }

  void EndBefore(qsizetype end) {
    if (end <= start_) return;
    Add(units_[start_], units_[end - 1].bottom);
    start_ = end;
  }

  void Add(const Unit& first, double bottom) {
    PageSlice page{.top = first.top, .bottom = bottom};
    if (first.goes_on) {
      page.head_top = first.head_top;
      page.head_bottom = first.head_bottom;
    }
    pages_.append(page);
  }

  const QTextDocument& document_;
  QList<Unit> units_;
  double height_;
  qsizetype start_ = 0;  // the first unit of the page that is being filled
  QList<PageSlice> pages_;
};

}  // namespace

QList<PageSlice> PageBreaks(const QTextDocument& document, double height) {
  return Filling(document, Reading(document).Units(), height).Pages();
}

}  // namespace tarvik::desktop
