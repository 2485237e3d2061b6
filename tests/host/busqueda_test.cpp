// Searches by title: which table, which rows, in which order, and fast enough to type against.
#include "host/busqueda.h"

#include <chrono>

#include "data/schema.h"
#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class BusquedasDePrueba : public Banco {
 protected:
  BusquedasDePrueba() : Banco(true) {}
  std::vector<Hallazgo> Busca(const std::string& title, const std::string& typed, std::size_t limit = 20) {
    return host::Busca(anfitrion->Conexion(), title, typed, limit);
  }
  std::string Claves(const std::string& title, const std::string& typed, std::size_t limit = 20) {
    std::string keys;
    for (const auto& hit : Busca(title, typed, limit)) keys += (keys.empty() ? "" : " ") + hit.clave;
    return keys;
  }
};

TEST_F(BusquedasDePrueba, EachTitleOfTheScreensHasAMeaningInTheSchema) {
  for (const char* title : {"Conceptos de entrada al inventario", "Conceptos de salidas de inventario",
                            "Almacenes", "Articulos", "Claves adicionales de articulos", "Clientes",
                            "Empleados", "Estaciones", "Impuestos por porcentaje", "sucursales"}) {
    const Busqueda* what = BusquedaPor(title);
    ASSERT_NE(what, nullptr) << title;
    EXPECT_NE(data::FindColumn(what->tabla, what->clave), nullptr) << title;
    EXPECT_NE(data::FindColumn(what->tabla, what->descripcion), nullptr) << title;
    EXPECT_EQ(data::FindColumn(what->tabla, what->extra) != nullptr, !what->extra.empty()) << title;
    EXPECT_FALSE(Busca(title, "").empty()) << title;
  }
  EXPECT_EQ(Busquedas().size(), 10U);
}

TEST_F(BusquedasDePrueba, AnUnknownTitleIsAnError) {
  EXPECT_EQ(BusquedaPor("Otra"), nullptr);
  EXPECT_EQ(ErrorDe([&] { Busca("Otra", ""); }), "No existe la búsqueda \"Otra\"");
  EXPECT_EQ(BusquedaPor("SUCURSALES"), BusquedaPor("sucursales"));
}

TEST_F(BusquedasDePrueba, ConceptsAreOfTheirOwnDirectionOnly) {
  EXPECT_EQ(Claves("Conceptos de entrada al inventario", ""), "A++ COM DEV");
  EXPECT_EQ(Claves("Conceptos de salidas de inventario", ""), "MER TRA VTA");
  EXPECT_EQ(Claves("Conceptos de salidas de inventario", "COM"), "");
}

TEST_F(BusquedasDePrueba, AKeyBeginsWithWhatWasTypedInAnyCase) {
  EXPECT_EQ(Claves("Articulos", "DES-"), "DES-CR2 DES-J06 DES-PL6");
  EXPECT_EQ(Claves("Articulos", "des-p"), "DES-PL6");
  EXPECT_EQ(Claves("Articulos", "  des-p "), "DES-PL6");
}

TEST_F(BusquedasDePrueba, TheKeyItselfComesFirstThenKeysThenDescriptions) {
  Sql("INSERT INTO prods (articulo, descrip) VALUES ('CIN', 'Cincel')");
  Sql("INSERT INTO prods (articulo, descrip) VALUES ('A-1', 'Cinturón con cin')");
  EXPECT_EQ(Claves("Articulos", "CIN"), "CIN CIN-AIS TEF-12 A-1");
}

TEST_F(BusquedasDePrueba, ADescriptionHoldsEveryWordInAnyOrder) {
  EXPECT_EQ(Claves("Articulos", "fibra martillo"), "MAR-16");
  EXPECT_EQ(Claves("Articulos", "martillo plano"), "");
}

TEST_F(BusquedasDePrueba, AnArticleIsFoundByItsSecondKey) {
  const auto hits = Busca("Articulos", "75012066222");
  ASSERT_EQ(hits.size(), 1U);
  EXPECT_EQ(hits[0].clave, "TAL-12");
  EXPECT_EQ(hits[0].descripcion, "Taladro percutor 1/2 pulgada 650 W");
  EXPECT_EQ(hits[0].extra, "7501206622254");
}

TEST_F(BusquedasDePrueba, AKeyIsGivenOnceAndNoMoreThanTheLimit) {
  Sql("INSERT INTO clavesadd (clave, articulo) VALUES ('MAR-16-B', 'MAR-16')");
  EXPECT_EQ(Claves("Articulos", "MAR-"), "MAR-16 MAR-20");
  EXPECT_EQ(Busca("Articulos", "e", 5).size(), 5U);
  EXPECT_EQ(Busca("Articulos", "", 3).size(), 3U);
  EXPECT_TRUE(Busca("Articulos", "e", 0).empty());
}

TEST_F(BusquedasDePrueba, WhatIsTypedIsNoPatternAndNoStatement) {
  Sql("INSERT INTO prods (articulo, descrip) VALUES ('P%', 'Descuento 10% y_o más')");
  EXPECT_EQ(Claves("Articulos", "10%"), "P%");
  EXPECT_EQ(Claves("Articulos", "y_o"), "P%");
  EXPECT_EQ(Claves("Articulos", "%"), "P%");
  EXPECT_EQ(Claves("Articulos", "' OR 1=1"), "");
  EXPECT_EQ(Claves("Articulos", "!"), "");
}

TEST_F(BusquedasDePrueba, ANumberedKeyIsReadAsItsDigits) {
  Sql("INSERT INTO ALMACEN (almacen, descrip) VALUES (12, 'Patio')");
  EXPECT_EQ(Claves("Almacenes", "1"), "1 12");
  EXPECT_EQ(Claves("Almacenes", "2"), "2");
  EXPECT_EQ(Claves("Almacenes", "pat"), "12");
  EXPECT_EQ(Claves("Almacenes", ""), "1 2 12");
}

TEST_F(BusquedasDePrueba, AWarehouseOfAnyNumberHidesNoOther) {
  Sql("INSERT INTO ALMACEN (almacen, descrip) VALUES (3000000000, 'Lejano'), (7.5, 'Medio')");
  EXPECT_EQ(Claves("Almacenes", "2"), "2");
  EXPECT_EQ(Claves("Almacenes", "3000000000"), "3000000000");
  EXPECT_EQ(Claves("Almacenes", "7"), "7.5");
  EXPECT_EQ(Claves("Almacenes", "8"), "");
}

TEST_F(BusquedasDePrueba, ATaxShowsItsRateAndASecondKeyItsArticle) {
  EXPECT_EQ(Busca("Impuestos por porcentaje", "IVA16").at(0).extra, "16");
  EXPECT_EQ(Busca("Claves adicionales de articulos", "CIN").at(0).extra, "CIN-AIS");
}

class BusquedaGrande : public Banco {};

TEST_F(BusquedaGrande, TypingAgainstAHundredThousandArticlesIsAnsweredAtOnce) {
  auto& connection = anfitrion->Conexion();
  connection.Begin();
  for (int i = 0; i < 100000; ++i) {
    const std::string number = std::to_string(1000000 + i);
    connection.Run("INSERT INTO prods (articulo, descrip, unidad) VALUES (?, ?, 'PZA')",
                   {"ART" + number, "Pieza número " + number + " de acero"});
    if (i % 4 == 0) {
      connection.Run("INSERT INTO clavesadd (clave, articulo) VALUES (?, ?)",
                     {"750" + number, "ART" + number});
    }
  }
  connection.Commit();
  // One for each way that a text can go: a common beginning, a full key, a common word, a rare one,
  // a barcode, and nothing at all.
  const std::vector<std::pair<std::string, std::size_t>> cases = {
      {"a", 50}, {"ART1099999", 1}, {"acero", 50}, {"1054321 pieza", 1}, {"7501000004", 1}, {"zzz", 0}};
  for (const auto& [typed, expected] : cases) {
    const auto start = std::chrono::steady_clock::now();
    const auto hits = Busca(connection, "Articulos", typed, 50);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(hits.size(), expected) << typed;
    EXPECT_LT(took.count(), 400) << typed;
    RecordProperty("ms_" + typed.substr(0, 3), std::to_string(took.count()));
  }
}

}  // namespace
}  // namespace tarvik::host
