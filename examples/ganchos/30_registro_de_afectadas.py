"""Adds one line to afectadas.csv, in the base's folder, for each document that was posted.

The file opens in a spreadsheet. It is a convenience: the ledger of movements is the record."""

import csv
from datetime import datetime
from pathlib import Path

TITULOS = ["fecha", "hora", "usuario", "estacion", "documento", "numero", "concepto", "almacen", "renglones", "costo"]
CONCEPTO, ALMACEN = 0, 14  # txtFields of goods-in


def ENTRADA014(forma, ambiente):
    ahora = datetime.now()
    archivo = Path(ambiente.RutaBase) / "afectadas.csv"
    nuevo = not archivo.exists()
    with archivo.open("a", newline="", encoding="utf-8") as salida:
        hoja = csv.writer(salida)
        if nuevo:
            hoja.writerow(TITULOS)
        hoja.writerow([f"{ahora:%Y-%m-%d}", f"{ahora:%H:%M:%S}", ambiente.Usuario, ambiente.Estacion, "entrada",
                       forma.Entrada, forma.txtFields[CONCEPTO].Text, forma.txtFields[ALMACEN].Text,
                       forma.CuantasPartidas(), f"{forma.Costo:.2f}"])
