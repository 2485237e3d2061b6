// The numbered messages that the module shows, by name and as a table. Their texts are the host's.
#pragma once

#include <array>
#include <string_view>

namespace tarvik::service {

// TraeMensaje(mensaje::SinAlmacen, ...)
namespace mensaje {
enum Numero : int {
  BorraDocumento = 1,
  ModificaEntradaNoExiste = 72,
  ModificaEntradaAfectada = 73,
  ModificaEntradaPropia = 74,
  ModificaEntradaAjena = 75,
  ModificaEntradaAjenaFin = 76,
  ModificaSalidaNoExiste = 77,
  ModificaSalidaAfectada = 78,
  ModificaSalidaPropia = 79,
  ModificaSalidaAjena = 80,
  ModificaSalidaAjenaFin = 81,
  ConsultaEntradaNoExiste = 110,
  ConsultaSalidaNoExiste = 111,
  EliminaEntradaNoExiste = 147,
  EliminaEntradaPropia = 148,
  EliminaEntradaAjena = 149,
  EliminaEntradaAjenaFin = 150,
  EliminaSalidaNoExiste = 151,
  EliminaSalidaPropia = 152,
  EliminaSalidaAjena = 153,
  EliminaSalidaAjenaFin = 154,
  SinFormato = 213,
  NoEsFecha = 224,
  SinArticulo = 234,
  NoEsArticulo = 235,
  SinCantidad = 236,
  SinPrecio = 238,
  SinAlmacen = 240,
  NoExisteAlmacen = 241,
  PeriodoCerrado = 253,
  SalidaSinConcepto = 338,
  SalidaNoExisteConcepto = 339,
  SalidaSinRenglones = 340,
  EntradaSinConcepto = 341,
  EntradaNoExisteConcepto = 342,
  EntradaSinRenglones = 343,
  ExistenciaEncabezado = 433,
  ExistenciaDelAlmacen = 434,
  ExistenciaApartados = 436,
  ExistenciaContinua = 437,
  AfectaSalida = 713,
  AfectaEntrada = 726,
  NoExisteCompra = 829,
};
}  // namespace mensaje

struct Mensaje {
  int numero;
  std::string_view situacion;  // when it is shown
};

inline constexpr std::array kMensajes{
    Mensaje{mensaje::BorraDocumento, "pregunta si se borra un documento"},
    Mensaje{mensaje::ModificaEntradaNoExiste, "modificar entrada: no existe"},
    Mensaje{mensaje::ModificaEntradaAfectada,
            "modificar entrada: ya está afectada, se abre sólo para consulta"},
    Mensaje{mensaje::ModificaEntradaPropia, "modificar entrada: la tiene este mismo usuario"},
    Mensaje{mensaje::ModificaEntradaAjena,
            "modificar entrada: la tiene otro usuario, texto antes del nombre"},
    Mensaje{mensaje::ModificaEntradaAjenaFin,
            "modificar entrada: la tiene otro usuario, texto después del nombre"},
    Mensaje{mensaje::ModificaSalidaNoExiste, "modificar salida: no existe"},
    Mensaje{mensaje::ModificaSalidaAfectada,
            "modificar salida: ya está afectada, se abre sólo para consulta"},
    Mensaje{mensaje::ModificaSalidaPropia, "modificar salida: la tiene este mismo usuario"},
    Mensaje{mensaje::ModificaSalidaAjena, "modificar salida: la tiene otro usuario, texto antes del nombre"},
    Mensaje{mensaje::ModificaSalidaAjenaFin,
            "modificar salida: la tiene otro usuario, texto después del nombre"},
    Mensaje{mensaje::ConsultaEntradaNoExiste, "consultar entrada: no existe"},
    Mensaje{mensaje::ConsultaSalidaNoExiste, "consultar salida: no existe"},
    Mensaje{mensaje::EliminaEntradaNoExiste, "eliminar entrada: no existe"},
    Mensaje{mensaje::EliminaEntradaPropia, "eliminar entrada: la tiene este mismo usuario"},
    Mensaje{mensaje::EliminaEntradaAjena, "eliminar entrada: la tiene otro usuario, texto antes del nombre"},
    Mensaje{mensaje::EliminaEntradaAjenaFin,
            "eliminar entrada: la tiene otro usuario, texto después del nombre"},
    Mensaje{mensaje::EliminaSalidaNoExiste, "eliminar salida: no existe"},
    Mensaje{mensaje::EliminaSalidaPropia, "eliminar salida: la tiene este mismo usuario"},
    Mensaje{mensaje::EliminaSalidaAjena, "eliminar salida: la tiene otro usuario, texto antes del nombre"},
    Mensaje{mensaje::EliminaSalidaAjenaFin,
            "eliminar salida: la tiene otro usuario, texto después del nombre"},
    Mensaje{mensaje::SinFormato, "no hay formato de impresión"},
    Mensaje{mensaje::NoEsFecha, "la fecha no es una fecha"},
    Mensaje{mensaje::SinArticulo, "renglón sin artículo"},
    Mensaje{mensaje::NoEsArticulo, "la clave no es de un artículo"},
    Mensaje{mensaje::SinCantidad, "cantidad de cero o menos"},
    Mensaje{mensaje::SinPrecio, "precio de cero o menos"},
    Mensaje{mensaje::SinAlmacen, "falta el almacén"},
    Mensaje{mensaje::NoExisteAlmacen, "el almacén no existe"},
    Mensaje{mensaje::PeriodoCerrado, "el período está cerrado"},
    Mensaje{mensaje::SalidaSinConcepto, "salida: falta el concepto"},
    Mensaje{mensaje::SalidaNoExisteConcepto, "salida: el concepto no existe"},
    Mensaje{mensaje::SalidaSinRenglones, "salida: el documento no tiene renglones"},
    Mensaje{mensaje::EntradaSinConcepto, "entrada: falta el concepto"},
    Mensaje{mensaje::EntradaNoExisteConcepto, "entrada: el concepto no existe"},
    Mensaje{mensaje::EntradaSinRenglones, "entrada: el documento no tiene renglones"},
    Mensaje{mensaje::ExistenciaEncabezado, "existencia: encabezado del aviso"},
    Mensaje{mensaje::ExistenciaDelAlmacen, "existencia: texto antes de la existencia del almacén"},
    Mensaje{mensaje::ExistenciaApartados, "existencia: texto antes de los apartados"},
    Mensaje{mensaje::ExistenciaContinua, "existencia: pregunta si se continúa"},
    Mensaje{mensaje::AfectaSalida, "pregunta si se afecta la salida"},
    Mensaje{mensaje::AfectaEntrada, "pregunta si se afecta la entrada"},
    Mensaje{mensaje::NoExisteCompra, "el número de compra no existe"},
};

}  // namespace tarvik::service
