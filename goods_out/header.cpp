// The text fields of goods-out: keys and entering, the customer and the addresses, the check of the
// header.
#include "data/number.h"
#include "data/text.h"
#include "forms/keys.h"
#include "goods_out/frm_salidas_wizard.h"

namespace tarvik {

using service::Trampa;

bool frmSalidasWizard::AlCambiar(int Index) {
  switch (Index) {
    case 0:
      TraeConcepto();
      break;
    case 3:
      Check5.Value(Funciones().EstaVacio(txtFields(3).Text()) ? 0 : 1);
      break;
    case 6:
      MultiplicaPrecio();
      break;
    case 13:
      return ClienteEncontrado();
    case 24:
      TraeSegundaClave();
      break;
    case 28:
      MultiplicaPorPresentacion();
      break;
    default:
      break;
  }
  return true;
}

bool frmSalidasWizard::ClienteEncontrado() {
  Abre("SELECT cliente, nombre FROM clients WHERE cliente = '" + txtFields(13).Text() + "'", rstClients);
  if (rstClients->Eof()) return false;
  txtFields(15).Text(data::ToText(rstClients->Fields("nombre")));
  llenaDirecciones();
  return true;
}

// All addresses of all customers, each time anew: the operator picks, or types over.
void frmSalidasWizard::llenaDirecciones() {
  data::RecordsetRef direcciones;
  Abre("SELECT * FROM diremb", direcciones);
  for (; !direcciones->Eof(); direcciones->MoveNext()) {
    Combo1.AddItem(data::ToText(direcciones->Fields("direccion")));
  }
}

void frmSalidasWizard::Combo1_Click() { txtFields(17).Text(Combo1.Text()); }

void frmSalidasWizard::txtFields_GotFocus(int Index) {
  forms::TextBox& campo = txtFields(Index);
  campo.Text(data::Trim(campo.Text()));
  campo.SelectAll();
}

void frmSalidasWizard::txtFields_KeyDown(int Index, int& KeyCode, int /*Shift*/) {
  if (KeyCode == forms::kKeyF2) ColocaFoco(txtFields(4));
  if (KeyCode == forms::kKeyF5) return Command5_Click();
  if (KeyCode == forms::kKeyDown && Index == 4) return AbajoEnArticulo();
  if (KeyCode == forms::kKeyUp && UltimaPartida > 0) {
    fg2.Row(UltimaPartida);
    ColocaFoco(fg2);
  }
  if (KeyCode == forms::kKeyF8) PasaPorPresentacion(Index);  // goes on, where goods-in ends
  if (KeyCode == forms::kKeyF2) txtFields_DblClick(Index);
  if (KeyCode != forms::kKeyEnter && KeyCode != forms::kKeyTab) {
    Procesando = false;
    return;
  }
  if (PasaConEnter(Index)) return;
  switch (Index) {
    case 4:
      TomaArticulo();
      break;
    case 13:
      PasaA(17);
      break;
    case 15:
      PasaA(txtFields(16).Enabled() ? 16 : 4);
      break;
    case 16:
      PasaA(4);
      break;
    default:
      break;
  }
}

void frmSalidasWizard::txtFields_KeyPress(int Index, int& KeyAscii) {
  // A presentation that fixes the quantity leaves nothing to type.
  if (Index == 5 && !Vacio(24)) {
    data::RecordsetRef clave;
    Abre("SELECT * FROM clavesadd WHERE clave = '" + txtFields(24).Text() + "'", clave);
    if (!clave->Eof() && !data::IsTrue(clave->Fields("Libre")) && Numero(28) > 0) KeyAscii = 0;
  }
  DocumentWizard::txtFields_KeyPress(Index, KeyAscii);
}

void frmSalidasWizard::ValidaTab1(bool& valido) {
  Trampa intenta{*this, "ValidaTab1"};
  valido = true;
  auto rechaza = [&](int mensaje, int campo) {
    Mensaje(intenta, mensaje);
    ColocaFoco(txtFields(campo));
    valido = false;
  };
  auto sin_almacen = [&](int campo) {
    return intenta.Si([&] {
      return !Funciones().ExisteClave(txtFields(campo).Text(), "ALMACEN", "ALMACEN", Ambiente->Conexion());
    });
  };
  if (intenta.Si([&] { return Vacio(0); })) return rechaza(338, 0);
  data::RecordsetRef concepto;
  intenta([&] {
    Abre("SELECT * FROM tipominv WHERE tipo_movim = '" + txtFields(0).Text() + "' AND ent_sal = 'S'",
         concepto);
  });
  if (intenta.Si([&] { return concepto->Eof(); })) return rechaza(339, 0);
  if (intenta.Si([&] { return Vacio(14); })) return rechaza(240, 14);
  if (sin_almacen(14)) return rechaza(241, 14);
  if (SSCheck1.Value() == 1) {
    if (intenta.Si([&] { return Vacio(2); })) return rechaza(240, 2);
    if (sin_almacen(2)) return rechaza(241, 2);
  }
  if (intenta.Si([&] { return !Vacio(12); })) {
    data::RecordsetRef compra;
    intenta([&] { Abre("SELECT id FROM compra2 WHERE id = " + data::PlainNumber(Numero(12)), compra); });
    if (intenta.Si([&] { return compra->Eof(); })) return rechaza(829, 12);
  }
}

std::string frmSalidasWizard::TraeVends() {
  Trampa intenta{*this, "TraeVends"};
  std::string nombre;
  if (intenta.Si([&] { return Vacio(0); })) return nombre;
  intenta([&] { AbreNuevo("SELECT * FROM vends WHERE vend = '" + txtFields(1).Text() + "'", rstVends); });
  if (intenta.Si([&] { return rstVends->Eof(); })) return nombre;
  intenta([&] { nombre = data::ToText(rstVends->Fields("Nombre")); });
  return nombre;
}

}  // namespace tarvik
