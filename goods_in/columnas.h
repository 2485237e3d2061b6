// The grid of a goods-in document's lines: its columns by name, and as designed.
#pragma once

#include <iterator>

#include "wizard/columna.h"

namespace tarvik {

namespace columna_entrada {

// fg2.TextMatrix(1, columna_entrada::Cantidad)
enum Columna : int {
  Articulo,
  Cantidad,
  Precio,
  Importe,
  Descripcion,
  IdEntrada,  // of the stored line
  Presentacion,
  Presentaciones,
};

}  // namespace columna_entrada

// In the order of the names above. Two more columns of the grid stay unused.
inline constexpr Columna kColumnasDeEntrada[] = {
    {"Artículo", 0},       {"QTY", 800},         {"Precio", 900},        {"Importe", 900},
    {"Descripción", 4000}, {"No de Entrada", 0}, {"Presentación", 2000}, {"Pr. QTY", 1000}};
static_assert(std::size(kColumnasDeEntrada) == columna_entrada::Presentaciones + 1);
static_assert(+columna_entrada::Articulo == kColumnaDelArticulo);

}  // namespace tarvik
