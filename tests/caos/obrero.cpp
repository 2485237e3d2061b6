// tarvik_obrero: one work station of the shop under test, as a program of its own, to be killed.
//   tarvik_obrero BASE USUARIO ESTACION CARPETA SEMILLA [DOCUMENTOS [RENGLONES]]
//   tarvik_obrero BASE USUARIO ESTACION CARPETA SEMILLA ordenes
// What its screens acknowledge goes to standard output, each line at once. It ends after DOCUMENTOS (0: none
// is the last) or, with the document at hand, at SIGTERM. With "ordenes" it does what standard input says:
//   abre TIPO NUMERO [NANOSEGUNDOS]    opens a document, at that moment of the steady clock
//   retoma TIPO NUMERO                 the same with the host's look before it: a dead holder is let go of
//   nueva TIPO RENGLONES [DESTINO]     a new one with so many lines
//   finaliza [NANOSEGUNDOS]            F5 and Yes
//   libera TIPO NUMERO                 lets a document go, by right
//   cierra                             closes the screen
// and answers "listo PALABRA" to each.
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

#include "data/error.h"
#include "tests/caos/estacion.h"

namespace tarvik::caos {
namespace {

volatile std::sig_atomic_t termina = 0;

void Di(const std::string& texto) {
  const std::string linea = texto + "\n";
  if (::write(1, linea.data(), linea.size()) < 0) std::_Exit(3);  // whoever listened is gone
}

// To the moment itself: two programs that wait so begin together.
void EsperaHasta(long long nanosegundos) {
  using namespace std::chrono;
  while (duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count() < nanosegundos) {
  }
}

int HazOrdenes(Estacion& estacion) {
  std::shared_ptr<forms::Form> viva;
  DocumentWizard* forma = nullptr;
  const auto toma = [&](DocumentWizard* cual) {
    forma = cual;
    viva = cual != nullptr ? cual->shared_from_this() : nullptr;
    Di(std::string("listo\t") +
       (cual == nullptr ? "no" : std::to_string(Estacion::Numero(*cual)) + " " + cual->Modo));
  };
  Di("listo\tsí");
  for (std::string linea; std::getline(std::cin, linea);) {
    std::istringstream palabras(linea);
    std::string orden, tipo;
    long long numero = 0;
    long long extra = 0;
    palabras >> orden;
    if (orden == "abre" || orden == "retoma" || orden == "nueva") {
      palabras >> tipo >> numero >> extra;
      const host::Tipo cual = host::TipoDe(tipo);
      if (orden == "abre") EsperaHasta(extra);
      toma(orden == "retoma" ? estacion.Retoma(cual, static_cast<std::int32_t>(numero))
           : orden == "abre" ? estacion.Abre(cual, static_cast<std::int32_t>(numero))
                             : estacion.Nueva(cual, static_cast<int>(numero), static_cast<int>(extra)));
    } else if (orden == "finaliza") {
      palabras >> extra;
      EsperaHasta(extra);
      Di(forma != nullptr && estacion.Finaliza(*forma) ? "listo\tsí" : "listo\tno");
    } else if (orden == "libera") {
      palabras >> tipo >> numero;
      estacion.Anfitrion().Libera(host::TipoDe(tipo), static_cast<std::int32_t>(numero));
      Di("listo\tsí");
    } else if (orden == "cierra") {
      if (forma != nullptr) estacion.Cierra(*forma);
      toma(nullptr);
    }
  }
  return 0;
}

int Corre(int cuantos, char** palabras) {
  if (cuantos < 6) {
    std::cerr
        << "uso: tarvik_obrero BASE USUARIO ESTACION CARPETA SEMILLA [DOCUMENTOS [RENGLONES] | ordenes]\n";
    return 2;
  }
  std::signal(SIGTERM, [](int) { termina = 1; });
  Estacion estacion({.base = palabras[1],
                     .usuario = palabras[2],
                     .estacion = palabras[3],
                     .ruta = palabras[4],
                     .semilla = static_cast<unsigned>(std::atol(palabras[5])),
                     .di = Di});
  if (cuantos > 6 && std::string(palabras[6]) == "ordenes") return HazOrdenes(estacion);
  const long documentos = cuantos > 6 ? std::atol(palabras[6]) : 0;
  if (cuantos > 7) estacion.Hasta(std::atoi(palabras[7]));
  Di("paso\tempieza");
  for (long hechos = 0; termina == 0 && (documentos == 0 || hechos < documentos); ++hechos) {
    estacion.HazDocumento();
  }
  return 0;
}

}  // namespace
}  // namespace tarvik::caos

int main(int cuantos, char** palabras) {
  try {
    return tarvik::caos::Corre(cuantos, palabras);
  } catch (const std::exception& error) {
    tarvik::caos::Di(std::string("muere\t") + error.what());
    return 1;
  }
}
