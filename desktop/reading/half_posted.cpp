#include "desktop/reading/half_posted.h"

#include <QTimer>
#include <algorithm>
#include <utility>

#include "data/error.h"
#include "host/liberacion.h"
#include "host/vistazo.h"
#include "wizard/modos.h"

namespace tarvik::desktop {

namespace {

constexpr int kLookEvery = 5 * 60 * 1000;  // milliseconds
constexpr int kAgain = 3000;               // behind a look that the base refused

bool Same(const host::DocumentoAMedias& one, const host::DocumentoAMedias& other) {
  return one.estado == other.estado && one.renglones == other.renglones && one.faltan == other.faltan;
}

bool Same(const host::CierreInterrumpido& one, const host::CierreInterrumpido& other) {
  return one.tipo == other.tipo && one.documento == other.documento && one.faltan == other.faltan;
}

// Whether a program ended in the middle of its work: a lease whose program is gone, or a finish that was cut
// off.
bool WasLeft(data::EngineConnection& connection) {
  const auto leases = host::LeeTenencias(connection);
  return std::any_of(leases.begin(), leases.end(), [](const host::Tenencia& lease) { return !lease.viva; }) ||
         !host::CierresInterrumpidos(connection).empty();
}

// A base that is reachable and still can't answer is damaged: trying again would not help.
template <class Look>
void Unless(std::vector<host::Observacion>& damage, Look look) {
  try {
    look();
  } catch (const data::Error& error) {
    if (error.Passing()) throw;
    damage.push_back(
        {.clase = "motor", .texto = std::string("No se pudieron revisar los documentos: ") + error.what()});
  }
}

}  // namespace

int Moved(const host::DocumentoAMedias& half) {
  return half.renglones - static_cast<int>(half.faltan.size());
}

QString StateText(const host::DocumentoAMedias& half) {
  const int moved = Moved(half);
  if (half.estado == estado::kAfectado) {
    return HalfPosted::tr("Afectado a medias · %1 de %2").arg(moved).arg(half.renglones);
  }
  if (moved == 0) return HalfPosted::tr("Pendiente · en parte movido");
  return moved == 1 ? HalfPosted::tr("Pendiente · 1 ya movido")
                    : HalfPosted::tr("Pendiente · %1 ya movidos").arg(moved);
}

HalfPosted::HalfPosted(host::Anfitrion& host, QObject* parent)
    : QObject(parent),
      reader_(std::make_unique<Reader>(host.Base())),
      host_(host),
      task_(std::make_shared<Reader::Task>()),
      timer_(new QTimer(this)),
      again_(new QTimer(this)) {
  connect(timer_, &QTimer::timeout, this, &HalfPosted::LookAtAll);
  timer_->start(kLookEvery);
  again_->setSingleShot(true);
  again_->setInterval(kAgain);
  connect(again_, &QTimer::timeout, this, &HalfPosted::TryAgain);
}

HalfPosted::~HalfPosted() { task_->Drop(); }

// Without an answer the display stays as it was, and the check is repeated shortly.
void HalfPosted::Run(Reader::Step step) {
  reader_->Run(task_, Urgency::Page, step, [this, step](const QString&) {
    refused_.push_back(step);
    again_->start();
  });
}

void HalfPosted::TryAgain() {
  again_->setInterval(std::min(2 * again_->interval(), kLookEvery));
  for (Reader::Step& step : std::exchange(refused_, {})) Run(std::move(step));
}

void HalfPosted::LookAtAll() {
  // A step may outlive this object, so it holds what it uses.
  Run([this, reader = reader_.get(), task = task_](data::EngineConnection& connection) {
    Found found;
    std::vector<host::CierreInterrumpido> broken;
    std::vector<host::Observacion> damage;
    Unless(damage, [&] {
      for (auto& half : host::LeeAMedias(connection)) {
        const DocumentKey key{half.tipo, half.documento};
        found.emplace(key, std::move(half));
      }
      broken = host::CierresInterrumpidos(connection);
    });
    reader->Deliver(task,
                    [this, found = std::move(found), broken = std::move(broken), damage = std::move(damage)] {
                      if (damage.empty()) return Take(found, broken);
                      Tell(damage);
                    });
    return false;
  });
}

void HalfPosted::LookAtOpening() {
  const data::DateTime now = host_.Plataforma().Now();
  Run([this, reader = reader_.get(), task = task_, now](data::EngineConnection& connection) {
    bool left = true;
    std::vector<host::Observacion> found;
    Unless(found, [&] { left = WasLeft(connection); });
    if (!left) return false;
    for (auto& one : host::Rapida({.conexion = connection, .ahora = now, .usuario = {}, .estacion = {}})) {
      if (one.clase == "motor") found.push_back(std::move(one));
    }
    if (found.empty()) return false;
    reader->Deliver(task, [this, found = std::move(found)] { Tell(found); });
    return false;
  });
  LookAtAll();
}

void HalfPosted::Tell(std::vector<host::Observacion> damage) {
  if (!damage_.empty()) return;
  damage_ = std::move(damage);
  emit Changed();
}

void HalfPosted::LookAt(DocumentKey document) {
  Run([this, reader = reader_.get(), task = task_, document](data::EngineConnection& connection) {
    const auto state = host::LeeEstado(connection, {document.first, document.second});
    reader->Deliver(task, [this, document, half = state ? state->a_medias : std::nullopt,
                           broken = host::CierresInterrumpidos(connection)] {
      Found found = found_;
      found.erase(document);
      if (half) found.emplace(document, *half);
      Take(std::move(found), broken);
    });
    return false;
  });
}

void HalfPosted::Take(Found found, std::vector<host::CierreInterrumpido> broken) {
  again_->setInterval(kAgain);
  const auto alike = [](const auto& one, const auto& other) {
    return one.first == other.first && Same(one.second, other.second);
  };
  const bool same = std::equal(found.begin(), found.end(), found_.begin(), found_.end(), alike) &&
                    std::equal(broken.begin(), broken.end(), broken_.begin(), broken_.end(),
                               [](const auto& one, const auto& other) { return Same(one, other); });
  if (same) return;
  found_ = std::move(found);
  broken_ = std::move(broken);
  emit Changed();
}

const host::DocumentoAMedias* HalfPosted::Of(DocumentKey document) const {
  const auto found = found_.find(document);
  return found == found_.end() ? nullptr : &found->second;
}

std::vector<DocumentKey> HalfPosted::ToComplete() const {
  std::vector<DocumentKey> documents;
  for (const auto& [key, half] : found_) {
    if (half.estado == estado::kAfectado) documents.push_back(key);
  }
  return documents;
}

}  // namespace tarvik::desktop
