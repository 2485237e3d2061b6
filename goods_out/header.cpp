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
    case campo::Concepto:
      TraeConcepto();
      break;
    case campo::Sucursal:
      Check5.Value(Funciones().EstaVacio(txtFields(campo::Sucursal).Text()) ? 0 : 1);
      break;
    case campo::Precio:
      MultiplicaPrecio();
      break;
    case campo::Cliente:
      return ClienteEncontrado();
    case campo::SegundaClave:
      TraeSegundaClave();
      break;
    case campo::Presentaciones:
      MultiplicaPorPresentacion();
      break;
    default:
      break;
  }
  return true;
}

bool frmSalidasWizard::ClienteEncontrado() {
  Abre("SELECT cliente, nombre FROM clients WHERE cliente = '" + txtFields(campo::Cliente).Text() + "'",
       rstClients);
  if (rstClients->Eof()) return false;
  txtFields(campo::NombreDelCliente).Text(data::ToText(rstClients->Fields("nombre")));
  llenaDirecciones();
  return true;
}

// All addresses of all customers, added again each time: the operator picks, or types over.
void frmSalidasWizard::llenaDirecciones() {
  data::RecordsetRef direcciones;
  Abre("SELECT * FROM diremb", direcciones);
  for (; !direcciones->Eof(); direcciones->MoveNext()) {
    Combo1.AddItem(data::ToText(direcciones->Fields("direccion")));
  }
}

void frmSalidasWizard::Combo1_Click() { txtFields(campo::DireccionDeEmbarque).Text(Combo1.Text()); }

void frmSalidasWizard::txtFields_GotFocus(int Index) {
  forms::TextBox& campo = txtFields(Index);
  campo.Text(data::Trim(campo.Text()));
  campo.SelectAll();
}

void frmSalidasWizard::txtFields_KeyDown(int Index, int& KeyCode, int /*Shift*/) {
  if (KeyCode == forms::kKeyF2) ColocaFoco(txtFields(campo::Articulo));
  if (KeyCode == forms::kKeyF5) return Command5_Click();
  if (KeyCode == forms::kKeyDown && Index == campo::Articulo) return AbajoEnArticulo();
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
    case campo::Articulo:
      TomaArticulo();
      break;
    case campo::Cliente:
      PasaA(campo::DireccionDeEmbarque);
      break;
    case campo::NombreDelCliente:
      PasaA(txtFields(campo::Empleado).Enabled() ? campo::Empleado : campo::Articulo);
      break;
    case campo::Empleado:
      PasaA(campo::Articulo);
      break;
    default:
      break;
  }
}

void frmSalidasWizard::txtFields_KeyPress(int Index, int& KeyAscii) {
  // A presentation that fixes the quantity leaves nothing to type.
  if (Index == campo::Cantidad && !EstaVacio(campo::SegundaClave)) {
    data::RecordsetRef clave;
    Abre("SELECT * FROM clavesadd WHERE clave = '" + txtFields(campo::SegundaClave).Text() + "'", clave);
    if (!clave->Eof() && !data::IsTrue(clave->Fields("Libre")) && NumeroEn(campo::Presentaciones) > 0)
      KeyAscii = 0;
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
  if (intenta.Si([&] { return EstaVacio(campo::Concepto); }))
    return rechaza(mensaje::SalidaSinConcepto, campo::Concepto);
  data::RecordsetRef concepto;
  intenta([&] {
    Abre("SELECT * FROM tipominv WHERE tipo_movim = '" + txtFields(campo::Concepto).Text() +
             "' AND ent_sal = 'S'",
         concepto);
  });
  if (intenta.Si([&] { return concepto->Eof(); }))
    return rechaza(mensaje::SalidaNoExisteConcepto, campo::Concepto);
  if (intenta.Si([&] { return EstaVacio(campo::Almacen); }))
    return rechaza(mensaje::SinAlmacen, campo::Almacen);
  if (sin_almacen(campo::Almacen)) return rechaza(mensaje::NoExisteAlmacen, campo::Almacen);
  if (SSCheck1.Value() == 1) {
    if (intenta.Si([&] { return EstaVacio(campo::AlmacenDestino); }))
      return rechaza(mensaje::SinAlmacen, campo::AlmacenDestino);
    if (sin_almacen(campo::AlmacenDestino)) return rechaza(mensaje::NoExisteAlmacen, campo::AlmacenDestino);
  }
  if (intenta.Si([&] { return !EstaVacio(campo::Compra); })) {
    data::RecordsetRef compra;
    intenta([&] {
      Abre("SELECT id FROM compra2 WHERE id = " + data::PlainNumber(NumeroEn(campo::Compra)), compra);
    });
    if (intenta.Si([&] { return compra->Eof(); })) return rechaza(mensaje::NoExisteCompra, campo::Compra);
  }
}

std::string frmSalidasWizard::TraeVends() {
  Trampa intenta{*this, "TraeVends"};
  std::string nombre;
  // Nothing here calls it: it is for routines, which put the seller's key into the description's field.
  if (intenta.Si([&] { return EstaVacio(campo::Concepto); })) return nombre;
  intenta([&] {
    AbreNuevo("SELECT * FROM vends WHERE vend = '" + txtFields(campo::Descripcion).Text() + "'", rstVends);
  });
  if (intenta.Si([&] { return rstVends->Eof(); })) return nombre;
  intenta([&] { nombre = data::ToText(rstVends->Fields("Nombre")); });
  return nombre;
}

}  // namespace tarvik
