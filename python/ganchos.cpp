// The deployer's routines: interpreter, loading, running, and what a run changed.
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
#include "data/text.h"
#include "forms/flex_grid.h"
#include "python/bind_all.h"
#include "service/claves.h"
#include "stations/frm_mov_estaciones.h"
#include "wizard/document_wizard.h"

PYBIND11_EMBEDDED_MODULE(tarvik, module) { tarvik::python::BindAll(module); }

namespace tarvik::python {

namespace {

namespace fs = std::filesystem;
using Reloj = std::chrono::steady_clock;

double Milisegundos(Reloj::duration time) { return std::chrono::duration<double, std::milli>(time).count(); }

// ---- the screen before and after a run ----

bool Cancelado(const forms::Form& form) {
  if (const auto* document = dynamic_cast<const DocumentWizard*>(&form)) return document->CancelaProceso;
  if (const auto* transfer = dynamic_cast<const frmMovEstaciones*>(&form)) return transfer->CancelaProceso;
  return false;
}

std::string Modo(const forms::Form& form) {
  const auto* document = dynamic_cast<const DocumentWizard*>(&form);
  return document ? document->Modo : std::string();
}

// What a control holds, as a text; empty for kinds that hold nothing.
std::string Contenido(const forms::Control& control) {
  if (const auto* box = dynamic_cast<const forms::TextBox*>(&control)) return box->Text();
  if (const auto* check = dynamic_cast<const forms::CheckBox*>(&control))
    return std::to_string(check->Value());
  if (const auto* label = dynamic_cast<const forms::Label*>(&control)) return label->Caption();
  if (const auto* button = dynamic_cast<const forms::Button*>(&control)) return button->Caption();
  if (const auto* list = dynamic_cast<const forms::ComboBox*>(&control)) return list->Text();
  if (const auto* picker = dynamic_cast<const forms::DatePicker*>(&control)) {
    return picker->Value() ? data::ToText(data::Value(*picker->Value())) : std::string();
  }
  if (const auto* browser = dynamic_cast<const forms::WebBrowser*>(&control)) return browser->Location();
  return {};
}

const char* SiNo(bool yes) { return yes ? "sí" : "no"; }

// A picture of everything on a screen that a routine can change.
class Foto {
 public:
  explicit Foto(const forms::Form& form)
      : caption_(form.Caption()), mode_(Modo(form)), cancelled_(Cancelado(form)) {
    for (const forms::Control* control : form.Controls()) {
      pieces_.push_back({control->FullName(), Contenido(*control), control->Enabled(), control->Visible()});
      if (const auto* grid = dynamic_cast<const forms::FlexGrid*>(control)) grids_.emplace_back(*grid);
    }
  }

  [[nodiscard]] bool Cancelada() const { return cancelled_; }

  // What is different in a later picture of the same screen.
  void Compara(const Foto& later, Corrida& run) const {
    const auto note = [&run](const std::string& name, std::string_view before, std::string_view after) {
      if (before == after) return;
      if (run.cambios.size() < kCambios) {
        run.cambios.push_back({name, Recorta(before), Recorta(after)});
      } else {
        ++run.cambios_omitidos;
      }
    };
    for (std::size_t i = 0; i < std::min(pieces_.size(), later.pieces_.size()); ++i) {
      const Pieza& piece = pieces_[i];
      const Pieza& now = later.pieces_[i];
      note(piece.nombre, piece.contenido, now.contenido);
      note(piece.nombre + ".Enabled", SiNo(piece.habilitado), SiNo(now.habilitado));
      note(piece.nombre + ".Visible", SiNo(piece.visible), SiNo(now.visible));
    }
    for (std::size_t i = 0; i < std::min(grids_.size(), later.grids_.size()); ++i) {
      grids_[i].Compara(later.grids_[i], note);
    }
    note("Caption", caption_, later.caption_);
    note("Modo", mode_, later.mode_);
    note("CancelaProceso", SiNo(cancelled_), SiNo(later.cancelled_));
  }

 private:
  struct Pieza {
    std::string nombre;
    std::string contenido;
    bool habilitado;
    bool visible;
  };

  // The cells that hold something: a grid has thousands of rows and few of them are used.
  class Malla {
   public:
    explicit Malla(const forms::FlexGrid& grid)
        : nombre_(grid.FullName()), filas_(grid.Rows()), columnas_(grid.Cols()) {
      for (int row = 0; row < filas_; ++row) {
        for (int column = 0; column < columnas_; ++column) {
          const std::string& text = grid.TextMatrix(row, column);
          if (!text.empty()) celdas_.emplace_back(std::pair(row, column), text);
        }
      }
    }

    template <class Note>
    void Compara(const Malla& later, const Note& note) const {
      note(nombre_ + ".Rows", std::to_string(filas_), std::to_string(later.filas_));
      note(nombre_ + ".Cols", std::to_string(columnas_), std::to_string(later.columnas_));
      auto a = celdas_.begin();
      auto b = later.celdas_.begin();
      while (a != celdas_.end() || b != later.celdas_.end()) {
        const bool gone = b == later.celdas_.end() || (a != celdas_.end() && a->first < b->first);
        const bool come = a == celdas_.end() || (b != later.celdas_.end() && b->first < a->first);
        const auto& place = come ? b->first : a->first;
        if (gone || come || a->second != b->second) {
          note(nombre_ + "(" + std::to_string(place.first) + ", " + std::to_string(place.second) + ")",
               come ? std::string_view() : std::string_view(a->second),
               gone ? std::string_view() : std::string_view(b->second));
        }
        if (!come) ++a;
        if (!gone) ++b;
      }
    }

   private:
    std::string nombre_;
    int filas_;
    int columnas_;
    std::vector<std::pair<std::pair<int, int>, std::string>> celdas_;  // in the order of their places
  };

  static std::string Recorta(std::string_view text) {
    constexpr std::size_t kLongest = 400;
    if (text.size() <= kLongest) return std::string(text);
    return data::Substring(data::RepairUtf8(text), 0, kLongest) + "…";
  }

  std::string caption_;
  std::string mode_;
  bool cancelled_;
  std::vector<Pieza> pieces_;
  std::vector<Malla> grids_;
};

// ---- what an exception says ----

struct Explicada {
  Fallo fallo;
  std::string rastro;
};

// The text of any object; empty if it can't even give that.
std::string TextoSeguro(const py::handle& object) {
  try {
    return data::RepairUtf8(TextOf(py::str(object)));
  } catch (const py::error_already_set&) {
    return {};
  }
}

std::string Atributo(const py::handle& object, const char* name) {
  if (!py::hasattr(object, name)) return {};
  const py::object held = object.attr(name);
  return held.is_none() ? std::string() : TextoSeguro(held);
}

bool EsDe(py::error_already_set& raised, PyObject* type) { return raised.matches(type); }

// In the folder's own files, the innermost call; outside of them nobody can mend anything.
void PonLugar(py::error_already_set& raised, const std::string& folder, Fallo& failure) {
  if (!raised.trace()) return;
  for (const auto& frame : py::module_::import("traceback").attr("extract_tb")(raised.trace())) {
    const std::string file = TextOf(frame.attr("filename"));
    if (fs::path(file).parent_path() != fs::path(folder)) continue;
    failure.archivo = file;
    failure.linea = frame.attr("lineno").is_none() ? 0 : frame.attr("lineno").cast<int>();
  }
}

constexpr const char* kPidioTerminar = "la rutina pidió terminar el programa; el programa sigue abierto";

// `failure` comes in with the place to be named if the exception knows no better one.
Explicada Explica(py::error_already_set& raised, const std::string& folder, Fallo failure) {
  Explicada explained{std::move(failure), {}};
  explained.fallo.texto = TextoSeguro(raised.value());
  try {
    if (explained.fallo.texto.empty()) explained.fallo.texto = Atributo(raised.type(), "__name__");
    if (EsDe(raised, PyExc_SystemExit) || EsDe(raised, PyExc_KeyboardInterrupt)) {
      explained.fallo.texto = kPidioTerminar;
    }
    PonLugar(raised, folder, explained.fallo);
    const py::object lines =
        py::module_::import("traceback")
            .attr("format_exception")(raised.type(), raised.value(),
                                      raised.trace() ? py::object(raised.trace()) : py::none());
    explained.rastro = TextoSeguro(py::str("").attr("join")(lines));
  } catch (const std::exception&) {  // an exception that fails to describe itself: its text will do
  }
  return explained;
}

std::string EnComillas(const std::string& text) { return "«" + text + "»"; }

// Why a file did not load, in words for an operator.
Fallo FalloDeCarga(py::error_already_set& raised, const std::string& folder, const std::string& file,
                   const py::object& stopped) {
  Fallo failure = Explica(raised, folder, {file, 0, {}}).fallo;
  const std::string own = failure.texto;
  try {
    const py::object value = raised.value();
    if (EsDe(raised, PyExc_SyntaxError)) {
      const std::string where = Atributo(value, "filename");
      if (fs::path(where).parent_path() == fs::path(folder)) failure.archivo = where;
      if (py::isinstance<py::int_>(value.attr("lineno"))) failure.linea = value.attr("lineno").cast<int>();
      const bool indent = EsDe(raised, PyExc_IndentationError);
      failure.texto = std::string(indent ? "la sangría no es correcta" : "error de sintaxis") + " (" +
                      Atributo(value, "msg") + ")";
    } else if (EsDe(raised, PyExc_ModuleNotFoundError)) {
      failure.texto = "no se encuentra el módulo " + EnComillas(Atributo(value, "name"));
    } else if (EsDe(raised, PyExc_ImportError)) {
      failure.texto = "no se puede importar lo que pide (" + own + ")";
    } else if (EsDe(raised, PyExc_NameError)) {
      failure.texto = "no existe el nombre " + EnComillas(Atributo(value, "name"));
    } else if (EsDe(raised, PyExc_OSError)) {
      failure.texto = "no se puede leer un archivo (" + own + ")";
    } else if (!EsDe(raised, stopped.ptr()) && !EsDe(raised, PyExc_SystemExit) &&
               !EsDe(raised, PyExc_KeyboardInterrupt)) {
      failure.texto = Atributo(raised.type(), "__name__") + ": " + own;
    }
  } catch (const std::exception&) {
    failure.texto = own;
  }
  return failure;
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
    Reloj::duration en_espera{};   // of the operator's answers
    Reloj::duration preguntado{};  // how long it had run when the operator was last asked
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
  void Vence();

  OpcionesDeRutinas opciones;
  host::Anfitrion* anfitrion = nullptr;
  std::string carpeta;
  std::vector<RutinaCargada> cargadas;
  std::vector<Fallo> fallos;
  std::vector<Marca> corriendo;
  bool preguntando = false;  // the operator, about a long run
  bool con_limite = false;

  // In this order: what lives in the interpreter goes before it does.
  std::optional<py::scoped_interpreter> interprete;
  std::map<std::string, std::vector<Rutina>> por_clave;
  py::object detenida;  // what stops a routine; no Exception, so that its own traps let it pass
  std::optional<py::gil_scoped_release> en_reposo;  // threads of the deployer's run between the routines

  // While it lives, the limit watches over one run.
  class Plazo {
   public:
    Plazo(Interior& interior, const RutinaCargada& routine) : interior_(interior) {
      interior_.corriendo.push_back({&routine, Reloj::now()});
      if (interior_.corriendo.size() == 1) Arma(true);
    }
    ~Plazo() {
      if (interior_.corriendo.size() == 1) Arma(false);
      interior_.corriendo.pop_back();
    }
    Plazo(const Plazo&) = delete;
    Plazo& operator=(const Plazo&) = delete;

    [[nodiscard]] double Milisegundos() const {
      const Marca& mark = interior_.corriendo.back();
      return python::Milisegundos(Reloj::now() - mark.desde - mark.en_espera);
    }

   private:
    void Arma(bool on) {
      if (!interior_.con_limite) return;
      try {
        const double first = interior_.opciones.limite_ms / 1000.0;
        const py::module_ signals = py::module_::import("signal");
        signals.attr("setitimer")(signals.attr("ITIMER_REAL"), on ? first : 0.0,
                                  on ? std::min(first, 0.5) : 0.0);
      } catch (const py::error_already_set&) {  // without it a routine has no limit, and runs all the same
      }
    }
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
  detenida = py::object();
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
  sys.attr("stdin") = py::none();            // there is nobody to answer
  sys.attr("path").attr("append")(carpeta);  // at the end: a file hides no module of the interpreter's
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
    if (opciones.limite_ms <= 0) return;
    signals.attr("signal")(signals.attr("SIGALRM"), py::cpp_function([this](const py::args&) { Vence(); }));
    con_limite = true;
  } catch (const py::error_already_set&) {  // not the program's first thread
  }
}

// Called by the interpreter, between two of its steps or out of a wait, some time after the limit.
void Rutinas::Interior::Vence() {
  if (corriendo.empty() || preguntando) return;
  const RutinaCargada& routine = *corriendo.back().ficha;
  const Reloj::time_point now = Reloj::now();
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
  const std::string what = routine.clave.empty()
                               ? "El archivo " + fs::path(routine.archivo).filename().string()
                               : "La rutina " + routine.clave;
  const std::string text = what + " se detuvo porque no había terminado a los " + std::to_string(seconds) +
                           (seconds == 1 ? " segundo" : " segundos");
  PyErr_SetString(detenida.ptr(), text.c_str());
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
  const Plazo limit(*this, file);
  std::string name = path.stem().string();
  py::module_ sys = py::module_::import("sys");
  py::object modules = sys.attr("modules");
  try {
    py::object module;
    if (modules.contains(name) && Atributo(modules[py::str(name)], "__file__") == path.string()) {
      module = modules[py::str(name)];  // an earlier file has imported it
    } else {
      if (modules.contains(name) || sys.attr("stdlib_module_names").contains(name)) name = "ganchos." + name;
      const py::module_ util = py::module_::import("importlib.util");
      py::object spec = util.attr("spec_from_file_location")(name, path.string());
      module = util.attr("module_from_spec")(spec);
      modules[py::str(name)] = module;
      spec.attr("loader").attr("exec_module")(module);
    }
    TomaFunciones(module, path.string());
  } catch (py::error_already_set& raised) {
    Anota(FalloDeCarga(raised, carpeta, path.string(), detenida));
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
      if (EsDe(raised, PyExc_TypeError)) {
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
    const Plazo limit(*this, routine.ficha);
    try {
      routine.funcion(FormObject(form), py::cast(&ambiente, py::return_value_policy::reference));
      run.milisegundos = limit.Milisegundos();
    } catch (py::error_already_set& raised) {
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
