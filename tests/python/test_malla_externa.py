"""The external matrix between two real processes: the screens here, the partner of
examples/malla_externa.py there, and nothing between them but the base."""

import importlib.util
import os
import signal
import sqlite3
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

import tarvik

EJEMPLOS = Path(__file__).resolve().parents[2] / "examples"
PROGRAMA = EJEMPLOS / "malla_externa.py"
# What the tests wait at most for something that happens at once on a machine that has nothing else to do.
PACIENCIA = 30


def modulo(archivo):
    ficha = importlib.util.spec_from_file_location(archivo.stem.lstrip("0123456789_"), archivo)
    cargado = importlib.util.module_from_spec(ficha)
    sys.modules[ficha.name] = cargado
    ficha.loader.exec_module(cargado)
    return cargado


class Caso(unittest.TestCase):
    def setUp(self):
        temporal = tempfile.TemporaryDirectory()
        self.addCleanup(temporal.cleanup)
        self.carpeta = Path(temporal.name)
        self.archivo = self.carpeta / "a.db"
        self.anf = tarvik.Anfitrion(base=f"sqlite:{self.archivo}", usuario="ANA", estacion="E1",
                                    ruta=str(self.carpeta / "datos"), demo=True)
        self.addCleanup(self.anf.cierra)
        gancho = modulo(EJEMPLOS / "ganchos" / "40_malla_externa.py")
        self.anf.ganchos["TALLASYCOLORES001"] = gancho.TALLASYCOLORES001

    # ---- the partner ----

    def socio(self, *opciones, base=None):
        """Starts the partner and comes back when it is at work."""
        proceso = self.corre(*opciones, base=base)
        self.assertEqual(proceso.stdout.readline(), "En espera de peticiones.\n")
        return proceso

    def corre(self, *opciones, base=None):
        proceso = subprocess.Popen(
            [sys.executable, "-B", "-W", "error", str(PROGRAMA), "--base", base or f"sqlite:{self.archivo}",
             *map(str, opciones)],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8",
            env=os.environ | {"PYTHONIOENCODING": "utf-8"})

        def acaba():
            proceso.kill()
            proceso.communicate()

        self.addCleanup(acaba)
        return proceso

    def termina(self, proceso, codigo=0):
        salida, error = proceso.communicate(timeout=PACIENCIA)
        self.assertEqual((proceso.returncode, error), (codigo, ""), salida)
        return salida.splitlines()

    def despide(self, proceso):
        proceso.terminate()
        return self.termina(proceso)

    # ---- the screens ----

    def entrada(self):
        self.anf.EntradasSalidas().NuevaEntrada()
        forma = self.anf.pantallas[-1]
        forma.teclea(forma.txtFields[0], "COM")
        return forma

    def salida(self):
        self.anf.EntradasSalidas().NuevaSalida()
        forma = self.anf.pantallas[-1]
        forma.teclea(forma.txtFields[0], "VTA")
        return forma

    def abajo(self, forma, modelo="CAM"):
        """Down on a model's key: it comes back when the wait is over."""
        vigia = threading.Timer(PACIENCIA, self.senal, (1,))
        vigia.start()
        try:
            forma.txtFields[4].Text = ""
            forma.teclea(forma.txtFields[4], modelo)
            forma.tecla("Down")
        finally:
            vigia.cancel()
            vigia.join()

    def senal(self, valor=None):
        if valor is not None:
            self.anf.sql("UPDATE ControlProc SET controlproc = ?", valor)
        return self.anf.sql("SELECT controlproc FROM ControlProc")[0]["controlproc"]

    def partidas(self, tabla="entpart"):
        return [(fila["articulo"], fila["cantidad"]) for fila in self.anf.sql(f"SELECT * FROM {tabla} ORDER BY 1")]

    def celdas(self):
        return self.anf.sql("SELECT COUNT(*) AS n FROM mallacelda")[0]["n"]

    def textos(self):
        return [mensaje.texto for mensaje in self.anf.mensajes]


class Enseguida(Caso):
    def test_goods_in_gets_its_lines_from_the_other_process(self):
        socio = self.socio("--por-celda", 2)
        forma = self.entrada()
        self.abajo(forma)
        self.assertEqual(self.termina(socio), ["entrada 1, modelo CAM: 12 partidas, 24 piezas."])
        self.assertEqual(self.partidas(), [
            (f"CAM-{color}-{talla}", 2.0) for color in ("AZ", "CA", "NE") for talla in ("CH", "GD", "MD", "XG")])
        self.assertEqual(self.anf.sql("SELECT DISTINCT entrada, tipo_doc, precio, usuario FROM entpart"),
                         [{"entrada": 1, "tipo_doc": "COM", "precio": 335.24, "usuario": "ANA"}])
        self.assertEqual(self.anf.sql("SELECT observ FROM entpart WHERE articulo = 'CAM-AZ-CH'"),
                         self.anf.sql("SELECT descrip AS observ FROM prods WHERE articulo = 'CAM-AZ-CH'"))
        self.assertEqual((self.senal(), self.celdas(), self.anf.no_atrapados), (1, 0, []))
        self.assertEqual(self.anf.sql("SELECT * FROM mallaparam"), [])

    def test_the_screen_shows_none_until_the_document_is_opened_again_and_posted(self):
        self.socio("--total", 13)
        forma = self.entrada()
        self.abajo(forma)
        self.assertEqual((forma.CuantasPartidas(), len(self.partidas())), (0, 12))
        forma.clic(forma.Command2)
        self.anf.EntradasSalidas().ModificaEntrada(1)
        forma = self.anf.pantallas[-1]
        self.assertEqual(forma.CuantasPartidas(), 12)
        self.assertEqual(forma.fg2.TextMatrix(1, 0), "CAM-AZ-CH")
        self.anf.respuestas.append(True)
        forma.tecla("F5", forma.txtFields[0])
        self.assertFalse(forma.abierta)
        self.assertEqual(self.anf.sql("SELECT SUM(existencia) AS n FROM existenciaalmacen WHERE almacen = 1"),
                         [{"n": 13.0}])

    def test_a_goods_in_stays_its_screens_own_until_that_closes(self):
        self.socio("--total", 12, "--vigila")
        forma = self.entrada()
        self.abajo(forma)
        otro = tarvik.Anfitrion(base=f"sqlite:{self.archivo}", usuario="BETO", estacion="E2",
                                ruta=str(self.carpeta / "datos"))
        self.addCleanup(otro.cierra)
        otro.EntradasSalidas().ModificaEntrada(1)
        self.assertEqual((otro.pantallas, len(otro.mensajes)), ([], 1))
        forma.cierra()
        self.anf.procesa_eventos(50)
        self.assertEqual(self.anf.sql("SELECT estado, ocupado FROM entradas"), [{"estado": "PE", "ocupado": 0}])
        otro.EntradasSalidas().ModificaEntrada(1)
        segunda = otro.pantallas[-1]
        self.assertEqual(segunda.CuantasPartidas(), 12)
        otro.respuestas.append(True)
        segunda.tecla("F5", segunda.txtFields[0])
        self.assertEqual(self.anf.sql("SELECT SUM(existencia) AS n FROM existenciaalmacen WHERE almacen = 1"),
                         [{"n": 12.0}])

    def test_a_goods_in_that_was_posted_meanwhile_is_not_held(self):
        rutina = self.anf.ganchos["TALLASYCOLORES001"]

        def ambas(forma, ambiente):
            self.anf.sql("UPDATE entradas SET estado = 'CO'")
            rutina(forma, ambiente)

        self.anf.ganchos["TALLASYCOLORES001"] = ambas
        self.abajo(self.entrada())
        self.assertEqual(self.anf.sql("SELECT estado, ocupado FROM entradas"), [{"estado": "CO", "ocupado": 0}])

    def test_a_goods_out_whose_save_failed_is_still_to_be_made(self):
        self.socio("--por-celda", 1, "--vigila")
        forma = self.salida()
        self.anf.falla("INSERT INTO salidas")
        self.abajo(forma, "BOT")
        self.assertEqual((forma.Modo, self.anf.sql("SELECT * FROM salidas")), ("ALTA", []))
        self.abajo(forma, "BOT")
        self.assertEqual((forma.Modo, self.anf.sql("SELECT COUNT(*) AS n FROM salidas")),
                         ("MODIFICACION", [{"n": 1}]))

    def test_a_goods_out_of_which_stock_has_moved_stays_finished(self):
        forma = self.salida()
        self.abajo(forma, "BOT")
        self.anf.sql("INSERT INTO salpart (id_salida, salida, articulo, cantidad) VALUES (1, ?, 'MAR-16', 2)",
                     forma.Salida)
        self.anf.sql("INSERT INTO movsinv (operacion, ent_sal, movimiento, id_salida, articulo, cantidad, importe) "
                     "VALUES ('SA', 'S', 1, 1, 'MAR-16', 2, 0)")
        self.abajo(forma, "BOT")
        self.assertEqual(self.anf.sql("SELECT estado, ocupado FROM salidas"), [{"estado": "CO", "ocupado": 1}])

    def test_goods_out_gets_its_lines_too(self):
        socio = self.socio("--total", 8)
        forma = self.salida()
        self.abajo(forma, "BOT")
        self.assertEqual(self.termina(socio), ["salida 1, modelo BOT: 6 partidas, 8 piezas."])
        self.assertEqual([cantidad for _, cantidad in self.partidas("salpart")], [2, 2, 1, 1, 1, 1])
        self.assertEqual(self.anf.sql("SELECT DISTINCT salida, tipo_doc FROM salpart"),
                         [{"salida": 1, "tipo_doc": "VTA"}])
        self.assertEqual((forma.CuantasPartidas(), self.partidas()), (0, []))
        forma.clic(forma.Command2)
        self.anf.EntradasSalidas().ModificaSalida(1)
        forma = self.anf.pantallas[-1]
        self.assertEqual((forma.Modo, forma.CuantasPartidas(), self.textos()), ("MODIFICACION", 6, []))
        self.anf.respuestas.append(True)
        forma.tecla("F5", forma.txtFields[0])
        self.assertFalse(forma.abierta)
        self.assertEqual(self.anf.sql("SELECT SUM(existencia) AS n FROM existenciaalmacen WHERE almacen = 1"),
                         [{"n": -8.0}])

    def test_a_goods_out_that_asks_twice_is_one_document(self):
        self.socio("--por-celda", 1, "--vigila")
        forma = self.salida()
        self.abajo(forma, "BOT")
        self.assertEqual((forma.Modo, forma.Caption), ("MODIFICACION", "Salida: 1"))
        self.abajo(forma, "CAM")
        self.assertEqual(self.anf.sql("SELECT salida, COUNT(*) AS n FROM salpart GROUP BY salida"),
                         [{"salida": 1, "n": 18}])
        forma.cierra()
        self.assertEqual(self.anf.sql("SELECT salida, estado, ocupado FROM salidas"),
                         [{"salida": 1, "estado": "PE", "ocupado": 0}])

    def test_f5_in_the_first_screen_leaves_the_document_pending_with_its_lines(self):
        self.socio("--por-celda", 1, "--vigila")
        for forma, mensajes, tabla in (
                (self.entrada(), [726, 343], "entradas"), (self.salida(), [713, 340], "salidas")):
            self.abajo(forma, "BOT")
            self.anf.mensajes.clear()
            self.anf.respuestas.append(True)
            forma.tecla("F5", forma.txtFields[0])
            self.assertEqual([mensaje.numero for mensaje in self.anf.mensajes], mensajes)
            self.assertFalse(forma.abierta)
            self.assertEqual(self.anf.sql(f"SELECT estado, ocupado FROM {tabla}"), [{"estado": "PE", "ocupado": 0}])
        self.assertEqual((len(self.partidas()), len(self.partidas("salpart")), self.anf.movimientos), (6, 6, []))

    def test_a_posted_line_whose_second_key_is_the_mark_stays_in_the_ledger(self):
        self.anf.sql("INSERT INTO movsinv (operacion, movimiento, articulo, cantidad, claveadd, importe) "
                     "VALUES ('EN', 1, 'MAR-16', 2, '999', 0)")
        self.socio("--por-celda", 1)
        self.abajo(self.entrada(), "BOT")
        self.assertEqual(self.anf.sql("SELECT articulo FROM movsinv WHERE importe IS NOT NULL"),
                         [{"articulo": "MAR-16"}])

    def test_a_partner_that_watches_serves_one_document_after_the_other(self):
        socio = self.socio("--por-celda", 1, "--vigila")
        for forma in (self.entrada(), self.salida(), self.entrada()):
            self.abajo(forma, "BOT")
        self.assertEqual((len(self.partidas()), len(self.partidas("salpart"))), (12, 6))
        self.assertEqual(self.anf.no_atrapados, [])
        self.assertEqual(self.despide(socio), [
            "entrada 1, modelo BOT: 6 partidas, 6 piezas.", "salida 1, modelo BOT: 6 partidas, 6 piezas.",
            "entrada 2, modelo BOT: 6 partidas, 6 piezas.", "Terminado."])

    def test_the_same_document_may_ask_again(self):
        self.socio("--por-celda", 1, "--vigila")
        forma = self.entrada()
        self.abajo(forma, "BOT")
        self.abajo(forma, "CAM")
        self.assertEqual(len(self.partidas()), 18)

    def test_a_key_that_is_no_model_asks_nobody(self):
        forma = self.entrada()
        self.abajo(forma, "MAR-16")
        self.assertEqual([clase for clase, *_ in self.anf.selectores], ["ListaArticulos"])
        self.assertEqual(self.anf.sql("SELECT * FROM mallaparam"), [])

    def test_a_model_without_articles_ends_the_wait_with_no_lines(self):
        self.anf.sql("INSERT INTO modelos (modelo, descrip) VALUES ('VACIO', 'Sin artículos')")
        socio = self.socio("--total", 5)
        self.abajo(self.entrada(), "VACIO")
        self.assertEqual(self.termina(socio), ["entrada 1, modelo VACIO: 0 partidas, 0 piezas."])
        self.assertEqual(self.partidas(), [])


class Tarde(Caso):
    def test_the_screen_waits_for_a_partner_that_is_slow_and_other_threads_go_on(self):
        socio = self.socio("--por-celda", 1)
        socio.send_signal(signal.SIGSTOP)
        vistas = []

        def despierta():
            for _ in range(5):
                vistas.append((self.senal(), len(self.partidas())))
                time.sleep(0.05)
            socio.send_signal(signal.SIGCONT)

        forma = self.entrada()
        hilo = threading.Thread(target=despierta)
        self.anf.ganchos["TALLASYCOLORES001"] = self.despues(hilo.start)
        self.abajo(forma, "BOT")
        hilo.join()
        self.assertEqual(vistas, [(0, 0)] * 5)
        self.assertEqual(len(self.partidas()), 6)

    def despues(self, hace):
        """The routine, and then something more."""
        rutina = self.anf.ganchos["TALLASYCOLORES001"]

        def ambas(forma, ambiente):
            rutina(forma, ambiente)
            hace()

        return ambas

    def test_a_busy_base_is_waited_for(self):
        socio = self.socio("--por-celda", 1)
        otro = sqlite3.connect(self.archivo, isolation_level=None, check_same_thread=False)
        self.addCleanup(otro.close)

        def suelta():
            self.assertEqual(socio.stdout.readline(), "La base está ocupada; se espera.\n")
            otro.execute("COMMIT")

        hilo = threading.Thread(target=suelta)

        def ocupa():
            otro.execute("BEGIN IMMEDIATE")
            hilo.start()

        self.anf.ganchos["TALLASYCOLORES001"] = self.despues(ocupa)
        self.abajo(self.entrada(), "BOT")
        hilo.join()
        self.assertEqual(len(self.partidas()), 6)
        self.assertEqual(self.termina(socio), ["entrada 1, modelo BOT: 6 partidas, 6 piezas."])


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
