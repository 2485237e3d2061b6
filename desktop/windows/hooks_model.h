// What the window of keys and routines shows: one row for each thing that happened, in order, the newest
// last; and the filter before it. It runs nothing.
#pragma once

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>
#include <QStringList>
#include <deque>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "python/ganchos.h"

namespace tarvik::desktop {

class Theme;
enum class Role;

namespace hooks {

inline constexpr int kKept = 5000;     // rows; the oldest go
inline constexpr double kSlow = 1000;  // milliseconds

enum Column { kTime, kKey, kMoment, kRoutine, kMilliseconds, kChanges, kCancelled, kError, kColumns };

QString Headline(Column column);
QString Milliseconds(double milliseconds);
// One field of a line of text with tabs.
QString Flat(QString text);

// A key that fired, a run of a routine behind it, or a file that did not load.
struct Happening {
  QString time;
  std::string key;
  bool running = false;
  std::optional<python::RutinaCargada> routine;
  std::optional<python::Corrida> run;
  std::optional<python::Fallo> failure;

  [[nodiscard]] bool Slow() const { return run && run->milisegundos > kSlow; }
  [[nodiscard]] QString Place() const;  // "limites.py, línea 2"
  [[nodiscard]] QString Error() const;
  [[nodiscard]] QString Changes() const;
  [[nodiscard]] QString Cancelled() const;
  [[nodiscard]] QString Cell(Column column) const;
};

class Model : public QAbstractTableModel {
 public:
  Model(const Theme& theme, QObject* parent) : QAbstractTableModel(parent), theme_(theme) {}

  void Fired(const QString& time, const std::string& key);
  void Failed(const QString& time, const python::Fallo& failure);
  // The first routine of a key takes the row of its firing; a further one has a row of its own.
  void Begins(const QString& time, const python::RutinaCargada& routine);
  void Ended(const QString& time, const python::Corrida& run);
  void Empty();

  [[nodiscard]] const Happening& Row(int row) const { return rows_[static_cast<std::size_t>(row)]; }
  [[nodiscard]] int WithRoutine() const;
  [[nodiscard]] int Errors() const;
  [[nodiscard]] int SlowOnes() const;

  // ---- QAbstractTableModel ----
  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
  }
  int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : kColumns; }
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  [[nodiscard]] static Role Ink(const Happening& row, Column column);
  [[nodiscard]] QVariant Font(const Happening& row, Column column) const;
  Happening& At(quint64 id) { return rows_[static_cast<std::size_t>(id - first_)]; }
  quint64 Append(Happening row);
  void Changed(quint64 id);

  const Theme& theme_;
  std::deque<Happening> rows_;
  quint64 first_ = 1;  // number of the first row: rows are counted from the program's start
  std::unordered_map<std::string, quint64> fired_;  // whose routine has not begun
  std::vector<quint64> running_;
};

// Rows that hold every word of the filter, in any column.
class Filter : public QSortFilterProxyModel {
 public:
  using QSortFilterProxyModel::QSortFilterProxyModel;

  void Words(const QString& text);
  void OnlyWithRoutine(bool only);
  [[nodiscard]] bool Narrows() const { return only_ || !words_.isEmpty(); }

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  QStringList words_;
  bool only_ = false;
};

}  // namespace hooks

}  // namespace tarvik::desktop
