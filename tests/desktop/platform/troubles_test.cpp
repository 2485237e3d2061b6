// Trouble with the base while an operator works: a short wait shows only as a notice in the line of keys; of
// a long one the boxes appear, and a window lists them when the step is over.
#include "desktop/platform/troubles.h"

#include <QClipboard>
#include <QPushButton>
#include <QTableWidget>
#include <QWindow>
#include <atomic>
#include <chrono>
#include <thread>

#include "desktop/style/key_caps.h"
#include "desktop/windows/errors_window.h"
#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

using namespace std::chrono_literals;

// Another station that holds everything: its transaction is open from construction until the given time has
// passed. `meanwhile` runs in the middle of it, in the thread of the other.
class Ocupada {
 public:
  Ocupada(const std::string& address, std::chrono::milliseconds time, std::function<void()> meanwhile = {})
      : thread_([this, address, time, meanwhile = std::move(meanwhile)] {
          const auto base = data::OpenBase(address);
          const auto connection = base->Connect();
          connection->Begin();
          // A series that has not given a number yet is held by its name.
          for (const char* rows :
               {"INSERT INTO series (nombre, valor) VALUES ('MovEnt', 0), ('entpart', 0) ON "
                "CONFLICT (nombre) DO UPDATE SET valor = series.valor",
                "UPDATE entradas SET ocupado = ocupado",
                "UPDATE existenciaalmacen SET existencia = existencia",
                "UPDATE prods SET costo_u = costo_u"}) {
            connection->Run(rows, {});
          }
          held_ = true;
          std::this_thread::sleep_for(time / 2);
          if (meanwhile) meanwhile();
          std::this_thread::sleep_for(time / 2);
          held_ = false;
          connection->Rollback();
        }) {
    while (!held_) std::this_thread::sleep_for(1ms);
  }
  ~Ocupada() { thread_.join(); }
  Ocupada(const Ocupada&) = delete;
  Ocupada& operator=(const Ocupada&) = delete;

  [[nodiscard]] bool Held() const { return held_; }

 private:
  std::atomic<bool> held_ = false;
  std::thread thread_;
};

// What the words in the lines of keys said when they were painted, and on which line.
class Mirada : public QObject {
 public:
  explicit Mirada(QWidget& window) : window_(window) {}
  void Mira() {
    for (auto* word : window_.findChildren<LineWord*>()) word->installEventFilter(this);
  }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) {
      const auto* word = qobject_cast<LineWord*>(watched);
      (qobject_cast<KeyCaps*>(word->parentWidget()) ? on_keys : on_progress).insert(word->text());
      ++painted;
    }
    return false;
  }
  QSet<QString> on_keys;
  QSet<QString> on_progress;
  int painted = 0;

 private:
  QWidget& window_;
};

class Apuros : public Escritorio {
 protected:
  // Keys to the window, as they wait in the queue; from any thread.
  void Oprime(const QString& text) {
    for (const QChar letter : text) {
      const int key = letter.toUpper().unicode();
      for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QCoreApplication::postEvent(window_, new QKeyEvent(type, key, Qt::NoModifier, QString(letter)));
      }
    }
  }
  // A new goods-in with its concept; what its lines of keys say is looked at.
  frmEntradasWizard& Abierta() {
    frmEntradasWizard& form = Receiving();
    window_ = program->Window().windowHandle();
    mirada_ = std::make_unique<Mirada>(program->Window());
    mirada_->Mira();
    return form;
  }
  // The same with a line that only wants to be stored.
  frmEntradasWizard& ConRenglonPorGuardar() {
    frmEntradasWizard& form = Abierta();
    Type("MAR-16");
    Press(Qt::Key_Return);
    Type("3");
    Press(Qt::Key_Return);
    return form;
  }
  static QString Palabra(const QWidget& window) {
    for (const auto* word : window.findChildren<LineWord*>()) {
      if (!word->isHidden()) return word->text();
    }
    return {};
  }

  QWindow* window_ = nullptr;
  std::unique_ptr<Mirada> mirada_;
  const QString espera_ = QStringLiteral("Esperando a la base de datos…");
};

TEST_F(Apuros, ALineWaitsForAnotherStationAndWhatIsTypedMeanwhileComesAfterwards) {
  frmEntradasWizard& form = ConRenglonPorGuardar();
  std::atomic<int> ran = 0;
  std::atomic<int> ran_while_held = 0;
  {
    Ocupada* other = nullptr;
    Ocupada busy(Address().toStdString(), 1000ms, [&] {
      Oprime("cin-ais");
      QMetaObject::invokeMethod(
          qApp,
          [&] {
            ++ran;
            if (other && other->Held()) ++ran_while_held;
          },
          Qt::QueuedConnection);
    });
    other = &busy;
    QElapsedTimer since;
    since.start();
    Press(Qt::Key_Return);  // the line is stored
    EXPECT_GE(since.elapsed(), 700);
    EXPECT_LT(since.elapsed(), 4000);
    EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
    EXPECT_EQ(form.txtFields(campo::Articulo).Text(), "") << "no key was taken in the middle of the step";
    EXPECT_EQ(ran.load(), 0) << "nothing else ran in the middle of the step";
    QTest::qWait(100);
  }
  EXPECT_EQ(ran.load(), 1);
  EXPECT_EQ(ran_while_held.load(), 0);
  EXPECT_EQ(form.txtFields(campo::Articulo).Text(), "cin-ais");
  EXPECT_TRUE(boxes.empty()) << boxes.front();
  EXPECT_TRUE(mirada_->on_keys.contains(espera_));
  EXPECT_GE(mirada_->painted, 3) << "the window goes on painting";
  EXPECT_LE(mirada_->painted, 20) << "and not more than it must";
  EXPECT_EQ(Palabra(program->Window()), "") << "gone when the step went on";
}

TEST_F(Apuros, AFinishWaitsInTheMiddleOfItsLinesAndLosesNone) {
  Abierta();
  for (const char* article : {"MAR-16", "CIN-AIS", "MAR-16"}) Line(QString::fromLatin1(article), "2");
  std::unique_ptr<Ocupada> busy;
  auto before = program->Platform().on_repaint;
  int lines = 0;
  program->Platform().on_repaint = [&](forms::Form& screen) {
    before(screen);
    if (++lines == 2) busy = std::make_unique<Ocupada>(Address().toStdString(), 1000ms);
  };
  Press(Qt::Key_F5);
  program->Platform().on_repaint = before;
  busy.reset();
  Settle();
  EXPECT_EQ(lines, 3);
  EXPECT_TRUE(mirada_->on_progress.contains(espera_));
  EXPECT_EQ(boxes.size(), 1U) << "the question alone";
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv WHERE operacion = 'EN'"), "3");
  EXPECT_EQ(One("SELECT estado FROM entradas"), "CO");
  EXPECT_TRUE(program->Platform().Screens().empty());
  EXPECT_FALSE(program->Errors().isVisible());
}

TEST_F(Apuros, AWaitThatNobodyNoticesSaysNothing) {
  ConRenglonPorGuardar();
  {
    const Ocupada busy(Address().toStdString(), 200ms);
    Press(Qt::Key_Return);
  }
  Settle();
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
  EXPECT_FALSE(mirada_->on_keys.contains(espera_));
  EXPECT_TRUE(boxes.empty());
}

// ---- long troubles ----

class Avisos : public Apuros {
 protected:
  // A finish of so many lines, each of which fails: the ledger is away while they are posted.
  void Finaliza(int lines) {
    Abierta();
    for (int line = 0; line < lines; ++line) Line(line % 2 == 0 ? "MAR-16" : "CIN-AIS", "2");
    program->Platform().on_box = [this](forms::BoxKind kind, const std::string& text, int) {
      boxes.push_back(text);
      if (kind == forms::BoxKind::Plain) said_.push_back(Palabra(program->Window()));
      return true;
    };
    auto before = program->Platform().on_repaint;
    bool away = false;
    program->Platform().on_repaint = [&](forms::Form& screen) {
      before(screen);
      if (!std::exchange(away, true))
        program->Host().Conexion().Define("ALTER TABLE movsinv RENAME TO aparte");
    };
    Press(Qt::Key_F5);
    program->Platform().on_repaint = before;
    program->Host().Conexion().Define("ALTER TABLE aparte RENAME TO movsinv");
    QTest::qWait(20);
  }
  ErrorsWindow& Ventana() { return program->Errors(); }
  QStringList said_;
};

TEST_F(Avisos, EachBoxComesTheLineCountsThemAndOneWindowListsThem) {
  Finaliza(3);
  ASSERT_EQ(boxes.size(), 4U) << "the question and one box a line; the last: " << boxes.back();
  EXPECT_EQ(said_, (QStringList{"1 aviso de error en este paso", "2 avisos de error en este paso",
                                "3 avisos de error en este paso"}));
  EXPECT_EQ(Palabra(program->Window()), "") << "the step is over";
  ASSERT_TRUE(Ventana().isVisible());
  EXPECT_FALSE(Ventana().isModal());
  const QTableWidget& table = Ventana().Table();
  ASSERT_EQ(table.rowCount(), 3);
  EXPECT_TRUE(QTime::fromString(table.item(0, 0)->text(), "HH:mm:ss").isValid());
  EXPECT_EQ(table.item(0, 1)->text(), "AfectaPartidas");
  EXPECT_FALSE(table.item(0, 2)->text().isEmpty());
  EXPECT_FALSE(table.item(0, 2)->text().contains("código duro"));
  for (const auto* label : Ventana().findChildren<QLabel*>()) {
    EXPECT_FALSE(label->text().contains(QStringLiteral("repita"), Qt::CaseInsensitive));
  }
  Ventana().Copy();
  EXPECT_EQ(QApplication::clipboard()->text().count(QStringLiteral("Ocurrió un error:")), 3);
}

TEST_F(Avisos, WhatAScannerSendsDoesNotCloseTheWindow) {
  Finaliza(3);
  ASSERT_TRUE(Ventana().isVisible());
  EXPECT_TRUE(program->Window().isActiveWindow()) << "the hand stays where it was";
  Ventana().Reach();
  (void)QTest::qWaitForWindowActive(&Ventana());
  for (QWidget* widget : Ventana().findChildren<QWidget*>()) {
    if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible()) continue;
    QTest::keyClicks(widget, "7501");
    QTest::keyClick(widget, Qt::Key_Return);
    EXPECT_TRUE(Ventana().isVisible()) << widget->metaObject()->className();
  }
  for (const auto* button : Ventana().findChildren<QPushButton*>()) {
    EXPECT_FALSE(button->accessibleName().isEmpty());
    EXPECT_TRUE(button->text().contains(QLatin1Char('&'))) << button->text().toStdString();
  }
  EXPECT_FALSE(Ventana().Table().accessibleName().isEmpty());
  Ventana().Reach();
  ASSERT_TRUE(QTest::qWaitFor([&] { return Ventana().isActiveWindow(); }, 2000));
  QTest::keyClick(&Ventana().Table(), Qt::Key_Escape);
  EXPECT_FALSE(Ventana().isVisible());
}

TEST_F(Avisos, OneErrorNeedsNoList) {
  Finaliza(1);
  EXPECT_EQ(boxes.size(), 2U);
  EXPECT_EQ(said_, QStringList{"1 aviso de error en este paso"});
  EXPECT_FALSE(Ventana().isVisible());
}

TEST_F(Avisos, AReportIsTakenApart) {
  const Trouble whole = TakenApart(
      "14:03:22 Ocurrió un error:\r\nModule: frmEntradasWi\r\nFunction: SalvaEntrada\r\nDescription: La base "
      "está ocupada\r\npor otro código duro: 0\r\n",
      "10:00:00");
  EXPECT_EQ(whole.time, "14:03:22");
  EXPECT_EQ(whole.procedure, "SalvaEntrada");
  EXPECT_EQ(whole.text, "La base está ocupada\r\npor otro");
  const Trouble other = TakenApart("Sin permiso", "10:00:00");
  EXPECT_EQ(other.time, "10:00:00");
  EXPECT_EQ(other.procedure, "");
  EXPECT_EQ(other.text, "Sin permiso");
}

}  // namespace
}  // namespace tarvik::desktop
