// Rows come page by page; the stock after each is read beside them, once for the whole ledger of the article.
#include "desktop/lists/kardex_view.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

#include "desktop/lists/cell_values.h"
#include "desktop/lists/list_frame.h"
#include "desktop/lists/list_tools.h"
#include "desktop/lists/stock_chart.h"
#include "desktop/style/key_caps.h"
#include "desktop/style/list_cells.h"
#include "desktop/style/theme.h"
#include "host/anfitrion.h"
#include "host/listados.h"

namespace tarvik::desktop {
namespace {

QLineEdit* DateField(const QString& name, QWidget* parent) {
  auto* field = new QLineEdit(parent);
  field->setAccessibleName(name);
  field->setPlaceholderText(QStringLiteral("dd/mm/aaaa"));
  field->setToolTip(QStringLiteral("21/11/2026, o un mes entero: 11/2026"));
  field->setFixedSize(15 * measure::kGrid, measure::kField);
  return field;
}

}  // namespace

KardexView::KardexView(Office& office, Reader& reader, QWidget* parent)
    : QWidget(parent),
      office_(office),
      reader_(reader),
      model_(new LedgerModel(reader, office.host.Ambiente().FormatoCantidad(),
                             office.host.Ambiente().FormatoImporte(), this)),
      title_(new QLabel(this)),
      aside_(new QLabel(this)),
      from_(DateField(QStringLiteral("Desde la fecha"), this)),
      to_(DateField(QStringLiteral("Hasta la fecha"), this)),
      reason_(new QLabel(this)),
      chart_(new StockChart(office.theme, office.host.Ambiente().FormatoCantidad(), this)),
      table_(new QTableView(this)),
      sums_(new QLabel) {
  const auto [column, body] = FrameOfList(*this, Head(), *reason_);
  body->addWidget(chart_);
  table_->setModel(model_);
  DressTable(*table_, office.theme, QStringLiteral("Movimientos del artículo"), LedgerModel::Concept);
  SetWidths(*table_, {10, 6, 10, 8, 26, 9, 9, 9, 10, 11, 8});
  tools_ = new ListTools(
      {office, reader, *model_, *table_, QStringLiteral("Kardex"), QStringLiteral("Kardex")}, Sums(), *this);
  tools_->Foot().setFixedWidth(56 * measure::kGrid);  // three sums
  body->addWidget(table_, 1);
  auto* keys = new KeyCaps;
  keys->Show({{tr("Intro"), tr("abrir documento")},
              {tr("Esc"), tr("volver a existencias")},
              {tr("F4"), tr("columnas")},
              {tr("Ctrl+C"), tr("copiar")},
              {tr("Ctrl+E"), tr("exportar")}});
  column->addWidget(KeyLine(*keys, &tools_->Foot()));
  Connect();
  setFocusProxy(table_);
}

KardexView::~KardexView() {
  if (task_) task_->Drop();
}

QLayout* KardexView::Head() {
  auto* head = new QHBoxLayout;
  head->setSpacing(measure::kGrid);
  title_->setProperty("role", "title");
  aside_->setProperty("role", "soft");
  head->addWidget(title_);
  head->addSpacing(measure::kGrid);
  head->addWidget(aside_, 1);
  for (const auto& [text, field] : {std::pair{"Del", from_}, std::pair{"al", to_}}) {
    auto* caption = new QLabel(QString::fromLatin1(text), this);
    caption->setProperty("role", "soft");
    head->addWidget(caption);
    head->addWidget(field);
  }
  return head;
}

QWidget* KardexView::Sums() {
  sums_->setAccessibleName(QStringLiteral("Sumas de los movimientos"));
  sums_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  return sums_;
}

void KardexView::Connect() {
  for (QWidget* widget : {static_cast<QWidget*>(table_), static_cast<QWidget*>(from_),
                          static_cast<QWidget*>(to_), static_cast<QWidget*>(chart_)}) {
    widget->installEventFilter(this);
  }
  for (QLineEdit* field : {from_, to_}) {
    connect(field, &QLineEdit::textChanged, this, [this] { TakeDates(false); });
    connect(field, &QLineEdit::editingFinished, this, [this] { TakeDates(true); });
  }
  connect(table_, &QTableView::doubleClicked, this, &KardexView::Open);
  auto* bar = table_->verticalScrollBar();
  connect(bar, &QScrollBar::valueChanged, this, [this, bar](int value) {
    if (value > bar->maximum() - bar->pageStep()) model_->fetchMore({});
  });
  connect(model_, &PagedModel::Failed, this, &KardexView::Fail);
  connect(model_, &PagedModel::Rested, this, [this] {
    if (!model_->Failing()) reason_->hide();
    if (!table_->currentIndex().isValid() && model_->rowCount() > 0) {
      table_->setCurrentIndex(model_->index(0, 0));
    }
  });
  connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& now) { chart_->Mark(model_->DateAt(now.row())); });
}

void KardexView::Fail(const QString& reason) {
  reason_->setText(
      QStringLiteral("No se pudieron leer los movimientos: %1. Los datos están como estaban. Pulse "
                     "F5 para leerlos de nuevo.")
          .arg(reason));
  reason_->show();
}

void KardexView::Show(const Article& article) {
  title_->setText(QStringLiteral("Kardex de %1").arg(article.key));
  aside_->setText(article.place.isEmpty()
                      ? article.description
                      : QStringLiteral("%1  ·  almacén %2").arg(article.description, article.place));
  for (QLineEdit* field : {from_, to_}) {
    const QSignalBlocker quiet(field);
    field->clear();
    field->setProperty("refused", false);
    Restyle(*field);
  }
  filter_ = {article.key.toStdString(), article.warehouse};
  points_.reset();
  model_->ShowNone();
  ShowBalances();
  tools_->Foot().Quiet();
  Refresh();
}

void KardexView::Refresh() {
  model_->Show(filter_);
  ReadBalances();
}

// What was typed counts once it is a whole date; what never becomes one is marked as the field is left.
void KardexView::TakeDates(bool left) {
  bool changed = false;
  const auto take = [&](QLineEdit& field, std::optional<data::Date>& date, bool last) {
    const std::string typed = field.text().simplified().toStdString();
    const auto dates = host::EntiendeFiltro(typed).fechas;
    const bool refused = !typed.empty() && !dates && left;
    if (field.property("refused").toBool() != refused) {
      field.setProperty("refused", refused);
      Restyle(field);
    }
    if (!typed.empty() && !dates) return;
    const auto wanted = dates ? std::optional(last ? dates->second : dates->first) : std::nullopt;
    changed = changed || wanted != date;
    date = wanted;
  };
  take(*from_, filter_.desde, false);
  take(*to_, filter_.hasta, true);
  if (!changed) return;
  model_->Show(filter_);
  ShowBalances();
}

void KardexView::ReadBalances() {
  if (task_) task_->Drop();
  task_ = std::make_shared<Reader::Task>();
  auto reading = std::make_shared<host::LecturaDeKardex>(filter_.articulo, filter_.almacen);
  auto step = [this, &reader = reader_, task = task_, reading](data::EngineConnection& connection) {
    if (reading->Paso(connection)) return true;
    auto points = std::make_shared<const std::vector<host::PuntoDeKardex>>(std::move(*reading).Puntos());
    reader.Deliver(task, [this, points] {
      points_ = points;
      ShowBalances();
    });
    return false;
  };
  reader_.Run(task_, Urgency::Page, std::move(step), [this](const QString& reason) { Fail(reason); });
}

void KardexView::ShowBalances() {
  model_->UseBalances(points_);
  if (!points_) {
    chart_->Show({}, filter_);
    return sums_->setText(QString());
  }
  chart_->Show(host::ExistenciaPorDia(*points_), filter_);
  const host::SumasDeKardex sums = host::SumaKardex(*points_, filter_);
  const std::string pattern = office_.host.Ambiente().FormatoCantidad();
  sums_->setText((sums.cuantos == 1 ? QStringLiteral("1 movimiento")
                                    : Formatted(static_cast<double>(sums.cuantos), "###,###,##0") +
                                          QStringLiteral(" movimientos")) +
                 QStringLiteral("    entra %1    sale %2")
                     .arg(Formatted(sums.entra, pattern), Formatted(sums.sale, pattern)));
}

QString KardexView::SumsText() const { return sums_->text(); }

void KardexView::SaveColumns() { tools_->SaveColumns(); }

void KardexView::Open() {
  const QModelIndex current = table_->currentIndex();
  if (!current.isValid()) return;
  if (const auto document = model_->DocumentAt(current.row())) {
    emit DocumentRequested(*document);
  } else {
    tools_->Foot().Say(QStringLiteral("El documento de este movimiento ya no está en la base."));
  }
}

bool KardexView::eventFilter(QObject* watched, QEvent* event) {
  if (watched != chart_ && tools_->Takes(watched, event)) return true;
  const bool pressed = event->type() == QEvent::KeyPress;
  if (!pressed && event->type() != QEvent::ShortcutOverride) return QWidget::eventFilter(watched, event);
  const auto& key = static_cast<const QKeyEvent&>(*event);
  if ((key.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) return QWidget::eventFilter(watched, event);
  std::function<void()> act;
  switch (key.key()) {
    case Qt::Key_Escape:
      act = [this] { emit Left(); };
      break;
    case Qt::Key_F5:
      act = [this] { Refresh(); };
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      // A key held down opens one document. In a date Enter is done with the date.
      act = [this, watched, again = key.isAutoRepeat()] {
        if (watched == table_ && !again) Open();
        if (watched != table_) table_->setFocus();
      };
      break;
    default:
      return QWidget::eventFilter(watched, event);
  }
  event->accept();
  if (pressed) act();
  return true;
}

}  // namespace tarvik::desktop
