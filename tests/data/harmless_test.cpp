// What a screen's statement may hold, and the lexer under every check of a statement.
#include <gtest/gtest.h>

#include "data/error.h"
#include "data/lexer.h"
#include "data/statement.h"
#include "tests/data/support.h"

namespace tarvik::data {
namespace {

using tests::ErrorOf;

std::string Refusal(std::string_view text) {
  return ErrorOf([&] {
    RequireOneStatement(text);
    RequireHarmless(text);
  });
}

TEST(Harmless, TheSuitesOwnStatementsPass) {
  for (const char* text : {
           "SELECT * FROM salidas WHERE (((salida) = 5))",
           "SELECT * FROM entpart WHERE entrada = (7)",
           "SELECT prods.descrip,unidad,precio1,impuestos.valor FROM prods INNER JOIN impuestos ON "
           "(prods.impuesto = impuestos.impuesto) WHERE articulo = 'A-100'",
           "SELECT articulo, SUM(cantidad) As cantidad FROM salpart WHERE salida = 4 GROUP BY articulo",
           "SELECT COUNT (*) FROM prods WHERE linea IN ('a', 'b') AND (NOT (unidad = 'KG') OR (1 = 1))",
           "SELECT MIN(a), max(b), Avg(c), UPPER(TRIM(d)), length(e), abs(f), ROUND(g, 2), COALESCE(h, '') "
           "FROM t",
           "SELECT CAST(a AS NUMERIC(10, 2)), SUBSTR(b, 1), REPLACE(c, 'x', 'y'), d::varchar(20) FROM t",
           "INSERT INTO entpart (id_entrada, articulo) VALUES (1, 'A')",
           "INSERT INTO tienda.entpart (id_entrada) VALUES (1)",
           "INSERT INTO \"entpart\" (id_entrada) VALUES (1)",
           "UPDATE prods SET ALM1 = (ALM1 + 3) WHERE articulo = 'A'",
           "DELETE FROM salpart WHERE id_salida = 4;",
           "SELECT * FROM t WHERE a BETWEEN (1) AND (2) ORDER BY (a) LIMIT (5)",
           "SELECT CASE WHEN (a = 1) THEN (2) ELSE (3) END FROM t",
           "SELECT \"el nombre\" FROM t",
           "SELECT forma, tablero, selecto, conwith, unions FROM t",
       }) {
    EXPECT_EQ(Refusal(text), "no error") << text;
  }
}

TEST(Harmless, WhatStandsInQuotesIsData) {
  for (const char* text : {
           "SELECT * FROM prods WHERE articulo = 'SELECT'",
           "SELECT * FROM prods WHERE articulo = 'with (union) select pg_sleep(5)'",
           "UPDATE entradas SET observ = 'caja (12) de ''select'', $$ y [corchetes(' WHERE entrada = 1",
           "SELECT \"select\", \"pg_sleep\" FROM t",
           "UPDATE t SET e = 'x', n = ' E''y'''",
       }) {
    EXPECT_EQ(Refusal(text), "no error") << text;
  }
}

TEST(Harmless, AnotherQuestionInsideIsRefused) {
  const std::string inside = "Una consulta no puede llevar otra dentro";
  EXPECT_EQ(Refusal("SELECT * FROM t WHERE a = (SELECT 1)"), inside);
  EXPECT_EQ(Refusal("SELECT * FROM t WHERE a = 'x' OR EXISTS(select 1)"), inside);
  EXPECT_EQ(Refusal("INSERT INTO t SELECT * FROM u"), inside);
  EXPECT_EQ(Refusal("UPDATE t SET a = 5SELECT"), inside);
  const std::string word = "La sentencia contiene una palabra que aquí no se permite: ";
  EXPECT_EQ(Refusal("SELECT a FROM t WHERE b = 'zz' UNION SELECT nombre FROM clients WHERE ''=''"),
            word + "UNION");
  EXPECT_EQ(Refusal("SELECT a FROM t WHERE b = '' union TABLE clients"), word + "union");
  EXPECT_EQ(Refusal("SELECT a FROM t WHERE b IN (TABLE clients)"), word + "TABLE");
  EXPECT_EQ(Refusal("SELECT a FROM t WHERE b = 5UNION VALUES (1)"), word + "UNION");
  EXPECT_EQ(Refusal("SELECT a FROM t INTERSECT VALUES (1)"), word + "INTERSECT");
  EXPECT_EQ(Refusal("SELECT a FROM t EXCEPT VALUES (1)"), word + "EXCEPT");
  EXPECT_EQ(Refusal("WITH RECURSIVE n(i) AS (VALUES (1)) DELETE FROM t"), word + "WITH");
  EXPECT_EQ(Refusal("SELECT a FROM t WHERE b = '' OR a IN ( with n AS (VALUES (1)) VALUES (2))"),
            word + "with");
  EXPECT_EQ(Refusal("SELECT a FROM t WHERE b = 'z' OR 1=1 FOR UPDATE LIMIT '1'"), word + "FOR");
}

TEST(Harmless, AFunctionThatIsNotOnTheListIsRefused) {
  const std::string calls = "La sentencia llama una función que aquí no se permite: ";
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE a = '' OR PG_ADVISORY_LOCK(5) IS NULL OR 'a'='b'"),
            calls + "PG_ADVISORY_LOCK");
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE PG_SLEEP (5) IS NULL"), calls + "PG_SLEEP");
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE pg_sleep\n\t(5) IS NULL"), calls + "pg_sleep");
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE 5pg_sleep(5) IS NULL"), calls + "pg_sleep");
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE pg_catalog.pg_sleep(5) IS NULL"), calls + "pg_sleep");
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE pg_catalog . pg_sleep (5) IS NULL"), calls + "pg_sleep");
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE \"pg_sleep\"(5) IS NULL"), calls + "\"pg_sleep\"");
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE pg_catalog.\"pg_sleep\" (5) IS NULL"), calls + "\"pg_sleep\"");
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE \"in\"('x')"), calls + "\"in\"");
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE otra.sum('x')"), calls + "sum");
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE otra.\"in\"('x')"), calls + "\"in\"");
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE otra.in('x')"), calls + "in");
  EXPECT_EQ(Refusal("SELECT SUM(a) OVER (PARTITION BY b) FROM t"), calls + "OVER");
  for (const char* name :
       {"randomblob", "zeroblob", "readfile", "writefile", "current_setting", "set_config", "pg_read_file",
        "lo_import", "dblink", "query_to_xml", "generate_series", "nextval"}) {
    EXPECT_EQ(Refusal("SELECT " + std::string(name) + "('x') FROM t"), calls + name);
  }
}

TEST(Harmless, QuotesThatEnginesReadDifferentlyAreRefused) {
  const std::string reason = "La sentencia contiene comillas que aquí no se permiten";
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE a = E'\\' OR b = ''"), reason);
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE a = e'x'"), reason);
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE a = U&'\\0027'"), reason);
  EXPECT_EQ(Refusal("SELECT U&\"d\\0061t\" FROM t"), reason);
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE a = $$x$$"), reason);
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE a = $x$ y $x$"), reason);
  EXPECT_EQ(Refusal("SELECT ARRAY[pg_sleep(5)] FROM t"), reason);
  EXPECT_EQ(Refusal("SELECT ARRAY['x'] FROM t"), reason);
  EXPECT_EQ(Refusal("SELECT 1 ` pg_sleep(5) ` 2"), reason);
  EXPECT_EQ(Refusal("SELECT [el nombre] FROM t"), reason);
  EXPECT_EQ(Refusal("SELECT `otro` FROM t"), reason);
  EXPECT_EQ(Refusal("SELECT 1 FROM t WHERE [load_extension]('x')"), reason);
  // To a server the bracket opens a place in a list, and a comment begins in it: what looks like a text here
  // is a call there.
  EXPECT_EQ(Refusal("SELECT * FROM prods WHERE articulo = '' OR ('{1}'::INT[])[/*] ' */1]=5 OR "
                    "PG_TRY_ADVISORY_LOCK(77) IS NULL OR /* ' */'a'='b'"),
            reason);
}

TEST(Harmless, TheStatementStandsInTheContextAndALongNameIsCut) {
  try {
    RequireHarmless("SELECT " + std::string(500, 'x') + "('secreto')");
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.what(), "La sentencia llama una función que aquí no se permite: " + std::string(60, 'x'));
    ASSERT_EQ(error.Context().size(), 1U);
    EXPECT_EQ(error.Context()[0].first, "sentencia");
  }
}

// --- The lexer ---------------------------------------------------------------------------------

std::string PartsOf(std::string_view text) {
  std::string parts;
  Lexer lexer(text);
  for (Part part = lexer.Next(); part.kind != PartKind::kEnd; part = lexer.Next()) {
    if (!parts.empty()) parts += ' ';
    parts += "WNTQM"[static_cast<int>(part.kind)];
    parts += ":" + std::string(part.text) + (part.closed ? "" : "<open>");
  }
  return parts;
}

TEST(Lexing, GivesThePartsInTheirOrder) {
  EXPECT_EQ(PartsOf(""), "");
  EXPECT_EQ(PartsOf(" \n"), "");
  EXPECT_EQ(PartsOf("SELECT a_1,'x'"), "W:SELECT W:a_1 M:, T:'x'");
  EXPECT_EQ(PartsOf("'O''Hara'"), "T:'O''Hara'");
  EXPECT_EQ(PartsOf("\"a\"\"b\" `c``d` [e]]"), "Q:\"a\"\"b\" Q:`c``d` Q:[e] M:]");
  EXPECT_EQ(PartsOf("'a''"), "T:'a''<open>");
  EXPECT_EQ(PartsOf("1e5x .5 1e+2 1e+ 1eUNION a.b"),
            "N:1e5 W:x N:.5 N:1e+2 N:1 W:e M:+ N:1 W:eUNION W:a M:. W:b");
  EXPECT_EQ(PartsOf("\"a\"`b`[c]"), "Q:\"a\" Q:`b` Q:[c]");
  EXPECT_EQ(PartsOf("12.5kg ñu$1 $2"), "N:12.5 W:kg W:ñu$1 M:$ N:2");
  EXPECT_EQ(PartsOf("'a' 'b"), "T:'a' T:'b<open>");
  EXPECT_EQ(PartsOf("[a"), "Q:[a<open>");
  EXPECT_EQ(PartsOf("a--b"), "W:a M:- M:- W:b");
}

TEST(Lexing, SaysWhereAPartStands) {
  Lexer lexer("  Select 'x'");
  const Part word = lexer.Next();
  EXPECT_EQ(word.at, 2U);
  EXPECT_EQ(word.Behind(), 8U);
  EXPECT_TRUE(word.Is("SELECT"));
  EXPECT_FALSE(word.Is('S'));
  const Part text = lexer.Next();
  EXPECT_EQ(text.at, 9U);
  EXPECT_FALSE(text.Is("'x'"));
  EXPECT_EQ(lexer.Next().kind, PartKind::kEnd);
  EXPECT_EQ(lexer.Next().kind, PartKind::kEnd);
}

}  // namespace
}  // namespace tarvik::data
