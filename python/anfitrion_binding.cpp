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
void List(GuionType& type, const char* name, const char* kind, const char* line) {
  type.Tiene(
      name, kind, line, [](Guion& self) { return self.*kList; },
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
  Clase<MensajeVisto>(module, "Mensaje", "Algo que se mostró al operador.")
      .Lee("clase", "str", "mensaje, error, pregunta o caja.",
           [](const MensajeVisto& seen) { return seen.clase; })
      .Lee("numeros", "list[int]", "Los mensajes numerados de que se compuso.",
           [](const MensajeVisto& seen) { return seen.numeros; })
      .Lee("numero", "int | None", "El primero de ellos, o nada.",
           [](const MensajeVisto& seen) {
             return seen.numeros.empty() ? std::optional<int>() : seen.numeros.front();
           })
      .Lee("texto", "str", "Lo que decía.", [](const MensajeVisto& seen) { return StrOf(seen.texto); })
      .Lee("estilo", "int", "Botones y señal de la caja, sumados.",
           [](const MensajeVisto& seen) { return seen.estilo; })
      .Lee("respuesta", "bool | None", "Lo que se contestó a una pregunta; nada si no lo era.",
           [](const MensajeVisto& seen) { return seen.respuesta; })
      .Tipo()
      .def("__repr__", [](const MensajeVisto& seen) {
        return "<" + seen.clase + " " + std::string(py::repr(StrOf(seen.texto))) + ">";
      });
}

std::shared_ptr<Guion> Abre(const py::object& base, const py::object& usuario, const py::object& estacion,
                            const py::object& ruta, bool demo) {
  auto guion = std::make_shared<Guion>(PathOf(base), TextOf(usuario), TextOf(estacion), PathOf(ruta), demo);
  py::object parent = py::cast(guion->nucleo->ParentPropio());
  parent.attr("llamadas") = guion->llamadas;
  guion->parent = parent;
  return guion;
}

// What happened, in lists that a script reads and empties.
void BindListas(GuionType& type) {
  List<&Cuaderno::sentencias>(type, "sentencias", "list[str]",
                              "Las sentencias que enviaron las pantallas, en orden.");
  List<&Cuaderno::mensajes>(type, "mensajes", "list[Mensaje]", "Lo que se mostró al operador, en orden.");
  List<&Cuaderno::listas>(type, "listas", "list[tuple[str, int | None]]",
                          "Los campos cuyo buscador se desplegó: nombre e índice.");
  List<&Cuaderno::respuestas>(type, "respuestas", "list[bool]",
                              "Lo que se contestará a las preguntas que vengan; sin más se contesta que no.");
  List<&Cuaderno::ganchos_disparados>(type, "ganchos_disparados", "list[tuple[str, Valor]]",
                                      "Las claves que se dispararon, con el valor que dejó la pantalla.");
  List<&Cuaderno::movimientos>(type, "movimientos", "list[dict[str, Any]]",
                               "Los movimientos que se afectaron, con sus propiedades y su resultado.");
  List<&Cuaderno::impresos>(type, "impresos", "list[tuple[str, int]]",
                            "Los documentos que se imprimieron: formato y número.");
  List<&Cuaderno::navegado>(type, "navegado", "list[str]", "Las páginas que se mostraron en un visor.");
  List<&Cuaderno::presentadas>(type, "presentadas", "list[Forma]", "Las pantallas que se presentaron.");
  List<&Cuaderno::regresadas>(type, "regresadas", "list[str]",
                              "A qué forma se regresó al cerrar cada pantalla.");
  List<&Cuaderno::selectores>(type, "selectores", "list[tuple[str, str, str, int | None]]",
                              "Los buscadores que se abrieron: clase, título, y nombre e índice del campo.");
  List<&Cuaderno::no_atrapados>(type, "no_atrapados", "list[str]", "Los errores que nadie atrapó.");
}

// What stands in for the operator and for the world outside.
void BindMundo(GuionType& type) {
  type.Tiene(
          "ganchos", "dict[str, Callable[[Pantalla, Ambiente], object]]",
          "Las rutinas, por su clave: reciben la pantalla y el contexto.",
          [](Guion& self) { return self.ganchos; },
          [](Guion& self, const py::dict& routines) {
            py::dict copied = routines.attr("copy")();
            self.ganchos.attr("clear")();
            self.ganchos.attr("update")(copied);
          })
      .Tiene(
          "pitidos", "int", "Cuántas veces sonó el aviso.", [](Guion& self) { return self.pitidos; },
          [](Guion& self, int count) { self.pitidos = count; })
      .Tiene(
          "ahora", "datetime.datetime | None",
          "La hora en que el reloj se queda; nada para el de la máquina.",
          [](Guion& self) { return self.ahora; },
          [](Guion& self, const py::object& now) {
            if (!now.is_none() && !DateTimeOf(now)) throw py::type_error("ahora es None o un datetime");
            self.ahora = now;
          })
      .Tiene(
          "al_mostrar_modal", "Callable[[Pantalla], object] | None",
          "Lo que corre mientras se espera una pantalla modal; después se cierra.",
          [](Guion& self) { return self.al_mostrar_modal; },
          [](Guion& self, const py::object& function) { self.al_mostrar_modal = function; })
      .Tiene(
          "al_mostrar_selector", "Callable[[str, str, TextBox], str | None] | None",
          "Lo que elige en un buscador: recibe clase, título y campo; el texto que da va al campo.",
          [](Guion& self) { return self.al_mostrar_selector; },
          [](Guion& self, const py::object& function) { self.al_mostrar_selector = function; })
      .Tiene(
          "al_mostrar_caja", "Callable[[str, str], object] | None",
          "Lo que corre mientras un mensaje o una pregunta espera: recibe clase y texto.",
          [](Guion& self) { return self.al_mostrar_caja; },
          [](Guion& self, const py::object& function) { self.al_mostrar_caja = function; });
}

void BindFallas(GuionType& type) {
  type.Hace(
          "falla", "None",
          "Las próximas sentencias de las pantallas que contengan el patrón no se envían, y dan error.",
          [](Guion& self, const std::string& pattern, int times, const std::string& text) {
            self.nucleo->Falla(pattern, times, text);
          },
          Toma{"pattern", "str"}, Puede{"veces", "int", py::int_(1)},
          Puede{"texto", "str", py::str("falla provocada")})
      .Hace(
          "falla_servicio", "None", "Las próximas llamadas a ese servicio, como NuevoId o Afecta, dan error.",
          [](Guion& self, const std::string& name, int times, const std::string& text) {
            self.nucleo->FallaServicio(name, times, text);
          },
          Toma{"name", "str"}, Puede{"veces", "int", py::int_(1)},
          Puede{"texto", "str", py::str("falla provocada")});
}

void BindBase(GuionType& type) {
  const MiembroDescrito sql{
      "sql",
      members::Kind::Procedure,
      "list[dict[str, Any]]",
      {{"text", "str"}, {"*values", "Valor"}},
      "Envía una sentencia con parámetros ? por una conexión aparte; da sus renglones."};
  type.Row(sql).Tipo().def(
      "sql",
      [](Guion& self, const py::object& text, const py::args& values) {
        std::vector<data::Value> bound;
        for (const auto& value : values) bound.push_back(ValueOf(value));
        return SqlRows(self.nucleo->Sql(TextOf(text), bound));
      },
      sql.Doc().c_str());
  type.Hace(
          "mensaje", "str", "El texto de un mensaje numerado.",
          [](Guion& self, int number) {
            const data::Rows rows = self.nucleo->Sql("SELECT texto FROM mensajes WHERE numero = ?", {number});
            return StrOf(rows.rows.empty() ? std::to_string(number) : data::ToText(rows.rows[0][0]));
          },
          Toma{"n", "int"})
      .Hace(
          "procesa_eventos", "None", "Deja correr lo pendiente; los relojes ven pasar esos milisegundos.",
          [](Guion& self, long ms) {
            Called([&] {
              self.nucleo->Plataforma().Advance(ms);
              self.nucleo->Descansa();
            });
          },
          Puede{"ms", "int", py::int_(0)})
      .Hace("cierra", "None", "Cierra lo que esté abierto, y la conexión.",
            [](Guion& self) { Called([&] { self.nucleo->Cierra(); }); });
}

}  // namespace

void BindAnfitrion(py::module_& module) {
  BindPuerta(module);
  BindMensaje(module);

  GuionType type(module, "Anfitrion",
                 "El programa anfitrión sin ventana: abre una base y maneja las pantallas.");
  type.Nace(
          "base: sqlite:RUTA, sqlite::memory: o postgresql://...; demo llena una base vacía con el catálogo "
          "de "
          "demostración.",
          py::init(&Abre), Toma{"base", "str"}, Toma{"usuario", "str"}, Toma{"estacion", "str"},
          Toma{"ruta", "str"}, Puede{"demo", "bool", py::bool_(false)})
      .Lee("pantallas", "list[Pantalla]", "Las pantallas abiertas, de la más antigua a la más nueva.",
           [](Guion& self) { return self.pantallas; })
      .Lee("Ambiente", "Ambiente", "El contexto de trabajo.",
           [](Guion& self) { return self.nucleo->AmbientePropio(); })
      .Lee("Parent", "Parent", "La forma que muestra las listas de documentos.",
           [](Guion& self) { return self.nucleo->ParentPropio(); })
      .HaceY("EntradasSalidas", "EntradasSalidas", "Una clase pública nueva, con su contexto ya puesto.",
             py::keep_alive<0, 1>(), [](Guion& self) { return PuertaPropia(self.nucleo); });
  BindListas(type);
  BindMundo(type);
  BindFallas(type);
  BindBase(type);
  BindAlrededor(module, type);
}

}  // namespace tarvik::python
