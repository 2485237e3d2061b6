// What the host offers around the screens, as members of the Python object `Anfitrion`: documents that were
// posted in part, who holds what, requests, and the record of acts. Plain objects with named attributes; None
// where one has no sense.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <limits>

#include "data/error.h"
#include "host/a_medias.h"
#include "host/bitacora.h"
#include "host/peticiones.h"
#include "python/nucleo.h"

namespace tarvik::python {

namespace {

// No document has a number that the base's tables can't hold.
std::int32_t NumberOf(std::int64_t number) {
  if (number < std::numeric_limits<std::int32_t>::min() ||
      number > std::numeric_limits<std::int32_t>::max()) {
    throw data::Error("No hay documentos con el número " + std::to_string(number));
  }
  return static_cast<std::int32_t>(number);
}

host::Tipo KindOf(const py::object& name) { return host::TipoDe(TextOf(name)); }

py::object NameOf(host::Tipo tipo) { return StrOf(host::NombreDe(tipo)); }

py::object WhenOrNone(const std::optional<data::DateTime>& when) {
  return when ? ToPython(*when) : py::object(py::none());
}

py::object TextOrNone(const std::string& text) { return text.empty() ? py::object(py::none()) : StrOf(text); }

void BindAMedias(py::module_& module, GuionType& type) {
  using host::DocumentoAMedias;
  py::class_<DocumentoAMedias>(module, "DocumentoAMedias")
      .def_property_readonly("tipo", [](const DocumentoAMedias& self) { return NameOf(self.tipo); })
      .def_readonly("documento", &DocumentoAMedias::documento)
      .def_property_readonly("estado", [](const DocumentoAMedias& self) { return StrOf(self.estado); })
      .def_readonly("renglones", &DocumentoAMedias::renglones)
      .def_readonly("faltan", &DocumentoAMedias::faltan)
      .def("__repr__", [](const DocumentoAMedias& self) {
        return "<" + std::string(host::NombreDe(self.tipo)) + " " + std::to_string(self.documento) + " " +
               self.estado + ", faltan " + std::to_string(self.faltan.size()) + " de " +
               std::to_string(self.renglones) + ">";
      });
  type.def("a_medias", [](Guion& self) { return Called([&] { return self.nucleo->Host().AMedias(); }); })
      .def(
          "completa",
          [](Guion& self, const py::object& tipo, std::int64_t numero) {
            return Called([&] { return self.nucleo->Host().Completa(KindOf(tipo), NumberOf(numero)); });
          },
          py::arg("tipo"), py::arg("n"));
}

void BindBitacora(py::module_& module, GuionType& type) {
  using host::Acto;
  const auto text = [](std::string Acto::*member) {
    return [member](const Acto& self) { return StrOf(self.*member); };
  };
  py::class_<Acto>(module, "Acto")
      .def_property_readonly("cuando", [](const Acto& self) { return ToPython(self.cuando); })
      .def_property_readonly("usuario", text(&Acto::usuario))
      .def_property_readonly("estacion", text(&Acto::estacion))
      .def_property_readonly("acto", text(&Acto::acto))
      .def_property_readonly("tipo",
                             [](const Acto& self) {
                               return self.documento ? NameOf(self.documento->tipo) : py::object(py::none());
                             })
      .def_property_readonly("documento",
                             [](const Acto& self) {
                               return self.documento ? std::optional(self.documento->numero) : std::nullopt;
                             })
      .def_property_readonly("texto", text(&Acto::texto))
      .def("__repr__", [](const Acto& self) {
        return "<" + self.cuando.Iso() + " " + self.usuario + " " + self.acto + " " + self.texto + ">";
      });
  type.def(
      "bitacora",
      [](Guion& self, const py::object& desde) {
        std::optional<data::DateTime> since = DateTimeOf(desde);
        if (!since && !desde.is_none()) {
          const auto day = DateOf(desde);
          if (!day) throw py::type_error("desde es None, un datetime o una fecha");
          since = data::DateTime{*day, {}};
        }
        return Called([&] { return self.nucleo->Host().Bitacora(since); });
      },
      py::arg("desde") = py::none());
}

void BindTenencias(py::module_& module, GuionType& type) {
  using host::Tenencia;
  py::class_<Tenencia>(module, "Tenencia")
      .def_property_readonly("tipo", [](const Tenencia& self) { return NameOf(self.tipo); })
      .def_readonly("documento", &Tenencia::documento)
      .def_property_readonly("usuario", [](const Tenencia& self) { return StrOf(self.usuario); })
      .def_property_readonly("estacion", [](const Tenencia& self) { return TextOrNone(self.estacion); })
      .def_property_readonly("desde", [](const Tenencia& self) { return WhenOrNone(self.desde); })
      .def_readonly("viva", &Tenencia::viva)
      .def("__repr__", [](const Tenencia& self) {
        return "<" + std::string(host::NombreDe(self.tipo)) + " " + std::to_string(self.documento) + ", " +
               self.usuario + (self.viva ? ", viva>" : ", muerta>");
      });
  type.def("tenencias", [](Guion& self) { return Called([&] { return self.nucleo->Host().Tenencias(); }); })
      .def(
          "abre",
          [](Guion& self, const py::object& tipo, std::int64_t numero) -> py::object {
            const auto screen =
                Called([&] { return self.nucleo->Host().Abre(KindOf(tipo), NumberOf(numero)); });
            return screen ? FormObject(*screen) : py::object(py::none());
          },
          py::arg("tipo"), py::arg("n"))
      .def(
          "libera",
          [](Guion& self, const py::object& tipo, std::int64_t numero, const py::object& motivo) {
            Called([&] { self.nucleo->Host().Libera(KindOf(tipo), NumberOf(numero), TextOf(motivo)); });
          },
          py::arg("tipo"), py::arg("n"), py::arg("motivo") = "");
}

// A request keeps the host that it speaks through.
struct PeticionPropia {
  host::Peticion peticion;
  std::shared_ptr<Nucleo> nucleo;
};

void BindPeticiones(py::module_& module, GuionType& type) {
  using P = PeticionPropia;
  py::class_<P>(module, "Peticion")
      .def_property_readonly("tipo", [](const P& self) { return NameOf(self.peticion.documento.tipo); })
      .def_property_readonly("documento", [](const P& self) { return self.peticion.documento.numero; })
      .def_property_readonly("usuario", [](const P& self) { return StrOf(self.peticion.usuario); })
      .def_property_readonly("estacion", [](const P& self) { return StrOf(self.peticion.estacion); })
      .def_property_readonly("mensaje", [](const P& self) { return StrOf(self.peticion.mensaje); })
      .def_property_readonly("cuando", [](const P& self) { return ToPython(self.peticion.cuando); })
      .def_property_readonly(
          "estado", [](const P& self) { return StrOf(Called([&] { return self.peticion.Estado(); })); })
      .def_property_readonly(
          "motivo", [](const P& self) { return StrOf(Called([&] { return self.peticion.Motivo(); })); })
      .def("cede", [](P& self) { Called([&] { self.peticion.Cede(); }); })
      .def(
          "niega",
          [](P& self, const py::object& motivo) { Called([&] { self.peticion.Niega(TextOf(motivo)); }); },
          py::arg("motivo") = "");
  type.def(
          "pide",
          [](Guion& self, const py::object& tipo, std::int64_t numero, const py::object& mensaje) {
            return P{Called([&] {
                       return self.nucleo->Host().Pide(KindOf(tipo), NumberOf(numero), TextOf(mensaje));
                     }),
                     self.nucleo};
          },
          py::arg("tipo"), py::arg("n"), py::arg("mensaje") = "")
      .def("peticiones", [](Guion& self) {
        std::vector<P> requests;
        for (host::Peticion& request : Called([&] { return self.nucleo->Host().Peticiones(); })) {
          requests.push_back({std::move(request), self.nucleo});
        }
        return requests;
      });
}

void BindRevision(py::module_& module, GuionType& type) {
  using host::Observacion;
  const auto text_or_none = [](const std::optional<std::string>& text) {
    return text ? py::object(StrOf(*text)) : py::object(py::none());
  };
  py::class_<Observacion>(module, "Observacion")
      .def_property_readonly("clase", [](const Observacion& self) { return StrOf(self.clase); })
      .def_property_readonly("tipo", [=](const Observacion& self) { return text_or_none(self.tipo); })
      .def_readonly("documento", &Observacion::documento)
      .def_readonly("renglon", &Observacion::renglon)
      .def_property_readonly("articulo", [=](const Observacion& self) { return text_or_none(self.articulo); })
      .def_readonly("almacen", &Observacion::almacen)
      .def_property_readonly("texto", [](const Observacion& self) { return StrOf(self.texto); })
      .def_readonly("reparable", &Observacion::reparable)
      .def_readonly("reparado", &Observacion::reparado)
      .def("__repr__", [](const Observacion& self) { return "<" + self.clase + ": " + self.texto + ">"; });
  type.def(
      "revisa",
      [](Guion& self, bool repara, bool huecos) {
        return Called([&] { return self.nucleo->Host().Revisa(repara, huecos); });
      },
      py::arg("repara") = false, py::arg("huecos") = false);
}

}  // namespace

void BindAlrededor(py::module_& module, GuionType& type) {
  BindAMedias(module, type);
  BindTenencias(module, type);
  BindPeticiones(module, type);
  BindBitacora(module, type);
  BindRevision(module, type);
}

}  // namespace tarvik::python
