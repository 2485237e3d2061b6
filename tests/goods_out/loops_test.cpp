// Second keys that lead back to themselves: on goods-out a key that stands for itself looks itself up
// without changing any field. The lookup ends, the operator is told, the screen goes on.
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class ClavesDeSalidaEnCirculo : public EscenarioDeSalidas {
 protected:
  void Prueba(const std::string& clave, const std::string& articulo) {
    // No row of impuestos has this key, so neither is found as an article, only as a second key.
    Sql("INSERT INTO prods (articulo, descrip, impuesto) VALUES (?, ?, ?)", {"QX", "Sin impuesto", "NADA"});
    Sql("INSERT INTO clavesadd (clave, articulo) VALUES (?, ?)", {clave, articulo});
    if (clave != articulo) Sql("INSERT INTO clavesadd (clave, articulo) VALUES (?, ?)", {articulo, clave});
    movimientos->NuevaSalida();
    auto& f = dynamic_cast<frmSalidasWizard&>(*plataforma.Screens().back());
    Teclea(f, f.txtFields(campo::Articulo), clave);
    f.Enter(f.txtFields(campo::Cantidad));
    ASSERT_EQ(no_atrapados.size(), 1u);
    EXPECT_NE(no_atrapados[0].find("sin fin"), std::string::npos) << no_atrapados[0];
    EXPECT_TRUE(f.Open());
    EXPECT_FALSE(f.Procesando);
    Teclea(f, f.txtFields(campo::Almacen), "1");
    EXPECT_TRUE(f.Visible());
  }
};

TEST_F(ClavesDeSalidaEnCirculo, AKeyThatStandsForItselfEndsTheLookupAndNotTheProgram) { Prueba("QX", "QX"); }

TEST_F(ClavesDeSalidaEnCirculo, TwoKeysThatStandForEachOtherEndTheLookupAndNotTheProgram) {
  Prueba("QX", "QY");
}

}  // namespace
}  // namespace tarvik::tests
