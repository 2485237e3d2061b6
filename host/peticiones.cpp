// Requests and hand-over.
#include "host/peticiones.h"

#include <algorithm>
#include <exception>

#include "data/error.h"
#include "data/text.h"
#include "host/liberacion.h"
#include "host/renglon_en_curso.h"
#include "wizard/document_wizard.h"
#include "wizard/modos.h"

namespace tarvik::host {
namespace {

std::int64_t Entero(const data::Value& value) { return static_cast<std::int64_t>(data::ToNumber(value)); }

data::Value Clave(Tipo tipo) { return std::string(NombreDe(tipo)); }

data::Value Ocupado(data::EngineConnection& connection, const Retenido& documento) {
  const Tablas& tables = TablasDe(documento.tipo);
  const auto found = connection.Run(
      "SELECT ocupado FROM " + tables.encabezado + " WHERE " + tables.clave + " = ?", {documento.numero});
  if (found.rows.empty()) throw data::Error("No existe " + LaDe(documento));
  return found.rows.front().front();
}

void PonOcupado(data::EngineConnection& connection, const Retenido& documento, const data::Value& ocupado) {
  const Tablas& tables = TablasDe(documento.tipo);
  connection.Run("UPDATE " + tables.encabezado + " SET ocupado = ? WHERE " + tables.clave + " = ?",
                 {ocupado, documento.numero});
}

// A failure here is reported as one of the hand-over.
template <class Paso>
void O(const std::string& what, Paso&& step) {
  std::string reason;
  try {
    if (step()) return;
  } catch (const std::exception& error) {
    reason = std::string(": ") + error.what();
  }
  throw data::Error(what + reason);
}

}  // namespace

std::string Peticion::Estado() const { return servicio_->Lee(*this).estado; }
std::string Peticion::Motivo() const { return servicio_->Lee(*this).motivo; }
Desenlace Peticion::Mira() const { return servicio_->Mira(*this); }
void Peticion::Cede() { servicio_->Cede(*this); }
void Peticion::Niega(const std::string& motivo) { servicio_->Niega(*this, motivo); }

Peticion ServicioDePeticiones::De(const std::vector<data::Value>& row) {
  Peticion request;
  request.servicio_ = this;
  request.id = Entero(row[0]);
  request.documento = {TipoDe(data::ToText(row[1])), static_cast<std::int32_t>(data::ToNumber(row[2]))};
  request.usuario = data::ToText(row[3]);
  request.estacion = data::ToText(row[4]);
  request.mensaje = data::ToText(row[5]);
  request.cuando = data::DateTime::Parse(data::ToText(row[6])).value_or(data::DateTime{});
  return request;
}

ServicioDePeticiones::Respuesta ServicioDePeticiones::Lee(const Peticion& peticion) const {
  const auto found = connection_.Run("SELECT estado, motivo FROM peticiones WHERE id = ?", {peticion.id});
  if (found.rows.empty()) throw data::Error("La petición de " + LaDe(peticion.documento) + " ya no existe");
  return {data::ToText(found.rows[0][0]), data::ToText(found.rows[0][1])};
}

Desenlace ServicioDePeticiones::Mira(const Peticion& peticion) const {
  using Clase = Desenlace::Clase;
  const Retenido& document = peticion.documento;
  const Respuesta answer = Lee(peticion);
  if (answer.estado == "cedida") return {Clase::kAbre, {}};
  if (answer.estado == "negada") {
    return {Clase::kNo,
            "No se cedió " + LaDe(document) + (answer.motivo.empty() ? "" : ": " + answer.motivo)};
  }
  if (HayQuienConteste(document)) return {};
  const auto left = ContenidoDe(connection_, document);
  if (!left) return {Clase::kNo, LaDe(document, true) + " ya no existe"};
  if (left->estado == estado::kPendiente) return {Clase::kAbre, {}};
  return {Clase::kNo, LaDe(document, true) + " ya está finalizada: quien la tenía la cerró sin contestar"};
}

// Behind a flag without a lease there is nobody who could answer.
bool ServicioDePeticiones::HayQuienConteste(const Retenido& documento) const {
  const auto holders = LeeTenencias(connection_, documento);
  return std::any_of(holders.begin(), holders.end(),
                     [](const Tenencia& holder) { return holder.viva && holder.desde; });
}

Peticion ServicioDePeticiones::Pide(const Retenido& documento, const std::string& mensaje) {
  if (!HayQuienConteste(documento)) {
    throw data::Error("Nadie tiene abierta " + LaDe(documento) + ": no hay a quién pedirla");
  }
  const std::int64_t life = custodia_.Vida();
  const Acto now = custodia_.Firma("");
  data::Transaction whole(connection_);
  auto mine = connection_.Run(
      "UPDATE peticiones SET mensaje = ?, cuando = ? WHERE tipo = ? AND documento = ? AND vida = ? AND "
      "estado = 'pedida' AND abierta = 0 RETURNING id",
      {mensaje, now.cuando.Iso(), Clave(documento.tipo), documento.numero, life});
  if (mine.rows.empty()) {
    mine = connection_.Run(
        "INSERT INTO peticiones (tipo, documento, usuario, estacion, vida, mensaje, cuando, estado, abierta) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, 'pedida', 0) RETURNING id",
        {Clave(documento.tipo), documento.numero, now.usuario, now.estacion, life, mensaje,
         now.cuando.Iso()});
  }
  connection_.Notify();
  whole.Commit();
  pedidas_.insert({documento.tipo, documento.numero});
  return De({mine.rows.at(0).at(0), Clave(documento.tipo), documento.numero, now.usuario, now.estacion,
             mensaje, now.cuando.Iso()});
}

std::vector<Peticion> ServicioDePeticiones::Pedidas() {
  std::vector<Peticion> waiting;
  const std::int64_t life = custodia_.VidaDeAhora();
  if (life == 0) return waiting;
  const auto found = connection_.Run(
      "SELECT id, tipo, documento, usuario, estacion, mensaje, cuando, vida FROM peticiones WHERE estado = "
      "'pedida' AND abierta = 0 AND EXISTS (SELECT 1 FROM tenencias t WHERE t.tipo = peticiones.tipo AND "
      "t.documento = peticiones.documento AND t.vida = ?) ORDER BY id",
      {life});
  for (const auto& row : found.rows) {
    if (connection_.Lives(Entero(row[7]))) waiting.push_back(De(row));
  }
  return waiting;
}

void ServicioDePeticiones::YaNoLaTiene(const Retenido& documento) {
  throw data::Error("Este programa ya no tiene abierta " + LaDe(documento));
}

void ServicioDePeticiones::RequierePedida(const Peticion& peticion) const {
  if (Lee(peticion).estado != "pedida") {
    throw data::Error("La petición de " + LaDe(peticion.documento) + " ya se contestó");
  }
}

void ServicioDePeticiones::Niega(const Peticion& peticion, const std::string& motivo) {
  RequierePedida(peticion);
  if (custodia_.PantallasDe(peticion.documento).empty()) YaNoLaTiene(peticion.documento);
  data::Transaction whole(connection_);
  connection_.Run("UPDATE peticiones SET estado = 'negada', motivo = ? WHERE id = ? AND estado = 'pedida'",
                  {motivo, peticion.id});
  connection_.Notify();
  whole.Commit();
}

void ServicioDePeticiones::Cede(const Peticion& peticion) {
  const Retenido& document = peticion.documento;
  RequierePedida(peticion);
  if (platform_.Acting()) {
    throw data::Error("Hay una operación en curso. Ceda " + LaDe(document) + " cuando termine");
  }
  const auto screens = custodia_.PantallasDe(document);
  if (screens.empty()) YaNoLaTiene(document);
  const data::Rows asker = connection_.Run("SELECT vida FROM peticiones WHERE id = ?", {peticion.id});
  if (asker.rows.empty() || !connection_.Lives(Entero(asker.rows[0][0]))) {
    throw data::Error("El programa de quien pidió " + LaDe(document) + " ya no está abierto; no se cedió");
  }
  // Of two screens the one in front, which the operator is looking at.
  auto chosen = std::find_if(screens.begin(), screens.end(),
                             [&](const auto& screen) { return screen.get() == platform_.ActiveForm(); });
  const std::shared_ptr<forms::Form> screen = chosen != screens.end() ? *chosen : screens.back();
  DocumentWizard& wizard = dynamic_cast<DocumentWizard&>(*screen);

  const data::Rows leases = connection_.Run("SELECT id, vida FROM tenencias WHERE tipo = ? AND documento = ?",
                                            {Clave(document.tipo), document.numero});
  const data::Value flag = Ocupado(connection_, document);
  const std::string row = TomaRenglonEnCurso(wizard, document.tipo);
  const int reported = wizard.Reportes();
  O("No se pudo guardar " + LaDe(document) + " y no se cedió", [&] {
    wizard.SalvaPendiente();
    return wizard.Reportes() == reported;
  });
  try {
    O(LaDe(document, true) + " no se cedió: su pantalla no se dejó cerrar", [&] { return screen->Unload(); });
  } catch (const data::Error&) {
    // The save has set the flag, which is as it was but for a document that two screens write.
    if (!data::IsNonZero(flag)) PonOcupado(connection_, document, flag);
    throw;
  }
  Entrega(peticion, leases, row);
}

// The screen is gone by now. Whatever else was open on the document loses it too; whoever took it since the
// flag was cleared keeps it.
void ServicioDePeticiones::Entrega(const Peticion& peticion, const data::Rows& leases,
                                   const std::string& row) {
  const Retenido& document = peticion.documento;
  Acto act = custodia_.Firma("cede");
  act.documento = document;
  act.texto = "A " + peticion.usuario + " en la estación " + peticion.estacion + "; la tenía " + act.usuario +
              " en la estación " + act.estacion + ".";
  data::Transaction whole(connection_);
  // The embedded engine gives the number of a deleted row to the next one: perhaps to another's lease.
  for (const auto& lease : leases.rows) {
    connection_.Run("DELETE FROM tenencias WHERE id = ? AND vida = ? AND tipo = ? AND documento = ?",
                    {lease[0], lease[1], Clave(document.tipo), document.numero});
  }
  const Tablas& tables = TablasDe(document.tipo);
  connection_.Run("UPDATE " + tables.encabezado + " SET ocupado = 0 WHERE " + tables.clave +
                      " = ? AND NOT EXISTS (SELECT 1 FROM tenencias WHERE tipo = ? AND documento = ?)",
                  {document.numero, Clave(document.tipo), document.numero});
  connection_.Run("UPDATE peticiones SET estado = 'cedida', renglon = ? WHERE id = ?", {row, peticion.id});
  Anota(connection_, act);
  connection_.Notify();
  whole.Commit();
  custodia_.MiraDeNuevo();
}

void ServicioDePeticiones::AlAbrir(forms::Form& screen) {
  const auto document = RetenidoPor(screen);
  if (!document || pedidas_.erase({document->tipo, document->numero}) == 0) return;
  const std::int64_t life = custodia_.VidaDeAhora();
  const auto asked = connection_.Run(
      "UPDATE peticiones SET abierta = 1 WHERE tipo = ? AND documento = ? AND vida = ? AND abierta = 0 "
      "RETURNING id, estado, renglon",
      {Clave(document->tipo), document->numero, life});
  std::int64_t last = 0;
  std::string row;
  for (const auto& request : asked.rows) {
    if (Entero(request[0]) < last) continue;
    last = Entero(request[0]);
    row = data::ToText(request[1]) == "cedida" ? data::ToText(request[2]) : "";
  }
  if (DocumentWizard* wizard = AsistenteDe(screen)) PonRenglonEnCurso(*wizard, document->tipo, row);
}

}  // namespace tarvik::host
