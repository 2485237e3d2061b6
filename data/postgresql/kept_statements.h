// The prepared statements of a session: the latest used ones. It asks the server nothing.
#pragma once

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/postgresql/dialect.h"
#include "data/postgresql/library.h"

namespace tarvik::data {

class KeptStatements {
 public:
  struct Kept {
    std::string text;  // as it was written
    std::shared_ptr<const Told> told;
    std::string name;
    std::vector<Oid> types;  // of its values
  };

  // nullptr if it isn't kept.
  const Kept* Find(std::string_view text) {
    const auto found = by_text_.find(text);
    if (found == by_text_.end()) return nullptr;
    kept_.splice(kept_.begin(), kept_, found->second);
    return &kept_.front();
  }
  std::string NewName() { return "t" + std::to_string(++names_); }
  const Kept& Put(Kept statement) {
    kept_.push_front(std::move(statement));
    by_text_[kept_.front().text] = kept_.begin();
    return kept_.front();
  }
  // The name of the one that has to go, and is forgotten; empty while there is room.
  std::string TooMany() { return kept_.size() > kMost ? Forget(std::prev(kept_.end())) : std::string(); }
  // The same of a given one; empty if it isn't kept.
  std::string Forget(std::string_view text) {
    const auto found = by_text_.find(text);
    return found == by_text_.end() ? std::string() : Forget(found->second);
  }
  void ForgetAll() noexcept {
    by_text_.clear();
    kept_.clear();
  }

 private:
  static constexpr std::size_t kMost = 64;

  std::string Forget(std::list<Kept>::iterator kept) {
    std::string name = std::move(kept->name);
    by_text_.erase(kept->text);
    kept_.erase(kept);
    return name;
  }

  std::list<Kept> kept_;  // the latest used first
  std::unordered_map<std::string_view, std::list<Kept>::iterator> by_text_;
  unsigned long names_ = 0;
};

}  // namespace tarvik::data
