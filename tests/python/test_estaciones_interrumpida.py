"""The routines of examples/ganchos_estaciones: a confirmation that breaks off moves nothing twice."""

import sys
import unittest
from unittest import mock

import tarvik

from caso_estaciones import Caso


class Detenida(BaseException):
    """As the time limit stops a routine: what nobody takes for an error."""


class Interrumpida(Caso):
    def existencias(self):
        return [[self.existencia(articulo, n) for n in (1, 2)] for articulo in ("MAR-16", "FOC-9W")]

    def empezado(self):
        """One of two lines, whose second one does not leave."""
        forma = self.nueva(MAR_16=3, FOC_9W=2)
        self.anf.falla("costo_u AS costo FROM prods WHERE articulo = 'FOC-9W'")
        forma.clic(forma.cmdConfirmar)
        self.assertEqual(self.existencias(), [[7, 3], [5, 0]])
        return forma

    def detiene(self, forma, boton, sentencia):
        """The routine is stopped when the base has done what it says."""
        conexion = self.anf.Ambiente.Conexion

        class Conexion:
            def Execute(self, texto):
                filas = conexion.Execute(texto)
                if sentencia in texto:
                    raise Detenida("se detuvo")
                return filas

        class Ambiente:
            Conexion = None

            def __getattr__(otro, nombre):
                return getattr(self.anf.Ambiente, nombre)

        Ambiente.Conexion = Conexion()
        clave = {"cmdConfirmar": "MOVESTACIONES006", "cmdPendiente": "MOVESTACIONES005"}[boton]
        rutina = self.anf.ganchos[clave]
        self.anf.ganchos[clave] = lambda forma, ambiente: rutina(forma, Ambiente())
        try:
            forma.clic(getattr(forma, boton))
        except Detenida:
            pass
        else:
            self.assertIn("se detuvo", " ".join(self.anf.no_atrapados))
        self.anf.ganchos[clave] = rutina
        self.anf.no_atrapados.clear()

    def test_a_new_one_that_is_stopped_half_way_is_gone_on_with_and_not_made_again(self):
        forma = self.nueva(MAR_16=3, FOC_9W=2)
        self.detiene(forma, "cmdConfirmar", "costo_u AS costo FROM prods WHERE articulo = 'FOC-9W'")
        self.assertEqual((forma.Id, forma.Caption), (1, "Traspaso entre estaciones 1: confirmación empezada"))
        self.assertEqual(self.existencias(), [[7, 3], [5, 0]])
        self.anf.respuestas.append(True)
        forma.clic(forma.cmdConfirmar)
        self.assertEqual(self.guardados(), [(1, "CO", "E1", "E2")])
        self.assertEqual(self.existencias(), [[7, 3], [3, 2]])

    def test_one_that_is_stopped_as_its_row_is_made_is_not_made_again(self):
        for boton in ("cmdPendiente", "cmdConfirmar"):
            forma = self.nueva(FOC_9W=1)
            antes = len(self.guardados())
            self.detiene(forma, boton, "INSERT INTO traspaso_estacion")
            self.assertEqual(forma.Id, antes + 1)
            self.anf.respuestas.append(True)
            forma.clic(getattr(forma, boton))
            self.assertEqual((len(self.guardados()), forma.abierta), (antes + 1, False), self.textos())
        self.assertEqual(self.existencias(), [[10, 0], [4, 1]])

    def test_a_base_that_cannot_tell_what_has_moved_leaves_it_begun(self):
        traspasos = sys.modules["traspasos"]
        forma = self.nueva(MAR_16=3, FOC_9W=2)
        self.anf.falla("costo_u AS costo FROM prods WHERE articulo = 'FOC-9W'")
        vistas = []

        def movidas(ambiente, numero):
            vistas.append(numero)
            if len(vistas) == 2:
                self.anf.falla("FROM movsinv WHERE operacion")
            return propia(ambiente, numero)

        propia = traspasos.movidas
        with mock.patch.object(traspasos, "movidas", movidas):
            forma.clic(forma.cmdConfirmar)
        self.assertIn("Lo que ya se movió no se moverá otra vez", self.aviso())
        self.anf.respuestas.append(True)
        forma.clic(forma.cmdConfirmar)
        self.assertEqual(self.guardados(), [(1, "CO", "E1", "E2")])
        self.assertEqual(self.existencias(), [[7, 3], [3, 2]])

    def test_one_that_cannot_be_let_go_of_stays_begun(self):
        forma = self.nueva()
        self.anf.falla_servicio("Afecta")
        self.anf.falla("SET confirma = 0")
        forma.clic(forma.cmdConfirmar)
        self.assertIn("no se terminó de confirmar: falla provocada", self.aviso())
        self.assertEqual((forma.Id, forma.Caption), (1, "Traspaso entre estaciones 1: confirmación empezada"))
        self.anf.respuestas.append(True)
        forma.clic(forma.cmdConfirmar)
        self.assertEqual((self.guardados(), self.existencias()[0]), ([(1, "CO", "E1", "E2")], [7, 3]))

    def test_a_slow_station_leaves_the_rest_to_the_one_that_took_over(self):
        """The other one comes in at each place where this one can be slow."""
        for sentencia in ("SELECT ent_sal, id_salida FROM movsinv", "SELECT costo_u AS costo",
                          "SELECT traspaso FROM traspaso_estacion"):
            with self.subTest(sentencia):
                antes = self.existencia("MAR-16", 1), self.existencia("MAR-16", 2)
                numero = self.pendiente(MAR_16=1, FOC_9W="0.5")
                otro = self.abre(usuario="CARLA", estacion="E2")
                forma = self.pantalla(numero)
                with self.mientras(sentencia, lambda: self.termina_en(otro, numero)):
                    forma.clic(forma.cmdConfirmar)
                self.assertEqual(self.aviso(), f"El traspaso {numero} ya está confirmado.")
                self.assertTrue(forma.abierta)
                self.assertEqual(self.guardados()[-1], (numero, "CO", "E1", "E2"))
                self.assertEqual((self.existencia("MAR-16", 1), self.existencia("MAR-16", 2)),
                                 (antes[0] - 1, antes[1] + 1))
                self.concuerda()

    def termina_en(self, otro, numero):
        forma = self.pantalla(numero, otro)
        otro.respuestas.append(True)
        forma.clic(forma.cmdConfirmar)
        self.assertFalse(forma.abierta, self.textos(otro))

    def mientras(self, sentencia, hace):
        """Once, at this station, when the base has answered what it says."""
        traspasos = sys.modules["traspasos"]
        propia, hecho = traspasos._filas, []

        def filas(ambiente, texto, *valores):
            def una_vez():
                if texto.startswith(sentencia) and not hecho and ambiente.Estacion == "E1":
                    hecho.append(1)
                    hace()

            for fila in propia(ambiente, texto, *valores):
                una_vez()
                yield fila
            una_vez()

        return mock.patch.object(traspasos, "_filas", filas)

    def test_the_ledger_takes_no_line_of_a_transfer_twice(self):
        numero = self.pendiente()
        forma = self.pantalla(numero)
        forma.clic(forma.cmdConfirmar)
        movimiento = self.anf.Ambiente.NuevoMovimiento()
        movimiento.EntSal, movimiento.Operacion, movimiento.Movimiento, movimiento.IdSalida = "S", "TE", numero, 1
        movimiento.Almacen, movimiento.Articulo, movimiento.Cantidad = 1, "MAR-16", 3
        with self.assertRaises(tarvik.Error):
            movimiento.Afecta()
        self.assertEqual(self.existencias()[0], [7, 3])
        self.concuerda()

    def test_a_last_word_that_finds_the_transfer_taken_is_told(self):
        forma = self.nueva()
        otro = self.abre(usuario="CARLA", estacion="E2")
        afecta = self.anf.Ambiente.NuevoMovimiento

        class Ambiente:
            def __getattr__(otro, nombre):
                return getattr(self.anf.Ambiente, nombre)

            def NuevoMovimiento(otro):
                return Movimiento()

        class Movimiento:
            def __init__(otro):
                object.__setattr__(otro, "propio", afecta())

            def __setattr__(otro, nombre, valor):
                setattr(otro.propio, nombre, valor)

            def Afecta(otro):
                otro.propio.Afecta()
                if len(self.anf.movimientos) == 2:
                    self.anf.sql("UPDATE traspaso_estacion SET confirma = 99, usuario = 'CARLA', estacion = 'E2'")

        rutina = self.anf.ganchos["MOVESTACIONES006"]
        self.anf.ganchos["MOVESTACIONES006"] = lambda forma, ambiente: rutina(forma, Ambiente())
        forma.clic(forma.cmdConfirmar)
        self.assertIn("fue cambiado por CARLA en E2", self.aviso())
        self.assertTrue(forma.abierta)
        self.termina_en(otro, 1)
        self.assertEqual(self.existencias()[0], [7, 3])

    def test_a_begun_one_goes_on_with_its_own_warehouses_and_its_own_cost(self):
        self.anf.sql("INSERT INTO almacen (almacen, descrip) VALUES (7, 'Otro')")
        forma = self.nueva(MAR_16=3, FOC_9W=2)
        # The second line leaves, and does not arrive.
        self.anf.falla("SELECT cantidad, precio, importe FROM movsinv WHERE operacion = 'TE' AND movimiento = 1 "
                       "AND ent_sal = 'S' AND id_salida = 2")
        forma.clic(forma.cmdConfirmar)
        self.assertEqual(self.existencias(), [[7, 3], [3, 0]])
        forma.cierra()
        self.anf.sql("UPDATE almacen_de_estacion SET almacen = 7 WHERE estacion IN ('E1', 'E2')")
        self.anf.sql("UPDATE prods SET costo_u = costo_u * 3 + 1")
        self.anf.sql("INSERT INTO movsinv (f_movim, cerrado) VALUES ('2024-04-01', 1)")
        forma = self.pantalla(1)
        self.anf.respuestas.append(True)
        forma.clic(forma.cmdConfirmar)
        self.assertEqual(self.guardados(), [(1, "CO", "E1", "E2")], self.textos())
        self.assertEqual(self.existencias(), [[7, 3], [3, 2]])
        self.assertEqual(self.existencia("FOC-9W", 7), 0)
        for articulo in ("MAR-16", "FOC-9W"):
            sale, entra = self.anf.sql("SELECT importe FROM movsinv WHERE operacion = 'TE' AND articulo = ? "
                                       "ORDER BY ent_sal DESC", articulo)
            self.assertGreater(sale["importe"], 0)
            self.assertAlmostEqual(sale["importe"], entra["importe"])

    def test_a_begun_one_without_movements_is_held_to_the_closed_period(self):
        forma = self.nueva()
        self.anf.falla_servicio("Afecta")
        self.anf.falla("SET confirma = 0")
        forma.clic(forma.cmdConfirmar)
        self.anf.sql("INSERT INTO movsinv (f_movim, cerrado) VALUES ('2024-04-01', 1)")
        self.anf.respuestas.append(True)
        forma.clic(forma.cmdConfirmar)
        self.assertEqual((self.anf.mensajes[-1].numero, self.existencias()[0]), (253, [10, 0]))

    def test_the_lines_of_a_begun_one_cannot_be_deleted(self):
        forma = self.empezado()
        self.anf.respuestas.append(True)
        self.anf.mensajes.clear()
        forma.tecla("Delete", forma.grid)
        self.assertEqual((len(self.renglones(forma)), self.textos()), (2, []))
        forma.clic(forma.cmdConfirmar)
        self.assertEqual(self.existencias(), [[7, 3], [3, 2]])


if __name__ == "__main__":
    unittest.main()
