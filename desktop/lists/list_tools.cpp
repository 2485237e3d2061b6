#include "desktop/lists/list_tools.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QStandardPaths>
#include <QTableView>
#include <algorithm>

#include "desktop/boxes/file_dialog.h"
#include "desktop/lists/saved_filters.h"
#include "desktop/style/list_cells.h"
#include "desktop/style/theme.h"
#include "host/anfitrion.h"

namespace tarvik::desktop {
namespace {

// A menu of ticks: it stays while several are set.
class TicksMenu final : public QMenu {
 public:
  using QMenu::QMenu;

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (!Toggle(actionAt(event->position().toPoint()))) QMenu::mouseReleaseEvent(event);
  }
  void keyPressEvent(QKeyEvent* event) override {
    const bool sets =
        event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!sets || !Toggle(activeAction())) QMenu::keyPressEvent(event);
  }

 private:
  static bool Toggle(QAction* action) {
    if (action == nullptr || !action->isCheckable() || !action->isEnabled()) return false;
    action->trigger();
    return true;
  }
};

// One line of one cell: what would divide cells and rows is a blank.
QString Cell(const QModelIndex& index) {
  QString text = index.data().toString();
  return text.replace(QLatin1Char('\t'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
}

}  // namespace

ListTools::ListTools(const Parts& parts, QWidget* sums, QWidget& page)
    : QObject(&page), parts_(parts), page_(page), foot_(new ListExport(parts.reader, sums)) {
  LoadWidths(parts_.table, parts_.office.settings, parts_.name);
  parts_.table.setSelectionMode(QAbstractItemView::ExtendedSelection);
  // A bar that came and went with the length of the list would move the columns.
  parts_.table.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  auto* bar = parts_.table.verticalScrollBar();
  bar->setEnabled(false);  // it shows no handle as long as there is nowhere to go
  connect(bar, &QScrollBar::rangeChanged, bar, [bar](int first, int last) { bar->setEnabled(last > first); });
  auto& header = Header();
  header.setSectionsClickable(true);
  header.setSortIndicatorShown(false);  // the title has its own mark, which moves nothing
  header.setContextMenuPolicy(Qt::CustomContextMenu);
  connect(&header, &QHeaderView::sectionClicked, this, &ListTools::SortBy);
  connect(&header, &QHeaderView::customContextMenuRequested, this,
          [this](const QPoint& at) { MakeColumnsMenu()->popup(Header().mapToGlobal(at)); });
  ask_where = [this](const QString& proposed) {
    return AskWhereToSave(&page_, QStringLiteral("Exportar la lista"), proposed,
                          QStringLiteral("Hoja de cálculo (*.csv)"), QStringLiteral("csv"));
  };
}

QHeaderView& ListTools::Header() const { return *parts_.table.horizontalHeader(); }

QPushButton* ListTools::OfferFilters(QLineEdit& field) {
  field_ = &field;
  auto* button = new QPushButton(QStringLiteral("Filtros  F3"), &page_);
  button->setProperty("role", "quiet");
  button->setFocusPolicy(Qt::NoFocus);
  button->setToolTip(QStringLiteral("Filtros guardados: elegir uno, o guardar el que está a la vista"));
  connect(button, &QPushButton::clicked, this, &ListTools::ShowFilters);
  return button;
}

bool ListTools::Takes(QObject* watched, QEvent* event) {
  const bool pressed = event->type() == QEvent::KeyPress;
  if (!pressed && event->type() != QEvent::ShortcutOverride) return false;
  const auto& key = static_cast<const QKeyEvent&>(*event);
  const auto act = ActOf(key, watched);
  if (act) {
    event->accept();
    if (pressed) act();
    return true;
  }
  if (!pressed) return false;
  foot_->Quiet();
  const bool alt =
      key.modifiers().testFlag(Qt::AltModifier) && !key.modifiers().testFlag(Qt::ControlModifier);
  return alt && !key.text().isEmpty();
}

std::function<void()> ListTools::ActOf(const QKeyEvent& key, const QObject* watched) {
  const auto modifiers = key.modifiers() & ~Qt::KeypadModifier;
  if (modifiers == Qt::AltModifier && key.key() >= Qt::Key_0 && key.key() <= Qt::Key_9) {
    const int place = key.key() - Qt::Key_1;
    return [this, place] {
      if (place < 0) return UseSort({});
      const QList<int> columns = ColumnsOnShow();
      if (place < columns.size()) SortBy(columns[place]);
    };
  }
  if (modifiers == Qt::ControlModifier && key.key() == Qt::Key_C) {
    const auto* field = qobject_cast<const QLineEdit*>(watched);
    if (field != nullptr && field->hasSelectedText()) return {};
    return [this] { Copy(); };
  }
  if (modifiers == Qt::ControlModifier && key.key() == Qt::Key_E) return [this] { Export(); };
  if (modifiers != Qt::NoModifier) return {};
  if (key.key() == Qt::Key_Escape && foot_->UnderWay()) return [this] { foot_->Cancel(); };
  if (key.key() == Qt::Key_F3 && field_ != nullptr) return [this] { ShowFilters(); };
  if (key.key() == Qt::Key_F4) return [this] { ShowColumns(); };
  return {};
}

QList<int> ListTools::ColumnsOnShow() const {
  QList<int> columns;
  for (int visual = 0; visual < Header().count(); ++visual) {
    const int column = Header().logicalIndex(visual);
    if (!Header().isSectionHidden(column)) columns += column;
  }
  return columns;
}

QString ListTools::TitleOfColumn(int column) const {
  return parts_.model.headerData(column, Qt::Horizontal, Qt::AccessibleTextRole).toString();
}

// ---- order ----

void ListTools::SortBy(int column) {
  if (!parts_.model.SortsBy(column)) return;
  const PagedModel::Sort& now = parts_.model.Sorted();
  if (now.column != column) return UseSort({column, false});
  UseSort(now.descending ? PagedModel::Sort{} : PagedModel::Sort{column, true});
}

void ListTools::UseSort(const PagedModel::Sort& sort) {
  emit Sorted();
  parts_.model.SetSort(sort);
}

// ---- columns ----

void ListTools::ShowColumns() {
  auto& header = Header();
  auto* menu = MakeColumnsMenu();
  menu->popup(header.mapToGlobal(QPoint(0, header.height())));
  menu->setActiveAction(menu->actions().first());
}

QMenu* ListTools::MakeColumnsMenu() {
  auto* menu = new TicksMenu(&page_);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setAccessibleName(QStringLiteral("Columnas"));
  for (int visual = 0; visual < Header().count(); ++visual) {
    const int column = Header().logicalIndex(visual);
    auto* action = menu->addAction(TitleOfColumn(column));
    action->setCheckable(true);
    action->setChecked(!Header().isSectionHidden(column));
    connect(action, &QAction::triggered, this, [this, action, column](bool on) {
      // A list without columns could not be given any back by its header.
      if (!on && ColumnsOnShow().size() == 1) return action->setChecked(true);
      Header().setSectionHidden(column, !on);
      SaveColumns();
    });
  }
  menu->addSeparator();
  connect(menu->addAction(QStringLiteral("Mostrar todas")), &QAction::triggered, this, [this] {
    for (int column = 0; column < Header().count(); ++column) Header().setSectionHidden(column, false);
    SaveColumns();
  });
  if (parts_.model.SortsBy(ColumnsOnShow().first()))
    MakeOrderMenu(*menu->addMenu(QStringLiteral("Ordenar por")));
  return menu;
}

void ListTools::MakeOrderMenu(QMenu& menu) {
  const QList<int> columns = ColumnsOnShow();
  for (int place = 0; place < columns.size(); ++place) {
    const int column = columns[place];
    const QString key = place < 9 ? QStringLiteral("\tAlt+%1").arg(place + 1) : QString();
    connect(menu.addAction(TitleOfColumn(column) + key), &QAction::triggered, this,
            [this, column] { SortBy(column); });
  }
  menu.addSeparator();
  auto* plain = menu.addAction(QStringLiteral("Como al principio\tAlt+0"));
  plain->setEnabled(parts_.model.Sorted().column >= 0);
  connect(plain, &QAction::triggered, this, [this] { UseSort({}); });
}

void ListTools::SaveColumns() { SaveWidths(parts_.table, parts_.office.settings, parts_.name); }

// ---- filters with a name ----

FilterPanel* ListTools::ShowFilters() {
  if (field_ == nullptr) return nullptr;
  const QString user = QString::fromStdString(parts_.office.host.Ambiente().Usuario());
  auto* panel = new FilterPanel(FilterStore(parts_.office.settings, user, parts_.name),
                                {QString(), field_->text(), parts_.model.Sorted()}, *field_);
  connect(panel, &FilterPanel::Chosen, this, &ListTools::UseFilter);
  panel->show();
  return panel;
}

void ListTools::UseFilter(const SavedFilter& filter) {
  UseSort(filter.sort);
  field_->setText(filter.typed);
  field_->setFocus();
}

// ---- out of the program ----

void ListTools::Copy() {
  QModelIndexList rows = parts_.table.selectionModel()->selectedRows();
  if (rows.isEmpty()) return;
  std::sort(rows.begin(), rows.end(),
            [](const QModelIndex& one, const QModelIndex& other) { return one.row() < other.row(); });
  const QList<int> columns = ColumnsOnShow();
  QStringList titles;
  for (const int column : columns) titles += TitleOfColumn(column);
  QString text = titles.join(QLatin1Char('\t')) + QLatin1Char('\n');
  for (const QModelIndex& row : rows) {
    QStringList cells;
    for (const int column : columns) {
      const QModelIndex index = row.siblingAtColumn(column);
      // Of a very long list only the pages last seen are at hand.
      if (!index.data().isValid()) {
        return foot_->Say(
            QStringLiteral("Son demasiados renglones para copiarlos. Exporte la lista (Ctrl+E)."));
      }
      cells += Cell(index);
    }
    text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
  }
  QApplication::clipboard()->setText(text);
  foot_->Say(rows.size() == 1 ? QStringLiteral("Se copió 1 renglón")
                              : QStringLiteral("Se copiaron %1 renglones").arg(rows.size()));
}

void ListTools::Export() {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  const QString path = ask_where(QDir(folder).filePath(parts_.title.toLower() + QStringLiteral(".csv")));
  if (path.isEmpty()) return;
  std::vector<host::ColumnaCsv> columns;
  for (const int column : ColumnsOnShow()) {
    if (auto value = parts_.model.ValueOf(column)) {
      columns.push_back({TitleOfColumn(column).toStdString(), std::move(value)});
    }
  }
  try {
    const host::ArchivosDeLaBase base(parts_.office.host.Base().Address());
    auto file = std::make_shared<host::ListadoEnCsv>(parts_.model.Listing(), std::move(columns),
                                                     path.toStdString(), base);
    foot_->Start(std::move(file), path, parts_.model.Total() ? parts_.model.Total()->cuantos : 0);
  } catch (const std::exception& error) {
    foot_->Say(QStringLiteral("No se exportó: %1").arg(QString::fromUtf8(error.what())));
  }
}

}  // namespace tarvik::desktop
