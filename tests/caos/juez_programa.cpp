// tarvik_juez: completes what was left half posted in a base of the shop under test, and proves it.
//   tarvik_juez BASE CARPETA [ACUSES ...]
// ACUSES are files of what tarvik_obrero said. Writes what is wrong, one sentence a line; 0: nothing.
#include <fstream>
#include <iostream>

#include "data/error.h"
#include "tests/caos/remedio.h"

int main(int cuantos, char** palabras) {
  using namespace tarvik::caos;
  if (cuantos < 3) {
    std::cerr << "uso: tarvik_juez BASE CARPETA [ACUSES ...]\n";
    return 2;
  }
  try {
    Acuses acuses;
    for (int i = 3; i < cuantos; ++i) {
      std::ifstream archivo(palabras[i]);
      for (std::string linea; std::getline(archivo, linea);) acuses.Oye(linea);
    }
    Remediado hecho;
    const Fallas fallas = Prueba(palabras[1], palabras[2], acuses, &hecho);
    std::cout << Texto(fallas) << acuses.Renglones().size() << " renglones acusados, "
              << acuses.Afectados().size() << " documentos acusados; " << hecho.completados
              << " completados con " << hecho.movimientos << " movimientos, " << hecho.terminados
              << " terminados, " << fallas.size() << " fallas\n";
    return fallas.empty() ? 0 : 1;
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 2;
  }
}
