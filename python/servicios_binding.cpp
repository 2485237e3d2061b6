// What a routine may ask of the host, through the Ambiente that it is handed: statements, numbers of a
// series, boxes, and stock movements. Each is a call of the host's own service, so whoever watches the
// services sees a routine's calls among the screens' own.
#include <pybind11/pybind11.h>

#include <functional>
#include <memory>

#include "data/error.h"
#include "host/anfitrion.h"
#include "python/binding.h"

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
void PonPropiedad(py::class_<Movimiento>& type, const char* name,
                  void (service::MovimientoInventario::*property)(Value)) {
  const py::cpp_function unasked;
  if constexpr (std::is_same_v<Value, const std::string&>) {
    type.def_property(name, unasked, py::cpp_function([property](Movimiento& self, const py::object& text) {
                        (*self.propio.*property)(TextOf(text));
                      }));
  } else if constexpr (std::is_same_v<Value, const data::Date&>) {
    type.def_property(name, unasked, py::cpp_function([property](Movimiento& self, const py::object& day) {
                        (*self.propio.*property)(Dia(day));
                      }));
  } else {
    type.def_property(name, unasked, py::cpp_function([property](Movimiento& self, Value value) {
                        (*self.propio.*property)(value);
                      }));
  }
}

void BindMovimiento(py::module_& module) {
  using M = service::MovimientoInventario;
  py::class_<Movimiento> type(module, "MovimientoInventario");
  PonPropiedad(type, "EntSal", &M::EntSal);
  PonPropiedad(type, "ClaveLocal", &M::ClaveLocal);
  PonPropiedad(type, "Fecha", &M::Fecha);
  PonPropiedad(type, "Almacen", &M::Almacen);
  PonPropiedad(type, "Movimiento", &M::Movimiento);
  PonPropiedad(type, "TipoDoc", &M::TipoDoc);
  PonPropiedad(type, "Usuario", &M::Usuario);
  PonPropiedad(type, "Documento", &M::Documento);
  PonPropiedad(type, "Operacion", &M::Operacion);
  PonPropiedad(type, "Articulo", &M::Articulo);
  PonPropiedad(type, "Cantidad", &M::Cantidad);
  PonPropiedad(type, "Precio", &M::Precio);
  PonPropiedad(type, "IdEntrada", &M::IdEntrada);
  PonPropiedad(type, "IdSalida", &M::IdSalida);
  PonPropiedad(type, "ClaveAdd", &M::ClaveAdd);
  PonPropiedad(type, "EstacionTraspaso", &M::EstacionTraspaso);
  PonPropiedad(type, "Aplica", &M::Aplica);
  type.def("Afecta", [](Movimiento& self) {
    double amount = 0;
    self.propio->Afecta(amount);
    return amount;
  });
}

}  // namespace

void AlEsperarAlOperador(std::function<void(Reloj::duration)> listener) { al_esperar = std::move(listener); }

void BindServicios(py::module_& module) {
  using A = host::AmbienteLocal;
  BindMovimiento(module);
  py::class_<Conexion>(module, "Conexion")
      .def(
          "Execute",
          [](Conexion& self, const py::object& text) {
            const std::string statement = TextOf(text);
            // The base may be another thread's for a while: it must be able to let go of it.
            const py::gil_scoped_release others;
            return std::make_shared<data::Recordset>(self.ambiente.Conexion().Execute(statement));
          },
          py::arg("texto"));

  auto ambiente = py::reinterpret_borrow<py::class_<A, std::shared_ptr<A>>>(module.attr("Ambiente"));
  ambiente
      .def_property_readonly("Conexion",
                             py::cpp_function([](A& self) { return Conexion{self}; }, py::keep_alive<0, 1>()))
      .def(
          "NuevoId",
          [](A& self, const py::object& series) {
            std::int32_t number = 0;
            self.Anfitrion().Funciones().NuevoId(TextOf(series), self.Conexion(), number);
            return number;
          },
          py::arg("serie"))
      .def(
          "NuevoMovimiento",
          [](A& self) {
            Movimiento movement{self.Anfitrion().NuevoMovimiento()};
            movement.propio->Ambiente(self);
            return movement;
          },
          py::keep_alive<0, 1>())
      .def(
          "Pregunta",
          [](A& self, const py::object& text, int style) {
            bool yes = false;
            EsperaAlOperador(
                [&, words = TextOf(text)] { self.Anfitrion().Funciones().Pregunta(words, style, yes); });
            return yes;
          },
          py::arg("texto"), py::arg("estilo") = 1)
      .def(
          "MuestraMensaje",
          [](A& self, const py::object& text, int style) {
            EsperaAlOperador([&, words = TextOf(text)] {
              self.Anfitrion().Funciones().MuestraMensaje(words, style, self);
            });
          },
          py::arg("texto"), py::arg("estilo") = forms::kBoxInformation)
      .def(
          "FechaValida",
          [](A& self, const py::object& value) {
            bool valid = false;
            EsperaAlOperador(
                [&, day = Dia(value)] { self.Anfitrion().Funciones().FechaValida(day, self, valid); });
            return valid;
          },
          py::arg("fecha"));
}

}  // namespace tarvik::python
