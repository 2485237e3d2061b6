// The seam between a screen and its view: what a view hears. A view finds its controls by name,
// shows what they hold, and turns what the operator does into the form's acts (forms/form.h).
#pragma once

namespace tarvik::forms {

class Control;
class FlexGrid;

enum class Aspect { Text, Selection, Value, Caption, Enabled, Visible, Geometry, Colour, List, Layout };

// All are called after the change, on the form's thread, and must not throw. A listener changes
// nothing in the form from inside a call.
class FormListener {
 public:
  virtual ~FormListener() = default;
  virtual void ControlChanged(Control&, Aspect) {}
  virtual void CellChanged(FlexGrid&, int /*row*/, int /*col*/) {}
  // Rows were added, removed or resized from this row on.
  virtual void RowsChanged(FlexGrid&, int /*from*/) {}
  virtual void CurrentCellMoved(FlexGrid&) {}
  // Either may be nullptr: no control had, or has, the focus.
  virtual void FocusMoved(Control* /*from*/, Control* /*to*/) {}
  virtual void CaptionChanged() {}
  virtual void Shown(bool /*modal*/) {}
  virtual void Hidden() {}
  virtual void Unloaded() {}
};

}  // namespace tarvik::forms
