// Posting: ledger row, stock of article and warehouse, and the warehouse's column on the article.
#include "host/movimientos.h"

#include <algorithm>
#include <cmath>

#include "data/error.h"
#include "data/text.h"

namespace tarvik::host {

void MovimientoLocal::Afecta(bool, double& amount) {
  testigo_.Servicio("Afecta");
  if (ambiente_ == nullptr) throw data::Error("El movimiento no tiene ambiente");
  const std::string direction = data::ToText(ent_sal_);
  if (direction != "E" && direction != "S") {
    throw data::Error("El movimiento no indica si es de entrada o de salida");
  }
  if (data::Trim(data::ToText(articulo_)).empty()) throw data::Error("El movimiento no tiene artículo");
  // What is no number would leave the stock without one. A property that was never set is another
  // matter: the movement is written with what there is.
  for (const auto* value : {&almacen_, &cantidad_, &precio_}) {
    if (!std::isfinite(data::ToNumber(*value)))
      throw data::Error("El movimiento tiene una cifra que no es un número");
  }

  data::EngineConnection& connection = ambiente_->Conexion().Engine();
  const double quantity = data::ToNumber(cantidad_);
  const auto amount_now = [&] {
    if (direction == "E") return quantity * data::ToNumber(precio_);
    const auto cost = connection.Run("SELECT costo_u FROM prods WHERE articulo = ?", {articulo_});
    return cost.rows.empty() ? 0.0 : quantity * data::ToNumber(cost.rows.front().front());
  };

  double result = 0;
  if (aplica_.IsNull() || data::IsNonZero(aplica_)) {
    data::Transaction whole(connection);
    result = amount_now();
    Escribe(connection, result);
    whole.Commit();
  } else {
    result = amount_now();
  }
  testigo_.Movimiento(Puestas(), result);
  amount = result;
}

void MovimientoLocal::Escribe(data::EngineConnection& connection, double amount) {
  connection.Run(
      "INSERT INTO movsinv (ent_sal, clavelocal, f_movim, almacen, movimiento, tipo_doc, usuario, documento, "
      "operacion, articulo, cantidad, precio, id_entrada, id_salida, claveadd, estaciontraspaso, importe, "
      "cerrado, usuhora) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
      {ent_sal_, clave_local_, fecha_, almacen_, movimiento_, tipo_doc_, usuario_, documento_, operacion_,
       articulo_, cantidad_, precio_, id_entrada_, id_salida_, clave_add_, estacion_traspaso_, amount, 0,
       platform_.Now().time.Text()});

  const double warehouse = data::ToNumber(almacen_);
  const double change =
      data::ToText(ent_sal_) == "E" ? data::ToNumber(cantidad_) : -data::ToNumber(cantidad_);
  connection.Run(
      "INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (?, ?, ?) "
      "ON CONFLICT (almacen, articulo) "
      "DO UPDATE SET existencia = COALESCE(existenciaalmacen.existencia, 0) + excluded.existencia",
      {warehouse, articulo_, change});

  if (warehouse != std::trunc(warehouse) || std::abs(warehouse) > 1e9) return;
  const std::string column = "alm" + std::to_string(static_cast<long>(warehouse));
  if (!TieneColumnaDeAlmacen(connection, column)) return;
  connection.Run("UPDATE prods SET " + column + " = COALESCE(" + column + ", 0) + ? WHERE articulo = ?",
                 {change, articulo_});
}

bool MovimientoLocal::TieneColumnaDeAlmacen(data::EngineConnection& connection, const std::string& column) {
  if (!prods_columns_) prods_columns_ = connection.Columns("prods");
  return std::find(prods_columns_->begin(), prods_columns_->end(), column) != prods_columns_->end();
}

Propiedades MovimientoLocal::Puestas() const {
  Propiedades set;
  for (const auto& [name, value] : {std::pair<const char*, const data::Value*>{"EntSal", &ent_sal_},
                                    {"ClaveLocal", &clave_local_},
                                    {"Fecha", &fecha_},
                                    {"Almacen", &almacen_},
                                    {"Movimiento", &movimiento_},
                                    {"TipoDoc", &tipo_doc_},
                                    {"Usuario", &usuario_},
                                    {"Documento", &documento_},
                                    {"Operacion", &operacion_},
                                    {"Articulo", &articulo_},
                                    {"Cantidad", &cantidad_},
                                    {"Precio", &precio_},
                                    {"IdEntrada", &id_entrada_},
                                    {"IdSalida", &id_salida_},
                                    {"ClaveAdd", &clave_add_},
                                    {"EstacionTraspaso", &estacion_traspaso_},
                                    {"Aplica", &aplica_}}) {
    if (!value->IsNull()) set.emplace_back(name, *value);
  }
  return set;
}

}  // namespace tarvik::host
