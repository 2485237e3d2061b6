// A fresh base for one test, on the engine that TARVIK_TEST_BASE names: by default the embedded one, in
// memory; on a server a base of its own, dropped with this object.
#pragma once

#include <string>

namespace tarvik::tests {

class BaseDePrueba {
 public:
  enum class Con { kTablas, kNada };  // on a server; in memory a base begins with nothing

  explicit BaseDePrueba(Con con = Con::kTablas);
  ~BaseDePrueba();
  BaseDePrueba(const BaseDePrueba&) = delete;
  BaseDePrueba& operator=(const BaseDePrueba&) = delete;

  [[nodiscard]] const std::string& Direccion() const { return direccion_; }
  [[nodiscard]] bool EnServidor() const { return !nombre_.empty(); }

 private:
  std::string nombre_;  // on a server
  std::string direccion_;
};

}  // namespace tarvik::tests
