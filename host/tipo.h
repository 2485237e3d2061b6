// The two kinds of document, by the names that tables and scripts know them by.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarvik::host {

enum class Tipo { Entrada, Salida };

// "Entrada", "Salida".
std::string_view NombreDe(Tipo tipo);
// Without regard to case; nothing for any other name.
std::optional<Tipo> TipoLlamado(std::string_view name);

// Where a kind's documents, lines and movements stand.
struct Tablas {
  std::string_view encabezado;  // table, and the column of the document's number in both tables
  std::string_view numero;
  std::string_view partidas;
  std::string_view renglon;  // the line's key, in the lines and in the ledger
  std::string_view serie;
};
const Tablas& TablasDe(Tipo tipo);

}  // namespace tarvik::host
