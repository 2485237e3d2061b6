// The rows of `bitacora`.
#include "host/bitacora.h"

#include <utility>

namespace tarvik::host {
namespace {

constexpr const char* kColumnas =
    "SELECT cuando, usuario, estacion, acto, tipo, documento, texto FROM bitacora ";

Acto ActoDe(const std::vector<data::Value>& row) {
  Acto acto;
  acto.cuando = data::DateTime::Parse(data::ToText(row[0])).value_or(data::DateTime{});
  acto.usuario = data::ToText(row[1]);
  acto.estacion = data::ToText(row[2]);
  acto.acto = data::ToText(row[3]);
  if (!row[4].IsNull() && !row[5].IsNull()) {
    acto.documento =
        Retenido{TipoDe(data::ToText(row[4])), static_cast<std::int32_t>(data::ToNumber(row[5]))};
  }
  acto.texto = data::ToText(row[6]);
  return acto;
}

}  // namespace

void Anota(data::EngineConnection& connection, const Acto& acto) {
  data::Value tipo;
  data::Value numero;
  if (acto.documento) {
    tipo = std::string(NombreDe(acto.documento->tipo));
    numero = acto.documento->numero;
  }
  connection.Run(
      "INSERT INTO bitacora (cuando, usuario, estacion, acto, tipo, documento, texto) "
      "VALUES (?, ?, ?, ?, ?, ?, ?)",
      {acto.cuando.Iso(), acto.usuario, acto.estacion, acto.acto, tipo, numero, acto.texto});
}

std::vector<Acto> LeeBitacora(data::EngineConnection& connection,
                              const std::optional<data::DateTime>& desde) {
  const std::string since = desde ? desde->Iso() : "";
  std::vector<Acto> acts;
  for (const auto& row :
       connection.Run(std::string(kColumnas) + "WHERE cuando >= ? ORDER BY id", {since}).rows) {
    acts.push_back(ActoDe(row));
  }
  return acts;
}

std::optional<Acto> UltimoActo(data::EngineConnection& connection, const Retenido& documento,
                               const std::string& acto, const std::string& o_acto) {
  const auto found = connection.Run(std::string(kColumnas) +
                                        "WHERE tipo = ? AND documento = ? AND (acto = ? OR acto = ?) "
                                        "ORDER BY id DESC LIMIT 1",
                                    {std::string(NombreDe(documento.tipo)), documento.numero, acto, o_acto});
  if (found.rows.empty()) return {};
  return ActoDe(found.rows.front());
}

std::string Momento(const data::DateTime& when) {
  const std::string iso = when.date.Iso();
  return "el " + iso.substr(8, 2) + "/" + iso.substr(5, 2) + "/" + iso.substr(0, 4) + " a las " +
         when.time.Text().substr(0, 5);
}

}  // namespace tarvik::host
