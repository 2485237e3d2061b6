// The file is written beside the one that is there, which it then replaces.
#include "host/archivo_entero.h"

#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>

#include "forms/platform.h"

namespace tarvik::host {

std::error_code EscribeEntero(const std::filesystem::path& path, std::string_view text) {
  const std::filesystem::path part = path.string() + "." + std::to_string(::getpid()) + ".parcial";
  forms::MakePrivateFile(part.string());
  errno = 0;
  std::ofstream file(part, std::ios::binary | std::ios::trunc);
  file << text;
  file.close();
  std::error_code failed;
  if (file) std::filesystem::rename(part, path, failed);
  if (!file) failed = std::error_code(errno != 0 ? errno : EIO, std::generic_category());
  std::error_code ignored;
  if (failed) std::filesystem::remove(part, ignored);
  return failed;
}

}  // namespace tarvik::host
