// The frame: what stands where, which key does what, and how the host's list form is kept in step.
#include "desktop/frame/main_window.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDate>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QTableView>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

#include "desktop/frame/notices.h"
#include "desktop/frame/recovery.h"
#include "desktop/frame/requests.h"
#include "desktop/lists/document_list.h"
#include "desktop/lists/stock_view.h"
#include "desktop/platform/qt_platform.h"
#include "desktop/screens/document_view.h"
#include "desktop/screens/screen_view.h"
#include "desktop/style/theme.h"
#include "desktop/windows/revision_window.h"
#include "host/anfitrion.h"
#include "host/vistazo.h"
#include "service/door/entradas_salidas.h"

namespace tarvik::desktop {
namespace {

constexpr int kCountEvery = 20000;  // milliseconds between two looks at what others have left waiting
constexpr int kCloseWithin = 1000;  // a screen that is still open then has refused to close
constexpr int kAgain = 50;          // milliseconds
constexpr int kFrame = 40;          // pixels that the title of a window takes
constexpr std::array kKinds{ListKind::Entradas, ListKind::EntradasPendientes, ListKind::Salidas,
                            ListKind::SalidasPendientes};
constexpr int kStockPage = 4;

const QString kOwnWindows = QStringLiteral("pantallas/ventanas");
const QString kThemeSetting = QStringLiteral("tema");
const QString kNarrowSetting = QStringLiteral("ventana/riel_angosto");
const QString kGeometry = QStringLiteral("ventana/geometria");
const QString kLastPage = QStringLiteral("ventana/pagina");

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

QString Own(const std::string& text) { return QString::fromStdString(text); }

QString Name(ListKind kind) {
  const auto name = NameOf(kind);
  return QString::fromLatin1(name.data(), static_cast<int>(name.size()));
}

}  // namespace

MainWindow::MainWindow(Office& office, EntradasSalidas& door)
    : office_(office), door_(door), half_(std::make_unique<HalfPosted>(office.host)), count_(office.reader) {
  setWindowTitle(QStringLiteral("Movimientos de inventario"));
  auto* middle = new QWidget(this);
  auto* row = new QHBoxLayout(middle);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  rail_ = new Rail(office.theme, middle);
  row->addWidget(rail_);
  auto* column = new QVBoxLayout;
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  MakeRequests(*column);
  tabs_ = new QTabBar(middle);
  tabs_->setAccessibleName(QStringLiteral("Pantallas abiertas"));
  tabs_->setDocumentMode(true);
  tabs_->setDrawBase(false);
  tabs_->setExpanding(false);
  tabs_->setUsesScrollButtons(true);
  tabs_->setFocusPolicy(Qt::NoFocus);
  stack_ = new QStackedWidget(middle);
  column->addWidget(tabs_);
  column->addWidget(stack_, 1);
  row->addLayout(column, 1);
  setCentralWidget(middle);

  MakePages();
  MakeRecovery();
  MakeMenus();
  MakeRail();
  connect(AddTool(QStringLiteral("Re&visar la base"), QKeySequence(QStringLiteral("Ctrl+Shift+R")),
                  Glyph::Review),
          &QAction::triggered, this, [this] { Revision().Reach(); });
  MakeStatus();

  office.host.Parent().al_llamar = [this](std::string_view name, const std::vector<data::Value>& arguments) {
    OnParentCall(name, arguments);
  };
  connect(tabs_, &QTabBar::currentChanged, this, &MainWindow::ShowTab);

  const int mode = office.settings.value(kThemeSetting, static_cast<int>(office.theme.Chosen())).toInt();
  themes_->actions().value(std::clamp(mode, 0, 2))->setChecked(true);
  if (mode != static_cast<int>(office.theme.Chosen())) ChooseTheme(mode);
  // Within the screen, its frame too: the key line at the foot is to be seen.
  const QSize room = screen()->availableSize() - QSize(0, kFrame);
  const QSize wanted = QSize(160 * measure::kGrid, 96 * measure::kGrid).boundedTo(room);
  if (wanted.width() < measure::kNarrowWindow) rail_->SetNarrow(true);
  resize(wanted);
  restoreGeometry(office.settings.value(kGeometry).toByteArray());

  auto* timer = new QTimer(this);
  connect(timer, &QTimer::timeout, this, [this] {
    UpdateCounts();
    UpdateStatus();
  });
  timer->start(kCountEvery);
  if (!ShowPage(office.settings.value(kLastPage).toString().toStdString())) ShowPage("Entradas");
}

MainWindow::~MainWindow() {
  office_.host.Parent().al_llamar = nullptr;
  for (const Screen& screen : screens_) disconnect(screen.view, nullptr, this, nullptr);
  // The lists use the reader until they are gone.
  delete recovery_;
  delete revision_;
  delete takeCentralWidget();
}

void MainWindow::MakePages() {
  auto* desk = new QWidget(stack_);
  auto* column = new QVBoxLayout(desk);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  notices_ = new NoticeStrip(desk);
  column->addWidget(notices_);
  pages_ = new QStackedWidget(desk);
  column->addWidget(pages_, 1);
  for (std::size_t i = 0; i < kKinds.size(); ++i) {
    auto* list = new DocumentList(office_, office_.reader, kKinds[i], pages_);
    lists_[i] = list;
    pages_->addWidget(list);
    connect(list, &DocumentList::NewRequested, this, [this, list] { New(IsGoodsIn(list->Kind())); });
    connect(list, &DocumentList::OpenRequested, this,
            [this, list](int number) { OpenDocument(*list, number, false); });
    connect(list, &DocumentList::ReadRequested, this,
            [this, list](int number) { OpenDocument(*list, number, true); });
    list->Use(*half_);
    connect(list, &DocumentList::RefreshRequested, half_.get(), &HalfPosted::LookAtAll);
    connect(list, &DocumentList::CompleteRequested, this, &MainWindow::CompleteDocument);
    connect(list, &DocumentList::DeleteRequested, this,
            [this, list](int number) { DeleteDocument(*list, number); });
    connect(list, &DocumentList::SelectionChanged, this, [this, list] {
      if (list != ListOnShow()) return;
      // The rows themselves, which may be many, are handed over when the class is asked for something.
      office_.host.Parent().seleccionado = list->SelectedRow() + 1;
      UpdateActions();
    });
  }
  stock_ = new StockView(office_, office_.reader, pages_);
  pages_->addWidget(stock_);
  stack_->addWidget(desk);
  tabs_->addTab(QString());
  tabs_->setVisible(false);
}

void MainWindow::MakeRecovery() {
  recovery_ = new Recovery(office_, *half_, *notices_, this);
  connect(recovery_, &Recovery::Completed, this, [this](host::Tipo type, int number) {
    RefreshLists();
    if (stock_->isVisible()) stock_->Refresh();
    for (ScreenView* view : Open()) {
      auto* document = qobject_cast<DocumentView*>(view);
      if (document && host::DocumentoDe(view->Screen()) == host::Retenido{type, number}) {
        document->LookAgain();
      }
    }
  });
  connect(recovery_, &Recovery::ShowRequested, this, [this](host::Tipo type) {
    const ListKind kind = type == host::Tipo::Entrada ? ListKind::Entradas : ListKind::Salidas;
    ShowPage(NameOf(kind));
    List(kind).FilterField().setText(kHalfFilter);
    List(kind).Table().setFocus();
  });
  connect(half_.get(), &HalfPosted::Changed, this, &MainWindow::UpdateActions);
  connect(recovery_, &Recovery::ReviseRequested, this, [this] { Revision().Reach(); });
  half_->LookAtOpening();
}

RevisionWindow& MainWindow::Revision() {
  if (revision_ != nullptr) return *revision_;
  revision_ = new RevisionWindow(office_, this);
  connect(revision_, &RevisionWindow::OpenRequested, this, [this](const host::Retenido& document) {
    if (document.tipo == host::Tipo::Entrada) {
      door_.ConsultaEntrada(document.numero);
    } else {
      door_.ConsultaSalida(document.numero);
    }
    activateWindow();
  });
  connect(revision_, &RevisionWindow::Mended, this, [this] {
    half_->LookAtAll();
    RefreshLists();
    if (stock_->isVisible()) stock_->Refresh();
  });
  return *revision_;
}

// The one in the screen on show, or the chosen one of the list.
void MainWindow::CompleteDocument() {
  if (const auto* view = qobject_cast<ScreenView*>(stack_->currentWidget())) {
    if (const auto document = host::DocumentoDe(view->Screen())) recovery_->Complete(KeyOf(*document));
  } else if (const auto* list = ListOnShow(); list && list->SelectedHalf()) {
    recovery_->Complete({TypeOf(list->Kind()), list->Selected()});
  }
}

void MainWindow::MakeRail() {
  rail_->AddSection(QStringLiteral("Entradas"));
  const auto page = [this](const QString& text, Glyph glyph, int number) {
    RailItem* item = rail_->AddPage(text, glyph);
    rail_pages_[static_cast<std::size_t>(number)] = item;
    connect(item, &QPushButton::clicked, this, [this, number] { ShowPageAt(number); });
  };
  page(QStringLiteral("Entradas"), Glyph::In, 0);
  page(QStringLiteral("Pendientes"), Glyph::InPending, 1);
  rail_->AddSection(QStringLiteral("Salidas"));
  page(QStringLiteral("Salidas"), Glyph::Out, 2);
  page(QStringLiteral("Pendientes"), Glyph::OutPending, 3);
  rail_->AddSection(QStringLiteral("Almacén"));
  page(QStringLiteral("Existencias"), Glyph::Stock, kStockPage);
  RailItem* transfer = rail_->AddTool(QStringLiteral("Traspaso"), Glyph::Transfer);
  transfer->setAccessibleName(QStringLiteral("Traspaso de estación"));
  connect(transfer, &QPushButton::clicked, this, &MainWindow::Transfer);
}

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
  close_screen_ = Add(document, QStringLiteral("Cerrar &pantalla"), {QKeySequence(QStringLiteral("Ctrl+W"))});
  connect(close_screen_, &QAction::triggered, this, [this] {
    if (auto* view = qobject_cast<ScreenView*>(stack_->currentWidget())) view->Screen().Close();
  });
  connect(Add(document, QStringLiteral("Sali&r"), {QKeySequence(QStringLiteral("Ctrl+Q"))}),
          &QAction::triggered, this, &QWidget::close);

  auto& view = *menuBar()->addMenu(QStringLiteral("&Ver"));
  for (int i = 0; i <= kStockPage; ++i) {
    const QString text =
        i == kStockPage ? QStringLiteral("Existencias") : TitleOf(kKinds[static_cast<std::size_t>(i)]);
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
  view.addSeparator();
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
  connect(Add(view, QStringLiteral("Ga&nchos"), {QKeySequence(QStringLiteral("Ctrl+Shift+G"))}),
          &QAction::triggered, this, &MainWindow::HooksRequested);

  views_ = &view;
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

void MainWindow::MakeStatus() {
  statusBar()->setSizeGripEnabled(false);
  const auto add = [this](const QString& accessible) {
    auto* label = new QLabel(this);
    label->setAccessibleName(accessible);
    label->setProperty("role", "soft");
    label->setContentsMargins(measure::kGrid, 0, measure::kGrid, 0);
    return label;
  };
  status_base_ = add(QStringLiteral("Base"));
  status_user_ = add(QStringLiteral("Usuario"));
  status_station_ = add(QStringLiteral("Estación"));
  status_date_ = add(QStringLiteral("Fecha de trabajo"));
  statusBar()->addWidget(status_base_, 1);
  for (auto* label : {status_user_, status_station_, status_date_}) statusBar()->addPermanentWidget(label);
  UpdateStatus();
}

void MainWindow::UpdateStatus() {
  auto& context = office_.host.Ambiente();
  status_base_->setText(QStringLiteral("Base: ") + Own(office_.host.Base().Address()));
  status_user_->setText(QStringLiteral("Usuario: ") + Own(context.Usuario()));
  status_station_->setText(QStringLiteral("Estación: ") + Own(context.Estacion()));
  data::Date date;
  try {
    office_.host.Funciones().FechaDeTrabajo(context.ValorFechaA(), context.ValorFechaB(), date);
    status_date_->setText(QStringLiteral("Fecha de trabajo: ") +
                          QDate(date.year, date.month, date.day).toString(QStringLiteral("dd/MM/yyyy")));
  } catch (const std::exception&) {
    status_date_->setText(QStringLiteral("Fecha de trabajo: sin dato"));
  }
}

DocumentList& MainWindow::List(ListKind kind) const { return *lists_[static_cast<std::size_t>(kind)]; }

// The list behind the screens counts as the one on show: it is what a screen refills.
DocumentList* MainWindow::ListOnShow() const { return qobject_cast<DocumentList*>(pages_->currentWidget()); }

bool MainWindow::ShowPage(std::string_view name) {
  for (std::size_t i = 0; i < kKinds.size(); ++i) {
    if (NameOf(kKinds[i]) != name) continue;
    ShowPageAt(static_cast<int>(i));
    return true;
  }
  if (name != "Existencias") return false;
  ShowPageAt(kStockPage);
  return true;
}

void MainWindow::ShowPageAt(int page) {
  pages_->setCurrentIndex(page);
  rail_pages_[static_cast<std::size_t>(page)]->setChecked(true);
  const auto* list = ListOnShow();
  tabs_->setTabText(0, list != nullptr ? TitleOf(list->Kind()) : QStringLiteral("Existencias"));
  office_.settings.setValue(kLastPage, list != nullptr ? Name(list->Kind()) : QStringLiteral("Existencias"));
  tabs_->setCurrentIndex(0);
  ShowTab(0);
  SyncParent();
  UpdateCounts();
}

void MainWindow::ShowTab(int index) {
  if (index < 0) return;
  stack_->setCurrentIndex(index);
  if (index == 0) {
    pages_->currentWidget()->setFocus();
  } else if (auto* view = qobject_cast<ScreenView*>(stack_->currentWidget())) {
    const auto* control = view->Screen().ActiveControl();
    QWidget* widget = control != nullptr ? view->WidgetOf(*control) : nullptr;
    (widget != nullptr ? widget : view)->setFocus();
  }
  UpdateActions();
}

void MainWindow::NextTab(int step) {
  const int count = tabs_->count();
  tabs_->setCurrentIndex((tabs_->currentIndex() + step + count) % count);
}

// ---- screens ----

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
  // The bar tells of its new current tab while the stack already is as it will be.
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
  view->setParent(this);  // should the program end before it is deleted
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

// ---- what the operator asks for ----

void MainWindow::New(bool goods_in) {
  SyncParent();
  if (goods_in) {
    door_.NuevaEntrada();
  } else {
    door_.NuevaSalida();
  }
}

void MainWindow::Transfer() {
  Try(QStringLiteral("No se pudo abrir el traspaso de estación"),
      [this] { door_.movimientoEstacion(0, false); });
}

// Transfers are the deployer's: there is no list of them here, and their number is what an operator has.
void MainWindow::OpenTransfer() {
  bool chosen = false;
  const int number = QInputDialog::getInt(this, QStringLiteral("Traspaso de estación"),
                                          QStringLiteral("Número del traspaso"), 1, 1,
                                          std::numeric_limits<int>::max(), 1, &chosen);
  if (!chosen) return;
  Try(QStringLiteral("No se pudo abrir el traspaso de estación"),
      [this, number] { door_.movimientoEstacion(number, false); });
}

void MainWindow::OpenDocument(DocumentList& list, int number, bool read_only) {
  if (number == 0) return;
  if (!read_only) return OpenForChange({TypeOf(list.Kind()), number});
  SyncParent();
  if (IsGoodsIn(list.Kind())) return door_.ConsultaEntrada(number);
  door_.ConsultaSalida(number);
}

void MainWindow::OpenForChange(const host::Retenido& document) {
  SyncParent();
  Try(QStringLiteral("No se pudo abrir el documento"),
      [&] { office_.host.Abre(document.tipo, document.numero); });
}

void MainWindow::DeleteDocument(DocumentList& list, int number) {
  if (number == 0) return;
  SyncParent();
  auto& parent = office_.host.Parent();
  bool goes_on = false;
  Try(QStringLiteral("No se pudo eliminar el documento"), [&] {
    const std::string warning = office_.host.AvisoDeEliminacion(TypeOf(list.Kind()), number);
    goes_on =
        warning.empty() || office_.host.Plataforma().ShowBox(
                               forms::BoxKind::Question, warning + "\n\n¿Desea eliminarla de todos modos?",
                               forms::kBoxYesNo + forms::kBoxQuestion + forms::kBoxSecondDefault);
  });
  if (!goes_on) return;
  if (IsGoodsIn(list.Kind())) {
    door_.EliminaEntrada(number);
  } else {
    door_.EliminaSalida(number);
  }
  const auto& rows = parent.elementos;
  if (std::find(rows.begin(), rows.end(), data::Value(number)) == rows.end()) {
    list.Model().RemoveKey(number);
    UpdateCounts();
  } else {
    list.Refresh();  // it may be gone by another's hand, or held
  }
  SyncParent();
}

bool MainWindow::RaiseOwn(const host::Retenido& document) {
  for (const Screen& screen : screens_) {
    if (host::RetenidoPor(screen.view->Screen()) != document) continue;
    Raise(*screen.view);
    return true;
  }
  return false;
}

void MainWindow::Release(DocumentList& list, int number) {
  if (number == 0) return;
  const host::Retenido document{TypeOf(list.Kind()), number};
  if (RaiseOwn(document)) return;
  Try(QStringLiteral("No se pudo liberar el documento"), [&] {
    std::string who;
    for (const host::Tenencia& holder : host::LeeTenencias(office_.host.Conexion(), document)) {
      who += " La tiene " + holder.usuario +
             (holder.estacion.empty() ? "" : " en la estación " + holder.estacion) +
             (holder.viva ? "; su programa sigue abierto." : "; su programa ya no está abierto.");
    }
    const std::string text = "¿Desea liberar " + host::LaDe(document) + "?" + who +
                             " Quien la tenga en pantalla ya no podrá modificarla.";
    if (!office_.host.Plataforma().ShowBox(
            forms::BoxKind::Question, text,
            forms::kBoxYesNo + forms::kBoxQuestion + forms::kBoxSecondDefault)) {
      return;
    }
    const auto motive = ask_text(QStringLiteral("Liberar documento"), QStringLiteral("Motivo"));
    if (motive) office_.host.Libera(document.tipo, document.numero, motive->toStdString());
  });
  list.Refresh(number);
}

void MainWindow::AskFor(DocumentList& list, int number) {
  if (number == 0) return;
  const host::Retenido document{TypeOf(list.Kind()), number};
  if (RaiseOwn(document)) return;
  const auto message =
      ask_text(QStringLiteral("Pedir documento"), QStringLiteral("Mensaje para quien lo tiene"));
  if (!message) return;
  Try(QStringLiteral("No se pudo pedir el documento"), [&] {
    requests_->Ask(document, *message);
    statusBar()->showMessage(QStringLiteral("Se pidió %1").arg(Own(host::LaDe(document))));
  });
}

// What others ask of this program, above the screens; and what comes of asking.
void MainWindow::MakeRequests(QBoxLayout& column) {
  requests_ = new Requests(office_.host, this);
  column.addWidget(requests_);
  connect(requests_, &Requests::Granted, this,
          [this](const host::Retenido& document) { OpenForChange(document); });
  connect(requests_, &Requests::Refused, this, [this](const QString& text) {
    office_.host.Plataforma().ShowBox(forms::BoxKind::Message, text.toStdString(), forms::kBoxInformation);
  });
  connect(requests_, &Requests::Failed, this, [this](const QString& reason) {
    office_.host.Plataforma().ShowBox(forms::BoxKind::Error, reason.toStdString(), forms::kBoxStop);
  });
  ask_text = [this](const QString& title, const QString& label) -> std::optional<QString> {
    bool accepted = false;
    const QString text = QInputDialog::getText(this, title, label, QLineEdit::Normal, {}, &accepted);
    return accepted ? std::optional(text) : std::nullopt;
  };
}

void MainWindow::Try(const QString& what, const std::function<void()>& act) {
  try {
    act();
  } catch (const std::exception& error) {
    const QString text =
        QStringLiteral("%1: %2. No se cambió ningún documento. Corrija la causa e inténtelo de nuevo.")
            .arg(what, QString::fromUtf8(error.what()));
    office_.host.Plataforma().ShowBox(forms::BoxKind::Error, text.toStdString(), forms::kBoxStop);
  }
}

// ---- the host's list form ----

void MainWindow::SyncParent() {
  auto& parent = office_.host.Parent();
  const auto* list = ListOnShow();
  parent.elementos.clear();
  parent.seleccionado = 0;
  parent.catalogo_activo = list != nullptr ? std::string(NameOf(list->Kind())) : "";
  if (list == nullptr) return;
  for (const auto key : list->Model().Keys()) parent.elementos.emplace_back(key);
  parent.seleccionado = list->SelectedRow() + 1;
}

void MainWindow::OnParentCall(std::string_view name, const std::vector<data::Value>& arguments) {
  const int number = arguments.empty() ? 0 : static_cast<int>(data::ToNumber(arguments.front()));
  for (const ListKind kind : kKinds) {
    if (name != "Llena" + std::string(NameOf(kind))) continue;
    List(kind).Refresh(number);
    UpdateCounts();
    return;
  }
  if (name == "SetFocus") {
    tabs_->setCurrentIndex(0);
    if (isVisible()) activateWindow();
    return;
  }
  UpdateActions();
}

// ---- state of the frame ----

void MainWindow::UpdateCounts() {
  count_.At<host::Pendientes>(host::CuentaPendientes, [this](const std::optional<host::Pendientes>& found) {
    if (!found) return;  // without the counts the lists work all the same
    rail_pages_[1]->SetCount(static_cast<int>(found->entradas));
    rail_pages_[3]->SetCount(static_cast<int>(found->salidas));
  });
}

void MainWindow::UpdateActions() {
  if (narrow_ == nullptr) return;
  const bool on_pages = stack_->currentIndex() == 0;
  const auto* list = ListOnShow();
  const bool on_list = on_pages && list != nullptr;
  const bool chosen = on_list && list->Selected() != 0;
  new_->setEnabled(on_list);
  for (auto* action : {open_, read_, delete_}) action->setEnabled(chosen);
  for (auto* action : {release_, ask_}) action->setEnabled(chosen && list->SelectedHeld());
  const auto* screen = on_pages ? nullptr : qobject_cast<ScreenView*>(stack_->currentWidget());
  const auto document = screen ? host::DocumentoDe(screen->Screen()) : std::nullopt;
  const auto* half = document ? half_->Of(KeyOf(*document)) : nullptr;
  complete_->setEnabled((chosen && list->SelectedHalf()) || (half != nullptr && half->estado == "CO"));
  find_->setEnabled(on_pages);
  refresh_->setEnabled(on_pages);
  close_screen_->setEnabled(!on_pages);
}

void MainWindow::ChooseTheme(int mode) {
  office_.settings.setValue(kThemeSetting, mode);
  office_.theme.Set(static_cast<Theme::Mode>(std::clamp(mode, 0, 2)));
  office_.theme.ApplyTo(*qobject_cast<QApplication*>(QCoreApplication::instance()));
  update();
  for (auto* child : findChildren<QWidget*>()) child->update();
  emit ThemeChanged();
}

void MainWindow::FitRail() { rail_->SetNarrow(narrow_->isChecked() || width() < measure::kNarrowWindow); }

void MainWindow::resizeEvent(QResizeEvent* event) {
  FitRail();
  QMainWindow::resizeEvent(event);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  const auto* platform = dynamic_cast<const QtPlatform*>(&office_.host.Plataforma());
  if (platform && platform->LettingThrough()) {
    // A screen is in the middle of a step: closing waits until it is over.
    QTimer::singleShot(kAgain, this, &QWidget::close);
    return event->ignore();
  }
  for (auto* list : lists_) list->SaveColumns();
  stock_->SaveColumns();
  office_.settings.setValue(kGeometry, saveGeometry());
  std::vector<ScreenView*> open = Open();
  for (ScreenView* view : open) {
    if (Find(view) != nullptr) CloseOrLeave(*view);
  }
  if (screens_.empty()) return event->accept();
  // Some screens go a moment after they are asked; one that asks the operator takes longer.
  event->ignore();
  closing_ = true;
  auto* wait = new QTimer(this);
  connect(wait, &QTimer::timeout, this, [this, wait] {
    if (QApplication::activeModalWidget() != nullptr) return;
    closing_ = false;
    wait->deleteLater();
  });
  wait->start(kCloseWithin);
}

// A routine that fails on every closing would keep the program open for good: then the operator decides.
// A program that has been told to end asks nobody.
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

void MainWindow::changeEvent(QEvent* event) {
  // Coming back from another program: others may have worked on the documents.
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && narrow_ != nullptr) UpdateCounts();
  QMainWindow::changeEvent(event);
}

}  // namespace tarvik::desktop
