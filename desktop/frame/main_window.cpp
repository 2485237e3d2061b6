// The frame: what stands where, and what it shows of itself. The menus, the open screens and what is done to
// documents stand in files of their own beside this one.
#include "desktop/frame/main_window.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDate>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QSettings>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

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
#include "wizard/modos.h"

namespace tarvik::desktop {
namespace {

constexpr int kCountEvery = 20000;  // milliseconds between two counts of the pending documents
constexpr int kCloseWithin = 1000;  // a screen that is still open then has refused to close
constexpr int kAgain = 50;          // milliseconds
constexpr int kFrame = 40;          // pixels that the title of a window takes

const QString kThemeSetting = QStringLiteral("tema");
const QString kGeometry = QStringLiteral("ventana/geometria");
const QString kLastPage = QStringLiteral("ventana/pagina");

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
  // The window must fit the monitor together with its frame, so that the key line at the foot is visible.
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
  for (std::size_t i = 0; i < kAllLists.size(); ++i) {
    auto* list = new DocumentList(office_, office_.reader, kAllLists[i], pages_);
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
  connect(stock_, &StockView::DocumentRequested, this, &MainWindow::OpenForChange);
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
  for (std::size_t i = 0; i < kAllLists.size(); ++i) {
    if (NameOf(kAllLists[i]) != name) continue;
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
  complete_->setEnabled((chosen && list->SelectedHalf()) ||
                        (half != nullptr && half->estado == estado::kAfectado));
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
  // Some screens close a moment after the request; one that asks the operator takes longer.
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

void MainWindow::changeEvent(QEvent* event) {
  // Coming back from another program: others may have worked on the documents.
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && narrow_ != nullptr) UpdateCounts();
  QMainWindow::changeEvent(event);
}

}  // namespace tarvik::desktop
