// HalfPosted: which documents were posted in part, and which finishes broke off, as the windows show them. It
// looks beside the window's thread: at all when asked and every few minutes, at one when its screen has
// closed. It completes nothing.
#pragma once

#include <QObject>
#include <QString>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "desktop/reading/reader.h"
#include "host/a_medias.h"
#include "host/anfitrion.h"
#include "host/cierres.h"
#include "host/documentos.h"
#include "host/revision.h"

class QTimer;

namespace tarvik::desktop {

using DocumentKey = std::pair<host::Tipo, int>;

inline DocumentKey KeyOf(const host::Retenido& document) { return {document.tipo, document.numero}; }
// "Afectado a medias · 23 de 60", "Pendiente · 2 ya movidos".
QString StateText(const host::DocumentoAMedias& half);
// How many of its lines are whole.
int Moved(const host::DocumentoAMedias& half);

class HalfPosted : public QObject {
  Q_OBJECT

 public:
  // The host outlives it.
  explicit HalfPosted(host::Anfitrion& host, QObject* parent = nullptr);
  ~HalfPosted() override;

  void LookAtAll();
  // Once, when the program opens: LookAtAll, and also the quick checks of the engine and the host if a
  // program was cut off in the middle of its work.
  void LookAtOpening();
  void LookAt(DocumentKey document);

  // nullptr for one that is not among them.
  [[nodiscard]] const host::DocumentoAMedias* Of(DocumentKey document) const;
  // Those that can be completed, goods-in first, by number.
  [[nodiscard]] std::vector<DocumentKey> ToComplete() const;
  [[nodiscard]] const std::vector<host::CierreInterrumpido>& Broken() const { return broken_; }
  // What the quick look found beyond documents: damage of the base itself.
  [[nodiscard]] const std::vector<host::Observacion>& Damage() const { return damage_; }

 signals:
  void Changed();

 private:
  using Found = std::map<DocumentKey, host::DocumentoAMedias>;
  void Run(Reader::Step step);
  void TryAgain();
  // Damage that a look has met, told once.
  void Tell(std::vector<host::Observacion> damage);
  void Take(Found found, std::vector<host::CierreInterrumpido> broken);

  std::unique_ptr<Reader> reader_;  // its own: a check of the whole base must not delay the lists
  host::Anfitrion& host_;
  Reader::TaskRef task_;
  QTimer* timer_;
  QTimer* again_;
  std::vector<Reader::Step> refused_;  // tried again in a moment, and then less and less often
  Found found_;
  std::vector<host::CierreInterrumpido> broken_;
  std::vector<host::Observacion> damage_;
};

}  // namespace tarvik::desktop
