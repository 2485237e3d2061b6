// Routines of the business that raise, or do not end.
#include <QSettings>

#include "desktop/windows/hooks_window.h"
#include "python/ganchos.h"
#include "tests/desktop/hard_days/dia_dificil.h"

namespace tarvik::desktop {
namespace {

TEST_F(DiaDificil, ARoutineThatRaisesIsToldWithItsWordsAndNotedWithItsLine) {
  StartWithRoutine("limites.py",
                   "def ENTRADA005(forma, ambiente):\n"
                   "    raise ValueError('El proveedor no tiene crédito')\n");
  ASSERT_TRUE(boxes.empty()) << AllSaid();
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  ASSERT_EQ(boxes.size(), 1u) << AllSaid();
  EXPECT_NE(boxes[0].find("Function: NuevaPartida"), std::string::npos) << boxes[0];
  EXPECT_NE(boxes[0].find("El proveedor no tiene crédito"), std::string::npos) << boxes[0];
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
  EXPECT_EQ(form.CuantasPartidas(), 1);
  const std::string log = Contenido(File("programa.log"));
  EXPECT_NE(log.find("limites.py, línea 2: El proveedor no tiene crédito"), std::string::npos) << log;
  EXPECT_NE(Contenido(DayLog()).find("El proveedor no tiene crédito"), std::string::npos);
}

// The desk waits ten seconds before it asks; here the routines are given one.
TEST_F(DiaDificil, ARoutineThatDoesNotEndIsAskedAboutWaitedForAndStopped) {
  QSettings settings(folder.filePath(QStringLiteral("ajustes.ini")), QSettings::IniFormat);
  Reader lists(program->Host().Base());
  Office office{program->Host(), theme, settings, lists};
  HooksWindow window(office);
  Graba(File("rutinas/larga.py"),
        "def ENTRADA005(forma, ambiente):\n"
        "    while True:\n"
        "        try:\n"
        "            sum(range(1000))\n"
        "        except Exception:\n"
        "            pass\n");
  python::OpcionesDeRutinas options;
  options.observador = &window;
  options.limite_ms = 1000;
  auto routines = std::make_unique<python::Rutinas>(options);
  ASSERT_TRUE(routines->Carga(program->Host(), File("rutinas").string()).empty());

  frmEntradasWizard& form = Receiving();
  program->Platform().on_box = nullptr;
  Lector reader({Qt::Key_Return, Qt::Key_S, Qt::Key_Return});  // wait, which Enter means; stop; the report
  Article(0, "3");
  ASSERT_EQ(reader.read.size(), 3) << reader.read.join('|').toStdString();
  EXPECT_TRUE(
      reader.read[0].contains(QStringLiteral("La rutina ENTRADA005 (larga.py, línea 1) lleva 1 segundo")))
      << reader.read[0].toStdString();
  EXPECT_TRUE(reader.read[0].contains(QStringLiteral("¿Desea detenerla?")));
  EXPECT_TRUE(reader.read[1].contains(QStringLiteral("lleva 2 segundos")));
  EXPECT_TRUE(reader.read[2].contains(
      QStringLiteral("La rutina ENTRADA005 se detuvo porque no había terminado a los 2 segundos")));
  EXPECT_FALSE(reader.read[0].contains(QStringLiteral("1 segundos")));
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
  EXPECT_TRUE(form.Open());
  EXPECT_EQ(form.ActiveControl(), &form.txtFields(campo::Articulo));
  routines.reset();
}

}  // namespace
}  // namespace tarvik::desktop
