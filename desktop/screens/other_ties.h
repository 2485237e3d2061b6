// The ties of what takes no typing: captions, grids, pages.
#pragma once

#include <QLabel>

#include "desktop/screens/grid_view.h"
#include "desktop/screens/tie.h"

namespace tarvik::desktop {

// A caption. Its field is reached by the keyboard's way, so the mnemonic's mark is left out.
class CaptionTie final : public TieOf<forms::Label, QLabel> {
 public:
  CaptionTie(Hand& hand, forms::Label& control);

 protected:
  void ShowContents() override;
  void ShowState() override;
  bool MouseDown(const QMouseEvent& /*event*/) override { return false; }
  bool MouseUp(const QMouseEvent& event) override;
};

class GridTie final : public TieOf<forms::FlexGrid, GridView> {
 public:
  GridTie(Hand& hand, forms::FlexGrid& control, Office& office);

  void Changed(forms::Aspect aspect) override;
  void ScreenShown() override { Widget().Reset(); }
  void CellChanged(int row, int col) override { Widget().CellChanged(row, col); }
  void RowsChanged(int from) override { Widget().RowsChanged(from); }
  void CurrentCellMoved() override { Widget().CurrentMoved(); }

 protected:
  bool MouseDown(const QMouseEvent& event) override;
};

// A page that somebody else fills.
class PageTie final : public TieOf<forms::WebBrowser, QWidget> {
 public:
  using TieOf::TieOf;

 protected:
  bool KeyDown(QKeyEvent& event) override;
};

}  // namespace tarvik::desktop
