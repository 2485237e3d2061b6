#include "desktop/pickers/search_popup.h"

#include <QFrame>
#include <QLineEdit>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/pickers/search_panel.h"
#include "desktop/screens/screen_view.h"
#include "desktop/style/theme.h"
#include "forms/form.h"
#include "host/anfitrion.h"

namespace tarvik::desktop {

namespace {

using measure::kGrid;

// Under the field, or above it where the screen ends.
QRect Place(const QWidget& anchor) {
  const int width = std::max(anchor.width(), 60 * kGrid);
  const int height = 42 * kGrid;
  const QPoint below = anchor.mapToGlobal(QPoint(0, anchor.height() + kGrid / 2));
  QRect place(below, QSize(width, height));
  const QScreen* screen = anchor.screen();
  if (screen == nullptr) return place;
  const QRect room = screen->availableGeometry();
  if (place.bottom() > room.bottom()) {
    place.moveBottom(anchor.mapToGlobal(QPoint(0, 0)).y() - kGrid / 2);
    if (place.top() < room.top()) place.moveTop(std::max(room.top(), room.bottom() - height));
  }
  if (place.right() > room.right()) place.moveRight(room.right());
  if (place.left() < room.left()) place.moveLeft(room.left());
  return place;
}

}  // namespace

QPointer<QWidget> ShowSearchList(Office& office, forms::SearchBox& box, QWidget& anchor) {
  forms::TextBox* field = box.Field();
  if (field == nullptr) return {};
  const std::weak_ptr<forms::Form> form = box.Owner().weak_from_this();

  auto* list = new QFrame(&anchor, Qt::Popup);
  list->setAttribute(Qt::WA_DeleteOnClose);
  list->setProperty("role", QStringLiteral("panel"));
  SearchSource source = SourceFor(office.host.Conexion(), box.buscar());
  list->setAccessibleName(source.title);
  auto* layout = new QVBoxLayout(list);
  layout->setContentsMargins(kGrid, kGrid, kGrid, kGrid);
  auto* panel = new SearchPanel(std::move(source), true, list);
  layout->addWidget(panel);

  const QPointer<QWidget> back = &anchor;
  const auto leave = [list, back] {
    list->close();
    if (back != nullptr) back->setFocus(Qt::PopupFocusReason);
  };
  QObject::connect(panel, &SearchPanel::Left, list, leave);
  QObject::connect(panel, &SearchPanel::Taken, list, [leave, field, form, back](const QString& key) {
    leave();
    // The screen may have gone while its list was open.
    const auto held = form.lock();
    if (held == nullptr || !held->Open()) return;
    const std::string chosen = key.toStdString();
    held->Act([&] { field->Text(chosen); });
    for (QWidget* around = back; around; around = around->parentWidget()) {
      if (auto* view = qobject_cast<ScreenView*>(around)) return view->Refresh();
    }
  });

  list->setGeometry(Place(anchor));
  panel->Start(QString::fromStdString(field->Text()));
  list->show();
  panel->Filter().setFocus(Qt::PopupFocusReason);
  return list;
}

}  // namespace tarvik::desktop
