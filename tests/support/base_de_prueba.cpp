#include "tests/support/base_de_prueba.h"

#include <unistd.h>

#include <cstdlib>
#include <deque>
#include <memory>

#include "data/engine.h"
#include "data/schema.h"
#include "host/preparacion.h"

namespace tarvik::tests {
namespace {

std::string Dada() {
  const char* dada = std::getenv("TARVIK_TEST_BASE");
  return dada != nullptr ? dada : "sqlite::memory:";
}

bool EsDeServidor(const std::string& direccion) { return direccion.rfind("postgresql:", 0) == 0; }

// The same server, another base.
std::string ConBase(const std::string& direccion, const std::string& nombre) {
  const std::size_t despues = direccion.find('/', direccion.find("//") + 2);
  const std::size_t opciones = std::min(direccion.find('?'), direccion.size());
  return direccion.substr(0, despues + 1) + nombre + direccion.substr(opciones);
}

// The session that makes bases and drops them, and the one that they are copied from.
class Servidor {
 public:
  explicit Servidor(const std::string& direccion)
      : base_(data::OpenBase(direccion)),
        sesion_(base_->Connect()),
        modelo_("tarvik_modelo_" + std::to_string(::getpid())) {
    sesion_->Execute("CREATE DATABASE " + modelo_);
    const auto conexion = data::OpenBase(ConBase(direccion, modelo_))->Connect();
    data::PrepareSchema(*conexion);
    host::PonPrimerosContenidos(*conexion);
  }
  ~Servidor() {
    for (const std::string& nombre : dejadas_) Quita(nombre);
    Quita(modelo_);
  }
  Servidor(const Servidor&) = delete;
  Servidor& operator=(const Servidor&) = delete;

  std::string Haz(BaseDePrueba::Con con) {
    std::string nombre = "tarvik_" + std::to_string(::getpid()) + "_" + std::to_string(++cuantas_);
    const bool copia = con == BaseDePrueba::Con::kTablas;
    sesion_->Execute("CREATE DATABASE " + nombre + " TEMPLATE " + (copia ? modelo_ : "template0"));
    return nombre;
  }
  // A base whose sessions are just ending would make the server wait for them: it is dropped some tests
  // later.
  void Deja(std::string nombre) {
    dejadas_.push_back(std::move(nombre));
    if (dejadas_.size() <= kDejadas) return;
    Quita(dejadas_.front());
    dejadas_.pop_front();
  }

 private:
  static constexpr std::size_t kDejadas = 4;

  void Quita(const std::string& nombre) noexcept {
    try {
      sesion_->Execute("DROP DATABASE IF EXISTS " + nombre + " WITH (FORCE)");
    } catch (...) {  // it ends with the server
    }
  }

  std::unique_ptr<data::Base> base_;
  std::unique_ptr<data::EngineConnection> sesion_;
  std::string modelo_;
  std::deque<std::string> dejadas_;
  int cuantas_ = 0;
};

Servidor& ElServidor() {
  static Servidor servidor(Dada());
  return servidor;
}

}  // namespace

BaseDePrueba::BaseDePrueba(Con con) : direccion_(Dada()) {
  if (!EsDeServidor(direccion_)) return;
  nombre_ = ElServidor().Haz(con);
  direccion_ = ConBase(direccion_, nombre_);
}

BaseDePrueba::~BaseDePrueba() {
  if (!nombre_.empty()) ElServidor().Deja(std::move(nombre_));
}

}  // namespace tarvik::tests
