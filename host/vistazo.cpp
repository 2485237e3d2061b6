#include "host/vistazo.h"

#include "host/tenencia_viva.h"
#include "wizard/modos.h"

namespace tarvik::host {
namespace {

std::int64_t Entero(const data::Value& value) { return static_cast<std::int64_t>(data::ToNumber(value)); }

// The first value of the first row; null if there is none.
data::Value Uno(data::EngineConnection& connection, const char* text,
                std::initializer_list<data::Value> values) {
  const data::Rows found = connection.Run(text, values);
  return found.rows.empty() ? data::Value() : found.rows.front().front();
}

}  // namespace

std::optional<EstadoDeDocumento> LeeEstado(data::EngineConnection& connection, const Retenido& documento) {
  const data::Rows found = connection.Run(
      ConTablas(documento.tipo,
                "SELECT estado, usuario, usuhora, ocupado, (SELECT COUNT(*) FROM {renglones} p "
                "WHERE p.{numero} = d.{numero}) AS n FROM {encabezado} d WHERE d.{numero} = ?"),
      {documento.numero});
  if (found.rows.empty()) return {};
  const auto& row = found.rows.front();
  EstadoDeDocumento state{.estado = data::ToText(row[0]),
                          .usuario = data::ToText(row[1]),
                          .usuhora = data::ToText(row[2]),
                          .ocupado = data::IsNonZero(row[3]),
                          .renglones = Entero(row[4]),
                          .a_medias = LeeAMedias(connection, documento.tipo, documento.numero)};
  if (state.a_medias && state.estado == estado::kAfectado &&
      TenenciaViva(connection, documento.tipo, documento.numero)) {
    state.a_medias.reset();
  }
  return state;
}

std::string NombreDeAlmacen(data::EngineConnection& connection, double almacen) {
  return data::ToText(Uno(connection, "SELECT descrip FROM ALMACEN WHERE almacen = ?", {almacen}));
}

std::string NombreDeEstacion(data::EngineConnection& connection, const std::string& estacion) {
  return data::ToText(Uno(connection, "SELECT descrip FROM ESTACIONES WHERE ESTACION = ?", {estacion}));
}

std::optional<double> ExistenciaDe(data::EngineConnection& connection, double almacen,
                                   const std::string& articulo) {
  const data::Value held =
      Uno(connection, "SELECT existencia FROM existenciaalmacen WHERE almacen = ? AND articulo = ?",
          {almacen, articulo});
  return held.IsNull() ? std::nullopt : std::optional(data::ToNumber(held));
}

Pendientes CuentaPendientes(data::EngineConnection& connection) {
  const auto count = [&](const char* text) { return Entero(Uno(connection, text, {})); };
  return {count("SELECT COUNT(*) FROM entradas WHERE estado = 'PE'"),
          count("SELECT COUNT(*) FROM salidas WHERE estado = 'PE'")};
}

}  // namespace tarvik::host
