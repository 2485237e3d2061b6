// A goods-out in its window: stock to hand out, a hand at the keys and at the mouse, and what a deployment's
// routines add.
#pragma once

#include <QApplication>
#include <QLabel>
#include <functional>
#include <string>

#include "desktop/printing/preview_window.h"
#include "desktop/screens/goods_out_view.h"
#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {

class SalidasEnElEscritorio : public Escritorio {
 protected:
  SalidasEnElEscritorio() {
    Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('PRE', 'S', 'Préstamo')");
    for (const char* article : {"MAR-16", "TAL-12", "CIN-AIS", "CAB-12"}) {
      program->Host().Conexion().Run(
          "INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, ?, 100)", {article});
    }
  }

  void Sql(const std::string& text) { program->Host().Conexion().Run(text, {}); }
  void Hook(const std::string& key, std::function<void(frmSalidasWizard&)> routine) {
    program->Host().Gancho(key, [routine = std::move(routine)](forms::Form& form, host::AmbienteLocal&) {
      routine(dynamic_cast<frmSalidasWizard&>(form));
    });
  }
  // A deployment that works with stations and purchases shows what the design hides.
  void ShowHidden() {
    Hook("SALIDAS001", [](frmSalidasWizard& form) {
      form.SSCheck2.Visible(true);
      form.MultiCombo1(6).Visible(true);
      form.txtFields(campo::EstacionDestino).Visible(true);
      form.txtFields(campo::Compra).Visible(true);
    });
  }
  frmSalidasWizard& Last() {
    Settle();
    return dynamic_cast<frmSalidasWizard&>(*program->Platform().Screens().back());
  }
  frmSalidasWizard& NewOut() {
    program->Door().NuevaSalida();
    frmSalidasWizard& form = Last();
    form.Check2.Value(0);  // no paper: the preview is a window of its own
    return form;
  }
  // A new document with its concept, the hand in the article.
  frmSalidasWizard& Selling() {
    frmSalidasWizard& form = NewOut();
    Type(QStringLiteral("vta"));
    Press(Qt::Key_Return);
    Press(Qt::Key_Return);
    EXPECT_EQ(form.ActiveControl(), &form.txtFields(campo::Articulo));
    return form;
  }
  // One line of hammers as another program of the suite left it pending.
  void PendingWith(double quantity) {
    Sql("INSERT INTO salidas (salida, folio, tipo_doc, f_emision, almacen, importe, estado, ocupado) VALUES "
        "(70, 7, 'VTA', '2024-03-05', 1, 0, 'PE', 0)");
    program->Host().Conexion().Run(
        "INSERT INTO salpart (id_salida, salida, tipo_doc, articulo, cantidad, precio) VALUES (701, 70, "
        "'VTA', 'MAR-16', ?, 10)",
        {quantity});
  }

  template <class W>
  W* As(forms::Form& form, const forms::Control& control) {
    return qobject_cast<W*>(program->ViewOf(form)->WidgetOf(control));
  }
  GridView* Grid(frmSalidasWizard& form) { return As<GridView>(form, form.fg2); }
  void ClickOn(forms::Form& form, const forms::Control& control) {
    QTest::mouseClick(program->ViewOf(form)->WidgetOf(control), Qt::LeftButton);
    Settle();
  }
  // Along the keyboard's way until the hand is there.
  static void Walk(frmSalidasWizard& form, const forms::Control& target, bool back = false) {
    for (int steps = 0; steps < 40 && form.ActiveControl() != &target; ++steps) {
      Press(back ? Qt::Key_Backtab : Qt::Key_Tab, back ? Qt::ShiftModifier : Qt::NoModifier);
      Settle();
    }
    ASSERT_EQ(form.ActiveControl(), &target);
  }
  static void Letter(Qt::Key key) {
    Press(key, Qt::AltModifier);
    QTest::qWait(150);  // a box pressed by its letter comes up again first
  }
  std::string LabelNamed(forms::Form& form, const QString& name) {
    QTest::qWait(20);  // what the suite has no control for is read once all is at rest
    Settle();          // and has arrived, however busy the machine is
    for (const QLabel* label : program->ViewOf(form)->findChildren<QLabel*>()) {
      if (label->accessibleName() == name) return label->text().toStdString();
    }
    return "(no está)";
  }
  std::string Chip(forms::Form& form) { return LabelNamed(form, QStringLiteral("Estado del documento")); }
  std::string AllSaid() const {
    std::string all;
    for (const std::string& box : boxes) all += "[" + box + "]\n";
    return all;
  }
  // How many dots of this colour a cell of the grid has.
  int Dots(frmSalidasWizard& form, int row, int col, const QColor& color) {
    GridView* grid = Grid(form);
    const QImage image =
        grid->viewport()->grab(grid->visualRect(grid->model()->index(row - 1, col))).toImage();
    int dots = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) dots += image.pixelColor(x, y).rgb() == color.rgb() ? 1 : 0;
    }
    return dots;
  }
  static QList<PreviewWindow*> Previews() {
    QList<PreviewWindow*> found;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (auto* window = qobject_cast<PreviewWindow*>(widget)) found += window;
    }
    return found;
  }
};

}  // namespace tarvik::desktop
