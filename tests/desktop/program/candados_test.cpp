// The base's files are the engine's alone: no window of the program opens one of them, so that the
// process keeps its locks, and nothing is saved over them.
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFileDialog>
#include <QFileSystemModel>
#include <QLabel>
#include <QMenu>
#include <QProcess>
#include <QSettings>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>
#include <sstream>

#include "desktop/boxes/file_dialog.h"
#include "desktop/printing/preview_window.h"
#include "desktop/printing/print_dialog.h"
#include "desktop/screens/goods_out_view.h"
#include "desktop/windows/help.h"
#include "desktop/windows/hooks_window.h"
#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

namespace fs = std::filesystem;

// Every opening of a file of a folder, by whomever.
class Aperturas {
 public:
  explicit Aperturas(const std::string& folder) : descriptor_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    EXPECT_GE(::inotify_add_watch(descriptor_, folder.c_str(), IN_OPEN), 0);
  }
  ~Aperturas() { ::close(descriptor_); }
  Aperturas(const Aperturas&) = delete;
  Aperturas& operator=(const Aperturas&) = delete;

  // Names of files that were opened since the last time, those that begin so.
  std::set<std::string> Desde(const std::string& beginning) const {
    std::set<std::string> names;
    alignas(inotify_event) char events[1 << 14];
    for (ssize_t size = 0; (size = ::read(descriptor_, events, sizeof events)) > 0;) {
      for (ssize_t at = 0; at < size;) {
        const auto& event = *reinterpret_cast<const inotify_event*>(events + at);
        const std::string name = event.len > 0 ? event.name : "";
        if (name.starts_with(beginning)) names.insert(name);
        at += static_cast<ssize_t>(sizeof(inotify_event)) + event.len;
      }
    }
    return names;
  }

 private:
  int descriptor_;
};

class Candados : public Escritorio {
 protected:
  Candados() {
    // Where an ordinary dialog looks by itself: the base is there too.
    qputenv("HOME", folder.path().toUtf8());
    program.reset();
    {
      QSettings settings(folder.filePath(QStringLiteral("escritorio.ini")), QSettings::IniFormat);
      settings.setValue(QStringLiteral("impresion/carpeta"), folder.path());
    }
    Start();
    QTest::qWait(200);  // the lists have been read
  }
  ~Candados() override { qputenv("HOME", home_); }

  std::string Base() { return folder.filePath(QStringLiteral("tienda.db")).toStdString(); }

  // The locks that this process holds as long as it has the base open, as the system lists them. The
  // list is read three times: while others take and leave locks a line may slip by, or come twice.
  std::set<std::string> Tomados() {
    std::set<std::string> held;
    for (int i = 0; i < 3; ++i) LeeTomados(held);
    return held;
  }
  void LeeTomados(std::set<std::string>& held) {
    std::ifstream list("/proc/locks");
    for (std::string line; std::getline(list, line);) {
      std::istringstream words(line);
      const std::vector<std::string> word{std::istream_iterator<std::string>(words), {}};
      if (word.size() < 8 || word[4] != std::to_string(::getpid())) continue;
      for (const auto& [end, first] : {std::pair{"", "1073741826"}, {"-shm", "128"}}) {
        struct stat facts {};
        if (::stat((Base() + end).c_str(), &facts) != 0) continue;
        if (word[5].ends_with(":" + std::to_string(facts.st_ino)) && word[6] == first)
          held.insert(word[3] + " " + word[5] + " " + word[6]);
      }
    }
  }

  // Runs `shows`, which waits on a dialog; while it stands, everything has time to be read, then it is
  // handed to `leaves`.
  static bool Dialogo(
      const std::function<void()>& shows,
      const std::function<void(QDialog&)>& leaves = [](QDialog& d) { d.reject(); }) {
    bool seen = false;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (!dialog || seen) return;
      seen = true;
      QTest::qWait(700);
      leaves(*dialog);
    });
    look.start(20);
    shows();
    return seen;
  }
  // Leaves, once the list of the dialog has the base's file in it.
  std::function<void(QDialog&)> ConLaBaseALaVista() {
    return [this](QDialog& dialog) {
      auto* model = dialog.findChild<QFileSystemModel*>();
      EXPECT_TRUE(model);
      const QModelIndex base = model->index(QString::fromStdString(Base()));
      EXPECT_TRUE(base.isValid());
      EXPECT_FALSE(model->type(base).isEmpty());
      EXPECT_FALSE(base.data(Qt::DecorationRole).value<QIcon>().isNull());
      dialog.reject();
    };
  }
  // Nothing of the base was opened, and the process holds what it held.
  void ExpectIntact(const std::string& after) {
    EXPECT_EQ(aperturas->Desde("tienda.db"), std::set<std::string>{}) << after;
    EXPECT_EQ(Tomados(), held) << after;
  }
  void Watch() {
    held = Tomados();
    ASSERT_EQ(held.size(), 2U) << "the base's own lock and that of its shared index";
    aperturas.emplace(folder.path().toStdString());
  }
  // A goods-in with one line, posted.
  void Posts(bool on_paper) {
    program->Window().activateWindow();
    QTest::qWait(50);
    frmEntradasWizard& form = New();
    form.Check2.Value(on_paper ? 1 : 0);
    Type(QStringLiteral("COM"));
    Press(Qt::Key_Return);
    Press(Qt::Key_Return);
    Line(QStringLiteral("MAR-16"), QStringLiteral("3"));
    Press(Qt::Key_F5);
    QTest::qWait(50);
  }
  static PreviewWindow* Preview() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      auto* preview = qobject_cast<PreviewWindow*>(window);
      if (preview && preview->isVisible()) return preview;
    }
    return nullptr;
  }
  // What another program on the base finds: posted documents, and movements of goods-in.
  QStringList OtroPrograma() {
    QProcess other;
    other.start(QStringLiteral(TARVIK_HIJO), {folder.path(), QStringLiteral("cuenta")});
    EXPECT_TRUE(other.waitForFinished(30000));
    EXPECT_EQ(other.exitCode(), 0) << other.readAllStandardError().toStdString();
    return QString::fromUtf8(other.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  }

  QByteArray home_ = qgetenv("HOME");
  std::set<std::string> held;
  std::optional<Aperturas> aperturas;
};

// Proves that the watcher sees an opening: without it the other stories could not fail.
TEST_F(Candados, WhoeverClosesTheFileLosesTheLocks) {
  Watch();
  ::close(::open((Base() + "-shm").c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_EQ(Tomados().size(), 1U);
  EXPECT_EQ(aperturas->Desde("tienda.db"), std::set<std::string>{"tienda.db-shm"});
  ::close(::open(Base().c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_TRUE(Tomados().empty());
}

TEST_F(Candados, AnOrdinaryDialogLosesThem) {
  Watch();
  QFileDialog dialog(&program->Window(), QString(), folder.path());
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  ASSERT_TRUE(Dialogo([&] { dialog.exec(); }));
  EXPECT_FALSE(aperturas->Desde("tienda.db").empty());
  EXPECT_LT(Tomados().size(), 2U);
}

TEST_F(Candados, ChoosingAFileOrAFolderOpensNone) {
  Watch();
  QWidget* window = &program->Window();
  const QString all = QStringLiteral("Todo (*)");
  ASSERT_TRUE(Dialogo(
      [&] {
        EXPECT_EQ(AskWhereToSave(window, QStringLiteral("Guardar"), folder.filePath(QStringLiteral("x.pdf")),
                                 all, QStringLiteral("pdf")),
                  QString());
      },
      ConLaBaseALaVista()));
  ExpectIntact("where to save");
  ASSERT_TRUE(
      Dialogo([&] { EXPECT_EQ(AskForFile(window, QStringLiteral("Abrir"), folder.path(), all), QString()); },
              ConLaBaseALaVista()));
  ExpectIntact("which file");
  ASSERT_TRUE(
      Dialogo([&] { EXPECT_EQ(AskForFolder(window, QStringLiteral("Carpeta"), folder.path()), QString()); }));
  ExpectIntact("which folder");
}

TEST_F(Candados, WhatIsChosenComesBack) {
  QString path;
  ASSERT_TRUE(Dialogo(
      [&] {
        path = AskWhereToSave(&program->Window(), QStringLiteral("Guardar"),
                              folder.filePath(QStringLiteral("x")), QStringLiteral("Documento PDF (*.pdf)"),
                              QStringLiteral("pdf"));
      },
      [](QDialog& dialog) { dialog.accept(); }));
  EXPECT_EQ(path, folder.filePath(QStringLiteral("x.pdf")));
  // Nothing is renamed or removed by way of it.
  ASSERT_TRUE(Dialogo(
      [&] {
        (void)AskForFile(&program->Window(), QStringLiteral("Abrir"), folder.path(),
                         QStringLiteral("Todo (*)"));
      },
      [](QDialog& dialog) {
        for (const QAction* action : dialog.findChildren<QAction*>()) {
          const QString name = action->objectName();
          if (name.contains(QStringLiteral("delete")) || name.contains(QStringLiteral("rename"))) {
            EXPECT_FALSE(action->isEnabled()) << name.toStdString();
          }
        }
        EXPECT_TRUE(qobject_cast<QFileDialog*>(&dialog)->testOption(QFileDialog::ReadOnly));
        dialog.reject();
      }));
}

TEST_F(Candados, NoWindowOfTheProgramOpensAFileOfTheBase) {
  frmEntradasWizard& form = New();
  Type(QStringLiteral("COM"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  QTest::qWait(200);
  Watch();
  ASSERT_TRUE(Dialogo([] { Press(Qt::Key_F2); }));  // the articles
  ExpectIntact("a picker");
  QTest::keyClick(program->ViewOf(form), Qt::Key_F1);
  QTest::qWait(300);
  QWidget* help = nullptr;
  QWidget* hooks = nullptr;
  emit program->Window().HelpRequested();
  emit program->Window().HooksRequested();
  QTest::qWait(300);
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (!window->isVisible()) continue;
    if (qobject_cast<HelpWindow*>(window)) help = window;
    if (qobject_cast<HooksWindow*>(window)) hooks = window;
  }
  ASSERT_TRUE(help && hooks);
  help->close();
  hooks->close();
  ExpectIntact("help and routines");
  ASSERT_TRUE(Dialogo([&] {
    PrintDialog({QStringLiteral("Laser"), QStringLiteral("Tickets")}, QString(), &program->Window()).exec();
  }));
  ExpectIntact("the printer");
  for (const char* page : {"Entradas", "SalidasPendientes", "Existencias"}) {
    EXPECT_TRUE(program->Window().ShowPage(page));
    QTest::qWait(150);
  }
  ExpectIntact("the lists");
  // Menus, one after the other.
  for (QMenu* menu : program->Window().findChildren<QMenu*>()) {
    menu->popup(QPoint(10, 10));
    QTest::qWait(30);
    menu->close();
  }
  ExpectIntact("the menus");
}

TEST_F(Candados, ADocumentPostedAfterThePdfIsThereWhenAnotherProgramCameAndWent) {
  Posts(true);
  PreviewWindow* preview = Preview();
  ASSERT_TRUE(preview);
  Watch();
  ASSERT_TRUE(Dialogo([&] { QTest::keyClick(preview, Qt::Key_S, Qt::ControlModifier); },
                      [](QDialog& dialog) { dialog.accept(); }));
  EXPECT_TRUE(QFileInfo::exists(folder.filePath(QStringLiteral("entrada-1.pdf"))));
  ExpectIntact("the PDF");
  QTest::keyClick(preview, Qt::Key_Escape);
  QTest::qWait(50);

  const QStringList first = OtroPrograma();
  ASSERT_EQ(first.size(), 2);
  EXPECT_TRUE(fs::exists(Base() + "-wal"));
  Posts(false);
  const QStringList second = OtroPrograma();
  ASSERT_EQ(second.size(), 2);
  EXPECT_EQ(second[0].toInt(), first[0].toInt() + 1);
  EXPECT_EQ(second[1].toInt(), first[1].toInt() + 1);
}

TEST_F(Candados, NothingIsSavedOverTheBase) {
  Posts(true);
  PreviewWindow* preview = Preview();
  ASSERT_TRUE(preview);
  fs::create_symlink(Base() + "-wal", folder.filePath(QStringLiteral("enlace.pdf")).toStdString());
  Watch();
  const auto size = fs::file_size(Base());
  for (const char* name :
       {"tienda.db", "tienda.db-wal", "tienda.db-shm", "tienda.db-journal", "tienda.db.pdf", "enlace.pdf"}) {
    QStringList read;
    EXPECT_TRUE(
        Dialogo([&] { EXPECT_FALSE(preview->SavePdfTo(folder.filePath(QString::fromLatin1(name)))) << name; },
                [&](QDialog& box) {
                  for (const QLabel* label : box.findChildren<QLabel*>()) read << label->text();
                  box.reject();
                }));
    EXPECT_TRUE(read.join(QLatin1Char('\n')).contains(QStringLiteral("es de la base de datos"))) << name;
    ExpectIntact(name);
  }
  EXPECT_EQ(fs::file_size(Base()), size);
  EXPECT_FALSE(fs::exists(Base() + "-journal"));
  EXPECT_FALSE(fs::exists(Base() + ".pdf"));
  preview->close();
}

TEST_F(Candados, APageShowsNoFileOfTheBaseAsAPicture) {
  Watch();
  const QString picture = QStringLiteral("<p>uno</p><img src=\"%1\"><img src=\"file://%1-shm\">")
                              .arg(QString::fromStdString(Base()));
  {
    QSettings settings(folder.filePath(QStringLiteral("otros.ini")), QSettings::IniFormat);
    PreviewWindow preview(settings, picture, QStringLiteral("entrada"), 7,
                          host::ArchivosDeLaBase("sqlite:" + Base()));
    preview.show();
    QTest::qWait(100);
  }
  ExpectIntact("a preview");
  program->Door().NuevaSalida();
  Settle();
  auto* view = qobject_cast<GoodsOutView*>(program->ViewOf(*program->Platform().Screens().back()));
  ASSERT_TRUE(view);
  std::ofstream(folder.filePath(QStringLiteral("hoja.html")).toStdString()) << picture.toStdString();
  view->ShowSheet(folder.filePath(QStringLiteral("hoja.html")).toStdString());
  QTest::qWait(50);
  view->ShowSheet(Base());
  QTest::qWait(50);
  ExpectIntact("a sheet");
}

}  // namespace
}  // namespace tarvik::desktop
