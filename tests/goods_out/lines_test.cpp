// How a typed article becomes a goods-out line: the catalogue fills the entry row, the row is checked, and
// one row of salpart and one of the grid come of it. Second keys, adding up and the stock check have files
// of their own; models are not tested here.
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class RenglonesDeSalida : public EscenarioDeSalidas {
 protected:
  void Usa(frmSalidasWizard& f, int hasta) {
    for (int renglon = 1; renglon <= hasta; ++renglon) {
      f.fg2.TextMatrix(renglon, 0, "X");
      f.fg2.TextMatrix(renglon, 1, "1");
      f.fg2.TextMatrix(renglon, 3, "1");
    }
  }
  void RenglonVacio(frmSalidasWizard& f) {
    for (int campo : {1, 4, 5, 6, 24, 25, 26, 27, 28, 29}) EXPECT_EQ(f.txtFields(campo).Text(), "") << campo;
  }
};

constexpr const char* kArticulo =
    "SELECT prods.articulo, prods.descrip, prods.unidad, prods.precio1, prods.impuesto, impuestos.valor FROM "
    "prods INNER JOIN impuestos ON prods.impuesto = impuestos.impuesto WHERE articulo = 'A-100'";

// ---- the entry row from the catalogue ----

TEST_F(RenglonesDeSalida, TheArticleBringsDescriptionUnitPriceWithItsTaxAndAQuantityOfOne) {
  frmSalidasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(4), "A-200");
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(1).Text(), "Clavo a granel");
  EXPECT_EQ(f.txtFields(27).Text(), "KG");
  EXPECT_EQ(f.txtFields(6).Text(), "50.00");
  EXPECT_EQ(f.txtFields(5).Text(), "1");
  EXPECT_TRUE(f.txtFields(5).HasFocus());
  EXPECT_EQ(f.txtFields(5).SelStart(), 0);
  EXPECT_EQ(f.txtFields(5).SelLength(), 1);
}

TEST_F(RenglonesDeSalida, AQuantityThatStandsThereIsKept) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(5).Text("7");
  f.txtFields(4).Text("A-100");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(5).Text(), "7");
  f.txtFields(5).Text(" ");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(5).Text(), "1");
  EXPECT_EQ(f.txtFields(5).SelLength(), 1);
}

TEST_F(RenglonesDeSalida, TheLookupReadsAndTellsInThisOrder) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(4).Text("A-100");
  Olvida();
  std::string visto;
  Gancho("SALIDAS011", [&](frmSalidasWizard& g) { visto = g.txtFields(27).Text() + g.txtFields(5).Text(); });
  f.PonDescripcion();
  EXPECT_EQ(bitacora.sentencias, (Textos{kArticulo}));
  EXPECT_EQ(Claves(), (Textos{"SALIDAS011"}));
  EXPECT_EQ(visto, "PZA1");
  EXPECT_EQ(data::ToText(f.rstArticulo->Fields("articulo")), "A-100");
}

TEST_F(RenglonesDeSalida, AnUnknownOrEmptyKeyEmptiesNothingAndTellsNothing) {
  frmSalidasWizard& f = ConConcepto();
  Fila(f, "A-100", "2");
  for (const char* clave : {"NADA", "", " "}) {
    Olvida();
    f.txtFields(4).Text(clave);
    f.PonDescripcion();
    EXPECT_EQ(f.txtFields(6).Text(), "116.00") << clave;
    EXPECT_EQ(f.txtFields(1).Text(), "Martillo de uña");
    EXPECT_EQ(f.txtFields(27).Text(), "PZA");
    EXPECT_EQ(f.txtFields(5).Text(), "2");
    EXPECT_TRUE(bitacora.mensajes.empty());
    EXPECT_TRUE(Claves().empty());
    EXPECT_EQ(bitacora.sentencias.size(), std::string(clave) == "NADA" ? 2u : 0u);
  }
}

TEST_F(RenglonesDeSalida, MissingTextsComeEmptyAndThePriceFollowsThePatternOfTheContext) {
  Sql("UPDATE prods SET descrip = NULL, unidad = NULL WHERE articulo = 'A-200'");
  anfitrion->Ambiente().Pon("FormatoImporte", "###,##0.0000");
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(4).Text("A-200");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(1).Text(), "");
  EXPECT_EQ(f.txtFields(27).Text(), "");
  EXPECT_EQ(f.txtFields(6).Text(), "49.9960");
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(RenglonesDeSalida, AnArticleWithoutTaxRateIsUnknownToTheLookupYetMakesALine) {
  Sql("INSERT INTO prods (articulo, descrip, precio1, impuesto) VALUES ('LIBRE', 'Sin tasa', 10, 'NO')");
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(4).Text("LIBRE");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(6).Text(), "");
  f.txtFields(5).Text("2");
  f.LlenaPartida();
  EXPECT_EQ(Uno("SELECT articulo FROM salpart"), "LIBRE");
}

TEST_F(RenglonesDeSalida, LeavingTheArticleAsksARoutineThatMayKeepItFromBeingLookedUpOnce) {
  frmSalidasWizard& f = ConConcepto();
  Gancho("SALIDAS013", [](frmSalidasWizard& g) { g.CancelaProceso = true; });
  Teclea(f, f.txtFields(4), "A-100");
  Olvida();
  Tecla(f, "Enter");
  EXPECT_FALSE(f.CancelaProceso);
  EXPECT_EQ(f.txtFields(6).Text(), "");
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_EQ(Claves(), (Textos{"SALIDAS013"}));
  SinGancho("SALIDAS013");
  f.Enter(f.txtFields(4));
  Olvida();
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(6).Text(), "116.00");
  EXPECT_EQ(Claves(), (Textos{"SALIDAS013", "SALIDAS011"}));
}

TEST_F(RenglonesDeSalida, APriceTypedIsFormattedOnLeavingAndChangingItComputesNothing) {
  frmSalidasWizard& f = ConConcepto();
  Fila(f, "A-100", "2");
  f.Enter(f.txtFields(6));
  Olvida();
  Teclea(f, f.txtFields(6), "1234.5");
  EXPECT_EQ(f.txtFields(5).Text(), "2");
  EXPECT_TRUE(bitacora.sentencias.empty());
  f.Enter(f.txtFields(17));
  EXPECT_EQ(f.txtFields(6).Text(), "1,234.50");
}

// ---- keys of the entry row ----

TEST_F(RenglonesDeSalida, EnterAndTabLeadThroughTheRowWithEachTextSelected) {
  frmSalidasWizard& f = ConConcepto();
  for (const char* tecla : {"Enter", "Tab"}) {
    f.txtFields(5).Text("33");
    Teclea(f, f.txtFields(4), "A-100");
    Tecla(f, tecla);
    EXPECT_TRUE(f.txtFields(5).HasFocus()) << tecla;
    EXPECT_EQ(f.txtFields(5).SelLength(), 2);
    Tecla(f, tecla);
    EXPECT_TRUE(f.txtFields(6).HasFocus());
    EXPECT_EQ(f.txtFields(6).SelLength(), 6);
    Tecla(f, tecla);
    EXPECT_TRUE(f.txtFields(4).HasFocus());
    RenglonVacio(f);
  }
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "66");
}

TEST_F(RenglonesDeSalida, EnterSkipsWhatIsDisabled) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(5).Enabled(false);
  Teclea(f, f.txtFields(4), "A-100");
  Olvida();
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(4).HasFocus());
  EXPECT_TRUE(bitacora.sentencias.empty());
  f.txtFields(5).Enabled(true);
  f.txtFields(6).Enabled(false);
  Tecla(f, "Enter", f.txtFields(5));
  EXPECT_TRUE(f.txtFields(5).HasFocus());
  f.txtFields(29).Enabled(false);
  Tecla(f, "Enter", f.txtFields(28));
  EXPECT_TRUE(f.txtFields(28).HasFocus());
}

TEST_F(RenglonesDeSalida, EnterInThePresentationLeadsToItsUnitAndThenToThePrice) {
  frmSalidasWizard& f = ConConcepto();
  Tecla(f, "Enter", f.txtFields(28));
  EXPECT_TRUE(f.txtFields(29).HasFocus());
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(6).HasFocus());
  for (int campo : {24, 25, 26, 27}) {
    Tecla(f, "Enter", f.txtFields(campo));
    EXPECT_TRUE(f.txtFields(campo).HasFocus()) << campo;
  }
}

TEST_F(RenglonesDeSalida, UpGoesToTheLastLineOnceThereIsOne) {
  frmSalidasWizard& f = ConConcepto();
  Tecla(f, "Up", f.txtFields(4));
  EXPECT_TRUE(f.txtFields(4).HasFocus());
  Linea(f, "A-100", "1");
  Linea(f, "A-200", "1");
  f.fg2.Row(1);
  Tecla(f, "Up", f.txtFields(13));
  EXPECT_EQ(f.fg2.Row(), 2);
  EXPECT_TRUE(f.fg2.HasFocus());
}

TEST_F(RenglonesDeSalida, WhileALineIsBeingStoredEnterMakesNoSecondOne) {
  frmSalidasWizard& f = ConConcepto();
  bool procesando = false;
  Gancho("SALIDAS008", [&](frmSalidasWizard& g) { procesando = g.Procesando; });
  Linea(f, "A-100", "3");
  EXPECT_TRUE(procesando);
  EXPECT_FALSE(f.Procesando);
  Fila(f, "A-200", "1");
  f.Check4.Value(1);
  f.Procesando = true;
  for (int campo : {4, 6}) {
    f.Enter(f.txtFields(campo));
    Olvida();
    Tecla(f, "Enter");
    EXPECT_TRUE(f.txtFields(campo).HasFocus());
    EXPECT_TRUE(bitacora.sentencias.empty());
  }
  Tecla(f, "Left");
  EXPECT_FALSE(f.Procesando);
}

TEST_F(RenglonesDeSalida, AnyOtherKeyInAFieldEndsTheProcessingMark) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  for (const char* tecla : {"Up", "F2", "F8", "x", "Esc"}) {
    f.Procesando = true;
    Tecla(f, tecla, f.txtFields(5));
    EXPECT_FALSE(f.Procesando) << tecla;
  }
}

TEST_F(RenglonesDeSalida, DownInTheArticleOpensTheListOfArticlesAndLeadsToTheQuantity) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(5).Text("12");
  bitacora.elige = [](forms::TextBox&) { return "A-100"; };
  Olvida();
  Tecla(f, "Down", f.txtFields(4));
  EXPECT_EQ(bitacora.selectores, (Textos{"ListaArticulos||txtFields(4)"}));
  EXPECT_EQ(f.txtFields(4).Text(), "A-100");
  EXPECT_EQ(f.txtFields(6).Text(), "116.00");
  EXPECT_TRUE(f.txtFields(5).HasFocus());
  EXPECT_EQ(f.txtFields(5).SelLength(), 2);
  EXPECT_TRUE(listas.empty());
}

// ---- the checks of the row ----

TEST_F(RenglonesDeSalida, AnEmptyArticleIsRefused) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(17).SetFocus();
  f.LlenaPartida();
  EXPECT_EQ(Numeros(), std::vector<int>{234});
  EXPECT_EQ(bitacora.mensajes.back().texto, MensajeDeLaBase(234));
  EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
  EXPECT_TRUE(f.txtFields(4).HasFocus());
  EXPECT_EQ(CuentaClaves("SALIDAS010"), 0);
}

TEST_F(RenglonesDeSalida, AKeyThatIsNoArticleIsRefused) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(4).Text("NADA");
  f.txtFields(5).Text("3");
  f.txtFields(17).SetFocus();
  f.LlenaPartida();
  EXPECT_EQ(Numeros(), std::vector<int>{235});
  EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
  EXPECT_TRUE(f.txtFields(4).HasFocus());
  EXPECT_EQ(f.txtFields(5).Text(), "3");
}

TEST_F(RenglonesDeSalida, AQuantityOfZeroOrLessIsRefused) {
  frmSalidasWizard& f = ConConcepto();
  for (const char* cantidad : {"", "0", "-1", "x"}) {
    Olvida();
    f.txtFields(17).SetFocus();
    Fila(f, "A-100", cantidad);
    f.LlenaPartida();
    EXPECT_EQ(Numeros(), std::vector<int>{236}) << cantidad;
    EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
    EXPECT_TRUE(f.txtFields(5).HasFocus());
    EXPECT_EQ(f.txtFields(4).Text(), "A-100");
  }
  f.txtFields(17).SetFocus();
  f.txtFields(5).Enabled(false);
  f.LlenaPartida();
  EXPECT_TRUE(f.txtFields(17).HasFocus());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salidas"), "0");
}

TEST_F(RenglonesDeSalida, ALineAtPriceZeroOrWithoutPriceIsMade) {
  Sql("UPDATE prods SET precio1 = 0 WHERE articulo = 'A-100'");
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "3");
  Fila(f, "A-200", "2");
  f.txtFields(6).Text("");
  f.LlenaPartida();
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(Uno("SELECT SUM(precio) FROM salpart"), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "2");
  EXPECT_EQ(Celda(f, 2, 3), "0");
}

TEST_F(RenglonesDeSalida, AScreenThatTheRoutineHasClosedWritesNoLine) {
  frmSalidasWizard& f = ConConcepto();
  auto viva = f.shared_from_this();
  f.txtFields(4).Text("A-100");
  f.txtFields(5).Text("3");
  Gancho("SALIDAS010", [](frmSalidasWizard& g) { g.Unload(); });
  f.LlenaPartida();
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salidas"), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "0");
}

TEST_F(RenglonesDeSalida, ARoutineMayRefuseALineOnceAndTheRowStaysAsItStands) {
  frmSalidasWizard& f = ConConcepto();
  Gancho("SALIDAS010", [](frmSalidasWizard& g) { g.CancelaProceso = true; });
  Fila(f, "A-100", "3");
  Olvida();
  f.LlenaPartida();
  EXPECT_FALSE(f.CancelaProceso);
  EXPECT_EQ(f.txtFields(4).Text(), "A-100");
  EXPECT_EQ(f.txtFields(5).Text(), "3");
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_EQ(f.Modo, "ALTA");
  SinGancho("SALIDAS010");
  f.LlenaPartida();
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "1");
}

// ---- the line ----

TEST_F(RenglonesDeSalida, TheFirstLineSendsItsStatementsInOrder) {
  frmSalidasWizard& f = ConConcepto();
  Olvida();
  Linea(f, "A-100", "3");
  EXPECT_EQ(
      bitacora.sentencias,
      (Textos{
          kArticulo, "SELECT * FROM prods WHERE articulo = 'A-100'",
          "SELECT * FROM existenciaalmacen WHERE almacen = 1 AND articulo = 'A-100'",
          "SELECT linea FROM prods WHERE articulo = 'A-100'", "SELECT salida FROM salidas WHERE salida = 1",
          "INSERT INTO salidas (salida, sucursal, esparasucursal, ocupado, f_emision, tipo_doc, importe, "
          "costo, almacen, estado, observ, datos, usuario, usufecha, usuhora, estraspaso, "
          "direccionembarque, almt) VALUES (1, '', 0, 1, '2024-03-05', 'VTA', 0, 0, 1, 'PE', '', 'Venta', "
          "'ANA', '2024-03-05', '14:03:22', 0, '', 0)",
          "SELECT * FROM salidas WHERE (((salida) = 1))",
          "SELECT * FROM salpart WHERE (((salida)=1)) AND id_salida = 0",
          "SELECT id_salida FROM salpart WHERE id_salida = 1",
          "INSERT INTO salpart (salida, tipo_doc, articulo, cantidad, precio, observ, id_salida, partida, "
          "usuario, usufecha, usuhora, claveadd, prcantidad, prdescrip) VALUES (1, 'VTA', 'A-100', 3, "
          "116, 'Martillo de uña ', 1, 0, 'ANA', '2024-03-05', '14:03:22', '', 0, '')",
          "SELECT * FROM existenciaalmacen WHERE almacen = 1 AND articulo = 'A-100'"}));
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(RenglonesDeSalida, TheRoadOfALineFiresItsHooksInOrder) {
  frmSalidasWizard& f = ConConcepto();
  Olvida();
  std::string visto;
  Gancho("SALIDAS008", [&](frmSalidasWizard& g) {
    visto = Celda(g, 1, 0) + "|" + g.txtFields(4).Text() + "|" + g.txtFields(11).Text() + "|" +
            Uno("SELECT cantidad FROM salpart");
    g.CancelaProceso = true;  // it is too late to stop the line
  });
  Linea(f, "A-100", "3");
  EXPECT_EQ(Claves(), (Textos{"SALIDAS013", "SALIDAS011", "SALIDAS010", "SALIDAS008"}));
  EXPECT_EQ(visto, "A-100|A-100||3");
  EXPECT_EQ(f.txtFields(11).Text(), "348");
  EXPECT_EQ(f.UltimaPartida, 1);
}

TEST_F(RenglonesDeSalida, TheGridShowsTheLineAndTheEntryRowIsFreeForTheNext) {
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "3");
  Linea(f, "A-200", "2.5");
  const Textos esperado{"A-200", "2.5", "1.5", "50", "125", "Clavo a granel ", "2", "", "", "4", ""};
  for (int columna = 0; columna < 11; ++columna) {
    EXPECT_EQ(Celda(f, 2, columna), esperado[static_cast<std::size_t>(columna)]) << columna;
  }
  EXPECT_EQ(f.fg2.Row(), 2);
  EXPECT_EQ(f.UltimaPartida, 2);
  EXPECT_EQ(f.Importe, 125);
  EXPECT_EQ(f.txtFields(10).Text(), "2");
  EXPECT_EQ(f.txtFields(8).Text(), "5.5");
  EXPECT_EQ(f.txtFields(11).Text(), "473");
  RenglonVacio(f);
  EXPECT_TRUE(f.txtFields(4).HasFocus());
}

TEST_F(RenglonesDeSalida, TheAmountIsFirstWrittenWithTwoDecimalsAndThenRecomputed) {
  frmSalidasWizard& f = ConConcepto();
  std::string antes;
  Gancho("SALIDAS008", [&](frmSalidasWizard& g) { antes = Celda(g, 1, 4) + "|" + Celda(g, 1, 2); });
  Linea(f, "A-100", "1500");
  EXPECT_EQ(antes, "174,000.00|");
  EXPECT_EQ(Celda(f, 1, 4), "174000");
  EXPECT_EQ(f.txtFields(8).Text(), "1,500");
  EXPECT_EQ(f.txtFields(11).Text(), "174,000");
}

TEST_F(RenglonesDeSalida, WithoutStockOnRecordTheColumnStaysEmptyAndTheRestCountsFromZero) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(14).Text(" 2 ");
  Olvida();
  Linea(f, "A-100", "3");
  EXPECT_EQ(Celda(f, 1, 9), "");
  EXPECT_EQ(Celda(f, 1, 2), "-3");
  EXPECT_EQ(bitacora.sentencias.back(),
            "SELECT * FROM existenciaalmacen WHERE almacen = 2 AND articulo = 'A-100'");
}

TEST_F(RenglonesDeSalida, ALineTakesTheFirstNumberThatIsFree) {
  Sql("INSERT INTO salidas (salida) VALUES (90)");
  Sql("INSERT INTO salpart (id_salida, salida) VALUES (1, 90)");
  Sql("INSERT INTO salpart (id_salida, salida) VALUES (2, 90)");
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "3");
  EXPECT_EQ(Celda(f, 1, 6), "3");
  EXPECT_EQ(CuentaSentencias("SELECT id_salida FROM salpart WHERE id_salida = "), 3);
  EXPECT_EQ(Uno("SELECT articulo FROM salpart WHERE id_salida = 3"), "A-100");
}

TEST_F(RenglonesDeSalida, OnlyTheFirstLineMakesTheDocumentAndItsConceptStands) {
  frmSalidasWizard& f = Salida({{"A-100", "3"}});
  EXPECT_EQ(f.Salida, 1);
  EXPECT_EQ(f.Modo, "MODIFICACION");
  EXPECT_EQ(f.Caption(), "Salida: 1");
  f.txtFields(0).Text("OTRO");
  Linea(f, "A-200", "1");
  EXPECT_EQ(CuentaSentencias("INSERT INTO salidas"), 0);
  EXPECT_EQ(Uno("SELECT tipo_doc FROM salpart WHERE articulo = 'A-200'"), "VTA");
}

TEST_F(RenglonesDeSalida, PendingEventsAreLetThroughBeforeTheEntryRowIsEmptied) {
  frmSalidasWizard& f = ConConcepto();
  std::string visto;
  Gancho("SALIDAS008", [&](frmSalidasWizard&) {
    plataforma.Post([&] { visto = f.txtFields(4).Text() + (f.Procesando ? "|p" : "|-"); });
  });
  Linea(f, "A-100", "3");
  EXPECT_EQ(visto, "A-100|-");
}

TEST_F(RenglonesDeSalida, ARowBeyondTheSeventhScrollsTheGrid) {
  frmSalidasWizard& f = ConConcepto();
  Usa(f, 6);
  const int antes = f.fg2.TopRow();
  Linea(f, "A-100", "1");
  EXPECT_EQ(f.fg2.Row(), 7);
  EXPECT_EQ(f.fg2.TopRow(), antes);
  Linea(f, "A-200", "1");
  EXPECT_EQ(f.fg2.Row(), 8);
  EXPECT_EQ(f.fg2.TopRow(), 5);
}

TEST_F(RenglonesDeSalida, TheLastRowOfTheGridTakesALineAndTheNextIsStoredAndNotShown) {
  frmSalidasWizard& f = ConConcepto();
  Usa(f, 4998);
  Linea(f, "A-100", "3");
  EXPECT_EQ(Celda(f, 4999, 0), "A-100");
  EXPECT_EQ(f.fg2.TopRow(), 4996);
  EXPECT_EQ(f.txtFields(11).Text(), "5,346");
  Linea(f, "A-200", "2");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart WHERE articulo = 'A-200'"), "2");
  EXPECT_EQ(Celda(f, 4999, 0), "A-100");
  EXPECT_EQ(f.txtFields(11).Text(), "5,346");
  EXPECT_EQ(f.txtFields(10).Text(), "4999");
  RenglonVacio(f);
  EXPECT_TRUE(Reportes().empty());
}

// ---- the barcode reader ----

TEST_F(RenglonesDeSalida, AScanIsALineOfOneAtTheCataloguesPrice) {
  frmSalidasWizard& f = ConConcepto();
  f.Check4.Value(1);
  for (int i = 0; i < 2; ++i) {
    Teclea(f, f.txtFields(4), "A-100");
    Tecla(f, "Enter");
    EXPECT_TRUE(f.txtFields(4).HasFocus());
    RenglonVacio(f);
  }
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "1");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "2");
  EXPECT_EQ(Uno("SELECT precio FROM salpart"), "116");
}

TEST_F(RenglonesDeSalida, AScanLooksTheArticleUpOnLeavingAndOnceMore) {
  frmSalidasWizard& f = ConConcepto();
  f.Check4.Value(1);
  f.txtFields(5).Text("9");
  Teclea(f, f.txtFields(4), "A-100");
  Olvida();
  Tecla(f, "Enter");
  EXPECT_EQ(Claves(), (Textos{"SALIDAS013", "SALIDAS011", "SALIDAS011", "SALIDAS010", "SALIDAS008"}));
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "1");
}

}  // namespace
}  // namespace tarvik::tests
