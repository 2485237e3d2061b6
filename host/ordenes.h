// The sub-commands of the program: what the host offers around the screens, from a shell and from scripts. It
// opens no window, writes what it finds to the console that it is given, and does nothing that the same
// member of the host would not do.
#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

#include "host/anfitrion.h"

namespace CLI {
class App;
}

namespace tarvik::host {

// Where a command writes. `confirma` asks a person yes or no; empty: nobody is there, which means no.
struct Consola {
  std::ostream& salida;
  std::ostream& errores;
  std::function<bool(const std::string& pregunta)> confirma;
};

// What a command ends with, for scripts.
inline constexpr int kBien = 0;
inline constexpr int kHayFaltas = 1;  // it found faults, and has not mended all of them
inline constexpr int kError = 2;      // it could not be done; nothing was changed

class Ordenes {
 public:
  // Adds the sub-commands to the program's command line, which outlives this.
  explicit Ordenes(CLI::App& programa);
  ~Ordenes();
  Ordenes(const Ordenes&) = delete;
  Ordenes& operator=(const Ordenes&) = delete;

  // Whether the line that was parsed asks for one of them.
  [[nodiscard]] bool Pedida() const;
  // Runs it on a host of its own, made by these options (platform and witness are put in here), and gives
  // the program's exit code. Throws nothing: what fails is told on the console.
  int Corre(Opciones opciones, const Consola& consola);

 private:
  struct Interior;
  std::unique_ptr<Interior> interior_;
};

}  // namespace tarvik::host
