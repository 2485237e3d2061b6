// The keys of a list, its sums, and the place it keeps when it is read again.
#include "desktop/lists/document_list.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

#include "desktop/lists/list_frame.h"
#include "desktop/lists/list_tools.h"
#include "desktop/style/key_caps.h"
#include "desktop/style/list_cells.h"
#include "desktop/style/theme.h"
#include "host/anfitrion.h"

namespace tarvik::desktop {
namespace {

constexpr int kNearEnd = 100;  // rows before the last at which the next page is asked for

QString SettingName(ListKind kind) {
  const auto name = NameOf(kind);
  return QString::fromLatin1(name.data(), static_cast<int>(name.size()));
}

bool MovesInTable(int key) {
  return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

}  // namespace

DocumentList::DocumentList(Office& office, Reader& reader, ListKind kind, QWidget* parent)
    : QWidget(parent),
      office_(office),
      model_(new DocumentListModel(reader, kind, office.host.Ambiente().FormatoImporte(), this)),
      filter_(new QLineEdit(this)),
      table_(new QTableView(this)),
      empty_(new QWidget(table_->viewport())),
      empty_text_(new QLabel(empty_)),
      count_(new QLabel(this)),
      total_(new QLabel(this)),
      reason_(new QLabel(this)),
      keys_(new KeyCaps) {
  DressRows();
  tools_ = new ListTools({office, reader, *model_, *table_, SettingName(kind), TitleOf(kind)}, Sums(), *this);
  const auto [column, body] = FrameOfList(*this, Head(), *reason_);
  body->addWidget(table_, 1);
  column->addWidget(KeyLine(*keys_, &tools_->Foot()));
  Connect();
  setFocusProxy(filter_);
  ShowSums();
  ShowKeys();
}

QLayout* DocumentList::Head() {
  auto* head = new QHBoxLayout;
  head->setSpacing(2 * measure::kGrid);
  auto* title = new QLabel(TitleOf(Kind()), this);
  title->setProperty("role", "title");
  head->addWidget(title);
  head->addStretch();
  head->addWidget(tools_->OfferFilters(*filter_));
  filter_->setPlaceholderText(QStringLiteral("Buscar: número, fecha, o palabras de cualquier columna"));
  filter_->setAccessibleName(QStringLiteral("Buscar en ") + TitleOf(Kind()).toLower());
  filter_->setToolTip(QStringLiteral(
      "Cifras: inicio del número. Fecha: 21/11/2026, 11/2026 o 21/11. Varias palabras: cada una "
      "en alguna columna."));
  filter_->setClearButtonEnabled(false);
  filter_->setFixedSize(58 * measure::kGrid, measure::kField);
  head->addWidget(filter_);
  return head;
}

// The table, and the words that stand in it while it is empty.
void DocumentList::DressRows() {
  table_->setModel(model_);
  DressTable(*table_, office_.theme, TitleOf(Kind()), DocumentListModel::Remarks);
  SetWidths(*table_, {8, 11, 24, 30, 16, 13, 24, 20});
  empty_text_->setProperty("role", "empty");
  empty_text_->setAlignment(Qt::AlignCenter);
  empty_text_->setWordWrap(true);
  auto* middle = new QVBoxLayout(empty_);
  middle->addWidget(empty_text_);
  empty_->setAttribute(Qt::WA_TransparentForMouseEvents);
  empty_->hide();
}

QWidget* DocumentList::Sums() {
  count_->setProperty("role", "soft");
  count_->setAccessibleName(QStringLiteral("Documentos en la lista"));
  total_->setAccessibleName(QStringLiteral("Suma de los importes"));
  QFont strong = total_->font();
  strong.setWeight(QFont::DemiBold);
  total_->setFont(strong);
  auto* sums = new QWidget;
  auto* at_right = new QHBoxLayout(sums);
  at_right->setContentsMargins(0, 0, 0, 0);
  at_right->setSpacing(2 * measure::kGrid);
  at_right->addStretch();
  at_right->addWidget(count_);
  at_right->addWidget(total_);
  return sums;
}

void DocumentList::Connect() {
  filter_->installEventFilter(this);
  table_->installEventFilter(this);
  table_->viewport()->installEventFilter(this);
  connect(filter_, &QLineEdit::textChanged, this, [this](const QString& typed) {
    wanted_ = 0;
    asked_ = nullptr;
    model_->SetFilter(typed);
    ShowSums();
  });
  connect(tools_, &ListTools::Sorted, this, [this] {
    wanted_ = 0;
    asked_ = nullptr;
  });
  connect(table_, &QTableView::doubleClicked, this, [this] {
    if (Selected() != 0) emit OpenRequested(Selected());
  });
  connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          &DocumentList::SelectionChanged);
  connect(this, &DocumentList::SelectionChanged, this, &DocumentList::ShowKeys);
  connect(table_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
    if (value > table_->verticalScrollBar()->maximum() - kNearEnd) model_->fetchMore({});
  });
  connect(model_, &DocumentListModel::Rested, this, &DocumentList::OnRested);
  connect(model_, &DocumentListModel::SumsChanged, this, &DocumentList::ShowSums);
  connect(model_, &DocumentListModel::modelReset, this, &DocumentList::ShowSums);
  connect(model_, &DocumentListModel::rowsInserted, this, &DocumentList::ShowSums);
  connect(model_, &DocumentListModel::rowsRemoved, this, &DocumentList::ShowSums);
  connect(model_, &DocumentListModel::Failed, this, [this](const QString& reason) {
    reason_->setText(QStringLiteral("No se pudo leer la lista: %1. Los documentos están como estaban. "
                                    "Pulse F5 para leerla de nuevo.")
                         .arg(reason));
    reason_->show();
  });
}

void DocumentList::Use(const HalfPosted& half) {
  model_->Use(half);
  connect(&half, &HalfPosted::Changed, this, [this] {
    ShowKeys();
    if (model_->Filter().toLower() == kHalfFilter) Refresh();
  });
}

void DocumentList::ShowKeys() {
  Keys keys{{tr("Intro"), tr("abrir")}, {tr("Ctrl+Intro"), tr("consultar")}};
  if (SelectedHalf()) keys += {QStringLiteral("F7"), tr("completar")};
  keys += {tr("Insert"), IsGoodsIn(Kind()) ? tr("nueva entrada") : tr("nueva salida")};
  keys += {tr("Supr"), tr("eliminar")};
  keys += {QStringLiteral("F3"), tr("filtros")};
  keys += {QStringLiteral("F4"), tr("columnas")};
  keys += {QStringLiteral("Alt+1…9"), tr("orden")};
  keys += {QStringLiteral("F5"), tr("actualizar")};
  keys_->Show(keys);
}

bool DocumentList::SelectedHalf() const {
  const QModelIndex current = table_->currentIndex();
  return current.isValid() && current.data(DocumentListModel::HalfRole).toBool();
}

int DocumentList::SelectedRow() const { return table_->currentIndex().row(); }

int DocumentList::Selected() const {
  const QModelIndex current = table_->currentIndex();
  return current.isValid() ? current.data(DocumentListModel::NumberRole).toInt() : 0;
}

bool DocumentList::SelectedHeld() const {
  const QModelIndex current = table_->currentIndex();
  return current.isValid() && current.data(DocumentListModel::HeldRole).toBool();
}

bool DocumentList::Select(int number) {
  const int row = model_->RowOfKey(number);
  if (row < 0) return false;
  table_->setCurrentIndex(model_->index(row, 0));
  return true;
}

void DocumentList::Refresh(int number) {
  if (number != 0) wanted_ = number;
  if (wanted_ == 0) wanted_ = Selected();
  const QModelIndex current = table_->currentIndex();
  offset_ = current.isValid() ? current.row() - table_->verticalScrollBar()->value() : -1;
  model_->Refresh(wanted_ != 0 ? std::optional<std::int64_t>(wanted_) : std::nullopt);
}

void DocumentList::OnRested() {
  if (!model_->Failing()) reason_->hide();
  if (wanted_ != 0 && Select(wanted_) && offset_ >= 0) {
    table_->verticalScrollBar()->setValue(SelectedRow() - offset_);
    table_->scrollTo(table_->currentIndex());
  }
  wanted_ = 0;
  offset_ = -1;
  if (!table_->currentIndex().isValid() && model_->rowCount() > 0) {
    table_->setCurrentIndex(model_->index(0, 0));
  }
  ShowSums();
  emit SelectionChanged();
  if (const auto asked = std::exchange(asked_, nullptr); asked && !model_->Failing()) Ask(asked);
}

// Enter right after the text, as a scanner sends it, applies to the rows that are still being read, not to
// those on show.
void DocumentList::Ask(void (DocumentList::*what)(int)) {
  if (model_->Busy() && (model_->Stale() || Selected() == 0)) {
    asked_ = what;
  } else if (Selected() != 0) {
    emit(this->*what)(Selected());
  }
}

void DocumentList::ShowSums() {
  count_->setText(model_->CountText());
  const QString total = model_->TotalText();
  total_->setText(total.isEmpty() ? QString() : QStringLiteral("Total ") + total);

  const bool nothing = model_->rowCount() == 0;
  if (nothing) {
    const bool goods_in = IsGoodsIn(Kind());
    const QString kind = goods_in ? QStringLiteral("entradas") : QStringLiteral("salidas");
    if (model_->Busy() || !shown_) {
      empty_text_->setText(model_->Filter().isEmpty() ? QString() : QStringLiteral("Buscando…"));
    } else if (!model_->Filter().isEmpty()) {
      empty_text_->setText(QStringLiteral("Ningún documento coincide con «%1».\nPulse Esc para ver todos.")
                               .arg(model_->Filter()));
    } else if (IsPending(Kind())) {
      empty_text_->setText(QStringLiteral("No hay %1 pendientes.").arg(kind));
    } else {
      empty_text_->setText(
          QStringLiteral("Todavía no hay %1.\nPulse Insert para registrar la primera.").arg(kind));
    }
    empty_->setGeometry(table_->viewport()->rect());
  }
  empty_->setVisible(nothing);
}

void DocumentList::SaveColumns() { tools_->SaveColumns(); }

void DocumentList::showEvent(QShowEvent* event) {
  shown_ = true;
  Refresh();
  QWidget::showEvent(event);
}

bool DocumentList::eventFilter(QObject* watched, QEvent* event) {
  if (watched == table_->viewport()) return AtTheRows(*event) || QWidget::eventFilter(watched, event);
  if (tools_->Takes(watched, event)) return true;
  const bool pressed = event->type() == QEvent::KeyPress;
  if (!pressed && event->type() != QEvent::ShortcutOverride) return QWidget::eventFilter(watched, event);
  auto& key = static_cast<QKeyEvent&>(*event);
  if (const auto act = ActOf(key, watched == filter_)) {
    event->accept();
    if (pressed) act();
    return true;
  }
  return (pressed && HandedOver(key, watched == filter_)) || QWidget::eventFilter(watched, event);
}

bool DocumentList::AtTheRows(QEvent& event) {
  if (event.type() == QEvent::Resize) empty_->setGeometry(table_->viewport()->rect());
  if (event.type() != QEvent::ContextMenu || menu_ == nullptr) return false;
  const auto& asked = static_cast<QContextMenuEvent&>(event);
  QPoint at = asked.globalPos();
  if (asked.reason() == QContextMenuEvent::Keyboard) {
    at = table_->viewport()->mapToGlobal(table_->visualRect(table_->currentIndex()).bottomLeft());
  } else if (const QModelIndex under = table_->indexAt(asked.pos()); under.isValid()) {
    table_->setCurrentIndex(under);
  }
  menu_->popup(at);
  return true;
}

// What a key does to the list; nothing for a key that is none of the list's.
std::function<void()> DocumentList::ActOf(const QKeyEvent& key, bool in_filter) {
  const auto modifiers = key.modifiers() & ~Qt::KeypadModifier;
  const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  // A key held down opens one document.
  if ((enter || key.key() == Qt::Key_Insert) && key.isAutoRepeat()) return [] {};
  if (enter && modifiers == Qt::ControlModifier) return [this] { Ask(&DocumentList::ReadRequested); };
  if (modifiers != Qt::NoModifier) return {};
  if (enter) return [this] { Ask(&DocumentList::OpenRequested); };
  const bool typed = !filter_->text().isEmpty();
  switch (key.key()) {
    case Qt::Key_Insert:
      return [this] { emit NewRequested(); };
    case Qt::Key_Delete:
      // In the filter field Delete edits the text as long as there is any.
      if (in_filter && typed) return {};
      return [this] {
        if (Selected() != 0) emit DeleteRequested(Selected());
      };
    case Qt::Key_F5:
      return [this] {
        Refresh();
        emit RefreshRequested();
      };
    case Qt::Key_F7:
      if (!SelectedHalf()) return {};
      return [this] { emit CompleteRequested(Selected()); };
    case Qt::Key_Escape:
      if (!typed) return {};
      return [this] {
        filter_->clear();
        filter_->setFocus();
      };
    default:
      return {};
  }
}

// The arrows in the field walk the rows; what is typed on the rows goes into the field.
bool DocumentList::HandedOver(QKeyEvent& key, bool in_filter) {
  const auto modifiers = key.modifiers() & ~Qt::KeypadModifier;
  const bool plain = modifiers == Qt::NoModifier;
  if (in_filter) {
    // With Shift the arrows choose several rows.
    if ((!plain && modifiers != Qt::ShiftModifier) || !MovesInTable(key.key())) return false;
    QCoreApplication::sendEvent(table_, &key);
    return true;
  }
  const bool types = !key.text().isEmpty() && key.text().at(0).isPrint() &&
                     !(modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
  if (!types && !(plain && key.key() == Qt::Key_Backspace)) return false;
  filter_->setFocus();
  filter_->end(false);
  QCoreApplication::sendEvent(filter_, &key);
  return true;
}

}  // namespace tarvik::desktop
