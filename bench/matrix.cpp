// The matrix of a model against its own SQL: a model of N colours by M sizes is built, shown and spread,
// one unit a cell, and then the statements of the build alone are sent bare, in the same order and the
// same run. The question for each cell is required; what stands around it is what is measured.
//
//   build/release/bench/bench_matrix
#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "bench/support.h"
#include "forms/keys.h"
#include "goods_in/frm_entradas_wizard.h"
#include "host/testigo.h"
#include "matrix/frm_malla_modelos.h"
#include "service/door/entradas_salidas.h"

namespace {

using namespace tarvik;
using namespace tarvik::bench;

struct Trace final : host::Testigo {
  std::vector<std::string> sent;
  void Sentencia(std::string_view text) override { sent.emplace_back(text); }
};

void PonModelo(data::EngineConnection& base, int colours, int sizes) {
  data::Transaction whole(base);
  base.Run("INSERT INTO modelos (modelo, descrip) VALUES ('M', 'Modelo')", {});
  for (int colour = 0; colour < colours; ++colour) {
    base.Run("INSERT INTO colores (color, descrip, visualcolor) VALUES (?, ?, ?)",
             {"c" + std::to_string(colour), "Color " + std::to_string(colour), colour * 1000});
  }
  for (int size = 0; size < sizes; ++size) {
    base.Run("INSERT INTO tallas (talla, descrip) VALUES (?, ?)",
             {"t" + std::to_string(size), "Talla " + std::to_string(size)});
  }
  for (int colour = 0; colour < colours; ++colour) {
    for (int size = 0; size < sizes; ++size) {
      base.Run(
          "INSERT INTO prods (articulo, descrip, modelo, color, talla, unidad, precio1, costo_u, impuesto) "
          "VALUES (?, 'Prenda', 'M', ?, ?, 'PZA', 100, 60, 'IVA16')",
          {"M-" + std::to_string(colour) + "-" + std::to_string(size), "c" + std::to_string(colour),
           "t" + std::to_string(size)});
    }
  }
  whole.Commit();
}

struct Run {
  double build = 0, spread = 0;
  std::size_t statements = 0;
  double bare = 0;
};

Run Spread(int colours, int sizes) {
  Folder folder;
  Trace trace;
  forms::HeadlessPlatform platform;
  Run run;
  {
    auto host = Open(folder, platform, &trace);
    PonModelo(host->Conexion(), colours, sizes);
    EntradasSalidas door(*host);
    door.Ambiente = &host->Ambiente();
    door.NuevaEntrada();
    auto screen = std::dynamic_pointer_cast<frmEntradasWizard>(platform.Screens().back());
    frmEntradasWizard& f = *screen;
    const forms::Key enter = *forms::KeyNamed("Enter");
    Clock::time_point start;
    platform.on_modal = [&](forms::Form& form) {
      run.build = Seconds(start);
      auto& matrix = dynamic_cast<frmMallaModelos&>(form);
      run.statements = trace.sent.size();
      for (int row = 3; row <= matrix.fg2.Rows() - 2; ++row) {
        for (int col = 3; col <= matrix.fg2.Cols() - 2; ++col) matrix.fg2.TextMatrix(row, col, "1");
      }
      matrix.CalculaSuma();
      matrix.Press(enter);
      start = Clock::now();
    };
    f.Type(f.txtFields(campo::Concepto), "COM");
    f.Press(enter);
    f.Type(f.txtFields(campo::Articulo), "M");
    f.Press(enter);
    f.Type(f.txtFields(campo::Cantidad), std::to_string(colours * sizes));
    f.Press(enter);
    trace.sent.clear();
    start = Clock::now();
    f.Press(enter);
    run.spread = Seconds(start);
    if (f.CuantasPartidas() != colours * sizes) throw std::runtime_error("not every cell became a line");
    trace.sent.resize(run.statements);
  }
  BareBase base(folder);
  const auto start = Clock::now();
  for (const std::string& text : trace.sent) base.Send(text);
  run.bare = Seconds(start);
  benchmark::DoNotOptimize(base.BytesRead());
  return run;
}

void BuiltAndSpread(benchmark::State& state) {
  const int colours = static_cast<int>(state.range(0));
  const int sizes = static_cast<int>(state.range(1));
  for (auto _ : state) {
    const Run run = Spread(colours, sizes);
    state.SetIterationTime(run.build);
    state.counters["statements"] = static_cast<double>(run.statements);
    state.counters["bare_ms"] = run.bare * 1000;
    state.counters["ratio"] = run.build / run.bare;
    state.counters["lines/s"] = colours * sizes / run.spread;
  }
}
BENCHMARK(BuiltAndSpread)
    ->Args({3, 3})
    ->Args({10, 10})
    ->Args({40, 30})
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
