// The base is checked from the window: a sound one is said to be, the damage of another is listed with what
// to do, and what can be repaired safely is repaired on request.
#include "desktop/windows/revision_window.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

#include "desktop/frame/notices.h"
#include "desktop/reading/half_posted.h"
#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

class Revision : public Escritorio {
 protected:
  void Afectada() {
    New();
    Type("COM");
    Press(Qt::Key_Return);
    Press(Qt::Key_Return);
    for (const char* article : {"MAR-16", "CIN-AIS"}) Line(QString::fromLatin1(article), "2");
    Press(Qt::Key_F5);
    Settle();
    boxes.clear();
  }
  RevisionWindow& Ventana() { return program->Window().Revision(); }
  void Revisa() {
    Ventana().Reach();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !Ventana().Busy(); }, 20000));
  }
  QString Dice() {
    QStringList words;
    for (const auto* label : Ventana().findChildren<QLabel*>()) {
      if (label->isVisible()) words << label->text();
    }
    return words.join('\n');
  }
  QPushButton* Boton(const QString& accessible) {
    for (auto* button : Ventana().findChildren<QPushButton*>()) {
      if (button->accessibleName() == accessible) return button;
    }
    return nullptr;
  }
  void Sql(const std::string& text) { program->Host().Conexion().Run(text, {}); }
};

TEST_F(Revision, ASoundBaseSaysSoWithTheDay) {
  Afectada();
  Revisa();
  EXPECT_EQ(Ventana().Table().rowCount(), 0);
  EXPECT_TRUE(Dice().contains("La base está sana.\nRevisada el ")) << Dice().toStdString();
  EXPECT_FALSE(Boton("Reparar lo que se puede reparar sin duda")->isEnabled());
}

TEST_F(Revision, WhatIsWrongIsListedAndWhatIsSafeIsMendedWhenAsked) {
  Afectada();
  Sql("UPDATE prods SET ALM1 = 77 WHERE articulo = 'MAR-16'");
  Revisa();
  ASSERT_EQ(Ventana().Table().rowCount(), 1);
  EXPECT_EQ(Ventana().Table().item(0, 0)->text(), "Columna del almacén");
  EXPECT_EQ(Ventana().Table().item(0, 3)->text(), "MAR-16");
  EXPECT_EQ(Ventana().Table().item(0, 6)->text(), "se puede reparar");
  yes = false;
  Boton("Reparar lo que se puede reparar sin duda")->click();
  EXPECT_EQ(boxes.size(), 1U);
  EXPECT_FALSE(Ventana().Busy());
  yes = true;
  Boton("Reparar lo que se puede reparar sin duda")->click();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !Ventana().Busy(); }, 20000));
  EXPECT_EQ(Ventana().Table().item(0, 6)->text(), "reparado");
  Ventana().Check();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !Ventana().Busy(); }, 20000));
  EXPECT_EQ(Ventana().Table().rowCount(), 0);
}

TEST_F(Revision, EnterOpensTheDocumentOfAFinding) {
  Afectada();
  Sql("UPDATE movsinv SET cantidad = 9 WHERE id_entrada = 1");
  Revisa();
  int row = 0;
  while (row < Ventana().Table().rowCount() &&
         Ventana().Table().item(row, 0)->text() != "Movimiento distinto de su renglón") {
    ++row;
  }
  ASSERT_LT(row, Ventana().Table().rowCount());
  EXPECT_EQ(Ventana().Table().item(row, 1)->text(), "Entrada 1");
  Ventana().Table().setCurrentCell(row, 0);
  QTest::keyClick(&Ventana().Table(), Qt::Key_Return);
  Settle();
  ASSERT_EQ(program->Platform().Screens().size(), 1U);
  const auto& form = dynamic_cast<frmEntradasWizard&>(*program->Platform().Screens().back());
  EXPECT_EQ(form.Entrada, 1);
  EXPECT_EQ(form.Modo, "CONSULTA");
}

TEST_F(Revision, AHalfPostedDocumentIsMendedTooAndItsCardGoes) {
  Afectada();
  Sql("UPDATE existenciaalmacen SET existencia = existencia - 2 WHERE articulo = 'CIN-AIS' AND almacen = 1");
  Sql("DELETE FROM movsinv WHERE id_entrada = 2");
  program->Window().Half().LookAtAll();
  ASSERT_TRUE(QTest::qWaitFor([&] { return program->Window().Notices().isVisible(); }, 10000));
  Revisa();
  ASSERT_GE(Ventana().Table().rowCount(), 1);
  Ventana().Mend();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !Ventana().Busy(); }, 20000));
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv WHERE operacion = 'EN'"), "2");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !program->Window().Notices().isVisible(); }, 10000));
}

TEST_F(Revision, WhoCancelsWaitsNoLonger) {
  Afectada();
  Sql("UPDATE prods SET ALM1 = 77 WHERE articulo = 'MAR-16'");
  Revisa();
  ASSERT_EQ(Ventana().Table().rowCount(), 1);
  Sql("UPDATE prods SET ALM1 = 78 WHERE articulo = 'CIN-AIS'");
  ASSERT_TRUE(QTest::qWaitForWindowActive(&Ventana()));
  Ventana().Check();
  ASSERT_TRUE(Ventana().Busy());
  EXPECT_TRUE(Dice().contains("Revisando la base")) << Dice().toStdString();
  QTest::keyClick(&Ventana(), Qt::Key_Escape);
  EXPECT_FALSE(Ventana().Busy());
  EXPECT_TRUE(Ventana().isVisible());
  QTest::qWait(500);
  EXPECT_EQ(Ventana().Table().rowCount(), 1) << "what comes late is passed over, and what was there stays";
  QTest::keyClick(&Ventana(), Qt::Key_Escape);
  EXPECT_FALSE(Ventana().isVisible());
}

TEST_F(Revision, ARepairIsWaitedForAndItsEndIsTold) {
  Afectada();
  Sql("UPDATE prods SET ALM1 = 77 WHERE articulo = 'MAR-16'");
  Revisa();
  bool mended = false;
  QObject::connect(&Ventana(), &RevisionWindow::Mended, [&] { mended = true; });
  program->Platform().on_box = [](forms::BoxKind, const std::string&, int) { return true; };
  Ventana().Mend();
  ASSERT_TRUE(Ventana().Busy());
  EXPECT_TRUE(Dice().contains("Reparando")) << Dice().toStdString();
  Ventana().Cancel();
  EXPECT_TRUE(Ventana().Busy()) << "half a repair is none";
  ASSERT_TRUE(QTest::qWaitFor([&] { return mended; }, 10000));
  EXPECT_FALSE(Ventana().Busy());
}

TEST_F(Revision, TheListIsCopiedAsText) {
  Afectada();
  Sql("UPDATE prods SET ALM1 = 77 WHERE articulo = 'MAR-16'");
  Revisa();
  Ventana().Copy();
  const QStringList lines = QApplication::clipboard()->text().trimmed().split('\n');
  ASSERT_EQ(lines.size(), 2);
  EXPECT_TRUE(lines[0].startsWith("Qué es\tDocumento\t"));
  EXPECT_TRUE(lines[1].startsWith("Columna del almacén\t")) << lines[1].toStdString();
}

}  // namespace
}  // namespace tarvik::desktop
