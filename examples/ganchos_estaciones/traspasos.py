"""Transfers between work stations, in the base: the tables, and what may be done with one of them.

It knows no screen. The routines in the other files show what it says.

A transfer's row names the set of lines that counts, `captura`. A save writes a new set and then has
the row name it, in one statement that takes hold only if nobody else has been faster: lines are
never half stored, and of two operators with the same transfer in hand one is refused.

Stock moves line by line, out of one warehouse and into the other, each movement whole or not at all.
While that goes on `confirma` is set. If it stops half way the transfer stays begun: its lines are
fixed, and confirming it again moves only what the ledger does not have yet."""

from __future__ import annotations

import re
from dataclasses import dataclass
from datetime import date
from decimal import Decimal

import tarvik

OPERACION = "TE"  # of the ledger: no other document has it
SERIE, SERIE_DE_CAPTURAS = "TraspasoEstacion", "TraspasoEstacionCaptura"

# Which warehouse each station works with. It is only what the table begins with: a station that is
# already in `almacen_de_estacion` stays with the warehouse that it has there.
ALMACENES = {"E1": 1, "E2": 2, "E3": 2}

TABLAS = (
    "CREATE TABLE IF NOT EXISTS traspaso_estacion (traspaso INTEGER PRIMARY KEY, entrega TEXT, recibe TEXT, "
    "fecha DATE, estado TEXT, usuario TEXT, estacion TEXT, captura INTEGER, confirma INTEGER)",
    "CREATE TABLE IF NOT EXISTS traspaso_partida (captura INTEGER, partida INTEGER, articulo TEXT, "
    "cantidad DOUBLE PRECISION, PRIMARY KEY (captura, partida))",
    "CREATE TABLE IF NOT EXISTS almacen_de_estacion (estacion TEXT PRIMARY KEY, almacen INTEGER)",
)

NUMERO = re.compile(r"\d{1,3}(,\d{3})+(\.\d*)?|\d+\.?\d*|\.\d+")
CIFRAS = 15  # more are not kept


class Rechazo(Exception):
    """Why it cannot be done; the text is for the operator. Empty: the operator knows already."""

    def __init__(self, texto: str = "", control=None):
        super().__init__(texto)
        self.control = control  # where the operator puts it right


class SinTerminar(Rechazo):
    """The posting stopped. What the transfer in hand says of itself is how it was left."""


@dataclass
class Traspaso:
    """A transfer, as a screen has it in hand. `captura` and `confirma` are those that it was read with."""
    traspaso: int = 0
    entrega: str = ""
    recibe: str = ""
    fecha: date | None = None
    partidas: tuple[tuple[str, Decimal], ...] = ()
    estado: str = "PE"
    captura: int = 0
    confirma: int = 0
    quien: str = ""

    def empezado(self) -> bool:
        return self.confirma != 0


def numero_de(texto: str) -> Decimal | None:
    """The number that an operator wrote; None for what is none."""
    texto = texto.strip()
    if not NUMERO.fullmatch(texto) or sum(caracter.isdigit() for caracter in texto) > CIFRAS:
        return None
    return Decimal(texto.replace(",", ""))


def plano(cantidad: Decimal) -> str:
    texto = format(cantidad, "f")
    return texto.rstrip("0").rstrip(".") if "." in texto else texto


def _literal(valor) -> str:
    if isinstance(valor, (int, Decimal)):
        return format(valor, "f") if isinstance(valor, Decimal) else str(valor)
    return "'" + str(valor).replace("'", "''") + "'"


def _filas(ambiente, sentencia: str, *valores):
    """Runs one statement; each {} of its text takes a value, written as the base reads it."""
    filas = ambiente.Conexion.Execute(sentencia.format(*map(_literal, valores)))
    while not filas.EOF:
        yield filas
        filas.MoveNext()


def _ejecuta(ambiente, sentencia: str, *valores) -> bool:
    """True if the statement gave a row."""
    return any(True for _ in _filas(ambiente, sentencia, *valores))


def _dato(ambiente, columna: str, sentencia: str, *valores):
    return next((filas[columna] for filas in _filas(ambiente, sentencia, *valores)), None)


def prepara(ambiente) -> None:
    for tabla in TABLAS:
        _ejecuta(ambiente, tabla)
    for estacion, almacen in ALMACENES.items():
        _ejecuta(ambiente, "INSERT INTO almacen_de_estacion (estacion, almacen) SELECT {0}, {1} "
                           "WHERE EXISTS (SELECT 1 FROM ESTACIONES WHERE ESTACION = {0}) "
                           "AND EXISTS (SELECT 1 FROM ALMACEN WHERE almacen = {1}) "
                           "AND NOT EXISTS (SELECT 1 FROM almacen_de_estacion WHERE estacion = {0})", estacion, almacen)


# ---- the catalogue -----------------------------------------------------------------------------


def existe_estacion(ambiente, estacion: str) -> bool:
    return _ejecuta(ambiente, "SELECT ESTACION FROM ESTACIONES WHERE ESTACION = {}", estacion)


def descripcion_de(ambiente, articulo: str) -> str | None:
    """None if there is no such article."""
    for ficha in _filas(ambiente, "SELECT descrip FROM prods WHERE articulo = {}", articulo):
        return ficha["descrip"] or ""
    return None


def almacen_de(ambiente, estacion: str) -> int:
    almacen = _dato(ambiente, "almacen", "SELECT almacen_de_estacion.almacen AS almacen FROM almacen_de_estacion "
                    "INNER JOIN ALMACEN ON ALMACEN.almacen = almacen_de_estacion.almacen "
                    "WHERE almacen_de_estacion.estacion = {}", estacion)
    if almacen is None:
        raise Rechazo(f"La estación {estacion} no tiene asignado un almacén que exista.")
    return int(almacen)


def faltantes(ambiente, traspaso: Traspaso, almacen: int) -> list[str]:
    """Articles under control of which the warehouse has less than is to go."""
    lineas = []
    for articulo, cantidad in traspaso.partidas:
        if not _dato(ambiente, "invent", "SELECT Invent AS invent FROM prods WHERE articulo = {}", articulo):
            continue
        hay = _dato(ambiente, "existencia", "SELECT existencia FROM existenciaalmacen WHERE almacen = {} "
                    "AND articulo = {}", almacen, articulo)
        hay = Decimal(repr(hay or 0))
        if hay < cantidad:
            lineas.append(f"{articulo}: hay {plano(hay)} y se piden {plano(cantidad)}")
    return lineas


def puede_dejar_en_rojo(ambiente) -> bool:
    """Whether this user may take out more than there is, as in goods-out."""
    return bool(_dato(ambiente, "existsalidas", "SELECT existsalidas FROM usuarios WHERE usuario = {}",
                      ambiente.Usuario))


# ---- one transfer ------------------------------------------------------------------------------


def lee(ambiente, numero: int) -> Traspaso | None:
    for fila in _filas(ambiente, "SELECT * FROM traspaso_estacion WHERE traspaso = {}", numero):
        partidas = tuple((linea["articulo"], Decimal(repr(linea["cantidad"]))) for linea in _filas(
            ambiente, "SELECT articulo, cantidad FROM traspaso_partida WHERE captura = {} ORDER BY partida",
            fila["captura"]))
        return Traspaso(numero, fila["entrega"], fila["recibe"], fila["fecha"], partidas, fila["estado"],
                        fila["captura"], fila["confirma"], f"{fila['usuario']} en {fila['estacion']}")
    return None


def guarda(ambiente, traspaso: Traspaso, confirma: int = 0) -> None:
    """Stores it as it is in hand, as pending; with `confirma` also as begun. Numbers a new one.

    Rechazo if somebody else has stored, confirmed or begun it meanwhile."""
    captura = ambiente.NuevoId(SERIE_DE_CAPTURAS)
    valores = ", ".join(f"({captura}, {partida}, {_literal(articulo)}, {_literal(cantidad)})"
                        for partida, (articulo, cantidad) in enumerate(traspaso.partidas, 1))
    _ejecuta(ambiente, "DELETE FROM traspaso_partida WHERE captura = {}", captura)
    # As it stands: a brace in an article's key is no place for a value.
    ambiente.Conexion.Execute(f"INSERT INTO traspaso_partida (captura, partida, articulo, cantidad) VALUES {valores}")
    datos = (traspaso.entrega, traspaso.recibe, traspaso.fecha.isoformat(), ambiente.Usuario, ambiente.Estacion,
             captura, confirma)
    if traspaso.traspaso:
        tomado = _ejecuta(
            ambiente, "UPDATE traspaso_estacion SET entrega = {}, recibe = {}, fecha = {}, usuario = {}, "
            "estacion = {}, captura = {}, confirma = {} WHERE traspaso = {} AND captura = {} AND estado = 'PE' AND confirma = 0 "
            "RETURNING traspaso", *datos, traspaso.traspaso, traspaso.captura)
        anterior = traspaso.captura
        if tomado:
            traspaso.captura, traspaso.confirma = captura, confirma
        _ejecuta(ambiente, "DELETE FROM traspaso_partida WHERE captura = {}", anterior if tomado else captura)
        if not tomado:
            _explica(ambiente, traspaso.traspaso)
    else:
        numero = ambiente.NuevoId(SERIE)
        while lee(ambiente, numero):
            numero = ambiente.NuevoId(SERIE)
        _ejecuta(ambiente, "INSERT INTO traspaso_estacion (traspaso, entrega, recibe, fecha, estado, usuario, "
                           "estacion, captura, confirma) VALUES ({}, {}, {}, {}, 'PE', {}, {}, {}, {})", numero, *datos)
        traspaso.traspaso, traspaso.captura, traspaso.confirma = numero, captura, confirma


def lee_o_rechaza(ambiente, numero: int) -> Traspaso:
    traspaso = lee(ambiente, numero)
    if traspaso is None:
        raise Rechazo(f"No existe el traspaso {numero}.")
    return traspaso


def _explica(ambiente, numero: int) -> None:
    """Why a transfer was not there as it was read."""
    actual = lee_o_rechaza(ambiente, numero)
    if actual.estado == "CO":
        raise Rechazo(f"El traspaso {numero} ya está confirmado.")
    raise Rechazo(f"El traspaso {numero} fue cambiado por {actual.quien}. Ciérrelo sin guardar y ábralo de nuevo.")


def confirma(ambiente, traspaso: Traspaso, de: int, a: int) -> None:
    """Moves the goods from warehouse `de` to `a`. The transfer, pending or begun, ends as confirmed.

    Rechazo if somebody else is at it, SinTerminar if the posting stops: what has been moved by then
    stays moved, and the transfer stays begun if that is anything."""
    intento = ambiente.NuevoId(SERIE_DE_CAPTURAS)
    if not traspaso.empezado():
        guarda(ambiente, traspaso, intento)
    elif not _ejecuta(
            ambiente, "UPDATE traspaso_estacion SET confirma = {}, usuario = {}, estacion = {} WHERE traspaso = {} "
            "AND confirma = {} AND estado = 'PE' RETURNING traspaso", intento, ambiente.Usuario, ambiente.Estacion,
            traspaso.traspaso, traspaso.confirma):
        _explica(ambiente, traspaso.traspaso)
    traspaso.confirma = intento
    try:
        _mueve(ambiente, traspaso, de, a)
        _ejecuta(ambiente, "UPDATE traspaso_estacion SET estado = 'CO', confirma = 0 WHERE traspaso = {} "
                           "AND confirma = {}", traspaso.traspaso, intento)
    except tarvik.Error as error:
        queda = "Lo que ya se movió no se moverá otra vez: confírmelo de nuevo cuando se haya corregido la causa."
        if not _movidas(ambiente, traspaso.traspaso):
            _ejecuta(ambiente, "UPDATE traspaso_estacion SET confirma = 0 WHERE traspaso = {} AND confirma = {}",
                     traspaso.traspaso, intento)
            traspaso.confirma = 0
            queda = "No se movió nada; quedó pendiente."
        raise SinTerminar(f"El traspaso {traspaso.traspaso} no se terminó de confirmar: {error}\n\n{queda}") from error
    traspaso.estado, traspaso.confirma = "CO", 0


def _movidas(ambiente, numero: int) -> set[tuple[str, int]]:
    """What the ledger has of a transfer: direction and line."""
    return {(fila["ent_sal"], fila["id_salida"]) for fila in _filas(
        ambiente, "SELECT ent_sal, id_salida FROM movsinv WHERE operacion = {} AND movimiento = {}", OPERACION, numero)}


def _mueve(ambiente, traspaso: Traspaso, de: int, a: int) -> None:
    hechas = _movidas(ambiente, traspaso.traspaso)
    movimiento = ambiente.NuevoMovimiento()
    movimiento.ClaveLocal = ambiente.ClaveLocal
    movimiento.Fecha = traspaso.fecha
    movimiento.Movimiento = traspaso.traspaso
    movimiento.TipoDoc = movimiento.Operacion = OPERACION
    movimiento.Usuario = ambiente.Usuario
    movimiento.Documento = f"{OPERACION}-{traspaso.traspaso}"
    movimiento.EstacionTraspaso = traspaso.recibe
    movimiento.Aplica = True
    for partida, (articulo, cantidad) in enumerate(traspaso.partidas, 1):
        movimiento.Articulo = articulo
        movimiento.Cantidad = float(cantidad)
        # At cost, so that what one warehouse loses in value the other one gains.
        movimiento.Precio = float(_dato(ambiente, "costo", "SELECT costo_u AS costo FROM prods WHERE articulo = {}",
                                        articulo) or 0)
        movimiento.IdSalida = partida
        for ent_sal, almacen in (("S", de), ("E", a)):
            if (ent_sal, partida) in hechas:
                continue
            movimiento.EntSal = ent_sal
            movimiento.Almacen = almacen
            movimiento.Afecta()
