// What a screen bears from outside: routines that throw at each hook, and texts that would break or
// widen a statement. Failures of services are in failures_test.cpp and its neighbours.
#include "goods_in/columnas.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

using Textos = std::vector<std::string>;

class Rutinas : public Escenario {
 protected:
  Rutinas() { Catalogo(); }
  void Revienta(const std::string& clave) {
    Gancho(clave, [clave](frmEntradasWizard&) { throw data::Error("rutina " + clave); });
  }
  static std::string Queja(const std::string& funcion, const std::string& clave) {
    return Reporte(funcion, "rutina " + clave);
  }
  frmEntradasWizard& EnElArticulo() {
    frmEntradasWizard& f = Nueva();
    Teclea(f, f.txtFields(campo::Concepto), "COM");
    f.Enter(f.txtFields(campo::Articulo));
    Olvida();
    return f;
  }
};

TEST_F(Rutinas, AtTheEndOfLoadingItIsIgnoredAndTheScreenShows) {
  Revienta("ENTRADA001");
  frmEntradasWizard& f = Nueva();
  EXPECT_TRUE(Reportes().empty());
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_TRUE(f.Visible());
  EXPECT_EQ(bitacora.presentadas, (Textos{"frmEntradasWizard"}));
}

TEST_F(Rutinas, BeforeALineItIsReportedAndTheLineIsMade) {
  frmEntradasWizard& f = EnElArticulo();
  Revienta("ENTRADA005");
  Renglon(f, "A-100", "3");
  EXPECT_EQ(Reportes(), (Textos{Queja("NuevaPartida", "ENTRADA005")}));
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "1");
}

TEST_F(Rutinas, BeforeALineOneThatRefusesAndThrowsHasRefused) {
  frmEntradasWizard& f = EnElArticulo();
  Gancho("ENTRADA005", [](frmEntradasWizard& g) {
    g.CancelaProceso = true;
    throw data::Error("rutina");
  });
  Renglon(f, "A-100", "3");
  EXPECT_EQ(Reportes().size(), 1u);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
  EXPECT_FALSE(f.CancelaProceso);
}

TEST_F(Rutinas, AtTheClosingItIsReportedAndTheScreenCloses) {
  frmEntradasWizard& f = EnElArticulo();
  auto viva = f.shared_from_this();
  Revienta("ENTRADA006");
  f.Click(f.Command2);
  EXPECT_EQ(Reportes(), (Textos{Queja("Form_Unload", "ENTRADA006")}));
  EXPECT_FALSE(f.Open());
}

TEST_F(Rutinas, OnLeavingAFieldItReachesThePlatformAndTheFieldStaysUnformatted) {
  frmEntradasWizard& f = EnElArticulo();
  Teclea(f, f.txtFields(campo::Precio), "5");
  Revienta("ENTRADA007");
  f.Enter(f.txtFields(campo::Almacen));
  EXPECT_EQ(no_atrapados, (Textos{"rutina ENTRADA007"}));
  EXPECT_TRUE(Reportes().empty());
  EXPECT_TRUE(f.txtFields(campo::Almacen).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "5");
}

TEST_F(Rutinas, OnLeavingByTheScreensOwnMoveItIsIgnored) {
  frmEntradasWizard& f = EnElArticulo();
  f.Enter(f.txtFields(campo::Cantidad));
  Olvida();
  Revienta("ENTRADA007");
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(Rutinas, OnEnteringAFieldItReachesThePlatformOrIsIgnoredTheSameWay) {
  frmEntradasWizard& f = EnElArticulo();
  f.Enter(f.txtFields(campo::Almacen));
  Revienta("ENTRADA008");
  f.Enter(f.txtFields(campo::Cantidad));
  EXPECT_EQ(no_atrapados, (Textos{"rutina ENTRADA008"}));
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
  Olvida();
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
  EXPECT_TRUE(no_atrapados.empty());
}

TEST_F(Rutinas, WithTheArticleFoundItIsReportedAndTheRowIsFilled) {
  frmEntradasWizard& f = EnElArticulo();
  Revienta("ENTRADA009");
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Tecla(f, "Enter");
  EXPECT_EQ(Reportes(), (Textos{Queja("PonDescripcion", "ENTRADA009")}));
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00");
}

TEST_F(Rutinas, AfterPostingBothAreReportedAndTheDocumentIsPrinted) {
  frmEntradasWizard& f = EnElArticulo();
  Renglon(f, "A-100", "3");
  f.txtFields(campo::Concepto).Text("A++");
  Revienta("ENTRADA014");
  Revienta("ENTRADA010");
  bitacora.respuestas.push_back(true);
  auto viva = f.shared_from_this();
  Tecla(f, "F5", f.txtFields(campo::Concepto));
  EXPECT_EQ(Reportes(),
            (Textos{Queja("Command5_Click", "ENTRADA014"), Queja("Command5_Click", "ENTRADA010")}));
  EXPECT_EQ(bitacora.impresos.size(), 1u);
  EXPECT_FALSE(f.Open());
}

TEST_F(Rutinas, BeforeTheLookupItReachesThePlatformAndTheArticleIsNotLookedUp) {
  frmEntradasWizard& f = EnElArticulo();
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Revienta("ENTRADA012");
  f.Enter(f.txtFields(campo::Almacen));
  EXPECT_EQ(no_atrapados, (Textos{"rutina ENTRADA012"}));
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "");
  for (const auto& clave : Claves()) EXPECT_NE(clave, "ENTRADA007");
  EXPECT_TRUE(f.txtFields(campo::Almacen).HasFocus());
}

TEST_F(Rutinas, BeforeAQuantityIsEditedItIsReportedAndTheBoxOpens) {
  frmEntradasWizard& f = EnElArticulo();
  Renglon(f, "A-100", "3");
  f.ClickCell(f.fg2, 1, 1);
  Revienta("ENTRADA013");
  Tecla(f, "Enter");
  EXPECT_EQ(Reportes(), (Textos{Queja("MSFlexGridEdit", "ENTRADA013")}));
  EXPECT_TRUE(f.txtEdit.Visible());
}

TEST_F(Rutinas, BehindTheHiddenButtonItLeavesTheProcedure) {
  frmEntradasWizard& f = EnElArticulo();
  Revienta("ENTRADAS011");
  EXPECT_THROW(f.Command3_Click(), data::Error);
  EXPECT_TRUE(Reportes().empty());
}

// ---- texts ----

class TextosHostiles : public Escenario, public ::testing::WithParamInterface<std::string> {
 protected:
  TextosHostiles() {
    Catalogo();
    Sql("INSERT INTO entradas (entrada, observ) VALUES (900, 'ajena')");
  }
  void Pega(frmEntradasWizard& f, forms::Control& control, const std::string& texto) {
    f.Enter(control);
    f.Paste(texto);
  }
  // Nothing of the base has changed, every report is one of these procedures', and a line can be made.
  void Sigue(frmEntradasWizard& f, std::initializer_list<const char*> procedimientos) {
    for (const auto& reporte : Reportes()) {
      bool suyo = false;
      for (const char* nombre : procedimientos) {
        suyo = suyo || reporte.find("Function: " + std::string(nombre) + "\r\n") != std::string::npos;
      }
      EXPECT_TRUE(suyo) << reporte.substr(0, 300);
    }
    EXPECT_EQ(Uno("SELECT COUNT(*) FROM prods"), "2");
    EXPECT_EQ(Uno("SELECT COUNT(*) FROM tipominv"), "3");
    EXPECT_EQ(Uno("SELECT COUNT(*) FROM clavesadd"), "1");
    EXPECT_EQ(Uno("SELECT observ FROM entradas WHERE entrada = 900"), "ajena");
    EXPECT_TRUE(f.Open());
    f.txtFields(campo::Concepto).Text("COM");
    for (int campo : {4, 24, 28, 5, 6}) f.txtFields(campo).Text("");
    Olvida();
    Renglon(f, "A-100", "3");
    EXPECT_TRUE(Reportes().empty()) << ::testing::PrintToString(Reportes());
    EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart WHERE articulo = 'A-100' AND cantidad = 3"), "1");
  }
};

TEST_P(TextosHostiles, AsAnArticleItIsNoArticleAndTheScreenLives) {
  frmEntradasWizard& f = Nueva();
  Pega(f, f.txtFields(campo::Articulo), GetParam());
  Tecla(f, "Enter");
  f.txtFields(campo::Cantidad).Text("1");
  f.txtFields(campo::Precio).Text("1");
  f.LlenaPartida();
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoEsArticulo});
  Sigue(f, {"PonDescripcion", "TraeSegundaClave", "CalculaCantidad", "LlenaPartida", "BuscaModelo"});
}

TEST_P(TextosHostiles, AsAConceptItHasNoDescriptionAndIsRefusedAtTheFinish) {
  frmEntradasWizard& f = Nueva();
  Pega(f, f.txtFields(campo::Concepto), GetParam());
  EXPECT_FALSE(f.Valida());
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::EntradaNoExisteConcepto});
  Sigue(f, {"TraeConcepto", "ValidaTab1"});
}

TEST_P(TextosHostiles, AsASecondKeyItResolvesNothing) {
  frmEntradasWizard& f = Nueva();
  Pega(f, f.txtFields(campo::SegundaClave), GetParam());
  Tecla(f, "F8");
  EXPECT_EQ(f.txtFields(campo::Dato1).Text(), "");
  Sigue(f, {"TraeSegundaClave", "CalculaCantidad"});
}

TEST_P(TextosHostiles, AsRemarksItIsStoredToTheLetter) {
  frmEntradasWizard& f = Nueva();
  Pega(f, f.RichTextBox2, GetParam());
  const std::string texto = f.RichTextBox2.Text();
  EXPECT_FALSE(texto.empty());
  Sigue(f, {});
  EXPECT_EQ(Uno("SELECT observ FROM entradas WHERE entrada = 1"), texto);
}

TEST_P(TextosHostiles, InTheCatalogueItIsDataLikeAnyOther) {
  Sql("UPDATE prods SET descrip = ? WHERE articulo = 'A-200'", {data::Value(GetParam())});
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  Renglon(f, "A-200", "1");
  EXPECT_TRUE(Reportes().empty());
  EXPECT_EQ(Uno("SELECT observ FROM entpart"), Celda(f, 1, columna_entrada::Descripcion));
  EXPECT_NE(Celda(f, 1, columna_entrada::Descripcion), "");
}

std::string NombreDeTexto(const ::testing::TestParamInfo<std::string>& info) {
  static const char* const nombres[] = {"Quote",       "TwoQuotes",       "Semicolon",  "Dashes",
                                        "DashesAfter", "SecondStatement", "Condition",  "Comment",
                                        "Long",        "LongQuotes",      "InvalidUtf8"};
  return nombres[info.index];
}

INSTANTIATE_TEST_SUITE_P(Text, TextosHostiles,
                         ::testing::Values("O'Hara", "O''Hara", "a;b", "a--b", "a' --",
                                           "a'; DELETE FROM prods; --", "zz' OR '1'='2", "a' /* b",
                                           std::string(10000, 'x'), std::string(10001, '\''), "\xff\xfe\xc3"),
                         NombreDeTexto);

}  // namespace
}  // namespace tarvik::tests
