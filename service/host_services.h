// What the movements module needs of its host: every service, as a pure interface. The host is the
// suite's application, or the stand-alone one in host/. Readable in ten minutes as the contract.
//
// Common to all: an operation that fails throws data::Error, whose text the operator may see. An
// operation with an out argument sets it only on success. All are called on the one thread of the
// user interface; only NuevoId has to hold between processes. References that a service is given
// stay the caller's and are not kept beyond the call, unless it says so.
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

// The working context that the host hands over. Outlives every screen that was given it.
class Ambiente {
 public:
  virtual ~Ambiente() = default;
  // The open connection; every statement of the module goes through it.
  virtual data::Connection& Conexion() = 0;
  virtual std::string Usuario() = 0;          // the logged-in user; compared with the lock's holder
  virtual std::string Estacion() = 0;         // this work station; key of its folio series
  virtual std::string Moneda() = 0;           // stored in entradas.moneda
  virtual std::string ClaveLocal() = 0;       // handed to MovimientoInventario unread
  virtual std::string FormatoImporte() = 0;   // pattern for prices and amounts: "###,###,##0.00"
  virtual std::string FormatoCantidad() = 0;  // pattern for quantities
  // One row of settings, by name without regard to case: Almacen, Lector, PorSurt, EnVenta.
  virtual data::RecordsetRef Parametros() = 0;
  // Base folder of the log and of the distribution sheet, without a separator at its end.
  virtual std::string RutaBase() = 0;
  virtual int ValorFechaA() = 0;  // both only for FechaDeTrabajo
  virtual int ValorFechaB() = 0;
  // Set just before some hooks fire, for the routine to see; null is the empty value.
  virtual void ValorDeGancho(const Value& value) = 0;
};

// The statement builder. One is held by each wizard for its life.
class Query {
 public:
  virtual ~Query() = default;
  virtual void Conexion(data::Connection& connection) = 0;  // kept; must outlive the builder
  // Empties the builder: kind, columns, condition, finished statement.
  virtual void Limpia() = 0;
  virtual void TipoSentencia(std::string_view kind) = 0;  // "INSERT" or "UPDATE"
  // Columns come out in the order in which they were added. Text is quoted, its quotes doubled.
  virtual void AgregaCampo(std::string_view tabla, std::string_view campo, const Value& valor) = 0;
  // The WHERE clause of an UPDATE, without the word; an INSERT passes over it.
  virtual void Condicion(std::string_view text) = 0;
  // The statement as built; empty for one that Ejecuta would not send.
  virtual void TextoSql(std::string& text) = 0;
  virtual void SentenciaDirecta(std::string_view text) = 0;  // a finished statement, for Ejecuta
  // Runs the statement. An UPDATE without a column or without a condition is not sent at all.
  virtual void Ejecuta() = 0;
};

// The global helper.
class Funciones {
 public:
  virtual ~Funciones() = default;

  // Runs a SELECT and gives a recordset on its first row, or at its end if there is none.
  virtual void AbreRecordset(const std::string& text, data::Connection&, bool flag,
                             data::RecordsetRef& out) = 0;
  virtual void AbreConsulta(const std::string& text, data::Connection&, int flag,
                            data::RecordsetRef& out) = 0;

  // The next free number of a series: 1, 2, 3 ... Never the same twice, whoever else asks.
  virtual void NuevoId(const std::string& name, data::Connection&, std::int32_t working, Query* query,
                       std::int32_t& out) = 0;

  // "1,234.5" is 1234.5; null, an empty text and whatever is no number are 0.
  virtual double ANumero(const Value& value) = 0;
  virtual std::string TextoDe(const Value& value) = 0;  // null gives ""
  virtual bool EstaVacio(const std::string& text) = 0;  // empty or blanks
  // True if a row of the table has the value in the column; both named without regard to case.
  virtual bool ExisteClave(const Value& value, const std::string& column, const std::string& table,
                           data::Connection&) = 0;

  // The text of a numbered message; the number itself if it has none.
  virtual void TraeMensaje(int number, Ambiente&, std::string& out) = 0;
  virtual void MuestraMensaje(const std::string& text, int style, Ambiente&) = 0;  // 16 stop, 64 information
  virtual void MuestraError(const std::string& text) = 0;
  virtual void Pregunta(const std::string& text, int style, bool& out) = 0;  // true: the positive answer

  // True if the date may be used for a movement; if not, it has told the operator why.
  virtual void FechaValida(const data::Date& date, Ambiente&, bool flag, bool& out) = 0;
  // The date that a new document starts with, from the two values of Ambiente.
  virtual void FechaDeTrabajo(int a, int b, data::Date& out) = 0;

  virtual std::unique_ptr<Query> NuevoQuery() = 0;

  // Brings a loaded screen into the host's frame; gives control back to the named host screen.
  virtual void PresentaForma(forms::Form& screen, Ambiente&, const std::string& text) = 0;
  virtual void RegresaForma(forms::Form& screen, Ambiente&, const std::string& name) = 0;
  // Sends keys to the active screen, such as "{TAB}". With `wait` they are worked off before it returns.
  virtual void EnviaTeclas(const std::string& keys, bool wait) = 0;

  // Key filters: take the character, change it in place and give it back; 0 refuses it.
  virtual int TeclaMayuscula(int& key, forms::Control&) = 0;
  virtual int TeclaNumerica(int& key, forms::Control&, bool flag) = 0;
  // The field's text as it is to stand in the box, by the field's tag.
  virtual std::string FormateaTexto(forms::TextBox&, Ambiente&, const std::string& format) = 0;
  virtual void FormateaCantidad(double value, const std::string& format, std::string& out) = 0;
  virtual void NumeroSql(double value, std::string& out) = 0;

  // Quantity of an article in open sales, and pending to fill; 0 for an unknown article.
  virtual void CantidadEnVenta(const std::string& articulo, int, const Value&, data::Connection&,
                               double& out) = 0;
  virtual void CantidadPorSurtir(const std::string& articulo, data::Connection&, int, double& out) = 0;

  // Appends the text, creating the file and its folder if needed; safe between processes.
  virtual void AgregaArchivoLog(const std::string& path, const std::string& text) = 0;
  virtual void ExisteArchivo(const std::string& path, bool& out) = 0;
  virtual void BorraArchivo(const std::string& path) = 0;
};

// Hooks and printing.
class ConsultasCatalogo {
 public:
  virtual ~ConsultasCatalogo() = default;
  // Runs the routine that the host has put behind a key; a key with none does nothing. The routine
  // may work on the screen's public members and set CancelaProceso. What it throws comes out here.
  virtual void BuscaCatalogo(const std::string& key, forms::Form& screen, Ambiente&, const Value& value,
                             void* object, bool flag1, bool flag2, const std::string& text1,
                             const std::string& text2, const std::string& text3, void* last) = 0;
  // Prints a document by the named format.
  virtual void ImprimeDocumento(const std::string& format, std::int32_t number, Ambiente&,
                                forms::Form& screen, bool flag) = 0;
};

// Posts stock movements. One object a posting run: header properties once, line properties and one
// Afecta for each line. A property that is never set stays unset, which the host can tell.
class MovimientoInventario {
 public:
  virtual ~MovimientoInventario() = default;
  virtual void Ambiente(service::Ambiente&) = 0;  // kept for the run
  virtual void EntSal(const std::string&) = 0;    // "E" into stock, "S" out of it
  virtual void ClaveLocal(const std::string&) = 0;
  virtual void Fecha(const data::Date&) = 0;
  virtual void Almacen(double) = 0;
  virtual void Movimiento(std::int32_t) = 0;
  virtual void TipoDoc(const std::string&) = 0;
  virtual void Usuario(const std::string&) = 0;
  virtual void Documento(const std::string&) = 0;
  virtual void Operacion(const std::string&) = 0;  // "EN", "SA", "T+"
  virtual void Articulo(const std::string&) = 0;
  virtual void Cantidad(double) = 0;  // in units of the article
  virtual void Precio(double) = 0;    // per unit of the article, tax included
  virtual void IdEntrada(std::int32_t) = 0;
  virtual void IdSalida(std::int32_t) = 0;
  virtual void ClaveAdd(const std::string&) = 0;
  virtual void EstacionTraspaso(const std::string&) = 0;
  virtual void Aplica(bool) = 0;
  // Writes the movement and updates stock, whole or not at all. `amount` is what callers sum up.
  virtual void Afecta(bool flag, double& amount) = 0;
};

// Pickers: given Ambiente and a field, told to show; the choice goes to the field.
class BuscadorCatalogo {
 public:
  virtual ~BuscadorCatalogo() = default;
  virtual void Ambiente(service::Ambiente&) = 0;
  virtual void Campo(forms::TextBox&) = 0;
  virtual void Muestra(const std::string& title, const std::string& text1, const std::string& text2,
                       const std::string& text3, const Value& value, int number) = 0;
};

class AuxiliarNumerico {
 public:
  virtual ~AuxiliarNumerico() = default;
  virtual void Ambiente(service::Ambiente&) = 0;
  virtual void Campo(forms::TextBox&) = 0;
  virtual void Muestra() = 0;
};

class ListaArticulos {
 public:
  virtual ~ListaArticulos() = default;
  virtual void Ambiente(service::Ambiente&) = 0;
  virtual void Campo(forms::TextBox&) = 0;
  virtual void Muestra(int& number, const std::string& text) = 0;
};

// An object of the host that is reached by name at run time, as the host's form Parent is: its
// members are the host's business. Each operation throws data::Error for a name it doesn't have.
class LateBound {
 public:
  virtual ~LateBound() = default;
  // A property's value: "CatalogoActivo".
  virtual Value Get(std::string_view name) = 0;
  // An object behind a property: "lvListView". Never nullptr.
  virtual std::shared_ptr<LateBound> Object(std::string_view name) = 0;
  // An operation: "LlenaEntradas" with the document's number, "SetFocus" with nothing.
  virtual void Call(std::string_view name, const std::vector<Value>& arguments) = 0;
};

// All of the host's services in one hand. Outlives every screen.
class Host {
 public:
  virtual ~Host() = default;
  virtual forms::Platform& Plataforma() = 0;
  virtual service::Funciones& Funciones() = 0;
  virtual service::ConsultasCatalogo& ConsultasCatalogo() = 0;
  virtual std::unique_ptr<MovimientoInventario> NuevoMovimiento() = 0;
  virtual std::unique_ptr<BuscadorCatalogo> NuevoBuscador() = 0;
  virtual std::unique_ptr<AuxiliarNumerico> NuevoAuxiliar() = 0;
  virtual std::unique_ptr<ListaArticulos> NuevaLista() = 0;
};

}  // namespace tarvik::service
