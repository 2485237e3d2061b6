// The header of goods-in and the rules that all its text fields share: tags and keys, change, entering and
// leaving, the maximum length, the concept's lookup. Keys that lead on or open a list: header_keys_test.cpp.
#include "tests/goods_in/header.h"

namespace tarvik::tests {
namespace {

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
  EXPECT_EQ(no_atrapados, Textos{"sin filtro"});
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
  EXPECT_EQ(Claves(), (Textos{"ENTRADA012", "ENTRADA009", "ENTRADA007", "ENTRADA008"}));
  EXPECT_EQ(campo(campo::Descripcion).Text(), "Martillo de uña");
}

TEST_F(Encabezado, ACancelledArticleEndsAllOfTheLeavingLogic) {
  Gancho("ENTRADA012", [](frmEntradasWizard& g) { g.CancelaProceso = true; });
  f().Enter(campo(campo::Articulo));
  campo(campo::Articulo).Text("A-100");
  Olvida();
  f().Enter(campo(campo::Almacen));
  EXPECT_EQ(Claves(), (Textos{"ENTRADA012", "ENTRADA008"}));
  EXPECT_EQ(campo(campo::Descripcion).Text(), "");
  EXPECT_FALSE(f().CancelaProceso);
  EXPECT_EQ(foco(), 14);
}

TEST_F(Encabezado, AHookThatFailsOnLeavingIsNoReportAndTheFocusMoves) {
  Gancho("ENTRADA007", [](frmEntradasWizard&) { throw data::Error("rutina"); });
  f().Enter(campo(campo::Almacen));
  EXPECT_EQ(no_atrapados, Textos{"rutina"});
  EXPECT_TRUE(Reportes().empty());
  EXPECT_EQ(foco(), 14);
  EXPECT_EQ(Claves().back(), "ENTRADA008");
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

}  // namespace
}  // namespace tarvik::tests
