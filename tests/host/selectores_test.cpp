// The pickers: who is asked, with what, and what becomes of the answer.
#include "host/selectores.h"

#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class SelectorDePrueba : public Selector {
 public:
  bool Elige(const std::string& clase, const std::string& titulo, forms::TextBox& campo,
             std::string& elegido) override {
    vistos.push_back(clase + "|" + titulo + "|" + campo.FullName());
    elegido = respuesta;
    return acepta;
  }
  std::vector<std::string> vistos;
  std::string respuesta = "A-100";
  bool acepta = true;
};

class Selectores : public Banco {
 protected:
  Selectores() { opciones.selector = &selector; }
  void SetUp() override {
    Banco::SetUp();
    campo = std::make_unique<forms::TextBox>(*forma, "txtFields", 4);
  }
  void MuestraLosTres() {
    auto buscador = anfitrion->NuevoBuscador();
    buscador->Ambiente(Ambiente());
    buscador->Campo(*campo);
    buscador->Muestra("Articulos");
    auto auxiliar = anfitrion->NuevoAuxiliar();
    auxiliar->Ambiente(Ambiente());
    auxiliar->Campo(*campo);
    auxiliar->Muestra();
    auto lista = anfitrion->NuevaLista();
    lista->Ambiente(Ambiente());
    lista->Campo(*campo);
    lista->Muestra();
  }
  SelectorDePrueba selector;
  std::unique_ptr<forms::TextBox> campo;
};

TEST_F(Selectores, TheChoiceGoesToTheField) {
  MuestraLosTres();
  EXPECT_EQ(selector.vistos,
            (std::vector<std::string>{"BuscadorCatalogo|Articulos|txtFields(4)",
                                      "AuxiliarNumerico||txtFields(4)", "ListaArticulos||txtFields(4)"}));
  EXPECT_EQ(campo->Text(), "A-100");
  EXPECT_EQ(testigo.Veces("Muestra"), 3);
}

TEST_F(Selectores, WithNothingChosenTheFieldStaysAsItIs) {
  campo->Text("antes");
  selector.acepta = false;
  MuestraLosTres();
  EXPECT_EQ(campo->Text(), "antes");
}

TEST_F(Selectores, AnEmptyChoiceEmptiesTheField) {
  campo->Text("antes");
  selector.respuesta = "";
  MuestraLosTres();
  EXPECT_EQ(campo->Text(), "");
}

TEST_F(Selectores, WithoutASelectorAPickerIsClosedWithNothingChosen) {
  opciones.selector = nullptr;
  campo.reset();
  Abre();
  campo = std::make_unique<forms::TextBox>(*forma, "txtFields", 4);
  campo->Text("antes");
  MuestraLosTres();
  EXPECT_EQ(campo->Text(), "antes");
}

TEST_F(Selectores, WithoutAFieldThereIsAnError) {
  EXPECT_EQ(ErrorDe([&] { anfitrion->NuevoAuxiliar()->Muestra(); }),
            "El selector AuxiliarNumerico no tiene campo");
  EXPECT_TRUE(selector.vistos.empty());
}

TEST_F(Selectores, APickerThatIsMadeToFailAsksNobody) {
  testigo.falla_servicio = "Muestra";
  auto buscador = anfitrion->NuevoBuscador();
  buscador->Campo(*campo);
  EXPECT_EQ(ErrorDe([&] { buscador->Muestra("Clientes"); }), "falla provocada");
  EXPECT_TRUE(selector.vistos.empty());
}

}  // namespace
}  // namespace tarvik::host
