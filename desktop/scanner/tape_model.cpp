#include "desktop/scanner/tape_model.h"

#include <algorithm>
#include <utility>

#include "goods_in/columnas.h"
#include "goods_out/columnas.h"
#include "host/anfitrion.h"
#include "host/lecturas.h"
#include "wizard/document_wizard.h"

namespace tarvik::desktop {
namespace {

constexpr int kLatest = 500;  // readings of earlier runs that are shown

Mark MarkOf(const host::Lectura& reading) {
  if (reading.estado == host::lectura::kRenglon) return Mark::Good;
  if (reading.estado == host::lectura::kEspera) return Mark::Waits;
  if (reading.estado == host::lectura::kDescartada || reading.estado == host::lectura::kDeshecha)
    return Mark::Quiet;
  return Mark::Bad;
}

bool IsUnknown(const host::Lectura& reading) { return reading.estado == host::lectura::kSinArticulo; }

}  // namespace

TapeModel::TapeModel(Office& office, const forms::Form* screen, QObject* parent)
    : QAbstractListModel(parent), office_(office), screen_(screen), look_(office.reader) {
  ReadAnew();
}

void TapeModel::ReadAnew() {
  host::Tramo part{.ultimas = kLatest};
  const auto document = screen_ != nullptr ? host::DocumentoDe(*screen_) : std::nullopt;
  if (document != looked_at_) read_.clear();
  looked_at_ = document;
  part.documento = document;
  part.pendientes = screen_ == nullptr;
  Arrange();  // what this program knows is there at once
  if (screen_ != nullptr && !document) return;
  using Readings = std::vector<host::Lectura>;
  look_.At<Readings>([part](data::EngineConnection& base) { return host::LeeCinta(base, part); },
                     [this](std::optional<Readings> found) {
                       if (!found) return;
                       read_.clear();
                       for (host::Lectura& reading : *found) {
                         const std::int64_t id = reading.id;
                         read_[id] = std::make_shared<host::Lectura>(std::move(reading));
                       }
                       Arrange();
                     });
}

void TapeModel::Refresh() {
  if (screen_ == nullptr || host::DocumentoDe(*screen_) != looked_at_) return ReadAnew();
  Arrange();
}

void TapeModel::Arrange() {
  std::vector<std::shared_ptr<host::Lectura>> rows;
  auto read = read_;
  if (screen_ != nullptr) {
    for (const auto& own : office_.host.Lecturas().DePantalla(*screen_)) {
      read.erase(own->id);
      rows.push_back(own);
    }
  }
  for (const auto& [id, reading] : read) rows.push_back(reading);
  std::stable_sort(rows.begin(), rows.end(), [](const auto& one, const auto& two) {
    if (IsUnknown(*one) != IsUnknown(*two)) return IsUnknown(*one);
    if ((one->id == 0) != (two->id == 0)) return one->id == 0;  // not written yet: the newest
    return one->id > two->id;
  });
  line_of_.clear();
  if (const auto* wizard = dynamic_cast<const DocumentWizard*>(screen_)) {
    const bool in = wizard->Name() == "frmEntradasWizard";
    const int column = in ? +columna_entrada::IdEntrada : +columna_salida::IdSalida;
    for (int row = 1; row < wizard->fg2.Rows() && !wizard->fg2.TextMatrix(row, kColumnaDelArticulo).empty();
         ++row) {
      line_of_[QString::fromStdString(wizard->fg2.TextMatrix(row, column)).toInt()] = row;
    }
  }
  beginResetModel();
  rows_ = std::move(rows);
  unknown_ = static_cast<int>(
      std::count_if(rows_.begin(), rows_.end(), [](const auto& reading) { return IsUnknown(*reading); }));
  endResetModel();
}

std::shared_ptr<host::Lectura> TapeModel::At(const QModelIndex& index) const {
  return index.isValid() ? rows_.at(static_cast<std::size_t>(index.row())) : nullptr;
}

QModelIndex TapeModel::IndexOf(const host::Lectura& reading) const {
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    if (rows_[i].get() == &reading || (reading.id != 0 && rows_[i]->id == reading.id))
      return index(static_cast<int>(i));
  }
  return {};
}

int TapeModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

// A line is told by its place on the screen; the number of its row in the base says nothing to a person.
QString TapeModel::How(const host::Lectura& reading) const {
  host::Lectura shown = reading;
  if (reading.renglon && reading.estado == host::lectura::kRenglon) {
    const auto row = line_of_.find(*reading.renglon);
    if (row != line_of_.end()) {
      shown.renglon = row->second;
    } else if (screen_ != nullptr) {
      return tr("ya no está en los renglones");
    }
  }
  QString how = QString::fromStdString(host::ComoQuedo(shown));
  if (screen_ == nullptr && reading.tipo && reading.documento) {
    how =
        QString::fromStdString(host::LaDe({*reading.tipo, *reading.documento})) + QStringLiteral(" · ") + how;
  }
  return how;
}

QVariant TapeModel::data(const QModelIndex& index, int role) const {
  const auto reading = At(index);
  if (reading == nullptr) return {};
  switch (role) {
    case Qt::DisplayRole:
      return QString::fromStdString(reading->texto);
    case HowRole:
      return How(*reading);
    case WhenRole:
      return QString::fromStdString(reading->cuando.time.Text()).left(8);
    case MarkRole:
      return static_cast<int>(MarkOf(*reading));
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
      return QStringLiteral("%1 · %2").arg(QString::fromStdString(reading->texto), How(*reading));
    default:
      return {};
  }
}

}  // namespace tarvik::desktop
