"""La cinta del lector, como la usa un guion: lecturas, la charola, y lo que espera a un mensaje."""

import datetime
import unittest

import tarvik

import bases
from casos import Caso


class Lecturas(Caso):
    def setUp(self):
        super().setUp()
        self.base = bases.en_archivo(self, self.carpeta / "tienda.db")
        self.anf = self.abre(self.base)
        self.siembra()
        self.anf.Ambiente.Parametros["Lector"] = 1

    def nueva(self):
        self.es = self.anf.EntradasSalidas()
        self.es.NuevaEntrada()
        return self.anf.pantallas[-1]

    def test_una_lectura_es_un_renglon(self):
        forma = self.nueva()
        self.anf.ahora = datetime.datetime(2024, 3, 5, 14, 15)
        leida = self.anf.lectura("A-100\r")
        self.assertEqual(leida.estado, "renglon")
        self.assertEqual(leida.texto, "A-100")
        self.assertEqual((leida.tipo, leida.documento), ("Entrada", forma.Entrada))
        self.assertEqual(leida.cantidad, 1)
        self.assertEqual(leida.usuario, "ANA")
        self.assertEqual(leida.cuando, datetime.datetime(2024, 3, 5, 14, 15))
        self.assertIsNone(leida.motivo)
        renglones = self.anf.sql("SELECT id_entrada, cantidad FROM entpart")
        self.assertEqual(renglones, [{"id_entrada": leida.renglon, "cantidad": 1}])
        self.assertEqual(self.anf.cinta, [leida])
        self.assertEqual(self.anf.mensajes, [])

    def test_lo_desconocido_se_asigna_o_se_descarta(self):
        self.nueva()
        uno, otro = self.anf.lectura("9999"), self.anf.lectura("8888")
        self.assertEqual((uno.estado, otro.estado), ("sin articulo", "sin articulo"))
        self.assertIsNone(uno.renglon)
        with self.assertRaises(tarvik.Error):
            uno.asigna("NADA")
        uno.asigna("A-100", unidades=3)
        self.assertEqual(uno.estado, "renglon")
        otro.descarta("etiqueta rota")
        self.assertEqual((otro.estado, otro.motivo), ("descartada", "etiqueta rota"))
        with self.assertRaises(tarvik.Error):
            otro.deshace()
        uno.deshace()
        self.assertEqual(uno.estado, "deshecha")
        self.assertEqual(self.anf.sql("SELECT * FROM entpart"), [])

    def test_mientras_hay_un_mensaje_espera_y_no_lo_contesta(self):
        forma = self.nueva()
        vistas = []

        def mientras(clase, texto):
            vistas.append((clase, texto, self.anf.lectura("A-100").estado))

        self.anf.al_mostrar_caja = mientras
        forma.tecla("F9")  # sin artículo
        self.anf.al_mostrar_caja = None
        self.assertEqual(len(vistas), 1)
        clase, texto, estado = vistas[0]
        self.assertEqual((clase, texto, estado), ("mensaje", self.anf.mensaje(234), "espera"))
        self.assertEqual([entrada.estado for entrada in self.anf.cinta], ["renglon"])

    def test_la_respuesta_puede_ponerse_mientras_la_pregunta_espera(self):
        forma = self.nueva()
        forma.teclea(forma.txtFields[0], "COM")
        self.anf.lectura("A-100")
        self.anf.al_mostrar_caja = lambda clase, texto: self.anf.respuestas.append(clase == "pregunta")
        forma.tecla("F5", forma.txtFields[0])
        self.assertEqual(self.anf.sql("SELECT estado FROM entradas"), [{"estado": "CO"}])

    def test_lo_que_falla_en_la_funcion_sale_de_la_llamada(self):
        forma = self.nueva()

        def falla(clase, texto):
            raise ValueError("mía")

        self.anf.al_mostrar_caja = falla
        with self.assertRaisesRegex(ValueError, "mía"):
            forma.tecla("F9")
        self.anf.al_mostrar_caja = None
        self.assertEqual(len(self.anf.mensajes), 1)

    def test_la_de_otra_corrida_se_captura_a_peticion(self):
        self.anf.lectura("A-100")
        self.anf.cierra()
        otro = self.abre(self.base)
        es = otro.EntradasSalidas()
        es.NuevaEntrada()
        leida, = otro.cinta
        self.assertEqual(leida.estado, "espera")
        leida.alimenta()
        self.assertEqual(leida.estado, "renglon")

    def test_solo_las_pantallas_de_documentos_las_reciben(self):
        es = self.anf.EntradasSalidas()
        es.movimientoEstacion(0, False)
        with self.assertRaises(tarvik.Error):
            self.anf.lectura("A-100", self.anf.pantallas[-1])
        forma = self.nueva()
        self.assertEqual(self.anf.lectura("A-100", forma=forma).estado, "renglon")


if __name__ == "__main__":
    unittest.main()
