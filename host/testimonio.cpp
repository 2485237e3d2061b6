#include "host/testimonio.h"

#include "data/error.h"

namespace tarvik::host {

std::string_view Testimonio::ClaseDe(forms::BoxKind kind) {
  switch (kind) {
    case forms::BoxKind::Message:
      return "mensaje";
    case forms::BoxKind::Error:
      return "error";
    case forms::BoxKind::Question:
      return "pregunta";
    default:
      return "caja";
  }
}

void Testimonio::Falla(const std::string& patron, int veces, const std::string& texto) {
  try {
    sentencias_.push_back({"", std::regex(patron, std::regex::ECMAScript | std::regex::icase), veces, texto});
  } catch (const std::regex_error& error) {
    throw data::Error("El patrón no es una expresión regular: " + patron).With("motivo", error.what());
  }
}

void Testimonio::FallaServicio(const std::string& nombre, int veces, const std::string& texto) {
  servicios_.push_back({nombre, {}, veces, texto});
}

void Testimonio::Sentencia(std::string_view text) {
  AnotaSentencia(text);
  for (auto& provocada : sentencias_) {
    if (provocada.veces > 0 && std::regex_search(text.begin(), text.end(), provocada.patron)) {
      --provocada.veces;
      throw data::Error(provocada.texto).With("sentencia", std::string(text));
    }
  }
}

void Testimonio::Servicio(std::string_view name) {
  for (auto& provocada : servicios_) {
    if (provocada.veces > 0 && provocada.nombre == name) {
      --provocada.veces;
      throw data::Error(provocada.texto).With("servicio", std::string(name));
    }
  }
}

void Testimonio::MensajeTraido(int number, const std::string& text) { traidos_.emplace_back(number, text); }

bool Testimonio::Caja(forms::BoxKind kind, const std::string& text, int style) {
  MensajeVisto visto{std::string(ClaseDe(kind)), {}, text, style, {}};
  for (const auto& [numero, traido] : traidos_) {
    if (text.find(traido) != std::string::npos) visto.numeros.push_back(numero);
  }
  traidos_.clear();
  if (kind == forms::BoxKind::Question) visto.respuesta = SiguienteRespuesta();
  AnotaMensaje(visto);
  return visto.respuesta.value_or(true);
}

}  // namespace tarvik::host
