#include "host/cierres.h"

#include <algorithm>

#include "data/error.h"
#include "goods_in/frm_entradas_wizard.h"
#include "goods_out/frm_salidas_wizard.h"
#include "host/a_medias.h"
#include "host/anfitrion.h"
#include "host/tenencia_viva.h"
#include "service/door/entradas_salidas.h"
#include "service/report/pantalla.h"
#include "wizard/modos.h"

namespace tarvik::host {
namespace {

data::Value Nombre(Tipo tipo) { return std::string(NombreDe(tipo)); }

// The screen's current line is the one that is being posted.
bool Afecta(const DocumentWizard& screen, const char* column, const data::Value& line) {
  return screen.Open() && screen.Modo == modo::kModificacion && screen.rstPartidas &&
         screen.rstPartidas->IsOpen() && !screen.rstPartidas->Eof() &&
         screen.rstPartidas->Fields(column) == line;
}

std::vector<std::string> Partes(const std::string& text) {
  std::vector<std::string> parts;
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t end = std::min(text.find(',', from), text.size());
    if (end > from) parts.push_back(text.substr(from, end - from));
    from = end + 1;
  }
  return parts;
}

// What a finish runs after the posting, in its order.
std::vector<std::string> Pasos(data::EngineConnection& connection, Tipo tipo, std::int32_t documento,
                               bool imprime) {
  std::vector<std::string> steps;
  if (tipo == Tipo::Entrada) {
    steps.emplace_back("ENTRADA014");
    const auto head = connection.Run("SELECT tipo_doc FROM entradas WHERE entrada = ?", {documento});
    if (head.rows.empty()) return {};
    if (data::ToText(head.rows[0][0]) == "A++") steps.emplace_back("ENTRADA010");
  } else {
    const auto head = connection.Run("SELECT estraspaso FROM salidas WHERE salida = ?", {documento});
    if (head.rows.empty()) return {};
    if (data::IsNonZero(head.rows[0][0])) steps.emplace_back("SALIDAS017");
    steps.emplace_back("SALIDAS005");
  }
  if (imprime) steps.emplace_back(kImprime);
  return steps;
}

}  // namespace

std::optional<Cierres::Cierre> Cierres::QuienAfecta(const Asiento& asiento) const {
  const char* column = asiento.ColumnaDelRenglon();
  if (column == nullptr) return {};
  for (const auto& screen : platform_.Screens()) {
    if (const auto* in = dynamic_cast<const frmEntradasWizard*>(screen.get())) {
      if (column == std::string_view("id_entrada") && Afecta(*in, column, asiento.Renglon())) {
        return Cierre{in, Tipo::Entrada, in->Entrada, in->Check2.Value() == 1};
      }
    } else if (const auto* out = dynamic_cast<const frmSalidasWizard*>(screen.get())) {
      if (column == std::string_view("id_salida") && Afecta(*out, column, asiento.Renglon())) {
        return Cierre{out, Tipo::Salida, out->Salida, out->Check2.Value() != 0};
      }
    }
  }
  return {};
}

std::vector<Cierres::Cierre>::iterator Cierres::De(const forms::Form& screen) {
  return std::find_if(under_way_.begin(), under_way_.end(),
                      [&](const Cierre& one) { return one.screen == &screen; });
}

void Cierres::Empieza(const Asiento& asiento) {
  beginning_ = QuienAfecta(asiento);
  if (!beginning_) return;
  const auto known = De(*beginning_->screen);
  if (known != under_way_.end() && known->documento == beginning_->documento) {
    beginning_.reset();
  } else {
    Escribe(*beginning_);
  }
}

void Cierres::Empezado() {
  if (!beginning_) return;
  if (const auto before = De(*beginning_->screen); before != under_way_.end()) under_way_.erase(before);
  under_way_.push_back(*beginning_);
  beginning_.reset();
}

void Cierres::Escribe(const Cierre& cierre) {
  connection_.Run(
      "INSERT INTO cierres (tipo, documento, usuario, estacion, cuando, imprime, hecho) VALUES (?, ?, ?, ?, "
      "?, ?, "
      "'') ON CONFLICT (tipo, documento) DO UPDATE SET usuario = excluded.usuario, estacion = "
      "excluded.estacion, "
      "cuando = excluded.cuando, imprime = excluded.imprime, hecho = ''",
      {Nombre(cierre.tipo), cierre.documento, ambiente_.Lee("Usuario"), ambiente_.Lee("Estacion"),
       platform_.Now().Iso(), cierre.imprime ? 1 : 0});
}

void Cierres::Corrio(const forms::Form& screen, std::string_view step) {
  const auto one = De(screen);
  if (one == under_way_.end()) return;
  try {
    connection_.Run("UPDATE cierres SET hecho = hecho || ? WHERE tipo = ? AND documento = ?",
                    {std::string(step) + ",", Nombre(one->tipo), one->documento});
  } catch (const data::Error&) {  // it would be offered once more: the operator decides
  }
}

void Cierres::Termina(const forms::Form& screen) {
  const auto one = De(screen);
  if (one == under_way_.end()) return;
  const Cierre finished = *one;
  under_way_.erase(one);
  try {
    OlvidaCierre(connection_, finished.tipo, finished.documento);
  } catch (const data::Error&) {  // whole all the same: nothing is found missing
  }
}

std::vector<CierreInterrumpido> CierresInterrumpidos(data::EngineConnection& connection) {
  std::vector<CierreInterrumpido> found;
  const auto rows = connection.Run(
      "SELECT tipo, documento, usuario, estacion, cuando, imprime, hecho FROM cierres ORDER BY cuando, tipo, "
      "documento",
      {});
  for (const auto& row : rows.rows) {
    const Tipo tipo = TipoDe(data::ToText(row[0]));
    const auto documento = static_cast<std::int32_t>(data::ToNumber(row[1]));
    if (TenenciaViva(connection, tipo, documento)) continue;
    const std::vector<std::string> done = Partes(data::ToText(row[6]));
    CierreInterrumpido broken{tipo,
                              documento,
                              data::ToText(row[2]),
                              data::ToText(row[3]),
                              data::DateTime::Parse(data::ToText(row[4])).value_or(data::DateTime{}),
                              {}};
    for (std::string& step : Pasos(connection, tipo, documento, data::IsNonZero(row[5]))) {
      if (std::find(done.begin(), done.end(), step) == done.end()) broken.faltan.push_back(std::move(step));
    }
    if (!broken.faltan.empty()) {
      found.push_back(std::move(broken));
      continue;
    }
    try {
      OlvidaCierre(connection, tipo, documento);
    } catch (const data::Error& error) {  // whoever may only read leaves it to others
      if (error.Passing()) throw;
    }
  }
  return found;
}

void OlvidaCierre(data::EngineConnection& connection, Tipo tipo, std::int32_t documento) {
  connection.Run("DELETE FROM cierres WHERE tipo = ? AND documento = ?", {Nombre(tipo), documento});
}

namespace {

// The screen that shows the document, opened by the door as an operator would.
std::shared_ptr<forms::Form> EnConsulta(Anfitrion& host, Tipo tipo, std::int32_t documento) {
  const auto before = host.Plataforma().Screens();
  EntradasSalidas door(host);
  door.Ambiente = &host.Ambiente();
  door.Parent = &host.Parent();
  if (tipo == Tipo::Entrada) {
    door.ConsultaEntrada(documento);
  } else {
    door.ConsultaSalida(documento);
  }
  for (const auto& screen : host.Plataforma().Screens()) {
    if (std::find(before.begin(), before.end(), screen) != before.end()) continue;
    if (DocumentoDe(*screen) == Retenido{tipo, documento}) return screen;
  }
  throw data::Error("No se pudo abrir " + LaDe({tipo, documento}) + " para terminar su cierre");
}

void Corre(Anfitrion& host, forms::Form& screen, Tipo tipo, std::int32_t documento, const std::string& step) {
  if (step != kImprime) {
    return service::Dispara(host, step, screen, host.Ambiente());
  }
  const auto formats = host.Conexion().Run(
      std::string("SELECT ") + (tipo == Tipo::Entrada ? "Entradas" : "Salidas") + " FROM defform", {});
  if (formats.rows.empty()) throw data::Error("No hay formato de impresión definido");
  host.ConsultasCatalogo().ImprimeDocumento(data::ToText(formats.rows[0][0]), documento, host.Ambiente(),
                                            screen);
}

// The steps of one finish, each noted before it runs: it belongs to whoever noted it first.
class Turno {
 public:
  Turno(data::EngineConnection& connection, Tipo tipo, std::int32_t documento)
      : connection_(connection), tipo_(tipo), documento_(documento) {
    const auto rows = connection_.Run("SELECT hecho FROM cierres WHERE tipo = ? AND documento = ?",
                                      {Nombre(tipo_), documento_});
    if (!rows.rows.empty()) done_ = data::ToText(rows.rows[0][0]);
  }
  // False: another station has run a step meanwhile.
  bool Toma(const std::string& step) { return Cambia(done_, done_ + step + ","); }
  void Devuelve(const std::string& step) {
    try {
      Cambia(done_, done_.substr(0, done_.size() - step.size() - 1));
    } catch (const data::Error&) {  // it counts as run: rather once too few than twice
    }
  }

 private:
  bool Cambia(const std::string& from, const std::string& to) {
    const auto changed = connection_.Run(
        "UPDATE cierres SET hecho = ? WHERE tipo = ? AND documento = ? AND hecho = ? RETURNING documento",
        {to, Nombre(tipo_), documento_, from});
    if (changed.rows.empty()) return false;
    done_ = to;
    return true;
  }

  data::EngineConnection& connection_;
  Tipo tipo_;
  std::int32_t documento_;
  std::string done_;
};

}  // namespace

void TerminaCierre(Anfitrion& host, Tipo tipo, std::int32_t documento) {
  data::EngineConnection& connection = host.Conexion();
  const auto all = CierresInterrumpidos(connection);
  const auto broken = std::find_if(all.begin(), all.end(), [&](const CierreInterrumpido& one) {
    return one.tipo == tipo && one.documento == documento;
  });
  if (broken == all.end()) return;
  if (LeeAMedias(connection, tipo, documento)) {
    throw data::Error(LaDe({tipo, documento}, true) +
                      " está afectada a medias: complétela antes de terminar su cierre");
  }
  const auto screen = EnConsulta(host, tipo, documento);
  std::optional<data::Error> failed;
  screen->Act([&] {
    Turno turn(connection, tipo, documento);
    std::string running;
    try {
      for (const std::string& step : broken->faltan) {
        if (!turn.Toma(step)) return;
        running = step;
        Corre(host, *screen, tipo, documento, step);
        running.clear();
      }
      OlvidaCierre(connection, tipo, documento);
    } catch (const data::Error& error) {
      failed = error;
      if (!running.empty()) turn.Devuelve(running);
    }
  });
  if (screen->Open()) screen->Act([&] { screen->Unload(); });
  if (failed) throw data::Error(*failed);
}

}  // namespace tarvik::host
