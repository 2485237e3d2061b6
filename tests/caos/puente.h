// Puente: a wire between stations and a server, in the test's hands. It passes on what comes, until it is
// told to cut, to swallow an answer, or to stand still.
#pragma once

#include <atomic>
#include <list>
#include <string>
#include <thread>

#include "tests/caos/tienda.h"

namespace tarvik::caos {

class Puente {
 public:
  // Leads to that socket. Throws std::runtime_error if it can't listen.
  explicit Puente(std::string destino);
  ~Puente();
  Puente(const Puente&) = delete;
  Puente& operator=(const Puente&) = delete;

  // The folder of the socket that stations connect to.
  [[nodiscard]] std::string Carpeta() const { return carpeta_.Ruta().string(); }

  void Corta() { corta_ = true; }
  // The next answer of the server is lost, and its connection with it: what was asked for has been done.
  void PierdeRespuesta() { pierde_ = true; }
  // Nothing passes for that long.
  void Detiene(std::chrono::milliseconds cuanto);
  [[nodiscard]] int Perdidas() const { return perdidas_; }

 private:
  struct Par {
    int estacion;
    int servidor;
  };

  void Corre();
  void Acepta();
  // False: the pair is over.
  bool Pasa(int de, int a, bool respuesta);
  void Cierra(const Par& par);

  caos::Carpeta carpeta_;
  std::string destino_;
  int oido_ = -1;
  std::list<Par> pares_;
  std::atomic<bool> termina_{false}, corta_{false}, pierde_{false};
  std::atomic<long long> detenido_hasta_{0};
  std::atomic<int> perdidas_{0};
  std::thread hilo_;
};

}  // namespace tarvik::caos
