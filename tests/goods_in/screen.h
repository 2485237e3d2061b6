// Pantalla: the usual shop, and a stored goods-in to open.
#pragma once

#include "tests/support/escenario.h"

namespace tarvik::tests {

class Pantalla : public Escenario {
 protected:
  Pantalla() { Catalogo(); }
  // A stored document 7 with so many lines of A-100.
  void Documento(int renglones = 0, const char* estado = "PE", int ocupado = 0,
                 const char* usuario = "LUIS") {
    Sql("INSERT INTO entradas (entrada, tipo_doc, f_emision, almacen, importe, estado, ocupado, observ, "
        "datos, usuario) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        {7, "COM", "2024-02-28", 2, 23.2, estado, ocupado, "Frágil", "Compra vieja", usuario});
    for (int i = 1; i <= renglones; ++i) {
      Sql("INSERT INTO entpart (id_entrada, entrada, articulo, cantidad, precio, observ, prdescrip, "
          "prcantidad) "
          "VALUES (?, ?, ?, ?, ?, ?, ?, ?)",
          {70 + i, 7, "A-100", i + 0.5, 11.6, i == 1 ? data::Value("Martillo") : data::Value(), "Caja", i});
    }
  }
  std::string Ocupado() { return Uno("SELECT ocupado FROM entradas WHERE entrada = 7"); }
};

}  // namespace tarvik::tests
