// The stand-alone host as a Python object: what happened is kept in Python's own lists, and a
// script's functions stand behind boxes, modal shows, pickers and hooks.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <memory>

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

class Nucleo;

// The host's list form, as the script sees it.
struct Maestra {
  Nucleo& core;
};

// What a routine raised, as the suite's traps are to see it.
data::Error Raised(py::error_already_set& raised) {
  std::string text = py::str(raised.value());
  if (text.empty()) text = py::str(raised.type().attr("__name__"));
  return data::Error(text);
}

class Nucleo final : public host::Registro, public host::Selector {
 public:
  Nucleo(const std::string& base, const std::string& usuario, const std::string& estacion,
         const std::string& ruta, bool demo) {
    plataforma_.on_box = [this](forms::BoxKind kind, const std::string& text, int style) {
      py::gil_scoped_acquire gil;
      return Caja(kind, text, style);
    };
    plataforma_.on_beep = [this] { ++pitidos; };
    plataforma_.on_modal = [this](forms::Form& form) {
      py::gil_scoped_acquire gil;
      if (al_mostrar_modal.is_none()) return;
      try {
        al_mostrar_modal(FormObject(form));
      } catch (py::error_already_set& raised) {
        plataforma_.Unhandled(&form, Raised(raised));
      }
    };
    plataforma_.on_unhandled = [this](forms::Form*, const std::string& text) {
      py::gil_scoped_acquire gil;
      no_atrapados.append(StrOf(text));
    };
    plataforma_.on_search_list = [this](forms::SearchBox& box) {
      py::gil_scoped_acquire gil;
      if (box.Field()) listas.append(py::make_tuple(box.Field()->Name(), box.Field()->Index()));
    };
    plataforma_.on_navigate = [this](forms::WebBrowser&, const std::string& name) {
      py::gil_scoped_acquire gil;
      navegado.append(StrOf(name));
    };
    plataforma_.on_screen_loaded = [this](forms::Form& form) {
      py::gil_scoped_acquire gil;
      py::object object = FormObject(form);
      // A screen works through this host: it may not outlive it.
      py::detail::keep_alive_impl(object, py::cast(this));
      pantallas.append(object);
    };
    plataforma_.on_screen_unloaded = [this](forms::Form& form) {
      py::gil_scoped_acquire gil;
      py::object object = FormObject(form);
      if (pantallas.contains(object)) pantallas.attr("remove")(object);
    };
    plataforma_.clock = [this] {
      py::gil_scoped_acquire gil;
      return DateTimeOf(ahora);
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
      anfitrion_->Gancho(std::string(clave.clave),
                         [this, key = std::string(clave.clave)](forms::Form& form, host::AmbienteLocal&) {
                           Corre(key, form);
                         });
    }
  }

  ~Nucleo() override { Cierra(); }

  host::Anfitrion& Host() { return *anfitrion_; }
  host::AmbienteLocal& Ambiente() { return anfitrion_->Ambiente(); }
  forms::HeadlessPlatform& Plataforma() { return plataforma_; }

  py::list Sql(const std::string& text, const std::vector<data::Value>& values) {
    if (cerrado_) throw data::Error("La base está cerrada");
    if (!aparte_) aparte_ = anfitrion_->Base().Connect();
    data::Rows rows;
    {
      py::gil_scoped_release release;
      rows = aparte_->Run(text, values);
    }
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

  void Cierra() {
    if (cerrado_) return;
    cerrado_ = true;
    if (!anfitrion_) return;
    const auto screens = plataforma_.Screens();
    for (const auto& screen : screens) {
      screen->Act([&] { screen->Unload(); });
      screen->Discard();
    }
    aparte_.reset();
    anfitrion_->Conexion().Close();
  }

  py::list sentencias, mensajes, listas, respuestas, ganchos_disparados, movimientos, impresos, navegado,
      presentadas, regresadas, selectores, no_atrapados, pantallas, llamadas;
  py::dict ganchos;
  py::object ahora = py::none(), al_mostrar_modal = py::none(), al_mostrar_selector = py::none();
  int pitidos = 0;
  Maestra maestra{*this};

  // ---- host::Testigo ----
  void Gancho(const std::string& key, const data::Value& value) override {
    py::gil_scoped_acquire gil;
    ganchos_disparados.append(py::make_tuple(key, ToPython(value)));
  }
  void Movimiento(const host::Propiedades& properties, double amount) override {
    py::gil_scoped_acquire gil;
    py::dict held;
    held["Ambiente"] = py::cast(&Ambiente(), py::return_value_policy::reference);
    for (const auto& [name, value] : properties) held[StrOf(name)] = ToPython(value);
    held["resultado"] = amount;
    movimientos.append(held);
  }
  void Impreso(const std::string& format, std::int32_t number) override {
    py::gil_scoped_acquire gil;
    impresos.append(py::make_tuple(StrOf(format), number));
  }
  void Presentada(forms::Form& form) override {
    py::gil_scoped_acquire gil;
    presentadas.append(FormObject(form));
  }
  void Regresada(forms::Form&, const std::string& name) override {
    py::gil_scoped_acquire gil;
    regresadas.append(StrOf(name));
  }
  void LlamadaDeParent(std::string_view name, const std::vector<data::Value>& arguments) override {
    py::gil_scoped_acquire gil;
    py::list values;
    for (const auto& argument : arguments) values.append(ToPython(argument));
    llamadas.append(py::make_tuple(StrOf(name), py::tuple(values)));
  }

  // ---- host::Selector ----
  bool Elige(const std::string& clase, const std::string& titulo, forms::TextBox& campo,
             std::string& elegido) override {
    py::gil_scoped_acquire gil;
    selectores.append(py::make_tuple(clase, StrOf(titulo), campo.Name(), campo.Index()));
    if (al_mostrar_selector.is_none()) return false;
    try {
      py::object chosen = al_mostrar_selector(clase, StrOf(titulo), ControlObject(campo));
      if (chosen.is_none()) return false;
      elegido = TextOf(chosen);
      return true;
    } catch (py::error_already_set& raised) {
      throw Raised(raised);
    }
  }

 protected:
  void AnotaSentencia(std::string_view text) override {
    py::gil_scoped_acquire gil;
    sentencias.append(StrOf(text));
  }
  void AnotaMensaje(const host::MensajeVisto& mensaje) override { mensajes.append(py::cast(mensaje)); }
  bool SiguienteRespuesta() override { return !respuestas.empty() && py::bool_(respuestas.attr("pop")(0)); }

 private:
  void Corre(const std::string& key, forms::Form& form) {
    py::gil_scoped_acquire gil;
    if (!ganchos.contains(key)) return;
    try {
      py::object routine = ganchos[py::str(key)];
      routine(FormObject(form), py::cast(&Ambiente(), py::return_value_policy::reference));
    } catch (py::error_already_set& raised) {
      throw Raised(raised);
    }
  }

  forms::HeadlessPlatform plataforma_;
  std::unique_ptr<host::Anfitrion> anfitrion_;
  std::unique_ptr<data::EngineConnection> aparte_;  // of sql(): outside the system
  bool cerrado_ = false;
};

// The public class, with the references that a script may take away and put back.
struct Puerta {
  Nucleo& core;
  EntradasSalidas door;
};

// Settings by name: Ambiente.Parametros["Almacen"].
struct Parametros {
  host::AmbienteLocal& ambiente;
};

// lvListView.ListItems: a live list.
struct Elementos {
  host::FormaMaestra& forma;

  [[nodiscard]] py::list List() const {
    py::list items;
    for (const auto& item : forma.elementos) items.append(ToPython(item));
    return items;
  }
};
struct ListView {
  host::FormaMaestra& forma;
};

void BindAmbiente(py::module_& module) {
  py::class_<Parametros>(module, "Parametros")
      .def("__getitem__", [](Parametros& settings,
                             const std::string& name) { return ToPython(settings.ambiente.Parametro(name)); })
      .def("__setitem__", [](Parametros& settings, const std::string& name,
                             const py::object& value) { settings.ambiente.Parametro(name, ValueOf(value)); })
      .def("keys", [](Parametros& settings) { return settings.ambiente.NombresDeParametros(); });

  py::class_<host::AmbienteLocal> ambiente(module, "Ambiente");
  auto text = [&](const char* name, auto getter) {
    ambiente.def_property(
        name, [getter](host::AmbienteLocal& self) { return StrOf((self.*getter)()); },
        [name](host::AmbienteLocal& self, const py::object& value) { self.Pon(name, TextOf(value)); });
  };
  using A = service::Ambiente;
  text("Usuario", &A::Usuario);
  text("Estacion", &A::Estacion);
  text("Moneda", &A::Moneda);
  text("ClaveLocal", &A::ClaveLocal);
  text("FormatoImporte", &A::FormatoImporte);
  text("FormatoCantidad", &A::FormatoCantidad);
  text("RutaBase", &A::RutaBase);
  auto number = [&](const char* name, auto getter) {
    ambiente.def_property(
        name, [getter](host::AmbienteLocal& self) { return (self.*getter)(); },
        [name](host::AmbienteLocal& self, int value) { self.Pon(name, value); });
  };
  number("ValorFechaA", &A::ValorFechaA);
  number("ValorFechaB", &A::ValorFechaB);
  ambiente.def_property(
      "ValorDeGancho", [](const host::AmbienteLocal& self) { return ToPython(self.ValorDeGancho()); },
      [](host::AmbienteLocal& self, const py::object& value) { self.Pon("ValorDeGancho", ValueOf(value)); });
  ambiente.def_property_readonly(
      "Parametros", [](host::AmbienteLocal& self) { return Parametros{self}; }, py::keep_alive<0, 1>());
}

void BindParent(py::module_& module) {
  py::class_<Elementos>(module, "ListItems")
      .def("append",
           [](Elementos& items, const py::object& value) { items.forma.elementos.push_back(ValueOf(value)); })
      .def("clear", [](Elementos& items) { items.forma.elementos.clear(); })
      .def("remove",
           [](Elementos& items, const py::object& value) {
             auto& all = items.forma.elementos;
             auto found = std::find(all.begin(), all.end(), ValueOf(value));
             if (found == all.end()) throw py::value_error("no está en la lista");
             all.erase(found);
           })
      .def("index",
           [](const Elementos& items, const py::object& value) { return items.List().attr("index")(value); })
      .def("__len__", [](const Elementos& items) { return items.forma.elementos.size(); })
      .def("__getitem__",
           [](const Elementos& items, const py::object& at) { return items.List().attr("__getitem__")(at); })
      .def("__iter__", [](const Elementos& items) { return py::iter(items.List()); })
      .def("__contains__",
           [](const Elementos& items, const py::object& value) { return items.List().contains(value); })
      .def("__eq__", [](const Elementos& items,
                        const py::object& other) { return items.List().equal(py::list(other)); })
      .def("__repr__", [](const Elementos& items) { return py::repr(items.List()); });
  py::class_<ListView>(module, "ListView")
      .def_property_readonly(
          "ListItems", [](const ListView& view) { return Elementos{view.forma}; }, py::keep_alive<0, 1>())
      .def_property(
          "SelectedItem", [](const ListView& view) { return view.forma.seleccionado; },
          [](ListView& view, const py::object& position) {
            view.forma.seleccionado = position.is_none() ? 0 : position.cast<int>();
          });
  auto parent = [](Maestra& self) -> host::FormaMaestra& { return self.core.Host().Parent(); };
  py::class_<Maestra>(module, "Parent")
      .def_property(
          "CatalogoActivo", [=](Maestra& self) { return StrOf(parent(self).catalogo_activo); },
          [=](Maestra& self, const py::object& name) { parent(self).catalogo_activo = TextOf(name); })
      .def_property_readonly("llamadas", [](Maestra& self) { return self.core.llamadas; })
      .def_property_readonly(
          "lvListView", [=](Maestra& self) { return ListView{parent(self)}; }, py::keep_alive<0, 1>());
}

void BindDoor(py::module_& module) {
  using E = EntradasSalidas;
  auto inside = py::return_value_policy::reference;
  py::class_<Puerta> type(module, "EntradasSalidas");
  type.def_property(
          "Ambiente",
          [=](Puerta& self) {
            return self.door.Ambiente ? py::cast(&self.core.Ambiente(), inside) : py::object(py::none());
          },
          [](Puerta& self, host::AmbienteLocal* ambiente) { self.door.Ambiente = ambiente; })
      .def_property(
          "Parent",
          [=](Puerta& self) {
            return self.door.Parent ? py::cast(&self.core.maestra, inside) : py::object(py::none());
          },
          [](Puerta& self, Maestra* parent) {
            self.door.Parent = parent ? &parent->core.Host().Parent() : nullptr;
          });
  auto shows = [&](const char* name, void (E::*operation)(bool)) {
    type.def(
        name, [operation](Puerta& self, bool modal) { (self.door.*operation)(modal); },
        py::arg("bolModal") = false);
  };
  shows("NuevaEntrada", &E::NuevaEntrada);
  shows("NuevaSalida", &E::NuevaSalida);
  auto opens = [&](const char* name, const char* number, void (E::*operation)(std::int32_t, bool)) {
    type.def(
        name,
        [operation](Puerta& self, std::int32_t value, bool modal) { (self.door.*operation)(value, modal); },
        py::arg(number), py::arg("bolModal") = false);
  };
  opens("ModificaEntrada", "nEntrada", &E::ModificaEntrada);
  opens("ModificaSalida", "nSalida", &E::ModificaSalida);
  auto takes = [&](const char* name, const char* number, void (E::*operation)(std::int32_t)) {
    type.def(
        name, [operation](Puerta& self, std::int32_t value) { (self.door.*operation)(value); },
        py::arg(number));
  };
  takes("ConsultaEntrada", "nEntrada", &E::ConsultaEntrada);
  takes("ConsultaSalida", "nSalida", &E::ConsultaSalida);
  takes("EliminaEntrada", "nEntrada", &E::EliminaEntrada);
  takes("EliminaSalida", "nSalida", &E::EliminaSalida);
  type.def(
      "movimientoEstacion",
      [](Puerta& self, std::int32_t number, bool modal) { self.door.movimientoEstacion(number, modal); },
      py::arg("nId"), py::arg("bolModal"));
}

// A list that the script may empty, and replace by another list's contents.
template <py::list Nucleo::*kList>
void List(py::class_<Nucleo, std::shared_ptr<Nucleo>>& type, const char* name) {
  type.def_property(
      name, [](Nucleo& core) { return core.*kList; },
      [](Nucleo& core, const py::iterable& values) {
        py::list copied(values);
        (core.*kList).attr("clear")();
        (core.*kList).attr("extend")(copied);
      });
}

}  // namespace

void BindAnfitrion(py::module_& module) {
  BindAmbiente(module);
  BindParent(module);
  BindDoor(module);

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

  py::class_<Nucleo, std::shared_ptr<Nucleo>> type(module, "Anfitrion");
  type.def(py::init<const std::string&, const std::string&, const std::string&, const std::string&, bool>(),
           py::arg("base"), py::arg("usuario"), py::arg("estacion"), py::arg("ruta"),
           py::arg("demo") = false);
  List<&Nucleo::sentencias>(type, "sentencias");
  List<&Nucleo::mensajes>(type, "mensajes");
  List<&Nucleo::listas>(type, "listas");
  List<&Nucleo::respuestas>(type, "respuestas");
  List<&Nucleo::ganchos_disparados>(type, "ganchos_disparados");
  List<&Nucleo::movimientos>(type, "movimientos");
  List<&Nucleo::impresos>(type, "impresos");
  List<&Nucleo::navegado>(type, "navegado");
  List<&Nucleo::presentadas>(type, "presentadas");
  List<&Nucleo::regresadas>(type, "regresadas");
  List<&Nucleo::selectores>(type, "selectores");
  List<&Nucleo::no_atrapados>(type, "no_atrapados");
  auto inside = py::return_value_policy::reference_internal;
  type.def_property_readonly("pantallas", [](Nucleo& core) { return core.pantallas; })
      .def_property_readonly("ganchos", [](Nucleo& core) { return core.ganchos; })
      .def_property_readonly(
          "Ambiente", [](Nucleo& core) { return &core.Ambiente(); }, inside)
      .def_property_readonly(
          "Parent", [](Nucleo& core) { return &core.maestra; }, inside)
      .def(
          "EntradasSalidas",
          [](Nucleo& core) {
            auto puerta = std::unique_ptr<Puerta>(new Puerta{core, EntradasSalidas(core.Host())});
            puerta->door.Ambiente = &core.Ambiente();
            puerta->door.Parent = &core.Host().Parent();
            return puerta;
          },
          py::keep_alive<0, 1>())
      .def("sql",
           [](Nucleo& core, const py::object& text, const py::args& values) {
             std::vector<data::Value> bound;
             for (const auto& value : values) bound.push_back(ValueOf(value));
             return core.Sql(TextOf(text), bound);
           })
      .def("mensaje",
           [](Nucleo& core, int number) {
             auto rows = core.Host().Conexion().Run("SELECT texto FROM mensajes WHERE numero = ?", {number});
             return rows.rows.empty() ? StrOf(std::to_string(number)) : StrOf(data::ToText(rows.rows[0][0]));
           })
      .def_readwrite("pitidos", &Nucleo::pitidos)
      .def_readwrite("ahora", &Nucleo::ahora)
      .def_readwrite("al_mostrar_modal", &Nucleo::al_mostrar_modal)
      .def_readwrite("al_mostrar_selector", &Nucleo::al_mostrar_selector)
      .def("falla", &Nucleo::Falla, py::arg("pattern"), py::arg("veces") = 1,
           py::arg("texto") = "falla provocada")
      .def("falla_servicio", &Nucleo::FallaServicio, py::arg("name"), py::arg("veces") = 1,
           py::arg("texto") = "falla provocada")
      .def(
          "procesa_eventos", [](Nucleo& core, long ms) { core.Plataforma().Advance(ms); }, py::arg("ms") = 0)
      .def("cierra", &Nucleo::Cierra);
}

}  // namespace tarvik::python
