#include "desktop/screens/screen_view.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QDateEdit>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTextEdit>
#include <QTimer>
#include <algorithm>

#include "desktop/platform/qt_platform.h"
#include "desktop/screens/grid_view.h"
#include "desktop/screens/text_places.h"
#include "desktop/style/theme.h"
#include "forms/flex_grid.h"
#include "forms/keys.h"

namespace tarvik::desktop {

namespace {

QString FullName(const forms::Control& control) { return QString::fromStdString(control.FullName()); }
QString ToQt(const std::string& text) { return QString::fromStdString(text); }

constexpr const char* kLetter = "letter";
constexpr int kAgain = 50;  // milliseconds

// A close is an operator's click like any other: it waits while a step lets events through.
bool InTheMiddleOfAStep(const forms::Form& form) {
  const auto* platform = dynamic_cast<const QtPlatform*>(&form.GetPlatform());
  return platform && platform->LettingThrough();
}

// A label's caption: its field is reached by the keyboard's way, so the mnemonic's mark is left out.
QString Plain(const std::string& caption) { return ToQt(caption).remove(QLatin1Char('&')); }

// A picker's "no date": the calendar has none, so the earliest day stands for it.
const QDate kNoDate(1800, 1, 1);

QDate ToQt(const std::optional<data::Date>& date) {
  return date ? QDate(date->year, date->month, date->day) : kNoDate;
}

std::optional<int> CodeOf(int key) {
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return forms::kKeyEnter;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      return forms::kKeyTab;
    case Qt::Key_Escape:
      return forms::kKeyEsc;
    case Qt::Key_Backspace:
      return forms::kKeyBack;
    case Qt::Key_Delete:
      return forms::kKeyDelete;
    case Qt::Key_Left:
      return forms::kKeyLeft;
    case Qt::Key_Right:
      return forms::kKeyRight;
    case Qt::Key_Up:
      return forms::kKeyUp;
    case Qt::Key_Down:
      return forms::kKeyDown;
    case Qt::Key_Home:
      return forms::kKeyHome;
    case Qt::Key_End:
      return forms::kKeyEnd;
    case Qt::Key_PageUp:
      return forms::kKeyPageUp;
    case Qt::Key_PageDown:
      return forms::kKeyPageDown;
    default:
      break;
  }
  if (key >= Qt::Key_F1 && key <= Qt::Key_F12) return forms::kKeyF1 + (key - Qt::Key_F1);
  return std::nullopt;
}

// Whether a key's text is characters, of whatever script, and no control code.
bool Types(const QString& text) {
  constexpr char32_t kRubout = 0x7F;
  const QList<uint> characters = text.toUcs4();
  return !characters.isEmpty() && std::all_of(characters.begin(), characters.end(),
                                              [](uint sign) { return sign >= U' ' && sign != kRubout; });
}

// Keys by which a text widget moves its caret or selects, and which it does by itself.
bool MovesCaret(const QKeyEvent& key) {
  for (const auto known :
       {QKeySequence::MoveToNextChar, QKeySequence::MoveToPreviousChar, QKeySequence::MoveToNextWord,
        QKeySequence::MoveToPreviousWord, QKeySequence::MoveToStartOfLine, QKeySequence::MoveToEndOfLine,
        QKeySequence::MoveToStartOfDocument, QKeySequence::MoveToEndOfDocument, QKeySequence::SelectNextChar,
        QKeySequence::SelectPreviousChar, QKeySequence::SelectNextWord, QKeySequence::SelectPreviousWord,
        QKeySequence::SelectStartOfLine, QKeySequence::SelectEndOfLine, QKeySequence::SelectStartOfDocument,
        QKeySequence::SelectEndOfDocument, QKeySequence::Copy}) {
    if (key.matches(known)) return true;
  }
  return false;
}

bool HasText(const forms::Control& control) {
  return dynamic_cast<const forms::TextBox*>(&control) != nullptr;
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
  for (auto bound = widgets_.begin(); bound != widgets_.end(); ++bound) names.append(FullName(*bound.key()));
  names.sort();
  return names;
}

QWidget* ScreenView::WidgetOf(const forms::Control& control) const { return widgets_.value(&control); }

void ScreenView::PaintNow() {
  CatchUp();
  // The layout alone: a text that has just come needs its room.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  repaint();
}

// ---- binding ----

forms::Control& ScreenView::Required(std::string_view name, std::optional<int> index) const {
  forms::Control* found = form_->Find(name, index);
  if (!found) qFatal("%s: no control %s", form_->Name().c_str(), std::string(name).c_str());
  return *found;
}

void ScreenView::Bind(forms::Control& control, QWidget& widget, const QString& accessible) {
  widgets_.insert(&control, &widget);
  controls_.insert(&widget, &control);
  widget.setObjectName(FullName(control));
  if (!accessible.isEmpty()) widget.setAccessibleName(accessible);
  widget.installEventFilter(this);
  Update(control);
}

QLineEdit* ScreenView::Field(int index, const QString& accessible) {
  auto* line = new QLineEdit(this);
  auto& control = dynamic_cast<forms::TextBox&>(Required("txtFields", index));
  line->setFocusPolicy(Qt::TabFocus);
  line->setContextMenuPolicy(Qt::NoContextMenu);
  line->setAcceptDrops(false);
  line->setFixedHeight(measure::kField);
  if (control.RightAligned()) line->setAlignment(Qt::AlignRight);
  Bind(control, *line, accessible);
  Follow(*line, control);
  return line;
}

QLineEdit* ScreenView::Field(std::string_view name, const QString& accessible) {
  auto* line = new QLineEdit(this);
  line->setFocusPolicy(Qt::TabFocus);
  line->setContextMenuPolicy(Qt::NoContextMenu);
  line->setAcceptDrops(false);
  line->setFixedHeight(measure::kField);
  auto& control = dynamic_cast<forms::TextBox&>(Required(name));
  Bind(control, *line, accessible);
  Follow(*line, control);
  return line;
}

QTextEdit* ScreenView::Notes(std::string_view name, const QString& accessible) {
  auto* notes = new QTextEdit(this);
  notes->setAcceptRichText(false);
  notes->setFocusPolicy(Qt::TabFocus);
  notes->setContextMenuPolicy(Qt::NoContextMenu);
  notes->setAcceptDrops(false);
  notes->setTabChangesFocus(true);
  auto& control = dynamic_cast<forms::TextBox&>(Required(name));
  Bind(control, *notes, accessible);
  auto moved = [this, notes, &control] {
    const QTextCursor cursor = notes->textCursor();
    SelectionMoved(control, cursor.selectionStart(), cursor.selectionEnd());
  };
  connect(notes, &QTextEdit::cursorPositionChanged, this, moved);
  connect(notes, &QTextEdit::selectionChanged, this, moved);
  return notes;
}

QLabel* ScreenView::Text(std::string_view name, std::optional<int> index, const QString& accessible) {
  auto* label = new QLabel(this);
  label->setTextFormat(Qt::PlainText);
  Bind(Required(name, index), *label, accessible);
  return label;
}

QCheckBox* ScreenView::Check(std::string_view name, const QString& accessible, QChar letter) {
  auto& control = dynamic_cast<forms::CheckBox&>(Required(name));
  auto* box = new QCheckBox(this);
  box->setFocusPolicy(Qt::TabFocus);
  if (!letter.isNull()) box->setProperty(kLetter, letter);
  Bind(control, *box, accessible.isEmpty() ? ToQt(control.Caption()) : accessible);
  if (!accessible.isEmpty()) box->setText(accessible);
  // By its letter: the mouse goes to the form before the box sees it.
  connect(box, &QCheckBox::clicked, this, [this, &control, box] {
    const Hand hand(*this);
    form_->Click(control);
    box->setChecked(control.Value() == 1);
    Rest();
  });
  return box;
}

QPushButton* ScreenView::Button(std::string_view name, const QString& role, const QString& accessible) {
  auto& control = dynamic_cast<forms::Button&>(Required(name));
  auto* button = new QPushButton(this);
  button->setProperty("role", role);
  button->setFocusPolicy(Qt::TabFocus);
  QString spoken = accessible.isEmpty() ? ToQt(control.Caption()).remove(QLatin1Char('&')) : accessible;
  Bind(control, *button, spoken);
  connect(button, &QPushButton::clicked, this, [this, &control] {
    const Hand hand(*this);
    form_->Click(control);
    Rest();
  });
  return button;
}

QDateEdit* ScreenView::Date(std::string_view name, const QString& accessible) {
  auto& control = dynamic_cast<forms::DatePicker&>(Required(name));
  auto* date = new QDateEdit(this);
  date->setCalendarPopup(true);
  date->setDisplayFormat(QStringLiteral("dd/MM/yyyy"));
  date->setMinimumDate(kNoDate);
  date->setSpecialValueText(QStringLiteral("sin fecha"));
  date->setFocusPolicy(Qt::StrongFocus);
  date->setFixedHeight(measure::kField);
  Bind(control, *date, accessible);
  connect(date, &QDateEdit::userDateChanged, this, [this, &control](QDate day) {
    const Hand hand(*this);
    form_->Act([&] {
      if (day == kNoDate) {
        control.Value(std::nullopt);
      } else {
        control.Value(data::Date{day.year(), day.month(), day.day()});
      }
    });
    Rest();
  });
  return date;
}

QComboBox* ScreenView::Combo(std::string_view name, const QString& accessible) {
  auto& control = dynamic_cast<forms::ComboBox&>(Required(name));
  auto* combo = new QComboBox(this);
  combo->setFocusPolicy(Qt::StrongFocus);
  combo->setFixedHeight(measure::kField);
  Bind(control, *combo, accessible);
  connect(combo, &QComboBox::activated, this, [this, &control](int item) {
    const Hand hand(*this);
    form_->Choose(control, item);
    Rest();
  });
  return combo;
}

QLabel* ScreenView::Caption(std::string_view name, std::optional<int> index) {
  auto& control = dynamic_cast<forms::Label&>(Required(name, index));
  auto* label = new QLabel(this);
  label->setProperty("role", "caption");
  label->setTextFormat(Qt::PlainText);
  Bind(control, *label, Plain(control.Caption()));
  return label;
}

GridView* ScreenView::Grid(std::string_view name, const QString& accessible) {
  auto& control = dynamic_cast<forms::FlexGrid&>(Required(name));
  auto* grid = new GridView(office_, control, this);
  Bind(control, *grid, accessible);
  connect(grid, &GridView::Clicked, this, [this, &control](int row, int col) {
    const Hand hand(*this);
    form_->ClickCell(control, row, col);
    Rest();
  });
  connect(grid, &GridView::DoubleClicked, this, [this, &control](int row, int col) {
    const Hand hand(*this);
    form_->DoubleClickCell(control, row, col);
    Rest();
  });
  return grid;
}

void ScreenView::CellEditor(std::string_view name, GridView& grid) {
  auto& control = dynamic_cast<forms::TextBox&>(Required(name));
  auto* editor = new QLineEdit(grid.viewport());
  editor->setProperty("role", "cellEditor");
  editor->setFocusPolicy(Qt::TabFocus);
  editor->setContextMenuPolicy(Qt::NoContextMenu);
  editor->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  editor->hide();
  cell_editor_ = editor;
  cell_editor_control_ = &control;
  cell_grid_ = &grid;
  Bind(control, *editor, tr("Celda en edición"));
  Follow(*editor, control);
  connect(&grid, &GridView::Moved, editor, [editor, &grid] {
    if (editor->isVisible()) editor->setGeometry(grid.CurrentCell());
  });
}

void ScreenView::Show(std::string_view name, QWidget& widget, const QString& accessible) {
  Bind(Required(name), widget, accessible);
}

void ScreenView::Go(forms::Control& control) {
  const Hand hand(*this);
  form_->Enter(control);
  Rest();
}

void ScreenView::Covered(std::string_view name, std::optional<int> index) {
  forms::Control& control = Required(name, index);
  widgets_.insert(&control, nullptr);
}

// ---- what the model says ----

void ScreenView::Update(forms::Control& control) {
  QWidget* widget = widgets_.value(&control);
  if (!widget) return;
  const QScopedValueRollback<bool> showing(showing_, true);
  const bool reachable_by_design = control.Enabled();
  if (auto* line = qobject_cast<QLineEdit*>(widget)) {
    auto& box = dynamic_cast<forms::TextBox&>(control);
    const QString text = ToQt(box.Text());
    if (line->text() != text) line->setText(text);
    const int start = InWidget(box.Text(), box.SelStart());
    const int end = InWidget(box.Text(), box.SelStart() + box.SelLength());
    if (end > start) {
      line->setSelection(start, end - start);
    } else {
      line->deselect();
      line->setCursorPosition(start);
    }
  } else if (auto* notes = qobject_cast<QTextEdit*>(widget); notes && HasText(control)) {
    auto& box = dynamic_cast<forms::TextBox&>(control);
    const QString text = ToQt(box.Text()).remove(QLatin1Char('\r'));
    if (notes->toPlainText() != text) notes->setPlainText(text);
    QTextCursor cursor = notes->textCursor();
    cursor.setPosition(InWidget(box.Text(), box.SelStart()));
    cursor.setPosition(InWidget(box.Text(), box.SelStart() + box.SelLength()), QTextCursor::KeepAnchor);
    notes->setTextCursor(cursor);
  } else if (auto* box = qobject_cast<QCheckBox*>(widget)) {
    auto& check = dynamic_cast<forms::CheckBox&>(control);
    if (!check.Caption().empty()) {
      QString caption = ToQt(check.Caption());
      const QString letter = box->property(kLetter).toString();
      const qsizetype at = letter.isEmpty() ? -1 : caption.indexOf(letter);
      box->setText(at < 0 ? caption : caption.insert(at, QLatin1Char('&')));
    }
    box->setChecked(check.Value() == 1);
  } else if (auto* button = qobject_cast<QPushButton*>(widget)) {
    button->setText(ToQt(dynamic_cast<forms::Button&>(control).Caption()));
  } else if (auto* date = qobject_cast<QDateEdit*>(widget)) {
    const QSignalBlocker quiet(date);
    date->setDate(ToQt(dynamic_cast<forms::DatePicker&>(control).Value()));
  } else if (auto* combo = qobject_cast<QComboBox*>(widget)) {
    const QSignalBlocker quiet(combo);
    auto& list = dynamic_cast<forms::ComboBox&>(control);
    if (combo->count() != static_cast<int>(list.List().size())) {
      combo->clear();
      for (const auto& item : list.List()) combo->addItem(ToQt(item));
    }
    combo->setCurrentIndex(list.ListIndex());
  } else if (auto* label = qobject_cast<QLabel*>(widget)) {
    if (auto* caption = dynamic_cast<forms::Label*>(&control)) {
      label->setText(Plain(caption->Caption()));
    } else if (HasText(control)) {
      label->setText(ToQt(dynamic_cast<forms::TextBox&>(control).Text()));
    }
  }
  if (!qobject_cast<QLabel*>(widget)) widget->setEnabled(reachable_by_design);
  if (widget == cell_editor_) {
    if (control.Visible() && !widget->isVisible()) {
      widget->setGeometry(cell_grid_->CurrentCell());
      widget->show();
      widget->raise();
    } else if (!control.Visible()) {
      widget->hide();
    }
  } else if (widget->isVisibleTo(this) != control.Visible()) {
    widget->setVisible(control.Visible());
  }
}

void ScreenView::ControlChanged(forms::Control& control, forms::Aspect aspect) {
  if (aspect == forms::Aspect::Layout) {
    if (auto* grid = qobject_cast<GridView*>(widgets_.value(&control))) return grid->LayoutChanged();
  }
  if (following_ && aspect == forms::Aspect::Selection) return;
  // A text that nobody's hand is in may change a thousand times in one act, a total counted up line by
  // line: what it holds in the end is shown.
  const bool waits = (aspect == forms::Aspect::Text || aspect == forms::Aspect::Selection) &&
                     &control != form_->ActiveControl() && HasText(control);
  if (!waits) return Update(control);
  waiting_.insert(&control);
  if (std::exchange(catching_up_, true)) return;
  QTimer::singleShot(0, this, &ScreenView::CatchUp);
}

void ScreenView::CatchUp() {
  catching_up_ = false;
  const auto waiting = std::exchange(waiting_, {});
  for (forms::Control* control : waiting) Update(*control);
}

// The widget moved caret or selection by itself, as with the arrows among lines or with the mouse.
void ScreenView::SelectionMoved(forms::TextBox& box, int start, int end) {
  if (showing_ || !box.HasFocus()) return;
  const int model_start = InModel(box.Text(), start);
  const int model_length = InModel(box.Text(), end) - model_start;
  if (model_start == box.SelStart() && model_length == box.SelLength()) return;
  // Not back to the widget: it knows from which end the selection grows.
  const QScopedValueRollback<bool> following(following_, true);
  box.SelStart(model_start);
  box.SelLength(model_length);
}

void ScreenView::Follow(QLineEdit& line, forms::TextBox& box) {
  auto moved = [this, &line, &box] {
    const bool selected = line.hasSelectedText();
    const int start = selected ? line.selectionStart() : line.cursorPosition();
    SelectionMoved(box, start, selected ? line.selectionEnd() : start);
  };
  connect(&line, &QLineEdit::cursorPositionChanged, this, moved);
  connect(&line, &QLineEdit::selectionChanged, this, moved);
}

void ScreenView::CellChanged(forms::FlexGrid& grid, int row, int col) {
  if (auto* view = qobject_cast<GridView*>(widgets_.value(&grid))) view->CellChanged(row, col);
}

void ScreenView::RowsChanged(forms::FlexGrid& grid, int from) {
  if (auto* view = qobject_cast<GridView*>(widgets_.value(&grid))) view->RowsChanged(from);
}

void ScreenView::CurrentCellMoved(forms::FlexGrid& grid) {
  if (auto* view = qobject_cast<GridView*>(widgets_.value(&grid))) view->CurrentMoved();
}

void ScreenView::FocusMoved(forms::Control* from, forms::Control* to) {
  auto mark = [this](forms::Control* control, bool hand) {
    QWidget* widget = control ? widgets_.value(control) : nullptr;
    if (!widget || widget == cell_editor_) return;
    widget->setProperty("hand", hand);
    Restyle(*widget);
  };
  mark(from, false);
  mark(to, true);
  QWidget* target = to ? widgets_.value(to) : nullptr;
  taking_focus_ = true;
  (target ? target : this)->setFocus(Qt::OtherFocusReason);
  taking_focus_ = false;
}

void ScreenView::CaptionChanged() { emit CaptionChanged(ToQt(form_->Caption())); }

void ScreenView::Shown(bool /*modal*/) {
  for (auto bound = widgets_.begin(); bound != widgets_.end(); ++bound) {
    if (auto* grid = qobject_cast<GridView*>(bound.value())) grid->Reset();
  }
}

void ScreenView::Hidden() { hide(); }

void ScreenView::Unloaded() { emit Gone(); }

// ---- what the operator does ----

bool ScreenView::Forward(QKeyEvent& event) {
  const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
  const int shift = (modifiers & Qt::ShiftModifier) ? forms::kShift : 0;
  if (modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) {
    // AltGr types characters; anything else with these belongs to the menus.
    if (!Types(event.text()) || !(modifiers & Qt::AltModifier) || !(modifiers & Qt::ControlModifier)) {
      return false;
    }
  }
  auto form = form_;
  if (auto code = CodeOf(event.key())) {
    const bool back = event.key() == Qt::Key_Backtab;
    const char32_t character =
        *code == forms::kKeyEnter || *code == forms::kKeyEsc || *code == forms::kKeyBack
            ? static_cast<char32_t>(*code)
            : 0;
    form->Press({*code, back ? forms::kShift : shift, character});
    if (*code == forms::kKeyF1) emit HelpRequested();
  } else if (Types(event.text())) {
    for (const char32_t character : event.text().toStdU32String()) form->Press(forms::KeyFor(character));
  } else {
    return false;
  }
  Rest();
  return true;
}

bool ScreenView::eventFilter(QObject* watched, QEvent* event) {
  forms::Control* control = controls_.value(watched);
  if (!control) return QWidget::eventFilter(watched, event);
  const Hand hand(*this);
  auto* line = qobject_cast<QLineEdit*>(watched);
  auto* notes = qobject_cast<QTextEdit*>(watched);
  auto* box = HasText(*control) ? dynamic_cast<forms::TextBox*>(control) : nullptr;
  switch (event->type()) {
    case QEvent::ShortcutOverride: {
      // A key of the screen is no shortcut of the window's.
      auto* key = static_cast<QKeyEvent*>(event);
      if (!(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
        event->accept();
        return true;
      }
      break;
    }
    case QEvent::KeyPress: {
      auto* key = static_cast<QKeyEvent*>(event);
      if (box && (line || notes)) {
        if (key->matches(QKeySequence::Paste)) {
          form_->Paste(QApplication::clipboard()->text().toStdString());
          Rest();
          return true;
        }
        if (key->matches(QKeySequence::Cut)) {
          if (box->SelLength() == 0) return true;
          if (line) line->copy();
          if (notes) notes->copy();
          form_->Press({forms::kKeyDelete, 0, 0});
          Rest();
          return true;
        }
        if (key->matches(QKeySequence::SelectAll)) {
          box->SelectAll();
          return true;
        }
        if (key->matches(QKeySequence::Copy)) return false;  // reads only
        const bool selects = (key->modifiers() & Qt::ShiftModifier) &&
                             (key->key() == Qt::Key_Left || key->key() == Qt::Key_Right ||
                              key->key() == Qt::Key_Home || key->key() == Qt::Key_End);
        const bool walks_lines = notes && (key->key() == Qt::Key_Up || key->key() == Qt::Key_Down);
        if (selects || walks_lines) return false;  // the widget moves, and tells the model
      }
      if (qobject_cast<QDateEdit*>(watched)) {
        const int code = key->key();
        const bool the_form_s = code == Qt::Key_Return || code == Qt::Key_Enter || code == Qt::Key_Tab ||
                                code == Qt::Key_Backtab || code == Qt::Key_Escape ||
                                (code >= Qt::Key_F1 && code <= Qt::Key_F12);
        if (!the_form_s) {
          // A part that is full moves on by itself: the stroke typed after it has nothing left to do.
          const int part = static_cast<QDateEdit*>(watched)->currentSection();
          const bool moved = watched->property("part").toInt() != part;
          watched->setProperty("part", part);
          return moved && key->text() == QLatin1String("/");
        }
      }
      if (qobject_cast<QComboBox*>(watched) && key->key() == Qt::Key_F4) return false;
      if (Forward(*key)) return true;
      // What is not the form's either moves the caret or is nothing: a widget never edits itself.
      if ((line || notes) && !MovesCaret(*key)) {
        key->ignore();
        return true;
      }
      return false;
    }
    case QEvent::KeyRelease:
      if (qobject_cast<QAbstractButton*>(watched)) return true;
      break;
    case QEvent::InputMethod: {
      auto* composed = static_cast<QInputMethodEvent*>(event);
      if (box && (line || notes)) {
        const bool writes = !composed->preeditString().isEmpty() || !composed->commitString().isEmpty();
        if (writes && box->SelLength() > 0) form_->Paste("");
        for (const char32_t sign : composed->commitString().toStdU32String())
          form_->Press(forms::KeyFor(sign));
        // What is being composed is shown; what is written comes from the form.
        QInputMethodEvent rest(composed->preeditString(), composed->attributes());
        const QScopedValueRollback<bool> showing(showing_, true);
        watched->event(&rest);
        Rest();
        return true;
      }
      break;
    }
    case QEvent::MouseButtonPress: {
      auto* mouse = static_cast<QMouseEvent*>(event);
      // A text that is only shown has no caret to put.
      if (qobject_cast<QLabel*>(watched) && !control->IsLabel()) return true;
      if (!control->CanTakeFocus()) return control->IsLabel() ? false : true;
      if (auto* check = qobject_cast<QCheckBox*>(watched)) {
        if (mouse->button() == Qt::LeftButton && check->rect().contains(mouse->pos())) {
          form_->Click(*control);
          Rest();
        }
        return true;
      }
      if (line || notes) {
        if (mouse->button() == Qt::MiddleButton) {
          form_->Enter(*control);
          if (control->HasFocus()) {
            form_->Paste(QApplication::clipboard()->text(QClipboard::Selection).toStdString());
          }
          Rest();
          return true;
        }
        const bool arriving = !control->HasFocus();
        form_->Enter(*control);
        Rest();
        // The click that brings the focus selects the whole text; the next one sets the caret.
        return arriving || !control->HasFocus();
      }
      if (!qobject_cast<QPushButton*>(watched) && !qobject_cast<GridView*>(watched)) {
        form_->Enter(*control);
        Rest();
      }
      break;
    }
    case QEvent::MouseButtonRelease:
      // The form has pasted when the button went down.
      if (box && static_cast<QMouseEvent*>(event)->button() == Qt::MiddleButton) return true;
      if (control->IsLabel()) {
        form_->Click(*control);
        Rest();
        return true;
      }
      break;
    case QEvent::MouseButtonDblClick:
      if (box && line) {
        form_->DoubleClick(*control);
        Rest();
        return true;
      }
      break;
    case QEvent::Wheel:
      // A wheel that scrolls past changes nothing.
      if ((qobject_cast<QDateEdit*>(watched) || qobject_cast<QComboBox*>(watched)) && !control->HasFocus()) {
        event->ignore();
        return true;
      }
      break;
    case QEvent::FocusIn:
      if (!taking_focus_ && control->Owner().ActiveControl() != control && control->CanTakeFocus()) {
        form_->Enter(*control);
        Rest();
      }
      break;
    default:
      break;
  }
  return QWidget::eventFilter(watched, event);
}

// The keyboard's way is the form's. The toolkit also asks when a page is hidden, as when another screen
// comes in front: that is no key of the operator's.
bool ScreenView::focusNextPrevChild(bool /*next*/) { return false; }

void ScreenView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Exposed();
}

void ScreenView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Exposed();
}

// The window came up or changed its size: the form hears of both, once the toolkit is at rest.
void ScreenView::Exposed() {
  if (painting_) return;
  painting_ = true;
  QTimer::singleShot(0, this, [this] {
    painting_ = false;
    if (!form_->Open() || !form_->Visible()) return;
    const Hand hand(*this);
    form_->Resize(width() * kTwipsAPixel, height() * kTwipsAPixel);
    form_->Paint();
    Rest();
  });
}

bool ScreenView::event(QEvent* event) {
  // No control has the focus: the form sees the key alone.
  if (event->type() == QEvent::KeyPress) {
    const Hand hand(*this);
    if (Forward(*static_cast<QKeyEvent*>(event))) return true;
  }
  return QWidget::event(event);
}

void ScreenView::closeEvent(QCloseEvent* event) {
  // The form decides; its going takes the window along.
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
  if (hands_ == 0) deleteLater();
}

void ScreenView::Rest() {
  CatchUp();
  if (resting_) return;
  resting_ = true;
  QTimer::singleShot(0, this, [this] {
    resting_ = false;
    if (!form_->Open()) return;
    // Where the model put the focus, and nowhere else.
    if (forms::Control* active = form_->ActiveControl()) {
      QWidget* widget = widgets_.value(active);
      if (widget && isVisible() && isActiveWindow() && !widget->hasFocus() &&
          !QApplication::activePopupWidget()) {
        taking_focus_ = true;
        widget->setFocus(Qt::OtherFocusReason);
        taking_focus_ = false;
      }
    }
    AtRest();
  });
}

}  // namespace tarvik::desktop
