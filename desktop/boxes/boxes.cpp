// Lays a box out: the mark at the left, the words, the buttons at the right under them. An error
// report keeps its text as it stands below three lines that a person can use.
#include "desktop/boxes/boxes.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSet>
#include <QVBoxLayout>
#include <iterator>
#include <utility>

#include "desktop/style/theme.h"

namespace tarvik::desktop {

namespace {

using measure::kGrid;

enum class Mark { None, Information, Question, Stop };

// What stands before the text of a box: drawn, so that it is sharp at every scale.
class MarkLabel : public QWidget {
 public:
  MarkLabel(Mark mark, QWidget* parent) : QWidget(parent), mark_(mark) {
    setFixedSize(5 * kGrid, 5 * kGrid);
    setAccessibleName(mark == Mark::Stop       ? QStringLiteral("Alto")
                      : mark == Mark::Question ? QStringLiteral("Pregunta")
                                               : QStringLiteral("Información"));
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const bool dark =
        palette().color(QPalette::Window).lightness() < palette().color(QPalette::WindowText).lightness();
    const bool stop = mark_ == Mark::Stop;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::Color(stop ? Role::RefusedTint : Role::AccentTint, dark));
    painter.drawEllipse(rect());
    constexpr double kMargin = kGrid * 7 / 4.0;
    const QColor ink = Theme::Color(stop ? Role::Refused : Role::Accent, dark);
    if (stop) {
      painter.setPen(QPen(ink, kGrid * 3 / 8.0, Qt::SolidLine, Qt::RoundCap));
      const QRectF cross = QRectF(rect()).marginsRemoved(QMarginsF(kMargin, kMargin, kMargin, kMargin));
      painter.drawLine(cross.topLeft(), cross.bottomRight());
      painter.drawLine(cross.topRight(), cross.bottomLeft());
      return;
    }
    QFont sign = font();
    sign.setPixelSize(measure::kTitle + 3);
    sign.setWeight(QFont::Bold);
    painter.setFont(sign);
    painter.setPen(ink);
    painter.drawText(rect(), Qt::AlignCenter,
                     mark_ == Mark::Question ? QStringLiteral("?") : QStringLiteral("i"));
  }

 private:
  Mark mark_;
};

class Box : public QDialog {
 public:
  explicit Box(QWidget* parent, const QString& text) : QDialog(parent), text_(text) {
    qApp->installEventFilter(this);
    still_.start();
    // Without the toolkit's help button, which would do nothing.
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    setWindowModality(Qt::ApplicationModal);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(3 * kGrid, 3 * kGrid, 3 * kGrid, 2 * kGrid);
    outer->setSpacing(3 * kGrid);
    auto* top = new QHBoxLayout;
    top->setSpacing(2 * kGrid);
    mark_ = new QVBoxLayout;
    top->addLayout(mark_);
    body_ = new QVBoxLayout;
    body_->setSpacing(kGrid);
    top->addLayout(body_, 1);
    outer->addLayout(top, 1);
    buttons_ = new QHBoxLayout;
    buttons_->setSpacing(kGrid);
    buttons_->addStretch(1);
    outer->addLayout(buttons_);
  }

  void SetMark(Mark mark) {
    if (mark == Mark::None) return;
    mark_->addWidget(new MarkLabel(mark, this), 0, Qt::AlignTop);
    mark_->addStretch(1);
  }

  QLabel* AddText(const QString& text, const QString& role = {}) {
    auto* label = new QLabel(this);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setWordWrap(true);
    label->setAccessibleName(text);
    if (!role.isEmpty()) label->setProperty("role", role);
    // As wide as its longest line, within what reads well.
    int longest = 0;
    for (const QString& line : text.split(QLatin1Char('\n'))) {
      longest = std::max(longest, fontMetrics().horizontalAdvance(line));
    }
    label->setMinimumWidth(std::clamp(longest + kGrid, 28 * kGrid, 56 * kGrid));
    label->setMaximumWidth(80 * kGrid);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    body_->addWidget(label);
    return label;
  }

  void AddScrolled(const QString& text) {
    auto* page = new QPlainTextEdit(text, this);
    page->setReadOnly(true);
    page->setTabChangesFocus(true);
    page->setAccessibleName(QStringLiteral("Texto del aviso"));
    page->setMinimumSize(64 * kGrid, 40 * kGrid);
    body_->addWidget(page);
  }

  // The text of a report, unchanged, to be read and copied.
  void AddReport(const QString& text) {
    auto* report = new QPlainTextEdit(this);
    QString shown = text;
    report->setPlainText(shown.remove(QLatin1Char('\r')).trimmed());
    report->setReadOnly(true);
    report->setTabChangesFocus(true);
    report->setProperty("blocked", true);
    report->setAccessibleName(QStringLiteral("Texto del error"));
    report->setMinimumWidth(64 * kGrid);
    report->document()->setDocumentMargin(kGrid);
    // Room for its lines, long ones folded, within reason.
    int lines = 0;
    for (const QString& line : shown.trimmed().split(QLatin1Char('\n'))) {
      lines += 1 + report->fontMetrics().horizontalAdvance(line) / (58 * kGrid);
    }
    report->setFixedHeight(std::clamp(lines, 3, 12) * report->fontMetrics().lineSpacing() + 4 * kGrid);
    body_->addWidget(report);
  }

  QPushButton* AddButton(const QString& caption, const QString& accessible, int result) {
    auto* button = new QPushButton(caption, this);
    button->setAccessibleName(accessible);
    button->setAutoDefault(true);
    button->setMinimumWidth(12 * kGrid);
    buttons_->addWidget(button);
    connect(button, &QPushButton::clicked, this, [this, result] { done(result); });
    return button;
  }

  void AddCopy() {
    auto* copy = new QPushButton(QStringLiteral("&Copiar"), this);
    copy->setAccessibleName(QStringLiteral("Copiar el texto"));
    copy->setAutoDefault(false);
    copy->setProperty("role", QStringLiteral("outlined"));
    buttons_->insertWidget(0, copy);
    connect(copy, &QPushButton::clicked, this, [this, copy] {
      QApplication::clipboard()->setText(text_);
      copy->setText(QStringLiteral("Copiado"));
    });
  }

  // The default button: filled, and focused from the start.
  static void MakeDefault(QPushButton* button) {
    button->setProperty("role", QStringLiteral("primary"));
    button->setDefault(true);
    button->setFocus();
  }

  void AnswerKeys(QPushButton* yes, QPushButton* no) {
    yes_ = yes;
    no_ = no;
  }
  [[nodiscard]] KeptKeys TakeKept() { return std::move(kept_); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr || widget->window() != this) return QDialog::eventFilter(watched, event);
    if (event->type() == QEvent::WindowDeactivate) down_.clear();  // a release may go to another window
    if (event->type() == QEvent::KeyRelease && !static_cast<QKeyEvent*>(event)->isAutoRepeat() &&
        down_.remove(KeyOf(*event))) {
      still_.restart();
    }
    // What a button leaves comes by again on its way to the box.
    const QWidget* first = focusWidget() != nullptr ? focusWidget() : this;
    if (widget != first) return false;
    switch (event->type()) {
      case QEvent::ShortcutOverride:
        // The letter of a button must not answer earlier than a key would: it comes as a key then.
        if (!CanBeMeant(*static_cast<QKeyEvent*>(event))) event->accept();
        return false;
      case QEvent::KeyPress:
        return KeptBack(*static_cast<QKeyEvent*>(event));
      default:
        return false;
    }
  }
  void showEvent(QShowEvent* event) override {
    still_.restart();
    QDialog::showEvent(event);
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->isAutoRepeat()) return;
    if (event->matches(QKeySequence::Copy)) {
      QApplication::clipboard()->setText(text_);
      return;
    }
    if (yes_ != nullptr && (event->modifiers() & Qt::ControlModifier) == 0) {
      const QString typed = event->text().toUpper();
      if (event->key() == Qt::Key_S || typed == QStringLiteral("S")) return yes_->click();
      if (event->key() == Qt::Key_N || typed == QStringLiteral("N")) return no_->click();
      if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
        (yes_->hasFocus() ? no_ : yes_)->setFocus();
        return;
      }
    }
    // Nothing to refuse: Esc answers as Enter does.
    if (event->key() == Qt::Key_Escape && yes_ == nullptr) return accept();
    QDialog::keyPressEvent(event);
  }
  void reject() override { done(yes_ == nullptr ? QDialog::Accepted : QDialog::Rejected); }

 private:
  static int KeyOf(const QEvent& event) { return static_cast<const QKeyEvent&>(event).key(); }
  static bool IsModifier(int key) {
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_AltGr ||
           key == Qt::Key_Meta || key == Qt::Key_CapsLock;
  }
  // Whether this key can be an answer: the box has stood, with no key down, for as long as it must.
  [[nodiscard]] bool CanBeMeant(const QKeyEvent& key) const {
    return !key.isAutoRepeat() && down_.isEmpty() && still_.elapsed() >= BoxesMustStand().count();
  }
  // A key that comes too early is not the box's. The repeats of one that is held down are nobody's.
  bool KeptBack(QKeyEvent& key) {
    if (IsModifier(key.key())) return false;
    const bool meant = CanBeMeant(key);
    if (meant) return false;
    down_.insert(key.key());
    if (!key.isAutoRepeat()) kept_.emplace_back(key.clone());
    if (BoxesMustStand().count() > 0) still_.restart();
    return true;
  }

  QString text_;
  QElapsedTimer still_;  // since the box came up, or a key came or went
  QSet<int> down_;
  KeptKeys kept_;
  QVBoxLayout* mark_ = nullptr;
  QVBoxLayout* body_ = nullptr;
  QHBoxLayout* buttons_ = nullptr;
  QPushButton* yes_ = nullptr;
  QPushButton* no_ = nullptr;
};

bool IsReport(const QString& text) {
  static const QRegularExpression beginning(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d Ocurrió un error:"));
  return beginning.match(text).hasMatch();
}

std::unique_ptr<QDialog> MakeReport(QWidget* parent, const QString& text, const QString& safe,
                                    const QString& what_now) {
  auto box = std::make_unique<Box>(parent, text);
  box->setWindowTitle(QStringLiteral("Error"));
  box->SetMark(Mark::Stop);
  box->AddText(QStringLiteral("Ocurrió un error"), QStringLiteral("title"));
  box->AddText(safe);
  box->AddText(what_now, QStringLiteral("soft"));
  box->AddReport(text);
  box->AddCopy();
  box->MakeDefault(box->AddButton(QStringLiteral("&Aceptar"), QStringLiteral("Aceptar"), QDialog::Accepted));
  return box;
}

}  // namespace

std::unique_ptr<QDialog> MakeBox(QWidget* parent, forms::BoxKind kind, const QString& text, int style) {
  if (kind == forms::BoxKind::Plain && IsReport(text)) {
    return MakeReport(parent, text,
                      QStringLiteral("Lo que ya estaba guardado sigue guardado. La pantalla continúa."),
                      QStringLiteral("Revise el documento antes de seguir. Si se repite, copie este texto y "
                                     "avise a quien atiende el sistema."));
  }
  // The low digits say which buttons; a question asks whatever they say.
  const int buttons = style & 0xF;
  const bool asks = buttons == forms::kBoxYesNo || kind == forms::BoxKind::Question;
  Mark mark = Mark::None;
  switch (style & 0x70) {
    case forms::kBoxStop:
      mark = Mark::Stop;
      break;
    case forms::kBoxQuestion:
      mark = Mark::Question;
      break;
    case forms::kBoxInformation:
      mark = Mark::Information;
      break;
    default:
      if (kind == forms::BoxKind::Error) mark = Mark::Stop;
      if (asks) mark = Mark::Question;
  }

  auto box = std::make_unique<Box>(parent, text);
  box->setWindowTitle(mark == Mark::Stop ? QStringLiteral("Aviso")
                      : asks             ? QStringLiteral("Pregunta")
                                         : QStringLiteral("Información"));
  box->SetMark(mark);
  QString shown = text;
  shown.remove(QLatin1Char('\r'));
  if (shown.count(QLatin1Char('\n')) > 20 || shown.size() > 1500) {
    box->AddScrolled(shown);
  } else {
    box->AddText(shown.trimmed());
  }
  if (asks) {
    QPushButton* yes = box->AddButton(QStringLiteral("&Sí"), QStringLiteral("Sí"), QDialog::Accepted);
    QPushButton* no = box->AddButton(QStringLiteral("&No"), QStringLiteral("No"), QDialog::Rejected);
    box->AnswerKeys(yes, no);
    box->MakeDefault((style & forms::kBoxSecondDefault) != 0 ? no : yes);
  } else {
    if (kind == forms::BoxKind::Error) box->AddCopy();
    box->MakeDefault(
        box->AddButton(QStringLiteral("&Aceptar"), QStringLiteral("Aceptar"), QDialog::Accepted));
  }
  return box;
}

std::unique_ptr<QDialog> MakeUnhandled(QWidget* parent, const QString& text, bool noted) {
  return MakeReport(
      parent, text,
      noted ? QStringLiteral("La pantalla sigue abierta con sus datos, y el error quedó anotado.")
            : QStringLiteral("La pantalla sigue abierta con sus datos. El error no se pudo anotar en el "
                             "registro del programa."),
      QStringLiteral("Revise en la pantalla qué quedó guardado antes de seguir. Si se repite el error, copie "
                     "este texto y avise a quien atiende el sistema."));
}

std::unique_ptr<QDialog> MakeNotOpened(const QString& reason) {
  auto box = std::make_unique<Box>(nullptr, reason);
  box->setWindowTitle(QStringLiteral("Movimientos de inventario"));
  box->SetMark(Mark::Stop);
  box->AddText(QStringLiteral("El programa no se pudo abrir"), QStringLiteral("title"));
  QString text = reason;
  box->AddText(text.remove(QLatin1Char('\r')).trimmed());
  box->AddCopy();
  box->MakeDefault(box->AddButton(QStringLiteral("&Cerrar"), QStringLiteral("Cerrar"), QDialog::Accepted));
  return box;
}

void ShowNotOpened(const QString& reason) { MakeNotOpened(reason)->exec(); }

namespace {

bool Shown(QDialog& box, KeptKeys* kept) {
  const bool yes = box.exec() == QDialog::Accepted;
  KeptKeys early = static_cast<Box&>(box).TakeKept();
  if (kept != nullptr) std::move(early.begin(), early.end(), std::back_inserter(*kept));
  return yes;
}

}  // namespace

std::chrono::milliseconds& BoxesMustStand() {
  static std::chrono::milliseconds must{400};
  return must;
}

void GiveBack(KeptKeys& keys) {
  if (QApplication::focusWidget() == nullptr) return;
  for (const auto& key : std::exchange(keys, {})) {
    if (QWidget* focus = QApplication::focusWidget()) QCoreApplication::sendEvent(focus, key.get());
  }
}

bool ShowBox(QWidget* parent, forms::BoxKind kind, const QString& text, int style, KeptKeys* kept) {
  return Shown(*MakeBox(parent, kind, text, style), kept);
}

void ShowUnhandled(QWidget* parent, const QString& text, bool noted, KeptKeys* kept) {
  Shown(*MakeUnhandled(parent, text, noted), kept);
}

}  // namespace tarvik::desktop
