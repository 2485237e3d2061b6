"""The partner of the colour and size matrix that works outside the screens.

A screen that is given a model's key leaves what it wants in `mallaparam`, sets ControlProc to 0 (by
the routine ganchos/40_malla_externa.py) and waits. This program, a process of its own that knows
nothing but the base, spreads a quantity over the model's articles, leaves one row of `mallacelda` for
each, and sets ControlProc to 1; the screen then turns the rows into lines. A shop with a matrix of
its own puts its program in this place."""

from __future__ import annotations

import argparse
import contextlib
import os
import signal
import sqlite3
import sys
import time
from dataclasses import dataclass
from pathlib import Path

CADA = 0.1  # seconds between two looks at the signal
# The screen looks for the 0 when its routine has returned: an answer that comes before is missed.
PAUSA = 0.3
AL_CERRAR = 5  # seconds that the end may take where others keep the base busy
AVISO = "MallaExterna"  # the setting by which the routine knows that somebody will answer

# By who asks: table and key of the document, and how one that somebody is writing looks. Goods-in may
# have been let go of by the save on the way; goods-out is not, and may be stored as anything.
ORIGENES = {"EntradasInventario": ("entradas", "entrada", "estado = 'PE'"),
            "SalidasInventario": ("salidas", "salida", "ocupado <> 0")}


class Fallo(Exception):
    """Something that the person at the terminal has to put right; its text is for them."""


class Termina(Exception):
    """Somebody asked the program to end."""


@dataclass(frozen=True)
class Reparto:
    por_celda: int | None
    total: int | None

    def cantidades(self, celdas: int) -> list[int]:
        """Whole units for each cell; what does not divide goes one by one to the first ones."""
        if self.por_celda is not None:
            return [self.por_celda] * celdas
        cada_una, sobran = divmod(self.total or 0, celdas) if celdas else (0, 0)
        return [cada_una + (celda < sobran) for celda in range(celdas)]


class Base:
    def __init__(self, archivo: Path):
        self.archivo = archivo
        if not archivo.is_file():
            raise Fallo(f"No existe la base {archivo}.")
        # Never made by this program: a mistyped name must not leave an empty base behind.
        self.conexion = sqlite3.connect(f"{archivo.absolute().as_uri()}?mode=rw", uri=True, timeout=1,
                                        isolation_level=None)
        self.lugar = self.identidad()
        try:
            faltan = {"mallaparam", "mallacelda", "controlproc", "parametros"} - {
                fila[0].lower() for fila in self.insiste("SELECT name FROM sqlite_master WHERE type = 'table'")}
        except sqlite3.DatabaseError as error:
            raise Fallo(f"{archivo} no es una base del sistema ({error}).") from error
        if faltan:
            raise Fallo(f"{archivo} no es una base del sistema.")

    def identidad(self) -> tuple[int, int] | None:
        try:
            estado = os.stat(self.archivo)
        except OSError:
            return None
        return estado.st_dev, estado.st_ino

    def insiste(self, sentencia: str, *valores) -> list[tuple]:
        """Runs one statement. A base that others keep busy is asked again until it answers."""
        avisado = False
        while True:
            if self.identidad() != self.lugar:
                raise Fallo(f"La base {self.archivo} fue movida o borrada.")
            try:
                return self.conexion.execute(sentencia, valores).fetchall()
            except sqlite3.OperationalError as error:
                if error.sqlite_errorcode & 0xFF not in (sqlite3.SQLITE_BUSY, sqlite3.SQLITE_LOCKED):
                    raise
            if not avisado:
                print("La base está ocupada; se espera.", flush=True)
                avisado = True
            time.sleep(CADA)

    def esperan(self) -> bool:
        return bool(self.insiste("SELECT 1 FROM ControlProc WHERE controlproc = 0"))

    def anuncia(self, texto: str) -> None:
        self.insiste("INSERT INTO parametros (nombre, valor) VALUES (?, ?) "
                     "ON CONFLICT (nombre) DO UPDATE SET valor = excluded.valor", AVISO, texto)

    def cierra(self) -> None:
        """Takes the notice back and lets go of whoever still waits, in one step: who asks from then on is
        told that nobody is at work. A base that is busy for long is left as it is."""
        hasta = time.monotonic() + AL_CERRAR
        while self.identidad() == self.lugar:
            try:
                self.conexion.execute("BEGIN IMMEDIATE")
                self.conexion.execute("DELETE FROM parametros WHERE nombre = ?", (AVISO,))
                self.conexion.execute("DELETE FROM mallaparam WHERE EXISTS (SELECT 1 FROM ControlProc "
                                      "WHERE controlproc = 0)")
                self.conexion.execute("UPDATE ControlProc SET controlproc = 1 WHERE controlproc = 0")
                self.conexion.execute("COMMIT")
                break
            except sqlite3.Error:
                if self.conexion.in_transaction:
                    with contextlib.suppress(sqlite3.Error):
                        self.conexion.execute("ROLLBACK")
                if time.monotonic() >= hasta:
                    print("No se pudo retirar el aviso: la base sigue ocupada.", file=sys.stderr)
                    break
            time.sleep(CADA)
        self.conexion.close()


def articulos_de(base: Base, modelo: str) -> list[tuple]:
    """The model's articles with their price as the screens propose it, tax included."""
    return base.insiste(
        "SELECT prods.articulo, ROUND(COALESCE(precio1, 0) * (1 + COALESCE(valor, 0) / 100), 2), prods.descrip "
        "FROM prods LEFT JOIN impuestos ON impuestos.impuesto = prods.impuesto "
        "WHERE modelo = ? AND modelo <> '' AND color <> '' AND talla <> '' ORDER BY color, talla, articulo", modelo)


def atiende(base: Base, reparto: Reparto) -> list[str]:
    """Answers everybody who waits, whole or not at all. Says what it did."""
    hecho = []
    try:
        base.insiste("BEGIN IMMEDIATE")  # inside: one who is told to end just after it must not keep the base
        for modelo, documento, origen in base.insiste(
                "SELECT modelo, documento, origen FROM mallaparam ORDER BY origen, documento"):
            hecho.append(reparte(base, reparto, modelo, documento, origen))
        base.insiste("DELETE FROM mallaparam")
        # Also with nothing to spread: whoever waits must not wait for ever.
        base.insiste("UPDATE ControlProc SET controlproc = 1")
        base.insiste("COMMIT")
    except BaseException:
        if base.conexion.in_transaction:
            base.conexion.execute("ROLLBACK")
        raise
    return hecho


def reparte(base: Base, reparto: Reparto, modelo: str, documento: str, origen: str) -> str:
    if origen not in ORIGENES:
        return f"{origen} {documento}: no se conoce ese origen; se pasa por alto."
    tabla, numero, en_captura = ORIGENES[origen]
    quien = f"{numero} {documento}, modelo {modelo}"
    if not base.insiste(f"SELECT 1 FROM {tabla} WHERE {numero} = ? AND {en_captura}", documento):
        return f"{quien}: el documento ya no está en captura; se pasa por alto."
    articulos = articulos_de(base, modelo)
    # What an answer that nobody took has left would become lines a second time.
    base.insiste("DELETE FROM mallacelda WHERE documento = ? AND origen = ?", documento, origen)
    partidas = piezas = 0
    for (articulo, precio, descripcion), cantidad in zip(articulos, reparto.cantidades(len(articulos))):
        if cantidad == 0:
            continue
        base.insiste("INSERT INTO mallacelda (documento, origen, articulo, cantidad, precio, observ, prdescrip, "
                     "prcantidad, claveadd) VALUES (?, ?, ?, ?, ?, ?, '', 0, '')",
                     documento, origen, articulo, cantidad, precio, descripcion)
        partidas += 1
        piezas += cantidad
    return f"{quien}: {partidas} partidas, {piezas} piezas."


def trabaja(base: Base, reparto: Reparto, vigila: bool, limite: float | None) -> int:
    desde = time.monotonic()
    print("En espera de peticiones.", flush=True)
    while True:
        if base.esperan():
            time.sleep(PAUSA)
            for linea in atiende(base, reparto):
                print(linea, flush=True)
            if not vigila:
                return 0
        elif limite is not None and time.monotonic() - desde >= limite:
            print("Nadie pidió nada.", flush=True)
            return 1
        time.sleep(CADA)


def entero(texto: str) -> int:
    if not texto.isdecimal() or not 0 < int(texto) <= 999_999_999:
        raise argparse.ArgumentTypeError(f"no es un número entero mayor que cero: {texto}")
    return int(texto)


def archivo_de(texto: str) -> Path:
    if not texto.startswith("sqlite:") or texto in ("sqlite:", "sqlite::memory:"):
        raise argparse.ArgumentTypeError(f"debe ser sqlite:ARCHIVO y es {texto}")
    return Path(texto.removeprefix("sqlite:"))


def opciones_de_la_linea():
    parser = argparse.ArgumentParser(description="Reparte modelos en sus colores y tallas, por fuera de la pantalla.",
                                     allow_abbrev=False)
    parser.add_argument("--base", type=archivo_de, required=True, metavar="sqlite:ARCHIVO", help="base de datos")
    cantidad = parser.add_mutually_exclusive_group(required=True)
    cantidad.add_argument("--por-celda", type=entero, metavar="PIEZAS", help="la misma cantidad para cada artículo")
    cantidad.add_argument("--total", type=entero, metavar="PIEZAS", help="cantidad que se reparte por igual")
    parser.add_argument("--vigila", action="store_true", help="sigue después de la primera petición")
    parser.add_argument("--espera", type=float, metavar="SEGUNDOS",
                        help="termina si en este tiempo nadie pide nada (sin límite)")
    return parser.parse_args()


def principal() -> int:
    def termina(*_):
        raise Termina

    signal.signal(signal.SIGTERM, termina)
    signal.signal(signal.SIGINT, termina)
    opciones = opciones_de_la_linea()
    try:
        base = Base(opciones.base)
        try:
            base.anuncia(f"proceso {os.getpid()}")
            return trabaja(base, Reparto(opciones.por_celda, opciones.total), opciones.vigila, opciones.espera)
        finally:
            signal.signal(signal.SIGTERM, signal.SIG_IGN)  # what is left takes an instant
            signal.signal(signal.SIGINT, signal.SIG_IGN)
            base.cierra()
    except Termina:
        print("Terminado.", flush=True)
        return 0
    except (Fallo, sqlite3.Error) as error:
        print(error, file=sys.stderr)
        return 2


if __name__ == "__main__":
    sys.exit(principal())
