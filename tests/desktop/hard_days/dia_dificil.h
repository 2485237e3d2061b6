// A day on which something goes wrong at the desk: the program on its demonstration base, hands at its keys,
// and what may fail around it. Each story ends with words that an operator can use, and with everything that
// was stored still there.
#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <QFile>
#include <QPlainTextEdit>
#include <QPointer>
#include <csignal>
#include <filesystem>
#include <string>

#include "desktop/printing/preview_window.h"
#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {

namespace fs = std::filesystem;

inline void Graba(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  QFile file(QString::fromStdString(path.string()));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(text.data(), static_cast<qint64>(text.size()));
}

inline std::string Contenido(const fs::path& path) {
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

}  // namespace tarvik::desktop
