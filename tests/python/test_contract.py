"""What scripts written by others rely on: the module's names and what each does, one by one.
Goods-in, the public class and the stand-alone host."""

import datetime
import gc
import tempfile
import threading
import unittest
from pathlib import Path

import tarvik

import bases

HOY = datetime.datetime(2024, 3, 5, 14, 3, 22)


class Caso(unittest.TestCase):
    demo = False

    def setUp(self):
        temporal = tempfile.TemporaryDirectory()
        self.addCleanup(temporal.cleanup)
        self.carpeta = Path(temporal.name)
        self.anf = self.abre(bases.en_memoria(self), demo=self.demo)
        self.anf.ahora = HOY

    def abre(self, base, demo=False, ruta=None):
        anf = tarvik.Anfitrion(base=base, usuario="ANA", estacion="E1", ruta=str(ruta or self.carpeta / "datos"),
                               demo=demo)
        self.addCleanup(anf.cierra)
        return anf

    def siembra(self):
        for sentencia in [
                "INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('COM', 'E', 'Compra')",
                "INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('VTA', 'S', 'Venta')",
                "INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('A++', 'E', 'Sobrante')",
                "INSERT INTO almacen (almacen) VALUES (1)", "INSERT INTO almacen (almacen) VALUES (12)",
                "INSERT INTO impuestos (impuesto, valor) VALUES ('IVA', 16)",
                "INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto) "
                "VALUES ('A-100', 'Martillo', 'PZA', 100, 'IVA')",
                "INSERT INTO clavesadd (clave, articulo, cantidad, unidad) VALUES ('A-CAJA', 'A-100', 12, 'CAJ')"]:
            self.anf.sql(sentencia)

    def nueva(self):
        self.anf.EntradasSalidas().NuevaEntrada()
        forma = self.anf.pantallas[-1]
        forma.teclea(forma.txtFields[0], "COM")
        forma.tecla("Enter")
        return forma

    def partida(self, forma, articulo="A-100", cantidad="3", precio=""):
        forma.teclea(forma.txtFields[4], articulo)
        forma.tecla("Enter")
        forma.teclea(forma.txtFields[5], cantidad)
        forma.tecla("Enter")
        forma.teclea(forma.txtFields[6], precio)
        forma.tecla("Enter")

    def afecta(self, forma):
        self.anf.respuestas.append(True)
        forma.tecla("F5", forma.txtFields[0])

    def recibida(self, **partida):
        forma = self.nueva()
        self.partida(forma, **partida)
        self.afecta(forma)
        return forma

    def textos(self):
        return [m.texto for m in self.anf.mensajes]


class Apertura(Caso):
    def test_arguments_make_base_and_folder(self):
        base, ruta = self.carpeta / "a.db", self.carpeta / "uno" / "dos"
        anf = self.abre(f"sqlite:{base}", ruta=ruta)
        self.assertTrue(base.exists())
        self.assertTrue(ruta.is_dir())
        self.assertEqual((anf.Ambiente.Usuario, anf.Ambiente.Estacion, anf.Ambiente.RutaBase),
                         ("ANA", "E1", str(ruta)))

    def test_positional_arguments_and_second_opening(self):
        base = bases.en_archivo(self, self.carpeta / "a.db")
        anf = tarvik.Anfitrion(base, "ANA", "E1", str(self.carpeta))
        anf.sql("INSERT INTO prods (articulo) VALUES ('A')")
        anf.cierra()
        self.assertEqual(self.abre(base).sql("SELECT articulo FROM prods"),
                         [{"articulo": "A"}])

    def test_a_base_that_does_not_open_raises_with_a_clear_text(self):
        self.assertTrue(issubclass(tarvik.Error, Exception))
        ajeno = self.carpeta / "ajeno.db"
        ajeno.write_text("esto no es una base\n" * 100)
        for base in (f"sqlite:{ajeno}", f"sqlite:{self.carpeta}/no/hay/a.db", "a.db"):
            with self.subTest(base), self.assertRaisesRegex(tarvik.Error, "base|archivo"):
                self.abre(base, ruta=self.carpeta / "nada")
            self.assertFalse((self.carpeta / "nada").exists())

    def test_demo_fills_an_empty_base_only_when_asked(self):
        self.assertEqual(self.anf.sql("SELECT COUNT(*) AS n FROM prods"), [{"n": 0}])
        self.assertGreater(self.abre(bases.en_memoria(self), demo=True).sql("SELECT COUNT(*) AS n FROM prods")[0]["n"], 20)

    def test_memory_is_one_base_for_all_connections_and_for_no_other_host(self):
        self.anf.sql("INSERT INTO prods (articulo) VALUES ('A')")
        self.anf.EntradasSalidas().NuevaEntrada()
        forma = self.anf.pantallas[-1]
        self.assertEqual(self.abre("sqlite::memory:").sql("SELECT articulo FROM prods"), [])
        forma.teclea(forma.txtFields[4], "A")
        forma.teclea(forma.txtFields[5], "1")
        forma.teclea(forma.txtFields[6], "1")
        forma.tecla("Enter")
        self.assertEqual(self.anf.sql("SELECT articulo FROM entpart"), [{"articulo": "A"}])

    def test_an_empty_base_has_its_first_contents_and_nothing_else(self):
        self.assertEqual(self.anf.sql("SELECT entradas, salidas FROM defform"),
                         [{"entradas": "entrada", "salidas": "salida"}])
        self.assertEqual(self.anf.sql("SELECT controlproc FROM ControlProc"), [{"controlproc": 1}])
        for tabla in ("prods", "almacen", "tipominv", "usuarios", "clients", "impuestos", "entradas"):
            self.assertEqual(self.anf.sql(f"SELECT COUNT(*) AS n FROM {tabla}"), [{"n": 0}], tabla)
        for numero in (1, 72, 235, 253, 341, 726):
            self.assertNotEqual(self.anf.mensaje(numero), str(numero))
        self.assertEqual(self.anf.mensaje(9999), "9999")

    def test_schema_takes_nulls_long_keys_and_has_nine_warehouse_columns(self):
        clave = "ñ'\"x" * 100
        self.anf.sql("INSERT INTO prods (articulo) VALUES (?)", clave)
        fila = self.anf.sql("SELECT * FROM prods")[0]
        self.assertEqual(fila["articulo"], clave)
        self.assertEqual([fila[f"alm{n}"] for n in range(1, 10)], [None] * 9)

    def test_foreign_keys_are_on_in_sql(self):
        with self.assertRaises(tarvik.Error):
            self.anf.sql("INSERT INTO entpart (id_entrada, entrada) VALUES (1, 77)")

    def test_cierra_closes_screens_and_connection(self):
        self.siembra()
        forma = self.nueva()
        self.partida(forma)
        self.anf.ganchos["ENTRADA006"] = lambda f, a: setattr(f, "CancelaProceso", True)
        self.anf.cierra()
        self.assertFalse(forma.abierta)
        self.assertEqual(self.anf.pantallas, [])
        with self.assertRaises(tarvik.Error):
            self.anf.sql("SELECT 1")
        self.anf.cierra()


class Ambiente(Caso):
    def test_members_are_writable(self):
        ambiente = self.anf.Ambiente
        self.assertEqual((ambiente.Moneda, ambiente.ClaveLocal), ("", ""))
        self.assertEqual((ambiente.FormatoImporte, ambiente.FormatoCantidad),
                         ("###,###,##0.00", "###,###,##0.####"))
        for nombre in ("Usuario", "Estacion", "Moneda", "ClaveLocal", "FormatoImporte", "FormatoCantidad", "RutaBase"):
            setattr(ambiente, nombre, "otro")
            self.assertEqual(getattr(ambiente, nombre), "otro")
        for nombre in ("ValorFechaA", "ValorFechaB"):
            self.assertEqual(getattr(ambiente, nombre), 0)
            setattr(ambiente, nombre, 3)
            self.assertEqual(getattr(ambiente, nombre), 3)

    def test_hook_value_empty_reads_none(self):
        ambiente = self.anf.Ambiente
        for valor in (7, "texto", None):
            ambiente.ValorDeGancho = valor
            self.assertEqual(ambiente.ValorDeGancho, valor)

    def test_settings_have_defaults_and_last_in_the_base(self):
        self.assertEqual([self.anf.Ambiente.Parametros[n] for n in ("Almacen", "Lector", "PorSurt", "EnVenta")],
                         [1, 0, 0, 0])
        base = bases.en_archivo(self, self.carpeta / "a.db")
        primero = self.abre(base)
        primero.Ambiente.Parametros["Almacen"] = 12
        primero.Ambiente.Parametros["Lector"] = 1
        primero.cierra()
        segundo = self.abre(base)
        self.assertEqual(segundo.Ambiente.Parametros["Almacen"], 12)
        segundo.EntradasSalidas().NuevaEntrada()
        forma = segundo.pantallas[-1]
        self.assertEqual((forma.txtFields[14].Text, forma.Check4.Value), ("12", 1))


class Puerta(Caso):
    def setUp(self):
        super().setUp()
        self.siembra()
        self.es = self.anf.EntradasSalidas()

    def test_references_can_be_taken_away(self):
        self.assertIsNotNone(self.es.Ambiente)
        self.assertIsNotNone(self.es.Parent)
        self.es.Parent = None
        self.assertIsNone(self.es.Parent)
        self.es.Ambiente = None
        self.assertIsNone(self.es.Ambiente)
        self.es.NuevaEntrada()  # reported, not raised
        self.assertIn("caja", [m.clase for m in self.anf.mensajes])
        self.es.Ambiente, self.es.Parent = self.anf.Ambiente, self.anf.Parent
        self.es.NuevaEntrada(False)
        self.assertEqual(self.anf.pantallas[-1].Modo, "ALTA")

    def test_modal_show_runs_the_routine_and_then_unloads(self):
        vistas = []
        self.anf.al_mostrar_modal = lambda forma: vistas.append((forma.Visible, forma.abierta, forma))
        self.es.NuevaEntrada(True)
        self.es.NuevaEntrada(bolModal=True)
        self.assertEqual([v[:2] for v in vistas], [(True, True)] * 2)
        self.assertFalse(vistas[0][2].abierta)
        self.anf.al_mostrar_modal = None
        self.es.NuevaEntrada(True)
        self.assertEqual(self.anf.pantallas, [])

    def test_a_refused_close_leaves_the_modal_form_open(self):
        self.anf.ganchos["ENTRADA006"] = lambda f, a: setattr(f, "CancelaProceso", True)
        self.es.NuevaEntrada(True)
        self.assertTrue(self.anf.pantallas[-1].abierta)

    def test_modify_read_and_delete(self):
        forma = self.nueva()
        self.partida(forma)
        forma.clic(forma.Command2)
        self.es.ModificaEntrada(1)
        forma = self.anf.pantallas[-1]
        self.assertEqual((forma.Modo, forma.Entrada, forma.Caption), ("MODIFICACION", 1, "Entrada: 1"))
        self.assertEqual(self.anf.sql("SELECT ocupado FROM entradas"), [{"ocupado": 1}])
        self.es.ModificaEntrada(1)
        self.assertEqual(self.anf.mensajes[-1].numeros, [74])
        self.es.ConsultaEntrada(1)
        self.assertEqual(self.anf.pantallas[-1].Modo, "CONSULTA")
        self.es.EliminaEntrada(1)
        self.assertEqual(self.anf.mensajes[-1].numeros, [148])
        self.anf.Ambiente.Usuario = "BETO"
        self.es.ModificaEntrada(1, False)
        mensaje = self.anf.mensajes[-1]
        self.assertEqual((mensaje.numeros, mensaje.numero), ([75, 76], 75))
        self.assertEqual(mensaje.texto, f"{self.anf.mensaje(75)} ANA{self.anf.mensaje(76)}")
        for pantalla in list(self.anf.pantallas):
            pantalla.clic(pantalla.Command2)
        self.anf.Parent.lvListView.ListItems.append(1)
        self.anf.Parent.lvListView.SelectedItem = 1
        self.es.EliminaEntrada(1)  # no answer is No
        pregunta = self.anf.mensajes[-1]
        self.assertEqual((pregunta.clase, pregunta.numeros, pregunta.respuesta), ("pregunta", [1], False))
        self.assertEqual(len(self.anf.sql("SELECT * FROM entpart")), 1)
        self.anf.respuestas.append(True)
        self.es.EliminaEntrada(1)
        self.assertEqual(self.anf.sql("SELECT * FROM entpart") + self.anf.sql("SELECT * FROM entradas"), [])
        self.assertEqual(len(self.anf.Parent.lvListView.ListItems), 0)

    def test_missing_documents_show_their_messages(self):
        self.es.ModificaEntrada(9)
        self.es.ConsultaEntrada(9)
        self.es.EliminaEntrada(9)
        self.assertEqual([(m.numero, m.estilo) for m in self.anf.mensajes], [(72, 16), (110, 16), (147, 64)])
        self.assertEqual(self.anf.pantallas, [])

    def test_a_posted_document_opens_to_read(self):
        self.recibida()
        self.es.ModificaEntrada(1)
        self.assertEqual((self.anf.mensajes[-1].numero, self.anf.pantallas[-1].Modo), (73, "CONSULTA"))


class Maestra(Caso):
    def setUp(self):
        super().setUp()
        self.siembra()

    def test_list_view_is_live(self):
        vista = self.anf.Parent.lvListView
        vista.ListItems.append(5)
        vista.ListItems.append("7")
        otra = self.anf.Parent.lvListView
        self.assertEqual((len(otra.ListItems), otra.ListItems[0], list(otra.ListItems)), (2, 5, [5, "7"]))
        vista.SelectedItem = 2
        self.assertEqual(otra.SelectedItem, 2)
        vista.ListItems.clear()
        self.assertEqual(len(otra.ListItems), 0)

    def test_calls_after_posting_follow_the_active_list(self):
        self.anf.Parent.CatalogoActivo = "Entradas"
        self.assertEqual(self.anf.Parent.CatalogoActivo, "Entradas")
        self.recibida()
        self.assertEqual(self.anf.Parent.llamadas, [("LlenaEntradas", (1,)), ("CreaMenuPopUp", ())])
        self.anf.Parent.llamadas.clear()
        self.anf.Parent.CatalogoActivo = "Clientes"
        self.recibida()
        self.assertEqual(self.anf.Parent.llamadas, [])


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


class Pantalla(Caso):
    def setUp(self):
        super().setUp()
        self.siembra()
        self.forma = self.nueva()

    def test_screens_come_and_go(self):
        self.anf.EntradasSalidas().NuevaEntrada()
        segunda = self.anf.pantallas[-1]
        self.assertEqual(self.anf.pantallas, [self.forma, segunda])
        segunda.clic(segunda.Command2)
        self.assertEqual(self.anf.pantallas, [self.forma])
        self.assertFalse(segunda.abierta)
        self.assertFalse(segunda.Visible)
        self.assertEqual((segunda.Modo, segunda.txtFields[14].Text), ("ALTA", "1"))  # readable after its end

    def test_a_screen_is_listed_from_its_load_on(self):
        cuantas = []
        self.anf.ganchos["ENTRADA001"] = lambda forma, ambiente: cuantas.append(forma in self.anf.pantallas)
        self.anf.EntradasSalidas().NuevaEntrada()
        self.assertEqual(cuantas, [True])

    def test_members_and_procedures(self):
        f = self.forma
        self.assertEqual((f.Modo, f.Entrada, f.CancelaProceso, f.Procesando, f.NumeroDePartidas, f.Costo),
                         ("ALTA", 0, False, False, 10, 0))
        f.Importe, f.Iva, f.Total, f.cEstado = 1.5, 2.5, 3.5, "x"
        self.assertEqual((f.Importe, f.Iva, f.Total, f.cEstado), (1.5, 2.5, 3.5, "x"))
        f.Caption, f.Tag = "Título", "marca"
        self.assertEqual((f.Caption, f.Tag), ("Título", "marca"))
        f.txtFields[4].Text = "A-100"
        f.PonDescripcion()
        f.txtFields[5].Text = "2"
        f.LlenaPartida()
        self.assertEqual((f.CuantasPartidas(), f.Entrada, f.Modo, f.Caption), (1, 1, "MODIFICACION", "Entrada: 1"))
        f.CalculaImportes()
        self.assertEqual(f.txtFields[11].Text, "232")
        self.assertTrue(f.ValidaTab1())
        self.assertTrue(f.ValidaFecha())
        self.assertTrue(f.Valida())
        f.txtFields[0].Text = "VTA"
        self.assertFalse(f.ValidaTab1())
        self.assertEqual(f.rstEntrada["entrada"], 1)
        f.Costo = 5
        f.SalvaEntrada("PE")
        self.assertEqual(self.anf.sql("SELECT estado, costo, ocupado FROM entradas"),
                         [{"estado": "PE", "costo": 5.0, "ocupado": 0}])
        f.PonTC()  # this screen lacks its fields: reported, not raised
        self.assertIn("Function: PonTC", self.anf.mensajes[-1].texto)
        with self.assertRaises(AttributeError):
            f.NoHay

    def test_controls_by_name_and_index(self):
        f = self.forma
        self.assertEqual(f.txtFields[4], f.txtFields(4))
        self.assertNotEqual(f.txtFields[4], f.txtFields[5])
        self.assertNotEqual(f.txtFields[4], "txtFields")
        self.assertEqual((f.txtFields[4].Name, f.txtFields[4].Index), ("txtFields", 4))
        self.assertEqual((f.fg2.Name, f.fg2.Index), ("fg2", None))
        with self.assertRaises(tarvik.Error):
            f.txtFields[99]

    def test_every_field_of_the_screen(self):
        disenados = {0: ("U", 0), 14: ("SN", 1), 4: ("", 3), 5: ("SD", 4), 27: ("", 5), 6: ("N", 6), 9: ("", 7),
                     24: ("", 8), 25: ("", 9), 26: ("", 10), 28: ("", 11), 29: ("", 12), 1: ("SD", 20), 11: ("", 43)}
        for indice, (tag, orden) in disenados.items():
            campo = self.forma.txtFields[indice]
            self.assertEqual((campo.Tag, campo.TabIndex, campo.Enabled, campo.MaxLength),
                             (tag, orden, indice not in (1, 11), 0), indice)
        for nombre, orden in [("Command3", 2), ("DTPicker1", 16), ("RichTextBox3", 17), ("Check2", 21), ("Check3", 22),
                              ("txtEdit", 23), ("Command6", 24), ("fg2", 26), ("RichTextBox2", 28), ("RichTextBox1", 38),
                              ("Command1", 39), ("Check4", 40), ("Command5", 41), ("Command2", 42)]:
            self.assertEqual(getattr(self.forma, nombre).TabIndex, orden, nombre)
        self.assertEqual([self.forma.MultiCombo1[i].buscar for i in range(4)],
                         ["Conceptos de entrada al inventario", "Almacenes", "Articulos",
                          "Claves adicionales de articulos"])

    def test_properties(self):
        f = self.forma
        campo = f.txtFields[25]
        for nombre, valor in [("Text", "abc"), ("MaxLength", 9), ("SelStart", 1), ("SelLength", 2), ("Tag", "U"),
                              ("TabIndex", 77), ("Left", 15), ("Top", 30), ("Width", 45), ("Height", 60),
                              ("ForeColor", 0x102030), ("Enabled", False), ("Visible", False)]:
            setattr(campo, nombre, valor)
            self.assertEqual(getattr(campo, nombre), valor, nombre)
        self.assertEqual((f.Check2.Value, f.Check3.Value, f.Check4.Value), (1, 0, 0))
        f.Check3.Value = 1
        self.assertEqual(f.Check3.Value, 1)
        self.assertEqual((f.Command5.Caption, f.Check4.Caption), ("&Finalizar (F5)", "Lector de Código de Barras"))
        f.DTPicker1.Value = None
        self.assertIsNone(f.DTPicker1.Value)
        f.DTPicker1.Value = datetime.date(2024, 2, 29)
        self.assertEqual(f.DTPicker1.Value, datetime.date(2024, 2, 29))
        f.MultiCombo1[0].buscar = "otra"
        self.assertEqual(f.MultiCombo1[0].buscar, "otra")

    def test_setting_a_property_runs_the_change_logic(self):
        self.forma.txtFields[24].Text = "A-CAJA"
        self.assertEqual((self.forma.txtFields[4].Text, self.forma.txtFields[1].Text), ("A-100", "Martillo"))
        self.forma.txtFields[28].Text = "2"
        self.assertEqual(self.forma.txtFields[5].Text, "24")

    def test_the_grid(self):
        f = self.forma
        g = f.fg2
        self.assertEqual((g.Rows, g.Cols, g.FixedRows, g.FixedCols, g.Row, g.Col), (5000, 10, 1, 0, 1, 0))
        self.assertEqual([g.TextMatrix(0, c) for c in range(8)],
                         ["Artículo", "QTY", "Precio", "Importe", "Descripción", "No de Entrada", "Presentación",
                          "Pr. QTY"])
        self.assertEqual([g.ColWidth(c) for c in range(1, 8)], [800, 900, 900, 4000, 0, 2000, 1000])
        self.partida(f)
        self.assertEqual([g.TextMatrix(1, c) for c in range(8)],
                         ["A-100", "3", "116.00", "348", "Martillo", "1", "", ""])
        g.Col = 4
        self.assertEqual((g.Text, g.CellBackColor), ("Martillo", 0xFFFFE0))
        g.Col = 3
        self.assertEqual((g.BackColor(1, 4), g.BackColor(1, 3), g.BackColor(7, 7)), (0xFFFFFF, 0xFFFFE0, 0))
        g.setTextMatrix(9, 4, "x")
        self.assertEqual(g.TextMatrix(9, 4), "x")
        g.Text = "y"
        self.assertEqual(g.TextMatrix(1, 3), "y")
        g.TopRow = 5
        self.assertEqual(g.TopRow, 5)
        self.assertGreater(g.RowHeight(1), 0)
        self.assertFalse(g.bloqueada(1, 1))
        g.TopRow, g.Row, g.Col = 1, 1, 2
        g.Left, g.Top = 120, 240
        f.doble_clic_celda(g, 1, 2)
        self.assertEqual((f.txtEdit.Left, f.txtEdit.Top, f.txtEdit.Width, f.txtEdit.Height),
                         (g.Left + g.CellLeft, g.Top + g.CellTop, g.CellWidth, g.CellHeight))
        self.assertEqual(g.CellWidth, 900)

    def test_leaving_a_cell_by_a_property_commits_it(self):
        self.partida(self.forma)
        self.forma.clic_celda(self.forma.fg2, 1, 1)
        self.forma.tecla("5")
        self.assertTrue(self.forma.txtEdit.Visible)
        self.forma.fg2.Row = 2
        self.assertFalse(self.forma.txtEdit.Visible)
        self.assertEqual(self.anf.sql("SELECT cantidad FROM entpart"), [{"cantidad": 5.0}])


class Operador(Caso):
    """What an operator does."""

    def setUp(self):
        super().setUp()
        self.siembra()
        self.forma = self.nueva()

    def test_enfoca_leaves_and_enters(self):
        f = self.forma
        self.assertEqual(f.ActiveControl, f.txtFields[14])
        self.anf.ganchos_disparados.clear()
        f.enfoca(f.txtFields[4])
        self.assertEqual(self.anf.ganchos_disparados, [("ENTRADA007", 14), ("ENTRADA008", 4)])
        f.enfoca(f.txtFields[1])  # disabled
        f.enfoca(f.txtEdit)       # hidden
        self.assertEqual(f.ActiveControl, f.txtFields[4])
        self.anf.ganchos_disparados.clear()
        f.enfoca(f.txtFields[4])  # already there
        self.assertEqual(self.anf.ganchos_disparados, [])

    def test_teclea_types_over_the_selection_and_not_where_the_focus_cannot_go(self):
        f = self.forma
        f.txtFields[4].Text = "VIEJO"
        f.teclea(f.txtFields[4], "AB")
        self.assertEqual(f.txtFields[4].Text, "AB")
        f.teclea(f.txtFields[4], "C")  # the focus is there: the caret stays
        self.assertEqual(f.txtFields[4].Text, "ABC")
        f.teclea(f.txtFields[1], "x")
        self.assertEqual((f.txtFields[1].Text, f.txtFields[4].Text), ("", "ABC"))
        f.tecla("D", f.txtFields[1])  # goes to the focused control
        self.assertEqual(f.txtFields[4].Text, "ABCD")

    def test_each_further_character_goes_where_the_focus_is(self):
        f = self.forma
        f.txtFields[14].MaxLength = 2
        f.teclea(f.txtFields[14], "12AB")  # a full field moves on by itself
        self.assertEqual((f.txtFields[14].Text, f.txtFields[4].Text), ("12", "AB"))

    def test_keys_by_name(self):
        f = self.forma
        f.teclea(f.txtFields[4], "ABCD")
        f.tecla("Back")
        f.tecla("Left")
        f.tecla("Left")
        f.tecla("Delete")
        self.assertEqual(f.txtFields[4].Text, "AC")
        f.tecla("Right")
        f.tecla("Space")
        f.tecla("ñ")
        self.assertEqual(f.txtFields[4].Text, "AC ñ")
        f.tecla("Esc")
        f.tecla("Up")
        for numero in (1, 4, 6, 7, 10, 11, 12):
            f.tecla(f"F{numero}")
        self.assertEqual(f.ActiveControl, f.txtFields[4])
        with self.assertRaises(tarvik.Error):
            f.tecla("NoHay")

    def test_tab_moves_by_order_only_where_the_field_did_not(self):
        f = self.forma
        f.tecla("Tab", f.txtFields[14])
        self.assertEqual(f.ActiveControl, f.txtFields[4])
        f.tecla("Tab", f.txtFields[25])
        self.assertEqual(f.ActiveControl, f.txtFields[26])
        f.tecla("Tab", f.txtFields[0])
        self.assertEqual(f.ActiveControl, f.txtFields[14])

    def test_clicks(self):
        f = self.forma
        f.clic(f.Check3)
        self.assertEqual((f.Check3.Value, f.ActiveControl), (1, f.Check3))
        f.tecla("Space")
        self.assertEqual(f.Check3.Value, 0)
        f.clic(f.Label10[1])  # labels take no focus
        f.clic(f.Label10(2))
        self.assertEqual((f.Check3.Value, f.Check2.Value, f.ActiveControl), (1, 0, f.Check3))
        f.Check2.Enabled = False
        f.clic(f.Check2)
        self.assertEqual(f.Check2.Value, 0)
        self.anf.ganchos_disparados.clear()
        f.clic(f.Command3)  # hidden
        self.assertEqual(self.anf.ganchos_disparados, [])
        f.tecla("Enter", f.Command2)
        self.assertFalse(f.abierta)

    def test_space_on_a_button_is_a_click(self):
        self.forma.tecla("Space", self.forma.Command6)
        self.assertEqual(self.anf.mensajes[-1].numero, 234)

    def test_cells(self):
        f, g = self.forma, self.forma.fg2
        self.partida(f)
        self.partida(f, cantidad="4")
        f.clic_celda(g, 2, 2)
        self.assertEqual((g.Row, g.Col, f.ActiveControl), (2, 2, g))
        f.tecla("Up")
        f.tecla("Left")
        self.assertEqual((g.Row, g.Col), (1, 1))
        f.doble_clic_celda(g, 2, 1)
        self.assertEqual((g.Row, f.txtEdit.Visible, f.txtEdit.Text), (2, True, "4"))
        f.tecla("Esc")
        self.assertEqual((f.txtEdit.Visible, g.TextMatrix(2, 1)), (False, "4"))
        f.clic_celda(g, 1, 4)
        f.tecla("Right")
        self.assertEqual(g.Col, 6)  # the hidden column is skipped
        f.tecla("Left")
        self.assertEqual(g.Col, 4)
        f.clic_celda(g, 1, 0)
        f.tecla("Delete")
        self.assertEqual((f.CuantasPartidas(), g.Rows, g.TextMatrix(1, 1)), (1, 5000, "4"))
        self.assertEqual(self.anf.sql("SELECT cantidad FROM entpart"), [{"cantidad": 4.0}])

    def test_close_box(self):
        f = self.forma
        f.cierra()
        self.assertTrue(f.abierta)
        self.anf.procesa_eventos(10)
        self.assertFalse(f.abierta)

    def test_painting_a_goods_in_asks_nothing_of_the_base(self):
        self.anf.sentencias.clear()
        self.anf.ganchos_disparados.clear()
        self.forma.pinta()
        self.assertEqual((self.anf.sentencias, self.anf.ganchos_disparados), ([], []))

    def test_active_control_is_none_after_the_end(self):
        self.forma.clic(self.forma.Command2)
        self.forma.teclea(self.forma.txtFields[4], "x")
        self.assertEqual(self.forma.txtFields[4].Text, "")
        self.assertIsNone(self.forma.ActiveControl)

    def test_an_operators_act_does_not_raise_but_a_procedure_does(self):
        self.anf.falla("modelo")
        self.forma.teclea(self.forma.txtFields[4], "A-100")
        self.forma.tecla("Enter")
        self.assertEqual(self.anf.no_atrapados, ["falla provocada"])
        self.anf.falla_servicio("BuscaCatalogo")
        with self.assertRaisesRegex(tarvik.Error, "falla provocada"):
            self.forma.Command3_Click()

    def test_the_receipt_of_one_line(self):
        es = self.anf.EntradasSalidas()
        es.NuevaEntrada()
        f = self.anf.pantallas[-1]
        f.teclea(f.txtFields[0], "COM")
        f.tecla("Enter")
        f.teclea(f.txtFields[4], "A-100")
        f.tecla("Enter")
        f.teclea(f.txtFields[5], "3")
        f.tecla("Enter")
        f.tecla("Enter")  # the price as proposed
        self.anf.respuestas.append(True)
        f.tecla("F5", f.txtFields[0])
        self.assertEqual(self.anf.sql("SELECT estado FROM entradas WHERE entrada = ?", 1), [{"estado": "CO"}])
        self.assertEqual(f.Costo, 348.0)
        self.assertEqual(self.anf.sql("SELECT costo FROM entradas"), [{"costo": 0.0}])



class LoQueQueda(unittest.TestCase):
    """What a script keeps of a host is whole after it has let go of the host itself."""

    def test_the_context_and_the_list_form_outlive_their_host(self):
        guardado = []
        with tempfile.TemporaryDirectory() as carpeta:
            def abre_y_suelta():
                anf = tarvik.Anfitrion(base=bases.en_memoria(self), usuario="ANA", estacion="E1", ruta=carpeta)
                anf.ganchos["MOVESTACIONES001"] = lambda forma, ambiente: guardado.append(ambiente)
                puerta = anf.EntradasSalidas()
                puerta.movimientoEstacion(0, False)
                anf.Parent.CatalogoActivo = "Entradas"
                guardado.extend([anf.Parent, puerta.Ambiente, anf.Ambiente])

            abre_y_suelta()
            gc.collect()
            revuelto = [bytearray(4096) for _ in range(2000)]
            ambiente, parent, de_la_puerta, otro = guardado
            self.assertEqual((ambiente.Usuario, ambiente.Estacion, parent.CatalogoActivo), ("ANA", "E1", "Entradas"))
            self.assertEqual((de_la_puerta.RutaBase, otro.RutaBase), (carpeta, carpeta))
            self.assertEqual(len(revuelto), 2000)


if __name__ == "__main__":
    unittest.main()
