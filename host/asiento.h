// One entry of the stock ledger, and its writing: ledger row, stock of article and warehouse, and the
// warehouse's own column on the article, in the caller's unit of work. It checks no stock, begins no
// unit and tells nobody.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "data/engine.h"
#include "data/value.h"
#include "host/testigo.h"

namespace tarvik::host {

// The properties of a movement; null is one that was never set.
struct Asiento {
  data::Value ent_sal;  // "E" into stock, "S" out of it
  data::Value clave_local, fecha, almacen, movimiento, tipo_doc, usuario, documento;
  data::Value operacion;  // "EN", "SA", "T+"; a routine's own
  data::Value articulo, cantidad, precio, id_entrada, id_salida, clave_add, estacion_traspaso, aplica;

  // Those that were set, by their names, in the contract's order.
  [[nodiscard]] Propiedades Puestas() const;
  // The column that names the document's line, "id_entrada" or "id_salida"; nullptr for a movement that is
  // of no document's line: a routine's own operation, a line number below 1 (one that could not be drawn),
  // a message of the other program's matrix. A line moves once; the base itself enforces it.
  [[nodiscard]] const char* ColumnaDelRenglon() const;
  [[nodiscard]] const data::Value& Renglon() const;  // the line's number; only where there is such a column
};

// Throws data::Error where the direction or the article is missing, or a figure is no number.
void ExigeCompleto(const Asiento& asiento);

// The earlier movement of a line.
struct AsientoDeAntes {
  std::string articulo;
  double almacen = 0;
  double cantidad = 0;
  double importe = 0;
  std::string documento;
};

// Whether the base held duplicates when its rule came: the rule then holds for the rows after them, and a
// line that moved before it is looked for. A rule comes while a base is opened; asked once in each program.
class ReglaDelLibro {
 public:
  explicit ReglaDelLibro(data::EngineConnection& connection) : connection_(connection) {}  // outlives this
  bool ConPasado();

 private:
  data::EngineConnection& connection_;
  std::optional<bool> with_past_;
};

// The ledger of one base, for one posting run.
class Libro {
 public:
  // Both outlive this.
  Libro(data::EngineConnection& connection, ReglaDelLibro& rule) : connection_(connection), rule_(rule) {}

  // Asks what a run has to know before its first unit: inside one, rows would stay locked meanwhile.
  void Prepara();

  // The movement's value: quantity times price for an inflow, quantity times the article's unit cost
  // for an outflow.
  double Importe(const Asiento& asiento);

  // Writes it, inside the caller's unit, and gives its value. Stock is kept at 15 significant digits, and
  // the new stock is kept on the ledger row, so that the first wrong row can be named. Rows are locked in
  // one order: stock, ledger, article.
  // Throws data::Error if the base refuses; Trouble::kDuplicate where the line has moved: the unit must
  // then be undone.
  double Asienta(const Asiento& asiento, const std::string& hora);

  // The earlier movement of the same line; nothing if there is none, and for a movement of no line.
  std::optional<AsientoDeAntes> Anterior(const Asiento& asiento);

 private:
  data::Value SumaExistencia(const Asiento& asiento, double cambio);
  double EscribeRenglon(const Asiento& asiento, const std::string& hora, const data::Value& saldo);
  void SumaEnElArticulo(const Asiento& asiento, double cambio);

  data::EngineConnection& connection_;
  ReglaDelLibro& rule_;
  std::optional<std::vector<std::string>> prods_columns_;  // asked for once a run
};

}  // namespace tarvik::host
