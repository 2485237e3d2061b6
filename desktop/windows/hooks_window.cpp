#include "desktop/windows/hooks_window.h"

#include <QAbstractTableModel>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFileInfo>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSettings>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QStackedWidget>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <deque>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "desktop/style/theme.h"
#include "forms/platform.h"
#include "host/anfitrion.h"
#include "service/contract/claves.h"

namespace tarvik::desktop {

namespace {

enum Column { kTime, kKey, kMoment, kRoutine, kMilliseconds, kChanges, kCancelled, kError, kColumns };
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

QString Milliseconds(double milliseconds) {
  const QLocale figures(QLocale::C);
  return figures.toString(milliseconds, 'f', milliseconds < 10 ? 1 : 0);
}

// One field of a line of text with tabs.
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

}  // namespace

// One thing that happened: a key that fired, a run of a routine behind it, or a file that did not load.
struct Happening {
  QString time;
  std::string key;
  bool running = false;
  std::optional<python::RutinaCargada> routine;
  std::optional<python::Corrida> run;
  std::optional<python::Fallo> failure;

  [[nodiscard]] bool Slow() const { return run && run->milisegundos > HooksWindow::kSlow; }
  [[nodiscard]] QString Place() const {
    if (routine) return Text(python::LugarDe(routine->archivo, routine->linea));
    if (failure) return Text(python::LugarDe(failure->archivo, failure->linea));
    return {};
  }
  [[nodiscard]] QString Error() const {
    if (failure) return Text(failure->texto);
    return run && run->error ? Text(run->error->texto) : QString();
  }
  [[nodiscard]] QString Changes() const {
    if (!run) return {};
    QStringList names;
    for (const auto& change : run->cambios) names << Text(change.nombre);
    if (run->cambios_omitidos > 0) names << QStringLiteral("y %1 más").arg(run->cambios_omitidos);
    return names.join(QStringLiteral(", "));
  }
  [[nodiscard]] QString Cancelled() const {
    if (!run) return {};
    if (run->cancelado_despues)
      return run->cancelado_antes ? QStringLiteral("Desde antes") : QStringLiteral("Sí");
    return run->cancelado_antes ? QStringLiteral("Lo retiró") : QStringLiteral("No");
  }
  [[nodiscard]] QString Cell(Column column) const {
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
};

class HooksModel : public QAbstractTableModel {
 public:
  HooksModel(const Theme& theme, QObject* parent) : QAbstractTableModel(parent), theme_(theme) {}

  void Fired(const QString& time, const std::string& key) {
    Happening row;
    row.time = time;
    row.key = key;
    fired_[key] = Append(std::move(row));
  }

  void Failed(const QString& time, const python::Fallo& failure) {
    Happening row;
    row.time = time;
    row.failure = failure;
    Append(std::move(row));
  }

  // The first routine of a key takes the row of its firing; a further one has a row of its own.
  void Begins(const QString& time, const python::RutinaCargada& routine) {
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

  void Ended(const QString& time, const python::Corrida& run) {
    const auto begun = std::find_if(running_.rbegin(), running_.rend(), [&](quint64 id) {
      return id < first_ || At(id).key == run.rutina.clave;
    });
    if (begun == running_.rend()) {
      Begins(time, run.rutina);
      return Ended(time, run);
    }
    const quint64 id = *begun;
    running_.erase(std::next(begun).base());
    if (id < first_) return;  // so much happened meanwhile that its row is gone
    Happening& row = At(id);
    row.running = false;
    row.run = run;
    Changed(id);
  }

  void Empty() {
    beginResetModel();
    first_ += rows_.size();
    rows_.clear();
    endResetModel();
  }

  [[nodiscard]] const Happening& Row(int row) const { return rows_[static_cast<std::size_t>(row)]; }
  [[nodiscard]] int WithRoutine() const {
    return static_cast<int>(
        std::count_if(rows_.begin(), rows_.end(), [](const auto& row) { return row.routine.has_value(); }));
  }
  [[nodiscard]] int Errors() const {
    return static_cast<int>(std::count_if(rows_.begin(), rows_.end(), [](const auto& row) {
      return row.failure || (row.run && row.run->error);
    }));
  }
  [[nodiscard]] int SlowOnes() const {
    return static_cast<int>(
        std::count_if(rows_.begin(), rows_.end(), [](const auto& row) { return row.Slow(); }));
  }

  // ---- QAbstractTableModel ----
  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
  }
  int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : kColumns; }

  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::DisplayRole) return Headline(static_cast<Column>(section));
    if (role == Qt::TextAlignmentRole) return Alignment(section);
    return {};
  }

  QVariant data(const QModelIndex& index, int role) const override {
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
        if ((row.Slow() && column == kMilliseconds) || (column == kKey && (row.routine || row.failure))) {
          QFont font = QApplication::font();
          font.setWeight(QFont::DemiBold);
          return font;
        }
        return {};
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

 private:
  static int Alignment(int column) {
    return static_cast<int>(Qt::AlignVCenter | (column == kMilliseconds ? Qt::AlignRight : Qt::AlignLeft));
  }
  static Role Ink(const Happening& row, Column column) {
    if (!row.routine && !row.failure) return Role::SoftInk;
    if (column == kError) return Role::Refused;
    if (column == kMilliseconds && row.Slow()) return Role::Warning;
    if (column == kTime || column == kMoment) return Role::SoftInk;
    return Role::Ink;
  }

  Happening& At(quint64 id) { return rows_[static_cast<std::size_t>(id - first_)]; }

  quint64 Append(Happening row) {
    if (rows_.size() >= static_cast<std::size_t>(HooksWindow::kKept)) {
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

  void Changed(quint64 id) {
    const int row = static_cast<int>(id - first_);
    emit dataChanged(index(row, 0), index(row, kColumns - 1));
  }

  const Theme& theme_;
  std::deque<Happening> rows_;
  quint64 first_ = 1;  // number of the first row: rows are counted from the program's start
  std::unordered_map<std::string, quint64> fired_;  // whose routine has not begun
  std::vector<quint64> running_;
};

// Rows that hold every word of the filter, in any column.
class HooksFilter : public QSortFilterProxyModel {
 public:
  using QSortFilterProxyModel::QSortFilterProxyModel;

  void Words(const QString& text) {
    words_ = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    invalidateFilter();
  }
  void OnlyWithRoutine(bool only) {
    only_ = only;
    invalidateFilter();
  }
  [[nodiscard]] bool Narrows() const { return only_ || !words_.isEmpty(); }

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override {
    const QModelIndex index = sourceModel()->index(row, 0, parent);
    if (only_ && !index.data(kHasRoutine).toBool()) return false;
    if (words_.isEmpty()) return true;
    const QString text = index.data(kSearchText).toString();
    return std::all_of(words_.begin(), words_.end(),
                       [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
  }

 private:
  QStringList words_;
  bool only_ = false;
};

namespace {

QLabel* Label(const char* role, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setProperty("role", QLatin1String(role));
  label->setTextFormat(Qt::PlainText);
  return label;
}

// Text that stands under its heading, and no mark around the single cell: the row is what is chosen.
class RowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QString text = std::exchange(cell.text, {});
    cell.state &= ~QStyle::State_HasFocus;
    const QStyle& style = *cell.widget->style();
    style.drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    const QRect room = cell.rect.adjusted(measure::kGrid, 0, -measure::kGrid, 0);
    const bool selected = (cell.state & QStyle::State_Selected) != 0;
    painter->save();
    painter->setFont(cell.font);
    painter->setPen(cell.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(room, static_cast<int>(cell.displayAlignment),
                      cell.fontMetrics.elidedText(text, Qt::ElideRight, room.width()));
    painter->restore();
  }
};

// Tables here hold rows, not cells: no grid, one height, arrow keys inside and Tab out.
void Dress(QTableView& table) {
  table.setAlternatingRowColors(true);
  table.setShowGrid(false);
  table.setWordWrap(false);
  table.setItemDelegate(new RowDelegate(&table));
  table.setTabKeyNavigation(false);
  table.setSelectionBehavior(QAbstractItemView::SelectRows);
  table.setEditTriggers(QAbstractItemView::NoEditTriggers);
  table.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table.verticalHeader()->hide();
  table.verticalHeader()->setDefaultSectionSize(measure::kRow);
  table.horizontalHeader()->setHighlightSections(false);
  table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

// The width of a text that stands for a column's usual contents.
int WidthOf(const QWidget& widget, const QString& sample) {
  return widget.fontMetrics().horizontalAdvance(sample) + 3 * measure::kGrid;
}

constexpr const char* kGeometry = "rutinas/ventana";
constexpr const char* kHeader = "rutinas/columnas";
constexpr const char* kSplit = "rutinas/division";

}  // namespace

HooksWindow::HooksWindow(Office& office, QWidget* parent)
    : QMainWindow(parent),
      office_(office),
      model_(new HooksModel(office.theme, this)),
      shown_(new HooksFilter(this)) {
  setObjectName(QStringLiteral("rutinas"));
  setWindowTitle(QStringLiteral("Claves y rutinas"));
  shown_->setSourceModel(model_);

  BuildMenu();
  auto* body = new QWidget(this);
  auto* column = new QVBoxLayout(body);
  column->setContentsMargins(2 * measure::kGrid, 2 * measure::kGrid, 2 * measure::kGrid, measure::kGrid);
  column->setSpacing(measure::kGrid + measure::kGrid / 2);
  column->addWidget(Head());
  splitter_ = new QSplitter(Qt::Vertical, body);
  splitter_->setChildrenCollapsible(false);
  splitter_->setHandleWidth(1);  // a hairline; the air around it is the panels'
  splitter_->addWidget(List());
  detail_ = Detail();
  splitter_->addWidget(detail_);
  splitter_->setStretchFactor(0, 1);
  column->addWidget(splitter_, 1);

  auto* all = new QWidget(this);
  auto* frame = new QVBoxLayout(all);
  frame->setContentsMargins(0, 0, 0, 0);
  frame->setSpacing(0);
  frame->addWidget(body, 1);
  frame->addWidget(Foot());
  setCentralWidget(all);
  resize(WidthOf(*this, QString(176, QLatin1Char('n'))), 26 * measure::kRow);
  splitter_->setSizes({16 * measure::kRow, 7 * measure::kRow});

  restoreGeometry(office_.settings.value(QLatin1String(kGeometry)).toByteArray());
  table_->horizontalHeader()->restoreState(office_.settings.value(QLatin1String(kHeader)).toByteArray());
  splitter_->restoreState(office_.settings.value(QLatin1String(kSplit)).toByteArray());

  connect(filter_, &QLineEdit::textChanged, this, [this](const QString& text) {
    shown_->Words(text);
    Refresh();
  });
  connect(with_routine_, &QCheckBox::toggled, this, [this](bool only) {
    only_->setChecked(only);
    shown_->OnlyWithRoutine(only);
    Refresh();
  });
  connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] { ShowDetail(); });
  connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { Refresh(); });
  Refresh();
  ShowDetail();
}

HooksWindow::~HooksWindow() = default;

void HooksWindow::BuildMenu() {
  QMenu* menu = menuBar()->addMenu(QStringLiteral("&Rutinas"));
  copy_ =
      menu->addAction(QStringLiteral("&Copiar"), QKeySequence(QKeySequence::Copy), this, &HooksWindow::Copy);
  clear_ = menu->addAction(QStringLiteral("&Vaciar la lista"), QKeySequence(Qt::CTRL | Qt::Key_Delete), this,
                           &HooksWindow::Clear);
  menu->addSeparator();
  close_ = menu->addAction(QStringLiteral("C&errar"), QKeySequence(Qt::Key_Escape), this, [this] {
    // The first one takes the filter away, as in every list.
    if (filter_->hasFocus() && !filter_->text().isEmpty()) return filter_->clear();
    close();
  });
  menu = menuBar()->addMenu(QStringLiteral("&Ver"));
  find_ = menu->addAction(QStringLiteral("&Filtrar"), QKeySequence(QKeySequence::Find), this, [this] {
    filter_->setFocus(Qt::ShortcutFocusReason);
    filter_->selectAll();
  });
  only_ = menu->addAction(QStringLiteral("&Sólo lo que tiene rutina"), QKeySequence(Qt::CTRL | Qt::Key_R),
                          this, [this] { with_routine_->setChecked(!with_routine_->isChecked()); });
  only_->setCheckable(true);
  last_ =
      menu->addAction(QStringLiteral("&Ir a la última"), QKeySequence(Qt::CTRL | Qt::Key_End), this, [this] {
        const int rows = shown_->rowCount();
        if (rows == 0) return;
        table_->setFocus(Qt::ShortcutFocusReason);
        table_->selectRow(rows - 1);
        table_->scrollToBottom();
      });
}

QWidget* HooksWindow::Head() {
  auto* head = new QWidget(this);
  auto* row = new QHBoxLayout(head);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(measure::kGrid);
  auto* words = new QVBoxLayout;
  words->setSpacing(measure::kGrid / 4);
  auto* title = Label("title", head);
  title->setText(windowTitle());
  source_ = Label("soft", head);
  source_->setText(QStringLiteral("No hay rutinas cargadas."));
  source_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  source_->setAccessibleName(QStringLiteral("Rutinas cargadas"));
  words->addWidget(title);
  words->addWidget(source_);
  row->addLayout(words, 1);

  with_routine_ = new QCheckBox(QStringLiteral("Sólo lo que tiene rutina"), head);
  with_routine_->setAccessibleName(with_routine_->text());
  filter_ = new QLineEdit(head);
  filter_->setPlaceholderText(QStringLiteral("Filtrar por clave, archivo, campo o error"));
  filter_->setAccessibleName(QStringLiteral("Filtrar"));
  filter_->setClearButtonEnabled(true);
  filter_->setMinimumWidth(WidthOf(*filter_, filter_->placeholderText()) + measure::kField);
  auto* copy = new QPushButton(QStringLiteral("&Copiar"), head);
  auto* clear = new QPushButton(QStringLiteral("&Vaciar"), head);
  copy->setAccessibleName(QStringLiteral("Copiar los renglones elegidos, o todos"));
  clear->setAccessibleName(QStringLiteral("Vaciar la lista"));
  for (QPushButton* button : {copy, clear}) {
    button->setProperty("role", QStringLiteral("outlined"));
    button->setAutoDefault(false);
  }
  connect(copy, &QPushButton::clicked, this, &HooksWindow::Copy);
  connect(clear, &QPushButton::clicked, this, &HooksWindow::Clear);
  connect(copy_, &QAction::changed, copy, [this, copy] { copy->setEnabled(copy_->isEnabled()); });
  connect(clear_, &QAction::changed, clear, [this, clear] { clear->setEnabled(clear_->isEnabled()); });
  row->addWidget(with_routine_);
  row->addSpacing(measure::kGrid);
  row->addWidget(filter_);
  row->addWidget(copy);
  row->addWidget(clear);
  return head;
}

QWidget* HooksWindow::List() {
  stack_ = new QStackedWidget(this);
  stack_->setContentsMargins(0, 0, 0, measure::kGrid);
  table_ = new QTableView(stack_);
  table_->setModel(shown_);
  Dress(*table_);
  table_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  table_->setAccessibleName(QStringLiteral("Claves que se dispararon, la más reciente al final"));
  QHeaderView& header = *table_->horizontalHeader();
  header.setStretchLastSection(true);
  const QString samples[] = {QStringLiteral("00:00:00"),
                             QStringLiteral("MOVESTACIONES"),
                             QStringLiteral("Al salir del artículo, antes de"),
                             QStringLiteral("10_limite_de_cantidad.py, línea 188"),
                             QStringLiteral("en curso"),
                             QStringLiteral("txtFields(5), CancelaProceso"),
                             QStringLiteral("Desde antes")};
  for (int i = 0; i < kError; ++i) header.resizeSection(i, WidthOf(*table_, samples[i]));

  empty_ = Label("empty", stack_);
  empty_->setAlignment(Qt::AlignCenter);
  empty_->setWordWrap(true);
  stack_->addWidget(table_);
  stack_->addWidget(empty_);
  return stack_;
}

QWidget* HooksWindow::Detail() {
  auto* frame = new QWidget(this);
  auto* air = new QVBoxLayout(frame);
  air->setContentsMargins(0, measure::kGrid, 0, 0);
  auto* panel = new QFrame(frame);
  air->addWidget(panel);
  panel->setProperty("role", QStringLiteral("panel"));
  auto* column = new QVBoxLayout(panel);
  column->setContentsMargins(2 * measure::kGrid, measure::kGrid, 2 * measure::kGrid, 2 * measure::kGrid);
  column->setSpacing(measure::kGrid / 2);
  auto* heading = new QHBoxLayout;
  heading->setSpacing(2 * measure::kGrid);
  detail_title_ = new QLabel(panel);
  detail_title_->setTextFormat(Qt::PlainText);
  QFont bold = font();
  bold.setWeight(QFont::DemiBold);
  detail_title_->setFont(bold);
  detail_place_ = Label("soft", panel);
  detail_place_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  heading->addWidget(detail_title_);
  heading->addWidget(detail_place_, 1);
  column->addLayout(heading);
  detail_error_ = new QLabel(panel);
  detail_error_->setTextFormat(Qt::PlainText);
  detail_error_->setWordWrap(true);
  detail_error_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  detail_error_->setAccessibleName(QStringLiteral("Error de la rutina"));
  column->addWidget(detail_error_);

  auto* row = new QHBoxLayout;
  row->setSpacing(measure::kGrid);
  changes_ = new QTableWidget(0, 3, panel);
  Dress(*changes_);
  changes_->setSelectionMode(QAbstractItemView::SingleSelection);
  changes_->setHorizontalHeaderLabels(
      {QStringLiteral("Campo"), QStringLiteral("Antes"), QStringLiteral("Después")});
  changes_->setAccessibleName(QStringLiteral("Campos que la rutina cambió"));
  changes_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  trace_ = new QPlainTextEdit(panel);
  trace_->setReadOnly(true);
  trace_->setTabChangesFocus(true);
  trace_->setLineWrapMode(QPlainTextEdit::NoWrap);
  QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  fixed.setPixelSize(measure::kCaption);
  trace_->setFont(fixed);
  trace_->setAccessibleName(QStringLiteral("Rastro del error"));
  row->addWidget(changes_, 1);
  row->addWidget(trace_, 1);
  column->addLayout(row, 1);
  column->addStretch();
  return frame;
}

QWidget* HooksWindow::Foot() {
  auto* foot = new QFrame(this);
  foot->setProperty("role", QStringLiteral("keyline"));
  auto* row = new QHBoxLayout(foot);
  row->setContentsMargins(2 * measure::kGrid, measure::kGrid / 2, 2 * measure::kGrid, measure::kGrid / 2);
  row->setSpacing(measure::kGrid);
  const auto key = [&](const QString& cap, const QString& meaning) {
    auto* keycap = Label("keycap", foot);
    keycap->setText(cap);
    auto* text = Label("soft", foot);
    text->setText(meaning);
    row->addWidget(keycap);
    row->addWidget(text);
    row->addSpacing(measure::kGrid);
  };
  key(QStringLiteral("Ctrl+F"), QStringLiteral("filtrar"));
  key(QStringLiteral("Ctrl+R"), QStringLiteral("sólo con rutina"));
  key(QStringLiteral("Ctrl+Fin"), QStringLiteral("última"));
  key(QStringLiteral("Ctrl+C"), QStringLiteral("copiar"));
  key(QStringLiteral("Ctrl+Supr"), QStringLiteral("vaciar"));
  key(QStringLiteral("Esc"), QStringLiteral("cerrar"));
  row->addStretch(1);
  counts_ = Label("soft", foot);
  counts_->setAccessibleName(QStringLiteral("Cuenta"));
  row->addWidget(counts_);
  return foot;
}

// ---- what happens ----

namespace {

QString Now(Office& office) { return Text(office.host.Plataforma().Now().time.Text()); }

// Runs a change of the list; the newest row stays in sight if it was.
template <class Change>
void Followed(QTableView& table, Change&& change) {
  const QScrollBar& bar = *table.verticalScrollBar();
  const bool follow = bar.value() >= bar.maximum();
  change();
  if (follow && table.isVisible()) table.scrollToBottom();
}

}  // namespace

void HooksWindow::KeyFired(const std::string& key, const data::Value&) {
  Followed(*table_, [&] { model_->Fired(Now(office_), key); });
  Refresh();
}

void HooksWindow::Loaded(const python::Rutinas& rutinas, const std::vector<python::Fallo>& failures) {
  const auto count = rutinas.Cargadas().size();
  const QString folder = Text(rutinas.Carpeta());
  source_->setText(count == 0   ? QStringLiteral("No hay rutinas en %1").arg(folder)
                   : count == 1 ? QStringLiteral("1 rutina de %1").arg(folder)
                                : QStringLiteral("%1 rutinas de %2").arg(count).arg(folder));
  for (const auto& failure : failures) model_->Failed(Now(office_), failure);
  Refresh();
}

void HooksWindow::Empieza(const python::RutinaCargada& routine) {
  emit RoutineBegan();
  Followed(*table_, [&] { model_->Begins(Now(office_), routine); });
  Refresh();
}

void HooksWindow::Corrio(const python::Corrida& run) {
  emit RoutineEnded();
  Followed(*table_, [&] { model_->Ended(Now(office_), run); });
  Refresh();
  ShowDetail();
}

bool HooksWindow::SigueEsperando(const python::RutinaCargada& routine, int seconds) {
  const QString what =
      routine.clave.empty()
          ? QStringLiteral("La carga de %1").arg(QFileInfo(Text(routine.archivo)).fileName())
          : QStringLiteral("La rutina %1 (%2)")
                .arg(Text(routine.clave), Text(python::LugarDe(routine.archivo, routine.linea)));
  const QString text =
      QStringLiteral(
          "%1 lleva %2 y no ha terminado.\n\nLo guardado y lo que está en la pantalla se conservan, "
          "tanto si espera como si la detiene. Detenida, se tomará como un error de su clave.\n\n"
          "¿Desea detenerla?")
          .arg(what, seconds == 1 ? QStringLiteral("1 segundo") : QStringLiteral("%1 segundos").arg(seconds));
  forms::Platform& platform = office_.host.Plataforma();
  const bool stop = platform.ShowBox(forms::BoxKind::Question, text.toStdString(),
                                     forms::kBoxYesNo + forms::kBoxQuestion + forms::kBoxSecondDefault);
  // Nobody answered a question that the program's end took down.
  return !stop && !platform.EndRequested();
}

// ---- what is shown ----

void HooksWindow::Refresh() {
  copy_->setEnabled(shown_->rowCount() > 0);
  clear_->setEnabled(model_->rowCount() > 0);
  last_->setEnabled(shown_->rowCount() > 0);
  if (!isVisible()) return;
  const int all = model_->rowCount();
  if (all == 0) {
    empty_->setText(
        QStringLiteral("Todavía no se ha disparado ninguna clave.\nAbra un documento y trabaje con él: "
                       "aparecerán aquí, en su orden."));
  } else if (shown_->rowCount() == 0) {
    empty_->setText(QStringLiteral("Nada de lo anotado coincide con el filtro."));
  }
  detail_->setVisible(shown_->rowCount() > 0);
  stack_->setCurrentWidget(shown_->rowCount() > 0 ? static_cast<QWidget*>(table_) : empty_);
  QStringList counts;
  if (shown_->Narrows()) counts << QStringLiteral("%1 a la vista").arg(shown_->rowCount());
  counts << (all == 1 ? QStringLiteral("1 renglón")
                      : QStringLiteral("%1 renglones").arg(QLocale(QLocale::C).toString(all)));
  counts << QStringLiteral("%1 con rutina").arg(QLocale(QLocale::C).toString(model_->WithRoutine()));
  if (const int slow = model_->SlowOnes(); slow > 0) {
    counts << (slow == 1 ? QStringLiteral("1 lenta") : QStringLiteral("%1 lentas").arg(slow));
  }
  if (const int errors = model_->Errors(); errors > 0) {
    counts << (errors == 1 ? QStringLiteral("1 error") : QStringLiteral("%1 errores").arg(errors));
  }
  counts_->setText(counts.join(QStringLiteral("  ·  ")));
}

void HooksWindow::ShowDetail() {
  const QModelIndex current = table_->currentIndex();
  changes_->setRowCount(0);
  trace_->clear();
  detail_error_->setVisible(false);
  trace_->setVisible(false);
  detail_place_->setText({});
  changes_->setVisible(false);
  if (!current.isValid()) {
    detail_title_->setText(QStringLiteral("Elija un renglón para ver qué hizo su rutina."));
    return;
  }
  const Happening& row = model_->Row(shown_->mapToSource(current).row());
  const QString moment = row.Cell(kMoment);
  detail_title_->setText(moment.isEmpty() ? row.Cell(kKey)
                                          : row.Cell(kKey) + QStringLiteral("  ·  ") + moment);
  QStringList place;
  if (!row.Place().isEmpty()) place << row.Place();
  if (row.run) place << Milliseconds(row.run->milisegundos) + QStringLiteral(" ms");
  if (row.Slow()) place << QStringLiteral("más de un segundo: el operador lo nota");
  if (row.run && row.run->cambios.empty()) place << QStringLiteral("no cambió ningún campo");
  if (!row.routine && !row.failure) place << QStringLiteral("sin rutina");
  detail_place_->setText(place.join(QStringLiteral("  ·  ")));
  if (const QString error = row.Error(); !error.isEmpty()) {
    const QString at = row.run && row.run->error
                           ? Text(python::LugarDe(row.run->error->archivo, row.run->error->linea))
                           : row.Place();
    detail_error_->setText(at + QStringLiteral(": ") + error);
    QPalette palette = detail_error_->palette();
    palette.setColor(QPalette::WindowText, office_.theme.Color(Role::Refused));
    detail_error_->setPalette(palette);
    detail_error_->setVisible(true);
  }
  if (!row.run) return;
  changes_->setVisible(!row.run->cambios.empty());
  if (!row.run->rastro.empty()) {
    trace_->setPlainText(Text(row.run->rastro).trimmed());
    trace_->setVisible(true);
  }
  changes_->setRowCount(static_cast<int>(row.run->cambios.size()));
  int line = 0;
  for (const auto& change : row.run->cambios) {
    int column = 0;
    for (const std::string* text : {&change.nombre, &change.antes, &change.despues}) {
      auto* item = new QTableWidgetItem(Flat(Text(*text)));
      item->setToolTip(Text(*text));
      changes_->setItem(line, column++, item);
    }
    ++line;
  }
}

void HooksWindow::Copy() {
  QList<int> rows;
  for (const QModelIndex& index : table_->selectionModel()->selectedRows()) rows << index.row();
  std::sort(rows.begin(), rows.end());
  if (rows.isEmpty()) {
    for (int row = 0; row < shown_->rowCount(); ++row) rows << row;
  }
  if (rows.isEmpty()) return;
  QString text;
  for (int column = 0; column < kColumns; ++column) {
    text += (column > 0 ? QStringLiteral("\t") : QString()) + Headline(static_cast<Column>(column));
  }
  text += QLatin1Char('\n');
  for (const int row : rows) {
    for (int column = 0; column < kColumns; ++column) {
      text += (column > 0 ? QStringLiteral("\t") : QString()) + shown_->index(row, column).data().toString();
    }
    text += QLatin1Char('\n');
  }
  QApplication::clipboard()->setText(text);
}

void HooksWindow::Clear() {
  model_->Empty();
  Refresh();
  ShowDetail();
}

void HooksWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  Refresh();
  ShowDetail();
  if (!table_->currentIndex().isValid()) table_->scrollToBottom();
  if (shown_->rowCount() > 0) {
    table_->setFocus(Qt::OtherFocusReason);
  } else {
    filter_->setFocus(Qt::OtherFocusReason);
  }
}

void HooksWindow::hideEvent(QHideEvent* event) {
  office_.settings.setValue(QLatin1String(kGeometry), saveGeometry());
  office_.settings.setValue(QLatin1String(kHeader), table_->horizontalHeader()->saveState());
  office_.settings.setValue(QLatin1String(kSplit), splitter_->saveState());
  QMainWindow::hideEvent(event);
}

}  // namespace tarvik::desktop
