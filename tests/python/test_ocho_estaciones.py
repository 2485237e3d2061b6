"""Eight stations sell one day's invoices on one base at once: the stock is as if one had sold them all, no line
is refused, no number is given twice."""

import os
import random
import subprocess
import sys
import tempfile
import unittest

import tarvik

import bases

ARTICULOS = [f"A-{numero:03}" for numero in range(40)]
FACTURAS = 48
ESTACIONES = 8


def facturas():
    """The day's invoices: each a list of (article, quantity); the same day at every call."""
    azar = random.Random(20101201)
    return [[(azar.choice(ARTICULOS), azar.randint(1, 24)) for _ in range(azar.randint(1, 9))]
            for _ in range(FACTURAS)]


def vende(base, ruta, estacion, suyas):
    """Types these invoices as goods-out and posts them; gives the boxes that came up."""
    anf = tarvik.Anfitrion(base=base, usuario="ANA", estacion=estacion, ruta=ruta)
    try:
        for renglones in suyas:
            anf.EntradasSalidas().NuevaSalida()
            forma = anf.pantallas[-1]
            forma.teclea(forma.txtFields[0], "VTA")
            for articulo, cantidad in renglones:
                forma.teclea(forma.txtFields[4], articulo)
                forma.tecla("Enter")
                forma.teclea(forma.txtFields[5], str(cantidad))
                forma.tecla("Enter")
                forma.tecla("Enter")
            anf.respuestas.append(True)
            forma.tecla("F5", forma.txtFields[0])
        return [mensaje.texto for mensaje in anf.mensajes if mensaje.clase != "pregunta"] + list(anf.no_atrapados)
    finally:
        anf.cierra()


class OchoEstaciones(unittest.TestCase):
    def tienda(self, nombre):
        base = bases.en_archivo(self, os.path.join(self.carpeta, nombre + ".db"))
        anf = tarvik.Anfitrion(base=base, usuario="ANA", estacion="E0", ruta=self.carpeta)
        self.addCleanup(anf.cierra)
        anf.sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('COM', 'E', 'Compra')")
        anf.sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('VTA', 'S', 'Venta')")
        anf.sql("INSERT INTO ALMACEN (almacen) VALUES (1)")
        anf.sql("INSERT INTO impuestos (impuesto, valor) VALUES ('IVA', 16)")
        for articulo in ARTICULOS:
            anf.sql("INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto, costo_u, Invent) VALUES (?, ?, "
                    "'PZA', 10, 'IVA', 6, 1)", articulo, "Artículo " + articulo)
        anf.EntradasSalidas().NuevaEntrada()
        forma = anf.pantallas[-1]
        forma.teclea(forma.txtFields[0], "COM")
        forma.tecla("Enter")
        for articulo in ARTICULOS:
            forma.teclea(forma.txtFields[4], articulo)
            forma.tecla("Enter")
            forma.teclea(forma.txtFields[5], "5000")
            forma.tecla("Enter")
            forma.tecla("Enter")
        anf.respuestas.append(True)
        forma.tecla("F5", forma.txtFields[0])
        return base, anf

    def setUp(self):
        temporal = tempfile.TemporaryDirectory()
        self.addCleanup(temporal.cleanup)
        self.carpeta = temporal.name

    @staticmethod
    def existencias(anf):
        return [(fila["articulo"], fila["existencia"]) for fila in anf.sql(
            "SELECT articulo, existencia FROM existenciaalmacen WHERE almacen = ? ORDER BY articulo", 1)]

    def test_they_end_with_the_stock_of_one(self):
        de_una, una = self.tienda("una")
        self.assertEqual(vende(de_una, self.carpeta, "E1", facturas()), [])
        de_ocho, ocho = self.tienda("ocho")
        procesos = [subprocess.Popen([sys.executable, "-B", __file__, de_ocho, self.carpeta, str(cual)],
                                     stdout=subprocess.PIPE, text=True) for cual in range(ESTACIONES)]
        dichos = [proceso.communicate(timeout=250)[0] for proceso in procesos]
        self.assertEqual(dichos, [""] * ESTACIONES)
        self.assertEqual(self.existencias(ocho), self.existencias(una))
        salidas = ocho.sql("SELECT salida, estado, ocupado FROM salidas ORDER BY salida")
        self.assertEqual([fila["salida"] for fila in salidas], list(range(1, FACTURAS + 1)))
        self.assertEqual({(fila["estado"], fila["ocupado"]) for fila in salidas}, {("CO", 0)})
        renglones = sum(len(factura) for factura in facturas())
        # Neighbours that name one article in one invoice are one line.
        self.assertLessEqual(len(ocho.sql("SELECT id_salida FROM salpart")), renglones)
        self.assertEqual(len(ocho.sql("SELECT id FROM movsinv WHERE operacion = ?", "SA")),
                         len(ocho.sql("SELECT id_salida FROM salpart")))
        self.assertEqual(ocho.a_medias(), [])
        self.assertEqual(ocho.revisa(), [])


if __name__ == "__main__":
    if len(sys.argv) == 4:  # one of the stations: base, folder, which
        base_dada, ruta_dada, cual_dada = sys.argv[1], sys.argv[2], int(sys.argv[3])
        for texto in vende(base_dada, ruta_dada, f"E{cual_dada + 1}", facturas()[cual_dada::ESTACIONES]):
            print(texto)
    else:
        unittest.main()
