"""Files that nobody would write: whatever bytes stand in a CSV, the examples read rows or say what is wrong with
which line, and nothing else comes out. TARVIK_DADOS is how many files are tried (500), TARVIK_SEMILLA the first
seed."""

import os
import random
import sys
import tempfile
import unittest
from decimal import Decimal
from pathlib import Path

EJEMPLOS = Path(__file__).resolve().parents[2] / "examples"
sys.path.insert(0, str(EJEMPLOS))
import _archivos as archivos  # noqa: E402
import _comun as comun  # noqa: E402
import recibe_entrega  # noqa: E402
import surte_dia  # noqa: E402

SEMILLAS = [
    "articulo,cantidad,precio\nA-100,3,5.50\n\"O'Hara, \"\"el\"\" 2\",1,0\n",
    "InvoiceNo,StockCode,Description,Quantity,InvoiceDate,UnitPrice,CustomerID,Country\n"
    "536365,85123A,WHITE HANGING,6,2010-12-01 08:26:00,2.55,17850.0,United Kingdom\nC536379,D,Discount,-1,"
    "2010-12-01 09:41:00,27.50,14527.0,United Kingdom\n",
    "clave,descripcion,precio,unidad\nA1,Ñandú €,5,PZA\n",
    "articulo,lectura\n7501,1\n",
]
PEDAZOS = [",", ";", "\t", "\"", "\"\"", "\n", "\r\n", "\r", "\0", "\ufeff", "1e999", "-0", "NaN", "Infinity", "1.2.3",
           "1,000", "ñ", "\U0001f600", " ", "'", "\u2028", "99999999999999999999", "0x10", "\x1a"]
CRUDOS = [b"\xff", b"\xfe\xff", b"\xc3", b"\xed\xa0\x80", b"\x80\x81"]


def estropea(azar, texto):
    datos = bytearray(texto.encode())
    for _ in range(azar.randint(1, 8)):
        donde = azar.randint(0, len(datos))
        que = azar.randint(0, 4)
        if que == 0:
            datos[donde:donde] = azar.choice(PEDAZOS).encode("utf-8", "surrogatepass")
        elif que == 1:
            datos[donde:donde] = azar.choice(CRUDOS)
        elif que == 2:
            del datos[donde:donde + azar.randint(1, 12)]
        elif que == 3 and datos:
            datos[donde % len(datos)] = azar.randrange(256)
        else:
            hasta = azar.randint(donde, len(datos))
            datos[donde:donde] = datos[donde:hasta] * azar.randint(1, 3)
    return bytes(datos)


class CsvAlAzar(unittest.TestCase):
    def test_rows_or_a_word_about_a_line_and_nothing_else(self):
        primera = int(os.environ.get("TARVIK_SEMILLA", "1"))
        leidas = rechazadas = 0
        with tempfile.TemporaryDirectory() as carpeta:
            archivo = Path(carpeta, "dado.csv")
            for semilla in range(primera, primera + int(os.environ.get("TARVIK_DADOS", "500"))):
                azar = random.Random(semilla)
                archivo.write_bytes(estropea(azar, azar.choice(SEMILLAS)))
                for lee in (lambda: recibe_entrega.lee_entrega(archivo, False),
                            lambda: recibe_entrega.lee_entrega(archivo, True),
                            lambda: surte_dia.lee_dia(archivo), lambda: archivos.lee_catalogo(archivo)):
                    try:
                        lee()
                        leidas += 1
                    except comun.Fallo as fallo:
                        self.assertIn("dado.csv", str(fallo), semilla)
                        rechazadas += 1
                    except Exception as otra:
                        self.fail(f"semilla {semilla}: {otra!r}\n{archivo.read_bytes()!r}")
                for renglon in self.entrega(archivo):
                    for cifra in (renglon.cantidad, renglon.precio):
                        if cifra:
                            self.assertTrue(Decimal(cifra).is_finite(), semilla)
        self.assertGreater(leidas, 0)
        self.assertGreater(rechazadas, 0)

    @staticmethod
    def entrega(archivo):
        try:
            return recibe_entrega.lee_entrega(archivo, False)
        except comun.Fallo:
            return []


if __name__ == "__main__":
    unittest.main()
