// ConstructorSql: the statement builder. It writes INSERT and UPDATE with literal values, by the
// values' own types. It knows no column, and reads nothing back.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/testigo.h"
#include "service/contract/host_services.h"

namespace tarvik::host {

// A value as it is written in a statement, by its own type whatever the column: a number bare, a text or a
// date in quotes, a null as NULL. What an engine makes of a quoted number, or of an empty text for a number,
// is the engine's.
//   7.5 gives 7.5; "7" gives '7'; "" gives ''; 5 March 2024 gives '2024-03-05'
std::string LiteralSql(const data::Value& value);

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
