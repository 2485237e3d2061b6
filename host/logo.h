// The shop's logo, for its printed pages: the file logo.png, or else logo.svg, of the base's folder. It goes
// into the page itself, so that a page that is moved or mailed keeps it. Nothing is drawn here.
#pragma once

#include <optional>
#include <string>

namespace tarvik::host {

struct Logo {
  std::string datos;  // as the address of a picture: "data:image/png;base64,..."
  int ancho = 0;      // in dots, 96 to the inch; 0: as its height asks
  int alto = 0;
};

// Reduced to the place that a page has for it, and never enlarged. Nothing where there is no such file, where
// it is no picture of its kind, or larger than a page should carry (2 MB): a page is printed all the same.
std::optional<Logo> LeeLogo(const std::string& carpeta);

}  // namespace tarvik::host
