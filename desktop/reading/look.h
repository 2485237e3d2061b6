// Look: one reading beside the window's thread, of which only the latest counts. What it asks for may take as
// long as the base takes: no key waits for it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "desktop/reading/reader.h"

namespace tarvik::desktop {

class Look {
 public:
  explicit Look(Reader& reader) : reader_(reader) {}  // outlives this
  ~Look() { Forget(); }
  Look(const Look&) = delete;
  Look& operator=(const Look&) = delete;

  // `read` runs on the reader's thread, with the base; `take` on the window's, with what it gave: nothing
  // where the base refused. What was asked for before is forgotten.
  template <class Found>
  void At(std::function<Found(data::EngineConnection&)> read,
          std::function<void(std::optional<Found>)> take) {
    Forget();
    task_ = std::make_shared<Reader::Task>();
    auto rested = [this, take = std::move(take)](std::optional<Found> found) {
      task_.reset();
      take(std::move(found));
    };
    auto step = [&reader = reader_, task = task_, read = std::move(read),
                 rested](data::EngineConnection& connection) {
      reader.Deliver(task, [rested, found = read(connection)] { rested(found); });
      return false;
    };
    reader_.Run(task_, Urgency::Page, std::move(step), [rested](const QString&) { rested({}); });
  }

  void Forget() {
    if (task_ != nullptr) task_->Drop();
    task_.reset();
  }
  [[nodiscard]] bool UnderWay() const { return task_ != nullptr; }

 private:
  Reader& reader_;
  Reader::TaskRef task_;
};

}  // namespace tarvik::desktop
