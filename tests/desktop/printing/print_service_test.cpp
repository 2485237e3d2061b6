// A page sent from the preview to a real print service, from the key to the service's own queue. Needs the
// service that tests/desktop/con_impresora.sh starts.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QSettings>
#include <QTemporaryDir>
#include <QtWidgets>
#include <cstdlib>

#include "desktop/printing/preview_window.h"
#include "tests/desktop/support.h"

namespace tarvik::desktop {
namespace {

class PrintService : public ::testing::Test {
 protected:
  PrintService() { App(); }
  void SetUp() override {
    const char* queue = std::getenv("TARVIK_TEST_COLA");
    if (queue == nullptr) GTEST_SKIP() << "only with tests/desktop/con_impresora.sh";
    queue_ = QString::fromUtf8(queue);
  }
  // The documents that have come in: a job's data begin with "d".
  [[nodiscard]] QStringList Received() const {
    QStringList paths;
    for (const QString& name : QDir(queue_).entryList({QStringLiteral("d*")}, QDir::Files)) {
      paths += QDir(queue_).filePath(name);
    }
    return paths;
  }
  static QByteArray Bytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  QString queue_;
  QTemporaryDir folder_;
  QSettings settings_{folder_.filePath(QStringLiteral("ajustes.ini")), QSettings::IniFormat};
};

TEST_F(PrintService, GetsAllPagesOfADocument) {
  QString html;
  for (int i = 1; i <= 100; ++i) html += QStringLiteral("<p>renglón %1</p>").arg(i);
  PreviewWindow window(settings_, html, QStringLiteral("entrada"), 1042);
  const int pages = window.Page().Pages();
  ASSERT_GT(pages, 1);
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  WhenModal([](QWidget& dialog) {
    auto* printers = dialog.findChild<QComboBox*>();
    ASSERT_NE(printers, nullptr);
    EXPECT_EQ(printers->currentText(), QStringLiteral("prueba"));
    Press(dialog, Qt::Key_Return);
  });
  QTest::keyClick(&window, Qt::Key_P, Qt::ControlModifier);
  bool said = false;
  for (const QLabel* label : window.findChildren<QLabel*>()) {
    said = said || label->text() == QStringLiteral("Enviado a prueba.");
  }
  EXPECT_TRUE(said);
  ASSERT_TRUE(QTest::qWaitFor([this] { return Received().size() == 1; }, 10000));
  const QByteArray document = Bytes(Received().front());
  EXPECT_TRUE(document.startsWith("%PDF-"));
  EXPECT_TRUE(document.contains("/Count " + QByteArray::number(pages))) << pages;
}

}  // namespace
}  // namespace tarvik::desktop
