// The shop that is broken from outside: twenty articles without tax and without stock control, three
// warehouses, a concept of each kind. It begins with nothing in stock.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "data/engine.h"
#include "tests/support/base_de_prueba.h"

namespace tarvik::caos {

inline constexpr int kArticulos = 20;
inline constexpr int kAlmacenes = 3;

std::string Articulo(int cual);  // from 1: "A-01"

// A folder of a test's own, gone with this object.
class Carpeta {
 public:
  Carpeta();
  ~Carpeta();
  Carpeta(const Carpeta&) = delete;
  Carpeta& operator=(const Carpeta&) = delete;

  [[nodiscard]] const std::filesystem::path& Ruta() const { return ruta_; }

 private:
  std::filesystem::path ruta_;
};

// Makes the base ready and fills it. Safe to call again.
void MontaTienda(const std::string& direccion);

// A shop's base that several processes open: a file, or a base on the server that TARVIK_TEST_BASE names.
class BaseDeCaos {
 public:
  explicit BaseDeCaos(const std::string& dada = "");  // an empty base that is there already

  [[nodiscard]] const std::string& Direccion() const { return direccion_; }
  [[nodiscard]] bool EnServidor() const { return servida_ != nullptr; }
  [[nodiscard]] const std::filesystem::path& Ruta() const { return carpeta_.Ruta(); }

 private:
  Carpeta carpeta_;
  std::unique_ptr<tests::BaseDePrueba> servida_;
  std::string direccion_;
};

// A number that a longer run sets: the environment's, else `usual`.
long Veces(const char* variable, long usual);

}  // namespace tarvik::caos
