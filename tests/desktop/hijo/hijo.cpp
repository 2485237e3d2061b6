// The desktop program as a process of its own that presses its own keys: started by stories about the
// program's end, or about a second program on the same base.
//   hijo FOLDER STEPS [BASE]      STEPS as in kPasos; the base is FOLDER/tienda.db if none is named
// It prints "listo" once what the story is about stands there, and then runs until it is told to end.
#include <QApplication>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <string>

#include "desktop/frame/main_window.h"
#include "desktop/platform/qt_platform.h"
#include "desktop/printing/preview_window.h"
#include "desktop/program/program.h"
#include "desktop/screens/matrix_view.h"
#include "desktop/style/theme.h"
#include "forms/headless_platform.h"
#include "goods_in/frm_entradas_wizard.h"
#include "goods_out/frm_salidas_wizard.h"
#include "host/anfitrion.h"
#include "service/door/entradas_salidas.h"

namespace {

using namespace tarvik;
using namespace tarvik::desktop;

void Listo() {
  std::puts("listo");
  std::fflush(stdout);
}

void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

void Type(const char* text) {
  for (; *text != '\0'; ++text) QTest::keyClick(QApplication::focusWidget(), *text);
}

// Once a window that waits for an answer is on show.
void CuandoPregunte(std::function<void(QWidget&)> act) {
  auto* look = new QTimer(qApp);
  QObject::connect(look, &QTimer::timeout, qApp, [look, act = std::move(act)] {
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal) return;
    look->deleteLater();
    act(*modal);
  });
  look->start(20);
}

frmEntradasWizard& Nueva(Program& program) {
  program.Door().NuevaEntrada();
  QTest::qWait(0);
  auto& form = dynamic_cast<frmEntradasWizard&>(*program.Platform().Screens().back());
  form.Check2.Value(0);
  return form;
}

// A goods-in with one line, the hand in the article field.
frmEntradasWizard& ConRenglon(Program& program) {
  frmEntradasWizard& form = Nueva(program);
  Type("COM");
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  Type("MAR-16");
  Press(Qt::Key_Return);
  Type("3");
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  return form;
}

// Posted, with its page in the preview, which is then handed over.
void ConVista(Program& program, const std::function<void(PreviewWindow&)>& act) {
  ConRenglon(program).Check2.Value(1);
  CuandoPregunte([](QWidget& question) { QTest::keyClick(&question, Qt::Key_S); });
  Press(Qt::Key_F5);
  for (int i = 0; i < 250; ++i) {
    QTest::qWait(20);
    for (QWidget* window : QApplication::topLevelWidgets()) {
      auto* preview = qobject_cast<PreviewWindow*>(window);
      if (preview && preview->isVisible()) return act(*preview);
    }
  }
}

// ---- a day's work, until somebody kills the program ----

void Dice(const char* what, const char* kind, int number) {
  std::printf("%s\t%s\t%d\n", what, kind, number);
  std::fflush(stdout);
}

void Linea(const std::string& article) {
  Type(article.c_str());
  Press(Qt::Key_Return);
  Type("2");
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  QTest::qWait(0);
}

// One document of eight lines by key, posted. What the screen shows as stored is said; so is that the
// posting begins, and that it is over.
template <class Wizard>
void Documento(Wizard& form, const char* kind, int id_column, std::int32_t Wizard::*number) {
  form.Check2.Value(0);
  const bool in = std::string_view(kind) == "Entrada";
  Type(in ? "COM" : "VTA");
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  for (int line = 1; line <= 8; ++line) {
    Linea(line % 2 == 0 ? "CIN-AIS" : "MAR-16");
    Dice("renglon", kind, std::atoi(form.fg2.TextMatrix(line, id_column).c_str()));
  }
  const int document = form.*number;
  CuandoPregunte([=](QWidget& question) {
    Dice("finaliza", kind, document);
    QTest::keyClick(&question, Qt::Key_S);
  });
  Press(Qt::Key_F5);
  Dice("afectado", kind, document);
  QTest::qWait(0);
}

void Trabaja(Program& program) {
  Listo();
  for (int document = 0;; ++document) {
    if (document % 3 < 2) {
      program.Door().NuevaEntrada();
      QTest::qWait(0);
      Documento(dynamic_cast<frmEntradasWizard&>(*program.Platform().Screens().back()), "Entrada", 5,
                &frmEntradasWizard::Entrada);
    } else {
      program.Door().NuevaSalida();
      QTest::qWait(0);
      Documento(dynamic_cast<frmSalidasWizard&>(*program.Platform().Screens().back()), "Salida", 6,
                &frmSalidasWizard::Salida);
    }
  }
}

// A field is left: its routine runs.
void DejaUnCampo(Program& program) {
  Nueva(program);
  Type("COM");
  Press(Qt::Key_Return);
}

// The next window that waits for an answer tells the parent; it is opened by a key over a document with a
// line.
void ConPregunta(Program& program, Qt::Key key) {
  ConRenglon(program);
  CuandoPregunte([](QWidget&) { Listo(); });
  Press(key);
}

void ConMenu(Program& program) {
  ConRenglon(program);
  QTimer::singleShot(300, qApp, [] {
    if (QApplication::activePopupWidget()) Listo();
  });
  program.Window().findChild<QMenu*>()->exec(QPoint(10, 10));
}

void PideNumeroDeTraspaso(Program& program) {
  CuandoPregunte([](QWidget&) { Listo(); });
  QTest::keyClick(&program.Window(), Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
}

void ConMatriz(Program& program) {
  Nueva(program);
  Type("COM");
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  Type("CAM");
  Press(Qt::Key_Return);
  Type("9");
  Press(Qt::Key_Return);
  CuandoPregunte([](QWidget& window) {
    if (qobject_cast<MatrixView*>(&window)) Listo();
  });
  Press(Qt::Key_Return);
}

void ConTraspaso(Program& program) {
  program.Door().movimientoEstacion(1, false);
  QTest::qWait(50);
  Listo();
}

void SobreLaVista(Program& program, const std::function<void(PreviewWindow&)>& ask) {
  ConVista(program, [ask](PreviewWindow& preview) {
    CuandoPregunte([](QWidget&) { Listo(); });
    ask(preview);
  });
}

const std::map<std::string, std::function<void(Program&)>> kPasos{
    {"trabaja", Trabaja},
    {"nada", [](Program&) { Listo(); }},
    {"deja un campo", DejaUnCampo},
    {"renglon",
     [](Program& program) {
       ConRenglon(program);
       Listo();
     }},
    {"pregunta al finalizar", [](Program& program) { ConPregunta(program, Qt::Key_F5); }},
    {"selector", [](Program& program) { ConPregunta(program, Qt::Key_F2); }},
    {"menu", ConMenu},
    {"numero de traspaso", PideNumeroDeTraspaso},
    {"matriz", ConMatriz},
    {"vista", [](Program& program) { ConVista(program, [](PreviewWindow&) { Listo(); }); }},
    {"caja sobre la vista",
     [](Program& program) {
       SobreLaVista(program,
                    [](PreviewWindow& preview) { preview.SavePdfTo(QStringLiteral("/no/existe/x.pdf")); });
     }},
    {"archivo sobre la vista",
     [](Program& program) { SobreLaVista(program, [](PreviewWindow& preview) { preview.SavePdf(); }); }},
    {"traspaso", ConTraspaso},
};

// A second program that comes and goes: what it finds in the base.
int Cuenta(const std::string& folder) {
  forms::HeadlessPlatform platform;
  host::Opciones options;
  options.base = "sqlite:" + folder + "/tienda.db";
  options.usuario = "BETO";
  options.estacion = "E2";
  options.ruta = folder + "/otro";
  options.plataforma = &platform;
  host::Anfitrion host(options);
  for (const char* question : {"SELECT COUNT(*) FROM entradas WHERE estado = 'CO'",
                               "SELECT COUNT(*) FROM movsinv WHERE operacion = 'EN'"}) {
    std::cout << data::ToText(host.Conexion().Run(question, {}).rows.at(0).at(0)) << '\n';
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 && argc != 4) return 64;
  const std::string folder = argv[1];
  const std::string steps = argv[2];
  if (steps == "cuenta") return Cuenta(folder);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  Theme theme(Theme::Mode::Light);
  theme.ApplyTo(application);
  const QString path = QString::fromStdString(folder);
  const QString base = argc == 4 ? QString::fromUtf8(argv[3])
                                 : QStringLiteral("sqlite:") + path + QStringLiteral("/tienda.db");
  Program program(theme, {base, QStringLiteral("ANA"), QStringLiteral("E1"), path, {}, true});
  program.Window().resize(1366, 768);
  program.Window().show();
  program.Window().activateWindow();
  (void)QTest::qWaitForWindowActive(&program.Window());
  QTimer::singleShot(0, [&] { kPasos.at(steps)(program); });
  return QApplication::exec();
}
