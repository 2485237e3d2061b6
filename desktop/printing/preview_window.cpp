#include "desktop/printing/preview_window.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGraphicsView>
#include <QHBoxLayout>
#include <QLabel>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QScrollBar>
#include <QSettings>
#include <QShortcut>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <utility>

#include "data/error.h"
#include "desktop/boxes/boxes.h"
#include "desktop/boxes/file_dialog.h"
#include "desktop/printing/print_dialog.h"
#include "desktop/style/theme.h"

namespace tarvik::desktop {

namespace {

using measure::kGrid;

const auto kPaperKey = QStringLiteral("impresion/papel");
const auto kPrinterKey = QStringLiteral("impresion/impresora");

}  // namespace

PreviewWindow::PreviewWindow(QSettings& settings, const QString& html, const QString& format,
                             std::int32_t number, host::ArchivosDeLaBase base)
    : settings_(settings),
      base_(std::move(base)),
      page_(html, number, base_),
      name_(QStringLiteral("%1-%2").arg(format).arg(number)),
      screen_printer_(std::make_unique<QPrinter>(QPrinter::HighResolution)) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Imprimir %1 %2").arg(format).arg(number));
  resize(100 * kGrid, 90 * kGrid);
  // The preview asks no printer for anything: it works where none is installed.
  screen_printer_->setOutputFormat(QPrinter::PdfFormat);

  auto* middle = new QWidget(this);
  auto* layout = new QVBoxLayout(middle);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(Band());
  layout->addWidget(Preview(), 1);
  said_ = new QLabel(middle);
  said_->setProperty("role", QStringLiteral("soft"));
  said_->setContentsMargins(2 * kGrid, kGrid / 2, 2 * kGrid, kGrid / 2);
  said_->setText(QStringLiteral("El documento está guardado; se puede imprimir ahora o después."));
  layout->addWidget(said_);
  setCentralWidget(middle);

  new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_P), this, this, [this] { Print(); });
  new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_S), this, this, [this] { SavePdf(); });
  new QShortcut(QKeySequence(Qt::Key_Escape), this, this, [this] { close(); });
  TurnByKey();

  const bool a4 = settings_.value(kPaperKey).toString() == QStringLiteral("A4");
  UsePaper(a4 ? QPageSize::A4 : QPageSize::Letter);
  preview_->fitToWidth();
  print_->setFocus();
}

QPushButton* PreviewWindow::Button(QBoxLayout& band, const QString& caption, const QString& accessible,
                                   const char* role) {
  auto* made = new QPushButton(caption);
  made->setAccessibleName(accessible);
  made->setProperty("role", QString::fromUtf8(role));
  band.addWidget(made);
  return made;
}

// What can be done with the page, above it.
QWidget* PreviewWindow::Band() {
  auto* band = new QWidget(this);
  band->setProperty("role", QStringLiteral("keyline"));
  band->setAttribute(Qt::WA_StyledBackground);
  auto* bar = new QHBoxLayout(band);
  bar->setContentsMargins(2 * kGrid, kGrid, 2 * kGrid, kGrid);
  bar->setSpacing(kGrid);
  print_ = Button(*bar, QStringLiteral("&Imprimir (Ctrl+P)"), QStringLiteral("Imprimir"), "primary");
  auto* pdf =
      Button(*bar, QStringLiteral("&Guardar PDF (Ctrl+S)"), QStringLiteral("Guardar PDF"), "outlined");
  bar->addSpacing(2 * kGrid);
  MakePaperChoice(*bar);
  bar->addStretch(1);
  pages_ = new QLabel(band);
  pages_->setProperty("role", QStringLiteral("soft"));
  bar->addWidget(pages_);
  auto* leave = Button(*bar, QStringLiteral("&Cerrar (Esc)"), QStringLiteral("Cerrar"), "outlined");
  connect(print_, &QPushButton::clicked, this, &PreviewWindow::Print);
  connect(pdf, &QPushButton::clicked, this, qOverload<>(&PreviewWindow::SavePdf));
  connect(leave, &QPushButton::clicked, this, &QWidget::close);
  return band;
}

void PreviewWindow::MakePaperChoice(QBoxLayout& band) {
  auto* caption = new QLabel(QStringLiteral("&Papel"));
  caption->setProperty("role", QStringLiteral("soft"));
  band.addWidget(caption);
  paper_ = new QComboBox;
  paper_->setAccessibleName(QStringLiteral("Tamaño de papel"));
  paper_->addItem(QStringLiteral("Carta"), QPageSize::Letter);
  paper_->addItem(QStringLiteral("A4"), QPageSize::A4);
  caption->setBuddy(paper_);
  band.addWidget(paper_);
  connect(paper_, &QComboBox::activated, this,
          [this] { UsePaper(static_cast<QPageSize::PageSizeId>(paper_->currentData().toInt())); });
}

QWidget* PreviewWindow::Preview() {
  preview_ = new QPrintPreviewWidget(screen_printer_.get(), this);
  preview_->setAccessibleName(QStringLiteral("Vista previa"));
  if (auto* view = preview_->findChild<QGraphicsView*>()) {
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);  // the page is as wide as the window
    const bool dark =
        palette().color(QPalette::Window).lightness() < palette().color(QPalette::WindowText).lightness();
    if (view->scene() != nullptr) view->scene()->setBackgroundBrush(Theme::Color(Role::Quiet, dark));
  }
  connect(preview_, &QPrintPreviewWidget::paintRequested, this,
          [this](QPrinter* printer) { page_.Paint(*printer); });
  return preview_;
}

void PreviewWindow::TurnByKey() {
  const auto* view = preview_->findChild<QGraphicsView*>();
  if (view == nullptr) return;
  QScrollBar* bar = view->verticalScrollBar();
  for (const auto& [key, action] : {std::pair{Qt::Key_PageDown, QAbstractSlider::SliderPageStepAdd},
                                    {Qt::Key_PageUp, QAbstractSlider::SliderPageStepSub},
                                    {Qt::Key_Down, QAbstractSlider::SliderSingleStepAdd},
                                    {Qt::Key_Up, QAbstractSlider::SliderSingleStepSub}}) {
    new QShortcut(QKeySequence(key), this, this, [bar, act = action] { bar->triggerAction(act); });
  }
}

PreviewWindow::~PreviewWindow() {
  // It uses the printer until it is deleted.
  delete preview_;
}

void PreviewWindow::UsePaper(QPageSize::PageSizeId size) {
  paper_->setCurrentIndex(paper_->findData(size));
  settings_.setValue(kPaperKey, size == QPageSize::A4 ? QStringLiteral("A4") : QStringLiteral("carta"));
  page_.Layout(PaperOf(QPageSize(size)));
  screen_printer_->setPageLayout(PaperOf(QPageSize(size)));
  const int pages = page_.Pages();
  pages_->setText(pages == 1 ? QStringLiteral("1 página") : QStringLiteral("%1 páginas").arg(pages));
  preview_->updatePreview();
}

void PreviewWindow::Say(const QString& text) { said_->setText(text); }

void PreviewWindow::Refuse(const QString& what, const QString& why) {
  Say(what);
  ShowBox(this, forms::BoxKind::Error,
          QStringLiteral("%1 %2\n\nEl documento está guardado y nada se ha perdido.\n\n"
                         "Revise la impresora e intente de nuevo, o guarde el documento como PDF.")
              .arg(what, why),
          forms::kBoxStop);
}

void PreviewWindow::Print() {
  if (QPrinterInfo::availablePrinters().isEmpty()) {
    Say(QStringLiteral("No hay ninguna impresora instalada."));
    if (ShowBox(this, forms::BoxKind::Question,
                QStringLiteral("No hay ninguna impresora instalada en este equipo.\n\n"
                               "El documento está guardado. ¿Desea guardarlo como PDF?"),
                forms::kBoxYesNo + forms::kBoxQuestion)) {
      SavePdf();
    }
    return;
  }
  PrintDialog dialog(QPrinterInfo::availablePrinterNames(),
                     settings_.value(kPrinterKey, QPrinterInfo::defaultPrinterName()).toString(), this);
  if (dialog.exec() != QDialog::Accepted) return;
  settings_.setValue(kPrinterKey, dialog.Printer());
  PrintOn(dialog.Printer(), dialog.Copies(), dialog.BothSides());
}

void PreviewWindow::PrintOn(const QString& name, int copies, bool both_sides) {
  QPrinter printer(QPrinterInfo::printerInfo(name), QPrinter::HighResolution);
  printer.setPageLayout(screen_printer_->pageLayout());
  printer.setDocName(name_);
  printer.setCopyCount(copies);
  printer.setDuplex(both_sides ? QPrinter::DuplexAuto : QPrinter::DuplexNone);
  // The printer may have taken another paper; the lines are laid out for what will be fed.
  page_.Layout(PaperOf(printer.pageLayout().pageSize(), printer.pageLayout().orientation()));
  QString why;
  bool printed = page_.Paint(printer, &why);
  if (printed && printer.printerState() == QPrinter::Error) {
    printed = false;
    why = QStringLiteral("La impresora avisa de un error.");
  }
  page_.Layout(screen_printer_->pageLayout());
  if (!printed) return Refuse(QStringLiteral("No se pudo imprimir."), why);
  Say(QStringLiteral("Enviado a %1.").arg(printer.printerName()));
}

void PreviewWindow::SavePdf() {
  const QString folder_key = QStringLiteral("impresion/carpeta");
  QString folder = settings_.value(folder_key).toString();
  if (folder.isEmpty() || !QDir(folder).exists()) {
    folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  }
  const QString path = AskWhereToSave(this, QStringLiteral("Guardar PDF"),
                                      QDir(folder).filePath(name_ + QStringLiteral(".pdf")),
                                      QStringLiteral("Documento PDF (*.pdf)"), QStringLiteral("pdf"));
  if (path.isEmpty()) return;
  if (SavePdfTo(path)) settings_.setValue(folder_key, QFileInfo(path).absolutePath());
}

bool PreviewWindow::SavePdfTo(const QString& path) {
  try {
    base_.Rechaza(path.toStdString());
  } catch (const data::Error& error) {
    Say(QStringLiteral("El PDF no se guardó."));
    ShowBox(this, forms::BoxKind::Error,
            QStringLiteral("%1.\n\nEl PDF no se guardó. El documento y la base están como estaban.")
                .arg(QString::fromUtf8(error.what())),
            forms::kBoxStop);
    return false;
  }
  QString why;
  if (!page_.SavePdf(path, windowTitle(), &why)) {
    Refuse(QStringLiteral("No se pudo guardar el PDF."), why);
    return false;
  }
  Say(QStringLiteral("Guardado en %1.").arg(QDir::toNativeSeparators(path)));
  return true;
}

}  // namespace tarvik::desktop
