// The fields of a transfer between stations: entering, leaving with its routine, Enter, Down and the
// searches.
#include "tests/stations/support.h"

namespace tarvik::tests {
namespace {

TEST_F(Estaciones, LeavingAFieldFiresItsKeyWithTheFieldsIndex) {
  frmMovEstaciones& f = Abre();
  for (int campo : {1, 2, 3, 4, 0}) f.Enter(f.txtFields(campo));
  ASSERT_EQ(bitacora.ganchos.size(), 5u);
  const int dejados[] = {0, 1, 2, 3, 4};
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(bitacora.ganchos[i].first, "MOVESTACIONES002");
    EXPECT_EQ(data::ToText(bitacora.ganchos[i].second), std::to_string(dejados[i]));
  }
}

TEST_F(Estaciones, OnlyTheTextFieldsFireAsTheyAreLeft) {
  frmMovEstaciones& f = Abre();
  f.Enter(f.DTPicker1);
  Olvida();
  f.Enter(f.grid);
  f.Enter(f.DTPicker1);
  EXPECT_TRUE(Claves().empty());
}

TEST_F(Estaciones, TheRoutineOfALeftFieldFindsItsTextAndMayFillAnother) {
  Gancho("MOVESTACIONES002", [this](frmMovEstaciones& f) {
    const data::Value campo = std::as_const(anfitrion->Ambiente()).ValorDeGancho();
    if (data::ToText(campo) == "2")
      f.txtFields(campo_de_traspaso::Descripcion)
          .Text("Artículo " + f.txtFields(campo_de_traspaso::Articulo).Text());
  });
  frmMovEstaciones& f = Abre();
  Teclea(f, f.txtFields(campo_de_traspaso::Articulo), "A-100");
  Tecla(f, "Tab");
  EXPECT_EQ(f.txtFields(campo_de_traspaso::Descripcion).Text(), "Artículo A-100");
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Cantidad).HasFocus());
}

TEST_F(Estaciones, EnteringAFieldSelectsItsTextUntrimmed) {
  frmMovEstaciones& f = Abre();
  for (int campo : {1, 2, 3, 4, 0}) {
    f.txtFields(campo).Text("  ñu ");
    f.Enter(f.txtFields(campo));
    EXPECT_EQ(f.txtFields(campo).Text(), "  ñu ") << campo;
    EXPECT_EQ(f.txtFields(campo).SelStart(), 0) << campo;
    EXPECT_EQ(f.txtFields(campo).SelLength(), 5) << campo;
  }
}

TEST_F(Estaciones, EnterGoesOnLikeTab) {
  frmMovEstaciones& f = Abre();
  const std::vector<forms::Control*> orden = {
      &f.txtFields(campo_de_traspaso::Entrega),  &f.txtFields(campo_de_traspaso::Recibe),   &f.DTPicker1,
      &f.txtFields(campo_de_traspaso::Articulo), &f.txtFields(campo_de_traspaso::Cantidad), &f.Command1};
  for (std::size_t i = 0; i + 1 < orden.size(); ++i) {
    ASSERT_TRUE(orden[i]->HasFocus()) << orden[i]->FullName();
    Tecla(f, "Enter");
  }
  EXPECT_TRUE(f.Command1.HasFocus());
  EXPECT_EQ(Claves(), Textos(4, "MOVESTACIONES002"));  // the picker fires none
  f.Enter(f.txtFields(campo_de_traspaso::Descripcion));
  Tecla(f, "Enter");
  EXPECT_FALSE(f.txtFields(campo_de_traspaso::Descripcion).HasFocus());
}

TEST_F(Estaciones, EnterOnTheLineButtonIsItsClick) {
  frmMovEstaciones& f = Abre();
  f.Enter(f.Command1);
  Olvida();
  Tecla(f, "Enter");
  EXPECT_EQ(Claves(), (Textos{"MOVESTACIONES003"}));
  EXPECT_TRUE(f.Command1.HasFocus());
}

TEST_F(Estaciones, DownInTheArticleShowsTheListAndKeepsTheFocus) {
  frmMovEstaciones& f = Abre();
  f.Enter(f.txtFields(campo_de_traspaso::Articulo));
  Olvida();
  bitacora.elige = [](forms::TextBox&) { return std::optional<std::string>("A-100"); };
  Tecla(f, "Down");
  EXPECT_EQ(bitacora.selectores, (Textos{"ListaArticulos||txtFields(2)"}));
  EXPECT_EQ(f.txtFields(campo_de_traspaso::Articulo).Text(), "A-100");
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Articulo).HasFocus());
  EXPECT_TRUE(Claves().empty());  // the article is the routine's once the field is left
  Tecla(f, "Tab");
  EXPECT_EQ(Claves(), (Textos{"MOVESTACIONES002"}));
  EXPECT_EQ(data::ToText(bitacora.ganchos.at(0).second), "2");
}

TEST_F(Estaciones, TheListMayHaveTakenTheFocusAway) {
  frmMovEstaciones& f = Abre();
  f.Enter(f.txtFields(campo_de_traspaso::Articulo));
  bitacora.elige = [&](forms::TextBox&) {
    f.txtFields(campo_de_traspaso::Cantidad).SetFocus();
    return std::optional<std::string>();
  };
  Tecla(f, "Down");
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Articulo).HasFocus());
}

TEST_F(Estaciones, DownInAStationShowsItsSearchWithTheCaretInFront) {
  frmMovEstaciones& f = Abre();
  for (int campo : {0, 1}) {
    f.txtFields(campo).Text("E2");
    f.Enter(f.txtFields(campo));
    f.txtFields(campo).SelStart(2);
    Olvida();
    Tecla(f, "Down");
    EXPECT_EQ(listas, (Textos{f.txtFields(campo).FullName()}));
    EXPECT_EQ(f.txtFields(campo).SelStart(), 0);
    EXPECT_EQ(f.txtFields(campo).SelLength(), 0);
    EXPECT_TRUE(bitacora.selectores.empty());
  }
}

TEST_F(Estaciones, DownInTheOtherFieldsDoesNothing) {
  frmMovEstaciones& f = Abre();
  for (int campo : {3, 4}) {
    f.txtFields(campo).Text("12");
    f.Enter(f.txtFields(campo));
    f.txtFields(campo).SelStart(1);
    Olvida();
    Tecla(f, "Down");
    EXPECT_TRUE(listas.empty()) << campo;
    EXPECT_TRUE(bitacora.selectores.empty()) << campo;
    EXPECT_EQ(f.txtFields(campo).SelStart(), 1) << campo;
    EXPECT_TRUE(f.txtFields(campo).HasFocus()) << campo;
  }
}

TEST_F(Estaciones, OtherKeysOfTheFieldsDoNothing) {
  frmMovEstaciones& f = Abre();
  for (int campo : {0, 1, 2, 3, 4}) {
    f.Enter(f.txtFields(campo));
    Olvida();
    for (const char* tecla : {"Up", "F1", "F2", "F3", "F5", "F8", "F9", "Esc"}) Tecla(f, tecla);
    EXPECT_TRUE(f.txtFields(campo).HasFocus()) << campo;
    EXPECT_TRUE(Claves().empty()) << campo;
    EXPECT_TRUE(listas.empty()) << campo;
    EXPECT_TRUE(bitacora.selectores.empty()) << campo;
    EXPECT_TRUE(f.Open()) << campo;
  }
}

}  // namespace
}  // namespace tarvik::tests
