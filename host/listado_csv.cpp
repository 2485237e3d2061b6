#include "host/listado_csv.h"

#include <utility>

#include "data/error.h"
#include "forms/platform.h"
#include "host/archivo_entero.h"

namespace tarvik::host {

ListadoEnCsv::ListadoEnCsv(Listado listado, std::vector<ColumnaCsv> columnas, std::string ruta,
                           const ArchivosDeLaBase& base)
    : cursor_(std::move(listado)), columns_(std::move(columnas)), path_(std::move(ruta)) {
  base.Rechaza(path_);
  std::vector<std::string> titles;
  for (const ColumnaCsv& column : columns_) titles.push_back(CeldaCsv(column.titulo));
  text_ = RenglonCsv(titles);
}

bool ListadoEnCsv::Paso(data::EngineConnection& connection) {
  std::vector<std::string> cells(columns_.size());
  for (const auto& row : cursor_.Lee(connection, kPorPaso)) {
    for (std::size_t i = 0; i < columns_.size(); ++i) cells[i] = CeldaCsv(columns_[i].celda(row));
    text_ += RenglonCsv(cells);
    ++rows_;
  }
  if (!cursor_.Termino()) return true;
  if (const std::error_code failed = EscribeEntero(forms::NativePath(path_), text_)) {
    throw data::Error("No se puede escribir el archivo " + path_ + ": " + failed.message());
  }
  return false;
}

}  // namespace tarvik::host
