"""What the examples share: opening the system, an operator's hands on a wizard,
documents being recorded row by row, and text for the terminal. It checks no books and decides
nothing about a row: that is each example's own."""

from __future__ import annotations

import argparse
import os
import re
import sys
import time
from collections import Counter, defaultdict
from dataclasses import dataclass, field
from decimal import ROUND_HALF_UP, Decimal
from pathlib import Path
from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from _archivos import Renglon

# txtFields of both wizards, by what they hold.
CONCEPTO, ALMACEN = 0, 14
ARTICULO, DESCRIPCION, CANTIDAD, UNIDAD, PRECIO = 4, 1, 5, 27, 6
CLAVE_ADICIONAL, PRESENTACIONES, UNIDAD_PRESENTACION, TOTAL = 24, 28, 29, 11
# Those of the entry row that end in a line: what stands in them would go with the next article.
DE_LA_PARTIDA = (ARTICULO, DESCRIPCION, CANTIDAD, PRECIO, CLAVE_ADICIONAL, 25, 26, PRESENTACIONES,
                 UNIDAD_PRESENTACION)

CENTAVO = Decimal("0.01")

PARTIDAS_EN_PANTALLA = 4999  # the grid shows no more, and its total counts no more
NUMERO = re.compile(r"[+-]?(\d+(\.\d*)?|\.\d+)")
CIFRAS = 15  # more are not kept


class Fallo(Exception):
    """Something that the person at the terminal has to put right; its text is for them."""


# argparse speaks English on its own.
_ARGPARSE = {
    "usage: ": "uso: ",
    "options": "opciones",
    "positional arguments": "argumentos",
    "show this help message and exit": "muestra esta ayuda y termina",
    "%(prog)s: error: %(message)s\n": "%(prog)s: %(message)s\n",
    "argument %(argument_name)s: %(message)s": "%(argument_name)s: %(message)s",
    "the following arguments are required: %s": "falta indicar: %s",
    "unrecognized arguments: %s": "no se reconoce: %s",
    "expected one argument": "falta su valor",
    "invalid %(type)s value: %(value)r": "no es un valor válido: %(value)r",
    "ambiguous option: %(option)s could match %(matches)s": "%(option)s puede ser: %(matches)s",
    "not allowed with argument %s": "no va junto con %s",
    "ignored explicit argument %r": "no lleva el valor %r",
}
argparse._ = lambda texto: _ARGPARSE.get(texto, texto)  # type: ignore[attr-defined]


def argumentos(descripcion: str) -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(description=descripcion, allow_abbrev=False)
    parser.add_argument("--base", required=True, metavar="DIRECCIÓN",
                        help="base de datos: sqlite:ARCHIVO o postgresql://...")
    parser.add_argument("--ruta", default="datos", metavar="CARPETA",
                        help="carpeta de la bitácora y de los documentos impresos (datos)")
    parser.add_argument("--usuario", default="ANA", help="quién trabaja (ANA)")
    parser.add_argument("--estacion", default="E1", help="en qué estación (E1)")
    return parser


def almacen_de(texto: str) -> int:
    if not texto.isdecimal() or len(texto) > 9:
        raise ValueError(texto)
    return int(texto)


def maximo_de(texto: str) -> int:
    maximo = int(texto)
    if not 1 <= maximo <= PARTIDAS_EN_PANTALLA:
        raise ValueError(texto)
    return maximo


def prepara_terminal() -> None:
    # A terminal that cannot write an accent shows a mark in its place and goes on.
    for salida in (sys.stdout, sys.stderr):
        salida.reconfigure(errors="replace")


def abre(opciones: argparse.Namespace, demo: bool = False):
    """The system on the base, or Fallo with the reason why it does not open."""
    try:
        import tarvik
    except ImportError as error:
        raise Fallo(f"No se encuentra el módulo tarvik; indique su carpeta en PYTHONPATH ({error}).") from error
    try:
        return tarvik.Anfitrion(base=opciones.base, usuario=opciones.usuario, estacion=opciones.estacion,
                                ruta=opciones.ruta, demo=demo)
    except tarvik.Error as error:
        raise Fallo(f"Base {opciones.base}: {error}") from error


def numero(texto: str) -> Decimal:
    """A number as the screen shows it."""
    return Decimal(texto.replace(",", "") or "0")


def centavos(valor: Decimal) -> Decimal:
    return valor.quantize(CENTAVO, ROUND_HALF_UP)


def exacto(valor: float | int | None) -> Decimal:
    """A stored number as the decimal that it stands for."""
    return Decimal(repr(valor or 0))


def plano(valor: Decimal) -> str:
    """3 and not 3.0 nor 3E+2."""
    texto = format(valor, "f")
    return texto.rstrip("0").rstrip(".") if "." in texto else texto


def importe(valor: Decimal) -> str:
    return f"{centavos(valor):,}"


def existencias(anf, almacen: int, articulos: list[str]) -> dict[str, Decimal]:
    filas = anf.sql(
        "SELECT articulo, existencia FROM existenciaalmacen WHERE almacen = ? AND articulo IN "
        f"({', '.join('?' * len(articulos))})", almacen, *articulos)
    halladas = {fila["articulo"]: exacto(fila["existencia"]) for fila in filas}
    return {articulo: halladas.get(articulo, Decimal(0)) for articulo in articulos}


def paginas_impresas(anf) -> list[Path]:
    """Where the documents printed so far lie."""
    carpeta = Path(anf.Ambiente.RutaBase) / "impresos"
    return [carpeta / f"{formato}-{documento}.html" for formato, documento in anf.impresos]


def tabla(titulos: list[str], filas: list[list[str]], derecha: set[int] = frozenset(), sangria: str = "") -> str:
    anchos = [max([len(titulo)] + [len(fila[i]) for fila in filas]) for i, titulo in enumerate(titulos)]

    def linea(celdas: list[str]) -> str:
        partes = [celda.rjust(ancho) if i in derecha else celda.ljust(ancho)
                  for i, (celda, ancho) in enumerate(zip(celdas, anchos))]
        return (sangria + "  ".join(partes)).rstrip()

    return "\n".join([linea(titulos), sangria + "  ".join("-" * ancho for ancho in anchos)] +
                     [linea(fila) for fila in filas])


# ---- an operator -------------------------------------------------------------------------------


class Operador:
    """An operator in front of one document, a goods-in one unless told otherwise: only keys, and what the
    screen shows."""

    OPERACION = "NuevaEntrada"

    def __init__(self, anf, numero: int | None = None) -> None:
        """A new document, or that pending one; one whose holder's program is gone is let go of first."""
        self.anf = anf
        if numero is None:
            getattr(anf.EntradasSalidas(), self.OPERACION)()
            abierta = anf.pantallas[-1] if anf.pantallas else None
        else:
            abierta = anf.abre(self.OPERACION.removeprefix("Nueva"), numero)
        if abierta is None:
            raise Fallo("No se pudo abrir la pantalla del documento. " + " ".join(self.novedades()))
        self.forma = abierta

    def campo(self, indice: int):
        return self.forma.txtFields[indice]

    def lee(self, indice: int) -> str:
        return self.campo(indice).Text

    def escribe(self, indice: int, texto: str) -> None:
        """Types into a field that was just entered, and so over what stands there."""
        self.forma.teclea(self.campo(indice), texto)

    def enter(self) -> None:
        self.forma.tecla("Enter")

    def encabezado(self, concepto: str, almacen: str) -> None:
        self.escribe(CONCEPTO, concepto)
        self.enter()
        self.escribe(ALMACEN, almacen)
        self.enter()

    def observa(self, texto: str) -> None:
        """Writes the document's remarks."""
        self.forma.teclea(self.forma.RichTextBox2, texto)

    def lector(self, activo: bool) -> None:
        if (self.forma.Check4.Value == 1) != activo:
            self.forma.tecla("F3", self.campo(ARTICULO))

    def articulo(self, clave: str) -> None:
        self.escribe(ARTICULO, clave)
        self.enter()

    def por_presentacion(self) -> bool:
        """The key typed was that of a presentation that fixes how many units it holds."""
        return bool(self.lee(CLAVE_ADICIONAL)) and numero(self.lee(CANTIDAD)) > 0

    def limpia_partida(self) -> None:
        """Empties the entry row as an operator does: the article is deleted and its field left.

        Left by a click and not by Enter, which would bring the cost of the first article that belongs
        to no model. The row of a presentation leaves a 0 as its quantity, hence the second time."""
        for _ in range(2):
            if not any(self.lee(indice) for indice in DE_LA_PARTIDA):
                return
            self.forma.enfoca(self.campo(CANTIDAD))
            self.forma.enfoca(self.campo(ARTICULO))
            self.forma.tecla("Delete")
            self.forma.enfoca(self.campo(CANTIDAD))
        self.forma.enfoca(self.campo(ARTICULO))

    def afecta(self) -> bool:
        """F5, and Yes to the question if there is one. True if the screen finished and closed."""
        self.anf.respuestas.clear()
        self.anf.respuestas.append(True)
        self.forma.tecla("F5", self.campo(ARTICULO))
        self.anf.respuestas.clear()
        return not self.forma.abierta

    def cierra(self) -> None:
        """The close box: whatever was recorded stays as a pending document, free for anyone."""
        if self.forma.abierta:
            self.forma.cierra()
            self.anf.procesa_eventos(20)

    def novedades(self) -> list[str]:
        """What the operator was shown since the last time, questions apart."""
        vistos = [" ".join(mensaje.texto.split()) for mensaje in self.anf.mensajes if mensaje.clase != "pregunta"]
        vistos += [" ".join(texto.split()) for texto in self.anf.no_atrapados]
        self.anf.mensajes.clear()
        self.anf.no_atrapados.clear()
        return list(dict.fromkeys(vistos))


# ---- recording ---------------------------------------------------------------------------------


@dataclass
class Documento:
    """One document, with what ought to stand in it by this program's own reckoning."""

    numero: int
    partidas: int = 0
    suma: Decimal = Decimal(0)
    en_pantalla: str = ""
    por_articulo: dict[str, Decimal] = field(default_factory=lambda: defaultdict(Decimal))
    cerrado: bool = False
    origen: str = ""  # the paper that it was recorded from


class Barra:
    """Progress on the terminal; nothing elsewhere."""

    def __init__(self, total: int, visible: bool) -> None:
        self.total, self.visible = total, visible and sys.stderr.isatty() and total > 0
        self.inicio, self.ultima = time.monotonic(), 0.0

    def avanza(self, hechos: int) -> None:
        ahora = time.monotonic()
        if not self.visible or (ahora - self.ultima < 0.1 and hechos < self.total):
            return
        self.ultima = ahora
        llenos = 30 * hechos // self.total
        resto = (ahora - self.inicio) / hechos * (self.total - hechos)
        sys.stderr.write(f"\r[{'#' * llenos}{'.' * (30 - llenos)}] {hechos} de {self.total}, "
                         f"faltan {int(resto) // 60}:{int(resto) % 60:02} ")
        sys.stderr.flush()

    def termina(self) -> None:
        if self.visible:
            sys.stderr.write("\r" + " " * 72 + "\r")
            sys.stderr.flush()


class SinTerminar(Exception):
    """The screen would not finish the document; the reason is among the differences."""


class Registro:
    """Documents of one kind being recorded, goods-in unless told otherwise, and what became of each row."""

    OPERADOR: type[Operador] = Operador
    DOCUMENTO = "entrada"  # what it is called; its number's column too
    TABLA, PARTIDAS = "entradas", "entpart"

    def __init__(self, anf, concepto: str, almacen: int, pendiente: bool, maximo: int) -> None:
        self.anf = anf
        self.concepto, self.almacen, self.pendiente, self.maximo = concepto, almacen, pendiente, maximo
        self.documentos: list[Documento] = []
        self.rechazados: list[tuple[Renglon, str]] = []
        self.avisos: list[tuple[Renglon, str]] = []
        self.diferencias: list[str] = []
        self.operador: Operador | None = None

    def documento_nuevo(self) -> Documento:
        return Documento(0)

    def numero_en_pantalla(self) -> int:
        return getattr(self.operador.forma, self.DOCUMENTO.capitalize())

    def abre(self) -> None:
        operador = self.OPERADOR(self.anf)
        operador.encabezado(self.concepto, str(self.almacen))
        operador.novedades()
        # The finish asks this too, but then the lines have been typed.
        if not operador.forma.ValidaTab1():
            motivo = " ".join(operador.novedades())
            operador.cierra()
            raise Fallo(f"Concepto {self.concepto}, almacén {self.almacen}: {motivo}")
        # A screen that was turned away is nobody's: the document before it keeps its number.
        self.documentos.append(self.documento_nuevo())
        self.operador = operador

    def olvida(self) -> None:
        """The record of what happened would grow with every key."""
        for lista in (self.anf.sentencias, self.anf.ganchos_disparados, self.anf.movimientos):
            lista.clear()

    def termina(self) -> None:
        """Finishes the document at hand. A document without lines is not made at all."""
        operador = self.operador
        if operador is None:
            return
        documento = self.documentos[-1]
        if documento.partidas == 0:
            operador.cierra()
            self.documentos.pop()
            self.operador = None
            return
        documento.en_pantalla = operador.lee(TOTAL)
        if self.pendiente:
            operador.forma.clic(operador.forma.Check3)
        documento.cerrado = operador.afecta()
        novedades = operador.novedades()
        operador.cierra()
        self.operador = None
        self.olvida()
        if novedades or not documento.cerrado:
            self.diferencias.append(f"Al finalizar la {self.DOCUMENTO} {documento.numero}: " +
                                    (" ".join(novedades) or "la pantalla no la terminó."))
        if not documento.cerrado:
            raise SinTerminar()

    def deja(self) -> None:
        """Leaves the document at hand as it stands. One that has no row yet is none."""
        if self.operador is None:
            return
        # The last line may have been made just before the stop.
        documento = self.documentos[-1]
        documento.numero = self.numero_en_pantalla()
        self.operador.cierra()
        self.operador = None
        if not self.anf.sql(f"SELECT {self.DOCUMENTO} FROM {self.TABLA} WHERE {self.DOCUMENTO} = ?", documento.numero):
            self.documentos.pop()

    def interrumpe(self) -> list[str]:
        """Leaves the document at hand as it stands, and says what there is of each."""
        self.deja()
        quedan = []
        for documento in self.documentos:
            for fila in self.anf.sql(
                    f"SELECT estado, (SELECT COUNT(*) FROM {self.PARTIDAS} AS p WHERE p.{self.DOCUMENTO} = "
                    f"d.{self.DOCUMENTO}) AS partidas FROM {self.TABLA} AS d WHERE {self.DOCUMENTO} = ?",
                    documento.numero):
                como = "afectada" if fila["estado"] == "CO" else "pendiente"
                quedan.append(f"La {self.DOCUMENTO} {documento.numero} queda {como}, con {fila['partidas']} "
                              "partidas.")
        return quedan


def se_teclea(texto: str) -> bool:
    return all(caracter.isprintable() for caracter in texto)


# ---- reports -----------------------------------------------------------------------------------


def informa_renglones(rechazados: list[tuple[Renglon, str]], avisos: list[tuple[Renglon, str]],
                      motivo_general=lambda motivo: motivo) -> None:
    """The refused rows, each with its reason, and the lines that the operator was told something about."""
    if rechazados:
        print("\nRenglones rechazados")
        print(tabla(["Línea", "Artículo", "Cantidad", "Precio", "Motivo"],
                    [[str(renglon.linea), renglon.articulo, renglon.cantidad, renglon.precio, motivo]
                     for renglon, motivo in rechazados], {0, 2, 3}))
        print("\nPor motivo")
        motivos = Counter(motivo_general(motivo) for _, motivo in rechazados).most_common()
        print(tabla(["Renglones", "Motivo"], [[str(veces), motivo] for motivo, veces in motivos], {0}))
    if avisos:
        print("\nPartidas con aviso")
        print(tabla(["Línea", "Artículo", "Aviso"],
                    [[str(renglon.linea), renglon.articulo, aviso] for renglon, aviso in avisos], {0}))


def informa_revision(revisiones: list[tuple[str, list[str]]]) -> bool:
    """What was checked, each with what does not agree. True if all of it agrees."""
    for revisado, fallas in revisiones:
        print(f"  {'Bien' if not fallas else 'MAL '}  {revisado}.")
        for falla in fallas:
            print(f"        {falla}")
    return not any(fallas for _, fallas in revisiones)


def corre(principal) -> None:
    """Runs an example and ends the process with what it answers."""
    prepara_terminal()
    try:
        codigo = principal()
        sys.stdout.flush()
    except Fallo as fallo:
        print(fallo, file=sys.stderr)
        codigo = 2
    except KeyboardInterrupt:
        print("\nInterrumpido.", file=sys.stderr)
        codigo = 130
    except BrokenPipeError:
        # Whoever read the output has gone. What was recorded stays recorded.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        codigo = 0
    except Exception as error:
        if type(error).__module__ != "tarvik":
            raise
        print(f"La base no aceptó lo que se le pidió: {error}", file=sys.stderr)
        codigo = 2
    sys.exit(codigo)
