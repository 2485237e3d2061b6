// Error: the one exception that a failing service, connection, recordset or builder throws.
// It carries a description for the operator and, beside it, a context for the developer.
// It does not log, does not translate and holds no stack.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tarvik::data {

// The kind of trouble, as far as the calling code must know it; the description is for people.
enum class Trouble {
  kOther,      // the statement itself, or its data: asking again gives the same answer
  kBusy,       // another holds what it needs; nothing was carried out
  kAway,       // there is no session with the server; nothing was carried out
  kLost,       // the session was lost on the way: nobody knows whether it was carried out
  kDuplicate,  // a row with this key is there already
  kSlow,       // it took longer than it may, and was stopped
};

// Example:
//   throw Error("La base está ocupada por otro proceso", Trouble::kBusy).With("sentencia", sql);
//
// what() is the description alone: it is what the box and the day's log show, unchanged. The
// context is for a debugger or an implementer's window and never becomes part of the description.
class Error : public std::runtime_error {
 public:
  explicit Error(const std::string& description, Trouble trouble = Trouble::kOther)
      : std::runtime_error(description), trouble_(trouble) {}

  [[nodiscard]] Trouble Kind() const { return trouble_; }
  // Whether waiting a moment may cure it: the act may be tried again, where doing it twice is safe.
  [[nodiscard]] bool Passing() const {
    return trouble_ == Trouble::kBusy || trouble_ == Trouble::kAway || trouble_ == Trouble::kLost;
  }

  Error With(std::string key, std::string value) && {
    context_.emplace_back(std::move(key), std::move(value));
    return std::move(*this);
  }
  // Adds context to an error that has been caught by reference, before `throw;`.
  void Add(std::string key, std::string value) { context_.emplace_back(std::move(key), std::move(value)); }

  [[nodiscard]] const std::vector<std::pair<std::string, std::string>>& Context() const { return context_; }

 private:
  Trouble trouble_ = Trouble::kOther;
  std::vector<std::pair<std::string, std::string>> context_;
};

// A failure that no trap of a procedure may treat as an ordinary one: the event ends, and the platform is
// told. Thrown where going on with the next statement would make it worse.
class Unrecoverable : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace tarvik::data
