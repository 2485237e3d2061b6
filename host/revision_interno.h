// What the files of the revision share, for them alone: its checks, and the words of its findings.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/number.h"
#include "host/documentos.h"
#include "host/revision.h"

namespace tarvik::host::revision {

using Observaciones = std::vector<Observacion>;

// The ledger without the messages of the other program's matrix, which move nothing. For a WHERE.
inline constexpr std::string_view kSinMarcas =
    "(claveadd IS NULL OR claveadd <> '999' OR almacen IS NOT NULL)";

inline constexpr std::array kTipos = {Tipo::Entrada, Tipo::Salida};

// The document of a finding; nothing where it is about none.
std::optional<Retenido> RetenidoDe(const Observacion& which);

inline std::string Cifra(double number) { return data::PlainNumber(number); }
inline std::int32_t Documento(const data::Value& value) {
  return static_cast<std::int32_t>(data::ToNumber(value));
}
inline std::int64_t Entero(const data::Value& value) {
  const auto* whole = value.As<std::int64_t>();
  return whole != nullptr ? *whole : static_cast<std::int64_t>(data::ToNumber(value));
}

// The checks. Each adds what it finds.
void Existencias(const Revisor& revisor, Observaciones& found);
void Columnas(const Revisor& revisor, Observaciones& found);
void AMedias(const Revisor& revisor, Observaciones& found);  // and those in advance
void Dobles(const Revisor& revisor, Observaciones& found);
void Distintos(const Revisor& revisor, Observaciones& found);  // and movements without a line
void SinDocumento(const Revisor& revisor, Observaciones& found);
void Sueltos(const Revisor& revisor, Observaciones& found);
void Numeros(const Revisor& revisor, bool huecos, Observaciones& found);
void Tenencias(const Revisor& revisor, Observaciones& found);
void Motor(const Revisor& revisor, bool rapida, Observaciones& found);

// The repairs: each mends one finding of its kind, with its row in the record of acts, or throws.
void ReparaExistencia(const Revisor& revisor, const Observacion& which);
void ReparaColumna(const Revisor& revisor, const Observacion& which);
void ReparaTenencia(const Revisor& revisor, const Observacion& which);
void ReparaAMedias(const Revisor& revisor, const Observacion& which);

// A row in the record of acts; to be called in a transaction of the caller.
void AnotaReparacion(const Revisor& revisor, const Observacion& which, const std::string& text);

}  // namespace tarvik::host::revision
