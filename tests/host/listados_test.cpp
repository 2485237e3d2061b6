// The listings of the windows, headless: what a typed filter means, and what is read by it, on every engine.
#include "host/listados.h"

#include "host/listado_csv.h"

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
  Sql("INSERT INTO entpart (id_entrada, entrada, articulo, cantidad, precio) SELECT entrada, entrada, 'A', "
      "2, "
      "entrada / 2.0 FROM entradas WHERE estado = 'PE'");
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
}

TEST_F(Listados, APendingDocumentIsWorthItsLinesAndAPostedOneWhatItsHeaderSays) {
  Entrada(1, "PE", "", 99);
  Entrada(2, "CO", "", 40);
  Entrada(3, "PE", "", 99);  // without a line yet
  for (const int line : {1, 2}) {
    Sql("INSERT INTO entpart (id_entrada, entrada, articulo, cantidad, precio) VALUES (?, 1, 'A', 3, 2.5)",
        {line});
  }
  Sql("INSERT INTO entpart (id_entrada, entrada, articulo, cantidad, precio) VALUES (3, 2, 'A', 1, 1)");
  const Listado all = ListadoDeDocumentos(Tipo::Entrada, false, "");
  CursorDeListado cursor(all);
  std::vector<double> worth;
  for (const auto& row : cursor.Lee(anfitrion->Conexion(), 10)) {
    worth.push_back(data::ToNumber(De(row, ColumnaDeDocumento::kImporte)));
  }
  EXPECT_EQ(worth, (std::vector<double>{0, 40, 15}));
  EXPECT_EQ(Suma(all).total, 55);
  EXPECT_EQ(Suma(ListadoDeDocumentos(Tipo::Entrada, true, "")).total, 15);
}

TEST_F(Listados, EachWordIsFoundInSomeColumnOfTheRow) {
  Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('COM', 'E', 'Compra a proveedor')");
  Sql("INSERT INTO ALMACEN (almacen, descrip) VALUES (1, 'Almacén central')");
  Entrada(12, "CO", "factura A-7", 1250.5);
  Entrada(31, "PE", "factura B-2");
  Entrada(45, "CO", "urgente");
  Sql("UPDATE entradas SET f_emision = '2026-10-05' WHERE entrada = 45");
  Sql("INSERT INTO tenencias (tipo, documento, usuario, estacion, vida) VALUES ('Entrada', 31, 'EVA', 'E9', "
      "1)");
  const auto found = [&](const char* typed) {
    return Claves(ListadoDeDocumentos(Tipo::Entrada, false, typed), 10);
  };
  EXPECT_EQ(found("proveedor 2"), (Textos{"31", "12"})) << "a 2 in the remarks, a 2 in the number";
  EXPECT_EQ(found("PROVEEDOR almacen"), (Textos{"45", "31", "12"}));
  EXPECT_EQ(found("compra pend"), Textos{"31"});
  EXPECT_EQ(found("compra afectado"), (Textos{"45", "12"}));
  EXPECT_EQ(found("compra 10/2026"), Textos{"45"});
  EXPECT_EQ(found("5/10 urg"), Textos{"45"});
  EXPECT_EQ(found("compra 1,250.50"), Textos{"12"});
  EXPECT_EQ(found("eva factura"), Textos{"31"}) << "by who holds it";
  EXPECT_EQ(found("proveedor nadie"), Textos{});
}

TEST_F(Listados, AnyColumnPutsThemInOrderAndBackAgain) {
  const char* remarks[] = {"Nube", "ñame", "", "árbol", "Zeta", "arbol", "oso"};
  for (int number = 1; number <= 7; ++number) Entrada(number, "CO", remarks[number - 1], 10 * (number % 3));
  const auto ordered = [&](ColumnaDeDocumento column, bool descending, const char* typed = "") {
    Listado listing = ListadoDeDocumentos(Tipo::Entrada, false, typed);
    Ordena(listing, Tipo::Entrada, column, descending);
    EXPECT_EQ(Suma(listing).cuantos, static_cast<std::int64_t>(Claves(listing, 3).size()));
    return Claves(listing, 3);
  };
  using enum ColumnaDeDocumento;
  EXPECT_EQ(ordered(kObservaciones, false), (Textos{"3", "6", "4", "1", "2", "7", "5"}));
  EXPECT_EQ(ordered(kObservaciones, true), (Textos{"5", "7", "2", "1", "6", "4", "3"}))
      << "of the same text the newest comes first, either way";
  EXPECT_EQ(ordered(kImporte, true), (Textos{"5", "2", "7", "4", "1", "6", "3"}));
  EXPECT_EQ(ordered(kNumero, false), (Textos{"1", "2", "3", "4", "5", "6", "7"}));
  EXPECT_EQ(ordered(kObservaciones, false, "arbol"), (Textos{"6", "4"}));
  EXPECT_EQ(ordered(kImporte, false, "1"), Textos{"1"});
  for (const auto column : {kFecha, kConcepto, kAlmacen, kEstado, kTomadoPor}) {
    EXPECT_EQ(ordered(column, false), (Textos{"7", "6", "5", "4", "3", "2", "1"}));
  }
}

TEST_F(Listados, AnOrderGoesOnBehindTheLastRowThatWasPutInOrder) {
  const int last = CursorDeListado::kOrden + 300;
  Sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?) INSERT INTO entradas "
      "(entrada, tipo_doc, f_emision, almacen, importe, estado, ocupado) SELECT i, 'COM', '2026-11-20', 1, "
      "i / 1000, 'CO', 0 FROM n",
      {last});
  Listado listing = ListadoDeDocumentos(Tipo::Entrada, false, "");
  Ordena(listing, Tipo::Entrada, ColumnaDeDocumento::kImporte, false);
  CursorDeListado cursor(listing);
  std::vector<std::int64_t> keys;
  while (!cursor.Termino()) {
    for (const auto& row : cursor.Lee(anfitrion->Conexion(), 10000))
      keys.push_back(static_cast<std::int64_t>(data::ToNumber(row[0])));
  }
  ASSERT_EQ(keys.size(), static_cast<std::size_t>(last));
  const auto before = [](std::int64_t a, std::int64_t b) {
    return a / 1000 != b / 1000 ? a < b : a > b;  // by amount, and among the same newest first
  };
  EXPECT_TRUE(std::is_sorted(keys.begin(), keys.end(), before));
  EXPECT_EQ(std::adjacent_find(keys.begin(), keys.end()), keys.end());
}

TEST_F(Listados, RowsOfAnOrderAreReadAgainByThemselves) {
  for (int number = 1; number <= 5; ++number) Entrada(number, "CO", "", 10 * number);
  Listado listing = ListadoDeDocumentos(Tipo::Entrada, false, "");
  Ordena(listing, Tipo::Entrada, ColumnaDeDocumento::kImporte, false);
  std::vector<Identidad> which;
  CursorDeListado cursor(listing);
  for (const auto& row : cursor.Lee(anfitrion->Conexion(), 4)) which.push_back(IdentidadDe(listing, row));
  Sql("DELETE FROM entradas WHERE entrada = 3");
  Sql("UPDATE entradas SET importe = 999 WHERE entrada = 1");
  Textos keys;
  for (const auto& row : RenglonesDe(anfitrion->Conexion(), listing, which))
    keys.push_back(data::ToText(row[0]));
  EXPECT_EQ(keys, (Textos{"1", "2", "4"})) << "in the order in which they were read";
}

TEST_F(Listados, StockIsPutInOrderRowByRow) {
  for (const char* article : {"A", "B", "C"})
    Sql("INSERT INTO prods (articulo, descrip) VALUES (?, 'x')", {article});
  Sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, 'A', 5), (2, 'A', -1), (1, "
      "'B', 3), (2, 'B', 9)");
  Listado listing = ListadoDeExistencias("");
  Ordena(listing, ColumnaDeExistencia::kExistencia, true);
  CursorDeListado cursor(listing);
  Textos rows;
  while (!cursor.Termino()) {
    for (const auto& row : cursor.Lee(anfitrion->Conexion(), 2)) {
      rows.push_back(data::ToText(row[0]) + data::ToText(De(row, ColumnaDeExistencia::kAlmacen)) + "=" +
                     data::ToText(De(row, ColumnaDeExistencia::kExistencia)));
    }
  }
  EXPECT_EQ(rows, (Textos{"B2=9", "A1=5", "B1=3", "C=", "A2=-1"}));
  Ordena(listing, ColumnaDeExistencia::kArticulo, true);
  EXPECT_EQ(Claves(listing, 10), (Textos{"C", "B", "B", "A", "A"}));
}

TEST_F(Listados, AWholeListingBecomesAFileForASpreadsheet) {
  Entrada(1, "CO", "=1+1");
  Entrada(2, "CO", "con \"comillas\", y coma", -2.5);
  const std::vector<ColumnaCsv> columns = {
      {"Número", [](const auto& row) { return De(row, ColumnaDeDocumento::kNumero); }},
      {"Importe", [](const auto& row) { return De(row, ColumnaDeDocumento::kImporte); }},
      {"Observaciones", [](const auto& row) { return De(row, ColumnaDeDocumento::kObservaciones); }}};
  const std::string path = carpeta.Ruta("lista.csv").string();
  const Listado listing = ListadoDeDocumentos(Tipo::Entrada, false, "");
  ListadoEnCsv file(listing, columns, path, {});
  while (file.Paso(anfitrion->Conexion())) EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(file.Renglones(), 2);
  EXPECT_EQ(Lee(path),
            "Número,Importe,Observaciones\r\n2,-2.5,\"con \"\"comillas\"\", y coma\"\r\n1,100,'=1+1\r\n");
  const ArchivosDeLaBase base("sqlite:" + carpeta.Ruta("tienda.db").string());
  Graba(carpeta.Ruta("tienda.db"), "la base");
  EXPECT_NE(ErrorDe([&] { ListadoEnCsv(listing, columns, carpeta.Ruta("tienda.db").string(), base); }),
            "(ningún error)");
  EXPECT_EQ(Lee(carpeta.Ruta("tienda.db")), "la base");
}

}  // namespace
}  // namespace tarvik::host
