// Form: a screen as a model. It owns focus, the path of a key, loading, showing and unloading.
// It draws nothing and knows no toolkit: a view, a script or a test raises the operator's acts.
//
//   class frmAviso : public Form {
//    public:
//     explicit frmAviso(Platform& platform)
//         : Form(platform, "frmAviso", "Aviso"), txtClave(*this, "txtClave"), Command1(*this, "Command1") {
//       txtClave.TabIndex(0);
//       Command1.TabIndex(1);
//       Command1.OnClick = [this] { Unload(); };
//     }
//     TextBox txtClave;
//     Button Command1;
//   };
//   auto form = std::make_shared<frmAviso>(platform);
//   form->Show(false);                      // runs Form_Load; the focus is in txtClave
//   form->Type(form->txtClave, "A-100");    // five keys, each with all its events
//   form->Click(form->Command1);            // unloaded; what txtClave holds can still be read
//
// Life. A form is made with make_shared, loaded once, and unloaded once; a form that was unloaded is not
// loaded again. From Load to Unload the platform holds it. After Unload it lives as long as somebody else
// holds it: its members can be read and assigned, change logic included, but it takes no key and no click,
// shows nothing and gives the focus to nobody. An act holds the form until it has ended, so that a procedure
// may unload the form that it runs on.
//
// Thread. One thread, that of the platform.
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

// What asks for the unloading: the window's close box, or a procedure.
enum class UnloadMode { CloseBox = 0, Code = 1 };

class Form : public std::enable_shared_from_this<Form> {
 public:
  // REQUIRES: the platform outlives the form. Nothing is loaded yet.
  Form(Platform& platform, std::string name, std::string caption);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  [[nodiscard]] const std::string& Name() const { return name_; }  // of the kind of screen; never changes
  [[nodiscard]] Platform& GetPlatform() const { return platform_; }

  [[nodiscard]] const std::string& Caption() const { return caption_; }  // the window's title
  // The first use of a form: loads it, and throws what Form_Load throws.
  void Caption(std::string caption);
  [[nodiscard]] const std::string& Tag() const { return tag_; }  // a note of the caller's; not read here
  void Tag(std::string tag) { tag_ = std::move(tag); }
  [[nodiscard]] bool Visible() const { return visible_; }  // from Show to Hide or unloading
  // True from the beginning of Form_Load to unloading, visible or not.
  [[nodiscard]] bool Open() const { return loaded_ && !unloaded_; }

  // ---- life ----
  // REQUIRES, for all from here on that load, show, unload or act: the form is held by a shared_ptr.
  //
  // Enters Platform::Screens() and runs Form_Load, once; later calls do nothing. Throws what Form_Load
  // throws: the form has then left Screens() and is as one that was unloaded.
  void Load();
  // Loads, shows, and gives the focus to the first control by tab order that can take it; what its entering
  // logic throws goes to Platform::Unhandled. A modal show returns when the form is no longer shown. Throws
  // what Form_Load throws; does nothing for a form that was unloaded, be it by its own Form_Load.
  void Show(bool modal);
  // No event. The form stays open, with its focus; a modal show of it returns. Show shows it again.
  void Hide();
  // Form_QueryUnload, then Form_Unload; either may refuse by setting `cancel`. True if the form is gone:
  // not open, not visible, no focus, its timers stopped, out of Screens(). False, and the form as it was, if
  // one refused, if it is not open, and if it is being unloaded already. What an event throws comes out, and
  // the form stays open.
  bool Unload(UnloadMode mode = UnloadMode::Code);
  // Like Unload, but asks nothing and raises no event: for a program that is ending.
  void Discard();
  // Keeps an object that the form needs alive as long as the form, instead of the one before.
  void Keep(std::shared_ptr<void> object) { kept_ = std::move(object); }

  // ---- controls: owned by the derived form, valid as long as it ----
  [[nodiscard]] const std::vector<Control*>& Controls() const { return controls_; }  // as they were made
  // By its exact name, and the index of a control array; nullptr if there is none.
  [[nodiscard]] Control* Find(std::string_view name, std::optional<int> index = {}) const;
  // The controls in tab order (TabIndex from 0), whether they can take the focus now
  // or not.
  [[nodiscard]] std::vector<Control*> TabOrder() const;
  [[nodiscard]] Control* ActiveControl() const { return active_; }  // has the focus; nullptr for none

  // ---- what an operator does ----
  // Each is an act (see Act) and throws nothing but data::Error for a control of another form. On a form that
  // is not visible nothing happens, nor on a control that is disabled or hidden, itself or around it.
  //
  // One key, in this order: Form_KeyDown; OnKeyDown; what the key does to the control by itself
  // (Editing); OnKeyPress; the character (Typing) with its change; for Tab, the next control, unless one of
  // these has placed the focus, even where it was; OnKeyUp. All go to the control that had the focus when
  // the key went down. After a code set to 0 only OnKeyUp runs; a character set to 0 types nothing.
  // Nothing more runs once the form is unloaded.
  void Press(const Key& key);
  // The focus, as by a mouse: leaving logic, entering logic. False if the control can't take it.
  bool Enter(Control& control);
  // Focus first (labels take none), then the control's Click.
  void Click(Control& control);
  // A click, then OnDblClick, if there is one.
  void DoubleClick(Control& control);
  // Row and column from 0, headers included. Focus, the cell's events, then OnClick.
  void ClickCell(FlexGrid& grid, int row, int col);
  // A click of the cell, then OnDblClick if the cursor rests on it.
  void DoubleClickCell(FlexGrid& grid, int row, int col);
  // Focus first, then the item, from 0; see ComboBox::ListIndex.
  void Choose(ComboBox& list, int item);
  // Focus first, then each character as a key; each goes where the focus is at that moment. Types nothing if
  // the control can't take the focus. Invalid UTF-8 is repaired.
  void Type(Control& control, std::string_view text);
  // A paste or a composed character, over the selection of the focused text box: one change, no key. Nothing
  // if the focus is elsewhere.
  void Paste(std::string_view text);
  // The window's close box: Unload(UnloadMode::CloseBox). A form that is hidden takes it too.
  void Close();
  // The window has come up or must be painted again: Form_Paint, on an open form.
  void Paint();
  // The window has this size inside, in twips: Form_Resize, on an open form.
  void Resize(int scale_width, int scale_height);

  [[nodiscard]] int ScaleWidth() const { return scale_width_; }  // as last told; 0 before
  [[nodiscard]] int ScaleHeight() const { return scale_height_; }

  // Runs a function as an operator's act: its error goes to Platform::Unhandled, and what it has posted runs
  // before this returns. An act inside an act is a part of it. Skipped where Platform::on_act_begins says
  // so.
  void Act(const std::function<void()>& function);

  // REQUIRES: the listener takes itself out before it dies, and not from inside a call; it is not owned.
  void Listen(FormListener& listener);
  void StopListening(FormListener& listener);

 protected:
  // The form's own events. Each may throw, and may unload the form.
  virtual void Form_Load() {}                                 // the form is open, and not visible
  virtual void Form_KeyDown(int& /*code*/, int /*shift*/) {}  // before the focused control; 0 takes the key
  virtual void Form_QueryUnload(int& /*cancel*/, UnloadMode) {
  }                                             // not 0 refuses; Form_Unload then doesn't run
  virtual void Form_Unload(int& /*cancel*/) {}  // not 0 refuses
  virtual void Form_Paint() {}
  virtual void Form_Resize() {}  // ScaleWidth() and ScaleHeight() are the new ones

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
  // For an operator's act each event is a boundary of its own; else the first error is rethrown after both.
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
