// Days on which something goes wrong at the desk: a page pasted into a field, a key that sticks, a
// window closed in the middle of an edit, two hands on one document, a base that is taken away, paper,
// templates, routines and disks that fail. Each ends with words that an operator can use, and with
// everything that was stored still there.
#include <sys/resource.h>
#include <unistd.h>

#include <QCheckBox>
#include <QElapsedTimer>
#include <QFile>
#include <QPdfWriter>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPrinter>
#include <QSettings>
#include <QTextEdit>
#include <csignal>
#include <filesystem>

#include "data/error.h"
#include "desktop/lists/document_list.h"
#include "desktop/printing/printing.h"
#include "desktop/windows/hooks_window.h"
#include "python/ganchos.h"
#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

namespace fs = std::filesystem;

// A minute of a keyboard that repeats 33 times a second.
constexpr int kHeld = 2000;
constexpr int kMinute = 60000;

void Graba(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  QFile file(QString::fromStdString(path.string()));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(text.data(), static_cast<qint64>(text.size()));
}

std::string Contenido(const fs::path& path) {
  QFile file(QString::fromStdString(path.string()));
  return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

// Until its end the program has the rights of a user who owns nothing, whoever runs the tests.
class SinPermiso {
 public:
  SinPermiso() {
    if (::geteuid() == 0) was_root_ = ::seteuid(65534) == 0;
  }
  ~SinPermiso() {
    if (was_root_) {
      EXPECT_EQ(::seteuid(0), 0);
    }
  }
  SinPermiso(const SinPermiso&) = delete;
  SinPermiso& operator=(const SinPermiso&) = delete;

 private:
  bool was_root_ = false;
};

// Until its end no file grows beyond a size: a disk that fills up in the middle of a file.
class DiscoPequeno {
 public:
  explicit DiscoPequeno(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
    EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &before_), 0);
    const rlimit small{bytes, before_.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  }
  ~DiscoPequeno() {
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &before_), 0);
    std::signal(SIGXFSZ, signal_);
  }
  DiscoPequeno(const DiscoPequeno&) = delete;
  DiscoPequeno& operator=(const DiscoPequeno&) = delete;

 private:
  rlimit before_{};
  void (*signal_)(int);
};

// An operator before the real boxes: reads each one and answers it with the next key; the last key
// answers all that follow.
class Lector {
 public:
  explicit Lector(QList<Qt::Key> answers) : answers_(std::move(answers)) {
    QObject::connect(&look_, &QTimer::timeout, &look_, [this] { Look(); });
    look_.start(1);
  }
  std::function<void(QWidget&)> before;  // what else the hand does while the first box is up
  QStringList read;

 private:
  void Look() {
    const QPointer<QWidget> box = QApplication::activeModalWidget();
    if (!box || !box->isVisible()) return;
    if (!box->isActiveWindow()) return box->activateWindow();
    QString words;
    for (const QLabel* label : box->findChildren<QLabel*>()) words += label->text() + QLatin1Char('\n');
    for (const QPlainTextEdit* page : box->findChildren<QPlainTextEdit*>()) words += page->toPlainText();
    read += words;
    if (before) std::exchange(before, nullptr)(*box);
    if (!box || !box->isVisible()) return;
    const Qt::Key key = answers_.size() > 1 ? answers_.takeFirst() : answers_.first();
    desktop::Press(*box, key);
  }
  QTimer look_;
  QList<Qt::Key> answers_;
};

class DiaDificil : public Escritorio {
 protected:
  void Article(int which, const char* quantity) {
    Line(QString::fromStdString(Escritorio::Article(which)), QString::fromUtf8(quantity));
    Settle();
  }
  // One key kept down: a press, and then the keyboard's own repetitions. They go wherever the focus
  // is by then, and the program comes to rest between them as it does at a desk.
  static void Hold(Qt::Key key, int times, const QString& text = {}) {
    for (int i = 0; i < times; ++i) {
      QWidget* hand = QApplication::focusWidget();
      if (hand == nullptr) hand = QApplication::activeWindow();
      ASSERT_NE(hand, nullptr) << "after " << i;
      QTest::simulateEvent(hand, true, key, Qt::NoModifier, text, i > 0);
      if (i % 8 == 7) Settle();
    }
    if (QWidget* hand = QApplication::focusWidget()) {
      QTest::simulateEvent(hand, false, key, Qt::NoModifier, text, false);
    }
    Settle();
  }
  static void Paste(const QString& text) {
    QApplication::clipboard()->setText(text);
    Press(Qt::Key_V, Qt::ControlModifier);
    Settle();
  }
  // A page as it comes out of a letter or a program: many lines, quotes, marks, signs.
  static QString Page() {
    QString page;
    for (int line = 1; line <= 60; ++line) {
      page += QStringLiteral("%1. Martillo d'acero 16\"; uña curva -- \"oferta\" /* 5 %% */ ñandú €\r\n")
                  .arg(line);
    }
    return page;
  }
  bool Said(const std::string& words) const {
    return std::any_of(boxes.begin(), boxes.end(),
                       [&](const std::string& box) { return box.find(words) != std::string::npos; });
  }
  std::string AllSaid() const {
    std::string all;
    for (const std::string& box : boxes) all += "[" + box + "]\n";
    return all;
  }
  // What the key line says of lines and of what is stored.
  std::string Stored(DocumentWizard& form) {
    for (const QLabel* label : program->ViewOf(form)->findChildren<QLabel*>()) {
      if (label->accessibleName() == QStringLiteral("Renglones y estado de lo guardado"))
        return label->text().toStdString();
    }
    return "(no está)";
  }
  fs::path File(const std::string& name) const { return fs::path(folder.path().toStdString()) / name; }
  fs::path DayLog() const {
    const auto today = QDate::currentDate().toString(QStringLiteral("ddMMyyyy")).toStdString();
    return File("web/TarvikError" + today + ".Log");
  }
  std::unique_ptr<Program> Start(const char* user, const char* station) {
    return std::make_unique<Program>(
        theme, ProgramOptions{
                   Address(), QString::fromUtf8(user), QString::fromUtf8(station), folder.path(), {}, true});
  }
  // The same desk after a routine was put into its folder.
  void StartWithRoutine(const char* file, const std::string& text) {
    program.reset();
    Graba(File(std::string("ganchos/") + file), text);
    program = Start("ANA", "E1");
    program->Platform().on_box = [this](forms::BoxKind kind, const std::string& said, int) {
      boxes.push_back(said);
      return kind != forms::BoxKind::Question || yes;
    };
    program->Window().resize(1366, 768);
    program->Window().show();
    program->Window().activateWindow();
    (void)QTest::qWaitForWindowActive(&program->Window());
  }
  static QList<PreviewWindow*> Previews() {
    QList<PreviewWindow*> found;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (auto* window = qobject_cast<PreviewWindow*>(widget)) found += window;
    }
    return found;
  }
};

// ---- a page pasted into a field ----

TEST_F(DiaDificil, APagePastedForAnArticleIsRefusedAndTheNextLineIsMade) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  Paste(Page());
  EXPECT_FALSE(form.txtFields(4).Text().empty());
  Press(Qt::Key_Return);
  Type(QStringLiteral("2"));
  Press(Qt::Key_Return);
  Type(QStringLiteral("10"));
  Press(Qt::Key_Return);
  Settle();
  EXPECT_TRUE(Said("El artículo indicado no existe.")) << AllSaid();
  EXPECT_EQ(form.ActiveControl(), &form.txtFields(4));
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
  Press(Qt::Key_A, Qt::ControlModifier);
  Press(Qt::Key_Delete);
  Article(1, "4");
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "2");
}

TEST_F(DiaDificil, APagePastedForAQuantityIsRefusedWithItsReason) {
  frmEntradasWizard& form = Receiving();
  Type(QString::fromStdString(Escritorio::Article(0)));
  Press(Qt::Key_Return);
  Paste(Page().remove(0, 3));  // no number at its head
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  Settle();
  ASSERT_EQ(boxes.size(), 1u) << AllSaid();
  EXPECT_EQ(boxes[0], "La cantidad debe ser mayor que cero.");
  EXPECT_EQ(form.ActiveControl(), &form.txtFields(5));
  EXPECT_TRUE(Widget(form, 5)->property("refused").toBool());
  EXPECT_EQ(One("SELECT COUNT(*) FROM entradas"), "0");
  Type(QStringLiteral("6"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  EXPECT_EQ(One("SELECT cantidad FROM entpart"), "6");
}

TEST_F(DiaDificil, APagePastedIntoACellIsDroppedWithEscape) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  form.fg2.MoveTo(1, 1);
  form.Enter(form.fg2);
  Settle();
  Press(Qt::Key_9);
  Settle();
  Paste(Page());
  Press(Qt::Key_Escape);
  Settle();
  EXPECT_EQ(form.fg2.TextMatrix(1, 1), "3");
  EXPECT_EQ(One("SELECT cantidad FROM entpart"), "3");
  EXPECT_TRUE(boxes.empty()) << AllSaid();
}

TEST_F(DiaDificil, APagePastedIntoTheNotesIsKeptWordForWord) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  form.Enter(form.RichTextBox2);
  Settle();
  const QString page = Page();
  Paste(page);
  form.Enter(form.txtFields(4));
  Settle();
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(boxes.size(), 1u) << AllSaid();  // the question
  EXPECT_EQ(One("SELECT estado FROM entradas"), "CO");
  std::string kept = One("SELECT observ FROM entradas");
  std::string wanted = page.toStdString();
  std::erase(kept, '\r');
  std::erase(wanted, '\r');
  EXPECT_EQ(kept, wanted);
}

// The remarks of a document that another program of the suite wrote end their lines by two characters.
TEST_F(DiaDificil, ALetterGoesIntoTheNotesWhereTheCaretStands) {
  frmEntradasWizard& form = Receiving();
  const auto* notes = qobject_cast<QTextEdit*>(program->ViewOf(form)->WidgetOf(form.RichTextBox2));
  for (const char* text : {"uno\ndos\ntres", "uno\r\ndos\r\ntres"}) {
    form.RichTextBox2.Text(text);
    form.Enter(form.RichTextBox2);
    Settle();
    Press(Qt::Key_End);
    Press(Qt::Key_Up);
    Settle();
    Type(QStringLiteral("X"));
    Settle();
    EXPECT_EQ(notes->toPlainText().toStdString(), "uno\ndosX\ntres");
    std::string held = form.RichTextBox2.Text();
    std::erase(held, '\r');
    EXPECT_EQ(held, "uno\ndosX\ntres");
    form.Enter(form.txtFields(4));
    Settle();
  }
}

TEST_F(DiaDificil, WhatIsSelectedByKeyIsWhatTheNextLetterReplaces) {
  frmEntradasWizard& form = Receiving();
  Type(QStringLiteral("MAR-16"));
  Press(Qt::Key_Left, Qt::ShiftModifier);
  Press(Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_EQ(Widget(form, 4)->selectedText(), QStringLiteral("16"));
  Type(QStringLiteral("2"));
  EXPECT_EQ(Widget(form, 4)->text(), QStringLiteral("MAR-2"));
  EXPECT_EQ(form.txtFields(4).Text(), "MAR-2");
}

// ---- a key that sticks ----

TEST_F(DiaDificil, ALetterHeldForAMinuteIsAllThereAndGoesAgain) {
  frmEntradasWizard& form = Receiving();
  QElapsedTimer clock;
  clock.start();
  Hold(Qt::Key_A, kHeld, QStringLiteral("a"));
  EXPECT_LT(clock.restart(), kMinute);
  EXPECT_EQ(form.txtFields(4).Text().size(), static_cast<std::size_t>(kHeld));
  EXPECT_EQ(Widget(form, 4)->text().size(), kHeld);
  Hold(Qt::Key_Backspace, kHeld);
  EXPECT_LT(clock.elapsed(), kMinute);
  EXPECT_EQ(form.txtFields(4).Text(), "");
  Article(0, "3");
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
  EXPECT_TRUE(boxes.empty()) << AllSaid();
}

TEST_F(DiaDificil, EnterHeldInTheArticleStoresNothingThatWasNotAsked) {
  frmEntradasWizard& form = Receiving();
  Type(QString::fromStdString(Escritorio::Article(0)));
  QElapsedTimer clock;
  clock.start();
  Hold(Qt::Key_Return, kHeld);
  EXPECT_LT(clock.elapsed(), kMinute);
  ASSERT_FALSE(boxes.empty());
  for (const std::string& box : boxes) ASSERT_EQ(box, "La cantidad debe ser mayor que cero.");
  EXPECT_EQ(One("SELECT COUNT(*) FROM entradas"), "0");
  form.Enter(form.txtFields(5));
  Settle();
  Type(QStringLiteral("3"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
}

TEST_F(DiaDificil, EnterHeldInThePriceMakesOneLine) {
  Receiving();
  Type(QString::fromStdString(Escritorio::Article(0)));
  Press(Qt::Key_Return);
  Type(QStringLiteral("3"));
  Press(Qt::Key_Return);
  Hold(Qt::Key_Return, kHeld);
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
  ASSERT_FALSE(boxes.empty());
  for (const std::string& box : boxes) ASSERT_EQ(box, "Indique la clave del artículo.");
}

TEST_F(DiaDificil, AFinishKeyHeldOverItsQuestionPostsOnce) {
  Receiving();
  Article(0, "3");
  Article(1, "4");
  program->Platform().on_box = nullptr;
  Lector reader({Qt::Key_Return});
  reader.before = [](QWidget&) { Hold(Qt::Key_F5, kHeld); };
  Press(Qt::Key_F5);
  Settle();
  ASSERT_EQ(reader.read.size(), 1) << reader.read.join('|').toStdString();
  EXPECT_TRUE(reader.read[0].contains(QStringLiteral("¿Desea afectar la entrada?")));
  EXPECT_EQ(One("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv"), "2");
  EXPECT_TRUE(program->Platform().Screens().empty());
}

TEST_F(DiaDificil, AFinishKeyHeldOnIntoTheListPostsOnce) {
  Receiving();
  Article(0, "3");
  QElapsedTimer clock;
  clock.start();
  Hold(Qt::Key_F5, kHeld);
  EXPECT_LT(clock.elapsed(), kMinute);
  EXPECT_EQ(boxes.size(), 1u) << AllSaid();
  EXPECT_EQ(One("SELECT COUNT(*) FROM entradas"), "1");
  EXPECT_EQ(One("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv"), "1");
  EXPECT_TRUE(program->Platform().Screens().empty());
}

TEST_F(DiaDificil, AnArrowHeldWalksTheGridAndBackWithItsCellInSight) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  form.fg2.MoveTo(1, 1);
  form.Enter(form.fg2);
  Settle();
  auto* grid = qobject_cast<GridView*>(program->ViewOf(form)->WidgetOf(form.fg2));
  QElapsedTimer clock;
  clock.start();
  Hold(Qt::Key_Down, kHeld);
  EXPECT_LT(clock.restart(), kMinute);
  EXPECT_EQ(form.fg2.Row(), kHeld + 1);
  EXPECT_TRUE(grid->viewport()->rect().contains(grid->CurrentCell()));
  Hold(Qt::Key_Up, kHeld + 5);
  EXPECT_LT(clock.elapsed(), kMinute);
  EXPECT_EQ(form.fg2.Row(), 1);
  EXPECT_TRUE(grid->viewport()->rect().contains(grid->CurrentCell()));
  EXPECT_EQ(One("SELECT cantidad FROM entpart"), "3");
  EXPECT_TRUE(boxes.empty()) << AllSaid();
}

// ---- the window closed in the middle ----

TEST_F(DiaDificil, ClosingTheProgramsWindowWithAnEditOpenKeepsWhatWasStored) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  form.fg2.MoveTo(1, 1);
  form.Enter(form.fg2);
  Settle();
  Press(Qt::Key_9);
  Settle();
  ASSERT_TRUE(form.txtEdit.Visible());
  program->Window().close();
  QTest::qWait(100);
  EXPECT_FALSE(program->Window().isVisible());
  EXPECT_TRUE(program->Platform().Screens().empty());
  EXPECT_EQ(One("SELECT cantidad FROM entpart"), "3");
  EXPECT_EQ(One("SELECT estado FROM entradas"), "PE");
  EXPECT_EQ(One("SELECT ocupado FROM entradas"), "0");
  EXPECT_EQ(One("SELECT COUNT(*) FROM tenencias"), "0");
  EXPECT_TRUE(boxes.empty()) << AllSaid();
}

// ---- two hands on one document ----

TEST_F(DiaDificil, TheSameHandOpensItsDocumentOnce) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  program->Door().ModificaEntrada(form.Entrada);
  Settle();
  ASSERT_EQ(boxes.size(), 1u) << AllSaid();
  EXPECT_EQ(boxes[0], "Usted mismo tiene ocupada esta entrada.");
  EXPECT_EQ(program->Platform().Screens().size(), 1u);

  // The same user at another desk.
  const auto second = Start("ANA", "E2");
  std::vector<std::string> told;
  second->Platform().on_box = [&](forms::BoxKind, const std::string& text, int) {
    told.push_back(text);
    return true;
  };
  second->Door().ModificaEntrada(form.Entrada);
  Settle();
  EXPECT_EQ(told, std::vector<std::string>{"Usted mismo tiene ocupada esta entrada."});
  EXPECT_TRUE(second->Platform().Screens().empty());
  EXPECT_EQ(One("SELECT ocupado FROM entradas"), "1");
}

TEST_F(DiaDificil, AnotherHandReadsTheDocumentAndChangesItOnlyWhenItIsFree) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  const int number = form.Entrada;
  const auto second = Start("BETO", "E2");
  std::vector<std::string> told;
  second->Platform().on_box = [&](forms::BoxKind, const std::string& text, int) {
    told.push_back(text);
    return true;
  };
  second->Door().ModificaEntrada(number);
  Settle();
  EXPECT_EQ(told, std::vector<std::string>{"La entrada está ocupada por el usuario ANA. Intente más tarde."});
  EXPECT_TRUE(second->Platform().Screens().empty());

  second->Window().show();
  second->Door().ConsultaEntrada(number);
  Settle();
  ASSERT_EQ(second->Platform().Screens().size(), 1u);
  EXPECT_EQ(dynamic_cast<frmEntradasWizard&>(*second->Platform().Screens().back()).Modo, "CONSULTA");
  second->Platform().Screens().back()->Close();
  QTest::qWait(50);
  EXPECT_TRUE(second->Platform().Screens().empty());
  EXPECT_EQ(One("SELECT ocupado FROM entradas"), "1") << "who only reads frees nothing";

  // The first hand goes on and leaves; now the second one has it, and the first is told so.
  program->Window().activateWindow();
  (void)QTest::qWaitForWindowActive(&program->Window());
  form.Enter(form.txtFields(4));
  Settle();
  Article(1, "4");
  form.Close();
  QTest::qWait(50);
  told.clear();
  second->Door().ModificaEntrada(number);
  Settle();
  EXPECT_TRUE(told.empty());
  ASSERT_EQ(second->Platform().Screens().size(), 1u);
  EXPECT_EQ(dynamic_cast<frmEntradasWizard&>(*second->Platform().Screens().back()).CuantasPartidas(), 2);
  boxes.clear();
  program->Door().ModificaEntrada(number);
  Settle();
  EXPECT_EQ(boxes.size(), 1u) << AllSaid();
  EXPECT_TRUE(program->Platform().Screens().empty());
  // The message goes by who made the document; who has it now stands beside it, for the list.
  const auto held = program->Host().Tenencias();
  ASSERT_EQ(held.size(), 1u);
  EXPECT_EQ(held[0].usuario, "BETO");
  EXPECT_EQ(held[0].estacion, "E2");
}

// ---- the base's file ----

TEST_F(DiaDificil, ABaseTakenAwayUnderAnOpenScreenIsToldAndPutBackLosesNothing) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  fs::rename(File("tienda.db"), File("tienda.aparte"));
  Line(QStringLiteral("MAR-16"), QStringLiteral("4"));
  Settle();
  ASSERT_FALSE(boxes.empty());
  EXPECT_TRUE(Said("El archivo de la base fue movido o borrado: " + File("tienda.db").string())) << AllSaid();
  EXPECT_TRUE(form.Open());
  EXPECT_NE(Contenido(DayLog()).find("movido o borrado"), std::string::npos);

  fs::rename(File("tienda.aparte"), File("tienda.db"));
  boxes.clear();
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
  form.Enter(form.txtFields(4));
  Settle();
  Article(1, "5");
  EXPECT_TRUE(boxes.empty()) << AllSaid();
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "2");
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(One("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv"), "2");
}

TEST_F(DiaDificil, EveryBoxHasWordsThoughTheBaseThatKeepsThemIsGone) {
  Receiving();
  Article(0, "3");
  program->Platform().on_box = nullptr;
  Lector reader({Qt::Key_Return});
  fs::rename(File("tienda.db"), File("tienda.aparte"));
  Type(QStringLiteral("MAR-16"));
  for (const char* typed : {"4", "10", ""}) {
    Press(Qt::Key_Return);
    program->Window().activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
    Type(QString::fromUtf8(typed));
  }
  fs::rename(File("tienda.aparte"), File("tienda.db"));
  ASSERT_FALSE(reader.read.isEmpty());
  for (const QString& words : reader.read) {
    EXPECT_FALSE(words.trimmed().isEmpty()) << reader.read.join('|').toStdString();
  }
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
}

TEST_F(DiaDificil, AListWhoseBaseWasTakenAwaySaysWhatIsSafeAndReadsAgain) {
  Receiving();
  Article(0, "3");
  program->Platform().Screens().back()->Close();
  QTest::qWait(50);
  auto& list = program->Window().List(ListKind::Entradas);
  ASSERT_TRUE(QTest::qWaitFor([&] { return list.Model().rowCount() == 1 && !list.Model().Busy(); }));
  const auto reason = [&]() -> QString {
    for (const QLabel* label : list.findChildren<QLabel*>()) {
      if (label->property("role") == "reason" && label->isVisible()) return label->text();
    }
    return {};
  };
  fs::rename(File("tienda.db"), File("tienda.aparte"));
  QTest::keyClick(&list.FilterField(), Qt::Key_F5);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !reason().isEmpty(); }));
  EXPECT_TRUE(reason().contains(QStringLiteral("El archivo de la base fue movido o borrado")));
  EXPECT_TRUE(reason().contains(QStringLiteral("Los documentos están como estaban. Pulse F5")));
  EXPECT_EQ(list.Model().rowCount(), 1) << "what was read stays to be seen";
  fs::rename(File("tienda.aparte"), File("tienda.db"));
  QTest::keyClick(&list.FilterField(), Qt::Key_F5);
  EXPECT_TRUE(QTest::qWaitFor([&] { return reason().isEmpty() && list.Model().rowCount() == 1; }));
  EXPECT_TRUE(boxes.empty()) << AllSaid();
}

TEST_F(DiaDificil, ABaseThatMayNoLongerBeReadServesWhoHasItOpenAndRefusesTheNextWithItsReason) {
  Receiving();
  Article(0, "3");
  fs::permissions(folder.path().toStdString(), fs::perms(0755));
  fs::permissions(File("tienda.db"), fs::perms::none);
  {
    const SinPermiso nobody;
    Article(1, "4");
    EXPECT_TRUE(boxes.empty()) << AllSaid();
    std::string why;
    try {
      (void)Start("BETO", "E2");
    } catch (const data::Error& error) {
      why = error.what();
    }
    EXPECT_NE(why.find("No se puede abrir la base"), std::string::npos) << why;
    EXPECT_NE(why.find("tienda.db: no hay permiso"), std::string::npos) << why;
  }
  fs::permissions(File("tienda.db"), fs::perms(0644));
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "2");
}

TEST_F(DiaDificil, ABaseOnAFullDiskIsToldAndTheScreenDoesNotCallItsLineStored) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  EXPECT_EQ(Stored(form), "1 renglón · guardado");
  auto& base = program->Host().Conexion();
  base.Run("PRAGMA max_page_count = 1", {});  // the engine takes it for the size that the file has
  int tries = 0;
  while (boxes.empty() && ++tries < 400) Article(1, "4");
  ASSERT_TRUE(Said("El disco está lleno")) << AllSaid();
  const int stored = std::stoi(One("SELECT COUNT(*) FROM entpart"));
  EXPECT_EQ(stored, tries) << "the first one, and each but the last of the others";
  EXPECT_NE(Stored(form), std::to_string(stored + 1) + " renglones · guardado");
  EXPECT_TRUE(form.Open());
  base.Run("PRAGMA max_page_count = 1000000", {});
  boxes.clear();
  Article(2, "5");
  EXPECT_TRUE(boxes.empty()) << AllSaid();
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), std::to_string(stored + 1));
}

// ---- paper ----

QString ManyPages() {
  QString html;
  for (int line = 0; line < 400; ++line) html += QStringLiteral("<p>Renglón %1 de la entrada</p>").arg(line);
  return html;
}

// Takes its first page and jams.
class ImpresoraAtascada : public QPdfWriter {
 public:
  using QPdfWriter::QPdfWriter;
  bool newPage() override { return ++pages_ < 2 && QPdfWriter::newPage(); }

 private:
  int pages_ = 0;
};

TEST_F(DiaDificil, APrinterThatJamsSaysHowManyPagesCameOut) {
  PrintedPage page(ManyPages(), 7);
  ASSERT_GT(page.Pages(), 3);
  ImpresoraAtascada printer(folder.filePath(QStringLiteral("atasco.pdf")));
  QString why;
  EXPECT_FALSE(page.Paint(printer, &why));
  EXPECT_EQ(why, QStringLiteral("Se imprimieron 2 de %1 páginas.").arg(page.Pages()));
}

TEST_F(DiaDificil, AFullDiskInTheMiddleOfAPdfKeepsTheOldFileAndSaysSo) {
  const fs::path file = File("entrada-7.pdf");
  Graba(file, "la impresión de ayer");
  QSettings settings(folder.filePath(QStringLiteral("ajustes.ini")), QSettings::IniFormat);
  PreviewWindow window(settings, ManyPages(), QStringLiteral("entrada"), 7);
  Lector reader({Qt::Key_Return});
  {
    const DiscoPequeno disk(4096);
    EXPECT_FALSE(window.SavePdfTo(QString::fromStdString(file.string())));
  }
  ASSERT_EQ(reader.read.size(), 1);
  EXPECT_TRUE(reader.read[0].contains(QStringLiteral("No se pudo guardar el PDF.")));
  EXPECT_TRUE(reader.read[0].contains(QStringLiteral("El documento está guardado y nada se ha perdido.")));
  EXPECT_EQ(Contenido(file), "la impresión de ayer");
  int left = 0;
  for (const auto& entry : fs::directory_iterator(file.parent_path())) {
    left += entry.path().filename().string().starts_with("entrada-7.pdf");
  }
  EXPECT_EQ(left, 1) << "no half file beside it";
}

TEST_F(DiaDificil, APrinterThatWritesToAFullDiskHasNotPrinted) {
  PrintedPage page(ManyPages(), 7);
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(folder.filePath(QStringLiteral("a-archivo.pdf")));
  QString why;
  bool printed = true;
  {
    const DiscoPequeno disk(4096);
    printed = page.Paint(printer, &why);
  }
  EXPECT_FALSE(printed);
  EXPECT_FALSE(why.isEmpty());
}

TEST_F(DiaDificil, ATemplateWithATagLeftOpenCostsNoDocument) {
  Graba(File("formatos/entrada.mustache"), "<p>{{numero}}</p>{{#partidas}}<p>{{articulo}}</p>");
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  form.Check2.Value(1);
  Press(Qt::Key_F5);
  Settle();
  QTest::qWait(20);
  ASSERT_EQ(boxes.size(), 2u) << AllSaid();  // the question, and the report
  EXPECT_NE(boxes[1].find("La plantilla " + File("formatos/entrada.mustache").string() + " tiene un error: "),
            std::string::npos)
      << boxes[1];
  EXPECT_NE(boxes[1].find("partidas"), std::string::npos) << boxes[1];
  EXPECT_TRUE(Previews().isEmpty());
  EXPECT_TRUE(program->Platform().Screens().empty());
  EXPECT_EQ(One("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv"), "1");
  EXPECT_EQ(One("SELECT ocupado FROM entradas"), "0");
}

// ---- routines of the business ----

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
  EXPECT_EQ(form.ActiveControl(), &form.txtFields(4));
  routines.reset();
}

// ---- the logs ----

class SinBitacora : public DiaDificil {
 protected:
  // A line whose posting fails at one step, where the day's log has to be written.
  void FailingLine() {
    program->Host().Gancho(
        "ENTRADA005", [](forms::Form&, host::AmbienteLocal&) { throw data::Error("Falla del negocio"); });
    Article(1, "4");
  }
  void ExpectToldAndStillThere(frmEntradasWizard& form) {
    ASSERT_EQ(boxes.size(), 2u) << AllSaid();
    EXPECT_NE(boxes[0].find("Falla del negocio"), std::string::npos) << boxes[0];
    EXPECT_NE(boxes[1].find("No se puede"), std::string::npos) << boxes[1];
    EXPECT_NE(boxes[1].find(DayLog().filename().string()), std::string::npos) << boxes[1];
    EXPECT_TRUE(form.Open());
    EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
    EXPECT_EQ(form.txtFields(4).Text(), Escritorio::Article(1)) << "what was typed is still there";
    program->Host().Gancho("ENTRADA005", {});
    boxes.clear();
    form.Enter(form.txtFields(6));
    Settle();
    Press(Qt::Key_Return);
    Settle();
    EXPECT_TRUE(boxes.empty()) << AllSaid();
    EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "2");
  }
};

TEST_F(SinBitacora, AFullDiskUnderTheDaysLogAndTheProgramsOwnIsTold) {
  fs::create_directories(File("web"));
  fs::create_symlink("/dev/full", DayLog());
  fs::create_symlink("/dev/full", File("programa.log"));
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  FailingLine();
  ExpectToldAndStillThere(form);
}

TEST_F(SinBitacora, AFolderThatMayOnlyBeReadIsTold) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  fs::permissions(folder.path().toStdString(), fs::perms(0555));
  {
    const SinPermiso nobody;
    FailingLine();
  }
  fs::permissions(folder.path().toStdString(), fs::perms(0755));
  EXPECT_FALSE(fs::exists(File("programa.log")));
  ExpectToldAndStillThere(form);
}

TEST_F(SinBitacora, TheBoxDoesNotSayNotedWhenNothingCouldBeNoted) {
  fs::create_symlink("/dev/full", File("programa.log"));
  frmEntradasWizard& form = Receiving();
  // An event without a trap of its own.
  program->Host().Gancho("ENTRADA008",
                         [](forms::Form&, host::AmbienteLocal&) { throw data::Error("Falla del negocio"); });
  program->Platform().on_box = nullptr;
  Lector reader({Qt::Key_Return});
  form.Enter(form.txtFields(5));
  Settle();
  program->Host().Gancho("ENTRADA008", {});
  ASSERT_EQ(reader.read.size(), 1) << reader.read.join('|').toStdString();
  EXPECT_TRUE(reader.read[0].contains(QStringLiteral("Falla del negocio")));
  EXPECT_FALSE(reader.read[0].contains(QStringLiteral("el error quedó anotado")))
      << reader.read[0].toStdString();
}

}  // namespace
}  // namespace tarvik::desktop
