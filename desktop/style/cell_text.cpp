#include "desktop/style/cell_text.h"

#include <QCache>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>
#include <QRawFont>
#include <QTextLayout>
#include <algorithm>
#include <deque>
#include <memory>
#include <utility>

namespace tarvik::desktop {

namespace {

constexpr int kKeptTexts = 4096;  // of a font and a kind: some twenty pages
constexpr std::size_t kKeptFaces = 16;

// Glyphs on a baseline at 0.
struct Shaped {
  QList<QGlyphRun> runs;
  qreal width = 0;
};

// A text, and the width that it was cut for.
using Cut = std::pair<QString, int>;

// All that is kept of one font.
class Face {
 public:
  explicit Face(const QFont& font) : font_(font), raw_(QRawFont::fromFont(font)) {
    const QFontMetricsF metrics(font);
    ascent_ = metrics.ascent();
    descent_ = metrics.descent();
    for (const QPointF& advance : Advances(QStringLiteral("0123456789"))) {
      digit_ = std::max(digit_, advance.x());
    }
  }

  [[nodiscard]] const QFont& Font() const { return font_; }

  const Shaped& Text(const QString& text) {
    return Kept(texts_, text, [&] { return Shape(text); });
  }

  const Shaped& TextWithin(const QString& text, int width) {
    const Shaped& whole = Text(text);
    if (whole.width <= width) return whole;
    return Kept(cuts_, Cut{text, width},
                [&] { return Shape(QFontMetricsF(font_).elidedText(text, Qt::ElideRight, width)); });
  }

  // Elided at the end, and visibly: a number without its first digits would be another number.
  const Shaped& FiguresWithin(const QString& text, int width) {
    const Shaped& whole = Kept(figures_, text, [&] { return ShapeFigures(text); });
    return whole.width <= width ? whole : TextWithin(text, width);
  }

  void Draw(QPainter& painter, const QRect& area, const Shaped& shaped, bool right) const {
    const QPointF at(right ? area.right() + 1 - shaped.width : area.left(),
                     area.top() + (area.height() + ascent_ - descent_) / 2);
    for (const QGlyphRun& run : shaped.runs) painter.drawGlyphRun(at, run);
  }

 private:
  template <class Key, class Make>
  static const Shaped& Kept(QCache<Key, Shaped>& cache, const Key& key, Make make) {
    if (const Shaped* known = cache.object(key)) return *known;
    auto* made = new Shaped(make());
    cache.insert(key, made);
    return *made;
  }

  [[nodiscard]] QList<QPointF> Advances(const QString& text) const {
    return raw_.advancesForGlyphIndexes(raw_.glyphIndexesForString(text));
  }

  [[nodiscard]] Shaped Shape(const QString& text) const {
    QTextLayout layout(text, font_);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    Shaped shaped;
    if (!line.isValid()) return shaped;
    shaped.width = line.naturalTextWidth();
    shaped.runs = layout.glyphRuns();
    // The layout counts from the line's top.
    for (QGlyphRun& run : shaped.runs) {
      auto places = run.positions();
      for (QPointF& place : places) place.ry() -= line.ascent();
      run.setPositions(places);
    }
    return shaped;
  }

  [[nodiscard]] Shaped ShapeFigures(const QString& text) const {
    const auto glyphs = raw_.glyphIndexesForString(text);
    // A sign that the font doesn't have comes from another one, with its own measures.
    if (glyphs.size() != text.size() || glyphs.contains(0)) return Shape(text);
    const auto advances = raw_.advancesForGlyphIndexes(glyphs);
    QList<QPointF> places;
    places.reserve(glyphs.size());
    qreal x = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
      const qreal room = text[at].isDigit() ? digit_ : advances[at].x();
      places.append({x + (room - advances[at].x()) / 2, 0});
      x += room;
    }
    QGlyphRun run;
    run.setRawFont(raw_);
    run.setGlyphIndexes(glyphs);
    run.setPositions(places);
    return {{run}, x};
  }

  QFont font_;
  QRawFont raw_;
  qreal ascent_ = 0;
  qreal descent_ = 0;
  qreal digit_ = 0;  // the widest
  QCache<QString, Shaped> texts_{kKeptTexts};
  QCache<QString, Shaped> figures_{kKeptTexts};
  QCache<Cut, Shaped> cuts_{kKeptTexts};
};

// Keeps a few fonts and drops the least recently used one.
Face& FaceOf(const QFont& font) {
  static std::deque<std::unique_ptr<Face>> faces;
  const auto known =
      std::find_if(faces.begin(), faces.end(), [&](const auto& face) { return face->Font() == font; });
  if (known == faces.end()) {
    if (faces.size() == kKeptFaces) faces.pop_back();
    faces.push_front(std::make_unique<Face>(font));
  } else if (known != faces.begin()) {
    std::rotate(faces.begin(), known, known + 1);
  }
  return *faces.front();
}

QString OneLine(const QString& text) {
  const auto breaks = [](QChar sign) {
    return sign == QLatin1Char('\n') || sign == QLatin1Char('\r') || sign == QLatin1Char('\t') ||
           sign == QChar::LineSeparator || sign == QChar::ParagraphSeparator;
  };
  if (std::none_of(text.begin(), text.end(), breaks)) return text;
  QString line = text;
  std::replace_if(line.begin(), line.end(), breaks, QLatin1Char(' '));
  return line;
}

}  // namespace

void DrawCellText(QPainter& painter, const QRect& area, const QString& text, bool right) {
  if (text.isEmpty()) return;
  Face& face = FaceOf(painter.font());
  face.Draw(painter, area, face.TextWithin(OneLine(text), area.width()), right);
}

void DrawFigures(QPainter& painter, const QRect& area, const QString& text, bool right) {
  if (text.isEmpty()) return;
  Face& face = FaceOf(painter.font());
  face.Draw(painter, area, face.FiguresWithin(OneLine(text), area.width()), right);
}

}  // namespace tarvik::desktop
