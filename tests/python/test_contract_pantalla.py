"""What scripts written by others rely on: a screen's members and controls, and what an operator does."""

import datetime
import unittest

import tarvik

from casos import Caso


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


if __name__ == "__main__":
    unittest.main()
