// The scanner in the whole program: real keys into real windows, whatever stands in front.
#include <QKeyEvent>
#include <QListView>
#include <QWindow>

#include "desktop/boxes/boxes.h"
#include "desktop/program/scanning.h"
#include "desktop/scanner/tape_panel.h"
#include "desktop/screens/document_view.h"
#include "goods_out/frm_salidas_wizard.h"
#include "host/lecturas.h"
#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

class Tape : public Escritorio {
 protected:
  Tape() {
    program->Host().Ambiente().Parametro("Lector", 1);
    program->Scanner().sound = [this](int count) { tones += count; };
  }
  ~Tape() override { BoxesMustStand() = std::chrono::milliseconds(0); }

  void Key(const QString& text, Qt::Key key = Qt::Key_unknown) {
    now += 3;
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent event(
          type,
          key == Qt::Key_unknown ? static_cast<int>(text.at(0).toUpper().unicode()) : static_cast<int>(key),
          Qt::NoModifier, text);
      event.setTimestamp(now);
      QWindow* window = QGuiApplication::focusWindow();
      QCoreApplication::sendEvent(window ? window : program->Window().windowHandle(), &event);
    }
  }
  // As a scanner sends it, to whatever window has the focus.
  void Scan(const std::string& code) {
    now += 500;
    for (const QChar sign : QString::fromStdString(code)) Key(QString(sign));
    Key(QStringLiteral("\r"), Qt::Key_Return);
  }
  frmSalidasWizard& Selling() {
    program->Door().NuevaSalida();
    Settle();
    auto& form = dynamic_cast<frmSalidasWizard&>(*program->Platform().Screens().back());
    form.Check2.Value(0);
    Type(QStringLiteral("VTA"));
    Press(Qt::Key_Return);
    return form;
  }
  TapePanel& TapeOf(forms::Form& form) { return *qobject_cast<DocumentView*>(program->ViewOf(form))->Tape(); }
  static QString Row(const TapePanel& tape, int row) {
    return tape.List().model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
  }
  std::string Lines(const char* table = "entpart") {
    return One(std::string("SELECT COUNT(*) FROM ") + table);
  }

  quint64 now = 100000;
  int tones = 0;
};

TEST_F(Tape, AScanIsALineWhereverTheHandIs) {
  frmEntradasWizard& form = Receiving();
  form.Enter(form.RichTextBox2);
  Scan(Article(0) + "");
  Settle();
  EXPECT_EQ(Lines(), "1");
  EXPECT_EQ(form.RichTextBox2.Text(), "");
  TapePanel& tape = TapeOf(form);
  EXPECT_EQ(Row(tape, 0), QString::fromStdString(Article(0)) + " · renglón 1, +1");
  EXPECT_EQ(tones, 1);
}

TEST_F(Tape, AnUnknownCodeIsBoundInPlaceByTheKeyboardAlone) {
  frmEntradasWizard& form = Receiving();
  Scan("99999999");
  Settle();
  EXPECT_EQ(tones, 3);
  EXPECT_TRUE(boxes.empty());
  TapePanel& tape = TapeOf(form);
  EXPECT_EQ(tape.Title(), "Cinta del lector · 1 sin artículo");
  Press(Qt::Key_T, Qt::ControlModifier);
  ASSERT_TRUE(tape.List().hasFocus());
  Press(Qt::Key_Return);
  ASSERT_TRUE(tape.Article().hasFocus());
  Type(QStringLiteral("NADA"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  EXPECT_EQ(tape.Told(), "No existe el artículo \"NADA\"");
  Press(Qt::Key_Return);
  Type(QString::fromStdString(Article(0)));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  Settle();
  EXPECT_EQ(Lines(), "1");
  EXPECT_EQ(One("SELECT articulo FROM clavesadd WHERE clave = '99999999'"), Article(0));
  EXPECT_EQ(tape.Title(), "Cinta del lector");
}

TEST_F(Tape, DroppedTakenBackAndLeftByTheKeyboard) {
  frmEntradasWizard& form = Receiving();
  Scan("99999999");
  Scan(Article(0));
  Settle();
  TapePanel& tape = TapeOf(form);
  Press(Qt::Key_T, Qt::ControlModifier);
  Press(Qt::Key_Delete);
  ASSERT_TRUE(tape.Reason().hasFocus());
  Type(QStringLiteral("rota"));
  Press(Qt::Key_Return);
  EXPECT_EQ(One("SELECT motivo FROM lecturas WHERE estado = 'descartada'"), "rota");
  tape.List().setCurrentIndex(tape.List().model()->index(0, 0));
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Lines(), "0");
  EXPECT_EQ(One("SELECT COUNT(*) FROM lecturas WHERE estado = 'deshecha'"), "1");
  tape.List().setFocus();
  Press(Qt::Key_Escape);
  EXPECT_EQ(form.ActiveControl(), &form.txtFields(campo::Articulo));
}

TEST_F(Tape, NoScanAnswersABoxAndAllComeInOrderAfterIt) {
  BoxesMustStand() = std::chrono::milliseconds(400);
  program->Platform().on_box = nullptr;  // real boxes
  frmEntradasWizard& form = Receiving();
  const std::string one = Article(0);
  const std::string two = Article(1);
  bool stood = false;
  WhenModal([&](QWidget& box) {
    Scan(one);
    Scan("88888888");
    Scan(two);
    QTest::qWait(60);
    stood = box.isVisible();
    QTest::qWait(500);
    QTest::keyClick(box.focusWidget(), Qt::Key_Return);
  });
  form.Press(*forms::KeyNamed("F9"));  // no article: a box
  Settle();
  EXPECT_TRUE(stood);
  EXPECT_EQ(One("SELECT COUNT(*) FROM lecturas"), "3");
  const auto lines = program->Host().Conexion().Run("SELECT articulo FROM entpart ORDER BY id_entrada", {});
  ASSERT_EQ(lines.rows.size(), 2U);
  EXPECT_EQ(data::ToText(lines.rows[0][0]), one);
  EXPECT_EQ(data::ToText(lines.rows[1][0]), two);
}

TEST_F(Tape, AScanAfterF5PostsNothing) {
  BoxesMustStand() = std::chrono::milliseconds(400);
  frmEntradasWizard& form = Receiving();
  Scan(Article(0));
  program->Platform().on_box = nullptr;
  WhenModal([&](QWidget& box) {
    Scan(Article(1));
    QTest::qWait(60);
    EXPECT_TRUE(box.isVisible());
    box.close();
  });
  form.Press(*forms::KeyNamed("F5"));
  Settle();
  EXPECT_EQ(One("SELECT estado FROM entradas"), "PE");
  EXPECT_EQ(Lines(), "2") << "the second one came in after the box";
}

TEST_F(Tape, WhileACellIsEditedAScanWaits) {
  frmEntradasWizard& form = Receiving();
  Scan(Article(0));
  form.ClickCell(form.fg2, 1, 1);
  form.Press(forms::KeyFor(U'5'));
  Scan(Article(1));
  EXPECT_EQ(form.txtEdit.Text(), "5");
  Settle();
  EXPECT_EQ(Row(TapeOf(form), 0), QString::fromStdString(Article(1)) + " · en espera");
  form.Press(*forms::KeyNamed("Enter"));
  Settle();
  EXPECT_EQ(One("SELECT cantidad FROM entpart ORDER BY id_entrada LIMIT 1"), "5");
  EXPECT_EQ(Lines(), "2");
}

// Fifty a second with boxes in between, on both screens: nothing lost, nothing twice, in order.
TEST_F(Tape, AMinuteOfScanningLosesNothingOnEitherScreen) {
  std::vector<std::string> known;
  for (int i = 0; known.size() < 8; ++i) {
    if (Article(i).size() >= ScanFilter::kLeast) known.push_back(Article(i));
  }
  for (const bool goods_in : {true, false}) {
    program->Host().Conexion().Run("DELETE FROM lecturas", {});
    forms::Form& form = goods_in ? static_cast<forms::Form&>(Receiving()) : Selling();
    int shown = 0;
    int sent = 0;
    std::vector<std::string> order;
    const auto next = [&] {
      const std::string code =
          sent % 10 == 9 ? "00000000" + std::to_string(sent) : known[static_cast<std::size_t>(sent % 8)];
      order.push_back(code);
      ++sent;
      Scan(code);
    };
    // Each box is met by scans of its own.
    program->Platform().on_box = [&](forms::BoxKind kind, const std::string&, int) {
      if (++shown <= 20) {
        next();
        next();
      }
      return kind != forms::BoxKind::Question || yes;
    };
    for (int turn = 0; turn < 3000; ++turn) {
      next();
      if (turn % 150 == 0) form.Press(*forms::KeyNamed("F9"));
    }
    Settle();
    const auto tape = program->Host().Conexion().Run("SELECT texto, estado FROM lecturas ORDER BY id", {});
    ASSERT_EQ(tape.rows.size(), order.size());
    int lines = 0;
    for (std::size_t i = 0; i < order.size(); ++i) {
      EXPECT_EQ(data::ToText(tape.rows[i][0]), order[i]) << i;
      const std::string state = data::ToText(tape.rows[i][1]);
      EXPECT_EQ(state, order[i].starts_with("00000000") ? "sin articulo" : "renglon") << i << ' ' << order[i];
      lines += state == "renglon";
    }
    EXPECT_GT(shown, 10);
    EXPECT_EQ(One(std::string("SELECT SUM(cantidad) FROM ") + (goods_in ? "entpart" : "salpart")),
              One("SELECT SUM(cantidad) FROM lecturas WHERE estado = 'renglon'"));
    form.Unload();
    Settle();
  }
}

TEST_F(Tape, TheTrayShowsWhatWaitsOfAllDocuments) {
  frmEntradasWizard& form = Receiving();
  Scan(Article(0));
  Scan("77777777");
  form.Unload();
  Settle();
  TapePanel& tray = program->Scanner().Tray().Tray();
  tray.Refresh();
  ASSERT_TRUE(QTest::qWaitFor([&] { return tray.List().model()->rowCount() == 1; }));
  EXPECT_EQ(Row(tray, 0), "77777777 · la entrada 1 · sin artículo");
  EXPECT_EQ(tray.Title(), "Lecturas por atender · 1 sin artículo");
}

TEST_F(Tape, WithAListInFrontAScannerTypes) {
  program->Window().ShowPage("Entradas");
  Settle();
  Scan("12345678");
  QTest::qWait(60);
  EXPECT_EQ(One("SELECT COUNT(*) FROM lecturas"), "0");
}

TEST_F(Tape, WhatThisStationHasSetIsKept) {
  ScannerChoices choices = program->Scanner().Choices();
  EXPECT_TRUE(choices.recognition.on);
  choices.recognition = {true, QStringLiteral("#"), QStringLiteral("$")};
  choices.sound = false;
  program->Scanner().Choose(choices);
  Start();
  EXPECT_EQ(program->Scanner().Choices().recognition.prefix, "#");
  EXPECT_EQ(program->Scanner().Filter().Settings().suffix, "$");
  EXPECT_FALSE(program->Scanner().Choices().sound);
}

TEST_F(Tape, NothingMovesWhenItAsks) {
  frmEntradasWizard& form = Receiving();
  Scan("99999999");
  Settle();
  TapePanel& tape = TapeOf(form);
  Press(Qt::Key_T, Qt::ControlModifier);
  const QRect list = tape.List().geometry();
  Press(Qt::Key_Return);
  EXPECT_EQ(tape.List().geometry(), list);
  Press(Qt::Key_Escape);
  Press(Qt::Key_Delete);
  EXPECT_EQ(tape.List().geometry(), list);
}

}  // namespace
}  // namespace tarvik::desktop
