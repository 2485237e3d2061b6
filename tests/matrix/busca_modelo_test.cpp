// A model's key in the article field of a goods-in: its matrix is built from the catalogue, and each cell
// that the operator fills becomes a line.
#include <optional>
#include <set>

#include "tests/matrix/support.h"

namespace tarvik::tests {
namespace {

class Modelos : public EscenarioDeMalla {
 protected:
  Modelos() { Camisas(); }

  // Enter in the price: the row is to become a line.
  void Intenta(frmEntradasWizard& f) { Tecla(f, "Enter", f.txtFields(campo::Precio)); }
  // The matrix of a key, looked at and cancelled.
  void Mira(std::function<void(frmMallaModelos&)> mira, const std::string& cantidad = "10",
            const std::string& clave = "CAM") {
    Ante(std::move(mira));
    Intenta(ConClave(clave, cantidad));
    EXPECT_EQ(mostradas, 1);
  }
  // "CAM-AZ-1CH 4": articles and quantities of the stored lines, in order.
  Textos Renglones() {
    Textos renglones;
    for (const auto& fila : Sql("SELECT articulo, cantidad FROM entpart ORDER BY id_entrada").rows) {
      renglones.push_back(data::ToText(fila[0]) + " " + data::ToText(fila[1]));
    }
    return renglones;
  }
  [[nodiscard]] int Cuantas(const std::string& trozo) const {
    int cuantas = 0;
    for (const auto& sentencia : bitacora.sentencias) cuantas += sentencia.find(trozo) != std::string::npos;
    return cuantas;
  }
};

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

// ---- the matrix as it is shown ----

TEST_F(Modelos, TheMatrixHasAColumnForEachSizeAndARowForEachColour) {
  Mira([](frmMallaModelos& m) {
    EXPECT_TRUE(m.Visible());
    forms::FlexGrid& g = m.fg2;
    EXPECT_EQ(g.Rows(), 6);
    EXPECT_EQ(g.Cols(), 7);
    EXPECT_EQ(g.FixedRows(), 2);
    EXPECT_EQ(g.FixedCols(), 2);
    const std::vector<Textos> esperada = {
        {"", "", "", "1CH", "2MD", "3GD", ""}, {"", "", "", "Chica", "Mediana", "Grande", ""},
        {"", "", "", "", "", "", ""},          {"Azul", "AZ", "", "", "", "", ""},
        {"Rojo", "RO", "", "", "", "", ""},    {"", "", "", "", "", "", ""}};
    for (int fila = 0; fila < 6; ++fila) {
      for (int columna = 0; columna < 7; ++columna) {
        EXPECT_EQ(g.TextMatrix(fila, columna),
                  esperada[static_cast<std::size_t>(fila)][static_cast<std::size_t>(columna)])
            << fila << "," << columna;
      }
    }
  });
}

TEST_F(Modelos, OnlyTheCellOfTheColoursNameIsColoured) {
  Mira([](frmMallaModelos& m) {
    EXPECT_EQ(m.fg2.BackColor(3, 0), 0xFF0000);
    EXPECT_EQ(m.fg2.BackColor(4, 0), 0x0000FF);
    for (int fila = 0; fila < 6; ++fila) {
      for (int columna = 1; columna < 7; ++columna) EXPECT_EQ(m.fg2.BackColor(fila, columna), 0);
    }
    EXPECT_EQ(m.fg2.BackColor(2, 0), 0);
    EXPECT_EQ(m.fg2.BackColor(5, 0), 0);
  });
}

TEST_F(Modelos, AColourThatIsNoneLeavesTheCellAsItIs) {
  Sql("UPDATE colores SET visualcolor = NULL WHERE color = 'AZ'");
  Sql("UPDATE colores SET visualcolor = -5 WHERE color = 'RO'");
  Mira([](frmMallaModelos& m) {
    EXPECT_EQ(m.fg2.BackColor(3, 0), 0);
    EXPECT_EQ(m.fg2.BackColor(4, 0), 0);
    EXPECT_EQ(m.fg2.TextMatrix(4, 0), "Rojo");
  });
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(Modelos, SpacersAreNarrowAndTheNamesWide) {
  Mira([](frmMallaModelos& m) {
    forms::FlexGrid& g = m.fg2;
    EXPECT_EQ(g.ColWidth(0), 1600);
    EXPECT_EQ(g.ColWidth(1), 360);
    EXPECT_EQ(g.ColWidth(2), 10);
    EXPECT_EQ(g.ColWidth(6), 10);
    for (int columna : {3, 4, 5}) EXPECT_EQ(g.ColWidth(columna), g.ColWidth(3)) << columna;
    EXPECT_GT(g.ColWidth(3), 100);
    EXPECT_EQ(g.RowHeight(2), 10);
    EXPECT_EQ(g.RowHeight(5), 10);
    for (int fila : {0, 1, 3, 4}) EXPECT_EQ(g.RowHeight(fila), g.RowHeight(0)) << fila;
    EXPECT_GT(g.RowHeight(0), 100);
  });
}

TEST_F(Modelos, BlockedAreTheSpacersAndTheCombinationsWithoutAnArticle) {
  Mira([](frmMallaModelos& m) {
    const std::set<Casilla> libres = {{3, 3}, {3, 4}, {3, 5}, {4, 3}, {4, 4}};
    for (int fila = 0; fila < 6; ++fila) {
      for (int columna = 0; columna < 7; ++columna) {
        const bool esperada = fila >= 2 && columna >= 2 && !libres.contains({fila, columna});
        EXPECT_EQ(m.fg2.Blocked(fila, columna), esperada) << fila << "," << columna;
      }
    }
    EXPECT_EQ(m.clrCeldaBloqueada, 0);
  });
}

TEST_F(Modelos, AnArticleOfAnotherModelFreesNoCell) {
  Articulo("PAN", "RO-3GD");
  Mira([](frmMallaModelos& m) { EXPECT_TRUE(m.fg2.Blocked(4, 5)); });
}

TEST_F(Modelos, CaptionDescriptionQuantityAndStartOfTheMatrix) {
  Mira([this](frmMallaModelos& m) {
    EXPECT_EQ(m.Caption(), "Modelo: CAM");
    EXPECT_EQ(m.txtDescrip.Text(), "Camisa");
    EXPECT_EQ(m.Tag(), "10");
    EXPECT_EQ(m.txtRemanente.Text(), "10");
    EXPECT_EQ(m.txtRemanente.ForeColor(), kRojo);
    EXPECT_TRUE(m.txtRemanente.Visible());
    EXPECT_TRUE(m.lblCantidadRestante.Visible());
    EXPECT_FALSE(m.cmdAceptar.Enabled());
    EXPECT_FALSE(m.txtCelda.Visible());
    EXPECT_EQ(Cursor(m), (Casilla{3, 3}));
    EXPECT_TRUE(m.fg2.HasFocus());
    EXPECT_EQ(plataforma.Screens().size(), 2u);
  });
  EXPECT_EQ(plataforma.Screens().size(), 1u);
}

TEST_F(Modelos, WhereTheFirstCombinationHasNoArticleTheCursorStartsOnTheNextThatHasOne) {
  Sql("DELETE FROM prods WHERE articulo = 'CAM-AZ-1CH'");
  Mira([](frmMallaModelos& m) {
    EXPECT_EQ(m.fg2.Row(), 3);
    EXPECT_EQ(m.fg2.Col(), 4);
    Tecla(m, "5", m.fg2);
    Tecla(m, "Enter");
    EXPECT_EQ(m.fg2.TextMatrix(3, 4), "5");
    m.ClickCell(m.fg2, 4, 3);
    Tecla(m, "Up");
    EXPECT_FALSE(m.fg2.Blocked(m.fg2.Row(), m.fg2.Col()));
  });
}

TEST_F(Modelos, WhereNoColourIsKnownTheCursorStaysAtTheStart) {
  Sql("DELETE FROM colores");
  Mira([](frmMallaModelos& m) {
    EXPECT_EQ(m.fg2.Rows(), 4);
    EXPECT_EQ(m.fg2.Row(), 3);
    EXPECT_EQ(m.fg2.Col(), 3);
  });
}

TEST_F(Modelos, AKeyThatOnlyTheArticlesKnowIsAModelWithoutDescription) {
  Sql("DELETE FROM modelos");
  Mira([](frmMallaModelos& m) {
    EXPECT_EQ(m.txtDescrip.Text(), "");
    EXPECT_EQ(m.Caption(), "Modelo: CAM");
    EXPECT_FALSE(m.fg2.Blocked(3, 3));
  });
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(Modelos, OneColourInOneSizeIsAGridOfFiveByFive) {
  Articulo("PAN", "RO-2MD");
  Mira(
      [](frmMallaModelos& m) {
        EXPECT_EQ(m.fg2.Rows(), 5);
        EXPECT_EQ(m.fg2.Cols(), 5);
        EXPECT_EQ(m.fg2.TextMatrix(3, 1), "RO");
        EXPECT_EQ(m.fg2.TextMatrix(0, 3), "2MD");
        for (int fila = 2; fila < 5; ++fila) {
          for (int columna = 2; columna < 5; ++columna) {
            EXPECT_EQ(m.fg2.Blocked(fila, columna), fila != 3 || columna != 3);
          }
        }
        Pon(m, "10");
        EXPECT_EQ(Cursor(m), (Casilla{3, 3}));  // the only cell that there is
        Acepta(m);
      },
      "10", "PAN");
  EXPECT_EQ(Renglones(), (Textos{"PAN-RO-2MD 10"}));
}

TEST_F(Modelos, AColourWithoutItsRowDoesNotShow) {
  Articulo("CAM", "VE-1CH");
  Articulo("CAM", "AZ-9XX");  // nor a size
  Mira([](frmMallaModelos& m) {
    EXPECT_EQ(m.fg2.Rows(), 6);
    EXPECT_EQ(m.fg2.Cols(), 7);
  });
}

TEST_F(Modelos, ColoursAndSizesOfAnotherModelDoNotShow) {
  Color("VE", "Verde", 0x00FF00);
  Talla("4XG", "Extra");
  Articulo("PAN", "VE-4XG");
  Mira([](frmMallaModelos& m) {
    EXPECT_EQ(m.fg2.Rows(), 6);
    EXPECT_EQ(m.fg2.Cols(), 7);
  });
}

TEST_F(Modelos, AModelWhoseColoursAreAllUnknownIsAMatrixWithNothingToFill) {
  Sql("DELETE FROM colores");
  Mira([this](frmMallaModelos& m) {
    EXPECT_EQ(m.fg2.Rows(), 4);
    EXPECT_EQ(m.fg2.Cols(), 7);
    EXPECT_EQ(Cursor(m), (Casilla{3, 3}));
    for (const char* tecla : {"Right", "Down", "Left", "Up", "Enter", "5"}) {
      Tecla(m, tecla, m.fg2);
      EXPECT_FALSE(m.txtCelda.Visible()) << tecla;
    }
  });
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(Modelos, WithoutAQuantityNothingIsCountedAndAnyMayBeEntered) {
  for (const char* cantidad : {"0", "", "-3"}) {
    mostradas = 0;
    frmEntradasWizard& f = ConClave("CAM", "1");
    f.txtFields(campo::Cantidad).Text(cantidad);
    Ante([&](frmMallaModelos& m) {
      EXPECT_FALSE(m.txtRemanente.Visible()) << cantidad;
      EXPECT_FALSE(m.lblCantidadRestante.Visible()) << cantidad;
      EXPECT_TRUE(m.cmdAceptar.Enabled()) << cantidad;
      EXPECT_EQ(m.Tag(), cantidad);
      Pon(m, {4, 3}, "7");
      EXPECT_TRUE(m.fg2.HasFocus()) << cantidad;
      Acepta(m);
    });
    Intenta(f);
    EXPECT_EQ(mostradas, 1);
    EXPECT_EQ(Renglones(), (Textos{"CAM-RO-1CH 7"})) << cantidad;
    Sql("DELETE FROM entpart");
  }
}

TEST_F(Modelos, AcceptedWithEveryCellEmptyMakesNoLine) {
  frmEntradasWizard& f = ConClave("CAM", "0");
  Ante([](frmMallaModelos& m) { Acepta(m); });
  Intenta(f);
  EXPECT_EQ(mostradas, 1);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "0");
  EXPECT_TRUE(Numeros().empty());  // the key was a model, and what had to be done is done
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "CAM");
}

TEST_F(Modelos, EventsAreLetThroughWhileTheMatrixIsBuilt) {
  frmEntradasWizard& f = ConClave("CAM", "10");
  std::optional<int> renglones;
  bool visible = true;
  plataforma.Post([&] {
    auto& m = dynamic_cast<frmMallaModelos&>(*plataforma.Screens().back());
    renglones = m.fg2.Rows();
    visible = m.Visible();
  });
  f.LlenaPartida();
  EXPECT_EQ(renglones, 4);  // before the first colour
  EXPECT_FALSE(visible);
}

TEST_F(Modelos, NoCellEventIsRaisedWhileTheMatrixIsBuilt) {
  int eventos = 0;
  plataforma.on_screen_loaded = [&](forms::Form& forma) {
    auto* m = dynamic_cast<frmMallaModelos*>(&forma);
    if (!m) return;
    m->fg2.OnEnterCell = [&] { ++eventos; };
    m->fg2.OnLeaveCell = [&] { ++eventos; };
  };
  Mira([&](frmMallaModelos& m) {
    EXPECT_EQ(eventos, 0);
    Tecla(m, "Right", m.fg2);
    EXPECT_EQ(eventos, 2);
  });
}

// ---- the lines ----

TEST_F(Modelos, EachFilledCellIsALineSizeBySize) {
  frmEntradasWizard& f = ConClave("CAM", "15");
  Ante([](frmMallaModelos& m) {
    Pon(m, {3, 3}, "1");
    Pon(m, {3, 4}, "2");
    Pon(m, {3, 5}, "3");
    Pon(m, {4, 3}, "4");
    Pon(m, {4, 4}, "5");
    Tecla(m, "Enter");
  });
  Intenta(f);
  ASSERT_EQ(Renglones(),
            (Textos{"CAM-AZ-1CH 1", "CAM-RO-1CH 4", "CAM-AZ-2MD 2", "CAM-RO-2MD 5", "CAM-AZ-3GD 3"}));
  for (int renglon = 1; renglon <= 5; ++renglon) {
    EXPECT_EQ(f.fg2.TextMatrix(renglon, 0) + " " + f.fg2.TextMatrix(renglon, 1),
              Renglones()[static_cast<std::size_t>(renglon) - 1]);
  }
  EXPECT_EQ(f.fg2.TextMatrix(6, 0), "");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "922.5");  // 15 at 61.50
  EXPECT_TRUE(Numeros().empty());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "1");
  EXPECT_EQ(mostradas, 1);
  EXPECT_EQ(plataforma.Screens().size(), 1u);
  for (int campo : {1, 4, 5, 6, 9, 27}) EXPECT_EQ(f.txtFields(campo).Text(), "") << campo;
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
}

// A line empties the entry row, so what stood there is put back for each; the price is the same for all.
TEST_F(Modelos, UnitPriceAndTaxAreTheSameForAllLines) {
  Sql("UPDATE prods SET costo_u = 99, unidad = 'CJ', impuesto = 'EXE' WHERE articulo = 'CAM-RO-2MD'");
  frmEntradasWizard& f = ConClave("CAM", "2");
  f.txtFields(campo::Precio).Text("70.00");
  f.txtFields(campo::Unidad).Text("DOC");
  f.txtFields(campo::ImporteDelRenglon).Text("OTRO");
  Textos vistos;
  Gancho("ENTRADA005", [&](frmEntradasWizard& g) {
    std::string visto;
    for (int campo : {4, 5, 27, 6, 9}) visto += g.txtFields(campo).Text() + "|";
    vistos.push_back(visto);
  });
  Ante([](frmMallaModelos& m) {
    Pon(m, {3, 3}, "1");
    Pon(m, {4, 4}, "1");
    Acepta(m);
  });
  Intenta(f);
  EXPECT_EQ(vistos, (Textos{"CAM-AZ-1CH|1|DOC|70.00|OTRO|", "CAM-RO-2MD|1|DOC|70.00|OTRO|"}));
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart WHERE precio = 70"), "2");
}

TEST_F(Modelos, LinesOfTheMatrixFollowThoseThatAreThere) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}});
  Teclea(f, f.txtFields(campo::Articulo), "CAM");
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo::Cantidad), "2");
  Tecla(f, "Enter");
  Ante([](frmMallaModelos& m) {
    Pon(m, "2");
    Tecla(m, "Enter");
  });
  Tecla(f, "Enter");
  EXPECT_EQ(Renglones(), (Textos{"A-100 3", "CAM-AZ-1CH 2"}));
  EXPECT_EQ(Celda(f, 2, 0), "CAM-AZ-1CH");
}

TEST_F(Modelos, ACellOfZeroIsNoLine) {
  frmEntradasWizard& f = ConClave("CAM", "2");
  Ante([](frmMallaModelos& m) {
    Pon(m, {3, 4}, "0");
    Pon(m, {3, 3}, "2");
    Acepta(m);
  });
  Intenta(f);
  EXPECT_EQ(Renglones(), (Textos{"CAM-AZ-1CH 2"}));
}

// The cell counts by its leading number; the field gets the text, which is no quantity.
TEST_F(Modelos, ATextInACellReachesTheQuantityAsItStands) {
  frmEntradasWizard& f = ConClave("CAM", "12");
  Ante([](frmMallaModelos& m) {
    Tecla(m, "Enter", m.fg2);
    m.Paste("12a");
    Tecla(m, "Enter");
    EXPECT_EQ(m.txtRemanente.Text(), "0");
    Acepta(m);
  });
  Intenta(f);
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "CAM-AZ-1CH");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "12a");
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::SinCantidad}));
  EXPECT_TRUE(Renglones().empty());
}

TEST_F(Modelos, ALineThatARoutineRefusesIsLeftOutAlone) {
  frmEntradasWizard& f = ConClave("CAM", "3");
  int veces = 0;
  Gancho("ENTRADA005", [&](frmEntradasWizard& g) { g.CancelaProceso = ++veces == 2; });
  Ante([](frmMallaModelos& m) {
    Pon(m, {3, 3}, "1");
    Pon(m, {3, 4}, "1");
    Pon(m, {3, 5}, "1");
    Acepta(m);
  });
  Intenta(f);
  EXPECT_EQ(Renglones(), (Textos{"CAM-AZ-1CH 1", "CAM-AZ-3GD 1"}));
}

TEST_F(Modelos, AnArticleRemovedMeanwhileIsNoLine) {
  frmEntradasWizard& f = ConClave("CAM", "3");
  Ante([this](frmMallaModelos& m) {
    Pon(m, {3, 3}, "1");
    Pon(m, {4, 3}, "2");
    Sql("DELETE FROM prods WHERE articulo = 'CAM-AZ-1CH'");
    Acepta(m);
  });
  Intenta(f);
  EXPECT_EQ(Renglones(), (Textos{"CAM-RO-1CH 2"}));
  EXPECT_TRUE(Numeros().empty());
}

TEST_F(Modelos, TheArticleLastReadIsTheRoutinesToLookAt) {
  frmEntradasWizard& f = ConClave("CAM", "1");
  std::string visto;
  Gancho("ENTRADA005",
         [&](frmEntradasWizard& g) { visto = data::ToText(g.rstArticulo->Fields("articulo")); });
  Ante([](frmMallaModelos& m) {
    Pon(m, {4, 4}, "1");
    Acepta(m);
  });
  Intenta(f);
  EXPECT_EQ(visto, "CAM-RO-2MD");
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

// ---- failures ----

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

// ---- the price of a large model ----

class ModeloGrande : public Modelos {
 protected:
  ModeloGrande() {
    for (int i = 0; i < 10; ++i) {
      const std::string clave = std::to_string(i);
      Color("C" + clave, "Color " + clave, i);
      Talla("T" + clave, "Talla " + clave);
    }
    for (int color = 0; color < 10; ++color) {
      for (int talla = 0; talla < 10; ++talla) {
        Articulo("DIEZ", "C" + std::to_string(color) + "-T" + std::to_string(talla));
      }
    }
  }
};

// One for the model, one each for colours, sizes and description; one for each of the 12 by 12 cells that
// are no headers, the spacers among them; and one for each of the 100 articles.
TEST_F(ModeloGrande, AMatrixOfTenByTenCostsTwoHundredAndFortyEightStatements) {
  frmEntradasWizard& f = ConClave("DIEZ", "0");
  std::size_t al_mostrar = 0;
  Ante([&](frmMallaModelos& m) {
    EXPECT_EQ(m.fg2.Rows(), 14);
    EXPECT_EQ(m.fg2.Cols(), 14);
    al_mostrar = bitacora.sentencias.size();
    Acepta(m);
  });
  f.LlenaPartida();
  EXPECT_EQ(al_mostrar, 1u + 3u + 144u);
  EXPECT_EQ(bitacora.sentencias.size(), 1u + 3u + 144u + 100u);
}

// Each line adds what a typed one costs: is it a model, where is it, the header, the line; and the first
// one makes the header.
TEST_F(ModeloGrande, EachFilledCellAddsALinesStatements) {
  frmEntradasWizard& f = ConClave("DIEZ", "0");
  int cuantas = 1;
  Ante([&](frmMallaModelos& m) {
    for (int i = 0; i < cuantas; ++i) Pon(m, {3 + i / 10, 3 + i % 10}, "1");
    Acepta(m);
  });
  f.LlenaPartida();
  const std::size_t con_encabezado = bitacora.sentencias.size() - 248u;
  EXPECT_EQ(CuentaSentencias("INSERT INTO entradas"), 1);
  Teclea(f, f.txtFields(campo::Articulo), "DIEZ");
  Tecla(f, "Enter");
  f.txtFields(campo::Cantidad).Text("0");
  cuantas = 100;
  Olvida();
  f.LlenaPartida();
  EXPECT_EQ(bitacora.sentencias.size(), 248u + 100u * 4u);
  EXPECT_EQ(con_encabezado, 4u + 2u);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "101");
}

}  // namespace
}  // namespace tarvik::tests
