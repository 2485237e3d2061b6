// frmMovEstaciones: the screen of one transfer between two work stations. It is a shell: fields, a
// grid and three buttons. It has no statement of its own and posts nothing; whatever a transfer means
// for the stock is done by the host's routines, at the seven moments when their keys fire.
//
// Event                    Key                   After the key
//   Form_Load              MOVESTACIONES001      the search boxes get their connection
//   leaving a txtFields    MOVESTACIONES002      -
//   Command1_Click         MOVESTACIONES003      -
//   cmdCancelar_Click      MOVESTACIONES004      the screen closes, unless CancelaProceso is set
//   cmdPendiente_Click     MOVESTACIONES005      the same
//   cmdConfirmar_Click     MOVESTACIONES006      the same
//   Form_Unload            MOVESTACIONES007      CancelaProceso keeps it open
//
// No procedure has a trap: an error of a routine goes to whoever raised the event.
#pragma once

#include <cstdint>
#include <string_view>

#include "forms/control.h"
#include "forms/flex_grid.h"
#include "forms/form.h"
#include "service/contract/host_services.h"
#include "service/contract/objeto.h"

namespace tarvik {

// The text fields by what they hold; a routine knows them by number.
namespace campo_de_traspaso {
enum Campo : int {
  Entrega,  // the station that hands over
  Recibe,   // the station that receives
  Articulo,
  Descripcion,
  Cantidad,
};
}  // namespace campo_de_traspaso

class frmMovEstaciones final : public forms::Form {
 public:
  explicit frmMovEstaciones(service::Host& host);

  service::Objeto<service::Ambiente> Ambiente;
  bool CancelaProceso = false;  // set by a routine to keep the screen open; cleared by the step that obeys
  std::int32_t Id = 0;          // the transfer's number: for the routines, the screen never reads it

  forms::ControlArray<forms::SearchBox> MultiCombo1;
  forms::ControlArray<forms::TextBox> txtFields;
  forms::DatePicker DTPicker1;
  forms::FlexGrid grid;  // its columns and rows are the routines' work
  forms::Button Command1;
  forms::Button cmdConfirmar;
  forms::Button cmdPendiente;
  forms::Button cmdCancelar;
  forms::ControlArray<forms::Label> lblLabel;
  forms::Label Label1;

  void txtFields_GotFocus(int Index);
  void txtFields_LostFocus(int Index);
  void txtFields_KeyDown(int Index, int& KeyCode, int Shift);
  void txtFields_KeyUp(int Index, int KeyCode, int Shift);
  void DTPicker1_KeyDown(int& KeyCode, int Shift);
  void grid_KeyDown(int& KeyCode, int Shift);
  void Command1_Click();
  void cmdCancelar_Click();
  void cmdPendiente_Click();
  void cmdConfirmar_Click();

  // Moves the focus; whatever fails there is ignored.
  void ColocaFoco(forms::Control& control);

 protected:
  void Form_Load() override;
  void Form_Unload(int& Cancel) override;

 private:
  void Conecta();
  void Dispara(std::string_view clave);
  // A button: its key, and then the screen closes unless the routine has refused.
  void DisparaYCierra(std::string_view clave);

  service::Host& host_;
};

}  // namespace tarvik
