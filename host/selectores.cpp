// The pickers of the stand-alone host.
#include "host/selectores.h"

#include "data/error.h"

namespace tarvik::host {

void SelectorDeCampo::Muestra(const std::string& clase, const std::string& title) {
  testigo_.Servicio("Muestra");
  if (field_ == nullptr) throw data::Error("El selector " + clase + " no tiene campo");
  std::string chosen;
  if (selector_.Elige(clase, title, *field_, chosen)) field_->Text(chosen);
}

void BuscadorLocal::Muestra(const std::string& title) { common_.Muestra("BuscadorCatalogo", title); }

void AuxiliarLocal::Muestra() { common_.Muestra("AuxiliarNumerico", ""); }

void ListaLocal::Muestra() { common_.Muestra("ListaArticulos", ""); }

}  // namespace tarvik::host
