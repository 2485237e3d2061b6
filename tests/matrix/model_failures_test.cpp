// What fails while a model's matrix is built or its lines are stored: each failure is one report, and the
// next statement runs on what is there.
#include <set>

#include "tests/matrix/models.h"

namespace tarvik::tests {
namespace {

// Each statement made to fail once, at a certain one of its kind.
struct Rota {
  const char* nombre;
  const char* patron;
  int reportes;                             // provoked and following ones, all of BuscaModelo
  bool se_muestra;                          // whether the matrix is shown all the same
  std::vector<std::pair<int, int>> libres;  // the cells that can be filled then
  std::vector<std::string> renglones;       // with 1 in each cell that is free, and with 1 in 3,3
};

class FallasDeModelos : public Modelos {
 protected:
  // The reports: how many, whose, and that box and log agree.
  void Reportada(int cuantos) {
    const Textos reportes = Reportes();
    EXPECT_EQ(static_cast<int>(reportes.size()), cuantos);
    std::string diario;
    for (const auto& mensaje : bitacora.mensajes) {
      if (mensaje.clase == "caja") diario += mensaje.texto;
    }
    EXPECT_EQ(ArchivoDelDia(), diario);
    for (const auto& reporte : reportes) {
      EXPECT_TRUE(reporte.starts_with("Module: frmEntradasWi\r\nFunction: BuscaModelo\r\n")) << reporte;
    }
    ASSERT_FALSE(reportes.empty());
    EXPECT_EQ(reportes.front(), Reporte("BuscaModelo"));
    EXPECT_TRUE(no_atrapados.empty()) << ::testing::PrintToString(no_atrapados);
  }
  std::set<Casilla> Libres(frmMallaModelos& m) {
    std::set<Casilla> libres;
    for (int fila = 2; fila < m.fg2.Rows(); ++fila) {
      for (int columna = 2; columna < m.fg2.Cols(); ++columna) {
        if (!m.fg2.Blocked(fila, columna)) libres.insert({fila, columna});
      }
    }
    return libres;
  }
};

class SentenciasRotas : public FallasDeModelos, public ::testing::WithParamInterface<Rota> {};

TEST_P(SentenciasRotas, AreReportedAndTheNextStatementsRunOnWhatIsThere) {
  frmEntradasWizard& f = ConClave("CAM", "0");
  bitacora.Falla(GetParam().patron, 1, "falla provocada");
  Ante([this](frmMallaModelos& m) {
    EXPECT_EQ(Libres(m), std::set<Casilla>(GetParam().libres.begin(), GetParam().libres.end()));
    for (int columna = 3; columna < m.fg2.Cols() - 1; ++columna) {
      for (int fila = 3; fila < m.fg2.Rows() - 1; ++fila) m.fg2.TextMatrix(fila, columna, "1");
    }
    Acepta(m);
  });
  Intenta(f);
  EXPECT_EQ(mostradas, GetParam().se_muestra ? 1 : 0);
  EXPECT_EQ(Renglones(), GetParam().renglones);
  Reportada(GetParam().reportes);
  EXPECT_EQ(plataforma.Screens().size(), 1u);
  EXPECT_TRUE(f.Open());
}

const std::vector<std::pair<int, int>> kTodas = {{3, 3}, {3, 4}, {3, 5}, {4, 3}, {4, 4}};
const std::vector<std::string> kCinco = {"CAM-AZ-1CH 1", "CAM-RO-1CH 1", "CAM-AZ-2MD 1", "CAM-RO-2MD 1",
                                         "CAM-AZ-3GD 1"};

const Rota kRotas[] = {
    // Nothing was read, so nothing is found: the key goes on as an article's.
    {"TheModelItself", "modelo<>''$", 2, false, {}, {}},
    {"TheColours", "FROM colores,prods", 2, true, {}, {}},
    {"TheSizes", "FROM tallas,prods", 2, true, {}, {}},
    // The very first cell, a spacer, of which nothing is known: it is blocked, as it would be.
    {"TheFirstCell", "SELECT modelo FROM prods", 2, true, kTodas, kCinco},
    // A cell that can't be looked up is what the one before it was.
    {"ACellBehindABlockedOne",
     "SELECT modelo FROM prods WHERE color='AZ' AND talla='1CH'",
     1,
     true,
     {{3, 4}, {3, 5}, {4, 3}, {4, 4}},
     kCinco},
    {"ACellBehindAFreeOne",
     "SELECT modelo FROM prods WHERE color='RO' AND talla='3GD'",
     1,
     true,
     {{3, 3}, {3, 4}, {3, 5}, {4, 3}, {4, 4}, {4, 5}},
     kCinco},
    {"TheDescription", "FROM modelos", 2, true, kTodas, kCinco},
    // The article read before is taken for the one that can't be read: here none, since the model's own key
    // was looked up in vain; and there the one above.
    {"TheFirstArticle",
     "SELECT articulo FROM prods WHERE modelo='CAM' AND color='AZ' AND talla='1CH'",
     1,
     true,
     kTodas,
     {"CAM-RO-1CH 1", "CAM-AZ-2MD 1", "CAM-RO-2MD 1", "CAM-AZ-3GD 1"}},
    {"AnotherArticle",
     "SELECT articulo FROM prods WHERE modelo='CAM' AND color='RO' AND talla='1CH'",
     1,
     true,
     kTodas,
     {"CAM-AZ-1CH 1", "CAM-AZ-1CH 1", "CAM-AZ-2MD 1", "CAM-RO-2MD 1", "CAM-AZ-3GD 1"}},
};
std::string NombreDeRota(const ::testing::TestParamInfo<Rota>& rota) { return rota.param.nombre; }
INSTANTIATE_TEST_SUITE_P(Modelos, SentenciasRotas, ::testing::ValuesIn(kRotas), NombreDeRota);

// However many statements fail, each is one report.
TEST_F(FallasDeModelos, ABaseThatAnswersNoCellBlocksTheWholeMatrix) {
  frmEntradasWizard& f = ConClave("CAM", "10");
  bitacora.Falla("SELECT modelo FROM prods", 1000, "falla provocada");
  Ante([this](frmMallaModelos& m) {
    EXPECT_TRUE(Libres(m).empty());
    EXPECT_EQ(Reportes().size(), 2u * 4u * 5u);  // the statement, and the record set that there isn't
  });
  Intenta(f);
  EXPECT_EQ(mostradas, 1);
}

TEST_F(FallasDeModelos, AKeyThatCannotBeAskedForIsAnArticles) {
  frmEntradasWizard& f = ConClave("A-100", "3");
  bitacora.Falla("modelo<>''$", 1, "falla provocada");
  Intenta(f);
  EXPECT_EQ(Renglones(), (Textos{"A-100 3"}));
  Reportada(2);
}

TEST_F(FallasDeModelos, AColourThatIsNoNumberIsReportedAndTheRowStands) {
  frmEntradasWizard& f = ConClave("CAM", "10");
  bitacora.FallaServicio("ANumero", 1, "falla provocada");
  Ante([](frmMallaModelos& m) {
    EXPECT_EQ(m.fg2.BackColor(3, 0), 0);
    EXPECT_EQ(m.fg2.BackColor(4, 0), 0x0000FF);
    EXPECT_EQ(m.fg2.TextMatrix(3, 1), "AZ");
  });
  bool es_modelo = false;
  f.BuscaModelo(es_modelo);
  EXPECT_EQ(mostradas, 1);
  Reportada(1);
}

TEST_F(FallasDeModelos, AMatrixThatCannotBeShownIsCancelled) {
  frmEntradasWizard& f = ConClave("CAM", "10");
  plataforma.on_modal = [](forms::Form&) { throw data::Error("falla provocada"); };
  bool es_modelo = true;
  f.BuscaModelo(es_modelo);
  EXPECT_FALSE(es_modelo);
  Reportada(1);
  EXPECT_EQ(plataforma.Screens().size(), 1u);
}

TEST_F(FallasDeModelos, AFailureWhileALineIsStoredBelongsToTheLine) {
  frmEntradasWizard& f = ConClave("CAM", "0");
  Ante([](frmMallaModelos& m) {
    Pon(m, {3, 3}, "1");
    Pon(m, {3, 4}, "1");
    Acepta(m);
  });
  bitacora.Falla("INSERT INTO entpart", 1, "falla provocada");
  Intenta(f);
  EXPECT_EQ(Reportes(), (Textos{Reporte("NuevaPartida")}));
  EXPECT_EQ(Renglones(), (Textos{"CAM-AZ-2MD 1"}));
}

// The box is shown once, the platform is told once, and no matrix is left that nobody could close.
TEST_F(FallasDeModelos, ALogThatCannotBeWrittenLeavesNoMatrixBehind) {
  for (const char* patron :
       {"FROM colores,prods", "FROM modelos", "SELECT articulo FROM prods WHERE modelo"}) {
    frmEntradasWizard& f = ConClave("CAM", "0");
    const std::size_t abiertas = plataforma.Screens().size();
    Ante([](frmMallaModelos& m) {
      Pon(m, "1");
      Acepta(m);
    });
    bitacora.Falla(patron, 1, "falla provocada");
    bitacora.FallaServicio("AgregaArchivoLog", 1, "disco lleno");
    Intenta(f);
    EXPECT_EQ(plataforma.Screens().size(), abiertas) << patron;
    EXPECT_EQ(Reportes(), (Textos{Reporte("BuscaModelo")})) << patron;
    EXPECT_EQ(no_atrapados, (Textos{"disco lleno"})) << patron;
    EXPECT_EQ(ArchivoDelDia(), "");
    EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "CAM") << patron;
    EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0") << patron;
  }
}

TEST_F(FallasDeModelos, AFailureOnTheMatrixItselfIsNoFailureOfTheDocument) {
  frmEntradasWizard& f = ConClave("CAM", "1");
  Ante([this](frmMallaModelos& m) {
    m.txtCelda.OnChange = [&m] {
      m.txtCelda.OnChange = nullptr;
      throw data::Error("falla provocada");
    };
    Tecla(m, "1", m.fg2);
    EXPECT_EQ(Reportes(), (Textos{Reporte("fg2_KeyPress", "falla provocada", "frmMallaModel")}));
    EXPECT_EQ(no_atrapados.size(), 1u);
    Teclea(m, m.txtCelda, "1");
    m.txtCelda.SelectAll();
    m.Paste("1");
    Tecla(m, "Enter");
    Acepta(m);
  });
  Intenta(f);
  EXPECT_EQ(Renglones(), (Textos{"CAM-AZ-1CH 1"}));
  EXPECT_EQ(ArchivoDelDia(), "");
}

}  // namespace
}  // namespace tarvik::tests
