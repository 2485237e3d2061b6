// The ledger of one article in one warehouse: its movements as a listing, and the stock after each of them,
// which is added up here where the ledger has not kept it. It writes nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "data/datetime.h"
#include "host/documentos.h"
#include "host/listado.h"

namespace tarvik::host {

// Whose ledger, and between which dates of movement, both included.
struct FiltroDeKardex {
  std::string articulo;
  double almacen = 0;
  std::optional<data::Date> desde = {};
  std::optional<data::Date> hasta = {};
};

enum class ColumnaDeMovimiento {
  kId,
  kFecha,
  kHora,
  kOperacion,
  kDocumento,  // as the ledger has it: of a goods-out its folio
  kConcepto,
  kNombreDelConcepto,
  kCambio,  // of the stock: above 0 it came in
  kPrecio,
  kImporte,
  kUsuario,
  kTipo,   // "Entrada" or "Salida", the kind of the document; null: of none
  kNumero  // of that document; null where its line is gone
};
// Latest first, in the order in which they were posted.
Listado ListadoDeMovimientos(const FiltroDeKardex& filtro);
// The document that a movement is of; nothing if the base does not have it.
std::optional<Retenido> DocumentoDelMovimiento(const std::vector<data::Value>& renglon);

struct PuntoDeKardex {
  std::int64_t id = 0;  // of the movement's row
  std::optional<data::Date> fecha;
  double cambio = 0;
  double saldo = 0;  // stock after it
};

// Reads the stock after every movement, latest first, in short steps. A row that keeps its stock is believed;
// before it, and before the stock of today, the movements are taken off one by one. So an article whose
// ledger begins late has the right stock all the same.
class LecturaDeKardex {
 public:
  static constexpr int kPaso = 20000;  // rows of one step

  LecturaDeKardex(std::string articulo, double almacen) : articulo_(std::move(articulo)), almacen_(almacen) {}

  // True if there is more to read. Throws data::Error if the base refuses.
  bool Paso(data::EngineConnection& connection);
  // What it has read, in the order of posting.
  [[nodiscard]] std::vector<PuntoDeKardex> Puntos() &&;

 private:
  std::string articulo_;
  double almacen_;
  std::optional<double> despues_;  // stock after the next row to be read
  std::int64_t antes_de_ = 0;      // the last row read; 0: none
  std::vector<PuntoDeKardex> puntos_;
};

// What the range of dates adds up to, of points in the order of posting.
struct SumasDeKardex {
  std::int64_t cuantos = 0;
  double entra = 0;
  double sale = 0;
};
SumasDeKardex SumaKardex(const std::vector<PuntoDeKardex>& puntos, const FiltroDeKardex& filtro);

// Stock at the end of each day that had a movement, by date of movement: a document that was posted late
// counts on its own date. The last day's is the stock of today. Movements without a date belong to the
// beginning.
struct DiaDeKardex {
  data::Date fecha;
  double saldo = 0;
};
std::vector<DiaDeKardex> ExistenciaPorDia(const std::vector<PuntoDeKardex>& puntos);

}  // namespace tarvik::host
