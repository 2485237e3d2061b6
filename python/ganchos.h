// Rutinas: the deployer's routines, written in Python, behind the catalogue keys of a host. It loads
// a folder of files, runs what they define, and tells an observer what each run did. It shows
// nothing, knows no toolkit and starts no thread. This header needs nothing of Python's.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/anfitrion.h"

namespace tarvik::python {

// Where and why something of the deployer's failed. The text is Spanish, for an operator; what the
// interpreter says in its own words stands in it in brackets.
struct Fallo {
  std::string archivo;  // path
  int linea = 0;        // from 1; 0: unknown
  std::string texto;
};

struct RutinaCargada {
  std::string clave;
  std::string archivo;  // path
  int linea = 0;        // of its definition
};

// A text, value or state of the screen that a routine left other than it found it:
// "txtFields(5)", "Check3", "fg2(3, 1)", "txtFields(6).Enabled", "Modo".
struct CampoCambiado {
  std::string nombre;
  std::string antes;
  std::string despues;
};

// One run of one routine.
struct Corrida {
  RutinaCargada rutina;
  double milisegundos = 0;
  std::vector<CampoCambiado> cambios;  // at most kCambios
  std::size_t cambios_omitidos = 0;
  bool cancelado_antes = false;  // the screen's CancelaProceso
  bool cancelado_despues = false;
  std::optional<Fallo> error;  // its file and line are those of the deployer's innermost call
  std::string rastro;          // the interpreter's own account of the error; empty without one
};

inline constexpr std::size_t kCambios = 200;

// Called on the thread of the screens; must not throw.
class ObservadorDeGanchos {
 public:
  virtual ~ObservadorDeGanchos() = default;
  // A run begins; runs nest where a routine sets off a further key.
  virtual void Empieza(const RutinaCargada&) {}
  virtual void Corrio(const Corrida&) = 0;
  // The routine has been running this long. True lets it go on, and asks again after the same time;
  // false stops it, which is an error of its key.
  virtual bool SigueEsperando(const RutinaCargada&, int /*segundos*/) { return false; }
};

struct OpcionesDeRutinas {
  ObservadorDeGanchos* observador = nullptr;  // outlives the routines
  // The program's own log: an error of a routine or of a file, with file and line. Must not throw.
  std::function<void(const std::string& donde, const std::string& texto)> bitacora;
  int limite_ms = 10'000;  // after it the observer is asked, or the routine stopped; 0: never
};

// Example:
//   python::Rutinas rutinas({.observador = &window});
//   const auto fallos = rutinas.Carga(host, folder);
//   if (!fallos.empty()) box(python::AvisoDeCarga(fallos));
//
// The host, its platform and the observer outlive this. Made, used and destroyed on one thread, the
// program's first if the limit is to work; one at a time in a process.
class Rutinas {
 public:
  explicit Rutinas(OpcionesDeRutinas opciones = {});
  ~Rutinas();  // takes its routines away from the host
  Rutinas(const Rutinas&) = delete;
  Rutinas& operator=(const Rutinas&) = delete;

  // Loads every *.py file of the folder, in name order; once. A function that bears the name of a
  // key runs when the key fires; of two for one key the one of the earlier file runs first, and the
  // later one only if CancelaProceso is not set by then, the first did not raise, and the screen is
  // still there. A file that fails is left out; the others are loaded all the same. An empty name
  // is the folder ganchos/ of the host, which may be missing; a named one may not.
  std::vector<Fallo> Carga(host::Anfitrion& host, const std::string& folder = {});

  [[nodiscard]] const std::string& Carpeta() const;
  [[nodiscard]] const std::vector<RutinaCargada>& Cargadas() const;
  // Whether the interpreter was started: only if the folder has files.
  [[nodiscard]] bool EnMarcha() const;

 private:
  struct Interior;
  std::unique_ptr<Interior> interior_;
};

// "limites.py, línea 12"; without the folder.
std::string LugarDe(const std::string& archivo, int linea);
// What an operator is told when files did not load: what happened, what is safe, what to do.
std::string AvisoDeCarga(const std::vector<Fallo>& fallos);

}  // namespace tarvik::python
