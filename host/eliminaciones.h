// What stays after the deletion of a document: told before, and recorded when it has gone through,
// whoever asked for it. The deletion itself is the public class's.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "host/bitacora.h"
#include "host/documentos.h"
#include "host/sentencias_de_documento.h"

namespace tarvik::host {

// What an operator should know before: that the document is posted, or that lines of it have moved. Empty for
// any other, and where there is none. Throws data::Error if the base refuses.
std::string AvisoDeEliminacion(data::EngineConnection& connection, const Retenido& documento);

class Eliminaciones {
 public:
  // `firma` gives an act with its time, user and station.
  Eliminaciones(data::EngineConnection& connection, std::function<Acto(const std::string&)> firma)
      : connection_(connection), firma_(std::move(firma)) {}

  // One of the two statements of a deletion. The header goes together with the record of it, or not at all.
  data::Rows Ejecuta(const SentenciaDeDocumento& sentencia, const std::function<data::Rows()>& envia);

 private:
  data::Rows QuitaDocumento(const Retenido& documento, const std::function<data::Rows()>& envia);
  void AnotaLaMitad(Acto act, const Contenido& before, const std::string& reason);
  std::optional<Contenido> Lee(const Retenido& documento);

  data::EngineConnection& connection_;
  std::function<Acto(const std::string&)> firma_;
  // As it was before its lines went: afterwards nothing shows it.
  std::optional<std::pair<Retenido, Contenido>> antes_;
};

}  // namespace tarvik::host
