#include "data/sqlite/side_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "data/error.h"
#include "data/text.h"

namespace tarvik::data::sqlite {
namespace {

struct flock Range(short kind, std::int64_t from, std::int64_t length) {
  struct flock range {};
  range.l_type = kind;
  range.l_whence = SEEK_SET;
  range.l_start = from;
  range.l_len = length;
  return range;
}

std::string ReasonOf(int code) { return std::generic_category().message(code); }

}  // namespace

void SideFile::Close() noexcept {
  if (fd_ >= 0) ::close(std::exchange(fd_, -1));
  may_lock_ = false;
}

bool SideFile::OpenToLock() {
  if (fd_ >= 0 && may_lock_) return true;
  Close();
  constexpr mode_t kPrivate = 0660;
  const int made = ::open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, kPrivate);
  const int code = errno;
  fd_ = made >= 0 ? made : ::open(path_.c_str(), O_RDWR | O_CLOEXEC);
  if (fd_ < 0) {
    reason_ = ReasonOf(errno == ENOENT ? code : errno);
    return false;
  }
  struct stat base {};
  // Whoever may write the base must be able to hold a byte here, and nobody else.
  if (made >= 0 && ::stat(base_.c_str(), &base) == 0) {
    if (::geteuid() == 0 && ::fchown(fd_, base.st_uid, base.st_gid) != 0) reason_ = ReasonOf(errno);
    if (::fchmod(fd_, base.st_mode & 0666) != 0) reason_ = ReasonOf(errno);
  }
  may_lock_ = true;
  return true;
}

bool SideFile::OpenToLook() {
  if (fd_ >= 0) return true;
  fd_ = ::open(path_.c_str(), O_RDWR | O_CLOEXEC);
  may_lock_ = fd_ >= 0;
  if (fd_ < 0 && errno != ENOENT) fd_ = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd_ >= 0) return true;
  if (errno == ENOENT) return false;
  throw Error("No se puede saber quién trabaja en la base; no se puede leer " + RepairUtf8(path_) + ": " +
              ReasonOf(errno));
}

bool SideFile::Hold(std::int64_t at) {
  struct flock range = Range(F_WRLCK, at, 1);
  if (::fcntl(fd_, F_OFD_SETLK, &range) == 0) return true;
  reason_ = errno == EAGAIN || errno == EACCES ? "" : ReasonOf(errno);
  return false;
}

void SideFile::LetGo(std::int64_t at) noexcept {
  struct flock range = Range(F_UNLCK, at, 1);
  ::fcntl(fd_, F_OFD_SETLK, &range);
}

std::optional<std::int64_t> SideFile::HeldByOther(std::int64_t from, std::int64_t end) {
  struct flock range = Range(F_WRLCK, from, end - from);
  if (::fcntl(fd_, F_OFD_GETLK, &range) != 0) {
    reason_ = ReasonOf(errno);
    return std::nullopt;
  }
  if (range.l_type == F_UNLCK) return std::nullopt;
  return range.l_start;
}

}  // namespace tarvik::data::sqlite
