// Leases: their rows, their loss, and what a screen may still write.
#include "host/tenencias.h"

#include <algorithm>
#include <exception>

#include "data/error.h"
#include "wizard/document_wizard.h"
#include "wizard/modos.h"

namespace tarvik::host {
namespace {

using Clase = SentenciaDeDocumento::Clase;

std::int64_t Entero(const data::Value& value) { return static_cast<std::int64_t>(data::ToNumber(value)); }

// A line is on the screen by its number, in a hidden column.
bool MuestraRenglon(const forms::Form& screen, Tipo tipo, std::int32_t renglon) {
  const auto* wizard = dynamic_cast<const DocumentWizard*>(&screen);
  if (wizard == nullptr) return false;
  const int column = tipo == Tipo::Entrada ? 5 : 6;
  const std::string wanted = std::to_string(renglon);
  for (int row = 1; row < wizard->fg2.Rows(); ++row) {
    const std::string& cell = wizard->fg2.TextMatrix(row, column);
    if (cell == wanted) return true;
    if (cell.empty()) return false;
  }
  return false;
}

}  // namespace

Custodia::Custodia(data::EngineConnection& connection, forms::Platform& platform,
                   const AmbienteLocal& ambiente)
    : connection_(connection),
      platform_(platform),
      ambiente_(ambiente),
      eliminaciones_(connection, [this](const std::string& acto) { return Firma(acto); }) {}

Custodia::~Custodia() { QuitaPendientes(); }

Acto Custodia::Firma(const std::string& acto) const {
  return {platform_.Now(),
          data::ToText(ambiente_.Lee("Usuario")),
          data::ToText(ambiente_.Lee("Estacion")),
          acto,
          std::nullopt,
          ""};
}

data::Rows Custodia::Ejecuta(std::string_view text, const std::function<data::Rows()>& envia) {
  const SentenciaDeDocumento sentencia = Reconoce(text);
  switch (sentencia.clase) {
    case Clase::Otra:
      return envia();
    case Clase::Crea:
    case Clase::Toma:
      return Toma(sentencia, envia);
    case Clase::QuitaPartidas:
    case Clase::QuitaDocumento:
      return eliminaciones_.Ejecuta(sentencia, envia);
    case Clase::Suelta:
      try {
        return Permite(sentencia) ? envia() : data::Rows{};
      } catch (const data::Error&) {
        por_soltar_.push_back(sentencia.documento);
        throw;
      }
    default:
      if (!Permite(sentencia)) return {};
      return en_renglon ? en_renglon(sentencia, envia) : envia();
  }
}

// The row is written before the flag: whoever finds a flag finds its holder too.
data::Rows Custodia::Toma(const SentenciaDeDocumento& sentencia, const std::function<data::Rows()>& envia) {
  forms::Form* screen = PantallaPara(sentencia);
  if (screen == nullptr) return envia();
  Empieza(*screen, sentencia.documento);
  try {
    return envia();
  } catch (...) {
    Termina(*screen);
    throw;
  }
}

forms::Form* Custodia::PantallaPara(const SentenciaDeDocumento& sentencia) const {
  const auto& screens = platform_.Screens();
  for (auto screen = screens.rbegin(); screen != screens.rend(); ++screen) {
    DocumentWizard* wizard = AsistenteDe(**screen);
    if (wizard == nullptr || DocumentoDe(*wizard) != sentencia.documento) continue;
    if (sentencia.clase == Clase::Crea) {
      if (wizard->Modo == modo::kAlta) return wizard;
    } else if (wizard->Modo == modo::kModificacion &&
               std::none_of(tenidas_.begin(), tenidas_.end(),
                            [&](const Tenida& held) { return held.pantalla == wizard; })) {
      return wizard;
    }
  }
  return nullptr;
}

Custodia::Tenida* Custodia::De(const forms::Form& screen) {
  const auto found = std::find_if(tenidas_.begin(), tenidas_.end(),
                                  [&](const Tenida& held) { return held.pantalla == &screen; });
  return found == tenidas_.end() ? nullptr : &*found;
}

// A screen holds one document: if a new one was stored for another program's matrix and is then numbered
// again, the last number counts.
void Custodia::Empieza(forms::Form& screen, const Retenido& documento) {
  Termina(screen);
  tenidas_.push_back({&screen, documento, platform_.Now()});
  Escribe(tenidas_.back());
}

void Custodia::Termina(forms::Form& screen) {
  const Tenida* held = De(screen);
  if (held == nullptr) return;
  const std::int64_t id = held->perdida ? 0 : held->id;
  tenidas_.erase(tenidas_.begin() + (held - tenidas_.data()));
  Quita(id);
}

std::int64_t Custodia::Vida() {
  if (vida_ != 0) return vida_;
  if (por_vivir_ == 0) {
    const Acto now = Firma("");
    const auto drawn =
        connection_.Run("INSERT INTO vidas (usuario, estacion, desde) VALUES (?, ?, ?) RETURNING id",
                        {now.usuario, now.estacion, now.cuando.Iso()});
    por_vivir_ = Entero(drawn.rows.at(0).at(0));
  }
  connection_.Live(por_vivir_);
  vida_ = std::exchange(por_vivir_, 0);
  limpia_ = true;
  return vida_;
}

// Inside a routine's transaction the row would depend on it: it waits for the end of the act.
void Custodia::Escribe(Tenida& lease) noexcept {
  try {
    if (connection_.InTransaction()) return;
    const Acto now = Firma("");
    const std::int64_t life = Vida();
    if (tenidas_.size() == 1) vistos_ = connection_.Changes();  // nothing to lose before this one
    const std::string tipo{NombreDe(lease.documento.tipo)};
    if (lease.intentada) {
      const bool alone = std::none_of(tenidas_.begin(), tenidas_.end(), [&](const Tenida& other) {
        return &other != &lease && other.documento == lease.documento && other.id != 0;
      });
      if (alone) {
        connection_.Run("DELETE FROM tenencias WHERE vida = ? AND tipo = ? AND documento = ?",
                        {life, tipo, lease.documento.numero});
      }
    }
    lease.intentada = true;
    const auto drawn = connection_.Run(
        "INSERT INTO tenencias (tipo, documento, usuario, estacion, desde, vida) VALUES (?, ?, ?, ?, ?, ?) "
        "RETURNING id",
        {tipo, lease.documento.numero, now.usuario, now.estacion, lease.desde.Iso(), life});
    const std::int64_t id = Entero(drawn.rows.at(0).at(0));
    // The embedded engine gives the number of a deleted row to the next one.
    for (Tenida& other : tenidas_) {
      if (other.id == id) other.perdida = true;
    }
    std::erase(por_quitar_, id);
    lease.id = id;
    sin_escribir_.clear();
  } catch (const data::Error& error) {  // tried again when the act has ended
    if (!error.Passing()) sin_escribir_ = error.what();
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): likewise
  }
}

void Custodia::Quita(std::int64_t id) noexcept {
  if (id == 0) return;
  try {
    if (!connection_.InTransaction()) {
      connection_.Run("DELETE FROM tenencias WHERE id = ? AND vida = ?", {id, vida_});
      return;
    }
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): tried again at the end of later acts
  }
  por_quitar_.push_back(id);
}

void Custodia::Mira() {
  if (vida_ == 0) return;
  const std::int64_t now = connection_.Changes();
  if (vistos_ == now) return;
  const auto found = connection_.Run("SELECT id FROM tenencias WHERE vida = ?", {vida_});
  for (Tenida& held : tenidas_) {
    if (held.id == 0) continue;
    held.perdida = held.perdida || std::none_of(found.rows.begin(), found.rows.end(),
                                                [&](const auto& row) { return Entero(row[0]) == held.id; });
  }
  vistos_ = now;
}

std::vector<std::shared_ptr<forms::Form>> Custodia::PantallasDe(const Retenido& documento) {
  Mira();
  std::vector<std::shared_ptr<forms::Form>> screens;
  for (const Tenida& held : tenidas_) {
    if (held.documento == documento && !held.perdida && held.id != 0)
      screens.push_back(held.pantalla->shared_from_this());
  }
  return screens;
}

// ---- a lease that was taken ----

const Custodia::Tenida* Custodia::PerdidaDe(const SentenciaDeDocumento& sentencia) const {
  const auto found = std::find_if(tenidas_.begin(), tenidas_.end(), [&](const Tenida& held) {
    if (!held.perdida || held.documento.tipo != sentencia.documento.tipo) return false;
    return sentencia.clase == Clase::Corrige
               ? MuestraRenglon(*held.pantalla, held.documento.tipo, sentencia.renglon)
               : held.documento == sentencia.documento;
  });
  return found == tenidas_.end() ? nullptr : &*found;
}

void Custodia::MiraSiPuede() noexcept {
  try {
    Mira();
  } catch (
      const std::exception&) {  // NOLINT(bugprone-empty-catch): nothing known, and the statement says why
  }
}

bool Custodia::OtraLaTiene(const Tenida& lost) const {
  return std::any_of(tenidas_.begin(), tenidas_.end(), [&](const Tenida& other) {
    return other.documento == lost.documento && !other.perdida;
  });
}

void Custodia::ExigeRenglon(Tipo tipo, std::int32_t renglon) {
  if (tenidas_.empty()) return;
  MiraSiPuede();
  const Tenida* lost = PerdidaDe({.clase = Clase::Corrige, .documento = {tipo, 0}, .renglon = renglon});
  if (lost == nullptr || lost->pantalla == en_acto_ || OtraLaTiene(*lost)) return;
  throw data::Unrecoverable(PorQue(*lost) + " No se movió nada más desde esta pantalla.");
}

bool Custodia::Permite(const SentenciaDeDocumento& sentencia) {
  if (tenidas_.empty()) return true;
  MiraSiPuede();
  // Another screen of this program may have the document again; what this one's act sends is still its own.
  const Tenida* lost = PerdidaDe(sentencia);
  if (lost == nullptr || (lost->pantalla != en_acto_ && OtraLaTiene(*lost))) return true;
  if (sentencia.clase == Clase::Suelta) return false;  // this screen does not care whose flag it is now
  // Going on with the next step would store or post a part of what is no longer this screen's.
  throw data::Unrecoverable(PorQue(*lost) + " No se guardó nada más desde esta pantalla.");
}

std::string Custodia::PorQue(const Tenida& lease) const {
  std::string text = LaDe(lease.documento, true) + " ya no es de esta pantalla";
  try {
    const auto act = UltimoActo(connection_, lease.documento, "libera", "cede");
    // Clocks of two machines may differ; an act of another day was about another holder.
    if (act && !(act->cuando.date < lease.desde.date.PlusDays(-1))) {
      text += ": " + act->usuario + ", en la estación " + act->estacion +
              (act->acto == "cede" ? ", la cedió " : ", la liberó ") + Momento(act->cuando) + ". " +
              act->texto;
    }
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): who it was is an aid
  }
  return text + (text.ends_with('.') ? "" : ".");
}

bool Custodia::EmpiezaActo(forms::Form& screen) noexcept {
  en_acto_ = &screen;
  try {
    Tenida* held = De(screen);
    if (held == nullptr || held->avisada) return true;
    if (!held->perdida) Mira();
    if (!held->perdida) return true;
    held->avisada = true;
    const std::string text =
        PorQue(*held) + " Lo que ya estaba guardado sigue guardado; aquí sólo puede consultarse.";
    if (DocumentWizard* wizard = AsistenteDe(screen)) wizard->DejaEnConsulta();
    platform_.ShowBox(forms::BoxKind::Message, text, forms::kBoxInformation);
    return false;
  } catch (const std::exception&) {
    return true;  // the base can't be asked: the act's own statements say so
  }
}

void Custodia::TerminaActo() noexcept {
  en_acto_ = nullptr;
  if (connection_.InTransaction()) return;
  QuitaPendientes();
  for (Tenida& held : tenidas_) {
    if (held.id == 0 && RetenidoPor(*held.pantalla) == held.documento) Escribe(held);
  }
  try {
    if (std::exchange(limpia_, false)) LimpiaVidas();
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): another run will do it
  }
}

void Custodia::QuitaPendientes() noexcept {
  for (const std::int64_t id : std::exchange(por_quitar_, {})) Quita(id);
  if (!por_quitar_.empty()) return;  // a flag goes after its lease
  for (const Retenido& document : std::exchange(por_soltar_, {})) SueltaBandera(document);
}

// The flag that a closing screen could not clear. One that somebody has set since has a lease.
void Custodia::SueltaBandera(const Retenido& documento) noexcept {
  const Tablas& tables = TablasDe(documento.tipo);
  try {
    connection_.Run("UPDATE " + tables.encabezado + " SET ocupado = 0 WHERE " + tables.clave +
                        " = ? AND NOT EXISTS (SELECT 1 FROM tenencias WHERE tipo = ? AND documento = ?)",
                    {documento.numero, std::string(NombreDe(documento.tipo)), documento.numero});
  } catch (const data::Error& error) {
    if (error.Passing() || error.Kind() == data::Trouble::kSlow) por_soltar_.push_back(documento);
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): it stays, and belongs to nobody
  }
}

void Custodia::SeFue(forms::Form& screen) noexcept { Termina(screen); }

// The last row stays, so that its number is not drawn again. What a dead program held of a document that it
// never stored goes first.
void Custodia::LimpiaVidas() {
  constexpr const char* kDeNada =
      "SELECT DISTINCT t.vida FROM tenencias t WHERE t.vida < ? AND CASE WHEN t.tipo = 'Entrada' THEN NOT "
      "EXISTS "
      "(SELECT 1 FROM entradas e WHERE e.entrada = t.documento) ELSE NOT EXISTS (SELECT 1 FROM salidas s "
      "WHERE "
      "s.salida = t.documento) END ORDER BY 1 LIMIT 50";
  for (const auto& row : connection_.Run(kDeNada, {vida_}).rows) {
    if (connection_.Lives(Entero(row[0]))) continue;
    connection_.Run(
        "DELETE FROM tenencias WHERE vida = ? AND CASE WHEN tipo = 'Entrada' THEN NOT EXISTS (SELECT 1 FROM "
        "entradas e WHERE e.entrada = documento) ELSE NOT EXISTS (SELECT 1 FROM salidas s WHERE s.salida = "
        "documento) END",
        {row[0]});
  }
  constexpr const char* kSinTenencia =
      "SELECT id FROM vidas WHERE id < ? AND NOT EXISTS (SELECT 1 FROM tenencias WHERE tenencias.vida = "
      "vidas.id) ORDER BY id LIMIT 50";
  for (const auto& row : connection_.Run(kSinTenencia, {vida_}).rows) {
    if (!connection_.Lives(Entero(row[0]))) {
      connection_.Run("DELETE FROM vidas WHERE id = ?", {row[0]});
    }
  }
}

}  // namespace tarvik::host
