// The window of keys and routines: what it keeps, marks, filters and copies, by the keys of a hand.
#include "desktop/windows/hooks_window.h"
#include "desktop/windows/hooks_model.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QTableView>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "desktop/reading/reader.h"
#include "desktop/style/theme.h"
#include "forms/headless_platform.h"
#include "host/anfitrion.h"
#include "service/contract/claves.h"
#include "tests/desktop/support.h"

namespace tarvik::desktop {
namespace {

enum { kHora, kClave, kMomento, kRutina, kMs, kCampos, kCancelo, kError };

class Rutinas : public ::testing::Test {
 protected:
  Rutinas() {
    App();
    plataforma.clock = [] { return data::DateTime{{2024, 3, 5}, {14, 3, 22}}; };
    plataforma.on_box = [this](forms::BoxKind kind, const std::string& text, int style) {
      clase = kind;
      caja = text;
      estilo = style;
      return respuesta;
    };
    host::Opciones opciones;
    opciones.base = "sqlite::memory:";
    opciones.usuario = "ANA";
    opciones.estacion = "E1";
    opciones.ruta = carpeta.path().toStdString();
    opciones.plataforma = &plataforma;
    anfitrion = std::make_unique<host::Anfitrion>(opciones);
    ajustes = std::make_unique<QSettings>(carpeta.filePath("ajustes.ini"), QSettings::IniFormat);
    reader = std::make_unique<Reader>(anfitrion->Base());
    office = std::make_unique<Office>(Office{*anfitrion, tema, *ajustes, *reader});
    ventana = std::make_unique<HooksWindow>(*office);
  }

  void Muestra() {
    ventana->show();
    ventana->activateWindow();
    QTest::qWait(0);
  }
  static python::RutinaCargada Rutina(const std::string& clave) {
    return {clave, "/datos/ganchos/limite.py", 18};
  }
  static python::Corrida Corrida(const std::string& clave, double ms = 3.2) {
    python::Corrida run;
    run.rutina = Rutina(clave);
    run.milisegundos = ms;
    return run;
  }
  // The key fires and its routine runs.
  void Corre(const python::Corrida& run) {
    ventana->KeyFired(run.rutina.clave, {});
    ventana->Empieza(run.rutina);
    ventana->Corrio(run);
  }
  [[nodiscard]] int Renglones() const { return ventana->Table()->model()->rowCount(); }
  [[nodiscard]] QModelIndex Indice(int row, int column) const {
    return ventana->Table()->model()->index(row, column);
  }
  [[nodiscard]] QString Celda(int row, int column) const { return Indice(row, column).data().toString(); }
  [[nodiscard]] QColor Tinta(int row, int column) const {
    return Indice(row, column).data(Qt::ForegroundRole).value<QColor>();
  }
  template <class Widget>
  Widget* Con(const QString& accessible) {
    for (auto* widget : ventana->findChildren<Widget*>()) {
      if (widget->accessibleName() == accessible) return widget;
    }
    return nullptr;
  }

  QTemporaryDir carpeta;
  forms::HeadlessPlatform plataforma;
  Theme tema{Theme::Mode::Light};
  std::unique_ptr<host::Anfitrion> anfitrion;
  std::unique_ptr<QSettings> ajustes;
  std::unique_ptr<Reader> reader;
  std::unique_ptr<Office> office;
  std::unique_ptr<HooksWindow> ventana;
  forms::BoxKind clase = forms::BoxKind::Plain;
  std::string caja;
  int estilo = 0;
  bool respuesta = false;
};

TEST_F(Rutinas, UnaClaveSinRutinaVaEnTintaSuave) {
  ventana->KeyFired("ENTRADA008", 4);
  ASSERT_EQ(Renglones(), 1);
  EXPECT_EQ(Celda(0, kHora), "14:03:22");
  EXPECT_EQ(Celda(0, kClave), "ENTRADA008");
  EXPECT_EQ(Celda(0, kMomento), "Al entrar en un campo");
  EXPECT_EQ(Celda(0, kRutina), "");
  EXPECT_EQ(Celda(0, kMs), "");
  EXPECT_EQ(Celda(0, kCancelo), "");
  for (int column = 0; column <= kError; ++column) EXPECT_EQ(Tinta(0, column), tema.Color(Role::SoftInk));
}

TEST_F(Rutinas, UnaCorridaLlenaElRenglonDeSuClave) {
  auto run = Corrida("ENTRADA005", 12.4);
  run.cambios = {{"txtFields(5)", "1", "12"}, {"CancelaProceso", "no", "sí"}};
  run.cambios_omitidos = 3;
  run.cancelado_despues = true;
  Corre(run);
  ASSERT_EQ(Renglones(), 1);
  EXPECT_EQ(Celda(0, kMomento), "Antes de guardar un renglón");
  EXPECT_EQ(Celda(0, kRutina), "limite.py, línea 18");
  EXPECT_EQ(Celda(0, kMs), "12");
  EXPECT_EQ(Celda(0, kCampos), "txtFields(5), CancelaProceso, y 3 más");
  EXPECT_EQ(Celda(0, kCancelo), "Sí");
  EXPECT_EQ(Celda(0, kError), "");
  EXPECT_EQ(Tinta(0, kClave), tema.Color(Role::Ink));
  EXPECT_EQ(Indice(0, kMs).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight, Qt::AlignRight);
}

TEST_F(Rutinas, LaCancelacionDeAntesNoEsDeEstaRutina) {
  auto run = Corrida("ENTRADA007");
  run.cancelado_antes = run.cancelado_despues = true;
  Corre(run);
  run.cancelado_despues = false;
  Corre(run);
  Corre(Corrida("ENTRADA007"));
  EXPECT_EQ(Celda(0, kCancelo), "Desde antes");
  EXPECT_EQ(Celda(1, kCancelo), "Lo retiró");
  EXPECT_EQ(Celda(2, kCancelo), "No");
}

TEST_F(Rutinas, UnaRutinaLentaSeMarcaAPartirDelSegundo) {
  Corre(Corrida("ENTRADA014", 1000));
  Corre(Corrida("ENTRADA014", 1000.5));
  EXPECT_FALSE(Indice(0, kMs).data(Qt::BackgroundRole).isValid());
  EXPECT_EQ(Indice(1, kMs).data(Qt::BackgroundRole).value<QColor>(), tema.Color(Role::WarningTint));
  EXPECT_EQ(Tinta(1, kMs), tema.Color(Role::Warning));
}

TEST_F(Rutinas, UnErrorSeVeConSuArchivoSuLineaYSuRastro) {
  auto run = Corrida("ENTRADA005");
  run.error = python::Fallo{"/datos/ganchos/_comun.py", 3, "Falta el pedido"};
  run.rastro = "Traceback (most recent call last):\n  ...\nValueError: Falta el pedido\n";
  Corre(run);
  EXPECT_EQ(Celda(0, kError), "Falta el pedido");
  EXPECT_EQ(Tinta(0, kError), tema.Color(Role::Refused));
  Muestra();
  QTest::keyClick(ventana->Table(), Qt::Key_End, Qt::ControlModifier);
  auto* error = Con<QLabel>("Error de la rutina");
  ASSERT_TRUE(error);
  EXPECT_TRUE(error->isVisible());
  EXPECT_EQ(error->text(), "_comun.py, línea 3: Falta el pedido");
  auto* trace = Con<QPlainTextEdit>("Rastro del error");
  ASSERT_TRUE(trace);
  EXPECT_TRUE(trace->isVisible());
  EXPECT_TRUE(trace->toPlainText().endsWith("ValueError: Falta el pedido"));
}

TEST_F(Rutinas, ElDetalleDiceQueCambioAntesYDespues) {
  auto run = Corrida("ENTRADA001");
  run.cambios = {{"RichTextBox2", "", "Recibe ANA"}};
  Corre(run);
  ventana->KeyFired("ENTRADA008", {});
  Muestra();
  ventana->Table()->setFocus();
  ventana->Table()->selectRow(0);
  auto* changes = Con<QTableWidget>("Campos que la rutina cambió");
  ASSERT_TRUE(changes);
  ASSERT_EQ(changes->rowCount(), 1);
  EXPECT_EQ(changes->item(0, 0)->text(), "RichTextBox2");
  EXPECT_EQ(changes->item(0, 1)->text(), "");
  EXPECT_EQ(changes->item(0, 2)->text(), "Recibe ANA");
  QTest::keyClick(ventana->Table(), Qt::Key_Down);
  EXPECT_EQ(changes->rowCount(), 0);
}

TEST_F(Rutinas, LasQueSeAnidanQuedanEnElOrdenEnQueSeDispararon) {
  ventana->KeyFired("ENTRADA012", {});
  ventana->Empieza(Rutina("ENTRADA012"));
  EXPECT_EQ(Celda(0, kMs), "en curso");
  ventana->KeyFired("ENTRADA009", {});
  ventana->Empieza(Rutina("ENTRADA009"));
  ventana->Corrio(Corrida("ENTRADA009", 2));
  ventana->Corrio(Corrida("ENTRADA012", 5));
  ASSERT_EQ(Renglones(), 2);
  EXPECT_EQ(Celda(0, kClave), "ENTRADA012");
  EXPECT_EQ(Celda(0, kMs), "5.0");
  EXPECT_EQ(Celda(1, kClave), "ENTRADA009");
  EXPECT_EQ(Celda(1, kMs), "2.0");
}

TEST_F(Rutinas, DosRutinasDeUnaClaveSonDosRenglones) {
  ventana->KeyFired("ENTRADA001", {});
  for (int i = 0; i < 2; ++i) {
    ventana->Empieza(Rutina("ENTRADA001"));
    ventana->Corrio(Corrida("ENTRADA001", i));
  }
  ASSERT_EQ(Renglones(), 2);
  EXPECT_EQ(Celda(0, kMs), "0.0");
  EXPECT_EQ(Celda(1, kMs), "1.0");
}

TEST_F(Rutinas, GuardaCincoMilYSueltaLasMasViejas) {
  ventana->KeyFired("SALIDAS001", {});
  ventana->Empieza(Rutina("SALIDAS001"));  // still running when its row goes
  for (int i = 0; i < hooks::kKept; ++i) ventana->KeyFired("ENTRADA008", {});
  EXPECT_EQ(Renglones(), hooks::kKept);
  EXPECT_EQ(Celda(0, kClave), "ENTRADA008");
  ventana->Corrio(Corrida("SALIDAS001"));
  EXPECT_EQ(Renglones(), hooks::kKept);
  Corre(Corrida("ENTRADA005", 7));
  EXPECT_EQ(Renglones(), hooks::kKept);
  EXPECT_EQ(Celda(hooks::kKept - 1, kMs), "7.0");
}

TEST_F(Rutinas, ElFiltroTomaLoTecleadoYLaCasillaDejaLasDeRutina) {
  Corre(Corrida("ENTRADA005"));
  ventana->KeyFired("ENTRADA008", {});
  ventana->KeyFired("SALIDAS001", {});
  Muestra();
  QTest::keyClick(ventana.get(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(ventana->Filter()->hasFocus());
  QTest::keyClicks(ventana->Filter(), "entrada campo");
  ASSERT_EQ(Renglones(), 1);
  EXPECT_EQ(Celda(0, kClave), "ENTRADA008");
  QTest::keyClick(ventana->Filter(), Qt::Key_Escape);
  EXPECT_TRUE(ventana->isVisible());
  EXPECT_EQ(Renglones(), 3);
  QTest::keyClick(ventana.get(), Qt::Key_R, Qt::ControlModifier);
  ASSERT_EQ(Renglones(), 1);
  EXPECT_EQ(Celda(0, kClave), "ENTRADA005");
  auto* only = Con<QCheckBox>("Sólo lo que tiene rutina");
  ASSERT_TRUE(only);
  EXPECT_TRUE(only->isChecked());
  QTest::keyClick(ventana->Filter(), Qt::Key_Escape);
  EXPECT_FALSE(ventana->isVisible());
}

TEST_F(Rutinas, CopiarDaLoElegidoOTodo) {
  Corre(Corrida("ENTRADA005"));
  auto run = Corrida("ENTRADA001");
  run.error = python::Fallo{"/datos/ganchos/a.py", 1, "dos\nlíneas"};
  Corre(run);
  Muestra();
  ventana->Table()->setFocus();
  ventana->Table()->clearSelection();
  QTest::keyClick(ventana->Table(), Qt::Key_C, Qt::ControlModifier);
  QStringList lines = QApplication::clipboard()->text().split('\n', Qt::SkipEmptyParts);
  ASSERT_EQ(lines.size(), 3);
  EXPECT_EQ(lines[0], "Hora\tClave\tMomento\tRutina\tms\tCampos cambiados\tCanceló\tError");
  EXPECT_EQ(lines[1], "14:03:22\tENTRADA005\tAntes de guardar un renglón\tlimite.py, línea 18\t3.2\t\tNo\t");
  EXPECT_TRUE(lines[2].endsWith("\tdos / líneas"));
  ventana->Table()->selectRow(1);
  auto* copy = Con<QPushButton>("Copiar los renglones elegidos, o todos");
  ASSERT_TRUE(copy);
  QTest::mouseClick(copy, Qt::LeftButton);
  lines = QApplication::clipboard()->text().split('\n', Qt::SkipEmptyParts);
  ASSERT_EQ(lines.size(), 2);
  EXPECT_TRUE(lines[1].contains("ENTRADA001"));
}

TEST_F(Rutinas, VaciarDejaLaListaLimpiaYLoQueSigueSeAnota) {
  Corre(Corrida("ENTRADA005"));
  ventana->KeyFired("ENTRADA012", {});
  ventana->Empieza(Rutina("ENTRADA012"));
  Muestra();
  QTest::keyClick(ventana->Table(), Qt::Key_Delete, Qt::ControlModifier);
  EXPECT_EQ(Renglones(), 0);
  ventana->Corrio(Corrida("ENTRADA012"));  // begun before
  EXPECT_EQ(Renglones(), 0);
  auto* clear = Con<QPushButton>("Vaciar la lista");
  ASSERT_TRUE(clear);
  EXPECT_FALSE(clear->isEnabled());
  Corre(Corrida("ENTRADA012"));
  ASSERT_EQ(Renglones(), 1);
  EXPECT_EQ(Celda(0, kMs), "3.2");
  EXPECT_TRUE(clear->isEnabled());
}

TEST_F(Rutinas, LoQueNoCargoEstaEnLaLista) {
  python::Rutinas rutinas;
  ventana->Loaded(rutinas, {{"/datos/ganchos/malo.py", 12, "error de sintaxis (invalid syntax)"}});
  ASSERT_EQ(Renglones(), 1);
  EXPECT_EQ(Celda(0, kClave), "(carga)");
  EXPECT_EQ(Celda(0, kRutina), "malo.py, línea 12");
  EXPECT_EQ(Celda(0, kError), "error de sintaxis (invalid syntax)");
}

TEST_F(Rutinas, LaRutinaLargaSePreguntaYEsperarEsLoPorOmision) {
  respuesta = false;  // No: it isn't stopped
  EXPECT_TRUE(ventana->SigueEsperando(Rutina("ENTRADA005"), 10));
  EXPECT_EQ(clase, forms::BoxKind::Question);
  EXPECT_EQ(estilo & forms::kBoxYesNo, forms::kBoxYesNo);
  EXPECT_EQ(estilo & forms::kBoxSecondDefault, forms::kBoxSecondDefault);
  EXPECT_TRUE(
      caja.starts_with("La rutina ENTRADA005 (limite.py, línea 18) lleva 10 segundos y no ha terminado."))
      << caja;
  respuesta = true;
  EXPECT_FALSE(ventana->SigueEsperando(Rutina("ENTRADA005"), 20));
}

// The program's end closes the question, which looks like a No.
TEST_F(Rutinas, LaPreguntaQueNadieContestoNoDejaSeguir) {
  respuesta = false;
  plataforma.on_wait = [] { return true; };
  EXPECT_FALSE(ventana->SigueEsperando(Rutina("ENTRADA005"), 10));
}

TEST_F(Rutinas, CadaAccionTieneSuTeclaEnElMenuYCadaControlSuNombre) {
  int actions = 0;
  for (QAction* menu : ventana->menuBar()->actions()) {
    for (QAction* action : menu->menu()->actions()) {
      if (action->isSeparator()) continue;
      EXPECT_FALSE(action->shortcut().isEmpty()) << action->text().toStdString();
      ++actions;
    }
  }
  EXPECT_EQ(actions, 6);
  for (QWidget* widget : ventana->findChildren<QWidget*>()) {
    if (widget->focusPolicy() == Qt::NoFocus || !widget->metaObject()) continue;
    if (qobject_cast<QAbstractButton*>(widget) || qobject_cast<QTableView*>(widget) ||
        qobject_cast<QPlainTextEdit*>(widget) || qobject_cast<QLineEdit*>(widget)) {
      if (widget->inherits("QTableCornerButton") || widget->objectName().startsWith("qt_")) continue;
      if (qobject_cast<QLineEdit*>(widget->parentWidget())) continue;  // its own clear button
      EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->metaObject()->className();
    }
  }
}

TEST_F(Rutinas, TodasLasClavesTienenSuMomento) {
  for (const auto& clave : service::kClaves) ventana->KeyFired(std::string(clave.clave), {});
  ASSERT_EQ(Renglones(), static_cast<int>(service::kClaves.size()));
  for (int row = 0; row < Renglones(); ++row)
    EXPECT_FALSE(Celda(row, kMomento).isEmpty()) << Celda(row, kClave).toStdString();
}

TEST_F(Rutinas, LaVentanaRecuerdaSusColumnas) {
  Muestra();
  ventana->Table()->setColumnWidth(kRutina, 321);
  ventana->close();
  HooksWindow otra(*office);
  EXPECT_EQ(otra.Table()->columnWidth(kRutina), 321);
}

}  // namespace
}  // namespace tarvik::desktop
