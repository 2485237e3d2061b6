"""A day of sales played through the goods-out wizard: its documents, its refusals, and files that are no day."""

import unittest

from caso_surte_dia import TITULOS, CasoDelDia


class SurteDia(CasoDelDia):
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


if __name__ == "__main__":
    unittest.main()
