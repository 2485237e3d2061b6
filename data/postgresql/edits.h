// Changes of a text, noted in any order and made at once.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/tokens.h"

namespace tarvik::data {

class Edits {
 public:
  Edits(std::string_view text, const Tokens& tokens) : text_(text), tokens_(tokens) {}

  // Puts a text in the place of the tokens from `first` to `last`, both included.
  void Replace(std::size_t first, std::size_t last, std::string with) {
    edits_.push_back({tokens_[first].at, tokens_[last].Behind(), std::move(with)});
  }
  // Several at one place keep their order.
  void InsertBehind(std::size_t token, std::string what) {
    edits_.push_back({tokens_[token].Behind(), tokens_[token].Behind(), std::move(what)});
  }
  [[nodiscard]] std::string_view Between(std::size_t first, std::size_t last) const {
    return TextOf(text_, tokens_, first, last);
  }

  [[nodiscard]] std::string Made() {
    std::stable_sort(edits_.begin(), edits_.end(), [](const Edit& a, const Edit& b) { return a.at < b.at; });
    std::string made;
    made.reserve(text_.size() + 64);
    std::size_t copied = 0;
    for (const Edit& edit : edits_) {
      if (edit.at < copied) continue;  // inside a part that another edit has replaced
      made += text_.substr(copied, edit.at - copied);
      made += edit.with;
      copied = edit.end;
    }
    return made.append(text_.substr(copied));
  }

 private:
  struct Edit {
    std::size_t at;
    std::size_t end;
    std::string with;
  };

  std::string_view text_;
  const Tokens& tokens_;
  std::vector<Edit> edits_;
};

}  // namespace tarvik::data
