// RenglonesDeSalida: a goods-out whose lines are made.
#pragma once

#include "goods_out/columnas.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {

class RenglonesDeSalida : public EscenarioDeSalidas {
 protected:
  void Usa(frmSalidasWizard& f, int hasta) {
    for (int renglon = 1; renglon <= hasta; ++renglon) {
      f.fg2.TextMatrix(renglon, columna_salida::Articulo, "X");
      f.fg2.TextMatrix(renglon, columna_salida::Cantidad, "1");
      f.fg2.TextMatrix(renglon, columna_salida::Precio, "1");
    }
  }
  void RenglonVacio(frmSalidasWizard& f) {
    for (int campo : {1, 4, 5, 6, 24, 25, 26, 27, 28, 29}) EXPECT_EQ(f.txtFields(campo).Text(), "") << campo;
  }
};

// The article's lookup, as it is sent.
inline constexpr const char* kArticulo =
    "SELECT prods.articulo, prods.descrip, prods.unidad, prods.precio1, prods.impuesto, impuestos.valor FROM "
    "prods INNER JOIN impuestos ON prods.impuesto = impuestos.impuesto WHERE articulo = 'A-100'";

}  // namespace tarvik::tests
