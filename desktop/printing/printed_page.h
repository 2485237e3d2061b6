// PrintedPage: a finished page laid out for paper, letter or A4, and painted on whatever takes pages. It
// makes no page, and knows no printer.
#pragma once

#include <QImage>
#include <QList>
#include <QPageLayout>
#include <QPageSize>
#include <QSizeF>
#include <QString>
#include <cstdint>

#include "desktop/printing/page_breaks.h"
#include "desktop/printing/page_text.h"
#include "host/archivos_de_la_base.h"

class QPagedPaintDevice;
class QPainter;

namespace tarvik::desktop {

// With the margins that a page has on paper.
QPageLayout PaperOf(const QPageSize& size, QPageLayout::Orientation orientation = QPageLayout::Portrait);

// The same line breaks in the preview, on a printer and in a PDF file.
class PrintedPage {
 public:
  // The barcode of the page is drawn from `number`. No picture of the page is one of the base's files.
  PrintedPage(const QString& html, std::int32_t number, host::ArchivosDeLaBase base = {});

  void Layout(const QPageLayout& paper);
  [[nodiscard]] int Pages() const { return static_cast<int>(slices_.size()); }
  // What a page has room for, at 96 dots to the inch.
  [[nodiscard]] QSizeF Size() const { return size_; }
  // Each page's share of the text.
  [[nodiscard]] const QList<PageSlice>& Slices() const { return slices_; }
  [[nodiscard]] const QTextDocument& Document() const { return document_; }
  // One page, from 0, at 96 dots to the inch; the caller scales. In the margin below it stand the document's
  // number and the page's.
  void PaintPage(QPainter& painter, int page) const;
  // Paints all pages. False, and why, if the device refuses.
  bool Paint(QPagedPaintDevice& device, QString* why = nullptr);
  bool SavePdf(const QString& path, const QString& title, QString* why = nullptr);

 private:
  void PaintSlice(QPainter& painter, double top, double bottom, double at) const;

  QImage ruler_;  // a device of fixed resolution for the layout; before the document that uses it
  PageDocument document_;
  std::int32_t number_;
  QPageLayout paper_;
  QSizeF size_;
  QList<PageSlice> slices_;
};

}  // namespace tarvik::desktop
