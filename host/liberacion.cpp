// Holders, and letting go.
#include "host/liberacion.h"

#include <algorithm>
#include <map>

#include "data/error.h"
#include "data/text.h"

namespace tarvik::host {
namespace {

std::int64_t Entero(const data::Value& value) { return static_cast<std::int64_t>(data::ToNumber(value)); }

// A holder, and the number of its lease; 0 for a flag.
struct Fila {
  Tenencia tenencia;
  std::int64_t id;
};

// The documents whose flag has no lease. `cual` narrows it to one.
std::string Banderas(Tipo tipo, const std::string& cual) {
  const Tablas& tables = TablasDe(tipo);
  const std::string name{NombreDe(tipo)};
  // A goods-in document does not know its station.
  const char* station = tipo == Tipo::Salida ? "d.estacion" : "NULL";
  return "SELECT '" + name + "' AS tipo, d." + tables.clave + " AS documento, d.usuario AS usuario, " +
         station + " AS estacion, NULL AS desde, 0 AS vida, 0 AS id FROM " + tables.encabezado +
         " d WHERE (d.ocupado > 0 OR d.ocupado < 0)" + cual +
         " AND NOT EXISTS (SELECT 1 FROM tenencias t WHERE t.tipo = '" + name + "' AND t.documento = d." +
         tables.clave + ")";
}

bool SoloTarvik(data::EngineConnection& connection) {
  const auto found = connection.Run("SELECT valor FROM parametros WHERE lower(nombre) = 'solotarvik'", {});
  return !found.rows.empty() && data::Trim(data::ToText(found.rows.front().front())) == "1";
}

std::vector<Fila> Filas(data::EngineConnection& connection, const data::Rows& rows) {
  std::map<std::int64_t, bool> lives;
  const auto alive = [&](std::int64_t life) {
    const auto known = lives.find(life);
    if (known != lives.end()) return known->second;
    return lives[life] = life == 0 ? !SoloTarvik(connection) : connection.Lives(life);
  };
  std::vector<Fila> found;
  for (const auto& row : rows.rows) {
    found.push_back({{TipoDe(data::ToText(row[0])), static_cast<std::int32_t>(data::ToNumber(row[1])),
                      data::ToText(row[2]), data::ToText(row[3]), data::DateTime::Parse(data::ToText(row[4])),
                      alive(Entero(row[5]))},
                     Entero(row[6])});
  }
  return found;
}

std::vector<Fila> FilasDe(data::EngineConnection& connection, const Retenido& documento) {
  const std::string& key = TablasDe(documento.tipo).clave;
  return Filas(
      connection,
      connection.Run("SELECT tipo, documento, usuario, estacion, desde, vida, id FROM tenencias WHERE "
                     "tipo = ? AND documento = ? UNION ALL " +
                         Banderas(documento.tipo, " AND d." + key + " = ?"),
                     {std::string(NombreDe(documento.tipo)), documento.numero, documento.numero}));
}

std::vector<Tenencia> Solas(std::vector<Fila> rows) {
  std::vector<Tenencia> holders;
  holders.reserve(rows.size());
  for (Fila& row : rows) holders.push_back(std::move(row.tenencia));
  return holders;
}

// "ANA en la estación E1 desde el 05/03/2024 a las 14:15"
std::string Quien(const Tenencia& holder) {
  return (holder.usuario.empty() ? std::string("un usuario sin nombre") : holder.usuario) +
         (holder.estacion.empty() ? "" : " en la estación " + holder.estacion) +
         (holder.desde ? " desde " + Momento(*holder.desde) : "");
}

std::string Quienes(const std::vector<Fila>& rows) {
  std::string text;
  for (const Fila& row : rows) text += (text.empty() ? "" : "; ") + Quien(row.tenencia);
  return text;
}

bool Viva(const Fila& row) { return row.tenencia.viva; }

// Holds the header's row still on a server, so that nobody takes the document meanwhile. False if there is
// none.
bool Sujeta(data::EngineConnection& connection, const Retenido& documento) {
  const Tablas& tables = TablasDe(documento.tipo);
  return !connection
              .Run("UPDATE " + tables.encabezado + " SET ocupado = ocupado WHERE " + tables.clave +
                       " = ? RETURNING " + tables.clave,
                   {documento.numero})
              .rows.empty();
}

void Suelta(data::EngineConnection& connection, const Retenido& documento, const std::vector<Fila>& rows) {
  const Tablas& tables = TablasDe(documento.tipo);
  connection.Run("UPDATE " + tables.encabezado + " SET ocupado = 0 WHERE " + tables.clave + " = ?",
                 {documento.numero});
  for (const Fila& row : rows) {
    if (row.id == 0) continue;
    connection.Run("DELETE FROM tenencias WHERE id = ? AND tipo = ? AND documento = ?",
                   {row.id, std::string(NombreDe(documento.tipo)), documento.numero});
  }
}

}  // namespace

std::vector<Tenencia> LeeTenencias(data::EngineConnection& connection) {
  auto rows = Filas(
      connection, connection.Run("SELECT tipo, documento, usuario, estacion, desde, vida, id FROM "
                                 "tenencias UNION ALL " +
                                     Banderas(Tipo::Entrada, "") + " UNION ALL " + Banderas(Tipo::Salida, ""),
                                 {}));
  std::stable_sort(rows.begin(), rows.end(), [](const Fila& a, const Fila& b) {
    if (a.tenencia.tipo != b.tenencia.tipo) return a.tenencia.tipo < b.tenencia.tipo;
    if (a.tenencia.documento != b.tenencia.documento) return a.tenencia.documento < b.tenencia.documento;
    return a.id < b.id;
  });
  return Solas(std::move(rows));
}

std::vector<Tenencia> LeeTenencias(data::EngineConnection& connection, const Retenido& documento) {
  return Solas(FilasDe(connection, documento));
}

bool PuedeLiberar(data::EngineConnection& connection, const std::string& usuario) {
  const auto found = connection.Run("SELECT valor FROM parametros WHERE lower(nombre) = 'liberadores'", {});
  const std::string users = found.rows.empty() ? "" : data::ToText(found.rows.front().front());
  if (data::Trim(users).empty()) return true;
  const std::string wanted = data::Trim(usuario);
  for (std::size_t from = 0; from <= users.size();) {
    const std::size_t end = std::min(users.find(',', from), users.size());
    const std::string named = data::Trim(users.substr(from, end - from));
    if (!named.empty() && data::EqualsNoCase(named, wanted)) return true;
    from = end + 1;
  }
  return false;
}

bool QuitaFantasmas(data::EngineConnection& connection, const Retenido& documento) {
  const auto rows = FilasDe(connection, documento);
  bool any = false;
  for (const Fila& row : rows) {
    if (Viva(row) || row.id == 0) continue;
    connection.Run("DELETE FROM tenencias WHERE id = ? AND tipo = ? AND documento = ?",
                   {row.id, std::string(NombreDe(documento.tipo)), documento.numero});
    any = true;
  }
  return any;
}

bool Libera(data::EngineConnection& connection, Acto firma, const Retenido& documento,
            const std::string& motivo) {
  if (!PuedeLiberar(connection, firma.usuario)) {
    throw data::Error("El usuario " + firma.usuario + " no tiene permiso para liberar documentos");
  }
  if (!ContenidoDe(connection, documento)) {
    if (!QuitaFantasmas(connection, documento)) throw data::Error("No existe " + LaDe(documento));
    return true;
  }
  if (FilasDe(connection, documento).empty()) return false;
  data::Transaction whole(connection);
  if (!Sujeta(connection, documento)) throw data::Error("No existe " + LaDe(documento));
  const auto held = FilasDe(connection, documento);
  if (held.empty()) return false;
  Suelta(connection, documento, held);
  firma.acto = "libera";
  firma.documento = documento;
  firma.texto =
      "La tenía " + Quienes(held) +
      (std::any_of(held.begin(), held.end(), Viva) ? "." : ", cuyo programa ya no estaba abierto.") +
      (data::Trim(motivo).empty() ? "" : " Motivo: " + data::Trim(motivo));
  Anota(connection, firma);
  connection.Notify();
  whole.Commit();
  return true;
}

std::optional<std::string> SueltaDeMuertos(data::EngineConnection& connection, Acto firma,
                                           const Retenido& documento) {
  const auto dead = [&] {
    const auto rows = FilasDe(connection, documento);
    return std::any_of(rows.begin(), rows.end(), Viva) ? std::vector<Fila>{} : rows;
  };
  if (dead().empty()) return {};
  if (!ContenidoDe(connection, documento)) {
    QuitaFantasmas(connection, documento);
    return {};
  }
  data::Transaction whole(connection);
  if (!Sujeta(connection, documento)) return {};
  const auto gone = dead();
  if (gone.empty()) return {};
  Suelta(connection, documento, gone);
  firma.documento = documento;
  firma.texto = "La tenía " + Quienes(gone) + ", cuyo programa ya no estaba abierto. " +
                (firma.acto == "repara" ? "Se liberó al reparar la base." : "Se liberó al abrirla.");
  Anota(connection, firma);
  connection.Notify();
  whole.Commit();
  return LaDe(documento, true) + " la tenía " + Quienes(gone) +
         ", pero ese programa ya no está abierto. Se liberó y puede trabajar con ella.";
}

}  // namespace tarvik::host
