// The gate before an engine, and calls of procedures by name.
#include "data/statement.h"

#include <gtest/gtest.h>

#include "data/error.h"
#include "tests/data/support.h"

namespace tarvik::data {
namespace {

using tests::ErrorOf;

std::string Refusal(std::string_view text) {
  return ErrorOf([&] { RequireOneStatement(text); });
}

TEST(OneStatement, OrdinaryTextsPass) {
  for (const char* text : {
           "SELECT * FROM salidas WHERE (((salida) = 5))",
           "SELECT 1;",
           "SELECT 1 ;  \n",
           "UPDATE t SET a = 'O''Hara'",
           "UPDATE t SET a = ''",
           "UPDATE t SET a = 'uno; dos -- tres /* cuatro'",
           "SELECT \"a;b\" FROM `c--d` WHERE [e/*f] = 1",
           "SELECT 'a\"b' FROM t",
           "SELECT 5 - -3, 6 / 2 * 4",
           "exec TKCreaEntradaTYC '5'",
           "UPDATE t SET a = 'Ñandú 😀'",
       }) {
    EXPECT_EQ(Refusal(text), "no error") << text;
  }
}

TEST(OneStatement, ASecondOneIsRefused) {
  const std::string reason = "La sentencia contiene otra detrás de un punto y coma";
  EXPECT_EQ(Refusal("SELECT 1; DELETE FROM prods"), reason);
  EXPECT_EQ(Refusal("SELECT 1;;"), reason);
  EXPECT_EQ(Refusal("; SELECT 1"), reason);
  EXPECT_EQ(Refusal("SELECT * FROM prods WHERE articulo = 'x'; DROP TABLE prods; '"), reason);
}

TEST(OneStatement, AnOpenQuoteIsRefused) {
  const std::string reason = "La sentencia deja una comilla abierta";
  EXPECT_EQ(Refusal("SELECT * FROM clients WHERE nombre = 'O'Hara'"), reason);
  EXPECT_EQ(Refusal("SELECT 'a''"), reason);
  EXPECT_EQ(Refusal("SELECT \"a"), reason);
  EXPECT_EQ(Refusal("SELECT `a"), reason);
  EXPECT_EQ(Refusal("SELECT [a"), reason);
}

TEST(OneStatement, ACommentMarkOutsideQuotesIsRefused) {
  const std::string reason = "La sentencia contiene una marca de comentario";
  EXPECT_EQ(Refusal("SELECT * FROM prods WHERE articulo = 'x' OR 1=1 --'"), reason);
  EXPECT_EQ(Refusal("SELECT /* todo */ 1"), reason);
  EXPECT_EQ(Refusal("SELECT 5--3"), reason);
}

TEST(OneStatement, EmptyTextIsRefused) {
  for (const char* text : {"", "  \n\t", ";", " ; "}) EXPECT_EQ(Refusal(text), "La sentencia está vacía");
}

TEST(OneStatement, TextThatNoEngineMayReadIsRefused) {
  EXPECT_EQ(Refusal(std::string_view("SELECT 1\0 ; DROP", 15)), "La sentencia contiene un carácter nulo");
  EXPECT_EQ(Refusal("SELECT 'Ca\xF1"
                    "a'"),
            "La sentencia no es texto UTF-8 válido");
}

TEST(OneStatement, TheTextStandsInTheContextAndNotInTheDescription) {
  try {
    RequireOneStatement("SELECT 'secreto");
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(std::string(error.what()).find("secreto"), std::string::npos);
    ASSERT_EQ(error.Context().size(), 1U);
    EXPECT_EQ(error.Context()[0].first, "sentencia");
    EXPECT_EQ(error.Context()[0].second, "SELECT 'secreto");
  }
}

TEST(FirstWord, SelectOrNot) {
  for (const char* text : {"SELECT 1", "select * from t", "  \n Select 1", "SELECT*FROM t", "select"}) {
    EXPECT_TRUE(IsSelect(text)) << text;
  }
  for (const char* text :
       {"", "SELECTA", "select_1", "UPDATE t", "(SELECT 1)", "WITH a AS (SELECT 1) SELECT 2"}) {
    EXPECT_FALSE(IsSelect(text)) << text;
  }
}

TEST(Exec, NameAndArguments) {
  const auto call = ParseExec("exec TKMallaParam 'ANA','M 1' , 'E1','12','EntradasInventario'");
  ASSERT_TRUE(call);
  EXPECT_EQ(call->name, "TKMallaParam");
  EXPECT_EQ(call->arguments, (std::vector<std::string>{"ANA", "M 1", "E1", "12", "EntradasInventario"}));
}

TEST(Exec, NoArgumentsAndQuotesInside) {
  EXPECT_EQ(ParseExec("EXEC Cierra")->arguments, std::vector<std::string>{});
  EXPECT_EQ(ParseExec(" Exec Cierra ; ")->name, "Cierra");
  EXPECT_EQ(ParseExec("exec dbo.Cierra ''")->arguments, std::vector<std::string>{""});
  EXPECT_EQ(ParseExec("exec dbo.Cierra ''")->name, "dbo.Cierra");
  EXPECT_EQ(ParseExec("exec p 'O''Hara, ''x'''")->arguments, std::vector<std::string>{"O'Hara, 'x'"});
}

TEST(Exec, OtherStatementsAreNoCall) {
  for (const char* text : {"SELECT 1", "execute x", "exec_1 'a'", ""}) EXPECT_FALSE(ParseExec(text)) << text;
}

TEST(Exec, OtherFormsAreRefused) {
  for (const char* text : {"exec", "exec 'a'", "exec p 'a' 'b'", "exec p 'a',", "exec p ,'a'", "exec p 5",
                           "exec p ('a')", "exec p 'a' b", "exec p q", "exec p 'a"}) {
    EXPECT_EQ(ErrorOf([&] { ParseExec(text); }),
              "La llamada a un procedimiento no tiene la forma exec NOMBRE 'a','b'")
        << text;
  }
}

TEST(Quoting, DoublesTheQuotes) {
  EXPECT_EQ(Quoted("O'Hara"), "'O''Hara'");
  EXPECT_EQ(Quoted(""), "''");
  EXPECT_EQ(Quoted("'"), "''''");
  EXPECT_EQ(Refusal("SELECT " + Quoted("'; DROP TABLE prods; --")), "no error");
}

}  // namespace
}  // namespace tarvik::data
