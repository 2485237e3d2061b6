// The numbered messages of a new base.
#include "host/mensajes.h"

namespace tarvik::host {

const std::vector<TextoDeMensaje>& TextosDeFabrica() {
  // 75/76, 80/81, 149/150 and 153/154 stand around a user's name. The screens put a blank before the
  // name after 75 and 80 only; 149 and 153 bring their own, and so does each second half.
  // 434 and 436 are followed by a figure, with nothing in between.
  static const std::vector<TextoDeMensaje> texts = {
      {1, "¿Desea eliminar el documento?"},
      {72, "No se encontró la entrada indicada."},
      {73, "La entrada ya está afectada. Se abre sólo para consulta."},
      {74, "Usted mismo tiene ocupada esta entrada."},
      {75, "La entrada está ocupada por el usuario"},
      {76, ". Intente más tarde."},
      {77, "No se encontró la salida indicada."},
      {78, "La salida ya está afectada. Se abre sólo para consulta."},
      {79, "Usted mismo tiene ocupada esta salida."},
      {80, "La salida está ocupada por el usuario"},
      {81, ". Intente más tarde."},
      {110, "No se encontró la entrada que desea consultar."},
      {111, "No se encontró la salida que desea consultar."},
      {147, "No se encontró la entrada que desea eliminar."},
      {148, "Usted mismo tiene ocupada esta entrada. No se puede eliminar."},
      {149, "La entrada está ocupada por el usuario "},
      {150, ". No se puede eliminar."},
      {151, "No se encontró la salida que desea eliminar."},
      {152, "Usted mismo tiene ocupada esta salida. No se puede eliminar."},
      {153, "La salida está ocupada por el usuario "},
      {154, ". No se puede eliminar."},
      {213, "No se ha definido el formato de impresión. El documento queda guardado."},
      {224, "La fecha no es válida."},
      {234, "Indique la clave del artículo."},
      {235, "El artículo indicado no existe."},
      {236, "La cantidad debe ser mayor que cero."},
      {238, "El precio debe ser mayor que cero."},
      {240, "Indique el almacén."},
      {241, "El almacén indicado no existe."},
      {253, "El periodo de esta fecha está cerrado. Indique una fecha posterior."},
      {338, "Indique el concepto de la salida."},
      {339, "El concepto indicado no es un concepto de salida."},
      {340, "La salida no tiene partidas. Se guarda como movimiento pendiente."},
      {341, "Indique el concepto de la entrada."},
      {342, "El concepto indicado no es un concepto de entrada."},
      {343, "La entrada no tiene partidas. Se guarda como movimiento pendiente."},
      {433, "La existencia no es suficiente para esta cantidad."},
      {434, "Existencia en el almacén: "},
      {436, "Apartado por pedidos: "},
      {437, "¿Desea continuar de cualquier manera?"},
      {713, "¿Desea afectar la salida? Una vez afectada no se puede modificar."},
      {726, "¿Desea afectar la entrada? Una vez afectada no se puede modificar."},
      {829, "No se encontró la compra indicada."},
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
