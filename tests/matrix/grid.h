// EnLaMalla: a matrix by itself, and what the operator sees of its remainder.
#pragma once

#include <string>

#include "tests/matrix/support.h"

namespace tarvik::tests {

class EnLaMalla : public EscenarioDeMalla {
 protected:
  // What the operator sees of the remainder.
  void Restan(const frmMallaModelos& m, const std::string& cuanto, int color) {
    EXPECT_EQ(m.txtRemanente.Text(), cuanto);
    EXPECT_EQ(m.txtRemanente.ForeColor(), color);
    EXPECT_EQ(m.cmdAceptar.Enabled(), color == kVerde);
  }
  // A paste into the open cell, which no key filter sees.
  static void Pega(frmMallaModelos& m, const std::string& texto) {
    Tecla(m, "Enter", m.fg2);
    m.Paste(texto);
    Tecla(m, "Enter");
  }
};

}  // namespace tarvik::tests
