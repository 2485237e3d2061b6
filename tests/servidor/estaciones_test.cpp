// Stations at work on one server: what only a base that others share, and that can go away, can bring.
#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "data/error.h"
#include "host/numeracion.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

class EnElServidor : public Escenario {
 protected:
  EnElServidor() { Catalogo(); }
  // As a server that is started again does it.
  void CortaSesiones() {
    Sql("SELECT pg_terminate_backend(pid, 2000) FROM pg_stat_activity WHERE datname = current_database() AND "
        "pid <> "
        "pg_backend_pid()");
  }
};

TEST_F(EnElServidor, AServerThatIsStartedAgainBetweenTwoKeysIsNotNoticed) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "2"}});
  Olvida();
  CortaSesiones();
  Renglon(f, "A-200", "3");
  EXPECT_TRUE(Reportes().empty()) << Reportes().front();
  EXPECT_EQ(Celda(f, 2, 0), "A-200");
  EXPECT_EQ(Uno("SELECT SUM(cantidad) FROM entpart WHERE entrada = ?", {f.Entrada}), "5");
}

TEST_F(EnElServidor, NorIsOneThatIsStartedAgainInTheMiddleOfAStep) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "2"}});
  Olvida();
  f.Enter(f.fg2);
  f.fg2.MoveTo(1, 1);
  Tecla(f, "4");
  // The last moment before the corrected cell is sent.
  bitacora.al_anotar = [this](std::string_view text) {
    if (!text.starts_with("UPDATE entpart")) return;
    bitacora.al_anotar = nullptr;
    CortaSesiones();
  };
  Tecla(f, "Enter");
  EXPECT_TRUE(Reportes().empty()) << Reportes().front();
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart WHERE entrada = ?", {f.Entrada}), "4");
}

TEST_F(EnElServidor, AChangeThatWasLostOnItsWayIsToldAndStoredAtTheSecondTry) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "2"}});
  Olvida();
  f.Enter(f.fg2);
  f.fg2.MoveTo(1, 1);
  Tecla(f, "4");
  const auto holder = anfitrion->Base().Connect();
  holder->Begin();
  holder->Run("UPDATE entpart SET cantidad = cantidad WHERE entrada = ?", {f.Entrada});
  std::thread server([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    Sql("SELECT pg_terminate_backend(pid, 2000) FROM pg_stat_activity WHERE datname = current_database() AND "
        "wait_event_type = 'Lock'");
  });
  Tecla(f, "Enter");
  server.join();
  holder->Rollback();
  ASSERT_EQ(Reportes().size(), 1U);
  EXPECT_NE(Reportes().front().find("Se perdió la conexión con la base postgresql://"), std::string::npos);
  EXPECT_TRUE(f.Open());
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart WHERE entrada = ?", {f.Entrada}), "2");

  Olvida();
  f.Enter(f.fg2);
  f.fg2.MoveTo(1, 1);
  Tecla(f, "4");
  Tecla(f, "Enter");
  EXPECT_TRUE(Reportes().empty()) << Reportes().front();
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart WHERE entrada = ?", {f.Entrada}), "4");
}

TEST_F(EnElServidor, StationsNeverDrawTheSameNumber) {
  std::vector<std::thread> stations;
  std::vector<std::vector<std::int32_t>> drawn(4);
  for (auto& numbers : drawn) {
    stations.emplace_back([&numbers, this] {
      const auto connection = anfitrion->Base().Connect();
      for (int i = 0; i < 25; ++i) numbers.push_back(host::SiguienteNumero(*connection, "MovEnt"));
    });
  }
  for (std::thread& station : stations) station.join();
  std::set<std::int32_t> all;
  for (const auto& numbers : drawn) all.insert(numbers.begin(), numbers.end());
  EXPECT_EQ(all.size(), 100U);
  EXPECT_EQ(*all.rbegin(), 100);
}

TEST_F(EnElServidor, StationsThatPostAtOnceLeaveTheBooksInAgreement) {
  constexpr int kStations = 16;
  constexpr int kMovements = 30;
  std::vector<std::thread> stations;
  std::vector<std::string> errors(kStations);
  for (int number = 0; number < kStations; ++number) {
    stations.emplace_back([this, number, &error = errors[static_cast<std::size_t>(number)]] {
      try {
        forms::HeadlessPlatform platform;
        host::Opciones options;
        options.base = Direccion();
        options.usuario = "ANA";
        options.estacion = "E" + std::to_string(number + 1);
        options.ruta = (ruta / options.estacion).string();
        options.plataforma = &platform;
        host::Anfitrion station(options);
        for (int i = 0; i < kMovements; ++i) {
          const auto movement = station.NuevoMovimiento();
          movement->Ambiente(station.Ambiente());
          movement->EntSal(i % 3 == 2 ? "S" : "E");
          movement->Articulo((i / 3 + number) % 2 == 0 ? "A-100" : "A-200");
          movement->Almacen(1);
          movement->Cantidad(2);
          movement->Precio(10);
          double amount = 0;
          movement->Afecta(false, amount);
        }
      } catch (const data::Error& failed) {
        error = failed.what();
      }
    });
  }
  for (std::thread& station : stations) station.join();
  for (const std::string& error : errors) EXPECT_EQ(error, "");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), std::to_string(kStations * kMovements));
  for (const std::string article : {"A-100", "A-200"}) {
    // Of each three movements two come in and one goes out.
    const std::string expected = std::to_string(kStations * kMovements / 3);
    EXPECT_EQ(Uno("SELECT SUM(CASE ent_sal WHEN 'E' THEN cantidad ELSE -cantidad END) FROM movsinv WHERE "
                  "articulo = ?",
                  {article}),
              expected);
    EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = ? AND almacen = 1", {article}),
              expected);
    EXPECT_EQ(Uno("SELECT ALM1 FROM prods WHERE articulo = ?", {article}), expected);
  }
}

}  // namespace
}  // namespace tarvik::tests
