// Deletions: the warning before one, and its record.
#include "host/eliminaciones.h"
#include "wizard/modos.h"

#include <exception>

namespace tarvik::host {
namespace {

std::string Renglones(std::int64_t number) {
  return std::to_string(number) + (number == 1 ? " renglón" : " renglones");
}

}  // namespace

std::string AvisoDeEliminacion(data::EngineConnection& connection, const Retenido& documento) {
  const auto stored = ContenidoDe(connection, documento);
  if (!stored || (stored->estado != estado::kAfectado && stored->movimientos == 0)) return "";
  std::string text = LaDe(documento, true) +
                     (stored->estado == estado::kAfectado ? " está afectada" : " está pendiente") +
                     " y tiene " + Renglones(stored->renglones);
  if (stored->movimientos == 0) return text + ", sin movimientos en el inventario.";
  return text + " con " + Movimientos(stored->movimientos) +
         " en el inventario. Si la elimina, las existencias se quedan como están y esos movimientos quedan "
         "sin documento.";
}

data::Rows Eliminaciones::Ejecuta(const SentenciaDeDocumento& sentencia,
                                  const std::function<data::Rows()>& envia) {
  if (sentencia.clase == SentenciaDeDocumento::Clase::QuitaDocumento) {
    return QuitaDocumento(sentencia.documento, envia);
  }
  antes_.reset();
  if (const auto stored = Lee(sentencia.documento)) antes_ = {sentencia.documento, *stored};
  return envia();
}

// What can't be read keeps no document from being deleted.
std::optional<Contenido> Eliminaciones::Lee(const Retenido& documento) {
  try {
    return ContenidoDe(connection_, documento);
  } catch (const std::exception&) {
    return Contenido{"desconocido"};
  }
}

data::Rows Eliminaciones::QuitaDocumento(const Retenido& documento,
                                         const std::function<data::Rows()>& envia) {
  const auto seen = std::exchange(antes_, std::nullopt);
  const std::optional<Contenido> stored =
      seen && seen->first == documento ? std::optional(seen->second) : Lee(documento);
  if (!stored) return envia();
  Acto act = firma_("elimina");
  act.documento = documento;
  act.texto = "Estado " + stored->estado + ", " + Renglones(stored->renglones) + "; " +
              (stored->movimientos == 0 ? std::string("no deja movimientos")
                                        : "deja " + Movimientos(stored->movimientos) + " sin documento");
  const auto both = [&] {
    data::Rows rows = envia();
    Anota(connection_, act);
    return rows;
  };
  if (connection_.InTransaction()) return both();
  try {
    data::Transaction whole(connection_);
    data::Rows rows = both();
    whole.Commit();
    return rows;
  } catch (const data::Error& error) {
    AnotaLaMitad(std::move(act), *stored, error.what());
    throw;
  }
}

// The lines go first, in a statement of their own: a document that stays may have lost them.
void Eliminaciones::AnotaLaMitad(Acto act, const Contenido& before, const std::string& reason) {
  try {
    const auto now = ContenidoDe(connection_, *act.documento);
    if (!now || now->renglones >= before.renglones) return;
    act.texto = "Se eliminaron sus renglones (" + Renglones(before.renglones - now->renglones) +
                ") y el documento no se pudo eliminar: " + reason;
    Anota(connection_, act);
  } catch (
      const std::exception&) {  // NOLINT(bugprone-empty-catch): the deletion's own failure is what is told
  }
}

}  // namespace tarvik::host
