// The statement builder: the exact texts, the literals by column type, and what is never sent.
#include "host/constructor_sql.h"

#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class ConstructorDePrueba : public Banco {
 protected:
  void SetUp() override {
    Banco::SetUp();
    query = Funciones().NuevoQuery();
    query->Conexion(Ambiente().Conexion());
  }
  std::string Texto() {
    std::string text = "(intacto)";
    query->TextoSql(text);
    return text;
  }
  std::unique_ptr<service::Query> query;
};

TEST_F(ConstructorDePrueba, AnInsertNamesItsColumnsInTheOrderInWhichTheyCame) {
  query->TipoSentencia("INSERT");
  query->AgregaCampo("entradas", "entrada", 1);
  query->AgregaCampo("entradas", "usuario", "ANA");
  query->AgregaCampo("entradas", "almacen", 2.5);
  EXPECT_EQ(Texto(), "INSERT INTO entradas (entrada, usuario, almacen) VALUES (1, 'ANA', 2.5)");
}

TEST_F(ConstructorDePrueba, AnUpdateHasItsConditionBehindWhere) {
  query->TipoSentencia("UPDATE");
  query->Condicion("entrada = 7");
  query->AgregaCampo("entradas", "costo", 0);
  query->AgregaCampo("entradas", "estado", "CO");
  EXPECT_EQ(Texto(), "UPDATE entradas SET costo = 0, estado = 'CO' WHERE entrada = 7");
}

TEST_F(ConstructorDePrueba, AnInsertPassesOverTheCondition) {
  query->TipoSentencia("INSERT");
  query->AgregaCampo("entradas", "entrada", 1);
  query->Condicion("entrada = 1");
  EXPECT_EQ(Texto(), "INSERT INTO entradas (entrada) VALUES (1)");
}

TEST_F(ConstructorDePrueba, ColumnsOfAnotherTableThatNeverWentOutAreLeftBehind) {
  query->TipoSentencia("UPDATE");
  query->AgregaCampo("entpart", "cantidad", 3);
  query->TipoSentencia("INSERT");
  query->AgregaCampo("entradas", "entrada", 1);
  query->AgregaCampo("ENTRADAS", "costo", 0);
  EXPECT_EQ(Texto(), "INSERT INTO ENTRADAS (entrada, costo) VALUES (1, 0)");
}

TEST_F(ConstructorDePrueba, AQuoteInATextIsDoubled) {
  query->TipoSentencia("INSERT");
  query->AgregaCampo("entradas", "observ", "O'Hara");
  EXPECT_EQ(Texto(), "INSERT INTO entradas (observ) VALUES ('O''Hara')");
}

// By the value's type, whatever the column: the warehouse that a text box gives is a text.
TEST_F(ConstructorDePrueba, ATextStandsInQuotesAndANumberBareWhateverTheColumn) {
  query->TipoSentencia("INSERT");
  query->AgregaCampo("entradas", "almacen", "1");
  query->AgregaCampo("entradas", "usuario", 12);
  query->AgregaCampo("entradas", "f_emision", "");
  EXPECT_EQ(Texto(), "INSERT INTO entradas (almacen, usuario, f_emision) VALUES ('1', 12, '')");
}

TEST(LiteralDeConstructor, IsOfTheValuesOwnType) {
  EXPECT_EQ(LiteralSql({}), "NULL");
  EXPECT_EQ(LiteralSql(1), "1");
  EXPECT_EQ(LiteralSql(-7), "-7");
  EXPECT_EQ(LiteralSql(1.25), "1.25");
  EXPECT_EQ(LiteralSql(0.1 * 3), "0.3");
  EXPECT_EQ(LiteralSql("1"), "'1'");
  EXPECT_EQ(LiteralSql("1,234.50"), "'1,234.50'");
  EXPECT_EQ(LiteralSql("  "), "'  '");
  EXPECT_EQ(LiteralSql(data::Date{2024, 3, 5}), "'2024-03-05'");
  EXPECT_EQ(LiteralSql(data::DateTime{{2024, 3, 5}, {14, 3, 22}}), "'2024-03-05 14:03:22'");
}

TEST_F(ConstructorDePrueba, WhatRunsIsSeenByTheWitnessAndWritten) {
  query->TipoSentencia("INSERT");
  query->AgregaCampo("entradas", "entrada", 1);
  query->AgregaCampo("entradas", "observ", "x' , 'y");
  query->Ejecuta();
  EXPECT_EQ(testigo.sentencias,
            std::vector<std::string>{"INSERT INTO entradas (entrada, observ) VALUES (1, 'x'' , ''y')"});
  EXPECT_EQ(data::ToText(Dato("SELECT observ FROM entradas WHERE entrada = 1")), "x' , 'y");
}

TEST_F(ConstructorDePrueba, AnUpdateWithoutAConditionIsNotSent) {
  Sql("INSERT INTO salidas (salida, costo) VALUES (1, 5)");
  for (const char* condition : {"", "   "}) {
    query->Limpia();
    query->TipoSentencia("UPDATE");
    query->AgregaCampo("salidas", "costo", 0);
    query->Condicion(condition);
    EXPECT_EQ(Texto(), "");
    query->Ejecuta();
  }
  EXPECT_TRUE(testigo.sentencias.empty());
  EXPECT_EQ(data::ToNumber(Dato("SELECT costo FROM salidas")), 5);
}

TEST_F(ConstructorDePrueba, AStatementWithoutAColumnIsNotSent) {
  for (const char* kind : {"UPDATE", "INSERT"}) {
    query->Limpia();
    query->TipoSentencia(kind);
    query->Condicion("id_entrada = 5");
    EXPECT_EQ(Texto(), "");
    query->Ejecuta();
  }
  EXPECT_TRUE(testigo.sentencias.empty());
}

TEST_F(ConstructorDePrueba, CleaningEmptiesKindColumnsConditionAndStatement) {
  query->TipoSentencia("UPDATE");
  query->AgregaCampo("salidas", "costo", 0);
  query->Condicion("salida = 1");
  query->Limpia();
  EXPECT_EQ(Texto(), "");
  query->TipoSentencia("UPDATE");
  query->AgregaCampo("salidas", "estado", "CO");
  EXPECT_EQ(Texto(), "");  // the condition is gone too
  query->SentenciaDirecta("DELETE FROM salpart");
  query->Limpia();
  EXPECT_EQ(Texto(), "");
}

TEST_F(ConstructorDePrueba, AFinishedStatementGoesOutAsItStands) {
  Sql("INSERT INTO salidas (salida) VALUES (1)");
  query->SentenciaDirecta("DELETE FROM salidas WHERE salida = 1");
  query->Ejecuta();
  EXPECT_EQ(testigo.sentencias, std::vector<std::string>{"DELETE FROM salidas WHERE salida = 1"});
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM salidas")), 0);
}

TEST_F(ConstructorDePrueba, WithoutAConnectionNothingRunsAndTheCallerIsTold) {
  auto loose = Funciones().NuevoQuery();
  loose->SentenciaDirecta("DELETE FROM salidas");
  EXPECT_EQ(ErrorDe([&] { loose->Ejecuta(); }), "El constructor de sentencias no tiene conexión");
}

TEST_F(ConstructorDePrueba, AnUnknownKindIsRefused) {
  EXPECT_EQ(ErrorDe([&] { query->TipoSentencia("DELETE"); }),
            "El constructor de sentencias no conoce el tipo \"DELETE\"");
}

TEST_F(ConstructorDePrueba, EachStepCanBeMadeToFailByItsName) {
  const std::vector<std::pair<std::string, std::function<void()>>> steps = {
      {"Conexion", [&] { query->Conexion(anfitrion->Conexion()); }},
      {"Limpia", [&] { query->Limpia(); }},
      {"TipoSentencia", [&] { query->TipoSentencia("INSERT"); }},
      {"AgregaCampo", [&] { query->AgregaCampo("entradas", "entrada", 1); }},
      {"Condicion", [&] { query->Condicion("a = 1"); }},
      {"TextoSql", [&] { Texto(); }},
      {"SentenciaDirecta", [&] { query->SentenciaDirecta("SELECT 1"); }},
      {"Ejecuta", [&] { query->Ejecuta(); }}};
  for (const auto& [name, step] : steps) {
    testigo.falla_servicio = name;
    EXPECT_EQ(ErrorDe(step), "falla provocada") << name;
  }
  testigo.falla_servicio.clear();
  EXPECT_EQ(Texto(), "");  // none of the failing steps did anything
}

}  // namespace
}  // namespace tarvik::host
