// What is held by nobody alive, and letting go of it.
#include "data/error.h"
#include "host/liberacion.h"
#include "host/revision_interno.h"

namespace tarvik::host::revision {

void Tenencias(const Revisor& revisor, Observaciones& found) {
  const std::vector<Tenencia> holders = LeeTenencias(revisor.conexion);
  for (std::size_t i = 0; i < holders.size();) {
    // One finding a document, and none where one of its holders lives.
    const Tenencia& first = holders[i];
    bool alive = false;
    for (; i < holders.size() && holders[i].tipo == first.tipo && holders[i].documento == first.documento;
         ++i) {
      alive = alive || holders[i].viva;
    }
    if (alive) continue;
    Observacion which{.clase = "tenencia",
                      .tipo = std::string(NombreDe(first.tipo)),
                      .documento = first.documento,
                      .reparable = true};
    which.texto = LaDe({first.tipo, first.documento}, true);
    if (first.desde) {
      which.texto += " la tomó " + first.usuario + " en la estación " + first.estacion + " desde " +
                     Momento(*first.desde) + ", y ese programa ya no está";
    } else {
      which.texto += " está marcada como ocupada y nadie la tiene";
      if (!first.usuario.empty()) which.texto += "; la guardó " + first.usuario;
    }
    which.texto += ". Puede liberarse";
    found.push_back(std::move(which));
  }
}

void ReparaTenencia(const Revisor& revisor, const Observacion& which) {
  const Retenido document = *RetenidoDe(which);
  const Acto act{.cuando = revisor.ahora,
                 .usuario = revisor.usuario,
                 .estacion = revisor.estacion,
                 .acto = "repara",
                 .documento = document,
                 .texto = ""};
  if (SueltaDeMuertos(revisor.conexion, act, document)) return;
  if (ContenidoDe(revisor.conexion, document))
    throw data::Error("Alguien la tomó mientras tanto, o quedó libre");
  AnotaReparacion(revisor, which, "Se quitaron las tenencias de " + LaDe(document) + ", que no existe");
}

}  // namespace tarvik::host::revision
