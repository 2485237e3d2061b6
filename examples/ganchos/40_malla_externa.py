"""Hands a model over to the program that spreads it outside: Down on a model's key, both wizards.

The program (malla_externa.py, or a shop's own) must be at work: the screen answers to nobody while it
waits. It says so in the setting MallaExterna, which is read where that program writes it, in the base."""

FALTA = ("El programa que reparte los modelos no está en marcha. Pida que lo inicien y oprima otra vez la flecha "
         "abajo; el documento quedó guardado como pendiente.")


def TALLASYCOLORES001(forma, ambiente):
    if forma.Name == "frmSalidasWizard":
        documento = forma.Salida
        _conoce_su_salida(forma, ambiente.Conexion)
    else:
        documento = forma.Entrada
        # The save on the way has made the row; the screen reads its state from this when it ends.
        forma.rstEntrada = ambiente.Conexion.Execute(f"SELECT * FROM entradas WHERE entrada = {documento}")
    aviso = ambiente.Conexion.Execute("SELECT valor FROM parametros WHERE nombre = 'MallaExterna' AND valor <> ''")
    if aviso.EOF:
        # With a 1 the screen does not wait, nor does one that has been waiting for a program that is gone.
        ambiente.Conexion.Execute("UPDATE ControlProc SET controlproc = 1")
        ambiente.MuestraMensaje(FALTA, 16)
    else:
        ambiente.Conexion.Execute("UPDATE ControlProc SET controlproc = 0")


def _conoce_su_salida(forma, conexion):
    """The save on the way takes a goods-out for finished unless the box says pending. No stock has moved,
    and a finished one could not be opened again to see its lines and post them. Of a document without a
    line it has made the row, which the screen has to know: to let go of it when it closes, and not to
    make another one with the next model."""
    conexion.Execute(f"UPDATE salidas SET estado = 'PE' WHERE salida = {forma.Salida}")
    if forma.Modo == "ALTA":
        forma.Modo = "MODIFICACION"
        forma.Caption = f"Salida: {forma.Salida}"
    forma.rstSalida = conexion.Execute(f"SELECT * FROM salidas WHERE salida = {forma.Salida}")
