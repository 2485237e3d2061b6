// The two stock checks, each with its own reading and its own override. Neither reserves, posts or
// writes anything.
#include "data/number.h"
#include "forms/platform.h"
#include "goods_out/columnas.h"
#include "goods_out/frm_salidas_wizard.h"

namespace tarvik {

using data::PlainNumber;
using service::Trampa;

namespace {
constexpr const char* kFin = "\r\n";
}

bool frmSalidasWizard::HayExistencia(Trampa& intenta) {
  const std::string& articulo = txtFields(campo::Articulo).Text();
  data::RecordsetRef producto;
  intenta([&] { Abre("SELECT * FROM prods WHERE articulo = '" + articulo + "'", producto); });
  data::RecordsetRef renglon;
  intenta([&] {
    Abre("SELECT * FROM existenciaalmacen WHERE almacen = " + PlainNumber(NumeroEn(campo::Almacen)) +
             " AND articulo = '" + articulo + "'",
         renglon);
  });
  double existencia = 0;
  if (!intenta.Si([&] { return renglon->Eof(); })) {
    intenta([&] { existencia = data::ToNumber(renglon->Fields("existencia")); });
  }
  // An article that can't be read counts as controlled.
  if (!intenta.Si([&] { return data::IsNonZero(producto->Fields("Invent")); })) return true;
  const bool con_apartados =
      intenta.Si([&] { return data::IsNonZero(Ambiente->Parametros()->Fields("PorSurt")); });
  double disponible = 0;  // what can't be computed is not available
  intenta([&] {
    disponible = con_apartados ? existencia - Funciones().ANumero(producto->Fields("Por_Surt")) : existencia;
  });
  if (!intenta.Si([&] { return disponible < NumeroEn(campo::Cantidad); })) return true;

  std::string texto = std::string("No hay existencia suficiente en el almacen seleccionado") + kFin;
  texto += " Existencia: " + PlainNumber(existencia) + kFin;
  if (con_apartados) {
    intenta([&] { texto += " Apartados por pedido: " + data::ToText(producto->Fields("Por_Surt")) + kFin; });
  }
  data::RecordsetRef usuario;
  intenta([&] {
    Abre("SELECT existsalidas FROM usuarios WHERE usuario = '" + Ambiente->Usuario() + "'", usuario);
  });
  // A user who can't be read is not allowed.
  if (intenta.Si([&] { return !data::IsNonZero(usuario->Fields("existsalidas")); })) {
    intenta([&] { GetPlatform().ShowBox(forms::BoxKind::Plain, texto, forms::kBoxInformation); });
    return false;
  }
  texto += std::string(" Desea continuar de cualquier manera") + kFin;
  bool continua = false;
  intenta([&] { continua = GetPlatform().ShowBox(forms::BoxKind::Question, texto, forms::kBoxYesNo); });
  return continua;
}

bool frmSalidasWizard::ConfirmaExistencia(double first, double second) {
  Trampa intenta{*this, "ConfirmaExistencia"};
  const std::string articulo = fg2.TextMatrix(fg2.Row(), columna_salida::Articulo);
  data::RecordsetRef producto;
  intenta([&] { Abre("SELECT * FROM prods WHERE articulo = '" + articulo + "'", producto); });
  data::RecordsetRef renglon;
  intenta([&] {
    Abre("SELECT * FROM existenciaalmacen WHERE articulo = '" + articulo +
             "' AND almacen = " + PlainNumber(NumeroEn(campo::Almacen)),
         renglon);
  });
  // From here on the first figure is the stock: the new quantity plays no part in the decision.
  first = 0;
  if (!intenta.Si([&] { return renglon->Eof(); })) {
    intenta([&] { first = data::ToNumber(renglon->Fields("existencia")); });
  }
  // The host is asked for what its settings say, though nothing below depends on the answer.
  double cantidad = 0;
  if (intenta.Si([&] { return data::IsNonZero(Ambiente->Parametros()->Fields("EnVenta")); })) {
    intenta([&] { Funciones().CantidadEnVenta(articulo, Ambiente->Conexion(), cantidad); });
  }
  if (intenta.Si([&] { return data::IsNonZero(Ambiente->Parametros()->Fields("PorSurt")); })) {
    intenta([&] { Funciones().CantidadPorSurtir(articulo, Ambiente->Conexion(), cantidad); });
  }
  if (!intenta.Si([&] { return data::IsNonZero(producto->Fields("Invent")) && first + second < first; }))
    return true;

  std::string texto = TraeMensaje(intenta, host(), Ambiente, mensaje::ExistenciaEncabezado) + kFin;
  texto += TraeMensaje(intenta, host(), Ambiente, mensaje::ExistenciaDelAlmacen);
  intenta([&] {
    texto += data::ToText(producto->Fields("ALM" + PlainNumber(data::Val(txtFields(campo::Almacen).Text()))));
  });
  texto += kFin + TraeMensaje(intenta, host(), Ambiente, mensaje::ExistenciaApartados);
  intenta([&] { texto += data::ToText(producto->Fields("Por_Surt")); });
  texto += kFin + TraeMensaje(intenta, host(), Ambiente, mensaje::ExistenciaContinua) + kFin;
  return !intenta.Si([&] {
    return !GetPlatform().ShowBox(forms::BoxKind::Question, texto,
                                  forms::kBoxYesNo + forms::kBoxSecondDefault);
  });
}

}  // namespace tarvik
