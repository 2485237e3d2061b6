"""The CSV files of the examples: rows by our own names of the columns, whatever the file calls them, and the
catalogue that a file brings. It changes nothing but the catalogue."""

from __future__ import annotations

import csv
import io
from dataclasses import dataclass
from decimal import Decimal
from pathlib import Path

from _comun import CIFRAS, NUMERO, Fallo

COLUMNAS = {
    "articulo": {"articulo", "artículo", "clave", "stockcode"},
    "cantidad": {"cantidad", "quantity"},
    "precio": {"precio", "unitprice"},
    "descripcion": {"descripcion", "descripción", "description"},
    "lectura": {"lectura"},
}


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


def columnas_de(archivo: Path, titulos: list[str], exigidas: tuple[str, ...],
                columnas: dict[str, set[str]]) -> dict[str, int]:
    halladas: dict[str, int] = {}
    for posicion, titulo in enumerate(titulos):
        nombre = titulo.strip().casefold()
        for columna, nombres in columnas.items():
            if nombre not in nombres:
                continue
            if columna in halladas:
                raise Fallo(f"{archivo}, línea 1: la columna {columna} está dos veces "
                            f"({titulos[halladas[columna]].strip()} y {titulo.strip()}).")
            halladas[columna] = posicion
    for columna in exigidas:
        if columna not in halladas:
            raise Fallo(f"{archivo}, línea 1: falta la columna {columna} (nombres: "
                        f"{', '.join(sorted(columnas[columna]))}; separadas por comas).")
    return halladas


def exige_numero(lugar: str, texto: str) -> None:
    if texto and not NUMERO.fullmatch(texto):
        raise Fallo(f"{lugar}: \"{texto}\" no es un número.")
    if sum(caracter.isdigit() for caracter in texto) > CIFRAS:
        raise Fallo(f"{lugar}: \"{texto}\" tiene más de {CIFRAS} cifras.")


def filas_de(archivo: Path, exigidas: tuple[str, ...], numeros: tuple[str, ...],
             columnas: dict[str, set[str]] = COLUMNAS) -> list[tuple[int, dict[str, str]]]:
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
        lugares = columnas_de(archivo, titulos, exigidas, columnas)
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


def lee_catalogo(archivo: Path) -> list[Renglon]:
    """The same columns; quantities and marks of readings say nothing of an article."""
    return [Renglon(linea, valores["articulo"], precio=valores["precio"], descripcion=valores.get("descripcion", ""))
            for linea, valores in filas_de(archivo, ("articulo", "precio"), ("precio",))]


def importa_catalogo(anf, renglones: list[Renglon], conceptos: list[tuple[str, str, str]], almacen: int,
                     servicios: frozenset[str] = frozenset()) -> str:
    """Makes what is missing and leaves alone what is there. Answers with what it did.

    A concept is its key, E or S, and its description. What is no merchandise has no stock to control."""
    for concepto in conceptos:
        anf.sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES (?, ?, ?) ON CONFLICT DO NOTHING",
                *concepto)
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
            valores += [clave, descripcion, float(precio), impuesto[0]["impuesto"], int(clave not in servicios)]
        anf.sql("INSERT INTO prods (articulo, descrip, precio1, impuesto, unidad, invent) VALUES " +
                ", ".join(["(?, ?, ?, ?, 'PZA', ?)"] * len(tanda)) + " ON CONFLICT DO NOTHING", *valores)
    nuevos = anf.sql(cuenta)[0]["cuantos"] - antes
    hecho = f"Catálogo: {nuevos} artículos nuevos, {len(claves) - nuevos} ya estaban"
    return hecho + (f", {sin_clave} renglones sin clave." if sin_clave else ".")
