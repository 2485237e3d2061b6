"""A day of sales played through the goods-out wizard: played again, broken off, gone on with, and its books."""

import os
import signal
import sqlite3
import subprocess
import sys
import time
import unittest

import tarvik

from caso_surte_dia import TITULOS, CasoDelDia
from test_examples import EJEMPLOS


class Sigue(CasoDelDia):
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
