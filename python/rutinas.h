// What stands behind Rutinas: the interpreter, the routines by their keys, and the limit of a run. A file
// each: interprete.cpp starts and ends the interpreter, carga.cpp loads the files, plazo.cpp keeps the limit,
// ganchos.cpp runs a routine.
#pragma once

#include <pybind11/embed.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "python/binding.h"
#include "python/confianza.h"
#include "python/fallos.h"
#include "python/ganchos.h"

namespace tarvik::python {

namespace fs = std::filesystem;
using Reloj = std::chrono::steady_clock;

// Once the program is to end, a routine has this long to come to its own end.
inline constexpr auto kParaTerminar = std::chrono::seconds(1);

inline double Milisegundos(Reloj::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

struct Rutinas::Interior {
  struct Rutina {
    RutinaCargada ficha;
    py::object funcion;
  };
  // A run under way; they nest.
  struct Marca {
    const RutinaCargada* ficha;
    Reloj::time_point desde;
    Reloj::duration en_espera{};                     // of the operator's answers
    Reloj::duration preguntado{};                    // how long it had run when the operator was last asked
    std::optional<Reloj::time_point> detenida = {};  // when it was told to stop
  };

  explicit Interior(OpcionesDeRutinas given) : opciones(std::move(given)) {}
  ~Interior();

  void Arranca();
  void PonLimite();
  void CargaArchivo(const fs::path& path);
  void TomaFunciones(const py::object& module, const std::string& path);
  void Anota(Fallo failure);
  void Dispara(const std::string& key, forms::Form& form, host::AmbienteLocal& ambiente);
  void Corre(const Rutina& routine, forms::Form& form, host::AmbienteLocal& ambiente);
  void Arma(double seconds);  // the interpreter's clock, again and again; 0: not at all
  [[nodiscard]] double Vuelta() const;
  void Vence();
  void VenceAlTerminar(Reloj::time_point now);
  void Detiene(const std::string& why);
  [[nodiscard]] bool SeTermina() const { return anfitrion && anfitrion->Plataforma().EndRequested(); }
  [[nodiscard]] bool HilosTerminados() const;

  OpcionesDeRutinas opciones;
  host::Anfitrion* anfitrion = nullptr;
  std::string carpeta;
  std::vector<RutinaCargada> cargadas;
  std::vector<Fallo> fallos;
  std::vector<Marca> corriendo;
  bool preguntando = false;  // the operator, about a long run
  bool con_limite = false;
  std::optional<Reloj::time_point> fin_pedido;  // when it was seen that the program is to end

  // In this order: what lives in the interpreter goes before it does.
  std::optional<py::scoped_interpreter> interprete;
  std::map<std::string, std::vector<Rutina>> por_clave;
  py::object detenida;  // what stops a routine; no Exception, so that its own traps let it pass
  std::optional<Confianza> confianza;
  std::optional<py::gil_scoped_release> en_reposo;  // threads of the deployer's run between the routines

  // While it lives, the limit watches over one run.
  class Plazo {
   public:
    Plazo(Interior& interior, const RutinaCargada& routine) : interior_(interior) {
      interior_.corriendo.push_back({&routine, Reloj::now()});
      if (interior_.corriendo.size() == 1) interior_.Arma(interior_.Vuelta());
    }
    ~Plazo() {
      Obedecido();
      if (interior_.corriendo.size() == 1) interior_.Arma(0);
      interior_.corriendo.pop_back();
    }
    // The routine's own lines are over; the interpreter works on for us.
    void Obedecido() {
      if (!interior_.corriendo.back().detenida) return;
      PyEval_SetTrace(nullptr, nullptr);
    }
    Plazo(const Plazo&) = delete;
    Plazo& operator=(const Plazo&) = delete;

    [[nodiscard]] double Milisegundos() const {
      const Marca& mark = interior_.corriendo.back();
      return python::Milisegundos(Reloj::now() - mark.desde - mark.en_espera);
    }

   private:
    Interior& interior_;
  };
};

}  // namespace tarvik::python
