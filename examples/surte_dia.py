#!/usr/bin/env python3
"""Plays a day of sales, a CSV file, as an operator would: one goods-out document an invoice, keys only,
one line at a time, each posted with F5. A cancelled invoice comes back through the goods-in wizard,
with its quantities positive. Then it checks the books.

Stock is the screen's own affair: it comes from goods-in documents, a delivery recorded first among
them, and a line that lacks it is refused in the screen's words. The file is read whole before anything
is recorded, and it is not mended."""

from __future__ import annotations

import argparse
import re
import signal
import sys
import time
from dataclasses import dataclass, field
from pathlib import Path

import _comun as comun
from _archivos import Renglon, importa_catalogo, lee_catalogo
from _comun import PARTIDAS_EN_PANTALLA, Barra, Fallo, Registro, SinTerminar
from _facturas import (EntregaPrevia, Factura, alta_de_clientes, alta_de_usuario, devuelto, entrega_del_dia,
                       entrega_previa, lee_dia, marca_de_entrega, observacion, registradas, sin_terminar)
from _libros import (bajo_cero, consulta_de_encabezados, consulta_de_existencias, consulta_de_partidas,
                     pregunta, revisa_salidas)
from _ventas import SIN_EXISTENCIA, Entradas, Ventas, prueba
from recibe_entrega import lee_entrega, revisa_documentos


@dataclass
class Dia:
    """The day at the terminal: what is to be recorded, and the documents of each kind."""

    anf: object
    facturas: list[Factura]
    entrega: list[Renglon]
    recibida: Entradas
    devueltas: Entradas
    ventas: Ventas
    observaciones_de_la_entrega: str = ""
    entrega_pendiente: list[int] = field(default_factory=list)  # documents of it that broke off, the last one last
    ultimo_movimiento: int = 0
    hechos: int = 0

    def registros(self) -> list[Registro]:
        return [self.recibida, self.devueltas, self.ventas]

    def renglones(self) -> int:
        return sum(len(factura.renglones) for factura in self.facturas)

    def retoma_entrega(self, previa: EntregaPrevia) -> None:
        """An earlier run's delivery is finished, and not received again."""
        a_medias = {(documento.tipo, documento.documento) for documento in self.anf.a_medias()}
        for numero in previa.documentos:
            if numero not in previa.pendientes and ("Entrada", numero) in a_medias:
                print(f"La entrada {numero} quedó afectada a medias: se completan "
                      f"{self.anf.completa('Entrada', numero)} movimientos.")
        self.entrega, self.entrega_pendiente = previa.faltan, previa.pendientes

    def juega(self, barra: Barra) -> None:
        for numero in self.entrega_pendiente:
            self.recibida.termina()  # only the last one may lack rows
            self.recibida.reanuda("entrega", numero)
        for hechos, _ in enumerate(self.recibida.recibe("entrega", self.observaciones_de_la_entrega, self.entrega), 1):
            barra.avanza(hechos)
        for factura in self.facturas:
            if factura.cancela():
                pasos = self.devueltas.recibe(factura.numero, observacion(factura.numero),
                                              [devuelto(renglon) for renglon in factura.renglones])
            else:
                pasos = self.ventas.surte(factura)
            for _ in pasos:
                self.hechos += 1
                barra.avanza(len(self.entrega) + self.hechos)

    def interrumpe(self) -> str:
        textos = [texto for registro in self.registros() for texto in registro.interrumpe()]
        afectados = sum(" queda afectada" in texto for texto in textos)
        quedan = [texto for texto in textos if " queda afectada" not in texto]
        if afectados:
            quedan.append(f"Antes se {'afectaron' if afectados > 1 else 'afectó'} {afectados} "
                          f"{'documentos' if afectados > 1 else 'documento'}.")
        return "Interrumpido. " + (" ".join(quedan) or "No quedó ningún documento.")


def motivo_general(motivo: str) -> str:
    """The reason without the figures and the hour of the case."""
    motivo = re.sub(r"^\d\d:\d\d:\d\d ", "", motivo)
    return motivo.partition(" Existencia:")[0] + "." if motivo.startswith(SIN_EXISTENCIA) else motivo


def informa(dia: Dia, segundos: float) -> int:
    anf, ventas, devueltas, recibida = dia.anf, dia.ventas, dia.devueltas, dia.recibida
    if dia.entrega or recibida.documentos:
        partidas = sum(documento.partidas for documento in recibida.documentos)
        print(f"\nEntrega: {len(dia.entrega)} renglones, {partidas} partidas, {len(recibida.rechazados)} rechazados.")
        comun.informa_renglones(recibida.rechazados, recibida.avisos)
    rechazados = sorted(ventas.rechazados + devueltas.rechazados, key=lambda caso: caso[0].linea)
    avisos = sorted(ventas.avisos + devueltas.avisos, key=lambda caso: caso[0].linea)
    vendidas = sum(documento.partidas for documento in ventas.documentos)
    regresadas = sum(documento.partidas for documento in devueltas.documentos)
    hechas = {documento.origen for registro in (ventas, devueltas) for documento in registro.documentos}
    sin_documento = sum(factura.numero not in hechas for factura in dia.facturas)
    print(f"\n{len(dia.facturas)} facturas: {len(ventas.documentos)} salidas, {len(devueltas.documentos)} "
          f"devoluciones, {sin_documento} sin documento.")
    print(f"{dia.renglones()} renglones: {vendidas} partidas de salida, {ventas.sumados} sumados al anterior, "
          f"{regresadas} partidas devueltas, {len(rechazados)} rechazados, {segundos:.1f} segundos.")
    comun.informa_renglones(rechazados, avisos, motivo_general)
    print()
    filas = []
    for clase, registro in (("entrada", recibida), ("salida", ventas), ("entrada", devueltas)):
        for documento in registro.documentos:
            estado = ("pendiente" if registro.pendiente else "afectada") if documento.cerrado else "sin terminar"
            filas.append([documento.origen, f"{clase} {documento.numero}", getattr(documento, "cliente", ""),
                          str(documento.partidas), estado, documento.en_pantalla, comun.importe(documento.suma)])
    if filas:
        print(comun.tabla(["Factura", "Documento", "Cliente", "Partidas", "Estado", "Total en pantalla", "Suma"], filas,
                          {3, 5, 6}))
        paginas = comun.paginas_impresas(anf)
        print(f"Páginas impresas en {Path(anf.Ambiente.RutaBase) / 'impresos'}: {len(paginas)}.")
        for pagina in paginas:
            if not pagina.exists():
                print(f"No se encuentra la página {pagina}")
    else:
        print("No se registró ningún renglón: no hay documentos.")
    faltantes = bajo_cero(anf, ventas.almacen)
    if faltantes:
        print("\nArtículos que quedaron bajo cero")
        print(comun.tabla(["Artículo", "Existencia"], faltantes, {1}))
    return revisa(dia)


def revisa(dia: Dia) -> int:
    ventas, devueltas, recibida = dia.ventas, dia.devueltas, dia.recibida
    print("\nRevisión")
    bien = comun.informa_revision(revisa_salidas(ventas))
    for nombre, registro in (("Devoluciones", devueltas), ("Entrega", recibida)):
        if registro.documentos or registro.diferencias:
            print(f"  {nombre}")
            bien = comun.informa_revision(revisa_documentos(registro)) and bien
    consultas = [(registro, nombre, *campos) for registro, nombre, *campos in (
        (ventas, "salida", "SA", "folio"), (devueltas, "devolución", "EN", "entrada"),
        (recibida, "entrega", "EN", "entrada")) if registro.documentos]
    print("\nConsultas a la base, aparte de las cuentas de este programa")
    for registro, nombre, operacion, movimiento in consultas:
        bien = pregunta(dia.anf, consulta_de_partidas(registro, f"Partidas de {nombre} contra sus movimientos",
                                                      operacion, movimiento, dia.ultimo_movimiento)) and bien
        bien = pregunta(dia.anf, consulta_de_encabezados(
            registro, f"Documentos de {nombre} contra sus partidas")) and bien
    bien = pregunta(dia.anf, consulta_de_existencias(dia.anf, ventas.almacen)) and bien
    print("\nLos libros concuerdan." if bien else "\nLos libros no concuerdan.")
    return 0 if bien else 1


def opciones_de_la_linea():
    parser = comun.argumentos("Registra las ventas de un día como lo haría un operador: una salida por factura.")
    parser.add_argument("ventas", type=Path, metavar="DIA.csv", help="los renglones de las facturas del día")
    parser.add_argument("--concepto", default="VTA", help="concepto de las salidas (VTA)")
    parser.add_argument("--concepto-devolucion", default="DEV", metavar="CONCEPTO",
                        help="concepto de las entradas por factura cancelada (DEV)")
    parser.add_argument("--concepto-entrega", default="COM", metavar="CONCEPTO",
                        help="concepto de la entrada por entrega (COM)")
    parser.add_argument("--almacen", type=comun.almacen_de, default=1, metavar="NÚMERO", help="almacén que surte (1)")
    entrega = parser.add_mutually_exclusive_group()
    entrega.add_argument("--entrega", type=Path, metavar="ENTREGA.csv",
                         help="recibe primero esta nota de entrega, con las columnas de recibe_entrega.py")
    entrega.add_argument("--entrega-del-dia", action="store_true",
                         help="recibe primero, por artículo, lo que el día va a vender")
    parser.add_argument("--importa-catalogo", type=Path, metavar="ARTICULOS.csv",
                        help="da de alta primero los artículos de este archivo que no estén")
    parser.add_argument("--servicios", default="", metavar="CLAVE,CLAVE",
                        help="claves que no son mercancía: se dan de alta sin control de existencia y no se reciben "
                             "con --entrega-del-dia")
    parser.add_argument("--continua-sin-existencia", action="store_true",
                        help="responde que sí, si la pantalla pregunta por falta de existencia (responde que no)")
    parser.add_argument("--omite-registradas", action="store_true",
                        help="deja fuera las facturas que ya tienen documento")
    parser.add_argument("--pendiente", action="store_true",
                        help="deja pendientes las salidas y las devoluciones; la entrega sí se afecta")
    parser.add_argument("--maximo", type=comun.maximo_de, default=PARTIDAS_EN_PANTALLA, metavar="PARTIDAS",
                        help=f"partidas por documento ({PARTIDAS_EN_PANTALLA}, las que caben en la pantalla)")
    parser.add_argument("--sin-barra", action="store_true", help="no muestra el avance")
    return parser.parse_args()


def descuenta_lo_registrado(anf, opciones: argparse.Namespace, dia: Dia, facturas: list[Factura],
                            entrega: list[Renglon]) -> list[str]:
    """Tells what of the day is in the base already, and takes it out of the day where the operator wants that.
    Gives what is to be told at the end."""
    repetidas = registradas(anf, facturas)
    for numero, donde in list(repetidas.items())[:3]:
        print(f"La factura {numero} ya está en {donde}.")
    if repetidas:
        print(f"{len(repetidas)} facturas ya tienen documento: "
              f"{'se omiten' if opciones.omite_registradas else 'se registran otra vez'}.")
    avisos = sin_terminar(anf, repetidas, opciones.pendiente) if opciones.omite_registradas else []
    previa = entrega_previa(anf, dia.observaciones_de_la_entrega, entrega) if entrega else None
    if opciones.omite_registradas:
        dia.facturas = [factura for factura in facturas if factura.numero not in repetidas]
        if previa is not None and (previa.pendientes or not repetidas):
            print(f"La entrega ya está en la entrada {', '.join(map(str, previa.documentos))}: " +
                  (f"se termina, faltan {len(previa.faltan)} renglones." if previa.pendientes or previa.faltan else
                   "no se recibe otra vez."))
            dia.retoma_entrega(previa)
        elif repetidas and dia.entrega:
            # It came before the first of them, for the whole day.
            print("La entrega se registró con esas facturas: no se recibe otra vez.")
            dia.entrega = []
    elif previa is not None:
        print(f"La entrega ya está en la entrada {', '.join(map(str, previa.documentos))}: se recibe otra vez.")
    return avisos


def juega(dia: Dia, con_barra: bool) -> int:
    """Types the day. 0, or what the program ends with: 1 where the day stopped, 130 where it was interrupted."""
    import tarvik  # it is there, or the base would not have opened

    barra = Barra(len(dia.entrega) + dia.renglones(), con_barra)
    try:
        dia.juega(barra)
    except SinTerminar:
        return 1
    except (Fallo, tarvik.Error) as error:
        # What was recorded before it stays recorded, and is accounted for.
        barra.termina()
        print(f"El día se detuvo: {error}", file=sys.stderr)
        for registro in dia.registros():
            registro.deja()
        return 1
    except KeyboardInterrupt:
        signal.signal(signal.SIGINT, signal.SIG_IGN)  # what is left takes an instant
        barra.termina()
        print(dia.interrumpe(), file=sys.stderr)
        return 130
    finally:
        barra.termina()
    return 0


def principal() -> int:
    opciones = opciones_de_la_linea()
    servicios = frozenset(clave.strip() for clave in opciones.servicios.split(",") if clave.strip())

    # Every file before the base: a bad one leaves nothing written.
    facturas = lee_dia(opciones.ventas)
    entrega = (entrega_del_dia(facturas, servicios) if opciones.entrega_del_dia else
               lee_entrega(opciones.entrega, False) if opciones.entrega else [])
    catalogo = lee_catalogo(opciones.importa_catalogo) if opciones.importa_catalogo else None
    venta, devolucion, compra = (concepto.upper() for concepto in (
        opciones.concepto, opciones.concepto_devolucion, opciones.concepto_entrega))

    anf = comun.abre(opciones)
    dia = Dia(anf, facturas, entrega,
              Entradas(anf, compra, opciones.almacen, False, opciones.maximo),
              Entradas(anf, devolucion, opciones.almacen, opciones.pendiente, opciones.maximo),
              Ventas(anf, venta, opciones.almacen, opciones.pendiente, opciones.maximo,
                     opciones.continua_sin_existencia),
              marca_de_entrega(f"de {opciones.entrega.name}" if opciones.entrega else
                               f"del día {opciones.ventas.name}", entrega))
    print("Altas en la base, antes de teclear nada:")
    if catalogo is not None:
        print(importa_catalogo(anf, catalogo, [
            (venta, "S", "Venta"), (devolucion, "E", "Devolución de cliente"), (compra, "E", "Compra a proveedor")],
            opciones.almacen, servicios))
    # The headings before any document; of goods-in only what is going to be used.
    prueba(dia.ventas, *([dia.devueltas] if any(factura.cancela() for factura in facturas) else []),
           *([dia.recibida] if entrega else []))
    print(alta_de_usuario(anf, opciones.usuario))
    print(alta_de_clientes(anf, facturas))
    avisos = descuenta_lo_registrado(anf, opciones, dia, facturas, entrega)
    dia.ultimo_movimiento = anf.sql("SELECT COALESCE(MAX(id), 0) AS id FROM movsinv")[0]["id"]

    inicio = time.monotonic()
    hecho = juega(dia, not opciones.sin_barra)
    if hecho == 130:
        return hecho
    codigo = informa(dia, time.monotonic() - inicio)
    if hecho != 0:
        print(f"Quedaron {dia.renglones() - dia.hechos} renglones del día sin registrar.")
        codigo = 1
    for aviso in avisos:
        print(aviso)
    anf.cierra()
    return max(codigo, 1) if avisos else codigo


if __name__ == "__main__":
    comun.corre(principal)
