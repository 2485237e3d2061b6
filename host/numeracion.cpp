// Number series on table `series`.
#include "host/numeracion.h"

#include <limits>

#include "data/error.h"

namespace tarvik::host {

std::int32_t SiguienteNumero(data::EngineConnection& connection, const std::string& serie) {
  // One statement, so that two stations need no other lock than the engine's on the row.
  const auto drawn = connection.Run(
      "INSERT INTO series (nombre, valor) VALUES (?, 1) "
      "ON CONFLICT (nombre) DO UPDATE SET valor = series.valor + 1 RETURNING valor",
      {serie});
  if (drawn.rows.empty()) throw data::Error("La serie " + serie + " no dio ningún número");
  const double number = data::ToNumber(drawn.rows.front().front());
  if (number < 1) throw data::Error("La serie " + serie + " no tiene un valor válido");
  if (number > std::numeric_limits<std::int32_t>::max()) {
    throw data::Error("La serie " + serie + " se ha agotado");
  }
  return static_cast<std::int32_t>(number);
}

}  // namespace tarvik::host
