// Stations at work on one server: what only a base that others share, and that can go away, can bring.
#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "data/error.h"
#include "host/demo.h"
#include "host/numeracion.h"
#include "host/preparacion.h"
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

// Two programs that open a new base in the same instant: the second one waits, and finds it filled.
TEST_F(EnElServidor, OfTwoWhoFillANewBaseAtOnceTheSecondFindsItFilled) {
  for (const char* table : {"mensajes", "parametros", "defform", "ControlProc", "prods"}) {
    Sql(std::string("DELETE FROM ") + table);
  }
  const auto first = anfitrion->Base().Connect();
  const auto second = anfitrion->Base().Connect();
  std::string error;
  std::thread station;
  {
    data::Transaction whole(*first);
    host::UnaALaVez(*first);
    station = std::thread([&] {
      try {
        host::PonPrimerosContenidos(*second);
        host::PonDemostracion(*second);
      } catch (const data::Error& failed) {
        error = failed.what();
      }
    });
    const auto waits = [&] { return Uno("SELECT COUNT(*) FROM pg_locks WHERE NOT granted"); };
    for (int turn = 0; turn < 300 && waits() == "0"; ++turn) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_NE(waits(), "0");
    first->Run("INSERT INTO ControlProc (controlproc) VALUES (?)", {7});
    first->Run("INSERT INTO prods (articulo) VALUES (?)", {"MIO"});
    whole.Commit();
  }
  station.join();
  EXPECT_EQ(error, "");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM ControlProc"), "1");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM mensajes"), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM prods"), "1");
}

// Two who enter the openings of the same stock: the second one waits, and sees that nothing is missing.
TEST_F(EnElServidor, OfTwoWhoEnterOpeningsAtOnceTheSecondFindsNothingMissing) {
  Sql("INSERT INTO prods (articulo) VALUES ('SUELTO')");
  Sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (9, 'SUELTO', 4)");
  Sql("DELETE FROM series WHERE nombre = 'Apertura'");
  anfitrion->AbreSaldos();
  ASSERT_EQ(Uno("SELECT COUNT(*) FROM movsinv WHERE articulo = 'SUELTO'"), "1");
  Sql("DELETE FROM movsinv WHERE articulo = 'SUELTO'");
  const auto first = anfitrion->Base().Connect();
  std::size_t entered = 99;
  std::thread station;
  {
    data::Transaction whole(*first);
    first->Run("UPDATE series SET valor = valor WHERE nombre = 'Apertura'", {});
    station = std::thread([&] {
      forms::HeadlessPlatform platform;
      host::Opciones options;
      options.base = Direccion();
      options.usuario = "LUIS";
      options.estacion = "E2";
      options.ruta = (ruta / "E2").string();
      options.plataforma = &platform;
      host::Anfitrion host(options);
      entered = static_cast<std::size_t>(host.AbreSaldos());
    });
    const auto waits = [&] { return Uno("SELECT COUNT(*) FROM pg_locks WHERE NOT granted"); };
    for (int turn = 0; turn < 300 && waits() == "0"; ++turn) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_NE(waits(), "0");
    first->Run(
        "INSERT INTO movsinv (operacion, ent_sal, articulo, almacen, cantidad) VALUES ('AP', 'E', 'SUELTO', "
        "9, 4)",
        {});
    whole.Commit();
  }
  station.join();
  EXPECT_EQ(entered, 0U);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv WHERE articulo = 'SUELTO'"), "1");
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
          movement->Afecta(amount);
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
