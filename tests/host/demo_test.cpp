// The demonstration catalogue: whole enough for every screen, and never over a shop's own data.
#include "host/demo.h"

#include "host/revision.h"
#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class Demostracion : public Banco {
 protected:
  Demostracion() : Banco(true) {}
  double Cuenta(const std::string& from) { return data::ToNumber(Dato("SELECT COUNT(*) FROM " + from)); }
};

TEST_F(Demostracion, EveryCatalogueOfTheScreensHasRows) {
  for (const char* table : {"prods", "impuestos", "clavesadd", "tipominv", "ALMACEN", "ESTACIONES",
                            "empleados", "sucursal", "clients", "vends", "diremb", "monedas", "usuarios",
                            "modelos", "colores", "tallas", "compra2", "compra2part"}) {
    EXPECT_GE(Cuenta(table), 1) << table;
  }
  EXPECT_GE(Cuenta("prods"), 40);
}

TEST_F(Demostracion, EveryReferenceHasItsRow) {
  EXPECT_EQ(Cuenta("prods WHERE impuesto NOT IN (SELECT impuesto FROM impuestos)"), 0);
  EXPECT_EQ(Cuenta("clavesadd WHERE articulo NOT IN (SELECT articulo FROM prods)"), 0);
  EXPECT_EQ(Cuenta("clavesadd WHERE clave IN (SELECT articulo FROM prods)"), 0);
  EXPECT_EQ(Cuenta("compra2part WHERE articulo NOT IN (SELECT articulo FROM prods)"), 0);
  EXPECT_EQ(Cuenta("compra2part WHERE compra NOT IN (SELECT id FROM compra2)"), 0);
  EXPECT_EQ(Cuenta("diremb WHERE cliente NOT IN (SELECT cliente FROM clients)"), 0);
  EXPECT_EQ(Cuenta("prods WHERE modelo <> '' AND modelo NOT IN (SELECT modelo FROM modelos)"), 0);
  EXPECT_EQ(Cuenta("prods WHERE modelo <> '' AND color NOT IN (SELECT color FROM colores)"), 0);
  EXPECT_EQ(Cuenta("prods WHERE modelo <> '' AND talla NOT IN (SELECT talla FROM tallas)"), 0);
}

TEST_F(Demostracion, TheRulesOfTheScreensHaveSomethingToShow) {
  EXPECT_GE(Cuenta("clavesadd WHERE cantidad = 12"), 1);
  EXPECT_GE(Cuenta("clavesadd WHERE Libre = 1"), 1);
  EXPECT_GE(Cuenta("prods WHERE Invent = 0"), 1);
  EXPECT_GE(Cuenta("prods WHERE Por_Surt > 0"), 1);
  EXPECT_EQ(Cuenta("usuarios"), 3);
  EXPECT_EQ(Cuenta("usuarios WHERE existsalidas = 0"), 1);
  EXPECT_EQ(Cuenta("tipominv WHERE ent_sal = 'E' AND tipo_movim IN ('COM', 'DEV', 'A++')"), 3);
  EXPECT_EQ(Cuenta("tipominv WHERE ent_sal = 'S' AND tipo_movim IN ('VTA', 'MER', 'TRA')"), 3);
  EXPECT_EQ(Cuenta("ALMACEN WHERE almacen IN (1, 2)"), 2);
  EXPECT_EQ(Dato("SELECT moneda FROM monedas WHERE Base <> 0"), data::Value("MXN"));
}

TEST_F(Demostracion, TheShirtComesInEachColourAndSizeAndTheBootLacksOneColour) {
  EXPECT_EQ(Cuenta("prods WHERE modelo = 'CAM'"), 12);
  EXPECT_EQ(Cuenta("prods WHERE modelo = 'BOT'"), 6);
  EXPECT_EQ(Dato("SELECT descrip FROM prods WHERE articulo = 'CAM-AZ-MD'"),
            data::Value("Camisa de trabajo Azul marino Mediana"));
  EXPECT_EQ(Cuenta("colores WHERE visualcolor > 0"), 3);
}

TEST_F(Demostracion, NoDocumentAndNoStockComesWithIt) {
  for (const char* table : {"entradas", "salidas", "movsinv", "existenciaalmacen"})
    EXPECT_EQ(Cuenta(table), 0);
}

TEST_F(Demostracion, ItsBooksAreSound) {
  const auto found =
      Revisa({.conexion = anfitrion->Conexion(), .ahora = ahora, .usuario = "ANA", .estacion = "E1"});
  EXPECT_TRUE(found.empty()) << found.front().texto;
}

TEST_F(Demostracion, ASecondRunAddsNothing) {
  const double before = Cuenta("prods");
  Sql("DELETE FROM clients");
  PonDemostracion(anfitrion->Conexion());
  EXPECT_EQ(Cuenta("prods"), before);
  EXPECT_EQ(Cuenta("clients"), 0);
}

class SinDemostracion : public Banco {};

TEST_F(SinDemostracion, ABaseWithAnArticleIsLeftAsItIs) {
  Sql("INSERT INTO prods (articulo) VALUES ('A-100')");
  PonDemostracion(anfitrion->Conexion());
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM prods")), 1);
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM clients")), 0);
}

TEST_F(SinDemostracion, AShopThatBeganItsCataloguesKeepsItsRows) {
  Sql("INSERT INTO clients (cliente, nombre) VALUES ('C001', 'Propio')");
  PonDemostracion(anfitrion->Conexion());
  EXPECT_EQ(Dato("SELECT nombre FROM clients WHERE cliente = 'C001'"), data::Value("Propio"));
  EXPECT_GT(data::ToNumber(Dato("SELECT COUNT(*) FROM prods")), 0);
}

TEST_F(SinDemostracion, AFailureHalfWayLeavesNothing) {
  Sql("ALTER TABLE compra2part RENAME TO otra");  // filled last
  EXPECT_NE(ErrorDe([&] { PonDemostracion(anfitrion->Conexion()); }), "(ningún error)");
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM prods")), 0);
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM clients")), 0);
}

}  // namespace
}  // namespace tarvik::host
