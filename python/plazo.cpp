// How long a routine may run: the interpreter's own clock looks at it again and again, the operator is asked,
// and what is to end is stopped, be it against its will.
#include "python/rutinas.h"

#include <algorithm>

namespace tarvik::python {

namespace {

// All routines of a program that is to end have this long together; one that does not let itself be stopped
// is then stopped at each of its lines.
constexpr auto kParaTerminarTodas = std::chrono::seconds(3);
constexpr auto kParaObedecer = std::chrono::milliseconds(300);

// Told by the interpreter of each line that a stopped routine begins: not one of them runs, whatever
// the routine catches.
int NiUnaMas(PyObject* raised, PyFrameObject*, int what, PyObject*) {
  if (what != PyTrace_LINE && what != PyTrace_CALL) return 0;
  PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(raised)), raised);
  return -1;
}

std::string Nombre(const RutinaCargada& routine) {
  return routine.clave.empty() ? "El archivo " + fs::path(routine.archivo).filename().string()
                               : "La rutina " + routine.clave;
}

}  // namespace

void Rutinas::Interior::PonLimite() {
  try {
    const py::module_ signals = py::module_::import("signal");
    // A routine that writes to a connection which the other side has closed gets an error, no end.
    if (signals.attr("getsignal")(signals.attr("SIGPIPE")).equal(signals.attr("SIG_DFL"))) {
      signals.attr("signal")(signals.attr("SIGPIPE"), signals.attr("SIG_IGN"));
    }
    signals.attr("signal")(signals.attr("SIGALRM"), py::cpp_function([this](const py::args&) { Vence(); }));
    con_limite = true;
  } catch (const py::error_already_set&) {  // not the program's first thread
  }
}

void Rutinas::Interior::Arma(double seconds) {
  if (!con_limite) return;
  try {
    const py::module_ signals = py::module_::import("signal");
    signals.attr("setitimer")(signals.attr("ITIMER_REAL"), seconds, seconds);
  } catch (const py::error_already_set&) {  // without it a routine has no limit, and runs all the same
  }
}

// How often a running routine is looked at, in seconds: each look wakes it out of what it waits for.
double Rutinas::Interior::Vuelta() const {
  if (fin_pedido) return 0.1;
  constexpr double kLongest = 1.0;
  return opciones.limite_ms > 0 ? std::min(opciones.limite_ms / 2000.0, kLongest) : kLongest;
}

// Called by the interpreter, between two of its steps or out of a wait, again and again.
void Rutinas::Interior::Vence() {
  if (corriendo.empty()) return;
  const Reloj::time_point now = Reloj::now();
  if (SeTermina()) return VenceAlTerminar(now);
  if (corriendo.back().detenida) return Detiene(Nombre(*corriendo.back().ficha) + " se detuvo");
  if (preguntando || opciones.limite_ms <= 0) return;
  const RutinaCargada& routine = *corriendo.back().ficha;
  const Reloj::duration ran = now - corriendo.back().desde - corriendo.back().en_espera;
  if (Milisegundos(ran - corriendo.back().preguntado) < opciones.limite_ms) return;
  const auto seconds = static_cast<int>((Milisegundos(ran) + 500) / 1000);
  preguntando = true;
  const bool goes_on = opciones.observador && opciones.observador->SigueEsperando(routine, seconds);
  preguntando = false;
  const Reloj::duration waited = Reloj::now() - now;
  for (Marca& mark : corriendo) mark.en_espera += waited;
  corriendo.back().preguntado = ran;
  if (goes_on) return;
  if (SeTermina()) return Detiene(Nombre(routine) + " se detuvo porque el programa se cierra");
  Detiene(Nombre(routine) + " se detuvo porque no había terminado a los " + std::to_string(seconds) +
          (seconds == 1 ? " segundo" : " segundos"));
}

// The program has been told to end: nobody is asked any more.
void Rutinas::Interior::VenceAlTerminar(Reloj::time_point now) {
  if (!fin_pedido) {
    fin_pedido = now;
    Arma(Vuelta());
  }
  const Marca& mark = corriendo.back();
  const bool spent = now - *fin_pedido >= kParaTerminarTodas;
  if (!spent && now - std::max(mark.desde, *fin_pedido) < kParaTerminar) return;
  Detiene(Nombre(*mark.ficha) + " se detuvo porque el programa se cierra");
}

// Raises in the routine at hand what its own traps let pass; in one that is told again, having caught
// that, from here on at every line.
void Rutinas::Interior::Detiene(const std::string& why) {
  Marca& mark = corriendo.back();
  const Reloj::time_point now = Reloj::now();
  if (!mark.detenida) {
    mark.detenida = now;
  } else if (now - *mark.detenida < kParaObedecer) {
    return;  // it may be putting things in order
  } else {
    PyEval_SetTrace(NiUnaMas, detenida(why).ptr());
  }
  PyErr_SetString(detenida.ptr(), why.c_str());
  throw py::error_already_set();
}

}  // namespace tarvik::python
