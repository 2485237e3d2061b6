"""What the host offers around the screens, as a script sees it: documents posted in part and their completion,
who holds what, hand-over, the look over the whole base, the record of acts."""

import os
import subprocess
import sys
import tempfile
import time
import unittest
from datetime import datetime

import tarvik

import bases

CATALOGO = (
    "INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('COM', 'E', 'Compra')",
    "INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('VTA', 'S', 'Venta')",
    "INSERT INTO ALMACEN (almacen) VALUES (1)",
    "INSERT INTO ALMACEN (almacen) VALUES (2)",
    "INSERT INTO impuestos (impuesto, valor) VALUES ('IVA', 16)",
    "INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto, costo_u) VALUES ('A-100', 'Martillo', 'PZA', "
    "100, 'IVA', 60)",
    "INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto, costo_u) VALUES ('A-200', 'Clavo', 'KG', 50, "
    "'IVA', 20)",
)


class Tienda(unittest.TestCase):
    def setUp(self):
        self.carpeta = tempfile.TemporaryDirectory()
        self.addCleanup(self.carpeta.cleanup)
        self.base = bases.en_archivo(self, os.path.join(self.carpeta.name, "tienda.db"))
        self.anf = self.abre("ANA", "E1")
        for sentencia in CATALOGO:
            self.anf.sql(sentencia)

    def abre(self, usuario, estacion):
        anf = tarvik.Anfitrion(base=self.base, usuario=usuario, estacion=estacion, ruta=self.carpeta.name)
        self.addCleanup(anf.cierra)
        return anf

    def entrada(self, *renglones, anf=None):
        """A goods-in with these lines, its screen still open."""
        anf = anf or self.anf
        anf.EntradasSalidas().NuevaEntrada()
        forma = anf.pantallas[-1]
        forma.teclea(forma.txtFields[0], "COM")
        forma.tecla("Enter")
        for articulo, cantidad in renglones:
            forma.teclea(forma.txtFields[4], articulo)
            forma.tecla("Enter")
            forma.teclea(forma.txtFields[5], cantidad)
            forma.tecla("Enter")
            forma.tecla("Enter")
        return forma

    def finaliza(self, forma, anf=None):
        (anf or self.anf).respuestas.append(True)
        forma.tecla("F5", forma.txtFields[0])

    def existencia(self, articulo, almacen=1):
        filas = self.anf.sql("SELECT existencia FROM existenciaalmacen WHERE articulo = ? AND almacen = ?", articulo,
                             almacen)
        return filas[0]["existencia"] if filas else 0


class AMedias(Tienda):
    def test_a_posting_that_broke_off_is_told_and_completed(self):
        forma = self.entrada(("A-100", "3"), ("A-200", "2"))
        self.anf.falla_servicio("Afecta")
        self.finaliza(forma)
        (medio,) = self.anf.a_medias()
        self.assertEqual((medio.tipo, medio.documento, medio.estado, medio.renglones, medio.faltan),
                         ("Entrada", 1, "CO", 2, [1]))
        self.anf.movimientos.clear()
        self.assertEqual(self.anf.completa("Entrada", 1), 1)
        self.assertEqual([m["Articulo"] for m in self.anf.movimientos], ["A-100"])
        self.assertEqual(self.anf.completa("Entrada", 1), 0)
        self.assertEqual(self.anf.a_medias(), [])
        self.assertEqual(self.existencia("A-100"), 3)
        self.assertEqual([acto.acto for acto in self.anf.bitacora()], ["completa"])

    def test_a_document_that_stayed_pending_moves_each_line_once(self):
        forma = self.entrada(("A-100", "3"), ("A-200", "2"))
        self.anf.falla("UPDATE entradas SET tipo_doc")
        self.finaliza(forma)
        (medio,) = self.anf.a_medias()
        self.assertEqual((medio.estado, medio.faltan), ("PE", []))
        with self.assertRaises(tarvik.Error):
            self.anf.completa("Entrada", 1)
        otra = self.abre("LUIS", "E2")
        otra.EntradasSalidas().ModificaEntrada(1)
        self.finaliza(otra.pantallas[-1], otra)
        self.assertEqual(self.existencia("A-100"), 3)
        self.assertEqual(len(self.anf.sql("SELECT id FROM movsinv")), 2)
        self.assertEqual(self.anf.a_medias(), [])

    def test_a_completion_that_fails_writes_nothing(self):
        forma = self.entrada(("A-100", "3"), ("A-200", "2"))
        self.anf.falla_servicio("Afecta", 2)
        self.finaliza(forma)
        self.anf.falla_servicio("Afecta")
        with self.assertRaises(tarvik.Error) as rechazo:
            self.anf.completa("Entrada", 1)
        self.assertEqual(str(rechazo.exception), "falla provocada")
        self.assertEqual(self.anf.sql("SELECT id FROM movsinv"), [])
        self.assertEqual(self.anf.bitacora(), [])
        self.assertEqual(self.anf.completa("Entrada", 1), 2)

    def test_what_is_no_document_is_refused_in_spanish(self):
        for argumentos, texto in ((("Entrada", 9), "No existe la entrada 9"), (("Salida", 9), "No existe la salida 9"),
                                  (("Vale", 1), 'No hay documentos del tipo "Vale"; son "Entrada" y "Salida"')):
            with self.subTest(argumentos), self.assertRaises(tarvik.Error) as rechazo:
                self.anf.completa(*argumentos)
            self.assertEqual(str(rechazo.exception), texto)

    def test_tenths_add_up(self):
        for _ in range(8):
            self.finaliza(self.entrada(("A-100", "0.1")))
        self.assertEqual(self.existencia("A-100"), 0.8)


class Tenencias(Tienda):
    def test_who_holds_what_from_whatever_door(self):
        self.assertEqual(self.anf.tenencias(), [])
        self.anf.ahora = datetime(2024, 3, 5, 14, 3, 22)
        forma = self.entrada(("A-100", "3"))
        luis = self.abre("LUIS", "E2")
        (suya,) = luis.tenencias()
        self.assertEqual((suya.tipo, suya.documento, suya.usuario, suya.estacion, suya.desde, suya.viva),
                         ("Entrada", 1, "ANA", "E1", datetime(2024, 3, 5, 14, 3, 22), True))
        self.assertIsNone(luis.abre("Entrada", 1), "a living holder is not disturbed")
        forma.cierra()
        self.anf.procesa_eventos(20)
        self.assertEqual(luis.tenencias(), [])
        self.assertEqual(luis.abre("Entrada", 1).Modo, "MODIFICACION")

    def test_two_screens_on_one_document_are_two(self):
        self.entrada(("A-100", "3"))
        self.anf.sql("UPDATE entradas SET ocupado = 0")
        luis = self.abre("LUIS", "E2")
        luis.EntradasSalidas().ModificaEntrada(1)
        self.assertEqual([(t.usuario, t.viva) for t in self.anf.tenencias()], [("ANA", True), ("LUIS", True)])

    def test_a_flag_that_nobody_alive_stands_behind_is_dead_and_opens(self):
        self.entrada(("A-100", "3")).cierra()
        self.anf.procesa_eventos(20)
        self.anf.sql("UPDATE entradas SET ocupado = 1, usuario = 'BETO'")
        (bandera,) = self.anf.tenencias()
        self.assertEqual((bandera.usuario, bandera.estacion, bandera.desde, bandera.viva), ("BETO", None, None, False))
        self.anf.mensajes.clear()
        self.assertEqual(self.anf.abre("Entrada", 1).Modo, "MODIFICACION")
        self.assertEqual(len(self.anf.mensajes), 1, "that is told")
        self.assertEqual([acto.acto for acto in self.anf.bitacora()], ["libera"])

    def test_where_other_programs_work_a_flag_alone_counts_as_alive(self):
        self.entrada(("A-100", "3")).cierra()
        self.anf.procesa_eventos(20)
        self.anf.Ambiente.Parametros["SoloTarvik"] = 0
        self.anf.sql("UPDATE entradas SET ocupado = 1")
        self.assertTrue(self.anf.tenencias()[0].viva)
        self.assertIsNone(self.anf.abre("Entrada", 1))

    def test_a_program_that_was_killed_holds_nothing(self):
        guion = ("import os, sys, tarvik\n"
                 "anf = tarvik.Anfitrion(base=sys.argv[1], usuario='BETO', estacion='E3', ruta=sys.argv[2])\n"
                 "anf.EntradasSalidas().NuevaEntrada()\n"
                 "f = anf.pantallas[-1]\n"
                 "f.teclea(f.txtFields[0], 'COM'); f.tecla('Enter')\n"
                 "f.teclea(f.txtFields[4], 'A-100'); f.tecla('Enter')\n"
                 "f.teclea(f.txtFields[5], '7'); f.tecla('Enter'); f.tecla('Enter')\n"
                 "print(f.Entrada, flush=True)\n"
                 "sys.stdin.read()\n")
        muerto = subprocess.Popen([sys.executable, "-B", "-c", guion, self.base, self.carpeta.name],
                                  stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        numero = int(muerto.stdout.readline())
        (suya,) = self.anf.tenencias()
        self.assertEqual((suya.usuario, suya.viva), ("BETO", True))
        self.assertIsNone(self.anf.abre("Entrada", numero))
        muerto.kill()
        muerto.communicate()
        limite = time.monotonic() + 10
        while self.anf.tenencias()[0].viva and time.monotonic() < limite:
            time.sleep(0.05)
        self.assertFalse(self.anf.tenencias()[0].viva)
        forma = self.anf.abre("Entrada", numero)
        self.assertEqual((forma.Modo, forma.fg2.TextMatrix(1, 0)), ("MODIFICACION", "A-100"))

    def test_letting_go_is_by_right_and_the_screen_writes_nothing_more(self):
        forma = self.entrada(("A-100", "3"))
        self.anf.Ambiente.Parametros["Liberadores"] = "JEFA"
        luis = self.abre("LUIS", "E2")
        with self.assertRaises(tarvik.Error):
            luis.libera("Entrada", 1)
        jefa = self.abre("JEFA", "E9")
        jefa.libera("Entrada", 1, motivo="se fue a comer")
        jefa.libera("Entrada", 1)  # free by now: nothing
        self.assertEqual([(a.acto, a.usuario, a.tipo, a.documento) for a in jefa.bitacora()],
                         [("libera", "JEFA", "Entrada", 1)])
        self.assertIn("se fue a comer", jefa.bitacora()[0].texto)
        self.anf.mensajes.clear()
        forma.teclea(forma.txtFields[4], "A-200")
        self.assertEqual(forma.Modo, "CONSULTA")
        self.assertIn("JEFA", self.anf.mensajes[0].texto)
        self.assertEqual(len(self.anf.sql("SELECT id_entrada FROM entpart")), 1)
        self.assertEqual(luis.abre("Entrada", 1).Modo, "MODIFICACION")
        forma.cierra()
        self.anf.procesa_eventos(20)
        self.assertEqual(self.anf.sql("SELECT ocupado FROM entradas"), [{"ocupado": 1}], "the flag is LUIS's by now")

    def test_a_document_that_is_not_there_cannot_be_let_go(self):
        with self.assertRaises(tarvik.Error) as rechazo:
            self.anf.libera("Salida", 5)
        self.assertIn("5", str(rechazo.exception))


class Peticiones(Tienda):
    def test_on_yes_the_document_comes_with_the_line_that_was_being_typed(self):
        forma = self.entrada(("A-100", "3"))
        forma.teclea(forma.txtFields[4], "A-200")
        forma.tecla("Enter")
        forma.teclea(forma.txtFields[5], "4")
        luis = self.abre("LUIS", "E2")
        pedida = luis.pide("Entrada", 1, "la necesito")
        self.assertEqual(pedida.estado, "pedida")
        (llegada,) = self.anf.peticiones()
        self.assertEqual((llegada.usuario, llegada.estacion, llegada.mensaje), ("LUIS", "E2", "la necesito"))
        llegada.cede()
        self.assertEqual(pedida.estado, "cedida")
        self.assertFalse(forma.abierta)
        self.assertEqual(self.anf.sql("SELECT estado, ocupado FROM entradas"), [{"estado": "PE", "ocupado": 0}])
        suya = luis.abre("Entrada", 1)
        self.assertEqual((suya.txtFields[4].Text, suya.txtFields[5].Text), ("A-200", "4"))
        self.assertEqual(self.anf.impresos, [])
        self.assertEqual([a.acto for a in self.anf.bitacora()], ["cede"])

    def test_no_has_its_reason_and_changes_nothing(self):
        forma = self.entrada(("A-100", "3"))
        luis = self.abre("LUIS", "E2")
        pedida = luis.pide("Entrada", 1)
        self.anf.peticiones()[0].niega("falta una caja")
        self.assertEqual((pedida.estado, pedida.motivo), ("negada", "falta una caja"))
        self.assertTrue(forma.abierta)
        self.assertEqual(self.anf.peticiones(), [])

    def test_with_nobody_to_ask_there_is_an_error(self):
        self.entrada(("A-100", "3")).cierra()
        self.anf.procesa_eventos(20)
        with self.assertRaises(tarvik.Error):
            self.anf.pide("Entrada", 1)

    def test_a_screen_that_refuses_to_close_keeps_its_document(self):
        forma = self.entrada(("A-100", "3"))
        luis = self.abre("LUIS", "E2")
        pedida = luis.pide("Entrada", 1)

        def no(forma, ambiente):
            forma.CancelaProceso = True
        self.anf.ganchos["ENTRADA006"] = no
        with self.assertRaises(tarvik.Error):
            self.anf.peticiones()[0].cede()
        self.assertEqual(pedida.estado, "pedida")
        self.assertTrue(forma.abierta)
        self.assertEqual(self.anf.sql("SELECT ocupado FROM entradas"), [{"ocupado": 1}])
        self.assertTrue(self.anf.tenencias()[0].viva)


class Eliminacion(Tienda):
    def test_a_deletion_is_recorded_from_the_classs_own_door(self):
        self.finaliza(self.entrada(("A-100", "3")))
        self.anf.respuestas.append(True)
        self.anf.EntradasSalidas().EliminaEntrada(1)
        (acto,) = self.anf.bitacora()
        self.assertEqual((acto.acto, acto.tipo, acto.documento), ("elimina", "Entrada", 1))


class Bitacora(Tienda):
    def test_it_is_read_from_a_moment_on(self):
        self.anf.ahora = datetime(2024, 3, 5, 14, 0)
        for dia in (5, 6):
            self.anf.ahora = datetime(2024, 3, dia, 14, 0)
            forma = self.entrada(("A-100", "1"))
            self.anf.falla_servicio("Afecta")
            self.finaliza(forma)
            self.anf.completa("Entrada", forma.Entrada)
        self.assertEqual([acto.cuando for acto in self.anf.bitacora()],
                         [datetime(2024, 3, 5, 14), datetime(2024, 3, 6, 14)])
        (acto,) = self.anf.bitacora(datetime(2024, 3, 6))
        self.assertEqual((acto.usuario, acto.estacion, acto.acto, acto.tipo, acto.documento),
                         ("ANA", "E1", "completa", "Entrada", 2))


if __name__ == "__main__":
    unittest.main()
