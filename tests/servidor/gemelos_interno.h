// What the parts of the generator share: which kinds of columns hold texts and numbers, and the quoted text.
// For gemelos.cpp and gemelos_sentencias.cpp alone.
#pragma once

#include <string>
#include <vector>

#include "data/schema.h"

namespace tarvik::tests {

inline bool EsTexto(data::ColumnType tipo) { return tipo == data::ColumnType::Text; }
inline bool EsNumero(data::ColumnType tipo) {
  return tipo != data::ColumnType::Text && tipo != data::ColumnType::Date;
}

inline std::string Entrecomillas(const std::string& texto) {
  std::string con = "'";
  for (const char c : texto) con += c == '\'' ? "''" : std::string(1, c);
  return con + "'";
}

// Values that a hand or a routine may write, sound and odd.
inline const std::vector<std::string> kTextos = {
    "",    " ",          "5",        "5.0",  " 7 ",   "-2",  "1e1",    ".5",     "0",
    "007", "x",          "X1",       "abc",  "ABC",   "1,0", "O'Hara", "pronto", "2024-03-05",
    "10",  "2024-03-06", "2024-3-5", "2024", "ñandú", "Ñ",   "1a",     "+3",     "?",
    ";",   "2.5",        "inf",      "nan",  "0x10",  "5.",  "a%",     "a\\b",   "2024-03-05 10:00:00",
    "--",  "true",       "\t7\n",    "1e",   "A-100", "M",   "R",      "PE"};

}  // namespace tarvik::tests
