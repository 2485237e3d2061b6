// The open screens: each as a tab or in a window of its own, which document it holds, and how it closes.
#include "desktop/frame/main_window.h"

#include <QApplication>
#include <QSettings>
#include <QStackedWidget>
#include <QTabBar>
#include <QTimer>
#include <QToolButton>
#include <algorithm>

#include "desktop/frame/recovery.h"
#include "desktop/lists/document_list.h"
#include "desktop/lists/stock_view.h"
#include "desktop/platform/qt_platform.h"
#include "desktop/reading/half_posted.h"
#include "desktop/screens/document_view.h"
#include "desktop/screens/screen_view.h"
#include "host/anfitrion.h"

namespace tarvik::desktop {
namespace {

QString Own(const std::string& text) { return QString::fromStdString(text); }

}  // namespace

MainWindow::Screen* MainWindow::Find(const ScreenView* view) {
  const auto found = std::find_if(screens_.begin(), screens_.end(),
                                  [&](const Screen& screen) { return screen.view == view; });
  return found == screens_.end() ? nullptr : &*found;
}

std::vector<ScreenView*> MainWindow::Open() const {
  std::vector<ScreenView*> open;
  for (int i = 1; i < stack_->count(); ++i) open.push_back(qobject_cast<ScreenView*>(stack_->widget(i)));
  for (const Screen& screen : screens_) {
    if (screen.window) open.push_back(screen.view);
  }
  return open;
}

ScreenView* MainWindow::Front() const {
  // A box, a picker or a dialog hangs from the window that it came up over.
  for (QWidget* window = QApplication::activeWindow(); window != nullptr; window = window->parentWidget()) {
    if (auto* view = qobject_cast<ScreenView*>(window)) return view;
  }
  return qobject_cast<ScreenView*>(stack_->currentWidget());
}

void MainWindow::Adopt(ScreenView& view, bool modal) {
  closing_ = false;
  Screen* known = Find(&view);
  if (known != nullptr && (!modal || known->window)) {
    if (modal) view.setWindowModality(Qt::ApplicationModal);
    view.show();
    return Raise(view);
  }
  if (known != nullptr) {
    RemoveTab(view);
  } else {
    screens_.push_back({&view, false, {}});
    known = &screens_.back();
    connect(&view, qOverload<const QString&>(&ScreenView::CaptionChanged), this, [this, view = &view] {
      Retitle(*view);
      // The screen is in the middle of its work: the document is looked at when it is done.
      QTimer::singleShot(0, view, [this, view] { HoldFor(view); });
    });
    if (auto* document = qobject_cast<DocumentView*>(&view)) {
      connect(document, &DocumentView::CompleteRequested, this, [this, document] {
        if (const auto held = host::DocumentoDe(document->Screen())) recovery_->Complete(KeyOf(*held));
      });
    }
    connect(&view, &ScreenView::Gone, this, [this, view = &view] { OnGone(view); });
  }
  known->window = modal || as_windows_->isChecked();
  if (known->window) {
    view.setParent(modal ? this : nullptr, Qt::Window);
    view.setWindowModality(modal ? Qt::ApplicationModal : Qt::NonModal);
    if (modal) known->before = QApplication::activeWindow();
    const QByteArray kept = office_.settings.value(WindowSetting(view)).toByteArray();
    if (kept.isEmpty()) {
      view.resize(view.FillsTheDesk() ? stack_->size().expandedTo(view.sizeHint()) : view.sizeHint());
    } else {
      view.restoreGeometry(kept);
    }
    view.show();
    view.raise();
    view.activateWindow();
  } else {
    const int index = tabs_->addTab(QString());
    stack_->addWidget(&view);
    auto* close = new QToolButton(tabs_);
    close->setText(QStringLiteral("×"));
    close->setAutoRaise(true);
    close->setFocusPolicy(Qt::NoFocus);
    close->setAccessibleName(QStringLiteral("Cerrar pantalla"));
    connect(close, &QToolButton::clicked, this, [view = &view] { view->Screen().Close(); });
    tabs_->setTabButton(index, QTabBar::RightSide, close);
    tabs_->setVisible(true);
    view.show();
    tabs_->setCurrentIndex(index);
  }
  Retitle(view);
  QTimer::singleShot(0, &view, [this, view = &view] { HoldFor(view); });
  UpdateActions();
}

void MainWindow::Raise(ScreenView& view) {
  const Screen* screen = Find(&view);
  if (screen != nullptr && !screen->window) {
    tabs_->setCurrentIndex(stack_->indexOf(&view));
  } else {
    view.raise();
    view.activateWindow();
  }
}

void MainWindow::Retitle(ScreenView& view) {
  const QString caption = Own(view.Screen().Caption());
  view.setWindowTitle(caption);
  const int index = stack_->indexOf(&view);
  if (index > 0) tabs_->setTabText(index, caption);
}

void MainWindow::RemoveTab(ScreenView& view) {
  const int index = stack_->indexOf(&view);
  if (index <= 0) return;
  stack_->removeWidget(&view);
  // Removing the tab reports a new current one, so the stack is brought up to date before.
  tabs_->removeTab(index);
  tabs_->setVisible(tabs_->count() > 1);
  ShowTab(tabs_->currentIndex());
}

QString MainWindow::WindowSetting(const ScreenView& view) const {
  return QStringLiteral("pantallas/%1/geometria").arg(Own(view.Screen().Name()));
}

void MainWindow::OnGone(ScreenView* view) {
  const Screen* found = Find(view);
  if (found == nullptr) return;
  const Screen screen = *found;
  if (screen.window) office_.settings.setValue(WindowSetting(*view), view->saveGeometry());
  screens_.erase(screens_.begin() + (found - screens_.data()));
  if (const auto document = host::DocumentoDe(view->Screen())) {
    // Once the screen is gone for good: until then its lease stands, and the document is being posted.
    QTimer::singleShot(0, half_.get(), [half = half_.get(), key = KeyOf(*document)] { half->LookAt(key); });
  }
  RemoveTab(*view);
  view->hide();
  if (screen.before) screen.before->activateWindow();
  view->setParent(this);  // deleted with the window if the program ends first
  view->Dismiss();
  for (auto* list : lists_) {
    if (list->isVisible()) list->Refresh();
  }
  if (stock_->isVisible()) stock_->Refresh();
  UpdateCounts();
  UpdateActions();
  if (closing_ && screens_.empty()) QTimer::singleShot(0, this, &QWidget::close);
}

void MainWindow::HoldFor(ScreenView* view) {
  Screen* screen = Find(view);
  if (screen == nullptr) return;
  const auto held = host::RetenidoPor(view->Screen());
  if (held == screen->held) return;
  screen->held = held;
  RefreshLists();
}

void MainWindow::RefreshLists() {
  for (auto* list : lists_) {
    if (list->isVisible()) list->Refresh();
  }
}

// A routine that fails on every closing would keep the program open for good: then the operator decides.
// A program that was told to end does not ask.
void MainWindow::CloseOrLeave(ScreenView& view) {
  forms::Form& form = view.Screen();
  auto* platform = dynamic_cast<QtPlatform*>(&form.GetPlatform());
  const int errors = platform ? platform->UnhandledErrors() : 0;
  form.Close();
  if (!platform || !form.Open() || platform->UnhandledErrors() == errors) return;
  const std::string question = "La pantalla \"" + form.Caption() +
                               "\" no se pudo cerrar: su rutina de cierre falló. Lo guardado sigue "
                               "guardado.\n\n¿Cerrarla de todos modos?";
  if (platform->EndRequested() ||
      platform->ShowBox(forms::BoxKind::Question, question, forms::kBoxYesNo | forms::kBoxSecondDefault)) {
    form.Discard();
  }
}

}  // namespace tarvik::desktop
