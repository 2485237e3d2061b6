// PreviewWindow: a finished page on the screen, and from there to a printer or to a PDF file. A printer that
// fails, or that is not there, costs no document.
#pragma once

#include <QMainWindow>
#include <QString>
#include <cstdint>
#include <memory>

#include "desktop/printing/printed_page.h"
#include "host/archivos_de_la_base.h"

class QBoxLayout;
class QComboBox;
class QLabel;
class QPrinter;
class QPrintPreviewWidget;
class QPushButton;
class QSettings;

namespace tarvik::desktop {

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
  QWidget* Band();
  QPushButton* Button(QBoxLayout& band, const QString& caption, const QString& accessible, const char* role);
  void MakePaperChoice(QBoxLayout& band);
  QWidget* Preview();
  void TurnByKey();
  void PrintOn(const QString& name, int copies, bool both_sides);
  void Say(const QString& text);
  void Refuse(const QString& what, const QString& why);

  QSettings& settings_;
  host::ArchivosDeLaBase base_;
  PrintedPage page_;
  QString name_;  // "entrada-1042"
  std::unique_ptr<QPrinter> screen_printer_;
  QPrintPreviewWidget* preview_ = nullptr;
  QPushButton* print_ = nullptr;
  QComboBox* paper_ = nullptr;
  QLabel* pages_ = nullptr;
  QLabel* said_ = nullptr;
};

}  // namespace tarvik::desktop
