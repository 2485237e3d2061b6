// Revision: proves a base from end to end and says what it finds, document by document. It looks at what is
// stored and asks no screen; of what it finds it mends only what can be mended without a doubt, when told to.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "data/engine.h"
#include "host/documentos.h"

namespace tarvik::host {

// One thing that is not as it should be. What makes no sense for its kind is not set.
struct Observacion {
  // "existencia", "columna", "a medias", "adelantado", "doble", "distinto", "huerfano", "suelto", "numero",
  // "tenencia" or "motor".
  std::string clase = {};
  std::optional<std::string> tipo = {};  // "Entrada" or "Salida"
  std::optional<std::int32_t> documento = {};
  std::optional<std::int64_t> renglon = {};  // the line; of "existencia" the first movement that is wrong
  std::optional<std::string> articulo = {};
  std::optional<double> almacen = {};
  std::string texto = {};  // for a person: what it is, and what to do
  bool reparable = false;
  bool reparado = false;
};

// What a revision works with.
struct Revisor {
  data::EngineConnection& conexion;
  data::DateTime ahora;  // for the record of acts
  std::string usuario;
  std::string estacion;
  // Posts what is missing of a posted document and gives how many movements it made. Without one, half-posted
  // documents are reported and not mended.
  std::function<int(Tipo tipo, std::int32_t documento)> completa = {};
};

// All that is wrong; empty for sound books. With `repara` it mends, each in a transaction of its own with a
// row in the record of acts: stock that differs from its movements where the opening is in the ledger,
// columns of warehouses, half-posted documents, what is held by nobody alive. What could not be mended says
// so in its text. With `huecos` the numbers that no document has are listed too.
// A document whose holder lives is being posted and not half-posted. A check that the base refuses becomes a
// finding of "motor". Throws data::Error if the base is busy or away.
std::vector<Observacion> Revisa(const Revisor& revisor, bool repara = false, bool huecos = false);

// The difference of each article and warehouse whose opening is not in the ledger becomes an opening
// movement there, which names neither line nor document; stock stays as it is. All in one transaction. Gives
// what was entered. Throws data::Error, with nothing written, if the base refuses.
std::vector<Observacion> AbreSaldos(const Revisor& revisor);

// The quick look at a base that was not closed cleanly: the engine's quick check, half-posted documents, what
// is held by nobody alive. Mends nothing.
std::vector<Observacion> Rapida(const Revisor& revisor);

// What to tell whoever opens a base that held duplicate movements before its rule; empty for any other.
std::string AvisoDeDobles(data::EngineConnection& connection);

}  // namespace tarvik::host
