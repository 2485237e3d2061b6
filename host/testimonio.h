// Testimonio: the witness that keeps a record, and provokes failures on request. What is kept is the
// same for a script and for a test; each decides where.
#pragma once

#include <optional>
#include <regex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "forms/platform.h"
#include "host/testigo.h"

namespace tarvik::host {

// What the operator was shown.
struct MensajeVisto {
  std::string clase;         // "mensaje", "error", "pregunta", "caja"
  std::vector<int> numeros;  // the numbered messages that it was made of, in order; may be empty
  std::string texto;
  int estilo = 0;
  std::optional<bool> respuesta;  // of a question
};

class Testimonio : public Testigo {
 public:
  // "mensaje", "error", "pregunta", "caja".
  static std::string_view ClaseDe(forms::BoxKind kind);
  // The next `veces` statements in whose text the pattern (ECMAScript, anywhere, without regard to
  // case) is found are not sent and fail with this text. Throws data::Error for a bad pattern.
  void Falla(const std::string& patron, int veces, const std::string& texto);
  // The same for the next calls of a host operation, by its name.
  void FallaServicio(const std::string& nombre, int veces, const std::string& texto);

  // A box that the platform shows: kept, and answered if it is a question.
  bool Caja(forms::BoxKind kind, const std::string& text, int style);

  void Sentencia(std::string_view text) final;
  void Servicio(std::string_view name) final;
  void MensajeTraido(int number, const std::string& text) final;

 protected:
  virtual void AnotaSentencia(std::string_view text) = 0;
  virtual void AnotaMensaje(const MensajeVisto& mensaje) = 0;
  // The answer to the current question: the first of the answers to come; No if there is none.
  virtual bool SiguienteRespuesta() = 0;

 private:
  struct Provocada {
    std::string nombre;  // of an operation; empty: by pattern
    std::regex patron;
    int veces;
    std::string texto;
  };

  std::vector<Provocada> sentencias_;
  std::vector<Provocada> servicios_;
  std::vector<std::pair<int, std::string>> traidos_;  // since the last box
};

}  // namespace tarvik::host
