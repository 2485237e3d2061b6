#include "tests/caos/puente.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace tarvik::caos {

namespace {

long long Ahora() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

sockaddr_un Lugar(const std::string& ruta) {
  sockaddr_un lugar{};
  lugar.sun_family = AF_UNIX;
  if (ruta.size() >= sizeof lugar.sun_path)
    throw std::runtime_error("La ruta del enchufe es muy larga: " + ruta);
  std::memcpy(lugar.sun_path, ruta.c_str(), ruta.size() + 1);
  return lugar;
}

int Enchufe() { return ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0); }

}  // namespace

Puente::Puente(std::string destino) : destino_(std::move(destino)) {
  const sockaddr_un lugar = Lugar((carpeta_.Ruta() / ".s.PGSQL.5432").string());
  oido_ = Enchufe();
  if (::bind(oido_, reinterpret_cast<const sockaddr*>(&lugar), sizeof lugar) != 0 ||
      ::listen(oido_, 64) != 0) {
    throw std::runtime_error("No se puede escuchar en " + std::string(lugar.sun_path));
  }
  hilo_ = std::thread([this] { Corre(); });
}

Puente::~Puente() {
  termina_ = true;
  hilo_.join();
  for (const Par& par : pares_) Cierra(par);
  ::close(oido_);
}

void Puente::Detiene(std::chrono::milliseconds cuanto) { detenido_hasta_ = Ahora() + cuanto.count(); }

void Puente::Cierra(const Par& par) {
  ::close(par.estacion);
  ::close(par.servidor);
}

void Puente::Acepta() {
  const int estacion = ::accept(oido_, nullptr, nullptr);
  if (estacion < 0) return;
  const sockaddr_un lugar = Lugar(destino_);
  const int servidor = Enchufe();
  if (::connect(servidor, reinterpret_cast<const sockaddr*>(&lugar), sizeof lugar) != 0) {
    ::close(estacion);
    ::close(servidor);
    return;
  }
  pares_.push_back({estacion, servidor});
}

bool Puente::Pasa(int de, int a, bool respuesta) {
  char trozo[16384];
  const ssize_t leidos = ::recv(de, trozo, sizeof trozo, 0);
  if (leidos <= 0) return false;
  if (respuesta && pierde_.exchange(false)) {
    ++perdidas_;
    return false;
  }
  for (ssize_t van = 0; van < leidos;) {
    const ssize_t pasados = ::send(a, trozo + van, static_cast<std::size_t>(leidos - van), MSG_NOSIGNAL);
    if (pasados <= 0) return false;
    van += pasados;
  }
  return true;
}

void Puente::Corre() {
  while (!termina_) {
    if (corta_.exchange(false)) {
      for (const Par& par : pares_) Cierra(par);
      pares_.clear();
    }
    if (Ahora() < detenido_hasta_) {
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
      continue;
    }
    std::vector<pollfd> esperas{{oido_, POLLIN, 0}};
    for (const Par& par : pares_) {
      esperas.push_back({par.estacion, POLLIN, 0});
      esperas.push_back({par.servidor, POLLIN, 0});
    }
    if (::poll(esperas.data(), esperas.size(), 2) <= 0) continue;
    std::size_t cual = 1;
    for (auto par = pares_.begin(); par != pares_.end(); cual += 2) {
      bool sigue = true;
      if (esperas[cual].revents != 0) sigue = Pasa(par->estacion, par->servidor, false);
      if (sigue && esperas[cual + 1].revents != 0) sigue = Pasa(par->servidor, par->estacion, true);
      if (!sigue) Cierra(*par);
      par = sigue ? std::next(par) : pares_.erase(par);
    }
    if (esperas[0].revents != 0) Acepta();
  }
}

}  // namespace tarvik::caos
