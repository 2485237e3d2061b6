// The menus and their keys. A list's own keys are the list's; here they are only named.
#include "desktop/frame/main_window.h"

#include <QActionGroup>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QStackedWidget>

#include "desktop/lists/document_list.h"
#include "desktop/lists/list_tools.h"
#include "desktop/lists/stock_view.h"
#include "desktop/screens/screen_view.h"

namespace tarvik::desktop {
namespace {

const QString kOwnWindows = QStringLiteral("pantallas/ventanas");
const QString kNarrowSetting = QStringLiteral("ventana/riel_angosto");

// The key as it stands on a Spanish keyboard.
QString KeyText(const QKeySequence& key) {
  QString text = key.toString(QKeySequence::PortableText);
  for (const auto& [foreign, own] : {std::pair{"Shift", "Mayús"},
                                     {"Return", "Intro"},
                                     {"Del", "Supr"},
                                     {"Ins", "Insert"},
                                     {"PgDown", "AvPág"},
                                     {"PgUp", "RePág"}}) {
    text.replace(QString::fromUtf8(foreign), QString::fromUtf8(own));
  }
  return text;
}

}  // namespace

QAction* MainWindow::Add(QMenu& menu, const QString& text, const QList<QKeySequence>& keys) {
  auto* action = menu.addAction(text);
  if (!keys.isEmpty()) {
    action->setText(text + QLatin1Char('\t') + KeyText(keys.first()));
    action->setShortcuts(keys);
  }
  addAction(action);
  return action;
}

// Also from a screen in a window of its own.
QAction* MainWindow::Everywhere(QAction* action) {
  action->setShortcutContext(Qt::ApplicationShortcut);
  return action;
}

void MainWindow::MakeMenus() {
  auto& document = *menuBar()->addMenu(QStringLiteral("&Documento"));
  MakeNewItems(document);
  MakeListItems(document);
  MakeLeavingItems(document);

  views_ = menuBar()->addMenu(QStringLiteral("&Ver"));
  MakePageItems(*views_);
  MakeScreenItems(*views_);
  MakeThemeItems(*views_);
  connect(Add(*views_, QStringLiteral("Ga&nchos"), {QKeySequence(QStringLiteral("Ctrl+Shift+G"))}),
          &QAction::triggered, this, &MainWindow::HooksRequested);

  tools_ = menuBar()->addMenu(QStringLiteral("&Herramientas"));
  tools_->menuAction()->setVisible(false);
  help_ = menuBar()->addMenu(QStringLiteral("A&yuda"));
  connect(Add(*help_, QStringLiteral("A&yuda"), {QKeySequence(QStringLiteral("F1"))}), &QAction::triggered,
          this, &MainWindow::HelpRequested);

  auto* popup = new QMenu(this);
  popup->addActions({new_, open_, read_, delete_, complete_, release_, ask_});
  popup->addSeparator();
  popup->addAction(refresh_);
  for (auto* list : lists_) list->SetMenu(popup);
  connect(&document, &QMenu::aboutToShow, this, &MainWindow::UpdateActions);
  connect(popup, &QMenu::aboutToShow, this, &MainWindow::UpdateActions);
}

void MainWindow::MakeNewItems(QMenu& document) {
  connect(Everywhere(Add(document, QStringLiteral("Nueva &entrada"),
                         {QKeySequence(QStringLiteral("Ctrl+Shift+E"))})),
          &QAction::triggered, this, [this] { New(true); });
  connect(Everywhere(
              Add(document, QStringLiteral("Nueva &salida"), {QKeySequence(QStringLiteral("Ctrl+Shift+S"))})),
          &QAction::triggered, this, [this] { New(false); });
  connect(Everywhere(Add(document, QStringLiteral("&Traspaso de estación"),
                         {QKeySequence(QStringLiteral("Ctrl+Shift+T"))})),
          &QAction::triggered, this, &MainWindow::Transfer);
  connect(Everywhere(Add(document, QStringLiteral("Abrir tras&paso por número…"),
                         {QKeySequence(QStringLiteral("Ctrl+Shift+A"))})),
          &QAction::triggered, this, &MainWindow::OpenTransfer);
  document.addSeparator();
}

void MainWindow::MakeListItems(QMenu& document) {
  // The keys of a list are the list's own, so that a screen may have the same ones; here they are
  // only named.
  const auto of_list = [&](const QString& text, auto&& act) {
    auto* action = document.addAction(text);
    connect(action, &QAction::triggered, this, [this, act] {
      if (auto* list = ListOnShow()) act(*list);
    });
    return action;
  };
  new_ =
      of_list(QStringLiteral("&Nuevo\tInsert"), [this](DocumentList& list) { New(IsGoodsIn(list.Kind())); });
  open_ = of_list(QStringLiteral("&Abrir\tIntro"),
                  [this](DocumentList& list) { OpenDocument(list, list.Selected(), false); });
  read_ = of_list(QStringLiteral("&Consultar\tCtrl+Intro"),
                  [this](DocumentList& list) { OpenDocument(list, list.Selected(), true); });
  delete_ = of_list(QStringLiteral("E&liminar\tSupr"),
                    [this](DocumentList& list) { DeleteDocument(list, list.Selected()); });
  complete_ = document.addAction(QStringLiteral("Co&mpletar\tF7"));
  connect(complete_, &QAction::triggered, this, &MainWindow::CompleteDocument);
  release_ = Add(document, QStringLiteral("Li&berar documento"), {QKeySequence(QStringLiteral("Ctrl+L"))});
  connect(release_, &QAction::triggered, this, [this] {
    if (auto* list = ListOnShow()) Release(*list, list->Selected());
  });
  ask_ = Add(document, QStringLiteral("Pe&dir documento"), {QKeySequence(QStringLiteral("Ctrl+Shift+D"))});
  connect(ask_, &QAction::triggered, this, [this] {
    if (auto* list = ListOnShow()) AskFor(*list, list->Selected());
  });
  document.addSeparator();
}

void MainWindow::MakeLeavingItems(QMenu& document) {
  close_screen_ = Add(document, QStringLiteral("Cerrar &pantalla"), {QKeySequence(QStringLiteral("Ctrl+W"))});
  connect(close_screen_, &QAction::triggered, this, [this] {
    if (auto* view = qobject_cast<ScreenView*>(stack_->currentWidget())) view->Screen().Close();
  });
  connect(Add(document, QStringLiteral("Sali&r"), {QKeySequence(QStringLiteral("Ctrl+Q"))}),
          &QAction::triggered, this, &QWidget::close);
}

void MainWindow::MakePageItems(QMenu& view) {
  for (int i = 0; i <= kStockPage; ++i) {
    const QString text =
        i == kStockPage ? QStringLiteral("Existencias") : TitleOf(kAllLists[static_cast<std::size_t>(i)]);
    connect(Add(view, text, {QKeySequence(QStringLiteral("Ctrl+%1").arg(i + 1))}), &QAction::triggered, this,
            [this, i] { ShowPageAt(i); });
  }
  view.addSeparator();
  find_ = Add(view, QStringLiteral("&Buscar en la lista"), {QKeySequence(QStringLiteral("Ctrl+F"))});
  connect(find_, &QAction::triggered, this, [this] {
    auto* field = ListOnShow() != nullptr ? &ListOnShow()->FilterField() : &stock_->FilterField();
    field->setFocus();
    field->selectAll();
  });
  refresh_ = view.addAction(QStringLiteral("&Actualizar\tF5"));
  connect(refresh_, &QAction::triggered, this, [this] {
    if (auto* list = ListOnShow()) {
      list->Refresh();
    } else {
      stock_->Refresh();
    }
    UpdateCounts();
  });
  // The lists' own keys, named here.
  const auto tool = [&](const QString& text, void (*act)(ListTools&)) {
    connect(view.addAction(text), &QAction::triggered, this, [this, act] {
      if (stack_->currentIndex() != 0) return;
      act(ListOnShow() != nullptr ? ListOnShow()->Tools() : stock_->Tools());
    });
  };
  tool(QStringLiteral("&Filtros guardados\tF3"), [](ListTools& tools) { tools.ShowFilters(); });
  tool(QStringLiteral("C&olumnas\tF4"), [](ListTools& tools) { tools.ShowColumns(); });
  tool(QStringLiteral("Co&piar renglones\tCtrl+C"), [](ListTools& tools) { tools.Copy(); });
  tool(QStringLiteral("E&xportar la lista…\tCtrl+E"), [](ListTools& tools) { tools.Export(); });
  view.addSeparator();
}

void MainWindow::MakeScreenItems(QMenu& view) {
  connect(Add(view, QStringLiteral("Pantalla &siguiente"),
              {QKeySequence(QStringLiteral("Ctrl+Tab")), QKeySequence(QStringLiteral("Ctrl+PgDown"))}),
          &QAction::triggered, this, [this] { NextTab(1); });
  connect(Add(view, QStringLiteral("Pantalla an&terior"),
              {QKeySequence(QStringLiteral("Ctrl+Shift+Tab")), QKeySequence(QStringLiteral("Ctrl+PgUp"))}),
          &QAction::triggered, this, [this] { NextTab(-1); });
  as_windows_ = Add(view, QStringLiteral("Pantallas en &ventanas propias"),
                    {QKeySequence(QStringLiteral("Ctrl+Alt+V"))});
  as_windows_->setCheckable(true);
  as_windows_->setChecked(office_.settings.value(kOwnWindows, false).toBool());
  connect(as_windows_, &QAction::toggled, this,
          [this](bool on) { office_.settings.setValue(kOwnWindows, on); });
  narrow_ = Add(view, QStringLiteral("Barra lateral an&gosta"), {QKeySequence(QStringLiteral("Ctrl+B"))});
  narrow_->setCheckable(true);
  narrow_->setChecked(office_.settings.value(kNarrowSetting, false).toBool());
  connect(narrow_, &QAction::toggled, this, [this](bool on) {
    office_.settings.setValue(kNarrowSetting, on);
    FitRail();
  });
  view.addSeparator();
}

void MainWindow::MakeThemeItems(QMenu& view) {
  auto& themes = *view.addMenu(QStringLiteral("Te&ma"));
  themes_ = new QActionGroup(this);
  int mode = 0;
  for (const auto* text : {"&Sistema", "&Claro", "&Oscuro"}) {
    auto* action =
        Add(themes, QString::fromUtf8(text), {QKeySequence(QStringLiteral("Ctrl+Alt+%1").arg(mode + 1))});
    action->setCheckable(true);
    themes_->addAction(action);
    connect(action, &QAction::triggered, this, [this, mode] { ChooseTheme(mode); });
    ++mode;
  }
}

QAction* MainWindow::AddTool(const QString& text, const QKeySequence& key, Glyph glyph) {
  if (tools_->isEmpty()) rail_->AddSection(QStringLiteral("Herramientas"));
  auto* action = Add(*tools_, text, key.isEmpty() ? QList<QKeySequence>{} : QList<QKeySequence>{key});
  tools_->menuAction()->setVisible(true);
  QString plain = text;
  RailItem* item = rail_->AddTool(plain.remove(QLatin1Char('&')), glyph);
  connect(item, &QPushButton::clicked, action, &QAction::trigger);
  return action;
}

QAction* MainWindow::AddView(const QString& text, const QKeySequence& key) {
  return Everywhere(Add(*views_, text, {key}));
}

}  // namespace tarvik::desktop
