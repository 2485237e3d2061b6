#include "desktop/program/scanning.h"

#include <QAction>
#include <QApplication>
#include <QTimer>

#include "data/error.h"
#include "desktop/frame/main_window.h"
#include "desktop/scanner/tape_panel.h"
#include "desktop/screens/document_view.h"
#include "desktop/screens/matrix_view.h"
#include "host/anfitrion.h"
#include "host/lecturas.h"

namespace tarvik::desktop {
namespace {

constexpr int kBetweenTones = 160;  // milliseconds
constexpr int kLookEvery = 150;     // likewise
constexpr int kToneOfGood = 1;
constexpr int kTonesOfBad = 3;

void Beep(int tones) {
  for (int i = 0; i < tones; ++i) QTimer::singleShot(i * kBetweenTones, qApp, [] { QApplication::beep(); });
}

}  // namespace

Scanning::Scanning(Office& office, MainWindow& window)
    : sound(Beep), office_(office), window_(window), choices_(LoadScanner(office.settings)) {
  filter_.Set(choices_.recognition);
  filter_.wanted = [this] { return Wanted(); };
  filter_.on_reading = [this](const QString& code) { Read(code); };
  office.host.Lecturas().al_cambiar = [this](const host::Lectura& reading) { Changed(reading); };
  // What waited for a box that no act had shown, or for a document to come up.
  auto* waiting = new QTimer(this);
  connect(waiting, &QTimer::timeout, this, [this] {
    if (office_.host.Lecturas().Esperan()) office_.host.Lecturas().Atiende();
  });
  waiting->start(kLookEvery);
  connect(window.AddView(tr("&Cinta del lector"), QKeySequence(QStringLiteral("Ctrl+T"))),
          &QAction::triggered, this, &Scanning::ReachTape);
  connect(window.AddTool(tr("&Lecturas"), QKeySequence(QStringLiteral("Ctrl+Shift+L")), Glyph::Other),
          &QAction::triggered, this, [this] {
            Tray().show();
            Tray().raise();
            Tray().activateWindow();
            Tray().Tray().Refresh();
            Tray().Tray().Reach();
          });
  connect(window.AddTool(tr("Lec&tor…"), {}, Glyph::Settings), &QAction::triggered, this, [this] {
    ScannerDialog dialog(choices_, &window_);
    if (dialog.exec() == QDialog::Accepted) Choose(dialog.Choices());
  });
}

Scanning::~Scanning() { office_.host.Lecturas().al_cambiar = nullptr; }

void Scanning::Choose(const ScannerChoices& choices) {
  choices_ = choices;
  SaveScanner(office_.settings, choices);
  filter_.Set(choices.recognition);
}

TrayWindow& Scanning::Tray() {
  if (!tray_) {
    tray_ = std::make_unique<TrayWindow>(office_, nullptr);
    tray_->setAttribute(Qt::WA_QuitOnClose, false);
  }
  return *tray_;
}

// Lists and transfers between stations take what a scanner sends as keys.
bool Scanning::Wanted() const {
  const ScreenView* front = window_.Front();
  return qobject_cast<const DocumentView*>(front) != nullptr ||
         qobject_cast<const MatrixView*>(front) != nullptr;
}

void Scanning::Read(const QString& code) {
  auto* document = qobject_cast<DocumentView*>(window_.Front());
  try {
    office_.host.Lectura(code.toStdString(), document != nullptr ? &document->Screen() : nullptr);
  } catch (const data::Error& error) {
    office_.host.Plataforma().Unhandled(nullptr, error);
  }
}

void Scanning::Changed(const host::Lectura& reading) {
  if (choices_.sound && reading.estado == host::lectura::kRenglon) sound(kToneOfGood);
  if (choices_.sound &&
      (reading.estado == host::lectura::kSinArticulo || reading.estado == host::lectura::kRechazada))
    sound(kTonesOfBad);
  // Many may come at once, and the act that they belong to is still under way.
  if (!std::exchange(to_be_shown_, true)) QTimer::singleShot(0, this, &Scanning::ShowTapes);
}

void Scanning::ShowTapes() {
  to_be_shown_ = false;
  for (ScreenView* view : window_.Open()) {
    if (auto* document = qobject_cast<DocumentView*>(view)) document->ReadingsChanged();
  }
  if (tray_ && tray_->isVisible()) tray_->Tray().Refresh();
}

void Scanning::ReachTape() {
  if (auto* document = qobject_cast<DocumentView*>(window_.Front())) document->ReachTape();
}

}  // namespace tarvik::desktop
