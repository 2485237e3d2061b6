// The numbered messages of a new base.
#include "host/textos.h"

#include "service/contract/mensajes.h"

namespace tarvik::host {

namespace mensaje = service::mensaje;

const std::vector<TextoDeMensaje>& TextosDeFabrica() {
  // The message of a document held by somebody else has two halves, around the user's name. The screens put a
  // blank before the name where a document is opened for change only; the first halves of a deletion bring
  // their own, and so does each second half. The two texts of stock are followed by a figure, with nothing
  // between.
  static const std::vector<TextoDeMensaje> texts = {
      {mensaje::BorraDocumento, "¿Desea eliminar el documento?"},
      {mensaje::ModificaEntradaNoExiste, "No se encontró la entrada indicada."},
      {mensaje::ModificaEntradaAfectada, "La entrada ya está afectada. Se abre sólo para consulta."},
      {mensaje::ModificaEntradaPropia, "Usted mismo tiene ocupada esta entrada."},
      {mensaje::ModificaEntradaAjena, "La entrada está ocupada por el usuario"},
      {mensaje::ModificaEntradaAjenaFin, ". Intente más tarde."},
      {mensaje::ModificaSalidaNoExiste, "No se encontró la salida indicada."},
      {mensaje::ModificaSalidaAfectada, "La salida ya está afectada. Se abre sólo para consulta."},
      {mensaje::ModificaSalidaPropia, "Usted mismo tiene ocupada esta salida."},
      {mensaje::ModificaSalidaAjena, "La salida está ocupada por el usuario"},
      {mensaje::ModificaSalidaAjenaFin, ". Intente más tarde."},
      {mensaje::ConsultaEntradaNoExiste, "No se encontró la entrada que desea consultar."},
      {mensaje::ConsultaSalidaNoExiste, "No se encontró la salida que desea consultar."},
      {mensaje::EliminaEntradaNoExiste, "No se encontró la entrada que desea eliminar."},
      {mensaje::EliminaEntradaPropia, "Usted mismo tiene ocupada esta entrada. No se puede eliminar."},
      {mensaje::EliminaEntradaAjena, "La entrada está ocupada por el usuario "},
      {mensaje::EliminaEntradaAjenaFin, ". No se puede eliminar."},
      {mensaje::EliminaSalidaNoExiste, "No se encontró la salida que desea eliminar."},
      {mensaje::EliminaSalidaPropia, "Usted mismo tiene ocupada esta salida. No se puede eliminar."},
      {mensaje::EliminaSalidaAjena, "La salida está ocupada por el usuario "},
      {mensaje::EliminaSalidaAjenaFin, ". No se puede eliminar."},
      {mensaje::SinFormato, "No se ha definido el formato de impresión. El documento queda guardado."},
      {mensaje::NoEsFecha, "La fecha no es válida."},
      {mensaje::SinArticulo, "Indique la clave del artículo."},
      {mensaje::NoEsArticulo, "El artículo indicado no existe."},
      {mensaje::SinCantidad, "La cantidad debe ser mayor que cero."},
      {mensaje::SinPrecio, "El precio debe ser mayor que cero."},
      {mensaje::SinAlmacen, "Indique el almacén."},
      {mensaje::NoExisteAlmacen, "El almacén indicado no existe."},
      {mensaje::PeriodoCerrado, "El periodo de esta fecha está cerrado. Indique una fecha posterior."},
      {mensaje::SalidaSinConcepto, "Indique el concepto de la salida."},
      {mensaje::SalidaNoExisteConcepto, "El concepto indicado no es un concepto de salida."},
      {mensaje::SalidaSinRenglones, "La salida no tiene partidas. Se guarda como movimiento pendiente."},
      {mensaje::EntradaSinConcepto, "Indique el concepto de la entrada."},
      {mensaje::EntradaNoExisteConcepto, "El concepto indicado no es un concepto de entrada."},
      {mensaje::EntradaSinRenglones, "La entrada no tiene partidas. Se guarda como movimiento pendiente."},
      {mensaje::ExistenciaEncabezado, "La existencia no es suficiente para esta cantidad."},
      {mensaje::ExistenciaDelAlmacen, "Existencia en el almacén: "},
      {mensaje::ExistenciaApartados, "Apartado por pedidos: "},
      {mensaje::ExistenciaContinua, "¿Desea continuar de cualquier manera?"},
      {mensaje::AfectaSalida, "¿Desea afectar la salida? Una vez afectada no se puede modificar."},
      {mensaje::AfectaEntrada, "¿Desea afectar la entrada? Una vez afectada no se puede modificar."},
      {mensaje::NoExisteCompra, "No se encontró la compra indicada."},
  };
  return texts;
}

std::string LeeMensaje(data::EngineConnection& connection, int number) {
  const auto found = connection.Run("SELECT texto FROM mensajes WHERE numero = ?", {number});
  if (found.rows.empty() || found.rows.front().front().IsNull()) return std::to_string(number);
  return data::ToText(found.rows.front().front());
}

void SiembraMensajes(data::EngineConnection& connection) {
  for (const auto& message : TextosDeFabrica()) {
    connection.Run("INSERT INTO mensajes (numero, texto) VALUES (?, ?) ON CONFLICT (numero) DO NOTHING",
                   {message.numero, message.texto});
  }
}

}  // namespace tarvik::host
