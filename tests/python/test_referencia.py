"""What a writer of scripts finds without reading a source: dir(), help(), the stub for his editor, the pages of
reference, and a hint where he has mistyped a name. With TARVIK_WRITE_PAGES=1 stub and pages are written anew."""

import ast
import inspect
import os
import sys
import tempfile
import unittest
from pathlib import Path

import tarvik

import bases

RAIZ = Path(__file__).resolve().parents[2]
PAGINAS = RAIZ / "docs" / "reference"

# The names that scripts are written against.
CONTRATO = {
    "Anfitrion": """Ambiente EntradasSalidas Parent pantallas sql sentencias mensajes mensaje pitidos listas respuestas
        ganchos ganchos_disparados movimientos impresos navegado presentadas regresadas ahora falla falla_servicio
        al_mostrar_modal al_mostrar_selector selectores procesa_eventos no_atrapados cierra a_medias completa revisa
        tenencias abre libera pide peticiones bitacora""",
    "Ambiente": """Usuario Estacion Moneda ClaveLocal FormatoImporte FormatoCantidad RutaBase ValorFechaA ValorFechaB
        ValorDeGancho Parametros""",
    "EntradasSalidas": """NuevaEntrada ModificaEntrada ConsultaEntrada EliminaEntrada NuevaSalida ModificaSalida
        ConsultaSalida EliminaSalida movimientoEstacion Ambiente Parent""",
    "Parent": "CatalogoActivo lvListView",
    "ListView": "ListItems SelectedItem",
    "Mensaje": "clase numeros numero texto estilo respuesta",
    "DocumentoAMedias": "tipo documento estado renglones faltan",
    "Observacion": "clase tipo documento renglon articulo almacen texto reparable reparado",
    "Tenencia": "tipo documento usuario estacion desde viva",
    "Peticion": "estado cede niega",
    "Acto": "cuando usuario estacion acto tipo documento texto",
    "Forma": """Caption Tag Visible ActiveControl abierta enfoca teclea tecla clic clic_celda doble_clic_celda
        doble_clic elige cierra pinta""",
    "frmEntradasWizard": """Modo Entrada Caption CancelaProceso Procesando Costo LlenaPartida CalculaImportes
        CuantasPartidas ValidaTab1""",
    "frmSalidasWizard": "Salida ConfirmaExistencia CreaHTML",
    "Control": "Enabled Visible Tag TabIndex Name Index Left Top Width Height ForeColor",
    "TextBox": "Text MaxLength SelStart SelLength",
    "CheckBox": "Value Caption",
    "DatePicker": "Value",
    "SearchBox": "buscar",
    "ComboBox": "Text ListIndex List",
    "FlexGrid": """Row Col Rows Cols FixedRows FixedCols TopRow Text TextMatrix setTextMatrix ColWidth RowHeight
        CellBackColor BackColor bloqueada CellLeft CellTop CellWidth CellHeight""",
}


def clases():
    return {nombre: clase for nombre, clase in vars(tarvik).items() if isinstance(clase, type)}


def miembros(clase):
    return {nombre for nombre in dir(clase) if not nombre.startswith("_")}


class Stub:
    """The stub as an editor reads it: the members of a class, inherited ones included."""

    def __init__(self, texto):
        self.clases = {nodo.name: nodo for nodo in ast.parse(texto).body if isinstance(nodo, ast.ClassDef)}

    def miembros(self, nombre):
        propios = {nodo.target.id if isinstance(nodo, ast.AnnAssign) else nodo.name
                   for nodo in self.clases[nombre].body
                   if isinstance(nodo, (ast.AnnAssign, ast.FunctionDef))}
        for base in self.clases[nombre].bases:
            if isinstance(base, ast.Name) and base.id in self.clases:
                propios |= self.miembros(base.id)
        return {nombre for nombre in propios if not nombre.startswith("_")}

    def parametros(self, clase, nombre):
        nodo = next(nodo for nodo in self.clases[clase].body
                    if isinstance(nodo, ast.FunctionDef) and nodo.name == nombre)
        args = [argumento.arg for argumento in nodo.args.args]
        return args + ["*" + nodo.args.vararg.arg] if nodo.args.vararg else args


class Archivos(unittest.TestCase):
    def igual(self, archivo, texto):
        if os.environ.get("TARVIK_WRITE_PAGES"):
            archivo.parent.mkdir(exist_ok=True)
            archivo.write_text(texto, encoding="utf-8")
        self.assertEqual(archivo.read_text(encoding="utf-8"), texto, "set TARVIK_WRITE_PAGES=1 to write it anew")

    def test_the_stub_says_what_the_module_offers(self):
        self.igual(RAIZ / "python" / "tarvik.pyi", tarvik._stub())

    def test_the_pages_say_what_the_module_offers(self):
        for nombre, texto in tarvik._paginas().items():
            self.igual(PAGINAS / nombre, texto)
        self.assertEqual({pagina.name for pagina in PAGINAS.iterdir()}, set(tarvik._paginas()))

    def test_the_stub_stands_beside_the_module(self):
        self.assertTrue(Path(tarvik.__file__).with_name("tarvik.pyi").is_file())


class Nombres(unittest.TestCase):
    def setUp(self):
        self.stub = Stub(tarvik._stub())

    def test_the_stub_names_what_dir_names(self):
        self.assertEqual(set(self.stub.clases), set(clases()))
        for nombre, clase in clases().items():
            if nombre in ("Error", "ListItems", "Parent"):  # a list's own names; `llamadas` is put on by its host
                continue
            self.assertEqual(self.stub.miembros(nombre), miembros(clase), nombre)

    def test_the_names_that_scripts_are_written_against_are_there(self):
        for nombre, lista in CONTRATO.items():
            self.assertLessEqual(set(lista.split()), miembros(getattr(tarvik, nombre)), nombre)

    def test_every_class_stands_on_a_page(self):
        indice = tarvik._paginas()["indice.md"]
        for nombre in set(clases()) - {"Error", "DocumentWizard"}:  # the latter's members stand with its screens
            self.assertIn(f"`{nombre}`", indice)

    def test_every_member_stands_on_a_page(self):
        texto = "".join(tarvik._paginas().values())
        for nombre, clase in clases().items():
            if nombre in ("Error", "ListItems"):
                continue
            for miembro in miembros(clase):
                self.assertRegex(texto, rf"\| `{miembro}[`(]", nombre)


class Ayuda(unittest.TestCase):
    def test_help_has_a_line_of_its_own_for_each_member(self):
        for nombre, clase in clases().items():
            if nombre in ("Error", "ListItems"):
                continue
            self.assertTrue(clase.__doc__, nombre)
            for miembro in miembros(clase) - {"llamadas"}:
                linea = inspect.getdoc(inspect.getattr_static(clase, miembro)) or ""
                self.assertRegex(linea, r"^.* .*\.$", f"{nombre}.{miembro}")

    def test_a_procedure_tells_its_parameters(self):
        stub = Stub(tarvik._stub())
        vistos = 0
        for nombre, clase in clases().items():
            for miembro, valor in vars(clase).items():
                if miembro.startswith("_") or not callable(valor) or nombre == "ListItems":
                    continue
                firma = inspect.signature(getattr(clase, miembro))
                self.assertEqual([str(p).split("=")[0] for p in firma.parameters.values()],
                                 stub.parametros(nombre, miembro), f"{nombre}.{miembro}")
                vistos += 1
        self.assertGreater(vistos, 150)


class Pantalla(unittest.TestCase):
    def setUp(self):
        carpeta = tempfile.TemporaryDirectory()
        self.addCleanup(carpeta.cleanup)
        self.anf = tarvik.Anfitrion(base=bases.en_memoria(self), usuario="ANA", estacion="E1", ruta=carpeta.name)
        self.addCleanup(self.anf.cierra)
        self.es = self.anf.EntradasSalidas()
        self.es.NuevaEntrada()
        self.f = self.anf.pantallas[-1]

    def pantallas(self):
        self.es.NuevaSalida()
        self.es.movimientoEstacion(0, False)
        return self.anf.pantallas

    def test_dir_shows_every_control_and_the_page_and_the_stub_too(self):
        stub = Stub(tarvik._stub())
        for forma in self.pantallas():
            clase = type(forma).__name__
            pagina = next(texto for texto in tarvik._paginas().values() if texto.startswith(f"# {clase}\n"))
            for control in forma.Controls:
                self.assertIn(control.Name, dir(forma))
                self.assertIn(control.Name, stub.miembros(clase))
                entero = control.Name if control.Index is None else f"{control.Name}({control.Index})"
                self.assertIn(f"| `{entero}` |", pagina)
                self.assertEqual(control, getattr(forma, control.Name) if control.Index is None
                                 else getattr(forma, control.Name)[control.Index])

    def test_each_property_is_read_and_set_back(self):
        vistas = 0
        objetos = [self.anf, self.anf.Ambiente, self.anf.Parent, self.anf.Parent.lvListView, self.es, self.f]
        for objeto in [*objetos, *self.f.Controls]:
            for nombre in miembros(type(objeto)):
                propiedad = inspect.getattr_static(type(objeto), nombre)
                if not isinstance(propiedad, property):
                    continue
                valor = getattr(objeto, nombre)
                if propiedad.fset:
                    setattr(objeto, nombre, valor)
                    leido = getattr(objeto, nombre)
                    if isinstance(valor, tarvik.ListItems):
                        leido, valor = list(leido), list(valor)
                    self.assertEqual(leido, valor, nombre)
                vistas += 1
        self.assertGreater(vistas, 600)
        self.assertEqual(self.anf.no_atrapados, [])

    def test_parameters_go_by_their_names_too(self):
        self.assertEqual(self.f.txtFields_KeyPress(Index=0, KeyAscii=ord("a")), ord("A"))
        self.f.fg2.setTextMatrix(row=1, col=1, text="7")
        self.assertEqual(self.f.fg2.TextMatrix(row=1, col=1), "7")
        self.f.tecla(name="F8", control=self.f.txtFields[5])
        for numero in ({"n": 99}, {"nEntrada": 99}):
            self.es.ModificaEntrada(**numero, bolModal=False)
        self.assertEqual([m.numero for m in self.anf.mensajes], [72, 72])

    def test_what_a_parameter_does_not_take_is_a_type_error(self):
        for llamada in (lambda: self.f.txtFields_KeyPress(0), lambda: self.f.txtFields_KeyPress("a", 1),
                        lambda: self.f.EditKeyCode(self.f.txtEdit, self.f.txtEdit, 13, 0),
                        lambda: self.f.teclea(None, "x"), lambda: setattr(self.f, "Entrada", "x"),
                        lambda: self.es.movimientoEstacion(1)):
            self.assertRaises(TypeError, llamada)

    def dice(self, texto, hace):
        with self.assertRaises(AttributeError) as error:
            hace()
        self.assertEqual(str(error.exception), texto)

    def test_a_mistyped_name_says_what_was_probably_meant(self):
        f = self.f
        self.dice("La pantalla frmEntradasWizard no tiene txtField; ¿txtFields?", lambda: f.txtField)
        self.dice("La pantalla frmEntradasWizard no tiene modo; ¿Modo?", lambda: f.modo)
        self.dice("La pantalla frmEntradasWizard no tiene xyzzy", lambda: f.xyzzy)
        self.dice("El control txtFields(4) no tiene text; ¿Text?", lambda: f.txtFields[4].text)
        self.dice("Anfitrion no tiene sentencia; ¿sentencias?", lambda: self.anf.sentencia)
        self.dice("Ambiente no tiene estacion; ¿Estacion?", lambda: self.anf.Ambiente.estacion)

    def test_setting_a_mistyped_name_says_it_too_and_sets_nothing(self):
        f = self.f
        self.dice("La pantalla frmEntradasWizard no tiene CancelaProseso; ¿CancelaProceso?",
                  lambda: setattr(f, "CancelaProseso", True))
        self.assertFalse(f.CancelaProceso)
        self.dice("La pantalla frmEntradasWizard: txtFields sólo se lee", lambda: setattr(f, "txtFields", 1))
        movimiento = self.anf.Ambiente.NuevoMovimiento()
        self.dice("MovimientoInventario: Cantidad sólo se escribe", lambda: movimiento.Cantidad)

    def test_a_question_for_a_name_is_answered_as_ever(self):
        self.assertFalse(hasattr(self.f, "nada"))
        self.assertEqual(getattr(self.f, "nada", 7), 7)
        self.assertFalse(hasattr(self.f, "__len__"))


if __name__ == "__main__":
    sys.exit(unittest.main())
