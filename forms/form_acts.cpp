// What an operator does to a form: the one path of a key, clicks, and the boundary at which an
// error that found no trap is handed to the platform.
#include <algorithm>

#include "data/error.h"
#include "data/text.h"
#include "forms/flex_grid.h"
#include "forms/form.h"

namespace tarvik::forms {

void Form::Guard(const std::function<void()>& event) {
  try {
    event();
  } catch (const std::exception& error) {
    platform_.Unhandled(this, error);
  }
}

void Form::Act(const std::function<void()>& function) {
  auto alive = shared_from_this();
  const bool outermost = platform_.acts_ == 0;
  ++platform_.acts_;
  const bool goes_on = !outermost || !platform_.on_act_begins || platform_.on_act_begins(*this);
  if (goes_on) Guard(function);
  if (--platform_.acts_ > 0) return;
  platform_.Settle();
  if (outermost && platform_.on_act_ends) platform_.on_act_ends();
}

void Form::Press(const Key& key) {
  if (!visible_) return;
  Act([&] {
    Control* target = active_;
    const int moves = focus_moves_;
    Key now = key;
    Guard([&] { Form_KeyDown(now.code, now.shift); });
    if (!Open()) return;
    if (target && now.code != 0) {
      if (target->OnKeyDown) Guard([&] { target->OnKeyDown(now.code, now.shift); });
      if (!Open()) return;
      if (now.code != 0 && target->CanTakeFocus()) Guard([&] { target->Editing(now); });
      if (!Open()) return;
    }
    // A key that the form or the field has taken for itself types nothing.
    if (target && now.code != 0 && now.character != 0) {
      int character = static_cast<int>(now.character);
      if (target->OnKeyPress) Guard([&] { target->OnKeyPress(character); });
      if (!Open()) return;
      if (character != 0 && target->CanTakeFocus())
        Guard([&] { target->Typing(static_cast<char32_t>(character)); });
      if (!Open()) return;
    }
    // Tab moves on only where the field's own logic has not placed the focus, even where it was.
    if (now.code == kKeyTab && active_ == target && moves == focus_moves_)
      MoveByTab((now.shift & kShift) != 0);
    if (!Open()) return;
    if (target && target->OnKeyUp) {
      int code = key.code;
      Guard([&] { target->OnKeyUp(code, key.shift); });
    }
  });
}

void Form::MoveByTab(bool backwards) {
  std::vector<Control*> order = TabOrder();
  if (backwards) std::reverse(order.begin(), order.end());
  auto here = std::find(order.begin(), order.end(), active_);
  if (here != order.end()) std::rotate(order.begin(), here + 1, order.end());
  for (Control* control : order) {
    if (control != active_ && control->CanTakeFocus()) return MoveFocus(*control, true);
  }
}

void Form::RequireOwn(const Control& control) const {
  if (&control.Owner() != this) throw data::Error(control.FullName() + " no es un control de " + name_);
}

bool Form::Enter(Control& control) {
  RequireOwn(control);
  if (!visible_ || !control.CanTakeFocus()) return false;
  Act([&] { MoveFocus(control, true); });
  return true;
}

void Form::Click(Control& control) {
  RequireOwn(control);
  if (!visible_ || !control.Reachable()) return;
  Act([&] {
    if (control.CanTakeFocus()) MoveFocus(control, true);
    if (Open() && control.Reachable()) Guard([&] { control.Click(); });
  });
}

void Form::DoubleClick(Control& control) {
  Click(control);
  if (!visible_ || !control.Reachable() || !control.OnDblClick) return;
  Act([&] { control.OnDblClick(); });
}

void Form::ClickCell(FlexGrid& grid, int row, int col) {
  RequireOwn(grid);
  if (!visible_ || !grid.CanTakeFocus()) return;
  Act([&] {
    MoveFocus(grid, true);
    if (!Open() || !grid.CanTakeFocus()) return;
    Guard([&] { grid.MoveTo(row, col); });
    if (Open()) Guard([&] { grid.Click(); });
  });
}

void Form::DoubleClickCell(FlexGrid& grid, int row, int col) {
  ClickCell(grid, row, col);
  if (!visible_ || !grid.CanTakeFocus() || !grid.OnDblClick) return;
  // A cell that the cursor may not rest on has sent it elsewhere, and the operator meant no other cell.
  if (grid.Row() != row || grid.Col() != col) return;
  Act([&] { grid.OnDblClick(); });
}

void Form::Choose(ComboBox& list, int item) {
  if (!Enter(list)) return;
  Act([&] { list.ListIndex(item); });
}

void Form::Type(Control& control, std::string_view text) {
  if (!Enter(control)) return;
  const std::string typed = data::RepairUtf8(text);
  for (std::size_t at = 0; at < typed.size() && Open();) {
    const char32_t character = data::Decode(std::string_view(typed).substr(at));
    at += data::Encode(character).size();
    Press(KeyFor(character));
  }
}

void Form::Paste(std::string_view text) {
  if (!visible_) return;
  Act([&] {
    if (auto* box = dynamic_cast<TextBox*>(active_); box && box->CanTakeFocus()) box->ReplaceSelection(text);
  });
}

void Form::Close() {
  Act([&] { Unload(UnloadMode::CloseBox); });
}

void Form::Paint() {
  if (Open()) Act([&] { Form_Paint(); });
}

void Form::Resize(int scale_width, int scale_height) {
  scale_width_ = scale_width;
  scale_height_ = scale_height;
  if (Open()) Act([&] { Form_Resize(); });
}

}  // namespace tarvik::forms
