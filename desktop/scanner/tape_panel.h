// TapePanel: the scan tape beside the lines of a document, or the tray of all documents. Each reading with
// its time and what became of it, as a mark and a word. Unknown codes are bound to an article in place,
// readings are dropped with a reason or taken back; nothing of it moves when that is asked.
//
//   Keys in the tape: Intro asigna (or feeds one that waits), Supr descarta, Ctrl+Z deshace the chosen ones,
//   Ctrl+E guarda in a file, Esc goes back.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>

#include "desktop/office.h"
#include "desktop/reading/look.h"
#include "forms/form.h"
#include "host/cinta.h"

class QLabel;
class QLineEdit;
class QListView;
class QStackedWidget;
class QStringListModel;

namespace tarvik::desktop {

class TapeModel;

class TapePanel final : public QWidget {
  Q_OBJECT

 public:
  // See TapeModel. `back` is called when the operator leaves the tape.
  TapePanel(Office& office, const forms::Form* screen, std::function<void()> back, QWidget* parent = nullptr);

  // After a reading has come or changed.
  void Refresh();
  // The hand in the tape, on its newest reading.
  void Reach();
  // Asks for the file to export to; a dialog, until set otherwise. An empty name: the operator cancels.
  std::function<QString()> ask_file;

  [[nodiscard]] QListView& List() const { return *list_; }
  [[nodiscard]] QLineEdit& Article() const { return *article_; }
  [[nodiscard]] QLineEdit& Units() const { return *units_; }
  [[nodiscard]] QLineEdit& Reason() const { return *reason_; }
  [[nodiscard]] QString Title() const;
  // What stands under the list: the last refusal, or what the keys do.
  [[nodiscard]] QString Told() const;

 signals:
  // "Cinta del lector · 2 sin artículo"
  void TitleChanged(const QString& title);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  [[nodiscard]] QSize sizeHint() const override;

 private:
  QWidget* Foot();
  void ShowCounts();
  void Say(const QString& text, bool refused);
  // Runs what may be refused, tells the reason, and shows the tape anew.
  bool Try(const std::function<void()>& act);
  void AskForArticle();
  void AskForReason();
  void Enter();
  void Bind();
  void Drop();
  void TakeBack();
  void Export();
  void ToTheList();
  void Complete(const QString& typed);
  [[nodiscard]] std::shared_ptr<host::Lectura> Chosen() const;

  Office& office_;
  const forms::Form* screen_;
  std::function<void()> back_;
  TapeModel* model_;
  QListView* list_;
  QLabel* title_;
  QStackedWidget* foot_ = nullptr;
  QLabel* told_ = nullptr;
  QLineEdit* article_ = nullptr;
  QLineEdit* units_ = nullptr;
  QLineEdit* reason_ = nullptr;
  QStringListModel* found_ = nullptr;
  std::shared_ptr<host::Lectura> chosen_;  // before the rows were arranged anew
  Look look_;
};

}  // namespace tarvik::desktop
