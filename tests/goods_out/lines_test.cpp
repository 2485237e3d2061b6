// How the entry row of goods-out becomes a line: the row is checked, and one row of salpart and one of the
// grid come of it; and the barcode reader. Second keys, adding up and the stock check have files of their
// own; models are not tested here.
#include "tests/goods_out/lines.h"

namespace tarvik::tests {
namespace {

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
