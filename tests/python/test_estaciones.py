"""The routines of examples/ganchos_estaciones: a station transfer from the first key to moved stock, on
the demonstration base. They are loaded as the desktop does: every file of the folder, in name order."""

import datetime
import importlib.util
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

import tarvik

import bases

CARPETA = Path(__file__).resolve().parents[2] / "examples" / "ganchos_estaciones"
CLAVES = [f"MOVESTACIONES00{n}" for n in range(1, 8)]
HOY = datetime.datetime(2024, 3, 5, 14, 3, 22)


def rutinas():
    halladas = {}
    for archivo in sorted(CARPETA.glob("*.py")):
        if archivo.stem not in sys.modules:
            ficha = importlib.util.spec_from_file_location(archivo.stem, archivo)
            sys.modules[archivo.stem] = importlib.util.module_from_spec(ficha)
            ficha.loader.exec_module(sys.modules[archivo.stem])
        modulo = sys.modules[archivo.stem]
        halladas |= {clave: getattr(modulo, clave) for clave in CLAVES if hasattr(modulo, clave)}
    return halladas


sys.path.append(str(CARPETA))


class Caso(unittest.TestCase):
    def setUp(self):
        temporal = tempfile.TemporaryDirectory()
        self.addCleanup(temporal.cleanup)
        self.carpeta = Path(temporal.name)
        self.base = bases.en_archivo(self, self.carpeta / "a.db")
        self.anf = self.abre()
        self.surte("MAR-16", 10)
        self.surte("FOC-9W", 5)

    def abre(self, usuario="BETO", estacion="E1"):
        anf = tarvik.Anfitrion(base=self.base, usuario=usuario, estacion=estacion,
                               ruta=str(self.carpeta / "datos"), demo=True)
        self.addCleanup(anf.cierra)
        anf.ahora = HOY
        anf.ganchos = rutinas()
        return anf

    def surte(self, articulo, cantidad, almacen=1):
        movimiento = self.anf.Ambiente.NuevoMovimiento()
        movimiento.EntSal, movimiento.Operacion, movimiento.Movimiento = "E", "EN", 99
        movimiento.Fecha = HOY.date()
        movimiento.Almacen, movimiento.Articulo, movimiento.Cantidad = almacen, articulo, cantidad
        movimiento.Afecta()
        self.anf.movimientos.clear()

    def pantalla(self, numero=0, anf=None):
        anf = anf or self.anf
        anf.EntradasSalidas().movimientoEstacion(numero, False)
        return anf.pantallas[-1]

    def teclea_en(self, forma, campo, texto):
        forma.enfoca(forma.txtFields[campo])
        forma.teclea(forma.txtFields[campo], texto)
        forma.tecla("Enter")

    def renglon(self, forma, articulo, cantidad):
        self.teclea_en(forma, 2, articulo)
        self.teclea_en(forma, 4, cantidad)
        forma.tecla("Enter")  # on the button

    def nueva(self, entrega="E1", recibe="E2", **partidas):
        forma = self.pantalla()
        self.teclea_en(forma, 0, entrega)
        self.teclea_en(forma, 1, recibe)
        for articulo, cantidad in (partidas or {"MAR-16": 3}).items():
            self.renglon(forma, articulo.replace("_", "-"), str(cantidad))
        return forma

    def pendiente(self, **partidas):
        forma = self.nueva(**partidas)
        forma.clic(forma.cmdPendiente)
        self.assertFalse(forma.abierta, self.textos())
        return forma.Id

    def textos(self, anf=None):
        return [mensaje.texto for mensaje in (anf or self.anf).mensajes]

    def aviso(self, anf=None):
        return (anf or self.anf).mensajes[-1].texto

    def renglones(self, forma):
        return [tuple(forma.grid.TextMatrix(r, c) for c in range(3)) for r in range(1, forma.grid.Rows)]

    def guardados(self):
        return [(fila["traspaso"], fila["estado"], fila["entrega"], fila["recibe"])
                for fila in self.anf.sql("SELECT * FROM traspaso_estacion ORDER BY traspaso")]

    def existencia(self, articulo, almacen):
        filas = self.anf.sql("SELECT existencia FROM existenciaalmacen WHERE articulo = ? AND almacen = ?", articulo,
                             almacen)
        return filas[0]["existencia"] if filas else 0

    def concuerda(self):
        """Stock, the article's own columns and the ledger tell the same of every warehouse."""
        libro = self.anf.sql(
            "SELECT articulo, almacen, SUM(CASE ent_sal WHEN 'E' THEN cantidad ELSE -cantidad END) AS existencia "
            "FROM movsinv GROUP BY articulo, almacen ORDER BY articulo, almacen")
        self.assertEqual(libro, self.anf.sql("SELECT articulo, almacen, existencia FROM existenciaalmacen "
                                             "ORDER BY articulo, almacen"))
        for fila in libro:
            columna = f"alm{int(fila['almacen'])}"
            self.assertEqual(self.anf.sql(f"SELECT {columna} AS n FROM prods WHERE articulo = ?", fila["articulo"]),
                             [{"n": fila["existencia"]}])

    def sin_cambios(self):
        self.assertEqual(self.anf.movimientos, [])
        self.assertEqual((self.existencia("MAR-16", 1), self.existencia("MAR-16", 2)), (10, 0))


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
