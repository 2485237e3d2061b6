// The context, the host's list form and the public class as Python objects.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "data/error.h"
#include "data/text.h"
#include "python/descripcion.h"
#include "python/members_binding.h"
#include "python/puerta.h"

namespace tarvik::python {

namespace {

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

void BindParametros(py::module_& module) {
  Clase<Parametros>(module, "Parametros",
                    "Los ajustes de la base, por su nombre: Ambiente.Parametros[\"Almacen\"].")
      .Hace(
          "__getitem__", "Valor", "Un ajuste; nada si nadie lo ha puesto.",
          [](Parametros& settings, const std::string& name) {
            return ToPython(settings.ambiente.Parametro(name));
          },
          Toma{"name", "str"})
      .Hace(
          "__setitem__", "None", "Cambia un ajuste; queda en la base.",
          [](Parametros& settings, const std::string& name, const py::object& value) {
            settings.ambiente.Parametro(name, ValueOf(value));
          },
          Toma{"name", "str"}, Toma{"value", "Valor"})
      .Hace("keys", "list[str]", "Los nombres de los ajustes.",
            [](Parametros& settings) { return settings.ambiente.NombresDeParametros(); });
}

// A property of the context under its own name. A text takes whatever has one.
void Propiedad(Clase<host::AmbienteLocal, std::shared_ptr<host::AmbienteLocal>>& type, const char* name,
               const char* kind, const char* line) {
  const bool text = std::string_view(kind) == "str";
  type.Tiene(
      name, kind, line, [name](const host::AmbienteLocal& self) { return ToPython(self.Lee(name)); },
      [name, text](host::AmbienteLocal& self, const py::object& value) {
        self.Pon(name, text ? data::Value(TextOf(value)) : ValueOf(value));
      });
}

void BindAmbiente(py::module_& module) {
  BindParametros(module);
  Clase<host::AmbienteLocal, std::shared_ptr<host::AmbienteLocal>> type(
      module, "Ambiente", "El contexto de trabajo, el mismo para todas las pantallas de un anfitrión.");
  Propiedad(type, "Usuario", "str", "Quién trabaja; firma lo que se guarda.");
  Propiedad(type, "Estacion", "str", "La estación de trabajo; da la serie de los folios de salida.");
  Propiedad(type, "Moneda", "str", "La moneda con que se guardan las entradas.");
  Propiedad(type, "ClaveLocal", "str", "La clave del local, que se pasa al afectar.");
  Propiedad(type, "FormatoImporte", "str", "El formato de precios e importes, como ###,###,##0.00.");
  Propiedad(type, "FormatoCantidad", "str", "El formato de cantidades, como ###,###,##0.####.");
  Propiedad(type, "RutaBase", "str", "La carpeta de la bitácora del día y de la hoja de distribución.");
  Propiedad(type, "ValorFechaA", "Valor", "Días que la fecha de trabajo se aparta de hoy.");
  Propiedad(type, "ValorFechaB", "Valor", "Meses que la fecha de trabajo se aparta de hoy.");
  Propiedad(type, "ValorDeGancho", "Valor",
            "Lo que la pantalla deja a la rutina, como el índice del campo; nada si está vacío.");
  type.Lee("Parametros", "Parametros", "Los ajustes de la base, por su nombre.",
           Inside([](host::AmbienteLocal& self) { return Parametros{self}; }));
}

void BindElementos(py::module_& module) {
  Clase<Elementos> items(module, "ListItems",
                         "La lista viva de números de documento; se usa como una lista cualquiera.");
  // What reads the list, and what changes it: as a list of Python's own would.
  for (const char* name : {"__len__", "__getitem__", "__iter__", "__contains__", "__eq__", "__ne__",
                           "__repr__", "__add__", "__reversed__", "index", "count", "copy"}) {
    items.Tipo().def(
        name, [name](const Elementos& self, const py::args& args) { return self.List().attr(name)(*args); });
  }
  for (const char* name : {"__setitem__", "__delitem__", "append", "extend", "insert", "pop", "remove",
                           "clear", "reverse", "sort"}) {
    items.Tipo().def(name, [name](Elementos& self, const py::args& args) {
      py::list list = self.List();
      py::object result = list.attr(name)(*args);
      self.Take(list);
      return result;
    });
  }
}

void BindParent(py::module_& module) {
  BindElementos(module);
  Clase<ListView>(module, "ListView", "La lista de documentos de la forma del programa.")
      .Tiene("ListItems", "ListItems", "Los números de documento que se muestran.",
             Inside([](const ListView& view) { return Elementos{view.forma}; }),
             py::cpp_function(
                 [](ListView& view, const py::iterable& values) { Elementos{view.forma}.Take(values); }))
      .Tiene(
          "SelectedItem", "int", "La posición del renglón elegido, desde 1; 0 ninguno.",
          [](const ListView& view) { return view.forma.seleccionado; },
          [](ListView& view, const py::object& position) {
            view.forma.seleccionado = position.is_none() ? 0 : position.cast<int>();
          });
  // `llamadas` is put on the object by the host that owns it.
  Clase<host::FormaMaestra, std::shared_ptr<host::FormaMaestra>>(
      module, "Parent", "La forma del programa que muestra las listas de documentos.", py::dynamic_attr())
      .Tiene(
          "CatalogoActivo", "str",
          "La lista que se muestra: Entradas, EntradasPendientes, Salidas o SalidasPendientes.",
          [](const host::FormaMaestra& self) { return StrOf(self.catalogo_activo); },
          [](host::FormaMaestra& self, const py::object& name) { self.catalogo_activo = TextOf(name); })
      .Lee("lvListView", "ListView", "La lista de documentos.",
           Inside([](host::FormaMaestra& self) { return ListView{self}; }))
      .Row({"llamadas",
            members::Kind::Property,
            "list[tuple[str, tuple[Valor, ...]]]",
            {},
            "Lo que las pantallas le pidieron, en orden: nombre y argumentos."});
}

void BindDoor(py::module_& module) {
  const members::Class& table = *members::ClassNamed("EntradasSalidas");
  py::class_<Puerta> type(module, "EntradasSalidas", std::string(table.line).c_str(), DiceLoParecido());
  AgregaMiembros(type, table);
  // A script gets back the very object that it gave.
  type.def_property(
          "Ambiente", [](Puerta& self) { return self.ambiente; },
          [](Puerta& self, const std::shared_ptr<host::AmbienteLocal>& ambiente) {
            self.ambiente = ambiente;
            self.door.Ambiente = ambiente.get();
          },
          std::string(members::Find(table, "Ambiente")->line).c_str())
      .def_property(
          "Parent", [](Puerta& self) { return self.parent; },
          [](Puerta& self, const std::shared_ptr<host::FormaMaestra>& parent) {
            self.parent = parent;
            self.door.Parent = parent.get();
          },
          std::string(members::Find(table, "Parent")->line).c_str());
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
