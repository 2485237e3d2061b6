// An empty file beside a base: programs lock its bytes, each through an open file description of its own. So
// a lock ends with its connection and its process, whatever happens to them, and no other close() of the file
// releases it. The base's own file is never touched: the locks on that are the
// engine's.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tarvik::data::sqlite {

inline constexpr const char* kSideFileEnd = "-vidas";

// Offsets below kFirstTicket are numbers of lives; from there on they are points in time, by which those who
// wait for the base's write lock are queued.
inline constexpr std::int64_t kFirstTicket = std::int64_t{1} << 62;

class SideFile {
 public:
  explicit SideFile(const std::string& base) : base_(base), path_(base + kSideFileEnd) {}
  ~SideFile() { Close(); }
  SideFile(const SideFile&) = delete;
  SideFile& operator=(const SideFile&) = delete;

  // Opens it for locking, and makes it if it is not there: as private as the base. False if it can't be had;
  // Reason() then says why. It is tried once more at each call.
  bool OpenToLock();
  // Opens it for looking. False if nobody has ever made it. Throws Error if it is there and can't be looked
  // at.
  bool OpenToLook();
  [[nodiscard]] const std::string& Reason() const { return reason_; }
  [[nodiscard]] const std::string& Path() const { return path_; }
  void Close() noexcept;

  // For all three the file is open. False if another holds that byte; or if there are no such locks here, and
  // then Reason() says so.
  bool Hold(std::int64_t at);
  void LetGo(std::int64_t at) noexcept;
  // The first byte that another holds from `from` to `end` (not included); nothing if none is held.
  std::optional<std::int64_t> HeldByOther(std::int64_t from, std::int64_t end);

 private:
  std::string base_;
  std::string path_;
  std::string reason_;
  int fd_ = -1;
  bool may_lock_ = false;
};

}  // namespace tarvik::data::sqlite
