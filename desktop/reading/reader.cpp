// The reader's thread: one step at a time, the urgent ones first.
#include "desktop/reading/reader.h"

#include <exception>

namespace tarvik::desktop {

Reader::Reader(data::Base& base) : base_(base), thread_([this] { Loop(); }) {}

Reader::~Reader() {
  {
    const std::lock_guard lock(mutex_);
    end_ = true;
  }
  wake_.notify_all();
  thread_.join();
}

void Reader::Run(TaskRef task, Urgency urgency, Step step, std::function<void(const QString&)> failed) {
  {
    const std::lock_guard lock(mutex_);
    (urgency == Urgency::Page ? urgent_ : patient_)
        .push_back({std::move(task), std::move(step), std::move(failed)});
  }
  wake_.notify_one();
}

void Reader::Deliver(TaskRef task, std::function<void()> function) {
  QMetaObject::invokeMethod(
      this,
      [task = std::move(task), function = std::move(function)] {
        if (!task->Dropped()) function();
      },
      Qt::QueuedConnection);
}

void Reader::Loop() {
  std::unique_ptr<data::EngineConnection> connection;
  std::unique_lock lock(mutex_);
  while (true) {
    wake_.wait(lock, [this] { return end_ || !urgent_.empty() || !patient_.empty(); });
    if (end_) return;
    std::deque<Work>& queue = urgent_.empty() ? patient_ : urgent_;
    Work work = std::move(queue.front());
    queue.pop_front();
    lock.unlock();
    bool more = false;
    if (!work.task->Dropped()) {
      try {
        if (!connection) connection = base_.Connect();
        more = work.step(*connection);
      } catch (const std::exception& error) {
        Deliver(work.task,
                [failed = work.failed, reason = QString::fromUtf8(error.what())] { failed(reason); });
      }
    }
    lock.lock();
    // To the end of its queue: several searches advance side by side.
    if (more && !work.task->Dropped()) queue.push_back(std::move(work));
  }
}

}  // namespace tarvik::desktop
