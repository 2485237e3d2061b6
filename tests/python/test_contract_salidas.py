"""What scripts written by others rely on: the station transfer, and goods-out."""

import unittest

import tarvik

from casos_demo import HOY, Caso


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
