#!/usr/bin/env python3
"""Plays a day of sales, a CSV file, as an operator would: one goods-out document an invoice, keys only,
one line at a time, each posted with F5. A cancelled invoice comes back through the goods-in wizard,
with its quantities positive. Then it checks the books.

Stock is the screen's own affair: it comes from goods-in documents, a delivery recorded first among
them, and a line that lacks it is refused in the screen's words. The file is read whole before anything
is recorded, and it is not mended."""

from __future__ import annotations

import re
import signal
import sys
import time
import zlib
from collections import defaultdict
from collections.abc import Iterable
from dataclasses import dataclass, field
from decimal import Decimal
from pathlib import Path

import _comun as comun
from _comun import (ARTICULO, CANTIDAD, CLAVE_ADICIONAL, DESCRIPCION, PARTIDAS_EN_PANTALLA, PRECIO, PRESENTACIONES,
                    Barra, Documento, Fallo, Operador, Registro, Renglon, SinTerminar)
from recibe_entrega import Recepcion, lee_entrega, revisa_documentos

COLUMNAS = comun.COLUMNAS | {
    "factura": {"factura", "invoiceno"},
    "cliente": {"cliente", "customerid"},
}
CLIENTE, NOMBRE_DEL_CLIENTE = 13, 15
SIN_EXISTENCIA = "No hay existencia suficiente"
TOLERANCIA = Decimal("0.000001")
DISCREPANCIAS_A_LA_VISTA = 20


# ---- the file ----------------------------------------------------------------------------------


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
    for linea, valores in comun.filas_de(archivo, exigidas, ("cantidad", "precio"), COLUMNAS):
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


# ---- what has to be there ----------------------------------------------------------------------


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


# ---- recording ---------------------------------------------------------------------------------


class OperadorDeSalidas(Operador):
    """An operator in front of one goods-out document."""

    OPERACION = "NuevaSalida"

    def cliente(self, clave: str) -> None:
        self.escribe(CLIENTE, clave)
        self.enter()
        self.forma.enfoca(self.campo(ARTICULO))

    def por_presentacion(self) -> bool:
        """The key typed was that of a presentation that fixes how many units it holds: the cursor is there."""
        return self.forma.ActiveControl == self.campo(PRESENTACIONES) and self.lee(PRESENTACIONES) != ""

    def corrige(self, indice: int, texto: str) -> None:
        """Types over what the screen proposes; where there is nothing to type, takes the proposal away."""
        self.forma.enfoca(self.campo(indice))
        if texto:
            self.escribe(indice, texto)
        else:
            self.forma.tecla("Delete")

    def limpia_partida(self) -> None:
        """Empties what a refused line left. Taking the second key away takes its article with it."""
        for indice in (CLAVE_ADICIONAL, ARTICULO, CANTIDAD, PRECIO):
            if self.lee(indice):
                self.forma.enfoca(self.campo(indice))
                self.forma.tecla("Delete")
        self.forma.enfoca(self.campo(ARTICULO))

    def novedades(self) -> list[str]:
        """The question about lacking stock is the reason of a line that was not made."""
        preguntas = [" ".join(mensaje.texto.split()) for mensaje in self.anf.mensajes
                     if mensaje.clase == "pregunta" and mensaje.texto.startswith(SIN_EXISTENCIA)]
        return list(dict.fromkeys(preguntas + super().novedades()))


@dataclass
class Partida:
    """A line as it ought to stand."""

    articulo: str
    clave: str  # the second key, if it was that which was typed
    cantidad: Decimal
    precio: Decimal

    def como_texto(self) -> str:
        clave = f" por {self.clave}" if self.clave else ""
        return f"{comun.plano(self.cantidad)} de {self.articulo}{clave} a {comun.plano(self.precio)}"


@dataclass
class Salida(Documento):
    lineas: list[Partida] = field(default_factory=list)
    cliente: str = ""


class Ventas(Registro):
    """The day's goods-out documents."""

    OPERADOR = OperadorDeSalidas
    DOCUMENTO = "salida"
    TABLA, PARTIDAS = "salidas", "salpart"

    def __init__(self, anf, concepto: str, almacen: int, pendiente: bool, maximo: int, continua: bool) -> None:
        super().__init__(anf, concepto, almacen, pendiente, maximo)
        self.continua = continua  # what the operator answers where the screen asks about lacking stock
        self.factura = Factura("", "")
        self.sumados = 0
        self.ultima: tuple | None = None
        self.articulos: dict[str, tuple[str, Decimal]] = {}

    def documento_nuevo(self) -> Salida:
        return Salida(0, origen=self.factura.numero, cliente=self.factura.cliente)

    def abre(self) -> None:
        super().abre()
        self.ultima = None
        if self.factura.cliente:
            self.operador.cliente(self.factura.cliente)
        self.operador.observa(observacion(self.factura.numero))
        self.operador.lector(False)

    def surte(self, factura: Factura) -> Iterable[Renglon]:
        """Records the invoice; each row is told as it is done."""
        self.factura = factura
        for renglon in factura.renglones:
            self.registra(renglon)
            yield renglon
        self.termina()

    def registra(self, renglon: Renglon) -> None:
        if not comun.se_teclea(renglon.articulo):
            self.rechazados.append((renglon, "La clave tiene caracteres que no se pueden teclear."))
            return
        if self.operador is None:
            self.abre()
        operador, documento = self.operador, self.documentos[-1]
        operador.novedades()
        factor = Decimal(1)
        operador.articulo(renglon.articulo)
        if operador.por_presentacion():
            factor = comun.numero(operador.lee(CANTIDAD)) / comun.numero(operador.lee(PRESENTACIONES))
            operador.corrige(PRESENTACIONES, renglon.cantidad)
            operador.enter()
        else:
            operador.corrige(CANTIDAD, renglon.cantidad)
        operador.enter()
        if renglon.precio:
            operador.escribe(PRECIO, renglon.precio)
        mostrado = operador.lee(ARTICULO), operador.lee(DESCRIPCION)
        self.anf.respuestas.clear()
        if self.continua:
            self.anf.respuestas.append(True)
        operador.enter()
        self.anf.respuestas.clear()
        self.anota(renglon, documento, factor, mostrado, operador.novedades())
        operador.limpia_partida()
        self.olvida()
        if documento.partidas >= self.maximo:
            self.termina()

    def anota(self, renglon: Renglon, documento: Salida, factor: Decimal, mostrado: tuple[str, str],
              novedades: list[str]) -> None:
        documento.numero = self.numero_en_pantalla()
        texto = " ".join(novedades)
        cantidad = factor * Decimal(renglon.cantidad or "0")
        articulo, descripcion = mostrado
        falta = self.falta_existencia(articulo, cantidad)
        filas = self.anf.sql("SELECT id_salida, articulo, cantidad, precio, claveadd FROM salpart WHERE salida = ? "
                             "ORDER BY id_salida DESC LIMIT 1", documento.numero)
        ultima = (filas[0]["id_salida"], filas[0]["cantidad"]) if filas else None
        if ultima == self.ultima:
            self.rechazados.append((renglon, texto or "La pantalla no hizo la partida y no dijo por qué."))
            if texto.startswith(SIN_EXISTENCIA) and not falta:
                self.diferencias.append(f"Línea {renglon.linea}: se rechazó por falta de existencia y la había.")
            return
        es_nueva = self.ultima is None or ultima[0] != self.ultima[0]
        self.ultima = ultima
        if falta and not self.continua:
            self.diferencias.append(f"Línea {renglon.linea}: salió y no había existencia.")
        if texto:
            self.avisos.append((renglon, texto))
        self.avisa_del_articulo(renglon, articulo, descripcion)

        guardada = Partida(filas[0]["articulo"], filas[0]["claveadd"] or "", comun.exacto(filas[0]["cantidad"]),
                           comun.exacto(filas[0]["precio"]))
        esperada = Partida(articulo, renglon.articulo if renglon.articulo != articulo else "", cantidad,
                           Decimal(renglon.precio) if renglon.precio else self.del_catalogo(articulo)[1])
        anterior = documento.lineas[-1] if documento.lineas else None
        se_suma = anterior is not None and (anterior.articulo, anterior.clave) == (esperada.articulo, esperada.clave)
        if se_suma:
            # Equal articles in a row are one line, at the price of the first.
            if anterior.precio != esperada.precio:
                self.avisos.append((renglon, f"Se sumó al renglón anterior, que conserva el precio "
                                             f"{comun.plano(anterior.precio)}; {comun.plano(esperada.precio)} se "
                                             "perdió."))
            anterior.cantidad += cantidad
            esperada = anterior
            self.sumados += 1
        else:
            documento.lineas.append(esperada)
            documento.partidas += 1
        if esperada.precio == 0:
            self.avisos.append((renglon, "Salió a precio 0."))
        documento.suma += cantidad * esperada.precio
        documento.por_articulo[articulo] += cantidad
        if se_suma == es_nueva or not iguales(esperada, guardada):
            self.diferencias.append(
                f"Línea {renglon.linea}: la partida {ultima[0]}{' es nueva y' if se_suma and es_nueva else ''} dice "
                f"{guardada.como_texto()} y debía decir {esperada.como_texto()}.")

    def falta_existencia(self, articulo: str, cantidad: Decimal) -> bool:
        """Whether the article's stock is controlled and below the quantity, by this program's own reading."""
        filas = self.anf.sql(
            "SELECT invent, por_surt, existencia FROM prods LEFT JOIN existenciaalmacen ON "
            "existenciaalmacen.articulo = prods.articulo AND almacen = ? WHERE prods.articulo = ?", self.almacen,
            articulo)
        if not filas or not filas[0]["invent"]:
            return False
        disponible = comun.exacto(filas[0]["existencia"])
        if self.anf.Ambiente.Parametros["PorSurt"]:
            disponible -= comun.exacto(filas[0]["por_surt"])
        return disponible < cantidad

    def del_catalogo(self, articulo: str) -> tuple[str, Decimal]:
        """The article's description, and its price with the tax as the screen proposes it."""
        if articulo not in self.articulos:
            filas = self.anf.sql(
                "SELECT prods.descrip, precio1, valor FROM prods INNER JOIN impuestos ON prods.impuesto = "
                "impuestos.impuesto WHERE articulo = ?", articulo)
            self.articulos[articulo] = (filas[0]["descrip"] or "", comun.centavos(
                comun.exacto(filas[0]["precio1"]) * (1 + comun.exacto(filas[0]["valor"]) / 100))
            ) if filas else ("", Decimal(0))
        return self.articulos[articulo]

    def avisa_del_articulo(self, renglon: Renglon, articulo: str, descripcion: str) -> None:
        # The screen keeps a refused article's description where the next one brings none.
        if descripcion.strip() != self.del_catalogo(articulo)[0].strip():
            self.avisos.append((renglon, f"Quedó con la descripción de otro artículo: {descripcion.strip()}."))


def iguales(una: Partida, otra: Partida) -> bool:
    return ((una.articulo, una.clave) == (otra.articulo, otra.clave) and
            abs(una.cantidad - otra.cantidad) <= TOLERANCIA and abs(una.precio - otra.precio) <= TOLERANCIA)


class Entradas(Recepcion):
    """Goods-in documents that say in their remarks what they were recorded from."""

    def __init__(self, *argumentos) -> None:
        super().__init__(*argumentos)
        self.origen = self.observaciones = ""

    def documento_nuevo(self) -> Documento:
        return Documento(0, origen=self.origen)

    def abre(self) -> None:
        super().abre()
        if self.observaciones:
            self.operador.observa(self.observaciones)

    def reanuda(self, origen: str, numero: int) -> None:
        """Goes on with a pending document where it broke off."""
        self.origen = origen
        self.operador = self.OPERADOR(self.anf, numero)
        self.operador.novedades()
        documento = self.documento_nuevo()
        documento.numero = numero
        self.documentos.append(documento)
        for fila in self.anf.sql("SELECT id_entrada, articulo, cantidad, precio FROM entpart WHERE entrada = ? "
                                 "ORDER BY id_entrada", numero):
            cantidad = comun.exacto(fila["cantidad"])
            documento.partidas += 1
            documento.suma += cantidad * comun.exacto(fila["precio"])
            documento.por_articulo[fila["articulo"]] += cantidad
            self.ultima_partida = fila["id_entrada"]

    def recibe(self, origen: str, observaciones: str, renglones: list[Renglon]) -> Iterable[Renglon]:
        self.origen, self.observaciones = origen, observaciones
        if self.operador is not None and self.documentos[-1].partidas >= self.maximo:
            self.termina()
        for renglon in renglones:
            self.registra(renglon)
            yield renglon
        self.termina()


def prueba(*registros: Registro) -> None:
    """Tries each heading on its screen. A document without lines is not made at all."""
    for registro in registros:
        registro.abre()
        registro.termina()


# ---- the books ---------------------------------------------------------------------------------


def revisa_salidas(ventas: Ventas) -> list[tuple[str, list[str]]]:
    """What was checked of the documents by this program's own reckoning, each with what does not agree."""
    partidas: list[str] = []
    totales: list[str] = []
    for documento in ventas.documentos:
        n = documento.numero
        guardadas = [Partida(fila["articulo"], fila["claveadd"] or "", comun.exacto(fila["cantidad"]),
                             comun.exacto(fila["precio"])) for fila in ventas.anf.sql(
            "SELECT articulo, claveadd, cantidad, precio FROM salpart WHERE salida = ? ORDER BY id_salida", n)]
        if len(guardadas) != len(documento.lineas):
            partidas.append(f"Salida {n}: se hicieron {len(documento.lineas)} partidas y hay {len(guardadas)}.")
        for esperada, guardada in zip(documento.lineas, guardadas):
            if not iguales(esperada, guardada):
                partidas.append(f"Salida {n}: dice {guardada.como_texto()} y debía decir {esperada.como_texto()}.")
        encabezado = ventas.anf.sql("SELECT importe, cliente, tipo_doc, almacen FROM salidas WHERE salida = ?", n)[0]
        suma = comun.centavos(documento.suma)
        if documento.en_pantalla and suma != comun.numero(documento.en_pantalla):
            totales.append(f"Salida {n}: la pantalla dijo {documento.en_pantalla} y la suma es {suma:,}.")
        if not documento.cerrado:
            continue
        if suma != comun.centavos(comun.exacto(encabezado["importe"])):
            totales.append(f"Salida {n}: se guardó {encabezado['importe']} y la suma es {suma:,}.")
        if (encabezado["cliente"] or "", encabezado["tipo_doc"], encabezado["almacen"]) != (
                documento.cliente, ventas.concepto, ventas.almacen):
            totales.append(f"Salida {n}: cliente {encabezado['cliente']}, concepto {encabezado['tipo_doc']}, almacén "
                           f"{encabezado['almacen']:g}.")
    return [("Cada renglón quedó como dice el archivo, y se rechazó por existencia solo donde faltaba",
             ventas.diferencias),
            ("Las partidas guardadas son las que se hicieron, y los iguales seguidos, una sola", partidas),
            ("El total de la pantalla es la suma de la factura, con su cliente y su concepto", totales)]


@dataclass
class Consulta:
    """A question to the base alone: `libro` compares row by row, and the rest counts and lists."""

    titulo: str
    libro: str
    resumen: str
    discrepan: str  # the condition of the rows that do not agree
    espera: dict[str, int]  # what the summary has to say


def entre(columna: str, numeros: Iterable[int]) -> str:
    """The numbers as a condition, a stretch of them at a time."""
    tramos: list[list[int]] = []
    for numero in sorted(set(numeros)):
        if tramos and numero == tramos[-1][1] + 1:
            tramos[-1][1] = numero
        else:
            tramos.append([numero, numero])
    return "(" + " OR ".join(f"{columna} BETWEEN {primero} AND {ultimo}" for primero, ultimo in tramos) + ")"


def consulta_de_partidas(registro: Registro, titulo: str, operacion: str, movimiento: str, desde: int) -> Consulta:
    """Lines against movements, one to one, with the movements of the day that belong to no line."""
    documento, partidas, clave = registro.DOCUMENTO, registro.PARTIDAS, "id_" + registro.DOCUMENTO
    del_dia = entre(f"d.{documento}", (hecho.numero for hecho in registro.documentos))
    cuantas = sum(hecho.partidas for hecho in registro.documentos)
    libro = (
        f"SELECT d.{documento}, p.{clave} AS partida, p.articulo, p.cantidad, p.precio, m.id AS movimiento,\n"
        "       m.cantidad AS movida, CASE WHEN m.articulo = p.articulo AND m.cantidad = p.cantidad\n"
        "       AND m.precio = p.precio AND m.almacen = d.almacen AND m.tipo_doc = d.tipo_doc\n"
        f"       AND m.ent_sal = '{'S' if operacion == 'SA' else 'E'}' AND COALESCE(m.claveadd, '') = "
        "COALESCE(p.claveadd, '')\n"
        "       THEN 1 ELSE 0 END AS igual\n"
        f"  FROM {registro.TABLA} d INNER JOIN {partidas} p ON p.{documento} = d.{documento}\n"
        f"  LEFT JOIN movsinv m ON m.operacion = '{operacion}' AND m.movimiento = d.{movimiento} AND m.{clave} = "
        f"p.{clave}\n"
        f"  WHERE {del_dia}\n"
        "UNION ALL\n"
        "SELECT NULL, NULL, m.articulo, NULL, NULL, m.id, m.cantidad, 0\n"
        f"  FROM movsinv m LEFT JOIN {partidas} p ON p.{clave} = m.{clave}\n"
        f"  WHERE m.operacion = '{operacion}' AND m.id > {desde} AND p.{clave} IS NULL")
    resumen = (f"SELECT COUNT(DISTINCT {documento}) AS documentos, COUNT(partida) AS partidas,\n"
               "       COUNT(DISTINCT movimiento) AS movimientos, COALESCE(SUM(igual), 0) AS iguales,\n"
               "       COALESCE(SUM(cantidad), 0) AS unidades, COALESCE(SUM(movida), 0) AS movidas FROM libro")
    afectadas = 0 if registro.pendiente else cuantas
    return Consulta(titulo, libro, resumen, "movimiento IS NOT NULL" if registro.pendiente else "igual = 0",
                    {"documentos": len(registro.documentos), "partidas": cuantas, "movimientos": afectadas,
                     "iguales": afectadas})


def consulta_de_encabezados(registro: Registro, titulo: str) -> Consulta:
    documento = registro.DOCUMENTO
    estado = "PE" if registro.pendiente else "CO"
    # The header keeps two decimals.
    libro = (f"SELECT d.{documento}, d.estado, d.ocupado, d.importe, SUM(p.cantidad * p.precio) AS suma\n"
             f"  FROM {registro.TABLA} d LEFT JOIN {registro.PARTIDAS} p ON p.{documento} = d.{documento}\n"
             f"  WHERE {entre(f'd.{documento}', (hecho.numero for hecho in registro.documentos))}\n"
             f"  GROUP BY d.{documento}, d.estado, d.ocupado, d.importe")
    discrepan = (f"COALESCE(estado, '') <> '{estado}' OR COALESCE(ocupado, 1) <> 0\n"
                 "       OR ABS(COALESCE(importe, 0) - COALESCE(suma, 0)) > 0.005001")
    resumen = (f"SELECT COUNT(*) AS documentos, SUM(CASE WHEN {discrepan}\n       THEN 1 ELSE 0 END) AS discrepan, "
               "SUM(importe) AS importe, SUM(suma) AS suma FROM libro")
    return Consulta(titulo, libro, resumen, discrepan, {"documentos": len(registro.documentos), "discrepan": 0})


def consulta_de_existencias(anf, almacen: int) -> Consulta:
    """The ledger's sum, the stock of the warehouse, and the article's own column where there is one."""
    columna = f"alm{almacen}"
    hay_columna = 1 <= almacen <= 9
    movido = "CASE ent_sal WHEN 'E' THEN cantidad WHEN 'S' THEN -cantidad ELSE 0 END"
    libro = ("SELECT articulo, SUM(movido) AS movido, SUM(existencia) AS existencia" +
             (f", SUM({columna}) AS {columna}" if hay_columna else "") + " FROM (\n"
             f"  SELECT articulo, {movido} AS movido,\n"
             f"         0.0 AS existencia, 0.0 AS {columna}\n"
             f"    FROM movsinv WHERE almacen = {almacen}\n"
             "  UNION ALL\n"
             f"  SELECT articulo, 0.0, existencia, 0.0 FROM existenciaalmacen WHERE almacen = {almacen}\n" +
             (f"  UNION ALL\n  SELECT articulo, 0.0, 0.0, COALESCE({columna}, 0) FROM prods\n" if hay_columna else "") +
             "  ) AS libros GROUP BY articulo")
    discrepan = "ABS(movido - existencia) > 0.000001" + (
        f" OR ABS(movido - {columna}) > 0.000001" if hay_columna else "")
    resumen = ("SELECT COUNT(*) AS articulos,\n"
               f"       COALESCE(SUM(CASE WHEN {discrepan}\n       THEN 1 ELSE 0 END), 0) AS discrepan,\n"
               "       SUM(movido) AS movido, SUM(existencia) AS existencia" +
               (f", SUM({columna}) AS {columna}" if hay_columna else "") + " FROM libro")
    return Consulta(f"Existencia del almacén {almacen} contra la suma de sus movimientos", libro, resumen, discrepan,
                    {"discrepan": 0})


def celda(valor) -> str:
    if isinstance(valor, float):
        # What adds up to cents shows as cents, whatever the sum of binary fractions left behind.
        return comun.plano(Decimal(str(round(valor, 4))))
    return "" if valor is None else str(valor)


def pregunta(anf, consulta: Consulta) -> bool:
    """Shows the question and the base's answer. True if it is the expected one."""
    texto = f"WITH libro AS (\n{consulta.libro})\n{consulta.resumen}"
    print(f"\n  {consulta.titulo}")
    print("\n".join(f"    {linea}" for linea in texto.splitlines()))
    resumen = anf.sql(texto)[0]
    print(comun.tabla(list(resumen), [[celda(valor) for valor in resumen.values()]], set(range(len(resumen))), "    "))
    fallas = [f"{nombre}: {celda(resumen[nombre])}, y debía ser {valor}"
              for nombre, valor in consulta.espera.items() if resumen[nombre] != valor]
    discrepancias = anf.sql(f"WITH libro AS (\n{consulta.libro})\nSELECT * FROM libro WHERE {consulta.discrepan} "
                            f"LIMIT {DISCREPANCIAS_A_LA_VISTA}")
    bien = not fallas and not discrepancias
    print("    Bien" if bien else "    MAL  " + "; ".join(fallas))
    if discrepancias:
        print(comun.tabla(list(discrepancias[0]), [[celda(valor) for valor in fila.values()]
                                                   for fila in discrepancias], sangria="    "))
    return bien


def bajo_cero(anf, almacen: int) -> list[list[str]]:
    """Each line is checked by itself: two lines of one document may take out more than there is."""
    return [[fila["articulo"], celda(fila["existencia"])] for fila in anf.sql(
        "SELECT existenciaalmacen.articulo, existencia FROM existenciaalmacen INNER JOIN prods ON prods.articulo = "
        "existenciaalmacen.articulo WHERE almacen = ? AND invent <> 0 AND existencia < 0 "
        "ORDER BY existenciaalmacen.articulo", almacen)]


# ---- the day -----------------------------------------------------------------------------------


@dataclass
class Dia:
    """The day at the terminal: what is to be recorded, and the documents of each kind."""

    anf: object
    facturas: list[Factura]
    entrega: list[Renglon]
    recibida: Entradas
    devueltas: Entradas
    ventas: Ventas
    observaciones_de_la_entrega: str = ""
    entrega_pendiente: list[int] = field(default_factory=list)  # documents of it that broke off, the last one last
    ultimo_movimiento: int = 0
    hechos: int = 0

    def registros(self) -> list[Registro]:
        return [self.recibida, self.devueltas, self.ventas]

    def renglones(self) -> int:
        return sum(len(factura.renglones) for factura in self.facturas)

    def retoma_entrega(self, previa: EntregaPrevia) -> None:
        """An earlier run's delivery is finished, and not received again."""
        a_medias = {(documento.tipo, documento.documento) for documento in self.anf.a_medias()}
        for numero in previa.documentos:
            if numero not in previa.pendientes and ("Entrada", numero) in a_medias:
                print(f"La entrada {numero} quedó afectada a medias: se completan "
                      f"{self.anf.completa('Entrada', numero)} movimientos.")
        self.entrega, self.entrega_pendiente = previa.faltan, previa.pendientes

    def juega(self, barra: Barra) -> None:
        for numero in self.entrega_pendiente:
            self.recibida.termina()  # only the last one may lack rows
            self.recibida.reanuda("entrega", numero)
        for hechos, _ in enumerate(self.recibida.recibe("entrega", self.observaciones_de_la_entrega, self.entrega), 1):
            barra.avanza(hechos)
        for factura in self.facturas:
            if factura.cancela():
                pasos = self.devueltas.recibe(factura.numero, observacion(factura.numero),
                                              [devuelto(renglon) for renglon in factura.renglones])
            else:
                pasos = self.ventas.surte(factura)
            for _ in pasos:
                self.hechos += 1
                barra.avanza(len(self.entrega) + self.hechos)

    def interrumpe(self) -> str:
        textos = [texto for registro in self.registros() for texto in registro.interrumpe()]
        afectados = sum(" queda afectada" in texto for texto in textos)
        quedan = [texto for texto in textos if " queda afectada" not in texto]
        if afectados:
            quedan.append(f"Antes se {'afectaron' if afectados > 1 else 'afectó'} {afectados} "
                          f"{'documentos' if afectados > 1 else 'documento'}.")
        return "Interrumpido. " + (" ".join(quedan) or "No quedó ningún documento.")


def motivo_general(motivo: str) -> str:
    """The reason without the figures and the hour of the case."""
    motivo = re.sub(r"^\d\d:\d\d:\d\d ", "", motivo)
    return motivo.partition(" Existencia:")[0] + "." if motivo.startswith(SIN_EXISTENCIA) else motivo


def informa(dia: Dia, segundos: float) -> int:
    anf, ventas, devueltas, recibida = dia.anf, dia.ventas, dia.devueltas, dia.recibida
    if dia.entrega or recibida.documentos:
        partidas = sum(documento.partidas for documento in recibida.documentos)
        print(f"\nEntrega: {len(dia.entrega)} renglones, {partidas} partidas, {len(recibida.rechazados)} rechazados.")
        comun.informa_renglones(recibida.rechazados, recibida.avisos)
    rechazados = sorted(ventas.rechazados + devueltas.rechazados, key=lambda caso: caso[0].linea)
    avisos = sorted(ventas.avisos + devueltas.avisos, key=lambda caso: caso[0].linea)
    vendidas = sum(documento.partidas for documento in ventas.documentos)
    regresadas = sum(documento.partidas for documento in devueltas.documentos)
    hechas = {documento.origen for registro in (ventas, devueltas) for documento in registro.documentos}
    sin_documento = sum(factura.numero not in hechas for factura in dia.facturas)
    print(f"\n{len(dia.facturas)} facturas: {len(ventas.documentos)} salidas, {len(devueltas.documentos)} "
          f"devoluciones, {sin_documento} sin documento.")
    print(f"{dia.renglones()} renglones: {vendidas} partidas de salida, {ventas.sumados} sumados al anterior, "
          f"{regresadas} partidas devueltas, {len(rechazados)} rechazados, {segundos:.1f} segundos.")
    comun.informa_renglones(rechazados, avisos, motivo_general)
    print()
    filas = []
    for clase, registro in (("entrada", recibida), ("salida", ventas), ("entrada", devueltas)):
        for documento in registro.documentos:
            estado = ("pendiente" if registro.pendiente else "afectada") if documento.cerrado else "sin terminar"
            filas.append([documento.origen, f"{clase} {documento.numero}", getattr(documento, "cliente", ""),
                          str(documento.partidas), estado, documento.en_pantalla, comun.importe(documento.suma)])
    if filas:
        print(comun.tabla(["Factura", "Documento", "Cliente", "Partidas", "Estado", "Total en pantalla", "Suma"], filas,
                          {3, 5, 6}))
        paginas = comun.paginas_impresas(anf)
        print(f"Páginas impresas en {Path(anf.Ambiente.RutaBase) / 'impresos'}: {len(paginas)}.")
        for pagina in paginas:
            if not pagina.exists():
                print(f"No se encuentra la página {pagina}")
    else:
        print("No se registró ningún renglón: no hay documentos.")
    faltantes = bajo_cero(anf, ventas.almacen)
    if faltantes:
        print("\nArtículos que quedaron bajo cero")
        print(comun.tabla(["Artículo", "Existencia"], faltantes, {1}))
    return revisa(dia)


def revisa(dia: Dia) -> int:
    ventas, devueltas, recibida = dia.ventas, dia.devueltas, dia.recibida
    print("\nRevisión")
    bien = comun.informa_revision(revisa_salidas(ventas))
    for nombre, registro in (("Devoluciones", devueltas), ("Entrega", recibida)):
        if registro.documentos or registro.diferencias:
            print(f"  {nombre}")
            bien = comun.informa_revision(revisa_documentos(registro)) and bien
    consultas = [(registro, nombre, *campos) for registro, nombre, *campos in (
        (ventas, "salida", "SA", "folio"), (devueltas, "devolución", "EN", "entrada"),
        (recibida, "entrega", "EN", "entrada")) if registro.documentos]
    print("\nConsultas a la base, aparte de las cuentas de este programa")
    for registro, nombre, operacion, movimiento in consultas:
        bien = pregunta(dia.anf, consulta_de_partidas(registro, f"Partidas de {nombre} contra sus movimientos",
                                                      operacion, movimiento, dia.ultimo_movimiento)) and bien
        bien = pregunta(dia.anf, consulta_de_encabezados(
            registro, f"Documentos de {nombre} contra sus partidas")) and bien
    bien = pregunta(dia.anf, consulta_de_existencias(dia.anf, ventas.almacen)) and bien
    print("\nLos libros concuerdan." if bien else "\nLos libros no concuerdan.")
    return 0 if bien else 1


# ---- the program -------------------------------------------------------------------------------


def opciones_de_la_linea():
    parser = comun.argumentos("Registra las ventas de un día como lo haría un operador: una salida por factura.")
    parser.add_argument("ventas", type=Path, metavar="DIA.csv", help="los renglones de las facturas del día")
    parser.add_argument("--concepto", default="VTA", help="concepto de las salidas (VTA)")
    parser.add_argument("--concepto-devolucion", default="DEV", metavar="CONCEPTO",
                        help="concepto de las entradas por factura cancelada (DEV)")
    parser.add_argument("--concepto-entrega", default="COM", metavar="CONCEPTO",
                        help="concepto de la entrada por entrega (COM)")
    parser.add_argument("--almacen", type=comun.almacen_de, default=1, metavar="NÚMERO", help="almacén que surte (1)")
    entrega = parser.add_mutually_exclusive_group()
    entrega.add_argument("--entrega", type=Path, metavar="ENTREGA.csv",
                         help="recibe primero esta nota de entrega, con las columnas de recibe_entrega.py")
    entrega.add_argument("--entrega-del-dia", action="store_true",
                         help="recibe primero, por artículo, lo que el día va a vender")
    parser.add_argument("--importa-catalogo", type=Path, metavar="ARTICULOS.csv",
                        help="da de alta primero los artículos de este archivo que no estén")
    parser.add_argument("--servicios", default="", metavar="CLAVE,CLAVE",
                        help="claves que no son mercancía: se dan de alta sin control de existencia y no se reciben "
                             "con --entrega-del-dia")
    parser.add_argument("--continua-sin-existencia", action="store_true",
                        help="responde que sí, si la pantalla pregunta por falta de existencia (responde que no)")
    parser.add_argument("--omite-registradas", action="store_true",
                        help="deja fuera las facturas que ya tienen documento")
    parser.add_argument("--pendiente", action="store_true",
                        help="deja pendientes las salidas y las devoluciones; la entrega sí se afecta")
    parser.add_argument("--maximo", type=comun.maximo_de, default=PARTIDAS_EN_PANTALLA, metavar="PARTIDAS",
                        help=f"partidas por documento ({PARTIDAS_EN_PANTALLA}, las que caben en la pantalla)")
    parser.add_argument("--sin-barra", action="store_true", help="no muestra el avance")
    return parser.parse_args()


def principal() -> int:
    opciones = opciones_de_la_linea()
    servicios = frozenset(clave.strip() for clave in opciones.servicios.split(",") if clave.strip())

    # Every file before the base: a bad one leaves nothing written.
    facturas = lee_dia(opciones.ventas)
    entrega = (entrega_del_dia(facturas, servicios) if opciones.entrega_del_dia else
               lee_entrega(opciones.entrega, False) if opciones.entrega else [])
    catalogo = comun.lee_catalogo(opciones.importa_catalogo) if opciones.importa_catalogo else None
    venta, devolucion, compra = (concepto.upper() for concepto in (
        opciones.concepto, opciones.concepto_devolucion, opciones.concepto_entrega))

    anf = comun.abre(opciones)
    import tarvik  # it is there, or the base would not have opened

    dia = Dia(anf, facturas, entrega,
              Entradas(anf, compra, opciones.almacen, False, opciones.maximo),
              Entradas(anf, devolucion, opciones.almacen, opciones.pendiente, opciones.maximo),
              Ventas(anf, venta, opciones.almacen, opciones.pendiente, opciones.maximo,
                     opciones.continua_sin_existencia),
              marca_de_entrega(f"de {opciones.entrega.name}" if opciones.entrega else
                               f"del día {opciones.ventas.name}", entrega))
    print("Altas en la base, antes de teclear nada:")
    if catalogo is not None:
        print(comun.importa_catalogo(anf, catalogo, [
            (venta, "S", "Venta"), (devolucion, "E", "Devolución de cliente"), (compra, "E", "Compra a proveedor")],
            opciones.almacen, servicios))
    # The headings before any document; of goods-in only what is going to be used.
    prueba(dia.ventas, *([dia.devueltas] if any(factura.cancela() for factura in facturas) else []),
           *([dia.recibida] if entrega else []))
    print(alta_de_usuario(anf, opciones.usuario))
    print(alta_de_clientes(anf, facturas))
    repetidas = registradas(anf, facturas)
    for numero, donde in list(repetidas.items())[:3]:
        print(f"La factura {numero} ya está en {donde}.")
    if repetidas:
        print(f"{len(repetidas)} facturas ya tienen documento: "
              f"{'se omiten' if opciones.omite_registradas else 'se registran otra vez'}.")
    avisos = sin_terminar(anf, repetidas, opciones.pendiente) if opciones.omite_registradas else []
    previa = entrega_previa(anf, dia.observaciones_de_la_entrega, entrega) if entrega else None
    if opciones.omite_registradas:
        dia.facturas = [factura for factura in facturas if factura.numero not in repetidas]
        if previa is not None and (previa.pendientes or not repetidas):
            print(f"La entrega ya está en la entrada {', '.join(map(str, previa.documentos))}: " +
                  (f"se termina, faltan {len(previa.faltan)} renglones." if previa.pendientes or previa.faltan else
                   "no se recibe otra vez."))
            dia.retoma_entrega(previa)
        elif repetidas and dia.entrega:
            # It came before the first of them, for the whole day.
            print("La entrega se registró con esas facturas: no se recibe otra vez.")
            dia.entrega = []
    elif previa is not None:
        print(f"La entrega ya está en la entrada {', '.join(map(str, previa.documentos))}: se recibe otra vez.")
    dia.ultimo_movimiento = anf.sql("SELECT COALESCE(MAX(id), 0) AS id FROM movsinv")[0]["id"]

    barra = Barra(len(dia.entrega) + dia.renglones(), not opciones.sin_barra)
    inicio = time.monotonic()
    terminado = True
    try:
        dia.juega(barra)
    except SinTerminar:
        terminado = False
    except (Fallo, tarvik.Error) as error:
        # What was recorded before it stays recorded, and is accounted for.
        barra.termina()
        print(f"El día se detuvo: {error}", file=sys.stderr)
        terminado = False
        for registro in dia.registros():
            registro.deja()
    except KeyboardInterrupt:
        signal.signal(signal.SIGINT, signal.SIG_IGN)  # what is left takes an instant
        barra.termina()
        print(dia.interrumpe(), file=sys.stderr)
        return 130
    finally:
        barra.termina()
    codigo = informa(dia, time.monotonic() - inicio)
    if not terminado:
        print(f"Quedaron {dia.renglones() - dia.hechos} renglones del día sin registrar.")
        codigo = 1
    for aviso in avisos:
        print(aviso)
    anf.cierra()
    return max(codigo, 1) if avisos else codigo


if __name__ == "__main__":
    comun.corre(principal)
