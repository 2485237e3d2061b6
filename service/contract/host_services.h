// What the movements module needs of the application around it: every service, as a pure interface. The
// stand-alone host in host/ implements them; so can any other program. tests/service/ajeno/ holds the
// smallest one that receives a line.
//
//   class MiHost : public tarvik::service::Host { ... };       // and the interfaces behind it
//   MiHost host;
//   MiAmbiente ambiente;
//   tarvik::EntradasSalidas movimientos(host);                 // service/door/entradas_salidas.h
//   movimientos.Ambiente = &ambiente;
//   movimientos.NuevaEntrada();                                // a screen; it lives in host.Plataforma()
//
// To be implemented: Host, Ambiente, Funciones, Query, ConsultasCatalogo, MovimientoInventario and the three
// pickers here; data::Connection (data/connection.h); forms::Platform (forms/platform.h), or its
// HeadlessPlatform where there is no window; LateBound only where the program has a list to keep up to date.
// docs/schema.md lists the tables and columns that the statements expect of the base.
//
// Rules for every operation here, unless it says otherwise:
//
// Thread      All calls come on one thread, that of the user interface, and what the program calls of the
//             module it calls there. Only NuevoId has to hold between processes.
// Failure     An operation that fails throws data::Error; its text is shown to the operator. Where the
//             screen's procedure has a trap, the failure is shown in a box and written to the day's log, and
//             the next step runs. Elsewhere it ends the event and goes to Platform::Unhandled. Nothing that
//             was written is undone. data::Unrecoverable passes every trap and ends the event.
// Results     An out argument is set on success only; a caller whose call failed goes on with the value that
//             it had before, which most set to 0, "" or false at first. What is made and given back
//             (unique_ptr, shared_ptr) is never null and belongs to the caller.
// References  An argument is the caller's and is not used after the call has returned. Those marked "kept"
//             are used until the object that was given them dies, and outlive it.
// Lifetime    Host, Ambiente and Parent outlive every screen that was shown with them. What Host gives by
//             reference is the same object each time.
// Waiting     Boxes, pickers, questions and routines may take as long as the operator does. Meanwhile they
//             let no other act of the operator's reach the screen that asked.
// Text        UTF-8. A quantity is in units of the article, an amount in the currency of Ambiente::Moneda.
// Path        Made of RutaBase and names, joined with "\". The service opens it with the separator of its
//             machine. forms::Platform's own file operations do both.
//
// Box styles are sums of forms::kBox...: 16 stop sign, 64 information sign, 4 Yes and No. Pregunta gets 1 (OK
// and Cancel) when a document is finished, 2 (three buttons) when a transfer's line is to be removed; both
// want one of two answers, so any box that can be agreed to or refused will do.
//
// The services of the suite's own application take more arguments than these. This system would pass them
// alike at every call, so they are not part of the contract. Whoever adapts that application adds, in
// its order of arguments (Nothing is no object, Null a null value):
//
//   AbreRecordset      (text, connection, True, out)
//   AbreConsulta       (text, connection, 0, out)
//   NuevoId            (series, connection, 0, Nothing, out)
//   FechaValida        (date, ambiente, True, out)
//   PresentaForma      (screen, ambiente, "")
//   TeclaNumerica      (key, control, True)
//   FormateaTexto      (field, ambiente, "")
//   CantidadEnVenta    (article, 0, Null, connection, out)
//   CantidadPorSurtir  (article, connection, 0, out)
//   BuscaCatalogo      (key, screen, ambiente, "", Nothing, True, False, "", "", "", Nothing)
//   ImprimeDocumento   (format, number, ambiente, screen, False)
//   Afecta             (False, amount)
//   BuscadorCatalogo   Muestra(title, "", "", "", Null, 0)
//   ListaArticulos     Muestra(0, "")
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "data/recordset.h"
#include "forms/control.h"
#include "forms/form.h"

namespace tarvik::service {

using data::Value;

// The working context that the program hands over. Read again each time: what changes here holds from the
// next step on.
class Ambiente {
 public:
  virtual ~Ambiente() = default;
  // The open connection, always the same one; every statement of the module goes through it.
  virtual data::Connection& Conexion() = 0;
  // The logged-in user, key of `usuarios`. Stored with what is written, compared with a document's holder.
  virtual std::string Usuario() = 0;
  // This work station. Stored on goods-out; trimmed and followed by "salida", the series of its folios.
  virtual std::string Estacion() = 0;
  virtual std::string Moneda() = 0;      // stored in entradas.moneda
  virtual std::string ClaveLocal() = 0;  // handed to MovimientoInventario, and not read by the module
  // Patterns of numbers: "#" a digit where there is one, "0" a digit always, "," groups by three, "."
  // begins the decimals. Rounded half away from zero. "###,###,##0.00" and "###,###,##0.####" will do.
  virtual std::string FormatoImporte() = 0;   // prices and amounts
  virtual std::string FormatoCantidad() = 0;  // quantities
  // The settings: one row, standing on it, with these columns. A missing one is a failure of its step.
  //   Almacen  the warehouse that a new document starts with; null or empty for none
  //   Lector   not 0: the entry row starts in barcode mode
  //   PorSurt  not 0: what orders hold (prods.Por_Surt) is not available to a goods-out
  //   EnVenta  not 0: CantidadEnVenta is asked when a goods-out's quantity is corrected
  virtual data::RecordsetRef Parametros() = 0;
  // Folder of the log ("web" in it) and of the distribution sheet, without a separator at its end.
  virtual std::string RutaBase() = 0;
  virtual int ValorFechaA() = 0;  // handed to FechaDeTrabajo, and read nowhere else
  virtual int ValorFechaB() = 0;
  // What the routine of the next key may read; it stays until it is set again. The index of the field
  // before ENTRADA007, ENTRADA008 and MOVESTACIONES002; null before ENTRADA009. Other keys don't set it.
  virtual void ValorDeGancho(const Value& value) = 0;
};

// The statement builder. Each wizard holds one for its life, and makes one for each procedure of the base.
// It starts empty. Whatever it holds stays until Limpia, also after Ejecuta.
class Query {
 public:
  virtual ~Query() = default;
  virtual void Conexion(data::Connection& connection) = 0;  // kept
  // Empties the builder: kind, columns, condition, finished statement.
  virtual void Limpia() = 0;
  // "INSERT" or "UPDATE"; discards a finished statement.
  virtual void TipoSentencia(std::string_view kind) = 0;
  // One column more, after those before it: a table and a column without quotes, and its value. A text is
  // quoted, its quotes doubled; a number is written bare; a date is '2024-03-05'; null is NULL. A column of
  // another table discards those before it: a statement is of one table.
  virtual void AgregaCampo(std::string_view tabla, std::string_view campo, const Value& valor) = 0;
  // The WHERE clause of an UPDATE, without the word; an INSERT ignores it.
  virtual void Condicion(std::string_view text) = 0;
  // The statement as built; empty for one that Ejecuta would not send. The screens ask for it before they
  // run what they have built, and do nothing with it.
  virtual void TextoSql(std::string& text) = 0;
  // A finished statement, sent instead of what was built: a DELETE, or "exec PROCEDURE 'a','b'".
  virtual void SentenciaDirecta(std::string_view text) = 0;
  // Runs the statement. Without a column nothing is sent, nor an UPDATE without a condition; neither is a
  // failure.
  virtual void Ejecuta() = 0;
};

// The global helper. `connection` is always Ambiente::Conexion.
class Funciones {
 public:
  virtual ~Funciones() = default;

  // Runs a SELECT and gives a recordset on its first row, or at its end if it has none. Each call gives a
  // recordset of its own.
  virtual void AbreRecordset(const std::string& text, data::Connection& connection,
                             data::RecordsetRef& out) = 0;
  // The same; goods-out uses it to look up its articles.
  virtual void AbreConsulta(const std::string& text, data::Connection& connection,
                            data::RecordsetRef& out) = 0;

  // The next free number of a series, from 1. Never the same twice, whoever else asks; gaps do no harm. The
  // series: "MovEnt" and "Salida" documents, "entpart" and "salpart" lines, "Traspaso" transfers, and the
  // station's folios, as in "CAJAsalida".
  virtual void NuevoId(const std::string& series, data::Connection& connection, std::int32_t& out) = 0;

  // "1,234.5" is 1234.5; null, an empty text and whatever is no number are 0.
  virtual double ANumero(const Value& value) = 0;
  // As data::ToText: null is "", a number has "." and no grouping, a date is "2024-03-05".
  virtual std::string TextoDe(const Value& value) = 0;
  virtual bool EstaVacio(const std::string& text) = 0;  // empty or blanks
  // True if a row of the table has the value in the column, both named without regard to case; false for
  // null. Asked of: articulo in prods, almacen in almacen, empleado in empleados, estacion in estaciones,
  // sucursal in sucursal, cliente in clients.
  virtual bool ExisteClave(const Value& value, const std::string& column, const std::string& table,
                           data::Connection& connection) = 0;

  // The text of a message of service/contract/claves.h; the number itself, as text, if it has none.
  virtual void TraeMensaje(int number, Ambiente&, std::string& out) = 0;
  // Shows a box and returns when it is closed. Style 16 or 64.
  virtual void MuestraMensaje(const std::string& text, int style, Ambiente&) = 0;
  virtual void MuestraError(const std::string& text) = 0;
  // Asks, and waits. True for the answer that agrees; false for the other, and for a box that is closed. A
  // question that fails counts as refused.
  virtual void Pregunta(const std::string& text, int style, bool& out) = 0;

  // Whether a document of this date may be posted. If not, it has told the operator why, and gives false.
  // Asked when a document is finished; a failure counts as false.
  virtual void FechaValida(const data::Date& date, Ambiente&, bool& out) = 0;
  // The date that a new document starts with. `a` and `b` are ValorFechaA and ValorFechaB; what they mean is
  // the program's (in host/: days and months from today).
  virtual void FechaDeTrabajo(int a, int b, data::Date& out) = 0;

  virtual std::unique_ptr<Query> NuevoQuery() = 0;  // an empty one, without a connection

  // A wizard has loaded: the program may put it into its own frame. Called inside Form_Load, before the
  // screen is visible, unless the key at the end of the load has cancelled. A failure is dropped.
  virtual void PresentaForma(forms::Form& screen, Ambiente&) = 0;
  // A wizard is about to go: the program takes back what PresentaForma gave. `name` is the program's screen
  // that gets control, always "frmMaster". Called inside Form_Unload; a failure is reported, and the screen
  // closes all the same.
  virtual void RegresaForma(forms::Form& screen, Ambiente&, const std::string& name) = 0;
  // Presses keys on Platform::ActiveForm, as an operator would, once the act under way has ended: always
  // "{TAB}". With `wait` they are handled before it returns; the screens never ask for that.
  virtual void EnviaTeclas(const std::string& keys, bool wait) = 0;

  // Filters of what is typed into a field: `key` is the character that KeyPress got, 8 and 13 among them.
  // They change it in place and return it; 0 refuses it. `field` is where it was typed.
  virtual int TeclaMayuscula(int& key, forms::Control& field) = 0;  // the capital letter
  virtual int TeclaNumerica(int& key, forms::Control& field) = 0;  // digits, sign, decimal mark, editing keys
  // The field's text as the box is to show it: by FormatoImporte if the field's Tag is "N" and the text
  // is a number; else as it is. Asked when a field is left, and at each change until the screen is visible.
  virtual std::string FormateaTexto(forms::TextBox& field, Ambiente&) = 0;
  // A quantity by a pattern: FormatoCantidad, unchanged.
  virtual void FormateaCantidad(double value, const std::string& format, std::string& out) = 0;
  // A number as it may be written in a statement: "1234567.25".
  virtual void NumeroSql(double value, std::string& out) = 0;

  // What open sales and open orders hold of an article; 0 for an unknown one. A goods-out asks when a
  // quantity is corrected and does nothing with the answer.
  virtual void CantidadEnVenta(const std::string& articulo, data::Connection& connection, double& out) = 0;
  virtual void CantidadPorSurtir(const std::string& articulo, data::Connection& connection, double& out) = 0;

  // Appends the text in one write, so that processes which share the file don't mix their entries. Makes the
  // file and its folders if missing. If it fails nothing can be reported any more: the event ends.
  virtual void AgregaArchivoLog(const std::string& path, const std::string& text) = 0;
  virtual void ExisteArchivo(const std::string& path, bool& out) = 0;  // no folder on the way: false
  virtual void BorraArchivo(const std::string& path) = 0;              // of a missing one: nothing
};

// Hooks and printing.
class ConsultasCatalogo {
 public:
  virtual ~ConsultasCatalogo() = default;
  // Runs the routine that the program has assigned to a key; a key without one does nothing. The keys are
  // those of service/contract/claves.h, always in capitals: a group (ENTRADA, ENTRADAS, SALIDAS,
  // MOVESTACIONES or TALLASYCOLORES) and three digits; or AYUDA.
  //
  // The routine may read and write every public member of `screen` (a frmEntradasWizard, frmSalidasWizard or
  // frmMovEstaciones), assign its fields, whose changes run at once, send statements, show boxes and other
  // screens, and set CancelaProceso where the table says that it is tested. It may close the screen: the
  // object lives until the procedure that fired the key has returned. No line is stored for a screen that is
  // gone, but a finish that is under way runs to its end.
  //
  // What it throws comes out here. At the end of a wizard's load it is dropped; a procedure with a trap
  // reports it and goes on; all else leaves the event, or movimientoEstacion where its screen loads.
  virtual void BuscaCatalogo(const std::string& key, forms::Form& screen, Ambiente&) = 0;
  // Prints a document: `format` is what the first row of defform has in its column Entradas or Salidas,
  // `number` is entradas.entrada or salidas.salida. Called when a document is finished, posted or left
  // pending, if the operator wants a page; the screen closes after it. A failure is reported.
  virtual void ImprimeDocumento(const std::string& format, std::int32_t number, Ambiente&,
                                forms::Form& screen) = 0;
};

// Posts stock movements. One object a posting run: header properties once, line properties and one Afecta for
// each line. A property keeps its value for the lines that follow; one that was never set is unset, which the
// implementation can tell. The header has been stored, with its state "CO", before the object is made.
//
//               goods-in            goods-out          its arrival, for a transfer (the same object)
//   EntSal      "E"                 "S"                "E"
//   Operacion   "EN"                "SA"               "T+"
//   Movimiento  entradas.entrada    salidas.folio      salidas.folio
//   Documento   the same, as text   the same           the same
//   TipoDoc     the concept         the concept        "T+"
//   Almacen     entradas.almacen    salidas.almacen    salidas.almt
//   Precio      the line's          the line's         0
//
// What a failure leaves behind. Where NuevoMovimiento fails, each property and each Afecta of the run fails
// after it, with a box for each: the document stays posted ("CO") with no line moved. Where a property fails,
// the object has the value of the line before. Where Afecta fails, the failure is reported, `amount` of the
// line before is added once more, and the run goes on with the next line: the document stays posted
// with that line unmoved. In each case the hooks after the posting fire, the page is printed and the screen
// closes. So an implementation leaves nothing half done, and offers a way to complete a document afterwards.
class MovimientoInventario {
 public:
  virtual ~MovimientoInventario() = default;
  virtual void Ambiente(service::Ambiente&) = 0;    // kept
  virtual void EntSal(const std::string&) = 0;      // "E" into stock, "S" out of it
  virtual void ClaveLocal(const std::string&) = 0;  // Ambiente::ClaveLocal
  virtual void Fecha(const data::Date&) = 0;        // of the document
  virtual void Almacen(double) = 0;                 // number of the warehouse that stock changes in
  virtual void Movimiento(std::int32_t) = 0;        // number of the document
  virtual void TipoDoc(const std::string&) = 0;     // concept, key of tipominv
  virtual void Usuario(const std::string&) = 0;     // who posts
  virtual void Documento(const std::string&) = 0;   // number of the document, as text
  virtual void Operacion(const std::string&) = 0;   // "EN", "SA" or "T+"
  virtual void Articulo(const std::string&) = 0;    // key of prods
  virtual void Cantidad(double) = 0;                // in units of the article
  virtual void Precio(double) = 0;                  // of one unit, tax included
  virtual void IdEntrada(std::int32_t) = 0;         // the line, entpart.id_entrada; on goods-in only
  virtual void IdSalida(std::int32_t) = 0;          // the line, salpart.id_salida; on goods-out only
  virtual void ClaveAdd(const std::string&) = 0;    // second key that the line was entered by; may be ""
  virtual void EstacionTraspaso(const std::string&) = 0;  // receiving station, on its arrivals
  // Always true. False: compute the amount and write nothing.
  virtual void Aplica(bool) = 0;
  // Writes the movement and updates stock, whole or not at all. It should move a line once, however often it
  // is called. `amount` is the movement's value; the screens add it up for the document's cost.
  virtual void Afecta(double& amount) = 0;
};

// Pickers. Each is made for one use: it gets Ambiente (kept) and a field (kept), then it is shown. Muestra
// returns when the operator has chosen or closed it. A choice is assigned to the field's Text, so that the
// field's change logic runs before Muestra returns, and what it throws comes out of Muestra; with nothing
// chosen the field stays as it is.
class BuscadorCatalogo {
 public:
  virtual ~BuscadorCatalogo() = default;
  virtual void Ambiente(service::Ambiente&) = 0;
  virtual void Campo(forms::TextBox&) = 0;
  // `title` says what is looked for: "Articulos", "Almacenes", "Impuestos por porcentaje", "Conceptos de
  // entrada al inventario" or "Conceptos de salidas de inventario". The field gets the key of the choice.
  virtual void Muestra(const std::string& title) = 0;
};

// A calculator for a field of prices; the field gets the result.
class AuxiliarNumerico {
 public:
  virtual ~AuxiliarNumerico() = default;
  virtual void Ambiente(service::Ambiente&) = 0;
  virtual void Campo(forms::TextBox&) = 0;
  virtual void Muestra() = 0;
};

// The list of articles; the field gets the key of the choice.
class ListaArticulos {
 public:
  virtual ~ListaArticulos() = default;
  virtual void Ambiente(service::Ambiente&) = 0;
  virtual void Campo(forms::TextBox&) = 0;
  virtual void Muestra() = 0;
};

// An object of the program's that is reached by name at run time: Parent, its form with the list of
// documents. Names come spelled as here. Each operation throws data::Error for a name that it doesn't
// have.
//
//   Get("CatalogoActivo")             text: the list that is shown, "Entradas", "EntradasPendientes",
//                                     "Salidas" or "SalidasPendientes". Asked when a document is finished;
//                                     the calls below follow only if it is the list of that document
//   Call("LlenaEntradas", {number})   that document's row is to be shown as it now is; likewise
//                                     LlenaEntradasPendientes, LlenaSalidas, LlenaSalidasPendientes
//   Call("CreaMenuPopUp")             after the two of goods-in: the list's menu is to be made again
//   Call("ReseteaMenus")              after the two of goods-out, and then
//   Call("EstableceMenus")            likewise
//   Call("SetFocus")                  a wizard closes: the form takes the focus
//   Object("lvListView")              the list, when a document was deleted. Of it:
//     Object("SelectedItem")            the chosen row; throws if none is. Get("Index") counts from 1
//     Object("ListItems")               the rows; Call("Remove", {index}) takes that one away
//
// What fails on goods-in and at a deletion is reported, on goods-out it is dropped, and SetFocus always; the
// document is finished or gone by then. Without a Parent nothing of this is asked, except that a deletion
// reports that it has no list.
class LateBound {
 public:
  virtual ~LateBound() = default;
  virtual Value Get(std::string_view name) = 0;
  virtual std::shared_ptr<LateBound> Object(std::string_view name) = 0;
  virtual void Call(std::string_view name, const std::vector<Value>& arguments) = 0;
};

// All of the program's services together.
class Host {
 public:
  virtual ~Host() = default;
  // Holds the screens. A program that ends unloads or discards them before it lets this go.
  virtual forms::Platform& Plataforma() = 0;
  virtual service::Funciones& Funciones() = 0;
  virtual service::ConsultasCatalogo& ConsultasCatalogo() = 0;
  virtual std::unique_ptr<MovimientoInventario> NuevoMovimiento() = 0;
  virtual std::unique_ptr<BuscadorCatalogo> NuevoBuscador() = 0;
  virtual std::unique_ptr<AuxiliarNumerico> NuevoAuxiliar() = 0;
  virtual std::unique_ptr<ListaArticulos> NuevaLista() = 0;
};

}  // namespace tarvik::service
