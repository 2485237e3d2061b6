// The order of the checks and of the repairs.
#include "host/revision.h"

#include <algorithm>

#include "data/error.h"
#include "data/schema.h"
#include "host/bitacora.h"
#include "host/revision_interno.h"

namespace tarvik::host {

using namespace revision;

namespace {

// A check that fails is a finding too: of a damaged base one wants to know all that can still be read.
template <class Check>
void Prueba(const char* what, Observaciones& found, Check check) {
  const std::size_t before = found.size();
  try {
    check();
  } catch (const data::Error& error) {
    if (error.Passing()) throw;
    found.resize(before);
    found.push_back(
        {.clase = "motor", .texto = "No se pudieron revisar " + std::string(what) + ": " + error.what()});
  }
}

// A server sorts and joins in little memory unless it is asked for more; a revision reads the whole ledger.
class Holgura {
 public:
  explicit Holgura(data::EngineConnection& connection)
      : connection_(connection.Kind() == data::Dialect::Postgresql ? &connection : nullptr) {
    if (connection_ != nullptr) connection_->Execute("SET work_mem = '128MB'");
  }
  ~Holgura() {
    if (connection_ == nullptr) return;
    try {
      connection_->Execute("RESET work_mem");
    } catch (const data::Error&) {  // the session is gone, and a new one has its own
    }
  }
  Holgura(const Holgura&) = delete;
  Holgura& operator=(const Holgura&) = delete;

 private:
  data::EngineConnection* connection_;
};

bool Repara(const Revisor& revisor, const Observacion& which) {
  if (which.clase == "existencia") {
    ReparaExistencia(revisor, which);
  } else if (which.clase == "columna") {
    ReparaColumna(revisor, which);
  } else if (which.clase == "tenencia") {
    ReparaTenencia(revisor, which);
  } else if (which.clase == "a medias") {
    ReparaAMedias(revisor, which);
  } else {
    return false;
  }
  return true;
}

// Dead holders are released first: a document that one seems to hold can't be completed.
void ReparaTodo(const Revisor& revisor, Observaciones& found) {
  for (const char* turn : {"tenencia", "existencia", "columna", "a medias"}) {
    for (Observacion& which : found) {
      if (!which.reparable || which.clase != turn) continue;
      try {
        which.reparado = Repara(revisor, which);
      } catch (const data::Error& error) {
        which.texto += ". No se pudo reparar: " + std::string(error.what());
      }
    }
  }
}

}  // namespace

std::vector<Observacion> Revisa(const Revisor& revisor, bool repara, bool huecos) {
  // A base that is closed or away is no finding.
  revisor.conexion.Run("SELECT 1", {});
  const Holgura room(revisor.conexion);
  Observaciones found;
  Prueba("las existencias", found, [&] { Existencias(revisor, found); });
  Prueba("las columnas de almacén", found, [&] { Columnas(revisor, found); });
  Prueba("los documentos a medias", found, [&] { AMedias(revisor, found); });
  Prueba("los movimientos dobles", found, [&] { Dobles(revisor, found); });
  Prueba("los movimientos y sus renglones", found, [&] { Distintos(revisor, found); });
  Prueba("los movimientos y sus documentos", found, [&] { SinDocumento(revisor, found); });
  Prueba("los renglones sin documento", found, [&] { Sueltos(revisor, found); });
  Prueba("los números", found, [&] { Numeros(revisor, huecos, found); });
  Prueba("los documentos ocupados", found, [&] { Tenencias(revisor, found); });
  Prueba("las tablas", found, [&] { Motor(revisor, false, found); });
  if (repara) ReparaTodo(revisor, found);
  return found;
}

std::vector<Observacion> Rapida(const Revisor& revisor) {
  const Holgura room(revisor.conexion);
  Observaciones found;
  Prueba("las tablas", found, [&] { Motor(revisor, true, found); });
  Prueba("los documentos a medias", found, [&] { AMedias(revisor, found); });
  Prueba("los documentos ocupados", found, [&] { Tenencias(revisor, found); });
  return found;
}

std::string AvisoDeDobles(data::EngineConnection& connection) {
  std::int64_t since = 0;
  for (const data::RuleWithPast& rule : data::RulesWithPast(connection)) since = std::max(since, rule.since);
  if (since == 0) return {};
  return "Esta base ya guardaba renglones afectados dos veces. Desde el movimiento " + std::to_string(since) +
         " ya no se admiten; los de antes los enumera la revisión";
}

namespace revision {

std::optional<Retenido> RetenidoDe(const Observacion& which) {
  if (!which.tipo || !which.documento) return {};
  return Retenido{TipoDe(*which.tipo), *which.documento};
}

void AnotaReparacion(const Revisor& revisor, const Observacion& which, const std::string& text) {
  Anota(revisor.conexion, {.cuando = revisor.ahora,
                           .usuario = revisor.usuario,
                           .estacion = revisor.estacion,
                           .acto = "repara",
                           .documento = RetenidoDe(which),
                           .texto = text});
}

}  // namespace revision
}  // namespace tarvik::host
