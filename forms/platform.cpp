// The platform's common part: files with the machine's separators, and the loaded forms.
#include "forms/platform.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "data/error.h"
#include "forms/form.h"

namespace tarvik::forms {

namespace {

// The owner and the group, as far as the user's own mask lets them.
constexpr mode_t kPrivateFile = 0660;
constexpr mode_t kPrivateFolder = 0770;

std::string Reason(int code) {
  switch (code) {
    case ENOSPC:
      return "el disco está lleno";
    case EACCES:
    case EPERM:
      return "no hay permiso para escribir";
    case EROFS:
      return "el disco es de sólo lectura";
    case ENOENT:
      return "no existe la carpeta";
    case EISDIR:
      return "es una carpeta";
    case ENOTDIR:
      return "una parte de la ruta no es una carpeta";
    case ENAMETOOLONG:
      return "el nombre es demasiado largo";
    case ENOTEMPTY:
      return "la carpeta no está vacía";
    case EMFILE:
    case ENFILE:
      return "hay demasiados archivos abiertos";
    case EIO:
      return "el disco falla";
    case EDQUOT:
      return "no queda espacio para este usuario";
    default:
      return "error " + std::to_string(code) + " del sistema";
  }
}

data::Error FileError(const char* act, const std::string& path, int code) {
  return data::Error(std::string("No se puede ") + act + " el archivo " + path + ": " + Reason(code));
}

// A file descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int Get() const { return fd_; }

 private:
  int fd_;
};

}  // namespace

std::string NativePath(std::string_view path) {
  std::string native(path);
  if (std::filesystem::path::preferred_separator == '/')
    std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

std::error_code MakeFolders(const std::string& path) {
  std::filesystem::path made;
  for (const auto& part : std::filesystem::path(NativePath(path))) {
    made /= part;
    std::error_code ignored;
    if (std::filesystem::is_directory(made, ignored) || ::mkdir(made.c_str(), kPrivateFolder) == 0) continue;
    const int code = errno == EEXIST ? ENOTDIR : errno;
    if (std::filesystem::is_directory(made, ignored)) continue;  // another process has made it meanwhile
    return {code, std::generic_category()};
  }
  return {};
}

void MakePrivateFile(const std::string& path) {
  const Descriptor file(
      ::open(NativePath(path).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kPrivateFile));
}

void Platform::AppendFile(const std::string& path, std::string_view text) {
  std::filesystem::path native = NativePath(path);
  if (native.has_parent_path()) {
    if (const auto failed = MakeFolders(native.parent_path().string())) {
      throw FileError("crear", native.string(), failed.value());
    }
  }
  Descriptor file(::open(native.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, kPrivateFile));
  if (file.Get() < 0) throw FileError("abrir", native.string(), errno);
  while (!text.empty()) {
    ssize_t written = ::write(file.Get(), text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throw FileError("escribir", native.string(), errno);
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

bool Platform::FileExists(const std::string& path) {
  std::error_code failed;
  return std::filesystem::exists(NativePath(path), failed);
}

void Platform::DeleteFile(const std::string& path) {
  std::error_code failed;
  std::filesystem::remove(NativePath(path), failed);
  if (failed) throw FileError("borrar", NativePath(path), failed.value());
}

bool Platform::ShowBox(BoxKind kind, const std::string& text, int style) {
  const Standing box(*this);
  if (on_box_stands) on_box_stands(text);
  return Box(kind, text, style);
}

Form* Platform::ActiveForm() const {
  for (auto form = screens_.rbegin(); form != screens_.rend(); ++form) {
    if ((*form)->Visible()) return form->get();
  }
  return nullptr;
}

void Platform::Add(const std::shared_ptr<Form>& form) {
  screens_.push_back(form);
  ScreenLoaded(*form);
}

void Platform::Remove(Form& form) {
  auto found =
      std::find_if(screens_.begin(), screens_.end(), [&](auto& held) { return held.get() == &form; });
  if (found == screens_.end()) return;
  std::shared_ptr<Form> keep = *found;
  screens_.erase(found);
  if (on_form_gone) on_form_gone(form);
  ScreenUnloaded(form);
}

}  // namespace tarvik::forms
