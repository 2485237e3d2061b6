// What stands behind a script's `tarvik.Anfitrion`: the stand-alone host on a platform without a window,
// and the notebook in which a script reads what happened and finds its own functions.
#pragma once

#include <pybind11/pybind11.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "forms/headless_platform.h"
#include "host/anfitrion.h"
#include "host/testimonio.h"
#include "python/binding.h"
#include "python/descripcion.h"

namespace tarvik::python {

// What a script reads and sets: its lists, its answers, its functions.
struct Cuaderno {
  py::list sentencias, mensajes, listas, respuestas, ganchos_disparados, movimientos, impresos, navegado,
      presentadas, regresadas, selectores, no_atrapados, pantallas, llamadas;
  py::dict ganchos;
  py::object ahora = py::none(), al_mostrar_modal = py::none(), al_mostrar_selector = py::none(),
             al_mostrar_caja = py::none();
  int pitidos = 0;
  py::object ultima;  // the last statement, as listed
  std::string texto_de_la_ultima;
};

// The host itself. Every screen and control keeps it alive; the script's notebook may go before it,
// and from then on nothing is kept any more.
class Nucleo final : public host::Testimonio,
                     public host::Selector,
                     public std::enable_shared_from_this<Nucleo> {
 public:
  Nucleo(const std::string& base, const std::string& usuario, const std::string& estacion,
         const std::string& ruta, bool demo, Cuaderno& notebook);

  host::Anfitrion& Host() { return *anfitrion_; }
  host::AmbienteLocal& Ambiente() { return anfitrion_->Ambiente(); }
  // As a script holds them: whoever has one has the host.
  std::shared_ptr<host::AmbienteLocal> AmbientePropio() { return {shared_from_this(), &Ambiente()}; }
  std::shared_ptr<host::FormaMaestra> ParentPropio() { return {shared_from_this(), &anfitrion_->Parent()}; }
  forms::HeadlessPlatform& Plataforma() { return plataforma_; }

  // On a connection of its own, outside the system. Any thread may call it.
  data::Rows Sql(const std::string& text, const std::vector<data::Value>& values);
  // Closes what is open, refusals or not, and lets go of the base.
  void Cierra();
  // Nothing is to be done for a while: what an idle program owes to the others of its base.
  void Descansa();
  void ForgetNotebook() { notebook_ = nullptr; }

  // ---- host::Testigo ----
  void Gancho(const std::string& key, const data::Value& value) override;
  void Movimiento(const host::Propiedades& properties, double amount) override;
  void Impreso(const std::string& format, std::int32_t number) override;
  void Presentada(forms::Form& form) override;
  void Regresada(forms::Form&, const std::string& name) override;
  void LlamadaDeParent(std::string_view name, const std::vector<data::Value>& arguments) override;

  // ---- host::Selector ----
  bool Elige(const std::string& clase, const std::string& titulo, forms::TextBox& campo,
             std::string& elegido) override;

 protected:
  void AnotaSentencia(std::string_view text) override;
  void AnotaMensaje(const host::MensajeVisto& mensaje) override;
  bool SiguienteRespuesta() override;

 private:
  template <class Function>
  void Note(Function&& function) {
    if (!notebook_) return;
    py::gil_scoped_acquire gil;
    function(*notebook_);
  }
  void Listen();
  bool Turn();
  void ShowModal(forms::Form& form);
  bool ShowBox(forms::BoxKind kind, const std::string& text, int style);
  void RunRoutine(const std::string& key, forms::Form& form);

  Cuaderno* notebook_;
  forms::HeadlessPlatform plataforma_;
  std::unique_ptr<host::Anfitrion> anfitrion_;
  std::mutex apart_guard_;
  std::unique_ptr<data::EngineConnection> apart_;
  bool cerrado_ = false;
};

// The Python object: notebook and host. Letting go of it closes the host.
struct Guion : Cuaderno {
  Guion(const std::string& base, const std::string& usuario, const std::string& estacion,
        const std::string& ruta, bool demo)
      : nucleo(std::make_shared<Nucleo>(base, usuario, estacion, ruta, demo, *this)) {}
  ~Guion() {
    nucleo->ForgetNotebook();
    nucleo->Cierra();
  }
  Guion(const Guion&) = delete;
  Guion& operator=(const Guion&) = delete;

  std::shared_ptr<Nucleo> nucleo;
  py::object parent;  // its Python object, which carries `llamadas`
};

using GuionType = Clase<Guion, std::shared_ptr<Guion>>;

void BindPuerta(py::module_& module);
// A new public class with its context and its list form already set.
py::object PuertaPropia(const std::shared_ptr<Nucleo>& nucleo);
// What the host offers around the screens: half-posted documents, leases, the record of acts ...
void BindAlrededor(py::module_& module, GuionType& type);

}  // namespace tarvik::python
