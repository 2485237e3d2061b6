// Texts that would break or widen a statement, in every field of goods-out. A line that was made is never
// lost by any of them. In the catalogue: hostile_catalogue_test.cpp.
#include "goods_out/columnas.h"
#include "tests/goods_out/hostiles.h"

namespace tarvik::tests {
namespace {

const Hostil kHostiles[] = {
    {"Quote", "O'Hara", Efecto::Rompe},
    {"TwoQuotes", "O''Hara", Efecto::OtroTexto},
    {"Semicolon", "a;b", Efecto::Ninguno},
    {"Dashes", "a--b", Efecto::Ninguno},
    {"DashesAfter", "a' --", Efecto::Rompe},
    {"SecondStatement", "a'; DELETE FROM salidas; --", Efecto::Rompe},
    {"SecondStatementWithoutAQuote", "7; DELETE FROM salpart", Efecto::Ninguno},
    {"Condition", "zz' OR '1'='2", Efecto::OtroTexto},
    {"Union", "zz' UNION SELECT 1, 2 --", Efecto::Rompe},
    {"Comment", "a' /* b", Efecto::Rompe},
    {"Backslashes", "\\n\\0\\x41\\", Efecto::Ninguno},
    {"BackslashBeforeQuote", "C:\\caja\\'", Efecto::Rompe},
    {"OtherQuotes", "a]b[c`d\"e", Efecto::Ninguno},
    {"Wildcards", "%_*?", Efecto::Ninguno},
    {"Long", std::string(10000, 'x'), Efecto::Ninguno},
    {"LongQuotes", std::string(10001, '\''), Efecto::Rompe},
    {"Controls", "a\x01\x07\x1b\x7f\tb", Efecto::Ninguno},
    {"OtherScripts", "Склад 大阪 مخزن", Efecto::Ninguno},
    {"Emoji", "\U0001F528\U0001F4E6\U0001F469\u200D\U0001F527", Efecto::Ninguno},
    {"RightToLeft", "\u202Eatsil\u202C", Efecto::Ninguno},
    {"InvalidUtf8", "\xff\xfe\xc3", Efecto::Ninguno},
};

// ---- the header ----

TEST_P(TextosHostilesDeSalida, AsAConceptItIsRefusedAtTheFinishAndMended) {
  frmSalidasWizard& f = ConUnRenglon();
  Pega(f, f.txtFields(campo::Concepto));
  EXPECT_EQ(f.txtFields(campo::Concepto).Text(), Texto());
  EXPECT_EQ(f.RichTextBox3.Text(), "");
  EXPECT_EQ(Fallas(), SiRompe({{"TraeConcepto", 2}}));  // the reading, and what was to be read
  FinalizaYSeRechaza(f, 0, MensajeDeLaBase(mensaje::SalidaNoExisteConcepto));
  EXPECT_EQ(Fallas(), SiRompe({{"ValidaTab1", 2}}));
  Escribe(f, 0, "VTA");
  TerminaBien(f);
  EXPECT_TRUE(no_atrapados.empty());
}

// The warehouse stands in the statements without quotes.
TEST_P(TextosHostilesDeSalida, AsAWarehouseItCostsTheStockColumnAndNoLine) {
  frmSalidasWizard& f = ConUnRenglon();
  Pega(f, f.txtFields(campo::Almacen));
  Linea(f, "A-200", "1");
  EXPECT_EQ(Fallas(), (Cuenta{{"CreaPartida", 2}}));
  EXPECT_EQ(Celda(f, 2, columna_salida::Articulo), "A-200");
  EXPECT_EQ(Celda(f, 2, columna_salida::Existencia), "-1");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart WHERE salida = 1"), "2");
  FinalizaYSeRechaza(f, 14, MensajeDeLaBase(mensaje::NoExisteAlmacen));
  EXPECT_EQ(Fallas(), Cuenta{});
  Escribe(f, 14, "1");
  TerminaBien(f, 2);
}

TEST_P(TextosHostilesDeSalida, AsATargetItIsRefusedWithTheMarkAndNoWarehouseWithoutIt) {
  frmSalidasWizard& f = ConUnRenglon();
  f.Click(f.SSCheck1);
  Pega(f, f.txtFields(campo::AlmacenDestino));
  FinalizaYSeRechaza(f, 2, MensajeDeLaBase(mensaje::NoExisteAlmacen));
  EXPECT_EQ(Fallas(), Cuenta{});
  f.Click(f.SSCheck1);
  EXPECT_EQ(f.txtFields(campo::AlmacenDestino).Text(), Texto());
  TerminaBien(f);
  EXPECT_EQ(Uno("SELECT almt FROM salidas WHERE salida = 1"), "0");
}

TEST_P(TextosHostilesDeSalida, AsABranchItIsRefusedAndClearingItTakesTheMarkOff) {
  frmSalidasWizard& f = ConUnRenglon();
  Pega(f, f.txtFields(campo::Sucursal));
  EXPECT_EQ(f.Check5.Value(), 1);
  FinalizaYSeRechaza(f, 3, "No existe la sucursal indicada");
  EXPECT_EQ(Fallas(), Cuenta{});
  Escribe(f, 3, "");
  EXPECT_EQ(f.Check5.Value(), 0);
  TerminaBien(f);
  EXPECT_EQ(Uno("SELECT sucursal FROM salidas WHERE salida = 1"), "");
}

TEST_P(TextosHostilesDeSalida, AsAStationItIsRefusedWithTheMarkAndNotStoredWithoutIt) {
  frmSalidasWizard& f = ConUnRenglon();
  f.Click(f.SSCheck2);
  Pega(f, f.txtFields(campo::EstacionDestino));
  FinalizaYSeRechaza(f, 9, "No existe la estación de trabajo");
  EXPECT_EQ(Fallas(), Cuenta{});
  f.Click(f.SSCheck2);
  TerminaBien(f);
  EXPECT_EQ(Uno("SELECT estaciontraspaso FROM salidas WHERE salida = 1"), "(nulo)");
}

// The customer's change has no trap: what fails there goes to the platform, once for each change.
TEST_P(TextosHostilesDeSalida, AsACustomerItIsToldOnceAndRefusedAtTheFinish) {
  frmSalidasWizard& f = ConUnRenglon();
  Pega(f, f.txtFields(campo::Cliente));
  EXPECT_EQ(no_atrapados.size(), Rompe() ? 1u : 0u);
  EXPECT_EQ(f.txtFields(campo::NombreDelCliente).Text(), "");
  EXPECT_TRUE(f.Combo1.List().empty());
  FinalizaYSeRechaza(f, 13, "El cliente indicado no existe");
  EXPECT_EQ(Fallas(), Cuenta{});
  Escribe(f, 13, "C1");
  EXPECT_EQ(f.txtFields(campo::NombreDelCliente).Text(), "Ferretería del Sur");
  TerminaBien(f);
  EXPECT_EQ(Uno("SELECT cliente FROM salidas WHERE salida = 1"), "C1");
}

TEST_P(TextosHostilesDeSalida, AsAnEmployeeItIsRefusedWithTheMarkAndKeptToTheLetterWithoutIt) {
  frmSalidasWizard& f = ConUnRenglon();
  f.Click(f.Check1);
  Pega(f, f.txtFields(campo::Empleado));
  FinalizaYSeRechaza(f, 16, "No se encuentra el empleado indicado");
  EXPECT_EQ(Fallas(), Cuenta{});
  f.Click(f.Check1);
  TerminaBien(f);
  EXPECT_EQ(Uno("SELECT empleado FROM salidas WHERE salida = 1"), Texto());
}

TEST_P(TextosHostilesDeSalida, AsAPurchaseItIsRefusedAndMended) {
  frmSalidasWizard& f = ConUnRenglon();
  Pega(f, f.txtFields(campo::Compra));
  FinalizaYSeRechaza(f, 12, MensajeDeLaBase(mensaje::NoExisteCompra));
  EXPECT_EQ(Fallas(), Cuenta{});
  Escribe(f, 12, "55");
  TerminaBien(f);
}

TEST_P(TextosHostilesDeSalida, InTheFreeTextsItIsStoredToTheLetter) {
  frmSalidasWizard& f = ConUnRenglon();
  forms::TextBox* const libres[] = {&f.RichTextBox2, &f.RichTextBox3,
                                    &f.txtFields(campo::DireccionDeEmbarque),
                                    &f.txtFields(campo::NombreDelCliente)};
  for (forms::TextBox* libre : libres) {
    libre->Text("");
    Pega(f, *libre);
    EXPECT_EQ(libre->Text(), Texto()) << libre->FullName();
  }
  EXPECT_EQ(Fallas(), Cuenta{});
  TerminaBien(f);
  EXPECT_EQ(Uno("SELECT observ FROM salidas WHERE salida = 1"), Texto());
  EXPECT_EQ(Uno("SELECT datos FROM salidas WHERE salida = 1"), Texto());
  EXPECT_EQ(Uno("SELECT direccionembarque FROM salidas WHERE salida = 1"), Texto());
  // And comes back as it was, to be corrected another day.
  frmSalidasWizard& g = ModificaSalida(1);
  EXPECT_EQ(g.RichTextBox2.Text(), Texto());
  EXPECT_EQ(g.txtFields(campo::DireccionDeEmbarque).Text(), Texto());
}

// ---- the entry row ----

TEST_P(TextosHostilesDeSalida, AsAnArticleItIsRefusedAndTheNextLineIsMade) {
  frmSalidasWizard& f = ConUnRenglon();
  Pega(f, f.txtFields(campo::Articulo));
  Tecla(f, "Enter");
  // The record of the article before is still in hand, so only the reading itself fails.
  EXPECT_EQ(Fallas(), SiRompe({{"PonDescripcion", 1}}));
  f.txtFields(campo::Cantidad).Text("1");
  Olvida();
  Tecla(f, "F9");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoEsArticulo});
  EXPECT_EQ(Fallas(), Cuenta{});
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), Texto());
  Escribe(f, 4, "A-200");
  Tecla(f, "Enter");
  Tecla(f, "F9");
  EXPECT_TRUE(no_atrapados.empty());
  TerminaBien(f, 2);
  EXPECT_EQ(Uno("SELECT precio FROM salpart WHERE articulo = 'A-200'"), "50");  // 43.10 and its tax
}

TEST_P(TextosHostilesDeSalida, AsTheFirstArticleOfTheDayNothingIsWritten) {
  frmSalidasWizard& f = ConConcepto();
  Olvida();
  Pega(f, f.txtFields(campo::Articulo));
  Tecla(f, "Enter");
  // Both lookups, and what each was to bring.
  EXPECT_EQ(Fallas(), SiRompe({{"PonDescripcion", 4}}));
  f.txtFields(campo::Cantidad).Text("1");
  Tecla(f, "F9");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salidas"), "1");  // the other one's
  EXPECT_EQ(f.Modo, "ALTA");
}

TEST_P(TextosHostilesDeSalida, AsASecondKeyItResolvesNothingAndIsKeptOnTheLine) {
  frmSalidasWizard& f = ConUnRenglon();
  Pega(f, f.txtFields(campo::SegundaClave));
  EXPECT_EQ(Fallas(), SiRompe({{"TraeSegundaClave", 2}}));
  Tecla(f, "F8");
  EXPECT_EQ(Fallas(), SiRompe({{"TraeSegundaClave", 4}}));
  EXPECT_TRUE(f.txtFields(campo::Presentaciones).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Dato1).Text(), "");
  Escribe(f, 4, "A-200");
  Tecla(f, "Enter");
  f.txtFields(campo::Cantidad).Text("");
  Olvida();
  Tecla(f, "2");
  // The filter of the quantity's keys has no trap; the key is typed all the same.
  EXPECT_EQ(no_atrapados.size(), Rompe() ? 1u : 0u);
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "2");
  Tecla(f, "F9");
  EXPECT_EQ(Uno("SELECT claveadd FROM salpart WHERE salida = 1 AND articulo = 'A-200'"), Texto());
  TerminaBien(f, 2);
}

TEST_P(TextosHostilesDeSalida, AsAQuantityItIsZeroAndRefused) {
  frmSalidasWizard& f = ConUnRenglon();
  Escribe(f, 4, "A-200");
  Tecla(f, "Enter");
  f.txtFields(campo::Cantidad).SelectAll();
  f.Paste(GetParam().texto);
  Olvida();
  Tecla(f, "F9");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinCantidad});
  EXPECT_EQ(Fallas(), Cuenta{});
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
  Escribe(f, 5, "4");
  Tecla(f, "F9");
  TerminaBien(f, 2);
}

TEST_P(TextosHostilesDeSalida, AsAPriceOrACountItIsZeroAndTheLineIsMade) {
  frmSalidasWizard& f = ConUnRenglon();
  Escribe(f, 4, "A-200");
  Tecla(f, "Enter");
  for (int campo : {6, 28, 26, 27, 29}) Escribe(f, campo, GetParam().texto);
  Olvida();
  Tecla(f, "F9");
  EXPECT_EQ(Fallas(), Cuenta{});
  EXPECT_EQ(Uno("SELECT precio FROM salpart WHERE articulo = 'A-200' AND salida = 1"), "0");
  EXPECT_EQ(Uno("SELECT prcantidad FROM salpart WHERE articulo = 'A-200' AND salida = 1"), "0");
  TerminaBien(f, 2);
}

TEST_P(TextosHostilesDeSalida, AsAPresentationItStandsOnTheLineToTheLetter) {
  frmSalidasWizard& f = ConUnRenglon();
  Escribe(f, 4, "A-200");
  Tecla(f, "Enter");
  Escribe(f, 25, GetParam().texto);
  Olvida();
  Tecla(f, "F9");
  EXPECT_EQ(Fallas(), Cuenta{});
  EXPECT_EQ(Uno("SELECT prdescrip FROM salpart WHERE articulo = 'A-200' AND salida = 1"), Texto());
  EXPECT_EQ(Uno("SELECT observ FROM salpart WHERE articulo = 'A-200' AND salida = 1"),
            "Clavo a granel " + Texto());
  TerminaBien(f, 2);
}

TEST_P(TextosHostilesDeSalida, InACellItIsAQuantityOfZeroAndTheLineStays) {
  frmSalidasWizard& f = ConUnRenglon();
  f.ClickCell(f.fg2, 1, 1);
  Tecla(f, "Space");
  f.txtEdit.SelectAll();
  f.Paste(GetParam().texto);
  Olvida();
  Tecla(f, "Enter");
  EXPECT_EQ(Fallas(), Cuenta{});
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart WHERE salida = 1"), "0");
  EXPECT_EQ(f.txtFields(campo::Unidades).Text(), "0");
  f.ClickCell(f.fg2, 1, 1);
  Tecla(f, "3");
  Tecla(f, "Enter");
  TerminaBien(f);
}

std::string NombreDeHostil(const ::testing::TestParamInfo<Hostil>& info) { return info.param.nombre; }

INSTANTIATE_TEST_SUITE_P(Text, TextosHostilesDeSalida, ::testing::ValuesIn(kHostiles), NombreDeHostil);

}  // namespace
}  // namespace tarvik::tests
