#include "desktop/screens/matrix_view.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include "data/number.h"
#include "desktop/screens/grid_view.h"
#include "desktop/style/cell_text.h"
#include "desktop/style/layouts.h"
#include "desktop/style/theme.h"

namespace tarvik::desktop {

namespace {

constexpr int kSumWidth = 72;

double Sum(const forms::FlexGrid& grid, int first_row, int last_row, int first_col, int last_col) {
  double sum = 0;
  for (int row = first_row; row <= last_row; ++row) {
    for (int col = first_col; col <= last_col; ++col) sum += data::Val(grid.TextMatrix(row, col));
  }
  return sum;
}

// A sum of nothing is shown as empty.
QString Figure(double sum) { return sum == 0 ? QString() : QString::fromStdString(data::PlainNumber(sum)); }

}  // namespace

// A margin of sums, each beside its row or under its column, wherever the cells are scrolled to.
class MatrixView::Sums final : public QWidget {
 public:
  Sums(Office& office, const forms::FlexGrid& grid, GridView& cells, Qt::Orientation of)
      : office_(office), grid_(grid), cells_(cells), of_(of) {
    if (of == Qt::Horizontal) {
      setFixedHeight(measure::kRow);
      setAccessibleName(QObject::tr("Sumas por talla"));
    } else {
      setFixedWidth(kSumWidth);
      setAccessibleName(QObject::tr("Sumas por color"));
    }
    connect(&cells, &GridView::Moved, this, qOverload<>(&QWidget::update));
    connect(cells.horizontalHeader(), &QHeaderView::sectionResized, this, qOverload<>(&QWidget::update));
    connect(cells.verticalHeader(), &QHeaderView::sectionResized, this, qOverload<>(&QWidget::update));
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setPen(office_.theme.Color(Role::SoftInk));
    const QPoint origin = mapFromGlobal(cells_.viewport()->mapToGlobal(QPoint(0, 0)));
    const QRect room(origin, cells_.viewport()->size());
    const int last_row = grid_.Rows() - 1;
    const int last_col = grid_.Cols() - 1;
    if (of_ == Qt::Horizontal) {
      painter.setClipRect(QRect(room.left(), 0, room.width(), height()));
      for (int col = grid_.FixedCols(); col <= last_col; ++col) {
        if (cells_.isColumnHidden(col)) continue;
        const QRect place(origin.x() + cells_.columnViewportPosition(col), 0, cells_.columnWidth(col),
                          height());
        DrawFigures(painter, place.adjusted(0, 0, -measure::kGrid, 0),
                    Figure(Sum(grid_, grid_.FixedRows(), last_row, col, col)), true);
      }
    } else {
      painter.setClipRect(QRect(0, room.top(), width(), room.height()));
      for (int row = grid_.FixedRows(); row <= last_row; ++row) {
        const int shown = row - grid_.FixedRows();
        if (cells_.isRowHidden(shown)) continue;
        const QRect place(0, origin.y() + cells_.rowViewportPosition(shown), width(),
                          cells_.rowHeight(shown));
        DrawFigures(painter, place.adjusted(0, 0, -measure::kGrid, 0),
                    Figure(Sum(grid_, row, row, grid_.FixedCols(), last_col)), true);
      }
    }
  }

 private:
  Office& office_;
  const forms::FlexGrid& grid_;
  GridView& cells_;
  Qt::Orientation of_;
};

MatrixView::MatrixView(Office& office, frmMallaModelos& matrix, QWidget* parent)
    : ScreenView(office, matrix, parent), matrix_(matrix) {
  Covered("AutoResizer1");  // the layouts keep the proportions here
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* body = new QVBoxLayout;
  body->setContentsMargins(measure::kGrid * 2, measure::kGrid * 3 / 2, measure::kGrid * 2,
                           measure::kGrid * 3 / 2);
  body->setSpacing(measure::kGrid * 3 / 2);
  column->addLayout(body, 1);
  body->addWidget(Heading());
  body->addWidget(Cells(), 1);
  body->addWidget(Buttons());

  keys_ = new KeyCaps;
  column->addWidget(KeyLine(*keys_));
}

// As large as the model needs, within what a desk has.
QSize MatrixView::sizeHint() const {
  const int sizes = matrix_.fg2.Cols() - matrix_.fg2.FixedCols();
  const int colours = matrix_.fg2.Rows() - matrix_.fg2.FixedRows();
  const QSize around(measure::kGrid * 36, measure::kGrid * 28);
  const QSize wanted = around + QSize(sizes * measure::kGrid * 10, colours * measure::kField);
  return wanted.expandedTo({measure::kGrid * 80, measure::kGrid * 44})
      .boundedTo({measure::kGrid * 160, measure::kGrid * 90});
}

QWidget* MatrixView::Heading() {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(measure::kGrid * 3 / 2);
  title_ = new QLabel(QString::fromStdString(Screen().Caption()));
  title_->setProperty("role", "title");
  layout->addWidget(title_);
  auto* description = Text("txtDescrip", {}, tr("Descripción del modelo"));
  description->setProperty("role", "soft");
  layout->addWidget(description, 1);
  auto* left = new QVBoxLayout;
  left->setSpacing(0);
  // The caption's mnemonic belongs to a box that can be typed in; this one is only read.
  auto* caption = Caption("lblCantidadRestante");
  caption->setAlignment(Qt::AlignRight);
  left->addWidget(caption);
  remainder_ = Text("txtRemanente", {}, tr("Cantidad restante"));
  remainder_->setProperty("role", "total");
  remainder_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  left->addWidget(remainder_);
  layout->addLayout(left);
  return row;
}

QWidget* MatrixView::Cells() {
  auto* box = new QWidget;
  auto* layout = new QGridLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  cells_ = Grid("fg2", tr("Colores y tallas"));
  QList<int> all;
  for (int col = 0; col < matrix_.fg2.Cols(); ++col) all.append(col);
  cells_->Numbers(all);
  cells_->AsMatrix();
  CellEditor("txtCelda", *cells_);
  by_size_ = new Sums(office(), matrix_.fg2, *cells_, Qt::Horizontal);
  by_colour_ = new Sums(office(), matrix_.fg2, *cells_, Qt::Vertical);
  total_ = new QLabel;
  total_->setProperty("role", "soft");
  total_->setAccessibleName(tr("Suma de todo"));
  total_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  total_->setContentsMargins(0, 0, measure::kGrid, 0);
  layout->addWidget(cells_, 0, 0);
  layout->addWidget(by_colour_, 0, 1);
  layout->addWidget(by_size_, 1, 0);
  layout->addWidget(total_, 1, 1);
  layout->setColumnStretch(0, 1);
  layout->setRowStretch(0, 1);
  return box;
}

QWidget* MatrixView::Buttons() {
  return AtRight(
      {Button("cmdCancelar", QStringLiteral("outlined")), Button("cmdAceptar", QStringLiteral("primary"))});
}

Keys MatrixView::KeysNow() const {
  const forms::Control* active = Screen().ActiveControl();
  if (active == &matrix_.txtCelda) {
    return {{tr("Intro"), tr("guardar y a la derecha")}, {tr("Esc"), tr("dejar como estaba")}};
  }
  if (active == &matrix_.fg2) {
    return {{tr("0 a 9"), tr("cantidad")}, {tr("Intro"), tr("corregir")}, {tr("Supr"), tr("vaciar")},
            {tr("Alt+A"), tr("aceptar")},  {tr("Alt+C"), tr("cancelar")}, {tr("Tab"), tr("botones")}};
  }
  return {{tr("Intro"), tr("oprimir")}, {tr("Tab"), tr("siguiente")}};
}

// Green when all is spread, red while it is not: the figure tells it too, never the colour alone.
void MatrixView::ShowRemainder() {
  const bool spread = data::Val(matrix_.txtRemanente.Text()) == 0;
  remainder_->setProperty("spread", spread ? "all" : "part");
  Restyle(*remainder_);
}

void MatrixView::ControlChanged(forms::Control& control, forms::Aspect aspect) {
  ScreenView::ControlChanged(control, aspect);
  if (&control == &matrix_.txtRemanente) ShowRemainder();
}

void MatrixView::CellChanged(forms::FlexGrid& grid, int row, int col) {
  ScreenView::CellChanged(grid, row, col);
  by_size_->update();
  by_colour_->update();
  total_->setText(Figure(Sum(grid, grid.FixedRows(), grid.Rows() - 1, grid.FixedCols(), grid.Cols() - 1)));
}

void MatrixView::CaptionChanged() {
  ScreenView::CaptionChanged();
  title_->setText(QString::fromStdString(Screen().Caption()));
}

void MatrixView::FocusMoved(forms::Control* from, forms::Control* to) {
  ScreenView::FocusMoved(from, to);
  keys_->Show(KeysNow());
}

void MatrixView::Shown(bool modal) {
  QList<int> all;
  for (int col = 0; col < matrix_.fg2.Cols(); ++col) all.append(col);
  cells_->Numbers(all);
  ScreenView::Shown(modal);
  ShowRemainder();
  keys_->Show(KeysNow());
}

}  // namespace tarvik::desktop
