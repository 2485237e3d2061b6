// The grid of a goods-out document's lines: its columns by name, and as designed.
#pragma once

#include <iterator>

#include "wizard/columna.h"

namespace tarvik {

namespace columna_salida {

// fg2.TextMatrix(1, columna_salida::Cantidad)
enum Columna : int {
  Articulo,
  Cantidad,
  Existencia,  // what is left once the line has gone
  Precio,
  Importe,
  Descripcion,
  IdSalida,  // of the stored line
  Presentacion,
  Presentaciones,
  ExistenciaDelAlmacen,
  SegundaClave,
};

}  // namespace columna_salida

// In the order of the names above.
inline constexpr Columna kColumnasDeSalida[] = {{"Artículo", 0},
                                                {"QTY", 800},
                                                {"Existencia", 900},
                                                {"Precio", 900},
                                                {"Importe", 0},
                                                {"Descripción", 4000},
                                                {"No de salida", 0},
                                                {"Presentación", 1000},
                                                {"Pr. QTY", 1000},
                                                {"", 0},
                                                {"", 0}};
static_assert(std::size(kColumnasDeSalida) == columna_salida::SegundaClave + 1);
static_assert(+columna_salida::Articulo == kColumnaDelArticulo);

}  // namespace tarvik
