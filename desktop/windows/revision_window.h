// RevisionWindow: proves the base on request, beside the window's thread, and lists what is not as it should
// be with what to do about it. What is found, and what may be mended, is the host's.
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

  // Comes up, and proves the base if nothing has been proved yet.
  void Reach();
  [[nodiscard]] bool Busy() const { return busy_; }
  [[nodiscard]] QTableWidget& Table() const { return *table_; }

 public slots:
  void Check();
  // Mends what the host says can be mended, after asking.
  void Mend();
  // Waits no longer for the answer; what was there stays on show. A repair is waited for.
  void Cancel();
  void Copy();
  void Save();

 signals:
  void OpenRequested(tarvik::host::Retenido document);
  void Mended();  // documents and stock may be others now

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
  std::unique_ptr<Reader> reader_;  // of its own: a proof may take long, and no list is to wait for it
  Reader::TaskRef task_;
  std::vector<host::Observacion> found_;
  QString when_;  // of the last proof; empty: there was none
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
