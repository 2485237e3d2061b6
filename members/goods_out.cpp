// What the screen of goods-out has of its own.
#include "goods_out/frm_salidas_wizard.h"
#include "members/row.h"
#include "members/tables.h"

namespace tarvik::members {

namespace {

using C = frmSalidasWizard;

std::vector<Member> State() {
  return {
      VARIABLE(Salida, "Número de la salida; 0 mientras no existe."),
      VARIABLE(UltimaPartida, "El renglón de la rejilla en que quedó el último agregado; 0 si no hay."),
      VARIABLE(Acumulado, "Si dos renglones seguidos de lo mismo se suman en uno."),
      VARIABLE(Html, "Cuerpo de la hoja de distribución, para las rutinas."),
      VARIABLE(rstSalida, "El encabezado como se leyó por último, o nada."),
      VARIABLE(rstClients, "El cliente que se leyó por último, o nada."),
      VARIABLE(rstVends, "El vendedor que se leyó por último, o nada."),
      VARIABLE(rstCobdet, "Queda para las rutinas: la pantalla no lo lee."),
      VARIABLE(rstClavesAdd, "La clave adicional que se leyó por último, o nada."),
  };
}

std::vector<Member> Fields() {
  return {
      CONTROLS(MultiCombo1, "Buscadores junto a las cajas de texto.", {0, "Del concepto, txtFields(0)"},
               {1, "Del almacén, txtFields(14)"}, {2, "Del artículo, txtFields(4)"},
               {3, "Del almacén que recibe, txtFields(2)"}, {4, "De la sucursal, txtFields(3)"},
               {5, "De la clave adicional, txtFields(24)"}, {6, "De la estación, txtFields(9)"},
               {7, "Del cliente, txtFields(13)"}, {8, "Del empleado, txtFields(16)"}),
      CONTROLS(txtFields, "Cajas de texto del encabezado, del renglón de captura y de los totales.",
               {campo::Concepto, "Concepto de la salida"},
               {campo::Descripcion, "Descripción del artículo; sólo se muestra"},
               {campo::AlmacenDestino, "Almacén que recibe un traspaso"},
               {campo::Sucursal, "Sucursal que recibe"}, {campo::Articulo, "Artículo o clave adicional"},
               {campo::Cantidad, "Cantidad, en unidades del artículo"},
               {campo::Precio, "Precio de una unidad, con impuesto"},
               {campo::EntradaRemota, "Entrada de la sucursal; sólo se muestra"},
               {campo::Unidades, "Total de unidades; sólo se muestra"},
               {campo::EstacionDestino, "Estación que recibe; no se muestra de diseño"},
               {campo::Renglones, "Total de renglones; sólo se muestra"},
               {campo::Total, "Total del documento; sólo se muestra"},
               {campo::Compra, "Número de compra; no se muestra de diseño"}, {campo::Cliente, "Cliente"},
               {campo::Almacen, "Almacén que entrega"}, {campo::NombreDelCliente, "Nombre del cliente"},
               {campo::Empleado, "Empleado a quien se asigna"},
               {campo::DireccionDeEmbarque, "Dirección de embarque"},
               {campo::SegundaClave, "Clave adicional con que se capturó"},
               {campo::Dato1, "Descripción de la presentación"},
               {campo::Dato2, "Segundo dato de la presentación"}, {campo::Unidad, "Unidad del artículo"},
               {campo::Presentaciones, "Cuántas presentaciones"},
               {campo::UnidadDePresentacion, "Unidad de la presentación"}),
      CONTROL(fg2,
              "Rejilla de renglones. Columnas: 0 artículo, 1 cantidad, 2 existencia que queda, 3 precio, 4 "
              "importe, 5 descripción, 6 número del renglón, 7 presentación, 8 cuántas presentaciones, 9 "
              "existencia al capturar, 10 clave adicional."),
      CONTROL(Command1, "Reenviar a sucursal (F6): dispara SALIDAS005."),
      CONTROL(SSCheck1, "Traspaso a otro almacén, el de txtFields(2)."),
      CONTROL(SSCheck2, "Traspaso a una estación, la de txtFields(9); no se muestra de diseño."),
      CONTROL(Check1, "Asignación a un empleado, el de txtFields(16)."),
      CONTROL(Check5, "Traspaso entre sucursales, a la de txtFields(3)."),
      CONTROL(DTPicker2, "Fecha en que regresa el material."),
      CONTROL(Combo1, "Direcciones de embarque; lo elegido va a txtFields(17)."),
      CONTROL(wb, "Visor de la hoja de distribución."),
      CONTROL(Picture1, "Panel del encabezado."),
      CONTROL(Picture2, "Panel de los renglones."),
      CONTROL(Picture3, "Panel de la captura y de los totales."),
  };
}

std::vector<Member> Labels() {
  return {
      CONTROL(Label1, "Letrero: entrada remota."),
      CONTROL(Label2, "Letrero: unidades."),
      CONTROL(Label3, "Letrero: renglones."),
      CONTROL(Label4, "Letrero: presentación."),
      CONTROL(Label5, "Letrero: unidad."),
      CONTROL(Label6, "Letrero: cliente."),
      CONTROL(Label7, "Letrero: hoja de distribución."),
      CONTROL(Label8, "Letrero: total."),
      CONTROL(Label9, "Letrero: fecha de retorno."),
      CONTROL(Label11, "Letrero: dirección de embarque."),
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
      PROCEDURE(CreaHTML,
                "Compone la hoja de distribución, escribe el archivo del día y lo muestra; da la página. Un "
                "segundo texto que no está vacío es la página tal cual.",
                {"cString"}, {"cHtml"}),
      PROCEDURE(llenaDirecciones, "Llena la lista de direcciones de embarque con todas las de la base."),
      PROCEDURE(TraeVends, "El nombre del vendedor; texto vacío si no lo hay."),
      PROCEDURE(MultiplicaPorPresentacion, "Pone la cantidad según la presentación, si ésta la fija."),
      PROCEDURE(CreaPartida, "Guarda el renglón de captura como uno nuevo, en la base y en la rejilla."),
      PROCEDURE(ConfirmaExistencia,
                "Si puede quedar una cantidad corregida, dadas la nueva y la anterior; pregunta "
                "cuando la existencia no alcanza.",
                {"first"}, {"second"}),
      PROCEDURE(CreaEntradasDeTraspaso, "Lo que sigue a afectar un traspaso: dispara SALIDAS017."),
      PROCEDURE(CreaSalida, "Da número a la salida y guarda su encabezado; la pantalla pasa a modificación."),
      PROCEDURE(SalvaSalida, "Guarda el encabezado como diga Check3, pendiente o afectado, y le da folio."),
      PROCEDURE(SalvaPartidas, "Lee los renglones guardados en rstPartidas; sí cuando hay alguno.", {"hay"}),
      PROCEDURE(AfectaPartidas, "Afecta las existencias con cada renglón de rstPartidas y suma el costo."),
      PROCEDURE(ImprimeSalida, "Imprime la salida con el formato que dice la base."),
      PROCEDURE(Combo1_Click, "Lo elegido en la lista de direcciones pasa a txtFields(17)."),
      Runs<C, &C::Combo1_Click>("Combo1_Change",
                                "Lo escrito en la lista de direcciones pasa a txtFields(17)."),
      PROCEDURE(SSCheck1_Click, "Lo que hace la marca de traspaso a almacén: habilita txtFields(2)."),
      PROCEDURE(SSCheck2_Click, "Lo que hace la marca de traspaso a estación: dispara SALIDAS012."),
      PROCEDURE(Check1_Click, "Lo que hace la marca de asignación a empleado: dispara SALIDAS015."),
      PROCEDURE(Command1_Click, "Lo que hace el botón de reenviar a sucursal: dispara SALIDAS005."),
      PROCEDURE(DTPicker2_KeyDown, "Lo que hace una tecla en la fecha de retorno; da la tecla.", {"KeyCode"},
                {"Shift"}),
      PROCEDURE(Timer1_Timer, "Queda para las rutinas: esta pantalla no tiene reloj."),
  };
}

}  // namespace

const Class& GoodsOutTable() {
  static const Class table = [] {
    Class screen{
        "frmSalidasWizard", "La pantalla de una salida de almacén.", &DocumentWizardTable(), &typeid(C), {}};
    for (const auto& part : {State(), Fields(), Labels(), Procedures()}) {
      screen.members.insert(screen.members.end(), part.begin(), part.end());
    }
    return screen;
  }();
  return table;
}

}  // namespace tarvik::members
