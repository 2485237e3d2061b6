// The platform without a window.
#include "forms/headless_platform.h"

#include <chrono>
#include <ctime>

#include "forms/control.h"
#include "forms/form.h"

namespace tarvik::forms {

data::DateTime HeadlessPlatform::Now() {
  if (clock) {
    if (auto fixed = clock()) return *fixed;
  }
  std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm local{};
  localtime_r(&now, &local);
  return {{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday},
          {local.tm_hour, local.tm_min, local.tm_sec}};
}

bool HeadlessPlatform::Box(BoxKind kind, const std::string& text, int style) {
  return on_box ? on_box(kind, text, style) : kind != BoxKind::Question;
}

void HeadlessPlatform::Beep() {
  if (on_beep) on_beep();
}

void HeadlessPlatform::Post(std::function<void()> function) { posted_.push_back(std::move(function)); }

void HeadlessPlatform::RunPosted() {
  while (!posted_.empty()) {
    auto function = std::move(posted_.front());
    posted_.pop_front();
    try {
      function();
    } catch (const std::exception& error) {
      Unhandled(nullptr, error);
    }
  }
}

void HeadlessPlatform::Settle() { RunPosted(); }

void HeadlessPlatform::StartTimer(Timer& timer) { due_[&timer] = elapsed_ + timer.Interval(); }

void HeadlessPlatform::StopTimer(Timer& timer) { due_.erase(&timer); }

void HeadlessPlatform::Advance(long milliseconds) {
  const long until = elapsed_ + milliseconds;
  RunPosted();
  for (;;) {
    Timer* next = nullptr;
    for (auto& [timer, when] : due_) {
      if (when <= until && (!next || when < due_[next])) next = timer;
    }
    if (!next) break;
    elapsed_ = due_[next];
    due_[next] = elapsed_ + next->Interval();
    auto form = next->Owner().shared_from_this();
    form->Act([&] { next->Tick(); });
    RunPosted();
  }
  elapsed_ = until;
}

void HeadlessPlatform::RunModal(Form& form) {
  auto alive = form.shared_from_this();
  if (on_modal) on_modal(form);
  if (form.Visible()) form.Unload();
}

void HeadlessPlatform::Unhandled(Form* form, const std::exception& error) {
  if (on_unhandled) on_unhandled(form, error.what());
}

void HeadlessPlatform::ShowSearchList(SearchBox& box) {
  if (on_search_list) on_search_list(box);
}

void HeadlessPlatform::Navigate(WebBrowser& browser, const std::string& name) {
  if (on_navigate) on_navigate(browser, name);
}

void HeadlessPlatform::ScreenLoaded(Form& form) {
  if (on_screen_loaded) on_screen_loaded(form);
}

void HeadlessPlatform::ScreenUnloaded(Form& form) {
  if (on_screen_unloaded) on_screen_unloaded(form);
}

}  // namespace tarvik::forms
