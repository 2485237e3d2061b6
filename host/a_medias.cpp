#include "host/a_medias.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "data/error.h"
#include "data/recordset.h"
#include "data/text.h"
#include "host/asiento.h"
#include "host/bitacora.h"
#include "host/paciencia.h"
#include "host/tenencia_viva.h"
#include "wizard/modos.h"

namespace tarvik::host {
namespace {

std::int32_t Entero(const data::Value& value) { return static_cast<std::int32_t>(data::ToNumber(value)); }

// A movement that is not a message of the other program's matrix.
std::string SinMarca(const std::string& m) {
  return " AND (" + m + ".claveadd IS NULL OR " + m + ".claveadd <> '999' OR " + m + ".almacen IS NOT NULL)";
}

// The movement `m` of the line `p`. For a line with a number in the words of the base's own rule, so that
// its index serves. A line 0 (its number could not be drawn) is told from others by document and article.
std::string Movio(Tipo tipo, const std::string& m, const std::string& operation, bool numbered) {
  const std::string same = m + ".{id} = p.{id} AND " + m + ".operacion = '" + operation + "'";
  if (!numbered) {
    return same + " AND " + m + ".articulo = p.articulo AND " + m + ".movimiento = h.{folio}" + SinMarca(m);
  }
  const std::string rule = tipo == Tipo::Entrada ? "" : " AND " + m + ".operacion IN ('SA', 'T+')";
  return same + " AND " + m + ".{id} >= 1" + rule + SinMarca(m);
}

// Lines with their documents, but those without an article, which have nothing to move: documento, estado,
// renglon; entero, all its movements are there, with the arrival of a transfer; movido, one of them is. A row
// for each pair of movements, should there be duplicates.
std::string Renglones(Tipo tipo, bool numbered) {
  const bool issue = tipo == Tipo::Salida;
  const std::string whole =
      issue ? "(COALESCE(h.estraspaso, 0) = 0 OR a.id IS NOT NULL) AND v.id IS NOT NULL" : "v.id IS NOT NULL";
  const std::string arrival = issue ? " LEFT JOIN movsinv a ON " + Movio(tipo, "a", "T+", numbered) : "";
  return "SELECT h.{numero} AS documento, h.estado AS estado, p.{id} AS renglon, CASE WHEN " + whole +
         " THEN 1 ELSE 0 END AS entero, CASE WHEN v.id IS NOT NULL" + (issue ? " OR a.id IS NOT NULL" : "") +
         " THEN 1 ELSE 0 END AS movido FROM {encabezado} h INNER JOIN {renglones} p ON p.{numero} = "
         "h.{numero} LEFT JOIN movsinv v ON " +
         Movio(tipo, "v", issue ? "SA" : "EN", numbered) + arrival + " WHERE p.{id} " +
         (numbered ? ">= 1" : "< 1") + " AND TRIM(COALESCE(p.articulo, '')) <> ''";
}

DocumentoAMedias Cuenta(Tipo tipo, const data::Rows& rows) {
  DocumentoAMedias document{tipo, Entero(rows.rows.at(0).at(0)), data::ToText(rows.rows[0][1]), 0, {}};
  for (const auto& row : rows.rows) {
    ++document.renglones;
    if (!data::IsNonZero(row[3])) document.faltan.push_back(Entero(row[2]));
  }
  std::sort(document.faltan.begin(), document.faltan.end());
  return document;
}

}  // namespace

std::optional<DocumentoAMedias> LeeAMedias(data::EngineConnection& connection, Tipo tipo,
                                           std::int32_t documento) {
  const std::string one = "SELECT DISTINCT * FROM (" + Renglones(tipo, true) +
                          " AND h.{numero} = ? UNION ALL " + Renglones(tipo, false) +
                          " AND h.{numero} = ?) q";
  const data::Rows rows = connection.Run(ConTablas(tipo, one), {documento, documento});
  if (rows.rows.empty()) return {};
  DocumentoAMedias document = Cuenta(tipo, rows);
  const bool moved = std::any_of(rows.rows.begin(), rows.rows.end(),
                                 [](const auto& row) { return data::IsNonZero(row[4]); });
  const bool half = document.estado == estado::kAfectado ? !document.faltan.empty() : moved;
  return half ? std::optional(std::move(document)) : std::nullopt;
}

std::vector<std::int32_t> Parciales(data::EngineConnection& connection, Tipo tipo) {
  // A posted document with a line that has not moved; a pending one with a line that has.
  const std::string partial =
      " WHERE (q.estado = 'CO' AND q.entero = 0) OR ((q.estado IS NULL OR q.estado <> 'CO') AND q.movido = "
      "1)";
  const std::string all = "SELECT q.documento FROM (" + Renglones(tipo, true) + ") q" + partial +
                          " UNION SELECT q.documento FROM (" + Renglones(tipo, false) + ") q" + partial +
                          " ORDER BY 1";
  std::vector<std::int32_t> found;
  for (const auto& row : connection.Run(ConTablas(tipo, all), {}).rows) found.push_back(Entero(row[0]));
  return found;
}

std::vector<DocumentoAMedias> LeeAMedias(data::EngineConnection& connection) {
  std::vector<DocumentoAMedias> found;
  for (const Tipo tipo : {Tipo::Entrada, Tipo::Salida}) {
    for (const std::int32_t number : Parciales(connection, tipo)) {
      if (TenenciaViva(connection, tipo, number)) continue;
      // Checked again after that query: whoever has just finished posting has left a whole one.
      if (auto document = LeeAMedias(connection, tipo, number)) found.push_back(std::move(*document));
    }
  }
  return found;
}

namespace {

// A document's header and those of its lines that have not moved, as the screen's posting would pass them
// on.
class Posteo {
 public:
  Posteo(const Completador& who, Tipo tipo, std::int32_t documento)
      : who_(who), connection_(who.connection), tipo_(tipo), number_(documento), tables_(TablasDe(tipo)) {
    const data::Rows rows = connection_.Run(
        "SELECT * FROM " + std::string(tables_.encabezado) + " WHERE " + std::string(tables_.clave) + " = ?",
        {documento});
    if (rows.rows.empty()) {
      throw data::Error("No existe la " + data::LowerAscii(NombreDe(tipo)) + " " + std::to_string(documento));
    }
    head_ = data::Recordset(rows);
    if (data::ToText(head_.Fields("estado")) != estado::kAfectado) {
      throw data::Error(Nombre() + " está pendiente: sus renglones se afectan al finalizarla");
    }
    if (const auto holder = TenenciaViva(connection_, tipo, documento)) {
      throw data::Error(Nombre() + " la tiene abierta " + *holder + ": se está afectando");
    }
  }

  std::vector<Asiento> Faltantes(Libro& ledger) {
    std::vector<Asiento> missing;
    const std::string line(tables_.renglon);
    const data::Rows rows = connection_.Run("SELECT * FROM " + std::string(tables_.partidas) + " WHERE " +
                                                std::string(tables_.clave) + " = ? ORDER BY " + line,
                                            {number_});
    data::Recordset lines(rows);
    Asiento entry = Encabezado();
    const bool transfer = tipo_ == Tipo::Salida && data::IsNonZero(head_.Fields("estraspaso"));
    const bool to_station = transfer && data::IsNonZero(head_.Fields("traspasoaestacion"));
    for (; !lines.Eof(); lines.MoveNext()) {
      Renglon(entry, lines);
      if (data::Trim(data::ToText(entry.articulo)).empty()) continue;
      if (!HaMovido(ledger, entry)) missing.push_back(entry);
      if (!transfer) continue;
      entry.ent_sal = "E";
      entry.operacion = "T+";
      entry.tipo_doc = "T+";
      entry.almacen = data::ToNumber(head_.Fields("almt"));
      // It stays for the lines that follow, as on the screen.
      if (to_station) entry.estacion_traspaso = data::Trim(data::ToText(head_.Fields("estaciontraspaso")));
      entry.precio = 0.0;
      if (!HaMovido(ledger, entry)) missing.push_back(entry);
    }
    return missing;
  }

 private:
  [[nodiscard]] std::string Nombre() const {
    return "La " + data::LowerAscii(NombreDe(tipo_)) + " " + std::to_string(number_);
  }

  bool HaMovido(Libro& ledger, const Asiento& entry) {
    const data::Value& line = tipo_ == Tipo::Entrada ? entry.id_entrada : entry.id_salida;
    if (data::ToNumber(line) >= 1) return ledger.Anterior(entry).has_value();
    return !connection_
                .Run(ConTablas(
                         tipo_,
                         "SELECT m.id FROM movsinv m WHERE m.{id} = ? AND m.operacion = ? AND m.articulo = ? "
                         "AND m.movimiento = ?" +
                             SinMarca("m") + " LIMIT 1"),
                     {line, entry.operacion, entry.articulo, entry.movimiento})
                .rows.empty();
  }

  Asiento Encabezado() {
    Asiento entry;
    entry.clave_local = who_.clave_local;
    const auto date = data::ToDate(head_.Fields("f_emision"));
    if (date) entry.fecha = *date;
    entry.usuario = data::ToText(head_.Fields("usuario"));
    const data::Value number = head_.Fields(tipo_ == Tipo::Entrada ? "entrada" : "folio");
    if (!number.IsNull()) entry.movimiento = Entero(number);
    entry.documento = data::ToText(number);
    entry.aplica = 1;
    return entry;
  }

  void Renglon(Asiento& entry, const data::Recordset& line) {
    const bool in = tipo_ == Tipo::Entrada;
    entry.ent_sal = in ? "E" : "S";
    entry.operacion = in ? "EN" : "SA";
    entry.tipo_doc = data::ToText(head_.Fields("tipo_doc"));
    entry.almacen = data::ToNumber(head_.Fields("almacen"));
    entry.articulo = data::ToText(line.Fields("articulo"));
    entry.cantidad = data::ToNumber(line.Fields("cantidad"));
    entry.precio = data::ToNumber(line.Fields("precio"));
    entry.clave_add = data::ToText(line.Fields("claveadd"));
    (in ? entry.id_entrada : entry.id_salida) = Entero(line.Fields(tables_.renglon));
  }

  const Completador& who_;
  data::EngineConnection& connection_;
  Tipo tipo_;
  std::int32_t number_;
  const Tablas& tables_;
  data::Recordset head_;
};

// Whoever posts takes its rows in one order: all stock rows that the document will touch, then all articles,
// so that two who complete at once never deadlock.
void TomaEnOrden(data::EngineConnection& connection, const std::vector<Asiento>& entries) {
  std::set<std::pair<std::string, double>> stock;
  std::set<std::string> articles;
  for (const Asiento& entry : entries) {
    stock.emplace(data::ToText(entry.articulo), data::ToNumber(entry.almacen));
    articles.insert(data::ToText(entry.articulo));
  }
  for (const auto& [article, warehouse] : stock) {
    connection.Run(
        "INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (?, ?, 0) ON CONFLICT "
        "(almacen, "
        "articulo) DO UPDATE SET existencia = existenciaalmacen.existencia",
        {warehouse, article});
  }
  for (const std::string& article : articles) {
    connection.Run("UPDATE prods SET alm1 = alm1 WHERE articulo = ?", {article});
  }
}

// A line that somebody else has just moved: what is missing is looked at again.
double AsientaOEspera(Libro& ledger, const Asiento& entry, const std::string& time) {
  try {
    return ledger.Asienta(entry, time);
  } catch (const data::Error& error) {
    if (error.Kind() != data::Trouble::kDuplicate) throw;
    throw data::Error(error.what(), data::Trouble::kBusy);
  }
}

}  // namespace

int Completa(const Completador& who, Tipo tipo, std::int32_t documento) {
  using Hecho = std::pair<Propiedades, double>;
  ReglaDelLibro rule(who.connection);
  Libro ledger(who.connection, rule);
  const std::vector<Hecho> made = ConPaciencia(who.connection, [&] {
    std::vector<Hecho> done;
    ledger.Prepara();
    data::Transaction whole(who.connection);
    Posteo posting(who, tipo, documento);
    std::vector<Asiento> missing = posting.Faltantes(ledger);
    if (missing.empty()) return done;
    TomaEnOrden(who.connection, missing);
    // The base's own rule does not cover a line 0: once the locks are held, what is missing is certain.
    if (std::any_of(missing.begin(), missing.end(),
                    [](const Asiento& entry) { return entry.ColumnaDelRenglon() == nullptr; })) {
      missing = posting.Faltantes(ledger);
    }
    for (const Asiento& entry : missing) {
      who.testigo.Servicio("Afecta");
      ExigeCompleto(entry);
      done.emplace_back(entry.Puestas(), AsientaOEspera(ledger, entry, who.plataforma.Now().time.Text()));
    }
    Anota(who.connection, {.cuando = who.plataforma.Now(),
                           .usuario = who.usuario,
                           .estacion = who.estacion,
                           .acto = "completa",
                           .documento = Retenido{tipo, documento},
                           .texto = Movimientos(static_cast<std::int64_t>(missing.size())) +
                                    (missing.size() == 1 ? " que faltaba" : " que faltaban")});
    whole.Commit();
    return done;
  });
  for (const auto& [properties, worth] : made) who.testigo.Movimiento(properties, worth);
  return static_cast<int>(made.size());
}

}  // namespace tarvik::host
