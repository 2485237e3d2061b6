// Number series: consecutive, each of its own, and never the same number for two stations.
#include "host/numeracion.h"

#include <set>
#include <thread>

#include "data/schema.h"
#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class Numeracion : public Banco {};

TEST_F(Numeracion, ASeriesGivesOneTwoThreeFromOneOn) {
  auto& connection = anfitrion->Conexion();
  EXPECT_EQ(SiguienteNumero(connection, "MovEnt"), 1);
  EXPECT_EQ(SiguienteNumero(connection, "MovEnt"), 2);
  EXPECT_EQ(SiguienteNumero(connection, "entpart"), 1);
  EXPECT_EQ(SiguienteNumero(connection, "MovEnt"), 3);
}

TEST_F(Numeracion, ASeriesStartsWithOneWhateverDocumentsThereAre) {
  Sql("INSERT INTO entradas (entrada) VALUES (7)");
  EXPECT_EQ(SiguienteNumero(anfitrion->Conexion(), "MovEnt"), 1);
}

TEST_F(Numeracion, NamesThatDifferInCaseAreTwoSeries) {
  EXPECT_EQ(SiguienteNumero(anfitrion->Conexion(), "E1salida"), 1);
  EXPECT_EQ(SiguienteNumero(anfitrion->Conexion(), "e1salida"), 1);
}

TEST_F(Numeracion, AQuoteInTheNameIsPartOfTheName) {
  EXPECT_EQ(SiguienteNumero(anfitrion->Conexion(), "O'Harasalida"), 1);
  EXPECT_EQ(data::ToText(Dato("SELECT nombre FROM series")), "O'Harasalida");
}

TEST_F(Numeracion, ASeriesEndsBeforeItLeavesThirtyTwoBits) {
  Sql("INSERT INTO series (nombre, valor) VALUES ('Salida', 2147483646)");
  EXPECT_EQ(SiguienteNumero(anfitrion->Conexion(), "Salida"), 2147483647);
  EXPECT_EQ(ErrorDe([&] { SiguienteNumero(anfitrion->Conexion(), "Salida"); }),
            "La serie Salida se ha agotado");
}

TEST_F(Numeracion, ASeriesThatSomebodySpoiltGivesNoNumber) {
  Sql("INSERT INTO series (nombre, valor) VALUES ('Salida', NULL)");
  Sql("INSERT INTO series (nombre, valor) VALUES ('MovEnt', -9)");
  for (const char* series : {"Salida", "MovEnt"}) {
    EXPECT_EQ(ErrorDe([&] { SiguienteNumero(anfitrion->Conexion(), series); }),
              "La serie " + std::string(series) + " no tiene un valor válido");
  }
}

TEST(NumeracionDeVarios, StationsThatDrawAtOnceNeverGetTheSameNumber) {
  CarpetaTemporal folder;
  const std::string address = "sqlite:" + folder.Ruta("base.db").string();
  auto base = data::OpenBase(address);
  data::PrepareSchema(*base->Connect());

  constexpr int kStations = 4;
  constexpr int kEach = 40;
  std::vector<std::vector<std::int32_t>> drawn(kStations);
  std::vector<std::string> failures(kStations);
  std::vector<std::thread> stations;
  for (int i = 0; i < kStations; ++i) {
    stations.emplace_back([&, i] {
      try {
        auto own = data::OpenBase(address)->Connect();
        for (int n = 0; n < kEach; ++n) drawn[i].push_back(SiguienteNumero(*own, "Salida"));
      } catch (const std::exception& error) {
        failures[i] = error.what();
      }
    });
  }
  for (auto& station : stations) station.join();
  std::set<std::int32_t> all;
  for (int i = 0; i < kStations; ++i) {
    EXPECT_EQ(failures[i], "");
    EXPECT_TRUE(std::is_sorted(drawn[i].begin(), drawn[i].end()));
    all.insert(drawn[i].begin(), drawn[i].end());
  }
  EXPECT_EQ(all.size(), kStations * kEach);
  EXPECT_EQ(*all.begin(), 1);
  EXPECT_EQ(*all.rbegin(), kStations * kEach);
}

}  // namespace
}  // namespace tarvik::host
