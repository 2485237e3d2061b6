#!/usr/bin/python3 -B
"""A day of real sales, once by one station and once by eight at the same time, each in a base of its own: the stock,
the documents and their lines must be the same, and the revision must find nothing.

    PYTHONPATH=build/release/python tests/caos/ocho_estaciones.py DIA.csv                        on a file
    PYTHONPATH=build/release/python tests/con_servidor.sh tests/caos/ocho_estaciones.py DIA.csv  on a server

DIA.csv is what examples/surte_dia.py takes. Ten times what the day sells is received first, so that nobody is
refused for want of stock."""

import csv
import os
import re
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import tarvik

EJEMPLOS = Path(__file__).resolve().parents[2] / "examples"
SERVIDOR = os.environ.get("TARVIK_TEST_BASE", "")
ESTACIONES = 8


def abre(base, carpeta):
    return tarvik.Anfitrion(base=base, usuario="ANA", estacion="E1", ruta=str(carpeta))


def base_nueva(nombre, carpeta):
    if not SERVIDOR:
        return f"sqlite:{carpeta / nombre}.db"
    anf = abre(SERVIDOR, carpeta)
    anf.sql(f"CREATE DATABASE {nombre} TEMPLATE template0")
    anf.cierra()
    return re.sub(r"^(postgresql://[^/?]*/)[^?]*", rf"\g<1>{nombre}", SERVIDOR)


def corre(programa, *argumentos):
    return subprocess.Popen([sys.executable, "-B", EJEMPLOS / programa, *argumentos, "--sin-barra"],
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)


def termina(proceso):
    dicho = proceso.communicate()[0]
    if proceso.returncode != 0:
        sys.exit(dicho)


def escribe(archivo, columnas, filas):
    with open(archivo, "w", newline="", encoding="utf-8") as salida:
        escritor = csv.writer(salida)
        escritor.writerow(columnas)
        escritor.writerows(filas)


def reparte(dia, carpeta):
    """The day's delivery, and its invoices in as many parts as there are stations."""
    with open(dia, encoding="utf-8", errors="replace", newline="") as entrada:
        filas = list(csv.DictReader(entrada))
    vendido = {}
    for fila in filas:
        vendido[fila["StockCode"]] = vendido.get(fila["StockCode"], 0) + max(0, int(fila["Quantity"]))
    entrega = carpeta / "entrega.csv"
    escribe(entrega, ["articulo", "cantidad", "precio"],
            [(articulo, 10 * cantidad, 1) for articulo, cantidad in sorted(vendido.items()) if cantidad])
    partes = []
    facturas = list(dict.fromkeys(fila["InvoiceNo"] for fila in filas))
    for cual in range(ESTACIONES):
        suyas = set(facturas[cual::ESTACIONES])
        partes.append(carpeta / f"parte{cual}.csv")
        escribe(partes[-1], filas[0].keys(), [fila.values() for fila in filas if fila["InvoiceNo"] in suyas])
    return entrega, partes


def juega(nombre, dia, entrega, partes, carpeta):
    """What the base holds when all parts are posted."""
    base = base_nueva(nombre, carpeta)
    termina(corre("recibe_entrega.py", entrega, "--base", base, "--importa-catalogo", dia, "--ruta", carpeta))
    anf = abre(base, carpeta)
    for concepto, lado in (("VTA", "S"), ("DEV", "E")):
        anf.sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES (?, ?, ?)", concepto, lado, concepto)
    desde = time.monotonic()
    procesos = [corre("surte_dia.py", parte, "--base", base, "--estacion", f"E{cual + 1}", "--ruta",
                      carpeta / f"{nombre}{cual}") for cual, parte in enumerate(partes)]
    for proceso in procesos:
        termina(proceso)
    segundos = time.monotonic() - desde
    tablas = {tabla: anf.sql(f"SELECT COUNT(*) AS cuantos FROM {tabla}")[0]["cuantos"]
              for tabla in ("entradas", "salidas", "salpart", "movsinv")}
    existencias = [(fila["almacen"], fila["articulo"], fila["existencia"]) for fila in anf.sql(
        "SELECT almacen, articulo, existencia FROM existenciaalmacen ORDER BY almacen, articulo")]
    hallazgos = [hallazgo.texto for hallazgo in anf.revisa()]
    anf.cierra()
    print(f"{len(partes)} a la vez: {tablas}, {len(existencias)} existencias, {len(hallazgos)} hallazgos, "
          f"{segundos:.1f} segundos")
    return tablas, existencias, hallazgos


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    dia = Path(sys.argv[1])
    with tempfile.TemporaryDirectory() as temporal:
        carpeta = Path(temporal)
        entrega, partes = reparte(dia, carpeta)
        de_una = juega("una", dia, entrega, [dia], carpeta)
        de_ocho = juega("ocho", dia, entrega, partes, carpeta)
    if de_una != de_ocho or de_ocho[2]:
        sys.exit(f"No son iguales.\n{de_una[2]}\n{de_ocho[2]}\n"
                 f"{sorted(set(de_una[1]) ^ set(de_ocho[1]))[:20]}")
    print("Terminan iguales.")


if __name__ == "__main__":
    main()
