#!/usr/bin/env python3
"""A guided goods-in receipt on the demonstration base: tells, line by line, what an operator presses
and what the screen answers, and ends with a posted document and the stock that it moved.

It shows the system at work; it checks nothing beyond that the document was posted."""

from __future__ import annotations

import sys
from decimal import Decimal

import _comun as comun
from _comun import (ALMACEN, ARTICULO, CANTIDAD, CLAVE_ADICIONAL, CONCEPTO, DESCRIPCION, PRECIO, PRESENTACIONES,
                    TOTAL, UNIDAD, UNIDAD_PRESENTACION, Fallo, Operador)

CON_COLOR = sys.stdout.isatty()
RECIBIDOS = ["FLE-5M", "FOC-9W", "MAR-16", "DES-PL6", "CIN-AIS"]
LECTURAS = ["7501206600016", "7501206611159", "7501206611159"]
OBSERVACIONES = "Entrega completa, sin daños. Remisión 4417."


def pinta(texto: str, estilo: str) -> str:
    return f"\033[{estilo}m{texto}\033[0m" if CON_COLOR else texto


class Relato:
    """Tells what the operator does and what the screen shows of it."""

    def __init__(self, operador: Operador) -> None:
        self.operador, self.forma = operador, operador.forma
        self.paso = 0

    def titulo(self, texto: str) -> None:
        self.paso += 1
        print("\n" + pinta(f"{self.paso}. {texto}", "1"))

    def teclas(self, texto: str) -> None:
        print(f"   {pinta('Operador:', '36')} {texto}")

    def pantalla(self, texto: str) -> None:
        print(f"   {pinta('Pantalla:', '32')} {texto}")

    def partida(self) -> None:
        """The entry row in one line."""
        lee = self.operador.lee
        texto = f"{lee(ARTICULO)}, {lee(DESCRIPCION)}"
        if lee(CLAVE_ADICIONAL):
            texto += f"; {lee(PRESENTACIONES)} {lee(UNIDAD_PRESENTACION)} de la clave {lee(CLAVE_ADICIONAL)}"
        if lee(CANTIDAD):
            texto += f"; cantidad {lee(CANTIDAD)} {lee(UNIDAD)}"
        self.pantalla(f"{texto}; precio {lee(PRECIO)}")

    def renglones(self) -> list[list[str]]:
        grid = self.forma.fg2
        return [[grid.TextMatrix(fila, columna) for columna in (0, 1, 2, 3, 4, 7, 6)]
                for fila in range(1, self.forma.CuantasPartidas() + 1)]

    def hecha(self) -> None:
        ultimo = self.renglones()[-1]
        self.pantalla(f"renglón {len(self.renglones())}: {ultimo[1]} x {ultimo[0]} a {ultimo[2]}; "
                      f"total {self.operador.lee(TOTAL)}")

    def mensajes(self) -> None:
        for texto in self.operador.novedades():
            self.pantalla(f"mensaje: {texto}")

    def entera(self) -> None:
        """The screen as text: header, lines, total."""
        lee = self.operador.lee
        fecha = self.forma.DTPicker1.Value
        print(f"\n      {pinta(self.forma.Caption, '1')}")
        print(f"      Concepto: {lee(CONCEPTO)} {self.forma.RichTextBox3.Text}   Almacén: {lee(ALMACEN)}   "
              f"Fecha: {fecha:%d/%m/%Y}   Lector: {'sí' if self.forma.Check4.Value else 'no'}")
        if self.forma.RichTextBox2.Text:
            print(f"      Observaciones: {self.forma.RichTextBox2.Text}")
        filas = []
        for numero, (articulo, cantidad, precio, monto, descripcion, piezas, unidad) in enumerate(self.renglones(), 1):
            filas.append([str(numero), articulo, descripcion.strip(), cantidad, precio, monto,
                          f"{piezas} {unidad}".strip()])
        print(comun.tabla(["", "Artículo", "Descripción", "Cantidad", "Precio", "Importe", "Presentación"], filas,
                          {0, 3, 4, 5}, "      "))
        print(f"      Total: {pinta(lee(TOTAL), '1')}\n")


def exige_demostracion(anf) -> None:
    hallados = anf.sql(f"SELECT articulo FROM prods WHERE articulo IN ({', '.join('?' * len(RECIBIDOS))})", *RECIBIDOS)
    if len(hallados) < len(RECIBIDOS):
        raise Fallo("Esta base tiene su propio catálogo; el recibo guiado necesita el de demostración. "
                    "Indique una base nueva.")


def recibe(anf, operador: Operador) -> None:
    relato = Relato(operador)
    encabezado(relato, operador)
    operador.lector(False)
    articulos(relato, operador)
    clave_equivocada(relato, operador)
    lector(relato, operador)
    correcciones(relato, operador)
    termina(anf, relato, operador)


def encabezado(relato: Relato, operador: Operador) -> None:
    forma = operador.forma
    relato.titulo("El encabezado")
    relato.teclas("escribe COM en Concepto y oprime Enter")
    operador.escribe(CONCEPTO, "COM")
    operador.enter()
    relato.pantalla(f"{forma.RichTextBox3.Text}; fecha {forma.DTPicker1.Value:%d/%m/%Y}")
    relato.teclas("escribe 1 en Almacén y oprime Enter")
    operador.escribe(ALMACEN, "1")
    operador.enter()
    relato.mensajes()


def articulos(relato: Relato, operador: Operador) -> None:
    relato.titulo("Un artículo por su clave")
    relato.teclas("escribe FLE-5M en Artículo y oprime Enter")
    operador.articulo("FLE-5M")
    relato.partida()
    relato.teclas("escribe 12 en Cantidad, Enter; escribe 51.60 en Precio, Enter")
    operador.escribe(CANTIDAD, "12")
    operador.enter()
    operador.escribe(PRECIO, "51.60")
    operador.enter()
    relato.hecha()

    relato.titulo("Una presentación: cajas con 12 focos")
    relato.teclas("escribe FOC-9W-C12 en Artículo y oprime Enter")
    operador.articulo("FOC-9W-C12")
    relato.partida()
    relato.teclas("escribe 3 en Presentación, Enter, Enter")
    operador.escribe(PRESENTACIONES, "3")
    operador.enter()
    operador.enter()
    relato.partida()
    relato.teclas("escribe 19.70 en Precio y oprime Enter")
    operador.escribe(PRECIO, "19.70")
    operador.enter()
    relato.hecha()


def clave_equivocada(relato: Relato, operador: Operador) -> None:
    relato.titulo("Una clave que no existe")
    relato.teclas("escribe CIN-ASI en Artículo, Enter; 5 en Cantidad, Enter; 10 en Precio, Enter")
    operador.articulo("CIN-ASI")
    operador.escribe(CANTIDAD, "5")
    operador.enter()
    operador.escribe(PRECIO, "10")
    operador.enter()
    relato.mensajes()
    relato.teclas("corrige la clave: CIN-AIS; confirma cantidad 5 y precio 10.90")
    operador.limpia_partida()
    operador.articulo("CIN-AIS")
    operador.escribe(CANTIDAD, "5")
    operador.enter()
    operador.escribe(PRECIO, "10.90")
    operador.enter()
    relato.hecha()


def lector(relato: Relato, operador: Operador) -> None:
    relato.titulo("El lector de código de barras")
    relato.teclas("oprime F3: lector activo")
    operador.lector(True)
    for lectura in LECTURAS:
        relato.teclas(f"lee {lectura}")
        operador.articulo(lectura)
        relato.hecha()
    relato.teclas("oprime F3: lector inactivo")
    operador.lector(False)
    relato.entera()


def correcciones(relato: Relato, operador: Operador) -> None:
    forma = operador.forma
    relato.titulo("Corregir una celda: llegaron 11 flexómetros y no 12")
    relato.teclas("va a la cantidad del renglón 1, escribe 11 y oprime Enter")
    forma.clic_celda(forma.fg2, 1, 1)
    forma.tecla("1")
    forma.tecla("1")
    forma.tecla("Enter")
    relato.pantalla(f"renglón 1: {forma.fg2.TextMatrix(1, 1)} x {forma.fg2.TextMatrix(1, 0)}; "
                    f"total {operador.lee(TOTAL)}")

    relato.titulo("Quitar un renglón: un desarmador se leyó dos veces")
    ultimo = forma.CuantasPartidas()
    relato.teclas(f"va a la clave del renglón {ultimo} y oprime Supr")
    forma.clic_celda(forma.fg2, ultimo, 0)
    forma.tecla("Delete")
    relato.pantalla(f"quedan {forma.CuantasPartidas()} renglones; total {operador.lee(TOTAL)}")

    relato.titulo("Las observaciones")
    relato.teclas(f"escribe en Observaciones: {OBSERVACIONES}")
    forma.teclea(forma.RichTextBox2, OBSERVACIONES)
    relato.entera()


def termina(anf, relato: Relato, operador: Operador) -> None:
    relato.titulo("Finalizar")
    relato.teclas("oprime F5")
    vistos = len(anf.mensajes)
    terminada = operador.afecta()
    for mensaje in anf.mensajes[vistos:]:
        if mensaje.clase == "pregunta":
            relato.pantalla(mensaje.texto)
            relato.teclas("Sí" if mensaje.respuesta else "No")
    relato.mensajes()
    relato.pantalla("se cierra" if terminada else "sigue abierta")


def principal() -> int:
    parser = comun.argumentos("Recibe una entrega en la base de demostración, paso a paso.")
    opciones = parser.parse_args()
    anf = comun.abre(opciones, demo=True)
    exige_demostracion(anf)
    antes = comun.existencias(anf, 1, RECIBIDOS)
    print(f"{opciones.usuario} recibe una entrega en la estación {opciones.estacion}.")
    operador = Operador(anf)
    try:
        recibe(anf, operador)
    finally:
        operador.cierra()
    despues = comun.existencias(anf, 1, RECIBIDOS)

    numero = operador.forma.Entrada
    estado = anf.sql("SELECT estado FROM entradas WHERE entrada = ?", numero)
    afectada = bool(estado) and estado[0]["estado"] == "CO"
    print("\n" + pinta(f"Entrada {numero} {'afectada' if afectada else 'sin afectar'}, "
                       f"total {operador.lee(TOTAL)}.", "1"))
    for pagina in comun.paginas_impresas(anf):
        print(f"Impresa en {pagina.resolve()}")
    print("\nExistencia en el almacén 1")
    signo = {True: "+", False: ""}
    print(comun.tabla(["Artículo", "Antes", "Después", "Cambio"], [
        [articulo, comun.plano(antes[articulo]), comun.plano(despues[articulo]),
         signo[despues[articulo] > antes[articulo]] + comun.plano(Decimal(despues[articulo] - antes[articulo]))]
        for articulo in RECIBIDOS], {1, 2, 3}))
    anf.cierra()
    return 0 if afectada else 1


if __name__ == "__main__":
    comun.corre(principal)
