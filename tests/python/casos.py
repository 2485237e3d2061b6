"""A shop on a base of its own, and a goods-in from the keyboard: for the tests of the module's contract."""

import datetime
import tempfile
import unittest
from pathlib import Path

import tarvik

import bases

HOY = datetime.datetime(2024, 3, 5, 14, 3, 22)


class Caso(unittest.TestCase):
    demo = False

    def setUp(self):
        temporal = tempfile.TemporaryDirectory()
        self.addCleanup(temporal.cleanup)
        self.carpeta = Path(temporal.name)
        self.anf = self.abre(bases.en_memoria(self), demo=self.demo)
        self.anf.ahora = HOY

    def abre(self, base, demo=False, ruta=None):
        anf = tarvik.Anfitrion(base=base, usuario="ANA", estacion="E1", ruta=str(ruta or self.carpeta / "datos"),
                               demo=demo)
        self.addCleanup(anf.cierra)
        return anf

    def siembra(self):
        for sentencia in [
                "INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('COM', 'E', 'Compra')",
                "INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('VTA', 'S', 'Venta')",
                "INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('A++', 'E', 'Sobrante')",
                "INSERT INTO almacen (almacen) VALUES (1)", "INSERT INTO almacen (almacen) VALUES (12)",
                "INSERT INTO impuestos (impuesto, valor) VALUES ('IVA', 16)",
                "INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto) "
                "VALUES ('A-100', 'Martillo', 'PZA', 100, 'IVA')",
                "INSERT INTO clavesadd (clave, articulo, cantidad, unidad) VALUES ('A-CAJA', 'A-100', 12, 'CAJ')"]:
            self.anf.sql(sentencia)

    def nueva(self):
        self.anf.EntradasSalidas().NuevaEntrada()
        forma = self.anf.pantallas[-1]
        forma.teclea(forma.txtFields[0], "COM")
        forma.tecla("Enter")
        return forma

    def partida(self, forma, articulo="A-100", cantidad="3", precio=""):
        forma.teclea(forma.txtFields[4], articulo)
        forma.tecla("Enter")
        forma.teclea(forma.txtFields[5], cantidad)
        forma.tecla("Enter")
        forma.teclea(forma.txtFields[6], precio)
        forma.tecla("Enter")

    def afecta(self, forma):
        self.anf.respuestas.append(True)
        forma.tecla("F5", forma.txtFields[0])

    def recibida(self, **partida):
        forma = self.nueva()
        self.partida(forma, **partida)
        self.afecta(forma)
        return forma

    def textos(self):
        return [m.texto for m in self.anf.mensajes]
