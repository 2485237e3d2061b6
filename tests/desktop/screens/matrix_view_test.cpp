// A model spread over its colours and sizes by keyboard alone, in the window that an operator sees.
#include "desktop/screens/matrix_view.h"

#include <QHeaderView>
#include <QPushButton>
#include <QTimer>

#include "tests/desktop/escritorio.h"
#include "wizard/document_wizard.h"

namespace tarvik::desktop {
namespace {

class EscritorioDeModelos : public Escritorio {
 protected:
  // Down to the price with the model's key: the next Enter opens the matrix, and `hand` works on it.
  void Spread(const char* model, const char* quantity, std::function<void(MatrixView&)> hand) {
    frmEntradasWizard& form = New();
    entry = &form;
    Type(QStringLiteral("COM"));
    Press(Qt::Key_Return);
    Press(Qt::Key_Return);
    program->Platform().on_modal = [this, hand = std::move(hand)](forms::Form& matrix) {
      QTimer::singleShot(0, [this, hand, &matrix] {
        Settle();
        hand(*qobject_cast<MatrixView*>(program->ViewOf(matrix)));
        if (matrix.Visible()) matrix.Unload();
      });
    };
    Type(QString::fromUtf8(model));
    Press(Qt::Key_Return);
    Type(QString::fromUtf8(quantity));
    Press(Qt::Key_Return);
    Press(Qt::Key_Return);
    program->Platform().on_modal = nullptr;
    Settle();
  }
  static frmMallaModelos& Model(MatrixView& view) { return dynamic_cast<frmMallaModelos&>(view.Screen()); }
  static GridView& Cells(MatrixView& view) {
    return *qobject_cast<GridView*>(view.WidgetOf(Model(view).fg2));
  }

  frmEntradasWizard* entry = nullptr;
};

TEST_F(EscritorioDeModelos, EveryControlHasItsPlaceInTheViewAndAName) {
  Spread("CAM", "9", [this](MatrixView& view) { ExpectWhole(Model(view)); });
}

TEST_F(EscritorioDeModelos, AModelBecomesTwelveLinesByKeyAlone) {
  Spread("CAM", "12", [](MatrixView& view) {
    EXPECT_TRUE(view.isVisible());
    EXPECT_EQ(QApplication::focusWidget(), view.WidgetOf(Model(view).fg2));
    // Enter goes on to the next cell, over the spacers and into the next colour.
    for (int cell = 0; cell < 12; ++cell) {
      Type(QStringLiteral("1"));
      Press(Qt::Key_Return);
    }
    // All is spread: the button has the focus, and one Enter more accepts.
    EXPECT_EQ(QApplication::focusWidget(), view.WidgetOf(Model(view).cmdAceptar));
    Press(Qt::Key_Return);
    EXPECT_FALSE(view.isVisible());
  });
  EXPECT_EQ(entry->CuantasPartidas(), 12);
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "12");
  EXPECT_EQ(One("SELECT SUM(cantidad) FROM entpart"), "12");
  EXPECT_EQ(QApplication::focusWidget(), Widget(*entry, 4));
}

TEST_F(EscritorioDeModelos, ColoursAreRowsWithNamesAndSizesAreColumns) {
  Spread("CAM", "9", [](MatrixView& view) {
    const QAbstractItemModel& cells = *Cells(view).model();
    EXPECT_EQ(cells.headerData(1, Qt::Vertical).toString(), QStringLiteral("Azul marino  AZ"));
    EXPECT_EQ(cells.headerData(3, Qt::Horizontal).toString(), QStringLiteral("CH\nChica"));
    const auto swatch = cells.headerData(1, Qt::Vertical, Qt::DecorationRole).value<QPixmap>().toImage();
    EXPECT_EQ(swatch.pixelColor(8, 8), QColor(0x1F, 0x2B, 0x6B));
    // The spacers are the model's; the operator sees none.
    EXPECT_TRUE(Cells(view).isRowHidden(0));
    EXPECT_TRUE(Cells(view).isColumnHidden(0));
    EXPECT_TRUE(Cells(view).isColumnHidden(2));
    EXPECT_FALSE(Cells(view).isColumnHidden(3));
    EXPECT_TRUE(Cells(view).isRowHidden(4));
  });
}

TEST_F(EscritorioDeModelos, TheRemainderSaysHowMuchIsLeftAndTurnsGreen) {
  Spread("CAM", "5", [](MatrixView& view) {
    QWidget* remainder = view.WidgetOf(Model(view).txtRemanente);
    EXPECT_EQ(remainder->property("spread").toString(), QStringLiteral("part"));
    Type(QStringLiteral("8"));
    Press(Qt::Key_Return);
    EXPECT_EQ(qobject_cast<QLabel*>(remainder)->text(), QStringLiteral("-3"));
    EXPECT_EQ(remainder->property("spread").toString(), QStringLiteral("part"));
    EXPECT_FALSE(view.WidgetOf(Model(view).cmdAceptar)->isEnabled());
    Press(Qt::Key_Left);
    Type(QStringLiteral("5"));
    Press(Qt::Key_Return);
    EXPECT_EQ(remainder->property("spread").toString(), QStringLiteral("all"));
    EXPECT_TRUE(view.WidgetOf(Model(view).cmdAceptar)->isEnabled());
  });
  EXPECT_EQ(entry->CuantasPartidas(), 0);  // never accepted
}

TEST_F(EscritorioDeModelos, ABlockedCellLooksUnlikeAFreeOne) {
  // The boot has no khaki: its colour has no row. The demonstration's shirt has all; take one away.
  program->Host().Conexion().Run("UPDATE prods SET talla = 'XX' WHERE articulo = 'CAM-CA-GD'", {});
  Spread("CAM", "9", [](MatrixView& view) {
    frmMallaModelos& matrix = Model(view);
    int blocked = 0;
    for (int row = 3; row <= matrix.fg2.Rows() - 2; ++row) {
      for (int col = 3; col <= matrix.fg2.Cols() - 2; ++col) blocked += matrix.fg2.Blocked(row, col) ? 1 : 0;
    }
    ASSERT_EQ(blocked, 1);
    const QImage picture = Cells(view).viewport()->grab().toImage();
    auto inks = [&](int row, int col) {
      const QRect place = Cells(view).visualRect(Cells(view).model()->index(row - 2, col));
      QSet<QRgb> seen;
      for (int x = place.left() + 4; x < place.right() - 4; ++x) {
        for (int y = place.top() + 4; y < place.bottom() - 4; ++y) seen.insert(picture.pixel(x, y));
      }
      return seen.size();
    };
    for (int row = 3; row <= matrix.fg2.Rows() - 2; ++row) {
      for (int col = 3; col <= matrix.fg2.Cols() - 2; ++col) {
        if (row == matrix.fg2.Row() && col == matrix.fg2.Col()) continue;
        EXPECT_EQ(inks(row, col) > 1, matrix.fg2.Blocked(row, col)) << row << ',' << col;
      }
    }
  });
}

TEST_F(EscritorioDeModelos, TheEditorLiesOverItsCellAndEscLeavesTheCell) {
  Spread("CAM", "9", [](MatrixView& view) {
    Type(QStringLiteral("4"));
    QWidget* editor = view.WidgetOf(Model(view).txtCelda);
    EXPECT_TRUE(editor->isVisible());
    EXPECT_EQ(editor->geometry(), Cells(view).CurrentCell());
    Press(Qt::Key_Escape);
    EXPECT_FALSE(editor->isVisible());
    EXPECT_EQ(Model(view).fg2.TextMatrix(3, 3), "");
    EXPECT_EQ(QApplication::focusWidget(), &Cells(view));
  });
}

TEST_F(EscritorioDeModelos, AltCLeavesTheMatrixAndTheKeyIsRefusedWithItsReason) {
  Spread("CAM", "9", [](MatrixView& view) {
    view.activateWindow();
    (void)QTest::qWaitForWindowActive(&view);
    const QPointer<MatrixView> left = &view;
    QTest::keyClick(&view, Qt::Key_C, Qt::AltModifier);
    QTest::qWait(150);  // a button pressed by its letter comes up again first
    EXPECT_TRUE(left == nullptr || !left->Screen().Open());  // the view goes with its screen
  });
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(entry->txtFields(campo::Articulo).Text(), "CAM");
  EXPECT_EQ(Widget(*entry, 4)->property("refused").toBool(), true);
}

TEST_F(EscritorioDeModelos, TheWindowsCloseBoxCancels) {
  Spread("CAM", "9", [](MatrixView& view) { view.close(); });
  EXPECT_EQ(entry->CuantasPartidas(), 0);
  EXPECT_TRUE(entry->Open());
}

TEST_F(EscritorioDeModelos, TheScreenKeepsItsProportions) {
  Spread("CAM", "9", [](MatrixView& view) {
    frmMallaModelos& matrix = Model(view);
    view.resize(700, 420);
    QTest::qWait(0);
    const double before = double(matrix.cmdAceptar.Left()) / matrix.ScaleWidth();
    const int cell = Cells(view).columnWidth(3);
    view.resize(1100, 420);
    QTest::qWait(0);
    EXPECT_NEAR(double(matrix.cmdAceptar.Left()) / matrix.ScaleWidth(), before, 0.01);
    EXPECT_GT(Cells(view).columnWidth(3), cell);
  });
}

TEST_F(EscritorioDeModelos, FortyColoursByThirtySizesFitAWindowAndScroll) {
  auto& base = program->Host().Conexion();
  for (int color = 0; color < 40; ++color) {
    base.Run("INSERT INTO colores (color, descrip, visualcolor) VALUES (?, ?, ?)",
             {"c" + std::to_string(color), "Color " + std::to_string(color), color * 6000});
  }
  for (int size = 0; size < 30; ++size) {
    base.Run("INSERT INTO tallas (talla, descrip) VALUES (?, ?)",
             {"t" + std::to_string(size), "Talla " + std::to_string(size)});
  }
  base.Run("INSERT INTO modelos (modelo, descrip) VALUES ('GRANDE', 'Modelo grande')", {});
  for (int color = 0; color < 40; ++color) {
    for (int size = 0; size < 30; ++size) {
      base.Run(
          "INSERT INTO prods (articulo, descrip, modelo, color, talla, costo_u, impuesto) VALUES (?, ?, "
          "'GRANDE', ?, ?, 5, 'IVA16')",
          {"G" + std::to_string(color * 30 + size), "Grande", "c" + std::to_string(color),
           "t" + std::to_string(size)});
    }
  }
  Spread("GRANDE", "2", [](MatrixView& view) {
    EXPECT_LE(view.width(), 1366);
    EXPECT_LE(view.height(), 768);
    EXPECT_GE(Cells(view).columnWidth(3), 50);
    EXPECT_EQ(Model(view).fg2.Rows(), 44);
    EXPECT_EQ(Model(view).fg2.Cols(), 34);
    Press(Qt::Key_Left);  // backwards from the first cell: round to the end of the matrix
    EXPECT_TRUE(Cells(view).viewport()->rect().intersects(Cells(view).CurrentCell()));
  });
}

}  // namespace
}  // namespace tarvik::desktop
