// Printing: a finished page in a preview, to a printer or to a PDF file, on letter or A4 paper. It
// makes no page and posts nothing; a printer that fails, or that is not there, costs no document.
#pragma once

#include <QImage>
#include <QList>
#include <QMainWindow>
#include <QPageLayout>
#include <QString>
#include <cstdint>
#include <memory>
#include <string>

#include "desktop/printing/page_text.h"
#include "host/anfitrion.h"
#include "host/archivos_de_la_base.h"

class QComboBox;
class QLabel;
class QPagedPaintDevice;
class QPainter;
class QPrinter;
class QPrintPreviewWidget;
class QSettings;
class QTextTable;

namespace tarvik::desktop {

// A page laid out for paper: the same line breaks in the preview, on a printer and in a PDF file.
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
  QList<QTextTable*> pushed_;  // tables that begin a page so as not to be torn
};

class PreviewWindow : public QMainWindow {
  Q_OBJECT

 public:
  // Deletes itself when closed. The settings outlive it. Nothing is saved over the base's files.
  PreviewWindow(QSettings& settings, const QString& html, const QString& format, std::int32_t number,
                host::ArchivosDeLaBase base = {});
  ~PreviewWindow() override;

  void UsePaper(QPageSize::PageSizeId size);
  // To the printer that the operator chooses; with none installed it offers the PDF file.
  void Print();
  void SavePdf();                       // asks where
  bool SavePdfTo(const QString& path);  // shows why not
  [[nodiscard]] PrintedPage& Page() { return page_; }

 private:
  void PrintOn(const QString& name, int copies, bool both_sides);
  void Say(const QString& text);
  void Refuse(const QString& what, const QString& why);

  QSettings& settings_;
  host::ArchivosDeLaBase base_;
  PrintedPage page_;
  QString name_;  // "entrada-1042"
  std::unique_ptr<QPrinter> screen_printer_;
  QPrintPreviewWidget* preview_;
  QComboBox* paper_;
  QLabel* pages_;
  QLabel* said_;
};

class DesktopPrinter : public host::Impresora {
 public:
  explicit DesktopPrinter(QSettings& settings) : settings_(settings) {}

  // The files that no page is saved over: to be told once, when the base is open.
  void Guard(host::ArchivosDeLaBase base) { base_ = std::move(base); }

  // Shows the preview once the program comes to rest and returns at once: whoever posts does not
  // wait for paper. Throws data::Error if the page can't be read.
  void Imprime(const std::string& page, const std::string& format, std::int32_t number) override;

 private:
  QSettings& settings_;
  host::ArchivosDeLaBase base_;
};

}  // namespace tarvik::desktop
