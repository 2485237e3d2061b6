#include "desktop/lists/saved_filters.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSettings>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/style/key_caps.h"
#include "desktop/style/theme.h"

namespace tarvik::desktop {
namespace {

constexpr int kParts = 4;  // texts that one filter is kept as

// A user's name may hold what divides a key.
QString Part(const QString& text) {
  return text.isEmpty() ? QStringLiteral("-") : QString::fromLatin1(QUrl::toPercentEncoding(text));
}

bool SameName(const QString& one, const QString& other) {
  return one.compare(other, Qt::CaseInsensitive) == 0;
}

}  // namespace

FilterStore::FilterStore(QSettings& settings, const QString& user, const QString& list)
    : settings_(settings), key_(QStringLiteral("filtros/%1/%2").arg(Part(user), Part(list))) {}

QList<SavedFilter> FilterStore::All() const {
  const QStringList kept = settings_.value(key_).toStringList();
  QList<SavedFilter> all;
  for (int i = 0; i + kParts <= kept.size(); i += kParts) {
    all += {kept[i], kept[i + 1], {kept[i + 2].toInt(), kept[i + 3] == QLatin1String("1")}};
  }
  return all;
}

void FilterStore::Write(const QList<SavedFilter>& all) {
  QStringList kept;
  for (const SavedFilter& filter : all) {
    kept << filter.name << filter.typed << QString::number(filter.sort.column)
         << (filter.sort.descending ? QStringLiteral("1") : QStringLiteral("0"));
  }
  if (kept.isEmpty()) {
    settings_.remove(key_);
  } else {
    settings_.setValue(key_, kept);
  }
}

void FilterStore::Save(const SavedFilter& filter) {
  QList<SavedFilter> all = All();
  all.removeIf([&](const SavedFilter& kept) { return SameName(kept.name, filter.name); });
  const auto after = std::find_if(all.begin(), all.end(), [&](const SavedFilter& kept) {
    return kept.name.compare(filter.name, Qt::CaseInsensitive) > 0;
  });
  all.insert(after, filter);
  Write(all);
}

void FilterStore::Drop(const QString& name) {
  QList<SavedFilter> all = All();
  all.removeIf([&](const SavedFilter& kept) { return SameName(kept.name, name); });
  Write(all);
}

FilterPanel::FilterPanel(FilterStore store, SavedFilter shown, QWidget& anchor)
    : QFrame(&anchor, Qt::Popup),
      store_(std::move(store)),
      shown_(std::move(shown)),
      names_(new QListWidget(this)),
      new_name_(new QLineEdit(this)) {
  constexpr int kGrid = measure::kGrid;
  setAttribute(Qt::WA_DeleteOnClose);
  setProperty("role", "panel");
  setAccessibleName(QStringLiteral("Filtros guardados"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kGrid, kGrid, kGrid, kGrid);
  column->setSpacing(kGrid);
  auto* caption = new QLabel(QStringLiteral("Filtros guardados"), this);
  caption->setProperty("role", "caption");
  column->addWidget(caption);
  names_->setAccessibleName(QStringLiteral("Filtros guardados"));
  names_->setFixedHeight(6 * measure::kRow);
  column->addWidget(names_);
  new_name_->setAccessibleName(QStringLiteral("Nombre para el filtro a la vista"));
  new_name_->setPlaceholderText(QStringLiteral("Nombre para guardar lo que está a la vista"));
  new_name_->setFixedHeight(measure::kField);
  column->addWidget(new_name_);
  auto* keys = new KeyCaps;
  keys->Show({{tr("Intro"), tr("usar o guardar")}, {tr("Supr"), tr("eliminar")}, {tr("Esc"), tr("volver")}});
  column->addWidget(keys);
  names_->installEventFilter(this);
  new_name_->installEventFilter(this);
  connect(names_, &QListWidget::itemDoubleClicked, this, &FilterPanel::Use);
  Fill();
  const int width = std::max(anchor.width(), 44 * kGrid);
  setFixedWidth(width);
  move(anchor.mapToGlobal(QPoint(anchor.width() - width, anchor.height() + kGrid / 2)));
  (names_->count() > 0 ? static_cast<QWidget*>(names_) : new_name_)->setFocus(Qt::PopupFocusReason);
}

void FilterPanel::Fill() {
  names_->clear();
  for (const SavedFilter& filter : store_.All()) {
    auto* item = new QListWidgetItem(
        filter.typed.isEmpty() ? filter.name : filter.name + QStringLiteral("   ·   ") + filter.typed,
        names_);
    item->setData(Qt::UserRole, filter.name);
    item->setSizeHint({0, measure::kRow});
  }
  if (names_->count() > 0) names_->setCurrentRow(0);
}

void FilterPanel::Use() {
  const auto* item = names_->currentItem();
  if (item == nullptr) return;
  const QString name = item->data(Qt::UserRole).toString();
  for (const SavedFilter& filter : store_.All()) {
    if (filter.name != name) continue;
    close();
    emit Chosen(filter);
    return;
  }
}

void FilterPanel::SaveShown() {
  shown_.name = new_name_->text().simplified();
  if (shown_.name.isEmpty()) return;
  store_.Save(shown_);
  close();
}

bool FilterPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QFrame::eventFilter(watched, event);
  auto& key = static_cast<QKeyEvent&>(*event);
  const bool in_names = watched == names_;
  switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      in_names ? Use() : SaveShown();
      return true;
    case Qt::Key_Delete:
      if (!in_names || names_->currentItem() == nullptr) return false;
      store_.Drop(names_->currentItem()->data(Qt::UserRole).toString());
      Fill();
      if (names_->count() == 0) new_name_->setFocus();
      return true;
    case Qt::Key_Down:
    case Qt::Key_Up:
      if (!in_names && names_->count() > 0) names_->setFocus();
      return !in_names;
    default:
      break;
  }
  if (!in_names || key.text().isEmpty() || !key.text().at(0).isPrint()) return false;
  new_name_->setFocus();
  new_name_->insert(key.text());
  return true;
}

}  // namespace tarvik::desktop
