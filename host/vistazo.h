// Vistazos: short readings for what is shown beside a screen: what is stored of its document and who has
// it, the names of its keys, the stock of an article. For a window, a command or a script to show; a screen
// never asks for them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "data/engine.h"
#include "host/a_medias.h"
#include "host/documentos.h"

namespace tarvik::host {

// A document as the base has it now.
struct EstadoDeDocumento {
  std::string estado;   // "PE", "CO"
  std::string usuario;  // of the last save
  std::string usuhora;  // its time, hh:mm:ss
  bool ocupado = false;
  std::int64_t renglones = 0;                // stored lines
  std::optional<DocumentoAMedias> a_medias;  // where it was posted in part, and nobody is posting it
};

// All of these throw data::Error if the base refuses.

// Nothing for a document that is not there.
std::optional<EstadoDeDocumento> LeeEstado(data::EngineConnection& connection, const Retenido& documento);
// "" for one that is not there, or has no name.
std::string NombreDeAlmacen(data::EngineConnection& connection, double almacen);
std::string NombreDeEstacion(data::EngineConnection& connection, const std::string& estacion);
// In units of the article; nothing where it never moved in that warehouse.
std::optional<double> ExistenciaDe(data::EngineConnection& connection, double almacen,
                                   const std::string& articulo);

struct Pendientes {
  std::int64_t entradas = 0;
  std::int64_t salidas = 0;
};
Pendientes CuentaPendientes(data::EngineConnection& connection);

}  // namespace tarvik::host
