#include "host/tabla_de_texto.h"

#include <algorithm>
#include <ostream>

#include "data/text.h"

namespace tarvik::host {

void Escribe(std::ostream& out, const Fila& titulos, const std::vector<Fila>& filas) {
  std::vector<std::size_t> widths;
  for (const std::string& title : titulos) widths.push_back(data::Length(title));
  for (const Fila& row : filas) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], data::Length(row[i]));
  }
  const auto line = [&](const Fila& row) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      out << row[i];
      if (i + 1 < row.size()) out << std::string(widths[i] - data::Length(row[i]) + 2, ' ');
    }
    out << '\n';
  };
  line(titulos);
  for (const Fila& row : filas) line(row);
}

}  // namespace tarvik::host
