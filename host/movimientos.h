// MovimientoLocal: posts one stock movement at a time into the ledger and the stock, in one
// transaction. It checks no stock: goods move as the screens let them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "data/engine.h"
#include "forms/platform.h"
#include "host/testigo.h"
#include "service/host_services.h"

namespace tarvik::host {

class MovimientoLocal : public service::MovimientoInventario {
 public:
  // Both outlive this.
  MovimientoLocal(forms::Platform& platform, Testigo& testigo) : platform_(platform), testigo_(testigo) {}

  void Ambiente(service::Ambiente& ambiente) override { ambiente_ = &ambiente; }
  void EntSal(const std::string& value) override { ent_sal_ = value; }
  void ClaveLocal(const std::string& value) override { clave_local_ = value; }
  void Fecha(const data::Date& value) override { fecha_ = value; }
  void Almacen(double value) override { almacen_ = value; }
  void Movimiento(std::int32_t value) override { movimiento_ = value; }
  void TipoDoc(const std::string& value) override { tipo_doc_ = value; }
  void Usuario(const std::string& value) override { usuario_ = value; }
  void Documento(const std::string& value) override { documento_ = value; }
  void Operacion(const std::string& value) override { operacion_ = value; }
  void Articulo(const std::string& value) override { articulo_ = value; }
  void Cantidad(double value) override { cantidad_ = value; }
  void Precio(double value) override { precio_ = value; }
  void IdEntrada(std::int32_t value) override { id_entrada_ = value; }
  void IdSalida(std::int32_t value) override { id_salida_ = value; }
  void ClaveAdd(const std::string& value) override { clave_add_ = value; }
  void EstacionTraspaso(const std::string& value) override { estacion_traspaso_ = value; }
  void Aplica(bool value) override { aplica_ = value; }

  // Quantity times price for an inflow, quantity times the article's unit cost for an outflow. With
  // Aplica set to false nothing is written, and the amount is given all the same.
  // Throws data::Error, with nothing written, if the context, the article or the direction is not
  // set or the base refuses any of the steps.
  void Afecta(bool flag, double& amount) override;

 private:
  void Escribe(data::EngineConnection& connection, double amount);
  bool TieneColumnaDeAlmacen(data::EngineConnection& connection, const std::string& column);
  [[nodiscard]] Propiedades Puestas() const;

  forms::Platform& platform_;
  Testigo& testigo_;
  service::Ambiente* ambiente_ = nullptr;
  // The properties; null is one that was never set.
  data::Value ent_sal_, clave_local_, fecha_, almacen_, movimiento_, tipo_doc_, usuario_, documento_,
      operacion_, articulo_, cantidad_, precio_, id_entrada_, id_salida_, clave_add_, estacion_traspaso_,
      aplica_;
  std::optional<std::vector<std::string>> prods_columns_;  // asked for once a run
};

}  // namespace tarvik::host
