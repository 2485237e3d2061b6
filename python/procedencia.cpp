#include "python/procedencia.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "data/error.h"

namespace tarvik::python {

namespace {

namespace fs = std::filesystem;

constexpr const char* kCarpetaDeTodos = "no se carga: cualquiera puede escribir en su carpeta";

class Abierto {
 public:
  explicit Abierto(int descriptor) : descriptor_(descriptor) {}
  ~Abierto() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Abierto(const Abierto&) = delete;
  Abierto& operator=(const Abierto&) = delete;
  [[nodiscard]] int operator*() const { return descriptor_; }

 private:
  int descriptor_;
};

[[noreturn]] void NoSeLee() {
  throw data::Error(std::string("no se puede leer el archivo (") + std::strerror(errno) + ")");
}

bool EsDeTodos(mode_t folder) { return (folder & S_IWOTH) != 0 && (folder & S_ISVTX) == 0; }

// The folder that holds the open file, whatever links led to it.
struct stat CarpetaDe(int file, const struct stat& known) {
  std::error_code failed;
  const fs::path real = fs::read_symlink("/proc/self/fd/" + std::to_string(file), failed);
  const Abierto folder(::open(real.parent_path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  struct stat found {};
  struct stat there {};
  if (failed || *folder < 0 || ::fstat(*folder, &found) != 0 ||
      ::fstatat(*folder, real.filename().c_str(), &there, AT_SYMLINK_NOFOLLOW) != 0) {
    NoSeLee();
  }
  if (there.st_dev != known.st_dev || there.st_ino != known.st_ino) {
    throw data::Error("no se carga: cambió mientras se leía");
  }
  return found;
}

}  // namespace

std::string PorQueNoSeCarga(const Procedencia& facts) {
  constexpr uid_t kRoot = 0;
  if (facts.dueno != facts.usuario && facts.dueno != kRoot && facts.dueno != facts.dueno_de_carpeta) {
    return "no se carga: no es de quien usa el programa, ni del administrador del equipo, ni del dueño de su "
           "carpeta";
  }
  if ((facts.modo & S_IWOTH) != 0) return "no se carga: cualquiera puede escribir en él";
  if (EsDeTodos(facts.modo_de_carpeta)) return kCarpetaDeTodos;
  return {};
}

std::string LeeRutina(const std::string& path) {
  // Not waiting: what looks like a file may be a pipe that nobody writes to.
  const Abierto file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat facts {};
  if (*file < 0 || ::fstat(*file, &facts) != 0) NoSeLee();
  if (!S_ISREG(facts.st_mode)) throw data::Error("no se carga: no es un archivo corriente");
  const struct stat folder = CarpetaDe(*file, facts);
  const std::string why =
      PorQueNoSeCarga({::geteuid(), facts.st_uid, facts.st_mode, folder.st_uid, folder.st_mode});
  if (!why.empty()) throw data::Error(why);
  struct stat named {};
  if (::stat(fs::path(path).parent_path().c_str(), &named) != 0) NoSeLee();
  if (EsDeTodos(named.st_mode)) throw data::Error(kCarpetaDeTodos);

  std::string text;
  char piece[1 << 16];
  for (ssize_t taken = 0; (taken = ::read(*file, piece, sizeof piece)) != 0;) {
    if (taken < 0 && errno == EINTR) continue;
    if (taken < 0) NoSeLee();
    text.append(piece, static_cast<std::size_t>(taken));
  }
  return text;
}

}  // namespace tarvik::python
