// The listings of the program's windows: documents by kind and filter, stock by article and warehouse. What
// was typed into a list's one field is parsed here. The movements of one stock are in host/kardex.h.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "data/datetime.h"
#include "host/documentos.h"
#include "host/listado.h"

namespace tarvik::host {

// The value of a column in a row of its listing: De(renglon, ColumnaDeDocumento::kFecha).
template <class Columna>
const data::Value& De(const std::vector<data::Value>& renglon, Columna columna) {
  return renglon[static_cast<std::size_t>(columna)];
}

// What was typed, parsed. Digits alone are the beginning of a number; "21/11/2026", "11/2026", "21/11",
// "2026-11-21", "2026-11" a date; anything else words, each of which must be in some column of the row: a
// part of a text or of the number, the amount as a whole, a date in one of the forms above.
struct FiltroDeDocumentos {
  std::optional<std::string> numero;                        // digits
  std::optional<std::pair<data::Date, data::Date>> fechas;  // both included
  std::optional<std::pair<int, int>> dia_y_mes;             // of any year; month 0: of any month
  std::vector<std::string> palabras;
};
FiltroDeDocumentos EntiendeFiltro(const std::string& escrito);

// The stretches of numbers that begin with the digits, highest first, up to the highest 32-bit number.
std::vector<std::pair<data::Value, data::Value>> NumerosQueEmpiezanCon(const std::string& cifras);

// What a row of a listing of documents gives, in this order.
enum class ColumnaDeDocumento {
  kNumero,
  kFecha,
  kConcepto,
  kNombreDelConcepto,
  kObservaciones,
  kAlmacen,
  kNombreDelAlmacen,
  kImporte,
  kEstado,
  kOcupado,
  kUsuario,  // of the last save
  kTomadoPor,
  kEstacion,
  kDesde
};
// What a document is worth, as an expression on its row in `fila`: a pending one is worth its stored lines,
// since its header is written at the finish; a posted one what its header says.
std::string ImporteDe(Tipo tipo, const std::string& fila);
// Newest first, with the sum of what they are worth. `pendientes`: only those.
Listado ListadoDeDocumentos(Tipo tipo, bool pendientes, const std::string& escrito);
// These alone, highest first; `numeros` ascending.
Listado ListadoDeEstos(Tipo tipo, bool pendientes, const std::vector<std::int32_t>& numeros);
// Puts a listing of documents in the order of a column that a list shows: texts without regard to case or
// accents, no value as the least. Documents of the same value come newest first.
void Ordena(Listado& listado, Tipo tipo, ColumnaDeDocumento columna, bool descendente);

enum class ColumnaDeExistencia {
  kArticulo,
  kDescripcion,
  kUnidad,
  kUbicacion,
  kAlmacen,  // null: it never moved
  kNombreDelAlmacen,
  kExistencia,
  kPorSurtir
};
// By article; each word that was typed is in its key, its description, its unit or its place.
Listado ListadoDeExistencias(const std::string& escrito);
// As for documents; rows of the same value come by article and warehouse.
void Ordena(Listado& listado, ColumnaDeExistencia columna, bool descendente);

}  // namespace tarvik::host
