// Estaciones: the screen of a transfer between stations, open in the usual shop.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "stations/frm_mov_estaciones.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {

class Estaciones : public Escenario {
 protected:
  using Textos = std::vector<std::string>;

  Estaciones() {
    Catalogo();
    Sql("INSERT INTO ESTACIONES (ESTACION) VALUES ('E2')");
  }

  // The screen of transfer 12. Forgets what was seen until then.
  frmMovEstaciones& Abre() {
    movimientos->movimientoEstacion(12, false);
    auto& f = Ultima();
    Olvida();
    return f;
  }
  frmMovEstaciones& Ultima() {
    auto& f = dynamic_cast<frmMovEstaciones&>(*plataforma.Screens().back());
    vivas_.push_back(f.shared_from_this());
    return f;
  }
  void Gancho(const std::string& clave, std::function<void(frmMovEstaciones&)> rutina) {
    anfitrion->Gancho(clave, [rutina = std::move(rutina)](forms::Form& forma, host::AmbienteLocal&) {
      rutina(dynamic_cast<frmMovEstaciones&>(forma));
    });
  }
  void Veta(const std::string& clave) {
    Gancho(clave, [](frmMovEstaciones& f) { f.CancelaProceso = true; });
  }
  // Lines as a routine sets them up: a header and so many rows.
  static void LlenaGrid(frmMovEstaciones& f, int renglones) {
    f.grid.Cols(2);
    f.grid.Rows(renglones + 1);
    f.grid.FixedRows(1);
    f.grid.TextMatrix(0, 0, "Artículo");
    for (int renglon = 1; renglon <= renglones; ++renglon) {
      f.grid.TextMatrix(renglon, 0, "A-" + std::to_string(renglon));
    }
  }
  static Textos EnGrid(frmMovEstaciones& f) {
    Textos textos;
    for (int renglon = f.grid.FixedRows(); renglon < f.grid.Rows(); ++renglon) {
      textos.push_back(f.grid.TextMatrix(renglon, 0));
    }
    return textos;
  }

 private:
  std::vector<std::shared_ptr<forms::Form>> vivas_;
};

}  // namespace tarvik::tests
