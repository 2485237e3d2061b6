// The ties of what takes no typing: captions, grids, pages.
#pragma once

#include <QLabel>

#include "desktop/screens/grid_view.h"
#include "desktop/screens/tie.h"

namespace tarvik::desktop {

// A caption. Its field is reached by the keyboard's way, so the mnemonic's mark is left out.
class CaptionTie final : public Tie {
 public:
  using ControlKind = forms::Label;

  CaptionTie(Hand& hand, forms::Label& control);
  [[nodiscard]] QLabel& Label() const { return label_; }

 protected:
  void ShowContents() override;
  void ShowState() override;
  bool MouseDown(const QMouseEvent& /*event*/) override { return false; }
  bool MouseUp(const QMouseEvent& event) override;

 private:
  forms::Label& control_;
  QLabel& label_;
};

class GridTie final : public Tie {
 public:
  using ControlKind = forms::FlexGrid;

  GridTie(Hand& hand, forms::FlexGrid& control, Office& office);
  [[nodiscard]] GridView& Grid() const { return grid_; }

  void Changed(forms::Aspect aspect) override;
  void ScreenShown() override { grid_.Reset(); }
  void CellChanged(int row, int col) override { grid_.CellChanged(row, col); }
  void RowsChanged(int from) override { grid_.RowsChanged(from); }
  void CurrentCellMoved() override { grid_.CurrentMoved(); }

 protected:
  bool MouseDown(const QMouseEvent& event) override;

 private:
  GridView& grid_;
};

// A page that somebody else fills.
class PageTie final : public Tie {
 public:
  using ControlKind = forms::WebBrowser;

  PageTie(Hand& hand, forms::WebBrowser& control, QWidget& page) : Tie(hand, control, page) {}

 protected:
  bool KeyDown(QKeyEvent& event) override;
};

}  // namespace tarvik::desktop
