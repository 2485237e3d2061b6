"""The routines of examples/ganchos_estaciones: a station transfer is written, left pending and closed."""

import datetime
import sys
import unittest

import tarvik

from caso_estaciones import HOY, Caso


class Captura(Caso):
    def test_the_screen_opens_with_its_columns_and_its_tables(self):
        forma = self.pantalla()
        rejilla = forma.grid
        self.assertEqual((rejilla.Rows, rejilla.Cols, rejilla.FixedRows), (1, 3, 1))
        self.assertEqual([rejilla.TextMatrix(0, c) for c in range(3)], ["Artículo", "Descripción", "Cantidad"])
        self.assertGreater(rejilla.ColWidth(1), rejilla.ColWidth(2))
        self.assertEqual((forma.Id, forma.DTPicker1.Value), (0, HOY.date()))
        self.assertEqual(self.guardados(), [])
        self.assertEqual(self.anf.sql("SELECT estacion, almacen FROM almacen_de_estacion ORDER BY estacion"),
                         [{"estacion": "E1", "almacen": 1}, {"estacion": "E2", "almacen": 2},
                          {"estacion": "E3", "almacen": 2}])

    def test_a_warehouse_that_the_shop_has_assigned_stays(self):
        self.pantalla().cierra()
        self.anf.sql("UPDATE almacen_de_estacion SET almacen = 1 WHERE estacion = 'E3'")
        self.pantalla()
        self.assertEqual(self.anf.sql("SELECT almacen FROM almacen_de_estacion WHERE estacion = 'E3'"),
                         [{"almacen": 1}])

    def test_an_assignment_that_the_shop_has_taken_away_stays_away(self):
        self.pantalla().cierra()
        self.anf.sql("DELETE FROM almacen_de_estacion WHERE estacion = 'E3'")
        self.pantalla()
        self.assertEqual(self.anf.sql("SELECT estacion FROM almacen_de_estacion ORDER BY estacion"),
                         [{"estacion": "E1"}, {"estacion": "E2"}])

    def test_a_base_from_before_the_warehouses_stood_in_the_transfer(self):
        self.anf.sql("CREATE TABLE traspaso_estacion (traspaso INTEGER PRIMARY KEY, entrega TEXT, recibe TEXT, "
                     "fecha DATE, estado TEXT, usuario TEXT, estacion TEXT, captura INTEGER, confirma INTEGER)")
        self.anf.sql("INSERT INTO traspaso_estacion VALUES (1, 'E1', 'E2', '2024-03-05', 'PE', 'BETO', 'E1', 1, 5)")
        forma = self.pantalla(1)
        self.assertEqual(forma.Caption, "Traspaso entre estaciones 1: confirmación empezada")
        forma = self.nueva()
        forma.clic(forma.cmdConfirmar)
        self.assertEqual(self.anf.sql("SELECT de, a FROM traspaso_estacion WHERE estado = 'CO'"), [{"de": 1, "a": 2}])

    def test_a_ledger_with_a_line_twice_does_not_keep_the_screen_from_opening(self):
        for _ in range(2):
            self.anf.sql("INSERT INTO movsinv (operacion, movimiento, ent_sal, id_salida) VALUES ('TE', 50, 'S', 1)")
        forma = self.nueva()
        forma.clic(forma.cmdConfirmar)
        self.assertEqual(self.guardados(), [(1, "CO", "E1", "E2")])

    def test_articles_go_from_the_keyboard_to_the_grid_and_equal_ones_add_up(self):
        forma = self.nueva(MAR_16="3", FOC_9W="0.1")
        self.renglon(forma, "FOC-9W", "0.2")
        self.renglon(forma, "MAR-16", "1,000")
        self.assertEqual(self.renglones(forma), [("MAR-16", "Martillo de uña 16 oz mango de fibra", "1003"),
                                                 ("FOC-9W", "Foco LED 9 W luz fría", "0.3")])
        self.assertEqual([forma.txtFields[i].Text for i in (2, 3, 4)], ["", "", ""])
        self.assertEqual(forma.ActiveControl, forma.txtFields[2])
        self.assertEqual(self.textos(), [])

    def test_leaving_the_article_shows_its_description(self):
        forma = self.pantalla()
        self.teclea_en(forma, 2, "TAL-12")
        self.assertEqual(forma.txtFields[3].Text,
                         self.anf.sql("SELECT descrip FROM prods WHERE articulo = 'TAL-12'")[0]["descrip"])
        self.assertEqual(forma.ActiveControl, forma.txtFields[4])

    def test_an_unknown_article_is_told_once_and_the_field_keeps_it(self):
        forma = self.pantalla()
        self.teclea_en(forma, 2, "NO-HAY")
        self.assertEqual(self.textos(), ["No existe el artículo NO-HAY."])
        self.assertEqual((forma.ActiveControl, forma.txtFields[2].Text, forma.txtFields[3].Text),
                         (forma.txtFields[2], "NO-HAY", ""))
        forma.clic(forma.Command1)
        self.assertEqual(self.textos()[1:], ["No existe el artículo NO-HAY."])
        self.assertEqual(self.renglones(forma), [])

    def test_an_article_whose_key_has_quotes_and_braces(self):
        clave = "A'{0}--B"
        self.anf.sql("INSERT INTO prods (articulo, descrip) VALUES (?, 'Pieza')", clave)
        forma = self.nueva()
        self.renglon(forma, clave, "2")
        self.assertEqual(self.renglones(forma)[-1], (clave, "Pieza", "2"))
        forma.clic(forma.cmdPendiente)
        self.assertEqual(self.anf.sql("SELECT articulo FROM traspaso_partida ORDER BY partida")[-1],
                         {"articulo": clave})

    def test_unknown_stations_are_told(self):
        forma = self.pantalla()
        self.teclea_en(forma, 0, "E9")
        self.assertEqual((self.textos(), forma.ActiveControl), (["No existe la estación E9."], forma.txtFields[0]))

    def test_quantities_that_are_none_are_refused(self):
        forma = self.nueva()
        for texto in ("", "0", "0.00", "tres", "-2", "1,2", "1e3", "nan", "1234567890123456"):
            self.anf.mensajes.clear()
            forma.txtFields[2].Text = "FOC-9W"
            forma.txtFields[4].Text = texto
            forma.clic(forma.Command1)
            self.assertEqual(self.textos(), ["La cantidad debe ser un número mayor que cero."], texto)
            self.assertEqual((forma.ActiveControl, forma.txtFields[2].Text), (forma.txtFields[4], "FOC-9W"))
        self.assertEqual(len(self.renglones(forma)), 1)

    def test_a_line_without_an_article_is_refused(self):
        forma = self.pantalla()
        forma.clic(forma.Command1)
        self.assertEqual((self.textos(), forma.ActiveControl), (["Escriba el artículo."], forma.txtFields[2]))


class Pendiente(Caso):
    def test_made_left_pending_reopened_and_changed(self):
        numero = self.pendiente(MAR_16=3, FOC_9W="1.5")
        self.assertEqual(self.aviso(), f"El traspaso {numero} quedó pendiente.")
        self.assertEqual(self.guardados(), [(1, "PE", "E1", "E2")])
        self.sin_cambios()
        forma = self.pantalla(numero)
        self.assertEqual(forma.Caption, "Traspaso entre estaciones 1: pendiente")
        self.assertEqual((forma.txtFields[0].Text, forma.txtFields[1].Text, forma.DTPicker1.Value),
                         ("E1", "E2", HOY.date()))
        self.assertEqual([(r[0], r[2]) for r in self.renglones(forma)], [("MAR-16", "3"), ("FOC-9W", "1.5")])
        self.renglon(forma, "MAR-16", "1")
        forma.DTPicker1.Value = datetime.date(2024, 3, 1)
        forma.clic(forma.cmdPendiente)
        self.assertFalse(forma.abierta)
        forma = self.pantalla(numero)
        self.assertEqual(([r[2] for r in self.renglones(forma)], forma.DTPicker1.Value),
                         (["4", "1.5"], datetime.date(2024, 3, 1)))
        self.assertEqual(len(self.guardados()), 1)
        self.assertEqual(self.anf.sql("SELECT COUNT(*) AS n FROM traspaso_partida"), [{"n": 2}])

    def test_a_deleted_line_is_gone_when_it_is_stored(self):
        numero = self.pendiente(MAR_16=3, FOC_9W=1, TAL_12=2)
        forma = self.pantalla(numero)
        forma.clic_celda(forma.grid, 2, 0)
        forma.tecla("Delete")  # no answer is No
        self.assertEqual(len(self.renglones(forma)), 3)
        self.anf.respuestas.append(True)
        forma.tecla("Delete")
        self.assertEqual([r[0] for r in self.renglones(forma)], ["MAR-16", "TAL-12"])
        forma.clic(forma.cmdPendiente)
        self.assertEqual([r[0] for r in self.renglones(self.pantalla(numero))], ["MAR-16", "TAL-12"])

    def test_what_cannot_be_stored_keeps_the_screen(self):
        def sin(accion):
            forma = self.nueva()
            accion(forma)
            return forma

        casos = [
            (lambda f: setattr(f.txtFields[0], "Text", ""), "Escriba la estación que entrega."),
            (lambda f: setattr(f.txtFields[1], "Text", " "), "Escriba la estación que recibe."),
            (lambda f: setattr(f.txtFields[1], "Text", "E9"), "No existe la estación E9."),
            (lambda f: setattr(f.txtFields[1], "Text", "E1"), "La estación que entrega y la que recibe son la misma."),
            (lambda f: setattr(f.DTPicker1, "Value", None), "Indique la fecha de aplicación."),
            (lambda f: f.grid.RemoveItem(1), "El traspaso no tiene artículos."),
            (lambda f: setattr(f.txtFields[2], "Text", "FOC-9W"),
             "Hay un artículo en captura que no se ha agregado. Agréguelo o bórrelo."),
        ]
        for accion, texto in casos:
            for boton in ("cmdPendiente", "cmdConfirmar"):
                with self.subTest(texto, boton=boton):
                    forma = sin(accion)
                    self.anf.mensajes.clear()
                    forma.clic(getattr(forma, boton))
                    self.assertEqual([(m.texto, m.estilo) for m in self.anf.mensajes], [(texto, 16)])
                    self.assertTrue(forma.abierta)
                    self.assertFalse(forma.CancelaProceso)
        self.assertEqual(self.guardados(), [])
        self.sin_cambios()

    def test_the_field_at_fault_gets_the_cursor(self):
        forma = self.nueva()
        forma.txtFields[1].Text = "E9"
        forma.clic(forma.cmdPendiente)
        self.assertEqual(forma.ActiveControl, forma.txtFields[1])

    def test_two_stations_with_the_same_transfer_the_slower_one_is_refused(self):
        numero = self.pendiente()
        otro = self.abre(usuario="CARLA", estacion="E2")
        lenta, rapida = self.pantalla(numero), self.pantalla(numero, otro)
        self.renglon(rapida, "FOC-9W", "2")
        rapida.clic(rapida.cmdPendiente)
        self.renglon(lenta, "TAL-12", "5")
        lenta.clic(lenta.cmdPendiente)
        self.assertTrue(lenta.abierta)
        self.assertIn("fue cambiado por CARLA en E2", self.aviso())
        self.assertEqual([r[0] for r in self.renglones(self.pantalla(numero))], ["MAR-16", "FOC-9W"])
        self.assertEqual(self.anf.sql("SELECT COUNT(*) AS n FROM traspaso_partida"), [{"n": 2}])
        lenta.cierra()  # what was refused is not saved: no answer is No
        self.assertEqual((self.anf.mensajes[-1].clase, lenta.abierta), ("pregunta", True))

    def test_numbers_are_those_of_a_series_and_a_taken_one_is_passed_over(self):
        self.assertEqual(self.pendiente(), 1)
        self.anf.sql("INSERT INTO traspaso_estacion (traspaso, captura) VALUES (2, 0)")
        self.assertEqual(self.pendiente(), 3)

    def test_a_series_that_was_put_back_takes_nobodys_lines(self):
        primero = self.pendiente(MAR_16=3, FOC_9W=2)
        self.anf.sql("UPDATE traspaso_partida SET captura = captura + 1")
        self.anf.sql("UPDATE traspaso_estacion SET captura = captura + 1")
        segundo = self.pendiente(TAL_12=1)  # the series gives what is taken
        self.assertEqual([[r[0] for r in self.renglones(self.pantalla(n))] for n in (primero, segundo)],
                         [["MAR-16", "FOC-9W"], ["TAL-12"]])

    def test_lines_that_cannot_be_cleared_away_do_not_undo_the_save(self):
        numero = self.pendiente()
        forma = self.pantalla(numero)
        self.renglon(forma, "FOC-9W", "2")
        self.anf.falla("DELETE FROM traspaso_partida")
        forma.clic(forma.cmdPendiente)
        self.assertEqual((self.aviso(), self.anf.no_atrapados, forma.abierta),
                         (f"El traspaso {numero} quedó pendiente.", [], False))
        self.assertEqual([r[0] for r in self.renglones(self.pantalla(numero))], ["MAR-16", "FOC-9W"])

    def test_a_header_that_the_base_refuses_is_made_at_the_next_try(self):
        forma = self.nueva()
        self.anf.falla("INSERT INTO traspaso_estacion")
        forma.clic(forma.cmdPendiente)
        self.assertEqual((self.anf.no_atrapados, forma.Id, self.guardados()), (["falla provocada"], 0, []))
        forma.clic(forma.cmdPendiente)
        self.assertEqual([fila[1:] for fila in self.guardados()], [("PE", "E1", "E2")])

    def test_what_runs_while_the_refusal_is_up_does_not_let_the_screen_go(self):
        class Rechaza:
            def __init__(self, forma):
                self.forma = forma

            def MuestraMensaje(self, *_):
                self.forma.CancelaProceso = False

        class Falla:
            def MuestraMensaje(self, *_):
                raise tarvik.Error("sin pantalla")

        pantalla, traspasos = sys.modules["pantalla_de_traspaso"], sys.modules["traspasos"]
        forma = self.pantalla()
        with pantalla.dice_el_rechazo(forma, Rechaza(forma), veta=True):
            raise traspasos.Rechazo("No.")
        self.assertTrue(forma.CancelaProceso)
        forma.CancelaProceso = False
        with self.assertRaises(tarvik.Error), pantalla.dice_el_rechazo(forma, Falla(), veta=True):
            raise traspasos.Rechazo("No.")
        self.assertTrue(forma.CancelaProceso)

    def test_an_unknown_number_opens_nothing(self):
        with self.assertRaisesRegex(tarvik.Error, "No existe el traspaso 77"):
            self.pantalla(77)
        self.assertEqual(self.anf.pantallas, [])

    def test_a_base_that_refuses_the_save_leaves_the_stored_transfer_whole(self):
        numero = self.pendiente()
        for sentencia in ("INSERT INTO traspaso_partida", "UPDATE traspaso_estacion"):
            forma = self.pantalla(numero)
            self.renglon(forma, "FOC-9W", "2")
            self.anf.falla(sentencia)
            forma.clic(forma.cmdPendiente)
            self.assertEqual(self.anf.no_atrapados.pop(), "falla provocada")
            self.assertTrue(forma.abierta)
            self.assertEqual([r[0] for r in self.renglones(self.pantalla(numero))], ["MAR-16"], sentencia)
            forma.clic(forma.cmdPendiente)  # and the screen may try again
            self.assertEqual(self.aviso(), f"El traspaso {numero} quedó pendiente.")
            forma = self.pantalla(numero)
            forma.grid.RemoveItem(2)
            forma.clic(forma.cmdPendiente)


class Cierre(Caso):
    def test_nothing_unsaved_is_closed_without_a_word(self):
        numero = self.pendiente()
        self.anf.mensajes.clear()
        for forma in (self.pantalla(), self.pantalla(numero)):
            forma.cierra()
            self.assertFalse(forma.abierta)
        forma = self.pantalla(numero)
        forma.clic(forma.cmdCancelar)
        self.assertFalse(forma.abierta)
        self.assertEqual(self.anf.mensajes, [])

    def test_cancelling_asks_once_and_a_no_stays(self):
        for cambio in ("renglon", "captura"):
            forma = self.nueva() if cambio == "renglon" else self.pantalla()
            if cambio == "captura":
                forma.teclea(forma.txtFields[4], "7")
            self.anf.mensajes.clear()
            forma.clic(forma.cmdCancelar)
            self.assertTrue(forma.abierta)
            self.assertEqual([(m.clase, m.respuesta) for m in self.anf.mensajes], [("pregunta", False)])
            self.anf.respuestas.append(True)
            forma.clic(forma.cmdCancelar)
            self.assertFalse(forma.abierta)
            self.assertEqual([m.respuesta for m in self.anf.mensajes], [False, True])
        self.assertEqual(self.guardados(), [])

    def test_the_close_box_asks_too(self):
        forma = self.nueva()
        forma.cierra()
        self.assertTrue(forma.abierta)
        self.assertFalse(forma.CancelaProceso)
        self.anf.respuestas.append(True)
        forma.cierra()
        self.assertFalse(forma.abierta)

    def test_nobody_is_kept_from_cancelling_by_a_wrong_article(self):
        forma = self.pantalla()
        forma.teclea(forma.txtFields[2], "NO-HAY")
        self.anf.respuestas.append(True)
        forma.clic(forma.cmdCancelar)
        self.assertFalse(forma.abierta)
        self.assertEqual([m.clase for m in self.anf.mensajes], ["pregunta"])


if __name__ == "__main__":
    unittest.main()
