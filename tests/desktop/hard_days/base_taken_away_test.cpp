// A base whose file is taken away, may not be read, or stands on a full disk.
#include "data/error.h"
#include "desktop/lists/document_list.h"
#include "tests/desktop/hard_days/dia_dificil.h"

namespace tarvik::desktop {
namespace {

TEST_F(DiaDificil, ABaseTakenAwayUnderAnOpenScreenIsToldAndPutBackLosesNothing) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  fs::rename(File("tienda.db"), File("tienda.aparte"));
  Line(QStringLiteral("MAR-16"), QStringLiteral("4"));
  Settle();
  ASSERT_FALSE(boxes.empty());
  EXPECT_TRUE(Said("El archivo de la base fue movido o borrado: " + File("tienda.db").string())) << AllSaid();
  EXPECT_TRUE(form.Open());
  EXPECT_NE(Contenido(DayLog()).find("movido o borrado"), std::string::npos);

  fs::rename(File("tienda.aparte"), File("tienda.db"));
  boxes.clear();
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
  form.Enter(form.txtFields(campo::Articulo));
  Settle();
  Article(1, "5");
  EXPECT_TRUE(boxes.empty()) << AllSaid();
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "2");
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(One("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv"), "2");
}

TEST_F(DiaDificil, EveryBoxHasWordsThoughTheBaseThatKeepsThemIsGone) {
  Receiving();
  Article(0, "3");
  program->Platform().on_box = nullptr;
  Lector reader({Qt::Key_Return});
  fs::rename(File("tienda.db"), File("tienda.aparte"));
  Type(QStringLiteral("MAR-16"));
  for (const char* typed : {"4", "10", ""}) {
    Press(Qt::Key_Return);
    program->Window().activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
    Type(QString::fromUtf8(typed));
  }
  fs::rename(File("tienda.aparte"), File("tienda.db"));
  ASSERT_FALSE(reader.read.isEmpty());
  for (const QString& words : reader.read) {
    EXPECT_FALSE(words.trimmed().isEmpty()) << reader.read.join('|').toStdString();
  }
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
}

TEST_F(DiaDificil, AListWhoseBaseWasTakenAwaySaysWhatIsSafeAndReadsAgain) {
  Receiving();
  Article(0, "3");
  program->Platform().Screens().back()->Close();
  QTest::qWait(50);
  auto& list = program->Window().List(ListKind::Entradas);
  ASSERT_TRUE(QTest::qWaitFor([&] { return list.Model().rowCount() == 1 && !list.Model().Busy(); }));
  const auto reason = [&]() -> QString {
    for (const QLabel* label : list.findChildren<QLabel*>()) {
      if (label->property("role") == "reason" && label->isVisible()) return label->text();
    }
    return {};
  };
  fs::rename(File("tienda.db"), File("tienda.aparte"));
  QTest::keyClick(&list.FilterField(), Qt::Key_F5);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !reason().isEmpty(); }));
  EXPECT_TRUE(reason().contains(QStringLiteral("El archivo de la base fue movido o borrado")));
  EXPECT_TRUE(reason().contains(QStringLiteral("Los documentos están como estaban. Pulse F5")));
  EXPECT_EQ(list.Model().rowCount(), 1) << "what was read stays to be seen";
  fs::rename(File("tienda.aparte"), File("tienda.db"));
  QTest::keyClick(&list.FilterField(), Qt::Key_F5);
  EXPECT_TRUE(QTest::qWaitFor([&] { return reason().isEmpty() && list.Model().rowCount() == 1; }));
  EXPECT_TRUE(boxes.empty()) << AllSaid();
}

TEST_F(DiaDificil, ABaseThatMayNoLongerBeReadServesWhoHasItOpenAndRefusesTheNextWithItsReason) {
  Receiving();
  Article(0, "3");
  fs::permissions(folder.path().toStdString(), fs::perms(0755));
  fs::permissions(File("tienda.db"), fs::perms::none);
  {
    const SinPermiso nobody;
    Article(1, "4");
    EXPECT_TRUE(boxes.empty()) << AllSaid();
    std::string why;
    try {
      (void)Start("BETO", "E2");
    } catch (const data::Error& error) {
      why = error.what();
    }
    EXPECT_NE(why.find("No se puede abrir la base"), std::string::npos) << why;
    EXPECT_NE(why.find("tienda.db: no hay permiso"), std::string::npos) << why;
  }
  fs::permissions(File("tienda.db"), fs::perms(0644));
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "2");
}

TEST_F(DiaDificil, ABaseOnAFullDiskIsToldAndTheScreenDoesNotCallItsLineStored) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  EXPECT_EQ(Stored(form), "1 renglón · guardado");
  auto& base = program->Host().Conexion();
  base.Run("PRAGMA max_page_count = 1", {});  // the engine takes it for the size that the file has
  int tries = 0;
  while (boxes.empty() && ++tries < 400) Article(1, "4");
  ASSERT_TRUE(Said("El disco está lleno")) << AllSaid();
  const int stored = std::stoi(One("SELECT COUNT(*) FROM entpart"));
  EXPECT_EQ(stored, tries) << "the first one, and each but the last of the others";
  EXPECT_NE(Stored(form), std::to_string(stored + 1) + " renglones · guardado");
  EXPECT_TRUE(form.Open());
  base.Run("PRAGMA max_page_count = 1000000", {});
  boxes.clear();
  Article(2, "5");
  EXPECT_TRUE(boxes.empty()) << AllSaid();
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), std::to_string(stored + 1));
}

}  // namespace
}  // namespace tarvik::desktop
