#include "desktop/screens/text_ties.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QTextCursor>

#include "desktop/screens/form_keys.h"
#include "desktop/screens/grid_view.h"
#include "desktop/screens/text_places.h"
#include "desktop/style/theme.h"
#include "forms/form.h"
#include "forms/keys.h"

namespace tarvik::desktop {

namespace {

// Edited by the form only: no context menu of the toolkit, no drag and drop.
template <class Text>
Text& Bare(Text& widget) {
  widget.setFocusPolicy(Qt::TabFocus);
  widget.setContextMenuPolicy(Qt::NoContextMenu);
  widget.setAcceptDrops(false);
  return widget;
}

QLineEdit& FieldOf(const forms::TextBox& box, QWidget& view) {
  auto& line = Bare(*new QLineEdit(&view));
  line.setFixedHeight(measure::kField);
  if (box.RightAligned()) line.setAlignment(Qt::AlignRight);
  return line;
}

QLineEdit& EditorOver(GridView& grid) {
  auto& line = Bare(*new QLineEdit(grid.viewport()));
  line.setProperty("role", "cellEditor");
  line.setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  line.hide();
  return line;
}

bool IsMiddle(const QMouseEvent& event) { return event.button() == Qt::MiddleButton; }

}  // namespace

// ---- what can be typed ----

TextTie::TextTie(Hand& hand, forms::TextBox& box, QWidget& widget) : Tie(hand, box, widget), box_(box) {}

int TextTie::ShownStart() const { return InWidget(box_.Text(), box_.SelStart()); }

int TextTie::ShownEnd() const { return InWidget(box_.Text(), box_.SelStart() + box_.SelLength()); }

void TextTie::Changed(forms::Aspect aspect) {
  if (following_ && aspect == forms::Aspect::Selection) return;
  Tie::Changed(aspect);
}

void TextTie::CaretMoved(int start, int end) {
  if (Showing() || !box_.HasFocus()) return;
  const int from = InModel(box_.Text(), start);
  const int length = InModel(box_.Text(), end) - from;
  if (from == box_.SelStart() && length == box_.SelLength()) return;
  // Not shown in the widget again, which knows from which end the selection grows.
  const QScopedValueRollback<bool> following(following_, true);
  box_.SelStart(from);
  box_.SelLength(length);
}

// The keys of the clipboard, which act on the control.
bool TextTie::Edits(const QKeyEvent& event) {
  if (event.matches(QKeySequence::Paste)) {
    TheHand().Act([](forms::Form& form) { form.Paste(QApplication::clipboard()->text().toStdString()); });
    return true;
  }
  if (event.matches(QKeySequence::Cut)) {
    if (box_.SelLength() == 0) return true;
    Copy();
    TheHand().Act([](forms::Form& form) { form.Press({forms::kKeyDelete, 0, 0}); });
    return true;
  }
  if (event.matches(QKeySequence::SelectAll)) {
    box_.SelectAll();
    return true;
  }
  return false;
}

// The widget copies, or moves and tells the control.
bool TextTie::LeftToTheWidget(const QKeyEvent& event) const {
  if (event.matches(QKeySequence::Copy)) return true;
  const bool along_the_line = event.key() == Qt::Key_Left || event.key() == Qt::Key_Right ||
                              event.key() == Qt::Key_Home || event.key() == Qt::Key_End;
  return (along_the_line && (event.modifiers() & Qt::ShiftModifier)) || WalksLines(event);
}

bool TextTie::KeyDown(QKeyEvent& event) {
  if (Edits(event)) return true;
  if (LeftToTheWidget(event)) return false;
  if (TheHand().Press(event)) return true;
  // What is not the form's either moves the caret or is nothing: a widget never edits itself.
  if (MovesCaret(event)) return false;
  event.ignore();
  return true;
}

bool TextTie::Composed(QInputMethodEvent& event) {
  TheHand().Act([&](forms::Form& form) {
    const bool writes = !event.preeditString().isEmpty() || !event.commitString().isEmpty();
    if (writes && box_.SelLength() > 0) form.Paste("");
    for (const char32_t sign : event.commitString().toStdU32String()) form.Press(forms::KeyFor(sign));
    // What is being composed is shown; what is written comes from the form.
    QInputMethodEvent rest(event.preeditString(), event.attributes());
    Quietly([&] { static_cast<QObject&>(Widget()).event(&rest); });
  });
  return true;
}

bool TextTie::MouseDown(const QMouseEvent& event) {
  if (!box_.CanTakeFocus()) return true;
  if (IsMiddle(event)) {
    TheHand().Act([this](forms::Form& form) {
      form.Enter(box_);
      if (box_.HasFocus()) {
        form.Paste(QApplication::clipboard()->text(QClipboard::Selection).toStdString());
      }
    });
    return true;
  }
  const bool arriving = !box_.HasFocus();
  TheHand().Act([this](forms::Form& form) { form.Enter(box_); });
  // The click that brings the focus selects the whole text; the next one sets the caret.
  return arriving || !box_.HasFocus();
}

// The form has pasted when the button went down.
bool TextTie::MouseUp(const QMouseEvent& event) { return IsMiddle(event); }

// ---- a field of one line ----

LineTie::LineTie(Hand& hand, forms::TextBox& box) : LineTie(hand, box, FieldOf(box, hand.View())) {}

LineTie::LineTie(Hand& hand, forms::TextBox& box, QLineEdit& line) : TieOf(hand, box, line) {
  const auto moved = [this] {
    const bool selected = Widget().hasSelectedText();
    const int start = selected ? Widget().selectionStart() : Widget().cursorPosition();
    CaretMoved(start, selected ? Widget().selectionEnd() : start);
  };
  connect(&line, &QLineEdit::cursorPositionChanged, this, moved);
  connect(&line, &QLineEdit::selectionChanged, this, moved);
}

void LineTie::ShowContents() {
  const QString text = QString::fromStdString(Control().Text());
  if (Widget().text() != text) Widget().setText(text);
  const int start = ShownStart();
  const int end = ShownEnd();
  if (end > start) {
    Widget().setSelection(start, end - start);
  } else {
    Widget().deselect();
    Widget().setCursorPosition(start);
  }
}

bool LineTie::DoubleClicked() {
  TheHand().Act([this](forms::Form& form) { form.DoubleClick(Control()); });
  return true;
}

// ---- the editor over a cell ----

CellTie::CellTie(Hand& hand, forms::TextBox& box, GridView& grid)
    : LineTie(hand, box, EditorOver(grid)), grid_(grid) {
  connect(&grid, &GridView::Moved, this, [this] {
    if (Widget().isVisible()) Widget().setGeometry(grid_.CurrentCell());
  });
}

void CellTie::ShowState() {
  Widget().setEnabled(Control().Enabled());
  if (!Control().Visible()) return Widget().hide();
  if (Widget().isVisible()) return;
  Widget().setGeometry(grid_.CurrentCell());
  Widget().show();
  Widget().raise();
}

// ---- notes ----

NotesTie::NotesTie(Hand& hand, forms::TextBox& box) : TieOf(hand, box, Bare(*new QTextEdit(&hand.View()))) {
  Widget().setAcceptRichText(false);
  Widget().setTabChangesFocus(true);
  const auto moved = [this] {
    const QTextCursor cursor = Widget().textCursor();
    CaretMoved(cursor.selectionStart(), cursor.selectionEnd());
  };
  connect(&Widget(), &QTextEdit::cursorPositionChanged, this, moved);
  connect(&Widget(), &QTextEdit::selectionChanged, this, moved);
}

void NotesTie::ShowContents() {
  const QString text = QString::fromStdString(Control().Text()).remove(QLatin1Char('\r'));
  if (Widget().toPlainText() != text) Widget().setPlainText(text);
  QTextCursor cursor = Widget().textCursor();
  cursor.setPosition(ShownStart());
  cursor.setPosition(ShownEnd(), QTextCursor::KeepAnchor);
  Widget().setTextCursor(cursor);
}

bool NotesTie::WalksLines(const QKeyEvent& event) const {
  return event.key() == Qt::Key_Up || event.key() == Qt::Key_Down;
}

// ---- a text that is only shown ----

ShownTextTie::ShownTextTie(Hand& hand, forms::TextBox& box) : TieOf(hand, box, *new QLabel(&hand.View())) {
  Widget().setTextFormat(Qt::PlainText);
}

void ShownTextTie::ShowContents() { Widget().setText(QString::fromStdString(Control().Text())); }

// Never greyed: it can be read either way.
void ShownTextTie::ShowState() {
  if (Widget().isVisibleTo(&TheHand().View()) != Control().Visible())
    Widget().setVisible(Control().Visible());
}

bool ShownTextTie::MouseUp(const QMouseEvent& event) { return IsMiddle(event); }

}  // namespace tarvik::desktop
