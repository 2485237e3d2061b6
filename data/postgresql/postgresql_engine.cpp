// A base is its address, and the session that proved that it opens: the first connection takes that one.
#include "data/postgresql/postgresql_engine.h"

#include <memory>
#include <mutex>
#include <utility>

#include "data/postgresql/connection.h"
#include "data/postgresql/dial.h"

namespace tarvik::data {
namespace {

class PostgresqlBase final : public Base {
 public:
  explicit PostgresqlBase(std::string_view address)
      : place_(std::make_shared<Place>(address)), first_(DialFirst(*place_)) {}

  std::unique_ptr<EngineConnection> Connect() override {
    Handle session;
    {
      const std::lock_guard only(lock_);
      session = std::move(first_);
    }
    if (session == nullptr) session = DialFirst(*place_);
    return std::make_unique<PostgresqlConnection>(place_, std::move(session));
  }
  [[nodiscard]] std::string Address() const override { return place_->address.Shown(); }

 private:
  std::shared_ptr<Place> place_;
  std::mutex lock_;
  Handle first_;  // until somebody takes it
};

}  // namespace

std::unique_ptr<Base> OpenPostgresql(std::string_view address) {
  return std::make_unique<PostgresqlBase>(address);
}

}  // namespace tarvik::data
