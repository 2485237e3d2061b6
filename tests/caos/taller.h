// Taller: what the tests that break things share. A base, the workers on it, what they have acknowledged.
#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/caos/proceso.h"
#include "tests/caos/remedio.h"
#include "tests/caos/tienda.h"

namespace tarvik::caos {

using namespace std::chrono_literals;

class Taller : public ::testing::Test {
 protected:
  // On the engine that TARVIK_TEST_BASE names, or on that base.
  explicit Taller(const std::string& direccion = "") : base(direccion) {}

  // A worker with so many documents before it (0: until it is told), or who waits for orders.
  std::unique_ptr<Proceso> Obrero(const std::string& quien, const std::string& que = "0",
                                  const std::string& direccion = "", int renglones = 12) {
    const std::string semilla = std::to_string(azar());
    return std::make_unique<Proceso>(std::vector<std::string>{
        TARVIK_OBRERO, direccion.empty() ? base.Direccion() : direccion, "U" + quien, "E" + quien,
        (base.Ruta() / quien).string(), semilla, que, std::to_string(renglones)});
  }
  std::unique_ptr<Proceso> Mandado(const std::string& quien, const std::string& direccion = "") {
    auto obrero = Obrero(quien, "ordenes", direccion);
    EXPECT_EQ(Responde(*obrero), "sí");
    return obrero;
  }
  // What an order is answered with; what is said meanwhile is heard.
  std::string Responde(Proceso& obrero) {
    while (const auto linea = obrero.Lee(60s)) {
      if (linea->starts_with("listo\t")) return linea->substr(6);
      Oye(*linea);
    }
    return "(nada)";
  }
  std::string Ordena(Proceso& obrero, const std::string& orden) {
    obrero.Escribe(orden);
    return Responde(obrero);
  }
  void Oye(const std::string& linea) {
    acuses.Oye(linea);
    if (diario.is_open()) diario << linea << std::endl;
    // A document without lines is the operator's affair; that a dead program's was let go of is told.
    const bool sabida = linea.find("no tiene partidas") != std::string::npos ||
                        linea.find("ese programa ya no está abierto") != std::string::npos;
    if ((linea.starts_with("caja\t") && !sabida) || linea.starts_with("suelto\t")) cajas.push_back(linea);
    if (linea == "hecho") ++hechos;
    if (linea.starts_with("muere\t")) ADD_FAILURE() << linea;
  }
  // Told to end with the document at hand.
  void Despide(Proceso& obrero) {
    obrero.Senal(SIGTERM);
    EXPECT_EQ(obrero.Termina(60s, [this](const std::string& linea) { Oye(linea); }).value_or(-1), 0);
  }
  int Al(int desde, int hasta) { return std::uniform_int_distribution<int>(desde, hasta)(azar); }
  data::Rows Sql(const std::string& texto) {
    return data::OpenBase(base.Direccion())->Connect()->Run(texto, {});
  }
  int Cuenta(const std::string& texto) {
    return static_cast<int>(data::ToNumber(Sql(texto).rows.at(0).at(0)));
  }
  void Prueba() {
    const Fallas fallas = caos::Prueba(base.Direccion(), base.Ruta(), acuses, &remediado);
    EXPECT_TRUE(fallas.empty()) << Texto(fallas);
  }
  // A figure of the run, for whoever reads the output.
  static void Dato(const std::string& nombre, long valor) {
    std::printf("    %s: %ld\n", nombre.c_str(), valor);
  }

  std::mt19937 azar{static_cast<unsigned>(Veces("TARVIK_CAOS_SEMILLA", 1))};
  BaseDeCaos base;
  Acuses acuses;
  std::vector<std::string> cajas;
  Remediado remediado;
  int hechos = 0;
  std::ofstream diario{std::getenv("TARVIK_CAOS_DIARIO") != nullptr ? std::getenv("TARVIK_CAOS_DIARIO") : ""};
};

}  // namespace tarvik::caos
