// Platform: the outside world of the screens, in one interface. Clock, boxes, beep, pending
// events, timers, the modal loop, files, and what becomes of an error that no trap caught.
// Nothing above it reads a clock, sleeps or writes to a stream by another way.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "data/datetime.h"

namespace tarvik::forms {

class Form;
class SearchBox;
class Timer;
class WebBrowser;

// What a box is for. A view may dress them differently; a script tells them apart.
enum class BoxKind {
  Message,   // a text of the host's message service
  Error,     // a plain error text of the host
  Question,  // wants an answer, whoever asks
  Plain,     // any other box, the error report among them
};

// Box styles, added up as on the suite's platform: buttons, icon, default button.
inline constexpr int kBoxPlain = 0;
inline constexpr int kBoxYesNo = 4;
inline constexpr int kBoxStop = 16;
inline constexpr int kBoxQuestion = 32;
inline constexpr int kBoxInformation = 64;
inline constexpr int kBoxSecondDefault = 256;

class Platform {
 public:
  virtual ~Platform() = default;

  virtual data::DateTime Now() = 0;

  // Shows a box and waits. Gives true for Yes (and for OK), false for No and for closing it.
  bool ShowBox(BoxKind kind, const std::string& text, int style);
  virtual void Beep() = 0;

  // Lets what is pending run: posted functions, due timers, painting. An operator's keys and clicks
  // may wait until the act under way has ended.
  virtual void ProcessEvents() = 0;
  // Runs later, in order, on this thread. What a posted function throws goes to Unhandled.
  virtual void Post(std::function<void()> function) = 0;
  // Called at the end of an operator's act, when no other act is under way.
  virtual void Settle() {}

  // Told when an operator's act begins, before anything of it runs, and when it has ended with all that it
  // set off. For the host; each may be empty, and none of them throws. One that begins inside another is
  // not reported. Where `on_act_begins` gives false the act is skipped: its screen may not go on.
  std::function<bool(Form&)> on_act_begins;
  std::function<void()> on_act_ends;
  // Told when a form is no longer open, however it ended. For the host, too; it doesn't throw.
  std::function<void(Form&)> on_form_gone;
  [[nodiscard]] bool Acting() const { return acts_ > 0; }
  // How many modal screens are shown, one above the other.
  [[nodiscard]] int Modals() const { return modals_; }
  // How many boxes stand and wait for an answer.
  [[nodiscard]] int Boxes() const { return boxes_; }
  // Told of a box as it comes up. For the host; it may be empty, and doesn't throw.
  std::function<void(const std::string& text)> on_box_stands;

  // One turn of the host's wait for its base: paints, lets no event of a screen run and takes no key.
  // False once the process has been asked to end. About a hundred times a second.
  virtual bool WaitTurn() { return !EndRequested(); }

  // A timer runs from here on, every Interval() milliseconds, until stopped. It calls Timer::Tick.
  virtual void StartTimer(Timer& timer) = 0;
  virtual void StopTimer(Timer& timer) = 0;

  // Returns when the form is no longer shown; at the latest when the program ends.
  virtual void RunModal(Form& form) = 0;
  // Paints at once; lets no pending event through.
  virtual void Repaint(Form& form) = 0;

  // An error that left an event and found no trap. `form` is nullptr outside any form.
  // Never throws. The screen and its data stay.
  virtual void Unhandled(Form* form, const std::exception& error) = 0;
  // True once the process has been asked to end; tested by waits that have no other end.
  virtual bool EndRequested() { return false; }

  // The list of a search box was asked for.
  virtual void ShowSearchList(SearchBox& box) = 0;
  // A browser control was told to show a file or address, named as composed by the caller.
  virtual void Navigate(WebBrowser& browser, const std::string& name) = 0;

  // Files. A path may use "\" or "/": it is opened with the machine's own separator. All throw
  // data::Error with a Spanish text that names path and reason.
  // Appends the bytes in one write, so that processes which share the file don't mix their
  // entries. Creates the file, and its folder, if missing.
  virtual void AppendFile(const std::string& path, std::string_view text);
  virtual bool FileExists(const std::string& path);
  virtual void DeleteFile(const std::string& path);

  // The loaded forms, oldest first. A form is held here from its loading to its unloading, which
  // is what lets it live beyond the call that showed it.
  [[nodiscard]] const std::vector<std::shared_ptr<Form>>& Screens() const { return screens_; }
  // The form that keys go to: the last one shown and still visible; nullptr if there is none.
  [[nodiscard]] virtual Form* ActiveForm() const;

 protected:
  // Told when a form enters or leaves Screens().
  virtual void ScreenLoaded(Form&) {}
  virtual void ScreenUnloaded(Form&) {}

  // See ShowBox.
  virtual bool Box(BoxKind kind, const std::string& text, int style) = 0;
  // While it lives one more box stands. For a box that is not shown by ShowBox.
  class Standing {
   public:
    explicit Standing(Platform& platform) : platform_(platform) { ++platform_.boxes_; }
    ~Standing() { --platform_.boxes_; }
    Standing(const Standing&) = delete;
    Standing& operator=(const Standing&) = delete;

   private:
    Platform& platform_;
  };

 private:
  friend class Form;
  // While it lives one more screen is modal.
  class Modal {
   public:
    explicit Modal(Platform& platform) : platform_(platform) { ++platform_.modals_; }
    ~Modal() { --platform_.modals_; }
    Modal(const Modal&) = delete;
    Modal& operator=(const Modal&) = delete;

   private:
    Platform& platform_;
  };

  int modals_ = 0;
  int boxes_ = 0;
  int acts_ = 0;  // of all forms: an operator's act may set off another's
  void Add(const std::shared_ptr<Form>& form);
  void Remove(Form& form);

  std::vector<std::shared_ptr<Form>> screens_;
};

// The path with this machine's separators.
std::string NativePath(std::string_view path);

// What the program makes is open to its user and group alone, or to fewer by the user's mask.
// A folder with all its parents; what is there stays as it is. Gives the error, if there was one.
std::error_code MakeFolders(const std::string& path);
// Makes an empty file, to be written afterwards; does nothing where one is there or can't be made.
void MakePrivateFile(const std::string& path);

}  // namespace tarvik::forms
