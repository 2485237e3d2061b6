// How every failure is reported: a box, and four lines in the day's log.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "service/contract/host_services.h"

namespace tarvik::service {

// The log of the day could not be written: the box has been shown, and nothing can be reported any
// more. It passes every trap and ends the event; the platform is told.
class FallaDelReporte : public data::Unrecoverable {
 public:
  using Unrecoverable::Unrecoverable;
};

// Whoever has procedures with a trap: the public class and the screens.
class Reportero {
 public:
  virtual ~Reportero() = default;
  // Always True; no caller reads it. Throws FallaDelReporte if the log can't be written.
  virtual bool ReportaError(const std::string& modulo, const std::string& funcion,
                            const std::string& descripcion) = 0;
  // The module text: exact, and at most 13 characters in the screens. The cut is the log's format.
  [[nodiscard]] virtual std::string Modulo() const = 0;
};

// What ReportaError does, shared by all: shows the box, then appends to the day's log under the base
// folder ("\web\TarvikError05032024.Log"). An empty function leaves the log part out; one that throws
// is a log that can't be written.
bool ReportaEnCajaYBitacora(Host& host, const std::function<std::string()>& ruta_base,
                            const std::string& modulo, const std::string& funcion,
                            const std::string& descripcion);

// "14:03:22 Ocurrió un error:" and three lines more, each ended by CR LF.
std::string TextoDelReporte(const data::Time& hora, const std::string& modulo, const std::string& funcion,
                            const std::string& descripcion);

}  // namespace tarvik::service
