"""The routines of examples/ganchos_estaciones: a station transfer is confirmed and moves stock; and the host's
services that they use."""

import unittest

import tarvik

from caso_estaciones import HOY, Caso, rutinas


class Confirmacion(Caso):
    def test_confirmed_from_the_keyboard_and_the_books_agree(self):
        forma = self.nueva(MAR_16=3, FOC_9W="1.5")
        forma.clic(forma.cmdConfirmar)
        self.assertFalse(forma.abierta)
        self.assertEqual(self.aviso(), "El traspaso 1 quedó confirmado: 2 artículos de E1 a E2.")
        self.assertEqual(self.guardados(), [(1, "CO", "E1", "E2")])
        self.assertEqual([self.existencia("MAR-16", n) for n in (1, 2)], [7, 3])
        self.assertEqual([self.existencia("FOC-9W", n) for n in (1, 2)], [3.5, 1.5])
        self.concuerda()
        costo = self.anf.sql("SELECT costo_u FROM prods WHERE articulo = 'MAR-16'")[0]["costo_u"]
        sale, entra = (dict(movimiento) for movimiento in self.anf.movimientos[:2])
        for movimiento in (sale, entra):
            self.assertEqual(movimiento.pop("Ambiente").Usuario, "BETO")
        comun = {"ClaveLocal": "", "Fecha": HOY.date(), "Movimiento": 1, "TipoDoc": "TE", "Usuario": "BETO",
                 "Documento": "TE-1", "Operacion": "TE", "Articulo": "MAR-16", "Cantidad": 3.0, "Precio": costo,
                 "IdSalida": 1, "EstacionTraspaso": "E2", "Aplica": True, "resultado": 3 * costo}
        self.assertEqual(sale, comun | {"EntSal": "S", "Almacen": 1.0})
        self.assertEqual(entra, comun | {"EntSal": "E", "Almacen": 2.0})
        self.assertEqual(len(self.anf.movimientos), 4)

    def test_confirming_fires_its_key_and_then_the_closing_one(self):
        forma = self.nueva()
        forma.enfoca(forma.grid)
        self.anf.ganchos_disparados.clear()
        forma.clic(forma.cmdConfirmar)
        self.assertEqual([clave for clave, _ in self.anf.ganchos_disparados], ["MOVESTACIONES006", "MOVESTACIONES007"])

    def test_a_pending_one_is_reopened_and_confirmed(self):
        numero = self.pendiente()
        forma = self.pantalla(numero)
        forma.clic(forma.cmdConfirmar)
        self.assertEqual(self.guardados(), [(numero, "CO", "E1", "E2")])
        self.assertEqual([self.existencia("MAR-16", n) for n in (1, 2)], [7, 3])
        self.concuerda()

    def test_a_confirmed_one_opens_to_read(self):
        numero = self.pendiente(MAR_16=10)  # all that there is
        forma = self.pantalla(numero)
        forma.clic(forma.cmdConfirmar)
        forma = self.pantalla(numero)
        self.assertEqual(forma.Caption, f"Traspaso entre estaciones {numero}: confirmado")
        for control in (forma.txtFields[0], forma.txtFields[2], forma.DTPicker1, forma.Command1, forma.cmdPendiente,
                        forma.cmdConfirmar, forma.grid):
            self.assertFalse(control.Enabled)
        self.assertEqual(len(self.renglones(forma)), 1)
        self.anf.mensajes.clear()
        forma.cmdConfirmar_Click()  # not even a routine confirms it again
        self.assertEqual(self.textos(), [f"El traspaso {numero} ya está confirmado."])
        self.assertTrue(forma.abierta)
        forma.clic(forma.cmdCancelar)
        self.assertFalse(forma.abierta)
        self.assertEqual(len(self.anf.movimientos), 2)

    def test_a_second_confirmation_from_another_station_is_refused(self):
        numero = self.pendiente()
        otro = self.abre(usuario="CARLA", estacion="E2")
        primera, segunda = self.pantalla(numero), self.pantalla(numero, otro)
        primera.clic(primera.cmdConfirmar)
        segunda.clic(segunda.cmdConfirmar)
        self.assertTrue(segunda.abierta)
        self.assertEqual(self.aviso(otro), f"El traspaso {numero} ya está confirmado.")
        self.assertEqual((len(self.anf.movimientos), otro.movimientos), (2, []))
        self.assertEqual([self.existencia("MAR-16", n) for n in (1, 2)], [7, 3])

    def test_too_little_stock_is_refused_or_asked_about_by_user(self):
        forma = self.nueva(MAR_16=11, FOC_9W=5)
        forma.clic(forma.cmdConfirmar)  # BETO may not
        self.assertIn("No hay existencia suficiente en el almacén 1:\nMAR-16: hay 10 y se piden 11", self.aviso())
        self.assertNotIn("FOC-9W", self.aviso())
        self.assertTrue(forma.abierta)
        self.sin_cambios()
        self.anf.Ambiente.Usuario = "ANA"
        forma.clic(forma.cmdConfirmar)  # ANA is asked: no answer is No
        self.assertEqual((self.anf.mensajes[-1].clase, forma.abierta), ("pregunta", True))
        self.sin_cambios()
        self.anf.respuestas.append(True)
        forma.clic(forma.cmdConfirmar)
        self.assertFalse(forma.abierta)
        self.assertEqual([self.existencia("MAR-16", n) for n in (1, 2)], [-1, 11])
        self.concuerda()

    def test_an_article_without_control_of_stock_passes(self):
        forma = self.nueva(SRV_AFIL=2)
        forma.clic(forma.cmdConfirmar)
        self.assertEqual((self.guardados(), self.aviso()), (
            [(1, "CO", "E1", "E2")], "El traspaso 1 quedó confirmado: 1 artículo de E1 a E2."))

    def test_a_long_list_of_shortages_is_cut(self):
        faltan = [fila["articulo"] for fila in self.anf.sql(
            "SELECT articulo FROM prods WHERE invent = 1 AND articulo NOT IN ('MAR-16', 'FOC-9W') LIMIT 12")]
        forma = self.nueva(**dict.fromkeys(faltan, 1))
        forma.clic(forma.cmdConfirmar)
        self.assertEqual(len(self.aviso().splitlines()), 12)
        self.assertIn("... y 2 más", self.aviso())

    def test_stations_without_a_warehouse_or_with_the_same_one(self):
        self.pantalla().cierra()
        forma = self.nueva("E2", "E3", MAR_16=1)
        forma.clic(forma.cmdConfirmar)
        self.assertEqual(self.aviso(), "Las dos estaciones trabajan con el almacén 2: no hay nada que mover.")
        self.anf.sql("UPDATE almacen_de_estacion SET almacen = 7 WHERE estacion = 'E3'")
        forma.clic(forma.cmdConfirmar)
        self.assertEqual(self.aviso(), "La estación E3 no tiene asignado un almacén que exista.")
        self.assertTrue(forma.abierta)
        self.sin_cambios()

    def test_a_closed_period_is_refused_in_the_hosts_own_words(self):
        forma = self.nueva()
        self.anf.sql("INSERT INTO movsinv (f_movim, cerrado) VALUES ('2024-04-01', 1)")
        forma.clic(forma.cmdConfirmar)
        self.assertEqual((self.anf.mensajes[-1].numero, forma.abierta, forma.ActiveControl),
                         (253, True, forma.DTPicker1))
        self.sin_cambios()

    def test_a_posting_that_fails_at_once_leaves_it_pending(self):
        forma = self.nueva()
        self.anf.falla_servicio("Afecta")
        forma.clic(forma.cmdConfirmar)
        self.assertIn("no se terminó de confirmar: falla provocada", self.aviso())
        self.assertIn("No se movió nada", self.aviso())
        self.assertEqual((forma.abierta, forma.txtFields[2].Enabled, forma.Id), (True, True, 1))
        self.sin_cambios()
        self.renglon(forma, "FOC-9W", "1")
        forma.clic(forma.cmdConfirmar)
        self.assertEqual(self.guardados(), [(1, "CO", "E1", "E2")])
        self.concuerda()

    def falla_al_tercero(self, anf):
        """The third posting of what follows fails."""
        original = anf.Ambiente.NuevoMovimiento
        cuenta = []

        class Movimiento:
            def __init__(self):
                object.__setattr__(self, "propio", original())

            def __setattr__(self, nombre, valor):
                setattr(self.propio, nombre, valor)

            def Afecta(self):
                cuenta.append(1)
                if len(cuenta) == 3:
                    anf.falla_servicio("Afecta")
                return self.propio.Afecta()

        class Ambiente:
            NuevoMovimiento = staticmethod(Movimiento)

            def __getattr__(self, nombre):
                return getattr(anf.Ambiente, nombre)

        confirma = rutinas()["MOVESTACIONES006"]
        anf.ganchos["MOVESTACIONES006"] = lambda forma, ambiente: confirma(forma, Ambiente())

    def test_a_posting_that_stops_half_way_is_finished_later_and_moves_nothing_twice(self):
        forma = self.nueva(MAR_16=8, FOC_9W=2, TAL_12=1)  # what is left of the first would not do for it again
        self.surte("TAL-12", 1)
        self.falla_al_tercero(self.anf)
        forma.clic(forma.cmdConfirmar)
        self.assertTrue(forma.abierta)
        self.assertIn("Lo que ya se movió no se moverá otra vez", self.aviso())
        self.assertEqual(len(self.anf.movimientos), 2)
        self.assertEqual(self.guardados(), [(1, "PE", "E1", "E2")])
        self.assertEqual((forma.txtFields[2].Enabled, forma.cmdPendiente.Enabled, forma.cmdConfirmar.Enabled),
                         (False, False, True))
        self.concuerda()
        forma.grid.RemoveItem(1)  # what the grid shows does not count any more
        forma.clic(forma.cmdCancelar)
        self.assertFalse(forma.abierta)

        otro = self.abre(usuario="CARLA", estacion="E2")
        forma = self.pantalla(1, otro)
        self.assertEqual(forma.Caption, "Traspaso entre estaciones 1: confirmación empezada")
        self.assertEqual(len(self.renglones(forma)), 3)
        forma.clic(forma.cmdConfirmar)  # no answer is No
        self.assertIn("BETO en E1 empezó a confirmar", self.aviso(otro))
        self.assertEqual((forma.abierta, otro.movimientos), (True, []))
        otro.respuestas.append(True)
        forma.clic(forma.cmdConfirmar)
        self.assertFalse(forma.abierta)
        self.assertEqual(self.guardados(), [(1, "CO", "E1", "E2")])
        self.assertEqual([(m["Articulo"], m["EntSal"]) for m in otro.movimientos],
                         [("FOC-9W", "S"), ("FOC-9W", "E"), ("TAL-12", "S"), ("TAL-12", "E")])
        self.assertEqual([self.existencia("MAR-16", n) for n in (1, 2)], [2, 8])
        self.assertEqual([self.existencia("FOC-9W", n) for n in (1, 2)], [3, 2])
        self.assertEqual(len(otro.mensajes), 3)  # two questions, and that it is done
        self.concuerda()

    def test_a_begun_one_that_another_station_has_taken_over_is_left_to_it(self):
        forma = self.nueva(MAR_16=3, FOC_9W=2)
        self.falla_al_tercero(self.anf)
        forma.clic(forma.cmdConfirmar)
        otro = self.abre(usuario="CARLA", estacion="E2")
        segunda = self.pantalla(1, otro)
        otro.falla_servicio("Afecta")
        otro.respuestas.append(True)
        segunda.clic(segunda.cmdConfirmar)  # stops again, at once
        self.anf.respuestas.append(True)
        self.anf.movimientos.clear()
        forma.clic(forma.cmdConfirmar)
        self.assertEqual((forma.abierta, self.anf.movimientos), (True, []))
        self.assertIn("fue cambiado por CARLA en E2", self.aviso())
        otro.respuestas.append(True)
        segunda.clic(segunda.cmdConfirmar)
        self.assertEqual(self.guardados(), [(1, "CO", "E1", "E2")])
        self.concuerda()

    def test_of_two_that_finish_a_begun_one_only_one_may(self):
        forma = self.nueva(MAR_16=3, FOC_9W=2)
        self.falla_al_tercero(self.anf)
        forma.clic(forma.cmdConfirmar)
        otro = self.abre(usuario="CARLA", estacion="E2")
        segunda = self.pantalla(1, otro)
        otro.respuestas.append(True)
        segunda.clic(segunda.cmdConfirmar)
        self.assertEqual(self.guardados(), [(1, "CO", "E1", "E2")])
        self.anf.respuestas.append(True)
        forma.clic(forma.cmdConfirmar)
        self.assertTrue(forma.abierta)
        self.assertEqual(self.aviso(), "El traspaso 1 ya está confirmado.")
        self.assertEqual([self.existencia("FOC-9W", n) for n in (1, 2)], [3, 2])
        self.concuerda()


class Servicios(Caso):
    """The doors to the host that the routines use, as any routine finds them."""

    def test_statements_are_listed_and_give_their_rows(self):
        self.anf.sentencias.clear()
        filas = self.anf.Ambiente.Conexion.Execute("SELECT articulo FROM prods WHERE articulo LIKE 'MAR%' ORDER BY 1")
        self.assertEqual((filas["articulo"], filas.EOF, filas.RecordCount), ("MAR-16", False, 2))
        filas.MoveNext()
        self.assertEqual(filas.Fields("ARTICULO").Value, "MAR-20")
        self.assertTrue(self.anf.Ambiente.Conexion.Execute("UPDATE prods SET linea = 'X' WHERE linea = 'Y'").EOF)
        self.assertEqual(len(self.anf.sentencias), 2)
        with self.assertRaises(tarvik.Error):
            self.anf.Ambiente.Conexion.Execute("SELECT 1; DELETE FROM prods")
        self.anf.falla("colores")
        with self.assertRaisesRegex(tarvik.Error, "falla provocada"):
            self.anf.Ambiente.Conexion.Execute("SELECT * FROM colores")

    def test_numbers_boxes_and_dates_are_the_hosts_own(self):
        ambiente = self.anf.Ambiente
        self.assertEqual([ambiente.NuevoId("Prueba"), ambiente.NuevoId("Prueba")], [1, 2])
        self.anf.falla_servicio("NuevoId")
        with self.assertRaisesRegex(tarvik.Error, "falla provocada"):
            ambiente.NuevoId("Prueba")
        self.anf.respuestas.append(True)
        self.assertEqual((ambiente.Pregunta("¿Sí?"), ambiente.Pregunta("¿No?", 2)), (True, False))
        ambiente.MuestraMensaje("Aviso")
        ambiente.MuestraMensaje("Alto", estilo=16)
        self.assertEqual([(m.clase, m.texto, m.estilo, m.respuesta) for m in self.anf.mensajes],
                         [("pregunta", "¿Sí?", 1, True), ("pregunta", "¿No?", 2, False),
                          ("mensaje", "Aviso", 64, None), ("mensaje", "Alto", 16, None)])
        self.assertTrue(ambiente.FechaValida(HOY.date()))
        with self.assertRaises(tarvik.Error):
            ambiente.FechaValida("ayer")

    def test_movements_take_what_they_are_told_and_nothing_else(self):
        movimiento = self.anf.Ambiente.NuevoMovimiento()
        for nombre, valor in (("Cantidad", "tres"), ("Movimiento", 1.5), ("NoHay", 1)):
            with self.subTest(nombre), self.assertRaises((TypeError, AttributeError)):
                setattr(movimiento, nombre, valor)
        with self.assertRaises(AttributeError):
            movimiento.Cantidad
        with self.assertRaisesRegex(tarvik.Error, "entrada o de salida"):
            movimiento.Afecta()
        movimiento.EntSal, movimiento.Articulo, movimiento.Cantidad, movimiento.Precio = "E", "MAR-16", 2, 1.5
        movimiento.Aplica = False
        self.assertEqual(movimiento.Afecta(), 3.0)
        self.assertEqual((self.existencia("MAR-16", 1), len(self.anf.movimientos)), (10, 1))


if __name__ == "__main__":
    unittest.main()
