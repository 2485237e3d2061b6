"""What scripts written by others rely on: what the host keeps of what happened, and what it provokes."""

import datetime
import threading
import unittest

import tarvik

from casos import HOY, Caso


class Registro(Caso):
    """What the host keeps of what happened, and what it provokes."""

    def setUp(self):
        super().setUp()
        self.siembra()

    def test_sql_gives_dicts_with_lower_case_names_and_takes_values(self):
        filas = self.anf.sql("SELECT articulo AS Clave, PRECIO1 FROM prods WHERE precio1 > ? AND articulo = ?", 5, "A-100")
        self.assertEqual(filas, [{"clave": "A-100", "precio1": 100.0}])
        self.anf.sql("INSERT INTO entradas (entrada, f_emision) VALUES (?, ?)", 9, datetime.date(2024, 2, 29))
        self.assertEqual(self.anf.sql("SELECT f_emision, importe FROM entradas"),
                         [{"f_emision": "2024-02-29", "importe": None}])
        self.anf.sql("UPDATE entradas SET f_emision = ? WHERE entrada = ?", None, 9)
        self.assertEqual(self.anf.sql("SELECT f_emision FROM entradas"), [{"f_emision": None}])
        with self.assertRaises(tarvik.Error):
            self.anf.sql("SELECT * FROM nohay")

    def test_statements_are_those_of_the_system_alone(self):
        self.anf.sentencias.clear()
        self.anf.sql("SELECT * FROM prods")
        self.assertEqual(self.anf.sentencias, [])
        self.anf.EntradasSalidas().NuevaEntrada()
        self.assertEqual(self.anf.sentencias[0], "SELECT * FROM entradas WHERE entrada = 0")
        forma = self.anf.pantallas[-1]
        self.anf.sentencias.clear()
        self.assertEqual(self.anf.sentencias, [])
        forma.teclea(forma.txtFields[0], "COM")
        self.assertEqual(self.anf.sentencias[-1],
                         "SELECT * FROM tipominv WHERE tipo_movim = 'COM' AND ent_sal = 'E'")
        self.anf.sentencias.clear()
        self.partida(forma)
        enviadas = "\n".join(self.anf.sentencias)
        self.assertIn("INSERT INTO entradas (entrada, ocupado, f_emision, tipo_doc, ", enviadas)
        self.assertIn("INSERT INTO entpart (id_entrada, entrada, tipo_doc, no_referen, articulo, ", enviadas)
        self.anf.sentencias.clear()
        self.afecta(forma)
        enviadas = "\n".join(self.anf.sentencias)
        self.assertRegex(enviadas, r"UPDATE entradas SET tipo_doc = 'COM', ocupado = 0, .* WHERE entrada = 1")
        self.assertIn("UPDATE entradas SET ocupado = 0 WHERE entrada = 1", self.anf.sentencias)
        for propia in ("INSERT INTO movsinv", "existenciaalmacen", "FROM mensajes", "cerrado", "series"):
            self.assertNotIn(propia, enviadas)

    def test_the_builder_doubles_a_quote(self):
        forma = self.nueva()
        forma.teclea(forma.RichTextBox2, "O'Brien")
        self.partida(forma)
        self.assertTrue(any("'O''Brien'" in texto for texto in self.anf.sentencias))
        self.assertEqual(self.anf.sql("SELECT observ FROM entradas"), [{"observ": "O'Brien"}])

    def test_the_builder_sends_nothing_for_an_update_without_a_field(self):
        forma = self.nueva()
        self.partida(forma)
        forma.fg2.Col = 3
        self.anf.sentencias.clear()
        forma.SalvaCambios()
        self.assertEqual((self.anf.sentencias, self.textos()), ([], []))
        forma.fg2.Col = 1
        forma.SalvaCambios()
        self.assertEqual(self.anf.sentencias, ["UPDATE entpart SET cantidad = 3 WHERE id_entrada = 1"])

    def test_messages_have_class_numbers_style_and_answer(self):
        forma = self.nueva()
        self.partida(forma, articulo="NOHAY", precio="1")
        mensaje = self.anf.mensajes[-1]
        self.assertEqual((mensaje.clase, mensaje.numeros, mensaje.numero, mensaje.estilo, mensaje.respuesta),
                         ("mensaje", [235], 235, 64, None))
        self.assertEqual(mensaje.texto, self.anf.mensaje(235))
        forma.tecla("F5", forma.txtFields[0])
        pregunta = self.anf.mensajes[-1]
        self.assertEqual((pregunta.clase, pregunta.numero, pregunta.estilo, pregunta.respuesta),
                         ("pregunta", 726, 1, False))
        self.assertTrue(forma.abierta)
        self.anf.mensajes.clear()
        self.anf.falla("tipominv")
        forma.ValidaTab1()
        caja = self.anf.mensajes[0]
        self.assertEqual((caja.clase, caja.numeros, caja.numero, caja.estilo), ("caja", [], None, 0))

    def test_a_message_without_text_shows_its_number(self):
        self.anf.sql("DELETE FROM mensajes WHERE numero = 235")
        forma = self.nueva()
        self.partida(forma, articulo="NOHAY", precio="1")
        self.assertEqual(self.anf.mensajes[-1].texto, "235")

    def test_answers_are_taken_from_the_front(self):
        forma = self.nueva()
        self.partida(forma)
        self.anf.respuestas.extend([False, True])
        forma.tecla("F5", forma.txtFields[0])
        self.assertTrue(forma.abierta)
        self.assertEqual(self.anf.respuestas, [True])
        forma.tecla("F5", forma.txtFields[0])
        self.assertFalse(forma.abierta)

    def test_beeps_lists_and_pickers(self):
        forma = self.nueva()
        self.partida(forma)
        forma.clic_celda(forma.fg2, 1, 0)
        forma.tecla("Space")
        self.assertEqual(self.anf.pitidos, 1)
        forma.tecla("Down", forma.txtFields[14])
        forma.tecla("Down", forma.txtFields[5])
        self.assertEqual(self.anf.listas, [("txtFields", 14)])
        forma.tecla("F2", forma.txtFields[14])
        forma.doble_clic(forma.txtFields[6])
        forma.tecla("Down", forma.txtFields[4])
        self.assertEqual(self.anf.selectores, [("BuscadorCatalogo", "Almacenes", "txtFields", 14),
                                               ("AuxiliarNumerico", "", "txtFields", 6),
                                               ("ListaArticulos", "", "txtFields", 4)])

    def test_a_picker_routine_gives_the_text_of_the_field(self):
        vistos = []
        forma = self.nueva()

        def elige(clase, titulo, campo):
            vistos.append((clase, titulo, campo.Name, campo.Index))
            return "A-100"

        self.anf.al_mostrar_selector = elige
        forma.doble_clic(forma.txtFields[4])
        self.assertEqual(forma.txtFields[4].Text, "A-100")
        self.assertEqual(vistos, [("BuscadorCatalogo", "Articulos", "txtFields", 4)])
        self.anf.al_mostrar_selector = lambda *_: None
        forma.doble_clic(forma.txtFields[4])
        self.assertEqual(forma.txtFields[4].Text, "A-100")

    def test_hooks_run_and_every_fired_key_is_listed(self):
        vistas = []
        self.anf.ganchos["ENTRADA001"] = lambda forma, ambiente: vistas.append((forma.Name, ambiente.Usuario))
        forma = self.nueva()
        self.assertEqual(vistas, [("frmEntradasWizard", "ANA")])
        self.assertIn(("ENTRADA001", None), self.anf.ganchos_disparados)
        self.anf.ganchos_disparados.clear()
        forma.enfoca(forma.txtFields[5])
        self.assertEqual(self.anf.ganchos_disparados, [("ENTRADA007", 14), ("ENTRADA008", 5)])
        self.anf.ganchos_disparados.clear()
        forma.txtFields[4].Text = "A-100"
        forma.PonDescripcion()
        self.assertEqual(self.anf.ganchos_disparados, [("ENTRADA009", None)])
        del self.anf.ganchos["ENTRADA001"]
        self.anf.EntradasSalidas().NuevaEntrada()
        self.assertEqual(len(vistas), 1)

    def test_hooks_change_the_screen_and_cancel(self):
        self.anf.ganchos["ENTRADA005"] = lambda forma, ambiente: setattr(forma, "CancelaProceso", True)
        forma = self.nueva()
        self.partida(forma)
        self.assertEqual((forma.Modo, forma.CancelaProceso, forma.txtFields[4].Text), ("ALTA", False, ""))
        self.anf.ganchos["ENTRADA005"] = lambda forma, ambiente: setattr(forma.txtFields[1], "Text", "Otra")
        self.partida(forma)
        self.assertEqual(self.anf.sql("SELECT observ FROM entpart"), [{"observ": "Otra"}])

    def test_what_a_routine_raises_is_an_error_of_its_key(self):
        def falla(forma, ambiente):
            raise ValueError("no me gusta")

        self.anf.ganchos["ENTRADA005"] = falla
        forma = self.nueva()
        self.partida(forma)  # trapped and reported
        self.assertIn("Description: no me gusta código duro: 0", self.textos()[-1])
        self.assertEqual(len(self.anf.sql("SELECT * FROM entpart")), 1)
        self.anf.ganchos["ENTRADA008"] = falla
        forma.enfoca(forma.txtFields[5])  # no trap: it leaves the event
        self.assertEqual(self.anf.no_atrapados, ["no me gusta"])
        self.anf.ganchos["ENTRADAS011"] = falla
        with self.assertRaisesRegex(tarvik.Error, "no me gusta"):
            forma.Command3_Click()
        self.anf.ganchos["ENTRADA001"] = falla  # ignored from the end of the load on
        self.anf.mensajes.clear()
        self.anf.EntradasSalidas().NuevaEntrada()
        self.assertEqual(self.textos(), [])

    def test_keys_after_posting(self):
        self.anf.EntradasSalidas().NuevaEntrada()
        forma = self.anf.pantallas[-1]
        forma.teclea(forma.txtFields[0], "A++")
        self.partida(forma)
        self.anf.ganchos_disparados.clear()
        self.afecta(forma)
        self.assertEqual([clave for clave, _ in self.anf.ganchos_disparados][-3:],
                         ["ENTRADA014", "ENTRADA010", "ENTRADA006"])

    def test_movements_hold_what_was_set(self):
        self.anf.Ambiente.ClaveLocal = "L1"
        self.recibida(cantidad="3", precio="10")
        movimiento = dict(self.anf.movimientos[0])
        self.assertEqual(movimiento.pop("Ambiente").Usuario, "ANA")
        self.assertEqual(movimiento, {
            "EntSal": "E", "ClaveLocal": "L1", "Fecha": HOY.date(), "Almacen": 1.0, "Movimiento": 1, "TipoDoc": "COM",
            "Usuario": "ANA", "Documento": "1", "Operacion": "EN", "Articulo": "A-100", "Cantidad": 3.0, "Precio": 10.0,
            "IdEntrada": 1, "ClaveAdd": "", "Aplica": True, "resultado": 30.0})

    def test_posting_holds_whole_or_not_at_all(self):
        forma = self.nueva()
        self.partida(forma, cantidad="3")
        self.partida(forma, cantidad="4")
        self.anf.falla_servicio("Afecta")
        self.afecta(forma)
        self.assertEqual(len(self.anf.movimientos), 1)  # the failed one is not listed
        self.assertEqual(self.anf.sql("SELECT cantidad FROM movsinv"), [{"cantidad": 4.0}])
        self.assertEqual(self.anf.sql("SELECT existencia, alm1 FROM existenciaalmacen INNER JOIN prods "
                                      "ON prods.articulo = existenciaalmacen.articulo"),
                         [{"existencia": 4.0, "alm1": 4.0}])

    def test_a_warehouse_without_a_column_keeps_its_stock_all_the_same(self):
        forma = self.nueva()
        forma.txtFields[14].Text = "12"
        self.partida(forma)
        self.afecta(forma)
        self.assertEqual(self.anf.sql("SELECT almacen, existencia FROM existenciaalmacen"),
                         [{"almacen": 12.0, "existencia": 3.0}])
        self.assertEqual(self.anf.mensajes[-1].clase, "pregunta")

    def test_printed_shown_and_returned(self):
        self.anf.EntradasSalidas().NuevaEntrada()
        forma = self.anf.pantallas[-1]
        self.assertEqual(self.anf.presentadas, [forma])
        forma.teclea(forma.txtFields[0], "COM")
        self.partida(forma)
        self.afecta(forma)
        self.assertEqual(self.anf.impresos, [("entrada", 1)])
        self.assertEqual(self.anf.regresadas, ["frmMaster"])
        self.assertEqual(self.anf.navegado, [])
        self.assertTrue((self.carpeta / "datos" / "impresos" / "entrada-1.html").exists())

    def test_a_load_hook_that_cancels_skips_the_presentation_and_not_the_show(self):
        self.anf.ganchos["ENTRADA001"] = lambda forma, ambiente: setattr(forma, "CancelaProceso", True)
        self.anf.EntradasSalidas().NuevaEntrada()
        forma = self.anf.pantallas[-1]
        self.assertEqual((self.anf.presentadas, forma.Visible, forma.CancelaProceso), ([], True, False))

    def test_lists_can_be_cleared_and_replaced(self):
        self.recibida()
        for nombre in ("sentencias", "mensajes", "ganchos_disparados", "movimientos", "impresos", "presentadas",
                       "regresadas"):
            lista = getattr(self.anf, nombre)
            self.assertGreater(len(lista), 0, nombre)
            lista.clear()
            self.assertEqual(getattr(self.anf, nombre), [], nombre)
        self.anf.respuestas = [True]
        self.assertEqual(self.anf.respuestas, [True])

    def test_the_clock_stands_still_and_rules_dates_and_log(self):
        forma = self.nueva()
        self.assertEqual(forma.DTPicker1.Value, HOY.date())
        self.partida(forma)
        self.assertEqual(self.anf.sql("SELECT f_emision, usuhora FROM entradas"),
                         [{"f_emision": "2024-03-05", "usuhora": "14:03:22"}])
        self.anf.ahora = None
        self.anf.EntradasSalidas().NuevaEntrada()
        self.assertLess(abs((self.anf.pantallas[-1].DTPicker1.Value - datetime.date.today()).days), 2)

    def test_picking_a_concept_goes_back_to_the_working_date(self):
        forma = self.nueva()
        forma.DTPicker1.Value = datetime.date(2024, 1, 1)
        forma.txtFields[0].Text = "A++"
        self.assertEqual((forma.DTPicker1.Value, forma.RichTextBox3.Text), (HOY.date(), "Sobrante"))

    def test_a_closed_period_refuses_the_date(self):
        self.anf.sql("INSERT INTO movsinv (articulo, f_movim, cerrado) VALUES ('A-100', '2024-03-06', 1)")
        forma = self.nueva()
        self.partida(forma)
        self.afecta(forma)
        self.assertEqual((self.anf.mensajes[-1].clase, self.anf.mensajes[-1].numero), ("mensaje", 253))
        self.assertTrue(forma.abierta)
        self.assertFalse(forma.ValidaFecha())

    def test_provoked_failures_of_statements(self):
        self.anf.falla("into ENTPART", veces=1)
        forma = self.nueva()
        self.anf.sentencias.clear()
        self.partida(forma)
        self.assertEqual(len([s for s in self.anf.sentencias if "INTO entpart" in s]), 1)  # listed, not sent
        self.assertEqual(self.anf.sql("SELECT * FROM entpart"), [])
        self.assertEqual(self.textos()[-1], "14:03:22 Ocurrió un error:\r\nModule: frmEntradasWi\r\n"
                         "Function: NuevaPartida\r\nDescription: falla provocada código duro: 0\r\n")
        bitacora = self.carpeta / "datos" / "web" / "TarvikError05032024.Log"
        self.assertEqual(bitacora.read_bytes().decode(), self.textos()[-1])
        self.anf.falla("tipominv", 2, "sin red")
        forma.ValidaTab1()
        forma.ValidaTab1()
        self.assertEqual(len([texto for texto in self.textos() if "sin red código duro: 0" in texto]), 2)
        self.anf.mensajes.clear()
        self.assertTrue(forma.ValidaTab1())
        self.assertEqual(self.textos(), [])
        with self.assertRaises(tarvik.Error):
            self.anf.falla("(")

    def test_provoked_failures_of_services(self):
        for servicio, funcion in [("NuevoId", "CreaEntrada"), ("ExisteClave", "LlenaPartida")]:
            with self.subTest(servicio):
                forma = self.nueva()
                self.anf.mensajes.clear()
                self.anf.falla_servicio(servicio, texto="se fue la luz")
                self.partida(forma)
                self.assertIn(f"Function: {funcion}\r\nDescription: se fue la luz código duro: 0", "".join(self.textos()))
        self.anf.mensajes.clear()
        self.anf.falla_servicio("PresentaForma")
        self.anf.EntradasSalidas().NuevaEntrada()
        self.assertEqual(self.textos(), [])  # ignored at that point
        forma = self.anf.pantallas[-1]
        self.anf.falla_servicio("BuscaCatalogo")
        forma.enfoca(forma.txtFields[14])
        self.assertEqual(self.anf.no_atrapados, ["falla provocada"])

    def test_events_and_timers_run_on_request(self):
        forma = self.nueva()
        forma.cierra()
        self.anf.procesa_eventos()
        self.assertTrue(forma.abierta)
        self.anf.procesa_eventos(9)
        self.assertTrue(forma.abierta)
        self.anf.procesa_eventos(1)
        self.assertFalse(forma.abierta)

    def test_other_threads_may_use_sql(self):
        vistas = []
        hilo = threading.Thread(target=lambda: vistas.extend(self.anf.sql("SELECT articulo FROM prods")))
        hilo.start()
        hilo.join()
        self.assertEqual(vistas, [{"articulo": "A-100"}])

    def test_series_count_from_1_whatever_rows_there_are(self):
        self.anf.sql("INSERT INTO entradas (entrada) VALUES (50)")
        forma = self.nueva()
        self.partida(forma)
        self.assertEqual(forma.Entrada, 1)

    def test_numeric_and_capital_keys(self):
        forma = self.nueva()
        forma.teclea(forma.txtFields[0], "coñ")
        forma.teclea(forma.txtFields[5], "1a,2.-+é")
        forma.teclea(forma.txtFields[4], "abÑ")
        self.assertEqual([forma.txtFields[i].Text for i in (0, 5, 4)], ["COÑ", "12.-+", "abÑ"])
        forma.teclea(forma.txtFields[6], "1234.5")
        forma.enfoca(forma.txtFields[14])
        self.assertEqual(forma.txtFields[6].Text, "1,234.50")


if __name__ == "__main__":
    unittest.main()
