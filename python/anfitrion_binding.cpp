// The stand-alone host as a Python object: its lists, its functions and its failures on demand. The
// context, the list form and the public class are bound in puerta_binding.cpp, what the host offers around
// the screens in alrededor_binding.cpp.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "data/error.h"
#include "data/text.h"
#include "python/nucleo.h"

namespace tarvik::python {

namespace {

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

void BindAnfitrion(py::module_& module) {
  BindPuerta(module);
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
          "EntradasSalidas", [](Guion& self) { return PuertaPropia(self.nucleo); }, py::keep_alive<0, 1>())
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
          [](Guion& self, long ms) {
            Called([&] {
              self.nucleo->Plataforma().Advance(ms);
              self.nucleo->Descansa();
            });
          },
          py::arg("ms") = 0)
      .def("cierra", [](Guion& self) { Called([&] { self.nucleo->Cierra(); }); });
  BindAlrededor(module, type);
}

}  // namespace tarvik::python
