// Kind and number of a document, and what is stored of it.
#include "host/documentos.h"

#include "data/error.h"
#include "data/text.h"
#include "goods_in/frm_entradas_wizard.h"
#include "goods_out/frm_salidas_wizard.h"
#include "wizard/modos.h"

namespace tarvik::host {

std::string_view NombreDe(Tipo tipo) { return tipo == Tipo::Entrada ? "Entrada" : "Salida"; }

std::optional<Tipo> TipoLlamado(std::string_view nombre) {
  for (const Tipo tipo : {Tipo::Entrada, Tipo::Salida}) {
    if (data::EqualsNoCase(nombre, NombreDe(tipo))) return tipo;
  }
  return {};
}

Tipo TipoDe(std::string_view nombre) {
  if (const auto tipo = TipoLlamado(nombre)) return *tipo;
  throw data::Error("No hay documentos del tipo \"" + data::RepairUtf8(nombre) +
                    "\"; son \"Entrada\" y \"Salida\"");
}

std::string LaDe(const Retenido& documento, bool capital) {
  return (capital ? "La " : "la ") + data::LowerAscii(NombreDe(documento.tipo)) + " " +
         std::to_string(documento.numero);
}

std::string Movimientos(std::int64_t cuantos) {
  return std::to_string(cuantos) + (cuantos == 1 ? " movimiento" : " movimientos");
}

const Tablas& TablasDe(Tipo tipo) {
  static const Tablas in{"entradas", "entrada", "entpart", "id_entrada", "MovEnt", "operacion = 'EN'"};
  static const Tablas out{"salidas", "salida", "salpart", "id_salida", "Salida", "operacion IN ('SA', 'T+')"};
  return tipo == Tipo::Entrada ? in : out;
}

std::string ConTablas(Tipo tipo, std::string text) {
  const Tablas& tables = TablasDe(tipo);
  for (const auto& [mark, value] :
       {std::pair<std::string_view, std::string>{"{encabezado}", tables.encabezado},
        {"{renglones}", tables.partidas},
        {"{numero}", tables.clave},
        {"{id}", tables.renglon},
        {"{folio}", tipo == Tipo::Entrada ? "entrada" : "folio"},
        {"{operaciones}", tipo == Tipo::Entrada ? "'EN'" : "'SA', 'T+'"}}) {
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at)) {
      text.replace(at, mark.size(), value);
    }
  }
  return text;
}

DocumentWizard* AsistenteDe(forms::Form& screen) { return dynamic_cast<DocumentWizard*>(&screen); }

std::optional<Retenido> DocumentoDe(const forms::Form& screen) {
  if (const auto* entry = dynamic_cast<const frmEntradasWizard*>(&screen)) {
    if (entry->Entrada != 0) return Retenido{Tipo::Entrada, entry->Entrada};
  } else if (const auto* issue = dynamic_cast<const frmSalidasWizard*>(&screen)) {
    if (issue->Salida != 0) return Retenido{Tipo::Salida, issue->Salida};
  }
  return {};
}

std::optional<Retenido> RetenidoPor(const forms::Form& screen) {
  const auto* wizard = dynamic_cast<const DocumentWizard*>(&screen);
  if (wizard == nullptr || !wizard->Open() || wizard->Modo != modo::kModificacion) return {};
  return DocumentoDe(screen);
}

std::optional<Contenido> ContenidoDe(data::EngineConnection& connection, const Retenido& documento) {
  const Tablas& tables = TablasDe(documento.tipo);
  const std::string of_document = tables.partidas + " WHERE " + tables.clave + " = ?";
  const auto found =
      connection.Run("SELECT estado, (SELECT COUNT(*) FROM " + of_document +
                         ") AS renglones, (SELECT COUNT(*) FROM movsinv WHERE " + tables.movidos + " AND " +
                         tables.renglon + " IN (SELECT " + tables.renglon + " FROM " + of_document +
                         ")) AS movimientos FROM " + tables.encabezado + " WHERE " + tables.clave + " = ?",
                     {documento.numero, documento.numero, documento.numero});
  if (found.rows.empty()) return {};
  const auto& row = found.rows.front();
  return Contenido{data::ToText(row[0]), static_cast<std::int64_t>(data::ToNumber(row[1])),
                   static_cast<std::int64_t>(data::ToNumber(row[2]))};
}

}  // namespace tarvik::host
