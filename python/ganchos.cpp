// The deployer's routines behind the keys: running one, and what is told of them.
#include "python/ganchos.h"

#include <algorithm>

#include "data/error.h"
#include "python/foto.h"
#include "python/rutinas.h"

namespace tarvik::python {

void Rutinas::Interior::Dispara(const std::string& key, forms::Form& form, host::AmbienteLocal& ambiente) {
  const auto alive = form.shared_from_this();
  const bool open = form.Open();
  bool first = true;
  for (const Rutina& routine : por_clave.at(key)) {
    if (!first && (Cancelado(form) || (open && !form.Open()))) return;
    first = false;
    Corre(routine, form, ambiente);
  }
}

void Rutinas::Interior::Corre(const Rutina& routine, forms::Form& form, host::AmbienteLocal& ambiente) {
  if (opciones.observador) opciones.observador->Empieza(routine.ficha);
  Corrida run;
  run.rutina = routine.ficha;
  const Foto before(form);
  {
    const py::gil_scoped_acquire lock;
    Plazo limit(*this, routine.ficha);
    try {
      routine.funcion(FormObject(form), py::cast(&ambiente, py::return_value_policy::reference));
      run.milisegundos = limit.Milisegundos();
    } catch (py::error_already_set& raised) {
      limit.Obedecido();
      run.milisegundos = limit.Milisegundos();
      Explicada explained = Explica(raised, carpeta, {routine.ficha.archivo, routine.ficha.linea, {}});
      run.error = std::move(explained.fallo);
      run.rastro = std::move(explained.rastro);
    } catch (const std::exception& error) {  // an object that could not be handed over
      run.milisegundos = limit.Milisegundos();
      run.error = Fallo{routine.ficha.archivo, routine.ficha.linea, error.what()};
    }
  }
  const Foto after(form);
  before.Compara(after, run);
  run.cancelado_antes = before.Cancelada();
  run.cancelado_despues = after.Cancelada();
  if (run.error && opciones.bitacora) {
    opciones.bitacora(routine.ficha.clave, LugarDe(run.error->archivo, run.error->linea) + ": " +
                                               run.error->texto + "\n" + run.rastro);
  }
  if (opciones.observador) opciones.observador->Corrio(run);
  if (run.error) {
    throw data::Error(run.error->texto)
        .With("rutina", routine.ficha.clave)
        .With("lugar", LugarDe(run.error->archivo, run.error->linea));
  }
}

// ---- the door ----

Rutinas::Rutinas(OpcionesDeRutinas opciones) : interior_(std::make_unique<Interior>(std::move(opciones))) {}
Rutinas::~Rutinas() = default;

const std::string& Rutinas::Carpeta() const { return interior_->carpeta; }
const std::vector<RutinaCargada>& Rutinas::Cargadas() const { return interior_->cargadas; }
bool Rutinas::EnMarcha() const { return interior_->interprete.has_value(); }

std::string LugarDe(const std::string& archivo, int linea) {
  const std::string name = fs::path(archivo).filename().string();
  return linea > 0 ? name + ", línea " + std::to_string(linea) : name;
}

std::string AvisoDeCarga(const std::vector<Fallo>& fallos) {
  if (fallos.empty()) return {};
  constexpr std::size_t kShown = 10;
  std::string text = fallos.size() == 1 ? "Hay un error en las rutinas:" : "Hay errores en las rutinas:";
  text += "\n";
  for (std::size_t i = 0; i < std::min(fallos.size(), kShown); ++i) {
    text.append("\n")
        .append(LugarDe(fallos[i].archivo, fallos[i].linea))
        .append(": ")
        .append(fallos[i].texto);
  }
  if (fallos.size() > kShown)
    text.append("\n... y ").append(std::to_string(fallos.size() - kShown)).append(" más.");
  text +=
      "\n\nLas pantallas y las demás rutinas trabajan como siempre; no se perdió ningún dato. Corrija lo que "
      "se "
      "indica y vuelva a abrir el programa.";
  return text;
}

}  // namespace tarvik::python
