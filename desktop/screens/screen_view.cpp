#include "desktop/screens/screen_view.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QTimer>
#include <utility>

#include "desktop/platform/qt_platform.h"
#include "desktop/screens/choice_ties.h"
#include "desktop/screens/form_keys.h"
#include "desktop/screens/other_ties.h"
#include "desktop/screens/text_ties.h"
#include "forms/flex_grid.h"

namespace tarvik::desktop {

namespace {

QString ToQt(const std::string& text) { return QString::fromStdString(text); }

constexpr int kAgain = 50;  // milliseconds

// A close is an operator's click like any other: it waits while a step lets events through.
bool InTheMiddleOfAStep(const forms::Form& form) {
  const auto* platform = dynamic_cast<const QtPlatform*>(&form.GetPlatform());
  return platform && platform->LettingThrough();
}

}  // namespace

ScreenView::ScreenView(Office& office, forms::Form& form, QWidget* parent)
    : QWidget(parent), office_(office), form_(form.shared_from_this()) {
  setFocusPolicy(Qt::StrongFocus);
  setObjectName(ToQt(form.Name()));
  setAccessibleName(ToQt(form.Caption()));
  form.Listen(*this);
}

ScreenView::~ScreenView() { form_->StopListening(*this); }

QStringList ScreenView::Bound() const {
  QStringList names;
  for (const auto& [control, tie] : ties_) names.append(ToQt(control->FullName()));
  names.sort();
  return names;
}

Tie* ScreenView::TieOf(const forms::Control* control) const {
  const auto found = ties_.find(control);
  return found == ties_.end() ? nullptr : found->second.get();
}

Tie* ScreenView::TieOf(const QWidget* widget) const { return by_widget_.value(widget); }

QWidget* ScreenView::WidgetOf(const forms::Control& control) const {
  const Tie* tie = TieOf(&control);
  return tie ? &tie->Widget() : nullptr;
}

void ScreenView::PaintNow() {
  CatchUp();
  // Only layout requests are delivered: a text that has just changed may need more room.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  repaint();
}

// ---- binding ----

forms::Control& ScreenView::Required(std::string_view name, std::optional<int> index) const {
  forms::Control* found = form_->Find(name, index);
  if (!found) qFatal("%s: no control %s", form_->Name().c_str(), std::string(name).c_str());
  return *found;
}

// The only place that casts a control to its kind.
template <class Kind, class... More>
Kind& ScreenView::Tied(std::string_view name, std::optional<int> index, const QString& accessible,
                       More&&... more) {
  auto& control = dynamic_cast<typename Kind::ControlKind&>(Required(name, index));
  Hand& hand = *this;
  auto tie = std::make_unique<Kind>(hand, control, std::forward<More>(more)...);
  Kind& made = *tie;
  Keep(std::move(tie), accessible);
  return made;
}

void ScreenView::Keep(std::unique_ptr<Tie> tie, const QString& accessible) {
  QWidget& widget = tie->Widget();
  if (!accessible.isEmpty()) widget.setAccessibleName(accessible);
  widget.installEventFilter(this);
  by_widget_.insert(&widget, tie.get());
  tie->Show();
  ties_[&tie->Control()] = std::move(tie);
}

QLineEdit* ScreenView::Field(int index, const QString& accessible) {
  return &Tied<LineTie>("txtFields", index, accessible).Widget();
}

QLineEdit* ScreenView::Field(std::string_view name, const QString& accessible) {
  return &Tied<LineTie>(name, {}, accessible).Widget();
}

QTextEdit* ScreenView::Notes(std::string_view name, const QString& accessible) {
  return &Tied<NotesTie>(name, {}, accessible).Widget();
}

QLabel* ScreenView::Text(std::string_view name, std::optional<int> index, const QString& accessible) {
  return &Tied<ShownTextTie>(name, index, accessible).Widget();
}

QCheckBox* ScreenView::Check(std::string_view name, const QString& accessible, QChar letter) {
  QCheckBox& box = Tied<CheckTie>(name, {}, accessible, letter).Widget();
  if (accessible.isEmpty()) {
    box.setAccessibleName(box.text().remove(QLatin1Char('&')));
  } else {
    box.setText(accessible);
  }
  return &box;
}

QPushButton* ScreenView::Button(std::string_view name, const QString& role, const QString& accessible) {
  QPushButton& button = Tied<ButtonTie>(name, {}, accessible, role).Widget();
  if (accessible.isEmpty()) button.setAccessibleName(button.text().remove(QLatin1Char('&')));
  return &button;
}

QDateEdit* ScreenView::Date(std::string_view name, const QString& accessible) {
  return &Tied<DateTie>(name, {}, accessible).Widget();
}

QComboBox* ScreenView::Combo(std::string_view name, const QString& accessible) {
  return &Tied<ComboTie>(name, {}, accessible).Widget();
}

QLabel* ScreenView::Caption(std::string_view name, std::optional<int> index) {
  QLabel& label = Tied<CaptionTie>(name, index, {}).Widget();
  label.setAccessibleName(label.text());
  return &label;
}

GridView* ScreenView::Grid(std::string_view name, const QString& accessible) {
  return &Tied<GridTie>(name, {}, accessible, office_).Widget();
}

void ScreenView::CellEditor(std::string_view name, GridView& grid) {
  Tied<CellTie>(name, {}, tr("Celda en edición"), grid);
}

void ScreenView::Page(std::string_view name, QWidget& page, const QString& accessible) {
  Tied<PageTie>(name, {}, accessible, page);
}

void ScreenView::Go(forms::Control& control) {
  Act([&](forms::Form& form) { form.Enter(control); });
}

void ScreenView::Covered(std::string_view name, std::optional<int> index) {
  ties_[&Required(name, index)] = nullptr;
}

// ---- what the model says ----

void ScreenView::ControlChanged(forms::Control& control, forms::Aspect aspect) {
  Tie* tie = TieOf(&control);
  if (!tie) return;
  // A text without the focus may change a thousand times in one act, such as a total that is summed up line
  // by line: only its final value is shown.
  const bool waits = tie->HoldsText() && &control != form_->ActiveControl() &&
                     (aspect == forms::Aspect::Text || aspect == forms::Aspect::Selection);
  if (!waits) return tie->Changed(aspect);
  waiting_.insert(&control);
  if (std::exchange(catching_up_, true)) return;
  QTimer::singleShot(0, this, &ScreenView::CatchUp);
}

void ScreenView::CatchUp() {
  catching_up_ = false;
  const auto waiting = std::exchange(waiting_, {});
  for (const forms::Control* control : waiting) TieOf(control)->Show();
}

void ScreenView::CellChanged(forms::FlexGrid& grid, int row, int col) {
  if (Tie* tie = TieOf(&grid)) tie->CellChanged(row, col);
}

void ScreenView::RowsChanged(forms::FlexGrid& grid, int from) {
  if (Tie* tie = TieOf(&grid)) tie->RowsChanged(from);
}

void ScreenView::CurrentCellMoved(forms::FlexGrid& grid) {
  if (Tie* tie = TieOf(&grid)) tie->CurrentCellMoved();
}

void ScreenView::FocusMoved(forms::Control* from, forms::Control* to) {
  if (Tie* left = TieOf(from)) left->InHand(false);
  Tie* reached = TieOf(to);
  if (reached) reached->InHand(true);
  MoveFocus(reached ? reached->Widget() : *this);
}

void ScreenView::MoveFocus(QWidget& widget) {
  moving_focus_ = true;
  widget.setFocus(Qt::OtherFocusReason);
  moving_focus_ = false;
}

void ScreenView::CaptionChanged() { emit CaptionChanged(ToQt(form_->Caption())); }

void ScreenView::Shown(bool /*modal*/) {
  for (const auto& [control, tie] : ties_) {
    if (tie) tie->ScreenShown();
  }
}

void ScreenView::Hidden() { hide(); }

void ScreenView::Unloaded() { emit Gone(); }

// ---- what the operator does ----

void ScreenView::Act(const std::function<void(forms::Form&)>& act) {
  const Held held(*this);
  const auto form = form_;
  act(*form);
  Rest();
}

bool ScreenView::Press(const QKeyEvent& event) {
  const auto keys = FormKeys(event);
  if (keys.empty()) return false;
  const bool asks_for_help = event.key() == Qt::Key_F1;
  Act([&](forms::Form& form) {
    for (const forms::Key& key : keys) form.Press(key);
    if (asks_for_help) emit HelpRequested();
  });
  return true;
}

bool ScreenView::eventFilter(QObject* watched, QEvent* event) {
  Tie* tie = by_widget_.value(watched);
  if (!tie) return QWidget::eventFilter(watched, event);
  const Held held(*this);
  return tie->Takes(*event);
}

// Tab order is the form's. The toolkit calls this also when a page is hidden, as when another screen comes to
// the front, and then no key was pressed.
bool ScreenView::focusNextPrevChild(bool /*next*/) { return false; }

void ScreenView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Exposed();
}

void ScreenView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Exposed();
}

// The form is told that the window was shown or resized, once the toolkit has finished.
void ScreenView::Exposed() {
  if (painting_) return;
  painting_ = true;
  QTimer::singleShot(0, this, [this] {
    painting_ = false;
    if (!form_->Open() || !form_->Visible()) return;
    Act([this](forms::Form& form) {
      form.Resize(width() * kTwipsAPixel, height() * kTwipsAPixel);
      form.Paint();
    });
  });
}

bool ScreenView::event(QEvent* event) {
  // No control has the focus: the form sees the key alone.
  if (event->type() == QEvent::KeyPress && Press(*static_cast<QKeyEvent*>(event))) return true;
  return QWidget::event(event);
}

void ScreenView::closeEvent(QCloseEvent* event) {
  // The form decides; the window is deleted when the form is unloaded.
  if (!form_->Open()) return event->accept();
  event->ignore();
  if (InTheMiddleOfAStep(*form_)) {
    QTimer::singleShot(kAgain, this, &QWidget::close);
  } else {
    form_->Close();
  }
}

void ScreenView::Dismiss() {
  dismissed_ = true;
  if (held_ == 0) deleteLater();
}

void ScreenView::Rest() {
  CatchUp();
  if (resting_) return;
  resting_ = true;
  QTimer::singleShot(0, this, [this] {
    resting_ = false;
    if (!form_->Open()) return;
    // The widget of the control that has the focus in the model takes it.
    if (forms::Control* active = form_->ActiveControl()) {
      QWidget* widget = WidgetOf(*active);
      if (widget && isVisible() && isActiveWindow() && !widget->hasFocus() &&
          !QApplication::activePopupWidget()) {
        MoveFocus(*widget);
      }
    }
    AtRest();
  });
}

}  // namespace tarvik::desktop
