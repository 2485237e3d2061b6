// Controls as models: name, state, text, and the events to which a form connects its procedures.
// They draw nothing. The grid is in forms/flex_grid.h.
//
//   TextBox clave(form, "txtClave");           // a member of the form, as a rule
//   clave.MaxLength(4);
//   clave.OnChange = [&] { if (clave.Text() == "X") clave.Text(""); };
//   clave.Text("A-100");                       // OnChange has run when this returns; Text() is "A-10"
//   clave.SetFocus();                          // throws, as long as the form is not shown
//
// Assigning. A value that differs is stored, listeners are told, and then the control's event runs,
// inside the assignment: OnChange of a text, OnClick of a check box. What it throws comes out of
// the assignment, and the new value is kept. The same value again raises nothing. An event may assign to
// its own control and to others; texts that change one another end at a depth of 100 with
// data::Unrecoverable. On a form that is not loaded, hidden or unloaded all of this is the same.
//
// Events. Each is empty until somebody sets it; one that is set replaces the one before. An event may do
// whatever it likes but destroy its control; the form may be unloaded from inside it.
//
// Life. REQUIRES: a control dies before its form's base part, as a member of the form does. It is valid as
// long as it lives, after Unload too. Pointers and references to controls own nothing.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "data/datetime.h"
#include "data/error.h"
#include "data/value.h"
#include "forms/listener.h"

namespace tarvik::forms {

class Form;
struct Key;

// An event procedure may throw; the error goes to whoever raised the event (see Form).
using Event = std::function<void()>;
using KeyEvent = std::function<void(int& code, int shift)>;  // setting code to 0 swallows the key
using CharEvent = std::function<void(int& character)>;       // may swap it, or swallow it with 0

class Control {
 public:
  // Enters Form::Controls(). `index` is that of a control array. Starts enabled, visible, not in the
  // tab order, without place, size or colour.
  Control(Form& form, std::string name, std::optional<int> index = {});
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  [[nodiscard]] const std::string& Name() const { return name_; }    // never changes
  [[nodiscard]] std::optional<int> Index() const { return index_; }  // nothing for a single control
  [[nodiscard]] std::string FullName() const;                        // "txtFields(4)", "fg2"
  [[nodiscard]] Form& Owner() const { return form_; }

  // The control's own flags, whatever its containers say. Switched off, the control and what it contains
  // lose the focus with no leaving logic, and nobody has it then.
  [[nodiscard]] bool Enabled() const { return enabled_; }
  void Enabled(bool enabled);
  [[nodiscard]] bool Visible() const { return visible_; }
  void Visible(bool visible);
  // A note of the screen's for its procedures and services ("N", "U" ...); not read here.
  [[nodiscard]] const std::string& Tag() const { return tag_; }
  void Tag(std::string tag) { tag_ = std::move(tag); }
  // Place in the tab order, unique in a form; -1: not in it.
  [[nodiscard]] int TabIndex() const { return tab_index_; }
  void TabIndex(int index) { tab_index_ = index; }

  // Position and size in twips, relative to the form. Moves nothing else.
  [[nodiscard]] int Left() const { return left_; }
  [[nodiscard]] int Top() const { return top_; }
  [[nodiscard]] int Width() const { return width_; }
  [[nodiscard]] int Height() const { return height_; }
  void Left(int value) { Place(value, top_, width_, height_); }
  void Top(int value) { Place(left_, value, width_, height_); }
  void Width(int value) { Place(left_, top_, value, height_); }
  void Height(int value) { Place(left_, top_, width_, value); }
  void Place(int left, int top, int width, int height);

  [[nodiscard]] int ForeColor() const { return fore_color_; }  // 0xBBGGRR
  void ForeColor(int color);

  // The search box or panel around this control; nullptr for none. A control in a container that
  // is disabled or hidden can't take the focus.
  // REQUIRES: a control of the same form, and no circle.
  [[nodiscard]] Control* Container() const { return container_; }
  void Container(Control* container) { container_ = container; }

  [[nodiscard]] virtual bool IsLabel() const { return false; }
  // Whether a control of this kind ever takes the focus.
  [[nodiscard]] virtual bool Focusable() const { return false; }
  // Enabled and visible, its containers too: what the operator can reach.
  [[nodiscard]] bool Reachable() const;
  // Reachable, and of a kind that takes the focus; the form must be visible as well.
  [[nodiscard]] bool CanTakeFocus() const { return Focusable() && Reachable(); }
  // Moves the focus here, with the leaving logic of the old control and the entering logic of this
  // one. Throws data::Error if the form is not shown or the control can't take the focus; rethrows
  // the first error of those events, after both have run. Nothing happens if it is here already.
  void SetFocus();
  [[nodiscard]] bool HasFocus() const;  // in its own form, shown or not

  // Form::Press and Form::Click say in which order they run. A procedure that calls Click() or SetFocus()
  // raises them likewise, with no boundary for what they throw.
  Event OnClick;
  Event OnDblClick;
  Event OnGotFocus;   // the focus is already here
  Event OnLostFocus;  // the focus is already at the next control; may send it elsewhere
  KeyEvent OnKeyDown;
  CharEvent OnKeyPress;
  KeyEvent OnKeyUp;

  // What a key does to this kind of control by itself, after the form's procedures have seen it:
  // Editing() for codes (arrows, Delete), Typing() for characters. Raise events by their own rules.
  virtual void Editing(const Key&) {}
  virtual void Typing(char32_t) {}
  // A click of the operator: raises OnClick; a box toggles first.
  virtual void Click();

 protected:
  void Changed(Aspect aspect);

 private:
  Form& form_;
  std::string name_;
  std::optional<int> index_;
  bool enabled_ = true;
  bool visible_ = true;
  std::string tag_;
  int tab_index_ = -1;
  int left_ = 0, top_ = 0, width_ = 0, height_ = 0;
  int fore_color_ = 0;
  Control* container_ = nullptr;
};

// A text that takes no focus.
class Label : public Control {
 public:
  using Control::Control;
  [[nodiscard]] const std::string& Caption() const { return caption_; }
  void Caption(std::string caption);
  [[nodiscard]] bool IsLabel() const override { return true; }

 private:
  std::string caption_;
};

class Button : public Control {
 public:
  using Control::Control;
  [[nodiscard]] const std::string& Caption() const { return caption_; }  // "&" marks the mnemonic
  void Caption(std::string caption);
  [[nodiscard]] bool Focusable() const override { return true; }
  void Typing(char32_t character) override;  // Enter and Space click

 private:
  std::string caption_;
};

// A box that is ticked or not.
class CheckBox : public Control {
 public:
  using Control::Control;
  [[nodiscard]] const std::string& Caption() const { return caption_; }
  void Caption(std::string caption);
  [[nodiscard]] int Value() const { return value_; }  // 0 or 1
  // Anything but 0 is 1. A value that differs raises OnClick, as on the suite's platform.
  void Value(int value);
  // The state at design: raises nothing.
  void Design(int value) { value_ = value; }
  [[nodiscard]] bool Focusable() const override { return true; }
  void Typing(char32_t character) override;  // Space toggles
  void Click() override;                     // toggles, which raises OnClick

 private:
  std::string caption_;
  int value_ = 0;
};

// One line of text with caret and selection, both counted in characters.
class TextBox : public Control {
 public:
  using Control::Control;

  [[nodiscard]] const std::string& Text() const { return text_; }
  // A text that differs is stored (clipped to MaxLength), caret in front, and OnChange runs
  // before this returns; what it throws comes out here, and the text is kept. The same text does
  // nothing. Invalid UTF-8 is repaired.
  void Text(std::string_view text);

  // In characters; 0: no limit. A text that is there already is not cut.
  [[nodiscard]] int MaxLength() const { return max_length_; }
  void MaxLength(int length) { max_length_ = length; }
  [[nodiscard]] int SelStart() const { return sel_start_; }    // where the caret is, from 0
  [[nodiscard]] int SelLength() const { return sel_length_; }  // 0: nothing is selected
  void SelStart(int start);                                    // clipped to the text; clears the selection
  void SelLength(int length);                                  // clipped to the text
  void SelectAll();

  // What the operator does: one change each, caret after what was put in. Clipped to MaxLength; a box of one
  // line takes no line ends. Where the text stays the same only the caret moves.
  void ReplaceSelection(std::string_view text);  // typing, paste, a composed character
  void Backspace();                              // the selection, or the character before the caret
  void DeleteForward();                          // the selection, or the character after it

  [[nodiscard]] bool Focusable() const override { return true; }
  void Editing(const Key& key) override;     // Delete, Home, End, Left, Right
  void Typing(char32_t character) override;  // Back deletes; Enter is a line end where there may be one

  [[nodiscard]] bool RightAligned() const { return right_aligned_; }  // for the view
  void RightAligned(bool right) { right_aligned_ = right; }
  [[nodiscard]] bool MultiLine() const { return multi_line_; }
  void MultiLine(bool multi) { multi_line_ = multi; }

  Event OnChange;  // the text has changed, whoever changed it

 private:
  void RunChange();
  void Edit(std::size_t first, std::size_t count, std::string_view with);

  std::string text_;
  int max_length_ = 0;
  int sel_start_ = 0;
  int sel_length_ = 0;
  bool right_aligned_ = false;
  bool multi_line_ = false;
};

// A text box for longer texts; the same in all else.
class RichTextBox : public TextBox {
 public:
  using TextBox::TextBox;
};

// A day, or none. It has no change event: who needs the date reads it.
class DatePicker : public Control {
 public:
  using Control::Control;
  [[nodiscard]] const std::optional<data::Date>& Value() const { return value_; }  // nothing: no date
  void Value(std::optional<data::Date> date);  // not checked against the calendar
  [[nodiscard]] bool Focusable() const override { return true; }
  void Editing(const Key& key) override;  // Up and Down: a day

 private:
  std::optional<data::Date> value_;
};

// A text that is typed, or taken from a list.
class ComboBox : public Control {
 public:
  using Control::Control;
  [[nodiscard]] const std::string& Text() const { return text_; }
  void Text(std::string_view text);  // a text that differs raises OnChange
  [[nodiscard]] const std::vector<std::string>& List() const { return list_; }
  [[nodiscard]] int ListIndex() const { return list_index_; }  // from 0; -1: none
  // Takes the item's text and raises OnClick, never OnChange; the same item again too. -1 chooses none and
  // leaves the text. Throws data::Error for any other index that is not there.
  void ListIndex(int index);
  void AddItem(std::string_view text);  // at the end
  void Clear();                         // the list; the text stays
  [[nodiscard]] bool Focusable() const override { return true; }
  void Editing(const Key& key) override;     // Up and Down choose the neighbour
  void Typing(char32_t character) override;  // at the end of the text; Back takes the last character

  Event OnChange;

 private:
  std::vector<std::string> list_;
  int list_index_ = -1;
  std::string text_;
};

// A panel that holds other controls.
class PictureBox : public Control {
 public:
  using Control::Control;
};

// A drop-down search around a text box. It takes no focus itself.
class SearchBox : public Control {
 public:
  using Control::Control;
  // What is looked for: "Articulos", "Almacenes" ... The platform knows what such a title means.
  [[nodiscard]] const std::string& buscar() const { return buscar_; }
  void buscar(std::string title) { buscar_ = std::move(title); }
  // Where to look; nullptr until the screen has loaded. REQUIRES: outlives the box.
  [[nodiscard]] data::Connection* Conexion() const { return connection_; }
  void Conexion(data::Connection& connection) { connection_ = &connection; }
  [[nodiscard]] TextBox* Field() const { return field_; }  // gets what is chosen; nullptr for none
  // Puts the text box inside: this is its container from here on. REQUIRES: a text box of the same form.
  void Hold(TextBox& field);
  void ShowData();  // opens the list, by Platform::ShowSearchList

 private:
  std::string buscar_;
  data::Connection* connection_ = nullptr;
  TextBox* field_ = nullptr;
};

// Runs while Enabled() and Interval() > 0 on an open form; unloading stops it. Starts disabled.
class Timer : public Control {
 public:
  Timer(Form& form, std::string name);
  ~Timer() override;
  [[nodiscard]] int Interval() const { return interval_; }  // milliseconds
  void Interval(int milliseconds);
  [[nodiscard]] bool Running() const { return running_; }
  void Enabled(bool enabled);
  using Control::Enabled;
  // Called by the platform, inside an act of its form. Raises OnTimer.
  void Tick();

  Event OnTimer;  // again and again, until the timer is stopped

 private:
  friend class Form;
  void Update();

  int interval_ = 0;
  bool running_ = false;
};

// Shows a page, by Platform::Navigate.
class WebBrowser : public Control {
 public:
  using Control::Control;
  void Navigate(const std::string& name);  // a file or an address; what the platform throws comes out
  [[nodiscard]] const std::string& Location() const { return location_; }  // the last one asked for

 private:
  std::string location_;
};

// Controls of one name, told apart by an index that they keep for life. Owns them.
template <class T>
class ControlArray {
 public:
  // One control for each index; indices need not follow one another.
  ControlArray(Form& form, std::string name, const std::vector<int>& indices) : name_(std::move(name)) {
    for (int index : indices) items_.emplace(index, std::make_unique<T>(form, name_, index));
  }

  // Throws data::Error for an index that the array doesn't have.
  T& operator()(int index) const {
    auto found = items_.find(index);
    if (found == items_.end()) throw Missing(index);
    return *found->second;
  }
  [[nodiscard]] bool Has(int index) const { return items_.contains(index); }
  [[nodiscard]] int Count() const { return static_cast<int>(items_.size()); }
  [[nodiscard]] const std::string& Name() const { return name_; }

  // Calls the function with each control, by rising index.
  template <class F>
  void Each(F&& function) const {
    for (auto& [index, control] : items_) function(*control);
  }

 private:
  [[nodiscard]] data::Error Missing(int index) const {
    return data::Error("No existe el control " + name_ + "(" + std::to_string(index) + ")");
  }

  std::string name_;
  std::map<int, std::unique_ptr<T>> items_;
};

}  // namespace tarvik::forms
