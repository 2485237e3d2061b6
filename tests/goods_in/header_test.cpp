// The header of goods-in and the rules that all its text fields share: tags and keys, change,
// entering and leaving, Enter, F2, F5, F8, the concept's lookup, and the checks before the finish.
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

using Claves_ = std::vector<std::string>;

class Encabezado : public Escenario {
 protected:
  Encabezado() {
    Catalogo();
    f_ = &Nueva();
    Olvida();
  }
  frmEntradasWizard& f() { return *f_; }
  forms::TextBox& campo(int indice) { return f_->txtFields(indice); }
  int foco() {
    auto* activo = f_->ActiveControl();
    return activo && activo->Name() == "txtFields" ? *activo->Index() : -1;
  }
  frmEntradasWizard* f_ = nullptr;
};

// ---- the fields ----

TEST_F(Encabezado, ThereAreExactlyFourteenFieldsWithTheirTagsAndSearches) {
  const std::tuple<int, const char*, int, const char*> campos[] = {
      {0, "U", 0, "Conceptos de entrada al inventario"},
      {14, "SN", 1, "Almacenes"},
      {4, "", 2, "Articulos"},
      {24, "", 3, "Claves adicionales de articulos"},
      {1, "SD", -1, ""},
      {5, "SD", -1, ""},
      {6, "N", -1, ""},
      {9, "", -1, ""},
      {11, "", -1, ""},
      {25, "", -1, ""},
      {26, "", -1, ""},
      {27, "", -1, ""},
      {28, "", -1, ""},
      {29, "", -1, ""}};
  EXPECT_EQ(f().txtFields.Count(), 14);
  for (const auto& [indice, tag, caja, busca] : campos) {
    ASSERT_TRUE(f().txtFields.Has(indice)) << indice;
    EXPECT_EQ(campo(indice).Tag(), tag) << indice;
    EXPECT_EQ(campo(indice).MaxLength(), 0) << indice;
    if (caja < 0) {
      EXPECT_EQ(dynamic_cast<forms::SearchBox*>(campo(indice).Container()), nullptr) << indice;
    } else {
      EXPECT_EQ(campo(indice).Container(), &f().MultiCombo1(caja)) << indice;
      EXPECT_EQ(f().MultiCombo1(caja).buscar(), busca) << indice;
    }
  }
}

TEST_F(Encabezado, AnUpperCaseFieldTurnsLettersAndANumericOneRefusesThem) {
  Teclea(f(), campo(campo::Concepto), "añ1");
  EXPECT_EQ(campo(campo::Concepto).Text(), "AÑ1");
  for (int indice : {14, 5, 6}) {
    Teclea(f(), campo(indice), "x1y.5,");
    EXPECT_EQ(campo(indice).Text(), "1.5") << indice;
  }
}

TEST_F(Encabezado, TheTagDAndAnyOtherAreReadFromTheFieldItself) {
  campo(campo::ImporteDelRenglon).Tag("D");
  Teclea(f(), campo(campo::ImporteDelRenglon), "a1");
  EXPECT_EQ(campo(campo::ImporteDelRenglon).Text(), "1");
  campo(campo::Dato1).Tag("X");
  Teclea(f(), campo(campo::Dato1), "a1");
  EXPECT_EQ(campo(campo::Dato1).Text(), "a1");
  Teclea(f(), campo(campo::UnidadDePresentacion), "caja ñ");
  EXPECT_EQ(campo(campo::UnidadDePresentacion).Text(), "caja ñ");
}

TEST_F(Encabezado, AKeyFilterThatFailsLeavesTheEventUnreported) {
  bitacora.FallaServicio("TeclaNumerica", 1, "sin filtro");
  Teclea(f(), campo(campo::Almacen), "1");
  EXPECT_EQ(no_atrapados, Claves_{"sin filtro"});
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(Encabezado, WhileTheScreenLoadsAChangeIsFormattedAtOnceAndLaterItIsNot) {
  std::string cargando;
  Gancho("ENTRADA001", [&](frmEntradasWizard& g) {
    g.txtFields(campo::Precio).Text("1234.5");
    cargando = g.txtFields(campo::Precio).Text();
  });
  frmEntradasWizard& otra = Nueva();
  EXPECT_EQ(cargando, "1,234.50");
  otra.txtFields(campo::Precio).Text("99.5");
  EXPECT_EQ(otra.txtFields(campo::Precio).Text(), "99.5");
}

// ---- entering and leaving ----

TEST_F(Encabezado, EnteringSelectsTheWholeTextAndFiresWithTheIndex) {
  campo(campo::UnidadDePresentacion).Text("Caja");
  f().Enter(campo(campo::UnidadDePresentacion));
  EXPECT_EQ(campo(campo::UnidadDePresentacion).SelStart(), 0);
  EXPECT_EQ(campo(campo::UnidadDePresentacion).SelLength(), 4);
  ASSERT_FALSE(bitacora.ganchos.empty());
  EXPECT_EQ(bitacora.ganchos.back(), (std::pair<std::string, data::Value>{"ENTRADA008", 29}));
}

TEST_F(Encabezado, LeavingFiresWithTheIndexLeftBeforeTheNextIsEntered) {
  f().Enter(campo(campo::Almacen));
  ASSERT_EQ(bitacora.ganchos.size(), 2u);
  EXPECT_EQ(bitacora.ganchos[0], (std::pair<std::string, data::Value>{"ENTRADA007", 0}));
  EXPECT_EQ(bitacora.ganchos[1], (std::pair<std::string, data::Value>{"ENTRADA008", 14}));
}

TEST_F(Encabezado, LeavingFormatsTheTextAfterItsHook) {
  f().Enter(campo(campo::Precio));
  campo(campo::Precio).Text("1234.5");
  std::string visto;
  Gancho("ENTRADA007", [&](frmEntradasWizard& g) { visto = g.txtFields(campo::Precio).Text(); });
  f().Enter(campo(campo::Almacen));
  EXPECT_EQ(visto, "1234.5");
  EXPECT_EQ(campo(campo::Precio).Text(), "1,234.50");
}

TEST_F(Encabezado, LeavingTheArticleFiresItsHookThenLooksItUp) {
  f().Enter(campo(campo::Articulo));
  campo(campo::Articulo).Text("A-100");
  Olvida();
  f().Enter(campo(campo::Almacen));
  EXPECT_EQ(Claves(), (Claves_{"ENTRADA012", "ENTRADA009", "ENTRADA007", "ENTRADA008"}));
  EXPECT_EQ(campo(campo::Descripcion).Text(), "Martillo de uña");
}

TEST_F(Encabezado, ACancelledArticleEndsAllOfTheLeavingLogic) {
  Gancho("ENTRADA012", [](frmEntradasWizard& g) { g.CancelaProceso = true; });
  f().Enter(campo(campo::Articulo));
  campo(campo::Articulo).Text("A-100");
  Olvida();
  f().Enter(campo(campo::Almacen));
  EXPECT_EQ(Claves(), (Claves_{"ENTRADA012", "ENTRADA008"}));
  EXPECT_EQ(campo(campo::Descripcion).Text(), "");
  EXPECT_FALSE(f().CancelaProceso);
  EXPECT_EQ(foco(), 14);
}

TEST_F(Encabezado, AHookThatFailsOnLeavingIsNoReportAndTheFocusMoves) {
  Gancho("ENTRADA007", [](frmEntradasWizard&) { throw data::Error("rutina"); });
  f().Enter(campo(campo::Almacen));
  EXPECT_EQ(no_atrapados, Claves_{"rutina"});
  EXPECT_TRUE(Reportes().empty());
  EXPECT_EQ(foco(), 14);
  EXPECT_EQ(Claves().back(), "ENTRADA008");
}

// ---- Enter ----

TEST_F(Encabezado, EnterWalksTheHeaderAndTheLine) {
  const std::pair<int, int> pasos[] = {{0, 14}, {14, 4}, {4, 5}, {5, 6}, {28, 29}, {29, 6}};
  for (auto [de, a] : pasos) {
    f().Enter(campo(de));
    Tecla(f(), "Enter");
    EXPECT_EQ(foco(), a) << de;
  }
}

TEST_F(Encabezado, TabWalksTheSameWay) {
  const std::pair<int, int> pasos[] = {{0, 14}, {14, 4}, {5, 6}, {28, 29}, {29, 6}};
  for (auto [de, a] : pasos) {
    f().Enter(campo(de));
    Tecla(f(), "Tab");
    EXPECT_EQ(foco(), a) << de;
  }
}

TEST_F(Encabezado, EnterInAnyOtherFieldDoesNothing) {
  for (int indice : {9, 24, 25, 26, 27}) {
    f().Enter(campo(indice));
    Tecla(f(), "Enter");
    EXPECT_EQ(foco(), indice);
  }
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(Encabezado, EachMoveTakesPlaceOnlyToAnEnabledField) {
  for (auto [de, a] : {std::pair{0, 14}, {14, 4}, {5, 6}, {28, 29}, {29, 6}}) {
    campo(a).Enabled(false);
    f().Enter(campo(de));
    Tecla(f(), "Enter");
    EXPECT_EQ(foco(), de);
    campo(a).Enabled(true);
  }
}

TEST_F(Encabezado, FromTheQuantityThePriceIsEnteredSelected) {
  campo(campo::Precio).Text("12.00");
  f().Enter(campo(campo::Cantidad));
  Tecla(f(), "Enter");
  EXPECT_EQ(campo(campo::Precio).SelLength(), 5);
}

TEST_F(Encabezado, EnterInThePriceStoresTheLineUnlessOneIsBeingStored) {
  f().Enter(campo(campo::Precio));
  f().Procesando = true;
  Tecla(f(), "Enter");
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_TRUE(f().Procesando);
  f().Procesando = false;
  Tecla(f(), "Enter");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinArticulo});
}

TEST_F(Encabezado, AnyOtherKeyEndsTheStoring) {
  f().Enter(campo(campo::UnidadDePresentacion));
  f().Procesando = true;
  Tecla(f(), "Tab");
  EXPECT_TRUE(f().Procesando);
  Tecla(f(), "a");
  EXPECT_FALSE(f().Procesando);
}

TEST_F(Encabezado, AnEmptyWarehouseIsPassedAndOnlyRefusedAtTheEnd) {
  campo(campo::Almacen).Text("");
  Tecla(f(), "Enter", campo(campo::Almacen));
  EXPECT_EQ(foco(), 4);
  EXPECT_TRUE(bitacora.mensajes.empty());
}

// ---- the maximum length ----

TEST_F(Encabezado, AFullFieldMovesOnByItselfOnceForTheChangeThatFillsIt) {
  campo(campo::Concepto).MaxLength(3);
  Teclea(f(), campo(campo::Concepto), "co");
  EXPECT_EQ(foco(), 0);
  Teclea(f(), campo(campo::Concepto), "m");
  EXPECT_EQ(foco(), 14);
  int pasos = 0;
  Gancho("ENTRADA008", [&](frmEntradasWizard&) { ++pasos; });
  campo(campo::Presentaciones).MaxLength(1);
  Teclea(f(), campo(campo::Presentaciones), "2");
  EXPECT_EQ(foco(), 29);
  EXPECT_EQ(pasos, 2);  // into 28, and on to 29
}

TEST_F(Encabezado, WithNoMaximumAnEmptiedFieldStaysWhereItIs) {
  Teclea(f(), campo(campo::Concepto), "c");
  Tecla(f(), "Back");
  EXPECT_EQ(campo(campo::Concepto).Text(), "");
  EXPECT_EQ(foco(), 0);
}

// ---- F2, double click, Down ----

TEST_F(Encabezado, F2OpensTheFieldsListWithTheFocusAlreadyOnTheArticle) {
  std::vector<int> focos;
  bitacora.elige = [&](forms::TextBox&) {
    focos.push_back(foco());
    return std::optional<std::string>();
  };
  for (int indice : {0, 14, 4}) Tecla(f(), "F2", campo(indice));
  EXPECT_EQ(bitacora.selectores,
            (Claves_{"BuscadorCatalogo|Conceptos de entrada al inventario|txtFields(0)",
                     "BuscadorCatalogo|Almacenes|txtFields(14)", "BuscadorCatalogo|Articulos|txtFields(4)"}));
  EXPECT_EQ(focos, (std::vector<int>{4, 4, 4}));
}

TEST_F(Encabezado, AChoiceGoesToTheFieldItWasMadeFor) {
  bitacora.elige = [](forms::TextBox&) { return std::optional<std::string>("2"); };
  Tecla(f(), "F2", campo(campo::Almacen));
  EXPECT_EQ(campo(campo::Almacen).Text(), "2");
  EXPECT_EQ(foco(), 4);
}

TEST_F(Encabezado, ADoubleClickOpensTheSameListsAndTheNumericHelperForThePrice) {
  for (int indice : {0, 4, 14, 6, 5, 24, 29}) f().DoubleClick(campo(indice));
  EXPECT_EQ(bitacora.selectores,
            (Claves_{"BuscadorCatalogo|Conceptos de entrada al inventario|txtFields(0)",
                     "BuscadorCatalogo|Articulos|txtFields(4)", "BuscadorCatalogo|Almacenes|txtFields(14)",
                     "AuxiliarNumerico||txtFields(6)"}));
}

TEST_F(Encabezado, APickerThatFailsLeavesTheEventUnreported) {
  bitacora.FallaServicio("Muestra", 1, "sin lista");
  f().DoubleClick(campo(campo::Concepto));
  EXPECT_EQ(no_atrapados, Claves_{"sin lista"});
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(Encabezado, DownOpensTheSearchBoxOfAnyFieldButTheArticles) {
  campo(campo::SegundaClave).Text("7501");
  for (int indice : {0, 14, 24}) {
    Tecla(f(), "Down", campo(indice));
    EXPECT_EQ(campo(indice).SelStart(), 0) << indice;
    EXPECT_EQ(campo(indice).SelLength(), 0) << indice;
  }
  EXPECT_EQ(listas, (Claves_{"txtFields(0)", "txtFields(14)", "txtFields(24)"}));
  listas.clear();
  Tecla(f(), "Down", campo(campo::Articulo));
  EXPECT_TRUE(listas.empty());
  EXPECT_EQ(bitacora.selectores.size(), 1u);
  EXPECT_EQ(bitacora.selectores[0].substr(0, 15), "ListaArticulos|");
}

TEST_F(Encabezado, DownInAPlainFieldFailsUnseenAndTheCaretGoesToTheFront) {
  campo(campo::UnidadDePresentacion).Text("Caja");
  f().Enter(campo(campo::UnidadDePresentacion));
  campo(campo::UnidadDePresentacion).SelStart(3);
  Tecla(f(), "Down");
  EXPECT_EQ(campo(campo::UnidadDePresentacion).SelStart(), 0);
  EXPECT_TRUE(listas.empty());
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_TRUE(Reportes().empty());
}

// ---- F8 ----

TEST_F(Encabezado, F8WalksThePresentation) {
  const std::pair<int, int> pasos[] = {{4, 24}, {5, 24}, {6, 24}, {24, 28}, {28, 29}, {29, 6}};
  for (auto [de, a] : pasos) {
    Tecla(f(), "F8", campo(de));
    EXPECT_EQ(foco(), a) << de;
  }
}

TEST_F(Encabezado, F8HasNoMeaningElsewhere) {
  for (int indice : {0, 14, 9, 25, 26, 27}) {
    f().Procesando = true;
    Tecla(f(), "F8", campo(indice));
    EXPECT_EQ(foco(), indice);
    EXPECT_FALSE(f().Procesando) << indice;
  }
}

TEST_F(Encabezado, F8EndsTheHandlingWhereItHasAMeaning) {
  f().Procesando = true;
  Tecla(f(), "F8", campo(campo::Presentaciones));
  EXPECT_TRUE(f().Procesando);
}

TEST_F(Encabezado, F8InTheSecondKeyFetchesItEvenWhereNoFocusCanGo) {
  f().Enter(campo(campo::SegundaClave));
  Tecla(f(), "F8");
  EXPECT_EQ(foco(), 28);
  campo(campo::Presentaciones).Enabled(false);
  f().Enter(campo(campo::SegundaClave));
  Olvida();
  Tecla(f(), "F8");
  EXPECT_EQ(CuentaSentencias("SELECT * FROM clavesadd WHERE clave = ''"), 1);
  EXPECT_EQ(foco(), 24);
}

// ---- F5 ----

TEST_F(Encabezado, F5InAnyFieldIsTheFinishAndEndsTheHandling) {
  f().Procesando = true;
  for (int indice : {0, 14, 4, 5, 6, 29}) {
    f().Enter(campo(indice));
    Olvida();
    Tecla(f(), "F5");
    EXPECT_EQ(Numeros(), std::vector<int>{mensaje::EntradaSinConcepto}) << indice;
    EXPECT_TRUE(f().Procesando) << indice;
  }
}

// ---- the concept ----

TEST_F(Encabezado, AConceptShowsItsDescriptionAndSetsTheWorkingDateAgain) {
  f().DTPicker1.Value(data::Date{2024, 1, 15});
  campo(campo::Concepto).Text("COM");
  EXPECT_EQ(f().RichTextBox3.Text(), "Compra a proveedor");
  EXPECT_EQ(f().DTPicker1.Value(), reloj.date);
  EXPECT_EQ(bitacora.sentencias.back(), "SELECT * FROM tipominv WHERE tipo_movim = 'COM' AND ent_sal = 'E'");
}

TEST_F(Encabezado, TheDescriptionIsTakenAsItStands) {
  Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES (?, ?, ?)", {"DEV", "E", "  Devolución  "});
  campo(campo::Concepto).Text("DEV");
  EXPECT_EQ(f().RichTextBox3.Text(), "  Devolución  ");
}

TEST_F(Encabezado, AnEmptyConceptEmptiesTheDescriptionAndAsksNothing) {
  campo(campo::Concepto).Text("COM");
  f().DTPicker1.Value(data::Date{2024, 1, 15});
  Olvida();
  campo(campo::Concepto).Text("");
  EXPECT_EQ(f().RichTextBox3.Text(), "");
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_EQ(f().DTPicker1.Value(), (data::Date{2024, 1, 15}));
}

TEST_F(Encabezado, AnUnknownConceptAndOneForGoodsOutShowNothingAndKeepTheDate) {
  f().DTPicker1.Value(data::Date{2024, 1, 15});
  for (const char* clave : {"ZZZ", "VTA"}) {
    f().RichTextBox3.Text("otra");
    campo(campo::Concepto).Text(clave);
    EXPECT_EQ(f().RichTextBox3.Text(), "") << clave;
    EXPECT_EQ(f().DTPicker1.Value(), (data::Date{2024, 1, 15}));
  }
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(Encabezado, EveryChangeOfTheConceptLooksItUp) {
  Teclea(f(), campo(campo::Concepto), "com");
  EXPECT_EQ(CuentaSentencias("SELECT * FROM tipominv WHERE"), 3);
}

TEST_F(Encabezado, AConceptThatCannotBeReadIsReportedAndShowsNothing) {
  f().RichTextBox3.Text("otra");
  bitacora.Falla("FROM tipominv", 1, "no se lee");
  campo(campo::Concepto).Text("COM");
  ASSERT_EQ(Reportes().size(), 2u);
  EXPECT_EQ(Reportes()[0], Reporte("TraeConcepto", "no se lee"));
  EXPECT_EQ(f().RichTextBox3.Text(), "");
}

TEST_F(Encabezado, AQuoteInAConceptIsReportedAndHarmsNothing) {
  campo(campo::Concepto).Text("C'");
  ASSERT_FALSE(Reportes().empty());
  EXPECT_EQ(Reportes()[0].find("Module: frmEntradasWi\r\nFunction: TraeConcepto"), 0u);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM tipominv"), "3");
}

// ---- the checks ----

class Revision : public Encabezado {
 protected:
  Revision() {
    campo(campo::Concepto).Text("COM");
    f().Enter(f().fg2);
    Olvida();
  }
  void ExpectRefusal(int mensaje, int indice) {
    bool valido = true;
    f().ValidaTab1(valido);
    EXPECT_FALSE(valido);
    EXPECT_FALSE(f().Valida());
    ASSERT_EQ(Numeros(), (std::vector<int>{mensaje, mensaje}));
    EXPECT_EQ(bitacora.mensajes[0].clase, "mensaje");
    EXPECT_EQ(bitacora.mensajes[0].texto, MensajeDeLaBase(mensaje));
    EXPECT_EQ(bitacora.mensajes[0].estilo, 64);
    EXPECT_EQ(foco(), indice);
  }
};

TEST_F(Revision, AGoodHeaderPasses) {
  bool valido = false;
  f().ValidaTab1(valido);
  EXPECT_TRUE(valido);
  EXPECT_TRUE(f().Valida());
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(CuentaSentencias("SELECT tipo_movim FROM tipominv WHERE tipo_movim = 'COM' AND ent_sal = 'E'"),
            2);
}

TEST_F(Revision, NoConcept) {
  campo(campo::Concepto).Text("  ");
  campo(campo::Almacen).Text("");
  ExpectRefusal(341, 0);
}

TEST_F(Revision, AnUnknownConcept) {
  campo(campo::Concepto).Text("ZZZ");
  campo(campo::Almacen).Text("");
  ExpectRefusal(342, 0);
}

TEST_F(Revision, AConceptForGoodsOut) {
  campo(campo::Concepto).Text("VTA");
  ExpectRefusal(342, 0);
}

TEST_F(Revision, NoWarehouse) {
  campo(campo::Almacen).Text(" ");
  ExpectRefusal(240, 14);
}

TEST_F(Revision, AnUnknownWarehouse) {
  campo(campo::Almacen).Text("99");
  ExpectRefusal(241, 14);
}

TEST_F(Revision, AValidationWhoseQueryFailsRefuses) {
  bitacora.Falla("SELECT tipo_movim", 1, "no se lee");
  EXPECT_FALSE(f().Valida());
  ASSERT_EQ(Reportes().size(), 2u);
  EXPECT_EQ(Reportes()[0], Reporte("ValidaTab1", "no se lee"));
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::EntradaNoExisteConcepto});
  Olvida();
  bitacora.FallaServicio("ExisteClave", 1, "sin catálogo");
  EXPECT_FALSE(f().Valida());
  EXPECT_EQ(Reportes(), Claves_{Reporte("ValidaTab1", "sin catálogo")});
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoExisteAlmacen});
}

TEST_F(Revision, ADateWithALaterClosedMovementIsRefused) {
  f().DTPicker1.Value(data::Date{2024, 2, 10});
  bool valida = false;
  f().ValidaFecha(valida);
  EXPECT_TRUE(valida);
  EXPECT_EQ(bitacora.sentencias.back(),
            "SELECT * FROM movsinv WHERE f_movim > '2024-02-10' And cerrado <> 0 ");
  Sql("INSERT INTO movsinv (operacion, articulo, f_movim, cerrado) VALUES (?, ?, ?, ?)",
      {"EN", "A-100", "2024-02-10", 1});
  Sql("INSERT INTO movsinv (operacion, articulo, f_movim, cerrado) VALUES (?, ?, ?, ?)",
      {"EN", "A-100", "2024-02-11", 0});
  f().ValidaFecha(valida);
  EXPECT_TRUE(valida);
  Sql("INSERT INTO movsinv (operacion, articulo, f_movim, cerrado) VALUES (?, ?, ?, ?)",
      {"EN", "A-100", "2024-02-11", 1});
  f().ValidaFecha(valida);
  EXPECT_FALSE(valida);
  ASSERT_EQ(Numeros(), std::vector<int>{mensaje::PeriodoCerrado});
  EXPECT_EQ(bitacora.mensajes[0].estilo, 64);
  EXPECT_EQ(f().ActiveControl(), &f().DTPicker1);
}

TEST_F(Revision, ADisabledDateIsRefusedWithoutAMove) {
  Sql("INSERT INTO movsinv (operacion, articulo, f_movim, cerrado) VALUES (?, ?, ?, ?)",
      {"EN", "A-100", "2030-01-01", 1});
  f().DTPicker1.Enabled(false);
  bool valida = true;
  f().ValidaFecha(valida);
  EXPECT_FALSE(valida);
  EXPECT_EQ(f().ActiveControl(), &f().fg2);
}

TEST_F(Revision, ADateWhoseQueryFailsIsRefused) {
  bitacora.Falla("FROM movsinv", 1, "no se lee");
  bool valida = true;
  f().ValidaFecha(valida);
  EXPECT_FALSE(valida);
  EXPECT_EQ(Reportes()[0], Reporte("ValidaFecha", "no se lee"));
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::PeriodoCerrado});
}

TEST_F(Revision, TheRateOfACurrencyHasNoFieldsHereAndIsReported) {
  EXPECT_NO_THROW(f().PonTC());
  ASSERT_FALSE(Reportes().empty());
  for (const auto& reporte : Reportes()) {
    EXPECT_EQ(reporte.find("Module: frmEntradasWi\r\nFunction: PonTC\r\n"), 0u) << reporte;
  }
  EXPECT_EQ(CuentaSentencias("SELECT * FROM monedas"), 0);
}

}  // namespace
}  // namespace tarvik::tests
