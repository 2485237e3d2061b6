// SearchPanel: a field and, under it, the rows that fit what it holds, as one types. What the picker
// and the drop-down list have in common. It knows no form and closes nothing.
#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/engine.h"
#include "host/busqueda.h"

class QLabel;
class QLineEdit;
class QTableView;

namespace tarvik::desktop {

// A search as the panel needs it: its captions, and the rows for a text. May throw data::Error.
struct SearchSource {
  QString title;  // as an operator reads it
  QString description = QStringLiteral("Descripción");
  QString extra;  // caption of the third column; empty: there is none
  std::function<std::vector<host::Hallazgo>(const std::string& typed, std::size_t limit)> rows;
};

// The search of the suite by its title; the connection outlives what is made of it. For an unknown title it
// gives a source whose rows throw.
SearchSource SourceFor(data::EngineConnection& connection, std::string_view title);

class SearchRows : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit SearchRows(SearchSource source, QObject* parent = nullptr);

  void Search(const QString& typed);  // throws what the source throws, with no row left
  [[nodiscard]] const host::Hallazgo& At(int row) const { return rows_[static_cast<std::size_t>(row)]; }
  [[nodiscard]] bool More() const { return more_; }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  // The next page, asked for by the view as it comes to the end.
  [[nodiscard]] bool canFetchMore(const QModelIndex& parent) const override;
  void fetchMore(const QModelIndex& parent) override;

 private:
  SearchSource source_;
  std::string typed_;
  std::vector<host::Hallazgo> rows_;
  bool more_ = false;
};

class SearchPanel : public QWidget {
  Q_OBJECT

 public:
  SearchPanel(SearchSource source, bool compact, QWidget* parent = nullptr);

  // Puts a text into the field, selected, and searches at once.
  void Start(const QString& typed);
  [[nodiscard]] QLineEdit& Filter() const { return *filter_; }
  [[nodiscard]] QTableView& Table() const { return *table_; }
  // The row in hand; empty if there is none. Everything typed so far counts.
  [[nodiscard]] QString Current();

 signals:
  void Taken(const QString& key);  // Enter or a double click on a row
  void Left();                     // Esc

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Search();
  void Say(const QString& error);  // the line at the foot; with no error, how many rows there are
  void Take();
  void MoveRow(int by);

  SearchRows* rows_;
  QLineEdit* filter_;
  QTableView* table_;
  QLabel* status_;
  QTimer wait_;
};

}  // namespace tarvik::desktop
