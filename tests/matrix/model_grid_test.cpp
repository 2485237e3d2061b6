// The matrix that a model's key shows, as it is built from the catalogue: colours, sizes, blocked cells, and
// the quantity to spread.
#include <set>

#include "tests/matrix/models.h"

namespace tarvik::tests {
namespace {

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
  Mira([](frmMallaModelos& m) {
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

}  // namespace
}  // namespace tarvik::tests
