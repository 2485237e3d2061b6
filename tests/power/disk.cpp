#include "tests/power/disk.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <set>
#include <stdexcept>
#include <utility>

namespace tarvik::tests {

namespace {
constexpr const char* kName = "tarvik-disco";
Disk* the_disk = nullptr;
std::recursive_mutex the_lock;
}  // namespace

struct Disk::File {
  int number = 0;  // 0: a temporary one, which nobody looks at behind a cut
  Bytes bytes;
  bool folder_synced = false;
  // Who has which lock: as the engine's own files know them.
  std::set<Open*> shared;
  Open* reserved = nullptr;
  Open* pending = nullptr;
  Open* exclusive = nullptr;
  // The index of the write-ahead log, which needs no disk.
  std::vector<std::unique_ptr<Bytes>> regions;
  std::array<std::set<Open*>, SQLITE_SHM_NLOCK> read_slots;
  std::array<Open*, SQLITE_SHM_NLOCK> write_slots{};
  int mapped = 0;
};

struct Disk::Open {
  sqlite3_file base;
  Disk* disk;
  std::shared_ptr<File> file;
  std::string name;
  bool journal;
  bool remove_at_end;
  bool mapped;
  int level;
};

// What the engine calls.
struct DiskCalls {
  using Guard = std::lock_guard<std::recursive_mutex>;
  static Disk::Open& Of(sqlite3_file* file) { return *reinterpret_cast<Disk::Open*>(file); }

  static int Close(sqlite3_file* raw) {
    const Guard guard(the_lock);
    Disk::Open& open = Of(raw);
    Unlock(raw, SQLITE_LOCK_NONE);
    if (open.remove_at_end) open.disk->files_.erase(open.name);
    std::destroy_at(&open);
    return SQLITE_OK;
  }

  static int Read(sqlite3_file* raw, void* into, int amount, sqlite3_int64 at) {
    const Guard guard(the_lock);
    const Bytes& bytes = Of(raw).file->bytes;
    const auto size = static_cast<sqlite3_int64>(bytes.size());
    const int there = static_cast<int>(std::clamp<sqlite3_int64>(size - at, 0, amount));
    if (there > 0) std::memcpy(into, bytes.data() + at, static_cast<std::size_t>(there));
    if (there == amount) return SQLITE_OK;
    std::memset(static_cast<char*>(into) + there, 0, static_cast<std::size_t>(amount - there));
    return SQLITE_IOERR_SHORT_READ;
  }

  static int Write(sqlite3_file* raw, const void* from, int amount, sqlite3_int64 at) {
    const Guard guard(the_lock);
    Disk::Open& open = Of(raw);
    if (open.file->number != 0) {
      if (open.disk->room_ == 0) {
        open.disk->was_full_ = true;
        return SQLITE_FULL;
      }
      if (open.disk->room_ > 0) --open.disk->room_;
      ++open.disk->writes_;
    }
    const auto* first = static_cast<const std::uint8_t*>(from);
    Bytes& bytes = open.file->bytes;
    const auto end = static_cast<std::size_t>(at) + static_cast<std::size_t>(amount);
    if (bytes.size() < end) bytes.resize(end);
    std::memcpy(bytes.data() + at, first, static_cast<std::size_t>(amount));
    if (open.file->number != 0) {
      open.disk->Did({DiskAct::Kind::kWrite, open.file->number, "", at, Bytes(first, first + amount)});
    }
    return SQLITE_OK;
  }

  static int Truncate(sqlite3_file* raw, sqlite3_int64 size) {
    const Guard guard(the_lock);
    Disk::Open& open = Of(raw);
    open.file->bytes.resize(static_cast<std::size_t>(size));
    if (open.file->number != 0) open.disk->Did({DiskAct::Kind::kTruncate, open.file->number, "", size, {}});
    return SQLITE_OK;
  }

  // The folder is synced with the first sync of a journal, as the engine does on a real disk.
  static int Sync(sqlite3_file* raw, int) {
    const Guard guard(the_lock);
    Disk::Open& open = Of(raw);
    if (open.file->number == 0) return SQLITE_OK;
    const bool folder = open.journal && !std::exchange(open.file->folder_synced, true);
    open.disk->Did({DiskAct::Kind::kSync, open.file->number, "", 0, {}, folder});
    return SQLITE_OK;
  }

  static int FileSize(sqlite3_file* raw, sqlite3_int64* size) {
    const Guard guard(the_lock);
    *size = static_cast<sqlite3_int64>(Of(raw).file->bytes.size());
    return SQLITE_OK;
  }

  static int Lock(sqlite3_file* raw, int level) {
    const Guard guard(the_lock);
    Disk::Open& open = Of(raw);
    Disk::File& file = *open.file;
    const auto others = [&](Disk::Open* holder) { return holder != nullptr && holder != &open; };
    if (level <= open.level) return SQLITE_OK;
    if (others(file.exclusive)) return SQLITE_BUSY;
    if (level == SQLITE_LOCK_SHARED) {
      if (others(file.pending)) return SQLITE_BUSY;
      file.shared.insert(&open);
    } else if (level == SQLITE_LOCK_RESERVED) {
      if (others(file.reserved)) return SQLITE_BUSY;
      file.reserved = &open;
    } else {
      if (others(file.reserved) || others(file.pending)) return SQLITE_BUSY;
      file.pending = &open;
      if (level == SQLITE_LOCK_EXCLUSIVE) {
        if (file.shared.size() > 1 || (file.shared.size() == 1 && !file.shared.contains(&open))) {
          open.level = std::max(open.level, SQLITE_LOCK_PENDING);
          return SQLITE_BUSY;
        }
        file.exclusive = &open;
      }
    }
    open.level = level;
    return SQLITE_OK;
  }

  static int Unlock(sqlite3_file* raw, int level) {
    const Guard guard(the_lock);
    Disk::Open& open = Of(raw);
    Disk::File& file = *open.file;
    if (level >= open.level) return SQLITE_OK;
    for (Disk::Open** holder : {&file.reserved, &file.pending, &file.exclusive}) {
      if (*holder == &open) *holder = nullptr;
    }
    if (level == SQLITE_LOCK_NONE) file.shared.erase(&open);
    open.level = level;
    return SQLITE_OK;
  }

  static int CheckReserved(sqlite3_file* raw, int* held) {
    const Guard guard(the_lock);
    const Disk::File& file = *Of(raw).file;
    *held = file.reserved != nullptr || file.pending != nullptr || file.exclusive != nullptr;
    return SQLITE_OK;
  }

  static int Control(sqlite3_file*, int, void*) { return SQLITE_NOTFOUND; }
  static int SectorSize(sqlite3_file*) { return 4096; }
  // As on a real disk: a write that is cut short damages nothing beside what it writes.
  static int Characteristics(sqlite3_file*) { return SQLITE_IOCAP_POWERSAFE_OVERWRITE; }

  static int ShmMap(sqlite3_file* raw, int region, int size, int extend, void volatile** memory) {
    const Guard guard(the_lock);
    Disk::Open& open = Of(raw);
    if (!std::exchange(open.mapped, true)) ++open.file->mapped;
    auto& regions = open.file->regions;
    *memory = nullptr;
    if (static_cast<std::size_t>(region) >= regions.size() && extend == 0) return SQLITE_OK;
    while (regions.size() <= static_cast<std::size_t>(region)) {
      regions.push_back(std::make_unique<Bytes>(static_cast<std::size_t>(size)));
    }
    *memory = regions[static_cast<std::size_t>(region)]->data();
    return SQLITE_OK;
  }

  static int ShmLock(sqlite3_file* raw, int first, int count, int flags) {
    const Guard guard(the_lock);
    Disk::Open& open = Of(raw);
    Disk::File& file = *open.file;
    for (int pass = 0; pass < 2; ++pass) {
      for (int i = first; i < first + count; ++i) {
        auto& readers = file.read_slots[static_cast<std::size_t>(i)];
        Disk::Open*& writer = file.write_slots[static_cast<std::size_t>(i)];
        if ((flags & SQLITE_SHM_UNLOCK) != 0) {
          readers.erase(&open);
          if (writer == &open) writer = nullptr;
          continue;
        }
        const bool alone = readers.empty() || (readers.size() == 1 && readers.contains(&open));
        const bool taken = writer != nullptr && writer != &open;
        const bool shared = (flags & SQLITE_SHM_SHARED) != 0;
        if (taken || (!shared && !alone)) return SQLITE_BUSY;
        if (pass == 1 && shared) readers.insert(&open);
        if (pass == 1 && !shared) writer = &open;
      }
    }
    return SQLITE_OK;
  }

  static void ShmBarrier(sqlite3_file*) { const Guard guard(the_lock); }

  static int ShmUnmap(sqlite3_file* raw, int) {
    const Guard guard(the_lock);
    Disk::Open& open = Of(raw);
    if (std::exchange(open.mapped, false) && --open.file->mapped == 0) open.file->regions.clear();
    return SQLITE_OK;
  }

  static const sqlite3_io_methods* Methods() {
    static const sqlite3_io_methods methods{.iVersion = 2,
                                            .xClose = Close,
                                            .xRead = Read,
                                            .xWrite = Write,
                                            .xTruncate = Truncate,
                                            .xSync = Sync,
                                            .xFileSize = FileSize,
                                            .xLock = Lock,
                                            .xUnlock = Unlock,
                                            .xCheckReservedLock = CheckReserved,
                                            .xFileControl = Control,
                                            .xSectorSize = SectorSize,
                                            .xDeviceCharacteristics = Characteristics,
                                            .xShmMap = ShmMap,
                                            .xShmLock = ShmLock,
                                            .xShmBarrier = ShmBarrier,
                                            .xShmUnmap = ShmUnmap,
                                            .xFetch = nullptr,
                                            .xUnfetch = nullptr};
    return &methods;
  }

  static int OpenFile(sqlite3_vfs*, const char* name, sqlite3_file* raw, int flags, int* out) {
    const Guard guard(the_lock);
    raw->pMethods = nullptr;
    std::shared_ptr<Disk::File> file;
    Disk& disk = *the_disk;
    if (name == nullptr) {
      file = std::make_shared<Disk::File>();
    } else if (const auto found = disk.files_.find(name); found != disk.files_.end()) {
      file = found->second;
    } else if ((flags & SQLITE_OPEN_CREATE) != 0) {
      file = std::make_shared<Disk::File>();
      file->number = ++disk.made_;
      disk.files_[name] = file;
      disk.Did({DiskAct::Kind::kMake, file->number, name, 0, {}});
    } else {
      return SQLITE_CANTOPEN;
    }
    constexpr int kJournals = SQLITE_OPEN_WAL | SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_SUPER_JOURNAL;
    new (raw) Disk::Open{{Methods()},
                         &disk,
                         std::move(file),
                         name != nullptr ? name : "",
                         (flags & kJournals) != 0,
                         name != nullptr && (flags & SQLITE_OPEN_DELETEONCLOSE) != 0,
                         false,
                         SQLITE_LOCK_NONE};
    if (out != nullptr) *out = flags;
    return SQLITE_OK;
  }

  static int Delete(sqlite3_vfs*, const char* name, int sync_folder) {
    const Guard guard(the_lock);
    Disk& disk = *the_disk;
    const auto found = disk.files_.find(name);
    if (found == disk.files_.end()) return SQLITE_IOERR_DELETE_NOENT;
    disk.Did({DiskAct::Kind::kRemove, found->second->number, name, 0, {}, sync_folder != 0});
    disk.files_.erase(found);
    return SQLITE_OK;
  }

  static int Access(sqlite3_vfs*, const char* name, int flags, int* result) {
    const Guard guard(the_lock);
    const auto found = the_disk->files_.find(name);
    *result =
        found != the_disk->files_.end() && (flags != SQLITE_ACCESS_EXISTS || !found->second->bytes.empty());
    return SQLITE_OK;
  }

  static int FullName(sqlite3_vfs*, const char* name, int size, char* into) {
    sqlite3_snprintf(size, into, "%s", name);
    return SQLITE_OK;
  }

  // The machine's own, but for its files.
  static sqlite3_vfs* Vfs() {
    static sqlite3_vfs vfs = [] {
      sqlite3_vfs made = *sqlite3_vfs_find(nullptr);
      made.szOsFile = sizeof(Disk::Open);
      made.zName = kName;
      made.pNext = nullptr;
      made.xOpen = OpenFile;
      made.xDelete = Delete;
      made.xAccess = Access;
      made.xFullPathname = FullName;
      return made;
    }();
    return &vfs;
  }
};

Disk::Disk(Files files) {
  if (the_disk != nullptr) throw std::logic_error("one disk at a time");
  for (auto& [name, bytes] : files) {
    auto file = std::make_shared<File>();
    file->number = ++made_;
    file->bytes = std::move(bytes);
    files_[name] = std::move(file);
  }
  sqlite3_initialize();
  sqlite3_vfs_register(DiskCalls::Vfs(), 1);
  the_disk = this;
}

Disk::~Disk() {
  the_disk = nullptr;
  sqlite3_vfs_unregister(DiskCalls::Vfs());
}

Files Disk::Contents() const {
  Files contents;
  for (const auto& [name, file] : files_) contents[name] = file->bytes;
  return contents;
}

}  // namespace tarvik::tests
