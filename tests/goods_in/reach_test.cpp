// How far typed text reaches on goods-in: to the rows that the screen asks for, and no further. What would
// lock, wait, read elsewhere or never end is refused at once, and told; words that only look like it are
// data.
#include <chrono>

#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

constexpr const char* kAlcances[] = {
    "zz' OR PG_ADVISORY_LOCK(77) IS NULL OR 'a'='b",
    "zz' OR pg_catalog.\"pg_sleep\" (9) IS NULL OR 'a'='b",
    "zz' OR randomblob(900000000) IS NULL OR 'a'='b",
    "zz' OR load_extension('/tmp/x') IS NULL OR 'a'='b",
    "zz' UNION SELECT nombre, nombre, nombre, 1, nombre, 1 FROM clients WHERE 'a'='a",
    "zz' OR EXISTS(SELECT 1 FROM sqlite_master) OR 'a'='b",
    "zz' OR articulo IN (WITH RECURSIVE c(i) AS (VALUES (1) UNION ALL VALUES (2)) TABLE c) OR 'a'='b",
    "zz' OR 1=1 FOR UPDATE LIMIT '1",
    "zz' OR articulo = $$x$$ OR 'a'='b",
};

class AlcanceDeEntrada : public Escenario, public ::testing::WithParamInterface<const char*> {
 protected:
  AlcanceDeEntrada() {
    Catalogo();
    Sql("INSERT INTO clients (cliente, nombre) VALUES ('C1', 'Ferretería secreta')");
  }
};

TEST_P(AlcanceDeEntrada, InTheArticleItIsToldAtOnceAndNothingIsLockedReadOrChanged) {
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  Olvida();
  const auto began = std::chrono::steady_clock::now();
  f.Enter(f.txtFields(campo::Articulo));
  f.Paste(GetParam());
  Tecla(f, "Enter");
  EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(3));
  ASSERT_FALSE(Reportes().empty());
  for (const std::string& reporte : Reportes()) {
    // The steps behind a refused question run without the record that it should have given.
    const bool told = reporte.find("aquí no se permite") != std::string::npos ||
                      reporte.find("Una consulta no puede llevar otra dentro") != std::string::npos ||
                      reporte.find("La consulta no se ha asignado") != std::string::npos;
    EXPECT_TRUE(told) << reporte;
    EXPECT_EQ(reporte.find("secreta"), std::string::npos);
  }
  EXPECT_EQ(Reportes().front().find("La consulta no se ha asignado"), std::string::npos)
      << Reportes().front();
  for (const int campo : {5, 6, 28}) EXPECT_EQ(f.txtFields(campo).Text().find("secreta"), std::string::npos);
  EXPECT_EQ(f.RichTextBox1.Text().find("secreta"), std::string::npos);
  // Another station goes on as if nothing had been typed, and so does this one.
  Sql("UPDATE prods SET descrip = 'Martillo' WHERE articulo = 'A-100'");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
  f.txtFields(campo::Articulo).Text("");
  Olvida();
  Renglon(f, "A-100", "3");
  EXPECT_TRUE(Reportes().empty()) << ::testing::PrintToString(Reportes());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart WHERE cantidad = 3"), "1");
}

INSTANTIATE_TEST_SUITE_P(Text, AlcanceDeEntrada, ::testing::ValuesIn(kAlcances));

class PalabrasDeOperador : public Escenario, public ::testing::WithParamInterface<const char*> {
 protected:
  PalabrasDeOperador() { Catalogo(); }
};

// Keys that a shop may well have.
TEST_P(PalabrasDeOperador, AsAKeyItIsFoundAndItsLineIsMadeAndPosted) {
  const std::string clave = GetParam();
  Sql("INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto, costo_u) VALUES (?, ?, 'PZA', 10, "
      "'IVA', 2)",
      {clave, "Pieza " + clave});
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  f.Enter(f.RichTextBox2);
  f.Paste("caja; " + clave);
  f.Enter(f.txtFields(campo::Articulo));
  f.Paste(clave);
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo::Cantidad), "2");
  Tecla(f, "Enter");
  Tecla(f, "Enter");
  bitacora.respuestas.push_back(true);
  Tecla(f, "F5", f.txtFields(campo::Concepto));
  EXPECT_TRUE(Reportes().empty()) << ::testing::PrintToString(Reportes());
  EXPECT_EQ(Uno("SELECT cantidad FROM movsinv WHERE articulo = ?", {clave}), "2");
  EXPECT_EQ(Uno("SELECT observ FROM entradas WHERE entrada = 1"), "caja; " + clave);
}

INSTANTIATE_TEST_SUITE_P(Text, PalabrasDeOperador,
                         ::testing::Values("SELECT", "UNION (12)", "WITH SELECT", "PG_SLEEP(5)",
                                           "TUBO [1/2](E)", "LLAVE FOR TABLE", "$$", "`X`", "CASE WHEN"));

}  // namespace
}  // namespace tarvik::tests
