// AutoResizer: keeps a form's controls in proportion to its window. It moves no toolkit's widget.
#pragma once

#include <initializer_list>
#include <vector>

#include "forms/control.h"

namespace tarvik::forms {

class AutoResizer : public Control {
 public:
  using Control::Control;

  // Remembers the place of the form's controls on a window of this size, in twips.
  void Design(int width, int height);
  // Places each control in proportion to a window of this size. Those named keep their place: what
  // floats over another control. Nothing happens before Design, or for a window without area.
  void Fit(int width, int height, std::initializer_list<const Control*> but = {});

 private:
  struct Place {
    Control* control;
    int left, top, width, height;
  };
  std::vector<Place> places_;
  int width_ = 0;
  int height_ = 0;
};

}  // namespace tarvik::forms
