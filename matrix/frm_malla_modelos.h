// frmMallaModelos: the small modal screen on which a quantity is spread over the colours and sizes of
// one model. It lets cells be filled, keeps the remainder and says when all is spread; it touches no
// table. The model search fills its grid before, and reads it afterwards.
//
// The grid              column 0   column 1     column 2   from column 3        last column
//   rows 0, 1                                   .          size: key, text      .
//   row 2                                       spacer
//   from row 3          colour     colour key   spacer     a quantity           spacer
//   last row                                    spacer
//
// States                               opened by                closed by
//   cursor on the grid                 -                        cmdAceptar (tag "Hecho"), cmdCancelar
//   txtCelda over a cell               Enter, double click,     Enter: keeps, one cell to the right
//                                      a digit                  Esc, moving the cursor: drops
#pragma once

#include "forms/auto_resizer.h"
#include "forms/control.h"
#include "forms/flex_grid.h"
#include "forms/form.h"
#include "matrix/recorrido.h"
#include "service/contract/host_services.h"
#include "service/report/reporte.h"

namespace tarvik {

class frmMallaModelos final : public forms::Form, public service::Reportero {
 public:
  explicit frmMallaModelos(service::Host& host);

  // The colour of a combination without an article. A cell that was never coloured reads 0 too: a
  // blocked cell is known by its own mark.
  int clrCeldaBloqueada = 0;

  forms::FlexGrid fg2;
  forms::TextBox txtCelda;
  forms::TextBox txtRemanente;
  forms::Label lblCantidadRestante;
  forms::TextBox txtDescrip;
  forms::Button cmdAceptar;
  forms::Button cmdCancelar;
  forms::AutoResizer AutoResizer1;

  // Computes the remainder: the quantity in the form's tag less the sum of the cells. Exactly 0 enables
  // cmdAceptar and moves the focus there. Nothing is counted while txtRemanente is hidden.
  void CalculaSuma();

  void fg2_DblClick();
  void fg2_EnterCell();
  void fg2_GotFocus() {}
  void fg2_KeyDown(int& KeyCode, int Shift);
  void fg2_KeyPress(int& KeyAscii);
  void fg2_LeaveCell();
  void txtCelda_KeyDown(int& KeyCode, int Shift);
  void txtCelda_KeyPress(int& KeyAscii);
  void cmdAceptar_Click();
  void cmdCancelar_Click();

  // Moves the focus; whatever fails there is ignored.
  void ColocaFoco(forms::Control& control);

  bool ReportaError(const std::string& modulo, const std::string& funcion,
                    const std::string& descripcion) override;
  [[nodiscard]] std::string Modulo() const override { return "frmMallaModel"; }

 protected:
  void Form_Load() override;
  void Form_Resize() override;

 private:
  // While it lives, entering a cell is a step of the travel under way.
  class Viaje {
   public:
    explicit Viaje(frmMallaModelos& malla) : malla_(malla) { malla_.viajando_ = true; }
    ~Viaje() { malla_.viajando_ = false; }
    Viaje(const Viaje&) = delete;
    Viaje& operator=(const Viaje&) = delete;

   private:
    frmMallaModelos& malla_;
  };

  [[nodiscard]] bool EnCeldaVedada() const;

  service::Host& host_;
  int FilaAnterior = 0;
  int ColumnaAnterior = 0;
  bool viajando_ = false;
};

}  // namespace tarvik
