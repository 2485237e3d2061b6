// frmSalidasWizard: the screen of one goods-out document. Twin of the goods-in screen; what both do
// alike is in wizard/, and here is only what goods-out does by itself: stock is checked,
// equal consecutive lines add up, a presentation carries its own rule, and marks turn a document into
// a transfer to a warehouse, a branch, a station or an employee.
//
// Where to find a procedure:
//   screen.cpp     Form_Load, Form_KeyDown, Form_Unload, Form_Paint, Form_Resize, Timer1_Timer,
//                  DTPicker2_KeyDown, CreaHTML
//   header.cpp     txtFields_GotFocus, txtFields_KeyDown, txtFields_KeyPress, llenaDirecciones,
//                  Combo1_Click, ValidaTab1, TraeVends
//   lines.cpp      PonDescripcion, TraeSegundaClave, MultiplicaPorPresentacion, LlenaPartida,
//                  NuevaPartida, CreaPartida
//   stock.cpp      ConfirmaExistencia, HayExistencia
//   grid.cpp       MSFlexGridEdit, fg2_GotFocus, fg2_LeaveCell, fg2_KeyDown, SalvaCambios, CalculaImportes
//   transfers.cpp  SSCheck1_Click, SSCheck2_Click, Check1_Click, Command1_Click, CreaEntradasDeTraspaso
//   finish.cpp     Command5_Click, CreaSalida, SalvaSalida, SalvaPendiente, SalvaPartidas, AfectaPartidas
//
// What it shares with the goods-in wizard is listed in wizard/document_wizard.h.
//
// What the modes mean is in wizard/modos.h. Where nothing may be changed, fg2, Command1 and Command2 stay
// enabled.
#pragma once

#include "wizard/document_wizard.h"

namespace tarvik {

class frmSalidasWizard final : public DocumentWizard {
 public:
  explicit frmSalidasWizard(service::Host& host);

  std::int32_t Salida = 0;
  data::RecordsetRef rstClients;
  data::RecordsetRef rstVends;
  data::RecordsetRef rstSalida;
  data::RecordsetRef rstCobdet;    // kept for the hosts' routines
  std::int32_t UltimaPartida = 0;  // the grid row of the last line; 0 until there is one
  std::string Html;                // body of the distribution sheet, for the hosts' routines
  data::RecordsetRef rstClavesAdd;
  bool Acumulado = false;  // equal consecutive lines add up; set at load

  forms::PictureBox Picture1, Picture2, Picture3;
  forms::CheckBox SSCheck1, SSCheck2, Check1, Check5;
  forms::DatePicker DTPicker2;
  forms::WebBrowser wb;
  forms::ComboBox Combo1;
  forms::Label Label1, Label2, Label3, Label4, Label5, Label6, Label7, Label8, Label9, Label11, Label12,
      Label17, Label18, Label19, Label23, Label25;

  // ---- screen ----
  void Timer1_Timer();  // kept for the hosts' routines: this screen has no timer
  void DTPicker2_KeyDown(int& KeyCode, int Shift);
  // Composes the distribution sheet, writes the day's file and shows it. `cString` is the heading, and
  // afterwards the whole page; a `cHtml` that is not empty is the whole page.
  void CreaHTML(std::string& cString, const std::string& cHtml);

  // ---- header ----
  void txtFields_GotFocus(int Index) override;
  void txtFields_KeyDown(int Index, int& KeyCode, int Shift) override;
  void txtFields_KeyPress(int Index, int& KeyAscii) override;
  void ValidaTab1(bool& valido) override;
  void llenaDirecciones();
  std::string TraeVends();
  void Combo1_Click();

  // ---- lines ----
  void PonDescripcion() override;
  void TraeSegundaClave() override;
  void MultiplicaPorPresentacion();
  void MultiplicaPrecio() override {}  // the entry row has no amount here
  void LlenaPartida() override;
  void NuevaPartida() override;
  void CreaPartida();

  // ---- stock ----
  // Whether an edited quantity may stand. Both arguments stay the caller's: the new quantity, the old.
  bool ConfirmaExistencia(double first, double second);

  // ---- grid ----
  void MSFlexGridEdit(forms::FlexGrid& MSFlexGrid, forms::TextBox& Edt, int KeyAscii) override;
  void SalvaCambios() override;
  void CalculaImportes() override;
  void fg2_GotFocus() override;
  void fg2_LeaveCell() override;
  void fg2_KeyDown(int& KeyCode, int Shift) override;

  // ---- transfers ----
  void SSCheck1_Click();
  void SSCheck2_Click();
  void Check1_Click();
  void Command1_Click();
  void CreaEntradasDeTraspaso();

  // ---- finish ----
  void Command5_Click() override;
  void CreaSalida();
  void SalvaSalida();
  void SalvaPendiente() override;
  void SalvaPartidas(bool& hay);
  void AfectaPartidas();
  void ImprimeSalida() { Imprime("ImprimeSalida", Salida); }

 protected:
  void Form_Load() override;
  void Form_KeyDown(int& KeyCode, int Shift) override;
  void Form_Unload(int& Cancel) override;
  void Form_Paint() override;
  void Form_Resize() override;
  bool AlCambiar(int Index) override;
  void GuardaParaMalla() override;
  [[nodiscard]] std::int32_t NumeroDeDocumento() const override { return Salida; }

 private:
  void DisenaTeclado();
  void DisenaCampos();
  void DisenaPaneles();
  void DisenaLetreros();
  void DisenaEstados();
  void LlenaDeLaSalida(service::Trampa& intenta);
  bool ClienteEncontrado();
  // The stock check of a new line: true if the line may be entered.
  bool HayExistencia(service::Trampa& intenta);
  std::string DescripcionDeLaPartida();
  // The new line in the grid.
  void EscribeRenglon(service::Trampa& intenta, std::int32_t id);
  void EditaCelda(service::Trampa& intenta);
  bool Existen(service::Trampa& intenta);
  // Begins the header's statement: an INSERT with the number, or an UPDATE.
  void EmpiezaDocumento(service::Trampa& intenta);
  void EscribeSalida(bool pendiente);
  void AsignaACompra(service::Trampa& intenta);
  void RefrescaLista();
};

}  // namespace tarvik
