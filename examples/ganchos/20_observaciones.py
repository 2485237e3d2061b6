"""Begins the remarks of a new goods-in document with who receives it, where and when."""

from datetime import datetime


def ENTRADA001(forma, ambiente):
    # The key fires whenever the screen opens: what somebody wrote earlier stays as it is.
    if forma.Modo != "ALTA" or forma.RichTextBox2.Text:
        return
    ahora = datetime.now()
    forma.RichTextBox2.Text = f"Recibe {ambiente.Usuario} en {ambiente.Estacion}, {ahora:%d/%m/%Y %H:%M}."
