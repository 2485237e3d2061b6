"""The examples, run as a user runs them: on bases of their own, through the command line."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import tarvik

EJEMPLOS = Path(__file__).resolve().parents[2] / "examples"


class Caso(unittest.TestCase):
    def setUp(self):
        temporal = tempfile.TemporaryDirectory()
        self.addCleanup(temporal.cleanup)
        self.carpeta = Path(temporal.name)
        self.base = f"sqlite:{self.carpeta / 'almacen.db'}"
        self.ruta = self.carpeta / "datos"

    def corre(self, programa, *argumentos, base=None):
        modulo = str(Path(tarvik.__file__).parent)
        entorno = os.environ | {"PYTHONPATH": modulo, "PYTHONIOENCODING": "utf-8"}
        hecho = subprocess.run(
            [sys.executable, "-B", "-W", "error", str(EJEMPLOS / programa), *map(str, argumentos),
             "--base", base or self.base, "--ruta", str(self.ruta)],
            capture_output=True, encoding="utf-8", env=entorno, cwd=self.carpeta, timeout=120)
        self.assertNotIn("Traceback", hecho.stderr)
        return hecho

    def archivo(self, nombre, texto):
        camino = self.carpeta / nombre
        camino.write_bytes(texto if isinstance(texto, bytes) else texto.encode())
        return camino

    def abre(self, demo=False):
        anf = tarvik.Anfitrion(base=self.base, usuario="ANA", estacion="E1", ruta=str(self.ruta), demo=demo)
        self.addCleanup(anf.cierra)
        return anf

    def partidas(self, entrada):
        anf = self.abre()
        filas = anf.sql("SELECT articulo, cantidad, precio, observ, claveadd, prcantidad, prdescrip FROM entpart "
                        "WHERE entrada = ? ORDER BY id_entrada", entrada)
        return [(f["articulo"], f["cantidad"], f["precio"]) for f in filas], filas


class RecibeEntrega(Caso):
    PROGRAMA = "recibe_entrega.py"

    def recibe(self, texto, *argumentos):
        return self.corre(self.PROGRAMA, self.archivo("entrega.csv", texto), *argumentos)

    def test_each_kind_of_row_is_a_line_or_a_refusal_and_none_leaks_into_the_next(self):
        anf = self.abre(demo=True)
        anf.sql("INSERT INTO prods (articulo, descrip, precio1, impuesto) VALUES ('SINTASA', 'x', 10, 'NO')")
        anf.cierra()
        hecho = self.recibe(
            "Lote,CLAVE,Cantidad,Precio,lectura\n"
            "1,MAR-16,2,118.405,\n"       # 2
            "1,FOC-9W-C12,3,19.70,\n"     # 3: presentations
            "1,FOC-9W-C12,0,19.70,\n"     # 4: refused with a presentation in the row
            "1,SINTASA,2,,\n"             # 5: no price to take
            "1,SINTASA,2,7,\n"            # 6
            "1,,3,4,\n"                   # 7
            "1,7501206600016,,,\n"        # 8: reading
            "1,NOHAY,,,\n"                # 9: reading of an unknown key
            "1,7501206600016,4,,\n"       # 10: barcode with a quantity of its own
            "1,MAR-16,,5,\n"              # 11
            "1,MAR-16,3,,0\n"             # 12: price of the catalogue
            "1,NOHAY,-1,9,\n"             # 13
            "1,MAR-16,1,-3,\n"            # 14
            "1,MAR-16,1,,1\n"             # 15: marked as a reading
            "1,CAB-12,0.5,10.45,\n"       # 16
            '1,"MAR\t16",1,1,\n')         # 17: nobody can type that
        self.assertEqual(hecho.returncode, 0, hecho.stdout + hecho.stderr)
        partidas, filas = self.partidas(1)
        self.assertEqual(partidas, [
            ("MAR-16", 2, 118.41), ("FOC-9W", 36, 19.7), ("SINTASA", 2, 7), ("MAR-16", 1, 219.24),
            ("MAR-16", 4, 219.24), ("MAR-16", 3, 219.24), ("MAR-16", 1, 219.24), ("CAB-12", 0.5, 10.45)])
        self.assertEqual([f["claveadd"] or "" for f in filas],
                         ["", "FOC-9W-C12", "", "7501206600016", "7501206600016", "", "", ""])
        self.assertEqual([(f["prcantidad"], f["prdescrip"] or "") for f in filas][1:3], [(3, "CAJ"), (0, "")])
        self.assertEqual(filas[2]["observ"], "")  # nothing of the refused rows before it
        for linea, motivo in [(4, "La cantidad debe"), (5, "El precio debe"), (7, "Indique la clave"),
                              (9, "no existe"), (11, "La cantidad debe"), (13, "no existe"), (14, "El precio debe"),
                              (17, "no se pueden teclear")]:
            self.assertRegex(hecho.stdout, rf"(?m)^ *{linea}  .*{motivo}")
        self.assertIn("16 renglones: 8 partidas, 8 rechazados", hecho.stdout)
        self.assertIn("El precio 118.405 quedó en 118.41.", hecho.stdout)
        # 236.82 + 709.20 + 14 + 9 x 219.24 + 5.225
        self.assertRegex(hecho.stdout, r"(?m)^ *1 +8 +afectada +2,938\.41 +2,938\.41$")
        self.assertIn("Los libros concuerdan.", hecho.stdout)
        self.assertTrue((self.ruta / "impresos" / "entrada-1.html").exists())
        anf = self.abre()
        self.assertEqual(anf.sql("SELECT estado, ocupado, importe, tipo_doc, usuario FROM entradas"),
                         [{"estado": "CO", "ocupado": 0, "importe": 2938.41, "tipo_doc": "COM", "usuario": "ANA"}])
        self.assertEqual(anf.sql("SELECT existencia FROM existenciaalmacen WHERE articulo = 'MAR-16'"),
                         [{"existencia": 11.0}])

    def test_catalogue_is_imported_once_and_a_second_run_adds_a_document(self):
        texto = ("InvoiceNo,StockCode,Description,Quantity,UnitPrice\n"
                 "1,A1,,2,0\n"
                 "1,A1,ADHESIVO Ñ,2,2.55\n"
                 "1,b2,\"COJÍN, AZUL\",1,3.00\n"
                 "1,A1,OTRO NOMBRE,1,9.99\n")
        entrega = self.archivo("entrega.csv", texto)
        hecho = self.corre(self.PROGRAMA, entrega, "--importa-catalogo", entrega)
        self.assertEqual(hecho.returncode, 0, hecho.stdout + hecho.stderr)
        self.assertIn("2 artículos nuevos, 0 ya estaban", hecho.stdout)
        anf = self.abre()
        self.assertEqual(anf.sql("SELECT articulo, prods.descrip, precio1, valor FROM prods INNER JOIN impuestos ON "
                                 "impuestos.impuesto = prods.impuesto ORDER BY articulo"),
                         [{"articulo": "A1", "descrip": "ADHESIVO Ñ", "precio1": 2.55, "valor": 0.0},
                          {"articulo": "b2", "descrip": "COJÍN, AZUL", "precio1": 3.0, "valor": 0.0}])
        anf.sql("UPDATE prods SET precio1 = 7 WHERE articulo = 'A1'")
        hecho = self.corre(self.PROGRAMA, entrega, "--importa-catalogo", entrega)
        self.assertEqual(hecho.returncode, 0, hecho.stdout + hecho.stderr)
        self.assertIn("0 artículos nuevos, 2 ya estaban", hecho.stdout)
        self.assertEqual(anf.sql("SELECT precio1 FROM prods WHERE articulo = 'A1'"), [{"precio1": 7.0}])
        self.assertEqual(anf.sql("SELECT entrada, estado FROM entradas ORDER BY entrada"),
                         [{"entrada": 1, "estado": "CO"}, {"entrada": 2, "estado": "CO"}])
        self.assertEqual(anf.sql("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A1'"),
                         [{"existencia": 6.0}])
        self.assertEqual(self.partidas(2)[0], [("A1", 2, 2.55), ("b2", 1, 3), ("A1", 1, 9.99)])

    def test_catalogue_of_thousands_goes_in_whole(self):
        catalogo = self.archivo("articulos.csv", "clave,descripcion,precio\n" +
                                "".join(f"K{i},ARTÍCULO {i},{i}.25\n" for i in range(3000)))
        hecho = self.corre(self.PROGRAMA, self.archivo("entrega.csv", "clave\nK2999\n"), "--lector",
                           "--importa-catalogo", catalogo)
        self.assertEqual(hecho.returncode, 0, hecho.stdout + hecho.stderr)
        self.assertEqual(self.abre().sql("SELECT COUNT(*) AS n FROM prods"), [{"n": 3000}])
        self.assertEqual(self.partidas(1)[0], [("K2999", 1, 2999.25)])

    def test_pending_moves_no_stock(self):
        self.abre(demo=True).cierra()
        hecho = self.recibe("articulo,cantidad,precio\nMAR-16,2,10\n", "--pendiente")
        self.assertEqual(hecho.returncode, 0, hecho.stdout + hecho.stderr)
        anf = self.abre()
        self.assertEqual(anf.sql("SELECT estado, ocupado FROM entradas"), [{"estado": "PE", "ocupado": 0}])
        self.assertEqual(anf.sql("SELECT COUNT(*) AS n FROM movsinv"), [{"n": 0}])
        self.assertIn("pendiente", hecho.stdout)

    def test_a_full_screen_goes_on_in_a_further_document(self):
        self.abre(demo=True).cierra()
        hecho = self.recibe("articulo,cantidad,precio\n" + "MAR-16,1,10\n" * 5, "--maximo", "2")
        self.assertEqual(hecho.returncode, 0, hecho.stdout + hecho.stderr)
        anf = self.abre()
        self.assertEqual(anf.sql("SELECT entrada, COUNT(*) AS n FROM entpart GROUP BY entrada ORDER BY entrada"),
                         [{"entrada": 1, "n": 2}, {"entrada": 2, "n": 2}, {"entrada": 3, "n": 1}])
        self.assertEqual(anf.sql("SELECT DISTINCT estado FROM entradas"), [{"estado": "CO"}])

    def test_nothing_but_refusals_makes_no_document(self):
        self.abre(demo=True).cierra()
        hecho = self.recibe("articulo,cantidad,precio\nNOHAY,1,1\nMAR-16,-1,1\n")
        self.assertEqual(hecho.returncode, 0, hecho.stdout + hecho.stderr)
        self.assertIn("0 partidas, 2 rechazados", hecho.stdout)
        self.assertIn("no hay documento", hecho.stdout)
        self.assertEqual(self.abre().sql("SELECT COUNT(*) AS n FROM entradas"), [{"n": 0}])

    def test_a_closed_period_leaves_the_document_pending_and_says_so(self):
        anf = self.abre(demo=True)
        anf.sql("INSERT INTO movsinv (articulo, f_movim, cerrado) VALUES ('MAR-16', '2999-01-01', 1)")
        anf.cierra()
        hecho = self.recibe("articulo,cantidad,precio\nMAR-16,1,1\n")
        self.assertEqual(hecho.returncode, 1, hecho.stdout + hecho.stderr)
        self.assertIn("El periodo de esta fecha está cerrado", hecho.stdout)
        self.assertEqual(self.abre().sql("SELECT estado, ocupado FROM entradas"), [{"estado": "PE", "ocupado": 0}])

    def test_books_that_do_not_agree_end_with_1(self):
        anf = self.abre(demo=True)
        anf.sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, 'MAR-16', 5)")
        anf.cierra()
        hecho = self.recibe("articulo,cantidad,precio\nMAR-16,1,1\n")
        self.assertEqual(hecho.returncode, 1)
        self.assertIn("MAR-16: existencia 6, movimientos 1", hecho.stdout)
        self.assertIn("Los libros no concuerdan.", hecho.stdout)

    def test_bad_files_are_told_by_place_and_write_nothing(self):
        titulos = "clave,Quantity,precio\n"
        for nombre, texto, espera in [
                ("column missing", "clave,cantidad\nA,1\n", "línea 1: falta la columna precio"),
                ("column twice", "clave,articulo,cantidad,precio\n", "línea 1: la columna articulo está dos veces"),
                ("broken row", titulos + "A,1,2\nB,1\n", "línea 3: tiene 2 campos y el encabezado 3"),
                ("broken row behind a line break", titulos + '"A\nB",1,2\nB,1\n', "línea 4: tiene 2 campos"),
                ("open quotes", titulos + 'A,1,2\n"B,1,2\n', "línea 3: las comillas"),
                ("encoding", titulos.encode() + b"A,1,2\nA\xf1,1,2\n", "línea 3, byte 2: el texto no está en UTF-8"),
                ("quantity", titulos + "A,uno,2\n", 'línea 2, columna Quantity: "uno" no es un número'),
                ("not finite", titulos + "A,nan,2\n", 'columna Quantity: "nan" no es un número'),
                ("price", titulos + "A,1,\"2,50\"\n", 'línea 2, columna precio: "2,50" no es un número'),
                ("digits", titulos + "A,1234567890123456,2\n", "más de 15 cifras"),
                ("reading of six", "clave,cantidad,precio,lectura\nA,6,,1\n", "una lectura es de una unidad"),
                ("reading with price", "clave,cantidad,precio,lectura\nA,,5,1\n", "toma el precio del catálogo"),
                ("mark", "clave,cantidad,precio,lectura\nA,,5,sí\n", '"sí" no es 0 ni 1'),
                ("empty", "", "el archivo está vacío")]:
            with self.subTest(nombre):
                hecho = self.recibe(texto)
                self.assertEqual(hecho.returncode, 2, hecho.stdout)
                self.assertIn(espera, hecho.stderr)
                self.assertIn("entrega.csv", hecho.stderr)
                self.assertEqual(len(hecho.stderr.splitlines()), 1, hecho.stderr)
                self.assertEqual(sorted(p.name for p in self.carpeta.iterdir()), ["entrega.csv"])
        hecho = self.corre(self.PROGRAMA, "nohay.csv")
        self.assertEqual((hecho.returncode, hecho.stderr), (2, "nohay.csv: no existe.\n"))

    def test_a_byte_order_mark_is_no_part_of_the_header(self):
        self.abre(demo=True).cierra()
        hecho = self.recibe(b"\xef\xbb\xbfclave,cantidad,precio\nMAR-16,1,1\n")
        self.assertEqual(hecho.returncode, 0, hecho.stdout + hecho.stderr)
        self.assertEqual(self.partidas(1)[0], [("MAR-16", 1, 1)])

    def test_bad_bases_and_headers_are_told_in_one_line(self):
        entrega = self.archivo("entrega.csv", "clave,cantidad,precio\nMAR-16,1,1\n")
        ajeno = self.archivo("ajeno.db", "esto no es una base\n" * 100)
        nueva = self.carpeta / "nueva.db"
        anf = tarvik.Anfitrion(base=f"sqlite:{nueva}", usuario="ANA", estacion="E1", ruta=str(self.carpeta / "d"))
        anf.sql("INSERT INTO version_esquema (version) VALUES (9999)")
        anf.cierra()
        antes = ajeno.read_bytes()
        for base, espera in [(f"sqlite:{self.carpeta}/no/hay/x.db", "No se puede abrir"), (f"sqlite:{ajeno}", "ajeno.db"),
                             (f"sqlite:{nueva}", "más nueva"), ("almacen.db", "no dice su motor")]:
            with self.subTest(base):
                hecho = self.corre(self.PROGRAMA, entrega, base=base)
                self.assertEqual((hecho.returncode, hecho.stdout), (2, ""))
                self.assertIn(espera, hecho.stderr)
                self.assertEqual(len(hecho.stderr.splitlines()), 1, hecho.stderr)
                self.assertFalse(self.ruta.exists())
        self.assertEqual(ajeno.read_bytes(), antes)
        self.abre(demo=True).cierra()
        for argumentos, espera in [(("--concepto", "VTA"), "El concepto indicado no es un concepto de entrada."),
                                   (("--almacen", "77"), "El almacén indicado no existe.")]:
            hecho = self.corre(self.PROGRAMA, entrega, *argumentos)
            self.assertEqual(hecho.returncode, 2, hecho.stdout)
            self.assertIn(espera, hecho.stderr)
        hecho = self.corre(self.PROGRAMA, entrega, "--almacen", "uno")
        self.assertEqual(hecho.returncode, 2)
        self.assertIn("no es un valor válido", hecho.stderr)
        self.assertEqual(self.abre().sql("SELECT COUNT(*) AS n FROM entradas"), [{"n": 0}])


class ReciboGuiado(Caso):
    PROGRAMA = "recibo_guiado.py"

    def test_it_posts_what_it_tells(self):
        for entrada in (1, 2):
            hecho = self.corre(self.PROGRAMA)
            self.assertEqual(hecho.returncode, 0, hecho.stdout + hecho.stderr)
            self.assertIn(f"Entrada {entrada} afectada, total 1,607.26.", hecho.stdout)
            self.assertNotIn("\033", hecho.stdout)
        anf = self.abre()
        self.assertEqual(anf.sql("SELECT DISTINCT estado, ocupado, importe, observ FROM entradas"),
                         [{"estado": "CO", "ocupado": 0, "importe": 1607.26,
                           "observ": "Entrega completa, sin daños. Remisión 4417."}])
        esperado = [("FLE-5M", 11, 51.6), ("FOC-9W", 36, 19.7), ("CIN-AIS", 5, 10.9), ("MAR-16", 1, 219.24),
                    ("DES-PL6", 1, 56.72)]
        self.assertEqual(self.partidas(2)[0], esperado)
        self.assertEqual({f["articulo"]: f["existencia"] for f in anf.sql("SELECT * FROM existenciaalmacen")},
                         {articulo: 2 * cantidad for articulo, cantidad, _ in esperado})
        self.assertTrue((self.ruta / "impresos" / "entrada-2.html").exists())
        self.assertIn("El artículo indicado no existe.", hecho.stdout)
        self.assertRegex(hecho.stdout, r"FOC-9W +36 +72 +\+36")

    def test_a_base_with_a_catalogue_of_its_own_is_left_alone(self):
        anf = self.abre()
        anf.sql("INSERT INTO prods (articulo, descrip) VALUES ('A', 'Mío')")
        anf.cierra()
        hecho = self.corre(self.PROGRAMA)
        self.assertEqual(hecho.returncode, 2)
        self.assertIn("tiene su propio catálogo", hecho.stderr)
        self.assertEqual(self.abre().sql("SELECT (SELECT COUNT(*) FROM prods) AS articulos, "
                                         "(SELECT COUNT(*) FROM entradas) AS entradas"),
                         [{"articulos": 1, "entradas": 0}])


if __name__ == "__main__":
    unittest.main()
