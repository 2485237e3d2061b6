// Listado: a listing of any length, read page by page after the last key seen, so that the millionth page
// costs what the first one does. A search that no index serves advances in short steps and gives what it has
// so far. In another order than the key's, the base puts the keys of some ten thousand rows in order at once,
// and the pages are read by those keys. It shows nothing and keeps no row that it has read.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "data/engine.h"

namespace tarvik::host {

// A word that the rows must hold. `donde` is a condition with a placeholder for each column that may hold it:
// "({articulo} OR {descrip})". Without regard to case or accents ("ñ" finds "n" too, not the other
// way round).
struct Palabra {
  std::string donde;
  std::string palabra;
};

// Which row: its key and, where a key has several rows, what tells them apart.
using Identidad = std::pair<data::Value, data::Value>;

// One statement in pieces. `tabla` is read in the order of `clave`, which is unique there; `columnas` come
// from that table as "d" and from the joins, the key first.
struct Listado {
  std::string tabla;
  std::string clave;
  bool descendente = false;
  std::string columnas;
  std::string uniones;
  std::string otro_orden;  // after the key, where a join gives several rows for one
  std::string suma;        // an expression on the table to add up; may be empty

  // Another order than the key's: an expression on "d" and `uniones_del_orden` that is never null; empty: by
  // the key. "{texto}" in it stands for `orden_texto` without regard to case and accents. Rows of the same
  // value come in the key's order.
  std::string orden;
  std::string orden_texto;
  bool orden_descendente = false;
  std::string uniones_del_orden;  // what `orden` and `segunda` need
  std::string segunda;            // where a key has several rows: an expression that tells them apart
  int columna_segunda = -1;       // its place in the rows; null there is the expression's -1

  std::string fijo;                  // a condition that an index serves, without values; may be empty
  std::string donde;                 // further conditions on the table; may be empty
  std::vector<data::Value> valores;  // of `donde`, in order
  std::vector<Palabra> palabras;     // each one narrows it further
  // Stretches of keys, in the order of the listing, lower end first, both included; empty: all.
  std::vector<std::pair<data::Value, data::Value>> tramos;
  bool por_pasos = false;   // no index serves the conditions: the table is read in short steps
  bool por_donde = false;   // an index serves `donde`, and the key's is not to be used
  bool con_numero = false;  // the key is an integer
};

struct Sumas {
  std::int64_t cuantos = 0;
  double total = 0;
};

using Renglones = std::vector<std::vector<data::Value>>;

// How many keys the rows have; those of one key are next to each other.
int CuentaClaves(const Renglones& renglones);

// The position of a reading. One thread at a time.
class CursorDeListado {
 public:
  static constexpr int kPaso = 20000;    // keys gone through in one step of a search
  static constexpr int kOrden = 100000;  // rows put in order at once

  explicit CursorDeListado(Listado listado) : listado_(std::move(listado)) {}

  [[nodiscard]] bool Termino() const { return termino_; }
  [[nodiscard]] bool PorPasos() const { return listado_.por_pasos && listado_.orden.empty(); }
  // Of a listing by number: it has read that key, or would have; in another order than the key's, the key
  // is not among the rows that are next.
  [[nodiscard]] bool LlegoA(std::int64_t clave) const;
  // The rows of at most `cuantas` keys more, and fewer if a step ends first; none does not mean the
  // end, see Termino(). Throws data::Error if the base refuses; the cursor is then where it was.
  Renglones Lee(data::EngineConnection& connection, int cuantas);
  // Adds up one step more, to the end of the listing. Not mixed with Lee(). Throws as that.
  void Suma(data::EngineConnection& connection, Sumas& sumas);

 private:
  struct Condicion;
  [[nodiscard]] Condicion Aqui() const;
  data::Value FinDelPaso(data::EngineConnection& connection, const Condicion& here) const;
  void OtroTramo();
  Renglones LeeEnOrden(data::EngineConnection& connection, int cuantas);
  void OrdenaMas(data::EngineConnection& connection);

  Listado listado_;
  std::size_t tramo_ = 0;
  data::Value detras_;  // null: at the beginning of the stretch
  bool termino_ = false;
  std::vector<Identidad> orden_;  // rows that were put in order
  data::Value ultimo_;            // what the last of them is put in order by
  std::size_t leidos_ = 0;        // of these
  bool orden_completo_ = false;   // no more are to come
};

// Which row it is, of a listing in another order than its key's.
Identidad IdentidadDe(const Listado& listado, const std::vector<data::Value>& renglon);
// These rows in this order, as they are now; what is gone is left out. Throws data::Error if the base
// refuses.
Renglones RenglonesDe(data::EngineConnection& connection, const Listado& listado,
                      const std::vector<Identidad>& cuales);

// The rows from one key to another, both included, in the order of the listing. Throws data::Error if the
// base refuses.
Renglones RenglonesEntre(data::EngineConnection& connection, const Listado& listado,
                         const data::Value& primera, const data::Value& ultima);

}  // namespace tarvik::host
