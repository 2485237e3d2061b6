// Before posting: what a goods-out document would lack in its warehouse, and what looks like a slip in a
// goods-in one. For a window, a command or a script to show. It reads and changes nothing, reserves nothing,
// and stops nobody.
//
// The stored lines count, since those are what posting moves. The grid may show fewer (it holds 4,999 rows),
// and what stands unfinished in the entry row or in a cell belongs to no line yet. Lines that have moved, of
// a document whose posting broke off, move no more and are left out; of a posted document nothing is told.
//
//   const PorAfectar document = PorAfectarDe(screen);   // where the screen is
//   const auto missing = LeeAlcance(reader, document);  // on any connection, on any thread
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "data/engine.h"
#include "forms/form.h"
#include "host/documentos.h"

namespace tarvik::host {

// A document, and the warehouse whose stock its posting will change.
struct PorAfectar {
  Retenido documento;  // number 0: not stored yet
  double almacen = 0;
};

// Of a screen: with the warehouse that it shows, which is stored before anything is posted. Throws
// data::Error, in Spanish, for a screen that is neither goods-in nor goods-out.
PorAfectar PorAfectarDe(forms::Form& pantalla);
// As it is stored. Throws data::Error if it is not there, or the base refuses.
PorAfectar PorAfectarDe(data::EngineConnection& connection, const Retenido& documento);

// An article of which the warehouse has too little for the whole document.
struct Faltante {
  std::string articulo;
  double pide = 0;                      // the document's lines, added up
  double hay = 0;                       // stock of the warehouse
  double en_otros = 0;                  // what other pending goods-out documents ask of it there
  std::vector<std::int32_t> renglones;  // its lines in the document, in the order of entry
};

// The articles whose stock is controlled and of which the document asks more than there is once the other
// pending documents have taken theirs, by article. Empty for a goods-in. Throws data::Error if the base
// refuses.
std::vector<Faltante> LeeAlcance(data::EngineConnection& connection, const PorAfectar& documento);

// Patterns of the figures in the texts for a person: FormatoImporte and FormatoCantidad.
struct FormatosDeCifras {
  std::string importe;
  std::string cantidad;
};

namespace clase_de_aviso {
inline constexpr const char* kPrecio = "precio";      // more than half away from the last cost
inline constexpr const char* kCantidad = "cantidad";  // far above what was ever received of late
inline constexpr const char* kRepetido = "repetido";  // there is a line like it already
}  // namespace clase_de_aviso

// A line of a goods-in document that an operator should look at again.
struct AvisoDeEntrada {
  std::string articulo;
  std::int32_t renglon = 0;
  std::string clase;
  std::string texto;  // in Spanish
};

// In the order of entry; a line may have several. Empty for a goods-out. Throws data::Error if the base
// refuses.
std::vector<AvisoDeEntrada> LeeAvisos(data::EngineConnection& connection, const PorAfectar& documento,
                                      const FormatosDeCifras& formatos);

}  // namespace tarvik::host
