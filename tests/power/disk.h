// A disk of the tests' own under the embedded engine. It keeps what programs see, remembers in which order it
// was written and what was synced, and can be cut or full at any point. It lives in memory, for one process.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <vector>

namespace tarvik::tests {

using Bytes = std::vector<std::uint8_t>;
using Files = std::map<std::string, Bytes>;  // by their whole names

// One thing that was done to the disk.
struct DiskAct {
  enum class Kind { kMake, kWrite, kTruncate, kSync, kRemove };
  Kind kind;
  int file;          // each file that was made has a number of its own, whatever its name
  std::string name;  // of kMake and kRemove
  std::int64_t at = 0;
  Bytes bytes;          // of kWrite
  bool folder = false;  // the folder is synced with it
};

// While it lives, every base that the engine opens by a path stands on this disk.
class Disk {
 public:
  explicit Disk(Files files = {});
  ~Disk();
  Disk(const Disk&) = delete;
  Disk& operator=(const Disk&) = delete;

  // What was done since the disk was made, with the files that it was made with as its beginning.
  [[nodiscard]] const std::vector<DiskAct>& Acts() const { return acts_; }
  [[nodiscard]] Files Contents() const;

  // So many more writes go through; each later one is answered with "disk full", until there is room again.
  void FullAfter(std::int64_t writes) { room_ = writes; }
  void RoomAgain() { room_ = -1; }
  [[nodiscard]] std::int64_t Writes() const { return writes_; }
  [[nodiscard]] bool WasFull() const { return was_full_; }

  struct File;
  struct Open;  // one opening of a file
  friend struct DiskCalls;

 private:
  void Did(DiskAct act) { acts_.push_back(std::move(act)); }

  std::map<std::string, std::shared_ptr<File>> files_;
  std::vector<DiskAct> acts_;
  int made_ = 0;
  std::int64_t room_ = -1;
  std::int64_t writes_ = 0;
  bool was_full_ = false;
};

// What a disk holds after the power went away behind so many acts: what was synced, and of the rest whatever
// the dice say, in pieces of a sector.
class Cut {
 public:
  explicit Cut(const Files& beginning);
  // Goes on by one act.
  void Next(const DiskAct& act);
  // The files as they are found when the power is back; the same seed gives the same.
  [[nodiscard]] Files Found(std::uint32_t seed) const;
  // The same where everything that was written is there.
  [[nodiscard]] Files Whole() const;

 private:
  struct State {
    Bytes synced;
    std::vector<DiskAct> unsynced;
  };
  static void Apply(Bytes& bytes, const DiskAct& act);
  static void ApplyTorn(Bytes& bytes, const DiskAct& act, std::mt19937& dice);

  std::map<int, State> files_;
  std::map<std::string, int> names_;  // as the folder was last synced
  std::vector<DiskAct> folder_;       // made and removed since
};

}  // namespace tarvik::tests
