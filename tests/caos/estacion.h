// Estacion: one work station of the shop under test, with an operator who works through the public class
// and the screens, and says line by line what the screens have acknowledged. It proves nothing: that is
// the judge's.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "forms/headless_platform.h"
#include "host/anfitrion.h"
#include "service/door/entradas_salidas.h"
#include "wizard/document_wizard.h"

namespace tarvik::caos {

// What is said, its words apart by a tab:
//   paso QUE                                  what is about to be done: "captura", "encabezado", ...
//   quiere TIPO DOCUMENTO RENGLON CANTIDAD    a line that stands is about to change; "-": to go
//   renglon TIPO DOCUMENTO RENGLON ARTICULO CANTIDAD   the line stands so
//   quitado TIPO DOCUMENTO RENGLON            the line is gone
//   afectado TIPO DOCUMENTO                   the finish has ended, and nothing was complained of
//   pendiente TIPO DOCUMENTO                  left pending
//   caja TEXTO                                a box that was no question
//   suelto TEXTO                              an error that left an act
//   hecho                                     one document is done with
struct Persona {
  std::string base;
  std::string usuario;
  std::string estacion;
  std::string ruta;
  unsigned semilla = 1;
  std::function<void(const std::string&)> di;
};

class Estacion {
 public:
  // Throws what opening the base throws.
  explicit Estacion(const Persona& persona);
  ~Estacion();
  Estacion(const Estacion&) = delete;
  Estacion& operator=(const Estacion&) = delete;

  // One document from the first to the last key: new or reopened, left pending or finished.
  void HazDocumento();
  // So many lines at most; the default is 12.
  void Hasta(int renglones) { hasta_ = renglones; }

  // ---- by hand, for races and failures ----
  // A new document with so many lines, its screen still open; to warehouse `destino` if it is not 0.
  DocumentWizard* Nueva(host::Tipo tipo, int renglones, int destino = 0);
  // nullptr: the class has opened none.
  DocumentWizard* Abre(host::Tipo tipo, std::int32_t numero);
  // The same with the host's look before it: one whose holder is dead is let go of first.
  DocumentWizard* Retoma(host::Tipo tipo, std::int32_t numero);
  // F5 and Yes. True if the screen closed and no box came.
  bool Finaliza(DocumentWizard& forma);
  void Cierra(DocumentWizard& forma);
  [[nodiscard]] static std::int32_t Numero(const DocumentWizard& forma);
  [[nodiscard]] host::Anfitrion& Anfitrion() { return *anfitrion_; }
  [[nodiscard]] const std::vector<std::string>& Cajas() const { return cajas_; }

 private:
  class Oido;

  void Renglon(DocumentWizard& forma);
  void CorrigeOQuita(DocumentWizard& forma);
  void Acusa(DocumentWizard& forma, int fila, const std::string& articulo, int cantidad);
  bool Escogido(DocumentWizard*& forma);
  void Di(const std::string& texto) const { persona_.di(texto); }
  int Al(int desde, int hasta) { return std::uniform_int_distribution<int>(desde, hasta)(azar_); }

  Persona persona_;
  std::mt19937 azar_;
  forms::HeadlessPlatform plataforma_;
  std::unique_ptr<Oido> oido_;
  std::unique_ptr<host::Anfitrion> anfitrion_;
  std::unique_ptr<EntradasSalidas> movimientos_;
  std::vector<std::string> cajas_;
  int hasta_ = 12;
  std::set<std::string> acusados_;  // lines that were acknowledged on the screen at hand
};

}  // namespace tarvik::caos
