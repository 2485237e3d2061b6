// The observed connection: witness first, engine second. It reads and changes no statement.
#include "host/conexion_observada.h"

#include "data/error.h"

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

data::EngineConnection& MotorDe(data::Connection& connection) {
  if (auto* observed = dynamic_cast<ConexionObservada*>(&connection)) return observed->Motor();
  if (auto* engine = dynamic_cast<data::EngineConnection*>(&connection)) return *engine;
  throw data::Error("La conexión es de otro programa: aquí no se numera ni se afecta nada en su base");
}

}  // namespace tarvik::host
