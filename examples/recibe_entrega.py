#!/usr/bin/env python3
"""Records a supplier's delivery note, a CSV file, through the goods-in wizard as an operator would:
keys only, one line at a time. Then it posts the document and checks the books.

It brings no rule of its own: what the screen refuses is reported with the screen's words. It does not
mend the file, and it reads it whole before anything is recorded."""

from __future__ import annotations

import csv
import io
import re
import signal
import sys
import time
from collections import Counter, defaultdict
from dataclasses import dataclass, field
from decimal import Decimal
from pathlib import Path

import _comun as comun
from _comun import CANTIDAD, PRECIO, PRESENTACIONES, TOTAL, Fallo, Operador

COLUMNAS = {
    "articulo": {"articulo", "artículo", "clave", "stockcode"},
    "cantidad": {"cantidad", "quantity"},
    "precio": {"precio", "unitprice"},
    "descripcion": {"descripcion", "descripción", "description"},
    "lectura": {"lectura"},
}
PARTIDAS_EN_PANTALLA = 4999  # the grid shows no more, and its total counts no more
NUMERO = re.compile(r"[+-]?(\d+(\.\d*)?|\.\d+)")
CIFRAS = 15  # more are not kept


# ---- the file ----------------------------------------------------------------------------------


@dataclass(frozen=True)
class Renglon:
    linea: int
    articulo: str
    cantidad: str = ""
    precio: str = ""
    descripcion: str = ""
    lectura: bool = False


def texto_de(archivo: Path) -> str:
    try:
        crudo = archivo.read_bytes()
    except OSError as error:
        motivos = {FileNotFoundError: "no existe", IsADirectoryError: "es una carpeta",
                   PermissionError: "no hay permiso para leerlo"}
        raise Fallo(f"{archivo}: {motivos.get(type(error), error.strerror)}.") from error
    try:
        return crudo.decode("utf-8-sig")
    except UnicodeDecodeError as error:
        # The decoder counts without the mark at the front of the file.
        posicion = error.start + (3 if crudo.startswith(b"\xef\xbb\xbf") else 0)
        linea = crudo.count(b"\n", 0, posicion) + 1
        columna = posicion - (crudo.rfind(b"\n", 0, posicion) + 1) + 1
        raise Fallo(f"{archivo}, línea {linea}, byte {columna}: el texto no está en UTF-8.") from error


def columnas_de(archivo: Path, titulos: list[str], exigidas: tuple[str, ...]) -> dict[str, int]:
    halladas: dict[str, int] = {}
    for posicion, titulo in enumerate(titulos):
        nombre = titulo.strip().casefold()
        for columna, nombres in COLUMNAS.items():
            if nombre not in nombres:
                continue
            if columna in halladas:
                raise Fallo(f"{archivo}, línea 1: la columna {columna} está dos veces "
                            f"({titulos[halladas[columna]].strip()} y {titulo.strip()}).")
            halladas[columna] = posicion
    for columna in exigidas:
        if columna not in halladas:
            raise Fallo(f"{archivo}, línea 1: falta la columna {columna} (nombres: "
                        f"{', '.join(sorted(COLUMNAS[columna]))}; separadas por comas).")
    return halladas


def exige_numero(lugar: str, texto: str) -> None:
    if texto and not NUMERO.fullmatch(texto):
        raise Fallo(f"{lugar}: \"{texto}\" no es un número.")
    if sum(caracter.isdigit() for caracter in texto) > CIFRAS:
        raise Fallo(f"{lugar}: \"{texto}\" tiene más de {CIFRAS} cifras.")


def filas_de(archivo: Path, exigidas: tuple[str, ...], numeros: tuple[str, ...]) -> list[tuple[int, dict[str, str]]]:
    """Every row of the file with its line, or Fallo with the place of the first that cannot be one."""
    texto = texto_de(archivo)
    csv.field_size_limit(max(len(texto), 1))
    filas = csv.reader(io.StringIO(texto, newline=""), strict=True)
    siguiente = 1
    leidas: list[tuple[int, dict[str, str]]] = []
    try:
        titulos = next(filas, None)
        if titulos is None:
            raise Fallo(f"{archivo}: el archivo está vacío.")
        lugares = columnas_de(archivo, titulos, exigidas)
        siguiente = filas.line_num + 1
        for fila in filas:
            linea, siguiente = siguiente, filas.line_num + 1  # a field may hold line breaks
            if not fila:
                continue
            if len(fila) != len(titulos):
                raise Fallo(f"{archivo}, línea {linea}: tiene {len(fila)} campos y el encabezado {len(titulos)}.")
            valores = {columna: fila[lugar].strip() for columna, lugar in lugares.items()}
            for columna in numeros:
                if columna in lugares:
                    exige_numero(f"{archivo}, línea {linea}, columna {titulos[lugares[columna]].strip()}",
                                 valores[columna])
            leidas.append((linea, valores))
    except csv.Error as error:
        raise Fallo(f"{archivo}, línea {siguiente}: las comillas del renglón están mal puestas.") from error
    return leidas


def lee_entrega(archivo: Path, lector: bool) -> list[Renglon]:
    exigidas = ("articulo",) if lector else ("articulo", "cantidad", "precio")
    return [renglon_de(archivo, linea, valores, lector)
            for linea, valores in filas_de(archivo, exigidas, ("cantidad", "precio"))]


def lee_catalogo(archivo: Path) -> list[Renglon]:
    """The same columns; quantities and marks of readings say nothing of an article."""
    return [Renglon(linea, valores["articulo"], precio=valores["precio"], descripcion=valores.get("descripcion", ""))
            for linea, valores in filas_de(archivo, ("articulo", "precio"), ("precio",))]


def renglon_de(archivo: Path, linea: int, valores: dict[str, str], lector: bool) -> Renglon:
    lugar = f"{archivo}, línea {linea}, columna"
    marca = valores.pop("lectura", "")
    if marca not in ("", "0", "1"):
        raise Fallo(f"{lugar} lectura: \"{marca}\" no es 0 ni 1.")
    cantidad, precio = valores.get("cantidad", ""), valores.get("precio", "")
    # A 0 says that this is no reading, whatever the row lacks.
    lectura = lector or marca == "1" or (marca == "" and not cantidad and not precio)
    if lectura and cantidad and Decimal(cantidad) != 1:
        raise Fallo(f"{lugar} cantidad: una lectura es de una unidad y dice {cantidad}.")
    if lectura and precio:
        raise Fallo(f"{lugar} precio: una lectura toma el precio del catálogo y dice {precio}.")
    return Renglon(linea, lectura=lectura, **valores)


# ---- the catalogue -----------------------------------------------------------------------------


def importa_catalogo(anf, renglones: list[Renglon], concepto: str, almacen: int) -> str:
    """Makes what is missing and leaves alone what is there. Answers with what it did."""
    anf.sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES (?, 'E', 'Compra a proveedor') "
            "ON CONFLICT DO NOTHING", concepto)
    anf.sql("INSERT INTO almacen (almacen, descrip) VALUES (?, ?) ON CONFLICT DO NOTHING", almacen,
            f"Almacén {almacen}")
    exentos = "SELECT impuesto FROM impuestos WHERE valor = 0 ORDER BY impuesto LIMIT 1"
    if not anf.sql(exentos):
        anf.sql("INSERT INTO impuestos (impuesto, valor, descrip) VALUES ('IVA0', 0, 'IVA 0 %') "
                "ON CONFLICT DO NOTHING")
    impuesto = anf.sql(exentos)
    if not impuesto:
        raise Fallo("El impuesto IVA0 de la base no es de 0 %: no hay con qué importar el catálogo.")

    # A key that is there several times is one article: the first description and the first price.
    articulos: dict[str, list] = {}
    sin_clave = 0
    for renglon in renglones:
        if not renglon.articulo:
            sin_clave += 1
            continue
        articulo = articulos.setdefault(renglon.articulo, ["", Decimal(0)])
        articulo[0] = articulo[0] or renglon.descripcion
        if articulo[1] == 0 and renglon.precio:
            articulo[1] = max(Decimal(renglon.precio), Decimal(0))

    cuenta = "SELECT COUNT(*) AS cuantos FROM prods"
    antes = anf.sql(cuenta)[0]["cuantos"]
    claves = list(articulos)
    for principio in range(0, len(claves), 500):
        tanda = claves[principio:principio + 500]
        valores: list = []
        for clave in tanda:
            descripcion, precio = articulos[clave]
            valores += [clave, descripcion, float(precio), impuesto[0]["impuesto"]]
        anf.sql("INSERT INTO prods (articulo, descrip, precio1, impuesto, unidad, invent) VALUES " +
                ", ".join(["(?, ?, ?, ?, 'PZA', 1)"] * len(tanda)) + " ON CONFLICT DO NOTHING", *valores)
    nuevos = anf.sql(cuenta)[0]["cuantos"] - antes
    hecho = f"Catálogo: {nuevos} artículos nuevos, {len(claves) - nuevos} ya estaban"
    return hecho + (f", {sin_clave} renglones sin clave." if sin_clave else ".")


# ---- recording ---------------------------------------------------------------------------------


@dataclass
class Documento:
    """One goods-in document, with what ought to stand in it by this program's own reckoning."""

    numero: int
    partidas: int = 0
    suma: Decimal = Decimal(0)
    en_pantalla: str = ""
    por_articulo: dict[str, Decimal] = field(default_factory=lambda: defaultdict(Decimal))
    cerrado: bool = False


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


class Recepcion:
    """The delivery being recorded: its documents, and what became of each row."""

    def __init__(self, anf, concepto: str, almacen: int, pendiente: bool, maximo: int) -> None:
        self.anf = anf
        self.concepto, self.almacen, self.pendiente, self.maximo = concepto, almacen, pendiente, maximo
        self.documentos: list[Documento] = []
        self.rechazados: list[tuple[Renglon, str]] = []
        self.avisos: list[tuple[Renglon, str]] = []
        self.diferencias: list[str] = []
        self.operador: Operador | None = None
        self.ultima_partida = 0
        self.precios: dict[str, Decimal] = {}

    def abre(self) -> None:
        self.operador = Operador(self.anf)
        self.operador.encabezado(self.concepto, str(self.almacen))
        self.operador.novedades()
        # The finish asks this too, but then the lines have been typed.
        if not self.operador.forma.ValidaTab1():
            motivo = " ".join(self.operador.novedades())
            self.operador.cierra()
            raise Fallo(f"Concepto {self.concepto}, almacén {self.almacen}: {motivo}")
        self.documentos.append(Documento(0))

    def registra(self, renglon: Renglon) -> None:
        if self.operador is None:
            self.abre()
        operador, documento = self.operador, self.documentos[-1]
        operador.novedades()
        factor = Decimal(1)
        if any(not caracter.isprintable() for caracter in renglon.articulo):
            self.rechazados.append((renglon, "La clave tiene caracteres que no se pueden teclear."))
            return
        operador.lector(renglon.lectura)
        # A reading leaves the cost of some article as a price.
        operador.limpia_partida()
        operador.articulo(renglon.articulo)
        if not renglon.lectura:
            if operador.por_presentacion():
                factor = comun.numero(operador.lee(CANTIDAD))
                operador.escribe(PRESENTACIONES, renglon.cantidad)
                operador.enter()
            else:
                operador.escribe(CANTIDAD, renglon.cantidad)
            operador.enter()
            operador.escribe(PRECIO, renglon.precio)
            operador.enter()
        self.anota(renglon, documento, factor, operador.novedades())
        operador.limpia_partida()
        self.olvida()
        if documento.partidas >= self.maximo:
            self.termina()

    def anota(self, renglon: Renglon, documento: Documento, factor: Decimal, novedades: list[str]) -> None:
        documento.numero = self.operador.forma.Entrada
        hechas = self.anf.sql(
            "SELECT id_entrada, articulo, cantidad, precio, claveadd FROM entpart "
            "WHERE entrada = ? AND id_entrada > ? ORDER BY id_entrada", documento.numero, self.ultima_partida)
        texto = " ".join(novedades)
        if not hechas:
            self.rechazados.append((renglon, texto or "La pantalla no hizo la partida y no dijo por qué."))
            return
        if texto:
            self.avisos.append((renglon, texto))
        self.ultima_partida = hechas[-1]["id_entrada"]
        documento.partidas += len(hechas)
        if len(hechas) > 1:
            self.diferencias.append(f"Línea {renglon.linea}: hizo {len(hechas)} partidas.")
        partida = hechas[0]
        articulo = partida["articulo"]
        cantidad = factor * Decimal("1" if renglon.lectura else renglon.cantidad or "0")
        precio = self.precio(renglon, articulo)
        documento.suma += cantidad * precio
        documento.por_articulo[articulo] += cantidad
        if renglon.precio and precio != Decimal(renglon.precio):
            self.avisos.append((renglon, f"El precio {renglon.precio} quedó en {precio}."))
        esperada = (renglon.articulo, comun.plano(cantidad), comun.plano(precio))
        guardada = (renglon.articulo if renglon.articulo in (articulo, partida["claveadd"]) else articulo,
                    comun.plano(comun.exacto(partida["cantidad"])), comun.plano(comun.exacto(partida["precio"])))
        if esperada != guardada:
            self.diferencias.append(f"Línea {renglon.linea}: la partida {partida['id_entrada']} dice "
                                    f"{', '.join(guardada)} y debía decir {', '.join(esperada)}.")

    def precio(self, renglon: Renglon, articulo: str) -> Decimal:
        """What the line ought to cost. The price field keeps two decimals."""
        if renglon.precio:
            return comun.centavos(Decimal(renglon.precio))
        if articulo not in self.precios:
            fila = self.anf.sql("SELECT precio1, valor FROM prods INNER JOIN impuestos ON prods.impuesto = "
                                "impuestos.impuesto WHERE articulo = ?", articulo)
            self.precios[articulo] = comun.centavos(
                comun.exacto(fila[0]["precio1"]) * (1 + comun.exacto(fila[0]["valor"]) / 100)) if fila else Decimal(0)
        return self.precios[articulo]

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
            self.diferencias.append(f"Al finalizar la entrada {documento.numero}: " +
                                    (" ".join(novedades) or "la pantalla no la terminó."))
        if not documento.cerrado:
            raise SinTerminar()

    def interrumpe(self) -> str:
        """Leaves the document at hand as it stands, and says what there is."""
        if self.operador is not None:
            # The last line may have been made just before the stop.
            self.documentos[-1].numero = self.operador.forma.Entrada
            self.operador.cierra()
        quedan = []
        for documento in self.documentos:
            for fila in self.anf.sql("SELECT estado, (SELECT COUNT(*) FROM entpart WHERE entpart.entrada = "
                                     "entradas.entrada) AS partidas FROM entradas WHERE entrada = ?", documento.numero):
                como = "afectada" if fila["estado"] == "CO" else "pendiente"
                quedan.append(f"La entrada {documento.numero} queda {como}, con {fila['partidas']} partidas.")
        return "Interrumpido. " + (" ".join(quedan) or "No quedó ningún documento.")


class SinTerminar(Exception):
    """The screen would not finish the document; the reason is among the differences."""


# ---- the books ---------------------------------------------------------------------------------


def revisa(recepcion: Recepcion) -> list[tuple[str, list[str]]]:
    """What was checked, each with what does not agree."""
    anf = recepcion.anf
    partidas: list[str] = []
    totales: list[str] = []
    movimientos: list[str] = []
    for documento in recepcion.documentos:
        n = documento.numero
        guardadas = anf.sql("SELECT COUNT(*) AS n FROM entpart WHERE entrada = ?", n)[0]["n"]
        if guardadas != documento.partidas:
            partidas.append(f"Entrada {n}: se hicieron {documento.partidas} partidas y hay {guardadas}.")
        encabezado = anf.sql("SELECT importe, estado, ocupado FROM entradas WHERE entrada = ?", n)[0]
        suma = comun.centavos(documento.suma)
        if documento.en_pantalla and suma != comun.numero(documento.en_pantalla):
            totales.append(f"Entrada {n}: la pantalla dijo {documento.en_pantalla} y la suma es {suma:,}.")
        if documento.cerrado and suma != comun.centavos(comun.exacto(encabezado["importe"])):
            totales.append(f"Entrada {n}: se guardó {encabezado['importe']} y la suma es {suma:,}.")
        if not documento.cerrado:
            continue
        estado = "PE" if recepcion.pendiente else "CO"
        if (encabezado["estado"], encabezado["ocupado"]) != (estado, 0):
            totales.append(f"Entrada {n}: estado {encabezado['estado']}, ocupado {encabezado['ocupado']}.")
        afectado = {fila["articulo"]: fila for fila in anf.sql(
            "SELECT articulo, SUM(cantidad) AS cantidad, COUNT(*) AS veces FROM movsinv "
            "WHERE operacion = 'EN' AND movimiento = ? AND almacen = ? GROUP BY articulo", n, recepcion.almacen)}
        esperado = {} if recepcion.pendiente else documento.por_articulo
        for articulo in sorted(set(afectado) | set(esperado)):
            movido = Decimal(str(round(afectado[articulo]["cantidad"], 6))) if articulo in afectado else Decimal(0)
            if abs(movido - esperado.get(articulo, Decimal(0))) > Decimal("0.000001"):
                movimientos.append(f"Entrada {n}, {articulo}: se movieron {movido} y se recibieron "
                                   f"{esperado.get(articulo, Decimal(0))}.")
        veces = sum(fila["veces"] for fila in afectado.values())
        if not recepcion.pendiente and veces != documento.partidas:
            movimientos.append(f"Entrada {n}: {veces} movimientos para {documento.partidas} partidas.")
    existencias = [
        f"Almacén {comun.plano(comun.exacto(fila['almacen']))}, {fila['articulo']}: existencia "
        f"{fila['existencia']:g}, movimientos {fila['movido']:g}."
        # One statement, so that a station that posts meanwhile is in both sums or in neither.
        for fila in anf.sql(
            "SELECT almacen, articulo, SUM(existencia) AS existencia, SUM(movido) AS movido FROM ("
            "SELECT almacen, articulo, existencia, 0.0 AS movido FROM existenciaalmacen UNION ALL "
            "SELECT almacen, articulo, 0.0, CASE ent_sal WHEN 'E' THEN cantidad WHEN 'S' THEN -cantidad ELSE 0 END "
            "FROM movsinv) AS libros GROUP BY almacen, articulo "
            "HAVING ABS(SUM(existencia) - SUM(movido)) > 0.000001 ORDER BY articulo, almacen")]
    return [("Cada renglón registrado quedó como dice la nota, y nada más", recepcion.diferencias),
            ("Las partidas guardadas son las que se hicieron", partidas),
            ("El total de la pantalla es la suma de la nota", totales),
            ("Los movimientos son los del documento", movimientos),
            ("La existencia de cada artículo es la suma de sus movimientos", existencias)]


def informa(recepcion: Recepcion, renglones: int, segundos: float) -> int:
    partidas = sum(documento.partidas for documento in recepcion.documentos)
    print(f"\n{renglones} renglones: {partidas} partidas, {len(recepcion.rechazados)} rechazados, "
          f"{segundos:.1f} segundos.")
    if recepcion.rechazados:
        print("\nRenglones rechazados")
        print(comun.tabla(["Línea", "Artículo", "Cantidad", "Precio", "Motivo"],
                          [[str(renglon.linea), renglon.articulo, renglon.cantidad, renglon.precio, motivo]
                           for renglon, motivo in recepcion.rechazados], {0, 2, 3}))
        print("\nPor motivo")
        motivos = Counter(motivo for _, motivo in recepcion.rechazados).most_common()
        print(comun.tabla(["Renglones", "Motivo"], [[str(veces), motivo] for motivo, veces in motivos], {0}))
    if recepcion.avisos:
        print("\nPartidas con aviso")
        print(comun.tabla(["Línea", "Artículo", "Aviso"],
                          [[str(renglon.linea), renglon.articulo, aviso] for renglon, aviso in recepcion.avisos], {0}))
    print()
    if recepcion.documentos:
        filas = [[str(documento.numero), str(documento.partidas),
                  ("pendiente" if recepcion.pendiente else "afectada") if documento.cerrado else "sin terminar",
                  documento.en_pantalla, comun.importe(documento.suma)] for documento in recepcion.documentos]
        print(comun.tabla(["Entrada", "Partidas", "Estado", "Total en pantalla", "Suma de la nota"], filas,
                          {0, 1, 3, 4}))
        for pagina in comun.paginas_impresas(recepcion.anf):
            print(f"Impresa en {pagina}" if pagina.exists() else f"No se encuentra la página {pagina}")
    else:
        print("No se registró ningún renglón: no hay documento.")
    print("\nRevisión")
    bien = True
    for revisado, fallas in revisa(recepcion):
        print(f"  {'Bien' if not fallas else 'MAL '}  {revisado}.")
        for falla in fallas:
            print(f"        {falla}")
        bien = bien and not fallas
    print("Los libros concuerdan." if bien else "Los libros no concuerdan.")
    return 0 if bien else 1


# ---- the program -------------------------------------------------------------------------------


def almacen_de(texto: str) -> int:
    if not texto.isdecimal() or len(texto) > 9:
        raise ValueError(texto)
    return int(texto)


def maximo_de(texto: str) -> int:
    maximo = int(texto)
    if not 1 <= maximo <= PARTIDAS_EN_PANTALLA:
        raise ValueError(texto)
    return maximo


def principal() -> int:
    parser = comun.argumentos("Registra la nota de entrega de un proveedor como lo haría un operador.")
    parser.add_argument("entrega", type=Path, metavar="ENTREGA.csv", help="la nota de entrega")
    parser.add_argument("--concepto", default="COM", help="concepto de la entrada (COM)")
    parser.add_argument("--almacen", type=almacen_de, default=1, metavar="NÚMERO", help="almacén que recibe (1)")
    parser.add_argument("--lector", action="store_true",
                        help="todos los renglones son lecturas: una unidad al precio del catálogo")
    parser.add_argument("--importa-catalogo", type=Path, metavar="ARTICULOS.csv",
                        help="da de alta primero los artículos de este archivo que no estén")
    parser.add_argument("--pendiente", action="store_true", help="deja la entrada pendiente, sin afectarla")
    parser.add_argument("--maximo", type=maximo_de, default=PARTIDAS_EN_PANTALLA, metavar="PARTIDAS",
                        help=f"partidas por documento ({PARTIDAS_EN_PANTALLA}, las que caben en la pantalla)")
    parser.add_argument("--sin-barra", action="store_true", help="no muestra el avance")
    opciones = parser.parse_args()

    # Both files before the base: a bad one leaves nothing written.
    renglones = lee_entrega(opciones.entrega, opciones.lector)
    catalogo = lee_catalogo(opciones.importa_catalogo) if opciones.importa_catalogo else None
    concepto = opciones.concepto.upper()

    anf = comun.abre(opciones)
    recepcion = Recepcion(anf, concepto, opciones.almacen, opciones.pendiente, opciones.maximo)
    barra = Barra(len(renglones), not opciones.sin_barra)
    inicio = time.monotonic()
    try:
        if catalogo is not None:
            print(importa_catalogo(anf, catalogo, concepto, opciones.almacen))
        for hechos, renglon in enumerate(renglones, 1):
            recepcion.registra(renglon)
            barra.avanza(hechos)
        recepcion.termina()
    except SinTerminar:
        pass
    except KeyboardInterrupt:
        signal.signal(signal.SIGINT, signal.SIG_IGN)  # what is left takes an instant
        barra.termina()
        print(recepcion.interrumpe(), file=sys.stderr)
        return 130
    finally:
        barra.termina()
    registrados = sum(documento.partidas for documento in recepcion.documentos) + len(recepcion.rechazados)
    codigo = informa(recepcion, len(renglones), time.monotonic() - inicio)
    if registrados < len(renglones):
        print(f"Quedaron {len(renglones) - registrados} renglones sin registrar.")
        codigo = 1
    anf.cierra()
    return codigo


if __name__ == "__main__":
    comun.corre(principal)
