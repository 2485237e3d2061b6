// The rows of `retenciones` and their meeting with the screens' flag. No list and no box: what a
// person sees of a holder is the desktop's.
#include "host/retenciones.h"

#include "data/error.h"
#include "data/text.h"
#include "goods_in/frm_entradas_wizard.h"
#include "goods_out/frm_salidas_wizard.h"

namespace tarvik::host {
namespace {

struct Tabla {
  const char* existe;
  const char* libera;
};

constexpr Tabla kEntradas{"SELECT 1 FROM entradas WHERE entrada = ?",
                          "UPDATE entradas SET ocupado = 0 WHERE entrada = ?"};
constexpr Tabla kSalidas{"SELECT 1 FROM salidas WHERE salida = ?",
                         "UPDATE salidas SET ocupado = 0 WHERE salida = ?"};

data::Value Clave(Tipo tipo) { return std::string(NombreDe(tipo)); }

}  // namespace

std::optional<Retenido> RetenidoPor(const forms::Form& screen) {
  if (!screen.Open()) return {};
  if (const auto* entry = dynamic_cast<const frmEntradasWizard*>(&screen)) {
    if (entry->Modo == "MODIFICACION" && entry->Entrada != 0) return Retenido{Tipo::Entrada, entry->Entrada};
  } else if (const auto* issue = dynamic_cast<const frmSalidasWizard*>(&screen)) {
    if (issue->Modo == "MODIFICACION" && issue->Salida != 0) return Retenido{Tipo::Salida, issue->Salida};
  }
  return {};
}

void Toma(data::EngineConnection& connection, Tipo tipo, std::int32_t numero, const std::string& usuario,
          const std::string& estacion, const data::DateTime& desde) {
  connection.Run(
      "INSERT INTO retenciones (tipo, numero, usuario, estacion, desde) VALUES (?, ?, ?, ?, ?) "
      "ON CONFLICT (tipo, numero) DO UPDATE SET usuario = excluded.usuario, estacion = excluded.estacion, "
      "desde = excluded.desde",
      {Clave(tipo), numero, usuario, estacion, desde.Iso()});
}

void Suelta(data::EngineConnection& connection, Tipo tipo, std::int32_t numero) {
  connection.Run("DELETE FROM retenciones WHERE tipo = ? AND numero = ?", {Clave(tipo), numero});
}

std::optional<Retencion> Lee(data::EngineConnection& connection, Tipo tipo, std::int32_t numero) {
  const auto found =
      connection.Run("SELECT usuario, estacion, desde FROM retenciones WHERE tipo = ? AND numero = ?",
                     {Clave(tipo), numero});
  if (found.rows.empty()) return {};
  const auto& row = found.rows.front();
  return Retencion{data::ToText(row[0]), data::ToText(row[1]),
                   data::DateTime::Parse(data::ToText(row[2])).value_or(data::DateTime{})};
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

void Libera(data::EngineConnection& connection, Tipo tipo, std::int32_t numero, const std::string& usuario) {
  if (!PuedeLiberar(connection, usuario)) {
    throw data::Error("El usuario " + usuario + " no tiene permiso para liberar documentos");
  }
  const Tabla& table = tipo == Tipo::Entrada ? kEntradas : kSalidas;
  data::Transaction whole(connection);
  if (connection.Run(table.existe, {numero}).rows.empty()) {
    throw data::Error("No existe la " + data::LowerAscii(NombreDe(tipo)) + " " + std::to_string(numero));
  }
  connection.Run(table.libera, {numero});
  Suelta(connection, tipo, numero);
  whole.Commit();
}

}  // namespace tarvik::host
