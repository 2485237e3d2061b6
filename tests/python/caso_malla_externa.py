"""The external matrix between two real processes: the screens here, the partner of examples/malla_externa.py there,
and nothing between them but the base."""

import importlib.util
import os
import subprocess
import sys
import tempfile
import threading
import unittest
from pathlib import Path

import tarvik

EJEMPLOS = Path(__file__).resolve().parents[2] / "examples"
PROGRAMA = EJEMPLOS / "malla_externa.py"
# What the tests wait at most for something that happens at once on a machine that has nothing else to do.
PACIENCIA = 30


def modulo(archivo):
    ficha = importlib.util.spec_from_file_location(archivo.stem.lstrip("0123456789_"), archivo)
    cargado = importlib.util.module_from_spec(ficha)
    sys.modules[ficha.name] = cargado
    ficha.loader.exec_module(cargado)
    return cargado


class Caso(unittest.TestCase):
    def setUp(self):
        temporal = tempfile.TemporaryDirectory()
        self.addCleanup(temporal.cleanup)
        self.carpeta = Path(temporal.name)
        self.archivo = self.carpeta / "a.db"
        self.anf = tarvik.Anfitrion(base=f"sqlite:{self.archivo}", usuario="ANA", estacion="E1",
                                    ruta=str(self.carpeta / "datos"), demo=True)
        self.addCleanup(self.anf.cierra)
        gancho = modulo(EJEMPLOS / "ganchos" / "40_malla_externa.py")
        self.anf.ganchos["TALLASYCOLORES001"] = gancho.TALLASYCOLORES001

    # ---- the partner ----

    def socio(self, *opciones, base=None):
        """Starts the partner and comes back when it is at work."""
        proceso = self.corre(*opciones, base=base)
        self.assertEqual(proceso.stdout.readline(), "En espera de peticiones.\n")
        return proceso

    def corre(self, *opciones, base=None):
        proceso = subprocess.Popen(
            [sys.executable, "-B", "-W", "error", str(PROGRAMA), "--base", base or f"sqlite:{self.archivo}",
             *map(str, opciones)],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8",
            env=os.environ | {"PYTHONIOENCODING": "utf-8"})

        def acaba():
            proceso.kill()
            proceso.communicate()

        self.addCleanup(acaba)
        return proceso

    def termina(self, proceso, codigo=0):
        salida, error = proceso.communicate(timeout=PACIENCIA)
        self.assertEqual((proceso.returncode, error), (codigo, ""), salida)
        return salida.splitlines()

    def despide(self, proceso):
        proceso.terminate()
        return self.termina(proceso)

    # ---- the screens ----

    def entrada(self):
        self.anf.EntradasSalidas().NuevaEntrada()
        forma = self.anf.pantallas[-1]
        forma.teclea(forma.txtFields[0], "COM")
        return forma

    def salida(self):
        self.anf.EntradasSalidas().NuevaSalida()
        forma = self.anf.pantallas[-1]
        forma.teclea(forma.txtFields[0], "VTA")
        return forma

    def abajo(self, forma, modelo="CAM"):
        """Down on a model's key: it comes back when the wait is over."""
        vigia = threading.Timer(PACIENCIA, self.senal, (1,))
        vigia.start()
        try:
            forma.txtFields[4].Text = ""
            forma.teclea(forma.txtFields[4], modelo)
            forma.tecla("Down")
        finally:
            vigia.cancel()
            vigia.join()

    def senal(self, valor=None):
        if valor is not None:
            self.anf.sql("UPDATE ControlProc SET controlproc = ?", valor)
        return self.anf.sql("SELECT controlproc FROM ControlProc")[0]["controlproc"]

    def partidas(self, tabla="entpart"):
        return [(fila["articulo"], fila["cantidad"]) for fila in self.anf.sql(f"SELECT * FROM {tabla} ORDER BY 1")]

    def celdas(self):
        return self.anf.sql("SELECT COUNT(*) AS n FROM mallacelda")[0]["n"]

    def textos(self):
        return [mensaje.texto for mensaje in self.anf.mensajes]
