#include "host/alcance.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "data/error.h"
#include "data/number.h"
#include "goods_out/frm_salidas_wizard.h"
#include "wizard/campos.h"
#include "wizard/document_wizard.h"
#include "wizard/modos.h"

namespace tarvik::host {
namespace {

// The lines `p` of the documents `h` that are still to be moved, in the words of the ledger's own rule, so
// that its index serves.
const std::string kPorMover =
    "NOT EXISTS (SELECT 1 FROM movsinv m WHERE m.id_salida = p.id_salida AND m.operacion = 'SA' AND "
    "m.id_salida >= 1 AND m.operacion IN ('SA', 'T+') AND (m.claveadd IS NULL OR m.claveadd <> '999' OR "
    "m.almacen IS NOT NULL))";

const std::string kPendiente = "(h.estado IS NULL OR h.estado <> 'CO')";

// Sums of the same parts in another order differ in their last digits: that is no lack.
constexpr double kMargen = 1e-9;

bool Falta(const Faltante& of) {
  const double margin = kMargen * std::max({1.0, std::abs(of.pide), std::abs(of.hay), std::abs(of.en_otros)});
  return of.pide - (of.hay - of.en_otros) > margin;
}

// What the other pending documents of the same warehouse ask of the document's articles.
std::unordered_map<std::string, double> LeeOtros(data::EngineConnection& connection,
                                                 const PorAfectar& documento) {
  const data::Rows rows = connection.Run(
      "SELECT p.articulo, SUM(COALESCE(p.cantidad, 0)) AS pide FROM salidas h INNER JOIN salpart p ON "
      "p.salida "
      "= h.salida WHERE h.estado = 'PE' AND h.salida <> ? AND COALESCE(h.almacen + 0, 0) = ? AND p.articulo "
      "IN (SELECT articulo FROM salpart WHERE salida = ?) AND " +
          kPorMover + " GROUP BY p.articulo",  // a warehouse that was left empty is a text in a file
      {documento.documento.numero, documento.almacen, documento.documento.numero});
  std::unordered_map<std::string, double> asked;
  for (const auto& row : rows.rows) asked.emplace(data::ToText(row[0]), data::ToNumber(row[1]));
  return asked;
}

void PonRenglones(data::EngineConnection& connection, std::int32_t salida, std::vector<Faltante>& found) {
  std::unordered_map<std::string, Faltante*> by_article;
  for (Faltante& missing : found) by_article[missing.articulo] = &missing;
  const data::Rows lines =
      connection.Run("SELECT p.articulo, p.id_salida FROM salpart p WHERE p.salida = ? AND " + kPorMover +
                         " ORDER BY p.id_salida",
                     {salida});
  for (const auto& row : lines.rows) {
    const auto of = by_article.find(data::ToText(row[0]));
    if (of == by_article.end()) continue;
    of->second->renglones.push_back(static_cast<std::int32_t>(data::ToNumber(row[1])));
  }
}

// A line of a goods-in, beside what is known of its article.
struct Renglon {
  std::int32_t id;
  std::string articulo;
  double cantidad;
  double precio;
  double costo;          // 0: none is known
  std::int32_t primero;  // the first line like it, which may be itself
};

std::vector<Renglon> LeeRenglones(data::EngineConnection& connection, std::int32_t entrada) {
  const data::Rows lines = connection.Run(
      "SELECT s.id, s.articulo, s.cantidad, s.precio, COALESCE(a.costo_u, 0) AS costo, MIN(s.id) OVER "
      "(PARTITION BY s.articulo, s.cantidad, s.precio) AS primero FROM (SELECT p.id_entrada AS id, "
      "p.articulo, "
      "COALESCE(p.cantidad, 0) AS cantidad, COALESCE(p.precio, 0) AS precio FROM entradas h INNER JOIN "
      "entpart "
      "p ON p.entrada = h.entrada WHERE h.entrada = ? AND " +
          kPendiente +
          " AND TRIM(COALESCE(p.articulo, '')) <> '') s LEFT JOIN prods a ON a.articulo = s.articulo ORDER "
          "BY "
          "s.id",
      {entrada});
  std::vector<Renglon> read;
  read.reserve(lines.rows.size());
  for (const auto& row : lines.rows) {
    read.push_back({static_cast<std::int32_t>(data::ToNumber(row[0])), data::ToText(row[1]),
                    data::ToNumber(row[2]), data::ToNumber(row[3]), data::ToNumber(row[4]),
                    static_cast<std::int32_t>(data::ToNumber(row[5]))});
  }
  return read;
}

// The largest quantity of the last lines of each article of a document; none for one that never came in. An
// engine takes the lines from their index and stops at the twentieth; the documents that don't count, which
// are few, it reads once, by the index of their state, which serves no "<>".
std::unordered_map<std::string, double> LeeMayores(data::EngineConnection& connection, std::int32_t entrada) {
  const data::Rows rows = connection.Run(
      "SELECT s.articulo, (SELECT MAX(q.cantidad) FROM (SELECT l.cantidad FROM entpart l WHERE l.articulo = "
      "s.articulo AND l.entrada NOT IN (SELECT d.entrada FROM entradas d WHERE d.estado < 'CO' OR d.estado > "
      "'CO' OR d.estado IS NULL) ORDER BY l.id_entrada DESC LIMIT 20) q) AS mayor FROM (SELECT DISTINCT "
      "articulo FROM entpart WHERE entrada = ?) s",
      {entrada});
  std::unordered_map<std::string, double> largest;
  for (const auto& row : rows.rows) {
    if (!row[1].IsNull()) largest.emplace(data::ToText(row[0]), data::ToNumber(row[1]));
  }
  return largest;
}

std::string TextoDePrecio(const Renglon& line, const FormatosDeCifras& formats) {
  const double apart = (line.precio - line.costo) / line.costo;
  return line.articulo + ": el precio " + data::FormatNumber(line.precio, formats.importe) + " está " +
         data::FormatNumber(std::abs(apart) * 100, "###,###,##0") + " % " + (apart > 0 ? "arriba" : "abajo") +
         " del último costo, " + data::FormatNumber(line.costo, formats.importe);
}

std::string TextoDeCantidad(const Renglon& line, double largest, const FormatosDeCifras& formats) {
  return line.articulo + ": la cantidad " + data::FormatNumber(line.cantidad, formats.cantidad) +
         " es más de cinco veces la mayor de sus últimas entradas, " +
         data::FormatNumber(largest, formats.cantidad);
}

std::string TextoDeRepetido(const Renglon& line, const FormatosDeCifras& formats) {
  return line.articulo + ": hay otro renglón igual, con cantidad " +
         data::FormatNumber(line.cantidad, formats.cantidad) + " y precio " +
         data::FormatNumber(line.precio, formats.importe);
}

}  // namespace

PorAfectar PorAfectarDe(forms::Form& pantalla) {
  DocumentWizard* wizard = AsistenteDe(pantalla);
  if (wizard == nullptr) {
    throw data::Error("Antes de afectar sólo se comprueban las entradas y las salidas; \"" +
                      pantalla.Caption() + "\" no es ninguna de ellas");
  }
  const bool issue = dynamic_cast<const frmSalidasWizard*>(&pantalla) != nullptr;
  const auto stored = DocumentoDe(pantalla);
  return {stored.value_or(Retenido{issue ? Tipo::Salida : Tipo::Entrada, 0}),
          data::ToNumber(wizard->txtFields(campo::Almacen).Text())};
}

PorAfectar PorAfectarDe(data::EngineConnection& connection, const Retenido& documento) {
  const data::Rows header = connection.Run(
      ConTablas(documento.tipo, "SELECT almacen FROM {encabezado} WHERE {numero} = ?"), {documento.numero});
  if (header.rows.empty()) throw data::Error("No existe " + LaDe(documento));
  return {documento, data::ToNumber(header.rows[0][0])};
}

std::vector<Faltante> LeeAlcance(data::EngineConnection& connection, const PorAfectar& documento) {
  const auto& [document, warehouse] = documento;
  if (document.tipo != Tipo::Salida) return {};
  const data::Rows rows = connection.Run(
      "SELECT s.articulo, s.pide, COALESCE(e.existencia, 0) AS hay FROM (SELECT p.articulo, "
      "SUM(COALESCE(p.cantidad, 0)) AS pide FROM salidas h INNER JOIN salpart p ON p.salida = h.salida WHERE "
      "h.salida = ? AND " +
          kPendiente + " AND " + kPorMover +
          " GROUP BY p.articulo) s INNER JOIN prods a ON a.articulo = s.articulo LEFT JOIN existenciaalmacen "
          "e "
          "ON e.almacen = ? AND e.articulo = s.articulo WHERE COALESCE(a.Invent, 0) <> 0 ORDER BY s.articulo",
      {document.numero, warehouse});
  if (rows.rows.empty()) return {};
  const auto elsewhere = LeeOtros(connection, documento);
  std::vector<Faltante> found;
  for (const auto& row : rows.rows) {
    Faltante missing{data::ToText(row[0]), data::ToNumber(row[1]), data::ToNumber(row[2]), 0, {}};
    if (const auto others = elsewhere.find(missing.articulo); others != elsewhere.end()) {
      missing.en_otros = others->second;
    }
    if (Falta(missing)) found.push_back(std::move(missing));
  }
  if (!found.empty()) PonRenglones(connection, document.numero, found);
  return found;
}

std::vector<AvisoDeEntrada> LeeAvisos(data::EngineConnection& connection, const PorAfectar& documento,
                                      const FormatosDeCifras& formatos) {
  constexpr double kLejos = 0.5;  // of the last cost
  constexpr double kVeces = 5;
  if (documento.documento.tipo != Tipo::Entrada) return {};
  const std::vector<Renglon> lines = LeeRenglones(connection, documento.documento.numero);
  if (lines.empty()) return {};
  const auto largest = LeeMayores(connection, documento.documento.numero);
  std::vector<AvisoDeEntrada> found;
  for (const Renglon& line : lines) {
    const auto say = [&](const char* what, std::string text) {
      found.push_back({line.articulo, line.id, what, std::move(text)});
    };
    if (line.costo > 0 && std::abs(line.precio - line.costo) > kLejos * line.costo * (1 + kMargen)) {
      say(clase_de_aviso::kPrecio, TextoDePrecio(line, formatos));
    }
    const auto before = largest.find(line.articulo);
    if (before != largest.end() && before->second > 0 &&
        line.cantidad > kVeces * before->second * (1 + kMargen)) {
      say(clase_de_aviso::kCantidad, TextoDeCantidad(line, before->second, formatos));
    }
    if (line.primero != line.id) say(clase_de_aviso::kRepetido, TextoDeRepetido(line, formatos));
  }
  return found;
}

}  // namespace tarvik::host
