"""The station transfer while it is written: opening, fields, lines."""

import pantalla_de_traspaso as pantalla
import traspasos
from pantalla_de_traspaso import ARTICULO, CANTIDAD, DESCRIPCION, ENTREGA, RECIBE
from traspasos import Rechazo


def MOVESTACIONES001(forma, ambiente):
    traspasos.prepara(ambiente)
    pantalla.arma_rejilla(forma)
    forma.txtFields[DESCRIPCION].Enabled = False
    traspaso = traspasos.Traspaso()
    if forma.Id:
        traspaso = traspasos.lee_o_rechaza(ambiente, forma.Id)
        pantalla.muestra(forma, ambiente, traspaso)
        pantalla.pon_estado(forma, traspaso)
    pantalla.recuerda(forma, traspaso)


def MOVESTACIONES002(forma, ambiente):
    # The routine of a button looks at the fields itself, and nobody is kept from cancelling.
    if forma.ActiveControl in (forma.Command1, forma.cmdConfirmar, forma.cmdPendiente, forma.cmdCancelar):
        return
    campo = ambiente.ValorDeGancho
    with pantalla.dice_el_rechazo(forma, ambiente):
        if campo in (ENTREGA, RECIBE) and forma.txtFields[campo].Text.strip():
            _estacion(forma, ambiente, campo)
        elif campo == ARTICULO:
            forma.txtFields[DESCRIPCION].Text = ""
            if forma.txtFields[ARTICULO].Text.strip():
                forma.txtFields[DESCRIPCION].Text = _articulo(forma, ambiente)[1]


def MOVESTACIONES003(forma, ambiente):
    with pantalla.dice_el_rechazo(forma, ambiente):
        articulo, descripcion = _articulo(forma, ambiente)
        cantidad = traspasos.numero_de(forma.txtFields[CANTIDAD].Text)
        if not cantidad:
            raise Rechazo("La cantidad debe ser un número mayor que cero.", forma.txtFields[CANTIDAD])
        pantalla.agrega(forma, articulo, descripcion, cantidad)
        pantalla.limpia_captura(forma)
        forma.ColocaFoco(forma.txtFields[ARTICULO])


def _estacion(forma, ambiente, campo):
    estacion = forma.txtFields[campo].Text.strip()
    if not traspasos.existe_estacion(ambiente, estacion):
        raise Rechazo(f"No existe la estación {estacion}.", forma.txtFields[campo])


def _articulo(forma, ambiente):
    articulo = forma.txtFields[ARTICULO].Text.strip()
    if not articulo:
        raise Rechazo("Escriba el artículo.", forma.txtFields[ARTICULO])
    descripcion = traspasos.descripcion_de(ambiente, articulo)
    if descripcion is None:
        raise Rechazo(f"No existe el artículo {articulo}.", forma.txtFields[ARTICULO])
    return articulo, descripcion
