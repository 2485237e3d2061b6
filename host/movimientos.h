// MovimientoLocal: posts one stock movement at a time into the ledger and the stock, in one
// transaction, and no line of a document twice. It checks no stock: goods move as the screens let them.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "data/engine.h"
#include "forms/platform.h"
#include "host/asiento.h"
#include "host/cierres.h"
#include "host/documentos.h"
#include "host/testigo.h"
#include "service/contract/host_services.h"

namespace tarvik::host {

class MovimientoLocal : public service::MovimientoInventario {
 public:
  // Told of what the operator should know once the act is over: a line that had moved with another quantity.
  using Aviso = std::function<void(const std::string&)>;

  // Asked before a document's line is moved; throws where it may not be: its screen has lost the document.
  using Permiso = std::function<void(Tipo, std::int32_t renglon)>;

  // All outlive this; `cierres` may be nullptr: how far a finish came is then not kept.
  MovimientoLocal(forms::Platform& platform, Testigo& testigo, ReglaDelLibro& regla, Cierres* cierres,
                  Permiso permiso, Aviso aviso)
      : platform_(platform),
        testigo_(testigo),
        regla_(regla),
        cierres_(cierres),
        permiso_(std::move(permiso)),
        aviso_(std::move(aviso)) {}

  void Ambiente(service::Ambiente& ambiente) override { ambiente_ = &ambiente; }
  void EntSal(const std::string& value) override { asiento_.ent_sal = value; }
  void ClaveLocal(const std::string& value) override { asiento_.clave_local = value; }
  void Fecha(const data::Date& value) override { asiento_.fecha = value; }
  void Almacen(double value) override { asiento_.almacen = value; }
  void Movimiento(std::int32_t value) override { asiento_.movimiento = value; }
  void TipoDoc(const std::string& value) override { asiento_.tipo_doc = value; }
  void Usuario(const std::string& value) override { asiento_.usuario = value; }
  void Documento(const std::string& value) override { asiento_.documento = value; }
  void Operacion(const std::string& value) override { asiento_.operacion = value; }
  void Articulo(const std::string& value) override { asiento_.articulo = value; }
  void Cantidad(double value) override { asiento_.cantidad = value; }
  void Precio(double value) override { asiento_.precio = value; }
  void IdEntrada(std::int32_t value) override { asiento_.id_entrada = value; }
  void IdSalida(std::int32_t value) override { asiento_.id_salida = value; }
  void ClaveAdd(const std::string& value) override { asiento_.clave_add = value; }
  void EstacionTraspaso(const std::string& value) override { asiento_.estacion_traspaso = value; }
  void Aplica(bool value) override { asiento_.aplica = value; }

  // Quantity times price for an inflow, quantity times the article's unit cost for an outflow. With
  // Aplica set to false nothing is written, and the amount is given all the same.
  //
  // Safe to call twice for a document's line: one that has moved moves nothing more and gives the earlier
  // amount. A base that is busy, or a session that is being replaced, is tried again as long as the
  // connection's patience lasts; a movement of no line is not, once its session was lost on the way.
  // Throws data::Error, with nothing written, if the context, the article or the direction is not set, if
  // the line has moved with another article or in another warehouse, or the base refuses any of the steps;
  // data::Unrecoverable if the line's screen may not move it any more.
  void Afecta(double& amount) override;

 private:
  double Mueve(data::EngineConnection& connection, Libro& libro);
  double ComoEntonces(const AsientoDeAntes& antes) const;

  forms::Platform& platform_;
  Testigo& testigo_;
  ReglaDelLibro& regla_;
  Cierres* cierres_;
  Permiso permiso_;
  Aviso aviso_;
  service::Ambiente* ambiente_ = nullptr;
  Asiento asiento_;
  std::optional<Libro> libro_;
};

}  // namespace tarvik::host
