// Posting in parallel on a server: so many processes post movements of the same 20 articles as a station
// does, and the books must agree at the end. Prints movements a second.
//   bench_posting ADDRESS [PROCESSES [MOVEMENTS]]
// The base is prepared here if it is empty. Ends with 1 if a movement was refused or the books disagree.
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "data/error.h"
#include "forms/headless_platform.h"
#include "host/anfitrion.h"

namespace {

using tarvik::data::ToNumber;

namespace fs = std::filesystem;

constexpr int kArticles = 20;
constexpr int kMostStations = 150;  // what the test's server takes

tarvik::host::Opciones Station(const std::string& address, const std::string& name,
                               tarvik::forms::HeadlessPlatform& platform) {
  tarvik::host::Opciones options;
  options.base = address;
  options.usuario = "ANA";
  options.estacion = name;
  options.ruta = (fs::temp_directory_path() / ("bench-posting-" + std::to_string(::getpid()))).string();
  options.plataforma = &platform;
  return options;
}

// Older commits, against which this is built too, take a flag before the amount.
template <class Movement>
void Affect(Movement& movement) {
  double amount = 0;
  if constexpr (requires { movement.Afecta(amount); }) {
    movement.Afecta(amount);
  } else {
    movement.Afecta(false, amount);
  }
}

std::string Article(int number) { return "A-" + std::to_string(number); }

void Prepare(const std::string& address) {
  tarvik::forms::HeadlessPlatform platform;
  tarvik::host::Anfitrion host(Station(address, "E0", platform));
  for (int i = 0; i < kArticles; ++i) {
    host.Conexion().Run("INSERT INTO prods (articulo, costo_u) VALUES (?, 7) ON CONFLICT DO NOTHING",
                        {Article(i)});
  }
}

// One station: waits for the starting shot, then posts.
int Post(const std::string& address, int station, int movements, int ready, int shot) {
  try {
    tarvik::forms::HeadlessPlatform platform;
    tarvik::host::Anfitrion host(Station(address, "E" + std::to_string(station), platform));
    char sign = 'r';
    if (::write(ready, &sign, 1) != 1 || ::read(shot, &sign, 1) != 0) return 1;
    for (int i = 0; i < movements; ++i) {
      const auto movement = host.NuevoMovimiento();
      movement->Ambiente(host.Ambiente());
      movement->EntSal(i % 2 == 0 ? "E" : "S");
      movement->Fecha(tarvik::data::Date{2024, 3, 5});
      movement->Almacen(1);
      movement->Movimiento(station);
      movement->Documento(std::to_string(station));
      movement->Operacion(i % 2 == 0 ? "EN" : "SA");
      movement->Articulo(Article((i + station) % kArticles));
      movement->Cantidad(i % 2 == 0 ? 2 : 1);
      movement->Precio(10);
      const int line = station * 1000000 + i + 1;
      if (i % 2 == 0) {
        movement->IdEntrada(line);
      } else {
        movement->IdSalida(line);
      }
      Affect(*movement);
    }
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "E%d: %s\n", station, error.what());
    return 1;
  }
}

// In a process of its own: nothing of a session is shared.
template <class Act>
pid_t Apart(Act act) {
  const pid_t child = ::fork();
  if (child != 0) return child;
  const int result = act();
  std::error_code ignored;
  fs::remove_all(fs::temp_directory_path() / ("bench-posting-" + std::to_string(::getpid())), ignored);
  ::_exit(result);
}

bool Succeeded(pid_t child) {
  int status = 0;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

int Check(const std::string& address, double expected) {
  const auto db = tarvik::data::OpenBase(address)->Connect();
  const auto one = [&](const char* text) { return ToNumber(db->Run(text, {}).rows.at(0).at(0)); };
  const double posted = one("SELECT COUNT(*) FROM movsinv");
  const double apart = one(
      "SELECT COUNT(*) FROM (SELECT articulo, SUM(CASE ent_sal WHEN 'E' THEN cantidad ELSE -cantidad END) AS "
      "n "
      "FROM movsinv GROUP BY articulo) m FULL JOIN existenciaalmacen e ON e.articulo = m.articulo FULL JOIN "
      "prods p ON p.articulo = e.articulo WHERE m.n IS DISTINCT FROM e.existencia OR p.alm1 IS DISTINCT FROM "
      "e.existencia");
  if (posted == expected && apart == 0) return 0;
  std::fprintf(stderr, "%g movements of %g; %g articles whose stock is apart\n", posted, expected, apart);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const std::string address = argv[1];
  const int processes = argc > 2 ? std::atoi(argv[2]) : 16;
  const int movements = argc > 3 ? std::atoi(argv[3]) : 500;
  if (processes < 1 || processes > kMostStations || movements < 1) return 2;
  if (!Succeeded(Apart([&] {
        Prepare(address);
        return 0;
      }))) {
    return 1;
  }
  int ready[2], shot[2];
  if (::pipe(ready) != 0 || ::pipe(shot) != 0) return 1;
  std::vector<pid_t> stations;
  for (int i = 1; i <= processes; ++i) {
    stations.push_back(Apart([&] {
      ::close(shot[1]);
      return Post(address, i, movements, ready[1], shot[0]);
    }));
  }
  char sign = 0;
  for (int i = 0; i < processes; ++i) {
    if (::read(ready[0], &sign, 1) != 1) return 1;
  }
  const auto begun = std::chrono::steady_clock::now();
  ::close(shot[1]);
  bool all = true;
  for (const pid_t station : stations) all = Succeeded(station) && all;
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begun;
  std::printf("%.0f\n", processes * movements / took.count());
  return Check(address, static_cast<double>(processes) * movements) == 0 && all ? 0 : 1;
}
