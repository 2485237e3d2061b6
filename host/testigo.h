// Testigo: a witness of what the host's services did. A script's module keeps what it hears, a
// window of hooks shows it; the default hears nothing. It decides nothing, except for the failures
// that a test or an implementer provokes on purpose.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/value.h"
#include "forms/control.h"
#include "forms/form.h"

namespace tarvik::host {

using Propiedades = std::vector<std::pair<std::string, data::Value>>;

class Testigo {
 public:
  virtual ~Testigo() = default;

  // Each statement of the module over Ambiente.Conexion, before it is sent. May throw data::Error:
  // the statement is then not sent, and the error is its outcome.
  virtual void Sentencia(std::string_view /*text*/) {}
  // Each call of a host operation, by its name ("NuevoId", "Afecta", "BuscaCatalogo" ...), before it
  // does anything. May throw data::Error: the operation then does nothing and fails with it.
  virtual void Servicio(std::string_view /*name*/) {}

  virtual void MensajeTraido(int /*number*/, const std::string& /*text*/) {}
  virtual void Gancho(const std::string& /*key*/, const data::Value& /*valor_de_gancho*/) {}
  // A posted movement: the properties that were set, by their names, in the contract's order; then
  // the amount that Afecta gave.
  virtual void Movimiento(const Propiedades& /*properties*/, double /*amount*/) {}
  // Each document that is handed over for printing, whatever becomes of its page.
  virtual void Impreso(const std::string& /*format*/, std::int32_t /*number*/) {}
  virtual void Presentada(forms::Form&) {}
  virtual void Regresada(forms::Form&, const std::string& /*name*/) {}
  virtual void LlamadaDeParent(std::string_view /*name*/, const std::vector<data::Value>& /*arguments*/) {}
};

}  // namespace tarvik::host
