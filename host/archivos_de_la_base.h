// ArchivosDeLaBase: which files are a base's own. The engine alone opens them: if other
// code of the process closes one of them, the engine's locks are lost, and a file that is overwritten is
// a base that is lost. It looks at names and at what a file is, and opens nothing.
#pragma once

#include <string>
#include <string_view>

namespace tarvik::host {

// Example:
//   const ArchivosDeLaBase base(host.Base().Address());
//   base.Rechaza(path);  // before anything is saved there
class ArchivosDeLaBase {
 public:
  ArchivosDeLaBase() = default;  // of no base: nothing is its file
  // "sqlite:almacen.db". A base on a server or in memory has no files here.
  explicit ArchivosDeLaBase(std::string_view direccion);

  // True for the base, its journals, and whatever in its folder begins with its name; by whatever
  // path, a link included. False for a path that can't be looked at.
  [[nodiscard]] bool Incluye(const std::string& ruta) const;
  // Throws data::Error, in Spanish and with the path, where Incluye() is true.
  void Rechaza(const std::string& ruta) const;

 private:
  std::string carpeta_;  // where the file really is; empty: no files
  std::string nombre_;
  std::string enlace_;  // the name in the address, where that is another: a link to the file
  std::string carpeta_del_enlace_;
};

}  // namespace tarvik::host
