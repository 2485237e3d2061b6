"""What scripts written by others rely on: the module's names and what each does, one by one.
Opening a base, the context, the public class and the list form."""

import gc
import tempfile
import unittest

import tarvik

import bases
from casos import Caso


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
