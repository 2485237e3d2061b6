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
