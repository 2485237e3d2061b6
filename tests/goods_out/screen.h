// PantallaDeSalidas: the lock of a stored goods-out.
#pragma once

#include "tests/goods_out/support.h"

namespace tarvik::tests {

class PantallaDeSalidas : public EscenarioDeSalidas {
 protected:
  std::string Ocupado() { return Uno("SELECT ocupado FROM salidas WHERE salida = 7"); }
};

}  // namespace tarvik::tests
