// Recovery: what the operator is offered where a document was posted in part or its finish broke off. It
// asks, has the host do it, and tells what came of it; what is missing, and how it is completed, is known to
// the host.
#pragma once

#include <QObject>
#include <functional>
#include <optional>

#include "desktop/office.h"
#include "desktop/reading/half_posted.h"

namespace tarvik::desktop {

class NoticeStrip;

class Recovery : public QObject {
  Q_OBJECT

 public:
  // All outlive it.
  Recovery(Office& office, HalfPosted& half, NoticeStrip& notices, QObject* parent = nullptr);

  // Posts what is missing of a document, after asking; then offers what did not run behind it.
  void Complete(DocumentKey document);
  void CompleteAll();

 signals:
  void Completed(tarvik::host::Tipo type, int number);  // lists and screens show another state
  void ShowRequested(tarvik::host::Tipo type);          // the list, with those posted in part
  void ReviseRequested();                               // the base is to be proved

 private:
  void ShowNotices();
  void ShowHalf();
  void ShowBroken();
  void ShowDamage();
  void Finish(DocumentKey document);
  void Forget(DocumentKey document);
  // The steps that would do something here; nothing if the finish is whole.
  [[nodiscard]] QStringList Missing(const host::CierreInterrumpido& broken) const;
  [[nodiscard]] std::optional<host::CierreInterrumpido> BrokenOf(DocumentKey document) const;
  void Tell(const QString& text);
  // Sí or No; `enter`: which of them Enter gives.
  bool Ask(const QString& text, bool enter);
  // Runs what may throw; `what` and the reason go before the operator.
  bool Try(const QString& what, const QString& what_now, const std::function<void()>& act);

  Office& office_;
  HalfPosted& half_;
  NoticeStrip& notices_;
};

}  // namespace tarvik::desktop
