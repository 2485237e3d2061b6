"""The external matrix between two real processes: a partner that never answers, and the partner by himself."""

import signal
import sqlite3
import threading
import time
import unittest

from caso_malla_externa import PACIENCIA, PROGRAMA, Caso, modulo


class Nunca(Caso):
    def sin_socio(self):
        """The partner has gone without a word: the setting still says that it is there."""
        socio = self.socio("--por-celda", 1)
        socio.kill()
        socio.wait()

    def test_a_thread_ends_the_wait(self):
        self.sin_socio()
        forma = self.entrada()
        hilo = threading.Timer(0.3, self.senal, (2,))  # neither at work nor finished
        hilo.start()
        inicio = time.monotonic()
        self.abajo(forma)
        hilo.join()
        self.assertGreater(time.monotonic() - inicio, 0.2)
        self.assertEqual((self.partidas(), self.anf.no_atrapados, forma.abierta), ([], [], True))
        self.assertFalse([texto for texto in self.anf.sentencias if "TKCreaEntradaTYC" in texto])
        forma.teclea(forma.txtFields[5], "4")  # and the screen answers again
        self.assertEqual(forma.txtFields[5].Text, "4")

    def test_a_signal_ends_the_wait_and_is_raised_from_the_call(self):
        self.sin_socio()

        class Alarma(Exception):
            pass

        def suena(*_):
            raise Alarma

        anterior = signal.signal(signal.SIGALRM, suena)
        self.addCleanup(signal.signal, signal.SIGALRM, anterior)
        forma = self.entrada()
        signal.setitimer(signal.ITIMER_REAL, 0.3)
        self.addCleanup(signal.setitimer, signal.ITIMER_REAL, 0)
        with self.assertRaises(Alarma):
            self.abajo(forma)
        self.assertEqual((self.partidas(), self.senal(), forma.abierta), ([], 0, True))

    def test_without_a_partner_nobody_waits_and_the_operator_is_told(self):
        self.senal(0)  # as one that went half way has left it
        forma = self.entrada()
        self.abajo(forma)
        self.assertEqual(len(self.textos()), 1)
        self.assertIn("no está en marcha", self.textos()[0])
        self.assertEqual((self.senal(), self.partidas(), forma.abierta), (1, [], True))
        self.assertEqual(self.anf.sql("SELECT estado FROM entradas"), [{"estado": "PE"}])
        self.socio("--por-celda", 1)
        self.abajo(forma, "BOT")
        self.assertEqual(len(self.partidas()), 6)

    def espera(self):
        """Somebody waits, and the partner has gone to look for it."""
        self.anf.sql("INSERT INTO entradas (entrada, estado) VALUES (1, 'PE')")
        self.anf.sql("INSERT INTO mallaparam (usuario, modelo, concepto, documento, origen) "
                     "VALUES ('ANA', 'BOT', 'COM', '1', 'EntradasInventario')")
        self.senal(0)

    def queda_libre(self):
        self.assertEqual((self.senal(), self.celdas()), (1, 0))
        self.assertEqual(self.anf.sql("SELECT * FROM mallaparam"), [])
        self.assertEqual(self.anf.sql("SELECT valor FROM parametros WHERE nombre = 'MallaExterna'"), [])

    def test_a_partner_that_is_told_to_end_lets_go_of_who_waits(self):
        socio = self.socio("--por-celda", 1, "--vigila")
        socio.send_signal(signal.SIGSTOP)
        self.espera()
        socio.terminate()
        socio.send_signal(signal.SIGCONT)
        self.assertEqual(self.termina(socio), ["Terminado."])
        self.queda_libre()

    def test_a_partner_whose_answer_the_base_refuses_lets_go_of_who_waits(self):
        with sqlite3.connect(self.archivo) as otro:
            otro.execute("CREATE TRIGGER lleno BEFORE INSERT ON mallacelda BEGIN SELECT RAISE(ABORT, 'disco lleno'); "
                         "END")
        otro.close()
        socio = self.socio("--por-celda", 1, "--vigila")
        self.espera()
        _, error = socio.communicate(timeout=PACIENCIA)
        self.assertEqual((socio.returncode, error), (2, "disco lleno\n"))
        self.queda_libre()

    def test_a_partner_that_ends_while_the_base_is_busy_still_takes_its_notice_back(self):
        socio = self.socio("--por-celda", 1, "--vigila")
        socio.send_signal(signal.SIGSTOP)
        self.espera()
        otro = sqlite3.connect(self.archivo, isolation_level=None, check_same_thread=False)
        self.addCleanup(otro.close)
        otro.execute("BEGIN IMMEDIATE")
        socio.terminate()
        socio.send_signal(signal.SIGCONT)
        time.sleep(1.5)  # more than one try of the partner's
        self.assertIsNone(socio.poll())
        otro.execute("COMMIT")
        self.assertEqual(self.termina(socio), ["Terminado."])
        self.queda_libre()

    def test_a_notice_that_goes_as_the_signal_is_set_leaves_nobody_waiting(self):
        """The look for the partner and the signal are one statement, so nothing can come between."""
        self.anf.sql("INSERT INTO parametros (nombre, valor) VALUES ('MallaExterna', 'proceso 1')")
        rutina, ambiente = self.anf.ganchos["TALLASYCOLORES001"], self.anf.Ambiente
        vistas = []

        class Conexion:
            def Execute(otro, texto):
                filas = ambiente.Conexion.Execute(texto)
                if "MallaExterna" in texto:  # and now the partner ends
                    vistas.append(texto)
                    self.anf.sql("DELETE FROM parametros WHERE nombre = 'MallaExterna'")
                    self.anf.sql("UPDATE ControlProc SET controlproc = 1 WHERE controlproc = 0")
                return filas

        class Ambiente:
            MuestraMensaje = staticmethod(ambiente.MuestraMensaje)

        Ambiente.Conexion = Conexion()
        self.anf.ganchos["TALLASYCOLORES001"] = lambda forma, _: rutina(forma, Ambiente())
        hilo = threading.Timer(5, self.senal, (2,))
        hilo.start()
        inicio = time.monotonic()
        self.abajo(self.entrada())
        hilo.cancel()
        self.assertEqual((len(vistas), self.senal()), (1, 1))
        self.assertLess(time.monotonic() - inicio, 4)

    def test_a_partner_that_ends_takes_its_notice_back(self):
        socio = self.socio("--por-celda", 1, "--vigila")
        aviso = "SELECT valor FROM parametros WHERE nombre = 'MallaExterna'"
        self.assertEqual(self.anf.sql(aviso), [{"valor": f"proceso {socio.pid}"}])
        self.despide(socio)
        self.assertEqual(self.anf.sql(aviso), [])


class Socio(Caso):
    """What the partner does by itself."""

    def pide(self, modelo="BOT", documento="1", origen="EntradasInventario", estado="PE"):
        self.anf.sql("INSERT INTO entradas (entrada, estado) VALUES (?, ?) ON CONFLICT DO NOTHING", documento, estado)
        self.anf.sql("INSERT INTO mallaparam (usuario, modelo, concepto, documento, origen) "
                     "VALUES ('ANA', ?, 'COM', ?, ?)", modelo, documento, origen)

    def test_it_answers_only_while_somebody_waits(self):
        self.pide()
        socio = self.corre("--por-celda", 1, "--espera", "0.3")
        self.assertEqual(self.termina(socio, 1), ["En espera de peticiones.", "Nadie pidió nada."])
        self.assertEqual(self.celdas(), 0)

    def test_what_nobody_took_is_replaced_and_not_added_to(self):
        for por_celda in (5, 2):
            self.pide()
            self.senal(0)
            self.termina(self.corre("--por-celda", por_celda))
            self.assertEqual(self.anf.sql("SELECT COUNT(*) AS n, SUM(cantidad) AS c FROM mallacelda"),
                             [{"n": 6, "c": 6.0 * por_celda}])

    def test_a_posted_document_and_an_unknown_origin_get_nothing(self):
        self.pide(documento="7", estado="CO")
        self.pide(documento="8", origen="Otro")
        self.pide(documento="9")
        self.senal(0)
        lineas = self.termina(self.corre("--por-celda", 1))
        self.assertEqual(lineas[1:], ["entrada 7, modelo BOT: el documento ya no está en captura; se pasa por alto.",
                                      "entrada 9, modelo BOT: 6 partidas, 6 piezas.",
                                      "Otro 8: no se conoce ese origen; se pasa por alto."])
        self.assertEqual(self.anf.sql("SELECT DISTINCT documento FROM mallacelda"), [{"documento": "9"}])
        self.assertEqual(self.senal(), 1)

    def test_an_even_spread_is_of_whole_units_and_loses_none(self):
        Reparto = modulo(PROGRAMA).Reparto
        self.assertEqual(Reparto(None, 10).cantidades(4), [3, 3, 2, 2])
        self.assertEqual(Reparto(None, 2).cantidades(4), [1, 1, 0, 0])
        self.assertEqual(Reparto(None, 2).cantidades(0), [])
        self.assertEqual(Reparto(3, None).cantidades(2), [3, 3])
        for total in range(1, 40):
            for celdas in range(1, 12):
                reparto = Reparto(None, total).cantidades(celdas)
                self.assertEqual((sum(reparto), max(reparto) - min(reparto) <= 1), (total, True))

    def test_cells_without_a_unit_are_no_lines(self):
        self.pide()
        self.senal(0)
        self.assertEqual(self.termina(self.corre("--total", 2))[-1], "entrada 1, modelo BOT: 2 partidas, 2 piezas.")

    def test_bad_options_and_bases_are_told(self):
        ajeno = self.carpeta / "ajeno.db"
        ajeno.write_text("esto no es una base\n" * 100)
        vacia = self.carpeta / "vacia.db"
        sqlite3.connect(vacia).close()
        for base, opciones, motivo in [
                (f"sqlite:{self.carpeta}/nohay.db", ("--total", 1), "No existe la base"),
                (f"sqlite:{ajeno}", ("--total", 1), "no es una base del sistema"),
                (f"sqlite:{vacia}", ("--total", 1), "no es una base del sistema|No existe la base"),
                ("a.db", ("--total", 1), "debe ser sqlite:ARCHIVO"),
                (None, ("--total", 0), "mayor que cero"), (None, (), "--por-celda"),
                (None, ("--total", 1, "--por-celda", 1), "--por-celda|--total")]:
            with self.subTest(base=base, opciones=opciones):
                proceso = self.corre(*opciones, base=base)
                _, error = proceso.communicate(timeout=PACIENCIA)
                self.assertEqual(proceso.returncode, 2)
                self.assertRegex(error, motivo)
                self.assertNotIn("Traceback", error)
        self.assertFalse((self.carpeta / "nohay.db").exists())

    def test_a_base_that_is_moved_away_ends_it(self):
        socio = self.socio("--por-celda", 1, "--vigila")
        self.anf.cierra()
        self.archivo.rename(self.carpeta / "b.db")
        _, error = socio.communicate(timeout=PACIENCIA)
        self.assertEqual(socio.returncode, 2)
        self.assertIn("fue movida o borrada", error)


if __name__ == "__main__":
    unittest.main()
