#include "desktop/screens/goods_in_view.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextEdit>

#include "data/number.h"
#include "desktop/screens/grid_view.h"
#include "desktop/style/layouts.h"
#include "desktop/style/theme.h"
#include "goods_in/columnas.h"
#include "host/vistazo.h"

namespace tarvik::desktop {

GoodsInView::GoodsInView(Office& office, frmEntradasWizard& wizard, QWidget* parent)
    : DocumentView(office, wizard, parent), wizard_(wizard), aid_(office.reader) {
  Covered("Timer1");
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* body = new QVBoxLayout;
  body->setContentsMargins(measure::kGrid * 2, measure::kGrid, measure::kGrid * 2, measure::kGrid);
  body->setSpacing(measure::kGrid + 2);
  column->addLayout(body, 1);

  auto* tools = new QWidget;
  auto* right = new QHBoxLayout(tools);
  right->setContentsMargins(0, 0, 0, 0);
  right->addWidget(Button("Command3", QStringLiteral("quiet"), tr("Rutina del anfitrión")));
  right->addWidget(Check("Check4"));
  body->addWidget(TitleRow(tools));
  body->addWidget(Header());

  GridView* lines = Grid("fg2", tr("Renglones"));
  lines->Numbers({columna_entrada::Cantidad, columna_entrada::Precio, columna_entrada::Importe,
                  columna_entrada::Presentaciones});
  lines->Stretch(4);
  CellEditor("txtEdit", *lines);
  body->addWidget(WithTape(lines), 1);
  body->addWidget(EntryRow());

  auto* choices = new QWidget;
  auto* left = new QHBoxLayout(choices);
  left->setContentsMargins(0, 0, 0, 0);
  left->setSpacing(measure::kGrid * 2);
  left->addWidget(Check("Check2", QString::fromStdString(wizard.Label10(2).Caption())));
  left->addWidget(Check("Check3", QString::fromStdString(wizard.Label10(1).Caption())));
  left->addWidget(Button("Command1", QStringLiteral("outlined")));
  // The captions stand on the boxes themselves.
  Covered("Label10", 1);
  Covered("Label10", 2);
  body->addWidget(Foot(choices));
  column->addWidget(KeyLine());
}

QWidget* GoodsInView::Header() {
  QBoxLayout* row = nullptr;
  QWidget* band = Band(&row);
  row->addWidget(Labelled(Caption("Label12"), Field(campo::Concepto, tr("Concepto de la entrada")), 150));
  auto* description = Field("RichTextBox3", tr("Descripción del concepto"));
  row->addWidget(Labelled(QStringLiteral(" "), description), 2);
  row->addWidget(Labelled(Caption("Label25"), Field(campo::Almacen, tr("Almacén")), 80));
  warehouse_ = new QLabel;
  warehouse_->setProperty("role", "soft");
  warehouse_->setAccessibleName(tr("Nombre del almacén"));
  warehouse_->setFixedHeight(measure::kField);
  row->addWidget(Labelled(QStringLiteral(" "), warehouse_, 120));
  row->addWidget(Labelled(Caption("Label23"), Date("DTPicker1", tr("Fecha del documento")), 140));
  auto* notes = Notes("RichTextBox2", tr("Observaciones al movimiento de entrada"));
  notes->setFixedHeight(measure::kField + measure::kGrid * 2);
  row->addWidget(Labelled(Caption("Label10", 0), notes), 3);
  return band;
}

QWidget* GoodsInView::EntryRow() {
  auto* band = new QFrame;
  band->setProperty("role", "band");
  auto* column = new QVBoxLayout(band);
  column->setContentsMargins(measure::kGrid * 2, measure::kGrid, measure::kGrid * 2, measure::kGrid);
  column->setSpacing(4);
  auto* row = new QHBoxLayout;
  row->setSpacing(measure::kGrid + 2);
  row->addWidget(Labelled(Caption("Label17"), Field(campo::Articulo, tr("Artículo"))), 3);
  auto number = [this](int index, const QString& accessible) {
    QLineEdit* field = Field(index, accessible);
    field->setAlignment(Qt::AlignRight);
    return field;
  };
  row->addWidget(Labelled(Caption("Label18"), number(5, tr("Cantidad"))), 2);
  row->addWidget(Labelled(Caption("Label5"), Field(campo::Unidad, tr("Unidad"))), 1);
  row->addWidget(Labelled(Caption("Label19"), number(6, tr("Precio"))), 2);
  row->addWidget(Labelled(Caption("Label6"), number(9, tr("Importe del renglón"))), 2);
  row->addWidget(Labelled(tr("Clave adicional"), Field(campo::SegundaClave, tr("Clave adicional"))), 3);
  row->addWidget(Labelled(tr("Dato 1"), Field(campo::Dato1, tr("Primer dato de la clave adicional"))), 2);
  row->addWidget(Labelled(tr("Dato 2"), Field(campo::Dato2, tr("Segundo dato de la clave adicional"))), 2);
  row->addWidget(Labelled(Caption("Label4"), number(28, tr("Cuántas presentaciones"))), 2);
  row->addWidget(
      Labelled(QStringLiteral(" "), Field(campo::UnidadDePresentacion, tr("Unidad de la presentación"))), 1);
  auto* store = Button("Command6", QStringLiteral("outlined"), tr("Guardar la línea, como F9"));
  store->setProperty("compact", true);
  store->setFixedSize(measure::kField + measure::kGrid, measure::kField);
  row->addWidget(Labelled(QStringLiteral(" "), store));
  column->addLayout(row);
  auto* aids = new QHBoxLayout;
  auto* description = Text("txtFields", 1, tr("Descripción del artículo"));
  stock_ = new QLabel;
  stock_->setProperty("role", "soft");
  stock_->setAccessibleName(tr("Existencia del artículo en el almacén"));
  aids->addWidget(description, 1);
  aids->addWidget(stock_);
  column->addLayout(aids);
  return band;
}

Keys GoodsInView::OwnKeys() const {
  if (wizard_.ActiveControl() == &wizard_.fg2 || wizard_.ActiveControl() == &wizard_.txtEdit) return {};
  return {{tr("Alt+↑"), tr("renglones")}};
}

void GoodsInView::AtRest() {
  DocumentView::AtRest();
  LookAtAids();
}

// The name of the warehouse and the stock of the article there, read once the focus has left their fields.
void GoodsInView::LookAtAids() {
  const forms::Control* active = wizard_.ActiveControl();
  const std::pair wanted{wizard_.txtFields(campo::Almacen).Text(), wizard_.txtFields(campo::Articulo).Text()};
  if (wanted == aided_) return ShowAid(found_);
  if (active == &wizard_.txtFields(campo::Almacen) || active == &wizard_.txtFields(campo::Articulo)) {
    if (wanted.first != aided_.first) warehouse_->clear();
    return stock_->clear();
  }
  aided_ = wanted;
  found_.reset();
  const auto warehouse = data::ParseNumber(wanted.first);
  if (!warehouse) {
    aid_.Forget();
    return ShowAid({});
  }
  aid_.At<Aid>(
      [warehouse, article = wanted.second](data::EngineConnection& base) {
        return Aid{host::NombreDeAlmacen(base, *warehouse), host::ExistenciaDe(base, *warehouse, article)};
      },
      [this](const std::optional<Aid>& found) {
        found_ = found;
        LookAtAids();  // another article may be under way by now
      });
}

void GoodsInView::ShowAid(const std::optional<Aid>& aid) {
  warehouse_->setText(aid ? QString::fromStdString(aid->warehouse) : QString());
  const bool stock = aid && aid->stock;
  stock_->setText(stock ? tr("Existencia: %1").arg(QString::fromStdString(data::PlainNumber(*aid->stock)))
                        : QString());
}

}  // namespace tarvik::desktop
