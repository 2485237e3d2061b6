#include "tests/caos/proceso.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <stdexcept>

namespace tarvik::caos {

using Reloj = std::chrono::steady_clock;

Proceso::Proceso(const std::vector<std::string>& orden) {
  std::signal(SIGPIPE, SIG_IGN);
  int hacia[2];
  int desde[2];
  if (::pipe2(hacia, O_CLOEXEC) != 0 || ::pipe2(desde, O_CLOEXEC) != 0) {
    throw std::runtime_error("No se puede hacer un tubo");
  }
  std::vector<char*> argumentos;
  for (const std::string& palabra : orden) argumentos.push_back(const_cast<char*>(palabra.c_str()));
  argumentos.push_back(nullptr);
  pid_ = ::fork();
  if (pid_ == 0) {
    ::dup2(hacia[0], 0);
    ::dup2(desde[1], 1);
    ::execv(argumentos[0], argumentos.data());
    ::_exit(127);
  }
  ::close(hacia[0]);
  ::close(desde[1]);
  entrada_ = hacia[1];
  salida_ = desde[0];
  if (pid_ < 0) throw std::runtime_error("No se puede correr " + orden.front());
}

Proceso::~Proceso() {
  if (!codigo_) Mata();
  CierraEntrada();
  ::close(salida_);
}

std::optional<std::string> Proceso::Lee(std::chrono::milliseconds cuanto) {
  const auto limite = Reloj::now() + cuanto;
  for (;;) {
    const std::size_t fin = leido_.find('\n');
    if (fin != std::string::npos) {
      std::string linea = leido_.substr(0, fin);
      leido_.erase(0, fin + 1);
      return linea;
    }
    if (fin_) return {};
    const auto queda = std::chrono::duration_cast<std::chrono::milliseconds>(limite - Reloj::now());
    pollfd espera{salida_, POLLIN, 0};
    if (::poll(&espera, 1, std::max(0, static_cast<int>(queda.count()))) <= 0) return {};
    char trozo[4096];
    const ssize_t leidos = ::read(salida_, trozo, sizeof trozo);
    if (leidos <= 0) {
      fin_ = true;
    } else {
      leido_.append(trozo, static_cast<std::size_t>(leidos));
    }
  }
}

void Proceso::Escribe(const std::string& linea) {
  const std::string texto = linea + "\n";
  if (::write(entrada_, texto.data(), texto.size()) != static_cast<ssize_t>(texto.size())) CierraEntrada();
}

void Proceso::CierraEntrada() {
  if (entrada_ >= 0) ::close(entrada_);
  entrada_ = -1;
}

void Proceso::Senal(int cual) const {
  if (!codigo_) ::kill(pid_, cual);
}

void Proceso::Recoge() {
  if (codigo_) return;
  int estado = 0;
  ::waitpid(pid_, &estado, 0);
  codigo_ = WIFEXITED(estado) ? WEXITSTATUS(estado) : -WTERMSIG(estado);
}

std::vector<std::string> Proceso::Mata() {
  Senal(SIGKILL);
  Recoge();
  std::vector<std::string> lineas;
  while (auto linea = Lee(std::chrono::milliseconds(1000))) lineas.push_back(*linea);
  return lineas;
}

std::optional<int> Proceso::Termina(std::chrono::milliseconds cuanto,
                                    const std::function<void(const std::string&)>& oye) {
  const auto limite = Reloj::now() + cuanto;
  while (!fin_) {
    const auto queda = std::chrono::duration_cast<std::chrono::milliseconds>(limite - Reloj::now());
    if (queda.count() <= 0) return {};
    if (const auto linea = Lee(queda)) oye(*linea);
  }
  Recoge();
  return codigo_;
}

}  // namespace tarvik::caos
