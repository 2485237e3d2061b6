// The tape of one document as rows: what nobody knows first, the rest newest on top. It asks the host's
// service for the readings of this program, and the reader for what the document had before. No widget here.
#pragma once

#include <QAbstractListModel>
#include <map>
#include <memory>
#include <vector>

#include "desktop/office.h"
#include "desktop/reading/look.h"
#include "forms/form.h"
#include "host/cinta.h"

namespace tarvik::desktop {

// What a mark before a reading says, beside its words.
enum class Mark { Good, Waits, Bad, Quiet };

class TapeModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  enum Role { MarkRole = Qt::UserRole, HowRole, WhenRole };

  // The screen outlives this. nullptr: the tray, all readings that wait or that nobody knows.
  TapeModel(Office& office, const forms::Form* screen, QObject* parent);

  // After a reading has come or changed.
  void Refresh();
  // As before, and what the base has from others too.
  void ReadAnew();
  [[nodiscard]] std::shared_ptr<host::Lectura> At(const QModelIndex& index) const;
  [[nodiscard]] QModelIndex IndexOf(const host::Lectura& reading) const;
  [[nodiscard]] int Unknown() const { return unknown_; }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
  void Arrange();
  [[nodiscard]] QString How(const host::Lectura& reading) const;

  Office& office_;
  const forms::Form* screen_;
  Look look_;
  std::map<std::int64_t, std::shared_ptr<host::Lectura>> read_;  // of the base
  std::vector<std::shared_ptr<host::Lectura>> rows_;
  std::map<std::int32_t, int> line_of_;  // grid rows, by the lines' numbers
  std::optional<host::Retenido> looked_at_;
  int unknown_ = 0;
};

}  // namespace tarvik::desktop
