// Each cell that the operator fills in a model's matrix becomes a line; and how many statements that costs
// for a large model.
#include "tests/matrix/models.h"

namespace tarvik::tests {
namespace {

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
