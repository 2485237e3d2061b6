// The interpreter of the deployer's routines: how it starts, and how it ends with the threads that they left.
#include "python/rutinas.h"

#include "data/error.h"
#include "python/bind_all.h"

PYBIND11_EMBEDDED_MODULE(tarvik, module) { tarvik::python::BindAll(module); }

namespace tarvik::python {

// NOLINTNEXTLINE(bugprone-exception-escape): what fails here ends the program, which is ending anyway
Rutinas::Interior::~Interior() {
  if (anfitrion) {
    for (const auto& [key, routines] : por_clave) anfitrion->Gancho(key, {});
  }
  en_reposo.reset();
  AlEsperarAlOperador({});
  por_clave.clear();
  confianza.reset();
  detenida = py::object();
  // A thread of the deployer's that never ends would keep the interpreter, and with it the program: it
  // is left to the process's own end.
  // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new)
  if (interprete && !HilosTerminados()) new py::scoped_interpreter(std::move(*interprete));
}

// Waits for the threads that a routine has left, and gives whether they are done: for as long as they
// take, or for a while once the program has been told to end.
bool Rutinas::Interior::HilosTerminados() const {
  try {
    const py::module_ threading = py::module_::import("threading");
    const py::object own = threading.attr("current_thread")();
    std::optional<Reloj::time_point> end;
    for (const auto& thread : threading.attr("enumerate")()) {
      if (thread.is(own) || thread.attr("daemon").cast<bool>()) continue;
      while (thread.attr("is_alive")().cast<bool>()) {
        if (!end && SeTermina()) end = Reloj::now() + kParaTerminar;
        if (end && Reloj::now() > *end) return false;
        thread.attr("join")(0.1);
      }
    }
    return true;
  } catch (const py::error_already_set&) {
    return true;
  }
}

void Rutinas::Interior::Arranca() {
  // Nothing of the machine's environment decides what a routine finds: neither the locale nor a
  // path of somebody else's.
  PyPreConfig before;
  PyPreConfig_InitIsolatedConfig(&before);
  before.utf8_mode = 1;
  const PyStatus status = Py_PreInitialize(&before);
  if (PyStatus_Exception(status)) throw data::Error(status.err_msg ? status.err_msg : "preparación");
  PyConfig config;
  PyConfig_InitIsolatedConfig(&config);
  config.install_signal_handlers = 0;  // an interrupt is the program's own affair
  config.write_bytecode = 0;           // nothing is left in the deployer's folder
  config.buffered_stdio = 0;
  PyConfig_SetBytesString(&config, &config.program_name, TARVIK_PYTHON_PROGRAM);
  interprete.emplace(&config, 0, nullptr, false);

  py::module_::import("tarvik");  // a file need not ask for it: its routines are handed the module's objects
  py::module_ sys = py::module_::import("sys");
  sys.attr("stdin") = py::none();  // there is nobody to answer
  confianza.emplace(carpeta);
  detenida =
      py::reinterpret_steal<py::object>(PyErr_NewException("tarvik.Detenida", PyExc_BaseException, nullptr));
  PonLimite();
  AlEsperarAlOperador([this](Reloj::duration waited) {
    for (Marca& mark : corriendo) mark.en_espera += waited;
  });
}

}  // namespace tarvik::python
