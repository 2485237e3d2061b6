// A column of a wizard's grid as designed.
#pragma once

namespace tarvik {

struct Columna {
  const char* titulo;
  int ancho;  // in twips; 0 hides. The first column takes one and a half times the grid's own width
};

// The column that tells a line from a free row: the article, first in both grids.
inline constexpr int kColumnaDelArticulo = 0;

}  // namespace tarvik
