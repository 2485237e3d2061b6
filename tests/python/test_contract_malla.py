"""What scripts written by others rely on, of the screens that test_contract.py leaves out: the matrix of
colours and sizes, inside and outside, the station transfer, and goods-out."""

import datetime
import signal
import tempfile
import threading
import time
import unittest
from pathlib import Path

import tarvik

import bases

HOY = datetime.datetime(2024, 3, 5, 14, 3, 22)
BLANCO, CIAN = 0xFFFFFF, 0xFFFFE0


def rgb(rojo, verde, azul):
    return rojo | verde << 8 | azul << 16


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


class Estaciones(Caso):
    def abre(self, numero=0, modal=False):
        self.es.movimientoEstacion(numero, modal)
        return self.anf.pantallas[-1]

    def test_it_opens_with_number_date_captions_and_tab_order(self):
        forma = self.abre(7)
        self.assertEqual((forma.Name, forma.Caption), ("frmMovEstaciones", "Asistente para traspasos entre estaciones"))
        self.assertEqual((forma.Id, forma.CancelaProceso, forma.DTPicker1.Value), (7, False, HOY.date()))
        self.assertEqual(forma.Ambiente.Usuario, "ANA")
        self.assertEqual([forma.lblLabel[i].Caption for i in range(4)] + [forma.Label1.Caption],
                         ["Estación que entrega", "Fecha de aplicación", "Artículo", "Cantidad", "Estación que recibe"])
        self.assertEqual([forma.cmdConfirmar.Caption, forma.cmdPendiente.Caption, forma.cmdCancelar.Caption],
                         ["Confirmar operación (F5)", "Dejar como pendiente", "Cancelar"])
        orden = [forma.txtFields[0], forma.txtFields[1], forma.DTPicker1, forma.txtFields[2], forma.txtFields[4],
                 forma.Command1, forma.cmdConfirmar]
        self.assertEqual([control.TabIndex for control in orden], list(range(7)))
        self.assertGreater(forma.txtFields[3].TabIndex, forma.cmdCancelar.TabIndex)
        self.assertEqual([(caja.buscar, caja.Conexion) for caja in forma.MultiCombo1], [("Estaciones", True)] * 2)
        self.assertEqual([forma.txtFields[i].Tag for i in range(5)], [""] * 5)
        self.assertEqual((self.claves(), self.anf.presentadas), (["MOVESTACIONES001"], []))

    def test_the_module_writes_and_asks_nothing_of_the_base(self):
        self.anf.sentencias.clear()
        forma = self.abre()
        forma.teclea(forma.txtFields[2], "MAR-16")
        forma.tecla("Enter")
        for boton in ("Command1", "cmdPendiente"):
            forma.clic(getattr(forma, boton))
        self.assertEqual((forma.abierta, self.anf.sentencias, self.anf.movimientos), (False, [], []))

    def test_modal_shows_run_the_routine_and_unload_it(self):
        vistas = []
        self.anf.al_mostrar_modal = lambda forma: vistas.append((forma.Name, forma.Id, forma.Visible))
        self.es.movimientoEstacion(3, True)
        self.es.movimientoEstacion(nId=4, bolModal=True)
        self.assertEqual(vistas, [("frmMovEstaciones", 3, True), ("frmMovEstaciones", 4, True)])
        self.assertEqual(self.anf.pantallas, [])

    def test_a_veto_of_the_closing_leaves_a_modal_one_open(self):
        self.anf.ganchos["MOVESTACIONES007"] = lambda f, a: setattr(f, "CancelaProceso", True)
        self.es.movimientoEstacion(3, True)
        forma = self.anf.pantallas[-1]
        self.assertEqual((forma.abierta, forma.CancelaProceso), (True, False))

    def test_the_class_raises_here_and_only_here(self):
        self.anf.falla_servicio("BuscaCatalogo")
        with self.assertRaisesRegex(tarvik.Error, "falla provocada"):
            self.es.movimientoEstacion(1, False)
        self.assertEqual(self.anf.pantallas, [])

    def test_each_button_fires_its_key_and_then_the_closing_one(self):
        for boton, clave in (("cmdCancelar", "MOVESTACIONES004"), ("cmdPendiente", "MOVESTACIONES005"),
                             ("cmdConfirmar", "MOVESTACIONES006")):
            forma = self.abre()
            forma.enfoca(forma.grid)
            self.anf.ganchos_disparados.clear()
            forma.clic(getattr(forma, boton))
            self.assertEqual((self.claves(), forma.abierta), ([clave, "MOVESTACIONES007"], False))
            self.anf.ganchos[clave] = lambda f, a: setattr(f, "CancelaProceso", True)
            forma = self.abre()
            forma.enfoca(forma.grid)
            self.anf.ganchos_disparados.clear()
            forma.clic(getattr(forma, boton))
            self.assertEqual((self.claves(), forma.abierta, forma.CancelaProceso), ([clave], True, False))
        self.anf.ganchos_disparados.clear()
        forma.clic(forma.Command1)
        self.assertEqual((self.claves(), forma.abierta), (["MOVESTACIONES003"], True))

    def test_the_close_box_fires_only_the_closing_key(self):
        forma = self.abre()
        self.anf.ganchos_disparados.clear()
        forma.cierra()
        self.assertEqual((self.claves(), forma.abierta), (["MOVESTACIONES007"], False))

    def test_a_flag_left_by_the_load_stops_nothing(self):
        self.anf.ganchos["MOVESTACIONES001"] = lambda f, a: setattr(f, "CancelaProceso", True)
        forma = self.abre()
        self.assertTrue(forma.Visible and forma.CancelaProceso)

    def test_leaving_a_field_tells_which_one(self):
        forma = self.abre()
        self.anf.ganchos_disparados.clear()
        for campo in (0, 1, 2, 4):
            forma.enfoca(forma.txtFields[campo])
        forma.enfoca(forma.DTPicker1)
        self.assertEqual(self.anf.ganchos_disparados, [("MOVESTACIONES002", campo) for campo in (0, 1, 2, 4)])

    def test_enter_moves_on_like_tab_and_a_field_selects_its_text(self):
        forma = self.abre()
        forma.txtFields[1].Text = "E2 "
        forma.enfoca(forma.txtFields[0])
        forma.tecla("Enter")
        self.assertEqual(forma.ActiveControl, forma.txtFields[1])
        self.assertEqual((forma.txtFields[1].SelStart, forma.txtFields[1].SelLength, forma.txtFields[1].Text),
                         (0, 3, "E2 "))
        for esperado in (forma.DTPicker1, forma.txtFields[2], forma.txtFields[4], forma.Command1):
            forma.tecla("Enter")
            self.assertEqual(forma.ActiveControl, esperado)

    def test_down_opens_the_lists(self):
        forma = self.abre()
        for campo in (0, 1, 4, 3):
            forma.tecla("Down", forma.txtFields[campo])
        self.assertEqual((self.anf.listas, self.anf.selectores), ([("txtFields", 0), ("txtFields", 1)], []))
        self.anf.al_mostrar_selector = lambda clase, titulo, campo: "MAR-16"
        forma.tecla("Down", forma.txtFields[2])
        self.assertEqual(self.anf.selectores, [("ListaArticulos", "", "txtFields", 2)])
        self.assertEqual((forma.txtFields[2].Text, forma.ActiveControl), ("MAR-16", forma.txtFields[2]))

    def test_the_grid_is_a_grid_and_its_columns_are_the_routines(self):
        forma = self.abre()
        rejilla = forma.grid
        self.assertEqual((rejilla.Rows, rejilla.Cols), (0, 0))
        rejilla.Cols, rejilla.Rows, rejilla.FixedRows = 2, 3, 1
        rejilla.setTextMatrix(1, 0, "MAR-16")
        rejilla.setTextMatrix(2, 1, "4")
        rejilla.Row, rejilla.Col = 2, 1
        self.assertEqual((rejilla.Text, rejilla.TextMatrix(1, 0), rejilla.BackColor(1, 1), rejilla.CellBackColor),
                         ("4", "MAR-16", 0, 0))
        rejilla.Text = "5"
        self.assertEqual(rejilla.TextMatrix(2, 1), "5")
        self.assertGreater(rejilla.ColWidth(0), 0)
        forma.clic_celda(rejilla, 1, 0)
        forma.tecla("Right")
        forma.tecla("Down")
        self.assertEqual((rejilla.Row, rejilla.Col, forma.ActiveControl), (2, 1, rejilla))

    def test_delete_on_the_grid_asks_and_fires_no_key(self):
        forma = self.abre()
        forma.grid.Cols, forma.grid.Rows, forma.grid.FixedRows = 1, 3, 1
        forma.grid.setTextMatrix(1, 0, "uno")
        forma.grid.setTextMatrix(2, 0, "dos")
        forma.clic_celda(forma.grid, 1, 0)
        self.anf.ganchos_disparados.clear()
        forma.tecla("Delete")
        pregunta = self.anf.mensajes[-1]
        self.assertEqual((pregunta.clase, pregunta.texto, pregunta.estilo, pregunta.respuesta),
                         ("pregunta", "Esta seguro de querer borrar la partida", 2, False))
        self.assertEqual(forma.grid.Rows, 3)
        self.anf.respuestas.append(True)
        forma.tecla("Delete")
        self.assertEqual((forma.grid.Rows, forma.grid.TextMatrix(1, 0), self.claves()), (2, "dos", []))

    def test_f5_does_nothing_by_itself(self):
        forma = self.abre()
        self.anf.ganchos_disparados.clear()
        forma.tecla("F5", forma.grid)
        self.assertEqual((forma.abierta, [c for c in self.claves() if c != "MOVESTACIONES002"]), (True, []))

    def test_what_a_routine_raises_leaves_an_act_quietly_and_a_procedure_loudly(self):
        def falla(forma, ambiente):
            raise ValueError("no se puede")

        forma = self.abre()
        self.anf.ganchos["MOVESTACIONES006"] = falla
        forma.clic(forma.cmdConfirmar)
        self.assertEqual((self.anf.no_atrapados, forma.abierta, self.textos()), (["no se puede"], True, []))
        with self.assertRaisesRegex(tarvik.Error, "no se puede"):
            forma.cmdConfirmar_Click()


class Salidas(Caso):
    """Goods-out, where the contract says more than of both wizards alike."""

    def setUp(self):
        super().setUp()
        self.anf.sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, 'MAR-16', 10)")
        self.anf.sql("UPDATE prods SET alm1 = 10 WHERE articulo = 'MAR-16'")

    def salida(self):
        self.es.NuevaSalida()
        forma = self.anf.pantallas[-1]
        forma.teclea(forma.txtFields[0], "VTA")
        return forma

    def partida(self, forma, articulo="MAR-16", cantidad="3", precio="50"):
        forma.teclea(forma.txtFields[4], articulo)
        forma.tecla("Enter")
        forma.teclea(forma.txtFields[5], cantidad)
        forma.tecla("Enter")
        forma.txtFields[6].Text = precio
        forma.tecla("Enter", forma.txtFields[6])

    def afecta(self, forma):
        self.anf.respuestas.append(True)
        forma.tecla("F5", forma.txtFields[0])
        self.assertFalse(forma.abierta, self.textos())

    def pendiente(self, **partida):
        forma = self.salida()
        self.partida(forma, **partida)
        forma.clic(forma.Command2)
        return forma

    def test_the_four_operations(self):
        self.pendiente()
        self.es.ModificaSalida(1)
        forma = self.anf.pantallas[-1]
        self.assertEqual((forma.Modo, forma.Salida, forma.CuantasPartidas()), ("MODIFICACION", 1, 1))
        self.es.ModificaSalida(1, False)
        self.assertEqual(self.anf.mensajes[-1].numeros, [79])
        self.es.EliminaSalida(1)
        self.assertEqual(self.anf.mensajes[-1].numeros, [152])
        self.es.ConsultaSalida(1)
        self.assertEqual(self.anf.pantallas[-1].Modo, "CONSULTA")
        for pantalla in list(self.anf.pantallas):
            pantalla.clic(pantalla.Command2)
        self.anf.Parent.lvListView.ListItems.append(1)
        self.anf.Parent.lvListView.SelectedItem = 1
        self.anf.respuestas.append(True)
        self.es.EliminaSalida(1)
        self.assertEqual(self.anf.sql("SELECT * FROM salidas") + self.anf.sql("SELECT * FROM salpart"), [])
        self.anf.mensajes.clear()
        self.es.ModificaSalida(9)
        self.es.ConsultaSalida(9)
        self.es.EliminaSalida(9)
        self.assertEqual(self.numeros(), [77, 111, 151])

    def test_modal_shows(self):
        vistas = []
        self.anf.al_mostrar_modal = lambda forma: vistas.append((forma.Name, forma.Modo))
        self.es.NuevaSalida(bolModal=True)
        self.pendiente()
        self.es.ModificaSalida(1, True)
        self.assertEqual(vistas, [("frmSalidasWizard", "ALTA"), ("frmSalidasWizard", "MODIFICACION")])
        self.assertEqual(self.anf.pantallas, [])

    def test_tab_order_follows_the_table_of_fields(self):
        forma = self.salida()
        f = forma.txtFields
        orden = [f[0], forma.RichTextBox3, forma.DTPicker1, f[14], forma.SSCheck1, f[2], forma.Check5, f[3],
                 forma.SSCheck2, f[9], f[13], f[15], f[7], forma.DTPicker2, f[12], forma.RichTextBox1, forma.Check1,
                 f[16], forma.fg2]
        self.assertEqual([control.TabIndex for control in orden], sorted(control.TabIndex for control in orden))
        pie = [f[4], f[24], f[1], f[5], f[27], f[6], f[25], f[26], f[28], f[29], forma.RichTextBox2, forma.Combo1,
               f[17], f[10], f[8], f[11], forma.Check3, forma.Check2, forma.Check4, forma.Command5, forma.Command2,
               forma.Command1, forma.Command6]
        self.assertEqual([control.TabIndex for control in pie], sorted(control.TabIndex for control in pie))
        self.assertLess(forma.fg2.TabIndex, f[4].TabIndex)

    def test_designed_state(self):
        forma = self.salida()
        self.assertEqual({i for i in (1, 7, 8, 10, 11) if not forma.txtFields[i].Enabled}, {1, 7, 8, 10, 11})
        for oculto in (forma.SSCheck2, forma.txtFields[9], forma.MultiCombo1[6], forma.txtFields[12]):
            self.assertFalse(oculto.Visible)
        self.assertEqual((forma.Check2.Value, forma.Check3.Value, forma.SSCheck1.Value), (1, 0, 0))
        self.assertEqual((forma.DTPicker1.Value, forma.DTPicker2.Value), (HOY.date(), HOY.date()))
        g = forma.fg2
        self.assertEqual((g.Rows, g.Cols, g.FixedRows), (5000, 11, 1))
        self.assertEqual([g.TextMatrix(0, c) for c in range(11)],
                         ["Artículo", "QTY", "Existencia", "Precio", "Importe", "Descripción", "No de salida",
                          "Presentación", "Pr. QTY", "", ""])
        self.assertEqual([g.ColWidth(c) for c in range(1, 11)], [800, 900, 900, 0, 4000, 0, 1000, 1000, 0, 0])
        self.assertEqual((forma.NumeroDePartidas, forma.Acumulado, forma.Salida), (7, True, 0))

    def test_the_return_date_may_be_none(self):
        forma = self.salida()
        forma.DTPicker2.Value = None
        self.partida(forma)
        self.afecta(forma)
        self.assertEqual(self.anf.sql("SELECT fecharetorno FROM salidas"), [{"fecharetorno": None}])

    def test_addresses_are_a_list_and_elige_counts_from_0(self):
        forma = self.salida()
        forma.txtFields[13].Text = "C001"
        self.assertEqual(forma.txtFields[15].Text, "Constructora del Valle, S.A. de C.V.")
        self.assertEqual(forma.Combo1.List, [fila["direccion"] for fila in self.anf.sql(
            "SELECT direccion FROM diremb ORDER BY id")])
        forma.elige(forma.Combo1, 1)
        self.assertEqual((forma.Combo1.ListIndex, forma.txtFields[17].Text), (1, forma.Combo1.List[1]))

    def test_the_sheet_is_written_shown_and_given_back(self):
        hoja = self.ruta / "05032024.htm"
        forma = self.salida()
        self.assertTrue(hoja.exists())
        self.assertEqual(self.anf.navegado, [f"{self.ruta}\\05032024.htm"])
        self.anf.ganchos["SALIDAS009"] = lambda f, a: setattr(f, "Html", "<p>uno</p>")
        pagina = forma.CreaHTML("Reparto", "")
        self.assertEqual(pagina, "<HTML><HEAD><TITLE>Html Tarvik</TITLE></HEAD><BODY><p>uno</p><B><CENTER><H2>Reparto"
                                 "</H2></CENTER></B></BODY></HTML>")
        self.assertEqual(hoja.read_text().splitlines(), [pagina])
        self.assertEqual(forma.CreaHTML("Reparto", "<b>lista</b>"), "<b>lista</b>")
        self.assertEqual(hoja.read_text().splitlines(), ["<b>lista</b>"])

    def test_painting_fires_its_key_and_nothing_else_does(self):
        forma = self.salida()
        self.assertNotIn("SALIDAS007", self.claves())
        forma.pinta()
        self.assertEqual(self.claves()[-1], "SALIDAS007")

    def test_confirming_stock_gives_the_boolean(self):
        forma = self.salida()
        self.partida(forma)
        forma.fg2.Row = 1
        self.anf.mensajes.clear()
        self.assertIs(forma.ConfirmaExistencia(500.0, 3.0), True)
        self.assertEqual(self.anf.mensajes, [])
        self.assertIs(forma.ConfirmaExistencia(1.0, -3.0), False)  # no answer is No
        pregunta = self.anf.mensajes[-1]
        self.assertEqual((pregunta.clase, pregunta.estilo, pregunta.numeros), ("pregunta", 260, [433, 434, 436, 437]))
        self.anf.respuestas.append(True)
        self.assertIs(forma.ConfirmaExistencia(1.0, -3.0), True)

    def test_too_little_stock_is_told_or_asked_by_user(self):
        forma = self.salida()
        self.partida(forma, cantidad="11")
        caja = self.anf.mensajes[-1]
        self.assertEqual((caja.clase, caja.estilo, caja.respuesta), ("pregunta", 4, False))
        self.assertEqual(caja.texto, "No hay existencia suficiente en el almacen seleccionado\r\n Existencia: 10\r\n "
                                     "Desea continuar de cualquier manera\r\n")
        self.anf.Ambiente.Usuario = "BETO"
        forma.txtFields[4].Text = ""
        self.partida(forma, cantidad="11")
        caja = self.anf.mensajes[-1]
        self.assertEqual((caja.clase, caja.estilo, caja.respuesta), ("caja", 64, None))
        self.assertEqual(self.partidas("salpart"), [])

    def test_movements_of_a_transfer_hold_what_was_set(self):
        self.anf.Ambiente.ClaveLocal = "L1"
        forma = self.salida()
        forma.clic(forma.SSCheck1)
        forma.teclea(forma.txtFields[2], "2")
        self.partida(forma)
        self.afecta(forma)
        sale, entra = (dict(movimiento) for movimiento in self.anf.movimientos)
        costo = self.anf.sql("SELECT costo_u FROM prods WHERE articulo = 'MAR-16'")[0]["costo_u"]
        for movimiento in (sale, entra):
            self.assertEqual(movimiento.pop("Ambiente").Usuario, "ANA")
            self.assertNotIn("IdEntrada", movimiento)  # never set
            self.assertNotIn("EstacionTraspaso", movimiento)
        comun = {"ClaveLocal": "L1", "Fecha": HOY.date(), "Movimiento": 1, "Usuario": "ANA", "Documento": "1",
                 "Articulo": "MAR-16", "Cantidad": 3.0, "IdSalida": 1, "ClaveAdd": "", "Aplica": True}
        self.assertEqual(sale, comun | {"EntSal": "S", "Almacen": 1.0, "TipoDoc": "VTA", "Operacion": "SA",
                                        "Precio": 50.0, "resultado": 3 * costo})
        self.assertEqual(entra, comun | {"EntSal": "E", "Almacen": 2.0, "TipoDoc": "T+", "Operacion": "T+",
                                         "Precio": 0.0, "resultado": 0.0})
        self.assertEqual(self.claves()[-4:], ["SALIDAS016", "SALIDAS017", "SALIDAS005", "SALIDAS006"])
        self.assertEqual(self.anf.impresos, [("salida", 1)])

    def test_the_hosts_list_is_refreshed_by_its_own_calls(self):
        for activo, pendiente, llamada in (("Salidas", False, "LlenaSalidas"),
                                           ("SalidasPendientes", True, "LlenaSalidasPendientes")):
            self.anf.Parent.CatalogoActivo = activo
            self.anf.Parent.llamadas.clear()
            forma = self.salida()
            self.partida(forma, cantidad="1")
            if pendiente:
                forma.clic(forma.Check3)
            self.afecta(forma)
            self.assertEqual(self.anf.Parent.llamadas,
                             [(llamada, (forma.Salida,)), ("ReseteaMenus", ()), ("EstableceMenus", ())])

    def test_members_and_procedures(self):
        forma = self.salida()
        self.partida(forma)
        self.assertEqual((forma.Salida, forma.UltimaPartida, forma.CuantasPartidas(), forma.rstSalida["salida"]),
                         (1, 1, 1, 1))
        self.assertTrue(forma.ValidaTab1())
        self.assertTrue(forma.SalvaPartidas())
        forma.Html, forma.Acumulado, forma.UltimaPartida = "x", False, 4
        self.assertEqual((forma.Html, forma.Acumulado, forma.UltimaPartida), ("x", False, 4))
        self.anf.ganchos_disparados.clear()
        forma.Command1_Click()
        forma.CreaEntradasDeTraspaso()
        forma.Check1.Value = 1
        forma.SSCheck2.Value = 1
        self.assertEqual(self.claves(), ["SALIDAS005", "SALIDAS017", "SALIDAS015", "SALIDAS012"])

    def test_equal_lines_add_up_and_a_hook_may_refuse_one(self):
        forma = self.salida()
        self.partida(forma)
        self.partida(forma, cantidad="2")
        self.assertEqual(self.partidas("salpart"), [("MAR-16", 5, 50)])
        self.anf.ganchos["SALIDAS010"] = lambda f, a: setattr(f, "CancelaProceso", True)
        self.partida(forma, cantidad="1")
        self.assertEqual((self.partidas("salpart"), forma.CancelaProceso), ([("MAR-16", 5, 50)], False))

    def test_the_load_hook_may_keep_it_from_being_presented(self):
        self.anf.ganchos["SALIDAS001"] = lambda f, a: setattr(f, "CancelaProceso", True)
        forma = self.salida()
        self.assertEqual((self.anf.presentadas, forma.Visible, forma.CancelaProceso), ([], True, False))


if __name__ == "__main__":
    unittest.main()
