#include "tests/caos/servidor.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <thread>
#include <vector>

#include "data/engine.h"
#include "data/error.h"

namespace tarvik::caos {

namespace fs = std::filesystem;

namespace {

// The newest of the installed ones.
std::string Programas() {
  std::vector<std::pair<int, std::string>> vistos;
  std::error_code falla;
  for (const auto& version : fs::directory_iterator("/usr/lib/postgresql", falla)) {
    vistos.emplace_back(std::atoi(version.path().filename().c_str()), (version.path() / "bin").string());
  }
  if (vistos.empty()) throw std::runtime_error("Falta el servidor de PostgreSQL");
  return std::max_element(vistos.begin(), vistos.end())->second;
}

// The server refuses to run as the administrator.
const passwd* OtroUsuario() {
  if (::geteuid() != 0) return nullptr;
  const passwd* otro = ::getpwnam("postgres");
  if (otro == nullptr) throw std::runtime_error("Falta el usuario postgres");
  return otro;
}

pid_t Corre(const std::vector<std::string>& orden, const fs::path& salida) {
  const passwd* otro = OtroUsuario();
  std::vector<char*> argumentos;
  for (const std::string& palabra : orden) argumentos.push_back(const_cast<char*>(palabra.c_str()));
  argumentos.push_back(nullptr);
  const pid_t pid = ::fork();
  if (pid != 0) return pid;
  const int archivo = ::open(salida.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0666);
  ::dup2(archivo, 1);
  ::dup2(archivo, 2);
  ::setpgid(0, 0);  // an interrupt from the keyboard is the test's
  if (otro != nullptr &&
      (::setgroups(0, nullptr) != 0 || ::setgid(otro->pw_gid) != 0 || ::setuid(otro->pw_uid) != 0)) {
    ::_exit(126);
  }
  ::execv(argumentos[0], argumentos.data());
  ::_exit(127);
}

}  // namespace

ServidorPropio::ServidorPropio() : programas_(Programas()) {
  if (const passwd* otro = OtroUsuario()) {
    if (::chown(carpeta_.Ruta().c_str(), otro->pw_uid, otro->pw_gid) != 0) {
      throw std::runtime_error("No se puede dar la carpeta al servidor");
    }
  }
  const pid_t pid = Corre({programas_ + "/initdb", "-D", (carpeta_.Ruta() / "base").string(), "-U", "tarvik",
                           "-A", "trust", "-E", "UTF8", "--locale=C.UTF-8", "--no-sync"},
                          carpeta_.Ruta() / "initdb.txt");
  int estado = 0;
  ::waitpid(pid, &estado, 0);
  if (estado != 0) throw std::runtime_error("No se puede preparar el servidor");
  Arranca();
}

ServidorPropio::~ServidorPropio() {
  if (pid_ > 0) Para(SIGQUIT);
}

ServidorPropio& ServidorPropio::ElMismo() {
  static ServidorPropio servidor;
  return servidor;
}

void ServidorPropio::Para(int senal) {
  ::kill(pid_, senal);
  ::waitpid(pid_, nullptr, 0);
  pid_ = -1;
}

void ServidorPropio::Arranca() {
  pid_ = Corre(
      {programas_ + "/postgres", "-D", (carpeta_.Ruta() / "base").string(), "-k", carpeta_.Ruta().string(),
       "-c", "listen_addresses=", "-c", "fsync=off", "-c", "max_connections=100", "-c", "autovacuum=off"},
      carpeta_.Ruta() / "servidor.txt");
  for (int vez = 0; vez < 600; ++vez) {
    try {
      data::OpenBase(Direccion("postgres"))->Connect()->Run("SELECT 1", {});
      return;
    } catch (const data::Error&) {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
  }
  throw std::runtime_error("El servidor no arranca");
}

std::string ServidorPropio::Direccion(const std::string& base, const std::string& por) const {
  return "postgresql://tarvik@/" + base + "?host=" + (por.empty() ? carpeta_.Ruta().string() : por);
}

std::string ServidorPropio::NuevaBase() {
  const std::string nombre = "caos_" + std::to_string(++bases_);
  data::OpenBase(Direccion("postgres"))
      ->Connect()
      ->Execute("CREATE DATABASE " + nombre + " TEMPLATE template0");
  return nombre;
}

void ServidorPropio::CortaSesiones(const std::string& base) {
  data::OpenBase(Direccion("postgres"))
      ->Connect()
      ->Run("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE datname = ?", {base});
}

}  // namespace tarvik::caos
