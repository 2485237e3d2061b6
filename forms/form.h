// Form: a screen as a model. It owns focus, the road of a key, loading, showing and unloading.
// It draws nothing and knows no toolkit: a view, a script or a test raises the operator's acts.
//
// Errors. A procedure of the form may throw. Inside an operator's act each event is a boundary of
// its own: what leaves it goes to Platform::Unhandled, and the act goes on. Outside an act (a
// procedure that assigns a text, or moves the focus) the error belongs to that statement and comes
// out of it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "forms/control.h"
#include "forms/keys.h"
#include "forms/platform.h"

namespace tarvik::forms {

class FlexGrid;

enum class UnloadMode { CloseBox = 0, Code = 1 };

class Form : public std::enable_shared_from_this<Form> {
 public:
  Form(Platform& platform, std::string name, std::string caption);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  [[nodiscard]] const std::string& Name() const { return name_; }
  [[nodiscard]] Platform& GetPlatform() const { return platform_; }

  [[nodiscard]] const std::string& Caption() const { return caption_; }
  void Caption(std::string caption);  // a first use: loads the form
  [[nodiscard]] const std::string& Tag() const { return tag_; }
  void Tag(std::string tag) { tag_ = std::move(tag); }
  [[nodiscard]] bool Visible() const { return visible_; }
  // True from loading to unloading.
  [[nodiscard]] bool Open() const { return loaded_ && !unloaded_; }

  // ---- life ----
  // First use: enters Platform::Screens() and runs Form_Load, once. Held by a shared_ptr from here.
  void Load();
  // Loads, shows and gives the focus to the first control by tab order that can take it. A modal
  // show returns when the form is no longer shown.
  void Show(bool modal);
  void Hide();
  // Form_QueryUnload, then Form_Unload; either may refuse. Gives true if the form is gone.
  // A form that is not open, or is being unloaded, is left alone.
  bool Unload(UnloadMode mode = UnloadMode::Code);

  // Keeps an object alive as long as the form: what the form works through.
  void Keep(std::shared_ptr<void> object) { kept_ = std::move(object); }
  // Ends the form with nothing asked and no event raised: for a program that is ending.
  void Discard();

  // ---- controls ----
  [[nodiscard]] const std::vector<Control*>& Controls() const { return controls_; }
  // nullptr if there is none of that name and index.
  [[nodiscard]] Control* Find(std::string_view name, std::optional<int> index = {}) const;
  // The controls on the keyboard's way, in its order.
  [[nodiscard]] std::vector<Control*> TabOrder() const;
  [[nodiscard]] Control* ActiveControl() const { return active_; }

  // ---- what an operator does; a control of another form throws data::Error ----
  // One key, on its whole road: Form_KeyDown, KeyDown, KeyPress, the edit with its change, KeyUp,
  // all to the control that had the focus when the key went down. Ends when the form is unloaded.
  void Press(const Key& key);
  // As by a mouse: leaving logic, entering logic. Gives false if the control can't take the focus.
  bool Enter(Control& control);
  // Focus first (labels take none), then the click. A control that is disabled or hidden ignores it.
  void Click(Control& control);
  void DoubleClick(Control& control);
  void ClickCell(FlexGrid& grid, int row, int col);
  void DoubleClickCell(FlexGrid& grid, int row, int col);
  void Choose(ComboBox& list, int item);
  // Focus first, then each character as a key; each goes where the focus is by then. Types nothing
  // if the control can't take the focus.
  void Type(Control& control, std::string_view text);
  // A paste or a composed character, over the selection of the focused text box: one change.
  void Paste(std::string_view text);
  // The window's close box.
  void Close();
  void Paint();
  void Resize(int scale_width, int scale_height);

  [[nodiscard]] int ScaleWidth() const { return scale_width_; }
  [[nodiscard]] int ScaleHeight() const { return scale_height_; }

  // Runs a function as an operator's act: its error goes to Platform::Unhandled, and what it has
  // pended is worked off before this returns.
  void Act(const std::function<void()>& function);

  // A listener is not owned; it takes itself out before it dies.
  void Listen(FormListener& listener);
  void StopListening(FormListener& listener);

 protected:
  // The form's own events. Each may throw.
  virtual void Form_Load() {}
  virtual void Form_KeyDown(int& /*code*/, int /*shift*/) {}  // before the focused control
  virtual void Form_QueryUnload(int& /*cancel*/, UnloadMode) {}
  virtual void Form_Unload(int& /*cancel*/) {}
  virtual void Form_Paint() {}
  virtual void Form_Resize() {}

 private:
  friend class Control;
  friend class TextBox;
  friend class FlexGrid;

  template <class F>
  void Notify(F&& function) {
    for (auto* listener : listeners_) function(*listener);
  }
  void RequireOwn(const Control& control) const;
  void Register(Control& control);
  void Unregister(Control& control);
  // By an operator each event is a boundary of its own; otherwise the first error is rethrown after both.
  void MoveFocus(Control& target, bool by_operator = false);
  void LoseFocusWithin(const Control& control);
  void Gone();
  void MoveByTab(bool backwards);
  void Guard(const std::function<void()>& event);

  std::shared_ptr<void> kept_;  // first, so that it goes last
  Platform& platform_;
  std::string name_;
  std::string caption_;
  std::string tag_;
  bool loading_ = false;
  bool loaded_ = false;
  bool visible_ = false;
  bool unloading_ = false;
  bool unloaded_ = false;
  int focus_moves_ = 0;   // moves asked for, those to where the focus is already included
  int change_depth_ = 0;  // change logic running inside change logic
  int scale_width_ = 0;
  int scale_height_ = 0;
  std::vector<Control*> controls_;
  Control* active_ = nullptr;
  Control* entered_ = nullptr;  // whose entering logic has run, and whose leaving logic is due
  std::vector<FormListener*> listeners_;
};

}  // namespace tarvik::forms
