// The tape: what scanners have read and what became of each reading, as rows of `lecturas`. Kept, read,
// listed and exported here; how a reading comes into a screen is in host/lecturas.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/datetime.h"
#include "data/engine.h"
#include "host/documentos.h"

namespace tarvik::host {

namespace lectura {

// What has become of a reading.
inline constexpr std::string_view kEspera = "espera";             // it has not become a line yet
inline constexpr std::string_view kRenglon = "renglon";           // it made a line, or added to one
inline constexpr std::string_view kSinArticulo = "sin articulo";  // nobody knows the code
inline constexpr std::string_view kRechazada = "rechazada";       // refused, with a reason
inline constexpr std::string_view kDescartada = "descartada";     // dropped, with a reason
inline constexpr std::string_view kDeshecha = "deshecha";         // its units were taken back

}  // namespace lectura

// One reading.
struct Lectura {
  std::int64_t id = 0;  // of its row; 0: the base has not taken it yet
  std::string texto;
  std::string estado = std::string(lectura::kEspera);
  std::optional<Tipo> tipo;  // for which kind of document; nothing where no document screen was there
  std::optional<std::int32_t> documento;  // nothing before the document has a number
  std::optional<std::int32_t> renglon;    // the first line that it made or added to
  std::optional<double> cantidad;         // units that it put there
  std::string motivo;                     // why it was refused or dropped, or what is to be known of it
  std::string usuario;
  std::string estacion;
  data::DateTime cuando;
  std::int64_t vida = 0;  // of the program that read it
};

// What is to be seen of the tape.
struct Tramo {
  std::optional<Retenido> documento = {};  // readings for this document alone
  bool pendientes = false;                 // the tray: those that wait or that nobody knows, of all documents
  int ultimas = 0;                         // no more than these, the newest; 0: all
};
// Oldest first. Throws data::Error if the base refuses.
std::vector<Lectura> LeeCinta(data::EngineConnection& connection, const Tramo& tramo = {});
// By its row; nothing if it is not there.
std::optional<Lectura> LeeLectura(data::EngineConnection& connection, std::int64_t id);

// Makes the row, with its number, or brings it up to date. Throws data::Error if the base refuses.
void GuardaLectura(data::EngineConnection& connection, Lectura& reading);

// How a reading is told on a line: "renglón 12, +1", "sin artículo", "en espera", "rechazada: no hay ...".
std::string ComoQuedo(const Lectura& reading);

// The tape as comma-separated values with a header line, for a spreadsheet. Writes the file anew. Throws
// data::Error, with what was there unchanged, if it can't be written.
void ExportaCinta(const std::vector<Lectura>& readings, const std::string& ruta);

}  // namespace tarvik::host
