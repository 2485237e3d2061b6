"""Transfers between work stations, in the base: the tables, and what may be done with one of them.

It knows no screen. The routines in the other files show what it says.

A transfer's row names the set of lines that counts, `captura`. A save writes a new set and then has
the row name it, in one statement that takes hold only if nobody else has been faster: lines are
never half stored, and of two operators with the same transfer in hand one is refused.

Stock moves line by line, out of one warehouse and into the other, each movement whole or not at all.
While that goes on `confirma` is set: the number of the attempt, which whoever goes on with it replaces
with another, so that the one before stops. With it stand the two warehouses. If it stops half way the
transfer stays begun: its lines and warehouses are fixed, and confirming it again moves only what the
ledger does not have yet."""

from __future__ import annotations

import contextlib
import re
from dataclasses import dataclass
from datetime import date
from decimal import Decimal

import tarvik

OPERACION = "TE"  # of the ledger: no other document has it
SERIE, SERIE_DE_CAPTURAS = "TraspasoEstacion", "TraspasoEstacionCaptura"

# Which warehouse each station works with. It is only what the table begins with: once
# `almacen_de_estacion` has a row the shop says there what holds, and what it takes away stays away.
ALMACENES = {"E1": 1, "E2": 2, "E3": 2}

TABLAS = (
    "CREATE TABLE IF NOT EXISTS traspaso_estacion (traspaso INTEGER PRIMARY KEY, entrega TEXT, recibe TEXT, "
    "fecha DATE, estado TEXT, usuario TEXT, estacion TEXT, captura INTEGER, confirma INTEGER, "
    "de INTEGER, a INTEGER)",
    "CREATE TABLE IF NOT EXISTS traspaso_partida (captura INTEGER, partida INTEGER, articulo TEXT, "
    "cantidad DOUBLE PRECISION, PRIMARY KEY (captura, partida))",
    "CREATE TABLE IF NOT EXISTS almacen_de_estacion (estacion TEXT PRIMARY KEY, almacen INTEGER)",
)
# A line leaves once and arrives once, whoever moves it.
SIN_REPETIR = ("CREATE UNIQUE INDEX IF NOT EXISTS movsinv_de_traspaso ON movsinv (movimiento, ent_sal, id_salida) "
               f"WHERE operacion = '{OPERACION}'")

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
    de: int | None = None  # the warehouses of one that is begun
    a: int | None = None

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
    if valor is None:
        return "NULL"
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
    try:
        _ejecuta(ambiente, "SELECT de, a FROM traspaso_estacion WHERE traspaso = 0")
    except tarvik.Error:  # made when the warehouses did not stand in it
        for columna in ("de", "a"):
            _ejecuta(ambiente, f"ALTER TABLE traspaso_estacion ADD COLUMN {columna} INTEGER")
    # A ledger where a line stands twice from before does not take it; that is no reason not to open.
    with contextlib.suppress(tarvik.Error):
        _ejecuta(ambiente, SIN_REPETIR)
    asignado = " OR ".join(f"(ESTACIONES.ESTACION = {_literal(estacion)} AND ALMACEN.almacen = {almacen})"
                           for estacion, almacen in ALMACENES.items())
    _ejecuta(ambiente, "INSERT INTO almacen_de_estacion (estacion, almacen) SELECT ESTACIONES.ESTACION, "
                       f"ALMACEN.almacen FROM ESTACIONES INNER JOIN ALMACEN ON {asignado} "
                       "WHERE NOT EXISTS (SELECT 1 FROM almacen_de_estacion) ON CONFLICT DO NOTHING")


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
                        fila["captura"], fila["confirma"], f"{fila['usuario']} en {fila['estacion']}",
                        fila["de"], fila["a"])
    return None


def _captura_nueva(ambiente) -> int:
    """The number of a set of lines or of an attempt. A series that was put back gives some out again."""
    captura = ambiente.NuevoId(SERIE_DE_CAPTURAS)
    while _ejecuta(ambiente, "SELECT captura FROM traspaso_partida WHERE captura = {0} UNION ALL "
                             "SELECT captura FROM traspaso_estacion WHERE captura = {0} OR confirma = {0}", captura):
        captura = ambiente.NuevoId(SERIE_DE_CAPTURAS)
    return captura


def guarda(ambiente, traspaso: Traspaso, confirma: int = 0, de: int | None = None, a: int | None = None) -> None:
    """Stores it as it is in hand, as pending; with `confirma` also as begun, from `de` to `a`. Numbers a new one.

    Rechazo if somebody else has stored, confirmed or begun it meanwhile."""
    captura = _captura_nueva(ambiente)
    valores = ", ".join(f"({captura}, {partida}, {_literal(articulo)}, {_literal(cantidad)})"
                        for partida, (articulo, cantidad) in enumerate(traspaso.partidas, 1))
    # As it stands: a brace in an article's key is no place for a value.
    ambiente.Conexion.Execute(f"INSERT INTO traspaso_partida (captura, partida, articulo, cantidad) VALUES {valores}")
    datos = (traspaso.entrega, traspaso.recibe, traspaso.fecha.isoformat(), ambiente.Usuario, ambiente.Estacion,
             captura, confirma, de, a)
    if traspaso.traspaso:
        tomado = _ejecuta(
            ambiente, "UPDATE traspaso_estacion SET entrega = {}, recibe = {}, fecha = {}, usuario = {}, "
            "estacion = {}, captura = {}, confirma = {}, de = {}, a = {} WHERE traspaso = {} AND captura = {} "
            "AND estado = 'PE' AND confirma = 0 RETURNING traspaso", *datos, traspaso.traspaso, traspaso.captura)
        anterior = traspaso.captura
        if tomado:
            traspaso.captura, traspaso.confirma = captura, confirma
        with contextlib.suppress(tarvik.Error):  # lines that no transfer names are nobody's
            _ejecuta(ambiente, "DELETE FROM traspaso_partida WHERE captura = {}", anterior if tomado else captura)
        if not tomado:
            _explica(ambiente, traspaso.traspaso)
    else:
        numero = ambiente.NuevoId(SERIE)
        while lee(ambiente, numero):
            numero = ambiente.NuevoId(SERIE)
        # Before the row is made: whoever is stopped after it must know it, or the next try makes another.
        traspaso.traspaso, traspaso.captura, traspaso.confirma = numero, captura, confirma
        try:
            _ejecuta(ambiente, "INSERT INTO traspaso_estacion (traspaso, entrega, recibe, fecha, estado, usuario, "
                               "estacion, captura, confirma, de, a) VALUES ({}, {}, {}, {}, 'PE', {}, {}, {}, {}, {}, "
                               "{})", numero, *datos)
        except tarvik.Error:
            traspaso.traspaso = traspaso.captura = traspaso.confirma = 0
            raise


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


def almacenes_de(ambiente, traspaso: Traspaso) -> tuple[int, int]:
    """Out of which warehouse and into which one: of one that is begun those with which it began."""
    if traspaso.empezado() and traspaso.de is not None and traspaso.a is not None:
        return traspaso.de, traspaso.a
    return almacen_de(ambiente, traspaso.entrega), almacen_de(ambiente, traspaso.recibe)


def confirma(ambiente, traspaso: Traspaso, de: int, a: int) -> None:
    """Moves the goods from warehouse `de` to `a`. The transfer, pending or begun, ends as confirmed.

    Rechazo if somebody else is at it, SinTerminar if the posting stops: what has been moved by then
    stays moved, and the transfer stays begun if that is anything."""
    intento = _captura_nueva(ambiente)
    if not traspaso.empezado():
        guarda(ambiente, traspaso, intento, de, a)
    elif not _ejecuta(
            ambiente, "UPDATE traspaso_estacion SET confirma = {}, usuario = {}, estacion = {}, de = {}, a = {} "
            "WHERE traspaso = {} AND confirma = {} AND estado = 'PE' RETURNING traspaso", intento, ambiente.Usuario,
            ambiente.Estacion, de, a, traspaso.traspaso, traspaso.confirma):
        _explica(ambiente, traspaso.traspaso)
    traspaso.confirma = intento
    try:
        _mueve(ambiente, traspaso, de, a)
        if not _ejecuta(ambiente, "UPDATE traspaso_estacion SET estado = 'CO', confirma = 0 WHERE traspaso = {} "
                                  "AND confirma = {} AND estado = 'PE' RETURNING traspaso", traspaso.traspaso, intento):
            _explica(ambiente, traspaso.traspaso)
    except tarvik.Error as error:
        queda = "Lo que ya se movió no se moverá otra vez: confírmelo de nuevo cuando se haya corregido la causa."
        with contextlib.suppress(tarvik.Error):  # where the base does not answer, begun is what it stays
            _sigue_siendo_suyo(ambiente, traspaso)  # the ledger has refused a line that another station moved
            if not movidas(ambiente, traspaso.traspaso) and _ejecuta(
                    ambiente, "UPDATE traspaso_estacion SET confirma = 0 WHERE traspaso = {} AND confirma = {} "
                    "RETURNING traspaso", traspaso.traspaso, intento):
                traspaso.confirma = 0
                queda = "No se movió nada; quedó pendiente."
        raise SinTerminar(f"El traspaso {traspaso.traspaso} no se terminó de confirmar: {error}\n\n{queda}") from error
    traspaso.estado, traspaso.confirma = "CO", 0


def movidas(ambiente, numero: int) -> set[tuple[str, int]]:
    """What the ledger has of a transfer: direction and line."""
    return {(fila["ent_sal"], fila["id_salida"]) for fila in _filas(
        ambiente, "SELECT ent_sal, id_salida FROM movsinv WHERE operacion = {} AND movimiento = {}", OPERACION, numero)}


def _sigue_siendo_suyo(ambiente, traspaso: Traspaso) -> None:
    """Rechazo if another station has taken it over meanwhile: what is left is that one's to move."""
    if not _ejecuta(ambiente, "SELECT traspaso FROM traspaso_estacion WHERE traspaso = {} AND confirma = {} "
                              "AND estado = 'PE'", traspaso.traspaso, traspaso.confirma):
        _explica(ambiente, traspaso.traspaso)


def _precio_de_lo_salido(ambiente, numero: int, partida: int) -> float:
    """At what a line left, so that what one warehouse loses in value the other one gains, though the
    article's cost may have changed since."""
    for fila in _filas(ambiente, "SELECT cantidad, precio, importe FROM movsinv WHERE operacion = {} "
                                 "AND movimiento = {} AND ent_sal = 'S' AND id_salida = {}", OPERACION, numero, partida):
        cantidad, precio, importe = fila["cantidad"], fila["precio"] or 0.0, fila["importe"] or 0.0
        return precio if cantidad * precio == importe else importe / cantidad
    raise Rechazo(f"El traspaso {numero} no tiene en el libro la salida de su renglón {partida}.")


def _mueve(ambiente, traspaso: Traspaso, de: int, a: int) -> None:
    hechas = movidas(ambiente, traspaso.traspaso)
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
        movimiento.IdSalida = partida
        for ent_sal, almacen in (("S", de), ("E", a)):
            if (ent_sal, partida) in hechas:
                continue
            movimiento.EntSal = ent_sal
            movimiento.Almacen = almacen
            movimiento.Precio = (
                float(_dato(ambiente, "costo", "SELECT costo_u AS costo FROM prods WHERE articulo = {}", articulo) or 0)
                if ent_sal == "S" else _precio_de_lo_salido(ambiente, traspaso.traspaso, partida))
            _sigue_siendo_suyo(ambiente, traspaso)
            movimiento.Afecta()
