// The shared part of the wizards: construction, focus, hooks, reporting.
#include "wizard/document_wizard.h"

#include "data/number.h"
#include "data/text.h"
#include "service/report/pantalla.h"

namespace tarvik {

using service::Trampa;

DocumentWizard::DocumentWizard(service::Host& host, const Particular& particular,
                               std::initializer_list<int> search_boxes, const std::vector<int>& fields)
    : Form(host.Plataforma(), std::string(particular.nombre), std::string(particular.titulo)),
      MultiCombo1(*this, "MultiCombo1", search_boxes),
      txtFields(*this, "txtFields", fields),
      DTPicker1(*this, "DTPicker1"),
      RichTextBox1(*this, "RichTextBox1"),
      RichTextBox2(*this, "RichTextBox2"),
      RichTextBox3(*this, "RichTextBox3"),
      Check2(*this, "Check2"),
      Check3(*this, "Check3"),
      Check4(*this, "Check4"),
      fg2(*this, "fg2"),
      txtEdit(*this, "txtEdit"),
      Command1(*this, "Command1"),
      Command2(*this, "Command2"),
      Command5(*this, "Command5"),
      Command6(*this, "Command6"),
      Label10(*this, "Label10", {letrero::Observaciones, letrero::Pendiente, letrero::Imprimir}),
      host_(host),
      particular_(particular) {
  DTPicker1.Value(host.Plataforma().Now().date);
  RichTextBox2.MultiLine(true);
  Check2.Design(1);
  txtEdit.Visible(false);
  txtFields(campo::Descripcion).Enabled(false);
  txtFields(campo::Total).Enabled(false);
  txtFields(campo::Total).RightAligned(true);
  Label10(letrero::Pendiente).Caption("Dejar como movimiento pendiente");
  Label10(letrero::Imprimir).Caption("Imprimir movimiento.");
  Label10(letrero::Observaciones).Caption("Observaciones al movimiento de entrada.");
  Check4.Caption("Lector de Código de Barras");
  Command2.Caption("&Cancelar");
  Command5.Caption("&Finalizar (F5)");
  Command6.Caption("..");
  Conecta();
}

void DocumentWizard::Conecta() {
  txtFields.Each([this](forms::TextBox& campo) {
    const int indice = *campo.Index();
    campo.OnChange = [=, this] { txtFields_Change(indice); };
    campo.OnGotFocus = [=, this] { txtFields_GotFocus(indice); };
    campo.OnLostFocus = [=, this] { txtFields_LostFocus(indice); };
    campo.OnKeyDown = [=, this](int& tecla, int shift) { txtFields_KeyDown(indice, tecla, shift); };
    campo.OnKeyPress = [=, this](int& tecla) { txtFields_KeyPress(indice, tecla); };
    campo.OnKeyUp = [=, this](int& tecla, int shift) { txtFields_KeyUp(indice, tecla, shift); };
    campo.OnDblClick = [=, this] { txtFields_DblClick(indice); };
  });
  fg2.OnGotFocus = [this] { fg2_GotFocus(); };
  fg2.OnLeaveCell = [this] { fg2_LeaveCell(); };
  fg2.OnRowColChange = [this] { fg2_RowColChange(); };
  fg2.OnKeyDown = [this](int& tecla, int shift) { fg2_KeyDown(tecla, shift); };
  fg2.OnKeyPress = [this](int& tecla) { fg2_KeyPress(tecla); };
  fg2.OnDblClick = [this] { fg2_DblClick(); };
  txtEdit.OnKeyDown = [this](int& tecla, int shift) { txtEdit_KeyDown(tecla, shift); };
  txtEdit.OnKeyPress = [this](int& tecla) { txtEdit_KeyPress(tecla); };
  Command2.OnClick = [this] { Command2_Click(); };
  Command5.OnClick = [this] { Command5_Click(); };
  Command6.OnClick = [this] { Command6_Click(); };
  Label10.Each([this](forms::Label& etiqueta) {
    const int indice = *etiqueta.Index();
    etiqueta.OnClick = [=, this] { Label10_Click(indice); };
  });
}

void DocumentWizard::ColocaFoco(forms::Control& control) { service::ColocaFoco(control); }

void DocumentWizard::ColocaFoco(service::LateBound& forma) {
  service::Ignora ignora;
  ignora([&] { forma.Call("SetFocus", {}); });
}

bool DocumentWizard::ReportaError(const std::string& modulo, const std::string& funcion,
                                  const std::string& descripcion) {
  ++reportes_;
  return service::ReportaEnCajaYBitacora(
      host_, [this] { return Ambiente->RutaBase(); }, modulo, funcion, descripcion);
}

void DocumentWizard::Dispara(std::string_view clave) { service::Dispara(host_, clave, *this, *Ambiente); }

bool DocumentWizard::Cancelado() { return std::exchange(CancelaProceso, false); }

DocumentWizard::Vuelta::Vuelta(DocumentWizard& wizard) : wizard_(wizard) {
  constexpr int kMasHonda = 40;  // real keys need four
  if (wizard_.vueltas_ >= kMasHonda) {
    throw data::Unrecoverable("La clave " + wizard_.txtFields(campo::Articulo).Text() +
                              " lleva a sí misma sin fin");
  }
  ++wizard_.vueltas_;
}

void DocumentWizard::Abre(const std::string& sentencia, data::RecordsetRef& out) {
  Funciones().AbreRecordset(sentencia, Ambiente->Conexion(), out);
}

void DocumentWizard::AbreNuevo(const std::string& sentencia, data::RecordsetRef& out) {
  auto nuevo = std::make_shared<data::Recordset>();
  nuevo->CursorType(data::kKeysetCursor);
  nuevo->LockType(data::kOptimisticLock);
  out = nuevo;
  nuevo->Open(sentencia, Ambiente->Conexion(), data::kAsSet, data::kAsSet, data::kTextCommand);
}

void DocumentWizard::VaciaCampos(Trampa& intenta, std::initializer_list<int> campos) {
  for (int campo : campos) intenta([&] { txtFields(campo).Text(""); });
}

data::Date FechaDe(const data::Value& value) {
  auto fecha = data::ToDate(value);
  if (!fecha) throw data::Error("El valor no es una fecha: " + data::ToText(value));
  return *fecha;
}

std::int32_t EnteroDe(const data::Value& value) {
  if (value.IsNull()) throw data::Error("Falta un número en el documento");
  return static_cast<std::int32_t>(data::ToNumber(value));
}

data::Value ValorDe(const std::optional<data::Date>& fecha) {
  return fecha ? data::Value(*fecha) : data::Value();
}

}  // namespace tarvik
