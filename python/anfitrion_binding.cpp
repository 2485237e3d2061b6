// The stand-alone host as a Python object: what happened is kept in Python's own lists, and a
// script's functions stand behind boxes, modal shows, pickers and hooks.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <memory>
#include <mutex>

#include "data/error.h"
#include "data/text.h"
#include "forms/headless_platform.h"
#include "host/anfitrion.h"
#include "host/registro.h"
#include "python/binding.h"
#include "service/claves.h"
#include "service/entradas_salidas.h"

namespace tarvik::python {

namespace {

// What a routine raised, as the suite's traps are to see it. What only ends a program (an interrupt
// from the keyboard, an exit) is raised again when the script's own call returns.
data::Error Raised(py::error_already_set& raised) {
  if (!raised.matches(PyExc_Exception)) KeepRaised(raised);
  std::string text = py::str(raised.value());
  if (text.empty()) text = py::str(raised.type().attr("__name__"));
  return data::Error(text);
}

// What a script reads and sets: its lists, its answers, its functions.
struct Cuaderno {
  py::list sentencias, mensajes, listas, respuestas, ganchos_disparados, movimientos, impresos, navegado,
      presentadas, regresadas, selectores, no_atrapados, pantallas, llamadas;
  py::dict ganchos;
  py::object ahora = py::none(), al_mostrar_modal = py::none(), al_mostrar_selector = py::none();
  int pitidos = 0;
  py::object ultima;  // the last statement, as listed
  std::string texto_de_la_ultima;
};

// The host itself. Every screen and control keeps it alive; the script's notebook may go before it,
// and from then on nothing is kept any more.
class Nucleo final : public host::Registro,
                     public host::Selector,
                     public std::enable_shared_from_this<Nucleo> {
 public:
  Nucleo(const std::string& base, const std::string& usuario, const std::string& estacion,
         const std::string& ruta, bool demo, Cuaderno& notebook)
      : notebook_(&notebook) {
    plataforma_.on_box = [this](forms::BoxKind kind, const std::string& text, int style) {
      return Caja(kind, text, style);
    };
    plataforma_.on_beep = [this] { Note([](Cuaderno& notes) { ++notes.pitidos; }); };
    plataforma_.on_modal = [this](forms::Form& form) { ShowModal(form); };
    plataforma_.on_unhandled = [this](forms::Form*, const std::string& text) {
      Note([&](Cuaderno& notes) { notes.no_atrapados.append(StrOf(text)); });
    };
    plataforma_.on_search_list = [this](forms::SearchBox& box) {
      if (!box.Field()) return;
      Note([&](Cuaderno& notes) {
        notes.listas.append(py::make_tuple(box.Field()->Name(), box.Field()->Index()));
      });
    };
    plataforma_.on_navigate = [this](forms::WebBrowser&, const std::string& name) {
      Note([&](Cuaderno& notes) { notes.navegado.append(StrOf(name)); });
    };
    plataforma_.on_screen_loaded = [this](forms::Form& form) {
      form.Keep(shared_from_this());
      Note([&](Cuaderno& notes) { notes.pantallas.append(FormObject(form)); });
    };
    plataforma_.on_screen_unloaded = [this](forms::Form& form) {
      Note([&](Cuaderno& notes) {
        py::object object = FormObject(form);
        if (notes.pantallas.contains(object)) notes.pantallas.attr("remove")(object);
      });
    };
    plataforma_.on_wait = [this] { return Turn(); };
    plataforma_.clock = [this] {
      std::optional<data::DateTime> now;
      Note([&](Cuaderno& notes) { now = DateTimeOf(notes.ahora); });
      return now;
    };
    host::Opciones opciones;
    opciones.base = base;
    opciones.usuario = usuario;
    opciones.estacion = estacion;
    opciones.ruta = ruta;
    opciones.demo = demo;
    opciones.plataforma = &plataforma_;
    opciones.testigo = this;
    opciones.selector = this;
    anfitrion_ = std::make_unique<host::Anfitrion>(opciones);
    for (const auto& clave : service::kClaves) {
      const std::string key(clave.clave);
      anfitrion_->Gancho(key,
                         [this, key](forms::Form& form, host::AmbienteLocal&) { RunRoutine(key, form); });
    }
  }

  host::Anfitrion& Host() { return *anfitrion_; }
  host::AmbienteLocal& Ambiente() { return anfitrion_->Ambiente(); }
  // As a script holds them: whoever has one has the host.
  std::shared_ptr<host::AmbienteLocal> AmbientePropio() { return {shared_from_this(), &Ambiente()}; }
  std::shared_ptr<host::FormaMaestra> ParentPropio() { return {shared_from_this(), &anfitrion_->Parent()}; }
  forms::HeadlessPlatform& Plataforma() { return plataforma_; }

  // On a connection of its own, outside the system. Any thread may call it.
  data::Rows Sql(const std::string& text, const std::vector<data::Value>& values) {
    py::gil_scoped_release release;
    const std::lock_guard lock(apart_guard_);
    if (cerrado_) throw data::Error("La base está cerrada");
    if (!apart_) apart_ = anfitrion_->Base().Connect();
    return apart_->Run(text, values);
  }

  // Closes what is open, refusals or not, and lets go of the base.
  void Cierra() {
    if (std::exchange(cerrado_, true)) return;
    const auto screens = plataforma_.Screens();
    for (const auto& screen : screens) {
      screen->Act([&] { screen->Unload(); });
      screen->Discard();
    }
    py::gil_scoped_release release;
    const std::lock_guard lock(apart_guard_);
    apart_.reset();
    anfitrion_->Conexion().Close();
  }
  void ForgetNotebook() { notebook_ = nullptr; }

  // ---- host::Testigo ----
  void Gancho(const std::string& key, const data::Value& value) override {
    Note([&](Cuaderno& notes) { notes.ganchos_disparados.append(py::make_tuple(key, ToPython(value))); });
  }
  void Movimiento(const host::Propiedades& properties, double amount) override {
    Note([&](Cuaderno& notes) {
      py::dict held;
      held["Ambiente"] = py::cast(AmbientePropio());
      for (const auto& [name, value] : properties) {
        held[StrOf(name)] = name == "Aplica" ? py::object(py::bool_(data::IsTrue(value))) : ToPython(value);
      }
      held["resultado"] = amount;
      notes.movimientos.append(held);
    });
  }
  void Impreso(const std::string& format, std::int32_t number) override {
    Note([&](Cuaderno& notes) { notes.impresos.append(py::make_tuple(StrOf(format), number)); });
  }
  void Presentada(forms::Form& form) override {
    Note([&](Cuaderno& notes) { notes.presentadas.append(FormObject(form)); });
  }
  void Regresada(forms::Form&, const std::string& name) override {
    Note([&](Cuaderno& notes) { notes.regresadas.append(StrOf(name)); });
  }
  void LlamadaDeParent(std::string_view name, const std::vector<data::Value>& arguments) override {
    Note([&](Cuaderno& notes) {
      py::list values;
      for (const auto& argument : arguments) values.append(ToPython(argument));
      notes.llamadas.append(py::make_tuple(StrOf(name), py::tuple(values)));
    });
  }

  // ---- host::Selector ----
  bool Elige(const std::string& clase, const std::string& titulo, forms::TextBox& campo,
             std::string& elegido) override {
    bool chosen = false;
    Note([&](Cuaderno& notes) {
      notes.selectores.append(py::make_tuple(clase, StrOf(titulo), campo.Name(), campo.Index()));
      if (notes.al_mostrar_selector.is_none()) return;
      try {
        py::object given = notes.al_mostrar_selector(clase, StrOf(titulo), ControlObject(campo));
        chosen = !given.is_none();
        if (chosen) elegido = TextOf(given);
      } catch (py::error_already_set& raised) {
        throw Raised(raised);
      }
    });
    return chosen;
  }

 protected:
  // A wait asks the same thing over and over: it is kept once, and listed each time.
  void AnotaSentencia(std::string_view text) override {
    Note([&](Cuaderno& notes) {
      if (!notes.ultima || text != notes.texto_de_la_ultima) {
        notes.texto_de_la_ultima = text;
        notes.ultima = StrOf(text);
      }
      notes.sentencias.append(notes.ultima);
    });
  }
  void AnotaMensaje(const host::MensajeVisto& mensaje) override {
    Note([&](Cuaderno& notes) { notes.mensajes.append(py::cast(mensaje)); });
  }
  bool SiguienteRespuesta() override {
    bool yes = false;
    Note([&](Cuaderno& notes) {
      if (!notes.respuestas.empty()) yes = py::bool_(notes.respuestas.attr("pop")(0));
    });
    return yes;
  }

 private:
  template <class Function>
  void Note(Function&& function) {
    if (!notebook_) return;
    py::gil_scoped_acquire gil;
    function(*notebook_);
  }

  // A turn of a wait on another program: the script's other threads run, and what ends the program
  // (an interrupt from the keyboard, an exit) ends the wait and is raised from the script's own call.
  bool Turn() {
    py::gil_scoped_acquire held;
    { py::gil_scoped_release others; }
    if (PyErr_CheckSignals() == 0) return false;
    py::error_already_set raised;
    KeepRaised(raised);
    return true;
  }

  // What the script's function raises is the script's: it comes out of its own call, once the form
  // is gone.
  void ShowModal(forms::Form& form) {
    Note([&](Cuaderno& notes) {
      if (notes.al_mostrar_modal.is_none()) return;
      try {
        py::object function = notes.al_mostrar_modal;
        function(FormObject(form));
      } catch (py::error_already_set& raised) {
        KeepRaised(raised);
      }
    });
  }

  void RunRoutine(const std::string& key, forms::Form& form) {
    Note([&](Cuaderno& notes) {
      if (!notes.ganchos.contains(key)) return;
      try {
        py::object routine = notes.ganchos[py::str(key)];
        routine(FormObject(form), py::cast(AmbientePropio()));
      } catch (py::error_already_set& raised) {
        throw Raised(raised);
      }
    });
  }

  Cuaderno* notebook_;
  forms::HeadlessPlatform plataforma_;
  std::unique_ptr<host::Anfitrion> anfitrion_;
  std::mutex apart_guard_;
  std::unique_ptr<data::EngineConnection> apart_;
  bool cerrado_ = false;
};

// The Python object: notebook and host. Letting go of it closes the host.
struct Guion : Cuaderno {
  Guion(const std::string& base, const std::string& usuario, const std::string& estacion,
        const std::string& ruta, bool demo)
      : nucleo(std::make_shared<Nucleo>(base, usuario, estacion, ruta, demo, *this)) {}
  ~Guion() {
    nucleo->ForgetNotebook();
    nucleo->Cierra();
  }
  Guion(const Guion&) = delete;
  Guion& operator=(const Guion&) = delete;

  std::shared_ptr<Nucleo> nucleo;
  py::object parent;  // its Python object, which carries `llamadas`
};

// The public class, with the references that a script may take away and put back.
struct Puerta {
  std::shared_ptr<Nucleo> nucleo;
  EntradasSalidas door;
  std::shared_ptr<host::AmbienteLocal> ambiente;  // what the door was given
  std::shared_ptr<host::FormaMaestra> parent;
};

// Settings by name: Ambiente.Parametros["Almacen"].
struct Parametros {
  host::AmbienteLocal& ambiente;
};

// lvListView, and its ListItems: a live list of document numbers.
struct ListView {
  host::FormaMaestra& forma;
};
struct Elementos {
  host::FormaMaestra& forma;

  [[nodiscard]] py::list List() const {
    py::list items;
    for (const auto& item : forma.elementos) items.append(ToPython(item));
    return items;
  }
  void Take(const py::iterable& items) {
    std::vector<data::Value> taken;
    for (const auto& item : items) taken.push_back(ValueOf(item));
    forma.elementos = std::move(taken);
  }
};

// A getter whose result keeps its owner alive: a piece of the host must not outlive it.
template <class Getter>
py::cpp_function Inside(Getter&& getter) {
  return py::cpp_function(std::forward<Getter>(getter), py::keep_alive<0, 1>());
}

void BindAmbiente(py::module_& module) {
  py::class_<Parametros>(module, "Parametros")
      .def("__getitem__", [](Parametros& settings,
                             const std::string& name) { return ToPython(settings.ambiente.Parametro(name)); })
      .def("__setitem__", [](Parametros& settings, const std::string& name,
                             const py::object& value) { settings.ambiente.Parametro(name, ValueOf(value)); })
      .def("keys", [](Parametros& settings) { return settings.ambiente.NombresDeParametros(); });

  py::class_<host::AmbienteLocal, std::shared_ptr<host::AmbienteLocal>> ambiente(module, "Ambiente");
  for (const char* name :
       {"Usuario", "Estacion", "Moneda", "ClaveLocal", "FormatoImporte", "FormatoCantidad", "RutaBase"}) {
    ambiente.def_property(
        name, [name](const host::AmbienteLocal& self) { return ToPython(self.Lee(name)); },
        [name](host::AmbienteLocal& self, const py::object& value) { self.Pon(name, TextOf(value)); });
  }
  for (const char* name : {"ValorFechaA", "ValorFechaB", "ValorDeGancho"}) {
    ambiente.def_property(
        name, [name](const host::AmbienteLocal& self) { return ToPython(self.Lee(name)); },
        [name](host::AmbienteLocal& self, const py::object& value) { self.Pon(name, ValueOf(value)); });
  }
  ambiente.def_property_readonly("Parametros",
                                 Inside([](host::AmbienteLocal& self) { return Parametros{self}; }));
}

void BindParent(py::module_& module) {
  py::class_<Elementos> items(module, "ListItems");
  // What reads the list, and what changes it: as a list of Python's own would.
  for (const char* name : {"__len__", "__getitem__", "__iter__", "__contains__", "__eq__", "__ne__",
                           "__repr__", "__add__", "__reversed__", "index", "count", "copy"}) {
    items.def(name,
              [name](const Elementos& self, const py::args& args) { return self.List().attr(name)(*args); });
  }
  for (const char* name : {"__setitem__", "__delitem__", "append", "extend", "insert", "pop", "remove",
                           "clear", "reverse", "sort"}) {
    items.def(name, [name](Elementos& self, const py::args& args) {
      py::list list = self.List();
      py::object result = list.attr(name)(*args);
      self.Take(list);
      return result;
    });
  }
  py::class_<ListView>(module, "ListView")
      .def_property("ListItems", Inside([](const ListView& view) { return Elementos{view.forma}; }),
                    py::cpp_function([](ListView& view, const py::iterable& values) {
                      Elementos{view.forma}.Take(values);
                    }))
      .def_property(
          "SelectedItem", [](const ListView& view) { return view.forma.seleccionado; },
          [](ListView& view, const py::object& position) {
            view.forma.seleccionado = position.is_none() ? 0 : position.cast<int>();
          });
  // `llamadas` is put on the object by the host that owns it.
  py::class_<host::FormaMaestra, std::shared_ptr<host::FormaMaestra>>(module, "Parent", py::dynamic_attr())
      .def_property(
          "CatalogoActivo", [](const host::FormaMaestra& self) { return StrOf(self.catalogo_activo); },
          [](host::FormaMaestra& self, const py::object& name) { self.catalogo_activo = TextOf(name); })
      .def_property_readonly("lvListView", Inside([](host::FormaMaestra& self) { return ListView{self}; }));
}

void BindDoor(py::module_& module) {
  using E = EntradasSalidas;
  py::class_<Puerta> type(module, "EntradasSalidas");
  type.def_property(
          "Ambiente", [](Puerta& self) { return self.ambiente; },
          [](Puerta& self, const std::shared_ptr<host::AmbienteLocal>& ambiente) {
            self.ambiente = ambiente;
            self.door.Ambiente = ambiente.get();
          })
      .def_property(
          "Parent", [](Puerta& self) { return self.parent; },
          [](Puerta& self, const std::shared_ptr<host::FormaMaestra>& parent) {
            self.parent = parent;
            self.door.Parent = parent.get();
          });
  auto shows = [&](const char* name, void (E::*operation)(bool)) {
    type.def(
        name, [operation](Puerta& self, bool modal) { Called([&] { (self.door.*operation)(modal); }); },
        py::arg("bolModal") = false);
  };
  shows("NuevaEntrada", &E::NuevaEntrada);
  shows("NuevaSalida", &E::NuevaSalida);
  // A number goes by the short name and by the suite's own.
  auto opens = [&](const char* name, const char* number, void (E::*operation)(std::int32_t, bool)) {
    for (const char* argument : {"n", number}) {
      type.def(
          name,
          [operation](Puerta& self, std::int32_t value, bool modal) {
            Called([&] { (self.door.*operation)(value, modal); });
          },
          py::arg(argument), py::arg("bolModal") = false);
    }
  };
  opens("ModificaEntrada", "nEntrada", &E::ModificaEntrada);
  opens("ModificaSalida", "nSalida", &E::ModificaSalida);
  auto takes = [&](const char* name, const char* number, void (E::*operation)(std::int32_t)) {
    for (const char* argument : {"n", number}) {
      type.def(
          name,
          [operation](Puerta& self, std::int32_t value) { Called([&] { (self.door.*operation)(value); }); },
          py::arg(argument));
    }
  };
  takes("ConsultaEntrada", "nEntrada", &E::ConsultaEntrada);
  takes("ConsultaSalida", "nSalida", &E::ConsultaSalida);
  takes("EliminaEntrada", "nEntrada", &E::EliminaEntrada);
  takes("EliminaSalida", "nSalida", &E::EliminaSalida);
  for (const char* argument : {"n", "nId"}) {
    type.def(
        "movimientoEstacion",
        [](Puerta& self, std::int32_t number, bool modal) {
          Called([&] { self.door.movimientoEstacion(number, modal); });
        },
        py::arg(argument), py::arg("bolModal"));
  }
}

// A list that the script may empty, or replace by another list's contents.
template <py::list Cuaderno::*kList>
void List(py::class_<Guion, std::shared_ptr<Guion>>& type, const char* name) {
  type.def_property(
      name, [](Guion& self) { return self.*kList; },
      [](Guion& self, const py::iterable& values) {
        py::list copied(values);
        (self.*kList).attr("clear")();
        (self.*kList).attr("extend")(copied);
      });
}

// A text, or a path of Python's own.
std::string PathOf(const py::object& path) { return TextOf(py::module_::import("os").attr("fspath")(path)); }

py::list SqlRows(const data::Rows& rows) {
  py::list result;
  for (const auto& row : rows.rows) {
    py::dict record;
    for (std::size_t column = 0; column < rows.columns.size(); ++column) {
      const data::Value& value = row[column];
      const bool date = value.As<data::Date>() || value.As<data::DateTime>();
      record[StrOf(data::LowerAscii(rows.columns[column]))] =
          date ? py::object(StrOf(data::ToText(value))) : ToPython(value);
    }
    result.append(record);
  }
  return result;
}

void BindMensaje(py::module_& module) {
  using host::MensajeVisto;
  py::class_<MensajeVisto>(module, "Mensaje")
      .def_readonly("clase", &MensajeVisto::clase)
      .def_readonly("numeros", &MensajeVisto::numeros)
      .def_property_readonly("numero",
                             [](const MensajeVisto& seen) {
                               return seen.numeros.empty() ? std::optional<int>() : seen.numeros.front();
                             })
      .def_property_readonly("texto", [](const MensajeVisto& seen) { return StrOf(seen.texto); })
      .def_readonly("estilo", &MensajeVisto::estilo)
      .def_readonly("respuesta", &MensajeVisto::respuesta)
      .def("__repr__", [](const MensajeVisto& seen) {
        return "<" + seen.clase + " " + std::string(py::repr(StrOf(seen.texto))) + ">";
      });
}

}  // namespace

py::object AmbienteObject(service::Ambiente* ambiente, forms::Form& form) {
  auto* own = dynamic_cast<host::AmbienteLocal*>(ambiente);
  if (!own) return py::none();
  // The screen keeps its host.
  return py::cast(std::shared_ptr<host::AmbienteLocal>(form.shared_from_this(), own));
}

py::object ParentObject(service::LateBound* parent, forms::Form& form) {
  auto* own = dynamic_cast<host::FormaMaestra*>(parent);
  if (!own) return py::none();
  return py::cast(std::shared_ptr<host::FormaMaestra>(form.shared_from_this(), own));
}

service::Ambiente* AmbienteOf(const py::object& object) {
  return object.is_none() ? nullptr : object.cast<host::AmbienteLocal*>();
}

service::LateBound* ParentOf(const py::object& object) {
  return object.is_none() ? nullptr : object.cast<host::FormaMaestra*>();
}

void BindAnfitrion(py::module_& module) {
  BindAmbiente(module);
  BindParent(module);
  BindDoor(module);
  BindMensaje(module);

  py::class_<Guion, std::shared_ptr<Guion>> type(module, "Anfitrion");
  type.def(py::init([](const py::object& base, const py::object& usuario, const py::object& estacion,
                       const py::object& ruta, bool demo) {
             auto guion =
                 std::make_shared<Guion>(PathOf(base), TextOf(usuario), TextOf(estacion), PathOf(ruta), demo);
             py::object parent = py::cast(guion->nucleo->ParentPropio());
             parent.attr("llamadas") = guion->llamadas;
             guion->parent = parent;
             return guion;
           }),
           py::arg("base"), py::arg("usuario"), py::arg("estacion"), py::arg("ruta"),
           py::arg("demo") = false);
  List<&Cuaderno::sentencias>(type, "sentencias");
  List<&Cuaderno::mensajes>(type, "mensajes");
  List<&Cuaderno::listas>(type, "listas");
  List<&Cuaderno::respuestas>(type, "respuestas");
  List<&Cuaderno::ganchos_disparados>(type, "ganchos_disparados");
  List<&Cuaderno::movimientos>(type, "movimientos");
  List<&Cuaderno::impresos>(type, "impresos");
  List<&Cuaderno::navegado>(type, "navegado");
  List<&Cuaderno::presentadas>(type, "presentadas");
  List<&Cuaderno::regresadas>(type, "regresadas");
  List<&Cuaderno::selectores>(type, "selectores");
  List<&Cuaderno::no_atrapados>(type, "no_atrapados");
  type.def_property_readonly("pantallas", [](Guion& self) { return self.pantallas; })
      .def_property(
          "ganchos", [](Guion& self) { return self.ganchos; },
          [](Guion& self, const py::dict& routines) {
            py::dict copied = routines.attr("copy")();
            self.ganchos.attr("clear")();
            self.ganchos.attr("update")(copied);
          })
      .def_property_readonly("Ambiente", [](Guion& self) { return self.nucleo->AmbientePropio(); })
      .def_property_readonly("Parent", [](Guion& self) { return self.nucleo->ParentPropio(); })
      .def(
          "EntradasSalidas",
          [](Guion& self) {
            auto puerta = std::unique_ptr<Puerta>(
                new Puerta{self.nucleo, EntradasSalidas(self.nucleo->Host()), self.nucleo->AmbientePropio(),
                           self.nucleo->ParentPropio()});
            puerta->door.Ambiente = puerta->ambiente.get();
            puerta->door.Parent = puerta->parent.get();
            return puerta;
          },
          py::keep_alive<0, 1>())
      .def("sql",
           [](Guion& self, const py::object& text, const py::args& values) {
             std::vector<data::Value> bound;
             for (const auto& value : values) bound.push_back(ValueOf(value));
             return SqlRows(self.nucleo->Sql(TextOf(text), bound));
           })
      .def("mensaje",
           [](Guion& self, int number) {
             const data::Rows rows =
                 self.nucleo->Sql("SELECT texto FROM mensajes WHERE numero = ?", {number});
             return StrOf(rows.rows.empty() ? std::to_string(number) : data::ToText(rows.rows[0][0]));
           })
      .def_readwrite("pitidos", &Guion::pitidos)
      .def_property(
          "ahora", [](Guion& self) { return self.ahora; },
          [](Guion& self, const py::object& now) {
            if (!now.is_none() && !DateTimeOf(now)) throw py::type_error("ahora es None o un datetime");
            self.ahora = now;
          })
      .def_readwrite("al_mostrar_modal", &Guion::al_mostrar_modal)
      .def_readwrite("al_mostrar_selector", &Guion::al_mostrar_selector)
      .def(
          "falla",
          [](Guion& self, const std::string& pattern, int times, const std::string& text) {
            self.nucleo->Falla(pattern, times, text);
          },
          py::arg("pattern"), py::arg("veces") = 1, py::arg("texto") = "falla provocada")
      .def(
          "falla_servicio",
          [](Guion& self, const std::string& name, int times, const std::string& text) {
            self.nucleo->FallaServicio(name, times, text);
          },
          py::arg("name"), py::arg("veces") = 1, py::arg("texto") = "falla provocada")
      .def(
          "procesa_eventos",
          [](Guion& self, long ms) { Called([&] { self.nucleo->Plataforma().Advance(ms); }); },
          py::arg("ms") = 0)
      .def("cierra", [](Guion& self) { Called([&] { self.nucleo->Cierra(); }); });
}

}  // namespace tarvik::python
