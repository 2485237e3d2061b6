// The desktop program. Reads the command line, opens the base and shows the main window.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <iostream>
#include <string>

#include "data/error.h"
#include "desktop/boxes/boxes.h"
#include "desktop/frame/main_window.h"
#include "desktop/program/program.h"
#include "desktop/style/theme.h"
#include "host/ordenes.h"

namespace {

// Nobody at the terminal is no.
bool AskOnTheTerminal(const std::string& question) {
  if (isatty(STDIN_FILENO) == 0) return false;
  std::cerr << question << " (s/n) " << std::flush;
  std::string answer;
  std::getline(std::cin, answer);
  return answer == "s" || answer == "S" || answer == "sí" || answer == "si";
}

}  // namespace

int main(int argc, char** argv) {
  using namespace tarvik::desktop;
  std::string base = "sqlite:datos/demostracion.db";
  std::string user = "ANA";
  std::string station = "E1";
  std::string folder = "datos";
  std::string routines;
  std::string theme_name = "sistema";
  bool demo = false;
  CLI::App options{"Movimientos de inventario: entradas, salidas y traspasos."};
  options.add_option("--base", base, "Base de datos: sqlite:ARCHIVO o postgresql://...");
  options.add_option("--usuario", user, "Quién trabaja");
  options.add_option("--estacion", station, "En qué estación");
  options.add_option("--ruta", folder, "Carpeta de formatos, impresos y bitácora");
  options.add_option("--ganchos", routines, "Carpeta de las rutinas del negocio");
  options.add_option("--tema", theme_name, "sistema, claro u oscuro")
      ->check(CLI::IsMember({"sistema", "claro", "oscuro"}));
  options.add_flag("--demo", demo, "Llena una base vacía con el catálogo de demostración");
  tarvik::host::Ordenes orders(options);
  CLI11_PARSE(options, argc, argv);
  if (orders.Pedida()) {
    tarvik::host::Opciones made;
    made.base = base;
    made.usuario = user;
    made.estacion = station;
    made.ruta = folder;
    return orders.Corre(made, {std::cout, std::cerr, AskOnTheTerminal});
  }

  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Tarvik"));
  QApplication::setDesktopFileName(QStringLiteral("tarvik"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/tarvik.png")));
  QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Mexico));
  QTranslator translator;
  if (translator.load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                      QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(&translator);
  }
  Theme theme(theme_name == "claro" ? Theme::Mode::Light
                                    : (theme_name == "oscuro" ? Theme::Mode::Dark : Theme::Mode::System));
  theme.ApplyTo(application);
  try {
    Program program(
        theme, {QString::fromStdString(base), QString::fromStdString(user), QString::fromStdString(station),
                QString::fromStdString(folder), QString::fromStdString(routines), demo});
    program.Window().show();
    return QApplication::exec();
  } catch (const tarvik::data::Error& error) {
    std::cerr << error.what() << '\n';
    // Started from a menu, nobody reads the other. Where there is no screen, nobody could answer.
    if (QApplication::platformName() != QStringLiteral("offscreen"))
      ShowNotOpened(QString::fromUtf8(error.what()));
    return 2;
  }
}
