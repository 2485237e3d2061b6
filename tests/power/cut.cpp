// What is left of a disk that was cut: the synced bytes, and dice for the rest.
#include <algorithm>
#include <utility>

#include "tests/power/disk.h"

namespace tarvik::tests {

namespace {
constexpr int kSector = 512;
}  // namespace

Cut::Cut(const Files& beginning) {
  int number = 0;
  for (const auto& [name, bytes] : beginning) {
    names_[name] = ++number;
    files_[number].synced = bytes;
  }
}

void Cut::Apply(Bytes& bytes, const DiskAct& act) {
  const auto at = static_cast<std::size_t>(act.at);
  if (act.kind == DiskAct::Kind::kTruncate) {
    bytes.resize(at);
    return;
  }
  if (bytes.size() < at + act.bytes.size()) bytes.resize(at + act.bytes.size());
  std::copy(act.bytes.begin(), act.bytes.end(), bytes.begin() + act.at);
}

void Cut::ApplyTorn(Bytes& bytes, const DiskAct& act, std::mt19937& dice) {
  const unsigned fate = dice() % 4;  // lost, whole, or (twice as likely) in pieces
  if (fate == 0) {
    // The folder may know of a length whose contents never came.
    const std::size_t end = static_cast<std::size_t>(act.at) + act.bytes.size();
    if (act.kind == DiskAct::Kind::kWrite && bytes.size() < end && dice() % 2 == 0) bytes.resize(end, 0xA5);
    return;
  }
  if (fate == 1 || act.kind != DiskAct::Kind::kWrite) {
    Apply(bytes, act);
    return;
  }
  for (std::size_t done = 0; done < act.bytes.size();) {
    const std::size_t in_sector = (static_cast<std::size_t>(act.at) + done) % kSector;
    const std::size_t size = std::min(kSector - in_sector, act.bytes.size() - done);
    const unsigned sector = dice() % 4;
    const std::size_t kept = sector == 0 ? 0 : sector == 1 ? dice() % (size + 1) : size;
    if (kept > 0) {
      const auto from = act.bytes.begin() + static_cast<std::ptrdiff_t>(done);
      Apply(bytes, {act.kind, act.file, "", act.at + static_cast<std::int64_t>(done),
                    Bytes(from, from + static_cast<std::ptrdiff_t>(kept))});
    }
    done += size;
  }
}

void Cut::Next(const DiskAct& act) {
  const auto sync_folder = [&] {
    for (const DiskAct& done : folder_) {
      if (done.kind == DiskAct::Kind::kMake) {
        names_[done.name] = done.file;
      } else {
        names_.erase(done.name);
      }
    }
    folder_.clear();
  };
  State& state = files_[act.file];
  switch (act.kind) {
    case DiskAct::Kind::kMake:
      folder_.push_back(act);
      break;
    case DiskAct::Kind::kRemove:
      folder_.push_back(act);
      if (act.folder) sync_folder();
      break;
    case DiskAct::Kind::kSync:
      for (const DiskAct& done : state.unsynced) Apply(state.synced, done);
      state.unsynced.clear();
      if (act.folder) sync_folder();
      break;
    default:
      state.unsynced.push_back(act);
  }
}

Files Cut::Found(std::uint32_t seed) const {
  std::mt19937 dice(seed);
  auto names = names_;
  // A folder's changes come in their order, as far as they came.
  const std::size_t came = dice() % (folder_.size() + 1);
  for (std::size_t i = 0; i < came; ++i) {
    if (folder_[i].kind == DiskAct::Kind::kMake) {
      names[folder_[i].name] = folder_[i].file;
    } else {
      names.erase(folder_[i].name);
    }
  }
  Files found;
  for (const auto& [name, number] : names) {
    const State& state = files_.at(number);
    Bytes bytes = state.synced;
    for (const DiskAct& act : state.unsynced) ApplyTorn(bytes, act, dice);
    found[name] = std::move(bytes);
  }
  return found;
}

Files Cut::Whole() const {
  auto names = names_;
  for (const DiskAct& act : folder_) {
    if (act.kind == DiskAct::Kind::kMake) {
      names[act.name] = act.file;
    } else {
      names.erase(act.name);
    }
  }
  Files whole;
  for (const auto& [name, number] : names) {
    const State& state = files_.at(number);
    Bytes bytes = state.synced;
    for (const DiskAct& act : state.unsynced) Apply(bytes, act);
    whole[name] = std::move(bytes);
  }
  return whole;
}

}  // namespace tarvik::tests
