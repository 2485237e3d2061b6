#include "desktop/windows/help.h"

#include <QFile>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollArea>
#include <QScrollBar>
#include <QSettings>
#include <QShortcut>
#include <QSplitter>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCursor>
#include <QVBoxLayout>

#include "desktop/style/theme.h"

namespace tarvik::desktop {

namespace {

using measure::kGrid;

const auto kPlaceKey = QStringLiteral("ayuda/ventana");

struct Known {
  const char* name;
  const char* title;
};

constexpr Known kPages[] = {{"indice", "Inicio"},
                            {"entradas", "Entradas"},
                            {"salidas", "Salidas"},
                            {"estaciones", "Traspaso entre estaciones"},
                            {"listas", "Listas de documentos"},
                            {"existencias", "Existencias"},
                            {"ajustes", "Ajustes"},
                            {"problemas", "Si algo no sale como espera"},
                            {"servidor", "Varias estaciones"}};

// Without accents and in small letters: as people type when they look for something. One character
// stays one character, so that a place found here is a place in the text.
QString Folded(const QString& text) {
  QString folded;
  folded.reserve(text.size());
  for (const QChar character : text.toLower()) {
    const QString parts = character.decomposition();
    folded += parts.isEmpty() ? character : parts.front();
  }
  return folded;
}

bool HasAll(const QString& folded, const QStringList& words) {
  for (const QString& word : words) {
    if (!folded.contains(word)) return false;
  }
  return true;
}

QStringList Words(const QString& typed) { return Folded(typed).split(QLatin1Char(' '), Qt::SkipEmptyParts); }

// The manual's text. A picture is shown as wide as the paper at most, and in the theme in force.
class Paper final : public QTextBrowser {
 public:
  using QTextBrowser::QTextBrowser;

 protected:
  QVariant loadResource(int type, const QUrl& name) override {
    if (type != QTextDocument::ImageResource) return QTextBrowser::loadResource(type, name);
    QString file = name.fileName();
    const bool dark = palette().color(QPalette::Window).lightness() < 128;
    if (dark) file.replace(QStringLiteral("-claro"), QStringLiteral("-oscuro"));
    const QPixmap picture(QStringLiteral(":/manual/img/") + file);
    const int room = viewport()->width() - 8 * kGrid;
    return picture.width() > room ? picture.scaledToWidth(std::max(room, 1), Qt::SmoothTransformation)
                                  : picture;
  }
};

}  // namespace

QStringList ManualPages() {
  QStringList names;
  for (const Known& page : kPages) names += QString::fromUtf8(page.name);
  return names;
}

QString ManualPage(const QString& name) {
  QFile file(QStringLiteral(":/manual/%1.md").arg(name));
  if (!ManualPages().contains(name) || !file.open(QIODevice::ReadOnly)) return {};
  return QString::fromUtf8(file.readAll());
}

QString ManualPageFor(const QString& screen) {
  if (screen == QStringLiteral("frmEntradasWizard")) return QStringLiteral("entradas");
  if (screen == QStringLiteral("frmSalidasWizard")) return QStringLiteral("salidas");
  if (screen == QStringLiteral("frmMovEstaciones")) return QStringLiteral("estaciones");
  // The matrix opens from a goods-in document, and is told with it.
  if (screen == QStringLiteral("frmMallaModelos")) return QStringLiteral("entradas");
  return QStringLiteral("indice");
}

HelpWindow::HelpWindow(QSettings* settings, QWidget* parent)
    : QWidget(parent, Qt::Window), settings_(settings) {
  setWindowTitle(QStringLiteral("Ayuda"));
  resize(120 * kGrid, 84 * kGrid);
  setAutoFillBackground(true);
  auto* outer = new QHBoxLayout(this);
  outer->setContentsMargins(2 * kGrid, 2 * kGrid, 2 * kGrid, 2 * kGrid);
  outer->setSpacing(2 * kGrid);

  outer->addWidget(KeysAndPages());
  outer->addLayout(Manual(), 1);
  connect(pages_, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
    if (item != nullptr) ShowPage(item->data(Qt::UserRole).toString());
  });
  connect(text_, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) {
    ShowPage(link.path().remove(QStringLiteral(".md")));
    if (link.hasFragment()) text_->scrollToAnchor(link.fragment());
  });
  connect(search_, &QLineEdit::textChanged, this, &HelpWindow::Search);
  new QShortcut(QKeySequence::Find, this, this, [this] {
    search_->setFocus();
    search_->selectAll();
  });
  new QShortcut(QKeySequence(Qt::ALT | Qt::Key_Home), this, this,
                [this] { ShowPage(QStringLiteral("indice")); });

  if (settings_ != nullptr) restoreGeometry(settings_->value(kPlaceKey).toByteArray());
  ShowPage(QStringLiteral("indice"));
}

// On the left: the keys of the screen in hand, and the pages of the manual.
QWidget* HelpWindow::KeysAndPages() {
  auto* left = new QWidget(this);
  left->setProperty("role", QStringLiteral("panel"));
  left->setAttribute(Qt::WA_StyledBackground);
  left->setFixedWidth(36 * kGrid);
  auto* column = new QVBoxLayout(left);
  column->setContentsMargins(2 * kGrid, 2 * kGrid, 2 * kGrid, 2 * kGrid);
  column->setSpacing(kGrid);
  auto* caption = new QLabel(QStringLiteral("Teclas de esta pantalla"), left);
  caption->setProperty("role", QStringLiteral("caption"));
  column->addWidget(caption);
  screen_ = new QLabel(left);
  screen_->setProperty("role", QStringLiteral("title"));
  screen_->setWordWrap(true);
  column->addWidget(screen_);
  keys_ = new QWidget(left);
  keys_layout_ = new QVBoxLayout(keys_);
  keys_layout_->setContentsMargins(0, kGrid, 0, 2 * kGrid);
  keys_layout_->setSpacing(kGrid);
  column->addWidget(keys_);
  column->addStretch(1);
  auto* pages_caption = new QLabel(QStringLiteral("Manual"), left);
  pages_caption->setProperty("role", QStringLiteral("caption"));
  column->addWidget(pages_caption);
  MakePages(left);
  column->addWidget(pages_);
  return left;
}

void HelpWindow::MakePages(QWidget* left) {
  pages_ = new QListWidget(left);
  pages_->setAccessibleName(QStringLiteral("Páginas del manual"));
  pages_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  pages_->setFrameShape(QFrame::NoFrame);
  pages_->setProperty("role", QStringLiteral("pages"));
  for (const Known& page : kPages) {
    auto* item = new QListWidgetItem(QString::fromUtf8(page.title), pages_);
    item->setData(Qt::UserRole, QString::fromUtf8(page.name));
    item->setSizeHint(QSize(0, measure::kRow));
  }
  pages_->setFixedHeight(static_cast<int>(std::size(kPages)) * measure::kRow + kGrid);
}

QLayout* HelpWindow::Manual() {
  auto* right = new QVBoxLayout;
  right->setSpacing(kGrid);
  auto* top = new QHBoxLayout;
  top->setSpacing(kGrid);
  search_ = new QLineEdit(this);
  search_->setFixedHeight(measure::kField);
  search_->setPlaceholderText(QStringLiteral("Buscar en el manual (Ctrl+F)"));
  search_->setAccessibleName(QStringLiteral("Buscar en el manual"));
  search_->setClearButtonEnabled(true);
  search_->installEventFilter(this);
  top->addWidget(search_, 1);
  found_ = new QLabel(this);
  found_->setProperty("role", QStringLiteral("soft"));
  found_->hide();
  top->addWidget(found_);
  right->addLayout(top);
  right->addWidget(MakePaper(), 1);
  return right;
}

QWidget* HelpWindow::MakePaper() {
  auto* paper = new QWidget(this);
  paper->setProperty("role", QStringLiteral("panel"));
  paper->setAttribute(Qt::WA_StyledBackground);
  auto* paper_layout = new QVBoxLayout(paper);
  paper_layout->setContentsMargins(1, 1, 1, 1);
  text_ = new Paper(paper);
  text_->setAccessibleName(QStringLiteral("Manual"));
  text_->setOpenLinks(false);
  text_->document()->setDocumentMargin(3 * kGrid);
  text_->setProperty("role", QStringLiteral("manual"));
  paper_layout->addWidget(text_);
  return paper;
}

HelpWindow::~HelpWindow() {
  if (settings_ != nullptr) settings_->setValue(kPlaceKey, saveGeometry());
}

void HelpWindow::Open(const QString& screen, const QList<QPair<QString, QString>>& keys,
                      const QString& page) {
  ShowKeys(screen, keys);
  search_->clear();
  ShowPage(page);
  show();
  raise();
  activateWindow();
  text_->setFocus();
}

void HelpWindow::ShowKeys(const QString& screen, const QList<QPair<QString, QString>>& keys) {
  screen_->setText(screen);
  // The lines are made anew each time: an old one must not stay visible while it waits to be deleted.
  while (QLayoutItem* item = keys_layout_->takeAt(0)) {
    delete item->widget();
    delete item;
  }
  for (const auto& [key, what] : keys) {
    auto* row = new QWidget(keys_);
    row->setAccessibleName(QStringLiteral("%1: %2").arg(key, what));
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(3 * kGrid / 2);
    auto* cap_place = new QHBoxLayout;
    auto* cap = new QLabel(key, row);
    cap->setProperty("role", QStringLiteral("keycap"));
    cap_place->addWidget(cap);
    cap_place->addStretch(1);
    auto* holder = new QWidget(row);
    holder->setLayout(cap_place);
    cap_place->setContentsMargins(0, 0, 0, 0);
    holder->setFixedWidth(9 * kGrid);
    auto* text = new QLabel(what, row);
    text->setWordWrap(true);
    line->addWidget(holder, 0, Qt::AlignTop);
    line->addWidget(text, 1);
    keys_layout_->addWidget(row);
  }
}

void HelpWindow::ShowPage(const QString& name) {
  const QString text = ManualPage(name);
  if (text.isEmpty()) return;
  if (name != page_) {
    page_ = name;
    text_->document()->setMarkdown(text);
    QTextCursor all(text_->document());
    all.select(QTextCursor::Document);
    QTextBlockFormat room;
    room.setLineHeight(130, QTextBlockFormat::ProportionalHeight);
    all.mergeBlockFormat(room);
    for (QTextBlock block = text_->document()->begin(); block.isValid(); block = block.next()) {
      QTextBlockFormat format = block.blockFormat();
      const int level = format.headingLevel();
      format.setTopMargin(level == 1 ? 0 : level > 1 ? 3 * kGrid : kGrid / 2.0);
      format.setBottomMargin(level > 0 ? kGrid : kGrid / 2.0);
      QTextCursor(block).setBlockFormat(format);
    }
    text_->moveCursor(QTextCursor::Start);
    text_->verticalScrollBar()->setValue(0);
  }
  for (int row = 0; row < pages_->count(); ++row) {
    if (pages_->item(row)->data(Qt::UserRole).toString() == name) pages_->setCurrentRow(row);
  }
  Mark();
}

void HelpWindow::Search(const QString& typed) {
  const QStringList words = Words(typed);
  QString first;
  int pages = 0;
  for (int row = 0; row < pages_->count(); ++row) {
    const QString name = pages_->item(row)->data(Qt::UserRole).toString();
    const bool here = HasAll(Folded(ManualPage(name)), words);
    pages_->item(row)->setHidden(!here);
    if (!here) continue;
    ++pages;
    if (first.isEmpty() || name == page_) first = name;
  }
  found_->setText(words.isEmpty() ? QString()
                  : pages == 0    ? QStringLiteral("No aparece en el manual")
                  : pages == 1    ? QStringLiteral("En 1 página")
                                  : QStringLiteral("En %1 páginas").arg(pages));
  found_->setVisible(!words.isEmpty());
  if (!words.isEmpty() && !first.isEmpty() && first != page_) {
    ShowPage(first);
  } else {
    Mark();
  }
}

// Marks every place of the words on the page and goes to the first.
void HelpWindow::Mark() {
  QList<QTextEdit::ExtraSelection> marks;
  const QString folded = Folded(text_->document()->toPlainText());
  int first = -1;
  for (const QString& word : Words(search_->text())) {
    for (qsizetype at = folded.indexOf(word); at >= 0; at = folded.indexOf(word, at + word.size())) {
      QTextEdit::ExtraSelection mark;
      mark.cursor = QTextCursor(text_->document());
      mark.cursor.setPosition(static_cast<int>(at));
      mark.cursor.setPosition(static_cast<int>(at + word.size()), QTextCursor::KeepAnchor);
      mark.format.setBackground(text_->palette().highlight());
      mark.format.setForeground(text_->palette().highlightedText());
      marks += mark;
      if (first < 0 || at < first) first = static_cast<int>(at);
    }
  }
  text_->setExtraSelections(marks);
  if (first < 0) return;
  QTextCursor place(text_->document());
  place.setPosition(first);
  text_->setTextCursor(place);
  text_->ensureCursorVisible();
}

bool HelpWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == search_ && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Down) {
      text_->setFocus();
      return true;
    }
    if (key == Qt::Key_Escape && !search_->text().isEmpty()) {
      search_->clear();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_F1) {
    close();
    return;
  }
  QWidget::keyPressEvent(event);
}

}  // namespace tarvik::desktop
