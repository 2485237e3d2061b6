// Pickers: results as one types, over many articles too; Enter takes, Esc leaves; the drop-down list
// puts its key through the screen.
#include "desktop/pickers/picker.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>

#include "data/error.h"
#include "desktop/pickers/search_popup.h"
#include "desktop/reading/reader.h"
#include "desktop/style/theme.h"
#include "tests/desktop/support.h"
#include "tests/host/apoyo.h"

namespace tarvik::desktop {
namespace {

class Pantalla : public forms::Form {
 public:
  explicit Pantalla(forms::Platform& platform) : Form(platform, "frmPrueba", "Prueba") {
    box.Hold(field);
    box.buscar("Articulos");
    field.OnChange = [this] { ++changes; };
  }
  forms::SearchBox box{*this, "MultiCombo1", 0};
  forms::TextBox field{*this, "txtFields", 4};
  int changes = 0;
};

class Pickers : public host::Banco {
 protected:
  Pickers() : Banco(true) { App(); }
  void SetUp() override {
    Banco::SetUp();
    reader = std::make_unique<Reader>(anfitrion->Base());
    office = std::make_unique<Office>(Office{*anfitrion, theme, settings, *reader});
    screen = std::make_shared<Pantalla>(plataforma);
    screen->Show(false);
    selector.Use(*office);
  }
  void TearDown() override { screen->Discard(); }

  // What the picker gives when its dialog gets these keys; nothing if it was left.
  std::optional<std::string> Pick(const std::string& clase, const std::string& title,
                                  std::function<void(QWidget&)> keys) {
    bool shown = false;
    WhenModal([&](QWidget& dialog) {
      shown = true;
      keys(dialog);
      if (dialog.isVisible()) dialog.close();
    });
    std::string chosen;
    const bool taken = selector.Elige(clase, title, screen->field, chosen);
    EXPECT_TRUE(shown);
    return taken ? std::optional(chosen) : std::nullopt;
  }

  QTemporaryDir folder;
  QSettings settings{folder.filePath(QStringLiteral("ajustes.ini")), QSettings::IniFormat};
  Theme theme{Theme::Mode::Light};
  std::unique_ptr<Reader> reader;
  std::unique_ptr<Office> office;
  DesktopSelector selector;
  std::shared_ptr<Pantalla> screen;
};

TEST_F(Pickers, TypingFiltersAndEnterTakesTheFirstRow) {
  EXPECT_EQ(Pick("BuscadorCatalogo", "Articulos",
                 [](QWidget& dialog) {
                   Type(dialog, QStringLiteral("des-p"));
                   Press(dialog, Qt::Key_Return);
                 }),
            "DES-PL6");
}

TEST_F(Pickers, AnArticleIsFoundByDescriptionAndBySecondKey) {
  EXPECT_EQ(Pick("ListaArticulos", "",
                 [](QWidget& dialog) {
                   Type(dialog, QStringLiteral("fibra martillo"));
                   Press(dialog, Qt::Key_Return);
                 }),
            "MAR-16");
  EXPECT_EQ(Pick("BuscadorCatalogo", "Articulos",
                 [](QWidget& dialog) {
                   Type(dialog, QStringLiteral("75012066222"));
                   Press(dialog, Qt::Key_Return);
                 }),
            "TAL-12");
}

TEST_F(Pickers, ArrowsChooseTheRow) {
  EXPECT_EQ(Pick("BuscadorCatalogo", "Articulos",
                 [](QWidget& dialog) {
                   Type(dialog, QStringLiteral("DES-"));
                   Press(dialog, Qt::Key_Down);
                   Press(dialog, Qt::Key_Down);
                   Press(dialog, Qt::Key_Down);  // past the last stays there
                   Press(dialog, Qt::Key_Up);
                   Press(dialog, Qt::Key_Return);
                 }),
            "DES-J06");
}

TEST_F(Pickers, EscapeLeavesTheFieldAsItWas) {
  screen->field.Text("MAR-16");
  EXPECT_EQ(Pick("BuscadorCatalogo", "Articulos",
                 [](QWidget& dialog) {
                   Type(dialog, QStringLiteral("DES"));
                   Press(dialog, Qt::Key_Escape);
                   EXPECT_FALSE(dialog.isVisible());
                 }),
            std::nullopt);
  EXPECT_EQ(screen->field.Text(), "MAR-16");
}

TEST_F(Pickers, WhatTheFieldHoldsIsTheFirstFilterAndTypingReplacesIt) {
  screen->field.Text("MAR-2");
  EXPECT_EQ(Pick("BuscadorCatalogo", "Articulos", [](QWidget& dialog) { Press(dialog, Qt::Key_Return); }),
            "MAR-20");
  EXPECT_EQ(Pick("BuscadorCatalogo", "Articulos",
                 [](QWidget& dialog) {
                   Type(dialog, QStringLiteral("TAL"));
                   Press(dialog, Qt::Key_Return);
                 }),
            "TAL-12");
}

TEST_F(Pickers, NothingFoundTakesNothing) {
  EXPECT_EQ(Pick("BuscadorCatalogo", "Articulos",
                 [](QWidget& dialog) {
                   Type(dialog, QStringLiteral("zzz"));
                   Press(dialog, Qt::Key_Return);
                   EXPECT_TRUE(dialog.isVisible());
                 }),
            std::nullopt);
}

TEST_F(Pickers, AFailingSearchIsToldAndTakesNothing) {
  EXPECT_EQ(Pick("BuscadorCatalogo", "Desconocida",
                 [](QWidget& dialog) {
                   bool told = false;
                   for (const QLabel* label : dialog.findChildren<QLabel*>()) {
                     told = told || label->text() == QStringLiteral("No existe la búsqueda \"Desconocida\"");
                   }
                   EXPECT_TRUE(told);
                   Press(dialog, Qt::Key_Return);
                 }),
            std::nullopt);
}

TEST_F(Pickers, TheNumericHelperGivesItsResult) {
  screen->field.Text("100");
  EXPECT_EQ(Pick("AuxiliarNumerico", "",
                 [](QWidget& dialog) {
                   Type(dialog, QStringLiteral("+16%"));
                   Press(dialog, Qt::Key_Return);
                 }),
            "116");
  EXPECT_EQ(Pick("AuxiliarNumerico", "", [](QWidget& dialog) { Press(dialog, Qt::Key_Escape); }),
            std::nullopt);
}

TEST_F(Pickers, BeforeThereIsAnOfficeNothingIsChosen) {
  DesktopSelector early;
  std::string chosen = "x";
  EXPECT_FALSE(early.Elige("BuscadorCatalogo", "Articulos", screen->field, chosen));
  EXPECT_EQ(chosen, "x");
}

TEST_F(Pickers, TheListPutsItsKeyThroughTheScreen) {
  QLineEdit anchor;
  anchor.show();
  screen->field.Text("DES-C");
  screen->changes = 0;
  const auto list = ShowSearchList(*office, screen->box, anchor);
  ASSERT_FALSE(list.isNull());
  QTest::qWait(0);
  auto* table = list->findChild<QTableView*>();
  ASSERT_EQ(table->model()->rowCount(), 1);  // filtered by what the field holds
  Press(*list, Qt::Key_Return);
  EXPECT_EQ(screen->field.Text(), "DES-CR2");
  EXPECT_EQ(screen->changes, 1);
  QTest::qWait(0);
  EXPECT_TRUE(list.isNull());
}

TEST_F(Pickers, TheListIsLeftWithEscape) {
  QLineEdit anchor;
  anchor.show();
  screen->field.Text("DES-C");
  screen->changes = 0;
  const auto list = ShowSearchList(*office, screen->box, anchor);
  QTest::qWait(0);
  Type(*list, QStringLiteral("MAR"));
  Press(*list, Qt::Key_Escape);
  QTest::qWait(0);
  EXPECT_TRUE(list.isNull());
  EXPECT_EQ(screen->field.Text(), "DES-C");
  EXPECT_EQ(screen->changes, 0);
}

TEST_F(Pickers, AListOutlivesItsScreenHarmlessly) {
  QLineEdit anchor;
  anchor.show();
  auto other = std::make_shared<Pantalla>(plataforma);
  other->Show(false);
  const auto list = ShowSearchList(*office, other->box, anchor);
  QTest::qWait(0);
  other->Discard();
  other.reset();
  Press(*list, Qt::Key_Return);
  QTest::qWait(0);
  EXPECT_TRUE(list.isNull());
}

TEST_F(Pickers, AnErrorOfTheFieldGoesToThePlatformAndTheListIsGone) {
  std::string unhandled;
  plataforma.on_unhandled = [&](forms::Form*, const std::string& text) { unhandled = text; };
  screen->field.OnChange = [] { throw data::Error("falla provocada"); };
  QLineEdit anchor;
  anchor.show();
  const auto list = ShowSearchList(*office, screen->box, anchor);
  QTest::qWait(0);
  Press(*list, Qt::Key_Return);
  EXPECT_EQ(unhandled, "falla provocada");
}

TEST(SearchRowsPages, GrowAsTheyAreAskedFor) {
  App();
  std::vector<std::size_t> asked;
  SearchSource source;
  source.rows = [&](const std::string&, std::size_t limit) {
    asked.push_back(limit);
    std::vector<host::Hallazgo> rows;
    for (std::size_t i = 0; i < std::min<std::size_t>(limit, 500); ++i)
      rows.push_back({std::to_string(i), "", ""});
    return rows;
  };
  SearchRows rows(source);
  rows.Search({});
  const int first = rows.rowCount();
  EXPECT_LT(first, 100);
  EXPECT_TRUE(rows.canFetchMore({}));
  int pages = 0;
  while (rows.canFetchMore({})) {
    rows.fetchMore({});
    ++pages;
  }
  EXPECT_EQ(rows.rowCount(), 500);
  EXPECT_LE(pages, 4);
  for (int i = 0; i < 500; ++i) ASSERT_EQ(rows.At(i).clave, std::to_string(i));
  EXPECT_EQ(rows.columnCount(), 2);  // no extra, no third column
}

class ManyArticles : public host::Banco {};

TEST_F(ManyArticles, AreAnsweredAsOneTypes) {
  App();
  auto& connection = anfitrion->Conexion();
  connection.Begin();
  for (int i = 0; i < 100000; ++i) {
    const std::string number = std::to_string(1000000 + i);
    connection.Run("INSERT INTO prods (articulo, descrip, unidad) VALUES (?, ?, 'PZA')",
                   {"ART" + number, "Pieza número " + number + " de acero"});
  }
  connection.Commit();
  PickerDialog dialog(SourceFor(connection, "Articulos"));
  dialog.Panel().Start({});
  dialog.show();
  // A key is never held up: it only asks for a search. The search itself runs at the pause.
  for (const char* typed : {"acero", "1054321 pieza", "zzz", "ART1099999"}) {
    dialog.Panel().Filter().clear();
    QElapsedTimer clock;
    clock.start();
    QTest::keyClicks(&dialog.Panel().Filter(), QString::fromUtf8(typed));
    EXPECT_LT(clock.restart(), 100) << typed;
    (void)dialog.Panel().Current();  // searches at once
    EXPECT_LT(clock.elapsed(), 400) << typed;
    RecordProperty(std::string("ms_") + std::string(typed).substr(0, 3), std::to_string(clock.elapsed()));
  }
  EXPECT_EQ(dialog.Panel().Current(), "ART1099999");
}

}  // namespace
}  // namespace tarvik::desktop
