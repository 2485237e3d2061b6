#include "tests/caos/remedio.h"

#include "host/revision.h"
#include "tests/caos/estacion.h"

namespace tarvik::caos {

Remediado Remedia(const std::string& direccion, const std::filesystem::path& carpeta) {
  Remediado hecho;
  Estacion estacion({.base = direccion,
                     .usuario = "JUEZ",
                     .estacion = "EJ",
                     .ruta = (carpeta / "juez").string(),
                     .semilla = 1,
                     .di = {}});
  host::Anfitrion& anfitrion = estacion.Anfitrion();
  for (const auto& [tipo, documento, estado, renglones, faltan] : anfitrion.AMedias()) {
    if (estado == "CO") {
      hecho.movimientos += anfitrion.Completa(tipo, documento);
      ++hecho.completados;
      continue;
    }
    DocumentWizard* forma = estacion.Retoma(tipo, documento);
    if (forma == nullptr) continue;
    estacion.Finaliza(*forma);
    ++hecho.terminados;
  }
  for (const host::Observacion& observada : anfitrion.Revisa()) {
    if (observada.clase != "tenencia") hecho.observadas.push_back(observada.clase + ": " + observada.texto);
  }
  return hecho;
}

Fallas Prueba(const std::string& direccion, const std::filesystem::path& carpeta, const Acuses& acuses,
              Remediado* hecho) {
  const auto base = data::OpenBase(direccion);
  Fallas fallas;
  const auto junta = [&](const Fallas& otras) { fallas.insert(fallas.end(), otras.begin(), otras.end()); };
  {
    const auto conexion = base->Connect();
    junta(JuzgaAcuses(*conexion, acuses));
    junta(JuzgaLibros(*conexion));
  }
  const Remediado ahora = Remedia(direccion, carpeta);
  if (hecho != nullptr) {
    hecho->completados += ahora.completados;
    hecho->movimientos += ahora.movimientos;
    hecho->terminados += ahora.terminados;
  }
  junta(ahora.observadas);
  const auto conexion = base->Connect();
  junta(JuzgaLibros(*conexion));
  junta(JuzgaEnteros(*conexion));
  return fallas;
}

std::string Texto(const Fallas& fallas) {
  std::string texto;
  for (const std::string& falla : fallas) texto += falla + "\n";
  return texto;
}

}  // namespace tarvik::caos
