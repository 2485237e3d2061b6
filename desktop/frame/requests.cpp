#include "desktop/frame/requests.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <utility>

#include "desktop/style/theme.h"

namespace tarvik::desktop {
namespace {

constexpr int kLookEvery = 2000;  // milliseconds

// A check that nobody asked for must not wait: an unreachable base would block the keyboard at every turn.
class Impatient {
 public:
  explicit Impatient(data::Patience& patience) : patience_(patience) {
    patience_.ActBegins();
    patience_.Vain();
  }
  ~Impatient() { patience_.ActEnds(); }
  Impatient(const Impatient&) = delete;
  Impatient& operator=(const Impatient&) = delete;

 private:
  data::Patience& patience_;
};

}  // namespace

Requests::Requests(host::Anfitrion& host, QWidget* parent)
    : QFrame(parent),
      host_(host),
      label_(new QLabel(this)),
      give_(new QPushButton(tr("&Ceder"), this)),
      keep_(new QPushButton(tr("N&o"), this)) {
  setProperty("role", "band");
  label_->setTextFormat(Qt::PlainText);
  label_->setAccessibleName(tr("Petición de un documento"));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(measure::kGrid, measure::kGrid / 2, measure::kGrid, measure::kGrid / 2);
  row->addWidget(label_, 1);
  for (auto* button : {give_, keep_}) {
    button->setFocusPolicy(Qt::TabFocus);  // a click does not take the focus from a field
    row->addWidget(button);
  }
  connect(give_, &QPushButton::clicked, this, [this] { Answer(true); });
  connect(keep_, &QPushButton::clicked, this, [this] { Answer(false); });
  hide();
  auto* timer = new QTimer(this);
  connect(timer, &QTimer::timeout, this, &Requests::LookIfWritten);
  timer->start(kLookEvery);
}

void Requests::Ask(const host::Retenido& document, const QString& message) {
  asked_by_us_.push_back(host_.Pide(document.tipo, document.numero, message.toStdString()));
}

QString Requests::Text() const { return isHidden() ? QString() : label_->text(); }

void Requests::LookIfWritten() {
  if (host_.Plataforma().Acting()) return;
  host_.SueltaPendientes();
  if (const std::string unseen = host_.AvisoDeTenencias(); unseen != unseen_) {
    unseen_ = unseen;
    if (!unseen.empty()) emit Failed(QString::fromStdString(unseen));
  }
  try {
    // A station that just closes the document answers nothing, and may write nothing that would be noticed
    // here.
    if (seen_ == host_.Conexion().Changes() && asked_by_us_.empty()) return;
  } catch (const std::exception&) {
    return;  // no requests come from an unreachable base
  }
  Look();
}

void Requests::Look() {
  if (host_.Plataforma().Acting()) return;
  std::vector<Settled> settled;
  {
    const Impatient look(host_.Conexion().Waiting());
    try {
      seen_ = host_.Conexion().Changes();
      asked_of_us_ = host_.Peticiones();
      Show();
      settled = LookAtOwn();
    } catch (const std::exception&) {
      seen_.reset();  // the next turn tries again
    }
  }
  for (const auto& [document, outcome] : settled) {
    if (outcome.clase == host::Desenlace::Clase::kAbre) {
      emit Granted(document);
    } else {
      emit Refused(QString::fromStdString(outcome.texto));
    }
  }
}

void Requests::Show() {
  if (asked_of_us_.empty()) return hide();
  const host::Peticion& first = asked_of_us_.front();
  QString text = tr("%1 (%2) pide %3")
                     .arg(QString::fromStdString(first.usuario), QString::fromStdString(first.estacion),
                          QString::fromStdString(host::LaDe(first.documento)));
  if (!first.mensaje.empty()) text += QStringLiteral(": ") + QString::fromStdString(first.mensaje);
  label_->setText(text);
  show();
}

std::vector<Requests::Settled> Requests::LookAtOwn() {
  std::vector<host::Peticion> waiting;
  std::vector<Settled> settled;
  for (const host::Peticion& request : asked_by_us_) {
    host::Desenlace outcome = request.Mira();
    if (outcome.clase == host::Desenlace::Clase::kEspera) {
      waiting.push_back(request);
    } else {
      settled.push_back({request.documento, std::move(outcome)});
    }
  }
  asked_by_us_ = std::move(waiting);
  return settled;
}

void Requests::Answer(bool yes) {
  if (asked_of_us_.empty()) return;
  host::Peticion request = asked_of_us_.front();
  try {
    if (yes) {
      request.Cede();
    } else {
      request.Niega();
    }
  } catch (const std::exception& error) {
    emit Failed(QString::fromUtf8(error.what()));
  }
  Look();
}

}  // namespace tarvik::desktop
