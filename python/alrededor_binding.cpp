// What the host offers around the screens, as members of the Python object `Anfitrion`: documents that were
// posted in part, who holds what, requests, readings, what is told before posting, and the record of acts.
// Plain objects with named attributes; None where one has no sense.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <limits>

#include "data/error.h"
#include "data/number.h"
#include "host/a_medias.h"
#include "host/bitacora.h"
#include "host/lecturas.h"
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
  using D = host::DocumentoAMedias;
  Clase<D>(module, "DocumentoAMedias", "Un documento que se afectó sólo en parte.")
      .Lee("tipo", "str", "Entrada o Salida.", [](const D& self) { return NameOf(self.tipo); })
      .Lee("documento", "int", "Su número.", [](const D& self) { return self.documento; })
      .Lee("estado", "str",
           "CO: afectado, con renglones sin movimiento. PE: pendiente, con renglones ya movidos.",
           [](const D& self) { return StrOf(self.estado); })
      .Lee("renglones", "int", "Cuántos renglones tiene.", [](const D& self) { return self.renglones; })
      .Lee("faltan", "list[int]", "Los renglones que no tienen su movimiento.",
           [](const D& self) { return self.faltan; })
      .Tipo()
      .def("__repr__", [](const D& self) {
        return "<" + std::string(host::NombreDe(self.tipo)) + " " + std::to_string(self.documento) + " " +
               self.estado + ", faltan " + std::to_string(self.faltan.size()) + " de " +
               std::to_string(self.renglones) + ">";
      });
  type.Hace("a_medias", "list[DocumentoAMedias]", "Los documentos que se afectaron sólo en parte.",
            [](Guion& self) { return Called([&] { return self.nucleo->Host().AMedias(); }); })
      .Hace(
          "completa", "int",
          "Afecta lo que falta de un documento afectado, completo o nada; da cuántos movimientos hizo.",
          [](Guion& self, const py::object& tipo, std::int64_t numero) {
            return Called([&] { return self.nucleo->Host().Completa(KindOf(tipo), NumberOf(numero)); });
          },
          Toma{"tipo", "str"}, Toma{"n", "int"});
}

void BindBitacora(py::module_& module, GuionType& type) {
  using host::Acto;
  const auto text = [](std::string Acto::*member) {
    return [member](const Acto& self) { return StrOf(self.*member); };
  };
  Clase<Acto>(module, "Acto", "Algo que se hizo por derecho, o sobre una negativa.")
      .Lee("cuando", "datetime.datetime", "Cuándo se hizo.",
           [](const Acto& self) { return ToPython(self.cuando); })
      .Lee("usuario", "str", "Quién lo hizo.", text(&Acto::usuario))
      .Lee("estacion", "str", "En qué estación.", text(&Acto::estacion))
      .Lee("acto", "str", "Qué: libera, cede, elimina, completa, repara...", text(&Acto::acto))
      .Lee("tipo", "str | None", "Entrada o Salida; nada si no fue de un documento.",
           [](const Acto& self) {
             return self.documento ? NameOf(self.documento->tipo) : py::object(py::none());
           })
      .Lee("documento", "int | None", "El número del documento, o nada.",
           [](const Acto& self) {
             return self.documento ? std::optional(self.documento->numero) : std::nullopt;
           })
      .Lee("texto", "str", "Qué se hizo, exactamente.", text(&Acto::texto))
      .Tipo()
      .def("__repr__", [](const Acto& self) {
        return "<" + self.cuando.Iso() + " " + self.usuario + " " + self.acto + " " + self.texto + ">";
      });
  type.Hace(
      "bitacora", "list[Acto]", "Los actos desde ese momento, del más antiguo al más nuevo; sin él, todos.",
      [](Guion& self, const py::object& desde) {
        std::optional<data::DateTime> since = DateTimeOf(desde);
        if (!since && !desde.is_none()) {
          const auto day = DateOf(desde);
          if (!day) throw py::type_error("desde es None, un datetime o una fecha");
          since = data::DateTime{*day, {}};
        }
        return Called([&] { return self.nucleo->Host().Bitacora(since); });
      },
      Puede{"desde", "datetime.datetime | datetime.date | str | None", py::none()});
}

void BindTenencias(py::module_& module, GuionType& type) {
  using host::Tenencia;
  Clase<Tenencia>(module, "Tenencia", "Un documento que alguien tiene abierto para modificarlo.")
      .Lee("tipo", "str", "Entrada o Salida.", [](const Tenencia& self) { return NameOf(self.tipo); })
      .Lee("documento", "int", "Su número.", [](const Tenencia& self) { return self.documento; })
      .Lee("usuario", "str", "Quién lo tiene.", [](const Tenencia& self) { return StrOf(self.usuario); })
      .Lee("estacion", "str | None", "En qué estación; nada si no se sabe.",
           [](const Tenencia& self) { return TextOrNone(self.estacion); })
      .Lee("desde", "datetime.datetime | None", "Desde cuándo; nada si no se sabe.",
           [](const Tenencia& self) { return WhenOrNone(self.desde); })
      .Lee("viva", "bool", "Si el programa que lo tiene sigue trabajando.",
           [](const Tenencia& self) { return self.viva; })
      .Tipo()
      .def("__repr__", [](const Tenencia& self) {
        return "<" + std::string(host::NombreDe(self.tipo)) + " " + std::to_string(self.documento) + ", " +
               self.usuario + (self.viva ? ", viva>" : ", muerta>");
      });
  type.Hace("tenencias", "list[Tenencia]", "Los documentos que alguien tiene abiertos para modificarlos.",
            [](Guion& self) { return Called([&] { return self.nucleo->Host().Tenencias(); }); })
      .Hace(
          "abre", "Pantalla | None",
          "Abre un documento para modificarlo; antes suelta el de un programa que ya no está. Da la "
          "pantalla, o nada.",
          [](Guion& self, const py::object& tipo, std::int64_t numero) -> py::object {
            const auto screen =
                Called([&] { return self.nucleo->Host().Abre(KindOf(tipo), NumberOf(numero)); });
            return screen ? FormObject(*screen) : py::object(py::none());
          },
          Toma{"tipo", "str"}, Toma{"n", "int"})
      .Hace(
          "libera", "None",
          "Suelta un documento que otro tiene; queda en la bitácora. Uno libre se queda igual.",
          [](Guion& self, const py::object& tipo, std::int64_t numero, const py::object& motivo) {
            Called([&] { self.nucleo->Host().Libera(KindOf(tipo), NumberOf(numero), TextOf(motivo)); });
          },
          Toma{"tipo", "str"}, Toma{"n", "int"}, Puede{"motivo", "str", py::str("")});
}

// A request keeps the host that it speaks through.
struct PeticionPropia {
  host::Peticion peticion;
  std::shared_ptr<Nucleo> nucleo;
};

void BindPeticiones(py::module_& module, GuionType& type) {
  using P = PeticionPropia;
  Clase<P>(module, "Peticion", "Alguien pide un documento que otro tiene abierto.")
      .Lee("tipo", "str", "Entrada o Salida.",
           [](const P& self) { return NameOf(self.peticion.documento.tipo); })
      .Lee("documento", "int", "Su número.", [](const P& self) { return self.peticion.documento.numero; })
      .Lee("usuario", "str", "Quién lo pide.", [](const P& self) { return StrOf(self.peticion.usuario); })
      .Lee("estacion", "str", "Desde qué estación.",
           [](const P& self) { return StrOf(self.peticion.estacion); })
      .Lee("mensaje", "str", "Lo que dice quien lo pide.",
           [](const P& self) { return StrOf(self.peticion.mensaje); })
      .Lee("cuando", "datetime.datetime", "Cuándo lo pidió.",
           [](const P& self) { return ToPython(self.peticion.cuando); })
      .Lee("estado", "str", "Cómo va ahora: pedida, cedida o negada.",
           [](const P& self) { return StrOf(Called([&] { return self.peticion.Estado(); })); })
      .Lee("motivo", "str", "Por qué se negó.",
           [](const P& self) { return StrOf(Called([&] { return self.peticion.Motivo(); })); })
      .Hace("cede", "None", "Entrega el documento: se guarda pendiente, la pantalla se cierra y queda libre.",
            [](P& self) { Called([&] { self.peticion.Cede(); }); })
      .Hace(
          "niega", "None", "Contesta que no.",
          [](P& self, const py::object& motivo) { Called([&] { self.peticion.Niega(TextOf(motivo)); }); },
          Puede{"motivo", "str", py::str("")});
  type.Hace(
          "pide", "Peticion", "Pide un documento a quien lo tiene abierto.",
          [](Guion& self, const py::object& tipo, std::int64_t numero, const py::object& mensaje) {
            return P{Called([&] {
                       return self.nucleo->Host().Pide(KindOf(tipo), NumberOf(numero), TextOf(mensaje));
                     }),
                     self.nucleo};
          },
          Toma{"tipo", "str"}, Toma{"n", "int"}, Puede{"mensaje", "str", py::str("")})
      .Hace("peticiones", "list[Peticion]", "Lo que otros piden de lo que este programa tiene abierto.",
            [](Guion& self) {
              std::vector<P> requests;
              for (host::Peticion& request : Called([&] { return self.nucleo->Host().Peticiones(); })) {
                requests.push_back({std::move(request), self.nucleo});
              }
              return requests;
            });
}

// An entry of the tape keeps the host that it speaks through.
struct LecturaPropia {
  std::shared_ptr<host::Lectura> lectura;
  std::shared_ptr<Nucleo> nucleo;

  // As it is now.
  [[nodiscard]] const host::Lectura& Ahora() const {
    Called([&] { nucleo->Host().Lecturas().PonAlDia(*lectura); });
    return *lectura;
  }
};

void BindEntradaDeCinta(py::module_& module) {
  using L = LecturaPropia;
  Clase<L>(module, "Lectura", "Una lectura del lector, en la cinta.")
      .Lee("texto", "str", "Lo que se leyó.", [](const L& self) { return StrOf(self.lectura->texto); })
      .Lee("estado", "str", "Cómo va ahora: espera, renglon, sin articulo, rechazada, descartada o deshecha.",
           [](const L& self) { return StrOf(self.Ahora().estado); })
      .Lee("tipo", "str | None", "Entrada o Salida; nada si no había documento.",
           [](const L& self) {
             const auto kind = self.Ahora().tipo;
             return kind ? NameOf(*kind) : py::object(py::none());
           })
      .Lee("documento", "int | None", "El número del documento, o nada.",
           [](const L& self) { return self.Ahora().documento; })
      .Lee("renglon", "int | None", "El renglón que hizo, o al que se sumó; o nada.",
           [](const L& self) { return self.Ahora().renglon; })
      .Lee("cantidad", "float | None", "Las unidades que puso, o nada.",
           [](const L& self) { return self.Ahora().cantidad; })
      .Lee("motivo", "str | None", "Por qué se rechazó o se descartó, o nada.",
           [](const L& self) { return TextOrNone(self.Ahora().motivo); })
      .Lee("usuario", "str", "Quién la leyó.", [](const L& self) { return StrOf(self.lectura->usuario); })
      .Lee("estacion", "str", "En qué estación.", [](const L& self) { return StrOf(self.lectura->estacion); })
      .Lee("cuando", "datetime.datetime", "Cuándo se leyó.",
           [](const L& self) { return ToPython(self.lectura->cuando); })
      .Hace(
          "asigna", "None",
          "Hace del código desconocido una segunda clave de un artículo, y la captura de nuevo.",
          [](L& self, const py::object& articulo, double unidades) {
            Called([&] { self.nucleo->Host().Lecturas().Asigna(*self.lectura, TextOf(articulo), unidades); });
          },
          Toma{"articulo", "str"}, Puede{"unidades", "float", py::int_(1)})
      .Hace(
          "descarta", "None", "La descarta; el motivo queda en la cinta.",
          [](L& self, const py::object& motivo) {
            Called([&] { self.nucleo->Host().Lecturas().Descarta(*self.lectura, TextOf(motivo)); });
          },
          Toma{"motivo", "str"})
      .Hace("deshace", "None", "Quita sus unidades de un documento pendiente.",
            [](L& self) { Called([&] { self.nucleo->Host().Lecturas().Deshace(*self.lectura); }); })
      .Hace(
          "alimenta", "None", "Captura una que se quedó en espera, o que se rechazó.",
          [](L& self, forms::Form* forma) {
            Called([&] { self.nucleo->Host().Lecturas().Alimenta(*self.lectura, forma); });
          },
          Puede{"forma", "Pantalla | None", py::none()})
      .Tipo()
      .def("__eq__",
           [](const L& self, const py::object& other) {
             if (!py::isinstance<L>(other)) return false;
             const auto& one = *self.lectura;
             const auto& two = *other.cast<const L&>().lectura;
             return &one == &two || (one.id != 0 && one.id == two.id);
           })
      .def("__hash__", [](const L& self) { return self.lectura->id; })
      .def("__repr__", [](const L& self) {
        return "<" + std::string(py::repr(StrOf(self.lectura->texto))) + " " + host::ComoQuedo(self.Ahora()) +
               ">";
      });
}

void BindLecturas(py::module_& module, GuionType& type) {
  BindEntradaDeCinta(module);
  type.Hace(
          "lectura", "Lectura",
          "Lo que manda un lector, para esa pantalla o la del frente; da su entrada de la cinta.",
          [](Guion& self, const py::object& texto, forms::Form* forma) {
            return LecturaPropia{Called([&] { return self.nucleo->Host().Lectura(TextOf(texto), forma); }),
                                 self.nucleo};
          },
          Toma{"texto", "str"}, Puede{"forma", "Pantalla | None", py::none()})
      .Lee("cinta", "list[Lectura]", "Todas las lecturas, de la más antigua a la más nueva.",
           [](Guion& self) {
             std::vector<LecturaPropia> tape;
             for (auto& entry : Called([&] { return self.nucleo->Host().Cinta(); }))
               tape.push_back({std::move(entry), self.nucleo});
             return tape;
           });
}

void BindAlcance(py::module_& module, GuionType& type) {
  using F = host::Faltante;
  Clase<F>(module, "Faltante", "Un artículo del que no hay bastante para todo el documento.")
      .Lee("articulo", "str", "La clave del artículo.", [](const F& self) { return StrOf(self.articulo); })
      .Lee("pide", "float", "Lo que pide el documento, con todos sus renglones.",
           [](const F& self) { return self.pide; })
      .Lee("hay", "float", "La existencia en su almacén.", [](const F& self) { return self.hay; })
      .Lee("en_otros", "float", "Lo que piden de ahí otras salidas pendientes.",
           [](const F& self) { return self.en_otros; })
      .Lee("renglones", "list[int]", "Sus renglones en el documento.",
           [](const F& self) { return self.renglones; })
      .Tipo()
      .def("__repr__", [](const F& self) {
        return "<" + self.articulo + " pide " + data::PlainNumber(self.pide) + ", hay " +
               data::PlainNumber(self.hay) + ", en otros " + data::PlainNumber(self.en_otros) + ">";
      });
  using A = host::AvisoDeEntrada;
  Clase<A>(module, "AvisoDeEntrada", "Un renglón de una entrada que conviene mirar antes de afectarla.")
      .Lee("articulo", "str", "La clave del artículo.", [](const A& self) { return StrOf(self.articulo); })
      .Lee("renglon", "int", "El renglón.", [](const A& self) { return self.renglon; })
      .Lee("clase", "str", "precio, cantidad o repetido.", [](const A& self) { return StrOf(self.clase); })
      .Lee("texto", "str", "Qué tiene.", [](const A& self) { return StrOf(self.texto); })
      .Tipo()
      .def("__repr__", [](const A& self) { return "<" + self.clase + ": " + self.texto + ">"; });
  type.Hace(
          "alcanza", "list[Faltante]",
          "Lo que le falta a toda la salida de una pantalla para afectarla; vacía si hay de todo.",
          [](Guion& self, forms::Form& forma) {
            return Called([&] { return self.nucleo->Host().Alcanza(forma); });
          },
          Toma{"forma", "Pantalla"})
      .Hace(
          "avisos", "list[AvisoDeEntrada]",
          "Lo que parece un descuido en la entrada de una pantalla: precios, cantidades y renglones iguales.",
          [](Guion& self, forms::Form& forma) {
            return Called([&] { return self.nucleo->Host().Avisos(forma); });
          },
          Toma{"forma", "Pantalla"})
      .Hace(
          "imprime", "str", "Imprime de nuevo un documento guardado; da la ruta de su página.",
          [](Guion& self, const py::object& tipo, std::int64_t numero) {
            return StrOf(Called([&] { return self.nucleo->Host().Imprime(KindOf(tipo), NumberOf(numero)); }));
          },
          Toma{"tipo", "str"}, Toma{"n", "int"});
}

void BindRevision(py::module_& module, GuionType& type) {
  using O = host::Observacion;
  const auto text_or_none = [](const std::optional<std::string>& text) {
    return text ? py::object(StrOf(*text)) : py::object(py::none());
  };
  Clase<O>(module, "Observacion", "Algo que no está como debe en la base.")
      .Lee("clase", "str",
           "existencia, columna, a medias, adelantado, doble, distinto, huerfano, suelto, numero, tenencia o "
           "motor.",
           [](const O& self) { return StrOf(self.clase); })
      .Lee("tipo", "str | None", "Entrada o Salida, o nada.",
           [=](const O& self) { return text_or_none(self.tipo); })
      .Lee("documento", "int | None", "El número del documento, o nada.",
           [](const O& self) { return self.documento; })
      .Lee("renglon", "int | None",
           "El renglón; de existencia, el primer movimiento desde el que difiere. O nada.",
           [](const O& self) { return self.renglon; })
      .Lee("articulo", "str | None", "La clave del artículo, o nada.",
           [=](const O& self) { return text_or_none(self.articulo); })
      .Lee("almacen", "float | None", "El almacén, o nada.", [](const O& self) { return self.almacen; })
      .Lee("texto", "str", "Qué es y qué hacer.", [](const O& self) { return StrOf(self.texto); })
      .Lee("reparable", "bool", "Si puede repararse sin duda.", [](const O& self) { return self.reparable; })
      .Lee("reparado", "bool", "Si se acaba de reparar.", [](const O& self) { return self.reparado; })
      .Tipo()
      .def("__repr__", [](const O& self) { return "<" + self.clase + ": " + self.texto + ">"; });
  type.Hace(
      "revisa", "list[Observacion]",
      "Revisa toda la base; vacía si está sana. Con repara arregla lo que puede; con huecos da también los "
      "números que "
      "faltan.",
      [](Guion& self, bool repara, bool huecos) {
        return Called([&] { return self.nucleo->Host().Revisa(repara, huecos); });
      },
      Puede{"repara", "bool", py::bool_(false)}, Puede{"huecos", "bool", py::bool_(false)});
}

}  // namespace

void BindAlrededor(py::module_& module, GuionType& type) {
  BindAMedias(module, type);
  BindTenencias(module, type);
  BindPeticiones(module, type);
  BindBitacora(module, type);
  BindLecturas(module, type);
  BindAlcance(module, type);
  BindRevision(module, type);
}

}  // namespace tarvik::python
