// The end of a document, as far as both wizards share it.
#include "wizard/document_wizard.h"

namespace tarvik {

using service::Trampa;

std::int32_t DocumentWizard::CuantasPartidas() {
  Trampa intenta{*this, "CuantasPartidas"};
  const int ultimo = fg2.Rows() - fg2.FixedRows();
  for (int renglon = 1; renglon <= ultimo; ++renglon) {
    if (intenta.Si([&] { return Funciones().EstaVacio(fg2.TextMatrix(renglon, kColumnaDelArticulo)); }))
      return renglon - 1;
  }
  return ultimo;
}

bool DocumentWizard::Acepta(Trampa& intenta, int pregunta) {
  const std::string texto = TraeMensaje(intenta, host_, Ambiente, pregunta);
  bool acepta = false;
  intenta([&] { Funciones().Pregunta(texto, 1, acepta); });
  return acepta;
}

bool DocumentWizard::FechaEscrita(Trampa& intenta) {
  if (DTPicker1.Value()) return true;
  Mensaje(intenta, mensaje::NoEsFecha);
  if (!DTPicker1.Enabled()) return true;
  ColocaFoco(DTPicker1);
  return false;
}

bool DocumentWizard::FechaAceptada(Trampa& intenta) {
  bool valida = false;
  intenta([&] { Funciones().FechaValida(DTPicker1.Value().value_or(data::Date{}), *Ambiente, valida); });
  return valida;
}

void DocumentWizard::CierraBotones(Trampa& intenta) {
  intenta([&] { Command2.Enabled(false); });
  intenta([&] { Command5.Enabled(false); });
  intenta([&] { GetPlatform().ProcessEvents(); });
}

void DocumentWizard::SinRenglonesQuedaPendiente(Trampa& intenta, int mensaje) {
  if (CuantasPartidas() != 0) return;
  if (Check3.Value() == 0) Mensaje(intenta, mensaje);
  if (Check3.Enabled()) intenta([&] { Check3.Value(1); });
}

void DocumentWizard::MuestraAvance(Trampa& intenta, int cuenta) {
  const struct Despeja {
    std::optional<Avance>& avance;
    ~Despeja() { avance.reset(); }
  } despeja{afectando_};
  intenta([&] {
    const std::string articulo = data::ToText(rstPartidas->Fields("articulo"));
    afectando_ = Avance{cuenta, rstPartidas->RecordCount()};
    RichTextBox1.Text("Afectando: " + articulo + " " + std::to_string(cuenta));
  });
  GetPlatform().Repaint(*this);
}

void DocumentWizard::Imprime(std::string_view procedimiento, std::int32_t numero) {
  Trampa intenta{*this, procedimiento};
  data::RecordsetRef formatos;
  intenta([&] { Abre("SELECT * FROM defform", formatos); });
  if (intenta.Si([&] { return formatos->Eof(); })) {
    Mensaje(intenta, mensaje::SinFormato);
    return;
  }
  std::string formato;
  intenta([&] { formato = data::ToText(formatos->Fields(particular_.campo_de_formato)); });
  intenta([&] { host_.ConsultasCatalogo().ImprimeDocumento(formato, numero, *Ambiente, *this); });
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
