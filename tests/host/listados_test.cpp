// The listings of the windows, headless: what a typed filter means, and what is read by it, on every engine.
#include "host/listados.h"

#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

using data::Date;

TEST(FiltrosDeDocumentos, DigitsAreTheBeginningOfANumber) {
  EXPECT_EQ(EntiendeFiltro(" 104 ").numero, "104");
  const auto stretches = NumerosQueEmpiezanCon("214748364");
  ASSERT_EQ(stretches.size(), 2u);  // up to the highest number there can be
  EXPECT_EQ(stretches[0].first, data::Value(2147483640));
  EXPECT_EQ(stretches[0].second, data::Value(2147483647));
  EXPECT_EQ(stretches[1].second, data::Value(214748364));
  const auto none = NumerosQueEmpiezanCon("99999999999");
  ASSERT_EQ(none.size(), 1u);
  EXPECT_GT(data::ToNumber(none[0].first), data::ToNumber(none[0].second));
}

TEST(FiltrosDeDocumentos, ADateIsUnderstoodWholeOrInPart) {
  const auto dates = [](const char* typed) { return EntiendeFiltro(typed).fechas; };
  EXPECT_EQ(dates("21/11/2026"), (std::pair{Date{2026, 11, 21}, Date{2026, 11, 21}}));
  EXPECT_EQ(dates("21.11.26"), (std::pair{Date{2026, 11, 21}, Date{2026, 11, 21}}));
  EXPECT_EQ(dates("2/2024"), (std::pair{Date{2024, 2, 1}, Date{2024, 2, 29}}));
  EXPECT_EQ(dates("2026-11"), (std::pair{Date{2026, 11, 1}, Date{2026, 11, 30}}));
  EXPECT_EQ(dates("2026-11-21"), (std::pair{Date{2026, 11, 21}, Date{2026, 11, 21}}));
  EXPECT_EQ(dates("2026-"), (std::pair{Date{2026, 1, 1}, Date{2026, 12, 31}}));
  EXPECT_EQ(EntiendeFiltro("21/11").dia_y_mes, (std::pair{21, 11}));
  EXPECT_EQ(EntiendeFiltro("21/11/202").dia_y_mes, (std::pair{21, 11}));
  EXPECT_EQ(EntiendeFiltro("21/").dia_y_mes, (std::pair{21, 0}));
  for (const char* wrong : {"31/02/2026", "45/11", "12/13", "2026-13"}) {
    const auto filter = EntiendeFiltro(wrong);
    EXPECT_FALSE(filter.fechas || filter.dia_y_mes) << wrong;
    EXPECT_EQ(filter.palabras.size(), 1u) << wrong;
  }
}

class Listados : public Banco {
 protected:
  void Entrada(int number, const std::string& estado, const std::string& observ, double importe = 100) {
    Sql("INSERT INTO entradas (entrada, tipo_doc, f_emision, almacen, importe, estado, ocupado, observ) "
        "VALUES "
        "(?, 'COM', '2026-11-20', 1, ?, ?, 0, ?)",
        {number, importe, estado, observ});
  }
  // The keys of the whole listing, read so many at a time.
  std::vector<std::string> Claves(const Listado& listing, int at_once = 2) {
    CursorDeListado cursor(listing);
    std::vector<std::string> keys;
    for (int turns = 0; !cursor.Termino() && turns < 100; ++turns) {
      const Renglones rows = cursor.Lee(anfitrion->Conexion(), at_once);
      EXPECT_LE(CuentaClaves(rows), at_once);
      for (const auto& row : rows) keys.push_back(data::ToText(row[0]));
    }
    return keys;
  }
  Sumas Suma(const Listado& listing) {
    CursorDeListado cursor(listing);
    Sumas sums;
    while (!cursor.Termino()) cursor.Suma(anfitrion->Conexion(), sums);
    return sums;
  }
  using Textos = std::vector<std::string>;
};

TEST_F(Listados, ComeNewestFirstPageByPageWithTheirSum) {
  for (int number = 1; number <= 7; ++number) Entrada(number, number % 2 == 0 ? "PE" : "CO", "", number);
  EXPECT_EQ(Claves(ListadoDeDocumentos(Tipo::Entrada, false, "")),
            (Textos{"7", "6", "5", "4", "3", "2", "1"}));
  EXPECT_EQ(Claves(ListadoDeDocumentos(Tipo::Entrada, true, "")), (Textos{"6", "4", "2"}));
  EXPECT_EQ(Claves(ListadoDeEstos(Tipo::Entrada, false, {2, 5})), (Textos{"5", "2"}));
  EXPECT_TRUE(Claves(ListadoDeEstos(Tipo::Entrada, false, {})).empty());
  EXPECT_TRUE(Claves(ListadoDeDocumentos(Tipo::Salida, false, "")).empty());
  const Sumas sums = Suma(ListadoDeDocumentos(Tipo::Entrada, false, ""));
  EXPECT_EQ(sums.cuantos, 7);
  EXPECT_EQ(sums.total, 28);
}

TEST_F(Listados, WordsAreFoundWithoutRegardToCaseOrAccents) {
  Entrada(1, "CO", "Camión de la Ñoña");
  Entrada(2, "CO", "un CAMION* sin nada");
  Entrada(3, "CO", "otra cosa [50%]");
  const auto found = [&](const char* typed) {
    return Claves(ListadoDeDocumentos(Tipo::Entrada, false, typed), 10);
  };
  EXPECT_EQ(found("camion"), (Textos{"2", "1"}));
  EXPECT_EQ(found("CAMIÓN ñoña"), Textos{"1"});
  EXPECT_EQ(found("camion*"), Textos{"2"}) << "a sign is a sign";
  EXPECT_EQ(found("[50%"), Textos{"3"});
  EXPECT_EQ(found("_tra"), Textos{});
}

TEST_F(Listados, AStretchIsReadAgainAsItIsNow) {
  for (int number = 1; number <= 5; ++number) Entrada(number, "CO", "");
  const Listado listing = ListadoDeDocumentos(Tipo::Entrada, false, "");
  Sql("DELETE FROM entradas WHERE entrada = 3");
  Textos keys;
  for (const auto& row : RenglonesEntre(anfitrion->Conexion(), listing, 4, 2)) {
    keys.push_back(data::ToText(row[0]));
  }
  EXPECT_EQ(keys, (Textos{"4", "2"}));
}

TEST_F(Listados, AnArticleStandsOnceForEachWarehouseAndItsMovementsLatestFirst) {
  Sql("INSERT INTO prods (articulo, descrip) VALUES ('A-100', 'Martillo')");
  Sql("INSERT INTO prods (articulo, descrip) VALUES ('A-200', 'Clavo')");
  Sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, 'A-100', 5)");
  Sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (2, 'A-100', 7)");
  EXPECT_EQ(Claves(ListadoDeExistencias(""), 1), (Textos{"A-100", "A-100", "A-200"}));
  EXPECT_EQ(Claves(ListadoDeExistencias("clav")), Textos{"A-200"});
  for (const int warehouse : {1, 2, 1}) {
    Sql("INSERT INTO movsinv (operacion, articulo, almacen, cantidad) VALUES ('EN', 'A-100', ?, 1)",
        {warehouse});
  }
  EXPECT_EQ(Claves(ListadoDeMovimientos("A-100", 1)).size(), 2U);
}

}  // namespace
}  // namespace tarvik::host
