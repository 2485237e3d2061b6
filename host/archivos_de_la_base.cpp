#include "host/archivos_de_la_base.h"

#include <sys/stat.h>

#include <filesystem>

#include "data/error.h"
#include "data/text.h"
#include "forms/platform.h"

namespace tarvik::host {

namespace {

namespace fs = std::filesystem;

// The path with every link in it followed, the last one too, even where its target does not exist yet.
fs::path Seguida(fs::path path) {
  constexpr int kLinks = 40;
  std::error_code failed;
  path = fs::absolute(path, failed);
  for (int i = 0; i < kLinks && fs::is_symlink(fs::symlink_status(path, failed)); ++i) {
    path = path.parent_path() / fs::read_symlink(path, failed);
  }
  const fs::path folder = fs::weakly_canonical(path.parent_path(), failed);
  return (failed ? path.parent_path().lexically_normal() : folder) / path.filename();
}

// One file under two names, by what the file system says of it.
bool SonElMismo(const fs::path& one, const fs::path& other) {
  struct stat a {};
  struct stat b {};
  return ::stat(one.c_str(), &a) == 0 && ::stat(other.c_str(), &b) == 0 && a.st_dev == b.st_dev &&
         a.st_ino == b.st_ino;
}

}  // namespace

ArchivosDeLaBase::ArchivosDeLaBase(std::string_view direccion) {
  constexpr std::string_view kScheme = "sqlite:";
  if (!direccion.starts_with(kScheme)) return;
  direccion.remove_prefix(kScheme.size());
  if (direccion.empty() || direccion == ":memory:") return;
  std::error_code failed;
  const fs::path given = fs::absolute(fs::path(direccion), failed);
  const fs::path real = Seguida(given);
  carpeta_ = real.parent_path().string();
  nombre_ = real.filename().string();
  carpeta_del_enlace_ = given.parent_path().string();
  enlace_ = given.filename().string();
}

bool ArchivosDeLaBase::Incluye(const std::string& ruta) const {
  if (carpeta_.empty() || ruta.empty()) return false;
  const fs::path path = Seguida(forms::NativePath(ruta));
  const auto stands_in = [&](const std::string& folder, const std::string& name) {
    return path.filename().string().starts_with(name) &&
           (path.parent_path() == folder || SonElMismo(path.parent_path(), folder));
  };
  if (stands_in(carpeta_, nombre_) || stands_in(carpeta_del_enlace_, enlace_)) return true;
  // A second name of the same file.
  for (const char* end : {"", "-wal", "-shm", "-journal"}) {
    if (SonElMismo(path, fs::path(carpeta_) / (nombre_ + end))) return true;
  }
  return false;
}

void ArchivosDeLaBase::Rechaza(const std::string& ruta) const {
  if (!Incluye(ruta)) return;
  throw data::Error("El archivo " + data::RepairUtf8(ruta) +
                    " es de la base de datos: no se guarda nada en él. Elija otro nombre u otra carpeta");
}

}  // namespace tarvik::host
