// Program: everything of one run of the desktop, put together: platform, host, routines, windows.
#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <memory>
#include <string>

#include "desktop/office.h"
#include "desktop/reading/reader.h"
#include "forms/form.h"
#include "host/testigo.h"

class QSettings;

namespace tarvik {
class EntradasSalidas;
}
namespace tarvik::python {
class Rutinas;
}

namespace tarvik::desktop {

class DesktopPrinter;
class DesktopSelector;
class ErrorsWindow;
class HelpWindow;
class HooksWindow;
class LastResort;
class MainWindow;
class ProgramLog;
class QtPlatform;
class Scanning;
class ScreenView;
class Theme;

struct ProgramOptions {
  QString base;  // "sqlite:almacen.db"
  QString user;
  QString station;
  QString folder;    // RutaBase
  QString routines;  // folder of the deployer's routines; empty: ganchos/ under RutaBase
  bool demo = false;
};

class Program final : public QObject, public host::Testigo {
  Q_OBJECT

 public:
  // Throws data::Error, with nothing shown, if the base or the folder can't be used.
  Program(Theme& theme, const ProgramOptions& options);
  ~Program() override;

  [[nodiscard]] MainWindow& Window() const { return *window_; }
  [[nodiscard]] EntradasSalidas& Door() const { return *door_; }
  [[nodiscard]] host::Anfitrion& Host() const { return *host_; }
  [[nodiscard]] QtPlatform& Platform() const { return *platform_; }
  [[nodiscard]] ErrorsWindow& Errors() const { return *errors_; }
  [[nodiscard]] Scanning& Scanner() const { return *scanning_; }
  // The view of a screen; nullptr if it has none.
  [[nodiscard]] ScreenView* ViewOf(const forms::Form& form) const;

  // ---- host::Testigo ----
  void Gancho(const std::string& key, const data::Value& value) override;
  void Presentada(forms::Form& form) override;

 private:
  void Open(const ProgramOptions& options);
  void ConnectPlatform();
  void MakeRoutines();
  void MakeWindow();
  void LoadRoutines(const std::string& folder);
  void Loaded(forms::Form& form);
  void ShowScreen(forms::Form& form, bool modal);
  void Help(const ScreenView* view);
  bool Unhandled(forms::Form* form, const std::exception& error);
  void ListErrors();

  Theme& theme_;
  std::unique_ptr<ProgramLog> log_;
  std::unique_ptr<QSettings> settings_;
  std::unique_ptr<QtPlatform> platform_;
  std::unique_ptr<DesktopSelector> selector_;
  std::unique_ptr<DesktopPrinter> printer_;
  std::unique_ptr<host::Anfitrion> host_;
  std::unique_ptr<Reader> reader_;
  std::unique_ptr<Office> office_;
  std::unique_ptr<EntradasSalidas> door_;
  std::unique_ptr<LastResort> last_resort_;
  std::unique_ptr<HooksWindow> hooks_;
  std::unique_ptr<python::Rutinas> routines_;
  std::unique_ptr<HelpWindow> help_;
  std::unique_ptr<MainWindow> window_;
  std::unique_ptr<Scanning> scanning_;
  ErrorsWindow* errors_ = nullptr;  // the main window's child
  QHash<const forms::Form*, QPointer<ScreenView>> views_;
  QSet<const forms::Form*> presented_;
};

}  // namespace tarvik::desktop
