"""Hands a model over to the program that spreads it outside: Down on a model's key, both wizards.

The program (malla_externa.py, or a shop's own) must be at work: the screen answers to nobody while it
waits. It says so in the setting MallaExterna, which is read where that program writes it, in the base."""

FALTA = ("El programa que reparte los modelos no está en marcha. Pida que lo inicien y oprima otra vez la flecha "
         "abajo; el documento quedó guardado como pendiente.")


def TALLASYCOLORES001(forma, ambiente):
    if forma.Name == "frmSalidasWizard":
        _conoce_su_salida(forma, ambiente.Conexion)
    else:
        _retiene_su_entrada(forma, ambiente.Conexion)
    # The look for the program and the signal are one step: a program that takes its notice back in between
    # would leave the screen waiting for nobody. With a 1 the screen does not wait, nor does one that has
    # been waiting for a program that is gone.
    senal = ambiente.Conexion.Execute(
        "UPDATE ControlProc SET controlproc = CASE WHEN EXISTS (SELECT 1 FROM parametros "
        "WHERE nombre = 'MallaExterna' AND valor <> '') THEN 0 ELSE 1 END RETURNING controlproc")
    if senal.EOF or senal["controlproc"] != 0:
        ambiente.MuestraMensaje(FALTA, 16)


def _retiene_su_entrada(forma, conexion):
    """The save on the way lets go of a goods-in though its screen stays open: another one could open it
    meanwhile, and both would post it. It is held until the screen closes, which lets go. The screen reads
    its state from the row when it ends."""
    conexion.Execute(f"UPDATE entradas SET ocupado = 1 WHERE entrada = {forma.Entrada} AND estado = 'PE'")
    fila = conexion.Execute(f"SELECT * FROM entradas WHERE entrada = {forma.Entrada}")
    if not fila.EOF:
        forma.rstEntrada = fila


def _conoce_su_salida(forma, conexion):
    """The save on the way takes a goods-out for finished unless the box says pending. No stock has moved,
    and a finished one could not be opened again to see its lines and post them. Of a document without a
    line it has made the row, which the screen has to know: to let go of it when it closes, and not to
    make another one with the next model. One that is nobody's, or of which stock has moved, stays as it
    is; and a save that failed has made no row."""
    conexion.Execute(
        f"UPDATE salidas SET estado = 'PE' WHERE salida = {forma.Salida} AND ocupado <> 0 AND NOT EXISTS ("
        "SELECT 1 FROM movsinv INNER JOIN salpart ON salpart.id_salida = movsinv.id_salida "
        "WHERE salpart.salida = salidas.salida AND movsinv.operacion = 'SA' AND movsinv.importe IS NOT NULL)")
    fila = conexion.Execute(f"SELECT * FROM salidas WHERE salida = {forma.Salida}")
    if fila.EOF:
        return
    if forma.Modo == "ALTA":
        forma.Modo = "MODIFICACION"
        forma.Caption = f"Salida: {forma.Salida}"
    forma.rstSalida = fila
