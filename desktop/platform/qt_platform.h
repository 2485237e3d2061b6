// QtPlatform: the platform of the desktop. Boxes, timers, modal loop and pending events are Qt's; an
// error that no trap caught is shown, written to the program's own log, and the screen goes on.
#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <deque>
#include <functional>

#include "desktop/boxes/boxes.h"
#include "desktop/platform/troubles.h"
#include "forms/platform.h"

class QTimer;
class QWidget;

namespace tarvik::desktop {

class QtPlatform final : public QObject, public forms::Platform {
  Q_OBJECT

 public:
  QtPlatform();
  ~QtPlatform() override;

  // What the program supplies. Each may be left empty.
  std::function<void(forms::Form&)> on_loaded;  // a screen is about to load: its view is made here
  std::function<void(forms::Form&)> on_unloaded;
  std::function<void(forms::Form&)> on_modal;    // brings the screen's window up; the platform waits
  std::function<void(forms::Form&)> on_repaint;  // paints the screen's view at once
  std::function<void(forms::SearchBox&)> on_search_list;
  std::function<void(forms::WebBrowser&, const std::string&)> on_navigate;
  // Notes the error; gives whether it could. The box is shown here.
  std::function<bool(forms::Form*, const std::exception&)> on_unhandled;
  std::function<bool(forms::BoxKind, const std::string&, int)> on_box;  // replaces the box: for tests

  // An act in which several errors came up has ended: they are to be listed.
  void OnSeveralErrors(std::function<void(const std::vector<Trouble>&)> list) {
    troubles_.on_several = std::move(list);
  }

  std::function<forms::Form*()> on_front;  // the screen that the operator works in

  // The last text that a message box of the host's showed, and how many were shown so far: a view
  // marks the field that a message sent the operator to.
  [[nodiscard]] const std::string& LastMessage() const { return last_message_; }
  [[nodiscard]] int MessagesShown() const { return messages_; }
  [[nodiscard]] const forms::Form* MessageOf() const { return message_of_; }  // the screen in front then
  // While a step of the suite lets events through.
  [[nodiscard]] bool LettingThrough() const { return letting_through_ > 0; }
  // How many errors found no trap so far.
  [[nodiscard]] int UnhandledErrors() const { return unhandled_; }

  data::DateTime Now() override;
  void Beep() override;
  void ProcessEvents() override;
  void Post(std::function<void()> function) override;
  void Settle() override;
  bool WaitTurn() override;
  void StartTimer(forms::Timer& timer) override;
  void StopTimer(forms::Timer& timer) override;
  void RunModal(forms::Form& form) override;
  void Repaint(forms::Form& form) override;
  void Unhandled(forms::Form* form, const std::exception& error) override;
  bool EndRequested() override;
  [[nodiscard]] forms::Form* ActiveForm() const override;
  void ShowSearchList(forms::SearchBox& box) override;
  void Navigate(forms::WebBrowser& browser, const std::string& name) override;

 protected:
  bool Box(forms::BoxKind kind, const std::string& text, int style) override;
  void ScreenLoaded(forms::Form& form) override;
  void ScreenUnloaded(forms::Form& form) override;

 private:
  void RunPosted();
  void GiveKeysBack();
  bool Answer(forms::BoxKind kind, const std::string& text, int style);
  void End();  // takes down what is open; called again and again once the process was told to end

  std::deque<std::function<void()>> posted_;
  QHash<forms::Timer*, QTimer*> timers_;
  std::string last_message_;
  int messages_ = 0;
  const forms::Form* message_of_ = nullptr;  // compared only
  int letting_through_ = 0;
  Troubles troubles_;
  KeptKeys kept_;  // that came too early for a box
  int unhandled_ = 0;
  QElapsedTimer ending_;  // since the first attempt to end
};

}  // namespace tarvik::desktop
