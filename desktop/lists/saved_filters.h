// Filters with a name: what an operator types and how the rows are sorted, kept for each user and list; and
// the small panel where one is chosen, saved or dropped. It reads no data.
#pragma once

#include <QFrame>
#include <QList>
#include <QString>

#include "desktop/reading/paged_model.h"

class QLineEdit;
class QListWidget;
class QSettings;

namespace tarvik::desktop {

struct SavedFilter {
  QString name;
  QString typed;
  PagedModel::Sort sort = {};
};

// The filters of one user for one list.
class FilterStore {
 public:
  FilterStore(QSettings& settings, const QString& user, const QString& list);

  [[nodiscard]] QList<SavedFilter> All() const;  // by name
  // Replaces one of the same name, without regard to case.
  void Save(const SavedFilter& filter);
  void Drop(const QString& name);

 private:
  void Write(const QList<SavedFilter>& all);

  QSettings& settings_;
  QString key_;
};

// Names above, a field for a new name below. Enter on a name uses it, Supr drops it; Enter in the field saves
// what is on show by that name; Esc leaves. Shown under its anchor; deletes itself.
class FilterPanel final : public QFrame {
  Q_OBJECT

 public:
  FilterPanel(FilterStore store, SavedFilter shown, QWidget& anchor);

  [[nodiscard]] QListWidget& Names() const { return *names_; }
  [[nodiscard]] QLineEdit& NewName() const { return *new_name_; }

 signals:
  void Chosen(const tarvik::desktop::SavedFilter& filter);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Fill();
  void Use();
  void SaveShown();

  FilterStore store_;
  SavedFilter shown_;
  QListWidget* names_;
  QLineEdit* new_name_;
};

}  // namespace tarvik::desktop
