// What the host offers around the screens, as members of the Python object `Anfitrion`: documents that were
// posted in part, and the record of acts. Plain objects with named attributes; None where one has no sense.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "data/error.h"
#include "host/a_medias.h"
#include "host/bitacora.h"
#include "python/nucleo.h"

namespace tarvik::python {

namespace {

host::Tipo TipoDe(const py::object& name) {
  const std::string text = TextOf(name);
  if (const auto tipo = host::TipoLlamado(text)) return *tipo;
  throw data::Error("El tipo de documento es \"Entrada\" o \"Salida\", no \"" + text + "\"");
}

py::object NombreDe(const std::optional<host::Tipo>& tipo) {
  return tipo ? py::object(StrOf(host::NombreDe(*tipo))) : py::none();
}

void BindAMedias(py::module_& module, GuionType& type) {
  using host::DocumentoAMedias;
  py::class_<DocumentoAMedias>(module, "DocumentoAMedias")
      .def_property_readonly("tipo", [](const DocumentoAMedias& self) { return NombreDe(self.tipo); })
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
          [](Guion& self, const py::object& tipo, std::int32_t numero) {
            return Called([&] { return self.nucleo->Host().Completa(TipoDe(tipo), numero); });
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
      .def_property_readonly("tipo", [](const Acto& self) { return NombreDe(self.tipo); })
      .def_readonly("documento", &Acto::documento)
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
        return Called([&] { return host::LeeBitacora(self.nucleo->Host().Conexion(), since); });
      },
      py::arg("desde") = py::none());
}

}  // namespace

void BindAlrededor(py::module_& module, GuionType& type) {
  BindAMedias(module, type);
  BindBitacora(module, type);
}

}  // namespace tarvik::python
