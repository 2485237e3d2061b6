// Down in the article field, on both wizards, with a key that is no model's: it opens the list of articles.
#include "data/text.h"
#include "tests/wizard/malla_externa.h"

namespace tarvik::tests {
namespace {

class SinModelo : public MallaExterna {};

TEST_P(SinModelo, AnyOtherKeyOpensTheListAndTheQuantityIsNext) {
  for (const char* clave : {"", "   ", "A-100", "PAN", "NADA", "cam-x"}) {
    DocumentWizard& f = Pantalla(clave);
    std::string valor = "sin tocar";
    bitacora.elige = [&](forms::TextBox& campo) -> std::optional<std::string> {
      EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
      valor = campo.Text();
      f.txtFields(campo::Cantidad).Text("12");
      return std::nullopt;
    };
    Abajo(f);
    EXPECT_EQ(bitacora.selectores, (Textos{"ListaArticulos||txtFields(4)"})) << clave;
    EXPECT_EQ(valor, clave);
    EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus()) << clave;
    EXPECT_EQ(f.txtFields(campo::Cantidad).SelStart(), 0) << clave;
    EXPECT_EQ(static_cast<std::size_t>(f.txtFields(campo::Cantidad).SelLength()),
              f.txtFields(campo::Cantidad).Text().size())
        << clave;
    EXPECT_EQ(CuentaSentencias("select * from modelos"), data::Trim(clave).empty() ? 0 : 1) << clave;
    EXPECT_EQ(CuentaSentencias("exec"), 0) << clave;
    EXPECT_EQ(CuentaSentencias("select * from ControlProc"), 0) << clave;
    EXPECT_EQ(Uno(std::string("SELECT COUNT(*) FROM ") + GetParam().tabla), "0") << clave;
    EXPECT_TRUE(no_atrapados.empty()) << clave;
    auto claves = Claves();
    EXPECT_EQ(std::count(claves.begin(), claves.end(), "TALLASYCOLORES001"), 0) << clave;
    f.Discard();
  }
}

TEST_P(SinModelo, TheQuantityIsSelectedWhereverTheListLeftTheFocus) {
  DocumentWizard& f = Pantalla("NADA");
  f.txtFields(campo::Cantidad).Text("12");
  bitacora.elige = [&](forms::TextBox&) {
    f.txtFields(campo::Cantidad).SetFocus();
    f.txtFields(campo::Cantidad).SelStart(1);
    return std::optional<std::string>();
  };
  Abajo(f);
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Cantidad).SelStart(), 0);
  EXPECT_EQ(f.txtFields(campo::Cantidad).SelLength(), 2);
}

TEST_P(SinModelo, TheArticleChosenGoesToTheFieldAndIsLookedUpAsItIsLeft) {
  DocumentWizard& f = Pantalla("");
  bitacora.elige = [](forms::TextBox&) { return std::optional<std::string>("A-100"); };
  Abajo(f);
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Martillo de uña");
  EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
}

TEST_P(SinModelo, AModelIsKnownByItsWholeKey) {
  DocumentWizard& f = Pantalla("CA");
  Abajo(f);
  EXPECT_EQ(bitacora.selectores.size(), 1u);
}

TEST_P(SinModelo, DownElsewhereIsNoMatrix) {
  DocumentWizard& f = Pantalla();
  Tecla(f, "Down", f.txtFields(campo::Cantidad));
  EXPECT_EQ(CuentaSentencias("select * from modelos"), 0);
  EXPECT_TRUE(bitacora.selectores.empty());
}

INSTANTIATE_TEST_SUITE_P(Both, SinModelo, ::testing::ValuesIn(kLados), NombreDelLado);

}  // namespace
}  // namespace tarvik::tests
