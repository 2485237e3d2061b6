"""What scripts written by others rely on: the matrix of colours and sizes, inside and outside."""

import signal
import threading
import time
import unittest

import tarvik

from casos_demo import Caso

BLANCO, CIAN = 0xFFFFFF, 0xFFFFE0


def rgb(rojo, verde, azul):
    return rojo | verde << 8 | azul << 16


class MallaInterna(Caso):
    """The matrix, as a script sees it through al_mostrar_modal."""

    def reparte(self, acto, modelo="BOT", cantidad="5", precio="700"):
        forma = self.entrada(modelo, cantidad, precio)
        vistas = []

        def modal(malla):
            vistas.append(malla)
            acto(malla)

        self.anf.al_mostrar_modal = modal
        forma.tecla("F9", forma.txtFields[6])
        self.assertEqual(len(vistas), 1)
        self.malla = vistas[0]
        return forma

    @staticmethod
    def pon(malla, fila, columna, texto):
        malla.clic_celda(malla.fg2, fila, columna)
        for caracter in texto:
            malla.tecla(caracter)
        malla.tecla("Enter")

    def test_what_the_script_raises_before_a_matrix_comes_out_of_its_own_call(self):
        def modal(malla):
            raise ValueError("no quiero")

        self.anf.al_mostrar_modal = modal
        for llama in (lambda forma: forma.tecla("F9", forma.txtFields[6]), lambda forma: forma.LlenaPartida(),
                      lambda forma: forma.BuscaModelo(), lambda forma: forma.clic(forma.Command6)):
            forma = self.entrada("BOT", "5", "700")
            with self.assertRaisesRegex(ValueError, "no quiero"):
                llama(forma)
            forma.enfoca(forma.txtFields[4])  # and of no other
            forma.cierra()
            self.anf.procesa_eventos(20)

    def test_a_control_of_another_screen_is_refused(self):
        una, otra = self.entrada(), self.entrada()
        for llama in (una.enfoca, una.clic, una.doble_clic, lambda control: una.teclea(control, "x"),
                      lambda control: una.tecla("Enter", control)):
            with self.assertRaises(tarvik.Error):
                llama(otra.txtFields[5])
        self.assertEqual(otra.txtFields[5].Text, "")

    def test_the_form_is_a_screen_like_any_other_while_it_is_shown(self):
        def acto(malla):
            self.assertEqual((malla.Name, malla.Caption, malla.Tag), ("frmMallaModelos", "Modelo: BOT", "5"))
            self.assertTrue(malla.abierta and malla.Visible)
            self.assertEqual(self.anf.pantallas[-1], malla)
            self.assertEqual([malla.fg2.Rows, malla.fg2.Cols, malla.fg2.FixedRows, malla.fg2.FixedCols], [6, 7, 2, 2])
            self.assertEqual((malla.fg2.Row, malla.fg2.Col), (3, 3))
            self.assertEqual(malla.txtDescrip.Text, "Bota industrial")
            self.assertEqual((malla.txtRemanente.Text, malla.txtRemanente.ForeColor), ("5", rgb(192, 0, 0)))
            self.assertEqual([malla.cmdAceptar.Caption, malla.cmdCancelar.Caption, malla.lblCantidadRestante.Caption],
                             ["&Aceptar", "&Cancelar", "&Cantidad restante"])
            self.assertEqual((malla.cmdAceptar.Enabled, malla.txtCelda.Visible), (False, False))

        self.reparte(acto)
        self.assertFalse(self.malla.abierta)
        self.assertNotIn(self.malla, self.anf.pantallas)
        self.assertEqual(self.malla.Caption, "Modelo: BOT")  # readable after its end

    def test_the_grid_holds_colours_by_sizes_between_spacers(self):
        def acto(malla):
            rejilla = malla.fg2
            self.assertEqual([[rejilla.TextMatrix(f, c) for c in range(3, 6)] for f in (0, 1)],
                             [["26", "27", "28"], ["26 cm", "27 cm", "28 cm"]])
            self.assertEqual([[rejilla.TextMatrix(f, c) for c in (0, 1)] for f in (3, 4)],
                             [["Azul marino", "AZ"], ["Negro", "NE"]])
            self.assertEqual([rejilla.BackColor(f, 0) for f in (3, 4)], [0x6B2B1F, 0x202020])
            self.assertEqual((rejilla.RowHeight(2), rejilla.RowHeight(5), rejilla.ColWidth(2), rejilla.ColWidth(6)),
                             (10, 10, 10, 10))
            self.assertEqual((rejilla.ColWidth(0), rejilla.ColWidth(1)), (1600, 360))

        self.reparte(acto)

    def test_blocked_are_the_spacers_and_the_combinations_without_an_article(self):
        self.anf.sql("UPDATE prods SET modelo = '' WHERE articulo = 'BOT-NE-27'")

        def acto(malla):
            rejilla = malla.fg2
            libres = {(f, c) for f in range(rejilla.Rows) for c in range(rejilla.Cols)
                      if f >= 2 and c >= 2 and not rejilla.bloqueada(f, c)}
            self.assertEqual(libres, {(3, 3), (3, 4), (3, 5), (4, 3), (4, 5)})
            self.assertFalse(rejilla.bloqueada(0, 3) or rejilla.bloqueada(3, 0))  # headers
            # The colour tells them apart only where it is another one than that of an untouched cell.
            self.assertEqual((malla.clrCeldaBloqueada, rejilla.BackColor(4, 4), rejilla.BackColor(3, 3)), (0, 0, 0))
            malla.clrCeldaBloqueada = 0x123456
            self.assertEqual(malla.clrCeldaBloqueada, 0x123456)
            malla.doble_clic_celda(rejilla, 4, 4)
            self.assertFalse(malla.txtCelda.Visible)
            malla.doble_clic_celda(rejilla, 4, 5)
            self.assertTrue(malla.txtCelda.Visible)

        self.reparte(acto)

    def test_the_cursor_never_rests_on_a_blocked_cell(self):
        def acto(malla):
            rejilla = malla.fg2
            rejilla.Col = 5
            malla.tecla("Right", rejilla)  # over the spacer, to the next row's start
            self.assertEqual((rejilla.Row, rejilla.Col), (4, 3))
            rejilla.Row = 2
            self.assertFalse(rejilla.bloqueada(rejilla.Row, rejilla.Col))
            malla.clic_celda(rejilla, 5, 6)
            self.assertFalse(rejilla.bloqueada(rejilla.Row, rejilla.Col))

        self.reparte(acto)

    def test_a_quantity_spread_exactly_becomes_one_line_a_cell_by_columns(self):
        def acto(malla):
            self.pon(malla, 3, 3, "2")
            self.assertEqual((malla.fg2.TextMatrix(3, 3), malla.txtRemanente.Text, malla.cmdAceptar.Enabled),
                             ("2", "3", False))
            self.assertEqual((malla.fg2.Row, malla.fg2.Col), (3, 4))
            self.pon(malla, 3, 4, "4")
            self.assertEqual((malla.txtRemanente.Text, malla.txtRemanente.ForeColor), ("-1", rgb(128, 0, 0)))
            self.pon(malla, 3, 4, "1")
            self.pon(malla, 4, 3, "2")
            self.assertEqual((malla.txtRemanente.Text, malla.txtRemanente.ForeColor), ("0", rgb(0, 128, 0)))
            self.assertEqual(malla.ActiveControl, malla.cmdAceptar)
            malla.tecla("Enter")
            self.assertEqual((malla.Tag, malla.Visible), ("Hecho", False))

        forma = self.reparte(acto)
        self.assertFalse(self.malla.abierta)
        self.assertEqual(self.partidas(), [("BOT-AZ-26", 2, 700), ("BOT-NE-26", 2, 700), ("BOT-AZ-27", 1, 700)])
        self.assertEqual((forma.CuantasPartidas(), forma.txtFields[4].Text), (3, ""))
        self.assertEqual(self.textos(), [])

    def test_delete_empties_a_cell_and_closes_accept_again(self):
        def acto(malla):
            self.pon(malla, 3, 3, "5")
            self.assertTrue(malla.cmdAceptar.Enabled)
            malla.clic_celda(malla.fg2, 3, 3)
            malla.tecla("Delete")
            self.assertEqual((malla.fg2.TextMatrix(3, 3), malla.txtRemanente.Text, malla.cmdAceptar.Enabled),
                             ("", "5", False))

        self.reparte(acto)

    def test_the_editor_takes_digits_and_esc_drops_them(self):
        def acto(malla):
            malla.clic_celda(malla.fg2, 3, 3)
            malla.tecla("x")
            self.assertFalse(malla.txtCelda.Visible)
            malla.tecla("7")
            for caracter in "a-2.5":
                malla.tecla(caracter)
            self.assertEqual((malla.txtCelda.Text, malla.ActiveControl), ("72.5", malla.txtCelda))
            malla.tecla("Esc")
            self.assertEqual((malla.txtCelda.Visible, malla.fg2.TextMatrix(3, 3), malla.ActiveControl),
                             (False, "", malla.fg2))

        self.reparte(acto)

    def test_a_cell_is_a_property_too_and_the_sum_a_procedure(self):
        def acto(malla):
            malla.fg2.setTextMatrix(3, 3, "5")
            self.assertEqual(malla.txtRemanente.Text, "5")
            malla.CalculaSuma()
            self.assertEqual((malla.txtRemanente.Text, malla.cmdAceptar.Enabled), ("0", True))
            malla.clic(malla.cmdAceptar)

        self.reparte(acto)
        self.assertEqual(self.partidas(), [("BOT-AZ-26", 5, 700)])

    def test_without_a_quantity_accept_is_open_and_nothing_is_counted(self):
        def acto(malla):
            self.assertEqual((malla.txtRemanente.Visible, malla.lblCantidadRestante.Visible, malla.cmdAceptar.Enabled),
                             (False, False, True))
            self.pon(malla, 4, 5, "12")
            self.pon(malla, 3, 4, "3")
            malla.clic(malla.cmdAceptar)

        self.reparte(acto, cantidad="0")
        self.assertEqual(self.partidas(), [("BOT-AZ-27", 3, 700), ("BOT-NE-28", 12, 700)])

    def cancelada(self, forma):
        self.assertFalse(self.malla.abierta)
        self.assertEqual(self.partidas(), [])
        self.assertEqual(self.numeros(), [235])  # the key is no article
        self.assertEqual(forma.txtFields[4].Text, "BOT")
        self.assertEqual(forma.ActiveControl, forma.txtFields[4])

    def test_no_routine_cancels(self):
        self.anf.al_mostrar_modal = None
        forma = self.entrada("BOT", "5", "700")
        forma.tecla("F9", forma.txtFields[6])
        self.assertEqual(self.anf.pantallas, [forma])
        self.assertEqual((self.partidas(), self.numeros()), ([], [235]))

    def test_a_routine_that_only_returns_cancels(self):
        self.cancelada(self.reparte(lambda malla: self.pon(malla, 3, 3, "5")))

    def test_the_cancel_button_and_the_close_box_cancel(self):
        self.cancelada(self.reparte(lambda malla: malla.clic(malla.cmdCancelar)))
        self.assertFalse(self.malla.abierta)
        self.anf.mensajes.clear()
        self.cancelada(self.reparte(lambda malla: malla.cierra()))

    def test_what_the_routine_raises_is_raised_from_the_scripts_own_call(self):
        def acto(malla):
            raise ValueError("no reparto")

        with self.assertRaisesRegex(ValueError, "no reparto"):
            self.reparte(acto)
        self.assertEqual((self.partidas(), len(self.anf.pantallas)), ([], 1))

    def test_a_key_that_is_no_model_shows_no_matrix(self):
        self.anf.al_mostrar_modal = lambda malla: self.fail("modal")
        forma = self.entrada("MAR-16", "5", "700")
        forma.tecla("F9", forma.txtFields[6])
        self.assertEqual(self.partidas(), [("MAR-16", 5, 700)])
        forma.txtFields[4].Text = "MAR-16"
        self.assertIs(forma.BuscaModelo(), False)

    def test_the_search_is_a_procedure_that_tells_whether_it_was_a_model(self):
        forma = self.entrada("CAM", "0", "10")
        self.assertIs(forma.BuscaModelo(), False)  # cancelled
        self.anf.al_mostrar_modal = lambda malla: malla.clic(malla.cmdAceptar)
        self.assertIs(forma.BuscaModelo(), True)
        self.assertEqual(self.partidas(), [])  # nothing was filled in


class MallaExterna(Caso):
    """The wait on ControlProc. What fills the matrix is here a thread of the script's."""

    CELDA = ("INSERT INTO mallacelda (documento, origen, articulo, cantidad, precio, observ) "
             "VALUES (?, ?, ?, ?, 10, 'de la malla')")

    def setUp(self):
        super().setUp()
        vigia = threading.Timer(60, self.senal, (9,))
        vigia.daemon = True
        vigia.start()
        self.addCleanup(vigia.cancel)
        self.espera = threading.Event()

        def empieza(forma, ambiente):
            self.senal(0)
            self.espera.set()

        self.anf.ganchos["TALLASYCOLORES001"] = empieza

    def senal(self, valor):
        self.anf.sql("UPDATE ControlProc SET controlproc = ?", valor)

    def abajo(self, forma, trabajo):
        errores = []

        def hilo():
            try:
                self.espera.wait(30)
                trabajo()
            except Exception as error:  # noqa: BLE001 - told by the test
                errores.append(error)
                self.senal(9)

        otro = threading.Thread(target=hilo)
        otro.start()
        forma.teclea(forma.txtFields[4], "CAM")
        forma.tecla("Down")
        otro.join()
        self.assertEqual(errores, [])

    def test_other_threads_run_and_use_sql_while_the_system_waits(self):
        forma = self.entrada()
        vueltas = []

        def trabajo():
            for _ in range(20):
                vueltas.append(self.anf.sql("SELECT controlproc FROM ControlProc")[0]["controlproc"])
                time.sleep(0.005)
            self.anf.sql(self.CELDA, "1", "EntradasInventario", "CAM-AZ-CH", 4)
            self.senal(1)

        self.abajo(forma, trabajo)
        self.assertEqual(vueltas, [0] * 20)
        self.assertEqual(self.partidas(), [("CAM-AZ-CH", 4, 10)])
        esperas = [texto for texto in self.anf.sentencias if texto == "select * from ControlProc"]
        self.assertGreater(len(esperas), 1)

    def test_the_statements_of_goods_in_in_their_order(self):
        forma = self.entrada()
        self.anf.sentencias.clear()
        self.abajo(forma, lambda: self.senal(1))
        enviadas = [texto for i, texto in enumerate(self.anf.sentencias)
                    if i == 0 or texto != self.anf.sentencias[i - 1]]
        desde = enviadas.index("select * from modelos where modelo = 'CAM'")
        interesan = [texto for texto in enviadas[desde:] if texto.startswith(("exec", "select", "INSERT", "UPDATE"))]
        self.assertRegex(interesan[1], "^INSERT INTO entradas ")
        self.assertEqual([interesan[0], *interesan[-4:]], [
            "select * from modelos where modelo = 'CAM'",
            "exec TKMallaParam 'ANA','CAM','COM','1','EntradasInventario'",
            "select * from ControlProc",
            "exec TKCreaEntradaTYC '1'",
            "select * from movsinv where operacion = 'SA' and movimiento = 1 and claveadd = '999'"])
        self.assertEqual(self.claves().count("TALLASYCOLORES001"), 1)
        self.assertEqual(self.anf.sql("SELECT usuario, modelo, concepto, documento, origen FROM mallaparam"),
                         [{"usuario": "ANA", "modelo": "CAM", "concepto": "COM", "documento": "1",
                           "origen": "EntradasInventario"}])
        self.assertEqual(self.anf.sql("SELECT estado, ocupado FROM entradas"), [{"estado": "PE", "ocupado": 0}])

    def test_goods_out_has_its_own_procedure_and_code(self):
        self.es.NuevaSalida()
        forma = self.anf.pantallas[-1]
        forma.teclea(forma.txtFields[0], "VTA")
        self.anf.sentencias.clear()

        def trabajo():
            self.anf.sql(self.CELDA, "1", "SalidasInventario", "CAM-AZ-CH", 4)
            self.senal(1)

        self.abajo(forma, trabajo)
        for texto in ("exec TKMallaParam 'ANA','CAM','VTA','1','SalidasInventario'", "exec TKCreaSalidaTYC '1'",
                      "select * from movsinv where operacion = 'EN' and movimiento = 1 and claveadd = '999'"):
            self.assertEqual(self.anf.sentencias.count(texto), 1, texto)
        self.assertEqual(self.partidas("salpart"), [("CAM-AZ-CH", 4, 10)])
        self.assertEqual((forma.CuantasPartidas(), self.anf.no_atrapados), (0, []))

    def test_any_other_value_ends_the_wait_without_lines(self):
        forma = self.entrada()
        self.anf.sentencias.clear()
        self.abajo(forma, lambda: self.senal(2))
        self.assertFalse([texto for texto in self.anf.sentencias if "TKCrea" in texto])

    def test_a_signal_that_is_up_already_is_not_waited_for(self):
        del self.anf.ganchos["TALLASYCOLORES001"]
        forma = self.entrada()
        forma.teclea(forma.txtFields[4], "CAM")
        self.anf.sentencias.clear()
        forma.tecla("Down")
        self.assertEqual(self.anf.sentencias.count("select * from ControlProc"), 1)
        self.assertEqual(self.anf.selectores, [])

    def test_no_row_ends_the_handling(self):
        del self.anf.ganchos["TALLASYCOLORES001"]
        self.anf.sql("DELETE FROM ControlProc")
        forma = self.entrada()
        forma.teclea(forma.txtFields[4], "CAM")
        forma.tecla("Down")
        self.assertEqual((self.anf.no_atrapados, forma.abierta), ([], True))

    def test_a_failing_procedure_leaves_the_event(self):
        forma = self.entrada()
        self.anf.falla("TKCreaEntradaTYC")
        self.abajo(forma, lambda: self.senal(1))
        self.assertEqual(self.anf.no_atrapados, ["falla provocada"])

    def test_what_a_routine_of_the_key_raises_leaves_the_event_and_nobody_waits(self):
        def falla(forma, ambiente):
            raise ValueError("sin malla")

        self.anf.ganchos["TALLASYCOLORES001"] = falla
        self.senal(0)
        forma = self.entrada()
        forma.teclea(forma.txtFields[4], "CAM")
        forma.tecla("Down")
        self.assertEqual(self.anf.no_atrapados, ["sin malla"])

    def test_an_interrupt_ends_the_wait(self):
        forma = self.entrada()

        def interrumpe(*_):
            raise KeyboardInterrupt

        anterior = signal.signal(signal.SIGALRM, interrumpe)
        self.addCleanup(signal.signal, signal.SIGALRM, anterior)
        signal.setitimer(signal.ITIMER_REAL, 0.2)
        self.addCleanup(signal.setitimer, signal.ITIMER_REAL, 0)
        forma.teclea(forma.txtFields[4], "CAM")
        with self.assertRaises(KeyboardInterrupt):
            forma.tecla("Down")
        self.assertTrue(forma.abierta)
        self.anf.cierra()

    def test_the_procedures_are_the_three_of_the_suite(self):
        forma = self.entrada("MAR-16", "1", "10")
        forma.tecla("F9", forma.txtFields[6])
        forma.Query.SentenciaDirecta("exec OtroProcedimiento '1'")
        with self.assertRaisesRegex(tarvik.Error, "OtroProcedimiento"):
            forma.Query.Ejecuta()


if __name__ == "__main__":
    unittest.main()
