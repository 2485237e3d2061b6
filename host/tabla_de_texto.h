// Rows as a table of text, for a console: columns as wide as their widest cell, two blanks between them.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tarvik::host {

using Fila = std::vector<std::string>;

void Escribe(std::ostream& out, const Fila& titulos, const std::vector<Fila>& filas);

}  // namespace tarvik::host
