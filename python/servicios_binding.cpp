// What a routine may ask of the host, through the Ambiente that it is handed: statements, numbers of a
// series, boxes, and stock movements. Each is a call of the host's own service, so whoever watches the
// services sees a routine's calls among the screens' own.
#include <pybind11/pybind11.h>

#include <functional>
#include <memory>

#include "data/error.h"
#include "host/anfitrion.h"
#include "python/binding.h"
#include "python/descripcion.h"

namespace tarvik::python {

namespace {

using Reloj = std::chrono::steady_clock;

std::function<void(Reloj::duration)> al_esperar;  // guarded by the interpreter's lock

// A box stands for as long as the operator leaves it: other threads run meanwhile, and the time is not
// the routine's own.
template <class Box>
void EsperaAlOperador(Box&& box) {
  const Reloj::time_point since = Reloj::now();
  {
    const py::gil_scoped_release others;
    box();
  }
  if (al_esperar) al_esperar(Reloj::now() - since);
}

struct Conexion {
  host::AmbienteLocal& ambiente;
};

// One run of postings.
struct Movimiento {
  std::unique_ptr<service::MovimientoInventario> propio;
};

data::Date Dia(const py::object& value) {
  const auto day = DateOf(value);
  if (!day) throw data::Error("El valor no es una fecha");
  return *day;
}

// A movement's properties are told to it and can't be asked back.
template <class Value>
void PonPropiedad(Clase<Movimiento>& type, const char* name,
                  void (service::MovimientoInventario::*property)(Value), const char* line) {
  const py::cpp_function unasked;
  if constexpr (std::is_same_v<Value, const std::string&>) {
    type.Tiene(name, "str", line, unasked,
               py::cpp_function([property](Movimiento& self, const py::object& text) {
                 (*self.propio.*property)(TextOf(text));
               }));
  } else if constexpr (std::is_same_v<Value, const data::Date&>) {
    type.Tiene(name, "datetime.date", line, unasked,
               py::cpp_function([property](Movimiento& self, const py::object& day) {
                 (*self.propio.*property)(Dia(day));
               }));
  } else {
    const char* kind = std::is_same_v<Value, bool>       ? "bool"
                       : std::is_floating_point_v<Value> ? "float"
                                                         : "int";
    type.Tiene(name, kind, line, unasked, py::cpp_function([property](Movimiento& self, Value value) {
                 (*self.propio.*property)(value);
               }));
  }
}

void BindMovimiento(py::module_& module) {
  using M = service::MovimientoInventario;
  Clase<Movimiento> type(
      module, "MovimientoInventario",
      "Afecta existencias: se le dicen las propiedades, y Afecta escribe un movimiento. Lo dicho se "
      "queda para el siguiente. Las propiedades sólo se escriben.");
  PonPropiedad(type, "EntSal", &M::EntSal, "E entra, S sale.");
  PonPropiedad(type, "ClaveLocal", &M::ClaveLocal, "La clave del local.");
  PonPropiedad(type, "Fecha", &M::Fecha, "La fecha del documento.");
  PonPropiedad(type, "Almacen", &M::Almacen, "El almacén cuya existencia cambia.");
  PonPropiedad(type, "Movimiento", &M::Movimiento, "El número del documento.");
  PonPropiedad(type, "TipoDoc", &M::TipoDoc, "El concepto.");
  PonPropiedad(type, "Usuario", &M::Usuario, "Quién afecta.");
  PonPropiedad(type, "Documento", &M::Documento, "El número del documento, como texto.");
  PonPropiedad(type, "Operacion", &M::Operacion, "EN entrada, SA salida, T+ llegada de un traspaso.");
  PonPropiedad(type, "Articulo", &M::Articulo, "La clave del artículo.");
  PonPropiedad(type, "Cantidad", &M::Cantidad, "En unidades del artículo.");
  PonPropiedad(type, "Precio", &M::Precio, "De una unidad, con impuesto.");
  PonPropiedad(type, "IdEntrada", &M::IdEntrada, "El renglón de la entrada.");
  PonPropiedad(type, "IdSalida", &M::IdSalida, "El renglón de la salida.");
  PonPropiedad(type, "ClaveAdd", &M::ClaveAdd, "La clave adicional con que se capturó el renglón.");
  PonPropiedad(type, "EstacionTraspaso", &M::EstacionTraspaso, "La estación que recibe un traspaso.");
  PonPropiedad(type, "Aplica", &M::Aplica, "Si se escribe; sin ello sólo se calcula cuánto vale.");
  type.Hace("Afecta", "float", "Escribe el movimiento y la existencia, completos o nada; da cuánto vale.",
            [](Movimiento& self) {
              double amount = 0;
              self.propio->Afecta(amount);
              return amount;
            });
}

void BindConexion(py::module_& module) {
  Clase<Conexion>(module, "Conexion", "La base, por la conexión de las pantallas.")
      .Hace(
          "Execute", "Recordset", "Envía una sentencia y da sus renglones.",
          [](Conexion& self, const py::object& text) {
            const std::string statement = TextOf(text);
            // The base may be another thread's for a while: it must be able to let go of it.
            const py::gil_scoped_release others;
            return std::make_shared<data::Recordset>(self.ambiente.Conexion().Execute(statement));
          },
          Toma{"texto", "str"});
}

}  // namespace

void AlEsperarAlOperador(std::function<void(Reloj::duration)> listener) { al_esperar = std::move(listener); }

void BindServicios(py::module_& module) {
  using A = host::AmbienteLocal;
  BindMovimiento(module);
  BindConexion(module);
  Clase<A, std::shared_ptr<A>>(module, "Ambiente")
      .Lee("Conexion", "Conexion", "La base, por la conexión de las pantallas.",
           py::cpp_function([](A& self) { return Conexion{self}; }, py::keep_alive<0, 1>()))
      .Hace(
          "NuevoId", "int", "El número siguiente de una serie; nunca se repite.",
          [](A& self, const py::object& series) {
            std::int32_t number = 0;
            self.Anfitrion().Funciones().NuevoId(TextOf(series), self.Conexion(), number);
            return number;
          },
          Toma{"serie", "str"})
      .HaceY("NuevoMovimiento", "MovimientoInventario",
             "Un objeto para afectar existencias, todavía sin propiedades.", py::keep_alive<0, 1>(),
             [](A& self) {
               Movimiento movement{self.Anfitrion().NuevoMovimiento()};
               movement.propio->Ambiente(self);
               return movement;
             })
      .Hace(
          "Pregunta", "bool", "Pregunta al operador y espera su respuesta.",
          [](A& self, const py::object& text, int style) {
            bool yes = false;
            EsperaAlOperador(
                [&, words = TextOf(text)] { self.Anfitrion().Funciones().Pregunta(words, style, yes); });
            return yes;
          },
          Toma{"texto", "str"}, Puede{"estilo", "int", py::int_(1)})
      .Hace(
          "MuestraMensaje", "None", "Muestra un mensaje al operador y espera a que lo cierre.",
          [](A& self, const py::object& text, int style) {
            EsperaAlOperador([&, words = TextOf(text)] {
              self.Anfitrion().Funciones().MuestraMensaje(words, style, self);
            });
          },
          Toma{"texto", "str"}, Puede{"estilo", "int", py::int_(forms::kBoxInformation)})
      .Hace(
          "FechaValida", "bool", "Si un documento de esa fecha puede afectarse; si no, avisa por qué.",
          [](A& self, const py::object& value) {
            bool valid = false;
            EsperaAlOperador(
                [&, day = Dia(value)] { self.Anfitrion().Funciones().FechaValida(day, self, valid); });
            return valid;
          },
          Toma{"fecha", "datetime.date"});
}

}  // namespace tarvik::python
