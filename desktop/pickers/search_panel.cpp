#include "desktop/pickers/search_panel.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "data/error.h"
#include "data/text.h"
#include "desktop/style/theme.h"

namespace tarvik::desktop {

namespace {

using measure::kGrid;

constexpr std::size_t kPage = 60;
// Milliseconds after a key until the search runs; Enter does not wait for it.
constexpr int kTypingPause = 60;

// The suite writes its titles without accents; an operator reads them as Spanish has them.
QString ReadableTitle(std::string_view title) {
  static const std::pair<std::string_view, const char*> kTitles[] = {
      {"Articulos", "Artículos"},
      {"Claves adicionales de articulos", "Claves adicionales de artículos"},
      {"sucursales", "Sucursales"},
  };
  for (const auto& [known, readable] : kTitles) {
    if (data::EqualsNoCase(known, title)) return QString::fromUtf8(readable);
  }
  return QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size()));
}

QString ExtraCaption(const host::Busqueda& what) {
  if (what.extra == "unidad") return QStringLiteral("Unidad o clave adicional");
  if (what.extra == "articulo") return QStringLiteral("Artículo");
  if (what.extra == "valor") return QStringLiteral("Valor");
  return {};
}

}  // namespace

SearchSource SourceFor(data::EngineConnection& connection, std::string_view title) {
  SearchSource source;
  source.title = ReadableTitle(title);
  if (const host::Busqueda* what = host::BusquedaPor(title)) {
    if (what->descripcion == "nombre") source.description = QStringLiteral("Nombre");
    source.extra = ExtraCaption(*what);
  }
  source.rows = [&connection, name = std::string(title)](const std::string& typed, std::size_t limit) {
    return host::Busca(connection, name, typed, limit);
  };
  return source;
}

// ---- rows ----

SearchRows::SearchRows(SearchSource source, QObject* parent)
    : QAbstractTableModel(parent), source_(std::move(source)) {}

void SearchRows::Search(const QString& typed) {
  beginResetModel();
  rows_.clear();
  more_ = false;
  typed_ = typed.toStdString();
  try {
    // One row over the page tells whether there is another page.
    rows_ = source_.rows(typed_, kPage + 1);
    more_ = rows_.size() > kPage;
    if (more_) rows_.resize(kPage);
  } catch (...) {
    endResetModel();
    throw;
  }
  endResetModel();
}

int SearchRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int SearchRows::columnCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  return source_.extra.isEmpty() ? 2 : 3;
}

QVariant SearchRows::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const host::Hallazgo& hit = At(index.row());
  const std::string& text = index.column() == 0   ? hit.clave
                            : index.column() == 1 ? hit.descripcion
                                                  : hit.extra;
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole || role == Qt::AccessibleTextRole) {
    return QString::fromStdString(text);
  }
  if (role == Qt::TextAlignmentRole) return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
  return {};
}

QVariant SearchRows::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
  if (role != Qt::DisplayRole) return {};
  if (section == 0) return QStringLiteral("Clave");
  return section == 1 ? source_.description : source_.extra;
}

bool SearchRows::canFetchMore(const QModelIndex& parent) const { return !parent.isValid() && more_; }

void SearchRows::fetchMore(const QModelIndex& parent) {
  if (!canFetchMore(parent)) return;
  more_ = false;
  std::vector<host::Hallazgo> found;
  try {
    // Pages grow, so that reaching the end of a long list takes few queries.
    found = source_.rows(typed_, rows_.size() * 2 + kPage + 1);
  } catch (const std::exception&) {
    return;  // the rows read so far stay; the next key reads again and reports the error
  }
  const std::size_t wanted = rows_.size() * 2 + kPage;
  const bool more = found.size() > wanted;
  if (more) found.resize(wanted);
  if (found.size() <= rows_.size()) return;
  beginInsertRows({}, static_cast<int>(rows_.size()), static_cast<int>(found.size()) - 1);
  // Behind what is shown already, whatever another station changed meanwhile.
  rows_.insert(rows_.end(), found.begin() + static_cast<std::ptrdiff_t>(rows_.size()), found.end());
  more_ = more;
  endInsertRows();
}

// ---- the panel ----

SearchPanel::SearchPanel(SearchSource source, bool compact, QWidget* parent) : QWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kGrid);

  filter_ = new QLineEdit(this);
  filter_->setPlaceholderText(QStringLiteral("Escriba clave o descripción"));
  filter_->setAccessibleName(QStringLiteral("Buscar en %1").arg(source.title));
  filter_->setFixedHeight(measure::kField);
  filter_->installEventFilter(this);
  layout->addWidget(filter_);

  const bool has_extra = !source.extra.isEmpty();
  rows_ = new SearchRows(std::move(source), this);
  table_ = new QTableView(this);
  table_->setModel(rows_);
  table_->setAccessibleName(QStringLiteral("Resultados"));
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setAlternatingRowColors(true);
  table_->setShowGrid(false);
  table_->setWordWrap(false);
  table_->setProperty("role", QStringLiteral("found"));
  table_->setTabKeyNavigation(false);
  table_->setFocusPolicy(Qt::NoFocus);  // the field keeps the keys: one may go on typing at any time
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table_->verticalHeader()->setDefaultSectionSize(measure::kRow);
  auto* header = table_->horizontalHeader();
  header->setHighlightSections(false);
  header->setSectionsClickable(false);
  header->setSectionResizeMode(QHeaderView::Interactive);
  header->setSectionResizeMode(1, QHeaderView::Stretch);
  table_->setColumnWidth(0, (compact ? 16 : 20) * kGrid);
  if (has_extra) table_->setColumnWidth(2, (compact ? 18 : 22) * kGrid);
  layout->addWidget(table_, 1);

  status_ = new QLabel(this);
  status_->setProperty("role", QStringLiteral("caption"));
  layout->addWidget(status_);

  wait_.setSingleShot(true);
  wait_.setInterval(kTypingPause);
  connect(&wait_, &QTimer::timeout, this, &SearchPanel::Search);
  connect(filter_, &QLineEdit::textEdited, this, [this] { wait_.start(); });
  connect(rows_, &QAbstractItemModel::rowsInserted, this, [this] { Say({}); });
  connect(table_, &QTableView::doubleClicked, this, [this] { Take(); });
  setFocusProxy(filter_);
}

void SearchPanel::Start(const QString& typed) {
  filter_->setText(typed);
  filter_->selectAll();
  Search();
}

QString SearchPanel::Current() {
  if (wait_.isActive()) Search();
  const QModelIndex row = table_->currentIndex();
  return row.isValid() ? QString::fromStdString(rows_->At(row.row()).clave) : QString();
}

void SearchPanel::Search() {
  wait_.stop();
  QString said;
  try {
    rows_->Search(filter_->text());
  } catch (const std::exception& error) {
    said = QString::fromStdString(error.what());
  }
  Say(said);
  const int count = rows_->rowCount();
  if (count > 0) {
    table_->setCurrentIndex(rows_->index(0, 0));
    table_->verticalScrollBar()->setValue(0);
  }
}

void SearchPanel::Say(const QString& error) {
  status_->setProperty("role", error.isEmpty() ? QStringLiteral("caption") : QStringLiteral("reason"));
  Restyle(*status_);
  const int count = rows_->rowCount();
  QString said = error;
  if (said.isEmpty()) {
    if (count == 0) {
      said = QStringLiteral("No hay renglones con este texto. Borre algunas letras.");
    } else if (rows_->More()) {
      said = QStringLiteral("Primeros %1 renglones; baje para ver más").arg(count);
    } else {
      said = count == 1 ? QStringLiteral("1 renglón") : QStringLiteral("%1 renglones").arg(count);
    }
  }
  status_->setText(said);
}

void SearchPanel::Take() {
  const QString key = Current();
  if (!key.isEmpty()) emit Taken(key);
}

void SearchPanel::MoveRow(int by) {
  if (wait_.isActive()) Search();
  int target = std::max(0, table_->currentIndex().row() + by);
  while (target >= rows_->rowCount() && rows_->canFetchMore({})) rows_->fetchMore({});
  target = std::min(target, rows_->rowCount() - 1);
  if (target < 0) return;
  table_->setCurrentIndex(rows_->index(target, 0));
  table_->scrollTo(rows_->index(target, 0));
}

bool SearchPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched != filter_ || event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  auto* key = static_cast<QKeyEvent*>(event);
  const int page = std::max(1, table_->viewport()->height() / measure::kRow - 1);
  const bool control = (key->modifiers() & Qt::ControlModifier) != 0;
  switch (key->key()) {
    case Qt::Key_Down:
      MoveRow(1);
      return true;
    case Qt::Key_Up:
      MoveRow(-1);
      return true;
    case Qt::Key_PageDown:
      MoveRow(page);
      return true;
    case Qt::Key_PageUp:
      MoveRow(-page);
      return true;
    case Qt::Key_Home:
      if (!control) break;
      MoveRow(-rows_->rowCount());
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Take();
      return true;
    case Qt::Key_Escape:
      emit Left();
      return true;
    default:
      break;
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace tarvik::desktop
