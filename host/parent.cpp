// The stand-in for the host's list form. It keeps the document numbers of a list; what a list shows
// of them is up to whoever listens, by the witness or by al_llamar.
#include <algorithm>
#include <array>

#include "data/error.h"
#include "data/text.h"
#include "host/anfitrion.h"

namespace tarvik::host {
namespace {

[[noreturn]] void NoTiene(const std::string& object, std::string_view member) {
  throw data::Error("El objeto " + object + " no tiene el miembro " + std::string(member));
}

// Each of these lives only as long as one expression of its caller.
class FilaElegida : public service::LateBound {
 public:
  explicit FilaElegida(FormaMaestra& form) : form_(form) {}
  data::Value Get(std::string_view name) override {
    if (data::EqualsNoCase(name, "Index")) return form_.seleccionado;
    NoTiene("SelectedItem", name);
  }
  std::shared_ptr<LateBound> Object(std::string_view name) override { NoTiene("SelectedItem", name); }
  void Call(std::string_view name, const std::vector<data::Value>&) override {
    NoTiene("SelectedItem", name);
  }

 private:
  FormaMaestra& form_;
};

class Elementos : public service::LateBound {
 public:
  explicit Elementos(FormaMaestra& form) : form_(form) {}
  data::Value Get(std::string_view name) override {
    if (data::EqualsNoCase(name, "Count")) return form_.elementos.size();
    NoTiene("ListItems", name);
  }
  std::shared_ptr<LateBound> Object(std::string_view name) override { NoTiene("ListItems", name); }
  void Call(std::string_view name, const std::vector<data::Value>& arguments) override {
    if (!data::EqualsNoCase(name, "Remove") || arguments.size() != 1) NoTiene("ListItems", name);
    const double position = data::ToNumber(arguments.front());
    const auto count = static_cast<int>(form_.elementos.size());
    if (position < 1 || position > count) throw data::Error("La lista no tiene el renglón indicado");
    const int row = static_cast<int>(position);
    form_.elementos.erase(form_.elementos.begin() + (row - 1));
    if (row < form_.seleccionado) --form_.seleccionado;
    form_.seleccionado = std::min(form_.seleccionado, count - 1);
  }

 private:
  FormaMaestra& form_;
};

class Lista : public service::LateBound {
 public:
  explicit Lista(FormaMaestra& form) : form_(form) {}
  data::Value Get(std::string_view name) override { NoTiene("lvListView", name); }
  std::shared_ptr<LateBound> Object(std::string_view name) override {
    if (data::EqualsNoCase(name, "ListItems")) return std::make_shared<Elementos>(form_);
    if (data::EqualsNoCase(name, "SelectedItem")) {
      const auto count = static_cast<int>(form_.elementos.size());
      if (form_.seleccionado < 1 || form_.seleccionado > count) {
        throw data::Error("La lista no tiene ningún renglón seleccionado");
      }
      return std::make_shared<FilaElegida>(form_);
    }
    NoTiene("lvListView", name);
  }
  void Call(std::string_view name, const std::vector<data::Value>&) override { NoTiene("lvListView", name); }

 private:
  FormaMaestra& form_;
};

}  // namespace

data::Value FormaMaestra::Get(std::string_view name) {
  testigo_.Servicio(name);
  if (data::EqualsNoCase(name, "CatalogoActivo")) return catalogo_activo;
  NoTiene("Parent", name);
}

std::shared_ptr<service::LateBound> FormaMaestra::Object(std::string_view name) {
  testigo_.Servicio(name);
  if (data::EqualsNoCase(name, "lvListView")) return std::make_shared<Lista>(*this);
  NoTiene("Parent", name);
}

void FormaMaestra::Call(std::string_view name, const std::vector<data::Value>& arguments) {
  testigo_.Servicio(name);
  static constexpr std::array<std::string_view, 7> kCalls = {
      "LlenaEntradas", "LlenaEntradasPendientes", "LlenaSalidas", "LlenaSalidasPendientes", "CreaMenuPopUp",
      "ReseteaMenus",  "EstableceMenus"};
  for (const auto call : kCalls) {
    if (data::EqualsNoCase(call, name)) {
      testigo_.LlamadaDeParent(call, arguments);
      if (al_llamar) al_llamar(call, arguments);
      return;
    }
  }
  // The list form takes the focus where it has a window.
  if (data::EqualsNoCase(name, "SetFocus")) {
    if (al_llamar) al_llamar("SetFocus", arguments);
    return;
  }
  NoTiene("Parent", name);
}

}  // namespace tarvik::host
