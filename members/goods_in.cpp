// What the screen of goods-in has of its own.
#include "goods_in/frm_entradas_wizard.h"
#include "members/row.h"
#include "members/tables.h"

namespace tarvik::members {

namespace {

using C = frmEntradasWizard;

std::vector<Member> Controls() {
  return {
      CONTROLS(MultiCombo1, "Buscadores junto a las cajas de texto.", {0, "Del concepto, txtFields(0)"},
               {1, "Del almacén, txtFields(14)"}, {2, "Del artículo, txtFields(4)"},
               {3, "De la clave adicional, txtFields(24)"}),
      CONTROLS(txtFields, "Cajas de texto del encabezado, del renglón de captura y de los totales.",
               {campo::Concepto, "Concepto de la entrada"},
               {campo::Descripcion, "Descripción del artículo; sólo se muestra"},
               {campo::Articulo, "Artículo, modelo o clave adicional"},
               {campo::Cantidad, "Cantidad, en unidades del artículo"},
               {campo::Precio, "Precio de una unidad, con impuesto"},
               {campo::ImporteDelRenglon, "Importe del renglón"},
               {campo::Total, "Total del documento; sólo se muestra"}, {campo::Almacen, "Almacén que recibe"},
               {campo::SegundaClave, "Clave adicional con que se capturó"},
               {campo::Dato1, "Descripción de la presentación"},
               {campo::Dato2, "Segundo dato de la presentación"}, {campo::Unidad, "Unidad del artículo"},
               {campo::Presentaciones, "Cuántas presentaciones"},
               {campo::UnidadDePresentacion, "Unidad de la presentación"}),
      CONTROL(fg2,
              "Rejilla de renglones. Columnas: 0 artículo, 1 cantidad, 2 precio, 3 importe, 4 descripción, 5 "
              "número del renglón, 6 presentación, 7 cuántas presentaciones."),
      CONTROL(Command1, "Modelos: se muestra y no hace nada."),
      CONTROL(Command3, "Botón que no se muestra de diseño; una rutina puede mostrarlo y darle uso."),
      CONTROL(Timer1, "Cierra la pantalla un momento después de oprimir la cruz de la ventana."),
      CONTROL(Label4, "Letrero: presentación."),
      CONTROL(Label5, "Letrero: unidad."),
      CONTROL(Label6, "Letrero: importe."),
      CONTROL(Label8, "Letrero: total."),
      CONTROL(Label12, "Letrero: concepto."),
      CONTROL(Label17, "Letrero: artículo."),
      CONTROL(Label18, "Letrero: cantidad."),
      CONTROL(Label19, "Letrero: precio."),
      CONTROL(Label23, "Letrero: fecha."),
      CONTROL(Label25, "Letrero: almacén."),
  };
}

std::vector<Member> Procedures() {
  return {
      PROCEDURE(CalculaCantidad,
                "Pone la cantidad según la presentación: las que son por las unidades de cada una."),
      PROCEDURE(BuscaModelo,
                "Si lo escrito en el artículo es un modelo, abre la malla de colores y tallas y agrega "
                "sus renglones; sí cuando así fue.",
                {"es_modelo"}),
      PROCEDURE(CreaEntrada,
                "Da número a la entrada y guarda su encabezado; la pantalla pasa a modificación."),
      PROCEDURE(SalvaEntrada, "Guarda el encabezado con el estado dado, PE o CO, y suelta el documento.",
                {"estado"}),
      PROCEDURE(SalvaPartidas, "Lee los renglones guardados en rstPartidas; sí cuando hay alguno."),
      PROCEDURE(AfectaPartidas, "Afecta las existencias con cada renglón de rstPartidas y suma el costo."),
      PROCEDURE(ImprimeEntrada, "Imprime la entrada con el formato que dice la base."),
      PROCEDURE(RichTextBox1_KeyDown, "Lo que hace una tecla en la caja del avance; da la tecla.",
                {"KeyCode"}, {"Shift"}),
      PROCEDURE(Check1_Click, "Queda para las rutinas: calcula de nuevo los importes."),
      PROCEDURE(Command1_Click, "Lo que hace el botón Modelos: nada."),
      PROCEDURE(Command3_Click, "Lo que hace el botón que no se muestra: dispara ENTRADAS011."),
      PROCEDURE(Timer1_Timer, "Lo que hace el reloj: cierra la pantalla."),
  };
}

}  // namespace

const Class& GoodsInTable() {
  static const Class table = [] {
    Class screen{"frmEntradasWizard",
                 "La pantalla de una entrada al inventario.",
                 &DocumentWizardTable(),
                 &typeid(C),
                 {
                     VARIABLE(Entrada, "Número de la entrada; 0 mientras no existe."),
                     VARIABLE(rstEntrada, "El encabezado como se leyó por último, o nada."),
                     VARIABLE(cEstado, "Queda para las rutinas: la pantalla no lo lee."),
                 }};
    for (const auto& part : {Controls(), Procedures()}) {
      screen.members.insert(screen.members.end(), part.begin(), part.end());
    }
    return screen;
  }();
  return table;
}

}  // namespace tarvik::members
