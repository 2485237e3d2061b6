// frmEntradasWizard: the screen of one goods-in document. Header and lines reach the database while
// the operator types; "&Finalizar (F5)" leaves the document pending or posts it to stock.
//
// Where to find a procedure:
//   screen.cpp  Form_Load, Form_KeyDown, Form_QueryUnload, Form_Unload, Timer1_Timer, Command3_Click,
//               Check1_Click
//   header.cpp  txtFields_GotFocus, txtFields_KeyDown, RichTextBox1_KeyDown, ValidaTab1
//   lines.cpp   PonDescripcion, TraeSegundaClave, CalculaCantidad, MultiplicaPrecio, BuscaModelo,
//               LlenaPartida, NuevaPartida
//   grid.cpp    MSFlexGridEdit, fg2_GotFocus, fg2_LeaveCell, fg2_KeyDown, SalvaCambios, CalculaImportes
//   finish.cpp  Command5_Click, CreaEntrada, SalvaEntrada, SalvaPendiente, SalvaPartidas, AfectaPartidas
//
// What it shares with the goods-out wizard is listed in wizard/document_wizard.h.
//
// What the modes mean is in wizard/modos.h. Where nothing may be changed, fg2, Command2 and Command5 stay
// enabled, and Command5 closes.
#pragma once

#include "wizard/captura_de_modelo.h"
#include "wizard/document_wizard.h"

namespace tarvik {

class frmEntradasWizard final : public DocumentWizard, private CapturaDeModelo {
 public:
  explicit frmEntradasWizard(service::Host& host);

  std::int32_t Entrada = 0;  // 0 until the document exists
  data::RecordsetRef rstEntrada;
  std::string cEstado;  // for the hosts' routines, which keep here what they like

  forms::Button Command3;
  forms::Timer Timer1;
  forms::Label Label4, Label5, Label6, Label8, Label12, Label17, Label18, Label19, Label23, Label25;

  // ---- screen ----
  void Timer1_Timer();
  void Command1_Click() {}  // "&Modelos": the button stays, and does nothing
  void Command3_Click();
  void Check1_Click();  // kept for the hosts' routines: this screen has no such box

  // ---- header ----
  void txtFields_GotFocus(int Index) override;
  void txtFields_KeyDown(int Index, int& KeyCode, int Shift) override;
  void RichTextBox1_KeyDown(int& KeyCode, int Shift);
  void ValidaTab1(bool& valido) override;

  // ---- lines ----
  void PonDescripcion() override;
  void TraeSegundaClave() override;
  void CalculaCantidad();
  void MultiplicaPrecio() override;
  void LlenaPartida() override;
  void NuevaPartida() override;
  // Whether the key in the article field is a model that has been spread over its colours and sizes.
  void BuscaModelo(bool& es_modelo);

  // ---- grid ----
  void MSFlexGridEdit(forms::FlexGrid& MSFlexGrid, forms::TextBox& Edt, int KeyAscii) override;
  void SalvaCambios() override;
  void CalculaImportes() override;
  void fg2_GotFocus() override;
  void fg2_LeaveCell() override;
  void fg2_KeyDown(int& KeyCode, int Shift) override;

  // ---- finish ----
  void Command5_Click() override;
  void CreaEntrada();
  void SalvaEntrada(const std::string& estado);
  void SalvaPendiente() override;
  bool SalvaPartidas();
  void AfectaPartidas();
  void ImprimeEntrada() { Imprime("ImprimeEntrada", Entrada); }

 protected:
  void Form_Load() override;
  void Form_KeyDown(int& KeyCode, int Shift) override;
  void Form_QueryUnload(int& Cancel, forms::UnloadMode UnloadMode) override;
  void Form_Unload(int& Cancel) override;
  bool AlCambiar(int Index) override;
  void AlSalir(int Index) override;
  void GuardaParaMalla() override { SalvaEntrada(estado::kPendiente); }
  [[nodiscard]] std::int32_t NumeroDeDocumento() const override { return Entrada; }

 private:
  // ---- CapturaDeModelo ----
  service::Host& Anfitrion() override { return host(); }
  bool Abierta() override { return Open(); }
  service::Ambiente& Contexto() override { return *Ambiente; }
  service::Reportero& Reporta() override { return *this; }
  forms::TextBox& Campo(int indice) override { return txtFields(indice); }
  data::RecordsetRef& Articulo() override { return rstArticulo; }
  void HazRenglon() override { Command6_Click(); }
  void Vuelve(int indice) override { ColocaFoco(txtFields(indice)); }

  void DisenaTeclado();
  void DisenaCampos();
  void DisenaLetreros();
  void LlenaDeLaEntrada(service::Trampa& intenta);
  void EnterEnArticulo();
  void EscribeRenglon(service::Trampa& intenta, std::int32_t id);
  void NuevoNumero(service::Trampa& intenta);
  void EscribeEntrada(const std::string& estado, int ocupado);
  void RefrescaLista(service::Trampa& intenta);
};

}  // namespace tarvik
