"""Movimientos de inventario: maneja las pantallas sin ventana y las amplía con rutinas.

Hecho a partir de la tabla de miembros; no se edita a mano."""
import datetime
from collections.abc import Callable, Iterator
from typing import Any, Generic, TypeVar, overload

Valor = None | bool | int | float | str | datetime.date
Pantalla = Any
_Control = TypeVar("_Control", bound="Control")


class Error(Exception):
    """Algo que no se pudo hacer; su texto lo dice."""


class Control:
    """Lo que todo control tiene. Dos referencias al mismo control son iguales con ==."""

    @property
    def Name(self) -> str:
        """El nombre del control, sin su índice."""

    @property
    def Index(self) -> int | None:
        """El índice dentro de su arreglo; nada si el control es único."""

    Enabled: bool
    """Si el operador puede usarlo. Al deshabilitar el que tiene el cursor, nadie lo tiene."""

    Visible: bool
    """Si se muestra. Al ocultar el que tiene el cursor, nadie lo tiene."""

    Tag: str
    """Nota de la pantalla: U mayúsculas, N importe, SN y SD sólo números."""

    TabIndex: int
    """Su lugar en el camino de la tecla Tab; -1 si no está en él."""

    Left: int
    """Distancia al borde izquierdo de la pantalla, en twips."""

    Top: int
    """Distancia al borde superior de la pantalla, en twips."""

    Width: int
    """Ancho, en twips."""

    Height: int
    """Alto, en twips."""

    ForeColor: int
    """Color de la letra, un número 0xBBGGRR."""

    def SetFocus(self) -> None:
        """Lleva el cursor a este control, con lo que pasa al salir del otro y al entrar aquí. Da error si la pantalla no se muestra o el control no puede recibirlo."""


class Label(Control):
    """Letrero: un texto que no recibe el cursor."""

    Caption: str
    """El texto del letrero."""


class Button(Control):
    """Botón."""

    Caption: str
    """El texto del botón; & antepone la letra que lo oprime junto con Alt."""


class CheckBox(Control):
    """Casilla que se marca o no."""

    Caption: str
    """El texto junto a la casilla."""

    Value: int
    """1 marcada, 0 sin marcar. Un valor distinto hace lo que haría un clic."""


class TextBox(Control):
    """Caja de texto."""

    Text: str
    """El texto de la caja. Uno distinto hace en ese momento lo que la pantalla hace al cambiarlo; el mismo no hace nada."""

    MaxLength: int
    """Cuántos caracteres admite; 0 sin límite."""

    SelStart: int
    """Dónde está el cursor dentro del texto, desde 0, en caracteres."""

    SelLength: int
    """Cuántos caracteres están seleccionados desde el cursor."""


class RichTextBox(TextBox):
    """Caja para textos largos."""


class DatePicker(Control):
    """Selector de fecha."""

    Value: datetime.date | None
    """La fecha, o nada. Admite también un texto aaaa-mm-dd."""


class ComboBox(Control):
    """Texto que se escribe o se elige de una lista."""

    Text: str
    """El texto que se muestra. Uno distinto hace lo que la pantalla hace al cambiarlo."""

    ListIndex: int
    """Cuál elemento está elegido, desde 0; -1 ninguno. Elegir toma su texto."""

    @property
    def List(self) -> list[str]:
        """Los textos de la lista, en su orden."""

    def AddItem(self, text: str) -> None:
        """Agrega un texto al final de la lista."""

    def Clear(self) -> None:
        """Vacía la lista; el texto que se muestra se queda."""


class PictureBox(Control):
    """Panel que contiene a otros controles."""


class SearchBox(Control):
    """Buscador que se despliega junto a una caja de texto. No recibe el cursor."""

    buscar: str
    """Lo que se busca: Articulos, Almacenes, Estaciones..."""

    @property
    def Conexion(self) -> bool:
        """Si ya tiene con qué buscar: sí a partir de que la pantalla se cargó."""

    @property
    def Field(self) -> TextBox | None:
        """La caja de texto que recibe lo elegido, o nada."""

    def ShowData(self) -> None:
        """Abre la lista."""


class Timer(Control):
    """Reloj que llama a la pantalla cada cierto tiempo."""

    Interval: int
    """Cada cuántos milisegundos llama; 0 nunca."""

    Enabled: bool
    """Si corre. Empieza detenido."""


class WebBrowser(Control):
    """Visor de una página."""

    @property
    def Location(self) -> str:
        """La página que se pidió por último."""

    def Navigate(self, name: str) -> None:
        """Muestra un archivo o una dirección."""


class AutoResizer(Control):
    """Mantiene los controles en proporción con la ventana; no se ve."""


class FlexGrid(Control):
    """Rejilla de textos con una celda actual. Renglones y columnas cuentan desde 0, con los encabezados."""

    Rows: int
    """Cuántos renglones tiene, con los encabezados."""

    Cols: int
    """Cuántas columnas tiene."""

    FixedRows: int
    """Cuántos de los primeros renglones son encabezado."""

    FixedCols: int
    """Cuántas de las primeras columnas son encabezado."""

    Row: int
    """El renglón de la celda actual. Cambiarlo sale de una celda y entra en otra."""

    Col: int
    """La columna de la celda actual. Cambiarla sale de una celda y entra en otra."""

    TopRow: int
    """El primer renglón que se ve."""

    Text: str
    """El texto de la celda actual."""

    CellBackColor: int
    """El color de fondo de la celda actual, 0xBBGGRR; 0 si nadie le puso uno."""

    @property
    def CellLeft(self) -> int:
        """Dónde empieza la celda actual, desde el borde izquierdo de la rejilla, en twips."""

    @property
    def CellTop(self) -> int:
        """Dónde empieza la celda actual, desde el borde superior de la rejilla, en twips."""

    @property
    def CellWidth(self) -> int:
        """El ancho de la celda actual, en twips."""

    @property
    def CellHeight(self) -> int:
        """El alto de la celda actual, en twips."""

    def TextMatrix(self, row: int, col: int) -> str:
        """El texto de una celda."""

    def setTextMatrix(self, row: int, col: int, text: str) -> None:
        """Pone el texto de una celda; no guarda nada en la base."""

    def ColWidth(self, col: int) -> int:
        """El ancho de una columna, en twips; 0 oculta."""

    def setColWidth(self, col: int, width: int) -> None:
        """Pone el ancho de una columna, en twips; 0 la oculta."""

    def RowHeight(self, row: int) -> int:
        """El alto de un renglón, en twips."""

    def setRowHeight(self, row: int, height: int) -> None:
        """Pone el alto de un renglón, en twips; 0 lo oculta."""

    def BackColor(self, row: int, col: int) -> int:
        """El color de fondo de una celda, 0xBBGGRR; 0 si nadie le puso uno."""

    def bloqueada(self, row: int, col: int) -> bool:
        """En la malla: si la celda no admite cantidad, por no haber artículo o ser separación."""

    def RemoveItem(self, row: int) -> None:
        """Quita un renglón de la rejilla; los que siguen suben."""

    def AddItem(self, text: str) -> None:
        """Agrega un renglón al final; el texto va a su primera columna."""


class ControlArray(Generic[_Control]):
    """Los controles de un mismo nombre. Uno se pide por su índice: forma.txtFields[4] o forma.txtFields(4)."""

    @property
    def Count(self) -> int:
        """Cuántos controles hay."""

    def __getitem__(self, index: int) -> _Control:
        """El control de ese índice."""

    def __call__(self, index: int) -> _Control:
        """El control de ese índice."""

    def __contains__(self, index: int) -> bool:
        """Si hay un control con ese índice."""

    def __len__(self) -> int:
        """Cuántos controles hay."""

    def __iter__(self) -> Iterator[_Control]:
        """Los controles, en su orden."""


class Field:
    """Una columna del renglón actual de un Recordset."""

    @property
    def Value(self) -> Valor:
        """El valor de la columna, o nada."""


class Recordset:
    """Los renglones que dio una consulta, leídos completos, con un renglón actual."""

    @property
    def EOF(self) -> bool:
        """Si ya no hay renglón actual."""

    @property
    def RecordCount(self) -> int:
        """Cuántos renglones hay."""

    def MoveNext(self) -> None:
        """Pasa al renglón siguiente; da error si ya no lo hay."""

    def Fields(self, name: str) -> Field:
        """Una columna del renglón actual, por su nombre, con mayúsculas o sin ellas."""

    def __getitem__(self, name: str) -> Valor:
        """El valor de una columna del renglón actual."""


class Query:
    """El constructor de sentencias de una pantalla. Lo que tiene se queda hasta que se limpia."""

    def Limpia(self) -> None:
        """Quita todo lo que tiene."""

    def TipoSentencia(self, kind: str) -> None:
        """Dice qué se construye: INSERT o UPDATE."""

    def AgregaCampo(self, tabla: str, campo: str, valor: Valor) -> None:
        """Agrega una columna con su valor; un texto se entrecomilla solo."""

    def Condicion(self, text: str) -> None:
        """La condición de un UPDATE, sin la palabra WHERE."""

    def TextoSql(self) -> str:
        """La sentencia como quedó; vacía si no se enviaría nada."""

    def SentenciaDirecta(self, text: str) -> None:
        """Una sentencia ya escrita, que se envía en lugar de lo construido."""

    def Ejecuta(self) -> None:
        """Envía la sentencia. Sin columnas, o un UPDATE sin condición, no envía nada."""


class Forma:
    """Lo que toda pantalla tiene, y lo que el operador hace en ella."""

    @property
    def Name(self) -> str:
        """El nombre de la clase de pantalla, como frmEntradasWizard."""

    Caption: str
    """El título de la ventana."""

    Tag: str
    """Nota de quien abrió la pantalla. En la malla, la cantidad por repartir."""

    @property
    def Visible(self) -> bool:
        """Si se muestra; no después de cerrada."""

    @property
    def abierta(self) -> bool:
        """Si sigue abierta: desde que se carga hasta que se cierra, se vea o no."""

    @property
    def ActiveControl(self) -> Control | None:
        """El control que tiene el cursor, o nada."""

    @property
    def Controls(self) -> list[Control]:
        """Todos los controles de la pantalla."""

    @property
    def ScaleWidth(self) -> int:
        """El ancho de la ventana por dentro, en twips; 0 antes de que se sepa."""

    @property
    def ScaleHeight(self) -> int:
        """El alto de la ventana por dentro, en twips; 0 antes de que se sepa."""

    def enfoca(self, control: Control) -> None:
        """Lleva el cursor al control como con el ratón. Nada pasa si está deshabilitado u oculto."""

    def teclea(self, control: Control, text: str) -> None:
        """Va al control y teclea el texto, carácter por carácter, como el operador."""

    def tecla(self, name: str, control: Control | None = None) -> None:
        """Oprime una tecla donde está el cursor, o antes va al control: Enter, Tab, Esc, Up, Down, Left, Right, Delete, Back, Space, F1 a F12, o un carácter."""

    def clic(self, control: Control) -> None:
        """Un clic en el control. Uno deshabilitado u oculto no lo siente."""

    def doble_clic(self, control: Control) -> None:
        """Un doble clic en el control."""

    def clic_celda(self, grid: FlexGrid, row: int, col: int) -> None:
        """Un clic en una celda de la rejilla, que pasa a ser la actual."""

    def doble_clic_celda(self, grid: FlexGrid, row: int, col: int) -> None:
        """Un doble clic en una celda de la rejilla, que pasa a ser la actual."""

    def elige(self, list: ComboBox, item: int) -> None:
        """Elige un elemento de la lista, desde 0."""

    def cierra(self) -> None:
        """Oprime la cruz de la ventana. La pantalla o una rutina pueden negarse."""

    def pinta(self) -> None:
        """La ventana se pinta de nuevo. En un guion nada más la pinta."""

    def redimensiona(self, width: int, height: int) -> None:
        """La ventana toma este tamaño por dentro, en twips."""


class DocumentWizard(Forma):
    """Lo que las pantallas de entradas y de salidas tienen en común."""

    Modo: str
    """ALTA mientras el documento no existe, MODIFICACION, o CONSULTA si sólo se lee."""

    Ambiente: Ambiente | None
    """El contexto de trabajo: usuario, estación, base y ajustes."""

    Parent: Parent | None
    """La forma del programa que muestra las listas de documentos, o nada."""

    rstArticulo: Recordset | None
    """El artículo que se leyó por último, o nada."""

    rstPartidas: Recordset | None
    """Los renglones guardados del documento, o nada si no se han leído."""

    Importe: float
    """En salidas, el importe del último renglón guardado. En entradas queda para las rutinas."""

    Iva: float
    """Para las rutinas; la pantalla no lo usa."""

    Total: float
    """Para las rutinas; la pantalla no lo usa."""

    Costo: float
    """La suma de lo que valió cada movimiento al afectar."""

    @property
    def Query(self) -> Query | None:
        """El constructor de sentencias de la pantalla, o nada antes de cargarse."""

    CancelaProceso: bool
    """Una rutina lo pone para que no siga lo que estaba por hacerse; quien obedece lo quita."""

    Procesando: bool
    """Si se está guardando un renglón."""

    NumeroDePartidas: int
    """El renglón a partir del cual la rejilla se desplaza."""

    @property
    def MultiCombo1(self) -> ControlArray[SearchBox]:
        """Buscadores junto a las cajas de texto."""

    @property
    def txtFields(self) -> ControlArray[TextBox]:
        """Cajas de texto del encabezado, del renglón de captura y de los totales."""

    @property
    def DTPicker1(self) -> DatePicker:
        """Fecha del documento."""

    @property
    def RichTextBox1(self) -> RichTextBox:
        """Avance al afectar."""

    @property
    def RichTextBox2(self) -> RichTextBox:
        """Observaciones del documento."""

    @property
    def RichTextBox3(self) -> RichTextBox:
        """Descripción del concepto."""

    @property
    def Check2(self) -> CheckBox:
        """Imprimir el documento al terminar."""

    @property
    def Check3(self) -> CheckBox:
        """Dejar el documento pendiente en vez de afectarlo."""

    @property
    def Check4(self) -> CheckBox:
        """Lector de código de barras: cada artículo es un renglón de una unidad."""

    @property
    def fg2(self) -> FlexGrid:
        """Rejilla de renglones del documento."""

    @property
    def txtEdit(self) -> TextBox:
        """Caja que flota sobre la celda que se corrige."""

    @property
    def Command1(self) -> Button:
        """Modelos en entradas, reenviar a sucursal en salidas."""

    @property
    def Command2(self) -> Button:
        """Cancelar: cierra la pantalla; lo capturado queda pendiente."""

    @property
    def Command5(self) -> Button:
        """Finalizar (F5): deja pendiente o afecta, imprime y cierra."""

    @property
    def Command6(self) -> Button:
        """Agrega el renglón de captura al documento."""

    @property
    def Label10(self) -> ControlArray[Label]:
        """Letreros que se oprimen."""

    def txtFields_Change(self, Index: int) -> None:
        """Lo que pasa al cambiar el texto de un campo."""

    def txtFields_GotFocus(self, Index: int) -> None:
        """Lo que pasa al entrar el cursor a un campo."""

    def txtFields_LostFocus(self, Index: int) -> None:
        """Lo que pasa al salir de un campo; al salir del artículo se buscan sus datos."""

    def txtFields_KeyDown(self, Index: int, KeyCode: int, Shift: int) -> int:
        """Lo que hace una tecla en un campo; da lo que queda de ella, 0 si nada."""

    def txtFields_KeyPress(self, Index: int, KeyAscii: int) -> int:
        """Lo que hace un carácter en un campo; da el que se escribe, 0 si ninguno."""

    def txtFields_KeyUp(self, Index: int, KeyCode: int, Shift: int) -> None:
        """Lo que pasa al soltar una tecla: flecha abajo despliega el buscador del campo."""

    def txtFields_DblClick(self, Index: int) -> None:
        """Abre la ayuda del campo: el buscador de su catálogo o la calculadora."""

    def TraeConcepto(self) -> None:
        """Busca el concepto y muestra su descripción; el documento vuelve a la fecha de trabajo."""

    def Valida(self) -> bool:
        """Revisa el encabezado; sí cuando está bien. Avisa de lo que falta."""

    def ValidaTab1(self) -> bool:
        """Revisa concepto, almacén y lo demás del encabezado; sí cuando está bien."""

    def ValidaFecha(self) -> bool:
        """Dice si la fecha del documento cae en un período abierto."""

    def PonTC(self) -> None:
        """Busca la moneda escrita en el campo 15 y pone su tipo de cambio en el 16."""

    def PonDescripcion(self) -> None:
        """Busca el artículo del renglón de captura y pone descripción, unidad y precio."""

    def TraeSegundaClave(self) -> None:
        """Busca la clave adicional del renglón de captura y pone su artículo y su presentación."""

    def MultiplicaPrecio(self) -> None:
        """Pone el importe del renglón de captura: cantidad por precio. En salidas no hace nada."""

    def LlenaPartida(self) -> None:
        """Revisa el renglón de captura, lo agrega al documento y lo vacía para el siguiente."""

    def NuevaPartida(self) -> None:
        """Guarda el renglón de captura en la base y en la rejilla, sin revisarlo."""

    def MSFlexGridEdit(self, MSFlexGrid: FlexGrid, Edt: TextBox, KeyAscii: int) -> None:
        """Empieza a corregir la celda actual con la caja que flota sobre ella."""

    def EditKeyCode(self, MSFlexGrid: FlexGrid, Edt: TextBox, KeyCode: int, Shift: int) -> int:
        """Lo que hace una tecla en la caja que flota sobre la celda; da la tecla."""

    def CalculaImportes(self) -> None:
        """Calcula de nuevo los importes de los renglones y los totales."""

    def SalvaCambios(self) -> None:
        """Guarda en la base la celda corregida."""

    def CuantasPartidas(self) -> int:
        """Cuántos renglones tiene el documento en la rejilla."""

    def fg2_GotFocus(self) -> None:
        """Lo que pasa al entrar el cursor a la rejilla."""

    def fg2_LeaveCell(self) -> None:
        """Lo que pasa al salir de una celda: se guarda la que se corregía."""

    def fg2_RowColChange(self) -> None:
        """Lo que pasa al cambiar la celda actual: toma su color."""

    def fg2_KeyDown(self, KeyCode: int, Shift: int) -> int:
        """Lo que hace una tecla en la rejilla; Supr en el artículo elimina el renglón. Da la tecla."""

    def fg2_KeyPress(self, KeyAscii: int) -> int:
        """Lo que hace un carácter en la rejilla: empieza a corregir la celda. Da el carácter."""

    def fg2_DblClick(self) -> None:
        """Lo que hace un doble clic en la rejilla: empieza a corregir la celda."""

    def txtEdit_KeyDown(self, KeyCode: int, Shift: int) -> int:
        """Lo que hace una tecla en la caja que flota sobre la celda; da la tecla."""

    def txtEdit_KeyPress(self, KeyAscii: int) -> int:
        """Lo que hace un carácter en la caja que flota sobre la celda; da el que se escribe."""

    def Label10_Click(self, Index: int) -> None:
        """Lo que hace un clic en un letrero: el 1 marca o desmarca Check3, el 2 Check2."""

    def Command2_Click(self) -> None:
        """Lo que hace el botón Cancelar: cierra la pantalla."""

    def Command5_Click(self) -> None:
        """Lo que hace el botón Finalizar."""

    def Command6_Click(self) -> None:
        """Lo que hace el botón junto al renglón de captura: lo agrega al documento."""

    def SalvaPendiente(self) -> None:
        """Guarda el encabezado de un documento que ya existe y lo deja pendiente y tomado; no imprime ni afecta."""

    def DejaEnConsulta(self) -> None:
        """De aquí en adelante el documento sólo se lee, como si se hubiera abierto en consulta."""

    def SoloLectura(self) -> bool:
        """Sí cuando el documento se abrió para consulta, o dejó de ser de esta pantalla."""

    @property
    def Reportes(self) -> int:
        """Cuántas fallas ha reportado esta pantalla."""

    def ColocaFoco(self, control: Control) -> None:
        """Lleva el cursor al control; si no puede, no pasa nada."""

    def ReportaError(self, modulo: str, funcion: str, descripcion: str) -> bool:
        """Muestra una falla en una caja y la anota en la bitácora del día; siempre da sí."""

    @property
    def Modulo(self) -> str:
        """El nombre con que esta pantalla firma en la bitácora del día."""


class frmEntradasWizard(DocumentWizard):
    """La pantalla de una entrada al inventario."""

    Entrada: int
    """Número de la entrada; 0 mientras no existe."""

    rstEntrada: Recordset | None
    """El encabezado como se leyó por último, o nada."""

    cEstado: str
    """Queda para las rutinas: la pantalla no lo lee."""

    @property
    def MultiCombo1(self) -> ControlArray[SearchBox]:
        """Buscadores junto a las cajas de texto."""

    @property
    def txtFields(self) -> ControlArray[TextBox]:
        """Cajas de texto del encabezado, del renglón de captura y de los totales."""

    @property
    def fg2(self) -> FlexGrid:
        """Rejilla de renglones. Columnas: 0 artículo, 1 cantidad, 2 precio, 3 importe, 4 descripción, 5 número del renglón, 6 presentación, 7 cuántas presentaciones."""

    @property
    def Command1(self) -> Button:
        """Modelos: se muestra y no hace nada."""

    @property
    def Command3(self) -> Button:
        """Botón que no se muestra de diseño; una rutina puede mostrarlo y darle uso."""

    @property
    def Timer1(self) -> Timer:
        """Cierra la pantalla un momento después de oprimir la cruz de la ventana."""

    @property
    def Label4(self) -> Label:
        """Letrero: presentación."""

    @property
    def Label5(self) -> Label:
        """Letrero: unidad."""

    @property
    def Label6(self) -> Label:
        """Letrero: importe."""

    @property
    def Label8(self) -> Label:
        """Letrero: total."""

    @property
    def Label12(self) -> Label:
        """Letrero: concepto."""

    @property
    def Label17(self) -> Label:
        """Letrero: artículo."""

    @property
    def Label18(self) -> Label:
        """Letrero: cantidad."""

    @property
    def Label19(self) -> Label:
        """Letrero: precio."""

    @property
    def Label23(self) -> Label:
        """Letrero: fecha."""

    @property
    def Label25(self) -> Label:
        """Letrero: almacén."""

    def CalculaCantidad(self) -> None:
        """Pone la cantidad según la presentación: las que son por las unidades de cada una."""

    def BuscaModelo(self) -> bool:
        """Si lo escrito en el artículo es un modelo, abre la malla de colores y tallas y agrega sus renglones; sí cuando así fue."""

    def CreaEntrada(self) -> None:
        """Da número a la entrada y guarda su encabezado; la pantalla pasa a modificación."""

    def SalvaEntrada(self, estado: str) -> None:
        """Guarda el encabezado con el estado dado, PE o CO, y suelta el documento."""

    def SalvaPartidas(self) -> bool:
        """Lee los renglones guardados en rstPartidas; sí cuando hay alguno."""

    def AfectaPartidas(self) -> None:
        """Afecta las existencias con cada renglón de rstPartidas y suma el costo."""

    def ImprimeEntrada(self) -> None:
        """Imprime la entrada con el formato que dice la base."""

    def RichTextBox1_KeyDown(self, KeyCode: int, Shift: int) -> int:
        """Lo que hace una tecla en la caja del avance; da la tecla."""

    def Check1_Click(self) -> None:
        """Queda para las rutinas: calcula de nuevo los importes."""

    def Command1_Click(self) -> None:
        """Lo que hace el botón Modelos: nada."""

    def Command3_Click(self) -> None:
        """Lo que hace el botón que no se muestra: dispara ENTRADAS011."""

    def Timer1_Timer(self) -> None:
        """Lo que hace el reloj: cierra la pantalla."""


class frmSalidasWizard(DocumentWizard):
    """La pantalla de una salida de almacén."""

    Salida: int
    """Número de la salida; 0 mientras no existe."""

    UltimaPartida: int
    """El renglón de la rejilla en que quedó el último agregado; 0 si no hay."""

    Acumulado: bool
    """Si dos renglones seguidos de lo mismo se suman en uno."""

    Html: str
    """Cuerpo de la hoja de distribución, para las rutinas."""

    rstSalida: Recordset | None
    """El encabezado como se leyó por último, o nada."""

    rstClients: Recordset | None
    """El cliente que se leyó por último, o nada."""

    rstVends: Recordset | None
    """El vendedor que se leyó por último, o nada."""

    rstCobdet: Recordset | None
    """Queda para las rutinas: la pantalla no lo lee."""

    rstClavesAdd: Recordset | None
    """La clave adicional que se leyó por último, o nada."""

    @property
    def MultiCombo1(self) -> ControlArray[SearchBox]:
        """Buscadores junto a las cajas de texto."""

    @property
    def txtFields(self) -> ControlArray[TextBox]:
        """Cajas de texto del encabezado, del renglón de captura y de los totales."""

    @property
    def fg2(self) -> FlexGrid:
        """Rejilla de renglones. Columnas: 0 artículo, 1 cantidad, 2 existencia que queda, 3 precio, 4 importe, 5 descripción, 6 número del renglón, 7 presentación, 8 cuántas presentaciones, 9 existencia al capturar, 10 clave adicional."""

    @property
    def Command1(self) -> Button:
        """Reenviar a sucursal (F6): dispara SALIDAS005."""

    @property
    def SSCheck1(self) -> CheckBox:
        """Traspaso a otro almacén, el de txtFields(2)."""

    @property
    def SSCheck2(self) -> CheckBox:
        """Traspaso a una estación, la de txtFields(9); no se muestra de diseño."""

    @property
    def Check1(self) -> CheckBox:
        """Asignación a un empleado, el de txtFields(16)."""

    @property
    def Check5(self) -> CheckBox:
        """Traspaso entre sucursales, a la de txtFields(3)."""

    @property
    def DTPicker2(self) -> DatePicker:
        """Fecha en que regresa el material."""

    @property
    def Combo1(self) -> ComboBox:
        """Direcciones de embarque; lo elegido va a txtFields(17)."""

    @property
    def wb(self) -> WebBrowser:
        """Visor de la hoja de distribución."""

    @property
    def Picture1(self) -> PictureBox:
        """Panel del encabezado."""

    @property
    def Picture2(self) -> PictureBox:
        """Panel de los renglones."""

    @property
    def Picture3(self) -> PictureBox:
        """Panel de la captura y de los totales."""

    @property
    def Label1(self) -> Label:
        """Letrero: entrada remota."""

    @property
    def Label2(self) -> Label:
        """Letrero: unidades."""

    @property
    def Label3(self) -> Label:
        """Letrero: renglones."""

    @property
    def Label4(self) -> Label:
        """Letrero: presentación."""

    @property
    def Label5(self) -> Label:
        """Letrero: unidad."""

    @property
    def Label6(self) -> Label:
        """Letrero: cliente."""

    @property
    def Label7(self) -> Label:
        """Letrero: hoja de distribución."""

    @property
    def Label8(self) -> Label:
        """Letrero: total."""

    @property
    def Label9(self) -> Label:
        """Letrero: fecha de retorno."""

    @property
    def Label11(self) -> Label:
        """Letrero: dirección de embarque."""

    @property
    def Label12(self) -> Label:
        """Letrero: concepto."""

    @property
    def Label17(self) -> Label:
        """Letrero: artículo."""

    @property
    def Label18(self) -> Label:
        """Letrero: cantidad."""

    @property
    def Label19(self) -> Label:
        """Letrero: precio."""

    @property
    def Label23(self) -> Label:
        """Letrero: fecha."""

    @property
    def Label25(self) -> Label:
        """Letrero: almacén."""

    def CreaHTML(self, cString: str, cHtml: str) -> str:
        """Compone la hoja de distribución, escribe el archivo del día y lo muestra; da la página. Un segundo texto que no está vacío es la página tal cual."""

    def llenaDirecciones(self) -> None:
        """Llena la lista de direcciones de embarque con todas las de la base."""

    def TraeVends(self) -> str:
        """El nombre del vendedor; texto vacío si no lo hay."""

    def MultiplicaPorPresentacion(self) -> None:
        """Pone la cantidad según la presentación, si ésta la fija."""

    def CreaPartida(self) -> None:
        """Guarda el renglón de captura como uno nuevo, en la base y en la rejilla."""

    def ConfirmaExistencia(self, first: float, second: float) -> bool:
        """Si puede quedar una cantidad corregida, dadas la nueva y la anterior; pregunta cuando la existencia no alcanza."""

    def CreaEntradasDeTraspaso(self) -> None:
        """Lo que sigue a afectar un traspaso: dispara SALIDAS017."""

    def CreaSalida(self) -> None:
        """Da número a la salida y guarda su encabezado; la pantalla pasa a modificación."""

    def SalvaSalida(self) -> None:
        """Guarda el encabezado como diga Check3, pendiente o afectado, y le da folio."""

    def SalvaPartidas(self) -> bool:
        """Lee los renglones guardados en rstPartidas; sí cuando hay alguno."""

    def AfectaPartidas(self) -> None:
        """Afecta las existencias con cada renglón de rstPartidas y suma el costo."""

    def ImprimeSalida(self) -> None:
        """Imprime la salida con el formato que dice la base."""

    def Combo1_Click(self) -> None:
        """Lo elegido en la lista de direcciones pasa a txtFields(17)."""

    def Combo1_Change(self) -> None:
        """Lo escrito en la lista de direcciones pasa a txtFields(17)."""

    def SSCheck1_Click(self) -> None:
        """Lo que hace la marca de traspaso a almacén: habilita txtFields(2)."""

    def SSCheck2_Click(self) -> None:
        """Lo que hace la marca de traspaso a estación: dispara SALIDAS012."""

    def Check1_Click(self) -> None:
        """Lo que hace la marca de asignación a empleado: dispara SALIDAS015."""

    def Command1_Click(self) -> None:
        """Lo que hace el botón de reenviar a sucursal: dispara SALIDAS005."""

    def DTPicker2_KeyDown(self, KeyCode: int, Shift: int) -> int:
        """Lo que hace una tecla en la fecha de retorno; da la tecla."""

    def Timer1_Timer(self) -> None:
        """Queda para las rutinas: esta pantalla no tiene reloj."""


class frmMallaModelos(Forma):
    """La malla en que se reparte una cantidad entre los colores y las tallas de un modelo."""

    clrCeldaBloqueada: int
    """El color de una combinación sin artículo, 0xBBGGRR."""

    @property
    def fg2(self) -> FlexGrid:
        """Rejilla: un color por renglón, una talla por columna, cantidades en las celdas."""

    @property
    def txtCelda(self) -> TextBox:
        """Caja que flota sobre la celda que se llena."""

    @property
    def txtRemanente(self) -> TextBox:
        """Lo que falta por repartir; sólo se muestra."""

    @property
    def lblCantidadRestante(self) -> Label:
        """Letrero: cantidad restante."""

    @property
    def txtDescrip(self) -> TextBox:
        """Descripción del modelo; sólo se muestra."""

    @property
    def cmdAceptar(self) -> Button:
        """Acepta el reparto; se habilita cuando no falta nada."""

    @property
    def cmdCancelar(self) -> Button:
        """Cancela el reparto."""

    @property
    def AutoResizer1(self) -> AutoResizer:
        """Mantiene los controles en proporción con la ventana; no se ve."""

    def CalculaSuma(self) -> None:
        """Calcula de nuevo lo que falta por repartir; cuando es cero habilita cmdAceptar."""

    def fg2_DblClick(self) -> None:
        """Lo que hace un doble clic en la rejilla: empieza a llenar la celda."""

    def fg2_EnterCell(self) -> None:
        """Lo que pasa al entrar a una celda: una bloqueada se salta."""

    def fg2_GotFocus(self) -> None:
        """Lo que pasa al entrar el cursor a la rejilla: nada."""

    def fg2_KeyDown(self, KeyCode: int, Shift: int) -> int:
        """Lo que hace una tecla en la rejilla; Intro llena la celda, Supr la vacía. Da la tecla."""

    def fg2_KeyPress(self, KeyAscii: int) -> int:
        """Lo que hace un carácter en la rejilla: un dígito empieza a llenar la celda. Da el carácter."""

    def fg2_LeaveCell(self) -> None:
        """Lo que pasa al salir de una celda: se recuerda de dónde se viene."""

    def txtCelda_KeyDown(self, KeyCode: int, Shift: int) -> int:
        """Lo que hace una tecla al llenar la celda: Intro guarda, Esc deja. Da la tecla."""

    def txtCelda_KeyPress(self, KeyAscii: int) -> int:
        """Lo que hace un carácter al llenar la celda; da el que se escribe, 0 si ninguno."""

    def cmdAceptar_Click(self) -> None:
        """Lo que hace el botón Aceptar: da el reparto por hecho."""

    def cmdCancelar_Click(self) -> None:
        """Lo que hace el botón Cancelar: cierra la malla."""

    def ColocaFoco(self, control: Control) -> None:
        """Lleva el cursor al control; si no puede, no pasa nada."""

    def ReportaError(self, modulo: str, funcion: str, descripcion: str) -> bool:
        """Muestra una falla en una caja y la anota en la bitácora del día; siempre da sí."""

    @property
    def Modulo(self) -> str:
        """El nombre con que esta pantalla firma en la bitácora del día."""


class frmMovEstaciones(Forma):
    """La pantalla de un traspaso entre estaciones. Lo que un traspaso significa lo hacen las rutinas."""

    Ambiente: Ambiente | None
    """El contexto de trabajo: usuario, estación, base y ajustes."""

    Id: int
    """Número del traspaso, para las rutinas: la pantalla no lo lee."""

    CancelaProceso: bool
    """Una rutina lo pone para que la pantalla no se cierre; quien obedece lo quita."""

    @property
    def MultiCombo1(self) -> ControlArray[SearchBox]:
        """Buscadores junto a las cajas de texto."""

    @property
    def txtFields(self) -> ControlArray[TextBox]:
        """Cajas de texto del encabezado y del renglón de captura."""

    @property
    def DTPicker1(self) -> DatePicker:
        """Fecha en que se aplica."""

    @property
    def grid(self) -> FlexGrid:
        """Rejilla de renglones; sus columnas las ponen las rutinas."""

    @property
    def Command1(self) -> Button:
        """Agrega el renglón: dispara MOVESTACIONES003."""

    @property
    def cmdConfirmar(self) -> Button:
        """Confirma la operación: dispara MOVESTACIONES006 y cierra."""

    @property
    def cmdPendiente(self) -> Button:
        """Deja como pendiente: dispara MOVESTACIONES005 y cierra."""

    @property
    def cmdCancelar(self) -> Button:
        """Cancela: dispara MOVESTACIONES004 y cierra."""

    @property
    def lblLabel(self) -> ControlArray[Label]:
        """Letreros de los campos."""

    @property
    def Label1(self) -> Label:
        """Letrero: estación que recibe."""

    def txtFields_GotFocus(self, Index: int) -> None:
        """Lo que pasa al entrar el cursor a un campo: se selecciona su texto."""

    def txtFields_LostFocus(self, Index: int) -> None:
        """Lo que pasa al salir de un campo: dispara MOVESTACIONES002."""

    def txtFields_KeyDown(self, Index: int, KeyCode: int, Shift: int) -> int:
        """Lo que hace una tecla en un campo; Intro pasa al siguiente. Da la tecla."""

    def txtFields_KeyUp(self, Index: int, KeyCode: int, Shift: int) -> None:
        """Lo que pasa al soltar una tecla: flecha abajo abre la ayuda del campo."""

    def DTPicker1_KeyDown(self, KeyCode: int, Shift: int) -> int:
        """Lo que hace una tecla en la fecha; Intro pasa al siguiente. Da la tecla."""

    def grid_KeyDown(self, KeyCode: int, Shift: int) -> int:
        """Lo que hace una tecla en la rejilla; Supr pregunta y quita el renglón. Da la tecla."""

    def Command1_Click(self) -> None:
        """Lo que hace el botón del renglón: dispara MOVESTACIONES003."""

    def cmdCancelar_Click(self) -> None:
        """Lo que hace el botón Cancelar: dispara MOVESTACIONES004 y cierra."""

    def cmdPendiente_Click(self) -> None:
        """Lo que hace el botón Dejar como pendiente: dispara MOVESTACIONES005 y cierra."""

    def cmdConfirmar_Click(self) -> None:
        """Lo que hace el botón Confirmar: dispara MOVESTACIONES006 y cierra."""

    def ColocaFoco(self, control: Control) -> None:
        """Lleva el cursor al control; si no puede, no pasa nada."""


class Parametros:
    """Los ajustes de la base, por su nombre: Ambiente.Parametros["Almacen"]."""

    def __getitem__(self, name: str) -> Valor:
        """Un ajuste; nada si nadie lo ha puesto."""

    def __setitem__(self, name: str, value: Valor) -> None:
        """Cambia un ajuste; queda en la base."""

    def keys(self) -> list[str]:
        """Los nombres de los ajustes."""


class Ambiente:
    """El contexto de trabajo, el mismo para todas las pantallas de un anfitrión."""

    Usuario: str
    """Quién trabaja; firma lo que se guarda."""

    Estacion: str
    """La estación de trabajo; da la serie de los folios de salida."""

    Moneda: str
    """La moneda con que se guardan las entradas."""

    ClaveLocal: str
    """La clave del local, que se pasa al afectar."""

    FormatoImporte: str
    """El formato de precios e importes, como ###,###,##0.00."""

    FormatoCantidad: str
    """El formato de cantidades, como ###,###,##0.####."""

    RutaBase: str
    """La carpeta de la bitácora del día y de la hoja de distribución."""

    ValorFechaA: Valor
    """Días que la fecha de trabajo se aparta de hoy."""

    ValorFechaB: Valor
    """Meses que la fecha de trabajo se aparta de hoy."""

    ValorDeGancho: Valor
    """Lo que la pantalla deja a la rutina, como el índice del campo; nada si está vacío."""

    @property
    def Parametros(self) -> Parametros:
        """Los ajustes de la base, por su nombre."""

    @property
    def Conexion(self) -> Conexion:
        """La base, por la conexión de las pantallas."""

    def NuevoId(self, serie: str) -> int:
        """El número siguiente de una serie; nunca se repite."""

    def NuevoMovimiento(self) -> MovimientoInventario:
        """Un objeto para afectar existencias, todavía sin propiedades."""

    def Pregunta(self, texto: str, estilo: int = 1) -> bool:
        """Pregunta al operador y espera su respuesta."""

    def MuestraMensaje(self, texto: str, estilo: int = 64) -> None:
        """Muestra un mensaje al operador y espera a que lo cierre."""

    def FechaValida(self, fecha: datetime.date) -> bool:
        """Si un documento de esa fecha puede afectarse; si no, avisa por qué."""


class ListItems(list[Valor]):
    """La lista viva de números de documento; se usa como una lista cualquiera."""


class ListView:
    """La lista de documentos de la forma del programa."""

    ListItems: ListItems
    """Los números de documento que se muestran."""

    SelectedItem: int
    """La posición del renglón elegido, desde 1; 0 ninguno."""


class Parent:
    """La forma del programa que muestra las listas de documentos."""

    CatalogoActivo: str
    """La lista que se muestra: Entradas, EntradasPendientes, Salidas o SalidasPendientes."""

    @property
    def lvListView(self) -> ListView:
        """La lista de documentos."""

    llamadas: list[tuple[str, tuple[Valor, ...]]]
    """Lo que las pantallas le pidieron, en orden: nombre y argumentos."""


class EntradasSalidas:
    """La clase pública: abre las pantallas. Con bolModal la llamada regresa cuando la pantalla se cierra."""

    Ambiente: Ambiente | None
    """El contexto de trabajo con que se abren las pantallas, o nada."""

    Parent: Parent | None
    """La forma que muestra las listas de documentos, o nada."""

    def NuevaEntrada(self, bolModal: bool = False) -> None:
        """Abre una entrada nueva. Nada se guarda antes de su primer renglón."""

    def NuevaSalida(self, bolModal: bool = False) -> None:
        """Abre una salida nueva. Nada se guarda antes de su primer renglón."""

    @overload
    def ModificaEntrada(self, n: int, bolModal: bool = False) -> None:
        """Abre una entrada pendiente para seguirla; una afectada sólo se consulta. Avisa si no existe o si alguien la tiene."""

    @overload
    def ModificaEntrada(self, nEntrada: int, bolModal: bool = False) -> None:
        """Abre una entrada pendiente para seguirla; una afectada sólo se consulta. Avisa si no existe o si alguien la tiene."""

    @overload
    def ModificaSalida(self, n: int, bolModal: bool = False) -> None:
        """Abre una salida pendiente para seguirla; una afectada sólo se consulta. Avisa si no existe o si alguien la tiene."""

    @overload
    def ModificaSalida(self, nSalida: int, bolModal: bool = False) -> None:
        """Abre una salida pendiente para seguirla; una afectada sólo se consulta. Avisa si no existe o si alguien la tiene."""

    @overload
    def ConsultaEntrada(self, n: int) -> None:
        """Abre una entrada sólo para leerla. Avisa si no existe."""

    @overload
    def ConsultaEntrada(self, nEntrada: int) -> None:
        """Abre una entrada sólo para leerla. Avisa si no existe."""

    @overload
    def ConsultaSalida(self, n: int) -> None:
        """Abre una salida sólo para leerla. Avisa si no existe."""

    @overload
    def ConsultaSalida(self, nSalida: int) -> None:
        """Abre una salida sólo para leerla. Avisa si no existe."""

    @overload
    def EliminaEntrada(self, n: int) -> None:
        """Pregunta y elimina una entrada con sus renglones; sus movimientos se quedan."""

    @overload
    def EliminaEntrada(self, nEntrada: int) -> None:
        """Pregunta y elimina una entrada con sus renglones; sus movimientos se quedan."""

    @overload
    def EliminaSalida(self, n: int) -> None:
        """Pregunta y elimina una salida con sus renglones; sus movimientos se quedan."""

    @overload
    def EliminaSalida(self, nSalida: int) -> None:
        """Pregunta y elimina una salida con sus renglones; sus movimientos se quedan."""

    @overload
    def movimientoEstacion(self, n: int, bolModal: bool) -> None:
        """Abre la pantalla de un traspaso entre estaciones con ese número; lo demás lo hacen las rutinas."""

    @overload
    def movimientoEstacion(self, nId: int, bolModal: bool) -> None:
        """Abre la pantalla de un traspaso entre estaciones con ese número; lo demás lo hacen las rutinas."""


class Mensaje:
    """Algo que se mostró al operador."""

    @property
    def clase(self) -> str:
        """mensaje, error, pregunta o caja."""

    @property
    def numeros(self) -> list[int]:
        """Los mensajes numerados de que se compuso."""

    @property
    def numero(self) -> int | None:
        """El primero de ellos, o nada."""

    @property
    def texto(self) -> str:
        """Lo que decía."""

    @property
    def estilo(self) -> int:
        """Botones y señal de la caja, sumados."""

    @property
    def respuesta(self) -> bool | None:
        """Lo que se contestó a una pregunta; nada si no lo era."""


class Anfitrion:
    """El programa anfitrión sin ventana: abre una base y maneja las pantallas."""

    def __init__(self, base: str, usuario: str, estacion: str, ruta: str, demo: bool = False) -> None:
        """base: sqlite:RUTA, sqlite::memory: o postgresql://...; demo llena una base vacía con el catálogo de demostración."""

    @property
    def pantallas(self) -> list[Pantalla]:
        """Las pantallas abiertas, de la más antigua a la más nueva."""

    @property
    def Ambiente(self) -> Ambiente:
        """El contexto de trabajo."""

    @property
    def Parent(self) -> Parent:
        """La forma que muestra las listas de documentos."""

    def EntradasSalidas(self) -> EntradasSalidas:
        """Una clase pública nueva, con su contexto ya puesto."""

    sentencias: list[str]
    """Las sentencias que enviaron las pantallas, en orden."""

    mensajes: list[Mensaje]
    """Lo que se mostró al operador, en orden."""

    listas: list[tuple[str, int | None]]
    """Los campos cuyo buscador se desplegó: nombre e índice."""

    respuestas: list[bool]
    """Lo que se contestará a las preguntas que vengan; sin más se contesta que no."""

    ganchos_disparados: list[tuple[str, Valor]]
    """Las claves que se dispararon, con el valor que dejó la pantalla."""

    movimientos: list[dict[str, Any]]
    """Los movimientos que se afectaron, con sus propiedades y su resultado."""

    impresos: list[tuple[str, int]]
    """Los documentos que se imprimieron: formato y número."""

    navegado: list[str]
    """Las páginas que se mostraron en un visor."""

    presentadas: list[Forma]
    """Las pantallas que se presentaron."""

    regresadas: list[str]
    """A qué forma se regresó al cerrar cada pantalla."""

    selectores: list[tuple[str, str, str, int | None]]
    """Los buscadores que se abrieron: clase, título, y nombre e índice del campo."""

    no_atrapados: list[str]
    """Los errores que nadie atrapó."""

    ganchos: dict[str, Callable[[Pantalla, Ambiente], object]]
    """Las rutinas, por su clave: reciben la pantalla y el contexto."""

    pitidos: int
    """Cuántas veces sonó el aviso."""

    ahora: datetime.datetime | None
    """La hora en que el reloj se queda; nada para el de la máquina."""

    al_mostrar_modal: Callable[[Pantalla], object] | None
    """Lo que corre mientras se espera una pantalla modal; después se cierra."""

    al_mostrar_selector: Callable[[str, str, TextBox], str | None] | None
    """Lo que elige en un buscador: recibe clase, título y campo; el texto que da va al campo."""

    al_mostrar_caja: Callable[[str, str], object] | None
    """Lo que corre mientras un mensaje o una pregunta espera: recibe clase y texto."""

    def falla(self, pattern: str, veces: int = 1, texto: str = 'falla provocada') -> None:
        """Las próximas sentencias de las pantallas que contengan el patrón no se envían, y dan error."""

    def falla_servicio(self, name: str, veces: int = 1, texto: str = 'falla provocada') -> None:
        """Las próximas llamadas a ese servicio, como NuevoId o Afecta, dan error."""

    def sql(self, text: str, *values: Valor) -> list[dict[str, Any]]:
        """Envía una sentencia con parámetros ? por una conexión aparte; da sus renglones."""

    def mensaje(self, n: int) -> str:
        """El texto de un mensaje numerado."""

    def procesa_eventos(self, ms: int = 0) -> None:
        """Deja correr lo pendiente; los relojes ven pasar esos milisegundos."""

    def cierra(self) -> None:
        """Cierra lo que esté abierto, y la conexión."""

    def a_medias(self) -> list[DocumentoAMedias]:
        """Los documentos que se afectaron sólo en parte."""

    def completa(self, tipo: str, n: int) -> int:
        """Afecta lo que falta de un documento afectado, completo o nada; da cuántos movimientos hizo."""

    def tenencias(self) -> list[Tenencia]:
        """Los documentos que alguien tiene abiertos para modificarlos."""

    def abre(self, tipo: str, n: int) -> Pantalla | None:
        """Abre un documento para modificarlo; antes suelta el de un programa que ya no está. Da la pantalla, o nada."""

    def libera(self, tipo: str, n: int, motivo: str = '') -> None:
        """Suelta un documento que otro tiene; queda en la bitácora. Uno libre se queda igual."""

    def pide(self, tipo: str, n: int, mensaje: str = '') -> Peticion:
        """Pide un documento a quien lo tiene abierto."""

    def peticiones(self) -> list[Peticion]:
        """Lo que otros piden de lo que este programa tiene abierto."""

    def bitacora(self, desde: datetime.datetime | datetime.date | str | None = None) -> list[Acto]:
        """Los actos desde ese momento, del más antiguo al más nuevo; sin él, todos."""

    def lectura(self, texto: str, forma: Pantalla | None = None) -> Lectura:
        """Lo que manda un lector, para esa pantalla o la del frente; da su entrada de la cinta."""

    @property
    def cinta(self) -> list[Lectura]:
        """Todas las lecturas, de la más antigua a la más nueva."""

    def alcanza(self, forma: Pantalla) -> list[Faltante]:
        """Lo que le falta a toda la salida de una pantalla para afectarla; vacía si hay de todo."""

    def avisos(self, forma: Pantalla) -> list[AvisoDeEntrada]:
        """Lo que parece un descuido en la entrada de una pantalla: precios, cantidades y renglones iguales."""

    def imprime(self, tipo: str, n: int) -> str:
        """Imprime de nuevo un documento guardado; da la ruta de su página."""

    def revisa(self, repara: bool = False, huecos: bool = False) -> list[Observacion]:
        """Revisa toda la base; vacía si está sana. Con repara arregla lo que puede; con huecos da también los números que faltan."""


class DocumentoAMedias:
    """Un documento que se afectó sólo en parte."""

    @property
    def tipo(self) -> str:
        """Entrada o Salida."""

    @property
    def documento(self) -> int:
        """Su número."""

    @property
    def estado(self) -> str:
        """CO: afectado, con renglones sin movimiento. PE: pendiente, con renglones ya movidos."""

    @property
    def renglones(self) -> int:
        """Cuántos renglones tiene."""

    @property
    def faltan(self) -> list[int]:
        """Los renglones que no tienen su movimiento."""


class Tenencia:
    """Un documento que alguien tiene abierto para modificarlo."""

    @property
    def tipo(self) -> str:
        """Entrada o Salida."""

    @property
    def documento(self) -> int:
        """Su número."""

    @property
    def usuario(self) -> str:
        """Quién lo tiene."""

    @property
    def estacion(self) -> str | None:
        """En qué estación; nada si no se sabe."""

    @property
    def desde(self) -> datetime.datetime | None:
        """Desde cuándo; nada si no se sabe."""

    @property
    def viva(self) -> bool:
        """Si el programa que lo tiene sigue trabajando."""


class Peticion:
    """Alguien pide un documento que otro tiene abierto."""

    @property
    def tipo(self) -> str:
        """Entrada o Salida."""

    @property
    def documento(self) -> int:
        """Su número."""

    @property
    def usuario(self) -> str:
        """Quién lo pide."""

    @property
    def estacion(self) -> str:
        """Desde qué estación."""

    @property
    def mensaje(self) -> str:
        """Lo que dice quien lo pide."""

    @property
    def cuando(self) -> datetime.datetime:
        """Cuándo lo pidió."""

    @property
    def estado(self) -> str:
        """Cómo va ahora: pedida, cedida o negada."""

    @property
    def motivo(self) -> str:
        """Por qué se negó."""

    def cede(self) -> None:
        """Entrega el documento: se guarda pendiente, la pantalla se cierra y queda libre."""

    def niega(self, motivo: str = '') -> None:
        """Contesta que no."""


class Acto:
    """Algo que se hizo por derecho, o sobre una negativa."""

    @property
    def cuando(self) -> datetime.datetime:
        """Cuándo se hizo."""

    @property
    def usuario(self) -> str:
        """Quién lo hizo."""

    @property
    def estacion(self) -> str:
        """En qué estación."""

    @property
    def acto(self) -> str:
        """Qué: libera, cede, elimina, completa, repara..."""

    @property
    def tipo(self) -> str | None:
        """Entrada o Salida; nada si no fue de un documento."""

    @property
    def documento(self) -> int | None:
        """El número del documento, o nada."""

    @property
    def texto(self) -> str:
        """Qué se hizo, exactamente."""


class Lectura:
    """Una lectura del lector, en la cinta."""

    @property
    def texto(self) -> str:
        """Lo que se leyó."""

    @property
    def estado(self) -> str:
        """Cómo va ahora: espera, renglon, sin articulo, rechazada, descartada o deshecha."""

    @property
    def tipo(self) -> str | None:
        """Entrada o Salida; nada si no había documento."""

    @property
    def documento(self) -> int | None:
        """El número del documento, o nada."""

    @property
    def renglon(self) -> int | None:
        """El renglón que hizo, o al que se sumó; o nada."""

    @property
    def cantidad(self) -> float | None:
        """Las unidades que puso, o nada."""

    @property
    def motivo(self) -> str | None:
        """Por qué se rechazó o se descartó, o nada."""

    @property
    def usuario(self) -> str:
        """Quién la leyó."""

    @property
    def estacion(self) -> str:
        """En qué estación."""

    @property
    def cuando(self) -> datetime.datetime:
        """Cuándo se leyó."""

    def asigna(self, articulo: str, unidades: float = 1) -> None:
        """Hace del código desconocido una segunda clave de un artículo, y la captura de nuevo."""

    def descarta(self, motivo: str) -> None:
        """La descarta; el motivo queda en la cinta."""

    def deshace(self) -> None:
        """Quita sus unidades de un documento pendiente."""

    def alimenta(self, forma: Pantalla | None = None) -> None:
        """Captura una que se quedó en espera, o que se rechazó."""


class Faltante:
    """Un artículo del que no hay bastante para todo el documento."""

    @property
    def articulo(self) -> str:
        """La clave del artículo."""

    @property
    def pide(self) -> float:
        """Lo que pide el documento, con todos sus renglones."""

    @property
    def hay(self) -> float:
        """La existencia en su almacén."""

    @property
    def en_otros(self) -> float:
        """Lo que piden de ahí otras salidas pendientes."""

    @property
    def renglones(self) -> list[int]:
        """Sus renglones en el documento."""


class AvisoDeEntrada:
    """Un renglón de una entrada que conviene mirar antes de afectarla."""

    @property
    def articulo(self) -> str:
        """La clave del artículo."""

    @property
    def renglon(self) -> int:
        """El renglón."""

    @property
    def clase(self) -> str:
        """precio, cantidad o repetido."""

    @property
    def texto(self) -> str:
        """Qué tiene."""


class Observacion:
    """Algo que no está como debe en la base."""

    @property
    def clase(self) -> str:
        """existencia, columna, a medias, adelantado, doble, distinto, huerfano, suelto, numero, tenencia o motor."""

    @property
    def tipo(self) -> str | None:
        """Entrada o Salida, o nada."""

    @property
    def documento(self) -> int | None:
        """El número del documento, o nada."""

    @property
    def renglon(self) -> int | None:
        """El renglón; de existencia, el primer movimiento desde el que difiere. O nada."""

    @property
    def articulo(self) -> str | None:
        """La clave del artículo, o nada."""

    @property
    def almacen(self) -> float | None:
        """El almacén, o nada."""

    @property
    def texto(self) -> str:
        """Qué es y qué hacer."""

    @property
    def reparable(self) -> bool:
        """Si puede repararse sin duda."""

    @property
    def reparado(self) -> bool:
        """Si se acaba de reparar."""


class MovimientoInventario:
    """Afecta existencias: se le dicen las propiedades, y Afecta escribe un movimiento. Lo dicho se queda para el siguiente. Las propiedades sólo se escriben."""

    EntSal: str
    """E entra, S sale."""

    ClaveLocal: str
    """La clave del local."""

    Fecha: datetime.date
    """La fecha del documento."""

    Almacen: float
    """El almacén cuya existencia cambia."""

    Movimiento: int
    """El número del documento."""

    TipoDoc: str
    """El concepto."""

    Usuario: str
    """Quién afecta."""

    Documento: str
    """El número del documento, como texto."""

    Operacion: str
    """EN entrada, SA salida, T+ llegada de un traspaso."""

    Articulo: str
    """La clave del artículo."""

    Cantidad: float
    """En unidades del artículo."""

    Precio: float
    """De una unidad, con impuesto."""

    IdEntrada: int
    """El renglón de la entrada."""

    IdSalida: int
    """El renglón de la salida."""

    ClaveAdd: str
    """La clave adicional con que se capturó el renglón."""

    EstacionTraspaso: str
    """La estación que recibe un traspaso."""

    Aplica: bool
    """Si se escribe; sin ello sólo se calcula cuánto vale."""

    def Afecta(self) -> float:
        """Escribe el movimiento y la existencia, completos o nada; da cuánto vale."""


class Conexion:
    """La base, por la conexión de las pantallas."""

    def Execute(self, texto: str) -> Recordset:
        """Envía una sentencia y da sus renglones."""
