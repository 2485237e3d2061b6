#include "host/asiento.h"

#include <algorithm>
#include <cmath>

#include "data/error.h"
#include "data/schema.h"
#include "data/text.h"

namespace tarvik::host {
namespace {

// A sum as it is kept: at 15 significant digits, so that eight times a tenth are 0.8 and no less.
std::string AQuinceCifras(data::Dialect dialect, const std::string& suma) {
  return dialect == data::Dialect::Sqlite ? "CAST(format('%.15g', " + suma + ") AS REAL)"
                                          : "CAST(CAST(" + suma + " AS NUMERIC) AS DOUBLE PRECISION)";
}

}  // namespace

bool ReglaDelLibro::ConPasado() {
  if (!with_past_) with_past_ = !data::RulesWithPast(connection_).empty();
  return *with_past_;
}

data::Value Libro::SumaExistencia(const Asiento& asiento, double cambio) {
  const std::string suma =
      AQuinceCifras(connection_.Kind(), "COALESCE(existenciaalmacen.existencia, 0) + excluded.existencia");
  const data::Rows rows = connection_.Run(
      "INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (?, ?, ?) "
      "ON CONFLICT (almacen, articulo) DO UPDATE SET existencia = " +
          suma + " RETURNING existencia",
      {data::ToNumber(asiento.almacen), asiento.articulo, cambio});
  return rows.rows.at(0).at(0);
}

double Libro::EscribeRenglon(const Asiento& a, const std::string& hora, const data::Value& saldo) {
  std::vector<data::Value> values = {
      a.ent_sal,    a.clave_local, a.fecha,     a.almacen,           a.movimiento, a.tipo_doc,
      a.usuario,    a.documento,   a.operacion, a.articulo,          a.cantidad,   a.precio,
      a.id_entrada, a.id_salida,   a.clave_add, a.estacion_traspaso, hora,         saldo};
  std::string importe = "?";
  if (data::ToText(a.ent_sal) == "E") {
    values.emplace_back(data::ToNumber(a.cantidad) * data::ToNumber(a.precio));
  } else {
    importe = "COALESCE((SELECT costo_u FROM prods WHERE articulo = ?), 0) * CAST(? AS DOUBLE PRECISION)";
    values.push_back(a.articulo);
    values.emplace_back(data::ToNumber(a.cantidad));
  }
  const data::Rows rows = connection_.Run(
      "INSERT INTO movsinv (ent_sal, clavelocal, f_movim, almacen, movimiento, tipo_doc, usuario, documento, "
      "operacion, articulo, cantidad, precio, id_entrada, id_salida, claveadd, estaciontraspaso, usuhora, "
      "saldo, importe, cerrado) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, " +
          importe + ", 0) RETURNING importe",
      values);
  return data::ToNumber(rows.rows.at(0).at(0));
}

void Libro::SumaEnElArticulo(const Asiento& asiento, double cambio) {
  const double almacen = data::ToNumber(asiento.almacen);
  if (almacen != std::trunc(almacen) || std::abs(almacen) > 1e9) return;
  const std::string columna = "ALM" + std::to_string(static_cast<long>(almacen));
  Prepara();
  if (std::find(prods_columns_->begin(), prods_columns_->end(), data::LowerAscii(columna)) ==
      prods_columns_->end()) {
    return;
  }
  connection_.Run("UPDATE prods SET " + columna + " = " +
                      AQuinceCifras(connection_.Kind(), "COALESCE(" + columna + ", 0) + ?") +
                      " WHERE articulo = ?",
                  {cambio, asiento.articulo});
}

Propiedades Asiento::Puestas() const {
  Propiedades set;
  for (const auto& [name, value] : {std::pair<const char*, const data::Value*>{"EntSal", &ent_sal},
                                    {"ClaveLocal", &clave_local},
                                    {"Fecha", &fecha},
                                    {"Almacen", &almacen},
                                    {"Movimiento", &movimiento},
                                    {"TipoDoc", &tipo_doc},
                                    {"Usuario", &usuario},
                                    {"Documento", &documento},
                                    {"Operacion", &operacion},
                                    {"Articulo", &articulo},
                                    {"Cantidad", &cantidad},
                                    {"Precio", &precio},
                                    {"IdEntrada", &id_entrada},
                                    {"IdSalida", &id_salida},
                                    {"ClaveAdd", &clave_add},
                                    {"EstacionTraspaso", &estacion_traspaso},
                                    {"Aplica", &aplica}}) {
    if (!value->IsNull()) set.emplace_back(name, *value);
  }
  return set;
}

const char* Asiento::ColumnaDelRenglon() const {
  const std::string operation = data::ToText(operacion);
  if (data::ToText(clave_add) == "999" && almacen.IsNull()) return nullptr;
  if (operation == "EN" && data::ToNumber(id_entrada) >= 1) return "id_entrada";
  if ((operation == "SA" || operation == "T+") && data::ToNumber(id_salida) >= 1) return "id_salida";
  return nullptr;
}

const data::Value& Asiento::Renglon() const {
  return data::ToText(operacion) == "EN" ? id_entrada : id_salida;
}

void ExigeCompleto(const Asiento& asiento) {
  const std::string direction = data::ToText(asiento.ent_sal);
  if (direction != "E" && direction != "S") {
    throw data::Error("El movimiento no indica si es de entrada o de salida");
  }
  if (data::Trim(data::ToText(asiento.articulo)).empty()) {
    throw data::Error("El movimiento no tiene artículo");
  }
  // A value that is no number would leave the stock without one. A property that was never set is
  // different: the movement is written with what there is.
  for (const auto* value : {&asiento.almacen, &asiento.cantidad, &asiento.precio}) {
    if (!std::isfinite(data::ToNumber(*value))) {
      throw data::Error("El movimiento tiene una cifra que no es un número");
    }
  }
}

double Libro::Importe(const Asiento& asiento) {
  const double quantity = data::ToNumber(asiento.cantidad);
  if (data::ToText(asiento.ent_sal) == "E") return quantity * data::ToNumber(asiento.precio);
  const auto cost = connection_.Run("SELECT costo_u FROM prods WHERE articulo = ?", {asiento.articulo});
  return cost.rows.empty() ? 0.0 : quantity * data::ToNumber(cost.rows.front().front());
}

double Libro::Asienta(const Asiento& asiento, const std::string& hora) {
  const double quantity = data::ToNumber(asiento.cantidad);
  const double change = data::ToText(asiento.ent_sal) == "E" ? quantity : -quantity;
  const data::Value balance = SumaExistencia(asiento, change);
  // Where the base's rule covers only what came after it, a line that moved before is looked for here.
  if (asiento.ColumnaDelRenglon() != nullptr && rule_.ConPasado() && Anterior(asiento)) {
    throw data::Error("El renglón ya se había movido", data::Trouble::kDuplicate);
  }
  const double worth = EscribeRenglon(asiento, hora, balance);
  SumaEnElArticulo(asiento, change);
  return worth;
}

void Libro::Prepara() {
  rule_.ConPasado();
  if (!prods_columns_) prods_columns_ = connection_.Columns("prods");
}

std::optional<AsientoDeAntes> Libro::Anterior(const Asiento& asiento) {
  const char* column = asiento.ColumnaDelRenglon();
  if (column == nullptr) return {};
  const data::Rows rows = connection_.Run(
      "SELECT articulo, almacen, cantidad, importe, documento FROM movsinv WHERE " + std::string(column) +
          " = ? AND operacion = ? AND (claveadd IS NULL OR claveadd <> '999' OR almacen IS NOT NULL) ORDER "
          "BY id "
          "LIMIT 1",
      {asiento.Renglon(), asiento.operacion});
  if (rows.rows.empty()) return {};
  const auto& row = rows.rows.front();
  return AsientoDeAntes{data::ToText(row[0]), data::ToNumber(row[1]), data::ToNumber(row[2]),
                        data::ToNumber(row[3]), data::ToText(row[4])};
}

}  // namespace tarvik::host
