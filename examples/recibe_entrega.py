#!/usr/bin/env python3
"""Records a supplier's delivery note, a CSV file, through the goods-in wizard as an operator would:
keys only, one line at a time. Then it posts the document and checks the books.

It brings no rule of its own: what the screen refuses is reported with the screen's words. It does not
mend the file, and it reads it whole before anything is recorded."""

from __future__ import annotations

import signal
import sys
import time
from decimal import Decimal
from pathlib import Path

import _comun as comun
from _archivos import Renglon, filas_de, importa_catalogo, lee_catalogo
from _comun import (CANTIDAD, PARTIDAS_EN_PANTALLA, PRECIO, PRESENTACIONES, Barra, Documento, Fallo, Registro,
                    SinTerminar)


# ---- the file ----------------------------------------------------------------------------------


def lee_entrega(archivo: Path, lector: bool) -> list[Renglon]:
    exigidas = ("articulo",) if lector else ("articulo", "cantidad", "precio")
    return [renglon_de(archivo, linea, valores, lector)
            for linea, valores in filas_de(archivo, exigidas, ("cantidad", "precio"))]


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


# ---- recording ---------------------------------------------------------------------------------


class Recepcion(Registro):
    """The delivery being recorded: its documents, and what became of each row."""

    def __init__(self, anf, concepto: str, almacen: int, pendiente: bool, maximo: int) -> None:
        super().__init__(anf, concepto, almacen, pendiente, maximo)
        self.ultima_partida = 0
        self.precios: dict[str, Decimal] = {}

    def registra(self, renglon: Renglon) -> None:
        if self.operador is None:
            self.abre()
        operador, documento = self.operador, self.documentos[-1]
        operador.novedades()
        factor = Decimal(1)
        if not comun.se_teclea(renglon.articulo):
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
        documento.numero = self.numero_en_pantalla()
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


# ---- the books ---------------------------------------------------------------------------------


def revisa_documentos(recepcion: Recepcion) -> list[tuple[str, list[str]]]:
    """What was checked of the documents alone, each with what does not agree."""
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
    return [("Cada renglón registrado quedó como dice la nota, y nada más", recepcion.diferencias),
            ("Las partidas guardadas son las que se hicieron", partidas),
            ("El total de la pantalla es la suma de la nota", totales),
            ("Los movimientos son los del documento", movimientos)]


def revisa(recepcion: Recepcion) -> list[tuple[str, list[str]]]:
    existencias = [
        f"Almacén {comun.plano(comun.exacto(fila['almacen']))}, {fila['articulo']}: existencia "
        f"{fila['existencia']:g}, movimientos {fila['movido']:g}."
        # One statement, so that a station that posts meanwhile is in both sums or in neither.
        for fila in recepcion.anf.sql(
            "SELECT almacen, articulo, SUM(existencia) AS existencia, SUM(movido) AS movido FROM ("
            "SELECT almacen, articulo, existencia, 0.0 AS movido FROM existenciaalmacen UNION ALL "
            "SELECT almacen, articulo, 0.0, CASE ent_sal WHEN 'E' THEN cantidad WHEN 'S' THEN -cantidad ELSE 0 END "
            "FROM movsinv) AS libros GROUP BY almacen, articulo "
            "HAVING ABS(SUM(existencia) - SUM(movido)) > 0.000001 ORDER BY articulo, almacen")]
    return revisa_documentos(recepcion) + [
        ("La existencia de cada artículo es la suma de sus movimientos", existencias)]


def informa(recepcion: Recepcion, renglones: int, segundos: float) -> int:
    partidas = sum(documento.partidas for documento in recepcion.documentos)
    print(f"\n{renglones} renglones: {partidas} partidas, {len(recepcion.rechazados)} rechazados, "
          f"{segundos:.1f} segundos.")
    comun.informa_renglones(recepcion.rechazados, recepcion.avisos)
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
    bien = comun.informa_revision(revisa(recepcion))
    print("Los libros concuerdan." if bien else "Los libros no concuerdan.")
    return 0 if bien else 1


# ---- the program -------------------------------------------------------------------------------


def principal() -> int:
    parser = comun.argumentos("Registra la nota de entrega de un proveedor como lo haría un operador.")
    parser.add_argument("entrega", type=Path, metavar="ENTREGA.csv", help="la nota de entrega")
    parser.add_argument("--concepto", default="COM", help="concepto de la entrada (COM)")
    parser.add_argument("--almacen", type=comun.almacen_de, default=1, metavar="NÚMERO",
                        help="almacén que recibe (1)")
    parser.add_argument("--lector", action="store_true",
                        help="todos los renglones son lecturas: una unidad al precio del catálogo")
    parser.add_argument("--importa-catalogo", type=Path, metavar="ARTICULOS.csv",
                        help="da de alta primero los artículos de este archivo que no estén")
    parser.add_argument("--pendiente", action="store_true", help="deja la entrada pendiente, sin afectarla")
    parser.add_argument("--maximo", type=comun.maximo_de, default=PARTIDAS_EN_PANTALLA, metavar="PARTIDAS",
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
            print(importa_catalogo(anf, catalogo, [(concepto, "E", "Compra a proveedor")], opciones.almacen))
        for hechos, renglon in enumerate(renglones, 1):
            recepcion.registra(renglon)
            barra.avanza(hechos)
        recepcion.termina()
    except SinTerminar:
        pass
    except KeyboardInterrupt:
        signal.signal(signal.SIGINT, signal.SIG_IGN)  # what is left takes an instant
        barra.termina()
        quedan = " ".join(recepcion.interrumpe()) or "No quedó ningún documento."
        print(f"Interrumpido. {quedan}", file=sys.stderr)
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
