// Anything at all on all four screens: typing, keys, clicks, cells, closing, several screens at once, with
// and without failures that are provoked. Nothing comes out of an act, and the books are right after it.
//   TARVIK_CAOS_EVENTOS   so many acts, instead of as many as there is time for
//   TARVIK_CAOS_SEMILLA   the first world's seed
//   TARVIK_CAOS_REVISA    so many acts between two looks at the books (50)
#include <chrono>
#include <cstdio>

#include "tests/caos/mundo.h"
#include "tests/caos/tienda.h"

namespace tarvik::caos {
namespace {

constexpr long kActosPorMundo = 1500;

// One world from its seed. Gives how many acts were done; the test has failed if something was wrong.
// `comparadas`: how often a screen was held against the base, added.
long Vive(unsigned semilla, bool provoca, long actos, long& comparadas) {
  Mundo mundo(semilla, provoca);
  const long cada = Veces("TARVIK_CAOS_REVISA", 50);
  long hechos = 0;
  const auto falla = [&](const std::string& que) {
    ADD_FAILURE() << "semilla " << semilla << ", acto " << hechos << ": " << que << "\nlos últimos actos:\n"
                  << mundo.Huella();
  };
  while (hechos < actos && !::testing::Test::HasFailure()) {
    try {
      mundo.Acto();
    } catch (const std::exception& error) {
      falla(std::string("salió de un acto: ") + error.what());
    }
    if (++hechos % cada != 0) continue;
    for (const std::string& mal : mundo.Revisa()) falla(mal);
  }
  if (!::testing::Test::HasFailure()) {
    for (const std::string& mal : mundo.Termina()) falla(mal);
  }
  comparadas += mundo.Comparadas();
  return hechos;
}

void Corre(bool provoca) {
  const long pedidos = Veces("TARVIK_CAOS_EVENTOS", 0) / 2;
  const auto limite =
      std::chrono::steady_clock::now() + std::chrono::seconds(Veces("TARVIK_CAOS_SEGUNDOS", 14) / 2);
  auto semilla = static_cast<unsigned>(Veces("TARVIK_CAOS_SEMILLA", 1));
  long hechos = 0;
  long comparadas = 0;
  for (; !::testing::Test::HasFailure(); ++semilla) {
    if (pedidos > 0 ? hechos >= pedidos : std::chrono::steady_clock::now() >= limite) break;
    if (pedidos > 0) {  // a crash is to be found again
      std::printf("    semilla %u, %ld actos\n", semilla, hechos);
      std::fflush(stdout);
    }
    hechos += Vive(semilla, provoca,
                   pedidos > 0 ? std::min(kActosPorMundo, pedidos - hechos) : kActosPorMundo, comparadas);
  }
  std::printf("    actos: %ld\n    pantallas comparadas: %ld\n", hechos, comparadas);
  EXPECT_GT(hechos, 0);
  EXPECT_TRUE(provoca || comparadas > 0);
}

TEST(Eventos, AnythingAtAllOnAllScreens) { Corre(false); }
TEST(Eventos, AnythingAtAllWhileStatementsServicesAndRoutinesFail) { Corre(true); }

}  // namespace
}  // namespace tarvik::caos
