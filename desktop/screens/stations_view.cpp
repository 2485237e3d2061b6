#include "desktop/screens/stations_view.h"

#include <QDateEdit>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "data/number.h"
#include "desktop/screens/grid_view.h"
#include "desktop/style/layouts.h"
#include "desktop/style/theme.h"
#include "host/vistazo.h"

namespace tarvik::desktop {

namespace {

constexpr int kStation = 150;
constexpr int kDate = 150;
constexpr int kPicture = 16;

QIcon Plus(const QColor& ink, qreal ratio) {
  QPixmap picture(QSize(kPicture, kPicture) * ratio);
  picture.setDevicePixelRatio(ratio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setPen(QPen(ink, 2, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(kPicture / 2, 2, kPicture / 2, kPicture - 2);
  painter.drawLine(2, kPicture / 2, kPicture - 2, kPicture / 2);
  return picture;
}

}  // namespace

StationsView::StationsView(Office& office, frmMovEstaciones& transfer, QWidget* parent)
    : ScreenView(office, transfer, parent), transfer_(transfer), name_(office.reader) {
  for (int box : {0, 1}) Covered("MultiCombo1", box);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* body = new QVBoxLayout;
  body->setContentsMargins(measure::kGrid * 2, measure::kGrid, measure::kGrid * 2, measure::kGrid);
  body->setSpacing(measure::kGrid + 2);
  column->addLayout(body, 1);

  title_ = new QLabel(QString::fromStdString(Screen().Caption()));
  title_->setProperty("role", "title");
  body->addWidget(title_);
  body->addWidget(Header());
  grid_ = Grid("grid", tr("Renglones del traspaso"));
  body->addWidget(grid_, 1);
  body->addWidget(EntryRow());
  body->addWidget(Buttons());

  keys_ = new KeyCaps;
  lines_ = new QLabel;
  lines_->setProperty("role", "soft");
  lines_->setAccessibleName(tr("Renglones"));
  column->addWidget(KeyLine(*keys_, lines_));
}

QLabel* StationsView::NameOfStation(const QString& accessible) {
  auto* label = new QLabel;
  label->setProperty("role", "soft");
  label->setAccessibleName(accessible);
  label->setFixedHeight(measure::kField);
  return label;
}

QWidget* StationsView::Header() {
  QBoxLayout* row = nullptr;
  QWidget* band = Band(&row);
  from_ = NameOfStation(tr("Nombre de la estación que entrega"));
  to_ = NameOfStation(tr("Nombre de la estación que recibe"));
  row->addWidget(
      Under(Caption("lblLabel", 0), Field(campo_de_traspaso::Entrega, tr("Estación que entrega")), kStation));
  row->addWidget(Under(BlankCaption(), from_), 2);
  auto* arrow = new QLabel(QStringLiteral("→"));
  arrow->setProperty("role", "title");
  arrow->setAlignment(Qt::AlignCenter);
  arrow->setFixedHeight(measure::kField);
  row->addWidget(Under(BlankCaption(), arrow, measure::kGrid * 5));
  row->addWidget(
      Under(Caption("Label1"), Field(campo_de_traspaso::Recibe, tr("Estación que recibe")), kStation));
  row->addWidget(Under(BlankCaption(), to_), 2);
  row->addWidget(Under(Caption("lblLabel", 1), Date("DTPicker1", tr("Fecha de aplicación")), kDate));
  return band;
}

QWidget* StationsView::EntryRow() {
  QBoxLayout* row = nullptr;
  QWidget* band = Band(&row);
  row->addWidget(Under(Caption("lblLabel", 2), Field(campo_de_traspaso::Articulo, tr("Artículo"))), 2);
  auto* description = Field(campo_de_traspaso::Descripcion, tr("Descripción del artículo"));
  description->setProperty("blocked", true);  // for show
  row->addWidget(Under(BlankCaption(), description), 4);
  QLineEdit* quantity = Field(campo_de_traspaso::Cantidad, tr("Cantidad"));
  quantity->setAlignment(Qt::AlignRight);
  row->addWidget(Under(Caption("lblLabel", 3), quantity), 1);
  // The suite's button has a picture and no caption.
  auto* add = Button("Command1", QStringLiteral("outlined"), tr("Agregar el renglón"));
  add->setProperty("compact", true);
  add->setIcon(Plus(office().theme.Color(Role::Accent), devicePixelRatioF()));
  add->setFixedSize(measure::kField + measure::kGrid, measure::kField);
  row->addWidget(Under(BlankCaption(), add));
  return band;
}

QWidget* StationsView::Buttons() {
  return AtRight({Button("cmdCancelar", QStringLiteral("outlined")),
                  Button("cmdPendiente", QStringLiteral("outlined")),
                  Button("cmdConfirmar", QStringLiteral("primary"))});
}

Keys StationsView::KeysNow() const {
  const forms::Control* active = Screen().ActiveControl();
  if (active == &transfer_.grid) return {{tr("Supr"), tr("quitar el renglón")}, {tr("Tab"), tr("siguiente")}};
  Keys keys{{tr("Intro"), tr("siguiente")}};
  if (active == &transfer_.txtFields(campo_de_traspaso::Entrega) ||
      active == &transfer_.txtFields(campo_de_traspaso::Recibe)) {
    keys += {tr("↓"), tr("estaciones")};
  }
  if (active == &transfer_.txtFields(campo_de_traspaso::Articulo)) keys += {tr("↓"), tr("artículos")};
  keys += {QStringLiteral("F1"), tr("ayuda")};
  return keys;
}

// The routines define the columns: those that hold only numbers are aligned as numbers, except the keys in
// the first column, and the widest of the others takes the remaining room.
void StationsView::DressColumns() {
  const forms::FlexGrid& grid = transfer_.grid;
  QList<int> numbers;
  int widest = -1;
  for (int col = 0; col < grid.Cols(); ++col) {
    bool number = col > 0 && grid.Rows() > grid.FixedRows();
    for (int row = grid.FixedRows(); number && row < grid.Rows(); ++row) {
      const std::string& text = grid.TextMatrix(row, col);
      number = text.empty() || data::ParseNumber(text).has_value();
    }
    if (number) {
      numbers += col;
    } else if (widest < 0 || grid.ColWidth(col) > grid.ColWidth(widest)) {
      widest = col;
    }
  }
  if (numbers == numbers_ && widest == widest_) return;
  numbers_ = numbers;
  widest_ = widest;
  grid_->Numbers(numbers);
  grid_->Stretch(widest);
  grid_->Reset();
}

void StationsView::AtRest() {
  keys_->Show(KeysNow());
  DressColumns();
  const int count = std::max(0, transfer_.grid.Rows() - transfer_.grid.FixedRows());
  lines_->setText(count == 0   ? tr("sin renglones")
                  : count == 1 ? tr("1 renglón")
                               : tr("%1 renglones").arg(count));
  NameStations();
}

// Once the focus has left the field of a key.
void StationsView::NameStations() {
  const Names wanted{transfer_.txtFields(campo_de_traspaso::Entrega).Text(),
                     transfer_.txtFields(campo_de_traspaso::Recibe).Text()};
  const bool from = wanted.first == named_.first, to = wanted.second == named_.second;
  from_->setText(from ? QString::fromStdString(found_.first) : QString());
  to_->setText(to ? QString::fromStdString(found_.second) : QString());
  const forms::Control* active = Screen().ActiveControl();
  const bool typing = (active == &transfer_.txtFields(campo_de_traspaso::Entrega) && !from) ||
                      (active == &transfer_.txtFields(campo_de_traspaso::Recibe) && !to);
  if ((from && to) || typing) return;
  named_ = wanted;
  found_ = {};
  name_.At<Names>(
      [wanted](data::EngineConnection& base) {
        return Names{host::NombreDeEstacion(base, wanted.first), host::NombreDeEstacion(base, wanted.second)};
      },
      [this](std::optional<Names> found) {
        found_ = std::move(found).value_or(Names());
        NameStations();
      });
}

void StationsView::CaptionChanged() {
  ScreenView::CaptionChanged();
  title_->setText(QString::fromStdString(Screen().Caption()));
}

void StationsView::FocusMoved(forms::Control* from, forms::Control* to) {
  ScreenView::FocusMoved(from, to);
  keys_->Show(KeysNow());
}

}  // namespace tarvik::desktop
