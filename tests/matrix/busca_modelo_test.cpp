// A model's key in the article field of a goods-in: which keys are a model's, and what becomes of the
// document when its matrix is cancelled or the document closes under it. The matrix itself:
// model_grid_test.cpp; its lines: model_lines_test.cpp.
#include "tests/matrix/models.h"

namespace tarvik::tests {
namespace {

// ---- which keys are a model's ----

TEST_F(Modelos, AnArticleIsNoModel) {
  Ante([](frmMallaModelos&) {});
  Intenta(ConClave("A-100", "3"));
  EXPECT_EQ(mostradas, 0);
  EXPECT_EQ(Cuantas("SELECT * FROM prods WHERE modelo = 'A-100' AND modelo<>''"), 1);
  EXPECT_EQ(Renglones(), (Textos{"A-100 3"}));
}

TEST_F(Modelos, AnArticleOfTheModelIsSoldByItself) {
  Ante([](frmMallaModelos&) {});
  Intenta(ConClave("CAM-AZ-1CH", "3"));
  EXPECT_EQ(mostradas, 0);
  EXPECT_EQ(Renglones(), (Textos{"CAM-AZ-1CH 3"}));
}

TEST_F(Modelos, AModelWithoutAnArticleIsNone) {
  Sql("INSERT INTO modelos (modelo, descrip) VALUES ('PAN', 'Pantalón')");
  frmEntradasWizard& f = ConClave("PAN", "3");
  f.txtFields(campo::Precio).Text("5");
  Intenta(f);
  EXPECT_EQ(mostradas, 0);
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::NoEsArticulo}));
}

TEST_F(Modelos, ArticlesOfNoModelAreNotTheModelOfAnEmptyKey) {
  Sql("UPDATE prods SET modelo = '' WHERE articulo = 'A-100'");
  frmEntradasWizard& f = ConClave("", "3");
  f.txtFields(campo::Precio).Text("5");
  Ante([](frmMallaModelos&) {});
  bool es_modelo = true;
  f.BuscaModelo(es_modelo);
  EXPECT_FALSE(es_modelo);
  EXPECT_EQ(mostradas, 0);
}

TEST_F(Modelos, TheModelsKeyBringsCostUnitAndTax) {
  frmEntradasWizard& f = ConClave("CAM", "10");
  EXPECT_EQ(f.txtFields(campo::Unidad).Text(), "PZA");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "61.5");
  EXPECT_EQ(f.txtFields(campo::ImporteDelRenglon).Text(), "IVA");
}

TEST_F(Modelos, WithoutAPriceTheMatrixIsNotAskedFor) {
  Sql("UPDATE prods SET costo_u = NULL");
  Ante([](frmMallaModelos&) {});
  frmEntradasWizard& f = ConClave("CAM", "10");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "");
  for (const char* precio : {"", "0", " 0.00"}) {
    f.txtFields(campo::Precio).Text(precio);
    Olvida();
    Intenta(f);
    EXPECT_EQ(Cuantas("modelo<>''"), 0) << precio;
    EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::NoEsArticulo})) << precio;
  }
  EXPECT_EQ(mostradas, 0);
}

TEST_F(Modelos, TheButtonAndF9LeadToTheMatrixToo) {
  Ante([](frmMallaModelos&) {});
  frmEntradasWizard& f = ConClave("CAM", "10");
  f.Click(f.Command6);
  EXPECT_EQ(mostradas, 1);
  Tecla(f, "F9");
  EXPECT_EQ(mostradas, 2);
}

TEST_F(Modelos, TheButtonOfTheModelsDoesNothing) {
  Ante([](frmMallaModelos&) {});
  frmEntradasWizard& f = ConClave("CAM", "10");
  f.Click(f.Command1);
  EXPECT_EQ(mostradas, 0);
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_TRUE(bitacora.mensajes.empty());
}

// ---- cancelling ----

struct Salida {
  const char* nombre;
  void (*sale)(frmMallaModelos&);
};

class Cancelaciones : public Modelos, public ::testing::WithParamInterface<Salida> {};

TEST_P(Cancelaciones, AreNoModelAndLeadBackToTheKey) {
  frmEntradasWizard& f = ConClave("CAM", "10");
  Ante([](frmMallaModelos& m) {
    Pon(m, "10");
    GetParam().sale(m);
  });
  bool es_modelo = true;
  f.BuscaModelo(es_modelo);
  EXPECT_FALSE(es_modelo);
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_TRUE(Numeros().empty());
  EXPECT_EQ(plataforma.Screens().size(), 1u);
}

TEST_P(Cancelaciones, RefuseTheKeyAsAnArticleAndLeaveTheRow) {
  frmEntradasWizard& f = ConClave("CAM", "10");
  Ante([](frmMallaModelos& m) {
    Pon(m, "10");
    GetParam().sale(m);
  });
  Intenta(f);
  EXPECT_EQ(mostradas, 1);
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::NoEsArticulo}));
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "CAM");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "10");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "61.50");
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
  EXPECT_EQ(plataforma.Screens().size(), 1u);
  EXPECT_TRUE(no_atrapados.empty());
}

const Salida kSalidas[] = {{"ByTheButton", [](frmMallaModelos& m) { m.Click(m.cmdCancelar); }},
                           {"ByTheCloseBox", [](frmMallaModelos& m) { m.Close(); }},
                           {"ByTheEndOfTheProgram", [](frmMallaModelos&) {}}};
std::string NombreDeSalida(const ::testing::TestParamInfo<Salida>& salida) { return salida.param.nombre; }
INSTANTIATE_TEST_SUITE_P(Modelos, Cancelaciones, ::testing::ValuesIn(kSalidas), NombreDeSalida);

// ---- a document that goes while its model is spread ----

TEST_F(Modelos, ADocumentClosedUnderItsOpenMatrixGetsNoLine) {
  frmEntradasWizard& f = ConClave("CAM", "2");
  Ante([&](frmMallaModelos& m) {
    f.Close();
    plataforma.Advance(20);  // the close box works by the timer
    ASSERT_FALSE(f.Open());
    Pon(m, "2");
    Acepta(m);
  });
  Tecla(f, "Enter");
  EXPECT_EQ(mostradas, 1);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "0");
  EXPECT_TRUE(plataforma.Screens().empty());
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(Modelos, ARoutineThatClosesTheDocumentBetweenTwoCellsLeavesNoneHeld) {
  frmEntradasWizard& f = ConClave("CAM", "2");
  int lineas = 0;
  anfitrion->Gancho("ENTRADA005", [&](forms::Form& forma, host::AmbienteLocal&) {
    if (++lineas == 2) forma.Unload();
  });
  Ante([](frmMallaModelos& m) {
    Pon(m, "1");
    Pon(m, "1");
    Acepta(m);
  });
  Tecla(f, "Enter");
  EXPECT_EQ(lineas, 2);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "1");
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas"), "0");
  EXPECT_TRUE(plataforma.Screens().empty());
}

TEST_F(Modelos, EventsAreLetThroughAfterACancellation) {
  frmEntradasWizard& f = ConClave("CAM", "10");
  bool visto = false;
  Ante([&](frmMallaModelos& m) {
    m.Click(m.cmdCancelar);
    plataforma.Post([&] { visto = !m.Open(); });
  });
  bool es_modelo = true;
  f.BuscaModelo(es_modelo);
  EXPECT_TRUE(visto);
}

// ---- an article that is its own model ----

TEST_F(Modelos, AnArticleWithItsModelsKeyEndsInsteadOfAskingForEver) {
  Articulo("UNO", "AZ-1CH", "UNO");
  frmEntradasWizard& f = ConClave("UNO", "1");
  f.txtFields(campo::Precio).Text("5");
  Ante([this](frmMallaModelos& m) {
    ASSERT_LT(mostradas, 1000);
    Pon(m, "1");
    Acepta(m);
  });
  Intenta(f);
  EXPECT_EQ(mostradas, 40);
  EXPECT_EQ(no_atrapados, (Textos{"La clave UNO lleva a sí misma sin fin"}));
  EXPECT_EQ(plataforma.Screens().size(), 1u);  // every matrix is gone
  EXPECT_TRUE(Reportes().empty());
  EXPECT_TRUE(f.Open());
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "UNO");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
  // And the screen goes on.
  mostradas = 0;
  f.txtFields(campo::Articulo).Text("A-100");
  f.txtFields(campo::Cantidad).Text("1");
  f.txtFields(campo::Precio).Text("5");
  Intenta(f);
  EXPECT_EQ(Renglones(), (Textos{"A-100 1"}));
}

TEST_F(Modelos, AnArticleWithItsModelsKeyCanBeCancelledAtAnyTime) {
  Articulo("UNO", "AZ-1CH", "UNO");
  frmEntradasWizard& f = ConClave("UNO", "1");
  f.txtFields(campo::Precio).Text("5");
  Ante([this](frmMallaModelos& m) {
    if (mostradas == 3) return m.Click(m.cmdCancelar);
    Pon(m, "1");
    Acepta(m);
  });
  Intenta(f);
  EXPECT_EQ(mostradas, 3);
  EXPECT_EQ(Renglones(), (Textos{"UNO 1"}));  // cancelled, the key is tried as the article that it is
  EXPECT_TRUE(no_atrapados.empty());
}

}  // namespace
}  // namespace tarvik::tests
