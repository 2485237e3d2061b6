// From a key to the picture that it makes: the real program on a screen of its own memory, a catalogue of
// 100,000 articles, 20,000 documents, and documents of 100, 1,000 and 4,999 lines. Prints, for each kind of
// key: median, 99th and worst time, what of it was the engine's own, and what was left: that part is to
// stay below one frame of 16 ms.
//
// A key comes in by the window system's queue, as from a keyboard: shortcuts, the window, the focused
// widget. Its time ends when the event loop has nothing more to do at once: the form has come to rest and
// every dirty region is painted into the window's store by the window's own request, nothing forced and
// nothing left out; a key after which nothing was painted is an error. What a search does later, after its
// pause or on the reader's thread, is told on a line of its own: how long the window's thread was held, and
// how long the operator waited.
//
//   build/release/bench/bench_desktop [lines ...]
#include <sqlite3.h>

#include <QApplication>
#include <QLineEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "data/engine.h"
#include "desktop/frame/main_window.h"
#include "desktop/lists/document_list.h"
#include "desktop/pickers/picker.h"
#include "desktop/pickers/search_popup.h"
#include "desktop/platform/qt_platform.h"
#include "desktop/program/program.h"
#include "desktop/screens/grid_view.h"
#include "desktop/screens/screen_view.h"
#include "desktop/style/theme.h"
#include "goods_in/frm_entradas_wizard.h"
#include "goods_out/frm_salidas_wizard.h"
#include "host/anfitrion.h"
#include "service/door/entradas_salidas.h"

namespace {

using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::time_point since) {
  return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

// What this thread had of the processor: other programs' turns are not in it.
double Worked() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

// What the engine took on this thread. Its calls don't nest, but for what it calls itself, unseen here.
thread_local double engine_ms = 0;
thread_local double engine_work = 0;

class InEngine {
 public:
  InEngine() = default;
  ~InEngine() {
    engine_ms += Milliseconds(since_);
    engine_work += Worked() - worked_;
  }
  InEngine(const InEngine&) = delete;
  InEngine& operator=(const InEngine&) = delete;

 private:
  Clock::time_point since_ = Clock::now();
  double worked_ = Worked();
};

}  // namespace

// The linker puts these in front of the engine's own.
extern "C" {
int __real_sqlite3_prepare_v3(sqlite3*, const char*, int, unsigned, sqlite3_stmt**, const char**);
int __wrap_sqlite3_prepare_v3(sqlite3* base, const char* text, int size, unsigned flags, sqlite3_stmt** made,
                              const char** tail) {
  const InEngine clock;
  return __real_sqlite3_prepare_v3(base, text, size, flags, made, tail);
}
int __real_sqlite3_step(sqlite3_stmt*);
int __wrap_sqlite3_step(sqlite3_stmt* statement) {
  const InEngine clock;
  return __real_sqlite3_step(statement);
}
int __real_sqlite3_reset(sqlite3_stmt*);
int __wrap_sqlite3_reset(sqlite3_stmt* statement) {
  const InEngine clock;
  return __real_sqlite3_reset(statement);
}
int __real_sqlite3_finalize(sqlite3_stmt*);
int __wrap_sqlite3_finalize(sqlite3_stmt* statement) {
  const InEngine clock;
  return __real_sqlite3_finalize(statement);
}
int __real_sqlite3_exec(sqlite3*, const char*, int (*)(void*, int, char**, char**), void*, char**);
int __wrap_sqlite3_exec(sqlite3* base, const char* text, int (*row)(void*, int, char**, char**), void* with,
                        char** error) {
  const InEngine clock;
  return __real_sqlite3_exec(base, text, row, with, error);
}
int __real_sqlite3_file_control(sqlite3*, const char*, int, void*);
int __wrap_sqlite3_file_control(sqlite3* base, const char* name, int what, void* with) {
  const InEngine clock;
  return __real_sqlite3_file_control(base, name, what, with);
}
}

namespace {

using namespace tarvik;
using namespace tarvik::desktop;

constexpr int kArticles = 100000;
constexpr int kDocuments = 20000;
constexpr int kKeys = 200;     // of the kinds that leave the document as it is
constexpr int kNewLines = 40;  // of the kind that makes a line
constexpr double kFrame = 16;

// Tells painting and the time that the window's thread is held.
class Application final : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override {
    const bool outermost = depth_ == 0;
    const bool paints = event->type() == QEvent::UpdateRequest && !painting_;
    const auto since = Clock::now();
    const double engine = engine_ms;
    const double worked = outermost ? Worked() : 0;
    ++depth_;
    if (paints) painting_ = true;
    const bool taken = QApplication::notify(receiver, event);
    --depth_;
    if (paints) {
      painting_ = false;
      paint_ms += Milliseconds(since);
      paint_engine_ms += engine_ms - engine;
    }
    if (event->type() == QEvent::Paint) ++paints_seen;
    if (outermost) {
      held_ms += Milliseconds(since);
      held_work += Worked() - worked;
    }
    return taken;
  }

  double paint_ms = 0;
  double paint_engine_ms = 0;
  double held_ms = 0;
  double held_work = 0;
  int paints_seen = 0;

 private:
  int depth_ = 0;
  bool painting_ = false;
};

Application& App() { return *static_cast<Application*>(QCoreApplication::instance()); }

struct Sample {
  double all = 0;
  double engine = 0;
  double paint = 0;
  double work = 0;  // of the processor, outside the engine
};

double Of(std::vector<double> values, double part) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const auto place = static_cast<std::size_t>(part * static_cast<double>(values.size()));
  return values[std::min(place, values.size() - 1)];
}

std::string box_shown;  // a box between the keys would be measured with them

int over = 0;  // kinds whose 99th is over a frame without the engine

void Headline() {
  std::printf("%-12s %-30s %5s %4s | %7s %7s %7s | %7s %7s | %7s %7s %7s | %7s %7s | %7s\n", "screen", "key",
              "lines", "n", "median", "99th", "worst", "engine", "99th", "rest", "99th", "worst", "cpu",
              "99th", "paint");
}

// Two kinds of what is left without the engine: by the clock, which other programs' turns lengthen, and
// what the processor worked on it.
void Report(const std::string& screen, const std::string& key, int lines,
            const std::vector<Sample>& samples) {
  std::vector<double> all, engine, rest, work, paint;
  for (const Sample& sample : samples) {
    all.push_back(sample.all);
    engine.push_back(sample.engine);
    rest.push_back(sample.all - sample.engine);
    work.push_back(sample.work);
    paint.push_back(sample.paint);
  }
  const bool slow = Of(rest, 0.99) > kFrame;
  over += slow;
  std::printf(
      "%-12s %-30s %5d %4zu | %7.2f %7.2f %7.2f | %7.2f %7.2f | %7.2f %7.2f %7.2f | %7.2f %7.2f | %7.2f%s\n",
      screen.c_str(), key.c_str(), lines, samples.size(), Of(all, 0.5), Of(all, 0.99), Of(all, 1),
      Of(engine, 0.5), Of(engine, 0.99), Of(rest, 0.5), Of(rest, 0.99), Of(rest, 1), Of(work, 0.5),
      Of(work, 0.99), Of(paint, 0.5), slow ? "  over a frame" : "");
  std::fflush(stdout);
}

// Lets the program do all that it can do at once, painting included.
void Settle() {
  for (int quiet = 0; quiet < 2;) {
    const double held = App().held_ms;
    QCoreApplication::processEvents();
    quiet = App().held_ms == held ? quiet + 1 : 0;
  }
}

// Lets it also do what stands behind a pause, or comes from the reader's thread.
void SettleFor(int milliseconds) {
  QTest::qWait(milliseconds);
  Settle();
}

void Send(Qt::Key key, const QString& text) {
  QWindow* window = QGuiApplication::focusWindow();
  if (window == nullptr) throw std::runtime_error("no window has the keyboard");
  QTest::simulateEvent(window, true, key, Qt::NoModifier, text, false);
}

void Release(Qt::Key key, const QString& text) {
  if (QWindow* window = QGuiApplication::focusWindow()) {
    QTest::simulateEvent(window, false, key, Qt::NoModifier, text, false);
  }
}

Qt::Key KeyOf(QChar letter) { return static_cast<Qt::Key>(letter.toUpper().unicode()); }

Sample Timed(Qt::Key key, const QString& text = {}) {
  Settle();
  const double engine = engine_ms;
  const double work = Worked() - engine_work;
  const double paint = App().paint_ms - App().paint_engine_ms;
  const int seen = App().paints_seen;
  const auto since = Clock::now();
  Send(key, text);
  Release(key, text);
  Clock::time_point done = Clock::now();
  int counted = seen;
  for (int quiet = 0; quiet < 2;) {
    const double held = App().held_ms;
    QCoreApplication::processEvents();
    const bool worked = App().held_ms != held;
    if (worked) done = Clock::now();
    counted = App().paints_seen;
    quiet = worked ? 0 : quiet + 1;
  }
  if (!box_shown.empty()) throw std::runtime_error("a box in the middle of the keys: " + box_shown);
  if (counted == seen) throw std::runtime_error("a key after which nothing was painted");
  return {std::chrono::duration<double, std::milli>(done - since).count(), engine_ms - engine,
          App().paint_ms - App().paint_engine_ms - paint, Worked() - engine_work - work};
}

void Press(Qt::Key key) {
  Send(key, {});
  Release(key, {});
  Settle();
}

void Type(const QString& text) {
  for (const QChar letter : text) {
    Send(KeyOf(letter), letter);
    Release(KeyOf(letter), letter);
  }
  Settle();
}

QString ArticleAt(int which) { return QStringLiteral("ART%1").arg(1000000 + which * 997 % kArticles); }

void Fill(data::EngineConnection& base) {
  base.Begin();
  base.Run(
      "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < ? - 1) "
      "INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto, costo_u) "
      "SELECT 'ART' || (1000000 + i), 'Pieza número ' || (1000000 + i) || ' de acero', 'PZA', 10 + i % 90, "
      "(SELECT impuesto FROM impuestos ORDER BY valor DESC LIMIT 1), 8 FROM n",
      {kArticles});
  base.Run(
      "INSERT INTO existenciaalmacen (almacen, articulo, existencia) "
      "SELECT 1, articulo, 1000000 FROM prods WHERE articulo LIKE 'ART1%'",
      {});
  base.Run(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?) "
      "INSERT INTO entradas (entrada, tipo_doc, f_emision, almacen, importe, estado, ocupado, observ) "
      "SELECT 1000000 + i, 'COM', '2026-11-20', 1, 10, 'CO', 0, 'Pedido ' || i FROM n",
      {kDocuments});
  base.Commit();
}

// A pending document with so many lines stored.
void Document(data::EngineConnection& base, bool goods_in, int number, int lines) {
  const std::string table = goods_in ? "entradas" : "salidas";
  const std::string key = goods_in ? "entrada" : "salida";
  base.Begin();
  base.Run("INSERT INTO " + table + " (" + key + (goods_in ? "" : ", folio") +
               ", tipo_doc, f_emision, almacen, importe, estado, ocupado, usuario) SELECT ?" +
               (goods_in ? "" : ", " + std::to_string(number)) + ", ?, '2026-11-20', 1, 0, 'PE', 0, 'ANA'",
           {number, goods_in ? "COM" : "VTA"});
  base.Run(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?) INSERT INTO " +
          std::string(goods_in ? "entpart" : "salpart") + " (id_" + key + ", " + key +
          ", articulo, cantidad, precio, observ) SELECT ? * 10000 + i, ?, 'ART' || (1000000 + i), 1 + i % 9, "
          "116, 'Pieza número ' || (1000000 + i) || ' de acero' FROM n",
      {lines, number, number});
  base.Commit();
}

class Desk {
 public:
  Desk() : theme_(Theme::Mode::Light) {
    theme_.ApplyTo(App());
    program_ = std::make_unique<Program>(
        theme_, ProgramOptions{QStringLiteral("sqlite:") + folder_.filePath(QStringLiteral("tienda.db")),
                               QStringLiteral("ANA"),
                               QStringLiteral("E1"),
                               folder_.path(),
                               {},
                               true});
    Fill(Base());
    program_->Platform().on_box = [](auto, const std::string& text, int) {
      box_shown = text;
      return true;
    };
    program_->Window().resize(1366, 768);
    program_->Window().show();
    program_->Window().activateWindow();
    if (!QTest::qWaitForWindowActive(&program_->Window())) throw std::runtime_error("no active window");
    SettleFor(500);
  }

  data::EngineConnection& Base() { return program_->Host().Conexion(); }

  template <class Wizard>
  void Keys(const std::string& screen, bool goods_in, int number, int lines) {
    Document(Base(), goods_in, number, lines - kNewLines);
    if (goods_in) {
      program_->Door().ModificaEntrada(number);
    } else {
      program_->Door().ModificaSalida(number);
    }
    SettleFor(200);
    auto& form = dynamic_cast<Wizard&>(*program_->Platform().Screens().back());
    if (form.CuantasPartidas() != lines - kNewLines)
      throw std::runtime_error("the document is not all there");
    LettersInArticle(screen, form, lines);
    EnterInArticle(screen, form, lines);
    EnterInPrice(screen, form, lines);
    if (form.CuantasPartidas() != lines) throw std::runtime_error("not every line was made");
    InGrid(screen, form, lines);
    form.Close();
    SettleFor(200);
    if (!program_->Platform().Screens().empty()) throw std::runtime_error("the screen did not close");
  }

  void Searches() {
    QSettings settings(folder_.filePath(QStringLiteral("ajustes.ini")), QSettings::IniFormat);
    Reader reader(program_->Host().Base());
    Office office{program_->Host(), theme_, settings, reader};
    {
      PickerDialog picker(SourceFor(Base(), "Articulos"));
      picker.Panel().Start({});
      picker.show();
      picker.activateWindow();
      if (!QTest::qWaitForWindowActive(&picker)) throw std::runtime_error("the picker is not in front");
      LettersIn("picker", picker.Panel().Filter(), 90, [] { return true; });
    }
    program_->Window().activateWindow();
    (void)QTest::qWaitForWindowActive(&program_->Window());
    program_->Door().NuevaEntrada();
    SettleFor(100);
    auto& form = dynamic_cast<frmEntradasWizard&>(*program_->Platform().Screens().back());
    auto& box = *dynamic_cast<forms::SearchBox*>(form.Find("MultiCombo1", 2));
    QWidget* anchor = program_->ViewOf(form)->WidgetOf(form.txtFields(campo::Articulo));
    const QPointer<QWidget> list = ShowSearchList(office, box, *anchor);
    SettleFor(100);
    LettersIn("search list", list->findChild<SearchPanel*>()->Filter(), 90, [] { return true; });
    list->close();
    SettleFor(50);
    form.Close();
    SettleFor(200);
  }

  void Filter() {
    DocumentList& list = program_->Window().List(ListKind::Entradas);
    program_->Window().ShowPage("Entradas");
    list.FilterField().setFocus();
    SettleFor(500);
    LettersIn("list", list.FilterField(), 0, [&] { return !list.Model().Busy(); });
  }

 private:
  template <class Wizard>
  static void Go(Wizard& form, forms::Control& control) {
    form.Enter(control);
    Settle();
    if (form.ActiveControl() != &control)
      throw std::runtime_error("the hand is not in " + control.FullName());
  }

  template <class Wizard>
  static void LettersInArticle(const std::string& screen, Wizard& form, int lines) {
    std::vector<Sample> samples;
    while (samples.size() < kKeys) {
      form.txtFields(campo::Articulo).Text("");
      Go(form, form.txtFields(campo::Articulo));
      for (const QChar letter : ArticleAt(static_cast<int>(samples.size()))) {
        samples.push_back(Timed(KeyOf(letter), letter));
      }
    }
    Report(screen, "letter in the article", lines, samples);
    form.txtFields(campo::Articulo).Text("");
  }

  template <class Wizard>
  static void EnterInArticle(const std::string& screen, Wizard& form, int lines) {
    std::vector<Sample> samples;
    for (int i = 0; i < kKeys / 2; ++i) {
      Go(form, form.txtFields(campo::Articulo));
      form.txtFields(campo::Articulo).Text("");
      Type(ArticleAt(i));
      samples.push_back(Timed(Qt::Key_Return));
      if (form.ActiveControl() != &form.txtFields(campo::Cantidad))
        throw std::runtime_error("Enter did not move on");
      if (form.txtFields(campo::Precio).Text().empty()) throw std::runtime_error("the article was not found");
    }
    Report(screen, "Enter in the article", lines, samples);
    Go(form, form.txtFields(campo::Articulo));
    form.txtFields(campo::Articulo).Text("");
    Settle();
  }

  template <class Wizard>
  static void EnterInPrice(const std::string& screen, Wizard& form, int lines) {
    std::vector<Sample> samples;
    Go(form, form.txtFields(campo::Articulo));
    for (int i = 0; i < kNewLines; ++i) {
      Type(ArticleAt(i + 1));
      Press(Qt::Key_Return);
      Type(QStringLiteral("3"));
      Press(Qt::Key_Return);
      samples.push_back(Timed(Qt::Key_Return));
    }
    Report(screen, "Enter in the price: a line", lines, samples);
  }

  template <class Wizard>
  void InGrid(const std::string& screen, Wizard& form, int lines) {
    Go(form, form.fg2);
    form.fg2.MoveTo(lines / 2, 1);
    std::vector<Sample> arrows, opening, digits, storing;
    for (int i = 0; i < kKeys; ++i) arrows.push_back(Timed(i % 60 < 30 ? Qt::Key_Down : Qt::Key_Up));
    Report(screen, "arrow in the lines", lines, arrows);
    for (int i = 0; i < kKeys / 4; ++i) {
      Go(form, form.fg2);  // goods-out goes back to the article when a cell is stored
      form.fg2.MoveTo(lines / 2 + i % 20, 1);
      opening.push_back(Timed(Qt::Key_4, QStringLiteral("4")));
      if (!form.txtEdit.Visible()) throw std::runtime_error("the cell was not opened");
      // Another figure than the cell holds: one that stays the same costs the engine nothing.
      const QChar figure = QLatin1Char(static_cast<char>('1' + i / 20));
      digits.push_back(Timed(Qt::Key_2, QStringLiteral("2")));
      digits.push_back(Timed(KeyOf(figure), figure));
      storing.push_back(Timed(Qt::Key_Return));
      if (form.txtEdit.Visible()) throw std::runtime_error("the cell was not stored");
    }
    Report(screen, "digit that opens a cell", lines, opening);
    Report(screen, "digit in an open cell", lines, digits);
    Report(screen, "Enter in a cell: stored", lines, storing);
  }

  // Each letter by itself, and then what it found.
  static void LettersIn(const std::string& where, QLineEdit& field, int pause,
                        const std::function<bool()>& rests) {
    std::vector<Sample> letters, rows;
    std::vector<double> waits;
    const QStringList words{QStringLiteral("acero"), QStringLiteral("1054321"), QStringLiteral("pieza 77"),
                            QStringLiteral("zzz"), QStringLiteral("1000")};
    while (letters.size() < kKeys / 2) {
      const QString& word = words[static_cast<int>(letters.size() / 5) % words.size()];
      field.clear();
      SettleFor(pause + 20);
      for (int i = 0; i < 200 && !rests(); ++i) SettleFor(10);
      for (const QChar letter : word) {
        const auto since = Clock::now();
        letters.push_back(Timed(KeyOf(letter), letter));
        const double held = App().held_ms;
        const double engine = engine_ms;
        const double work = App().held_work - engine_work;
        const double paint = App().paint_ms - App().paint_engine_ms;
        if (pause > 0) SettleFor(pause);
        while (!rests()) {
          QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
          if (Milliseconds(since) > 20000) throw std::runtime_error("a search that does not end");
        }
        Settle();
        rows.push_back({App().held_ms - held, engine_ms - engine,
                        App().paint_ms - App().paint_engine_ms - paint,
                        App().held_work - engine_work - work});
        waits.push_back(Milliseconds(since));
      }
    }
    Report(where, "letter", 0, letters);
    Report(where, "its rows: thread held", 0, rows);
    std::printf("%-12s %-30s %5d %4zu | %7.2f %7.2f %7.2f | from the key to its rows, %s\n", where.c_str(),
                "its rows: waited for", 0, waits.size(), Of(waits, 0.5), Of(waits, 0.99), Of(waits, 1),
                pause > 0 ? "the typing pause in it" : "read on a thread of their own");
    field.clear();
    SettleFor(pause + 100);
  }

  QTemporaryDir folder_;
  Theme theme_;
  std::unique_ptr<Program> program_;
};

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  Application application(argc, argv);
  std::vector<int> sizes;
  for (int i = 1; i < argc; ++i) sizes.push_back(std::atoi(argv[i]));
  if (sizes.empty()) sizes = {100, 1000, 4999};
  try {
    Desk desk;
    Headline();
    int number = 1;
    for (const int lines : sizes) {
      if (lines <= kNewLines || lines > 4999) throw std::runtime_error("lines: 41 to 4999");
      desk.Keys<frmEntradasWizard>("goods-in", true, number, lines);
      desk.Keys<frmSalidasWizard>("goods-out", false, number, lines);
      ++number;
    }
    desk.Searches();
    desk.Filter();
    std::printf("%d kinds over a frame of %.0f ms without the engine\n", over, kFrame);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
