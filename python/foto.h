// Foto: a picture of everything on a screen that a routine can change, and what is different in a later
// one. It changes nothing and knows no interpreter.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "forms/flex_grid.h"
#include "forms/form.h"
#include "python/ganchos.h"

namespace tarvik::python {

// The screen's CancelaProceso; false where it has none.
bool Cancelado(const forms::Form& form);

class Foto {
 public:
  explicit Foto(const forms::Form& form);

  [[nodiscard]] bool Cancelada() const { return cancelled_; }

  // Adds to the run what is different in a later picture of the same screen.
  void Compara(const Foto& later, Corrida& run) const;

 private:
  struct Pieza {
    std::string nombre;
    std::string contenido;
    bool habilitado;
    bool visible;
  };

  // The cells that hold something: a grid has thousands of rows and few of them are used.
  struct Malla {
    explicit Malla(const forms::FlexGrid& grid);

    std::string nombre;
    int filas;
    int columnas;
    std::vector<std::pair<std::pair<int, int>, std::string>> celdas;  // in the order of their places
  };

  std::string caption_;
  std::string mode_;
  bool cancelled_;
  std::vector<Pieza> pieces_;
  std::vector<Malla> grids_;
};

}  // namespace tarvik::python
