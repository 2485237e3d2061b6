// A form's life and focus.
#include "forms/form.h"

#include <algorithm>

#include "data/error.h"

namespace tarvik::forms {

Form::Form(Platform& platform, std::string name, std::string caption)
    : platform_(platform), name_(std::move(name)), caption_(std::move(caption)) {}

Form::~Form() = default;

void Form::Register(Control& control) { controls_.push_back(&control); }

void Form::Unregister(Control& control) {
  std::erase(controls_, &control);
  if (active_ == &control) active_ = nullptr;
  if (entered_ == &control) entered_ = nullptr;
}

Control* Form::Find(std::string_view name, std::optional<int> index) const {
  for (Control* control : controls_) {
    if (control->Name() == name && control->Index() == index) return control;
  }
  return nullptr;
}

std::vector<Control*> Form::TabOrder() const {
  std::vector<Control*> order;
  for (Control* control : controls_) {
    if (control->Focusable() && control->TabIndex() >= 0) order.push_back(control);
  }
  std::stable_sort(order.begin(), order.end(),
                   [](auto* a, auto* b) { return a->TabIndex() < b->TabIndex(); });
  return order;
}

void Form::Caption(std::string caption) {
  Load();
  caption_ = std::move(caption);
  Notify([](FormListener& listener) { listener.CaptionChanged(); });
}

void Form::Load() {
  if (loaded_ || loading_ || unloaded_) return;
  loading_ = loaded_ = true;
  auto alive = shared_from_this();
  platform_.Add(alive);
  struct Done {
    bool& flag;
    ~Done() { flag = false; }
  } done{loading_};
  try {
    Form_Load();
  } catch (...) {
    // A form whose loading failed must not stay: nobody could close it.
    loaded_ = false;
    unloaded_ = true;
    platform_.Remove(*this);
    throw;
  }
}

void Form::Show(bool modal) {
  auto alive = shared_from_this();
  Load();
  if (unloaded_) return;
  visible_ = true;
  Notify([&](FormListener& listener) { listener.Shown(modal); });
  for (Control* control : TabOrder()) {
    if (!control->CanTakeFocus()) continue;
    MoveFocus(*control, true);
    break;
  }
  if (!modal || !visible_) return;
  const Platform::Modal above(platform_);
  platform_.RunModal(*this);
}

void Form::Hide() {
  if (!visible_) return;
  visible_ = false;
  Notify([](FormListener& listener) { listener.Hidden(); });
}

bool Form::Unload(UnloadMode mode) {
  if (!Open() || unloading_) return false;
  auto alive = shared_from_this();
  struct Done {
    bool& flag;
    ~Done() { flag = false; }
  } done{unloading_ = true};
  int cancel = 0;
  Form_QueryUnload(cancel, mode);
  if (cancel) return false;
  Form_Unload(cancel);
  if (cancel) return false;
  Gone();
  return true;
}

void Form::Discard() {
  if (!Open()) return;
  auto alive = shared_from_this();
  Gone();
}

void Form::Gone() {
  unloaded_ = true;
  visible_ = false;
  active_ = entered_ = nullptr;
  for (Control* control : controls_) {
    if (auto* timer = dynamic_cast<Timer*>(control)) timer->Update();
  }
  Notify([](FormListener& listener) { listener.Unloaded(); });
  platform_.Remove(*this);
}

void Form::MoveFocus(Control& target, bool by_operator) {
  ++focus_moves_;
  if (active_ == &target) return;
  Control* left = active_;
  active_ = &target;
  Notify([&](FormListener& listener) { listener.FocusMoved(left, &target); });
  std::exception_ptr first;
  auto raise = [&](const Event& event) {
    if (!event) return;
    if (by_operator) return Guard(event);
    try {
      event();
    } catch (...) {
      if (!first) first = std::current_exception();
    }
  };
  if (left && left == entered_) {
    entered_ = nullptr;
    raise(left->OnLostFocus);
  }
  // The leaving logic may have sent the focus elsewhere: then the entering logic ran there.
  if (active_ == &target && entered_ != &target && Open()) {
    entered_ = &target;
    raise(target.OnGotFocus);
  }
  if (first) std::rethrow_exception(first);
}

void Form::LoseFocusWithin(const Control& control) {
  for (const Control* inside = active_; inside; inside = inside->Container()) {
    if (inside != &control) continue;
    Control* left = active_;
    active_ = entered_ = nullptr;
    Notify([&](FormListener& listener) { listener.FocusMoved(left, nullptr); });
    return;
  }
}

void Form::Listen(FormListener& listener) { listeners_.push_back(&listener); }

void Form::StopListening(FormListener& listener) { std::erase(listeners_, &listener); }

}  // namespace tarvik::forms
