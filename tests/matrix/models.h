// Modelos: a goods-in of the shop that sells the shirt, and what its matrix makes of the shirt's key.
#pragma once

#include <functional>
#include <string>

#include "tests/matrix/support.h"

namespace tarvik::tests {

class Modelos : public EscenarioDeMalla {
 protected:
  Modelos() { Camisas(); }

  // Enter in the price: the row is to become a line.
  void Intenta(frmEntradasWizard& f) { Tecla(f, "Enter", f.txtFields(campo::Precio)); }
  // The matrix of a key, looked at and cancelled.
  void Mira(std::function<void(frmMallaModelos&)> mira, const std::string& cantidad = "10",
            const std::string& clave = "CAM") {
    Ante(std::move(mira));
    Intenta(ConClave(clave, cantidad));
    EXPECT_EQ(mostradas, 1);
  }
  // "CAM-AZ-1CH 4": articles and quantities of the stored lines, in order.
  Textos Renglones() {
    Textos renglones;
    for (const auto& fila : Sql("SELECT articulo, cantidad FROM entpart ORDER BY id_entrada").rows) {
      renglones.push_back(data::ToText(fila[0]) + " " + data::ToText(fila[1]));
    }
    return renglones;
  }
  [[nodiscard]] int Cuantas(const std::string& trozo) const {
    int cuantas = 0;
    for (const auto& sentencia : bitacora.sentencias) cuantas += sentencia.find(trozo) != std::string::npos;
    return cuantas;
  }
};

}  // namespace tarvik::tests
