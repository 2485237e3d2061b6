// RevisionWindow: checks the base on request, in the background, and lists what is wrong with what to do
// about it. What is checked, and what can be repaired, is decided by the host.
#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>
#include <memory>
#include <vector>

#include "desktop/office.h"
#include "desktop/reading/reader.h"
#include "host/documentos.h"
#include "host/revision.h"

class QLabel;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTableWidget;
class QTimer;

namespace tarvik::desktop {

class RevisionWindow : public QWidget {
  Q_OBJECT

 public:
  explicit RevisionWindow(Office& office, QWidget* parent = nullptr);
  ~RevisionWindow() override;

  // Opens, and checks the base if it has not been checked yet.
  void Reach();
  [[nodiscard]] bool Busy() const { return busy_; }
  [[nodiscard]] QTableWidget& Table() const { return *table_; }

 public slots:
  void Check();
  // Repairs what the host says can be repaired, after asking.
  void Mend();
  // Stops waiting for the result; the previous one stays on show. A repair can't be cancelled.
  void Cancel();
  void Copy();
  void Save();

 signals:
  void OpenRequested(tarvik::host::Retenido document);
  void Mended();  // documents and stock may have changed

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  QWidget* Head();
  QWidget* List();
  QWidget* Foot();
  void Run(bool mends);
  void Take(std::vector<host::Observacion> found, bool mended);
  void Fill();
  void ShowWords();
  void ShowDetail();
  void SetBusy(bool busy);
  void Open();
  [[nodiscard]] QString AsText() const;
  [[nodiscard]] int Mendable() const;

  Office& office_;
  std::unique_ptr<Reader> reader_;  // its own: a check may take long, and no list must wait for it
  Reader::TaskRef task_;
  std::vector<host::Observacion> found_;
  QString when_;  // of the last check; empty: there was none
  QString trouble_;
  bool busy_ = false;
  bool mends_ = false;  // what it is busy with
  QElapsedTimer since_;
  QTimer* ticking_;

  QLabel* words_ = nullptr;
  QLabel* leave_ = nullptr;  // the key that cancels
  QPushButton* check_ = nullptr;
  QPushButton* mend_ = nullptr;
  QPushButton* copy_ = nullptr;
  QPushButton* save_ = nullptr;
  QStackedWidget* stack_ = nullptr;
  QTableWidget* table_ = nullptr;
  QLabel* empty_ = nullptr;
  QLabel* detail_ = nullptr;
  QStackedWidget* line_ = nullptr;
  QLabel* progress_text_ = nullptr;
};

}  // namespace tarvik::desktop
