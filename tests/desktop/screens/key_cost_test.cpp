// What a key costs: one that sends no statement by itself makes the window send none either, however many
// lines the document has; what stands beside the screen is read elsewhere.
#include <algorithm>

#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

class CostoDeUnaTecla : public Escritorio {
 protected:
  [[nodiscard]] std::int64_t Sent() const { return program->Host().Conexion().SoFar().statements; }
  // What the window's connection sends while these keys are struck and come to rest.
  template <class Keys>
  std::int64_t During(Keys&& keys) {
    Settle();
    const std::int64_t before = Sent();
    keys();
    Settle();
    return Sent() - before;
  }
  // All labels of the window in one text.
  [[nodiscard]] QString Shown() const {
    QString all;
    for (const auto* label : program->Window().findChildren<QLabel*>())
      all += label->text() + QLatin1Char('|');
    return all;
  }
};

TEST_F(CostoDeUnaTecla, LettersFiguresAndArrowsSendNothing) {
  Receiving();
  for (int line = 0; line < 11; ++line) Line(QString::fromStdString(Article(line)), QStringLiteral("3"));
  EXPECT_EQ(During([] { Type(QStringLiteral("MARTIL")); }), 0) << "in the article field";
  EXPECT_EQ(During([] {
              for (int i = 0; i < 6; ++i) Press(Qt::Key_Backspace);
            }),
            0);
  Type(QString::fromStdString(Article(0)));
  Press(Qt::Key_Return);
  EXPECT_EQ(During([] { Type(QStringLiteral("12.5")); }), 0) << "in the quantity";
  EXPECT_EQ(During([] { Press(Qt::Key_Left); }), 0);
  EXPECT_EQ(During([] { Press(Qt::Key_Up, Qt::AltModifier); }), 0) << "to the lines";
  EXPECT_EQ(During([] {
              for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Up, Qt::Key_Left, Qt::Key_Down}) Press(key);
            }),
            0);
}

TEST_F(CostoDeUnaTecla, WhatIsStoredIsReadBesideTheWindowAndShown) {
  Receiving();
  Line(QString::fromStdString(Article(0)), QStringLiteral("3"));
  Settle();
  EXPECT_NE(Shown().indexOf(QStringLiteral("1 renglón · guardado")), -1) << Shown().toStdString();
  EXPECT_NE(Shown().indexOf(QStringLiteral("Pendiente")), -1) << Shown().toStdString();
}

TEST_F(CostoDeUnaTecla, TheStockOfAnArticleIsReadOnceTheFocusHasLeftIt) {
  program->Host().Conexion().Run(
      "INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, ?, 7)", {Article(0)});
  Receiving();
  Type(QString::fromStdString(Article(0)));
  Settle();
  EXPECT_EQ(Shown().indexOf(QStringLiteral("Existencia: ")), -1) << "it may be the beginning of another";
  Press(Qt::Key_Return);
  Settle();
  EXPECT_NE(Shown().indexOf(QStringLiteral("Existencia: ")), -1) << Shown().toStdString();
}

// Another station lets go of the document: seen by itself, within a few seconds.
TEST_F(CostoDeUnaTecla, WhatOthersWriteIsSeenWithoutAKey) {
  frmEntradasWizard& form = Receiving();
  Line(QString::fromStdString(Article(0)), QStringLiteral("3"));
  Settle();
  const auto other = program->Host().Base().Connect();
  other->Run("UPDATE entradas SET ocupado = 0 WHERE entrada = ?", {form.Entrada});
  other->Notify();
  EXPECT_TRUE(QTest::qWaitFor([&] { return Shown().contains(QStringLiteral("Liberado")); }, 6000))
      << Shown().toStdString();
}

}  // namespace
}  // namespace tarvik::desktop
