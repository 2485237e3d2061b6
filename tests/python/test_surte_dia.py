"""A day of sales played through the goods-out wizard, run as a user runs it: on bases of its own, with
files of its own, through the command line."""

import os
import signal
import sqlite3
import subprocess
import sys
import time
import unittest

import tarvik

from test_examples import EJEMPLOS, Caso

TITULOS = "factura,articulo,cantidad,precio,cliente\n"


class SurteDia(Caso):
    PROGRAMA = "surte_dia.py"

    def tienda(self, existsalidas=0, **existencias):
        """The demonstration shop, with ANA's permission and goods that a delivery brought."""
        anf = self.abre(demo=True)
        anf.sql("UPDATE usuarios SET existsalidas = ? WHERE usuario = 'ANA'", existsalidas)
        for articulo, cantidad in existencias.items():
            articulo = articulo.replace("_", "-")
            anf.sql("INSERT INTO movsinv (ent_sal, operacion, almacen, articulo, cantidad, f_movim, cerrado) "
                    "VALUES ('E', 'A+', 1, ?, ?, '2020-01-01', 0)", articulo, cantidad)
            anf.sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, ?, ?)", articulo,
                    cantidad)
            anf.sql("UPDATE prods SET alm1 = ? WHERE articulo = ?", cantidad, articulo)
        anf.cierra()

    def surte(self, renglones, *argumentos, codigo=0, titulos=TITULOS):
        texto = renglones if isinstance(renglones, bytes) else titulos + renglones
        hecho = self.corre(self.PROGRAMA, self.archivo("dia.csv", texto), *argumentos)
        self.assertEqual(hecho.returncode, codigo, hecho.stdout + hecho.stderr)
        return hecho

    def lineas(self, salida):
        return [(f["articulo"], f["cantidad"], f["precio"]) for f in self.abre().sql(
            "SELECT articulo, cantidad, precio FROM salpart WHERE salida = ? ORDER BY id_salida", salida)]

    def existencia(self, articulo):
        """By the ledger, by the warehouse and by the article's own column: one figure, or the test stops here."""
        fila = self.abre().sql(
            "SELECT (SELECT SUM(CASE ent_sal WHEN 'E' THEN cantidad ELSE -cantidad END) FROM movsinv WHERE "
            "articulo = prods.articulo AND almacen = 1) AS movido, (SELECT existencia FROM existenciaalmacen WHERE "
            "articulo = prods.articulo AND almacen = 1) AS existencia, alm1 FROM prods WHERE articulo = ?", articulo)[0]
        self.assertEqual(fila["movido"], fila["existencia"])
        self.assertEqual(fila["movido"], fila["alm1"])
        return fila["movido"]

    def mano(self, disparador):
        """Somebody else's hand in the base, which no screen has: each time what it says happens, it acts."""
        conexion = sqlite3.connect(self.carpeta / "almacen.db")
        self.addCleanup(conexion.close)
        conexion.execute("DROP TRIGGER IF EXISTS mano")
        conexion.execute(f"CREATE TRIGGER mano AFTER {disparador}; END")
        conexion.commit()

    def rechazado(self, hecho, linea, motivo):
        self.assertRegex(hecho.stdout, rf"(?m)^ *{linea}  .*{motivo}")

    def consulta(self, hecho, titulo):
        """The answer that the example printed under one of its questions, by the names of its columns."""
        renglones = hecho.stdout.splitlines()
        desde = renglones.index(f"  {titulo}") + 1
        guiones = next(n for n in range(desde, len(renglones)) if set(renglones[n].strip()) == {"-", " "} or
                       set(renglones[n].strip()) == {"-"})
        self.assertIn("WITH libro AS (", renglones[desde])
        return dict(zip(renglones[guiones - 1].split(), map(float, renglones[guiones + 1].split())))

    # ---- the day ----

    def test_a_sold_day_is_in_balance(self):
        dia = ("InvoiceNo,StockCode,Description,Quantity,UnitPrice,CustomerID,Country\n"
               "536365,85123A,WHITE HOLDER,6,2.55,17850.0,United Kingdom\n"
               "536365,71053,\"LANTERN, METAL\",4,3.39,17850.0,United Kingdom\n"
               "536366,85123A,WHITE HOLDER,2,2.95,,United Kingdom\n"
               "536366,POST,POSTAGE,1,18,,United Kingdom\n")
        archivo = self.archivo("dia.csv", dia)
        hecho = self.surte(dia.encode(), "--importa-catalogo", archivo, "--entrega-del-dia", "--servicios", "POST")
        self.assertIn("2 facturas: 2 salidas, 0 devoluciones, 0 sin documento.", hecho.stdout)
        self.assertIn("4 renglones: 4 partidas de salida, 0 sumados al anterior, 0 partidas devueltas, 0 rechazados",
                      hecho.stdout)
        anf = self.abre()
        self.assertEqual(anf.sql("SELECT salida, tipo_doc, almacen, cliente, observ, importe, estado, ocupado "
                                 "FROM salidas ORDER BY salida"), [
            {"salida": 1, "tipo_doc": "VTA", "almacen": 1.0, "cliente": "17850", "observ": "Factura 536365",
             "importe": 28.86, "estado": "CO", "ocupado": 0},
            {"salida": 2, "tipo_doc": "VTA", "almacen": 1.0, "cliente": "", "observ": "Factura 536366",
             "importe": 23.9, "estado": "CO", "ocupado": 0}])
        self.assertEqual(self.lineas(1), [("85123A", 6, 2.55), ("71053", 4, 3.39)])
        self.assertEqual(self.lineas(2), [("85123A", 2, 2.95), ("POST", 1, 18)])
        # The delivery came through goods-in: one line an article, and nobody delivers postage.
        self.assertEqual(self.partidas(1)[0], [("85123A", 8, 2.55), ("71053", 4, 3.39)])
        self.assertEqual([self.existencia(articulo) for articulo in ("85123A", "71053", "POST")], [0, 0, -1])
        self.assertEqual(anf.sql("SELECT articulo, invent FROM prods ORDER BY articulo"),
                         [{"articulo": "71053", "invent": 1}, {"articulo": "85123A", "invent": 1},
                          {"articulo": "POST", "invent": 0}])
        self.assertTrue((self.ruta / "impresos" / "salida-2.html").exists())
        self.assertEqual(self.consulta(hecho, "Partidas de salida contra sus movimientos"),
                         {"documentos": 2, "partidas": 4, "movimientos": 4, "iguales": 4, "unidades": 13,
                          "movidas": 13})
        self.assertEqual(self.consulta(hecho, "Documentos de salida contra sus partidas"),
                         {"documentos": 2, "discrepan": 0, "importe": 52.76, "suma": 52.76})
        self.assertEqual(self.consulta(hecho, "Partidas de entrega contra sus movimientos")["iguales"], 2)
        self.assertEqual(self.consulta(hecho, "Existencia del almacén 1 contra la suma de sus movimientos"),
                         {"articulos": 3, "discrepan": 0, "movido": -1, "existencia": -1, "alm1": -1})
        self.assertIn("Los libros concuerdan.", hecho.stdout)
        self.assertNotIn("bajo cero", hecho.stdout)  # postage has no stock to fall short

    def test_refused_lines_tell_their_reason_and_leave_nothing_to_the_next(self):
        self.tienda(MAR_16=50)
        hecho = self.surte("1,MAR-16,2,118.405,\n"
                           "1,NOHAY,3,9,\n"         # 3
                           "1,,3,9,\n"              # 4
                           "1,MAR-16,-2,0,\n"       # 5
                           "1,MAR-16,,7,\n"         # 6: what the screen proposes is not what was sold
                           '1,"MAR\t16",1,1,\n'     # 7
                           "2,NOHAY,1,1,\n"         # 8: the only line of its invoice
                           "3,MAR-16,1,,\n"         # 9: price of the catalogue
                           "3,CIN-AIS-C12,0,5,\n"   # 10: none of a box
                           "3,MAR-16,4,0,\n"        # 11: added to 9
                           "4,O'HARA,1,1,\n")       # 12
        for linea, motivo in [(3, "El artículo indicado no existe"), (4, "Indique la clave"), (5, "La cantidad debe"),
                              (6, "La cantidad debe"), (7, "no se pueden teclear"), (8, "no existe"),
                              (10, "La cantidad debe"), (12, "Ocurrió un error")]:
            self.rechazado(hecho, linea, motivo)
        self.assertIn("4 facturas: 2 salidas, 0 devoluciones, 2 sin documento.", hecho.stdout)
        self.assertIn("11 renglones: 2 partidas de salida, 1 sumados al anterior, 0 partidas devueltas, 8 rechazados",
                      hecho.stdout)
        self.assertRegex(hecho.stdout, r"(?m)^ +3  La cantidad debe ser mayor que cero\.$")
        self.assertEqual([self.lineas(1), self.lineas(2), self.lineas(3)],
                         [[("MAR-16", 2, 118.405)], [("MAR-16", 5, 219.24)], []])
        anf = self.abre()
        self.assertEqual(anf.sql("SELECT DISTINCT claveadd, prcantidad FROM salpart"),
                         [{"claveadd": "", "prcantidad": 0.0}])
        self.assertEqual(anf.sql("SELECT COUNT(*) AS n FROM salidas"), [{"n": 2}])
        self.assertEqual(self.existencia("MAR-16"), 43)

    def test_a_description_that_stays_from_a_refused_article_is_told(self):
        self.tienda()
        anf = self.abre()
        anf.sql("INSERT INTO prods (articulo, descrip, precio1, impuesto, invent) VALUES ('SINTASA', 'x', 10, 'NO', 0)")
        anf.cierra()
        hecho = self.surte("1,MAR-16,1,5,\n1,SINTASA,2,0,\n")
        self.rechazado(hecho, 2, "No hay existencia suficiente")
        self.rechazado(hecho, 3, "Quedó con la descripción de otro artículo: Martillo de uña")
        self.rechazado(hecho, 3, "Salió a precio 0")
        self.assertEqual(self.lineas(1), [("SINTASA", 2, 0)])

    # ---- stock ----

    def test_a_line_without_stock_is_refused_and_the_next_one_is_not(self):
        self.tienda(MAR_16=10)
        hecho = self.surte("1,MAR-16,11,5,\n1,MAR-16,10,5,\n2,MAR-16,1,5,\n")
        self.rechazado(hecho, 2, "No hay existencia suficiente en el almacen seleccionado Existencia: 10$")
        self.rechazado(hecho, 4, "No hay existencia suficiente en el almacen seleccionado Existencia: 0$")
        self.assertRegex(hecho.stdout, r"(?m)^ +2  No hay existencia suficiente en el almacen seleccionado\.$")
        self.assertEqual(self.lineas(1), [("MAR-16", 10, 5)])
        self.assertEqual(self.existencia("MAR-16"), 0)

    def test_stock_is_what_the_delivery_brought(self):
        self.tienda()
        entrega = self.archivo("entrega.csv", "clave,cantidad,precio\nMAR-16,3,118.40\nMAR-20,-1,5\n")
        hecho = self.surte("1,MAR-16,3,200,\n1,MAR-20,1,150,\n", "--entrega", entrega)
        self.assertIn("Entrega: 2 renglones, 1 partidas, 1 rechazados.", hecho.stdout)
        self.rechazado(hecho, 3, "No hay existencia suficiente")
        self.assertEqual(self.lineas(1), [("MAR-16", 3, 200)])
        self.assertEqual(self.existencia("MAR-16"), 0)
        entradas = self.abre().sql("SELECT tipo_doc, observ, estado FROM entradas")
        self.assertEqual([(fila["tipo_doc"], fila["estado"]) for fila in entradas], [("COM", "CO")])
        self.assertRegex(entradas[0]["observ"], "^Entrega de entrega.csv, suma [0-9a-f]{8}$")

    def test_two_lines_of_a_document_may_take_more_than_there_is_and_that_is_told(self):
        self.tienda(MAR_16=10, MAR_20=1)
        hecho = self.surte("1,MAR-16,6,5,\n1,MAR-20,1,5,\n1,MAR-16,6,5,\n")
        self.assertEqual(self.existencia("MAR-16"), -2)
        self.assertRegex(hecho.stdout, r"(?m)^Artículos que quedaron bajo cero\n.*\n.*\nMAR-16 +-2$")

    def test_who_may_go_on_is_asked_and_says_no_unless_told(self):
        self.tienda(existsalidas=1, MAR_16=1)
        dia = "1,MAR-16,2,5,\n"
        hecho = self.surte(dia)
        self.assertIn("Usuario ANA: puede sacar más de lo que hay.", hecho.stdout)
        self.rechazado(hecho, 2, "Existencia: 1 Desea continuar de cualquier manera")
        self.assertIn("No se registró ningún renglón", hecho.stdout)
        self.assertEqual(self.existencia("MAR-16"), 1)
        hecho = self.surte(dia, "--continua-sin-existencia")
        self.assertIn("0 rechazados", hecho.stdout)
        self.assertRegex(hecho.stdout, r"(?m)^ *2  MAR-16 +No hay existencia suficiente")
        self.assertEqual(self.existencia("MAR-16"), -1)

    def test_what_orders_hold_is_not_there_to_sell(self):
        self.tienda(TAL_12=5)  # two of them set aside
        anf = self.abre()
        anf.Ambiente.Parametros["PorSurt"] = 1
        anf.cierra()
        hecho = self.surte("1,TAL-12,4,900,\n1,TAL-12,3,900,\n")
        self.rechazado(hecho, 2, "Existencia: 5 Apartados por pedido: 2")
        self.assertEqual(self.lineas(1), [("TAL-12", 3, 900)])

    def test_an_empty_base_gets_a_user_who_may_not_go_on(self):
        dia = self.archivo("otro.csv", "factura,articulo,cantidad,precio\n1,A,2,5\n")
        hecho = self.surte("1,A,2,5,\n", "--importa-catalogo", dia, "--usuario", "EVA")
        self.assertIn("Usuario EVA: no puede sacar más de lo que hay.", hecho.stdout)
        self.rechazado(hecho, 2, "Existencia: 0$")
        self.assertEqual(self.abre().sql("SELECT * FROM usuarios"), [{"usuario": "EVA", "existsalidas": 0}])

    # ---- what comes back ----

    def test_a_cancellation_comes_back_as_goods_in(self):
        self.tienda(MAR_16=10)
        hecho = self.surte("536365,MAR-16,10,200,C001\n"
                           "C536379,MAR-16,-4,200,C001\n"
                           "C536379,MAR-16,2,200,C001\n"    # 4: given, on a note that takes back
                           "C536379,MAR-20,-1,0,C001\n"     # 5: goods-in takes no line without a price
                           "536380,MAR-16,3,210,\n"         # 6: of what came back
                           "C9,MAR-16,1,210,\n")            # 7: nothing negative: a sale with that number
        self.assertIn("4 facturas: 3 salidas, 1 devoluciones, 0 sin documento.", hecho.stdout)
        self.rechazado(hecho, 4, "MAR-16 +-2 .*La cantidad debe")
        self.rechazado(hecho, 5, "MAR-20 +1 .*El precio debe")
        self.assertEqual(self.partidas(1)[0], [("MAR-16", 4, 200)])
        anf = self.abre()
        self.assertEqual(anf.sql("SELECT tipo_doc, almacen, observ, importe, estado, ocupado FROM entradas"),
                         [{"tipo_doc": "DEV", "almacen": 1.0, "observ": "Factura C536379", "importe": 800.0,
                           "estado": "CO", "ocupado": 0}])
        self.assertEqual([self.lineas(n) for n in (1, 2, 3)],
                         [[("MAR-16", 10, 200)], [("MAR-16", 3, 210)], [("MAR-16", 1, 210)]])
        self.assertEqual(self.existencia("MAR-16"), 0)
        self.assertEqual(self.consulta(hecho, "Partidas de devolución contra sus movimientos")["iguales"], 1)

    # ---- customers ----

    def test_customers_are_made_where_missing(self):
        self.tienda(MAR_16=10)
        hecho = self.surte("1,MAR-16,1,5,17850.0\n2,MAR-16,1,5,c001\n3,MAR-16,1,5,ñandú\n4,MAR-16,1,5,17850\n"
                           "C5,MAR-16,-1,5,99\n")
        self.assertIn("Clientes: 2 nuevos, 1 ya estaban.", hecho.stdout)
        anf = self.abre()
        self.assertEqual(anf.sql("SELECT salida, cliente FROM salidas ORDER BY salida"),
                         [{"salida": 1, "cliente": "17850"}, {"salida": 2, "cliente": "C001"},
                          {"salida": 3, "cliente": "ÑANDÚ"}, {"salida": 4, "cliente": "17850"}])
        self.assertEqual(anf.sql("SELECT cliente, nombre FROM clients WHERE cliente NOT IN ('C002', 'C003', 'C004') "
                                 "ORDER BY cliente"),
                         [{"cliente": "17850", "nombre": "Cliente 17850"},
                          {"cliente": "C001", "nombre": "Constructora del Valle, S.A. de C.V."},
                          {"cliente": "ÑANDÚ", "nombre": "Cliente ÑANDÚ"}])

    # ---- equal lines ----

    def test_equal_articles_in_a_row_add_up_and_others_do_not(self):
        self.tienda(MAR_16=50, MAR_20=50, CIN_AIS=100, CAB_12=50)
        hecho = self.surte("1,MAR-16,2,200,\n"
                           "1,MAR-16,1.5,180,\n"         # 3: its price is lost
                           "1,NOHAY,1,1,\n"              # 4: a refusal in between changes nothing
                           "1,MAR-16,0.1,200,\n"
                           "1,MAR-20,1,150,\n"
                           "1,MAR-16,4,200,\n"           # not in a row
                           "1,7501206600016,1,200,\n"    # another key of the same article
                           "1,7501206600016,2,200,\n"
                           "1,CIN-AIS-C12,2,20,\n"       # boxes of twelve
                           "1,CIN-AIS-C12,3,20,\n"
                           "1,CAB-12-MED,2.5,16,\n"      # cut to measure: the quantity is free
                           "2,CAB-12-MED,1,16,\n")       # another document
        self.assertIn("7 partidas de salida, 4 sumados al anterior, 0 partidas devueltas, 1 rechazados", hecho.stdout)
        self.assertRegex(hecho.stdout, r"(?m)^ *3  MAR-16 +Se sumó .* conserva el precio 200; 180 se perdió\.$")
        self.assertEqual(hecho.stdout.count("se perdió"), 1)
        self.assertEqual(self.lineas(1), [("MAR-16", 3.6, 200), ("MAR-20", 1, 150), ("MAR-16", 4, 200),
                                          ("MAR-16", 3, 200), ("CIN-AIS", 60, 20), ("CAB-12", 2.5, 16)])
        self.assertEqual(self.lineas(2), [("CAB-12", 1, 16)])
        self.assertEqual([f["claveadd"] for f in self.abre().sql("SELECT claveadd FROM salpart ORDER BY id_salida")],
                         ["", "", "", "7501206600016", "CIN-AIS-C12", "CAB-12-MED", "CAB-12-MED"])
        self.assertEqual([self.existencia(a) for a in ("MAR-16", "CIN-AIS", "CAB-12")], [39.4, 40, 46.5])

    # ---- the file, the base, the options ----

    def test_bad_files_are_told_by_place_and_leave_nothing_behind(self):
        bueno = self.archivo("bueno.csv", "clave,precio,cantidad\nA,1,1\n")
        casos = [("column missing", "factura,articulo,cantidad\n1,A,1\n", "línea 1: falta la columna precio"),
                 ("no invoice column", "articulo,cantidad,precio\nA,1,1\n", "línea 1: falta la columna factura"),
                 ("no invoice", TITULOS + "1,A,1,1,\n,B,1,1,\n", "línea 3: falta el número de la factura"),
                 ("two customers", TITULOS + "1,A,1,1,X\n2,A,1,1,\n1,A,1,1,Y\n",
                  'línea 4: la factura 1 es del cliente "X" y aquí dice "Y"'),
                 ("no keys", TITULOS + '"1\t",A,1,1,X\n"1\t2",A,1,1,X\n', "línea 3: '1\\t2' tiene caracteres"),
                 ("quantity", TITULOS + "1,A,uno,1,\n", 'línea 2, columna cantidad: "uno" no es un número'),
                 ("short row", TITULOS + "1,A,1\n", "línea 2: tiene 3 campos y el encabezado 5"),
                 ("encoding", TITULOS.encode() + b"1,A\xf1,1,1,\n", "línea 2, byte 4: el texto no está en UTF-8"),
                 ("empty", "", "el archivo está vacío")]
        for nombre, texto, espera in casos:
            with self.subTest(nombre):
                hecho = self.corre(self.PROGRAMA, self.archivo("dia.csv", texto), "--importa-catalogo", bueno)
                self.assertEqual((hecho.returncode, hecho.stdout), (2, ""))
                self.assertIn(espera, hecho.stderr)
                self.assertIn("dia.csv", hecho.stderr)
                self.assertEqual(len(hecho.stderr.splitlines()), 1, hecho.stderr)
                self.assertEqual(sorted(p.name for p in self.carpeta.iterdir()), ["bueno.csv", "dia.csv"])
        malo = self.archivo("malo.csv", "clave,precio\nA,caro\n")
        dia = self.archivo("dia.csv", TITULOS + "1,A,1,1,\n")
        for argumentos in [("--entrega", malo), ("--importa-catalogo", malo), ("--entrega", "nohay.csv")]:
            hecho = self.corre(self.PROGRAMA, dia, *argumentos)
            self.assertEqual((hecho.returncode, hecho.stdout), (2, ""))
            self.assertIn(str(argumentos[1]), hecho.stderr)
            self.assertFalse((self.carpeta / "almacen.db").exists())

    def test_bad_headings_are_told_before_any_document(self):
        self.tienda(MAR_16=5)
        entrega = self.archivo("entrega.csv", "clave,cantidad,precio\nMAR-16,3,118.40\n")
        for argumentos, espera in [(("--concepto", "DEV"), "El concepto indicado no es un concepto de salida."),
                                   (("--concepto-devolucion", "VTA"), "no es un concepto de entrada."),
                                   (("--concepto-entrega", "NO"), "no es un concepto de entrada."),
                                   (("--almacen", "77"), "El almacén indicado no existe.")]:
            with self.subTest(argumentos):
                hecho = self.surte("1,MAR-16,1,1,\nC2,MAR-16,-1,1,\n", "--entrega", entrega, *argumentos, codigo=2)
                self.assertIn(espera, hecho.stderr)
                anf = self.abre()
                self.assertEqual(anf.sql("SELECT (SELECT COUNT(*) FROM entradas) AS entradas, "
                                         "(SELECT COUNT(*) FROM salidas) AS salidas"), [{"entradas": 0, "salidas": 0}])
                anf.cierra()
        hecho = self.surte("1,A,1,1,\n", "--entrega", entrega, "--entrega-del-dia", codigo=2)
        self.assertIn("--entrega-del-dia: no va junto con --entrega", hecho.stderr)

    def test_help_is_in_spanish(self):
        hecho = self.corre(self.PROGRAMA, "--help")
        self.assertEqual(hecho.returncode, 0)
        self.assertIn("uso: surte_dia.py", hecho.stdout)
        self.assertIn("una salida por factura", " ".join(hecho.stdout.split()))
        for ingles in ("usage", "show this", "options:", "positional"):
            self.assertNotIn(ingles, hecho.stdout)

    # ---- again, pending, interrupted ----

    def test_a_second_run_finds_what_the_first_one_left(self):
        dia = "1,A1,2,5,17\n2,A1,1,5,18\nC3,A1,-1,5,17\n"
        catalogo = self.archivo("catalogo.csv", "clave,precio\nA1,5\n")
        self.surte(dia, "--importa-catalogo", catalogo, "--entrega-del-dia")
        self.assertEqual(self.existencia("A1"), 1)
        hecho = self.surte(dia, "--importa-catalogo", catalogo)
        self.assertIn("0 artículos nuevos, 1 ya estaban", hecho.stdout)
        self.assertIn("Clientes: 0 nuevos, 2 ya estaban.", hecho.stdout)
        self.assertIn("La factura 1 ya está en la salida 1.", hecho.stdout)
        self.assertIn("La factura C3 ya está en la entrada 2.", hecho.stdout)
        self.assertIn("3 facturas ya tienen documento: se registran otra vez.", hecho.stdout)
        self.rechazado(hecho, 2, "Existencia: 1$")  # only what the cancellation brought back is left
        self.assertEqual(self.lineas(3), [("A1", 1, 5)])
        self.assertEqual(self.existencia("A1"), 1)
        hecho = self.surte(dia + "4,A1,1,6,\n", "--omite-registradas")
        self.assertIn("3 facturas ya tienen documento: se omiten.", hecho.stdout)
        self.assertIn("1 facturas: 1 salidas", hecho.stdout)
        self.assertEqual(self.lineas(4), [("A1", 1, 6)])
        self.assertEqual(self.existencia("A1"), 0)

    def test_a_delivery_that_came_with_recorded_invoices_is_not_received_again(self):
        dia = "1,A1,2,5,\n2,A1,1,5,\n"
        catalogo = self.archivo("catalogo.csv", "clave,precio\nA1,5\nA2,5\n")
        entrega = self.archivo("entrega.csv", "articulo,cantidad,precio\nA1,10,4\n")
        self.surte(dia, "--importa-catalogo", catalogo, "--entrega", entrega)
        self.assertEqual(self.existencia("A1"), 7)
        dicho = "La entrega se registró con esas facturas: no se recibe otra vez."
        hecho = self.surte(dia + "3,A1,1,5,\n", "--entrega", entrega, "--omite-registradas")
        self.assertIn(dicho, hecho.stdout)
        self.assertEqual(self.existencia("A1"), 6)
        hecho = self.surte(dia + "3,A1,1,5,\n4,A1,1,5,\n", "--entrega-del-dia", "--omite-registradas")
        self.assertIn(dicho, hecho.stdout)
        self.assertEqual(self.existencia("A1"), 5)
        self.assertEqual(self.abre().sql("SELECT COUNT(*) AS n FROM entradas"), [{"n": 1}])
        hecho = self.surte("9,A2,1,5,\n", "--entrega-del-dia", "--omite-registradas")  # nothing of it is recorded
        self.assertNotIn(dicho, hecho.stdout)
        self.assertEqual(self.existencia("A2"), 0)

    def muere(self, clase, vez, *argumentos, renglones="1,A1,2,5,\n2,A2,1,5,\n3,A1,1,5,\n4,A3,1,5,\n"):
        """The day, its program gone just before the nth row that this class records."""
        programa = self.archivo("muere.py", (
            "import os, sys\n"
            f"sys.path.insert(0, {str(EJEMPLOS)!r})\n"
            "import surte_dia\n"
            f"clase, veces = surte_dia.{clase}, 0\n"
            "propia = clase.registra\n"
            "def registra(self, renglon):\n"
            "    global veces\n"
            "    veces += 1\n"
            f"    if veces == {vez}:\n"
            "        os._exit(9)\n"
            "    propia(self, renglon)\n"
            "clase.registra = registra\n"
            "surte_dia.comun.corre(surte_dia.principal)\n"))
        catalogo = self.archivo("catalogo.csv", "clave,precio\nA1,5\nA2,5\nA3,5\n")
        dia = self.archivo("dia.csv", TITULOS + renglones)
        hecho = self.corre(programa, dia, "--importa-catalogo", catalogo, *argumentos)
        self.assertEqual(hecho.returncode, 9, hecho.stdout + hecho.stderr)
        return renglones

    def otra_base(self):
        self.bases = getattr(self, "bases", 0) + 1
        self.base = f"sqlite:{self.carpeta / f'almacen{self.bases}.db'}"

    def entregado(self):
        return [(f["articulo"], f["cantidad"]) for f in self.abre().sql(
            "SELECT articulo, cantidad FROM entpart ORDER BY id_entrada")]

    def test_a_day_that_broke_off_behind_its_delivery_does_not_receive_it_again(self):
        for opcion in ["--entrega-del-dia", "--entrega"]:
            with self.subTest(opcion):
                self.otra_base()
                entrega = self.archivo("entrega.csv", "clave,cantidad,precio\nA1,3,5\nNOHAY,1,1\nA2,1,5\nA3,1,5\n")
                argumentos = [opcion] + ([entrega] if opcion == "--entrega" else [])
                dia = self.muere("Ventas", 1, *argumentos)
                self.assertEqual(self.entregado(), [("A1", 3), ("A2", 1), ("A3", 1)])
                hecho = self.surte(dia, *argumentos, "--omite-registradas")
                self.assertIn("La entrega ya está en la entrada 1: no se recibe otra vez.", hecho.stdout)
                self.assertEqual(self.entregado(), [("A1", 3), ("A2", 1), ("A3", 1)])
                self.assertEqual([self.existencia(clave) for clave in ("A1", "A2", "A3")], [0, 0, 0])
                self.assertEqual(self.abre().a_medias(), [])

    def test_a_delivery_that_broke_off_half_way_is_finished(self):
        for vez in (2, 3):
            for maximo in ("5", "1"):
                with self.subTest(vez=vez, maximo=maximo):
                    self.otra_base()
                    dia = self.muere("Entradas", vez, "--entrega-del-dia", "--maximo", maximo)
                    self.assertEqual(len(self.entregado()), vez - 1)
                    hecho = self.surte(dia, "--entrega-del-dia", "--omite-registradas", "--maximo", maximo)
                    self.assertIn(f"se termina, faltan {4 - vez} renglones.", hecho.stdout)
                    self.assertEqual(self.entregado(), [("A1", 3), ("A2", 1), ("A3", 1)])
                    self.assertEqual(self.abre().sql("SELECT DISTINCT estado, ocupado FROM entradas"),
                                     [{"estado": "CO", "ocupado": 0}])
                    self.assertEqual([self.existencia(clave) for clave in ("A1", "A2", "A3")], [0, 0, 0])

    def test_an_invoice_that_broke_off_half_way_is_told_of(self):
        dia = self.muere("Ventas", 2, "--entrega-del-dia", renglones="1,A1,2,5,\n1,A2,1,5,\n2,A3,1,5,\n")
        hecho = self.surte(dia, "--omite-registradas", codigo=1)
        self.assertIn("La factura 1 está en la salida 1, pendiente: revise sus renglones y finalícela.", hecho.stdout)
        with sqlite3.connect(self.base.removeprefix("sqlite:")) as conexion:
            conexion.execute("UPDATE salidas SET estado = 'CO', ocupado = 0 WHERE salida = 1")
        hecho = self.surte(dia, "--omite-registradas", codigo=1)
        self.assertIn("La factura 1 está en la salida 1, afectada a medias: complétela.", hecho.stdout)
        self.abre().completa("Salida", 1)
        self.assertNotIn("La factura 1 está en la salida 1,", self.surte(dia, "--omite-registradas").stdout)

    def test_another_day_of_the_same_name_brings_its_own_delivery(self):
        self.muere("Ventas", 1, "--entrega-del-dia")
        hecho = self.surte("9,A1,7,5,\n", "--entrega-del-dia", "--omite-registradas")
        self.assertNotIn("La entrega ya está", hecho.stdout)
        self.assertEqual(self.existencia("A1"), 3)
        hecho = self.surte("9,A1,7,5,\n", "--entrega-del-dia")
        self.assertIn("La entrega ya está en la entrada 2: se recibe otra vez.", hecho.stdout)

    def test_pending_moves_nothing_but_the_delivery(self):
        self.tienda()
        hecho = self.surte("1,MAR-16,2,5,C001\nC2,MAR-16,-1,5,\n", "--pendiente", "--entrega-del-dia")
        anf = self.abre()
        self.assertEqual(anf.sql("SELECT estado, ocupado FROM salidas"), [{"estado": "PE", "ocupado": 0}])
        self.assertEqual(anf.sql("SELECT tipo_doc, estado, ocupado FROM entradas ORDER BY entrada"),
                         [{"tipo_doc": "COM", "estado": "CO", "ocupado": 0},
                          {"tipo_doc": "DEV", "estado": "PE", "ocupado": 0}])
        self.assertEqual(self.existencia("MAR-16"), 2)
        self.assertEqual(self.consulta(hecho, "Partidas de salida contra sus movimientos"),
                         {"documentos": 1, "partidas": 1, "movimientos": 0, "iguales": 0, "unidades": 2, "movidas": 0})
        self.assertRegex(hecho.stdout, r"(?m)^1 +salida 1 +C001 +1  pendiente")

    def test_interrupted_it_leaves_the_document_at_hand_pending_and_free(self):
        self.tienda(MAR_16=5, MAR_20=5)
        anf = self.abre()
        dia = self.archivo("dia.csv", TITULOS + "1,MAR-16,1,5,\n" + "2,MAR-16,1,5,\n2,MAR-20,1,5,\n" * 20000)
        modulo = os.path.dirname(tarvik.__file__)
        # Whoever runs the tests in the background has the interrupt ignored, and a child would inherit that.
        signal.signal(signal.SIGINT, signal.default_int_handler)
        proceso = subprocess.Popen(
            [sys.executable, "-B", str(EJEMPLOS / self.PROGRAMA), str(dia), "--base", self.base, "--ruta",
             str(self.ruta)], stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8", cwd=self.carpeta,
            env=os.environ | {"PYTHONPATH": modulo, "PYTHONIOENCODING": "utf-8"})
        self.addCleanup(proceso.kill)
        limite = time.monotonic() + 60
        while anf.sql("SELECT COUNT(*) AS n FROM salpart")[0]["n"] < 20:
            self.assertLess(time.monotonic(), limite)
            self.assertIsNone(proceso.poll())
            time.sleep(0.05)
        proceso.send_signal(signal.SIGINT)
        _, errores = proceso.communicate(timeout=60)
        self.assertEqual(proceso.returncode, 130, errores)
        self.assertNotIn("Traceback", errores)
        self.assertEqual(anf.sql("SELECT salida, estado, ocupado FROM salidas ORDER BY salida"),
                         [{"salida": 1, "estado": "CO", "ocupado": 0}, {"salida": 2, "estado": "PE", "ocupado": 0}])
        hechas = anf.sql("SELECT COUNT(*) AS n FROM salpart WHERE salida = 2")[0]["n"]
        self.assertLess(hechas, 40000)
        self.assertIn(f"Interrumpido. La salida 2 queda pendiente, con {hechas} partidas. "
                      "Antes se afectó 1 documento.", errores)
        self.assertEqual((self.existencia("MAR-16"), self.existencia("MAR-20")), (4, 5))

    def test_a_heading_that_is_refused_in_the_middle_of_the_day_ends_with_an_account(self):
        self.tienda(MAR_16=50)
        self.mano("UPDATE ON salidas WHEN NEW.estado = 'CO' BEGIN UPDATE tipominv SET ent_sal = 'E' "
                  "WHERE tipo_movim = 'VTA'")
        hecho = self.surte("1,MAR-16,2,5,\n2,MAR-16,1,5,\n2,MAR-16,1,5,\n", codigo=1)
        self.assertIn("El día se detuvo: Concepto VTA, almacén 1: ", hecho.stderr)
        self.assertRegex(hecho.stdout, r"(?m)^1 +salida 1 +1  afectada")
        self.assertIn("Los libros concuerdan.", hecho.stdout)
        self.assertIn("Quedaron 2 renglones del día sin registrar.", hecho.stdout)
        self.assertEqual(self.existencia("MAR-16"), 48)

    def test_a_base_that_refuses_in_the_middle_of_a_document_ends_with_an_account(self):
        self.tienda(MAR_16=50, MAR_20=50)
        # The first line of the second invoice is made, and then the base answers no more questions about it.
        programa = self.archivo("falla.py", (
            "import sys\n"
            f"sys.path.insert(0, {str(EJEMPLOS)!r})\n"
            "import surte_dia, tarvik\n"
            "propia = surte_dia.Ventas.anota\n"
            "def anota(self, renglon, documento, *resto):\n"
            "    if renglon.linea == 3:\n"
            "        raise tarvik.Error('disco lleno')\n"
            "    propia(self, renglon, documento, *resto)\n"
            "surte_dia.Ventas.anota = anota\n"
            "surte_dia.comun.corre(surte_dia.principal)\n"))
        hecho = self.corre(programa, self.archivo("dia.csv", TITULOS + "1,MAR-16,2,5,\n2,MAR-16,1,5,\n2,MAR-20,1,5,\n"))
        self.assertEqual(hecho.returncode, 1, hecho.stdout + hecho.stderr)
        self.assertIn("El día se detuvo: disco lleno", hecho.stderr)
        self.assertRegex(hecho.stdout, r"(?m)^1 +salida 1 +1  afectada")
        self.assertRegex(hecho.stdout, r"(?m)^2 +salida 2 +0  sin terminar")
        self.assertIn("Salida 2: se hicieron 0 partidas y hay 1.", hecho.stdout)
        self.assertIn("Quedaron 2 renglones del día sin registrar.", hecho.stdout)
        self.assertEqual(self.abre().sql("SELECT salida, estado, ocupado FROM salidas ORDER BY salida"),
                         [{"salida": 1, "estado": "CO", "ocupado": 0}, {"salida": 2, "estado": "PE", "ocupado": 0}])

    def test_a_full_screen_goes_on_in_a_further_document(self):
        self.tienda(MAR_16=50, MAR_20=50)
        self.surte("1,MAR-16,1,5,\n1,MAR-20,1,5,\n1,MAR-20,1,5,\n1,MAR-16,1,5,\n", "--maximo", "2")
        self.assertEqual([self.lineas(1), self.lineas(2)],
                         [[("MAR-16", 1, 5), ("MAR-20", 1, 5)], [("MAR-20", 1, 5), ("MAR-16", 1, 5)]])
        self.assertEqual(self.abre().sql("SELECT DISTINCT observ, estado FROM salidas"),
                         [{"observ": "Factura 1", "estado": "CO"}])

    # ---- books that do not agree ----

    def test_a_closed_period_leaves_the_document_pending_and_stops_the_day(self):
        self.tienda(MAR_16=5)
        anf = self.abre()
        anf.sql("UPDATE movsinv SET f_movim = '2999-01-01', cerrado = 1")
        anf.cierra()
        hecho = self.surte("1,MAR-16,1,1,\n1,MAR-16,1,1,\n2,MAR-16,1,1,\n", codigo=1)
        self.assertIn("El periodo de esta fecha está cerrado", hecho.stdout)
        self.assertIn("Quedaron 1 renglones del día sin registrar.", hecho.stdout)
        self.assertEqual(self.abre().sql("SELECT estado, ocupado FROM salidas"), [{"estado": "PE", "ocupado": 0}])

    def test_stock_that_is_not_the_sum_of_its_movements_is_told(self):
        self.tienda(MAR_16=5)
        anf = self.abre()
        titulo = "Existencia del almacén 1 contra la suma de sus movimientos"
        for dano, remedio in [("UPDATE existenciaalmacen SET existencia = existencia + 2",
                               "UPDATE existenciaalmacen SET existencia = existencia - 2"),
                              ("UPDATE prods SET alm1 = 7 WHERE articulo = 'MAR-20'",
                               "UPDATE prods SET alm1 = 0 WHERE articulo = 'MAR-20'")]:
            with self.subTest(dano):
                anf.sql(dano)
                hecho = self.surte("1,MAR-16,1,1,\n", codigo=1)
                self.assertEqual(self.consulta(hecho, titulo)["discrepan"], 1)
                self.assertIn("Los libros no concuerdan.", hecho.stdout)
                anf.sql(remedio)
        self.assertEqual(self.consulta(self.surte("1,MAR-16,1,1,\n"), titulo)["discrepan"], 0)

    def test_lines_headers_and_movements_that_differ_are_told(self):
        movida = "INSERT ON movsinv BEGIN "
        casos = [
            ("a movement of more", movida + "UPDATE movsinv SET cantidad = cantidad + 1 WHERE id = NEW.id",
             "iguales: 0, y debía ser 1"),
            ("a movement of another warehouse", movida + "UPDATE movsinv SET almacen = 2 WHERE id = NEW.id",
             "iguales: 0, y debía ser 1"),
            ("a movement gone", movida + "DELETE FROM movsinv WHERE id = NEW.id", "movimientos: 0, y debía ser 1"),
            ("a movement of no line", movida +
             "INSERT INTO movsinv (ent_sal, operacion, articulo, almacen, cantidad, id_salida) VALUES ('S', 'SA', "
             "NEW.articulo, 2, 1, 999)", "movimientos: 2, y debía ser 1"),
            ("another price", "INSERT ON salpart BEGIN UPDATE salpart SET precio = 9 WHERE id_salida = NEW.id_salida",
             "la partida 5 dice 1 de MAR-16 a 9 y debía decir 1 de MAR-16 a 5."),
            ("a line that does not add up", "UPDATE ON salpart WHEN NEW.cantidad <> 7 BEGIN UPDATE salpart SET "
             "cantidad = 7 WHERE id_salida = NEW.id_salida", "dice 7 de MAR-20 a 5 y debía decir 2 de MAR-20 a 5."),
            ("a line that is not one", "UPDATE ON salpart BEGIN INSERT INTO salpart (id_salida, salida, articulo, "
             "cantidad, precio, claveadd) VALUES (NEW.id_salida + 500, NEW.salida, NEW.articulo, 2, 5, '')",
             "la partida 507 es nueva y dice 2 de MAR-20 a 5 y debía decir 2 de MAR-20 a 5."),
            ("a line too many", "INSERT ON salpart BEGIN INSERT INTO salpart (id_salida, salida, articulo, cantidad, "
             "precio, claveadd) VALUES (NEW.id_salida - 1000, NEW.salida, NEW.articulo, 1, 5, '')",
             "Salida 8: se hicieron 1 partidas y hay 2."),
            ("another customer", "UPDATE ON salidas WHEN NEW.cliente <> 'C002' BEGIN UPDATE salidas SET cliente = "
             "'C002' WHERE salida = NEW.salida", "Salida 9: cliente C002, concepto VTA, almacén 1."),
            ("another total", "UPDATE ON salidas WHEN NEW.importe <> 1 BEGIN UPDATE salidas SET importe = 1 WHERE "
             "salida = NEW.salida", "discrepan: 1, y debía ser 0"),
            ("held for ever", "UPDATE ON salidas WHEN NEW.ocupado = 0 BEGIN UPDATE salidas SET ocupado = 1 WHERE "
             "salida = NEW.salida", "discrepan: 1, y debía ser 0"),
        ]
        self.tienda(MAR_16=50, MAR_20=50)
        for nombre, disparador, espera in casos:
            with self.subTest(nombre):
                self.mano(disparador)
                hecho = self.surte("1,MAR-20,1,5,C001\n" * 2 if "line that" in nombre else "1,MAR-16,1,5,C001\n",
                                   codigo=1)
                self.assertIn(espera, hecho.stdout)
                self.assertIn("Los libros no concuerdan.", hecho.stdout)

    def test_a_stock_check_that_does_not_hold_is_told(self):
        self.tienda(MAR_16=5)
        self.mano("INSERT ON salpart BEGIN UPDATE existenciaalmacen SET existencia = 0")
        hecho = self.surte("1,MAR-16,1,5,\n", codigo=1)
        self.assertIn("Línea 2: salió y no había existencia.", hecho.stdout)


if __name__ == "__main__":
    unittest.main()
