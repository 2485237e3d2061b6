#include "desktop/frame/recovery.h"

#include <algorithm>

#include "desktop/frame/notices.h"
#include "host/a_medias.h"
#include "host/cierres.h"
#include "service/contract/claves.h"
#include "wizard/modos.h"

namespace tarvik::desktop {

namespace {

const QString kHalf = QStringLiteral("a medias");
const QString kDamage = QStringLiteral("daño");
const QString kBroken = QStringLiteral("cierre");

QString Count(int count, const QString& one, const QString& many) {
  return count == 1 ? QStringLiteral("1 ") + one : QStringLiteral("%1 ").arg(count) + many;
}

QString Movements(int made) {
  return made == 1 ? Recovery::tr("Se completó 1 movimiento")
                   : Recovery::tr("Se completaron %1 movimientos").arg(made);
}

// A step of a finish, as an operator reads it.
QString StepName(const std::string& step) {
  if (step == host::kImprime) return Recovery::tr("la impresión");
  if (step == "SALIDAS005") return Recovery::tr("el envío a sucursal (SALIDAS005)");
  const QString key = QString::fromStdString(step);
  for (const auto& known : service::kClaves) {
    if (known.clave != step) continue;
    const QString moment =
        QString::fromUtf8(known.momento.data(), static_cast<qsizetype>(known.momento.size()));
    return Recovery::tr("la rutina %1 (%2)").arg(key, moment);
  }
  return Recovery::tr("la rutina %1").arg(key);
}

DocumentKey KeyOf(const host::CierreInterrumpido& broken) { return {broken.tipo, broken.documento}; }

// "la entrada 12"; with a capital where it begins a sentence.
QString DocumentName(DocumentKey document, bool capital = false) {
  return QString::fromStdString(host::LaDe({document.first, document.second}, capital));
}

}  // namespace

Recovery::Recovery(Office& office, HalfPosted& half, NoticeStrip& notices, QObject* parent)
    : QObject(parent), office_(office), half_(half), notices_(notices) {
  connect(&half, &HalfPosted::Changed, this, &Recovery::ShowNotices);
}

// ---- the cards ----

void Recovery::ShowNotices() {
  ShowDamage();
  ShowHalf();
  ShowBroken();
}

// What the quick look at the opening found in the base itself.
void Recovery::ShowDamage() {
  if (half_.Damage().empty()) return notices_.Remove(kDamage);
  notices_.Put(kDamage,
               tr("La base no se cerró bien la última vez, y al revisarla se encontró un daño: %1")
                   .arg(QString::fromStdString(half_.Damage().front().texto).simplified()),
               {{tr("&Revisar la base"), [this] { emit ReviseRequested(); }, true}});
}

void Recovery::ShowHalf() {
  const auto documents = half_.ToComplete();
  if (documents.empty()) return notices_.Remove(kHalf);
  const auto in =
      static_cast<int>(std::count_if(documents.begin(), documents.end(), [](const DocumentKey& document) {
        return document.first == host::Tipo::Entrada;
      }));
  const int out = static_cast<int>(documents.size()) - in;
  QStringList kinds;
  if (in > 0) kinds << Count(in, tr("entrada"), tr("entradas"));
  if (out > 0) kinds << Count(out, tr("salida"), tr("salidas"));
  const bool one = documents.size() == 1;
  const QString text =
      one ? tr("%1 quedó a medias: sólo una parte de sus renglones movió existencias. Lo que se movió está "
               "guardado.")
                .arg(DocumentName(documents.front(), true))
          : tr("%1 documentos quedaron afectados a medias (%2): sólo una parte de sus renglones movió "
               "existencias. Lo que se movió está guardado.")
                .arg(documents.size())
                .arg(kinds.join(tr(" y ")));
  const host::Tipo first = documents.front().first;
  notices_.Put(kHalf, text,
               {{one ? tr("Comple&tar") : tr("Completar &todos"), [this] { CompleteAll(); }, true},
                {tr("V&er"), [this, first] { emit ShowRequested(first); }}});
}

void Recovery::ShowBroken() {
  // Only of this station: its routines and its printer are here.
  const QString station = QString::fromStdString(office_.host.Ambiente().Estacion());
  std::vector<host::CierreInterrumpido> ours;
  for (const auto& broken : half_.Broken()) {
    if (QString::fromStdString(broken.estacion) != station) continue;
    if (half_.Of(KeyOf(broken)) == nullptr && !Missing(broken).isEmpty()) ours.push_back(broken);
  }
  if (ours.empty()) return notices_.Remove(kBroken);
  const DocumentKey document = KeyOf(ours.front());
  QString text = tr("%1 está completa, pero su cierre se interrumpió. Falta %2.")
                     .arg(DocumentName(document, true), Missing(ours.front()).join(tr(" y ")));
  if (ours.size() > 1) text += QLatin1Char(' ') + tr("Hay %1 más.").arg(ours.size() - 1);
  notices_.Put(kBroken, text,
               {{tr("&Hacerlo ahora"), [this, document] { Finish(document); }, true},
                {tr("&No hacerlo"), [this, document] { Forget(document); }}});
}

QStringList Recovery::Missing(const host::CierreInterrumpido& broken) const {
  QStringList steps;
  for (const std::string& step : broken.faltan) {
    if (step == host::kImprime || office_.host.TieneGancho(step)) steps << StepName(step);
  }
  return steps;
}

std::optional<host::CierreInterrumpido> Recovery::BrokenOf(DocumentKey document) const {
  for (auto& broken : office_.host.CierresInterrumpidos()) {
    if (KeyOf(broken) == document) return broken;
  }
  return {};
}

// ---- what is done ----

void Recovery::Complete(DocumentKey document) {
  const QString name = DocumentName(document);
  int made = 0;
  const bool done = Try(
      tr("No se pudo completar %1").arg(name),
      tr("Lo que ya se había movido sigue guardado y nada se movió dos veces. Puede intentarlo otra vez."),
      [&] {
        const auto half = host::LeeAMedias(office_.host.Conexion(), document.first, document.second);
        if (!half || half->estado != estado::kAfectado) {
          return Tell(
              tr("%1 no está a medias: no hay nada que completar.").arg(DocumentName(document, true)));
        }
        if (!Ask(tr("De %1 movieron existencias %2 de sus %3 renglones. Se moverá lo que falta, con la fecha "
                    "y "
                    "el almacén del documento y el costo de hoy. Nada se mueve dos veces.\n\n¿Desea "
                    "completarla?")
                     .arg(name)
                     .arg(Moved(*half))
                     .arg(half->renglones),
                 true)) {
          return;
        }
        made = office_.host.Completa(document.first, document.second);
      });
  half_.LookAt(document);
  if (!done || made == 0) return;
  emit Completed(document.first, document.second);
  const QString result = tr("%1 de %2.").arg(Movements(made), name);
  const auto broken = BrokenOf(document);
  const QStringList missing = broken ? Missing(*broken) : QStringList();
  if (missing.isEmpty()) return Tell(result);
  if (Ask(tr("%1 Al interrumpirse quedó sin correr %2.\n\n¿Desea hacerlo ahora? Si responde No, se ofrece "
             "después en la lista.")
              .arg(result, missing.join(tr(" y "))),
          false)) {
    Finish(document);
  }
}

void Recovery::CompleteAll() {
  const auto documents = half_.ToComplete();
  if (documents.size() == 1) return Complete(documents.front());
  if (documents.empty() ||
      !Ask(
          tr("Se moverá lo que falta de %1 documentos, cada uno con su fecha y su almacén y el costo de hoy. "
             "Nada se mueve dos veces.\n\n¿Desea completarlos?")
              .arg(documents.size()),
          true)) {
    return;
  }
  int made = 0;
  int whole = 0;
  QStringList refused;
  for (const DocumentKey& document : documents) {
    try {
      made += office_.host.Completa(document.first, document.second);
      ++whole;
    } catch (const std::exception& error) {
      refused << QStringLiteral("%1: %2").arg(DocumentName(document, true), QString::fromUtf8(error.what()));
    }
    emit Completed(document.first, document.second);
  }
  half_.LookAtAll();
  QString result = tr("%1 de %2.").arg(Movements(made), Count(whole, tr("documento"), tr("documentos")));
  if (!refused.isEmpty()) {
    result +=
        tr("\n\nNo se pudo completar:\n%1\n\nDe éstos no se movió nada. Puede intentarlo otra vez: nada "
           "se mueve dos veces.")
            .arg(refused.join(QLatin1Char('\n')));
  }
  Tell(result);
}

void Recovery::Finish(DocumentKey document) {
  Try(tr("No se pudo terminar el cierre de %1").arg(DocumentName(document)),
      tr("El documento está completo y guardado. Lo que no corrió se sigue ofreciendo en la lista."),
      [&] { host::TerminaCierre(office_.host, document.first, document.second); });
  half_.LookAt(document);
}

void Recovery::Forget(DocumentKey document) {
  Try(tr("No se pudo quitar el aviso de %1").arg(DocumentName(document)),
      tr("El documento está completo y guardado."),
      [&] { host::OlvidaCierre(office_.host.Conexion(), document.first, document.second); });
  half_.LookAt(document);
}

void Recovery::Tell(const QString& text) {
  office_.host.Plataforma().ShowBox(forms::BoxKind::Message, text.toStdString(), forms::kBoxInformation);
}

bool Recovery::Ask(const QString& text, bool enter) {
  const int style = forms::kBoxYesNo + forms::kBoxQuestion + (enter ? 0 : forms::kBoxSecondDefault);
  return office_.host.Plataforma().ShowBox(forms::BoxKind::Question, text.toStdString(), style);
}

bool Recovery::Try(const QString& what, const QString& what_now, const std::function<void()>& act) {
  try {
    act();
    return true;
  } catch (const std::exception& error) {
    const QString text = QStringLiteral("%1: %2. %3").arg(what, QString::fromUtf8(error.what()), what_now);
    office_.host.Plataforma().ShowBox(forms::BoxKind::Error, text.toStdString(), forms::kBoxStop);
    return false;
  }
}

}  // namespace tarvik::desktop
