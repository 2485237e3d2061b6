// Ganchos: a warehouse whose screens have routines behind their keys, and an observer of what ran.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>

#include "python/ganchos.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {

namespace fs = std::filesystem;
using python::Corrida;
using python::Fallo;
using python::RutinaCargada;

class Observador final : public python::ObservadorDeGanchos {
 public:
  std::vector<std::string> empezadas;
  std::vector<Corrida> corridas;
  std::vector<std::pair<std::string, int>> preguntas;
  int veces_que_espera = 0;

  void Empieza(const RutinaCargada& routine) override { empezadas.push_back(routine.clave); }
  void Corrio(const Corrida& run) override { corridas.push_back(run); }
  bool SigueEsperando(const RutinaCargada& routine, int seconds) override {
    preguntas.emplace_back(routine.clave, seconds);
    return veces_que_espera-- > 0;
  }

  // "nombre: antes > después" of each change of the newest run of a key.
  [[nodiscard]] std::vector<std::string> Cambios(const std::string& key) const {
    std::vector<std::string> texts;
    const Corrida* run = Ultima(key);
    if (!run) return texts;
    for (const auto& change : run->cambios)
      texts.push_back(change.nombre + ": " + change.antes + " > " + change.despues);
    return texts;
  }
  [[nodiscard]] const Corrida* Ultima(const std::string& key) const {
    for (auto run = corridas.rbegin(); run != corridas.rend(); ++run) {
      if (run->rutina.clave == key) return &*run;
    }
    return nullptr;
  }
};

class Ganchos : public Escenario {
 protected:
  Ganchos() { Catalogo(); }

  void Archivo(const std::string& name, const std::string& text) {
    fs::create_directories(ruta / "ganchos");
    std::ofstream(ruta / "ganchos" / name, std::ios::binary) << text;
  }
  std::vector<Fallo> Carga(const std::string& folder = {}, int limite_ms = 10'000) {
    rutinas.emplace(python::OpcionesDeRutinas{
        &observador,
        [this](const auto& where, const auto& text) { bitacora_propia.push_back(where + " | " + text); },
        limite_ms});
    return rutinas->Carga(*anfitrion, folder);
  }
  static bool Contiene(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }

  Observador observador;
  std::vector<std::string> bitacora_propia;
  std::optional<python::Rutinas> rutinas;
};

}  // namespace tarvik::tests
