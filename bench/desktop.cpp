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
#include <QApplication>
#include <QLineEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/desktop/keys.h"
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

using namespace tarvik;
using namespace tarvik::bench;
using namespace tarvik::desktop;

constexpr int kArticles = 100000;
constexpr int kDocuments = 20000;
constexpr int kKeys = 200;     // of the kinds that leave the document as it is
constexpr int kNewLines = 40;  // of the kind that makes a line

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
