#include "desktop/figures.h"

#include <QGlyphRun>
#include <QHash>
#include <QPainter>
#include <QRawFont>
#include <algorithm>

namespace tarvik::desktop {

namespace {

// What is measured once a font.
struct Figures {
  QRawFont font;
  qreal digit = 0;  // the widest
  qreal ascent = 0;
  qreal descent = 0;
};

const Figures& FiguresOf(const QFont& font) {
  static QHash<QString, Figures> known;
  Figures& figures = known[font.key()];
  if (figures.digit > 0) return figures;
  figures.font = QRawFont::fromFont(font);
  const auto advances =
      figures.font.advancesForGlyphIndexes(figures.font.glyphIndexesForString(QStringLiteral("0123456789")));
  for (const QPointF& advance : advances) figures.digit = std::max(figures.digit, advance.x());
  figures.ascent = figures.font.ascent();
  figures.descent = figures.font.descent();
  return figures;
}

}  // namespace

void DrawFigures(QPainter& painter, const QRect& area, const QString& text, bool right) {
  const Figures& figures = FiguresOf(painter.font());
  const auto glyphs = figures.font.glyphIndexesForString(text);
  if (glyphs.size() != text.size() || glyphs.contains(0)) {
    // A sign that the font doesn't have comes from another one, with its own measures.
    painter.drawText(area, Qt::AlignVCenter | (right ? Qt::AlignRight : Qt::AlignLeft), text);
    return;
  }
  const auto advances = figures.font.advancesForGlyphIndexes(glyphs);
  QList<QPointF> places;
  places.reserve(glyphs.size());
  const qreal baseline = area.top() + (area.height() + figures.ascent - figures.descent) / 2;
  qreal x = 0;
  for (qsizetype at = 0; at < text.size(); ++at) {
    const qreal room = text[at].isDigit() ? figures.digit : advances[at].x();
    places.append({x + (room - advances[at].x()) / 2, baseline});
    x += room;
  }
  if (x > area.width()) {
    // Cut off at its end, and so that it can be seen: a figure without its front would be another figure.
    painter.drawText(area, Qt::AlignVCenter | (right ? Qt::AlignRight : Qt::AlignLeft),
                     painter.fontMetrics().elidedText(text, Qt::ElideRight, area.width()));
    return;
  }
  const qreal start = right ? area.right() + 1 - x : area.left();
  for (QPointF& place : places) place.rx() += start;
  QGlyphRun run;
  run.setRawFont(figures.font);
  run.setGlyphIndexes(glyphs);
  run.setPositions(places);
  painter.drawGlyphRun({}, run);
}

}  // namespace tarvik::desktop
