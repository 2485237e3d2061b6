"""The day at the screens, one document an invoice: for surte_dia.py; not a program."""

from __future__ import annotations

from collections.abc import Iterable
from dataclasses import dataclass, field
from decimal import Decimal

import _comun as comun
from _comun import (ARTICULO, CANTIDAD, CLAVE_ADICIONAL, DESCRIPCION, PRECIO, PRESENTACIONES,
                    Documento, Operador, Registro)
from _archivos import Renglon
from _facturas import Factura, observacion
from recibe_entrega import Recepcion

CLIENTE = 13
SIN_EXISTENCIA = "No hay existencia suficiente"
TOLERANCIA = Decimal("0.000001")


class OperadorDeSalidas(Operador):
    """An operator in front of one goods-out document."""

    OPERACION = "NuevaSalida"

    def cliente(self, clave: str) -> None:
        self.escribe(CLIENTE, clave)
        self.enter()
        self.forma.enfoca(self.campo(ARTICULO))

    def por_presentacion(self) -> bool:
        """The key typed was that of a presentation that fixes how many units it holds: the cursor is there."""
        return self.forma.ActiveControl == self.campo(PRESENTACIONES) and self.lee(PRESENTACIONES) != ""

    def corrige(self, indice: int, texto: str) -> None:
        """Types over what the screen proposes; where there is nothing to type, takes the proposal away."""
        self.forma.enfoca(self.campo(indice))
        if texto:
            self.escribe(indice, texto)
        else:
            self.forma.tecla("Delete")

    def limpia_partida(self) -> None:
        """Empties what a refused line left. Taking the second key away takes its article with it."""
        for indice in (CLAVE_ADICIONAL, ARTICULO, CANTIDAD, PRECIO):
            if self.lee(indice):
                self.forma.enfoca(self.campo(indice))
                self.forma.tecla("Delete")
        self.forma.enfoca(self.campo(ARTICULO))

    def novedades(self) -> list[str]:
        """The question about lacking stock is the reason of a line that was not made."""
        preguntas = [" ".join(mensaje.texto.split()) for mensaje in self.anf.mensajes
                     if mensaje.clase == "pregunta" and mensaje.texto.startswith(SIN_EXISTENCIA)]
        return list(dict.fromkeys(preguntas + super().novedades()))


@dataclass
class Partida:
    """A line as it ought to stand."""

    articulo: str
    clave: str  # the second key, if it was that which was typed
    cantidad: Decimal
    precio: Decimal

    def como_texto(self) -> str:
        clave = f" por {self.clave}" if self.clave else ""
        return f"{comun.plano(self.cantidad)} de {self.articulo}{clave} a {comun.plano(self.precio)}"


@dataclass
class Salida(Documento):
    lineas: list[Partida] = field(default_factory=list)
    cliente: str = ""


class Ventas(Registro):
    """The day's goods-out documents."""

    OPERADOR = OperadorDeSalidas
    DOCUMENTO = "salida"
    TABLA, PARTIDAS = "salidas", "salpart"

    def __init__(self, anf, concepto: str, almacen: int, pendiente: bool, maximo: int, continua: bool) -> None:
        super().__init__(anf, concepto, almacen, pendiente, maximo)
        self.continua = continua  # what the operator answers where the screen asks about lacking stock
        self.factura = Factura("", "")
        self.sumados = 0
        self.ultima: tuple | None = None
        self.articulos: dict[str, tuple[str, Decimal]] = {}

    def documento_nuevo(self) -> Salida:
        return Salida(0, origen=self.factura.numero, cliente=self.factura.cliente)

    def abre(self) -> None:
        super().abre()
        self.ultima = None
        if self.factura.cliente:
            self.operador.cliente(self.factura.cliente)
        self.operador.observa(observacion(self.factura.numero))
        self.operador.lector(False)

    def surte(self, factura: Factura) -> Iterable[Renglon]:
        """Records the invoice; each row is told as it is done."""
        self.factura = factura
        for renglon in factura.renglones:
            self.registra(renglon)
            yield renglon
        self.termina()

    def registra(self, renglon: Renglon) -> None:
        if not comun.se_teclea(renglon.articulo):
            self.rechazados.append((renglon, "La clave tiene caracteres que no se pueden teclear."))
            return
        if self.operador is None:
            self.abre()
        operador, documento = self.operador, self.documentos[-1]
        operador.novedades()
        factor = Decimal(1)
        operador.articulo(renglon.articulo)
        if operador.por_presentacion():
            factor = comun.numero(operador.lee(CANTIDAD)) / comun.numero(operador.lee(PRESENTACIONES))
            operador.corrige(PRESENTACIONES, renglon.cantidad)
            operador.enter()
        else:
            operador.corrige(CANTIDAD, renglon.cantidad)
        operador.enter()
        if renglon.precio:
            operador.escribe(PRECIO, renglon.precio)
        mostrado = operador.lee(ARTICULO), operador.lee(DESCRIPCION)
        self.anf.respuestas.clear()
        if self.continua:
            self.anf.respuestas.append(True)
        operador.enter()
        self.anf.respuestas.clear()
        self.anota(renglon, documento, factor, mostrado, operador.novedades())
        operador.limpia_partida()
        self.olvida()
        if documento.partidas >= self.maximo:
            self.termina()

    def anota(self, renglon: Renglon, documento: Salida, factor: Decimal, mostrado: tuple[str, str],
              novedades: list[str]) -> None:
        documento.numero = self.numero_en_pantalla()
        texto = " ".join(novedades)
        cantidad = factor * Decimal(renglon.cantidad or "0")
        articulo, descripcion = mostrado
        falta = self.falta_existencia(articulo, cantidad)
        filas = self.anf.sql("SELECT id_salida, articulo, cantidad, precio, claveadd FROM salpart WHERE salida = ? "
                             "ORDER BY id_salida DESC LIMIT 1", documento.numero)
        ultima = (filas[0]["id_salida"], filas[0]["cantidad"]) if filas else None
        if ultima == self.ultima:
            self.rechazados.append((renglon, texto or "La pantalla no hizo la partida y no dijo por qué."))
            if texto.startswith(SIN_EXISTENCIA) and not falta:
                self.diferencias.append(f"Línea {renglon.linea}: se rechazó por falta de existencia y la había.")
            return
        es_nueva = self.ultima is None or ultima[0] != self.ultima[0]
        self.ultima = ultima
        if falta and not self.continua:
            self.diferencias.append(f"Línea {renglon.linea}: salió y no había existencia.")
        if texto:
            self.avisos.append((renglon, texto))
        self.avisa_del_articulo(renglon, articulo, descripcion)

        guardada = Partida(filas[0]["articulo"], filas[0]["claveadd"] or "", comun.exacto(filas[0]["cantidad"]),
                           comun.exacto(filas[0]["precio"]))
        esperada = Partida(articulo, renglon.articulo if renglon.articulo != articulo else "", cantidad,
                           Decimal(renglon.precio) if renglon.precio else self.del_catalogo(articulo)[1])
        anterior = documento.lineas[-1] if documento.lineas else None
        se_suma = anterior is not None and (anterior.articulo, anterior.clave) == (esperada.articulo, esperada.clave)
        if se_suma:
            # Equal articles in a row are one line, at the price of the first.
            if anterior.precio != esperada.precio:
                self.avisos.append((renglon, f"Se sumó al renglón anterior, que conserva el precio "
                                             f"{comun.plano(anterior.precio)}; {comun.plano(esperada.precio)} se "
                                             "perdió."))
            anterior.cantidad += cantidad
            esperada = anterior
            self.sumados += 1
        else:
            documento.lineas.append(esperada)
            documento.partidas += 1
        if esperada.precio == 0:
            self.avisos.append((renglon, "Salió a precio 0."))
        documento.suma += cantidad * esperada.precio
        documento.por_articulo[articulo] += cantidad
        if se_suma == es_nueva or not iguales(esperada, guardada):
            self.diferencias.append(
                f"Línea {renglon.linea}: la partida {ultima[0]}{' es nueva y' if se_suma and es_nueva else ''} dice "
                f"{guardada.como_texto()} y debía decir {esperada.como_texto()}.")

    def falta_existencia(self, articulo: str, cantidad: Decimal) -> bool:
        """Whether the article's stock is controlled and below the quantity, by this program's own reading."""
        filas = self.anf.sql(
            "SELECT invent, por_surt, existencia FROM prods LEFT JOIN existenciaalmacen ON "
            "existenciaalmacen.articulo = prods.articulo AND almacen = ? WHERE prods.articulo = ?", self.almacen,
            articulo)
        if not filas or not filas[0]["invent"]:
            return False
        disponible = comun.exacto(filas[0]["existencia"])
        if self.anf.Ambiente.Parametros["PorSurt"]:
            disponible -= comun.exacto(filas[0]["por_surt"])
        return disponible < cantidad

    def del_catalogo(self, articulo: str) -> tuple[str, Decimal]:
        """The article's description, and its price with the tax as the screen proposes it."""
        if articulo not in self.articulos:
            filas = self.anf.sql(
                "SELECT prods.descrip, precio1, valor FROM prods INNER JOIN impuestos ON prods.impuesto = "
                "impuestos.impuesto WHERE articulo = ?", articulo)
            self.articulos[articulo] = (filas[0]["descrip"] or "", comun.centavos(
                comun.exacto(filas[0]["precio1"]) * (1 + comun.exacto(filas[0]["valor"]) / 100))
            ) if filas else ("", Decimal(0))
        return self.articulos[articulo]

    def avisa_del_articulo(self, renglon: Renglon, articulo: str, descripcion: str) -> None:
        # The screen keeps a refused article's description where the next one brings none.
        if descripcion.strip() != self.del_catalogo(articulo)[0].strip():
            self.avisos.append((renglon, f"Quedó con la descripción de otro artículo: {descripcion.strip()}."))


def iguales(una: Partida, otra: Partida) -> bool:
    return ((una.articulo, una.clave) == (otra.articulo, otra.clave) and
            abs(una.cantidad - otra.cantidad) <= TOLERANCIA and abs(una.precio - otra.precio) <= TOLERANCIA)


class Entradas(Recepcion):
    """Goods-in documents that say in their remarks what they were recorded from."""

    def __init__(self, *argumentos) -> None:
        super().__init__(*argumentos)
        self.origen = self.observaciones = ""

    def documento_nuevo(self) -> Documento:
        return Documento(0, origen=self.origen)

    def abre(self) -> None:
        super().abre()
        if self.observaciones:
            self.operador.observa(self.observaciones)

    def reanuda(self, origen: str, numero: int) -> None:
        """Goes on with a pending document where it broke off."""
        self.origen = origen
        self.operador = self.OPERADOR(self.anf, numero)
        self.operador.novedades()
        documento = self.documento_nuevo()
        documento.numero = numero
        self.documentos.append(documento)
        for fila in self.anf.sql("SELECT id_entrada, articulo, cantidad, precio FROM entpart WHERE entrada = ? "
                                 "ORDER BY id_entrada", numero):
            cantidad = comun.exacto(fila["cantidad"])
            documento.partidas += 1
            documento.suma += cantidad * comun.exacto(fila["precio"])
            documento.por_articulo[fila["articulo"]] += cantidad
            self.ultima_partida = fila["id_entrada"]

    def recibe(self, origen: str, observaciones: str, renglones: list[Renglon]) -> Iterable[Renglon]:
        self.origen, self.observaciones = origen, observaciones
        if self.operador is not None and self.documentos[-1].partidas >= self.maximo:
            self.termina()
        for renglon in renglones:
            self.registra(renglon)
            yield renglon
        self.termina()


def prueba(*registros: Registro) -> None:
    """Tries each heading on its screen. A document without lines is not made at all."""
    for registro in registros:
        registro.abre()
        registro.termina()
