// The deployer's routines: interpreter, loading, running and stopping.
#include "python/ganchos.h"

#include <pybind11/embed.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string_view>

#include "data/error.h"
#include "python/bind_all.h"
#include "python/confianza.h"
#include "python/fallos.h"
#include "python/foto.h"
#include "service/contract/claves.h"

PYBIND11_EMBEDDED_MODULE(tarvik, module) { tarvik::python::BindAll(module); }

namespace tarvik::python {

namespace {

namespace fs = std::filesystem;
using Reloj = std::chrono::steady_clock;

// Once the program is to end a routine has this long to come to its own end, and all of them this long
// together; one that does not let itself be stopped is then stopped at each of its lines.
constexpr auto kParaTerminar = std::chrono::seconds(1);
constexpr auto kParaTerminarTodas = std::chrono::seconds(3);
constexpr auto kParaObedecer = std::chrono::milliseconds(300);

double Milisegundos(Reloj::duration time) { return std::chrono::duration<double, std::milli>(time).count(); }

// Told by the interpreter of each line that a stopped routine begins: not one of them runs, whatever
// the routine catches.
int NiUnaMas(PyObject* raised, PyFrameObject*, int what, PyObject*) {
  if (what != PyTrace_LINE && what != PyTrace_CALL) return 0;
  PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(raised)), raised);
  return -1;
}

bool PareceClave(std::string_view name) {
  for (const std::string_view stem :
       {"ENTRADAS", "ENTRADA", "SALIDAS", "SALIDA", "MOVESTACIONES", "TALLASYCOLORES"}) {
    if (!name.starts_with(stem) || name.size() == stem.size()) continue;
    const std::string_view number = name.substr(stem.size());
    if (std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; })) return true;
  }
  return false;
}

std::string Nombre(const RutinaCargada& routine) {
  return routine.clave.empty() ? "El archivo " + fs::path(routine.archivo).filename().string()
                               : "La rutina " + routine.clave;
}

bool EsClave(std::string_view name) {
  return std::any_of(service::kClaves.begin(), service::kClaves.end(),
                     [&](const auto& key) { return key.clave == name; });
}

}  // namespace

// ---- the routines ----

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

void Rutinas::Interior::Anota(Fallo failure) {
  if (opciones.bitacora) {
    opciones.bitacora("rutinas", LugarDe(failure.archivo, failure.linea) + ": " + failure.texto);
  }
  fallos.push_back(std::move(failure));
}

void Rutinas::Interior::CargaArchivo(const fs::path& path) {
  const RutinaCargada file{{}, path.string(), 1};
  Plazo limit(*this, file);
  std::string name = path.stem().string();
  py::module_ sys = py::module_::import("sys");
  py::object modules = sys.attr("modules");
  try {
    py::object module;
    if (modules.contains(name) && Atributo(modules[py::str(name)], "__file__") == path.string()) {
      module = modules[py::str(name)];  // an earlier file has imported it
    } else {
      if (modules.contains(name) || sys.attr("stdlib_module_names").contains(name)) name = "ganchos." + name;
      module = confianza->Ejecuta(name, path.string());
    }
    TomaFunciones(module, path.string());
  } catch (py::error_already_set& raised) {
    limit.Obedecido();
    if (const auto why = confianza->Rehusado(path.string())) {
      Anota({path.string(), 0, *why});
    } else {
      Anota(FalloDeCarga(raised, carpeta, path.string(), py::make_tuple(detenida, confianza->Excepcion())));
    }
    modules.attr("pop")(name, py::none());
  }
}

void Rutinas::Interior::TomaFunciones(const py::object& module, const std::string& path) {
  const py::module_ inspect = py::module_::import("inspect");
  for (const auto& item : module.attr("__dict__").cast<py::dict>()) {
    const std::string name = TextOf(item.first);
    py::object function = py::reinterpret_borrow<py::object>(item.second);
    if (!PyCallable_Check(function.ptr())) continue;
    RutinaCargada routine{name, path, 0};
    if (py::hasattr(function, "__code__")) {
      routine.archivo = TextOf(function.attr("__code__").attr("co_filename"));
      routine.linea = function.attr("__code__").attr("co_firstlineno").cast<int>();
    }
    if (!EsClave(name)) {
      if (PareceClave(name))
        Anota({routine.archivo, routine.linea, name + " no es ninguna clave: no se llamará nunca"});
      continue;
    }
    if (inspect.attr("iscoroutinefunction")(function).cast<bool>() ||
        inspect.attr("isgeneratorfunction")(function).cast<bool>()) {
      Anota({routine.archivo, routine.linea,
             name + " no es una función corriente (async o yield): no se llamará"});
      continue;
    }
    try {
      inspect.attr("signature")(function).attr("bind")(py::none(), py::none());
    } catch (py::error_already_set& raised) {
      if (raised.matches(PyExc_TypeError)) {
        Anota({routine.archivo, routine.linea,
               name + " debe tomar dos argumentos, forma y ambiente: no se llamará"});
        continue;
      }  // a callable with no signature to look at is called as it is
    }
    cargadas.push_back(routine);
    por_clave[name].push_back({std::move(routine), std::move(function)});
  }
}

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

std::vector<Fallo> Rutinas::Carga(host::Anfitrion& host, const std::string& folder) {
  Interior& inner = *interior_;
  if (inner.anfitrion) throw data::Error("Las rutinas ya se cargaron");
  inner.anfitrion = &host;

  fs::path path(forms::NativePath(folder));
  if (folder.empty()) {
    path = fs::path(forms::NativePath(data::ToText(host.Ambiente().Lee("RutaBase")))) / "ganchos";
  }
  std::error_code failed;
  path = fs::absolute(path, failed).lexically_normal();
  if (!path.has_filename()) path = path.parent_path();
  inner.carpeta = path.string();
  if (!fs::is_directory(path, failed)) {
    if (!folder.empty()) inner.Anota({inner.carpeta, 0, "no existe la carpeta"});
    return inner.fallos;
  }
  std::vector<fs::path> files;
  for (fs::directory_iterator entry(path, failed), end; !failed && entry != end; entry.increment(failed)) {
    std::error_code gone;
    const std::string name = entry->path().filename().string();
    if (name.ends_with(".py") && !name.starts_with(".") && !entry->is_directory(gone))
      files.push_back(entry->path());
  }
  if (failed) inner.Anota({inner.carpeta, 0, "no se puede leer la carpeta"});
  if (files.empty()) return inner.fallos;
  std::sort(files.begin(), files.end());

  try {
    inner.Arranca();
    for (const auto& file : files) inner.CargaArchivo(file);
    inner.en_reposo.emplace();
  } catch (const std::exception& error) {
    inner.Anota(
        {inner.carpeta, 0, std::string("no se pudo poner en marcha el intérprete (") + error.what() + ")"});
    return inner.fallos;
  }
  for (const auto& [key, routines] : inner.por_clave) {
    host.Gancho(key, [&inner, key = key](forms::Form& form, host::AmbienteLocal& ambiente) {
      inner.Dispara(key, form, ambiente);
    });
  }
  return inner.fallos;
}

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
