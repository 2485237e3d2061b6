// What a shop does after an accident, and the whole proof behind it.
#pragma once

#include <filesystem>
#include <string>

#include "tests/caos/juez.h"

namespace tarvik::caos {

struct Remediado {
  int completados = 0;  // posted documents that lacked movements
  int movimientos = 0;  // which they were given
  int terminados = 0;   // pending ones with lines that had moved, finished on their screen
  // What the program's own revision still finds, but for documents that a dead program holds: those wait for
  // whoever opens them.
  Fallas observadas = {};
};

// Completes every posted document, finishes every pending one that has begun to move, and has the base
// revised. Nobody else works.
Remediado Remedia(const std::string& direccion, const std::filesystem::path& carpeta);

// Proves what was acknowledged, remedies, and proves the books as a whole. `hecho`: what was remedied, added.
Fallas Prueba(const std::string& direccion, const std::filesystem::path& carpeta, const Acuses& acuses,
              Remediado* hecho = nullptr);

// As one text for a test's message.
std::string Texto(const Fallas& fallas);

}  // namespace tarvik::caos
