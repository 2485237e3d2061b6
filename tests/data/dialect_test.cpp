// The suite's statements as the engine for many stations has to be told them.
#include "data/postgresql/dialect.h"

#include <gtest/gtest.h>

#include "data/select.h"

namespace tarvik::data {
namespace {

std::string Marked(std::string_view text) {
  const Told told = ForPostgresql(text, From::kHost);
  std::string marked = told.text + " | ";
  for (const Mark mark : told.marks) marked += mark == Mark::kCompared ? 'c' : 'g';
  return marked;
}

std::string Said(std::string_view text) { return ForPostgresql(text).text; }

TEST(Dialect, MarksAreNumberedOutsideQuotes) {
  EXPECT_EQ(Marked("SELECT ?, '?', \"a?\", ?"), "SELECT $1, '?', \"a?\", $2 | gg");
  EXPECT_EQ(Marked("SELECT 'O''Hara?', ?"), "SELECT 'O''Hara?', $1 | g");
  EXPECT_EQ(Marked("SELECT 1"), "SELECT 1 | ");
}

TEST(Dialect, AValueThatIsComparedIsNoValueThatIsGiven) {
  EXPECT_EQ(Marked("UPDATE prods SET ALM1 = ? WHERE articulo = ? AND ALM2 >= ?"),
            "UPDATE prods SET ALM1 = $1 WHERE articulo = $2 AND ALM2 >= $3 | gcc");
  EXPECT_EQ(Marked("UPDATE prods SET ALM1 = CASE WHEN ALM2 = ? THEN ? END, ALM3 = ?"),
            "UPDATE prods SET ALM1 = CASE WHEN ALM2 = $1 THEN $2 END, ALM3 = $3 | cgg");
  EXPECT_EQ(Marked("DELETE FROM prods WHERE ALM1 IN (1, ?) AND ALM2 BETWEEN ? AND ? AND ABS(?) = 1"),
            "DELETE FROM prods WHERE ALM1 IN (1, $1) AND ALM2 BETWEEN $2 AND $3 AND ABS($4) = 1 | cccg");
  EXPECT_EQ(Marked("INSERT INTO prods (articulo) VALUES (?)"),
            "INSERT INTO prods (articulo) VALUES ($1) | g");
}

TEST(Dialect, TheLinesOfADocumentComeInTheOrderOfTheirKey) {
  EXPECT_EQ(Said("SELECT * FROM entpart WHERE entrada = 7"),
            "SELECT * FROM entpart WHERE entrada = 7 ORDER BY entpart.id_entrada");
  EXPECT_EQ(Said("select * from existenciaalmacen e where articulo = 'A'"),
            "select * from existenciaalmacen e where articulo = 'A' ORDER BY e.almacen, e.articulo");
  EXPECT_EQ(Said("SELECT 1 FROM prods LIMIT 1"), "SELECT 1 FROM prods ORDER BY prods.articulo LIMIT 1");
  EXPECT_EQ(Said("SELECT * FROM prods ;"), "SELECT * FROM prods ORDER BY prods.articulo ;");
}

TEST(Dialect, WhatHasAnOrderOrNeedsNoneStaysAsItIs) {
  for (const char* text :
       {"SELECT * FROM prods ORDER BY articulo DESC", "SELECT COUNT(*) FROM prods",
        "SELECT sum (cantidad) AS n FROM entpart WHERE entrada = 7", "SELECT DISTINCT linea FROM prods",
        "SELECT STRING_AGG(articulo, ',') AS l FROM prods", "SELECT * FROM de_otros WHERE a = '1'",
        "SELECT 1", "SELECT * FROM entradas, entpart", "SELECT * FROM prods UNION SELECT * FROM prods",
        "INSERT INTO prods (articulo) VALUES ('A')", "DELETE FROM prods",
        "SELECT * FROM (SELECT 1 AS n) AS t", "SELECT", "SELECT FROM",
        "SELECT * FROM prods WHERE articulo = 'x ORDER BY y' ORDER BY articulo"}) {
    EXPECT_EQ(Said(text), text);
  }
}

TEST(Dialect, AColumnOutsideItsGroupIsThatOfTheFirstRow) {
  EXPECT_EQ(
      Said("SELECT prods.color AS pcolor, colores.descrip AS color FROM colores,prods WHERE "
           "colores.color=prods.color GROUP BY prods.color"),
      "SELECT prods.color AS pcolor, (ARRAY_AGG(colores.descrip ORDER BY colores.color, prods.orden_alta "
      "NULLS FIRST))[1] AS color FROM colores,prods WHERE "
      "colores.color=prods.color GROUP BY prods.color ORDER BY prods.color NULLS FIRST");
  EXPECT_EQ(Said("SELECT articulo, SUM(cantidad) As cantidad, observ FROM salpart GROUP BY articulo"),
            "SELECT articulo, SUM(cantidad) As cantidad, (ARRAY_AGG(observ ORDER BY salpart.id_salida))[1] "
            "AS observ FROM salpart GROUP BY "
            "articulo ORDER BY articulo NULLS FIRST");
  EXPECT_EQ(Said("SELECT linea FROM prods GROUP BY linea, modelo HAVING COUNT(*) > 1 LIMIT 3"),
            "SELECT linea FROM prods GROUP BY linea, modelo HAVING COUNT(*) > 1 ORDER BY linea NULLS FIRST, "
            "modelo NULLS FIRST LIMIT 3");
  for (const char* text :
       {"SELECT UPPER(unidad) AS u, COUNT(*) AS n FROM prods GROUP BY u",
        "SELECT unidad AS u, COUNT(*) FROM prods GROUP BY u", "SELECT unidad u FROM prods GROUP BY 1",
        "SELECT 'x' AS c, COUNT(*) FROM prods GROUP BY unidad",
        "SELECT unidad, STRING_AGG(articulo, ',') FROM prods GROUP BY unidad"}) {
    const std::string by = std::string(text).substr(std::string_view(text).rfind(' ') + 1);
    EXPECT_EQ(Said(text), std::string(text) + " ORDER BY " + by + " NULLS FIRST");
  }
  EXPECT_EQ(Said("SELECT linea FROM prods GROUP BY linea ORDER BY linea DESC"),
            "SELECT linea FROM prods GROUP BY linea ORDER BY linea DESC NULLS LAST");
}

std::string Where(const std::string& condition) {
  const std::string text = Said("DELETE FROM entradas WHERE " + condition);
  return text.substr(text.find("WHERE") + 6);
}

TEST(Dialect, ATextIsReadAsTheNumberThatItIsComparedWith) {
  EXPECT_EQ(Where("entrada='-7'"), "entrada = (-7)");
  EXPECT_EQ(Where("almacen = ' 2.0 '"), "almacen = (2)");
  EXPECT_EQ(Where("almacen = '.5'"), "almacen = (0.5)");
  EXPECT_EQ(Where("almacen >= '1e2'"), "almacen >= (100)");
  EXPECT_EQ(Where("almacen < '1e400'"), "almacen < ('Infinity'::float8)");
  EXPECT_EQ(Where("almacen > '1e-400'"), "almacen > (0)");
}

TEST(Dialect, ATextThatIsNoNumberEqualsNoneAndComesBehindAll) {
  const std::string never = "(almacen IS NULL AND NULL)";
  const std::string always = "(almacen IS NOT NULL OR NULL)";
  for (const char* none : {"'X1'", "''", "' '", "'1,000'", "'1e'", "'.'", "'-'", "'0x1'", "'1 2'"}) {
    EXPECT_EQ(Where(std::string("almacen = ") + none), never) << none;
    EXPECT_EQ(Where(std::string("almacen >= ") + none), never) << none;
    EXPECT_EQ(Where(std::string("almacen > ") + none), never) << none;
    EXPECT_EQ(Where(std::string("almacen < ") + none), always) << none;
    EXPECT_EQ(Where(std::string("almacen <= ") + none), always) << none;
    EXPECT_EQ(Where(std::string("almacen != ") + none), always) << none;
  }
  // What stands around it has the same effect as where the comparison itself is false.
  EXPECT_EQ(Where("NOT almacen = 'X1' AND (importe <> 'X1' OR 1 = 1)"),
            "NOT (almacen IS NULL AND NULL) AND ((importe IS NOT NULL OR NULL) OR 1 = 1)");
}

TEST(Dialect, ParenthesesAndSidesMakeNoDifference) {
  EXPECT_EQ(Where("(almacen) = 'X1'"), "((almacen) IS NULL AND NULL)");
  EXPECT_EQ(Where("((entradas.almacen)) = (('7'))"), "((entradas.almacen)) = (7)");
  EXPECT_EQ(Where("'X1' = almacen"), "(almacen IS NULL AND NULL)");
  EXPECT_EQ(Where("'7' < almacen"), "almacen > (7)");
  EXPECT_EQ(Where("'X' >= (almacen)"), "((almacen) IS NOT NULL OR NULL)");
  EXPECT_EQ(Where("(((entrada) = '7'))"), "(((entrada) = (7)))");
}

TEST(Dialect, ListsAndRangesAreReadLiteralByLiteral) {
  EXPECT_EQ(Where("almacen IN ('1', 'x', 3)"), "almacen IN ((1), 3)");
  EXPECT_EQ(Where("almacen IN (1, 3)"), "almacen IN (1, 3)");
  EXPECT_EQ(Where("almacen NOT IN ('x', '')"), "(almacen IS NOT NULL OR NULL)");
  EXPECT_EQ(Where("(almacen) IN ('x', NULL)"), "(almacen) IN (NULL)");
  EXPECT_EQ(Where("observ IN (1, 'a', -2.50)"), "observ IN ('1', 'a', '-2.5')");
  EXPECT_EQ(Where("almacen IN ('1', importe)"), "almacen IN ('1', importe)");
  EXPECT_EQ(Where("almacen BETWEEN '1' AND 'x' AND 1 = 1"),
            "((almacen >= (1) AND (almacen IS NOT NULL OR NULL))) AND 1 = 1");
  EXPECT_EQ(Where("almacen NOT BETWEEN 1 AND '3'"), "(NOT (almacen >= 1 AND almacen <= (3)))");
  EXPECT_EQ(Where("almacen BETWEEN 1 AND 3"), "almacen BETWEEN 1 AND 3");
}

TEST(Dialect, ALiteralThatIsPartOfSomethingElseStays) {
  for (const char* text :
       {"almacen + importe = '5'", "UPPER(observ) = 5", "almacen = '5' || observ", "-almacen = 'x'",
        "almacen = '5' + 1", "CAST(almacen AS TEXT) = 'x'", "'x' || observ = 5"}) {
    EXPECT_EQ(Where(text), text);
  }
}

TEST(Dialect, ANumberIsTheTextThatItIsComparedWith) {
  EXPECT_EQ(Where("observ = 7"), "observ = '7'");
  EXPECT_EQ(Where("observ = 007"), "observ = '7'");
  EXPECT_EQ(Where("observ <> -7.50"), "observ <> '-7.5'");
  EXPECT_EQ(Where("7.0 = observ"), "observ = '7.0'");
}

TEST(Dialect, ATextThatIsNoDateStandsAmongThemAsATextDoes) {
  EXPECT_EQ(Where("f_emision = '2024-03-05'"), "f_emision = '2024-03-05'");
  EXPECT_EQ(Where("entradas.f_emision <= '2024-03-05 basura'"),
            "CAST(entradas.f_emision AS TEXT) COLLATE \"C\" <= '2024-03-05 basura'");
  EXPECT_EQ(Where("f_emision = 'pronto'"), "(f_emision IS NULL AND NULL)");
  EXPECT_EQ(Where("f_emision != tipo_cam"), "f_emision <> tipo_cam");
  EXPECT_EQ(Where("f_emision = '2024-3-5'"), "(f_emision IS NULL AND NULL)");
  EXPECT_EQ(Where("f_emision < 'pronto'"), "(f_emision IS NOT NULL OR NULL)");
  EXPECT_EQ(Where("f_emision < 'Ñ'"), "(f_emision IS NOT NULL OR NULL)");
  EXPECT_EQ(Where("f_emision > 'pronto'"), "(f_emision IS NULL AND NULL)");
  EXPECT_EQ(Where("f_emision > ''"), "(f_emision IS NOT NULL OR NULL)");
  EXPECT_EQ(Where("f_emision < ''"), "(f_emision IS NULL AND NULL)");
  EXPECT_EQ(Where("f_emision > 20240305"), "(f_emision IS NOT NULL OR NULL)");
  EXPECT_EQ(Where("f_emision <= '2024'"), "(f_emision IS NULL AND NULL)");
}

TEST(Dialect, LikeMakesNoDifferenceOfCaseAndKnowsNoEscape) {
  EXPECT_EQ(Where("observ LIKE 'a%'"), "observ ILIKE 'a%'");
  EXPECT_EQ(Where("observ NOT LIKE 'a\\%'"), "observ NOT ILIKE 'a\\%' ESCAPE ''");
  EXPECT_EQ(Where("observ LIKE 'a\\%' ESCAPE '\\'"), "observ ILIKE 'a\\%' ESCAPE '\\'");
  EXPECT_EQ(Said("CREATE TABLE copia (LIKE prods)"), "CREATE TABLE copia (LIKE prods)");
  EXPECT_EQ(Where("(entrada) LIKE '1%'"), "CAST((entrada) AS TEXT) ILIKE '1%'");
}

TEST(Dialect, WhatTheEnginesDoNotReadAlikeStays) {
  for (const char* text :
       {"SELECT * FROM prods WHERE [ALM1] = 'x'", "SELECT * FROM prods WHERE ALM1 = `x`",
        "SELECT * FROM prods WHERE ALM1 = E'x'", "SELECT * FROM prods WHERE ALM1 = $$x$$"}) {
    EXPECT_EQ(Said(text), text);
  }
}

TEST(Dialect, NoValueComesFirst) {
  EXPECT_EQ(
      Said("SELECT articulo FROM prods ORDER BY descrip, linea DESC, articulo LIMIT 3"),
      "SELECT articulo FROM prods ORDER BY descrip NULLS FIRST, linea DESC NULLS LAST, articulo LIMIT 3");
  EXPECT_EQ(Said("SELECT DISTINCT articulo FROM prods UNION SELECT linea FROM prods ORDER BY 1 DESC"),
            "SELECT DISTINCT articulo FROM prods UNION SELECT linea FROM prods ORDER BY 1 DESC NULLS LAST");
  EXPECT_EQ(Said("SELECT articulo FROM prods ORDER BY descrip NULLS LAST"),
            "SELECT articulo FROM prods ORDER BY descrip NULLS LAST");
  EXPECT_EQ(ForPostgresql("SELECT articulo FROM prods ORDER BY descrip", From::kHost).text,
            "SELECT articulo FROM prods ORDER BY descrip");
}

TEST(Dialect, AModelsArticlesComeByColourSizeAndAsTheyWereStored) {
  const std::string order =
      " ORDER BY prods.color NULLS FIRST, prods.talla NULLS FIRST, prods.orden_alta NULLS FIRST";
  EXPECT_EQ(Said("SELECT * FROM prods WHERE modelo = 'M' AND modelo<>''"),
            "SELECT * FROM prods WHERE modelo = 'M' AND modelo<>''" + order);
  EXPECT_EQ(InReadingOrder("SELECT * FROM prods WHERE modelo = 'M'"),
            "SELECT * FROM prods WHERE modelo = 'M'" + order);
  EXPECT_EQ(InReadingOrder("SELECT * FROM entpart WHERE entrada = 7"),
            "SELECT * FROM entpart WHERE entrada = 7");
  EXPECT_EQ(InReadingOrder("SELECT f_emision FROM entradas"),
            "SELECT f_emision FROM entradas ORDER BY entradas.entrada");
  EXPECT_EQ(InReadingOrder("SELECT descrip FROM ALMACEN LIMIT 2;"),
            "SELECT descrip FROM ALMACEN ORDER BY ALMACEN.almacen LIMIT 2;");
}

TEST(Dialect, AColumnIsThatOfItsOwnTable) {
  for (const char* text :
       {"SELECT prods.articulo FROM entpart, prods WHERE prods.impuesto = 'IVA'",
        "SELECT p.articulo FROM entpart JOIN prods AS p ON p.articulo = '7' AND p.impuesto = 'IVA'",
        "SELECT a FROM entpart, prods WHERE impuesto = 'IVA'",  // either
        "SELECT x FROM cupos WHERE almacen = 'A1'", "DELETE FROM cupos WHERE almacen <> 'A1'",
        "SELECT x FROM cupos, ALMACEN WHERE almacen = 'A1'",
        "SELECT x FROM (SELECT 1 AS entrada) t, entradas WHERE entrada = 'x'"}) {
    EXPECT_EQ(Said(text), text);
  }
  EXPECT_EQ(Said("SELECT a FROM prods p, entpart e WHERE e.impuesto = 'IVA'"),
            "SELECT a FROM prods p, entpart e WHERE (e.impuesto IS NULL AND NULL)");
}

TEST(Dialect, ATextColumnIsComparedWithWhatStandsThere) {
  for (const char* text :
       {"DELETE FROM prods WHERE articulo = '007'", "DELETE FROM de_otros WHERE n = 'x'",
        "DELETE FROM prods WHERE articulo = 'O''Hara'", "DELETE FROM prods WHERE ALM1 = 7",
        "DELETE FROM prods WHERE 'x' = articulo", "DELETE FROM prods WHERE articulo = NULL"}) {
    EXPECT_EQ(Said(text), text);
  }
}

TEST(Dialect, WhatIsSetIsForTheEngineToRefuseUnlessItIsEmpty) {
  EXPECT_EQ(Said("UPDATE prods SET ALM1 = 'X1', ALM2 = '', ALM3 = '  ' WHERE articulo = 'A'"),
            "UPDATE prods SET ALM1 = 'X1', ALM2 = NULL, ALM3 = NULL WHERE articulo = 'A'");
  EXPECT_EQ(Said("UPDATE entradas SET ocupado = '', f_emision = ' ', observ = ' ' WHERE entrada = 1"),
            "UPDATE entradas SET ocupado = NULL, f_emision = NULL, observ = ' ' WHERE entrada = 1");
}

TEST(Dialect, WhatIsSetIsReadAsItsColumn) {
  EXPECT_EQ(Said("UPDATE entradas SET entrada = '7.0', observ = 1.50, almacen = ' 2 '"),
            "UPDATE entradas SET entrada = 7, observ = '1.5', almacen = 2");
  EXPECT_EQ(Said("UPDATE prods SET descrip = CASE WHEN ALM1 = 'X' THEN 'a' ELSE '' END, ALM1 = '1'"),
            "UPDATE prods SET descrip = CASE WHEN (ALM1 IS NULL AND NULL) THEN 'a' ELSE '' END, ALM1 = 1");
  EXPECT_EQ(Said("INSERT INTO entradas (entrada, observ) VALUES ('1e2', 7)"),
            "INSERT INTO entradas (entrada, observ) VALUES (100, '7')");
}

TEST(Dialect, AnEmptyTextThatIsInsertedIsNoValueWhereTextsHaveNoPlace) {
  EXPECT_EQ(
      Said("INSERT INTO entradas (entrada, almacen, observ, f_emision) VALUES (7, '', '', ''), (8, 'X', "
           "'a', '')"),
      "INSERT INTO entradas (entrada, almacen, observ, f_emision) VALUES (7, NULL, '', NULL), (8, 'X', "
      "'a', NULL)");
  EXPECT_EQ(Said("UPDATE prods SET ALM1 = (SELECT MAX(x) FROM cupos WHERE x > 0), ALM2 = 'X1'"),
            "UPDATE prods SET ALM1 = (SELECT MAX(x) FROM cupos WHERE x > 0), ALM2 = 'X1'");
}

TEST(Dialect, ColumnsAreSpelledAsTheyWereWritten) {
  std::vector<std::string> names = {"pcolor", "dato1", "usuhora", "otra"};
  SpellColumns("SELECT color AS pColor, DATO1, usuhora, otra FROM clavesadd, entpart", names);
  EXPECT_EQ(names, (std::vector<std::string>{"pColor", "Dato1", "Usuhora", "otra"}));
}

}  // namespace
}  // namespace tarvik::data
