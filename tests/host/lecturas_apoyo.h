// The shop of the stories about readings: ANA's screens have the reader on.
#pragma once

#include <memory>
#include <string>

#include "host/lecturas.h"
#include "tests/host/puestos.h"

namespace tarvik::host {

class LecturasDeUnaTienda : public DosPuestos {
 protected:
  LecturasDeUnaTienda() { ana.anfitrion->Ambiente().Parametro("Lector", 1); }
  std::shared_ptr<Lectura> Lee(const std::string& texto, forms::Form* forma = nullptr) {
    return ana.anfitrion->Lectura(texto, forma);
  }
  ServicioDeLecturas& Servicio() { return ana.anfitrion->Lecturas(); }
  // "texto estado" of each entry, in order.
  std::string LaCinta() {
    std::string all;
    for (const auto& entry : ana.anfitrion->Cinta()) all += entry->texto + " " + entry->estado + "\n";
    return all;
  }
  std::string Renglones(const std::string& table = "entpart", const std::string& id = "id_entrada") {
    std::string all;
    for (const auto& row : Sql("SELECT articulo, cantidad FROM " + table + " ORDER BY " + id).rows)
      all += data::ToText(row[0]) + " x" + data::ToText(row[1]) + "\n";
    return all;
  }
  std::string Salidas() { return Renglones("salpart", "id_salida"); }
  // A document that is read by hand: the reader is off.
  frmEntradasWizard& EntradaAMano() {
    auto& f = ana.Entrada({});
    f.Check4.Value(0);
    return f;
  }
};

}  // namespace tarvik::host
