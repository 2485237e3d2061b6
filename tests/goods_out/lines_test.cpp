// How a typed article becomes a goods-out line: the catalogue fills the entry row, the row is checked, and
// one row of salpart and one of the grid come of it. Second keys, adding up and the stock check have files
// of their own; models are not tested here.
#include "goods_out/columnas.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class RenglonesDeSalida : public EscenarioDeSalidas {
 protected:
  void Usa(frmSalidasWizard& f, int hasta) {
    for (int renglon = 1; renglon <= hasta; ++renglon) {
      f.fg2.TextMatrix(renglon, columna_salida::Articulo, "X");
      f.fg2.TextMatrix(renglon, columna_salida::Cantidad, "1");
      f.fg2.TextMatrix(renglon, columna_salida::Precio, "1");
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
  Teclea(f, f.txtFields(campo::Articulo), "A-200");
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Clavo a granel");
  EXPECT_EQ(f.txtFields(campo::Unidad).Text(), "KG");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "50.00");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "1");
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Cantidad).SelStart(), 0);
  EXPECT_EQ(f.txtFields(campo::Cantidad).SelLength(), 1);
}

TEST_F(RenglonesDeSalida, AQuantityThatStandsThereIsKept) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Cantidad).Text("7");
  f.txtFields(campo::Articulo).Text("A-100");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "7");
  f.txtFields(campo::Cantidad).Text(" ");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "1");
  EXPECT_EQ(f.txtFields(campo::Cantidad).SelLength(), 1);
}

TEST_F(RenglonesDeSalida, TheLookupReadsAndTellsInThisOrder) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Articulo).Text("A-100");
  Olvida();
  std::string visto;
  Gancho("SALIDAS011", [&](frmSalidasWizard& g) {
    visto = g.txtFields(campo::Unidad).Text() + g.txtFields(campo::Cantidad).Text();
  });
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
    f.txtFields(campo::Articulo).Text(clave);
    f.PonDescripcion();
    EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00") << clave;
    EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Martillo de uña");
    EXPECT_EQ(f.txtFields(campo::Unidad).Text(), "PZA");
    EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "2");
    EXPECT_TRUE(bitacora.mensajes.empty());
    EXPECT_TRUE(Claves().empty());
    EXPECT_EQ(bitacora.sentencias.size(), std::string(clave) == "NADA" ? 2u : 0u);
  }
}

TEST_F(RenglonesDeSalida, MissingTextsComeEmptyAndThePriceFollowsThePatternOfTheContext) {
  Sql("UPDATE prods SET descrip = NULL, unidad = NULL WHERE articulo = 'A-200'");
  anfitrion->Ambiente().Pon("FormatoImporte", "###,##0.0000");
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Articulo).Text("A-200");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "");
  EXPECT_EQ(f.txtFields(campo::Unidad).Text(), "");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "49.9960");
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(RenglonesDeSalida, AnArticleWithoutTaxRateIsUnknownToTheLookupYetMakesALine) {
  Sql("INSERT INTO prods (articulo, descrip, precio1, impuesto) VALUES ('LIBRE', 'Sin tasa', 10, 'NO')");
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Articulo).Text("LIBRE");
  f.PonDescripcion();
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "");
  f.txtFields(campo::Cantidad).Text("2");
  f.LlenaPartida();
  EXPECT_EQ(Uno("SELECT articulo FROM salpart"), "LIBRE");
}

TEST_F(RenglonesDeSalida, LeavingTheArticleAsksARoutineThatMayKeepItFromBeingLookedUpOnce) {
  frmSalidasWizard& f = ConConcepto();
  Gancho("SALIDAS013", [](frmSalidasWizard& g) { g.CancelaProceso = true; });
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Olvida();
  Tecla(f, "Enter");
  EXPECT_FALSE(f.CancelaProceso);
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "");
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_EQ(Claves(), (Textos{"SALIDAS013"}));
  SinGancho("SALIDAS013");
  f.Enter(f.txtFields(campo::Articulo));
  Olvida();
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00");
  EXPECT_EQ(Claves(), (Textos{"SALIDAS013", "SALIDAS011"}));
}

TEST_F(RenglonesDeSalida, APriceTypedIsFormattedOnLeavingAndChangingItComputesNothing) {
  frmSalidasWizard& f = ConConcepto();
  Fila(f, "A-100", "2");
  f.Enter(f.txtFields(campo::Precio));
  Olvida();
  Teclea(f, f.txtFields(campo::Precio), "1234.5");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "2");
  EXPECT_TRUE(bitacora.sentencias.empty());
  f.Enter(f.txtFields(campo::DireccionDeEmbarque));
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "1,234.50");
}

// ---- keys of the entry row ----

TEST_F(RenglonesDeSalida, EnterAndTabLeadThroughTheRowWithEachTextSelected) {
  frmSalidasWizard& f = ConConcepto();
  for (const char* tecla : {"Enter", "Tab"}) {
    f.txtFields(campo::Cantidad).Text("33");
    Teclea(f, f.txtFields(campo::Articulo), "A-100");
    Tecla(f, tecla);
    EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus()) << tecla;
    EXPECT_EQ(f.txtFields(campo::Cantidad).SelLength(), 2);
    Tecla(f, tecla);
    EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
    EXPECT_EQ(f.txtFields(campo::Precio).SelLength(), 6);
    Tecla(f, tecla);
    EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
    RenglonVacio(f);
  }
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "66");
}

TEST_F(RenglonesDeSalida, EnterSkipsWhatIsDisabled) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Cantidad).Enabled(false);
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Olvida();
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_TRUE(bitacora.sentencias.empty());
  f.txtFields(campo::Cantidad).Enabled(true);
  f.txtFields(campo::Precio).Enabled(false);
  Tecla(f, "Enter", f.txtFields(campo::Cantidad));
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
  f.txtFields(campo::UnidadDePresentacion).Enabled(false);
  Tecla(f, "Enter", f.txtFields(campo::Presentaciones));
  EXPECT_TRUE(f.txtFields(campo::Presentaciones).HasFocus());
}

TEST_F(RenglonesDeSalida, EnterInThePresentationLeadsToItsUnitAndThenToThePrice) {
  frmSalidasWizard& f = ConConcepto();
  Tecla(f, "Enter", f.txtFields(campo::Presentaciones));
  EXPECT_TRUE(f.txtFields(campo::UnidadDePresentacion).HasFocus());
  Tecla(f, "Enter");
  EXPECT_TRUE(f.txtFields(campo::Precio).HasFocus());
  for (int campo : {24, 25, 26, 27}) {
    Tecla(f, "Enter", f.txtFields(campo));
    EXPECT_TRUE(f.txtFields(campo).HasFocus()) << campo;
  }
}

TEST_F(RenglonesDeSalida, UpGoesToTheLastLineOnceThereIsOne) {
  frmSalidasWizard& f = ConConcepto();
  Tecla(f, "Up", f.txtFields(campo::Articulo));
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  Linea(f, "A-100", "1");
  Linea(f, "A-200", "1");
  f.fg2.Row(1);
  Tecla(f, "Up", f.txtFields(campo::Cliente));
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
    Tecla(f, tecla, f.txtFields(campo::Cantidad));
    EXPECT_FALSE(f.Procesando) << tecla;
  }
}

TEST_F(RenglonesDeSalida, DownInTheArticleOpensTheListOfArticlesAndLeadsToTheQuantity) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Cantidad).Text("12");
  bitacora.elige = [](forms::TextBox&) { return "A-100"; };
  Olvida();
  Tecla(f, "Down", f.txtFields(campo::Articulo));
  EXPECT_EQ(bitacora.selectores, (Textos{"ListaArticulos||txtFields(4)"}));
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00");
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Cantidad).SelLength(), 2);
  EXPECT_TRUE(listas.empty());
}

// ---- the checks of the row ----

TEST_F(RenglonesDeSalida, AnEmptyArticleIsRefused) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::DireccionDeEmbarque).SetFocus();
  f.LlenaPartida();
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinArticulo});
  EXPECT_EQ(bitacora.mensajes.back().texto, MensajeDeLaBase(mensaje::SinArticulo));
  EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_EQ(CuentaClaves("SALIDAS010"), 0);
}

TEST_F(RenglonesDeSalida, AKeyThatIsNoArticleIsRefused) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Articulo).Text("NADA");
  f.txtFields(campo::Cantidad).Text("3");
  f.txtFields(campo::DireccionDeEmbarque).SetFocus();
  f.LlenaPartida();
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoEsArticulo});
  EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "3");
}

TEST_F(RenglonesDeSalida, AQuantityOfZeroOrLessIsRefused) {
  frmSalidasWizard& f = ConConcepto();
  for (const char* cantidad : {"", "0", "-1", "x"}) {
    Olvida();
    f.txtFields(campo::DireccionDeEmbarque).SetFocus();
    Fila(f, "A-100", cantidad);
    f.LlenaPartida();
    EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinCantidad}) << cantidad;
    EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
    EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
    EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  }
  f.txtFields(campo::DireccionDeEmbarque).SetFocus();
  f.txtFields(campo::Cantidad).Enabled(false);
  f.LlenaPartida();
  EXPECT_TRUE(f.txtFields(campo::DireccionDeEmbarque).HasFocus());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salidas"), "0");
}

TEST_F(RenglonesDeSalida, ALineAtPriceZeroOrWithoutPriceIsMade) {
  Sql("UPDATE prods SET precio1 = 0 WHERE articulo = 'A-100'");
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "3");
  Fila(f, "A-200", "2");
  f.txtFields(campo::Precio).Text("");
  f.LlenaPartida();
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(Uno("SELECT SUM(precio) FROM salpart"), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "2");
  EXPECT_EQ(Celda(f, 2, columna_salida::Precio), "0");
}

TEST_F(RenglonesDeSalida, AScreenThatTheRoutineHasClosedWritesNoLine) {
  frmSalidasWizard& f = ConConcepto();
  auto viva = f.shared_from_this();
  f.txtFields(campo::Articulo).Text("A-100");
  f.txtFields(campo::Cantidad).Text("3");
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
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "3");
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
    visto = Celda(g, 1, columna_salida::Articulo) + "|" + g.txtFields(campo::Articulo).Text() + "|" +
            g.txtFields(campo::Total).Text() + "|" + Uno("SELECT cantidad FROM salpart");
    g.CancelaProceso = true;  // it is too late to stop the line
  });
  Linea(f, "A-100", "3");
  EXPECT_EQ(Claves(), (Textos{"SALIDAS013", "SALIDAS011", "SALIDAS010", "SALIDAS008"}));
  EXPECT_EQ(visto, "A-100|A-100||3");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "348");
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
  EXPECT_EQ(f.txtFields(campo::Renglones).Text(), "2");
  EXPECT_EQ(f.txtFields(campo::Unidades).Text(), "5.5");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "473");
  RenglonVacio(f);
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
}

TEST_F(RenglonesDeSalida, TheAmountIsFirstWrittenWithTwoDecimalsAndThenRecomputed) {
  frmSalidasWizard& f = ConConcepto();
  std::string antes;
  Gancho("SALIDAS008", [&](frmSalidasWizard& g) {
    antes = Celda(g, 1, columna_salida::Importe) + "|" + Celda(g, 1, columna_salida::Existencia);
  });
  Linea(f, "A-100", "1500");
  EXPECT_EQ(antes, "174,000.00|");
  EXPECT_EQ(Celda(f, 1, columna_salida::Importe), "174000");
  EXPECT_EQ(f.txtFields(campo::Unidades).Text(), "1,500");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "174,000");
}

TEST_F(RenglonesDeSalida, WithoutStockOnRecordTheColumnStaysEmptyAndTheRestCountsFromZero) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Almacen).Text(" 2 ");
  Olvida();
  Linea(f, "A-100", "3");
  EXPECT_EQ(Celda(f, 1, columna_salida::ExistenciaDelAlmacen), "");
  EXPECT_EQ(Celda(f, 1, columna_salida::Existencia), "-3");
  EXPECT_EQ(bitacora.sentencias.back(),
            "SELECT * FROM existenciaalmacen WHERE almacen = 2 AND articulo = 'A-100'");
}

TEST_F(RenglonesDeSalida, ALineTakesTheFirstNumberThatIsFree) {
  Sql("INSERT INTO salidas (salida) VALUES (90)");
  Sql("INSERT INTO salpart (id_salida, salida) VALUES (1, 90)");
  Sql("INSERT INTO salpart (id_salida, salida) VALUES (2, 90)");
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "3");
  EXPECT_EQ(Celda(f, 1, columna_salida::IdSalida), "3");
  EXPECT_EQ(CuentaSentencias("SELECT id_salida FROM salpart WHERE id_salida = "), 3);
  EXPECT_EQ(Uno("SELECT articulo FROM salpart WHERE id_salida = 3"), "A-100");
}

TEST_F(RenglonesDeSalida, OnlyTheFirstLineMakesTheDocumentAndItsConceptStands) {
  frmSalidasWizard& f = Salida({{"A-100", "3"}});
  EXPECT_EQ(f.Salida, 1);
  EXPECT_EQ(f.Modo, "MODIFICACION");
  EXPECT_EQ(f.Caption(), "Salida: 1");
  f.txtFields(campo::Concepto).Text("OTRO");
  Linea(f, "A-200", "1");
  EXPECT_EQ(CuentaSentencias("INSERT INTO salidas"), 0);
  EXPECT_EQ(Uno("SELECT tipo_doc FROM salpart WHERE articulo = 'A-200'"), "VTA");
}

TEST_F(RenglonesDeSalida, PendingEventsAreLetThroughBeforeTheEntryRowIsEmptied) {
  frmSalidasWizard& f = ConConcepto();
  std::string visto;
  Gancho("SALIDAS008", [&](frmSalidasWizard&) {
    plataforma.Post([&] { visto = f.txtFields(campo::Articulo).Text() + (f.Procesando ? "|p" : "|-"); });
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
  EXPECT_EQ(Celda(f, 4999, columna_salida::Articulo), "A-100");
  EXPECT_EQ(f.fg2.TopRow(), 4996);
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "5,346");
  Linea(f, "A-200", "2");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart WHERE articulo = 'A-200'"), "2");
  EXPECT_EQ(Celda(f, 4999, columna_salida::Articulo), "A-100");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "5,346");
  EXPECT_EQ(f.txtFields(campo::Renglones).Text(), "4999");
  RenglonVacio(f);
  EXPECT_TRUE(Reportes().empty());
}

// ---- the barcode reader ----

TEST_F(RenglonesDeSalida, AScanIsALineOfOneAtTheCataloguesPrice) {
  frmSalidasWizard& f = ConConcepto();
  f.Check4.Value(1);
  for (int i = 0; i < 2; ++i) {
    Teclea(f, f.txtFields(campo::Articulo), "A-100");
    Tecla(f, "Enter");
    EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
    RenglonVacio(f);
  }
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "1");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "2");
  EXPECT_EQ(Uno("SELECT precio FROM salpart"), "116");
}

TEST_F(RenglonesDeSalida, AScanLooksTheArticleUpOnLeavingAndOnceMore) {
  frmSalidasWizard& f = ConConcepto();
  f.Check4.Value(1);
  f.txtFields(campo::Cantidad).Text("9");
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Olvida();
  Tecla(f, "Enter");
  EXPECT_EQ(Claves(), (Textos{"SALIDAS013", "SALIDAS011", "SALIDAS011", "SALIDAS010", "SALIDAS008"}));
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "1");
}

}  // namespace
}  // namespace tarvik::tests
