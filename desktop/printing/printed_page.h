// PrintedPage: a finished page laid out for paper, letter or A4, and painted on whatever takes pages. It
// makes no page, and knows no printer.
#pragma once

#include <QImage>
#include <QList>
#include <QPageLayout>
#include <QPageSize>
#include <QString>
#include <cstdint>

#include "desktop/printing/page_text.h"
#include "host/archivos_de_la_base.h"

class QPagedPaintDevice;
class QPainter;
class QTextTable;

namespace tarvik::desktop {

// With the margins that a page has on paper.
QPageLayout PaperOf(const QPageSize& size, QPageLayout::Orientation orientation = QPageLayout::Portrait);

// The same line breaks in the preview, on a printer and in a PDF file.
class PrintedPage {
 public:
  // The barcode of the page is drawn from `number`. No picture of the page is one of the base's files.
  PrintedPage(const QString& html, std::int32_t number, host::ArchivosDeLaBase base = {});

  void Layout(const QPageLayout& paper);
  [[nodiscard]] int Pages() const;
  [[nodiscard]] const QTextDocument& Document() const { return document_; }
  // One page, from 0, at 96 dots to the inch; the caller scales.
  void PaintPage(QPainter& painter, int page) const;
  // Paints all pages. False, and why, if the device refuses.
  bool Paint(QPagedPaintDevice& device, QString* why = nullptr);
  bool SavePdf(const QString& path, const QString& title, QString* why = nullptr);

 private:
  void KeepTogether();

  QImage ruler_;  // a device of fixed resolution for the layout; before the document that uses it
  PageDocument document_;
  QPageLayout paper_;
  QList<QTextTable*> pushed_;  // tables moved to the next page so as not to be split
};

}  // namespace tarvik::desktop
