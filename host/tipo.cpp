#include "host/tipo.h"

#include "data/text.h"

namespace tarvik::host {

std::string_view NombreDe(Tipo tipo) { return tipo == Tipo::Entrada ? "Entrada" : "Salida"; }

std::optional<Tipo> TipoLlamado(std::string_view name) {
  for (const Tipo tipo : {Tipo::Entrada, Tipo::Salida}) {
    if (data::EqualsNoCase(name, NombreDe(tipo))) return tipo;
  }
  return {};
}

const Tablas& TablasDe(Tipo tipo) {
  static constexpr Tablas kEntradas{"entradas", "entrada", "entpart", "id_entrada", "MovEnt"};
  static constexpr Tablas kSalidas{"salidas", "salida", "salpart", "id_salida", "Salida"};
  return tipo == Tipo::Entrada ? kEntradas : kSalidas;
}

}  // namespace tarvik::host
