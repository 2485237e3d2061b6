// ServidorPropio: a database server of a test's own, to be stopped in any way and started again. It commits
// as a shop's would (a commit outlives the server's death), but leaves the disk to the operating system.
#pragma once

#include <sys/types.h>

#include <csignal>
#include <string>

#include "tests/caos/tienda.h"

namespace tarvik::caos {

class ServidorPropio {
 public:
  ServidorPropio();  // throws std::runtime_error if there is none to start
  ~ServidorPropio();
  ServidorPropio(const ServidorPropio&) = delete;
  ServidorPropio& operator=(const ServidorPropio&) = delete;

  // One for the whole program, started at the first call.
  static ServidorPropio& ElMismo();

  // SIGINT: fast. SIGQUIT: at once, as if killed.
  void Para(int senal);
  void Arranca();  // returns when it answers
  // A new base's address; `por` is the folder of the socket that leads to it, by default the server's own.
  std::string Direccion(const std::string& base, const std::string& por = "") const;
  std::string NuevaBase();  // its name
  // The socket that the server listens on.
  [[nodiscard]] std::string Enchufe() const { return (carpeta_.Ruta() / ".s.PGSQL.5432").string(); }
  // Ends every session of that base but the caller's.
  void CortaSesiones(const std::string& base);

 private:
  void Llama(const std::string& programa) const;

  Carpeta carpeta_;
  std::string programas_;
  pid_t pid_ = -1;
  int bases_ = 0;
};

}  // namespace tarvik::caos
