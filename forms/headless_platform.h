// HeadlessPlatform: the platform of scripts and unattended runs. No window: boxes are answered by
// a function, modal shows are driven by one, timers run on a clock that only Advance() moves.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "forms/platform.h"

namespace tarvik::forms {

class HeadlessPlatform : public Platform {
 public:
  // Each is optional. With no answer, every question is answered No.
  std::function<bool(BoxKind, const std::string& text, int style)> on_box;
  std::function<void()> on_beep;
  std::function<void(Form&)> on_modal;  // runs while the form is shown; then it is unloaded if still shown
  std::function<void(Form*, const std::string& text)> on_unhandled;
  std::function<void(SearchBox&)> on_search_list;
  std::function<void(WebBrowser&, const std::string&)> on_navigate;
  std::function<void(Form&)> on_screen_loaded;
  std::function<void(Form&)> on_screen_unloaded;
  std::function<std::optional<data::DateTime>()> clock;  // nothing: the machine's clock
  std::function<bool()> on_wait;                         // each turn of a wait; true ends it

  data::DateTime Now() override;
  void Beep() override;
  void ProcessEvents() override { Advance(0); }
  void Post(std::function<void()> function) override;
  void Settle() override;
  void StartTimer(Timer& timer) override;
  void StopTimer(Timer& timer) override;
  void RunModal(Form& form) override;
  void Repaint(Form&) override {}
  void Unhandled(Form* form, const std::exception& error) override;
  bool EndRequested() override { return on_wait && on_wait(); }
  void ShowSearchList(SearchBox& box) override;
  void Navigate(WebBrowser& browser, const std::string& name) override;

  // Runs what is posted; the timers see that many milliseconds go by, in the order of their ticks.
  void Advance(long milliseconds);

 protected:
  bool Box(BoxKind kind, const std::string& text, int style) override;
  void ScreenLoaded(Form& form) override;
  void ScreenUnloaded(Form& form) override;

 private:
  void RunPosted();

  std::deque<std::function<void()>> posted_;
  std::map<Timer*, long> due_;
  long elapsed_ = 0;
};

}  // namespace tarvik::forms
