// The end of a document, as far as both wizards share it.
#include "wizard/document_wizard.h"

namespace tarvik {

using service::Trampa;

std::int32_t DocumentWizard::CuantasPartidas() {
  Trampa intenta{*this, "CuantasPartidas"};
  const int ultimo = fg2.Rows() - fg2.FixedRows();
  for (int renglon = 1; renglon <= ultimo; ++renglon) {
    if (intenta.Si([&] { return Funciones().EstaVacio(fg2.TextMatrix(renglon, 0)); })) return renglon - 1;
  }
  return ultimo;
}

void DocumentWizard::Imprime(std::string_view procedimiento, std::int32_t numero) {
  Trampa intenta{*this, procedimiento};
  data::RecordsetRef formatos;
  intenta([&] { Abre("SELECT * FROM defform", formatos); });
  if (intenta.Si([&] { return formatos->Eof(); })) {
    Mensaje(intenta, 213);
    return;
  }
  std::string formato;
  intenta([&] { formato = data::ToText(formatos->Fields(particular_.campo_de_formato)); });
  intenta([&] { host_.ConsultasCatalogo().ImprimeDocumento(formato, numero, *Ambiente, *this, false); });
}

void DocumentWizard::Command2_Click() {
  Trampa intenta{*this, "Command2_Click"};
  intenta([&] { Unload(); });
}

void DocumentWizard::Command6_Click() {
  Trampa intenta{*this, "Command6_Click"};
  intenta([&] { LlenaPartida(); });
}

}  // namespace tarvik
