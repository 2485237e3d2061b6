"""The demonstration base and its screens: for the tests of the module's contract."""

import datetime
import tempfile
import unittest
from pathlib import Path

import tarvik

import bases

HOY = datetime.datetime(2024, 3, 5, 14, 3, 22)


class Caso(unittest.TestCase):
    def setUp(self):
        temporal = tempfile.TemporaryDirectory()
        self.addCleanup(temporal.cleanup)
        self.ruta = Path(temporal.name) / "datos"
        self.anf = tarvik.Anfitrion(base=bases.en_memoria(self), usuario="ANA", estacion="E1", ruta=str(self.ruta),
                                    demo=True)
        self.addCleanup(self.anf.cierra)
        self.anf.ahora = HOY
        self.es = self.anf.EntradasSalidas()

    def claves(self):
        return [clave for clave, _ in self.anf.ganchos_disparados]

    def textos(self):
        return [mensaje.texto for mensaje in self.anf.mensajes]

    def numeros(self):
        return [mensaje.numero for mensaje in self.anf.mensajes]

    def partidas(self, tabla="entpart"):
        return [(fila["articulo"], fila["cantidad"], fila["precio"])
                for fila in self.anf.sql(f"SELECT * FROM {tabla} ORDER BY 1")]

    def entrada(self, articulo="", cantidad="", precio=""):
        self.es.NuevaEntrada()
        forma = self.anf.pantallas[-1]
        forma.teclea(forma.txtFields[0], "COM")
        for campo, texto in ((4, articulo), (5, cantidad), (6, precio)):
            if texto:
                forma.txtFields[campo].Text = texto
        return forma
