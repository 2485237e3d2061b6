// MatrixView: the view of the matrix of a model: colours as rows with their swatch, sizes as columns,
// the remainder large. The sums at the margins are an aid of the host's, outside the model's grid.
#pragma once

#include "desktop/screens/screen_view.h"
#include "matrix/frm_malla_modelos.h"

namespace tarvik::desktop {

class MatrixView final : public ScreenView {
  Q_OBJECT

 public:
  MatrixView(Office& office, frmMallaModelos& matrix, QWidget* parent = nullptr);

  [[nodiscard]] Keys KeysNow() const override;
  [[nodiscard]] bool FillsTheDesk() const override { return false; }
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void ControlChanged(forms::Control& control, forms::Aspect aspect) override;
  void CellChanged(forms::FlexGrid& grid, int row, int col) override;
  void CaptionChanged() override;
  void FocusMoved(forms::Control* from, forms::Control* to) override;
  void Shown(bool modal) override;

 private:
  class Sums;

  QWidget* Heading();
  QWidget* Cells();
  QWidget* Buttons();
  void ShowRemainder();

  frmMallaModelos& matrix_;
  QLabel* title_ = nullptr;
  QLabel* remainder_ = nullptr;
  GridView* cells_ = nullptr;
  Sums* by_size_ = nullptr;
  Sums* by_colour_ = nullptr;
  QLabel* total_ = nullptr;
  KeyCaps* keys_ = nullptr;
};

}  // namespace tarvik::desktop
