// Reader: reads for the lists in the background, on a connection of its own, so that no typing ever
// waits for the base. Work is done in short steps; what is urgent goes between the steps of what is
// not. What a step writes is its own matter; the lists' steps write nothing.
#pragma once

#include <QObject>
#include <QString>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "data/engine.h"

namespace tarvik::desktop {

enum class Urgency { Page, Sum };

class Reader : public QObject {
  Q_OBJECT

 public:
  // One step, on the reader's thread. True if there is more to do.
  using Step = std::function<bool(data::EngineConnection&)>;

  // A task that somebody waits for. Dropping it ends it before its next step, and nothing of it is
  // delivered any more. An object that is captured in what is delivered must drop its tasks before it is
  // destroyed.
  class Task {
   public:
    void Drop() { dropped_ = true; }
    [[nodiscard]] bool Dropped() const { return dropped_; }

   private:
    std::atomic<bool> dropped_ = false;
  };
  using TaskRef = std::shared_ptr<Task>;

  explicit Reader(data::Base& base);  // outlives this
  ~Reader() override;                 // ends the step under way, drops all else

  // `failed` runs on the window's thread with the reason if a step throws; the task is over then.
  void Run(TaskRef task, Urgency urgency, Step step, std::function<void(const QString&)> failed);
  // For a step: runs the function on the window's thread, in order, unless the task was dropped.
  void Deliver(TaskRef task, std::function<void()> function);

 private:
  struct Work {
    TaskRef task;
    Step step;
    std::function<void(const QString&)> failed;
  };
  void Loop();

  data::Base& base_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<Work> urgent_;
  std::deque<Work> patient_;
  bool end_ = false;
  std::thread thread_;
};

}  // namespace tarvik::desktop
