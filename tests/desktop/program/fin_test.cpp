// The program is told to end by a signal, whatever it is doing, and ends in the ordinary way within seconds.
// No question counts as answered with yes, and no document stays held.
#include <gtest/gtest.h>
#include <signal.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <filesystem>
#include <fstream>

#include "data/engine.h"
#include "tests/desktop/support.h"

namespace tarvik::desktop {
namespace {

namespace fs = std::filesystem;

class Fin : public ::testing::Test {
 protected:
  Fin() { App(); }
  ~Fin() override {
    if (hijo_.state() == QProcess::NotRunning) return;
    hijo_.kill();
    hijo_.waitForFinished();
  }

  // A file of routines; it tells by a file "corre" that it has got where it stays.
  void Rutina(const std::string& text) {
    const fs::path folder = Carpeta() / "ganchos";
    fs::create_directories(folder);
    std::ofstream(folder / "rutina.py")
        << "def corre():\n    open('" << (Carpeta() / "corre").string() << "', 'w').close()\n"
        << text;
  }
  fs::path Carpeta() { return carpeta_.path().toStdString(); }

  void Empieza(const QString& steps) {
    hijo_.setProcessChannelMode(QProcess::MergedChannels);
    hijo_.start(QStringLiteral(TARVIK_HIJO), {carpeta_.path(), steps});
    ASSERT_TRUE(hijo_.waitForStarted());
  }
  // Until the program says that it is there, or its routine does.
  ::testing::AssertionResult Espera(bool routine = false) {
    QElapsedTimer since;
    since.start();
    while (since.elapsed() < 60000) {
      hijo_.waitForReadyRead(20);
      dicho_ += hijo_.readAll();
      if (routine ? fs::exists(Carpeta() / "corre") : dicho_.contains("listo")) {
        QThread::msleep(300);
        return ::testing::AssertionSuccess();
      }
      if (hijo_.state() == QProcess::NotRunning) break;
    }
    return ::testing::AssertionFailure() << "it never got there: " << dicho_.toStdString();
  }
  // Tells it to end. How long it took, in milliseconds, and the ordinary end of a program.
  int Termina(int signal = SIGTERM) {
    QElapsedTimer since;
    since.start();
    ::kill(static_cast<pid_t>(hijo_.processId()), signal);
    EXPECT_TRUE(hijo_.waitForFinished(20000)) << "it goes on";
    EXPECT_EQ(hijo_.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(hijo_.exitCode(), 0) << hijo_.readAll().toStdString();
    return static_cast<int>(since.elapsed());
  }
  std::string Uno(const std::string& question) {
    auto base = data::OpenBase("sqlite:" + (Carpeta() / "tienda.db").string());
    const auto found = base->Connect()->Run(question, {});
    return found.rows.empty() ? "(nada)" : data::ToText(found.rows[0][0]);
  }
  // Of all documents, how many are held; nothing of them was posted.
  void NadaAfectadoNiRetenido() {
    EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv WHERE operacion = 'EN'"), "0");
    EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas WHERE estado <> 'PE'"), "0");
    EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas WHERE ocupado <> 0"), "0");
  }
  std::string Bitacora() {
    std::ifstream log(Carpeta() / "programa.log");
    return {std::istreambuf_iterator<char>(log), {}};
  }

  static constexpr int kUnosSegundos = 6000;
  QTemporaryDir carpeta_;
  QProcess hijo_;
  QByteArray dicho_;
};

TEST_F(Fin, ARoutineThatNeverEndsIsEnded) {
  Rutina("def ENTRADA007(forma, ambiente):\n    corre()\n    while True:\n        pass\n");
  Empieza(QStringLiteral("deja un campo"));
  ASSERT_TRUE(Espera(true));
  EXPECT_LT(Termina(), kUnosSegundos);
  EXPECT_NE(Bitacora().find("La rutina ENTRADA007 se detuvo porque el programa se cierra"), std::string::npos)
      << Bitacora();
  NadaAfectadoNiRetenido();
}

TEST_F(Fin, ARoutineThatCatchesEverythingIsEndedToo) {
  Rutina(
      "import time\n"
      "def ENTRADA007(forma, ambiente):\n"
      "    corre()\n"
      "    while True:\n"
      "        try:\n"
      "            time.sleep(0.01)\n"
      "        except BaseException:\n"
      "            pass\n");
  Empieza(QStringLiteral("deja un campo"));
  ASSERT_TRUE(Espera(true));
  EXPECT_LT(Termina(), kUnosSegundos);
  NadaAfectadoNiRetenido();
}

TEST_F(Fin, ARoutineThatSleepsIsWoken) {
  Rutina("import time\ndef ENTRADA007(forma, ambiente):\n    corre()\n    time.sleep(600)\n");
  Empieza(QStringLiteral("deja un campo"));
  ASSERT_TRUE(Espera(true));
  EXPECT_LT(Termina(SIGINT), kUnosSegundos);
}

TEST_F(Fin, ARoutineThatAsksAgainAndAgainGetsNoAnswerToGoOnWith) {
  Rutina(
      "def ENTRADA007(forma, ambiente):\n"
      "    corre()\n"
      "    while not ambiente.Pregunta('¿Seguimos?'):\n"
      "        pass\n");
  Empieza(QStringLiteral("deja un campo"));
  ASSERT_TRUE(Espera(true));
  EXPECT_LT(Termina(), kUnosSegundos);
}

// The routine waits inside a library, where it can't be stopped; the program ends all the same.
TEST_F(Fin, ARoutineThatWaitsInALibraryEndsWithTheProgram) {
  Rutina(
      "import itertools\n"
      "def ENTRADA007(forma, ambiente):\n"
      "    corre()\n"
      "    sum(itertools.repeat(0))\n");
  Empieza(QStringLiteral("deja un campo"));
  ASSERT_TRUE(Espera(true));
  ::kill(static_cast<pid_t>(hijo_.processId()), SIGTERM);
  ASSERT_TRUE(hijo_.waitForFinished(20000)) << "it goes on";
  EXPECT_EQ(hijo_.exitCode(), 128 + SIGTERM);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv WHERE operacion = 'EN'"), "0");
}

TEST_F(Fin, AFileThatNeverFinishesLoadingIsEnded) {
  Rutina("corre()\nwhile True:\n    pass\n");
  Empieza(QStringLiteral("nada"));
  ASSERT_TRUE(Espera(true));
  EXPECT_LT(Termina(), kUnosSegundos);
}

TEST_F(Fin, AThreadThatARoutineLeftDoesNotKeepTheProgram) {
  Rutina(
      "import threading, time\n"
      "def vigila():\n"
      "    corre()\n"
      "    while True:\n"
      "        time.sleep(0.05)\n"
      "threading.Thread(target=vigila).start()\n");
  Empieza(QStringLiteral("nada"));
  ASSERT_TRUE(Espera(true));
  ASSERT_TRUE(Espera());
  EXPECT_LT(Termina(), kUnosSegundos);
}

// The program asks after ten seconds; its end closes the question, which counts as unanswered.
TEST_F(Fin, TheQuestionAboutALongRoutineIsNoLeaveToGoOn) {
  Rutina("def ENTRADA007(forma, ambiente):\n    corre()\n    while True:\n        pass\n");
  Empieza(QStringLiteral("deja un campo"));
  ASSERT_TRUE(Espera(true));
  QThread::msleep(12000);
  EXPECT_LT(Termina(), kUnosSegundos);
  EXPECT_NE(Bitacora().find("se detuvo porque el programa se cierra"), std::string::npos) << Bitacora();
}

TEST_F(Fin, AQuestionThatNobodyAnsweredPostsNothing) {
  Empieza(QStringLiteral("pregunta al finalizar"));
  ASSERT_TRUE(Espera());
  EXPECT_LT(Termina(), kUnosSegundos);
  NadaAfectadoNiRetenido();
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "1");
}

TEST_F(Fin, AnOpenDocumentStaysPendingWithItsLines) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    dicho_.clear();
    Empieza(QStringLiteral("renglon"));
    ASSERT_TRUE(Espera());
    EXPECT_LT(Termina(signal), kUnosSegundos) << signal;
    NadaAfectadoNiRetenido();
  }
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "3");
}

TEST_F(Fin, AMatrixThatNobodyAcceptedMakesNoLines) {
  Empieza(QStringLiteral("matriz"));
  ASSERT_TRUE(Espera());
  EXPECT_LT(Termina(), kUnosSegundos);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
  NadaAfectadoNiRetenido();
}

TEST_F(Fin, APreviewAndWhatStandsOverItGo) {
  int posted = 0;
  for (const char* steps : {"vista", "caja sobre la vista", "archivo sobre la vista"}) {
    dicho_.clear();
    Empieza(QString::fromUtf8(steps));
    ASSERT_TRUE(Espera()) << steps;
    EXPECT_LT(Termina(), kUnosSegundos) << steps;
    EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas WHERE estado = 'CO'"), std::to_string(++posted));
  }
}

TEST_F(Fin, APickerAndAMenuGo) {
  for (const char* steps : {"selector", "menu", "numero de traspaso"}) {
    dicho_.clear();
    Empieza(QString::fromUtf8(steps));
    ASSERT_TRUE(Espera()) << steps;
    EXPECT_LT(Termina(), kUnosSegundos) << steps;
    NadaAfectadoNiRetenido();
  }
}

TEST_F(Fin, AScreenThatRefusesToCloseGoesWithTheProgram) {
  Rutina("def MOVESTACIONES007(forma, ambiente):\n    forma.CancelaProceso = True\n");
  Empieza(QStringLiteral("traspaso"));
  ASSERT_TRUE(Espera());
  EXPECT_LT(Termina(), 9000);
}

TEST_F(Fin, ARoutineOfTheClosingHasItsTime) {
  Rutina(
      "import time\n"
      "def MOVESTACIONES007(forma, ambiente):\n"
      "    time.sleep(0.5)\n"
      "    corre()\n");
  Empieza(QStringLiteral("traspaso"));
  ASSERT_TRUE(Espera());
  EXPECT_LT(Termina(), kUnosSegundos);
  EXPECT_TRUE(fs::exists(Carpeta() / "corre"));
}

}  // namespace
}  // namespace tarvik::desktop
