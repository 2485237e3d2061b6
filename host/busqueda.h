// Searches by title: what the search boxes and pickers of the suite mean by "Articulos", "Clientes"
// and so on, and the rows that fit what was typed. It shows nothing and chooses nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/engine.h"

namespace tarvik::host {

struct Busqueda {
  std::string_view titulo;
  std::string_view tabla;
  std::string_view clave;        // column that goes to the field
  std::string_view descripcion;  // column that a person reads
  std::string_view extra;        // a further column; may be empty
  std::string_view ent_sal;      // concepts only: "E" or "S"
};

// The titles of the suite, in its own spelling.
const std::vector<Busqueda>& Busquedas();
// Without regard to case; nullptr for an unknown title.
const Busqueda* BusquedaPor(std::string_view titulo);

struct Hallazgo {
  std::string clave;
  std::string descripcion;
  std::string extra;  // articles: the second key by which it was found, else the unit
};

// At most `limit` rows, each key once: the key itself, then keys that begin with the text, then
// descriptions that hold every word of it, then, for articles, second keys that begin with it.
// Without regard to case. An empty text gives the first keys of the table.
// Throws data::Error for an unknown title.
std::vector<Hallazgo> Busca(data::EngineConnection& connection, std::string_view titulo,
                            const std::string& typed, std::size_t limit);

}  // namespace tarvik::host
