// Statements of the screens and of the class, told by their texts.
#include "host/sentencias_de_documento.h"

#include <gtest/gtest.h>

#include "data/error.h"

namespace tarvik::host {
namespace {

using Clase = SentenciaDeDocumento::Clase;

std::string Leida(std::string_view text) {
  const auto read = Reconoce(text);
  static const char* const names[] = {"otra",    "crea",    "toma",           "suelta",         "guarda",
                                      "escribe", "corrige", "quita partidas", "quita documento"};
  if (read.clase == Clase::Otra) return "otra";
  return std::string(names[static_cast<int>(read.clase)]) + " " + std::string(NombreDe(read.documento.tipo)) +
         " " + std::to_string(read.clase == Clase::Corrige ? read.renglon : read.documento.numero);
}

TEST(SentenciasDeDocumento, AreToldByTheirTexts) {
  const std::pair<const char*, const char*> known[] = {
      {"INSERT INTO entradas (entrada, ocupado) VALUES (7, 1)", "crea Entrada 7"},
      {"INSERT INTO salidas (salida, sucursal) VALUES (8, '')", "crea Salida 8"},
      {"UPDATE entradas SET ocupado = 1 WHERE entradas.entrada = 7", "toma Entrada 7"},
      {"UPDATE salidas SET ocupado = 1 WHERE salidas.salida = 8", "toma Salida 8"},
      {"UPDATE entradas SET ocupado = 0 WHERE entrada = 7", "suelta Entrada 7"},
      {"UPDATE salidas SET ocupado = 0 WHERE salida = 8", "suelta Salida 8"},
      {"UPDATE entradas SET tipo_doc = 'COM', ocupado = 0 WHERE entrada = 7", "guarda Entrada 7"},
      {"UPDATE entradas SET observ = ' WHERE entrada = 9', ocupado = 0 WHERE entrada = 7",
       "guarda Entrada 7"},
      {"INSERT INTO entpart (id_entrada, entrada, articulo) VALUES (31, 7, 'A')", "escribe Entrada 7"},
      {"INSERT INTO entpart (entrada, articulo) VALUES (7, 'A')", "escribe Entrada 7"},
      {"INSERT INTO salpart (salida, tipo_doc) VALUES (8, 'VTA')", "escribe Salida 8"},
      {"exec TKCreaEntradaTYC '7'", "escribe Entrada 7"},
      {"UPDATE entpart SET cantidad = 3 WHERE id_entrada = 31", "corrige Entrada 31"},
      {"UPDATE salpart SET cantidad = cantidad + 3 WHERE id_salida = 41", "corrige Salida 41"},
      {"DELETE FROM salpart WHERE id_salida = 41", "corrige Salida 41"},
      {"DELETE FROM entpart WHERE (((entpart.entrada) = 7))", "quita partidas Entrada 7"},
      {"DELETE FROM entradas WHERE (((entradas.entrada) = 7))", "quita documento Entrada 7"},
      {"DELETE FROM salpart WHERE (((Salida) = 8))", "quita partidas Salida 8"},
      {"DELETE FROM salidas WHERE (((salida) = 8))", "quita documento Salida 8"}};
  for (const auto& [text, read] : known) EXPECT_EQ(Leida(text), read) << text;
}

TEST(SentenciasDeDocumento, OfALineTheyTellItsNumberAndWhatIsPutThere) {
  const auto line = [](std::string_view text) {
    const auto read = Reconoce(text);
    return std::pair{read.renglon, read.unidades};
  };
  using Linea = std::pair<std::int32_t, double>;
  EXPECT_EQ(line("INSERT INTO entpart (id_entrada, entrada, articulo, cantidad) VALUES (31, 7, 'A', 2.5)"),
            Linea(31, 2.5));
  // A text may hold commas, quotes and brackets of its own.
  EXPECT_EQ(
      line("INSERT INTO salpart (salida, articulo, cantidad, observ, id_salida) VALUES (8, 'a, ''b'')', 3, "
           "'', 41)"),
      Linea(41, 3));
  EXPECT_EQ(line("INSERT INTO salpart (salida, articulo) VALUES (8, 'A')"), Linea(0, 0));
  EXPECT_EQ(line("UPDATE salpart SET cantidad = cantidad + 0.5 WHERE id_salida = 41"), Linea(41, 0.5));
  EXPECT_EQ(line("UPDATE salpart SET cantidad = 3 WHERE id_salida = 41"), Linea(41, 0))
      << "corrected, not added";
  EXPECT_EQ(line("DELETE FROM salpart WHERE id_salida = 41"), Linea(41, 0));
}

TEST(SentenciasDeDocumento, OthersAreNone) {
  for (const char* text :
       {"", "SELECT * FROM entradas WHERE entrada = 7",
        "UPDATE prods SET ALM1 = 2 WHERE articulo = 'entrada = 7'", "UPDATE entradas SET ocupado = 0",
        "UPDATE entradas SET ocupado = 0 WHERE entrada = 7 OR 1 = 1",
        "UPDATE entradas SET ocupado = 0 WHERE entrada = ", "INSERT INTO entradas (entrada) VALUES (NULL)",
        "INSERT INTO entradas (ocupado) VALUES (1)", "INSERT INTO entradas", "DELETE FROM entradas",
        "DELETE FROM entradas WHERE (((entradas.entrada) = 7)) OR ((1 = 1))", "exec TKCreaEntradaTYC 'siete'",
        "exec TKMallaParam 'ANA','M','COM','7','EntradasInventario'",
        "INSERT INTO compras2sucursal (id_partida) VALUES (3)"})
    EXPECT_EQ(Leida(text), "otra") << text;
}

TEST(SentenciasDeDocumento, AKindIsKnownByItsNameWithoutRegardToCase) {
  EXPECT_EQ(TipoDe("entrada"), Tipo::Entrada);
  EXPECT_EQ(TipoDe("Salida"), Tipo::Salida);
  EXPECT_THROW(TipoDe("Traspaso"), data::Error);
}

}  // namespace
}  // namespace tarvik::host
