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

namespace tarvik::host {
namespace {

std::int32_t Entero(const data::Value& value) { return static_cast<std::int32_t>(data::ToNumber(value)); }

// A line's movement in the ledger `m`, as the base's own rule knows it, so that its index serves.
std::string Movio(Tipo tipo, std::string_view operacion) {
  const std::string line(TablasDe(tipo).renglon);
  const std::string rule = tipo == Tipo::Entrada ? "" : " AND m.operacion IN ('SA', 'T+')";
  return "m." + line + " = p." + line + " AND m." + line + " >= 1 AND m.operacion = '" +
         std::string(operacion) + "'" + rule +
         " AND (m.claveadd IS NULL OR m.claveadd <> '999' OR m.almacen IS NOT NULL)";
}

// Lines of documents that are not whole: document, state, line. `solo`: of one document, bound.
std::string Consulta(Tipo tipo, bool solo) {
  const Tablas& t = TablasDe(tipo);
  const std::string number(t.clave);
  const std::string line(t.renglon);
  const auto moved = [&](std::string_view operation) {
    return "EXISTS (SELECT 1 FROM movsinv m WHERE " + Movio(tipo, operation) + ")";
  };
  const std::string leaves = moved(tipo == Tipo::Entrada ? "EN" : "SA");
  std::string whole = leaves;
  std::string any = leaves;
  if (tipo == Tipo::Salida) {
    whole = "(" + leaves + " AND (h.estraspaso IS NULL OR h.estraspaso = 0 OR " + moved("T+") + "))";
    any = "(" + leaves + " OR " + moved("T+") + ")";
  }
  return "SELECT h." + number + " AS documento, h.estado AS estado, p." + line + " AS renglon, CASE WHEN " +
         whole + " THEN 1 ELSE 0 END AS entero, CASE WHEN " + any + " THEN 1 ELSE 0 END AS movido FROM " +
         std::string(t.encabezado) + " h INNER JOIN " + std::string(t.partidas) + " p ON p." + number +
         " = h." + number + " WHERE p." + line + " >= 1" + (solo ? " AND h." + number + " = ?" : "");
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
  const data::Rows rows = connection.Run(Consulta(tipo, true), {documento});
  if (rows.rows.empty()) return {};
  DocumentoAMedias document = Cuenta(tipo, rows);
  const bool moved = std::any_of(rows.rows.begin(), rows.rows.end(),
                                 [](const auto& row) { return data::IsNonZero(row[4]); });
  const bool half = document.estado == "CO" ? !document.faltan.empty() : moved;
  return half ? std::optional(std::move(document)) : std::nullopt;
}

std::vector<DocumentoAMedias> LeeAMedias(data::EngineConnection& connection) {
  std::vector<DocumentoAMedias> found;
  for (const Tipo tipo : {Tipo::Entrada, Tipo::Salida}) {
    // A posted document with a line that has not moved; a pending one with a line that has.
    const data::Rows rows = connection.Run("SELECT DISTINCT q.documento FROM (" + Consulta(tipo, false) +
                                               ") q WHERE (q.estado = 'CO' AND q.entero = 0) OR ((q.estado "
                                               "IS NULL OR q.estado <> 'CO') AND q.movido = "
                                               "1) ORDER BY q.documento",
                                           {});
    for (const auto& row : rows.rows) {
      const std::int32_t number = Entero(row[0]);
      if (TenenciaViva(connection, tipo, number)) continue;
      if (auto document = LeeAMedias(connection, tipo, number)) found.push_back(std::move(*document));
    }
  }
  return found;
}

namespace {

// A document's header and those of its lines that have not moved, as the screen's posting would hand them
// over.
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
    if (data::ToText(head_.Fields("estado")) != "CO") {
      throw data::Error(Nombre() + " está pendiente: sus renglones se afectan al finalizarla");
    }
    if (const auto holder = TenenciaViva(connection_, tipo, documento)) {
      throw data::Error(Nombre() + " la tiene abierta " + *holder + ": se está afectando");
    }
  }

  std::vector<Asiento> Faltantes() {
    std::vector<Asiento> missing;
    const std::string line(tables_.renglon);
    const data::Rows rows =
        connection_.Run("SELECT * FROM " + std::string(tables_.partidas) + " WHERE " +
                            std::string(tables_.clave) + " = ? AND " + line + " >= 1 ORDER BY " + line,
                        {number_});
    data::Recordset lines(rows);
    Libro ledger(connection_);
    Asiento entry = Encabezado();
    const bool transfer = tipo_ == Tipo::Salida && data::IsNonZero(head_.Fields("estraspaso"));
    const bool to_station = transfer && data::IsNonZero(head_.Fields("traspasoaestacion"));
    for (; !lines.Eof(); lines.MoveNext()) {
      Renglon(entry, lines);
      if (!ledger.Anterior(entry)) missing.push_back(entry);
      if (!transfer) continue;
      entry.ent_sal = "E";
      entry.operacion = "T+";
      entry.tipo_doc = "T+";
      entry.almacen = data::ToNumber(head_.Fields("almt"));
      // It stays for the lines that follow, as on the screen.
      if (to_station) entry.estacion_traspaso = data::Trim(data::ToText(head_.Fields("estaciontraspaso")));
      entry.precio = 0.0;
      if (!ledger.Anterior(entry)) missing.push_back(entry);
    }
    return missing;
  }

 private:
  [[nodiscard]] std::string Nombre() const {
    return "La " + data::LowerAscii(NombreDe(tipo_)) + " " + std::to_string(number_);
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
// so that two who complete at once never wait for each other in a circle.
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
    connection.Run("UPDATE prods SET costo_u = costo_u WHERE articulo = ?", {article});
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
  const std::vector<Hecho> made = ConPaciencia(who.connection, [&] {
    std::vector<Hecho> done;
    data::Transaction whole(who.connection);
    const std::vector<Asiento> missing = Posteo(who, tipo, documento).Faltantes();
    if (missing.empty()) return done;
    TomaEnOrden(who.connection, missing);
    Libro ledger(who.connection);
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
                           .texto = std::to_string(missing.size()) + " movimientos que faltaban"});
    whole.Commit();
    return done;
  });
  for (const auto& [properties, worth] : made) who.testigo.Movimiento(properties, worth);
  return static_cast<int>(made.size());
}

}  // namespace tarvik::host
