// Help: the keys of the screen in hand, the manual's pages, links and search.
#include "desktop/windows/help.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QTextBrowser>

#include "tests/desktop/support.h"

namespace tarvik::desktop {
namespace {

class Help : public ::testing::Test {
 protected:
  Help() { App(); }

  static int ShownPages(const HelpWindow& help) {
    const auto* pages = help.findChild<QListWidget*>();
    int shown = 0;
    for (int row = 0; row < pages->count(); ++row) shown += pages->item(row)->isHidden() ? 0 : 1;
    return shown;
  }
  static QString Text(const HelpWindow& help) { return help.findChild<QTextBrowser*>()->toPlainText(); }
};

TEST_F(Help, EveryPageOfTheManualIsThereAndItsLinksLeadSomewhere) {
  const QRegularExpression link(QStringLiteral("\\]\\(([^)]+)\\)"));
  for (const QString& name : ManualPages()) {
    const QString text = ManualPage(name);
    EXPECT_TRUE(text.startsWith(QStringLiteral("# "))) << name.toStdString();
    EXPECT_GT(text.size(), 300) << name.toStdString();
    QString words = text;
    words.remove(QStringLiteral("!["));  // a picture
    EXPECT_FALSE(words.contains(QLatin1Char('!')) || words.contains(QChar(u'¡'))) << name.toStdString();
    for (auto found = link.globalMatch(text); found.hasNext();) {
      const QString target = found.next().captured(1);
      if (target.startsWith(QStringLiteral("../img/"))) {
        // In both themes, inside the program.
        for (const char* theme : {"-claro", "-oscuro"}) {
          QString file = QStringLiteral(":/manual") + target.mid(2);
          EXPECT_TRUE(QFile::exists(file.replace(QStringLiteral("-claro"), QLatin1String(theme))))
              << file.toStdString();
        }
        continue;
      }
      EXPECT_TRUE(target.endsWith(QStringLiteral(".md")) && ManualPages().contains(target.chopped(3)))
          << name.toStdString() << " leads to " << target.toStdString();
    }
  }
  EXPECT_EQ(ManualPages().size(),
            QDir(QStringLiteral(":/manual")).entryList({QStringLiteral("*.md")}).size());
  EXPECT_EQ(ManualPage(QStringLiteral("otra")), QString());
}

TEST_F(Help, AScreenHasItsPage) {
  EXPECT_EQ(ManualPageFor(QStringLiteral("frmEntradasWizard")), "entradas");
  EXPECT_EQ(ManualPageFor(QStringLiteral("frmSalidasWizard")), "salidas");
  EXPECT_EQ(ManualPageFor(QStringLiteral("frmMovEstaciones")), "estaciones");
  EXPECT_EQ(ManualPageFor(QStringLiteral("frmMallaModelos")), "entradas");
  EXPECT_EQ(ManualPageFor(QStringLiteral("otra")), "indice");
}

TEST_F(Help, OpeningShowsTheKeysOfTheScreenInHandAndNoOthers) {
  HelpWindow help;
  help.Open(QStringLiteral("Entrada: 1042"), {{QStringLiteral("F5"), QStringLiteral("finalizar")}},
            QStringLiteral("entradas"));
  help.Open(QStringLiteral("Salida: 7"), {{QStringLiteral("F6"), QStringLiteral("enviar a sucursal")}},
            QStringLiteral("salidas"));
  QStringList words;
  for (const QLabel* label : help.findChildren<QLabel*>()) words += label->text();
  EXPECT_TRUE(words.contains(QStringLiteral("Salida: 7")));
  EXPECT_TRUE(words.contains(QStringLiteral("F6")));
  EXPECT_TRUE(words.contains(QStringLiteral("enviar a sucursal")));
  EXPECT_FALSE(words.contains(QStringLiteral("finalizar")));
  EXPECT_EQ(help.Page(), "salidas");
  EXPECT_TRUE(help.isVisible());
}

TEST_F(Help, ALinkGoesToItsPage) {
  HelpWindow help;
  help.ShowPage(QStringLiteral("indice"));
  emit help.findChild<QTextBrowser*>()->anchorClicked(QUrl(QStringLiteral("existencias.md")));
  EXPECT_EQ(help.Page(), "existencias");
  EXPECT_TRUE(Text(help).startsWith(QStringLiteral("Existencias")));
  help.ShowPage(QStringLiteral("no hay"));
  EXPECT_EQ(help.Page(), "existencias");
}

TEST_F(Help, SearchFindsWordsWithoutAccentsAndMarksThem) {
  HelpWindow help;
  help.Open(QStringLiteral("x"), {}, QStringLiteral("indice"));
  auto* field = help.findChild<QLineEdit*>();
  field->setFocus();
  QTest::keyClicks(field, QStringLiteral("CODIGO lector"));
  EXPECT_EQ(help.Page(), "entradas");
  EXPECT_EQ(ShownPages(help), 1);
  const auto marks = help.findChild<QTextBrowser*>()->extraSelections();
  ASSERT_GE(marks.size(), 2);
  QStringList marked;
  for (const auto& mark : marks) marked += mark.cursor.selectedText().toLower();
  EXPECT_TRUE(marked.contains(QStringLiteral("código")));
  EXPECT_TRUE(marked.contains(QStringLiteral("lector")));
  QTest::keyClick(field, Qt::Key_Escape);
  EXPECT_EQ(ShownPages(help), ManualPages().size());
  EXPECT_TRUE(help.findChild<QTextBrowser*>()->extraSelections().isEmpty());
}

TEST_F(Help, WhatIsNowhereIsSaid) {
  HelpWindow help;
  auto* field = help.findChild<QLineEdit*>();
  QTest::keyClicks(field, QStringLiteral("xyzxyz"));
  bool said = false;
  for (const QLabel* label : help.findChildren<QLabel*>()) {
    said = said || label->text() == QStringLiteral("No aparece en el manual");
  }
  EXPECT_TRUE(said);
  EXPECT_EQ(ShownPages(help), 0);
  EXPECT_EQ(help.Page(), "indice");
}

TEST_F(Help, EscapeAndF1CloseIt) {
  HelpWindow help;
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_F1}) {
    help.Open(QStringLiteral("x"), {}, QStringLiteral("indice"));
    ASSERT_TRUE(help.isVisible());
    Press(help, key);
    EXPECT_FALSE(help.isVisible());
  }
}

}  // namespace
}  // namespace tarvik::desktop
