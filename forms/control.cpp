// The controls' own behaviour: what assigning, clicking and typing do to each kind.
#include "forms/control.h"

#include <algorithm>

#include "data/text.h"
#include "forms/form.h"

namespace tarvik::forms {

namespace {
constexpr int kDeepestChange = 100;  // changes inside changes; real routes need four
}

Control::Control(Form& form, std::string name, std::optional<int> index)
    : form_(form), name_(std::move(name)), index_(index) {
  form_.Register(*this);
}

Control::~Control() { form_.Unregister(*this); }

std::string Control::FullName() const { return index_ ? name_ + "(" + std::to_string(*index_) + ")" : name_; }

void Control::Changed(Aspect aspect) {
  form_.Notify([&](FormListener& listener) { listener.ControlChanged(*this, aspect); });
}

void Control::Enabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  if (!enabled) form_.LoseFocusWithin(*this);
  Changed(Aspect::Enabled);
}

void Control::Visible(bool visible) {
  if (visible_ == visible) return;
  visible_ = visible;
  if (!visible) form_.LoseFocusWithin(*this);
  Changed(Aspect::Visible);
}

void Control::Place(int left, int top, int width, int height) {
  left_ = left;
  top_ = top;
  width_ = width;
  height_ = height;
  Changed(Aspect::Geometry);
}

void Control::ForeColor(int color) {
  fore_color_ = color;
  Changed(Aspect::Colour);
}

bool Control::Reachable() const {
  for (const Control* control = this; control; control = control->Container()) {
    if (!control->Enabled() || !control->Visible()) return false;
  }
  return true;
}

void Control::SetFocus() {
  if (!form_.Visible() || !CanTakeFocus()) {
    throw data::Error("El control " + FullName() + " no puede tomar el foco");
  }
  form_.MoveFocus(*this);
}

bool Control::HasFocus() const { return form_.ActiveControl() == this; }

void Control::Click() {
  if (OnClick) OnClick();
}

void Label::Caption(std::string caption) {
  caption_ = std::move(caption);
  Changed(Aspect::Caption);
}

void Button::Caption(std::string caption) {
  caption_ = std::move(caption);
  Changed(Aspect::Caption);
}

void Button::Typing(char32_t character) {
  if (character == kKeyEnter || character == kKeySpace) Click();
}

void CheckBox::Caption(std::string caption) {
  caption_ = std::move(caption);
  Changed(Aspect::Caption);
}

void CheckBox::Value(int value) {
  value = value ? 1 : 0;
  if (value == value_) return;
  value_ = value;
  Changed(Aspect::Value);
  if (OnClick) OnClick();
}

void CheckBox::Typing(char32_t character) {
  if (character == kKeySpace) Click();
}

void CheckBox::Click() { Value(value_ ? 0 : 1); }

// ---- text ----

void TextBox::Text(std::string_view text) {
  std::string taken = data::RepairUtf8(text);
  if (max_length_ > 0) taken = data::Substring(taken, 0, static_cast<std::size_t>(max_length_));
  if (taken == text_) return;
  text_ = std::move(taken);
  sel_start_ = sel_length_ = 0;
  RunChange();
}

void TextBox::RunChange() {
  Changed(Aspect::Text);
  if (!OnChange) return;
  // Two keys that name each other would change one another without end. The event is ended, and the
  // operator's data stays.
  if (Owner().change_depth_ >= kDeepestChange) {
    throw data::Unrecoverable("Los campos se cambian unos a otros sin fin");
  }
  struct Depth {
    int& count;
    ~Depth() { --count; }
  } depth{++Owner().change_depth_};
  OnChange();
}

void TextBox::SelStart(int start) {
  sel_start_ = std::clamp(start, 0, static_cast<int>(data::Length(text_)));
  sel_length_ = 0;
  Changed(Aspect::Selection);
}

void TextBox::SelLength(int length) {
  sel_length_ = std::clamp(length, 0, static_cast<int>(data::Length(text_)) - sel_start_);
  Changed(Aspect::Selection);
}

void TextBox::SelectAll() {
  SelStart(0);
  SelLength(static_cast<int>(data::Length(text_)));
}

void TextBox::Edit(std::size_t first, std::size_t count, std::string_view with) {
  const std::string before = data::Substring(text_, 0, first);
  const std::string after = data::Substring(text_, first + count);
  std::string put = data::RepairUtf8(with);
  if (!multi_line_) std::erase_if(put, [](char c) { return c == '\n' || c == '\r'; });
  if (max_length_ > 0) {
    const std::size_t taken = data::Length(before) + data::Length(after);
    const auto limit = static_cast<std::size_t>(max_length_);
    put = data::Substring(put, 0, limit > taken ? limit - taken : 0);
  }
  std::string text = before + put + after;
  if (text == text_) {
    SelStart(static_cast<int>(first + data::Length(put)));
    return;
  }
  text_ = std::move(text);
  sel_start_ = static_cast<int>(first + data::Length(put));
  sel_length_ = 0;
  RunChange();
}

void TextBox::ReplaceSelection(std::string_view text) {
  Edit(static_cast<std::size_t>(sel_start_), static_cast<std::size_t>(sel_length_), text);
}

void TextBox::Backspace() {
  if (sel_length_ > 0) {
    ReplaceSelection("");
  } else if (sel_start_ > 0) {
    Edit(static_cast<std::size_t>(sel_start_) - 1, 1, "");
  }
}

void TextBox::DeleteForward() {
  if (sel_length_ > 0) {
    ReplaceSelection("");
  } else {
    Edit(static_cast<std::size_t>(sel_start_), 1, "");
  }
}

void TextBox::Editing(const Key& key) {
  const int length = static_cast<int>(data::Length(text_));
  switch (key.code) {
    case kKeyDelete:
      DeleteForward();
      break;
    case kKeyHome:
      SelStart(0);
      break;
    case kKeyEnd:
      SelStart(length);
      break;
    case kKeyLeft:
      SelStart(sel_length_ > 0 ? sel_start_ : sel_start_ - 1);
      break;
    case kKeyRight:
      SelStart(sel_length_ > 0 ? sel_start_ + sel_length_ : sel_start_ + 1);
      break;
    default:
      break;
  }
}

void TextBox::Typing(char32_t character) {
  if (character == kKeyBack) {
    Backspace();
  } else if (character == kKeyEnter) {
    if (multi_line_) ReplaceSelection("\n");
  } else if (character >= ' ' && character != 0x7F) {
    ReplaceSelection(data::Encode(character));
  }
}

// ---- dates and lists ----

void DatePicker::Value(std::optional<data::Date> date) {
  if (date == value_) return;
  value_ = date;
  Changed(Aspect::Value);
}

void DatePicker::Editing(const Key& key) {
  if (!value_) return;
  if (key.code == kKeyUp) Value(value_->PlusDays(1));
  if (key.code == kKeyDown) Value(value_->PlusDays(-1));
}

void ComboBox::Text(std::string_view text) {
  if (text == text_) return;
  text_ = data::RepairUtf8(text);
  Changed(Aspect::Text);
  if (OnChange) OnChange();
}

void ComboBox::ListIndex(int index) {
  if (index < -1 || index >= static_cast<int>(list_.size())) {
    throw data::Error("La lista " + FullName() + " no tiene el elemento " + std::to_string(index));
  }
  list_index_ = index;
  if (index < 0) return;
  text_ = list_[static_cast<std::size_t>(index)];
  Changed(Aspect::Text);
  if (OnClick) OnClick();
}

void ComboBox::AddItem(std::string_view text) {
  list_.emplace_back(text);
  Changed(Aspect::List);
}

void ComboBox::Clear() {
  list_.clear();
  list_index_ = -1;
  Changed(Aspect::List);
}

void ComboBox::Editing(const Key& key) {
  const int last = static_cast<int>(list_.size()) - 1;
  if (key.code == kKeyUp && list_index_ > 0) ListIndex(list_index_ - 1);
  if (key.code == kKeyDown && list_index_ < last) ListIndex(list_index_ + 1);
}

void ComboBox::Typing(char32_t character) {
  if (character == kKeyBack) {
    if (!text_.empty()) Text(data::Substring(text_, 0, data::Length(text_) - 1));
  } else if (character >= ' ' && character != 0x7F) {
    Text(text_ + data::Encode(character));
  }
}

// ---- search box, timer, browser ----

void SearchBox::Hold(TextBox& field) {
  field_ = &field;
  field.Container(this);
}

void SearchBox::ShowData() { Owner().GetPlatform().ShowSearchList(*this); }

Timer::Timer(Form& form, std::string name) : Control(form, std::move(name)) { Control::Enabled(false); }

Timer::~Timer() {
  if (running_) Owner().GetPlatform().StopTimer(*this);
}

void Timer::Interval(int milliseconds) {
  interval_ = milliseconds;
  Update();
}

void Timer::Enabled(bool enabled) {
  Control::Enabled(enabled);
  Update();
}

void Timer::Update() {
  const bool run = Enabled() && interval_ > 0 && Owner().Open();
  if (run == running_) return;
  running_ = run;
  if (run) {
    Owner().GetPlatform().StartTimer(*this);
  } else {
    Owner().GetPlatform().StopTimer(*this);
  }
}

void Timer::Tick() {
  if (OnTimer) OnTimer();
}

void WebBrowser::Navigate(const std::string& name) {
  location_ = name;
  Changed(Aspect::Value);
  Owner().GetPlatform().Navigate(*this, name);
}

}  // namespace tarvik::forms
