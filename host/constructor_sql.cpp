// The statement builder.
#include "host/constructor_sql.h"

#include "data/error.h"
#include "data/number.h"
#include "data/statement.h"
#include "data/text.h"

namespace tarvik::host {

std::string LiteralSql(const data::Value& value) {
  if (value.IsNull()) return "NULL";
  if (value.As<std::int64_t>() != nullptr || value.As<double>() != nullptr) {
    return data::PlainNumber(data::ToNumber(value));
  }
  return data::Quoted(data::ToText(value));
}

void ConstructorSql::Conexion(data::Connection& connection) {
  testigo_.Servicio("Conexion");
  connection_ = &connection;
}

void ConstructorSql::Limpia() {
  testigo_.Servicio("Limpia");
  kind_.clear();
  table_.clear();
  campos_.clear();
  condition_.clear();
  direct_.clear();
}

void ConstructorSql::TipoSentencia(std::string_view kind) {
  testigo_.Servicio("TipoSentencia");
  if (!data::EqualsNoCase(kind, "INSERT") && !data::EqualsNoCase(kind, "UPDATE")) {
    throw data::Error("El constructor de sentencias no conoce el tipo \"" + std::string(kind) + "\"");
  }
  kind_ = data::EqualsNoCase(kind, "INSERT") ? "INSERT" : "UPDATE";
  direct_.clear();
}

void ConstructorSql::AgregaCampo(std::string_view tabla, std::string_view campo, const data::Value& valor) {
  testigo_.Servicio("AgregaCampo");
  // Columns of another table are left over from a statement that was refused: whoever begins the next one
  // without emptying the builder must not send them too.
  if (!data::EqualsNoCase(table_, tabla)) campos_.clear();
  table_ = tabla;
  campos_.push_back({std::string(campo), LiteralSql(valor)});
}

void ConstructorSql::Condicion(std::string_view text) {
  testigo_.Servicio("Condicion");
  condition_ = text;
}

void ConstructorSql::TextoSql(std::string& text) {
  testigo_.Servicio("TextoSql");
  text = Texto();
}

void ConstructorSql::SentenciaDirecta(std::string_view text) {
  testigo_.Servicio("SentenciaDirecta");
  direct_ = text;
}

void ConstructorSql::Ejecuta() {
  testigo_.Servicio("Ejecuta");
  const std::string text = Texto();
  if (text.empty()) return;
  if (connection_ == nullptr) throw data::Error("El constructor de sentencias no tiene conexión");
  connection_->Execute(text);
}

std::string ConstructorSql::Texto() const {
  if (!direct_.empty()) return direct_;
  if (kind_.empty() || campos_.empty()) return "";
  if (kind_ == "INSERT") {
    std::string names;
    std::string values;
    for (const auto& campo : campos_) {
      if (!names.empty()) {
        names += ", ";
        values += ", ";
      }
      names += campo.nombre;
      values += campo.literal;
    }
    return "INSERT INTO " + table_ + " (" + names + ") VALUES (" + values + ")";
  }
  // An UPDATE with no condition would reach every document of the shop.
  if (data::Trim(condition_).empty()) return "";
  std::string pairs;
  for (const auto& campo : campos_) {
    if (!pairs.empty()) pairs += ", ";
    pairs += campo.nombre + " = " + campo.literal;
  }
  return "UPDATE " + table_ + " SET " + pairs + " WHERE " + condition_;
}

}  // namespace tarvik::host
