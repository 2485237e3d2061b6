#include "host/ordenes_de_documento.h"

#include <ostream>

#include "data/number.h"
#include "host/ordenes.h"
#include "host/tabla_de_texto.h"

namespace tarvik::host {
namespace {

std::string Numeros(const std::vector<std::int32_t>& numbers) {
  std::string text;
  for (const std::int32_t number : numbers) text += (text.empty() ? "" : ",") + std::to_string(number);
  return text;
}

}  // namespace

int OrdenAlcanza(Anfitrion& host, std::ostream& salida, const Retenido& documento) {
  std::vector<Fila> rows;
  for (const Faltante& missing : host.Alcanza(documento)) {
    rows.push_back({missing.articulo, data::PlainNumber(missing.pide), data::PlainNumber(missing.hay),
                    data::PlainNumber(missing.en_otros), Numeros(missing.renglones)});
  }
  if (rows.empty()) {
    salida << "A " << LaDe(documento) << " no le falta nada.\n";
    return kBien;
  }
  Escribe(salida, {"Artículo", "Pide", "Hay", "En otros", "Renglones"}, rows);
  return kHayFaltas;
}

int OrdenAvisos(Anfitrion& host, std::ostream& salida, const Retenido& documento) {
  std::vector<Fila> rows;
  for (const AvisoDeEntrada& warning : host.Avisos(documento)) {
    rows.push_back({std::to_string(warning.renglon), warning.clase, warning.texto});
  }
  if (rows.empty()) {
    salida << "Nada llama la atención en " << LaDe(documento) << ".\n";
    return kBien;
  }
  Escribe(salida, {"Renglón", "Clase", "Qué se encontró"}, rows);
  return kHayFaltas;
}

int OrdenImprime(Anfitrion& host, std::ostream& salida, const Retenido& documento) {
  salida << host.Imprime(documento.tipo, documento.numero) << '\n';
  return kBien;
}

}  // namespace tarvik::host
