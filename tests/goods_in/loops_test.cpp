// Second keys that lead back to themselves: the lookup ends, the operator is told, the screen goes on.
#include "goods_in/columnas.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

class ClavesEnCirculo : public Escenario {
 protected:
  ClavesEnCirculo() {
    Catalogo();
    // No row of impuestos has this key, so neither is found as an article, only as a second key.
    for (const char* articulo : {"X", "Y", "Z"}) {
      Sql("INSERT INTO prods (articulo, descrip, impuesto) VALUES (?, ?, ?)",
          {articulo, "Sin impuesto", "NADA"});
    }
    Clave("X", "X");
    Clave("Y", "Z");
    Clave("Z", "Y");
  }
  void Clave(const char* clave, const char* articulo) {
    Sql("INSERT INTO clavesadd (clave, articulo, cantidad) VALUES (?, ?, ?)", {clave, articulo, 1});
  }
  void ElDocumentoSigue(frmEntradasWizard& f) {
    ASSERT_EQ(no_atrapados.size(), 1u);
    EXPECT_NE(no_atrapados[0].find("sin fin"), std::string::npos) << no_atrapados[0];
    EXPECT_TRUE(f.Open());
    EXPECT_FALSE(f.Procesando);
    f.txtFields(campo::SegundaClave).Text("");
    Renglon(f, "A-100", "2");
    EXPECT_EQ(Celda(f, 1, columna_entrada::Articulo), "A-100");
  }
};

TEST_F(ClavesEnCirculo, AKeyThatStandsForItselfIsLookedUpOnceAndLeavesTheScreenAlive) {
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  Teclea(f, f.txtFields(campo::Articulo), "X");
  f.Enter(f.txtFields(campo::Cantidad));
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_EQ(f.txtFields(campo::SegundaClave).Text(), "X");
  f.txtFields(campo::SegundaClave).Text("");
  Renglon(f, "A-100", "2");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Articulo), "A-100");
}

TEST_F(ClavesEnCirculo, TwoKeysThatStandForEachOtherEndTheLookupAndNotTheProgram) {
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  Teclea(f, f.txtFields(campo::Articulo), "Y");
  f.Enter(f.txtFields(campo::Cantidad));
  ElDocumentoSigue(f);
}

class RutinasEnCirculo : public Escenario {};

// A routine that sets off its own key, and one that sets off another that sets it off: they end, the screen
// stays, and the next press of a key runs them again.
TEST_F(RutinasEnCirculo, ARoutineThatLeadsBackToItselfEndsAndNotTheProgram) {
  Catalogo();
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  int veces = 0;
  Gancho("ENTRADA012", [&](frmEntradasWizard& forma) {
    ++veces;
    forma.Command6_Click();
    forma.Enter(forma.txtFields(campo::Articulo));
    forma.Enter(forma.txtFields(campo::Cantidad));
  });
  f.Enter(f.txtFields(campo::Articulo));
  f.Enter(f.txtFields(campo::Cantidad));
  EXPECT_GT(veces, 1);
  EXPECT_LE(veces, 40);
  ASSERT_FALSE(no_atrapados.empty());
  EXPECT_NE(no_atrapados[0].find("La rutina ENTRADA012 lleva a sí misma sin fin"), std::string::npos)
      << no_atrapados[0];
  anfitrion->Gancho("ENTRADA012", {});
  EXPECT_TRUE(f.Open());
  Renglon(f, "A-100", "2");
  EXPECT_EQ(Celda(f, 1, columna_entrada::Articulo), "A-100");
}

class Fechas : public Escenario {};

TEST_F(Fechas, ADocumentWithoutADateLeavesThePickerAsItIs) {
  Catalogo();
  Sql("INSERT INTO entradas (entrada, tipo_doc, estado) VALUES (?, ?, ?)", {7, "COM", "PE"});
  frmEntradasWizard& f = Modifica(7);
  ASSERT_TRUE(f.DTPicker1.Value().has_value());
  EXPECT_EQ(f.DTPicker1.Value()->Iso(), "2024-03-05");
  EXPECT_TRUE(Reportes().empty());
}

}  // namespace
}  // namespace tarvik::tests
