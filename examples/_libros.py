"""The books after the day, by this program's own reckoning and by questions to the base alone: for surte_dia.py;
not a program."""

from __future__ import annotations

from collections.abc import Iterable
from dataclasses import dataclass
from decimal import Decimal

import _comun as comun
from _comun import Registro
from _ventas import Partida, Ventas, iguales

DISCREPANCIAS_A_LA_VISTA = 20


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
