#include "desktop/screens/document_view.h"

#include <QApplication>
#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>

#include "desktop/platform/qt_platform.h"
#include "desktop/reading/half_posted.h"
#include "desktop/scanner/drawer.h"
#include "desktop/scanner/tape_panel.h"
#include "desktop/style/layouts.h"
#include "desktop/style/theme.h"
#include "host/anfitrion.h"
#include "wizard/modos.h"

namespace tarvik::desktop {

namespace {

void SetProperty(QWidget& widget, const char* name, const QVariant& value) {
  if (widget.property(name) == value) return;
  widget.setProperty(name, value);
  Restyle(widget);
}

constexpr int kLookEvery = 2000;       // milliseconds
constexpr int kRoomForTheTape = 1200;  // pixels of the window in front

QLabel* Soft(const QString& text = {}) {
  auto* label = new QLabel(text);
  label->setProperty("role", "soft");
  return label;
}

}  // namespace

DocumentView::DocumentView(Office& office, DocumentWizard& wizard, QWidget* parent)
    : ScreenView(office, wizard, parent), wizard_(wizard), look_(office.reader) {
  if (auto* platform = dynamic_cast<QtPlatform*>(&wizard.GetPlatform()))
    messages_seen_ = platform->MessagesShown();
  // Only goods-out has keys of its own to reach the lines; these two lead there and back on both screens.
  auto way = [this](Qt::Key key, forms::Control& target) {
    auto* shortcut = new QShortcut(QKeySequence(Qt::ALT | key), this);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, this, [this, &target] { Go(target); });
  };
  way(Qt::Key_Up, wizard.fg2);
  way(Qt::Key_Down, wizard.txtFields(campo::Articulo));
  wizard.MultiCombo1.Each([this](forms::SearchBox& box) { Covered(box.Name(), box.Index()); });
  auto* others = new QTimer(this);
  connect(others, &QTimer::timeout, this, &DocumentView::LookIfOthersWrote);
  others->start(kLookEvery);
}

QWidget* DocumentView::TitleRow(QWidget* at_right) {
  auto* row = new QWidget(this);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(measure::kGrid * 3 / 2);
  title_ = new QLabel(QString::fromStdString(Screen().Caption()));
  title_->setProperty("role", "title");
  chip_ = new QLabel(tr("Nuevo"));
  chip_->setProperty("role", "chip");
  chip_->setAccessibleName(tr("Estado del documento"));
  holder_ = Soft();
  layout->addWidget(title_);
  layout->addWidget(chip_);
  layout->addWidget(holder_);
  layout->addStretch();
  layout->addWidget(at_right);
  return row;
}

QWidget* DocumentView::Labelled(QWidget* caption, QWidget* field, int width) {
  QWidget* box = Under(caption, field, width);
  const Tie* tie = TieOf(field);
  if (!tie || !tie->HoldsText()) return box;
  // Its room is kept, so that nothing moves when it comes; it floats there, as long as it is.
  constexpr int kBehindTheField = 2;
  static_cast<QVBoxLayout*>(box->layout())->insertSpacing(kBehindTheField, measure::kReason);
  auto* reason = new QLabel(this);
  reason->setProperty("role", "reason");
  reason->setAttribute(Qt::WA_TransparentForMouseEvents);
  reason->hide();
  reasons_.insert(&tie->Control(), reason);
  return box;
}

QWidget* DocumentView::Labelled(const QString& caption, QWidget* field, int width) {
  auto* label = new QLabel(caption);
  label->setProperty("role", "caption");
  return Labelled(label, field, width);
}

QWidget* DocumentView::WithTape(QWidget* lines, QWidget* sheet, const QString& sheet_title) {
  tape_ = new TapePanel(office(), &wizard_, [this] { Go(wizard_.txtFields(campo::Articulo)); });
  QWidget* content = tape_;
  if (sheet != nullptr) {
    beside_ = new QTabWidget;
    beside_->setDocumentMode(true);
    beside_->setFocusPolicy(Qt::NoFocus);
    beside_->tabBar()->setFocusPolicy(Qt::NoFocus);
    beside_->tabBar()->setDrawBase(false);
    beside_->addTab(tape_, tr("Cinta"));
    beside_->addTab(sheet, sheet_title);
    content = beside_;
  }
  const QString name = QString::fromStdString(wizard_.Name());
  const QString key = QStringLiteral("pantallas/%1/cinta").arg(name);
  const bool reads = data::IsNonZero(office().host.Ambiente().Parametro("Lector"));
  if (sheet != nullptr && !reads) beside_->setCurrentWidget(sheet);
  // Where the program's window leaves little room the lines have it.
  const QWidget* in_front = QApplication::activeWindow();
  const bool room = in_front == nullptr || in_front->width() >= kRoomForTheTape;
  drawer_ = new Drawer(content, tape_->Title(),
                       office().settings.value(key, reads || sheet != nullptr).toBool() && room);
  connect(tape_, &TapePanel::TitleChanged, drawer_, &Drawer::SetTitle);
  auto* splitter = new QSplitter(Qt::Horizontal);
  const QString widths = QStringLiteral("pantallas/%1/junto").arg(name);
  connect(drawer_, &Drawer::Turned, this, [this, key, widths, splitter](bool open, bool by_hand) {
    const int wide = std::max(drawer_->minimumWidth(), open ? drawer_->sizeHint().width() : 0);
    splitter->setSizes({splitter->width() - wide, wide});
    if (!by_hand) return;
    office().settings.setValue(key, open);
    office().settings.setValue(widths, splitter->saveState());
  });
  splitter->addWidget(lines);
  splitter->addWidget(drawer_);
  splitter->setStretchFactor(0, 1);
  splitter->setStretchFactor(1, 0);
  splitter->setCollapsible(0, false);
  splitter->setCollapsible(1, false);
  splitter->restoreState(office().settings.value(widths).toByteArray());
  connect(splitter, &QSplitter::splitterMoved, this,
          [this, splitter, widths] { office().settings.setValue(widths, splitter->saveState()); });
  return splitter;
}

void DocumentView::ReadingsChanged() {
  if (tape_ == nullptr) return;
  // It came in by no key of this window's. Whoever works in the tape stays there.
  if (tape_->isAncestorOf(QApplication::focusWidget())) {
    AtRest();
  } else {
    Refresh();
  }
  tape_->Refresh();
}

void DocumentView::ReachTape() {
  if (tape_ == nullptr) return;
  if (tape_->isVisible() && tape_->isAncestorOf(QApplication::focusWidget())) {
    return Go(wizard_.txtFields(campo::Articulo));
  }
  if (!drawer_->Open()) {
    drawer_->SetOpen(true);
    emit drawer_->Turned(true, false);
  }
  if (beside_ != nullptr) beside_->setCurrentWidget(tape_);
  tape_->Reach();
}

QWidget* DocumentView::Foot(QWidget* left) {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(measure::kGrid * 2);
  layout->addWidget(left);
  layout->addStretch();
  auto* total = Text("txtFields", 11, tr("Total del documento"));
  total->setProperty("role", "total");
  total->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  auto* caption = Caption("Label8");
  caption->setAlignment(Qt::AlignRight);
  auto* amounts = new QVBoxLayout;
  amounts->setSpacing(0);
  amounts->addWidget(caption);
  amounts->addWidget(total);
  layout->addLayout(amounts);
  layout->addWidget(Button("Command2", QStringLiteral("outlined")));
  layout->addWidget(Button("Command5", QStringLiteral("primary")));
  return row;
}

QWidget* DocumentView::KeyLine() {
  line_ = new QStackedWidget;
  line_->setProperty("role", "keyline");
  line_->setFixedHeight(measure::kGrid * 5);

  keys_ = new KeyCaps;
  stored_ = Soft();
  stored_->setAccessibleName(tr("Renglones y estado de lo guardado"));
  line_->addWidget(FootLine(*keys_, stored_));

  auto* busy = new QWidget;
  auto* bar = new QHBoxLayout(busy);
  bar->setContentsMargins(measure::kGrid * 2, 0, measure::kGrid * 2, 0);
  progress_text_ = Text("RichTextBox1", {}, tr("Avance"));
  progress_ = new QProgressBar;
  progress_->setTextVisible(false);
  progress_->setAccessibleName(tr("Avance"));
  progress_left_ = Soft();
  bar->addWidget(new LineWord(busy));
  bar->addWidget(progress_text_);
  bar->addWidget(progress_, 1);
  bar->addWidget(progress_left_);
  line_->addWidget(busy);
  return line_;
}

Keys DocumentView::KeysNow() const {
  Keys keys;
  const forms::Control* active = Screen().ActiveControl();
  if (wizard_.SoloLectura()) {
    if (InPart()) keys += {QStringLiteral("F7"), tr("completar")};
    keys += {QStringLiteral("F1"), tr("ayuda")};
    return keys;
  }
  if (active == &wizard_.fg2) {
    keys = {
        {tr("Intro"), tr("corregir")}, {tr("Supr"), tr("quitar, en Artículo")}, {tr("Alt+↓"), tr("captura")}};
  } else if (active == &wizard_.txtEdit) {
    keys = {
        {tr("Intro"), tr("guardar")}, {tr("Esc"), tr("dejar como estaba")}, {tr("↑ ↓"), tr("otro renglón")}};
  } else {
    keys = {{tr("Intro"), tr("siguiente")},
            {QStringLiteral("F2"), tr("buscar")},
            {QStringLiteral("F8"), tr("presentación")}};
  }
  keys += {{QStringLiteral("F3"), tr("lector")}, {QStringLiteral("F9"), tr("guardar línea")}};
  if (active && active != &wizard_.fg2 && active != &wizard_.txtEdit)
    keys += {QStringLiteral("F5"), tr("finalizar")};
  keys += OwnKeys();
  keys += {QStringLiteral("F1"), tr("ayuda")};
  return keys;
}

void DocumentView::ShowKeys() {
  if (keys_) keys_->Show(KeysNow());
}

const host::DocumentoAMedias* DocumentView::Half() const {
  return state_ && state_->a_medias ? &*state_->a_medias : nullptr;
}

bool DocumentView::InPart() const { return Half() != nullptr && Half()->estado == estado::kAfectado; }

void DocumentView::LookAgain() {
  written_ = -1;
  LookIfWritten();
}

void DocumentView::LookIfWritten() {
  const auto document = host::DocumentoDe(wizard_);
  const std::int64_t written = office().host.Conexion().SoFar().changes;
  if (document == looked_at_ && written == written_) return;
  looked_at_ = document;
  written_ = written;
  if (!document) {
    look_.Forget();
    state_.reset();
    unknown_ = false;
    return;
  }
  using State = std::optional<host::EstadoDeDocumento>;
  look_.At<State>([document](data::EngineConnection& base) { return host::LeeEstado(base, *document); },
                  [this](std::optional<State> found) {
                    unknown_ = !found;
                    state_.reset();
                    if (found) state_ = std::move(*found);
                    ShowState();
                    ShowKeys();
                  });
}

// Another station may have let go of the document, or completed it.
void DocumentView::LookIfOthersWrote() {
  if (!Screen().Open() || Screen().GetPlatform().Acting()) return;
  try {
    if (std::exchange(others_wrote_, office().host.Conexion().Changes()) != others_wrote_) LookAgain();
  } catch (const std::exception&) {  // an unreachable base: the display stays
  }
}

bool DocumentView::Completes(QEvent& event) {
  if (event.type() != QEvent::KeyPress || !InPart() || !wizard_.SoloLectura()) return false;
  const auto& key = static_cast<QKeyEvent&>(event);
  if (key.key() != Qt::Key_F7 || key.isAutoRepeat() || key.modifiers() != Qt::NoModifier) return false;
  emit CompleteRequested();
  return true;
}

bool DocumentView::eventFilter(QObject* watched, QEvent* event) {
  return Completes(*event) || ScreenView::eventFilter(watched, event);
}

bool DocumentView::event(QEvent* event) { return Completes(*event) || ScreenView::event(event); }

void DocumentView::ShowState() {
  if (!chip_) return;
  if (wizard_.SoloLectura()) return ShowReadOnly();
  QString state = QStringLiteral("nuevo");
  QString text = tr("Nuevo");
  QString held;
  if (unknown_) {
    text = tr("Estado desconocido");
  } else if (state_) {
    const bool posted = state_->estado == estado::kAfectado;
    state = posted ? QStringLiteral("afectado") : QStringLiteral("pendiente");
    text = Half() != nullptr ? StateText(*Half()) : posted ? tr("Afectado") : tr("Pendiente");
    held = tr("%1 desde las %2")
               .arg(QString::fromStdString(state_->usuario), QString::fromStdString(state_->usuhora).left(5));
    if (!state_->ocupado) {
      // Freed by another station, or stored and released: somebody else may have it by now.
      state = QStringLiteral("pendiente");
      text = tr("Liberado");
      held = tr("Esta pantalla ya no tiene el documento: ciérrela y ábralo de nuevo antes de seguir");
    }
  }
  chip_->setText(text);
  SetProperty(*chip_, "state", state);
  holder_->setText(held);
  ShowStored();
}

void DocumentView::ShowReadOnly() {
  chip_->setText(Half() != nullptr ? StateText(*Half()) : tr("Sólo lectura"));
  SetProperty(*chip_, "state", InPart() ? QStringLiteral("medias") : QStringLiteral("lectura"));
  holder_->setText(InPart() ? tr("Faltan renglones por mover: F7 los completa")
                            : tr("El documento se consulta; no se puede modificar aquí"));
  ShowStored();
}

// Lines in the grid and stored lines are counted separately: a line that the base refused is still visible.
void DocumentView::ShowStored() {
  if (look_.UnderWay()) return;  // what was stored last is not known yet
  int seen = 0;
  while (seen < wizard_.fg2.Rows() - 1 && !wizard_.fg2.TextMatrix(seen + 1, 0).empty()) ++seen;
  const std::int64_t stored = state_ ? state_->renglones : 0;
  const QString lines = seen == 1 ? tr("1 renglón") : tr("%1 renglones").arg(seen);
  if (unknown_) {
    stored_->setText(tr("%1 · no se puede leer lo guardado").arg(lines));
  } else if (stored != seen) {
    stored_->setText(tr("%1 · guardados: %2").arg(lines).arg(stored));
  } else {
    stored_->setText(seen == 0 ? tr("sin renglones") : tr("%1 · guardado").arg(lines));
  }
}

void DocumentView::AtRest() {
  if (line_ && line_->currentIndex() == 1) line_->setCurrentIndex(0);
  LookIfWritten();
  ShowState();
  ShowKeys();
  auto* platform = dynamic_cast<QtPlatform*>(&Screen().GetPlatform());
  if (!platform || platform->MessagesShown() == messages_seen_) return;
  messages_seen_ = platform->MessagesShown();
  if (platform->MessageOf() != &Screen()) return;
  // A message that sent the operator to a field: the field keeps the mark until it is mended.
  if (forms::Control* active = Screen().ActiveControl()) {
    Refuse(*active,
           QString::fromStdString(platform->LastMessage()).section(QLatin1Char('\n'), 0, 0).trimmed());
  }
}

void DocumentView::Refuse(forms::Control& control, const QString& reason) {
  const Tie* tie = TieOf(&control);
  if (!tie || !tie->HoldsText()) return;
  QWidget& widget = tie->Widget();
  refused_.insert(&control);
  if (QLabel* label = reasons_.value(&control)) {
    label->setText(reason);
    PlaceReason(*label, widget);
    label->show();
  }
  widget.setToolTip(reason);
  widget.setAccessibleDescription(reason);
  SetProperty(widget, "refused", true);
}

// Under its field, whole: further to the left where it would not fit.
void DocumentView::PlaceReason(QLabel& label, const QWidget& field) {
  label.adjustSize();
  const QPoint under = field.mapTo(this, QPoint(0, field.height()));
  label.move(std::clamp(under.x(), 0, std::max(0, width() - label.width() - measure::kGrid)), under.y());
  label.raise();
}

void DocumentView::resizeEvent(QResizeEvent* event) {
  ScreenView::resizeEvent(event);
  for (const forms::Control* control : refused_) {
    QLabel* label = reasons_.value(control);
    if (label != nullptr) PlaceReason(*label, *WidgetOf(*control));
  }
}

void DocumentView::Mend(forms::Control& control) {
  if (!refused_.remove(&control)) return;
  QWidget* widget = WidgetOf(control);
  if (QLabel* label = reasons_.value(&control)) label->hide();
  widget->setToolTip({});
  widget->setAccessibleDescription({});
  SetProperty(*widget, "refused", false);
}

void DocumentView::ControlChanged(forms::Control& control, forms::Aspect aspect) {
  ScreenView::ControlChanged(control, aspect);
  if (aspect != forms::Aspect::Text) return;
  Mend(control);
  if (&control == &wizard_.RichTextBox1 && wizard_.Afectando()) ShowProgress(*wizard_.Afectando());
}

void DocumentView::ShowProgress(const DocumentWizard::Avance& posting) {
  if (!line_) return;
  const auto [done, all] = posting;
  if (line_->currentIndex() != 1) {
    line_->setCurrentIndex(1);
    posting_.start();
  }
  progress_->setMaximum(all);
  progress_->setValue(done);
  const qint64 left = done > 0 ? posting_.elapsed() * (all - done) / done / 1000 : 0;
  progress_left_->setText(tr("%1 de %2 · faltan %3 s").arg(done).arg(all).arg(left));
}

void DocumentView::FocusMoved(forms::Control* from, forms::Control* to) {
  ScreenView::FocusMoved(from, to);
  ShowKeys();
}

void DocumentView::CaptionChanged() {
  ScreenView::CaptionChanged();
  if (title_) title_->setText(QString::fromStdString(Screen().Caption()));
}

}  // namespace tarvik::desktop
