// Encabezado: a new goods-in whose header is in hand, and where its focus is.
#pragma once

#include <string>
#include <vector>

#include "tests/support/escenario.h"

namespace tarvik::tests {

class Encabezado : public Escenario {
 protected:
  using Textos = std::vector<std::string>;

  Encabezado() {
    Catalogo();
    f_ = &Nueva();
    Olvida();
  }
  frmEntradasWizard& f() { return *f_; }
  forms::TextBox& campo(int indice) { return f_->txtFields(indice); }
  int foco() {
    auto* activo = f_->ActiveControl();
    return activo && activo->Name() == "txtFields" ? *activo->Index() : -1;
  }
  frmEntradasWizard* f_ = nullptr;
};

}  // namespace tarvik::tests
