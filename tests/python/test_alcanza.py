"""Antes y después de afectar, como lo usa un guion: lo que le falta a una salida, lo que llama la atención en una
entrada, y la página otra vez."""

import unittest
from pathlib import Path

import tarvik

from casos import Caso


class Alcanza(Caso):
    def setUp(self):
        super().setUp()
        self.siembra()
        self.anf.Ambiente.Parametros["Almacen"] = 1
        self.anf.sql("UPDATE prods SET invent = 1, costo_u = 60")
        self.anf.sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, 'A-100', 10)")
        self.anf.sql("INSERT INTO usuarios (usuario, existsalidas) VALUES ('ANA', 1)")

    def salida(self, *cantidades):
        self.anf.EntradasSalidas().NuevaSalida()
        forma = self.anf.pantallas[-1]
        forma.teclea(forma.txtFields[0], "VTA")
        forma.Acumulado = False  # cada lectura, un renglón
        for cantidad in cantidades:
            forma.teclea(forma.txtFields[4], "A-100")
            forma.tecla("Enter")
            forma.teclea(forma.txtFields[5], cantidad)
            forma.tecla("F9")
        return forma

    def test_dos_renglones_que_caben_uno_por_uno_no_caben_juntos(self):
        forma = self.salida("6", "6")
        self.assertEqual(self.anf.mensajes, [])
        self.anf.sentencias.clear()
        falta, = self.anf.alcanza(forma)
        self.assertEqual((falta.articulo, falta.pide, falta.hay, falta.en_otros), ("A-100", 12, 10, 0))
        renglones = self.anf.sql("SELECT id_salida FROM salpart ORDER BY id_salida")
        self.assertEqual(falta.renglones, [renglon["id_salida"] for renglon in renglones])
        self.assertEqual(self.anf.sentencias, [])

    def test_lo_que_piden_otras_pendientes_se_descuenta(self):
        self.salida("7").cierra()
        forma = self.salida("4")
        falta, = self.anf.alcanza(forma)
        self.assertEqual((falta.pide, falta.hay, falta.en_otros), (4, 10, 7))
        self.anf.sql("UPDATE salidas SET estado = 'CO' WHERE salida <> ?", forma.Salida)
        self.assertEqual(self.anf.alcanza(forma), [])

    def test_de_una_entrada_no_falta_nada_y_de_otra_forma_no_se_sabe(self):
        self.assertEqual(self.anf.alcanza(self.nueva()), [])
        self.anf.EntradasSalidas().movimientoEstacion(1, False)
        with self.assertRaisesRegex(tarvik.Error, "sólo se comprueban las entradas y las salidas"):
            self.anf.alcanza(self.anf.pantallas[-1])
        with self.assertRaises(TypeError):
            self.anf.alcanza(None)

    def test_los_avisos_de_una_entrada(self):
        forma = self.nueva()
        self.partida(forma, precio="120")
        self.partida(forma, precio="120")
        avisos = self.anf.avisos(forma)
        self.assertEqual([(uno.clase, uno.articulo) for uno in avisos],
                         [("precio", "A-100"), ("precio", "A-100"), ("repetido", "A-100")])
        ultimo = self.anf.sql("SELECT MAX(id_entrada) AS id FROM entpart")[0]["id"]
        self.assertEqual(avisos[-1].renglon, ultimo)
        self.assertIn("100 % arriba del último costo, 60.00", avisos[0].texto)
        self.assertEqual(self.anf.avisos(self.salida("1")), [])


class Imprime(Caso):
    def setUp(self):
        super().setUp()
        self.siembra()

    def test_la_pagina_otra_vez(self):
        numero = self.recibida(cantidad="3").Entrada
        self.anf.impresos.clear()
        ruta = Path(self.anf.imprime("Entrada", numero))
        self.assertEqual(ruta, self.carpeta / "datos" / "impresos" / f"entrada-{numero}.html")
        self.assertIn("A-100", ruta.read_text(encoding="utf-8"))
        self.assertEqual(self.anf.impresos, [("entrada", numero)])

    def test_por_el_formato_que_la_base_tiene(self):
        numero = self.recibida(cantidad="3").Entrada
        self.anf.sql("UPDATE defform SET entradas = 'corto'")
        (self.carpeta / "datos" / "formatos").mkdir(exist_ok=True)
        (self.carpeta / "datos" / "formatos" / "corto.mustache").write_text("la {{numero}}", encoding="utf-8")
        self.assertEqual(Path(self.anf.imprime("entrada", numero)).read_text(encoding="utf-8"), f"la {numero}")

    def test_lo_que_no_existe_no_se_imprime(self):
        with self.assertRaisesRegex(tarvik.Error, "No se puede imprimir: no existe la salida 99"):
            self.anf.imprime("Salida", 99)
        with self.assertRaises(tarvik.Error):
            self.anf.imprime("Pedido", 1)
        numero = self.recibida(cantidad="3").Entrada
        self.anf.impresos.clear()
        self.anf.sql("DELETE FROM defform")
        with self.assertRaisesRegex(tarvik.Error, self.anf.mensaje(213)):
            self.anf.imprime("Entrada", numero)
        self.assertEqual(self.anf.impresos, [])


if __name__ == "__main__":
    unittest.main()
