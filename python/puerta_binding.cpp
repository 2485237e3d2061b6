// The context, the host's list form and the public class as Python objects.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "data/error.h"
#include "data/text.h"
#include "python/nucleo.h"
#include "service/door/entradas_salidas.h"

namespace tarvik::python {

namespace {

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

void BindPuerta(py::module_& module) {
  BindAmbiente(module);
  BindParent(module);
  BindDoor(module);
}

py::object PuertaPropia(const std::shared_ptr<Nucleo>& nucleo) {
  auto puerta = std::unique_ptr<Puerta>(
      new Puerta{nucleo, EntradasSalidas(nucleo->Host()), nucleo->AmbientePropio(), nucleo->ParentPropio()});
  puerta->door.Ambiente = puerta->ambiente.get();
  puerta->door.Parent = puerta->parent.get();
  return py::cast(std::move(puerta));
}

}  // namespace tarvik::python
