// EntradasSalidas: the one public class, the only door through which a host reaches the inventory
// movements. It reads a document, decides mode and lock, and hands record, mode and context to a
// screen of its own; the screens do the rest. It holds nothing but its two references.
#pragma once

#include <cstdint>
#include <string>

#include "data/recordset.h"
#include "service/contract/host_services.h"
#include "service/contract/objeto.h"
#include "service/report/reporte.h"
#include "service/report/trampa.h"

namespace tarvik {

struct ClaseDeDocumento;  // what sets goods-in and goods-out apart here; in the .cpp

// Example:
//   EntradasSalidas movimientos(host);
//   movimientos.Ambiente = &ambiente;
//   movimientos.NuevaEntrada();          // shows a screen and returns; the screen lives on
//
// Set Ambiente before any operation; both references must outlive the screens shown. Nothing is
// given back and nothing is raised, except by movimientoEstacion: a failure is shown in a box and
// written to the day's log. A modal call returns when its screen has closed.
class EntradasSalidas final : public service::Reportero {
 public:
  explicit EntradasSalidas(service::Host& host) : host_(host) {}

  service::Objeto<service::Ambiente> Ambiente;
  service::Objeto<service::LateBound> Parent;  // may stay unset

  // A new document. No row is written before its first line.
  void NuevaEntrada(bool bolModal = false);
  void NuevaSalida(bool bolModal = false);
  // For change. Not found: a message, no screen. Posted: a message, then read-only. Held by anybody,
  // oneself included: a message, no screen.
  void ModificaEntrada(std::int32_t nEntrada, bool bolModal = false);
  void ModificaSalida(std::int32_t nSalida, bool bolModal = false);
  // Read-only, whoever holds it. Not found: a message, no screen.
  void ConsultaEntrada(std::int32_t nEntrada);
  void ConsultaSalida(std::int32_t nSalida);
  // Asks, then deletes lines and header; stock movements stay as they are, of a posted document too.
  // Not found, or held by anybody: a message, nothing deleted.
  void EliminaEntrada(std::int32_t nEntrada);
  void EliminaSalida(std::int32_t nSalida);
  // A station transfer. Throws what its screen's loading throws.
  void movimientoEstacion(std::int32_t nId, bool bolModal);

  bool ReportaError(const std::string& modulo, const std::string& funcion,
                    const std::string& descripcion) override;
  [[nodiscard]] std::string Modulo() const override { return "EntradasSalidas"; }

 private:
  template <class Pantalla>
  void Nuevo(const ClaseDeDocumento& documento, bool modal);
  template <class Pantalla>
  void Modifica(const ClaseDeDocumento& documento, std::int32_t numero, bool modal);
  template <class Pantalla>
  void Consulta(const ClaseDeDocumento& documento, std::int32_t numero);
  void Elimina(const ClaseDeDocumento& documento, std::int32_t numero);
  void RemoveItem();
  // Runs an operation of the class: what even the reporter could not report goes to the platform.
  template <class Operacion>
  void Corre(Operacion&& operacion);
  void AvisaTomado(service::Trampa& intenta, const data::RecordsetRef& registro, int propio, int ajeno,
                   int fin, const char* separador);

  service::Host& host_;
};

}  // namespace tarvik
