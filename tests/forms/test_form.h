// TestForm: a small screen with one control of each kind, which keeps a record of its events, and the
// bench that it stands on. It holds no rule of any real screen.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "data/error.h"
#include "forms/control.h"
#include "forms/flex_grid.h"
#include "forms/form.h"
#include "forms/headless_platform.h"
#include "forms/keys.h"

namespace tarvik::forms {

using Record = std::vector<std::string>;

class TestForm : public Form {
 public:
  TestForm(Platform& platform, std::string name)
      : Form(platform, std::move(name), "Prueba"),
        first(*this, "first"),
        second(*this, "second"),
        third(*this, "third"),
        button(*this, "button"),
        check(*this, "check"),
        list(*this, "list"),
        grid(*this, "grid"),
        date(*this, "date"),
        label(*this, "label"),
        panel(*this, "panel"),
        inside(*this, "inside"),
        search(*this, "search"),
        browser(*this, "browser"),
        timer(*this, "timer"),
        fields(*this, "fields", {0, 4, 14}) {
    // The order of declaration is not the keyboard's order.
    third.TabIndex(2);
    second.TabIndex(1);
    first.TabIndex(0);
    button.TabIndex(3);
    check.TabIndex(4);
    list.TabIndex(5);
    grid.TabIndex(6);
    date.TabIndex(7);
    inside.TabIndex(8);
    inside.Container(&panel);
    for (TextBox* box : {&first, &second, &third, &inside}) {
      Watch(*box);
      box->OnChange = [this, box] { Note(box->Name() + " change " + box->Text()); };
    }
    for (Control* control : std::initializer_list<Control*>{&button, &check, &list, &grid, &date})
      Watch(*control);
    for (Control* control : std::initializer_list<Control*>{&button, &check, &label, &list, &grid}) {
      control->OnClick = [this, control] { Note(control->Name() + " click"); };
      control->OnDblClick = [this, control] { Note(control->Name() + " double"); };
    }
    grid.OnLeaveCell = [this] { Note("leave " + Cell()); };
    grid.OnEnterCell = [this] { Note("enter " + Cell()); };
    grid.OnRowColChange = [this] { Note("moved " + Cell()); };
    timer.OnTimer = [this] { Note("tick"); };
  }

  TextBox first, second, third;
  Button button;
  CheckBox check;
  ComboBox list;
  FlexGrid grid;
  DatePicker date;
  Label label;
  PictureBox panel;
  TextBox inside;
  SearchBox search;
  WebBrowser browser;
  Timer timer;
  ControlArray<TextBox> fields;

  Record record;
  bool refuse_query = false;
  bool refuse_unload = false;
  std::function<void()> at_load, at_unload;
  std::function<void(int&)> at_key;

  void Note(std::string what) { record.push_back(std::move(what)); }
  Record Taken() { return std::exchange(record, {}); }
  [[nodiscard]] std::string Cell() const {
    return std::to_string(grid.Row()) + "," + std::to_string(grid.Col());
  }

 protected:
  void Form_Load() override {
    Note("load");
    if (at_load) at_load();
  }
  void Form_KeyDown(int& code, int /*shift*/) override {
    Note("form down " + std::to_string(code));
    if (at_key) at_key(code);
  }
  void Form_QueryUnload(int& cancel, UnloadMode mode) override {
    Note(mode == UnloadMode::CloseBox ? "query box" : "query code");
    cancel = refuse_query;
  }
  void Form_Unload(int& cancel) override {
    Note("unload");
    cancel = refuse_unload;
    if (at_unload) at_unload();
  }
  void Form_Paint() override { Note("paint"); }
  void Form_Resize() override { Note("resize"); }

 private:
  void Watch(Control& control) {
    const std::string name = control.Name();
    control.OnGotFocus = [=, this] { Note(name + " got"); };
    control.OnLostFocus = [=, this] { Note(name + " lost"); };
    control.OnKeyDown = [=, this](int& code, int) { Note(name + " down " + std::to_string(code)); };
    control.OnKeyPress = [=, this](int& code) { Note(name + " press " + std::to_string(code)); };
    control.OnKeyUp = [=, this](int& code, int) { Note(name + " up " + std::to_string(code)); };
  }
};

class FormsBench : public ::testing::Test {
 public:
  HeadlessPlatform platform;
  Record unhandled;
  std::shared_ptr<TestForm> form;

  FormsBench() {
    platform.on_unhandled = [this](Form*, const std::string& text) { unhandled.push_back(text); };
    form = std::make_shared<TestForm>(platform, "prueba");
  }
  ~FormsBench() override {
    const auto open = platform.Screens();
    for (const auto& screen : open) screen->Discard();
  }

  // The form shown, with an empty record.
  TestForm& Shown() {
    form->Show(false);
    form->record.clear();
    return *form;
  }
  static Key Named(const char* name) { return *KeyNamed(name); }
  static Event Fails(const char* text) {
    return [text] { throw data::Error(text); };
  }
};

}  // namespace tarvik::forms
