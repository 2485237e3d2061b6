// The stand-in for the list form: its members by name, and what it tells of its calls.
#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class MaestraDePrueba : public Banco {
 protected:
  FormaMaestra& Parent() { return anfitrion->Parent(); }
};

TEST_F(MaestraDePrueba, TheActiveListIsReadByName) {
  Parent().catalogo_activo = "Entradas";
  EXPECT_EQ(Parent().Get("CatalogoActivo"), data::Value("Entradas"));
  EXPECT_EQ(Parent().Get("catalogoactivo"), data::Value("Entradas"));
}

TEST_F(MaestraDePrueba, TheSelectedRowIsRemovedByItsIndex) {
  Parent().elementos = {10, 20, 30};
  Parent().seleccionado = 2;
  const auto list = Parent().Object("lvListView");
  const auto index = list->Object("SelectedItem")->Get("Index");
  EXPECT_EQ(index, data::Value(2));
  list->Object("ListItems")->Call("Remove", {index});
  EXPECT_EQ(Parent().elementos, (std::vector<data::Value>{10, 30}));
  EXPECT_EQ(Parent().seleccionado, 2);
  EXPECT_EQ(list->Object("ListItems")->Get("Count"), data::Value(2));
}

TEST_F(MaestraDePrueba, TheSelectionStaysOnItsRowOrMovesToTheLast) {
  Parent().elementos = {10, 20, 30};
  Parent().seleccionado = 2;
  const auto items = Parent().Object("lvListView")->Object("ListItems");
  items->Call("Remove", {1});
  EXPECT_EQ(Parent().seleccionado, 1);
  Parent().seleccionado = 2;
  items->Call("Remove", {2});
  EXPECT_EQ(Parent().seleccionado, 1);
  items->Call("Remove", {1});
  EXPECT_EQ(Parent().seleccionado, 0);
}

TEST_F(MaestraDePrueba, WithNothingSelectedOrOutsideTheListThereIsAnError) {
  const auto list = Parent().Object("lvListView");
  EXPECT_EQ(ErrorDe([&] { list->Object("SelectedItem"); }), "La lista no tiene ningún renglón seleccionado");
  for (const int row : {0, 1, -1}) {
    EXPECT_EQ(ErrorDe([&] { list->Object("ListItems")->Call("Remove", {row}); }),
              "La lista no tiene el renglón indicado");
  }
}

TEST_F(MaestraDePrueba, TheSevenCallsAreToldWithTheirArguments) {
  const std::vector<std::string> calls = {"LlenaEntradas",          "LlenaEntradasPendientes", "LlenaSalidas",
                                          "LlenaSalidasPendientes", "CreaMenuPopUp",           "ReseteaMenus",
                                          "EstableceMenus"};
  for (const auto& call : calls) Parent().Call(call, {7});
  ASSERT_EQ(testigo.llamadas.size(), calls.size());
  for (std::size_t i = 0; i < calls.size(); ++i) {
    EXPECT_EQ(testigo.llamadas[i].first, calls[i]);
    EXPECT_EQ(testigo.llamadas[i].second, std::vector<data::Value>{7});
  }
  EXPECT_EQ(testigo.servicios, calls);
}

TEST_F(MaestraDePrueba, TakingTheFocusIsAcceptedAndNotToldAsACall) {
  Parent().Call("SetFocus", {});
  EXPECT_TRUE(testigo.llamadas.empty());
}

TEST_F(MaestraDePrueba, AMemberThatItDoesNotHaveIsAnError) {
  EXPECT_EQ(ErrorDe([&] { Parent().Get("Caption"); }), "El objeto Parent no tiene el miembro Caption");
  EXPECT_EQ(ErrorDe([&] { Parent().Object("Caption"); }), "El objeto Parent no tiene el miembro Caption");
  EXPECT_EQ(ErrorDe([&] { Parent().Call("Llena", {}); }), "El objeto Parent no tiene el miembro Llena");
  const auto list = Parent().Object("lvListView");
  EXPECT_EQ(ErrorDe([&] { list->Get("Font"); }), "El objeto lvListView no tiene el miembro Font");
  EXPECT_EQ(ErrorDe([&] { list->Object("ListItems")->Call("Clear", {}); }),
            "El objeto ListItems no tiene el miembro Clear");
}

TEST_F(MaestraDePrueba, ACallThatIsMadeToFailIsNotTold) {
  testigo.falla_servicio = "LlenaEntradas";
  EXPECT_EQ(ErrorDe([&] { Parent().Call("LlenaEntradas", {1}); }), "falla provocada");
  EXPECT_TRUE(testigo.llamadas.empty());
}

}  // namespace
}  // namespace tarvik::host
