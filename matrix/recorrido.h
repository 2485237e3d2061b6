// The cursor's travel over the matrix: where it goes from a cell on which it may not rest. It only
// computes places; which cells are blocked, and when the travel ends, the screen knows.
#pragma once

#include <compare>

namespace tarvik {

// The rows and columns of a grid, with its headers.
struct Cuadricula {
  int filas = 0;
  int columnas = 0;
  int filas_fijas = 0;
  int columnas_fijas = 0;
};

// A cell, and the one from which the cursor came to it: together they give the direction.
struct Lugar {
  int fila = 0;
  int columna = 0;
  int fila_anterior = 0;
  int columna_anterior = 0;

  auto operator<=>(const Lugar&) const = default;
};

// One step on in the direction of travel. After the last column it wraps to the start of the next
// row, after the last row to the top of the next column, and the same backwards. Gives the same cell
// where there is no direction. REQUIRES at least two rows and two columns that are no headers: then
// the cell given is never a header.
// Example: 5 rows by 5 columns, 2 and 2 fixed, from (3, 4) coming from (3, 3): (4, 2), still rightwards.
Lugar Siguiente(const Lugar& lugar, const Cuadricula& malla);

}  // namespace tarvik
