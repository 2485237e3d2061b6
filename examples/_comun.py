"""What the examples share: opening the system, an operator's hands on the goods-in wizard, and text
for the terminal. It keeps no books and decides nothing: that is each example's own."""

from __future__ import annotations

import argparse
import os
import sys
from decimal import ROUND_HALF_UP, Decimal
from pathlib import Path

# txtFields of the goods-in wizard, by what they hold.
CONCEPTO, ALMACEN = 0, 14
ARTICULO, DESCRIPCION, CANTIDAD, UNIDAD, PRECIO = 4, 1, 5, 27, 6
CLAVE_ADICIONAL, PRESENTACIONES, UNIDAD_PRESENTACION, TOTAL = 24, 28, 29, 11
# Those of the entry row that end in a line: what stands in them would go with the next article.
DE_LA_PARTIDA = (ARTICULO, DESCRIPCION, CANTIDAD, PRECIO, CLAVE_ADICIONAL, 25, 26, PRESENTACIONES,
                 UNIDAD_PRESENTACION)

CENTAVO = Decimal("0.01")


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
    "ignored explicit argument %r": "no lleva el valor %r",
}
argparse._ = lambda texto: _ARGPARSE.get(texto, texto)  # type: ignore[attr-defined]


def argumentos(descripcion: str) -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(description=descripcion, allow_abbrev=False)
    parser.add_argument("--base", required=True, metavar="DIRECCIÓN", help="base de datos: sqlite:ARCHIVO")
    parser.add_argument("--ruta", default="datos", metavar="CARPETA",
                        help="carpeta de la bitácora y de los documentos impresos (datos)")
    parser.add_argument("--usuario", default="ANA", help="quién trabaja (ANA)")
    parser.add_argument("--estacion", default="E1", help="en qué estación (E1)")
    return parser


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


class Operador:
    """An operator in front of one goods-in document: only keys, and what the screen shows."""

    def __init__(self, anf) -> None:
        self.anf = anf
        anf.EntradasSalidas().NuevaEntrada()
        if not anf.pantallas:
            raise Fallo("No se pudo abrir la pantalla de entradas. " + " ".join(self.novedades()))
        self.forma = anf.pantallas[-1]

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
