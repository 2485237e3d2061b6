"""What the routines of the station transfer share about its screen: fields, lines, and what is unsaved."""

from __future__ import annotations

import contextlib
import json
from decimal import Decimal

import traspasos

ENTREGA, RECIBE, ARTICULO, DESCRIPCION, CANTIDAD = range(5)  # txtFields
TITULOS = (("Artículo", 2000), ("Descripción", 4500), ("Cantidad", 1400))
COL_ARTICULO, COL_DESCRIPCION, COL_CANTIDAD = range(3)
ALTO, INFORMACION = 16, 64


@contextlib.contextmanager
def dice_el_rechazo(forma, ambiente, veta: bool = False):
    """Shows why something is refused and puts the cursor there; with `veta` the screen stays open."""
    try:
        yield
    except traspasos.Rechazo as rechazo:
        try:
            if str(rechazo):
                ambiente.MuestraMensaje(str(rechazo), ALTO)
            if rechazo.control:
                forma.ColocaFoco(rechazo.control)
        finally:
            # Last: what ran while the box was up, or on the way to the field, has a say of its own in it.
            if veta:
                forma.CancelaProceso = True


# ---- the lines ---------------------------------------------------------------------------------


def arma_rejilla(forma) -> None:
    rejilla = forma.grid
    rejilla.Cols = len(TITULOS)
    rejilla.Rows = 1
    rejilla.FixedRows = 1
    for columna, (titulo, ancho) in enumerate(TITULOS):
        rejilla.setTextMatrix(0, columna, titulo)
        rejilla.setColWidth(columna, ancho)


def agrega(forma, articulo: str, descripcion: str, cantidad: Decimal) -> None:
    """An article that is there already gets more of it."""
    rejilla = forma.grid
    for renglon in range(rejilla.FixedRows, rejilla.Rows):
        if rejilla.TextMatrix(renglon, COL_ARTICULO) == articulo:
            cantidad += Decimal(rejilla.TextMatrix(renglon, COL_CANTIDAD))
            break
    else:
        rejilla.AddItem(articulo)
        renglon = rejilla.Rows - 1
        rejilla.setTextMatrix(renglon, COL_DESCRIPCION, descripcion)
    rejilla.setTextMatrix(renglon, COL_CANTIDAD, traspasos.plano(cantidad))


def partidas(forma) -> tuple[tuple[str, Decimal], ...]:
    rejilla = forma.grid
    return tuple((rejilla.TextMatrix(renglon, COL_ARTICULO), Decimal(rejilla.TextMatrix(renglon, COL_CANTIDAD)))
                 for renglon in range(rejilla.FixedRows, rejilla.Rows))


def en_captura(forma) -> bool:
    """Whether an article or a quantity has been typed that is no line yet."""
    return any(forma.txtFields[campo].Text.strip() for campo in (ARTICULO, CANTIDAD))


def limpia_captura(forma) -> None:
    for campo in (ARTICULO, DESCRIPCION, CANTIDAD):
        forma.txtFields[campo].Text = ""


# ---- the transfer in hand ----------------------------------------------------------------------


def _contenido(forma) -> list:
    fecha = forma.DTPicker1.Value
    return [forma.txtFields[ENTREGA].Text.strip(), forma.txtFields[RECIBE].Text.strip(),
            fecha.isoformat() if fecha else "",
            [[articulo, traspasos.plano(cantidad)] for articulo, cantidad in partidas(forma)]]


def recuerda(forma, traspaso: traspasos.Traspaso) -> None:
    """From here on this is what counts as saved. It stands in the form's tag, and ends with the form."""
    forma.Tag = json.dumps({"captura": traspaso.captura, "confirma": traspaso.confirma, "estado": traspaso.estado,
                            "contenido": _contenido(forma)})


def recordado(forma) -> dict:
    return json.loads(forma.Tag) if forma.Tag else {}


def olvida_cambios(forma) -> None:
    """What is typed counts for nothing any more."""
    limpia_captura(forma)
    forma.Tag = json.dumps(recordado(forma) | {"contenido": _contenido(forma)})


def sin_guardar(forma) -> bool:
    memoria = recordado(forma)
    if not memoria or memoria["estado"] == "CO" or memoria["confirma"]:
        return False  # nothing of it can be changed
    return en_captura(forma) or memoria["contenido"] != _contenido(forma)


def en_mano(forma, ambiente) -> traspasos.Traspaso:
    """The transfer as the operator sees it. Of one that is begun or confirmed: as it is stored."""
    memoria = recordado(forma)
    if forma.Id and (memoria["confirma"] or memoria["estado"] == "CO"):
        guardado = traspasos.lee_o_rechaza(ambiente, forma.Id)
        guardado.confirma = memoria["confirma"]
        return guardado
    entrega, recibe, _, _ = _contenido(forma)
    return traspasos.Traspaso(forma.Id, entrega, recibe, forma.DTPicker1.Value, partidas(forma),
                              captura=memoria["captura"])


def muestra(forma, ambiente, traspaso: traspasos.Traspaso) -> None:
    forma.txtFields[ENTREGA].Text = traspaso.entrega
    forma.txtFields[RECIBE].Text = traspaso.recibe
    forma.DTPicker1.Value = traspaso.fecha
    for articulo, cantidad in traspaso.partidas:
        agrega(forma, articulo, traspasos.descripcion_de(ambiente, articulo) or "", cantidad)


def pon_estado(forma, traspaso: traspasos.Traspaso) -> None:
    """Caption, and what may still be done."""
    if not traspaso.traspaso:
        return
    confirmado = traspaso.estado == "CO"
    fijo = confirmado or traspaso.empezado()
    estado = "confirmado" if confirmado else "confirmación empezada" if fijo else "pendiente"
    forma.Caption = f"Traspaso entre estaciones {traspaso.traspaso}: {estado}"
    for control in (forma.txtFields[ENTREGA], forma.txtFields[RECIBE], forma.txtFields[ARTICULO],
                    forma.txtFields[CANTIDAD], forma.DTPicker1, forma.Command1, forma.cmdPendiente,
                    forma.grid):  # Delete would show less than what moves
        control.Enabled = not fijo
    forma.cmdConfirmar.Enabled = not confirmado
