// The judge: what stations have acknowledged, and whether a base holds it. Its statements are its own,
// and read nothing but tables.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "data/engine.h"
#include "host/documentos.h"

namespace tarvik::caos {

// What was said by stations, in the order in which it was said.
class Acuses {
 public:
  // One line as an Estacion says it; what is no acknowledgement is passed over.
  void Oye(const std::string& linea);

  struct Renglon {
    std::int32_t documento = 0;
    std::string articulo;
    std::optional<double> cantidad;             // nothing: it is gone
    std::vector<std::optional<double>> o_bien;  // a change that was under way when the station fell silent
  };
  using Clave = std::pair<host::Tipo, std::int32_t>;

  [[nodiscard]] const std::map<Clave, Renglon>& Renglones() const { return renglones_; }
  [[nodiscard]] const std::set<Clave>& Afectados() const { return afectados_; }

 private:
  std::map<Clave, Renglon> renglones_;
  std::set<Clave> afectados_;
};

using Fallas = std::vector<std::string>;

// Before anything is completed: a finish that was acknowledged lacks no movement, and every acknowledged
// line is there. Gives what is wrong, one sentence each.
Fallas JuzgaAcuses(data::EngineConnection& conexion, const Acuses& acuses);

// What holds at any moment, whoever works: no line moved twice, every movement as its line, stock equal to
// the ledger in both places, numbers unique and within their series, no line without a header.
Fallas JuzgaLibros(data::EngineConnection& conexion);

// What holds once all is completed: no posted document lacks a movement, an arrival for every departure of a
// transfer, no pending document with a line that has moved.
Fallas JuzgaEnteros(data::EngineConnection& conexion);

}  // namespace tarvik::caos
