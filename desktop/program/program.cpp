#include "desktop/program/program.h"

#include <QApplication>
#include <QDir>
#include <QPointer>
#include <QSettings>
#include <csignal>
#include <cstdlib>

#include "desktop/boxes/boxes.h"
#include "desktop/frame/main_window.h"
#include "desktop/lists/stock_view.h"
#include "desktop/pickers/picker.h"
#include "desktop/pickers/search_popup.h"
#include "desktop/platform/qt_platform.h"
#include "desktop/printing/desktop_printer.h"
#include "desktop/printing/preview_window.h"
#include "desktop/program/last_resort.h"
#include "desktop/program/program_log.h"
#include "desktop/program/scanning.h"
#include "desktop/screens/goods_in_view.h"
#include "desktop/screens/goods_out_view.h"
#include "desktop/screens/matrix_view.h"
#include "desktop/screens/stations_view.h"
#include "desktop/style/theme.h"
#include "desktop/windows/errors_window.h"
#include "desktop/windows/help.h"
#include "desktop/windows/hooks_window.h"
#include "host/anfitrion.h"
#include "host/archivos_de_la_base.h"
#include "python/ganchos.h"
#include "service/door/entradas_salidas.h"

namespace tarvik::desktop {

namespace {

// How long a routine that can't be stopped may delay the program's end.
constexpr std::chrono::seconds kLastResort{6};
constexpr int kEndedBySignal = 128;  // added to the signal's number: the exit status that a shell expects

// Brings a screen's view up when the class shows it.
class Showing final : public QObject, public forms::FormListener {
 public:
  Showing(ScreenView& view, std::function<void(bool)> shown)
      : QObject(&view), form_(view.Screen()), shown_(std::move(shown)) {
    form_.Listen(*this);
  }
  ~Showing() override { form_.StopListening(*this); }
  void Shown(bool modal) override { shown_(modal); }

 private:
  forms::Form& form_;  // held by the view
  std::function<void(bool)> shown_;
};

}  // namespace

Program::Program(Theme& theme, const ProgramOptions& options)
    : theme_(theme), platform_(std::make_unique<QtPlatform>()) {
  Open(options);
  ConnectPlatform();
  MakeRoutines();
  MakeWindow();
  LoadRoutines(options.routines.toStdString());
}

// The base, and what stands on it.
void Program::Open(const ProgramOptions& options) {
  const std::string folder = options.folder.toStdString();
  settings_ = std::make_unique<QSettings>(QDir(options.folder).filePath(QStringLiteral("escritorio.ini")),
                                          QSettings::IniFormat);
  selector_ = std::make_unique<DesktopSelector>();
  printer_ = std::make_unique<DesktopPrinter>(*settings_);
  host::Opciones made;
  made.base = options.base.toStdString();
  made.usuario = options.user.toStdString();
  made.estacion = options.station.toStdString();
  made.ruta = folder;
  made.demo = options.demo;
  made.plataforma = platform_.get();
  made.testigo = this;
  made.selector = selector_.get();
  made.impresora = printer_.get();
  host_ = std::make_unique<host::Anfitrion>(made);
  printer_->Guard(host::ArchivosDeLaBase(host_->Base().Address()));
  log_ = std::make_unique<ProgramLog>(folder, made.usuario, made.estacion);
  reader_ = std::make_unique<Reader>(host_->Base());
  office_ = std::make_unique<Office>(Office{*host_, theme_, *settings_, *reader_});
  selector_->Use(*office_);
  door_ = std::make_unique<EntradasSalidas>(*host_);
  door_->Ambiente = &host_->Ambiente();
  door_->Parent = &host_->Parent();
}

// What the screens' platform asks of the windows.
void Program::ConnectPlatform() {
  platform_->on_loaded = [this](forms::Form& form) { Loaded(form); };
  platform_->on_unloaded = [this](forms::Form& form) {
    if (const QPointer<ScreenView> view = views_.take(&form)) view->Dismiss();
    presented_.remove(&form);
  };
  platform_->on_repaint = [this](forms::Form& form) {
    if (ScreenView* view = ViewOf(form)) view->PaintNow();
  };
  platform_->on_navigate = [this](forms::WebBrowser& browser, const std::string& file) {
    if (auto* view = qobject_cast<GoodsOutView*>(ViewOf(browser.Owner()))) view->ShowSheet(file);
  };
  platform_->on_front = [this]() -> forms::Form* {
    for (QWidget* widget = QApplication::focusWidget(); widget; widget = widget->parentWidget()) {
      if (auto* view = qobject_cast<ScreenView*>(widget)) return &view->Screen();
    }
    ScreenView* front = window_ ? window_->Front() : nullptr;
    return front ? &front->Screen() : nullptr;
  };
  platform_->on_search_list = [this](forms::SearchBox& box) {
    ScreenView* view = ViewOf(box.Owner());
    QWidget* anchor = view && box.Field() ? view->WidgetOf(*box.Field()) : nullptr;
    if (anchor) ShowSearchList(*office_, box, *anchor);
  };
  platform_->on_unhandled = [this](forms::Form* form, const std::exception& error) {
    return Unhandled(form, error);
  };
}

// The deployer's routines, the window that shows what they do, and what ends the program if one never
// returns.
void Program::MakeRoutines() {
  last_resort_ = std::make_unique<LastResort>([this] { return platform_->EndRequested(); }, kLastResort,
                                              [] { std::_Exit(kEndedBySignal + SIGTERM); });
  hooks_ = std::make_unique<HooksWindow>(*office_);
  connect(hooks_.get(), &HooksWindow::RoutineBegan, this, [this] { last_resort_->Begins(); });
  connect(hooks_.get(), &HooksWindow::RoutineEnded, this, [this] { last_resort_->Ends(); });
  hooks_->setAttribute(Qt::WA_QuitOnClose, false);
  routines_ = std::make_unique<python::Rutinas>(python::OpcionesDeRutinas{
      .observador = hooks_.get(),
      .bitacora =
          [this](const std::string& where, const std::string& text) {
            log_->Write(QString::fromStdString(where), QString::fromStdString(text));
          },
  });
}

void Program::MakeWindow() {
  window_ = std::make_unique<MainWindow>(*office_, *door_);
  connect(window_.get(), &MainWindow::HelpRequested, this, [this] { Help(nullptr); });
  connect(window_.get(), &MainWindow::HooksRequested, this, [this] {
    hooks_->show();
    hooks_->raise();
    hooks_->activateWindow();
  });
  ListErrors();
  scanning_ = std::make_unique<Scanning>(*office_, *window_);
}

void Program::LoadRoutines(const std::string& folder) {
  last_resort_->Begins();
  const auto failures = routines_->Carga(*host_, folder);
  last_resort_->Ends();
  hooks_->Loaded(*routines_, failures);
  if (!failures.empty()) {
    desktop::ShowBox(window_.get(), forms::BoxKind::Error,
                     QString::fromStdString(python::AvisoDeCarga(failures)), forms::kBoxStop);
  }
}

Program::~Program() {
  const auto screens = platform_->Screens();
  for (const auto& screen : screens) {
    screen->Act([&] { screen->Unload(); });
    screen->Discard();
  }
  // A preview still open writes its paper and place into settings that end here. With it go the windows that
  // stand on it.
  QList<QPointer<PreviewWindow>> previews;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (auto* preview = qobject_cast<PreviewWindow*>(window)) previews.append(preview);
  }
  for (const QPointer<PreviewWindow>& preview : previews) delete preview.data();
  platform_->OnSeveralErrors({});
  scanning_.reset();
  window_.reset();
  routines_.reset();
}

// The list of errors of a step that met several, and the menu item that opens it.
void Program::ListErrors() {
  errors_ = new ErrorsWindow(window_.get());
  QAction* reach = window_->AddView(tr("A&visos de error"), QKeySequence(QStringLiteral("Ctrl+Shift+V")));
  reach->setEnabled(false);
  connect(reach, &QAction::triggered, errors_, &ErrorsWindow::Reach);
  platform_->OnSeveralErrors([this, reach](const std::vector<Trouble>& troubles) {
    errors_->List(troubles);
    reach->setEnabled(errors_->Any());
  });
}

ScreenView* Program::ViewOf(const forms::Form& form) const { return views_.value(&form); }

void Program::Loaded(forms::Form& form) {
  ScreenView* view = nullptr;
  if (auto* entrada = dynamic_cast<frmEntradasWizard*>(&form)) view = new GoodsInView(*office_, *entrada);
  if (auto* salida = dynamic_cast<frmSalidasWizard*>(&form)) view = new GoodsOutView(*office_, *salida);
  if (auto* malla = dynamic_cast<frmMallaModelos*>(&form)) view = new MatrixView(*office_, *malla);
  if (auto* traspaso = dynamic_cast<frmMovEstaciones*>(&form)) view = new StationsView(*office_, *traspaso);
  if (!view) qFatal("%s has no view", form.Name().c_str());
  views_.insert(&form, view);
  new Showing(*view, [this, &form](bool modal) { ShowScreen(form, modal); });
  connect(view, &ScreenView::HelpRequested, this, [this, view] { Help(view); });
}

void Program::Presentada(forms::Form& form) { presented_.insert(&form); }

void Program::Gancho(const std::string& key, const data::Value& value) {
  if (hooks_) hooks_->KeyFired(key, value);
}

void Program::ShowScreen(forms::Form& form, bool modal) {
  ScreenView* view = ViewOf(form);
  if (!view) return;
  // The documents are presented by the host; the matrix and a transfer just come up.
  const bool waits = dynamic_cast<DocumentWizard*>(&form) != nullptr;
  if (!waits || presented_.contains(&form)) return window_->Adopt(*view, modal);
  // A routine kept the screen from being presented. Nobody could reach it, or let its document go.
  platform_->Post([this, alive = form.shared_from_this()] {
    platform_->ShowBox(
        forms::BoxKind::Message,
        tr("Una rutina del negocio no permitió mostrar la pantalla. No se cambió ningún documento.")
            .toStdString(),
        forms::kBoxInformation);
    alive->Unload();
  });
}

void Program::Help(const ScreenView* view) {
  if (!help_) {
    help_ = std::make_unique<HelpWindow>(settings_.get());
    help_->setAttribute(Qt::WA_QuitOnClose, false);  // the program ends with its main window
  }
  // Over a screen that the others wait for, help is in front of it and can be read and closed.
  const Qt::WindowModality modality = view && view->isModal() ? Qt::ApplicationModal : Qt::NonModal;
  if (help_->windowModality() != modality) {
    help_->hide();
    help_->setWindowModality(modality);
  }
  if (view) {
    help_->Open(QString::fromStdString(view->Screen().Caption()), view->KeysNow(),
                ManualPageFor(QString::fromStdString(view->Screen().Name())));
  } else if (window_->Stock().isVisible()) {
    help_->Open(tr("Existencias"),
                {{tr("↑ ↓"), tr("artículo")},
                 {tr("Tab"), tr("movimientos")},
                 {tr("Esc"), tr("ver todo")},
                 {QStringLiteral("F5"), tr("actualizar")}},
                QStringLiteral("existencias"));
  } else {
    help_->Open(tr("Listas"),
                {{tr("Intro"), tr("abrir")},
                 {tr("Insert"), tr("documento nuevo")},
                 {tr("Supr"), tr("borrar")},
                 {QStringLiteral("F5"), tr("actualizar")}},
                QStringLiteral("listas"));
  }
}

bool Program::Unhandled(forms::Form* form, const std::exception& error) {
  return log_ && log_->Write(form ? QString::fromStdString(form->Name()) : QString(), error);
}

}  // namespace tarvik::desktop
