// ConstructorSql: the statement builder. It writes INSERT and UPDATE with literal values, by the
// column types of the schema. It neither checks that a column exists nor reads anything back.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/testigo.h"
#include "service/host_services.h"

namespace tarvik::host {

// A value as it stands in a statement for that column. A column that the schema does not know takes
// the value by its own type.
//   Number, integer, flag: a number; a text is read as one, an empty one is 0.
//   Text: quoted, a number as its plain text. Date: quoted; an empty text is NULL.
std::string LiteralSql(std::string_view table, std::string_view column, const data::Value& value);

class ConstructorSql : public service::Query {
 public:
  explicit ConstructorSql(Testigo& testigo) : testigo_(testigo) {}

  void Conexion(data::Connection& connection) override;
  void Limpia() override;
  void TipoSentencia(std::string_view kind) override;
  // A statement is of one table: with the first column of another those before it are gone.
  void AgregaCampo(std::string_view tabla, std::string_view campo, const data::Value& valor) override;
  void Condicion(std::string_view text) override;
  void TextoSql(std::string& text) override;
  void SentenciaDirecta(std::string_view text) override;
  void Ejecuta() override;

 private:
  struct Campo {
    std::string nombre;
    std::string literal;
  };
  [[nodiscard]] std::string Texto() const;

  Testigo& testigo_;
  data::Connection* connection_ = nullptr;
  std::string kind_;
  std::string table_;
  std::vector<Campo> campos_;
  std::string condition_;
  std::string direct_;
};

}  // namespace tarvik::host
