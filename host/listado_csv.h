// A whole listing as a file for a spreadsheet, read in short steps, so that whoever waits can be told how far
// it is and can stop it. Nothing is written before the last row has been read.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/archivos_de_la_base.h"
#include "host/csv.h"
#include "host/listado.h"

namespace tarvik::host {

// A column of the file: its title, and its cell of a row of the listing.
struct ColumnaCsv {
  std::string titulo;
  std::function<data::Value(const std::vector<data::Value>&)> celda;
};

class ListadoEnCsv {
 public:
  static constexpr int kPorPaso = 2000;  // keys of one step

  // Throws data::Error if the file is one of the base's.
  ListadoEnCsv(Listado listado, std::vector<ColumnaCsv> columnas, std::string ruta,
               const ArchivosDeLaBase& base);

  // Reads on; after the last row it writes the file, whole or not at all. True if there is more to do.
  // Throws data::Error if the base refuses or the file can't be written.
  bool Paso(data::EngineConnection& connection);
  [[nodiscard]] std::int64_t Renglones() const { return rows_; }  // read so far

 private:
  CursorDeListado cursor_;
  std::vector<ColumnaCsv> columns_;
  std::string path_;
  std::string text_;
  std::int64_t rows_ = 0;
};

}  // namespace tarvik::host
