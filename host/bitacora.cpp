#include "host/bitacora.h"

#include <utility>

namespace tarvik::host {

void Anota(data::EngineConnection& connection, const Acto& acto) {
  std::vector<data::Value> values = {acto.cuando.Iso(), acto.usuario, acto.estacion, acto.acto, acto.texto};
  std::string columns = "cuando, usuario, estacion, acto, texto";
  std::string marks = "?, ?, ?, ?, ?";
  const auto add = [&](const char* column, data::Value value) {
    columns += std::string(", ") + column;
    marks += ", ?";
    values.push_back(std::move(value));
  };
  if (acto.tipo) add("tipo", std::string(NombreDe(*acto.tipo)));
  if (acto.documento) add("documento", *acto.documento);
  connection.Run("INSERT INTO bitacora (" + columns + ") VALUES (" + marks + ")", values);
}

std::vector<Acto> LeeBitacora(data::EngineConnection& connection,
                              const std::optional<data::DateTime>& desde) {
  const data::Rows rows = connection.Run(
      "SELECT cuando, usuario, estacion, acto, tipo, documento, texto FROM bitacora WHERE cuando >= ? ORDER "
      "BY id",
      {desde ? desde->Iso() : std::string()});
  std::vector<Acto> acts;
  for (const auto& row : rows.rows) {
    Acto act{data::DateTime::Parse(data::ToText(row[0])).value_or(data::DateTime{}), data::ToText(row[1]),
             data::ToText(row[2]), data::ToText(row[3])};
    act.tipo = TipoLlamado(data::ToText(row[4]));
    if (!row[5].IsNull()) act.documento = static_cast<std::int32_t>(data::ToNumber(row[5]));
    act.texto = data::ToText(row[6]);
    acts.push_back(std::move(act));
  }
  return acts;
}

}  // namespace tarvik::host
