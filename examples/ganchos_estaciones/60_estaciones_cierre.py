"""The station transfer at its end: cancelled, left pending, confirmed, closed."""

import contextlib
import dataclasses

import pantalla_de_traspaso as pantalla
import traspasos
from pantalla_de_traspaso import ARTICULO, ENTREGA, INFORMACION, RECIBE
from traspasos import Rechazo

SIN_GUARDAR = "El traspaso tiene cambios sin guardar. ¿Desea cerrarlo y perderlos?"


def MOVESTACIONES004(forma, ambiente):
    if not pantalla.sin_guardar(forma):
        return
    if not ambiente.Pregunta(SIN_GUARDAR):
        forma.CancelaProceso = True
        return
    pantalla.olvida_cambios(forma)  # the closing that follows must not ask the same once more


def MOVESTACIONES005(forma, ambiente):
    with pantalla.dice_el_rechazo(forma, ambiente, veta=True):
        traspaso = _revisado(forma, ambiente)
        with _lo_guardado_se_sabe(forma, traspaso):
            traspasos.guarda(ambiente, traspaso)
        ambiente.MuestraMensaje(f"El traspaso {traspaso.traspaso} quedó pendiente.", INFORMACION)


def MOVESTACIONES006(forma, ambiente):
    with pantalla.dice_el_rechazo(forma, ambiente, veta=True):
        traspaso = _revisado(forma, ambiente)
        if traspaso.estado == "CO":
            raise Rechazo(f"El traspaso {traspaso.traspaso} ya está confirmado.")
        _pregunta_si_esta_empezado(ambiente, traspaso)
        de, a = _almacenes(forma, ambiente, traspaso)
        _revisa_existencia(ambiente, traspaso, de)
        with _lo_guardado_se_sabe(forma, traspaso):
            traspasos.confirma(ambiente, traspaso, de, a)
        partidas = len(traspaso.partidas)
        ambiente.MuestraMensaje(
            f"El traspaso {traspaso.traspaso} quedó confirmado: {partidas} "
            f"{'artículo' if partidas == 1 else 'artículos'} de {traspaso.entrega} a {traspaso.recibe}.", INFORMACION)


def MOVESTACIONES007(forma, ambiente):
    if pantalla.sin_guardar(forma) and not ambiente.Pregunta(SIN_GUARDAR):
        forma.CancelaProceso = True


@contextlib.contextmanager
def _lo_guardado_se_sabe(forma, traspaso):
    """However it ends, being stopped included, the screen knows what has been stored: if it forgot a new
    transfer, the next try would make another one and move everything again."""
    antes = dataclasses.replace(traspaso)
    try:
        yield
    finally:
        if traspaso != antes:  # a refusal stores nothing, and what is typed stays unsaved
            forma.Id = traspaso.traspaso
            pantalla.pon_estado(forma, traspaso)
            pantalla.recuerda(forma, traspaso)


def _revisado(forma, ambiente):
    """The transfer in hand, if it may be stored."""
    if pantalla.en_captura(forma):
        raise Rechazo("Hay un artículo en captura que no se ha agregado. Agréguelo o bórrelo.",
                      forma.txtFields[ARTICULO])
    traspaso = pantalla.en_mano(forma, ambiente)
    for campo, estacion, papel in ((ENTREGA, traspaso.entrega, "entrega"), (RECIBE, traspaso.recibe, "recibe")):
        if not estacion:
            raise Rechazo(f"Escriba la estación que {papel}.", forma.txtFields[campo])
        if not traspasos.existe_estacion(ambiente, estacion):
            raise Rechazo(f"No existe la estación {estacion}.", forma.txtFields[campo])
    if traspaso.entrega == traspaso.recibe:
        raise Rechazo("La estación que entrega y la que recibe son la misma.", forma.txtFields[RECIBE])
    if traspaso.fecha is None:
        raise Rechazo("Indique la fecha de aplicación.", forma.DTPicker1)
    if not traspaso.partidas:
        raise Rechazo("El traspaso no tiene artículos.", forma.txtFields[ARTICULO])
    return traspaso


def _pregunta_si_esta_empezado(ambiente, traspaso):
    if traspaso.empezado() and not ambiente.Pregunta(
            f"{traspaso.quien} empezó a confirmar el traspaso {traspaso.traspaso} y no terminó. ¿Desea terminarlo? Lo "
            "que ya se movió no se mueve otra vez."):
        raise Rechazo


def _almacenes(forma, ambiente, traspaso):
    de, a = traspasos.almacenes_de(ambiente, traspaso)
    # What has left one warehouse has to arrive in the other, whatever was closed or assigned since.
    if traspaso.empezado() and traspasos.movidas(ambiente, traspaso.traspaso):
        return de, a
    if de == a:
        raise Rechazo(f"Las dos estaciones trabajan con el almacén {de}: no hay nada que mover.")
    if not ambiente.FechaValida(traspaso.fecha):  # it has told the operator why
        raise Rechazo(control=forma.DTPicker1)
    return de, a


def _revisa_existencia(ambiente, traspaso, almacen):
    # Of one that is begun, part of the goods has left already.
    faltan = [] if traspaso.empezado() else traspasos.faltantes(ambiente, traspaso, almacen)
    if not faltan:
        return
    aviso = f"No hay existencia suficiente en el almacén {almacen}:\n" + "\n".join(faltan[:10])
    if len(faltan) > 10:
        aviso += f"\n... y {len(faltan) - 10} más"
    if not traspasos.puede_dejar_en_rojo(ambiente):
        raise Rechazo(aviso)
    if not ambiente.Pregunta(aviso + "\n\n¿Desea continuar de cualquier manera?"):
        raise Rechazo
