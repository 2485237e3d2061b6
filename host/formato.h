// A printed document: the data of one goods-in or goods-out document put through a template of the
// base's folder, which gives an HTML page ready for letter and A4 paper. It sends nothing to a printer.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "data/datetime.h"
#include "data/engine.h"

namespace tarvik::host {

enum class Clase { Entrada, Salida };

struct Pedido {
  std::string formato;  // name of the template, "entrada"
  std::int32_t numero = 0;
  Clase clase = Clase::Entrada;
  std::string carpeta;  // RutaBase
  std::string formato_importe;
  std::string formato_cantidad;
  std::string empresa;
  data::DateTime ahora;
};

// What a document is, by the screen that prints it; for another screen by the format's own name.
Clase ClaseDeDocumento(const std::string& screen, const std::string& format);

// Writes carpeta/impresos/FORMATO-NUMERO.html and gives its path. The template is
// carpeta/formatos/FORMATO.mustache; where there is none, the built-in one is put there first.
// Throws data::Error if the document is not there, the name is no plain file name, the template has
// a fault (naming file and reason), or the page cannot be written.
std::string ImprimeEnArchivo(data::EngineConnection& connection, const Pedido& wanted);

// The page alone, by a template's text.
std::string Pagina(data::EngineConnection& connection, const Pedido& wanted, const std::string& plantilla,
                   const std::string& nombre_de_plantilla);

std::string_view PlantillaDeFabrica();

// Code 39 as an inline SVG, with the start and stop marks. Throws data::Error for a character other
// than digits, capital letters and '-'.
std::string CodigoDeBarras(std::string_view text);

}  // namespace tarvik::host
