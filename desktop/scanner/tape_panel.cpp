#include "desktop/scanner/tape_panel.h"

#include <QBoxLayout>
#include <QCompleter>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QStackedWidget>
#include <QStringListModel>
#include <QStyledItemDelegate>

#include "data/error.h"
#include "data/number.h"
#include "desktop/boxes/file_dialog.h"
#include "desktop/scanner/tape_model.h"
#include "desktop/style/layouts.h"
#include "desktop/style/theme.h"
#include "host/anfitrion.h"
#include "host/busqueda.h"
#include "host/lecturas.h"

namespace tarvik::desktop {
namespace {

using measure::kGrid;

constexpr int kWidth = 30 * kGrid;
constexpr int kRowHeight = 6 * kGrid;
constexpr int kFootHeight = 8 * kGrid;
constexpr std::size_t kOffered = 12;  // articles that are offered while one is typed

// A reading on two lines: its code and time, under them what became of it, with a mark before it.
class ReadingDelegate final : public QStyledItemDelegate {
 public:
  ReadingDelegate(const Theme& theme, QObject* parent) : QStyledItemDelegate(parent), theme_(theme) {}

  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
    return {kWidth / 2, kRowHeight};
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    if (selected) painter->fillRect(option.rect, theme_.Color(Role::Selection));
    QRect area = option.rect.adjusted(kGrid, kGrid / 2, -kGrid, -kGrid / 2);
    const auto mark = static_cast<Mark>(index.data(TapeModel::MarkRole).toInt());
    DrawMark(*painter, QRectF(area.left(), area.center().y() - kGrid / 2, kGrid + 2, kGrid + 2), mark);
    area.setLeft(area.left() + 2 * kGrid + kGrid / 2);
    const QRect upper(area.left(), area.top(), area.width(), area.height() / 2);
    const QRect lower(area.left(), upper.bottom() + 1, area.width(), area.height() / 2);
    QFont strong = option.font;
    strong.setWeight(QFont::DemiBold);
    QFont small = option.font;
    small.setPixelSize(measure::kCaption);
    painter->setFont(small);
    painter->setPen(theme_.Color(selected ? Role::SelectionInk : Role::SoftInk));
    const QString when = index.data(TapeModel::WhenRole).toString();
    painter->drawText(upper, Qt::AlignRight | Qt::AlignVCenter, when);
    const int taken = painter->fontMetrics().horizontalAdvance(when) + kGrid;
    painter->setPen(theme_.Color(selected ? Role::SelectionInk : WordInk(mark)));
    painter->drawText(lower, Qt::AlignLeft | Qt::AlignVCenter,
                      painter->fontMetrics().elidedText(index.data(TapeModel::HowRole).toString(),
                                                        Qt::ElideRight, lower.width()));
    painter->setFont(strong);
    painter->setPen(theme_.Color(selected ? Role::SelectionInk : Role::Ink));
    painter->drawText(
        upper, Qt::AlignLeft | Qt::AlignVCenter,
        painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideMiddle, upper.width() - taken));
    painter->restore();
  }

 private:
  static Role WordInk(Mark mark) {
    return mark == Mark::Bad ? Role::Refused : mark == Mark::Waits ? Role::Warning : Role::SoftInk;
  }
  // A tick, a clock's ring, a cross, a dash: told apart without colour too.
  void DrawMark(QPainter& painter, const QRectF& at, Mark mark) const {
    const Role ink = mark == Mark::Good    ? Role::Good
                     : mark == Mark::Bad   ? Role::Refused
                     : mark == Mark::Waits ? Role::Warning
                                           : Role::SoftInk;
    painter.setPen(QPen(theme_.Color(ink), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    switch (mark) {
      case Mark::Good:
        painter.drawPolyline(
            QPolygonF({at.topLeft() + QPointF(0, at.height() * 0.55),
                       at.topLeft() + QPointF(at.width() * 0.4, at.height()), at.topRight()}));
        break;
      case Mark::Waits:
        painter.drawEllipse(at);
        painter.drawLine(at.center(), at.center() - QPointF(0, at.height() * 0.3));
        break;
      case Mark::Bad:
        painter.drawLine(at.topLeft(), at.bottomRight());
        painter.drawLine(at.topRight(), at.bottomLeft());
        break;
      default:
        painter.drawLine(QPointF(at.left(), at.center().y()), QPointF(at.right(), at.center().y()));
    }
  }

  const Theme& theme_;
};

}  // namespace

TapePanel::TapePanel(Office& office, const forms::Form* screen, std::function<void()> back, QWidget* parent)
    : QWidget(parent),
      ask_file([this] {
        return AskWhereToSave(this, tr("Guardar la cinta"), QStringLiteral("cinta.csv"),
                              tr("Hojas de cálculo (*.csv)"), QStringLiteral("csv"));
      }),
      office_(office),
      screen_(screen),
      back_(std::move(back)),
      model_(new TapeModel(office, screen, this)),
      list_(new QListView),
      title_(new QLabel),
      look_(office.reader) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kGrid / 2);
  title_->setProperty("role", "caption");
  column->addWidget(title_);
  list_->setModel(model_);
  list_->setItemDelegate(new ReadingDelegate(office.theme, list_));
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setUniformItemSizes(true);
  list_->setProperty("role", "readings");
  list_->setAccessibleName(tr("Cinta del lector"));
  list_->installEventFilter(this);
  connect(list_, &QListView::doubleClicked, this, [this] { Enter(); });
  column->addWidget(list_, 1);
  column->addWidget(Foot());
  // The tape grows under the operator's cursor, which stays on its reading.
  connect(model_, &QAbstractItemModel::modelAboutToBeReset, this, [this] { chosen_ = Chosen(); });
  connect(model_, &QAbstractItemModel::modelReset, this, [this] {
    ShowCounts();
    if (chosen_ != nullptr) list_->setCurrentIndex(model_->IndexOf(*chosen_));
  });
  ShowCounts();
  Say({}, false);
}

QSize TapePanel::sizeHint() const { return {kWidth, 40 * kGrid}; }

// Of one height whatever it asks, so that the list above never moves.
QWidget* TapePanel::Foot() {
  foot_ = new QStackedWidget;
  foot_->setFixedHeight(kFootHeight);
  told_ = new QLabel;
  told_->setWordWrap(true);
  told_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  foot_->addWidget(told_);

  const auto field = [this](const QString& accessible) {
    auto* line = new QLineEdit;
    line->setFixedHeight(measure::kField);
    line->setAccessibleName(accessible);
    line->installEventFilter(this);
    return line;
  };
  const auto caption = [](const QString& text) {
    auto* label = new QLabel(text);
    label->setProperty("role", "caption");
    return label;
  };
  auto* bind = new QWidget;
  auto* row = new QHBoxLayout(bind);
  row->setContentsMargins(0, 0, 0, 0);
  article_ = field(tr("Artículo al que se asigna el código"));
  units_ = field(tr("Unidades de una lectura"));
  units_->setAlignment(Qt::AlignRight);
  row->addWidget(Under(caption(tr("Asignar al artículo")), article_), 2);
  row->addWidget(Under(caption(tr("Unidades")), units_), 1);
  foot_->addWidget(bind);
  found_ = new QStringListModel(this);
  auto* completer = new QCompleter(found_, this);
  completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
  article_->setCompleter(completer);
  connect(article_, &QLineEdit::textEdited, this, &TapePanel::Complete);

  reason_ = field(tr("Por qué se descarta"));
  foot_->addWidget(Under(caption(tr("Por qué se descarta")), reason_));
  return foot_;
}

void TapePanel::Refresh() { model_->Refresh(); }

void TapePanel::Reach() {
  if (!list_->currentIndex().isValid() && model_->rowCount() > 0) list_->setCurrentIndex(model_->index(0));
  list_->setFocus();
}

QString TapePanel::Title() const { return title_->text(); }

QString TapePanel::Told() const { return told_->text(); }

void TapePanel::ShowCounts() {
  const int unknown = model_->Unknown();
  const QString what = screen_ != nullptr ? tr("Cinta del lector") : tr("Lecturas por atender");
  title_->setText(unknown == 0   ? what
                  : unknown == 1 ? tr("%1 · 1 sin artículo").arg(what)
                                 : tr("%1 · %2 sin artículo").arg(what).arg(unknown));
  emit TitleChanged(title_->text());
}

void TapePanel::Say(const QString& text, bool refused) {
  const QString keys =
      tr("Intro asigna o captura · Supr descarta · Ctrl+Z deshace · Ctrl+E guarda · Esc vuelve");
  told_->setText(text.isEmpty() ? keys : text);
  told_->setProperty("role", refused ? QStringLiteral("reason") : QStringLiteral("caption"));
  Restyle(*told_);
  foot_->setCurrentIndex(0);
}

std::shared_ptr<host::Lectura> TapePanel::Chosen() const { return model_->At(list_->currentIndex()); }

bool TapePanel::Try(const std::function<void()>& act) {
  QString refusal;
  try {
    act();
  } catch (const data::Error& error) {
    refusal = QString::fromStdString(error.what());
  }
  model_->ReadAnew();
  Say(refusal, !refusal.isEmpty());
  return refusal.isEmpty();
}

// ---- what the keys ask ----

void TapePanel::Enter() {
  const auto reading = Chosen();
  if (reading == nullptr) return;
  if (reading->estado == host::lectura::kSinArticulo) return AskForArticle();
  Try([&] { office_.host.Lecturas().Alimenta(*reading); });
}

void TapePanel::AskForArticle() {
  article_->clear();
  units_->setText(QStringLiteral("1"));
  foot_->setCurrentIndex(1);
  article_->setFocus();
}

void TapePanel::AskForReason() {
  if (Chosen() == nullptr) return;
  reason_->clear();
  foot_->setCurrentIndex(2);
  reason_->setFocus();
}

void TapePanel::ToTheList() {
  if (foot_->currentIndex() != 0) Say({}, false);
  list_->setFocus();
}

// "A-100 · Martillo": the key is what stands before the point.
void TapePanel::Bind() {
  const auto reading = Chosen();
  const QString article = article_->text().section(QStringLiteral(" · "), 0, 0).trimmed();
  const auto units = data::ParseNumber(units_->text().trimmed().toStdString());
  if (reading == nullptr || article.isEmpty()) return;
  Try([&] {
    if (!units) throw data::Error("Las unidades deben ser un número");
    office_.host.Lecturas().Asigna(*reading, article.toStdString(), *units);
  });
  ToTheList();
}

void TapePanel::Drop() {
  const auto reading = Chosen();
  if (reading == nullptr) return;
  Try([&] { office_.host.Lecturas().Descarta(*reading, reason_->text().toStdString()); });
  ToTheList();
}

// The newest first: each line is as the one before it left it.
void TapePanel::TakeBack() {
  std::vector<std::shared_ptr<host::Lectura>> chosen;
  for (const QModelIndex& index : list_->selectionModel()->selectedIndexes())
    chosen.push_back(model_->At(index));
  std::sort(chosen.begin(), chosen.end(), [](const auto& one, const auto& two) { return one->id > two->id; });
  Try([&] {
    for (const auto& reading : chosen) office_.host.Lecturas().Deshace(*reading);
  });
  list_->setFocus();
}

void TapePanel::Export() {
  const QString file = ask_file();
  if (file.isEmpty()) return;
  host::Tramo part;
  part.pendientes = screen_ == nullptr;
  if (screen_ != nullptr) part.documento = host::DocumentoDe(*screen_);
  if (Try([&] { office_.host.ExportaCinta(part, file.toStdString()); }))
    Say(tr("Guardada en %1").arg(file), false);
}

void TapePanel::Complete(const QString& typed) {
  using Found = std::vector<host::Hallazgo>;
  look_.At<Found>(
      [text = typed.toStdString()](data::EngineConnection& base) {
        return host::Busca(base, "Articulos", text, kOffered);
      },
      [this](std::optional<Found> found) {
        if (!found || !article_->hasFocus()) return;
        QStringList offered;
        for (const host::Hallazgo& one : *found) {
          offered += QString::fromStdString(one.clave + " · " + one.descripcion);
        }
        found_->setStringList(offered);
        article_->completer()->complete();
      });
}

bool TapePanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const auto& key = static_cast<const QKeyEvent&>(*event);
  const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  if (key.key() == Qt::Key_Escape) {
    if (watched == list_) {
      back_();
    } else {
      ToTheList();
    }
    return true;
  }
  if (watched == list_) {
    if (enter) return Enter(), true;
    if (key.key() == Qt::Key_Delete) return AskForReason(), true;
    if (key.matches(QKeySequence::Undo)) return TakeBack(), true;
    if (key.key() == Qt::Key_E && key.modifiers() == Qt::ControlModifier) return Export(), true;
    return false;
  }
  if (!enter) return QWidget::eventFilter(watched, event);
  if (watched == article_) {
    units_->setFocus();
    units_->selectAll();
  } else if (watched == units_) {
    Bind();
  } else {
    Drop();
  }
  return true;
}

}  // namespace tarvik::desktop
