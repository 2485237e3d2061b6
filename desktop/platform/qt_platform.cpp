#include "desktop/platform/qt_platform.h"

#include <QApplication>
#include <QDateTime>
#include <QDialog>
#include <QEventLoop>
#include <QThread>
#include <QTimer>
#include <QWidget>
#include <atomic>
#include <csignal>

#include "desktop/boxes/boxes.h"
#include "forms/control.h"
#include "forms/form.h"
#include "forms/listener.h"

namespace tarvik::desktop {

namespace {

constexpr int kButtons = 0xF;     // the bits of a box's style that say which buttons it has
constexpr int kLookEvery = 200;   // milliseconds between two checks whether the program is to end
constexpr int kEndWithin = 5000;  // a window that is still open then has refused to close

std::atomic<bool> end_requested = false;

// An error's box, as the list of the step's errors keeps it.
Trouble Kept(const std::string& text) {
  return TakenApart(QString::fromStdString(text),
                    QDateTime::currentDateTime().toString(QStringLiteral("HH:mm:ss")));
}

extern "C" void AskToEnd(int) { end_requested = true; }

}  // namespace

QtPlatform::QtPlatform() {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) std::signal(signal, AskToEnd);
  auto* watch = new QTimer(this);
  watch->setInterval(kLookEvery);
  connect(watch, &QTimer::timeout, this, [this] {
    if (end_requested) End();
  });
  watch->start();
}

// Nobody polls the request any more, so the signals get their default effect back.
QtPlatform::~QtPlatform() {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) std::signal(signal, SIG_DFL);
}

// Closes the frontmost window first, as Esc would; what waited for it then ends by itself. Windows that are
// still open after a while are closed with the program.
void QtPlatform::End() {
  if (!ending_.isValid()) ending_.start();
  if (ending_.hasExpired(kEndWithin)) return QCoreApplication::exit();
  if (QWidget* popup = QApplication::activePopupWidget()) {
    popup->close();
  } else if (QWidget* modal = QApplication::activeModalWidget()) {
    if (auto* dialog = qobject_cast<QDialog*>(modal)) return dialog->reject();
    modal->close();
  } else {
    QApplication::closeAllWindows();
  }
}

data::DateTime QtPlatform::Now() {
  const QDateTime now = QDateTime::currentDateTime();
  return {{now.date().year(), now.date().month(), now.date().day()},
          {now.time().hour(), now.time().minute(), now.time().second()}};
}

bool QtPlatform::Box(forms::BoxKind kind, const std::string& given, int style) {
  // A message whose text could not be read is empty; an empty box would only puzzle the operator.
  const bool wordless = QString::fromStdString(given).trimmed().isEmpty();
  const std::string text = wordless ? tr("No se pudo leer el texto de este aviso en la base de datos. Lo que "
                                         "ya estaba guardado sigue guardado.")
                                          .toStdString()
                                    : given;
  if (kind == forms::BoxKind::Message || kind == forms::BoxKind::Error) {
    last_message_ = text;
    ++messages_;
    message_of_ = ActiveForm();
  }
  // A plain box is the suite's report of a failed step.
  if (kind == forms::BoxKind::Plain) {
    Trouble trouble = Kept(text);
    if (!trouble.procedure.isEmpty()) troubles_.Add(std::move(trouble), Acting());
  }
  const Troubles::Standing box(troubles_);
  return Answer(kind, text, style);
}

bool QtPlatform::Answer(forms::BoxKind kind, const std::string& text, int style) {
  if (on_box) return on_box(kind, text, style);
  // Nobody is left to answer: a question counts as refused.
  if (end_requested) return kind != forms::BoxKind::Question && (style & kButtons) != forms::kBoxYesNo;
  const bool yes =
      desktop::ShowBox(QApplication::activeWindow(), kind, QString::fromStdString(text), style, &kept_);
  GiveKeysBack();
  return yes;
}

void QtPlatform::Settle() {
  RunPosted();
  troubles_.StepOver();
  if (!kept_.empty()) GiveKeysBack();
}

// Once the act that showed the box is over, and its window has the focus again.
void QtPlatform::GiveKeysBack() {
  QTimer::singleShot(0, this, [this] {
    if (Acting() || Boxes() > 0) return;  // they come out when that is over
    GiveBack(kept_);
    // The window below has not come to the front yet.
    if (!kept_.empty()) QTimer::singleShot(kLookEvery, this, &QtPlatform::GiveKeysBack);
  });
}

void QtPlatform::Beep() { QApplication::beep(); }

// Painting, timers and posted functions. Keys and clicks wait in the queue: one let through here would
// reach a screen that is in the middle of a step.
void QtPlatform::ProcessEvents() {
  troubles_.GoesOn();
  ++letting_through_;
  QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  --letting_through_;
}

// Runs with the next turn of the loop at the latest, and right after an operator's act, so that the effects
// of a key are complete before the next key.
void QtPlatform::Post(std::function<void()> function) {
  posted_.push_back(std::move(function));
  QMetaObject::invokeMethod(
      this, [this] { RunPosted(); }, Qt::QueuedConnection);
}

void QtPlatform::RunPosted() {
  while (!posted_.empty()) {
    const std::function<void()> function = std::move(posted_.front());
    posted_.pop_front();
    try {
      function();
    } catch (const std::exception& error) {
      Unhandled(nullptr, error);
    }
  }
}

void QtPlatform::StartTimer(forms::Timer& timer) {
  StopTimer(timer);
  auto* ticking = new QTimer(this);
  timers_.insert(&timer, ticking);
  connect(ticking, &QTimer::timeout, this, [&timer] {
    auto form = timer.Owner().shared_from_this();
    form->Act([&] { timer.Tick(); });
  });
  ticking->start(timer.Interval());
}

void QtPlatform::StopTimer(forms::Timer& timer) {
  if (QTimer* ticking = timers_.take(&timer)) {
    ticking->stop();
    ticking->deleteLater();
  }
}

void QtPlatform::RunModal(forms::Form& form) {
  struct Waiting : forms::FormListener {
    QEventLoop loop;
    void Hidden() override { loop.quit(); }
    void Unloaded() override { loop.quit(); }
  } waiting;
  auto alive = form.shared_from_this();
  form.Listen(waiting);
  if (on_modal) on_modal(form);
  if (form.Visible()) waiting.loop.exec();
  form.StopListening(waiting);
}

void QtPlatform::Repaint(forms::Form& form) {
  troubles_.GoesOn();
  if (on_repaint) on_repaint(form);
}

void QtPlatform::Unhandled(forms::Form* form, const std::exception& error) {
  ++unhandled_;
  try {
    const bool noted = on_unhandled && on_unhandled(form, error);
    if (end_requested) return;
    const std::string text = error.what();
    troubles_.Add(Kept(text), Acting());
    const Platform::Standing stands(*this);
    const Troubles::Standing box(troubles_);
    if (on_box) {
      on_box(forms::BoxKind::Error, text, forms::kBoxStop);
    } else {
      ShowUnhandled(QApplication::activeWindow(), QString::fromStdString(text), noted, &kept_);
      GiveKeysBack();
    }
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): there is no way left to report it
  }
}

forms::Form* QtPlatform::ActiveForm() const {
  forms::Form* front = on_front ? on_front() : nullptr;
  return front ? front : Platform::ActiveForm();
}

bool QtPlatform::WaitTurn() {
  if (end_requested) return false;
  if (QThread::currentThread() == thread()) troubles_.Turn();
  return true;
}

bool QtPlatform::EndRequested() { return end_requested; }

void QtPlatform::ShowSearchList(forms::SearchBox& box) {
  if (on_search_list) on_search_list(box);
}

void QtPlatform::Navigate(forms::WebBrowser& browser, const std::string& name) {
  if (on_navigate) on_navigate(browser, name);
}

void QtPlatform::ScreenLoaded(forms::Form& form) {
  if (on_loaded) on_loaded(form);
}

void QtPlatform::ScreenUnloaded(forms::Form& form) {
  if (on_unloaded) on_unloaded(form);
}

}  // namespace tarvik::desktop
