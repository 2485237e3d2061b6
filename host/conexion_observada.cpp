// The observed connection: witness first, engine second. It reads and changes no statement.
#include "host/conexion_observada.h"

namespace tarvik::host {

data::Rows ConexionObservada::Select(std::string_view text) {
  testigo_.Sentencia(text);
  return Fenced([&] { return inner_.Select(text); });
}

data::Rows ConexionObservada::Execute(std::string_view text) {
  testigo_.Sentencia(text);
  const auto envia = [&] { return Fenced([&] { return inner_.Execute(text); }); };
  return guardia_ != nullptr ? guardia_->Ejecuta(text, envia) : envia();
}

}  // namespace tarvik::host
