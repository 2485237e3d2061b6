"""The day's file and what an earlier run has made of it: for surte_dia.py; not a program."""

from __future__ import annotations

import re
import zlib
from collections import defaultdict
from dataclasses import dataclass, field
from decimal import Decimal
from pathlib import Path

import _comun as comun
from _archivos import COLUMNAS as DEL_ARCHIVO
from _archivos import Renglon, filas_de
from _comun import Fallo

COLUMNAS = DEL_ARCHIVO | {
    "factura": {"factura", "invoiceno"},
    "cliente": {"cliente", "customerid"},
}


@dataclass
class Factura:
    numero: str
    cliente: str
    renglones: list[Renglon] = field(default_factory=list)

    def cancela(self) -> bool:
        """A cancellation: its number says so, and it takes quantities back."""
        return self.numero[:1] in "Cc" and any(negativo(renglon) for renglon in self.renglones)


def negativo(renglon: Renglon) -> bool:
    return renglon.cantidad != "" and Decimal(renglon.cantidad) < 0


def lee_dia(archivo: Path) -> list[Factura]:
    """The invoices in the order in which they begin."""
    facturas: dict[str, Factura] = {}
    exigidas = ("factura", "articulo", "cantidad", "precio")
    for linea, valores in filas_de(archivo, exigidas, ("cantidad", "precio"), COLUMNAS):
        numero, cliente = valores["factura"], clave_de_cliente(valores.get("cliente", ""))
        if not numero:
            raise Fallo(f"{archivo}, línea {linea}: falta el número de la factura.")
        for texto in (numero, cliente):
            if not comun.se_teclea(texto):
                raise Fallo(f"{archivo}, línea {linea}: {texto!r} tiene caracteres que no se pueden teclear.")
        factura = facturas.setdefault(numero, Factura(numero, cliente))
        if factura.cliente != cliente:
            raise Fallo(f"{archivo}, línea {linea}: la factura {numero} es del cliente \"{factura.cliente}\" y "
                        f"aquí dice \"{cliente}\".")
        factura.renglones.append(Renglon(linea, valores["articulo"], valores["cantidad"], valores["precio"],
                                         valores.get("descripcion", "")))
    return list(facturas.values())


def clave_de_cliente(texto: str) -> str:
    """As the field takes it: in capitals, and a spreadsheet's 17850.0 is the key 17850."""
    entero = re.fullmatch(r"(\d+)\.0+", texto)
    return entero.group(1) if entero else texto.upper()


def devuelto(renglon: Renglon) -> Renglon:
    """The same row as goods-in has it."""
    cantidad = comun.plano(-Decimal(renglon.cantidad)) if renglon.cantidad else ""
    return Renglon(renglon.linea, renglon.articulo, cantidad, renglon.precio)


def entrega_del_dia(facturas: list[Factura], servicios: frozenset[str]) -> list[Renglon]:
    """What the day is going to sell, by article, as the supplier would have brought it in the morning."""
    cantidades: dict[str, Decimal] = defaultdict(Decimal)
    precios: dict[str, str] = {}
    for factura in facturas:
        for renglon in factura.renglones:
            if (factura.cancela() or not renglon.articulo or renglon.articulo in servicios or
                    not renglon.cantidad or Decimal(renglon.cantidad) <= 0):
                continue
            cantidades[renglon.articulo] += Decimal(renglon.cantidad)
            if renglon.precio and Decimal(renglon.precio) > 0:
                precios.setdefault(renglon.articulo, renglon.precio)
    return [Renglon(numero, articulo, comun.plano(cantidad), precios.get(articulo, ""))
            for numero, (articulo, cantidad) in enumerate(cantidades.items(), 1)]


def alta_de_usuario(anf, usuario: str) -> str:
    # Without a row the screen could not tell what its user may do.
    anf.sql("INSERT INTO usuarios (usuario, existsalidas) VALUES (?, 0) ON CONFLICT DO NOTHING", usuario)
    permiso = anf.sql("SELECT existsalidas FROM usuarios WHERE usuario = ?", usuario)[0]["existsalidas"]
    return f"Usuario {usuario}: {'puede' if permiso else 'no puede'} sacar más de lo que hay."


def alta_de_clientes(anf, facturas: list[Factura]) -> str:
    claves = sorted({factura.cliente for factura in facturas if factura.cliente and not factura.cancela()})
    cuenta = "SELECT COUNT(*) AS cuantos FROM clients"
    antes = anf.sql(cuenta)[0]["cuantos"]
    for principio in range(0, len(claves), 500):
        tanda = claves[principio:principio + 500]
        valores = [valor for clave in tanda for valor in (clave, f"Cliente {clave}")]
        anf.sql("INSERT INTO clients (cliente, nombre) VALUES " + ", ".join(["(?, ?)"] * len(tanda)) +
                " ON CONFLICT DO NOTHING", *valores)
    nuevos = anf.sql(cuenta)[0]["cuantos"] - antes
    return f"Clientes: {nuevos} nuevos, {len(claves) - nuevos} ya estaban."


def observacion(factura: str) -> str:
    return f"Factura {factura}"


def registradas(anf, facturas: list[Factura]) -> dict[str, str]:
    """The invoices that have a document already, each with that document."""
    observadas = {fila["observ"]: f"la {fila['clase']} {fila['numero']}" for fila in anf.sql(
        "SELECT observ, 'salida' AS clase, salida AS numero FROM salidas WHERE observ LIKE 'Factura %' UNION ALL "
        "SELECT observ, 'entrada', entrada FROM entradas WHERE observ LIKE 'Factura %'")}
    return {factura.numero: observadas[observacion(factura.numero)] for factura in facturas
            if observacion(factura.numero) in observadas}


def sin_terminar(anf, registradas_ya: dict[str, str], pendientes: bool) -> list[str]:
    """Of invoices that have a document, those whose document an earlier run left in the middle, with what to do."""
    estados = {f"la {fila['clase']} {fila['numero']}": fila["estado"] for fila in anf.sql(
        "SELECT 'salida' AS clase, salida AS numero, estado FROM salidas UNION ALL SELECT 'entrada', entrada, estado "
        "FROM entradas")}
    a_medias = {f"la {documento.tipo.lower()} {documento.documento}" for documento in anf.a_medias()}
    avisos = []
    for factura, donde in registradas_ya.items():
        if donde in a_medias:
            avisos.append(f"La factura {factura} está en {donde}, afectada a medias: complétela.")
        elif estados.get(donde) != "CO" and not pendientes:
            avisos.append(f"La factura {factura} está en {donde}, pendiente: revise sus renglones y finalícela.")
    return avisos


@dataclass
class EntregaPrevia:
    """What an earlier run has made of the delivery."""

    documentos: list[int]
    pendientes: list[int]    # those of them that it left open
    faltan: list[Renglon]    # the rows behind the last line that it made


def marca_de_entrega(fuente: str, renglones: list[Renglon]) -> str:
    """The remarks of a delivery's documents: where it comes from, and what it brings. By them it is known again."""
    contenido = "\n".join(f"{renglon.articulo}\t{renglon.cantidad}\t{renglon.precio}" for renglon in renglones)
    return f"Entrega {fuente}, suma {zlib.crc32(contenido.encode()):08x}"


def entrega_previa(anf, marca: str, renglones: list[Renglon]) -> EntregaPrevia | None:
    documentos = anf.sql("SELECT entrada, estado FROM entradas WHERE observ = ? ORDER BY entrada", marca)
    if not documentos:
        return None
    hechas = anf.sql("SELECT articulo, claveadd FROM entradas INNER JOIN entpart ON entpart.entrada = entradas.entrada "
                     "WHERE entradas.observ = ? ORDER BY id_entrada", marca)
    lugar = 0
    for partida in hechas:
        claves = (partida["articulo"], partida["claveadd"] or partida["articulo"])
        # A row that was refused made no line; behind the last row begins a delivery that was received again.
        for n in [*range(lugar, len(renglones)), *range(lugar)]:
            if renglones[n].articulo in claves:
                lugar = n + 1
                break
        else:
            raise Fallo(f"La entrada de la marca \"{marca}\" tiene {partida['articulo']}, que la entrega no trae: "
                        "revísela antes de seguir.")
    return EntregaPrevia([fila["entrada"] for fila in documentos],
                         [fila["entrada"] for fila in documentos if fila["estado"] != "CO"], renglones[lugar:])
