// Lays a page out at a fixed resolution and paints it at the device's, so that the preview shows the
// very line breaks that the paper will have.
#include "desktop/printing/printed_page.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextFrame>
#include <algorithm>
#include <cmath>

#include "desktop/style/theme.h"
#include "host/barras.h"

namespace tarvik::desktop {

namespace {

using measure::kGrid;

constexpr int kResolution = 96;  // of the layout: a page's own measures are those of a screen
constexpr double kMetre = 0.0254;
constexpr QMarginsF kMargins(14, 13, 14, 15);  // millimetres
const auto kBarsName = QStringLiteral("barras");

// Black bars on white, four dots for each unit: sharp on any printer.
QImage BarsImage(std::int32_t number) {
  constexpr int kDots = 4;
  const host::Barras bars = host::BarrasDe(std::to_string(number));
  QImage image(bars.ancho * kDots, bars.alto * kDots, QImage::Format_Grayscale8);
  image.fill(Qt::white);
  QPainter painter(&image);
  for (const host::Barra& bar : bars.barras) {
    painter.fillRect(bar.x * kDots, 0, bar.ancho * kDots, image.height(), Qt::black);
  }
  return image;
}

// The page as a text document takes it: its drawn barcode becomes a picture of the same bars.
QString WithBarsAsPicture(QString html, const QSize& size) {
  static const QRegularExpression drawing(QStringLiteral("<svg[^>]*class=\"barras\".*?</svg>"),
                                          QRegularExpression::DotMatchesEverythingOption);
  return html.replace(drawing, QStringLiteral("<img src=\"%1\" width=\"%2\" height=\"%3\">")
                                   .arg(kBarsName)
                                   .arg(size.width())
                                   .arg(size.height()));
}

// A page made for a browser stands away from the window's edges. On paper that is the paper's own
// margin, and the page gets the whole width between.
void WithoutOuterMargin(QTextDocument& document) {
  QTextFrame* root = document.rootFrame();
  double left = -1;
  double right = -1;
  const auto narrow = [](double& least, double margin) {
    least = least < 0 ? margin : std::min(least, margin);
  };
  for (auto part = root->begin(); part != root->end(); ++part) {
    if (const QTextFrame* frame = part.currentFrame()) {
      narrow(left, frame->frameFormat().leftMargin());
      narrow(right, frame->frameFormat().rightMargin());
    } else if (!part.currentBlock().text().isEmpty()) {
      narrow(left, part.currentBlock().blockFormat().leftMargin());
      narrow(right, part.currentBlock().blockFormat().rightMargin());
    }
  }
  if (left <= 0 && right <= 0) return;
  QTextCursor cursor(&document);
  for (auto part = root->begin(); part != root->end(); ++part) {
    if (QTextFrame* frame = part.currentFrame()) {
      // Set on the frame itself, so that a table keeps its own properties.
      QTextFrameFormat format = frame->frameFormat();
      format.setLeftMargin(format.leftMargin() - left);
      format.setRightMargin(format.rightMargin() - right);
      frame->setFrameFormat(format);
    } else {
      const QTextBlock block = part.currentBlock();
      QTextBlockFormat format = block.blockFormat();
      format.setLeftMargin(std::max(0.0, format.leftMargin() - left));
      format.setRightMargin(std::max(0.0, format.rightMargin() - right));
      cursor.setPosition(block.position());
      cursor.setBlockFormat(format);
    }
  }
}

}  // namespace

QPageLayout PaperOf(const QPageSize& size, QPageLayout::Orientation orientation) {
  return {size, orientation, kMargins, QPageLayout::Millimeter};
}

PrintedPage::PrintedPage(const QString& html, std::int32_t number, host::ArchivosDeLaBase base)
    : ruler_(1, 1, QImage::Format_RGB32), document_(std::move(base)), number_(number) {
  ruler_.setDotsPerMeterX(static_cast<int>(std::lround(kResolution / kMetre)));
  ruler_.setDotsPerMeterY(ruler_.dotsPerMeterX());
  document_.setUndoRedoEnabled(false);
  document_.documentLayout()->setPaintDevice(&ruler_);
  document_.setUseDesignMetrics(true);
  document_.setDocumentMargin(0);
  document_.setMetaInformation(QTextDocument::CssMedia, QStringLiteral("print"));
  const QImage bars = BarsImage(number);
  document_.addResource(QTextDocument::ImageResource, QUrl(kBarsName), bars);
  // Forty-four millimetres wide, which desk scanners read well.
  constexpr double kWide = 44 / 1000.0 / kMetre * kResolution;
  const QSize size(static_cast<int>(kWide), static_cast<int>(kWide / 4));
  QFont font(QStringLiteral("Inter"));
  font.setPointSizeF(10);
  document_.setDefaultFont(font);
  document_.setHtml(WithBarsAsPicture(html, size));
  WithoutOuterMargin(document_);
  Layout(PaperOf(QPageSize(QPageSize::Letter)));
}

void PrintedPage::Layout(const QPageLayout& paper) {
  paper_ = paper;
  const QRectF room = paper.paintRect(QPageLayout::Point);
  const double scale = kResolution / 72.0;
  size_ = room.size() * scale;
  // In one piece: where the pages end is our own matter.
  document_.setPageSize(QSizeF(size_.width(), -1));
  document_.documentLayout()->documentSize();
  slices_ = PageBreaks(document_, size_.height());
}

void PrintedPage::PaintSlice(QPainter& painter, double top, double bottom, double at) const {
  painter.save();
  const QRectF view(0, top, size_.width(), bottom - top);
  painter.translate(0, at - top);
  QAbstractTextDocumentLayout::PaintContext context;
  context.clip = view;
  // Paper is white under either theme.
  context.palette.setColor(QPalette::Text, Qt::black);
  painter.setClipRect(view);
  document_.documentLayout()->draw(&painter, context);
  painter.restore();
}

void PrintedPage::PaintPage(QPainter& painter, int number) const {
  const PageSlice& slice = slices_.at(number);
  if (slice.Head() > 0) PaintSlice(painter, slice.head_top, slice.head_bottom, 0);
  PaintSlice(painter, slice.top, slice.bottom, slice.Head());
  // In the lower margin, so that it takes no room from the lines.
  painter.save();
  QFont foot = document_.defaultFont();
  foot.setPixelSize(measure::kCaption - 1);
  painter.setFont(foot);
  painter.setPen(Theme::Color(Role::SoftInk, false));
  const QRectF line(0, size_.height() + kGrid, size_.width(), 2 * kGrid);
  painter.drawText(line, Qt::AlignLeft | Qt::AlignTop, QStringLiteral("Núm. %1").arg(number_));
  painter.drawText(line, Qt::AlignRight | Qt::AlignTop,
                   QStringLiteral("Página %1 de %2").arg(number + 1).arg(Pages()));
  painter.restore();
}

bool PrintedPage::Paint(QPagedPaintDevice& device, QString* why) {
  const auto fail = [&](const QString& reason) {
    if (why != nullptr) *why = reason;
    return false;
  };
  // A printer that prints to a file does not report a full disk; a file written here does.
  if (auto* printer = dynamic_cast<QPrinter*>(&device);
      printer && printer->outputFormat() == QPrinter::PdfFormat && !printer->outputFileName().isEmpty()) {
    return SavePdf(printer->outputFileName(), printer->docName(), why);
  }
  device.setPageLayout(paper_);
  QPainter painter;
  if (!painter.begin(&device)) return fail(QStringLiteral("El dispositivo no responde."));
  const double scale = device.logicalDpiX() / static_cast<double>(kResolution);
  const int pages = Pages();
  for (int number = 0; number < pages; ++number) {
    if (number > 0 && !device.newPage()) {
      painter.end();
      return fail(QStringLiteral("Se imprimieron %1 de %2 páginas.").arg(number).arg(pages));
    }
    painter.save();
    painter.scale(scale, scale);
    PaintPage(painter, number);
    painter.restore();
  }
  return painter.end() || fail(QStringLiteral("El dispositivo no terminó la impresión."));
}

bool PrintedPage::SavePdf(const QString& path, const QString& title, QString* why) {
  // An existing file of this name is replaced only once the new one is complete.
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) {
    if (why != nullptr) *why = file.errorString();
    return false;
  }
  QPdfWriter writer(&file);
  writer.setTitle(title);
  writer.setResolution(600);
  if (!Paint(writer, why)) {
    file.cancelWriting();
    return false;
  }
  if (file.commit()) return true;
  if (why != nullptr) *why = file.errorString();
  return false;
}

}  // namespace tarvik::desktop
