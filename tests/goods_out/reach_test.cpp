// How far typed text reaches on goods-out: to the rows that the screen asks for, and no further.
#include <chrono>

#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class AlcanceDeSalida : public EscenarioDeSalidas, public ::testing::WithParamInterface<const char*> {
 protected:
  [[nodiscard]] static bool Told(const std::string& reporte) {
    return reporte.find("aquí no se permite") != std::string::npos ||
           reporte.find("Una consulta no puede llevar otra dentro") != std::string::npos;
  }
  // The steps behind a refused question run without the record that it should have given.
  [[nodiscard]] static bool Follows(const std::string& reporte) {
    return reporte.find("La consulta no se ha asignado") != std::string::npos;
  }
};

TEST_P(AlcanceDeSalida, InTheArticleAndTheWarehouseItIsToldAtOnceAndReachesNothing) {
  const std::string existencia = Uno("SELECT SUM(existencia) FROM existenciaalmacen");
  frmSalidasWizard& f = ConConcepto();
  Olvida();
  const auto began = std::chrono::steady_clock::now();
  f.Enter(f.txtFields(campo::Articulo));
  f.Paste(std::string("zz' OR ") + GetParam() + " OR 'a'='b");
  Tecla(f, "Enter");
  ASSERT_FALSE(Reportes().empty());
  EXPECT_TRUE(Told(Reportes().front())) << Reportes().front();
  for (const std::string& reporte : Reportes()) EXPECT_TRUE(Told(reporte) || Follows(reporte)) << reporte;
  f.txtFields(campo::Articulo).Text("");
  Olvida();
  f.txtFields(campo::Almacen).Text(std::string("1 OR ") + GetParam());
  Linea(f, "A-100", "1");
  ASSERT_FALSE(Reportes().empty());
  EXPECT_TRUE(Told(Reportes().front())) << Reportes().front();
  EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(3));
  Sql("UPDATE prods SET descrip = 'Martillo' WHERE articulo = 'A-100'");
  EXPECT_EQ(Uno("SELECT SUM(existencia) FROM existenciaalmacen"), existencia);
  f.txtFields(campo::Almacen).Text("1");
  for (const int campo : {4, 5}) f.txtFields(campo).Text("");
  Olvida();
  Linea(f, "A-200", "1");
  Finaliza(f);
  EXPECT_TRUE(Reportes().empty()) << ::testing::PrintToString(Reportes());
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A-200'"), "3");
}

INSTANTIATE_TEST_SUITE_P(Text, AlcanceDeSalida,
                         ::testing::Values("PG_ADVISORY_LOCK(77) IS NULL", "PG_SLEEP(9) IS NULL",
                                           "randomblob(900000000) IS NULL", "EXISTS(SELECT 1 FROM clients)",
                                           "5 IN (TABLE compra2)"));

}  // namespace
}  // namespace tarvik::tests
