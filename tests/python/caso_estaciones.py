"""A transfer between stations on the demonstration base, with the routines of examples/ganchos_estaciones loaded as
the desktop does: every file of the folder, in name order."""

import datetime
import importlib.util
import sys
import tempfile
import unittest
from pathlib import Path

import tarvik

import bases

CARPETA = Path(__file__).resolve().parents[2] / "examples" / "ganchos_estaciones"
CLAVES = [f"MOVESTACIONES00{n}" for n in range(1, 8)]
HOY = datetime.datetime(2024, 3, 5, 14, 3, 22)


def rutinas():
    halladas = {}
    for archivo in sorted(CARPETA.glob("*.py")):
        if archivo.stem not in sys.modules:
            ficha = importlib.util.spec_from_file_location(archivo.stem, archivo)
            sys.modules[archivo.stem] = importlib.util.module_from_spec(ficha)
            ficha.loader.exec_module(sys.modules[archivo.stem])
        modulo = sys.modules[archivo.stem]
        halladas |= {clave: getattr(modulo, clave) for clave in CLAVES if hasattr(modulo, clave)}
    return halladas


sys.path.append(str(CARPETA))


class Caso(unittest.TestCase):
    def setUp(self):
        temporal = tempfile.TemporaryDirectory()
        self.addCleanup(temporal.cleanup)
        self.carpeta = Path(temporal.name)
        self.base = bases.en_archivo(self, self.carpeta / "a.db")
        self.anf = self.abre()
        self.surte("MAR-16", 10)
        self.surte("FOC-9W", 5)

    def abre(self, usuario="BETO", estacion="E1"):
        anf = tarvik.Anfitrion(base=self.base, usuario=usuario, estacion=estacion,
                               ruta=str(self.carpeta / "datos"), demo=True)
        self.addCleanup(anf.cierra)
        anf.ahora = HOY
        anf.ganchos = rutinas()
        return anf

    def surte(self, articulo, cantidad, almacen=1):
        movimiento = self.anf.Ambiente.NuevoMovimiento()
        movimiento.EntSal, movimiento.Operacion, movimiento.Movimiento = "E", "EN", 99
        movimiento.Fecha = HOY.date()
        movimiento.Almacen, movimiento.Articulo, movimiento.Cantidad = almacen, articulo, cantidad
        movimiento.Afecta()
        self.anf.movimientos.clear()

    def pantalla(self, numero=0, anf=None):
        anf = anf or self.anf
        anf.EntradasSalidas().movimientoEstacion(numero, False)
        return anf.pantallas[-1]

    def teclea_en(self, forma, campo, texto):
        forma.enfoca(forma.txtFields[campo])
        forma.teclea(forma.txtFields[campo], texto)
        forma.tecla("Enter")

    def renglon(self, forma, articulo, cantidad):
        self.teclea_en(forma, 2, articulo)
        self.teclea_en(forma, 4, cantidad)
        forma.tecla("Enter")  # on the button

    def nueva(self, entrega="E1", recibe="E2", **partidas):
        forma = self.pantalla()
        self.teclea_en(forma, 0, entrega)
        self.teclea_en(forma, 1, recibe)
        for articulo, cantidad in (partidas or {"MAR-16": 3}).items():
            self.renglon(forma, articulo.replace("_", "-"), str(cantidad))
        return forma

    def pendiente(self, **partidas):
        forma = self.nueva(**partidas)
        forma.clic(forma.cmdPendiente)
        self.assertFalse(forma.abierta, self.textos())
        return forma.Id

    def textos(self, anf=None):
        return [mensaje.texto for mensaje in (anf or self.anf).mensajes]

    def aviso(self, anf=None):
        return (anf or self.anf).mensajes[-1].texto

    def renglones(self, forma):
        return [tuple(forma.grid.TextMatrix(r, c) for c in range(3)) for r in range(1, forma.grid.Rows)]

    def guardados(self):
        return [(fila["traspaso"], fila["estado"], fila["entrega"], fila["recibe"])
                for fila in self.anf.sql("SELECT * FROM traspaso_estacion ORDER BY traspaso")]

    def existencia(self, articulo, almacen):
        filas = self.anf.sql("SELECT existencia FROM existenciaalmacen WHERE articulo = ? AND almacen = ?", articulo,
                             almacen)
        return filas[0]["existencia"] if filas else 0

    def concuerda(self):
        """Stock, the article's own columns and the ledger tell the same of every warehouse."""
        libro = self.anf.sql(
            "SELECT articulo, almacen, SUM(CASE ent_sal WHEN 'E' THEN cantidad ELSE -cantidad END) AS existencia "
            "FROM movsinv GROUP BY articulo, almacen ORDER BY articulo, almacen")
        self.assertEqual(libro, self.anf.sql("SELECT articulo, almacen, existencia FROM existenciaalmacen "
                                             "ORDER BY articulo, almacen"))
        for fila in libro:
            columna = f"alm{int(fila['almacen'])}"
            self.assertEqual(self.anf.sql(f"SELECT {columna} AS n FROM prods WHERE articulo = ?", fila["articulo"]),
                             [{"n": fila["existencia"]}])

    def sin_cambios(self):
        self.assertEqual(self.anf.movimientos, [])
        self.assertEqual((self.existencia("MAR-16", 1), self.existencia("MAR-16", 2)), (10, 0))
