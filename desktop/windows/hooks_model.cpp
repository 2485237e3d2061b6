#include "desktop/windows/hooks_model.h"

#include <QApplication>
#include <QFont>
#include <QLocale>
#include <algorithm>
#include <utility>

#include "desktop/style/theme.h"
#include "service/contract/claves.h"

namespace tarvik::desktop::hooks {

namespace {

constexpr int kSearchText = Qt::UserRole;
constexpr int kHasRoutine = Qt::UserRole + 1;

QString Text(const std::string& text) { return QString::fromStdString(text); }

QString MomentOf(const std::string& key) {
  for (const auto& known : service::kClaves) {
    if (known.clave != key) continue;
    QString moment = QString::fromUtf8(known.momento.data(), static_cast<qsizetype>(known.momento.size()));
    moment[0] = moment[0].toUpper();
    return moment;
  }
  return {};
}

int Alignment(int column) {
  return static_cast<int>(Qt::AlignVCenter | (column == kMilliseconds ? Qt::AlignRight : Qt::AlignLeft));
}

}  // namespace

QString Milliseconds(double milliseconds) {
  const QLocale figures(QLocale::C);
  return figures.toString(milliseconds, 'f', milliseconds < 10 ? 1 : 0);
}

QString Flat(QString text) {
  return text.replace(QLatin1Char('\n'), QStringLiteral(" / "))
      .replace(QLatin1Char('\t'), QLatin1Char(' '))
      .remove(QLatin1Char('\r'));
}

QString Headline(Column column) {
  switch (column) {
    case kTime:
      return QStringLiteral("Hora");
    case kKey:
      return QStringLiteral("Clave");
    case kMoment:
      return QStringLiteral("Momento");
    case kRoutine:
      return QStringLiteral("Rutina");
    case kMilliseconds:
      return QStringLiteral("ms");
    case kChanges:
      return QStringLiteral("Campos cambiados");
    case kCancelled:
      return QStringLiteral("Canceló");
    case kError:
      return QStringLiteral("Error");
    case kColumns:
      break;
  }
  return {};
}

// ---- one row ----

QString Happening::Place() const {
  if (routine) return Text(python::LugarDe(routine->archivo, routine->linea));
  if (failure) return Text(python::LugarDe(failure->archivo, failure->linea));
  return {};
}

QString Happening::Error() const {
  if (failure) return Text(failure->texto);
  return run && run->error ? Text(run->error->texto) : QString();
}

QString Happening::Changes() const {
  if (!run) return {};
  QStringList names;
  for (const auto& change : run->cambios) names << Text(change.nombre);
  if (run->cambios_omitidos > 0) names << QStringLiteral("y %1 más").arg(run->cambios_omitidos);
  return names.join(QStringLiteral(", "));
}

QString Happening::Cancelled() const {
  if (!run) return {};
  if (run->cancelado_despues)
    return run->cancelado_antes ? QStringLiteral("Desde antes") : QStringLiteral("Sí");
  return run->cancelado_antes ? QStringLiteral("Lo retiró") : QStringLiteral("No");
}

QString Happening::Cell(Column column) const {
  switch (column) {
    case kTime:
      return time;
    case kKey:
      return failure ? QStringLiteral("(carga)") : Text(key);
    case kMoment:
      return failure ? QStringLiteral("Al cargar el archivo") : MomentOf(key);
    case kRoutine:
      return Place();
    case kMilliseconds:
      if (running) return QStringLiteral("en curso");
      return run ? Milliseconds(run->milisegundos) : QString();
    case kChanges:
      return Changes();
    case kCancelled:
      return Cancelled();
    case kError:
      return Error();
    case kColumns:
      break;
  }
  return {};
}

// ---- the rows ----

void Model::Fired(const QString& time, const std::string& key) {
  Happening row;
  row.time = time;
  row.key = key;
  fired_[key] = Append(std::move(row));
}

void Model::Failed(const QString& time, const python::Fallo& failure) {
  Happening row;
  row.time = time;
  row.failure = failure;
  Append(std::move(row));
}

// The first routine of a key takes the row of its firing; a further one has a row of its own.
void Model::Begins(const QString& time, const python::RutinaCargada& routine) {
  const auto fired = fired_.find(routine.clave);
  quint64 id = 0;
  if (fired != fired_.end() && fired->second >= first_) {
    id = fired->second;
  } else {
    Happening row;
    row.time = time;
    row.key = routine.clave;
    id = Append(std::move(row));
  }
  if (fired != fired_.end()) fired_.erase(fired);
  Happening& row = At(id);
  row.running = true;
  row.routine = routine;
  running_.push_back(id);
  Changed(id);
}

void Model::Ended(const QString& time, const python::Corrida& run) {
  const auto begun = std::find_if(running_.rbegin(), running_.rend(),
                                  [&](quint64 id) { return id < first_ || At(id).key == run.rutina.clave; });
  if (begun == running_.rend()) {
    Begins(time, run.rutina);
    return Ended(time, run);
  }
  const quint64 id = *begun;
  running_.erase(std::next(begun).base());
  if (id < first_) return;  // its row has been dropped meanwhile
  Happening& row = At(id);
  row.running = false;
  row.run = run;
  Changed(id);
}

void Model::Empty() {
  beginResetModel();
  first_ += rows_.size();
  rows_.clear();
  endResetModel();
}

int Model::WithRoutine() const {
  return static_cast<int>(
      std::count_if(rows_.begin(), rows_.end(), [](const auto& row) { return row.routine.has_value(); }));
}

int Model::Errors() const {
  return static_cast<int>(std::count_if(rows_.begin(), rows_.end(), [](const auto& row) {
    return row.failure || (row.run && row.run->error);
  }));
}

int Model::SlowOnes() const {
  return static_cast<int>(
      std::count_if(rows_.begin(), rows_.end(), [](const auto& row) { return row.Slow(); }));
}

QVariant Model::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::DisplayRole) return Headline(static_cast<Column>(section));
  if (role == Qt::TextAlignmentRole) return Alignment(section);
  return {};
}

QVariant Model::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Happening& row = Row(index.row());
  const auto column = static_cast<Column>(index.column());
  switch (role) {
    case Qt::DisplayRole:
      return Flat(row.Cell(column));
    case Qt::ToolTipRole:
      return row.Cell(column);
    case Qt::TextAlignmentRole:
      return Alignment(column);
    case Qt::AccessibleTextRole:
      return Headline(column) + QStringLiteral(": ") + row.Cell(column);
    case Qt::ForegroundRole:
      return theme_.Color(Ink(row, column));
    case Qt::BackgroundRole:
      if (row.Slow() && column == kMilliseconds) return theme_.Color(Role::WarningTint);
      return {};
    case Qt::FontRole:
      return Font(row, column);
    case kSearchText: {
      QStringList cells;
      for (int i = 0; i < kColumns; ++i) cells << row.Cell(static_cast<Column>(i));
      return cells.join(QLatin1Char('\n'));
    }
    case kHasRoutine:
      return row.routine.has_value() || row.failure.has_value();
    default:
      return {};
  }
}

Role Model::Ink(const Happening& row, Column column) {
  if (!row.routine && !row.failure) return Role::SoftInk;
  if (column == kError) return Role::Refused;
  if (column == kMilliseconds && row.Slow()) return Role::Warning;
  if (column == kTime || column == kMoment) return Role::SoftInk;
  return Role::Ink;
}

quint64 Model::Append(Happening row) {
  if (rows_.size() >= static_cast<std::size_t>(kKept)) {
    beginRemoveRows({}, 0, 0);
    rows_.pop_front();
    ++first_;
    endRemoveRows();
  }
  const int place = static_cast<int>(rows_.size());
  beginInsertRows({}, place, place);
  rows_.push_back(std::move(row));
  endInsertRows();
  return first_ + static_cast<quint64>(place);
}

void Model::Changed(quint64 id) {
  const int row = static_cast<int>(id - first_);
  emit dataChanged(index(row, 0), index(row, kColumns - 1));
}

QVariant Model::Font(const Happening& row, Column column) const {
  const bool strong =
      (row.Slow() && column == kMilliseconds) || (column == kKey && (row.routine || row.failure));
  if (!strong) return {};
  QFont font = QApplication::font();
  font.setWeight(QFont::DemiBold);
  return font;
}

// ---- the filter ----

void Filter::Words(const QString& text) {
  words_ = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
  invalidateFilter();
}

void Filter::OnlyWithRoutine(bool only) {
  only_ = only;
  invalidateFilter();
}

bool Filter::filterAcceptsRow(int row, const QModelIndex& parent) const {
  const QModelIndex index = sourceModel()->index(row, 0, parent);
  if (only_ && !index.data(kHasRoutine).toBool()) return false;
  if (words_.isEmpty()) return true;
  const QString text = index.data(kSearchText).toString();
  return std::all_of(words_.begin(), words_.end(),
                     [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

}  // namespace tarvik::desktop::hooks
