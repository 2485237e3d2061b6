// DocumentWizard: what the two document wizards share. One document, a header, an entry row, a grid
// of lines. What a wizard does differently is in its own folder, and as data in Particular; a
// step is here only if both run it. It knows no table of either wizard.
//
// Where to find a procedure:
//   document_wizard.cpp  ColocaFoco, ReportaError
//   load.cpp             DejaEnConsulta
//   fields.cpp           txtFields_Change, txtFields_LostFocus, txtFields_KeyPress, txtFields_KeyUp,
//                        txtFields_DblClick, TraeConcepto, Valida, ValidaFecha, PonTC, Label10_Click
//   grid.cpp             EditKeyCode, fg2_RowColChange, fg2_KeyPress, fg2_DblClick, txtEdit_KeyDown,
//                        txtEdit_KeyPress
//   finish.cpp           CuantasPartidas, Command2_Click, Command6_Click
//   malla_externa.cpp    AbajoEnArticulo
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/recordset.h"
#include "forms/control.h"
#include "forms/flex_grid.h"
#include "forms/form.h"
#include "service/contract/host_services.h"
#include "service/contract/objeto.h"
#include "service/report/muestra_mensaje.h"
#include "service/report/reporte.h"
#include "service/report/trampa.h"
#include "wizard/campos.h"
#include "wizard/columna.h"
#include "wizard/modos.h"

namespace tarvik {

namespace mensaje = service::mensaje;

// How a stored line's column comes into the grid.
struct Celda {
  enum Como { Valor, Texto, TrasBlanco };
  int columna;
  const char* campo;
  Como como;
};

// How a document works with the colour and size matrix of another program.
struct MallaExterna {
  std::string_view origen;         // how TKMallaParam is told who asks
  std::string_view procedimiento;  // makes the lines once the matrix is filled
  std::string_view operacion;      // the code under which the rows that it left are looked for
  std::span<const Celda> celdas;   // and how they come into the grid
};

// What sets the two wizards apart where a shared step differs by a detail only.
struct Particular {
  std::string_view nombre;                    // the screen's name
  std::string_view titulo;                    // its caption at design
  std::string_view modulo;                    // module text of the log, cut at 13 characters
  std::string_view ent_sal;                   // concepts of this direction: 'E' or 'S'
  bool recorta_concepto;                      // whether the concept's description is trimmed
  std::string_view fin_de_valida_fecha;       // how the statement of ValidaFecha ends
  std::string_view busca_concepto;            // title of the picker of concepts
  std::string_view antes_de_buscar;           // hook on leaving the article field
  std::string_view campo_de_formato;          // column of defform
  std::string_view borra_renglon;             // removal of a line, up to its id
  int columna_id;                             // grid column that holds the line's id
  std::span<const std::string_view> siempre;  // controls that stay enabled where nothing may be changed
  MallaExterna malla;
};

class DocumentWizard : public forms::Form, public service::Reportero {
 public:
  // ---- public members: the hosts' routines read and write them ----
  std::string Modo;  // one of kModos (wizard/modos.h)
  service::Objeto<service::Ambiente> Ambiente;
  service::Objeto<service::LateBound> Parent;  // may be unset
  data::RecordsetRef rstArticulo;              // the article last read
  data::RecordsetRef rstPartidas;              // the document's stored lines
  double Importe = 0;
  double Iva = 0;
  double Total = 0;
  double Costo = 0;  // what posting summed up
  service::Propio<service::Query> Query;
  bool CancelaProceso = false;        // set by a routine; cleared by the step that obeys
  bool Procesando = false;            // a line is being stored
  std::int32_t NumeroDePartidas = 0;  // the row beyond which the grid scrolls

  // ---- controls ----
  forms::ControlArray<forms::SearchBox> MultiCombo1;
  forms::ControlArray<forms::TextBox> txtFields;
  forms::DatePicker DTPicker1;
  forms::RichTextBox RichTextBox1;  // progress of posting
  forms::RichTextBox RichTextBox2;  // remarks
  forms::RichTextBox RichTextBox3;  // description of the concept
  forms::CheckBox Check2;           // print
  forms::CheckBox Check3;           // leave pending
  forms::CheckBox Check4;           // barcode reader
  forms::FlexGrid fg2;
  forms::TextBox txtEdit;  // floats over the cell being edited
  forms::Button Command1;
  forms::Button Command2;
  forms::Button Command5;
  forms::Button Command6;
  forms::ControlArray<forms::Label> Label10;

  // ---- fields ----
  void txtFields_Change(int Index);
  virtual void txtFields_GotFocus(int Index) = 0;
  void txtFields_LostFocus(int Index);
  virtual void txtFields_KeyDown(int Index, int& KeyCode, int Shift) = 0;
  virtual void txtFields_KeyPress(int Index, int& KeyAscii);
  void txtFields_KeyUp(int Index, int KeyCode, int Shift);
  void txtFields_DblClick(int Index);
  void TraeConcepto();
  virtual void ValidaTab1(bool& valido) = 0;
  bool Valida();
  void ValidaFecha(bool& valida);
  void PonTC();

  // ---- lines ----
  virtual void PonDescripcion() = 0;
  virtual void TraeSegundaClave() = 0;
  virtual void MultiplicaPrecio() = 0;
  virtual void LlenaPartida() = 0;
  virtual void NuevaPartida() = 0;

  // ---- grid ----
  virtual void MSFlexGridEdit(forms::FlexGrid& MSFlexGrid, forms::TextBox& Edt, int KeyAscii) = 0;
  void EditKeyCode(forms::FlexGrid& MSFlexGrid, forms::TextBox& Edt, int& KeyCode, int Shift);
  virtual void CalculaImportes() = 0;
  virtual void SalvaCambios() = 0;
  virtual void fg2_GotFocus() = 0;
  virtual void fg2_LeaveCell() = 0;
  void fg2_RowColChange();
  virtual void fg2_KeyDown(int& KeyCode, int Shift) = 0;
  void fg2_KeyPress(int& KeyAscii);
  void fg2_DblClick();
  void txtEdit_KeyDown(int& KeyCode, int Shift);
  void txtEdit_KeyPress(int& KeyAscii);

  // ---- finish ----
  virtual void Command5_Click() = 0;
  std::int32_t CuantasPartidas();
  void Label10_Click(int Index);
  void Command2_Click();
  void Command6_Click();
  // The header as the suite's save leaves a pending document, for a document that exists and is handed
  // over: no new document, no folio, nothing printed or posted, and held until the screen closes.
  virtual void SalvaPendiente() = 0;

  // From here on the document is only read, as after a load in "CONSULTA".
  void DejaEnConsulta();
  // Whether the document is only read, loaded so or left so.
  [[nodiscard]] bool SoloLectura() const { return Modo == modo::kConsulta; }

  // A line that is being posted: its number, from 1, of how many stored lines.
  struct Avance {
    int renglon = 0;
    int de = 0;
  };
  // Told with each line's text in RichTextBox1: a listener that hears of that change asks here for the
  // figures. Nothing at any other time, also when somebody else writes into RichTextBox1.
  [[nodiscard]] const std::optional<Avance>& Afectando() const { return afectando_; }
  // Asked on Enter in the article field, once it has been left and its routines have run: false ends the key
  // there. Set while a scanner's reading is typed; else empty.
  std::function<bool()> al_dejar_articulo;
  // How many failures this screen has reported: whoever calls a procedure learns whether all went well.
  [[nodiscard]] int Reportes() const { return reportes_; }

  // Moves the focus; whatever fails there is ignored. The only way in which a wizard does it.
  void ColocaFoco(forms::Control& control);
  // The same to the host's form.
  void ColocaFoco(service::LateBound& forma);

  bool ReportaError(const std::string& modulo, const std::string& funcion,
                    const std::string& descripcion) override;
  [[nodiscard]] std::string Modulo() const override { return std::string(particular_.modulo); }

 protected:
  DocumentWizard(service::Host& host, const Particular& particular, std::initializer_list<int> search_boxes,
                 const std::vector<int>& fields);

  service::Host& host() { return host_; }
  service::Funciones& Funciones() { return host_.Funciones(); }

  // Fires a hook; what its routine throws comes out here.
  void Dispara(std::string_view clave);
  // If CancelaProceso is set: clears it and gives true.
  bool Cancelado();
  // Procesando while it lives.
  class Almacenando {
   public:
    explicit Almacenando(DocumentWizard& wizard) : wizard_(wizard) { wizard_.Procesando = true; }
    ~Almacenando() { wizard_.Procesando = false; }
    Almacenando(const Almacenando&) = delete;
    Almacenando& operator=(const Almacenando&) = delete;

   private:
    DocumentWizard& wizard_;
  };
  // One turn of the lookup of a key. Article and second key look each other up: keys that form a circle
  // end here with data::Unrecoverable, before the stack overflows.
  class Vuelta {
   public:
    explicit Vuelta(DocumentWizard& wizard);
    ~Vuelta() { --wizard_.vueltas_; }
    Vuelta(const Vuelta&) = delete;
    Vuelta& operator=(const Vuelta&) = delete;

   private:
    DocumentWizard& wizard_;
  };

  // Runs a SELECT over Ambiente.Conexion; `out` is set only on success.
  void Abre(const std::string& sentencia, data::RecordsetRef& out);
  // The keyset, optimistic recordset that a procedure makes and opens itself.
  void AbreNuevo(const std::string& sentencia, data::RecordsetRef& out);
  void Mensaje(service::Trampa& intenta, int numero) {
    service::MuestraMensaje(intenta, host_, Ambiente, numero, service::kInformacion);
  }
  double NumeroEn(int campo) { return Funciones().ANumero(txtFields(campo).Text()); }
  bool EstaVacio(int campo) { return Funciones().EstaVacio(txtFields(campo).Text()); }
  void VaciaCampos(service::Trampa& intenta, std::initializer_list<int> campos);
  // ---- loading and closing (load.cpp) ----
  void EscribeEncabezados(service::Trampa& intenta, std::span<const Columna> columnas);
  // The date that a new document starts with, into DTPicker1; the station's warehouse, into
  // txtFields(campo::Almacen).
  void PonFechaDeTrabajo(service::Trampa& intenta);
  void PonAlmacenDeCasa(service::Trampa& intenta);
  // A picker from a column; one that holds no date leaves the picker as it is.
  void CargaFecha(service::Trampa& intenta, forms::DatePicker& picker, const data::RecordsetRef& registro,
                  const char* columna);
  // Marks the document as held.
  void TomaDocumento(service::Trampa& intenta, std::string_view tabla, const std::string& condicion);
  std::string TextoDeCelda(const data::RecordsetRef& registro, const Celda& celda);
  // The grid from rstPartidas, and the totals if there was a line.
  void LlenaRenglones(service::Trampa& intenta, std::span<const Celda> celdas);
  // The end of the load, where errors are dropped: a document that is only read has its controls
  // disabled, but for labels and Particular::siempre; search boxes get their connection, Check4 its start.
  void TerminaCarga(int a_la_vista);
  // The hook at the end of the load, which may keep the screen from being presented.
  void Presenta(std::string_view clave);
  void AlternaLector(service::Trampa& intenta);
  void Regresa(service::Trampa& intenta);

  // The statement as the builder holds it: fetched, then run.
  void EjecutaQuery(service::Trampa& intenta);
  // The rules that a change of a field sets off. False ends the change's handling.
  virtual bool AlCambiar(int Index) = 0;
  // What follows the article's lookup on leaving a field.
  virtual void AlSalir(int /*Index*/) {}
  // Enter's move: only to a target that is enabled.
  void PasaA(int campo);
  void PasaASeleccionado(int campo);
  // Enter's moves that both wizards have. False for a field whose move is the wizard's own.
  bool PasaConEnter(int Index);
  // Enter in the article field: on to the quantity; with a barcode reader, a whole line. False, and
  // nothing done, while a line is being stored.
  bool TomaArticulo();
  // Down in the article field: another program's matrix for a model's key, or else the list of articles.
  void AbajoEnArticulo();
  // Stores the document as it is now, for the other program to work on.
  virtual void GuardaParaMalla() = 0;
  [[nodiscard]] virtual std::int32_t NumeroDeDocumento() const = 0;
  // The entry row's first checks: the article is there and is one, the quantity is above 0.
  bool ArticuloYCantidad(service::Trampa& intenta);
  // F8 walks the presentation fields; false where it has no meaning.
  bool PasaPorPresentacion(int Index);
  // The box's first text, by the key that opens it; false if the key opens nothing.
  bool TextoInicial(service::Trampa& intenta, forms::TextBox& Edt, int KeyAscii);
  void SobreLaCelda(service::Trampa& intenta, forms::FlexGrid& MSFlexGrid, forms::TextBox& Edt);
  void ConfirmaCelda(service::Trampa& intenta);
  void QuitaRenglon(service::Trampa& intenta);
  // The first free row of the grid; 0 if there is none.
  int RenglonLibre(service::Trampa& intenta);
  // What a column of the grid is stored as, and whether as a number.
  struct Cambio {
    int columna;
    const char* campo;
    bool numero;
  };
  // Stores the edited cell in its line. A column without a field builds and runs all the same.
  void SalvaCelda(service::Trampa& intenta, std::string_view tabla, const std::string& clave,
                  std::initializer_list<Cambio> cambios);

  // ---- the finish (finish.cpp) ----
  bool Acepta(service::Trampa& intenta, int pregunta);
  // False if the picker holds no date and can be mended; the host's own check of the date.
  bool FechaEscrita(service::Trampa& intenta);
  bool FechaAceptada(service::Trampa& intenta);
  // Disables the buttons, so that a second click can't follow; nothing enables them again.
  void CierraBotones(service::Trampa& intenta);
  // A document without lines is only ever left pending.
  void SinRenglonesQuedaPendiente(service::Trampa& intenta, int mensaje);
  // "Afectando: " and the current line of rstPartidas, painted at once.
  void MuestraAvance(service::Trampa& intenta, int cuenta);
  // Prints by the format that defform names.
  void Imprime(std::string_view procedimiento, std::int32_t numero);

 private:
  void Conecta();
  void ReparteFuera(const std::string& modelo);
  void EjecutaProcedimiento(const std::string& sentencia);
  void TraeDeLaMalla(const std::string& documento);

  service::Host& host_;
  const Particular& particular_;
  void Bloquea();

  int vueltas_ = 0;
  int reportes_ = 0;
  std::optional<Avance> afectando_;
};

// A column's value for a property of the posting object; a column that holds none is an error.
data::Date FechaDe(const data::Value& value);
std::int32_t EnteroDe(const data::Value& value);
// A picker's date for a column; none is null.
data::Value ValorDe(const std::optional<data::Date>& fecha);

// Number, amount and text as the grid and the totals show them.
inline constexpr std::string_view kFormatoRenglon = "####,####,###0.00";
inline constexpr std::string_view kFormatoTotal = "###,###,###0.##";
inline constexpr int kBlanco = 0xFFFFFF;
inline constexpr int kCianClaro = 0xFFFFE0;

}  // namespace tarvik
