// HooksWindow: the window in which an implementer sees which keys fired, in order, and what the
// routines behind them did. It runs nothing and keeps nothing beyond the program's end.
#pragma once

#include <QMainWindow>
#include <QString>
#include <string>
#include <vector>

#include "data/value.h"
#include "desktop/office.h"
#include "python/ganchos.h"

class QAction;
class QCheckBox;
class QLabel;
class QLineEdit;
class QSplitter;
class QStackedWidget;
class QTableView;

namespace tarvik::desktop {

namespace hooks {
class Detail;
class Filter;
class Model;
}  // namespace hooks

// Make it once, at the start, hidden: it keeps what happens whether or not it is seen. Hand it to
// python::Rutinas as its observer, and call KeyFired from the host's witness (Testigo::Gancho).
class HooksWindow : public QMainWindow, public python::ObservadorDeGanchos {
  Q_OBJECT

 public:
  explicit HooksWindow(Office& office, QWidget* parent = nullptr);
  ~HooksWindow() override;

  // Every key that fired, with a routine or without: before its routines run.
  void KeyFired(const std::string& key, const data::Value& value);
  // After loading: what stands behind the keys, and the files that did not load.
  void Loaded(const python::Rutinas& rutinas, const std::vector<python::Fallo>& failures);

  // ---- python::ObservadorDeGanchos ----
  void Empieza(const python::RutinaCargada& routine) override;
  void Corrio(const python::Corrida& run) override;
  // Asks the operator, over whatever window is in front.
  bool SigueEsperando(const python::RutinaCargada& routine, int seconds) override;

  [[nodiscard]] QTableView* Table() const { return table_; }
  [[nodiscard]] QLineEdit* Filter() const { return filter_; }

 signals:
  void RoutineBegan();  // they nest
  void RoutineEnded();

 public slots:
  // The selected rows, or all that are shown if none is, as text with tabs and a heading.
  void Copy();
  void Clear();

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void BuildMenu();
  QWidget* Head();
  QWidget* List();
  QWidget* Foot();
  void Refresh();     // counts, empty text, what can be done
  void ShowDetail();  // of the current row

  Office& office_;
  hooks::Model* model_;
  hooks::Filter* shown_;
  QLabel* source_ = nullptr;  // where the routines come from
  QLineEdit* filter_ = nullptr;
  QCheckBox* with_routine_ = nullptr;
  QStackedWidget* stack_ = nullptr;
  QLabel* empty_ = nullptr;
  QTableView* table_ = nullptr;
  QSplitter* splitter_ = nullptr;
  hooks::Detail* detail_ = nullptr;
  QLabel* counts_ = nullptr;
  QAction* copy_ = nullptr;
  QAction* clear_ = nullptr;
  QAction* find_ = nullptr;
  QAction* only_ = nullptr;
  QAction* last_ = nullptr;
  QAction* close_ = nullptr;
};

}  // namespace tarvik::desktop
