// From the tape into a screen: the queue, the typing of a reading, and what becomes of it.
#include "host/lecturas.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "data/error.h"
#include "data/text.h"
#include "service/report/pantalla.h"
#include "wizard/document_wizard.h"

namespace tarvik::host {
namespace {

using Clase = SentenciaDeDocumento::Clase;

constexpr int kLectorPuesto = 1;

// Without the one line end that a scanner sends behind a code.
std::string SinFinal(const std::string& text) {
  std::string read = data::RepairUtf8(text);
  if (!read.empty() && (read.back() == '\r' || read.back() == '\n')) read.pop_back();
  return read;
}

std::vector<char32_t> Caracteres(std::string_view text) {
  std::vector<char32_t> characters;
  while (!text.empty()) {
    characters.push_back(data::Decode(text));
    text.remove_prefix(data::Encode(characters.back()).size());
  }
  return characters;
}

bool EsDeControl(char32_t character) { return character < 0x20 || (character >= 0x7F && character <= 0x9F); }

// Why a text is no reading at all; empty if it is one.
std::string NoEsLectura(const std::string& text) {
  if (text.empty()) return "la lectura está vacía";
  const auto characters = Caracteres(text);
  if (std::any_of(characters.begin(), characters.end(), EsDeControl))
    return "trae caracteres de control, que ningún código tiene";
  return "";
}

// A box's text on one line.
std::string EnUnaLinea(std::string text) {
  for (char& character : text) {
    if (character == '\r' || character == '\n') character = ' ';
  }
  std::string line;
  for (const char character : text) {
    if (character != ' ' || (!line.empty() && line.back() != ' ')) line += character;
  }
  return data::Trim(line);
}

std::shared_ptr<DocumentWizard> Asistente(const std::shared_ptr<forms::Form>& form) {
  return std::dynamic_pointer_cast<DocumentWizard>(form);
}

Tipo TipoDePantalla(const DocumentWizard& screen) {
  return screen.Name() == "frmEntradasWizard" ? Tipo::Entrada : Tipo::Salida;
}

}  // namespace

ServicioDeLecturas::ServicioDeLecturas(data::EngineConnection& connection, forms::Platform& platform,
                                       Custodia& custodia, std::function<bool()> en_rutina)
    : connection_(connection), platform_(platform), custodia_(custodia), en_rutina_(std::move(en_rutina)) {}

std::shared_ptr<Lectura> ServicioDeLecturas::Recibe(const std::string& texto, forms::Form* pantalla) {
  auto screen = pantalla != nullptr ? Asistente(pantalla->shared_from_this()) : AlFrente();
  if (pantalla != nullptr && screen == nullptr)
    throw data::Error("Sólo las pantallas de entradas y de salidas reciben lecturas");
  auto reading = std::make_shared<Lectura>();
  reading->texto = SinFinal(texto);
  const Acto now = custodia_.Firma("");
  reading->usuario = now.usuario;
  reading->estacion = now.estacion;
  reading->cuando = now.cuando;
  if (screen != nullptr) {
    reading->tipo = TipoDePantalla(*screen);
    if (const auto document = DocumentoDe(*screen)) reading->documento = document->numero;
  }
  propias_.push_back({reading, screen});
  if (!platform_.Acting()) connection_.Waiting().ActBegins();
  const std::string never = NoEsLectura(reading->texto);
  const bool readable = never.empty();
  if (readable) {
    Cambia(*reading, lectura::kEspera);
    AlFinal(reading, screen, screen == nullptr);
  } else {
    Cambia(*reading, lectura::kRechazada, never);
  }
  if (!platform_.Acting()) connection_.Waiting().ActEnds();
  Atiende();
  return reading;
}

void ServicioDeLecturas::AlFinal(const Entrada_& reading, std::weak_ptr<forms::Form> screen, bool any) {
  cola_.push_back({reading, std::move(screen), any});
}

// ---- where a reading goes ----

// The matrix and the pickers stand before a document's screen, and take no readings.
std::shared_ptr<DocumentWizard> ServicioDeLecturas::AlFrente() const {
  const auto& screens = platform_.Screens();
  // Whatever stands in front while a screen acts, it is that screen's.
  for (const forms::Form* front : {en_acto_, static_cast<const forms::Form*>(platform_.ActiveForm())}) {
    for (const auto& screen : screens) {
      if (screen.get() != front || !screen->Visible()) continue;
      if (auto wizard = Asistente(screen)) return wizard;
    }
  }
  for (auto screen = screens.rbegin(); screen != screens.rend(); ++screen) {
    auto wizard = Asistente(*screen);
    if (wizard != nullptr && wizard->Visible()) return wizard;
  }
  return nullptr;
}

std::shared_ptr<DocumentWizard> ServicioDeLecturas::Abierta(const Lectura& reading) const {
  if (!reading.tipo || !reading.documento) return nullptr;
  for (const auto& screen : platform_.Screens()) {
    auto wizard = Asistente(screen);
    if (wizard != nullptr && wizard->Visible() &&
        RetenidoPor(*wizard) == Retenido{*reading.tipo, *reading.documento})
      return wizard;
  }
  return nullptr;
}

std::shared_ptr<DocumentWizard> ServicioDeLecturas::PantallaDe(const EnCola& waiting) const {
  if (auto own = Asistente(waiting.pantalla.lock()); own != nullptr && own->Open()) return own;
  if (auto again = Abierta(*waiting.lectura)) return again;
  if (!waiting.de_la_que_venga) return nullptr;
  auto front = AlFrente();
  return front != nullptr && !front->SoloLectura() ? front : nullptr;
}

// ---- when ----

bool ServicioDeLecturas::Libre(const DocumentWizard& screen) const {
  if (platform_.Acting() || platform_.Boxes() > 0 || en_rutina_()) return false;
  return platform_.Modals() == 0 || platform_.ActiveForm() == &screen;
}

bool ServicioDeLecturas::PuedeTomarla(DocumentWizard& screen) const {
  if (!Libre(screen) || !screen.Visible()) return false;
  if (screen.SoloLectura()) return true;  // to be refused
  if (screen.txtEdit.Visible()) return false;
  if (screen.Check4.Value() == kLectorPuesto) return true;
  return screen.txtFields(campo::Articulo).Text().empty() &&
         screen.txtFields(campo::SegundaClave).Text().empty();
}

void ServicioDeLecturas::Atiende() noexcept {
  if (atendiendo_) return;
  atendiendo_ = true;
  try {
    // In the middle of an act a row is on its way to a line: what became of it is seen when it is over.
    if (!platform_.Acting() && platform_.Boxes() == 0 && !en_rutina_()) RevisaRenglones();
    while (AtiendeUna()) {
    }
    for (Lectura* unwritten : std::exchange(sin_guardar_, {})) Guarda(*unwritten);
  } catch (const std::exception& error) {
    platform_.Unhandled(nullptr, error);
  }
  atendiendo_ = false;
}

bool ServicioDeLecturas::AtiendeUna() {
  std::vector<const DocumentWizard*> busy;  // what came first for a screen is fed first
  for (auto waiting = cola_.begin(); waiting != cola_.end(); ++waiting) {
    const auto screen = PantallaDe(*waiting);
    if (screen == nullptr || std::find(busy.begin(), busy.end(), screen.get()) != busy.end()) continue;
    if (!PuedeTomarla(*screen)) {
      busy.push_back(screen.get());
      continue;
    }
    const EnCola taken = *waiting;
    cola_.erase(waiting);
    Teclea(taken, *screen);
    return true;
  }
  return false;
}

// ---- the typing ----

void ServicioDeLecturas::Teclea(const EnCola& waiting, DocumentWizard& screen) {
  Lectura& reading = *waiting.lectura;
  reading.tipo = TipoDePantalla(screen);
  reading.documento.reset();
  if (const auto document = DocumentoDe(screen)) reading.documento = document->numero;
  for (Propio& own : propias_) {
    if (own.lectura == waiting.lectura) own.pantalla = screen.shared_from_this();
  }
  forms::TextBox& field = screen.txtFields(campo::Articulo);
  if (screen.SoloLectura()) {
    return Cambia(reading, lectura::kRechazada, "el documento sólo puede consultarse");
  }
  if (field.MaxLength() > 0 && static_cast<int>(data::Length(reading.texto)) > field.MaxLength()) {
    return Cambia(reading, lectura::kRechazada,
                  "es más larga que el campo, que admite " + std::to_string(field.MaxLength()));
  }
  Tecleada typed{waiting.lectura, screen};
  tecleada_ = &typed;
  const std::string quantity = screen.txtFields(campo::Cantidad).Text();
  Escribe(typed);
  tecleada_ = nullptr;
  Resuelve(typed, quantity);
}

void ServicioDeLecturas::Escribe(Tecleada& typed) {
  DocumentWizard& screen = typed.pantalla;
  forms::TextBox& field = screen.txtFields(campo::Articulo);
  if (!screen.Enter(field) || screen.ActiveControl() != &field) return;
  field.SelectAll();
  screen.al_dejar_articulo = [&] {
    typed.dejada = true;
    typed.desconocida = !Conocida(screen);
    return !typed.desconocida;
  };
  for (const char32_t character : Caracteres(typed.lectura->texto)) {
    if (screen.ActiveControl() != &field) break;  // a routine, or a field that is full, has gone on
    screen.Press(forms::KeyFor(character));
  }
  if (!typed.dejada && screen.Open() && screen.ActiveControl() == &field)
    screen.Press(*forms::KeyNamed("Enter"));
  screen.al_dejar_articulo = nullptr;
}

bool ServicioDeLecturas::Conocida(DocumentWizard& screen) {
  const std::string& text = screen.txtFields(campo::Articulo).Text();
  if (text.empty()) return false;  // a routine has emptied it
  const bool model = screen.Check4.Value() != kLectorPuesto && TipoDePantalla(screen) == Tipo::Entrada;
  try {
    return !connection_
                .Run(
                    "SELECT 1 FROM prods WHERE articulo = ? UNION ALL SELECT 1 FROM clavesadd WHERE clave = "
                    "?" +
                        std::string(model ? " UNION ALL SELECT 1 FROM prods WHERE modelo = ?" : ""),
                    model ? std::vector<data::Value>{text, text, text} : std::vector<data::Value>{text, text})
                .rows.empty();
  } catch (const data::Error&) {
    return true;  // the screen's own steps tell what is wrong
  }
}

void ServicioDeLecturas::Resuelve(Tecleada& typed, const std::string& quantity_before) {
  Lectura& reading = *typed.lectura;
  DocumentWizard& screen = typed.pantalla;
  const auto alive = screen.shared_from_this();
  if (const auto document = DocumentoDe(screen)) reading.documento = document->numero;
  if (reading.estado == lectura::kRenglon) return Avisa(reading);
  if (typed.desconocida) {
    Cambia(reading, lectura::kSinArticulo);
    if (!screen.Open()) return;
    return screen.Act([&] {
      const service::Ignora ignora;
      ignora([&] { screen.txtFields(campo::Articulo).Text(""); });
      if (screen.Check4.Value() == kLectorPuesto)
        ignora([&] { screen.txtFields(campo::Cantidad).Text(quantity_before); });
      service::ColocaFoco(screen.txtFields(campo::Articulo));
    });
  }
  const std::string& article = screen.txtFields(campo::Articulo).Text();
  const bool stands =
      typed.dejada && screen.Open() && screen.Check4.Value() != kLectorPuesto && !article.empty();
  if (stands) {
    en_renglon_.push_back({typed.lectura, alive, article});
    return Cambia(reading, lectura::kEspera, "falta terminar su renglón");
  }
  std::string why = EnUnaLinea(typed.caja);
  if (why.empty() && !screen.Open()) why = "la pantalla se cerró";
  if (why.empty() && screen.SoloLectura()) why = "el documento sólo puede consultarse";
  if (why.empty())
    why = typed.dejada ? "una rutina no dejó hacer el renglón" : "el artículo no admite captura";
  Cambia(reading, lectura::kRechazada, why);
}

// ---- what became of it ----

void ServicioDeLecturas::TerminaActo() noexcept {
  en_acto_ = nullptr;
  Atiende();
}

void ServicioDeLecturas::Caja(const std::string& text) noexcept {
  if (tecleada_ != nullptr) tecleada_->caja = text;
}

void ServicioDeLecturas::SeFue(forms::Form& screen) noexcept {
  const auto document = DocumentoDe(screen);
  if (!document) return;
  // What was read before the document had a number finds it by its number from here on.
  for (const Propio& own : propias_) {
    if (own.lectura->documento || own.pantalla.lock().get() != &screen) continue;
    own.lectura->documento = document->numero;
    Guarda(*own.lectura);
  }
}

void ServicioDeLecturas::RevisaRenglones() {
  for (std::size_t i = 0; i < en_renglon_.size();) {
    const EnRenglon row = en_renglon_[i];
    const auto screen = Asistente(row.pantalla.lock());
    const bool open = screen != nullptr && screen->Open();
    const std::string article = open ? screen->txtFields(campo::Articulo).Text() : "";
    if (open && row.lectura->estado == lectura::kEspera && article == row.articulo) {
      ++i;
      continue;
    }
    en_renglon_.erase(en_renglon_.begin() + static_cast<std::ptrdiff_t>(i));
    if (row.lectura->estado != lectura::kEspera) {
      Avisa(*row.lectura);
    } else if (!open) {
      Cambia(*row.lectura, lectura::kDescartada, "el documento se cerró sin terminar su renglón");
    } else {
      Cambia(*row.lectura, lectura::kDescartada,
             article.empty() ? "se vació el renglón de captura" : "se capturó otro artículo en su lugar");
    }
  }
}

Lectura* ServicioDeLecturas::DeQuienEs(const SentenciaDeDocumento& sentencia) {
  if (sentencia.renglon == 0 || sentencia.unidades == 0) return nullptr;
  const bool adds = sentencia.clase == Clase::Corrige;
  const auto is_its = [&](const forms::Form& screen) {
    const auto document = DocumentoDe(screen);
    return document && document->tipo == sentencia.documento.tipo &&
           (adds ? en_acto_ == &screen || en_acto_ == nullptr : *document == sentencia.documento);
  };
  if (tecleada_ != nullptr && is_its(tecleada_->pantalla)) return tecleada_->lectura.get();
  for (const EnRenglon& row : en_renglon_) {
    const auto screen = row.pantalla.lock();
    if (screen != nullptr && is_its(*screen)) return row.lectura.get();
  }
  return nullptr;
}

data::Rows ServicioDeLecturas::EscribeRenglon(const SentenciaDeDocumento& sentencia,
                                              const std::function<data::Rows()>& envia) {
  if (deshaciendo_ != nullptr && sentencia.clase == Clase::Corrige &&
      sentencia.renglon == deshaciendo_->renglon) {
    Lectura after = *deshaciendo_;
    after.estado = lectura::kDeshecha;
    return Juntos(*deshaciendo_, after, envia);
  }
  Lectura* reading = DeQuienEs(sentencia);
  if (reading == nullptr) return envia();
  Lectura after = *reading;
  if (after.estado == lectura::kRenglon) {
    after.motivo = "hizo varios renglones";
  } else {
    after.estado = lectura::kRenglon;
    after.renglon = sentencia.renglon;
    after.motivo.clear();
    after.cantidad.reset();
  }
  if (sentencia.clase == Clase::Escribe) after.documento = sentencia.documento.numero;
  after.cantidad = after.cantidad.value_or(0) + sentencia.unidades;
  return Juntos(*reading, after, envia);
}

data::Rows ServicioDeLecturas::Juntos(Lectura& reading, const Lectura& after,
                                      const std::function<data::Rows()>& envia) {
  bool ours_failed = false;
  if (reading.id != 0 && !connection_.InTransaction()) {
    try {
      data::Transaction whole(connection_);
      data::Rows rows = envia();
      try {
        Lectura written = after;
        GuardaLectura(connection_, written);
      } catch (const data::Error&) {
        ours_failed = true;
        throw;
      }
      whole.Commit();
      reading = after;
      return rows;
    } catch (const data::Error&) {
      if (!ours_failed) throw;  // the line's own failure
    }
  }
  data::Rows rows = envia();
  reading = after;
  sin_guardar_.push_back(&reading);
  return rows;
}

}  // namespace tarvik::host
