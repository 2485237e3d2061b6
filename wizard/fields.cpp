// The text fields of both wizards: what a tag does to the keys, what a change, entering, leaving and
// the function keys set off, and the header's lookups.
#include "data/number.h"
#include "data/statement.h"
#include "data/text.h"
#include "forms/keys.h"
#include "wizard/document_wizard.h"

namespace tarvik {

using service::Trampa;

namespace {

// Numbers that F8 leads on from although neither entry row has a field there: an agent's routines call
// txtFields_KeyDown by number, and must find the next field. Goods-out alone has a 7, which is never enabled.
constexpr int kSinCampo7 = 7;
constexpr int kSinCampo22 = 22;
constexpr int kSinCampo23 = 23;

}  // namespace

void DocumentWizard::txtFields_Change(int Index) {
  forms::TextBox& campo = txtFields(Index);
  if (!Visible()) campo.Text(Funciones().FormateaTexto(campo, *Ambiente));
  if (!AlCambiar(Index)) return;
  const int largo = static_cast<int>(data::Length(campo.Text()));
  if (largo > 0 && largo == campo.MaxLength() && Visible()) {
    int tecla = forms::kKeyEnter;
    txtFields_KeyDown(Index, tecla, 0);
  }
}

void DocumentWizard::txtFields_LostFocus(int Index) {
  if (Index == campo::Articulo) {
    Dispara(particular_.antes_de_buscar);
    if (Cancelado()) return;
    PonDescripcion();
  }
  AlSalir(Index);
  forms::TextBox& campo = txtFields(Index);
  campo.Text(Funciones().FormateaTexto(campo, *Ambiente));
}

void DocumentWizard::txtFields_KeyPress(int Index, int& KeyAscii) {
  forms::TextBox& campo = txtFields(Index);
  const std::string& tag = campo.Tag();
  if (tag == "U") {
    KeyAscii = Funciones().TeclaMayuscula(KeyAscii, campo);
  } else if (tag == "N" || tag == "D" || tag == "SD" || tag == "SN") {
    KeyAscii = Funciones().TeclaNumerica(KeyAscii, campo);
  }
}

void DocumentWizard::txtFields_KeyUp(int Index, int KeyCode, int /*Shift*/) {
  if (Index == campo::Articulo || KeyCode != forms::kKeyDown) return;
  service::Ignora ignora;
  forms::TextBox& campo = txtFields(Index);
  // A field outside a search box has no list to show; that is no error of the operator's.
  ignora([&] {
    if (auto* caja = dynamic_cast<forms::SearchBox*>(campo.Container())) caja->ShowData();
  });
  ignora([&] { campo.SelStart(0); });
}

void DocumentWizard::txtFields_DblClick(int Index) {
  forms::TextBox& campo = txtFields(Index);
  std::string titulo;
  switch (Index) {
    case campo::Concepto:
      titulo = particular_.busca_concepto;
      break;
    case campo::Articulo:
      titulo = "Articulos";
      break;
    case campo::Impuesto:
      titulo = "Impuestos por porcentaje";
      break;
    case campo::Almacen:
      titulo = "Almacenes";
      break;
    default:
      break;
  }
  if (!titulo.empty()) {
    auto buscador = host_.NuevoBuscador();
    buscador->Ambiente(*Ambiente);
    buscador->Campo(campo);
    buscador->Muestra(titulo);
  } else if (campo.Tag() == "N") {
    auto auxiliar = host_.NuevoAuxiliar();
    auxiliar->Ambiente(*Ambiente);
    auxiliar->Campo(campo);
    auxiliar->Muestra();
  }
}

void DocumentWizard::PasaA(int campo) {
  if (txtFields.Has(campo) && txtFields(campo).Enabled()) ColocaFoco(txtFields(campo));
}

void DocumentWizard::PasaASeleccionado(int campo) {
  if (!txtFields(campo).Enabled()) return;
  ColocaFoco(txtFields(campo));
  txtFields(campo).SelectAll();
}

bool DocumentWizard::PasaConEnter(int Index) {
  switch (Index) {
    case campo::Concepto:
      PasaA(campo::Almacen);
      return true;
    case campo::Almacen:
      PasaA(campo::Articulo);
      return true;
    case campo::Cantidad:
      PasaASeleccionado(campo::Precio);
      return true;
    case campo::Precio:
      if (!Procesando) LlenaPartida();
      return true;
    case campo::Presentaciones:
      PasaA(campo::UnidadDePresentacion);
      return true;
    case campo::UnidadDePresentacion:
      PasaA(campo::Precio);
      return true;
    default:
      return false;
  }
}

bool DocumentWizard::TomaArticulo() {
  if (Procesando) return false;
  const bool lector = Check4.Value() == 1;
  if (lector) txtFields(campo::Cantidad).Text("1");
  PasaASeleccionado(campo::Cantidad);
  if (al_dejar_articulo && !al_dejar_articulo()) return false;
  if (lector) {
    PonDescripcion();
    LlenaPartida();
  }
  return true;
}

bool DocumentWizard::ArticuloYCantidad(Trampa& intenta) {
  if (intenta.Si([&] { return EstaVacio(campo::Articulo); })) {
    Mensaje(intenta, mensaje::SinArticulo);
    ColocaFoco(txtFields(campo::Articulo));
    return false;
  }
  if (intenta.Si([&] {
        return !Funciones().ExisteClave(txtFields(campo::Articulo).Text(), "ARTICULO", "PRODS",
                                        Ambiente->Conexion());
      })) {
    Mensaje(intenta, mensaje::NoEsArticulo);
    ColocaFoco(txtFields(campo::Articulo));
    return false;
  }
  if (intenta.Si([&] { return NumeroEn(campo::Cantidad) <= 0; })) {
    Mensaje(intenta, mensaje::SinCantidad);
    PasaA(campo::Cantidad);
    return false;
  }
  return true;
}

bool DocumentWizard::PasaPorPresentacion(int Index) {
  switch (Index) {
    case campo::Articulo:
    case campo::Cantidad:
    case campo::Precio:
    case kSinCampo7:
    case campo::Impuesto:
    case kSinCampo22:
    case kSinCampo23:
      PasaA(campo::SegundaClave);
      return true;
    case campo::SegundaClave:
      PasaA(campo::Presentaciones);
      TraeSegundaClave();
      return true;
    case campo::Presentaciones:
      PasaA(campo::UnidadDePresentacion);
      return true;
    case campo::UnidadDePresentacion:
      PasaA(campo::Precio);
      return true;
    default:
      return false;
  }
}

void DocumentWizard::TraeConcepto() {
  Trampa intenta{*this, "TraeConcepto"};
  if (intenta.Si([&] { return EstaVacio(campo::Concepto); })) {
    intenta([&] { RichTextBox3.Text(""); });
    return;
  }
  data::RecordsetRef concepto;
  intenta([&] {
    Abre("SELECT * FROM tipominv WHERE tipo_movim = '" + txtFields(campo::Concepto).Text() +
             "' AND ent_sal = '" + std::string(particular_.ent_sal) + "'",
         concepto);
  });
  if (intenta.Si([&] { return concepto->Eof(); })) {
    intenta([&] { RichTextBox3.Text(""); });
    return;
  }
  intenta([&] {
    const std::string descripcion = data::ToText(concepto->Fields("descrip"));
    RichTextBox3.Text(particular_.recorta_concepto ? data::Trim(descripcion) : descripcion);
  });
  // Picking a concept starts the document over at the working date, whatever date was there.
  PonFechaDeTrabajo(intenta);
}

bool DocumentWizard::Valida() {
  bool valido = false;
  ValidaTab1(valido);
  return valido;
}

void DocumentWizard::ValidaFecha(bool& valida) {
  Trampa intenta{*this, "ValidaFecha"};
  valida = true;
  std::string fecha;
  intenta([&] { fecha = DTPicker1.Value() ? DTPicker1.Value()->Iso() : ""; });
  data::RecordsetRef cerrados;
  intenta([&] {
    Abre("SELECT * FROM movsinv WHERE f_movim > '" + fecha + std::string(particular_.fin_de_valida_fecha),
         cerrados);
  });
  if (intenta.Si([&] { return !cerrados->Eof(); })) {
    Mensaje(intenta, mensaje::PeriodoCerrado);
    if (DTPicker1.Enabled()) ColocaFoco(DTPicker1);
    valida = false;
  }
}

void DocumentWizard::PonTC() {
  Trampa intenta{*this, "PonTC"};
  data::RecordsetRef moneda;
  intenta([&] {
    AbreNuevo("SELECT * FROM monedas WHERE moneda = '" + txtFields(campo::Moneda).Text() + "'", moneda);
  });
  if (intenta.Si([&] { return moneda->Eof(); })) {
    intenta([&] { txtFields(campo::TipoDeCambio).Text(""); });
    return;
  }
  intenta([&] { txtFields(campo::TipoDeCambio).Text(data::ToText(moneda->Fields("Tc"))); });
  // The base currency's rate is 1 by definition, and nobody may change it.
  if (intenta.Si([&] { return data::IsNonZero(moneda->Fields("Base")); })) {
    intenta([&] { txtFields(campo::TipoDeCambio).Enabled(false); });
  }
}

void DocumentWizard::Label10_Click(int Index) {
  Trampa intenta{*this, "Label10_Click"};
  auto alterna = [&](forms::CheckBox& caja) {
    if (caja.Enabled()) intenta([&] { caja.Value(caja.Value() == 1 ? 0 : 1); });
  };
  if (Index == letrero::Pendiente) alterna(Check3);
  if (Index == letrero::Imprimir) alterna(Check2);
}

}  // namespace tarvik
