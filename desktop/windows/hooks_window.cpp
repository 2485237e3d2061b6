#include "desktop/windows/hooks_window.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/style/theme.h"
#include "desktop/windows/hooks_detail.h"
#include "desktop/windows/hooks_looks.h"
#include "desktop/windows/hooks_model.h"
#include "forms/platform.h"
#include "host/anfitrion.h"

namespace tarvik::desktop {

namespace {

using namespace hooks;

QString Text(const std::string& text) { return QString::fromStdString(text); }

constexpr const char* kGeometry = "rutinas/ventana";
constexpr const char* kHeader = "rutinas/columnas";
constexpr const char* kSplit = "rutinas/division";

}  // namespace

HooksWindow::HooksWindow(Office& office, QWidget* parent)
    : QMainWindow(parent),
      office_(office),
      model_(new Model(office.theme, this)),
      shown_(new hooks::Filter(this)) {
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
  splitter_->setHandleWidth(1);  // a hairline; the panels have their own margins
  splitter_->addWidget(List());
  detail_ = new Detail(office_.theme, this);
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
  // If the program's end closed the box, nobody has answered.
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
  if (current.isValid()) {
    detail_->Show(model_->Row(shown_->mapToSource(current).row()));
  } else {
    detail_->ShowNothing();
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
