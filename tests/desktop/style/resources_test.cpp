// The files that the program carries along: each is read by somebody, and the style sheet has a value for
// every name and no colour of its own.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryFile>

#include "desktop/style/template.h"
#include "desktop/style/theme.h"
#include "tests/desktop/support.h"

namespace tarvik::desktop {
namespace {

const QString kRaiz = QStringLiteral(TARVIK_SOURCE_DIR "/desktop/");

QString Contents(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// Everything that the desktop's own code and its style sheet say.
QString AllThatIsSaid(const QDir& folder) {
  QString said;
  for (const QFileInfo& entry :
       folder.entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
    if (entry.isDir()) {
      said += AllThatIsSaid(QDir(entry.filePath()));
    } else if (QStringList{"cpp", "h", "qss", "txt"}.contains(entry.suffix())) {
      said += Contents(entry.filePath());
    }
  }
  return said;
}

TEST(StyleSheet, EveryNameInItHasAValueInBothThemes) {
  const QString sheet = Contents(QStringLiteral(":/style.qss"));
  ASSERT_GT(PlaceholdersOf(sheet).size(), 20);
  for (const bool dark : {false, true}) {
    const auto values = Theme::Placeholders(dark);
    for (const QString& name : PlaceholdersOf(Theme::StyleSheet(dark))) {
      ADD_FAILURE() << "@" << name.toStdString() << " has no value";
    }
    EXPECT_GT(Theme::StyleSheet(dark).size(), 1000);
  }
}

TEST(StyleSheet, EveryMeasureAndColourOfTheThemeThatIsForSheetsIsUsedByOne) {
  const QStringList used = PlaceholdersOf(Contents(QStringLiteral(":/style.qss")));
  // What the windows paint themselves.
  const QSet<QString> painted{"Cell", "CellInk"};
  for (const auto& [name, value] : Theme::Placeholders(false).asKeyValueRange()) {
    EXPECT_TRUE(used.contains(name) || painted.contains(name)) << name.toStdString();
  }
}

TEST(StyleSheet, NoColourStandsInItOrInTheCode) {
  const QRegularExpression colour(QStringLiteral("#[0-9a-fA-F]{3,8}\\b|0xff[0-9a-f]{6}|\\brgba?\\("));
  EXPECT_FALSE(Contents(QStringLiteral(":/style.qss")).contains(colour));
  const QString theme = Contents(kRaiz + QStringLiteral("style/theme.cpp"));
  EXPECT_TRUE(theme.contains(colour));
  QString code = AllThatIsSaid(QDir(kRaiz));
  EXPECT_TRUE(code.contains(theme));
  code.remove(theme);
  EXPECT_FALSE(code.contains(colour)) << colour.match(code).captured().toStdString();
}

TEST(Templates, ANameThatNobodyFillsStaysToBeSeen) {
  QTemporaryFile file;
  ASSERT_TRUE(file.open());
  file.write("color: @Ink; width: @Wide; mail: a@b.mx, @Ink.");
  file.close();
  const QString filled = FilledTemplate(file.fileName(), {{"Ink", "#123456"}});
  EXPECT_EQ(filled.toStdString(), "color: #123456; width: @Wide; mail: a@b.mx, #123456.");
  EXPECT_EQ(PlaceholdersOf(filled), (QStringList{"Wide", "b"}));
  EXPECT_EQ(FilledTemplate(QStringLiteral(":/otra.qss"), {}), QString());
}

// What lies in the folder is carried along, and what is carried along is used.
TEST(Resources, EachFileIsCarriedAlongAndNamedBySomebody) {
  const QDir folder(kRaiz + QStringLiteral("resources"));
  const QString carried = Contents(folder.filePath(QStringLiteral("desktop.qrc")));
  const QString said = AllThatIsSaid(QDir(kRaiz));
  int files = 0;
  for (const QString& name : folder.entryList(QDir::Files)) {
    if (name.endsWith(QLatin1String(".qrc"))) continue;
    ++files;
    if (name.endsWith(QLatin1String(".desktop"))) {  // the menu's own, put in place by the installation
      EXPECT_TRUE(said.contains(name)) << name.toStdString();
      continue;
    }
    EXPECT_TRUE(carried.contains(QStringLiteral("<file>%1</file>").arg(name))) << name.toStdString();
    EXPECT_TRUE(QFile::exists(QStringLiteral(":/") + name)) << name.toStdString();
    // The pictures that go with a theme are named with it.
    QString named = name;
    named.replace(QLatin1String("-light"), QLatin1String("-@Mode"));
    named.replace(QLatin1String("-dark"), QLatin1String("-@Mode"));
    EXPECT_TRUE(said.contains(QStringLiteral(":/") + named)) << name.toStdString() << " is used by nobody";
  }
  EXPECT_GE(files, 6);
}

}  // namespace
}  // namespace tarvik::desktop
