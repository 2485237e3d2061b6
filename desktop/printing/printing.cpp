// Lays a page out at a fixed resolution and paints it at the device's, so that the preview shows the
// very line breaks that the paper will have.
#include "desktop/printing/printing.h"

#include <QAbstractTextDocumentLayout>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGraphicsView>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRegularExpression>
#include <QSaveFile>
#include <QScrollBar>
#include <QSettings>
#include <QShortcut>
#include <QStandardPaths>
#include <QTextBlock>
#include <QTextFrame>
#include <QTextTable>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "data/error.h"
#include "desktop/boxes/boxes.h"
#include "desktop/boxes/file_dialog.h"
#include "desktop/printing/print_dialog.h"
#include "desktop/style/theme.h"
#include "host/barras.h"

namespace tarvik::desktop {

namespace {

using measure::kGrid;

constexpr int kResolution = 96;  // of the layout: a page's own measures are those of a screen
constexpr double kMetre = 0.0254;
constexpr QMarginsF kMargins(14, 13, 14, 15);  // millimetres
const auto kBarsName = QStringLiteral("barras");
const auto kPaperKey = QStringLiteral("impresion/papel");
const auto kPrinterKey = QStringLiteral("impresion/impresora");

QPageLayout Paper(QPageSize::PageSizeId size) {
  return {QPageSize(size), QPageLayout::Portrait, kMargins, QPageLayout::Millimeter};
}

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
      // Set by the frame itself, so that a table keeps what makes it a table.
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

// ---- a page for paper ----

PrintedPage::PrintedPage(const QString& html, std::int32_t number, host::ArchivosDeLaBase base)
    : ruler_(1, 1, QImage::Format_RGB32), document_(std::move(base)) {
  ruler_.setDotsPerMeterX(static_cast<int>(std::lround(kResolution / kMetre)));
  ruler_.setDotsPerMeterY(ruler_.dotsPerMeterX());
  document_.setUndoRedoEnabled(false);
  document_.documentLayout()->setPaintDevice(&ruler_);
  document_.setUseDesignMetrics(true);
  document_.setDocumentMargin(0);
  document_.setMetaInformation(QTextDocument::CssMedia, QStringLiteral("print"));
  const QImage bars = BarsImage(number);
  document_.addResource(QTextDocument::ImageResource, QUrl(kBarsName), bars);
  // Forty-four millimetres wide, as scanners at a desk like it.
  constexpr double kWide = 44 / 1000.0 / kMetre * kResolution;
  const QSize size(static_cast<int>(kWide), static_cast<int>(kWide / 4));
  QFont font(QStringLiteral("Inter"));
  font.setPointSizeF(10);
  document_.setDefaultFont(font);
  document_.setHtml(WithBarsAsPicture(html, size));
  WithoutOuterMargin(document_);
  Layout(Paper(QPageSize::Letter));
}

void PrintedPage::Layout(const QPageLayout& paper) {
  paper_ = paper;
  const QRectF room = paper.paintRect(QPageLayout::Point);
  const double scale = kResolution / 72.0;
  document_.setPageSize(room.size() * scale);
  KeepTogether();
}

// Totals and signatures are short tables: one that the page's end would tear begins the next page.
void PrintedPage::KeepTogether() {
  constexpr int kShort = 6;  // rows
  const auto push = [](QTextTable* table, QTextFormat::PageBreakFlags policy) {
    QTextTableFormat format = table->format();
    format.setPageBreakPolicy(policy);
    table->setFormat(format);
  };
  for (QTextTable* table : pushed_) push(table, QTextFormat::PageBreak_Auto);
  pushed_.clear();
  const double height = document_.pageSize().height();
  for (QTextFrame* frame : document_.rootFrame()->childFrames()) {
    auto* table = qobject_cast<QTextTable*>(frame);
    if (table == nullptr || table->rows() > kShort) continue;
    const QRectF place = document_.documentLayout()->frameBoundingRect(table);
    if (place.height() >= height ||
        std::floor(place.top() / height) == std::floor((place.bottom() - 1) / height)) {
      continue;
    }
    push(table, QTextFormat::PageBreak_AlwaysBefore);
    pushed_ += table;
    // The layout is made anew as a whole: one mended in part loses, when painting, what follows a
    // table that moved.
    document_.markContentsDirty(0, document_.characterCount());
  }
}

int PrintedPage::Pages() const { return document_.pageCount(); }

void PrintedPage::PaintPage(QPainter& painter, int number) const {
  const QSizeF page = document_.pageSize();
  const int pages = Pages();
  painter.save();
  const QRectF view(0, number * page.height(), page.width(), page.height());
  painter.translate(0, -view.top());
  QAbstractTextDocumentLayout::PaintContext context;
  context.clip = view;
  // Paper is white under either theme.
  context.palette.setColor(QPalette::Text, Qt::black);
  painter.setClipRect(view);
  document_.documentLayout()->draw(&painter, context);
  painter.restore();
  if (pages < 2) return;
  // In the lower margin, so that it takes no room from the lines.
  painter.save();
  QFont foot = document_.defaultFont();
  foot.setPixelSize(measure::kCaption - 1);
  painter.setFont(foot);
  painter.setPen(Theme::Color(Role::SoftInk, false));
  const QRectF line(0, page.height() + kGrid, page.width(), 2 * kGrid);
  painter.drawText(line, Qt::AlignRight | Qt::AlignTop,
                   QStringLiteral("Página %1 de %2").arg(number + 1).arg(pages));
  painter.restore();
}

bool PrintedPage::Paint(QPagedPaintDevice& device, QString* why) {
  const auto fail = [&](const QString& reason) {
    if (why != nullptr) *why = reason;
    return false;
  };
  // A printer that prints to a file says nothing of a disk that fills up; a file of our own does.
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
  // A file of this name stays whole until the new one is.
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

// ---- the preview ----

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

  auto* band = new QWidget(middle);
  band->setProperty("role", QStringLiteral("keyline"));
  band->setAttribute(Qt::WA_StyledBackground);
  auto* bar = new QHBoxLayout(band);
  bar->setContentsMargins(2 * kGrid, kGrid, 2 * kGrid, kGrid);
  bar->setSpacing(kGrid);
  const auto button = [&](const QString& caption, const QString& accessible, const char* role) {
    auto* made = new QPushButton(caption, band);
    made->setAccessibleName(accessible);
    made->setProperty("role", QString::fromUtf8(role));
    bar->addWidget(made);
    return made;
  };
  auto* print = button(QStringLiteral("&Imprimir (Ctrl+P)"), QStringLiteral("Imprimir"), "primary");
  auto* pdf = button(QStringLiteral("&Guardar PDF (Ctrl+S)"), QStringLiteral("Guardar PDF"), "outlined");
  bar->addSpacing(2 * kGrid);
  auto* paper_caption = new QLabel(QStringLiteral("&Papel"), band);
  paper_caption->setProperty("role", QStringLiteral("soft"));
  bar->addWidget(paper_caption);
  paper_ = new QComboBox(band);
  paper_->setAccessibleName(QStringLiteral("Tamaño de papel"));
  paper_->addItem(QStringLiteral("Carta"), QPageSize::Letter);
  paper_->addItem(QStringLiteral("A4"), QPageSize::A4);
  paper_caption->setBuddy(paper_);
  bar->addWidget(paper_);
  bar->addStretch(1);
  pages_ = new QLabel(band);
  pages_->setProperty("role", QStringLiteral("soft"));
  bar->addWidget(pages_);
  auto* leave = button(QStringLiteral("&Cerrar (Esc)"), QStringLiteral("Cerrar"), "outlined");
  layout->addWidget(band);

  preview_ = new QPrintPreviewWidget(screen_printer_.get(), middle);
  preview_->setAccessibleName(QStringLiteral("Vista previa"));
  auto* view = preview_->findChild<QGraphicsView*>();
  if (view != nullptr) {
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);  // the page is as wide as the window
    const bool dark =
        palette().color(QPalette::Window).lightness() < palette().color(QPalette::WindowText).lightness();
    if (view->scene() != nullptr) view->scene()->setBackgroundBrush(Theme::Color(Role::Quiet, dark));
  }
  layout->addWidget(preview_, 1);

  said_ = new QLabel(middle);
  said_->setProperty("role", QStringLiteral("soft"));
  said_->setContentsMargins(2 * kGrid, kGrid / 2, 2 * kGrid, kGrid / 2);
  said_->setText(QStringLiteral("El documento está guardado; se puede imprimir ahora o después."));
  layout->addWidget(said_);
  setCentralWidget(middle);

  connect(preview_, &QPrintPreviewWidget::paintRequested, this,
          [this](QPrinter* printer) { page_.Paint(*printer); });
  connect(paper_, &QComboBox::activated, this,
          [this] { UsePaper(static_cast<QPageSize::PageSizeId>(paper_->currentData().toInt())); });
  connect(print, &QPushButton::clicked, this, &PreviewWindow::Print);
  connect(pdf, &QPushButton::clicked, this, qOverload<>(&PreviewWindow::SavePdf));
  connect(leave, &QPushButton::clicked, this, &QWidget::close);
  const auto key = [this](const QKeySequence& keys, auto act) { new QShortcut(keys, this, this, act); };
  key(QKeySequence(Qt::CTRL | Qt::Key_P), [this] { Print(); });
  key(QKeySequence(Qt::CTRL | Qt::Key_S), [this] { SavePdf(); });
  key(QKeySequence(Qt::Key_Escape), [this] { close(); });

  if (view != nullptr) {
    QScrollBar* bar_at_side = view->verticalScrollBar();
    const auto turn = [&](Qt::Key code, QAbstractSlider::SliderAction action) {
      key(QKeySequence(code), [bar_at_side, action] { bar_at_side->triggerAction(action); });
    };
    turn(Qt::Key_PageDown, QAbstractSlider::SliderPageStepAdd);
    turn(Qt::Key_PageUp, QAbstractSlider::SliderPageStepSub);
    turn(Qt::Key_Down, QAbstractSlider::SliderSingleStepAdd);
    turn(Qt::Key_Up, QAbstractSlider::SliderSingleStepSub);
  }

  const bool a4 = settings_.value(kPaperKey).toString() == QStringLiteral("A4");
  UsePaper(a4 ? QPageSize::A4 : QPageSize::Letter);
  preview_->fitToWidth();
  print->setFocus();
}

PreviewWindow::~PreviewWindow() {
  // It paints by the printer until it is gone.
  delete preview_;
}

void PreviewWindow::UsePaper(QPageSize::PageSizeId size) {
  paper_->setCurrentIndex(paper_->findData(size));
  settings_.setValue(kPaperKey, size == QPageSize::A4 ? QStringLiteral("A4") : QStringLiteral("carta"));
  page_.Layout(Paper(size));
  screen_printer_->setPageLayout(Paper(size));
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
  page_.Layout(QPageLayout(printer.pageLayout().pageSize(), printer.pageLayout().orientation(), kMargins,
                           QPageLayout::Millimeter));
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

// ---- the host's printer ----

void DesktopPrinter::Imprime(const std::string& page, const std::string& format, std::int32_t number) {
  base_.Rechaza(page);
  QFile file(QString::fromStdString(page));
  if (!file.open(QIODevice::ReadOnly)) {
    throw data::Error("No se puede leer la página " + page + ": " + file.errorString().toStdString());
  }
  const QString html = QString::fromUtf8(file.readAll());
  const QString name = QString::fromStdString(format);
  QSettings* settings = &settings_;
  const host::ArchivosDeLaBase base = base_;
  // After the posting has come to rest: its screen is still closing.
  QTimer::singleShot(0, [settings, html, name, number, base] {
    auto* window = new PreviewWindow(*settings, html, name, number, base);
    window->show();
    window->raise();
    window->activateWindow();
  });
}

}  // namespace tarvik::desktop
