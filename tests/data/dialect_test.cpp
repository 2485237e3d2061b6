// The suite's statements as the engine for many stations has to be told them.
#include "data/postgresql/dialect.h"

#include <gtest/gtest.h>

namespace tarvik::data {
namespace {

std::string Marked(std::string_view text) {
  int marks = 0;
  const std::string numbered = WithNumberedMarks(text, marks);
  return numbered + " | " + std::to_string(marks);
}

TEST(Dialect, MarksAreNumberedOutsideQuotes) {
  EXPECT_EQ(Marked("SELECT ?, '?', \"a?\", ?"), "SELECT $1, '?', \"a?\", $2 | 2");
  EXPECT_EQ(Marked("SELECT 'O''Hara?', ?"), "SELECT 'O''Hara?', $1 | 1");
  EXPECT_EQ(Marked("SELECT 1"), "SELECT 1 | 0");
}

TEST(Dialect, TheLinesOfADocumentComeInTheOrderOfTheirKey) {
  EXPECT_EQ(ForPostgresql("SELECT * FROM entpart WHERE entrada = 7"),
            "SELECT * FROM entpart WHERE entrada = 7 ORDER BY entpart.id_entrada");
  EXPECT_EQ(ForPostgresql("select * from existenciaalmacen e where articulo = 'A'"),
            "select * from existenciaalmacen e where articulo = 'A' ORDER BY e.almacen, e.articulo");
  EXPECT_EQ(ForPostgresql("SELECT 1 FROM prods LIMIT 1"),
            "SELECT 1 FROM prods ORDER BY prods.articulo LIMIT 1");
  EXPECT_EQ(ForPostgresql("SELECT * FROM prods ;"), "SELECT * FROM prods ORDER BY prods.articulo");
}

TEST(Dialect, WhatHasAnOrderOrNeedsNoneStaysAsItIs) {
  for (const char* text :
       {"SELECT * FROM prods ORDER BY descrip", "SELECT COUNT(*) FROM prods",
        "SELECT sum (cantidad) AS n FROM entpart WHERE entrada = 7", "SELECT DISTINCT linea FROM prods",
        "SELECT * FROM de_otros WHERE a = '1'", "SELECT 1", "SELECT * FROM entradas, entpart",
        "SELECT * FROM prods UNION SELECT * FROM prods", "INSERT INTO prods (articulo) VALUES ('A')",
        "DELETE FROM prods", "SELECT * FROM (SELECT 1 AS n) AS t", "SELECT", "SELECT FROM",
        "SELECT * FROM prods WHERE articulo = 'x ORDER BY y' ORDER BY 1"}) {
    EXPECT_EQ(ForPostgresql(text), text);
  }
}

TEST(Dialect, AColumnOutsideItsGroupIsThatOfTheFirstRow) {
  EXPECT_EQ(ForPostgresql("SELECT prods.color AS pcolor, colores.descrip AS color FROM colores,prods WHERE "
                          "colores.color=prods.color GROUP BY prods.color"),
            "SELECT prods.color AS pcolor, (ARRAY_AGG(colores.descrip))[1] AS color FROM colores,prods WHERE "
            "colores.color=prods.color GROUP BY prods.color ORDER BY prods.color");
  EXPECT_EQ(
      ForPostgresql("SELECT articulo, SUM(cantidad) As cantidad, observ FROM salpart GROUP BY articulo"),
      "SELECT articulo, SUM(cantidad) As cantidad, (ARRAY_AGG(observ))[1] AS observ FROM salpart GROUP BY "
      "articulo ORDER BY articulo");
  EXPECT_EQ(
      ForPostgresql("SELECT linea FROM prods GROUP BY linea, modelo HAVING COUNT(*) > 1 LIMIT 3"),
      "SELECT linea FROM prods GROUP BY linea, modelo HAVING COUNT(*) > 1 ORDER BY linea, modelo LIMIT 3");
  EXPECT_EQ(ForPostgresql("SELECT linea FROM prods GROUP BY linea ORDER BY linea DESC"),
            "SELECT linea FROM prods GROUP BY linea ORDER BY linea DESC");
}

TEST(Dialect, ATextThatIsNoNumberEqualsNoNumber) {
  EXPECT_EQ(ForPostgresql("UPDATE prods SET descrip = 'x' WHERE ALM1 = 'X1'"),
            "UPDATE prods SET descrip = 'x' WHERE ALM1 = NULL");
  EXPECT_EQ(ForPostgresql("DELETE FROM ALMACEN WHERE almacen = ' 2.0 '"),
            "DELETE FROM ALMACEN WHERE almacen = (2.0)");
  EXPECT_EQ(ForPostgresql("DELETE FROM entradas WHERE entrada='-7'"),
            "DELETE FROM entradas WHERE entrada=(-7)");
  EXPECT_EQ(ForPostgresql("DELETE FROM entradas WHERE entrada >= '1,000'"),
            "DELETE FROM entradas WHERE entrada >= NULL");
  EXPECT_EQ(ForPostgresql("DELETE FROM entradas WHERE entradas.f_emision = 'pronto'"),
            "DELETE FROM entradas WHERE entradas.f_emision = NULL");
  EXPECT_EQ(ForPostgresql("DELETE FROM entradas WHERE f_emision = '2024-03-05'"),
            "DELETE FROM entradas WHERE f_emision = '2024-03-05'");
}

TEST(Dialect, ATextColumnIsComparedWithWhatStandsThere) {
  for (const char* text : {"DELETE FROM prods WHERE articulo = '007'", "DELETE FROM de_otros WHERE n = 'x'",
                           "DELETE FROM prods WHERE articulo = 'O''Hara'", "DELETE FROM prods WHERE ALM1 = 7",
                           "DELETE FROM prods WHERE 'x' = articulo"}) {
    EXPECT_EQ(ForPostgresql(text), text);
  }
}

TEST(Dialect, WhatIsSetIsForTheEngineToRefuseUnlessItIsEmpty) {
  EXPECT_EQ(ForPostgresql("UPDATE prods SET ALM1 = 'X1', ALM2 = '' WHERE articulo = 'A'"),
            "UPDATE prods SET ALM1 = 'X1', ALM2 = NULL WHERE articulo = 'A'");
}

TEST(Dialect, ColumnsAreSpelledAsTheyWereWritten) {
  std::vector<std::string> names = {"pcolor", "dato1", "usuhora", "otra"};
  SpellColumns("SELECT color AS pColor, DATO1, usuhora, otra FROM clavesadd, entpart", names);
  EXPECT_EQ(names, (std::vector<std::string>{"pColor", "Dato1", "Usuhora", "otra"}));
}

}  // namespace
}  // namespace tarvik::data
