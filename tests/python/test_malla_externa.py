"""The external matrix between two real processes: a partner that answers, at once or late."""

import signal
import sqlite3
import threading
import time
import unittest

import tarvik

from caso_malla_externa import Caso


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


if __name__ == "__main__":
    unittest.main()
