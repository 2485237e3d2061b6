// The rows of `lecturas`.
#include "host/cinta.h"

#include <algorithm>

#include "data/error.h"
#include "data/number.h"
#include "forms/platform.h"
#include "host/archivo_entero.h"
#include "host/csv.h"

namespace tarvik::host {
namespace {

constexpr const char* kColumnas =
    "SELECT id, texto, estado, tipo, documento, renglon, cantidad, motivo, usuario, estacion, cuando, vida "
    "FROM lecturas ";

std::optional<std::int32_t> Entero(const data::Value& value) {
  if (value.IsNull()) return {};
  return static_cast<std::int32_t>(data::ToNumber(value));
}

Lectura De(const std::vector<data::Value>& row) {
  Lectura reading;
  reading.id = static_cast<std::int64_t>(data::ToNumber(row[0]));
  reading.texto = data::ToText(row[1]);
  reading.estado = data::ToText(row[2]);
  reading.tipo = TipoLlamado(data::ToText(row[3]));
  reading.documento = Entero(row[4]);
  reading.renglon = Entero(row[5]);
  if (!row[6].IsNull()) reading.cantidad = data::ToNumber(row[6]);
  reading.motivo = data::ToText(row[7]);
  reading.usuario = data::ToText(row[8]);
  reading.estacion = data::ToText(row[9]);
  reading.cuando = data::DateTime::Parse(data::ToText(row[10])).value_or(data::DateTime{});
  reading.vida = static_cast<std::int64_t>(data::ToNumber(row[11]));
  return reading;
}

template <class T>
void Agrega(std::vector<data::Value>& values, const std::optional<T>& value) {
  if (value) {
    values.emplace_back(*value);
  } else {
    values.emplace_back();
  }
}

}  // namespace

std::vector<Lectura> LeeCinta(data::EngineConnection& connection, const Tramo& tramo) {
  std::string where;
  std::vector<data::Value> values;
  const auto and_also = [&](const std::string& condition) {
    where += (where.empty() ? "WHERE " : "AND ") + condition + " ";
  };
  if (tramo.documento) {
    and_also("tipo = ? AND documento = ?");
    values.push_back(std::string(NombreDe(tramo.documento->tipo)));
    values.push_back(tramo.documento->numero);
  }
  if (tramo.pendientes) and_also("estado IN ('espera', 'sin articulo')");
  std::string text = kColumnas + where + "ORDER BY id";
  if (tramo.ultimas > 0) text += " DESC LIMIT " + std::to_string(tramo.ultimas);
  std::vector<Lectura> readings;
  for (const auto& row : connection.Run(text, values).rows) readings.push_back(De(row));
  if (tramo.ultimas > 0) std::reverse(readings.begin(), readings.end());
  return readings;
}

std::optional<Lectura> LeeLectura(data::EngineConnection& connection, std::int64_t id) {
  const auto found = connection.Run(std::string(kColumnas) + "WHERE id = ?", {id});
  if (found.rows.empty()) return {};
  return De(found.rows.front());
}

void GuardaLectura(data::EngineConnection& connection, Lectura& reading) {
  std::vector<data::Value> values = {reading.texto, reading.estado};
  Agrega(values, reading.tipo ? std::optional(std::string(NombreDe(*reading.tipo))) : std::nullopt);
  Agrega(values, reading.documento);
  Agrega(values, reading.renglon);
  Agrega(values, reading.cantidad);
  for (const std::string* text : {&reading.motivo, &reading.usuario, &reading.estacion})
    values.emplace_back(*text);
  values.emplace_back(reading.cuando.Iso());
  values.emplace_back(reading.vida);
  if (reading.id == 0) {
    const auto drawn = connection.Run(
        "INSERT INTO lecturas (texto, estado, tipo, documento, renglon, cantidad, motivo, usuario, estacion, "
        "cuando, vida) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) RETURNING id",
        values);
    reading.id = static_cast<std::int64_t>(data::ToNumber(drawn.rows.at(0).at(0)));
    return;
  }
  values.emplace_back(reading.id);
  connection.Run(
      "UPDATE lecturas SET texto = ?, estado = ?, tipo = ?, documento = ?, renglon = ?, cantidad = ?, motivo "
      "= "
      "?, usuario = ?, estacion = ?, cuando = ?, vida = ? WHERE id = ?",
      values);
}

std::string ComoQuedo(const Lectura& reading) {
  const std::string why = reading.motivo.empty() ? "" : ": " + reading.motivo;
  if (reading.estado == lectura::kRenglon) {
    return "renglón " + (reading.renglon ? std::to_string(*reading.renglon) : "") +
           (reading.cantidad ? ", +" + data::PlainNumber(*reading.cantidad) : "") + why;
  }
  if (reading.estado == lectura::kEspera) return "en espera" + why;
  if (reading.estado == lectura::kSinArticulo) return "sin artículo" + why;
  return reading.estado + why;
}

void ExportaCinta(const std::vector<Lectura>& readings, const std::string& ruta) {
  std::string text = "cuando,usuario,estacion,tipo,documento,lectura,estado,renglon,cantidad,motivo\r\n";
  for (const Lectura& reading : readings) {
    const std::string cells[] = {reading.cuando.Iso(),
                                 reading.usuario,
                                 reading.estacion,
                                 reading.tipo ? std::string(NombreDe(*reading.tipo)) : "",
                                 reading.documento ? std::to_string(*reading.documento) : "",
                                 reading.texto,
                                 reading.estado,
                                 reading.renglon ? std::to_string(*reading.renglon) : "",
                                 reading.cantidad ? data::PlainNumber(*reading.cantidad) : "",
                                 reading.motivo};
    std::vector<std::string> written;
    for (const std::string& cell : cells) written.push_back(CeldaCsv(cell));
    text += RenglonCsv(written);
  }
  if (const std::error_code failed = EscribeEntero(forms::NativePath(ruta), text)) {
    throw data::Error("No se puede escribir el archivo " + ruta + ": " + failed.message());
  }
}

}  // namespace tarvik::host
