// The cursor over rows that have been read. It asks the connection once, when it opens.
#include "data/recordset.h"

#include "data/error.h"
#include "data/text.h"

namespace tarvik::data {

void Recordset::Open(std::string_view source, Connection& connection, int cursor_type, int lock_type,
                     int /*options*/) {
  open_ = false;
  current_ = 0;
  rows_ = Rows{};
  if (cursor_type != kAsSet) cursor_type_ = cursor_type;
  if (lock_type != kAsSet) lock_type_ = lock_type;
  rows_ = connection.Select(source);
  open_ = true;
}

bool Recordset::Eof() const {
  RequireOpen();
  return current_ >= rows_.rows.size();
}

int Recordset::RecordCount() const {
  RequireOpen();
  return static_cast<int>(rows_.rows.size());
}

const Value& Recordset::Fields(std::string_view name) const {
  RequireOpen();
  for (std::size_t i = 0; i < rows_.columns.size(); ++i) {
    if (!EqualsNoCase(rows_.columns[i], name)) continue;
    if (Eof()) throw Error("No hay un registro actual").With("columna", std::string(name));
    return rows_.rows[current_][i];
  }
  throw Error("No existe la columna " + std::string(name) + " en la consulta");
}

void Recordset::MoveNext() {
  if (Eof()) throw Error("No hay un registro siguiente");
  ++current_;
}

void Recordset::RequireOpen() const {
  if (!open_) throw Error("La consulta está cerrada");
}

Recordset* RecordsetRef::operator->() const {
  if (held_ == nullptr) throw Error("La consulta no se ha asignado");
  return held_.get();
}

}  // namespace tarvik::data
