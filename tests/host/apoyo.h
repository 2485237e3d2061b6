// What the host's tests share: a temporary folder, a witness that keeps what it hears and fails on
// demand, and a bench with a host on a base of its own.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "data/error.h"
#include "forms/headless_platform.h"
#include "host/anfitrion.h"
#include "tests/support/base_de_prueba.h"

namespace tarvik::host {

class CarpetaTemporal {
 public:
  CarpetaTemporal() {
    static int count = 0;
    path_ = std::filesystem::temp_directory_path() /
            ("anfitrion-" + std::to_string(getpid()) + "-" + std::to_string(++count));
    std::filesystem::create_directories(path_);
  }
  ~CarpetaTemporal() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  CarpetaTemporal(const CarpetaTemporal&) = delete;
  CarpetaTemporal& operator=(const CarpetaTemporal&) = delete;

  [[nodiscard]] std::filesystem::path Ruta(const std::string& name = "") const {
    return name.empty() ? path_ : path_ / name;
  }

 private:
  std::filesystem::path path_;
};

inline std::string Lee(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

inline void Graba(const std::filesystem::path& path, const std::string& text) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << text;
}

// The text of the Error that a call throws; a mark that no test expects if it throws none.
template <class F>
std::string ErrorDe(F&& function) {
  try {
    function();
  } catch (const data::Error& error) {
    return error.what();
  }
  return "(ningún error)";
}

class TestigoDePrueba : public Testigo {
 public:
  std::vector<std::string> sentencias;
  std::vector<std::string> servicios;
  std::vector<std::pair<int, std::string>> mensajes;
  std::vector<std::pair<std::string, data::Value>> ganchos;
  std::vector<std::pair<Propiedades, double>> movimientos;
  std::vector<std::pair<std::string, int>> impresos;
  std::vector<forms::Form*> presentadas;
  std::vector<std::string> regresadas;
  std::vector<std::pair<std::string, std::vector<data::Value>>> llamadas;
  std::string falla_servicio;   // the name that fails
  std::string falla_sentencia;  // the text whose statement fails

  void Sentencia(std::string_view text) override {
    sentencias.emplace_back(text);
    if (!falla_sentencia.empty() && text.find(falla_sentencia) != std::string_view::npos) {
      throw data::Error("falla provocada");
    }
  }
  void Servicio(std::string_view name) override {
    servicios.emplace_back(name);
    if (name == falla_servicio) throw data::Error("falla provocada");
  }
  void MensajeTraido(int number, const std::string& text) override { mensajes.emplace_back(number, text); }
  void Gancho(const std::string& key, const data::Value& value) override { ganchos.emplace_back(key, value); }
  void Movimiento(const Propiedades& properties, double amount) override {
    movimientos.emplace_back(properties, amount);
  }
  void Impreso(const std::string& format, std::int32_t number) override {
    impresos.emplace_back(format, number);
  }
  void Presentada(forms::Form& form) override { presentadas.push_back(&form); }
  void Regresada(forms::Form&, const std::string& name) override { regresadas.push_back(name); }
  void LlamadaDeParent(std::string_view name, const std::vector<data::Value>& arguments) override {
    llamadas.emplace_back(name, arguments);
  }

  [[nodiscard]] int Veces(const std::string& service) const {
    return static_cast<int>(std::count(servicios.begin(), servicios.end(), service));
  }
};

struct Caja {
  forms::BoxKind clase;
  std::string texto;
  int estilo;
};

// A host on a base that begins empty, with its clock at a quarter past two of the fifth of March 2024.
class Banco : public ::testing::Test {
  tests::BaseDePrueba base_{tests::BaseDePrueba::Con::kNada};  // outlives the host

 protected:
  explicit Banco(bool demo = false) {
    plataforma.clock = [this] { return ahora; };
    plataforma.on_box = [this](forms::BoxKind kind, const std::string& text, int style) {
      cajas.push_back({kind, text, style});
      return respuesta;
    };
    opciones.base = base_.Direccion();
    opciones.usuario = "ANA";
    opciones.estacion = "E1";
    opciones.ruta = carpeta.Ruta("datos").string();
    opciones.demo = demo;
    opciones.plataforma = &plataforma;
    opciones.testigo = &testigo;
  }
  void SetUp() override { Abre(); }

  void Abre() {
    anfitrion = std::make_unique<Anfitrion>(opciones);
    forma = std::make_shared<forms::Form>(plataforma, "frmEntradasWizard", "Entrada");
  }
  data::Rows Sql(const std::string& text, std::initializer_list<data::Value> values = {}) {
    return anfitrion->Conexion().Run(text, values);
  }
  // The first column of the first row.
  data::Value Dato(const std::string& text, std::initializer_list<data::Value> values = {}) {
    const auto rows = Sql(text, values);
    return rows.rows.empty() ? data::Value("(sin renglón)") : rows.rows.front().front();
  }
  service::Funciones& Funciones() { return anfitrion->Funciones(); }
  AmbienteLocal& Ambiente() { return anfitrion->Ambiente(); }

  CarpetaTemporal carpeta;
  data::DateTime ahora{{2024, 3, 5}, {14, 15, 0}};
  std::vector<Caja> cajas;
  bool respuesta = false;
  forms::HeadlessPlatform plataforma;
  TestigoDePrueba testigo;
  Opciones opciones;
  std::unique_ptr<Anfitrion> anfitrion;
  std::shared_ptr<forms::Form> forma;
};

}  // namespace tarvik::host
