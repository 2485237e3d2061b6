// Leases: which open screen of this program holds which document. A row of `tenencias` begins with the
// document's number (its header's INSERT, or a load that takes it) and ends with the screen, however
// it was opened. The rows depend on a life that ends with the program (vidas). One that can't be written
// fails no step of a screen. A screen whose row others have deleted writes nothing more: its next act tells
// the operator and leaves it read-only. Who deletes it, and by what right, is in host/liberacion.h and
// host/peticiones.h.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "forms/platform.h"
#include "host/anfitrion.h"
#include "host/bitacora.h"
#include "host/conexion_observada.h"
#include "host/eliminaciones.h"
#include "host/sentencias_de_documento.h"

namespace tarvik::host {

class Custodia final : public Guardia {
 public:
  // All outlive this.
  Custodia(data::EngineConnection& connection, forms::Platform& platform, const AmbienteLocal& ambiente);
  ~Custodia() override;
  Custodia(const Custodia&) = delete;
  Custodia& operator=(const Custodia&) = delete;

  data::Rows Ejecuta(std::string_view text, const std::function<data::Rows()>& envia) override;
  // Sends the statements of lines that are allowed, in place of `envia` itself. For whoever has a part in
  // them; empty: nobody.
  std::function<data::Rows(const SentenciaDeDocumento&, const std::function<data::Rows()>& envia)> en_renglon;

  // ---- told by the platform ----
  // False where the act's screen has lost its document: that has been told, and the act is skipped.
  bool EmpiezaActo(forms::Form& screen) noexcept;
  void TerminaActo() noexcept;
  void SeFue(forms::Form& screen) noexcept;

  // ---- for the host's services ----
  // Why leases can't be written though the base is there; empty where they can. It fails no step, but others
  // can't see what is open here.
  [[nodiscard]] const std::string& SinEscribir() const { return sin_escribir_; }
  // Throws data::Unrecoverable if the line is on a screen that has lost its document, and moving it is
  // not part of an act that began before: what was begun is posted to its end.
  void ExigeRenglon(Tipo tipo, std::int32_t renglon);
  // Tries again to delete the leases of closed screens that the base refused to delete before: whenever
  // somebody asks who holds what, and at the end of each act. So are their flags cleared, where the base was
  // busy or away.
  void QuitaPendientes() noexcept;
  [[nodiscard]] bool HayPendientes() const { return !por_quitar_.empty() || !por_soltar_.empty(); }
  // The life of this run, begun at its first use. Throws data::Error if the base refuses.
  std::int64_t Vida();
  [[nodiscard]] std::int64_t VidaDeAhora() const { return vida_; }  // 0: none yet
  // The open screens of this program that hold the document at this moment, oldest first. Throws data::Error
  // if the base refuses.
  std::vector<std::shared_ptr<forms::Form>> PantallasDe(const Retenido& documento);
  // This program itself has taken leases away, its own perhaps among them.
  void MiraDeNuevo() { vistos_.reset(); }
  // An act with the current time, user and station.
  [[nodiscard]] Acto Firma(const std::string& acto) const;

 private:
  struct Tenida {
    forms::Form* pantalla;
    Retenido documento;
    data::DateTime desde;
    std::int64_t id = 0;     // of its row; 0: not written yet
    bool intentada = false;  // the row may be there though its writing failed
    bool perdida = false;    // others have taken it
    bool avisada = false;
  };

  data::Rows Toma(const SentenciaDeDocumento& sentencia, const std::function<data::Rows()>& envia);
  // Whether the statement may be sent: false holds it back in silence. Throws for a write that must be
  // noticed.
  bool Permite(const SentenciaDeDocumento& sentencia);
  [[nodiscard]] forms::Form* PantallaPara(const SentenciaDeDocumento& sentencia) const;
  void MiraSiPuede() noexcept;
  // Another screen of this program has the document of the lost lease again.
  [[nodiscard]] bool OtraLaTiene(const Tenida& lost) const;
  [[nodiscard]] const Tenida* PerdidaDe(const SentenciaDeDocumento& sentencia) const;
  Tenida* De(const forms::Form& screen);
  void Empieza(forms::Form& screen, const Retenido& documento);
  void Termina(forms::Form& screen);
  void Escribe(Tenida& lease) noexcept;
  void Quita(std::int64_t id) noexcept;
  void SueltaBandera(const Retenido& documento) noexcept;
  // Checks which leases are still there, if anything was committed since the last check.
  void Mira();
  [[nodiscard]] std::string PorQue(const Tenida& lease) const;
  void LimpiaVidas();

  data::EngineConnection& connection_;
  forms::Platform& platform_;
  const AmbienteLocal& ambiente_;
  Eliminaciones eliminaciones_;
  std::int64_t vida_ = 0;
  std::int64_t por_vivir_ = 0;            // a life that was drawn and could not begin
  const forms::Form* en_acto_ = nullptr;  // whose act is under way; compared only
  std::string sin_escribir_;
  bool limpia_ = false;  // others' lives that are over may be cleared away
  std::optional<std::int64_t> vistos_;
  std::vector<Tenida> tenidas_;
  std::vector<std::int64_t> por_quitar_;
  std::vector<Retenido> por_soltar_;
};

}  // namespace tarvik::host
