// Bars of a barcode, for whoever draws them: the page as SVG, a window as a picture. Draws nothing.
#pragma once

#include <string_view>
#include <vector>

namespace tarvik::host {

struct Barra {
  int x;
  int ancho;
};

// A narrow bar is 2 wide, a wide one 5; the white that a scanner needs is on both sides.
struct Barras {
  std::vector<Barra> barras;
  int ancho = 0;
  int alto = 0;
};

// Code 39, with the start and stop marks. Throws data::Error for a character other than digits,
// capital letters and '-'.
Barras BarrasDe(std::string_view text);

}  // namespace tarvik::host
