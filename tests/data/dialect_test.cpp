// The suite's statements as the engine for many stations has to be told them.
#include "data/postgresql/dialect.h"

#include <gtest/gtest.h>

namespace tarvik::data {
namespace {

std::string Marked(std::string_view text) {
  std::vector<Mark> marks;
  std::string told = WithNumberedMarks(text, marks) + " | ";
  for (const Mark mark : marks) told += mark == Mark::kCompared ? 'c' : 'g';
  return told;
}

TEST(Dialect, MarksAreNumberedOutsideQuotes) {
  EXPECT_EQ(Marked("SELECT ?, '?', \"a?\", ?"), "SELECT $1, '?', \"a?\", $2 | gg");
  EXPECT_EQ(Marked("SELECT 'O''Hara?', ?"), "SELECT 'O''Hara?', $1 | g");
  EXPECT_EQ(Marked("SELECT 1"), "SELECT 1 | ");
}

TEST(Dialect, AValueThatIsComparedIsNoValueThatIsGiven) {
  EXPECT_EQ(Marked("UPDATE prods SET ALM1 = ? WHERE articulo = ? AND ALM2 >= ?"),
            "UPDATE prods SET ALM1 = $1 WHERE articulo = $2 AND ALM2 >= $3 | gcc");
  EXPECT_EQ(Marked("INSERT INTO prods (articulo) VALUES (?)"),
            "INSERT INTO prods (articulo) VALUES ($1) | g");
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
        "SELECT STRING_AGG(articulo, ',') AS l FROM prods", "SELECT * FROM de_otros WHERE a = '1'",
        "SELECT 1", "SELECT * FROM entradas, entpart", "SELECT * FROM prods UNION SELECT * FROM prods",
        "INSERT INTO prods (articulo) VALUES ('A')", "DELETE FROM prods",
        "SELECT * FROM (SELECT 1 AS n) AS t", "SELECT", "SELECT FROM",
        "SELECT * FROM prods WHERE articulo = 'x ORDER BY y' ORDER BY 1"}) {
    EXPECT_EQ(ForPostgresql(text), text);
  }
}

TEST(Dialect, AColumnOutsideItsGroupIsThatOfTheFirstRow) {
  EXPECT_EQ(ForPostgresql("SELECT prods.color AS pcolor, colores.descrip AS color FROM colores,prods WHERE "
                          "colores.color=prods.color GROUP BY prods.color"),
            "SELECT prods.color AS pcolor, (ARRAY_AGG(colores.descrip))[1] AS color FROM colores,prods WHERE "
            "colores.color=prods.color GROUP BY prods.color ORDER BY prods.color NULLS FIRST");
  EXPECT_EQ(
      ForPostgresql("SELECT articulo, SUM(cantidad) As cantidad, observ FROM salpart GROUP BY articulo"),
      "SELECT articulo, SUM(cantidad) As cantidad, (ARRAY_AGG(observ))[1] AS observ FROM salpart GROUP BY "
      "articulo ORDER BY articulo NULLS FIRST");
  EXPECT_EQ(ForPostgresql("SELECT linea FROM prods GROUP BY linea, modelo HAVING COUNT(*) > 1 LIMIT 3"),
            "SELECT linea FROM prods GROUP BY linea, modelo HAVING COUNT(*) > 1 ORDER BY linea NULLS FIRST, "
            "modelo NULLS FIRST LIMIT 3");
  for (const char* text :
       {"SELECT UPPER(unidad) AS u, COUNT(*) AS n FROM prods GROUP BY u",
        "SELECT unidad AS u, COUNT(*) FROM prods GROUP BY u", "SELECT unidad u FROM prods GROUP BY 1",
        "SELECT 'x' AS c, COUNT(*) FROM prods GROUP BY unidad",
        "SELECT unidad, STRING_AGG(articulo, ',') FROM prods GROUP BY unidad"}) {
    const std::string by = std::string(text).substr(std::string_view(text).rfind(' ') + 1);
    EXPECT_EQ(ForPostgresql(text), std::string(text) + " ORDER BY " + by + " NULLS FIRST");
  }
  EXPECT_EQ(ForPostgresql("SELECT linea FROM prods GROUP BY linea ORDER BY linea DESC"),
            "SELECT linea FROM prods GROUP BY linea ORDER BY linea DESC");
}

std::string Where(const std::string& condition) {
  const std::string text = ForPostgresql("DELETE FROM entradas WHERE " + condition);
  return text.substr(text.find("WHERE") + 6);
}

TEST(Dialect, ATextIsReadAsTheNumberThatItIsComparedWith) {
  EXPECT_EQ(Where("entrada='-7'"), "entrada=(-7)");
  EXPECT_EQ(Where("almacen = ' 2.0 '"), "almacen =(2.0)");
  EXPECT_EQ(Where("almacen = '.5'"), "almacen =(0.5)");
  EXPECT_EQ(Where("almacen >= '1e2'"), "almacen >=(100)");
}

TEST(Dialect, ATextThatIsNoNumberEqualsNoneAndComesBehindAll) {
  EXPECT_EQ(Where("almacen = 'X1'"), "almacen =NULL");
  EXPECT_EQ(Where("almacen = ''"), "almacen =NULL");
  EXPECT_EQ(Where("entrada >= '1,000'"), "entrada >=NULL");
  EXPECT_EQ(Where("almacen < 'X1' AND importe <> 'X1'"), "almacen  IS NOT NULL AND importe  IS NOT NULL");
}

TEST(Dialect, ATextThatIsNoDateStandsAmongThemByItsFirstSign) {
  EXPECT_EQ(Where("f_emision = '2024-03-05'"), "f_emision ='2024-03-05'");
  EXPECT_EQ(Where("entradas.f_emision <= '2024-03-05 basura'"), "entradas.f_emision <='2024-03-05'");
  EXPECT_EQ(Where("f_emision = 'pronto'"), "f_emision =NULL");
  EXPECT_EQ(Where("f_emision < 'pronto'"), "f_emision  IS NOT NULL");
  EXPECT_EQ(Where("f_emision > 'pronto'"), "f_emision >NULL");
  EXPECT_EQ(Where("f_emision > ''"), "f_emision  IS NOT NULL");
  EXPECT_EQ(Where("f_emision < ''"), "f_emision <NULL");
}

TEST(Dialect, AColumnIsThatOfItsOwnTable) {
  for (const char* text :
       {"SELECT prods.articulo FROM entpart, prods WHERE prods.impuesto = 'IVA'",
        "SELECT p.articulo FROM entpart JOIN prods AS p ON p.articulo = '7' AND p.impuesto = 'IVA'",
        "SELECT a FROM entpart, prods WHERE impuesto = 'IVA'",  // either
        "SELECT x FROM cupos WHERE almacen = 'A1'", "DELETE FROM cupos WHERE almacen <> 'A1'",
        "SELECT x FROM cupos, ALMACEN WHERE almacen = 'A1'",
        "SELECT x FROM (SELECT 1 AS entrada) t, entradas WHERE entrada = 'x'"}) {
    EXPECT_EQ(ForPostgresql(text), text);
  }
  EXPECT_EQ(ForPostgresql("SELECT a FROM prods p, entpart e WHERE e.impuesto = 'IVA'"),
            "SELECT a FROM prods p, entpart e WHERE e.impuesto =NULL");
}

TEST(Dialect, ATextColumnIsComparedWithWhatStandsThere) {
  for (const char* text : {"DELETE FROM prods WHERE articulo = '007'", "DELETE FROM de_otros WHERE n = 'x'",
                           "DELETE FROM prods WHERE articulo = 'O''Hara'", "DELETE FROM prods WHERE ALM1 = 7",
                           "DELETE FROM prods WHERE 'x' = articulo"}) {
    EXPECT_EQ(ForPostgresql(text), text);
  }
}

TEST(Dialect, WhatIsSetIsForTheEngineToRefuseUnlessItIsEmpty) {
  EXPECT_EQ(ForPostgresql("UPDATE prods SET ALM1 = 'X1', ALM2 = '', ALM3 = '  ' WHERE articulo = 'A'"),
            "UPDATE prods SET ALM1 = 'X1', ALM2 = NULL, ALM3 = NULL WHERE articulo = 'A'");
  EXPECT_EQ(
      ForPostgresql("UPDATE entradas SET ocupado = '', f_emision = ' ', observ = ' ' WHERE entrada = 1"),
      "UPDATE entradas SET ocupado = NULL, f_emision = NULL, observ = ' ' WHERE entrada = 1");
}

TEST(Dialect, AnEmptyTextThatIsInsertedIsNoValueWhereTextsHaveNoPlace) {
  EXPECT_EQ(ForPostgresql(
                "INSERT INTO entradas (entrada, almacen, observ, f_emision) VALUES (7, '', '', ''), (8, 'X', "
                "'a', '')"),
            "INSERT INTO entradas (entrada, almacen, observ, f_emision) VALUES (7, NULL, '', NULL), (8, 'X', "
            "'a', NULL)");
  EXPECT_EQ(ForPostgresql("UPDATE prods SET ALM1 = (SELECT MAX(x) FROM cupos WHERE x > 0), ALM2 = 'X1'"),
            "UPDATE prods SET ALM1 = (SELECT MAX(x) FROM cupos WHERE x > 0), ALM2 = 'X1'");
}

TEST(Dialect, ColumnsAreSpelledAsTheyWereWritten) {
  std::vector<std::string> names = {"pcolor", "dato1", "usuhora", "otra"};
  SpellColumns("SELECT color AS pColor, DATO1, usuhora, otra FROM clavesadd, entpart", names);
  EXPECT_EQ(names, (std::vector<std::string>{"pColor", "Dato1", "Usuhora", "otra"}));
}

}  // namespace
}  // namespace tarvik::data
