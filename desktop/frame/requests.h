// Requests for documents, as the window shows them: what others ask of this program stands in a line above
// the screens until it is answered; what this program has asked is waited for. It looks every two seconds,
// and asks the base only when somebody has written there.
#pragma once

#include <QFrame>
#include <QString>
#include <optional>
#include <vector>

#include "host/anfitrion.h"
#include "host/peticiones.h"

class QLabel;
class QPushButton;

namespace tarvik::desktop {

class Requests : public QFrame {
  Q_OBJECT

 public:
  // The host outlives it.
  explicit Requests(host::Anfitrion& host, QWidget* parent = nullptr);

  // Throws data::Error where there is nobody to ask.
  void Ask(const host::Retenido& document, const QString& message);
  // Looks now, whether anything was written or not. Not while a screen is in the middle of an act.
  void Look();

  [[nodiscard]] QString Text() const;
  [[nodiscard]] QPushButton& GiveButton() const { return *give_; }
  [[nodiscard]] QPushButton& KeepButton() const { return *keep_; }

 signals:
  // A document that was asked for is free for this program; or it stays with its holder, or can no longer be
  // opened, and why.
  void Granted(host::Retenido document);
  void Refused(const QString& text);
  // Handing over did not work; the request waits on.
  void Failed(const QString& reason);

 private:
  void LookIfWritten();
  void Answer(bool yes);
  struct Settled {
    host::Retenido document;
    host::Desenlace outcome;
  };
  std::vector<Settled> LookAtOwn();
  void Show();

  host::Anfitrion& host_;
  QLabel* label_;
  QPushButton* give_;
  QPushButton* keep_;
  std::optional<std::int64_t> seen_;
  std::string unseen_;  // why others can't see what is open here; told once
  std::vector<host::Peticion> asked_of_us_;
  std::vector<host::Peticion> asked_by_us_;
};

}  // namespace tarvik::desktop
