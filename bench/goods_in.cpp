// Goods-in against its own SQL: a document of N lines entered by keyboard and posted on a base in a
// file, and then the same statements sent bare, in the same order and the same run. Prints, for each
// N: lines a second, the ratio to the bare statements, and the cost of the last hundred lines
// against the first hundred.
//
//   build/release/bench/bench_goods_in
#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "bench/support.h"
#include "forms/keys.h"
#include "goods_in/frm_entradas_wizard.h"
#include "service/door/entradas_salidas.h"

namespace {

using namespace tarvik;
using namespace tarvik::bench;

// What went to the engine, in order: the module's statements as texts, the host's by what they do.
struct Trace final : host::Testigo {
  std::vector<std::string> sent;
  void Sentencia(std::string_view text) override { sent.emplace_back(text); }
  void Servicio(std::string_view name) override {
    if (name == "NuevoId" || name == "ExisteClave" || name == "Afecta")
      sent.emplace_back("*" + std::string(name));
  }
};

struct Run {
  double entering = 0, posting = 0, first = 0, last = 0;  // seconds; of the first and last hundred lines
};

Run ByKeyboard(int lines, Trace& trace) {
  Folder folder;
  forms::HeadlessPlatform platform;
  platform.on_box = [](auto, const auto&, int) { return true; };
  auto host = Open(folder, platform, &trace);
  const auto articles =
      host->Conexion().Run("SELECT articulo FROM prods WHERE precio1 > 0 ORDER BY articulo", {}).rows;
  EntradasSalidas door(*host);
  door.Ambiente = &host->Ambiente();
  trace.sent.clear();
  Run run;
  auto start = Clock::now();
  door.NuevaEntrada();
  auto screen = std::dynamic_pointer_cast<frmEntradasWizard>(platform.Screens().back());
  frmEntradasWizard& f = *screen;
  const forms::Key enter = *forms::KeyNamed("Enter");
  f.Type(f.txtFields(campo::Concepto), "COM");
  f.Press(enter);
  auto hundred = Clock::now();
  for (int line = 0; line < lines; ++line) {
    if (line == 100) run.first = Seconds(hundred);
    if (line == lines - 100) hundred = Clock::now();
    f.Type(f.txtFields(campo::Articulo),
           data::ToText(articles[static_cast<std::size_t>(line) % articles.size()][0]));
    f.Press(enter);
    f.Type(f.txtFields(campo::Cantidad), "3");
    f.Press(enter);
    f.Press(enter);
  }
  run.last = Seconds(hundred);
  if (lines == 100) run.first = run.last;
  run.entering = Seconds(start);
  if (f.CuantasPartidas() != lines) throw std::runtime_error("not every line was made");
  f.Check2.Value(0);
  start = Clock::now();
  f.Enter(f.txtFields(campo::Concepto));
  f.Press(*forms::KeyNamed("F5"));
  run.posting = Seconds(start);
  if (f.Open()) throw std::runtime_error("the document was not posted");
  return run;
}

// The same statements with nothing around them: prepared, stepped to the end, finalised.
double Bare(const Trace& trace) {
  Folder folder;
  forms::HeadlessPlatform platform;
  Open(folder, platform, nullptr).reset();
  BareBase base(folder);
  auto send = [&](const std::string& text) { base.Send(text); };
  const auto start = Clock::now();
  for (const std::string& text : trace.sent) {
    if (text == "*NuevoId") {
      send(
          "INSERT INTO series (nombre, valor) VALUES ('bare', 1) ON CONFLICT (nombre) DO UPDATE SET valor = "
          "series.valor + 1 RETURNING valor");
    } else if (text == "*ExisteClave") {
      send("SELECT 1 FROM prods WHERE articulo = 'X' LIMIT 1");
    } else if (text == "*Afecta") {
      send("BEGIN IMMEDIATE");
      send(
          "INSERT INTO movsinv (operacion, movimiento, articulo, cantidad, precio, id_entrada, claveadd, "
          "f_movim, "
          "cerrado) VALUES ('EN', 1, 'X', 3, 116, 1, '', '2024-03-05', 0)");
      send(
          "INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, 'X', 3) ON CONFLICT "
          "(almacen, "
          "articulo) DO UPDATE SET existencia = existencia + 3");
      send("UPDATE prods SET ALM1 = COALESCE(ALM1, 0) + 3 WHERE articulo = 'X'");
      send("COMMIT");
    } else {
      send(text);
    }
  }
  benchmark::DoNotOptimize(base.BytesRead());
  return Seconds(start);
}

void EnteredAndPosted(benchmark::State& state) {
  const int lines = static_cast<int>(state.range(0));
  for (auto _ : state) {
    Trace trace;
    const Run run = ByKeyboard(lines, trace);
    const double bare = Bare(trace);
    const double whole = run.entering + run.posting;
    state.SetIterationTime(whole);
    state.counters["entered/s"] = lines / run.entering;
    state.counters["posted/s"] = lines / run.posting;
    state.counters["bare/s"] = lines / bare;
    state.counters["ratio"] = whole / bare;
    state.counters["last/first"] = run.last / run.first;
  }
}
BENCHMARK(EnteredAndPosted)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(4999)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
