#include "desktop/screens/goods_out_view.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextEdit>

#include "desktop/printing/page_text.h"
#include "desktop/screens/grid_view.h"
#include "desktop/style/layouts.h"
#include "desktop/style/theme.h"
#include "goods_out/columnas.h"
#include "host/anfitrion.h"
#include "host/archivos_de_la_base.h"

namespace tarvik::desktop {

namespace {

constexpr int kShortKey = 80;
constexpr int kKey = 120;
constexpr int kMark = 104;  // four marks with their fields stand in one row of a shop's monitor
constexpr int kDate = 130;
constexpr int kAmount = 90;

QHBoxLayout* Row() {
  auto* row = new QHBoxLayout;
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(measure::kGrid + 2);
  return row;
}

}  // namespace

GoodsOutView::GoodsOutView(Office& office, frmSalidasWizard& wizard, QWidget* parent)
    : DocumentView(office, wizard, parent), wizard_(wizard) {
  for (const char* panel : {"Picture1", "Picture2", "Picture3"}) Covered(panel);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* body = new QVBoxLayout;
  body->setContentsMargins(measure::kGrid * 2, measure::kGrid / 2, measure::kGrid * 2, measure::kGrid / 2);
  body->setSpacing(measure::kGrid - 2);
  column->addLayout(body, 1);

  auto* tools = new QWidget;
  auto* right = Row();
  tools->setLayout(right);
  right->addWidget(Check("Check1", {}, QLatin1Char('A')));
  QLineEdit* employee = Field(campo::Empleado, tr("Empleado"));
  employee->setFixedWidth(kKey);
  right->addWidget(employee);
  right->addSpacing(measure::kGrid * 2);
  right->addWidget(Check("Check4"));
  body->addWidget(TitleRow(tools));
  body->addWidget(Header());
  body->addWidget(Lines(), 1);
  body->addWidget(EntryRow());
  body->addWidget(Remarks());

  auto* choices = new QWidget;
  auto* left = Row();
  choices->setLayout(left);
  left->addWidget(Check("Check2", QString::fromStdString(wizard.Label10(2).Caption())));
  left->addWidget(Check("Check3", QString::fromStdString(wizard.Label10(1).Caption())));
  Covered("Label10", 1);  // the captions stand on the boxes themselves
  Covered("Label10", 2);
  left->addSpacing(measure::kGrid * 3);
  left->addWidget(Button("Command1", QStringLiteral("outlined")));
  body->addWidget(Foot(choices));
  column->addWidget(KeyLine());
}

QWidget* GoodsOutView::Header() {
  auto* band = new QFrame;
  band->setProperty("role", "band");
  auto* column = new QVBoxLayout(band);
  column->setContentsMargins(measure::kGrid * 2, measure::kGrid / 2, measure::kGrid * 2, measure::kGrid / 2);
  column->setSpacing(measure::kGrid / 2);

  auto* first = Row();
  first->addWidget(Labelled(Caption("Label12"), Field(campo::Concepto, tr("Concepto de la salida")), kKey));
  first->addWidget(Labelled(BlankCaption(), Field("RichTextBox3", tr("Descripción del concepto"))), 2);
  first->addWidget(Labelled(Caption("Label25"), Field(campo::Almacen, tr("Almacén")), kShortKey));
  first->addWidget(Labelled(Caption("Label23"), Date("DTPicker1", tr("Fecha del documento")), kDate));
  first->addWidget(Labelled(Caption("Label6"), Field(campo::Cliente, tr("Cliente")), kKey));
  first->addWidget(Labelled(BlankCaption(), Field(campo::NombreDelCliente, tr("Nombre del cliente"))), 3);
  first->addWidget(Labelled(Caption("Label1"), Field(campo::EntradaRemota, tr("Entrada remota")), kAmount));
  first->addWidget(
      Labelled(Caption("Label9"), Date("DTPicker2", tr("Fecha de retorno del material")), kDate + 30));
  column->addLayout(first);

  auto* second = Row();
  auto mark = [&](QCheckBox* box, QLineEdit* field) {
    field->setFixedWidth(kMark);
    second->addWidget(box);
    second->addWidget(field);
    second->addSpacing(measure::kGrid * 2);
  };
  mark(Check("SSCheck1", {}, QLatin1Char('T')), Field(campo::AlmacenDestino, tr("Almacén de destino")));
  mark(Check("Check5", {}, QLatin1Char('s')), Field(campo::Sucursal, tr("Sucursal")));
  mark(Check("SSCheck2", {}, QLatin1Char('e')), Field(campo::EstacionDestino, tr("Estación de destino")));
  QLineEdit* purchase = Field(campo::Compra, tr("Número de compra"));
  purchase->setFixedWidth(kMark);
  purchase->setPlaceholderText(tr("Compra"));
  second->addWidget(purchase);
  second->addStretch();
  column->addLayout(second);
  return band;
}

QWidget* GoodsOutView::Lines() {
  GridView* lines = Grid("fg2", tr("Renglones"));
  lines->Numbers({columna_salida::Cantidad, columna_salida::Existencia, columna_salida::Precio,
                  columna_salida::Presentaciones});
  lines->Alarm(2);
  lines->Stretch(5);
  CellEditor("txtEdit", *lines);
  auto* beside = new QWidget;
  auto* column = new QVBoxLayout(beside);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  column->addWidget(Caption("Label7"));
  sheet_ = new PageBrowser(host::ArchivosDeLaBase(office().host.Base().Address()), this);
  sheet_->setFocusPolicy(Qt::NoFocus);
  Page("wb", *sheet_, tr("Hoja de distribución"));
  column->addWidget(sheet_);
  return WithTape(lines, beside, tr("Hoja"));
}

QWidget* GoodsOutView::EntryRow() {
  auto* band = new QFrame;
  band->setProperty("role", "band");
  auto* column = new QVBoxLayout(band);
  column->setContentsMargins(measure::kGrid * 2, measure::kGrid / 2, measure::kGrid * 2, measure::kGrid / 2);
  column->setSpacing(2);
  auto* row = Row();
  auto number = [this](int index, const QString& accessible) {
    QLineEdit* field = Field(index, accessible);
    field->setAlignment(Qt::AlignRight);
    return field;
  };
  row->addWidget(Labelled(Caption("Label17"), Field(campo::Articulo, tr("Artículo"))), 3);
  row->addWidget(Labelled(tr("Clave adicional"), Field(campo::SegundaClave, tr("Clave adicional"))), 3);
  row->addWidget(Labelled(Caption("Label18"), number(5, tr("Cantidad"))), 2);
  row->addWidget(Labelled(Caption("Label5"), Field(campo::Unidad, tr("Unidad"))), 1);
  row->addWidget(Labelled(Caption("Label19"), number(6, tr("Precio"))), 2);
  row->addWidget(Labelled(tr("Dato 1"), Field(campo::Dato1, tr("Primer dato de la clave adicional"))), 2);
  row->addWidget(Labelled(tr("Dato 2"), Field(campo::Dato2, tr("Segundo dato de la clave adicional"))), 2);
  row->addWidget(Labelled(Caption("Label4"), number(28, tr("Cuántas presentaciones"))), 2);
  row->addWidget(
      Labelled(BlankCaption(), Field(campo::UnidadDePresentacion, tr("Unidad de la presentación"))), 1);
  auto* store = Button("Command6", QStringLiteral("outlined"), tr("Guardar la línea, como F9"));
  store->setProperty("compact", true);
  store->setFixedSize(measure::kField + measure::kGrid, measure::kField);
  row->addWidget(Labelled(BlankCaption(), store));
  column->addLayout(row);
  column->addWidget(Text("txtFields", 1, tr("Descripción del artículo")));
  return band;
}

QWidget* GoodsOutView::Remarks() {
  auto* box = new QWidget;
  auto* row = Row();
  box->setLayout(row);
  auto* notes = Notes("RichTextBox2", tr("Observaciones al movimiento"));
  notes->setFixedHeight(measure::kField + 2);
  row->addWidget(Labelled(Caption("Label10", 0), notes), 3);
  row->addWidget(Labelled(Caption("Label11"), Combo("Combo1", tr("Direcciones de embarque"))), 2);
  row->addWidget(Labelled(BlankCaption(), Field(campo::DireccionDeEmbarque, tr("Dirección de embarque"))), 3);
  auto sum = [&](const char* caption, int index, const QString& accessible) {
    QLineEdit* field = Field(index, accessible);
    field->setAlignment(Qt::AlignRight);
    row->addWidget(Labelled(Caption(caption), field, kAmount));
  };
  sum("Label3", 10, tr("Renglones"));
  sum("Label2", 8, tr("Unidades"));
  return box;
}

void GoodsOutView::ShowSheet(const std::string& file) {
  if (host::ArchivosDeLaBase(office().host.Base().Address()).Incluye(file)) return sheet_->clear();
  QFile page(QString::fromStdString(forms::NativePath(file)));
  if (page.open(QIODevice::ReadOnly)) {
    sheet_->setHtml(QString::fromUtf8(page.readAll()));
  } else {
    sheet_->setPlainText(tr("No se puede leer la hoja: %1").arg(page.errorString()));
  }
}

Keys GoodsOutView::OwnKeys() const {
  return {{QStringLiteral("F6"), tr("re enviar")}, {tr("↑"), tr("renglones")}, {tr("Alt+T"), tr("traspaso")}};
}

}  // namespace tarvik::desktop
