// Printing: pages, the barcode on paper, PDF files, the paper's size, and what happens with no
// printer. The base and the page are the host's own.
#include "desktop/printing/desktop_printer.h"
#include "desktop/printing/preview_window.h"
#include "desktop/printing/printed_page.h"

#include <gtest/gtest.h>

#include <QAbstractTextDocumentLayout>
#include <QComboBox>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextBlock>

#include "data/error.h"
#include "host/barras.h"
#include "host/formato.h"
#include "tests/desktop/printing/slices.h"
#include "tests/desktop/support.h"
#include "tests/host/apoyo.h"

namespace tarvik::desktop {
namespace {

class Printing : public host::Banco {
 protected:
  Printing() : Banco(true) { App(); }

  // The page of a goods-in document with so many lines.
  QString Html(int lines) {
    Sql("DELETE FROM entpart");
    Sql("DELETE FROM entradas");
    Sql("INSERT INTO entradas (entrada, tipo_doc, almacen, estado, f_emision, usuario, observ) "
        "VALUES (1042, 'COM', 1, 'CO', '2024-03-05', 'ANA', 'dos cajas abiertas')");
    anfitrion->Conexion().Begin();
    for (int i = 1; i <= lines; ++i) {
      Sql("INSERT INTO entpart (id_entrada, entrada, articulo, cantidad, precio) VALUES (?, 1042, 'MAR-16', "
          "?, 116)",
          {i, i});
    }
    anfitrion->Conexion().Commit();
    host::Pedido wanted;
    wanted.formato = "entrada";
    wanted.numero = 1042;
    wanted.carpeta = carpeta.Ruta("datos").string();
    wanted.empresa = "Ferretería";
    wanted.ahora = ahora;
    path = host::ImprimeEnArchivo(anfitrion->Conexion(), wanted);
    return QString::fromStdString(host::Lee(path));
  }
  static QImage Painted(const PrintedPage& page, int number, double scale) {
    const QSizeF size = page.Size() * scale;
    QImage image(size.toSize(), QImage::Format_Grayscale8);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(scale, scale);
    page.PaintPage(painter, number);
    return image;
  }

  static QRectF Place(const PrintedPage& page, const QTextBlock& block) {
    return page.Document().documentLayout()->blockBoundingRect(block);
  }

  QTemporaryDir folder;
  QSettings settings{folder.filePath(QStringLiteral("ajustes.ini")), QSettings::IniFormat};
  std::string path;
};

TEST_F(Printing, AShortDocumentIsOnePageAndALongOneIsMany) {
  PrintedPage one(Html(3), 1042);
  EXPECT_EQ(one.Pages(), 1);
  PrintedPage many(Html(120), 1042);
  EXPECT_GT(many.Pages(), 2);
  EXPECT_TRUE(many.Document().toPlainText().contains(QStringLiteral("1042")));
  EXPECT_TRUE(many.Document().toPlainText().contains(QStringLiteral("dos cajas abiertas")));
}

TEST_F(Printing, ThePaperOnlyChangesWhereThePagesEnd) {
  PrintedPage page(Html(3), 1042);
  const QSizeF letter = page.Size();
  page.Layout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(14, 13, 14, 15),
                          QPageLayout::Millimeter));
  EXPECT_GT(page.Size().height(), letter.height());
  EXPECT_LT(page.Size().width(), letter.width());
}

// The row of dots through the middle of the barcode, read back as widths of bars and gaps.
TEST_F(Printing, TheBarcodeOnPaperIsTheNumbers) {
  PrintedPage page(Html(3), 1042);
  const QImage image = Painted(page, 0, 8);
  const host::Barras bars = host::BarrasDe("1042");
  bool found = false;
  for (int y = 0; y < image.height() / 4 && !found; y += 8) {
    std::vector<int> runs;  // bar, gap, bar ... from the first black dot
    bool black = false;
    for (int x = 0; x < image.width(); ++x) {
      const bool dark = qGray(image.pixel(x, y)) < 128;
      if (runs.empty() && !dark) continue;
      if (runs.empty() || dark != black) {
        runs.push_back(0);
        black = dark;
      }
      ++runs.back();
    }
    if (!runs.empty() && !black) runs.pop_back();  // the white to the paper's edge
    if (runs.size() != bars.barras.size() * 2 - 1) continue;
    found = true;
    const double unit = (44 / 25.4 * 96 * 8) / bars.ancho;
    for (std::size_t i = 0; i < bars.barras.size(); ++i) {
      EXPECT_NEAR(runs[2 * i] / unit, bars.barras[i].ancho, 0.6) << i;
      if (i + 1 < bars.barras.size()) {
        const int gap = bars.barras[i + 1].x - bars.barras[i].x - bars.barras[i].ancho;
        EXPECT_NEAR(runs[2 * i + 1] / unit, gap, 0.6) << i;
      }
    }
  }
  EXPECT_TRUE(found);
}

TEST_F(Printing, TotalsAreNotTornByThePagesEnd) {
  // Somewhere among these counts of lines the totals would have met the end of a page.
  for (int lines = 20; lines < 36; ++lines) {
    PrintedPage page(Html(lines), 1042);
    int first = -1;
    int seen = 0;
    for (QTextBlock block = page.Document().begin(); block.isValid(); block = block.next()) {
      const int where = PageOf(page, Place(page, block).top());
      if (block.text() == QStringLiteral("Renglones")) first = where;
      if (!block.text().startsWith(QStringLiteral("Total"))) continue;
      EXPECT_EQ(where, first) << lines;
      ++seen;
    }
    EXPECT_EQ(seen, 1) << lines;
  }
}

TEST_F(Printing, EveryWordOfThePageGetsItsInk) {
  // Counts of lines around the end of a page; laid out twice, as a preview does.
  for (const int lines : {22, 24, 26, 46, 53, 54, 55, 56, 57}) {
    PrintedPage page(Html(lines), 1042);
    page.Layout(QPageLayout(QPageSize(QPageSize::Letter), QPageLayout::Portrait, QMarginsF(14, 13, 14, 15),
                            QPageLayout::Millimeter));
    QList<QImage> painted;
    for (int number = 0; number < page.Pages(); ++number) painted += Painted(page, number, 1);
    for (QTextBlock block = page.Document().begin(); block.isValid(); block = block.next()) {
      if (block.text().trimmed().isEmpty()) continue;
      QRectF place = Place(page, block);
      const int number = PageOf(page, place.top());
      ASSERT_GE(number, 0);
      place.translate(0, page.Slices()[number].Head() - page.Slices()[number].top);
      const QImage words = painted[number].copy(place.toAlignedRect());
      int least = 255;
      int most = 0;
      for (int y = 0; y < words.height(); ++y) {
        for (int x = 0; x < words.width(); ++x) {
          least = std::min(least, qGray(words.pixel(x, y)));
          most = std::max(most, qGray(words.pixel(x, y)));
        }
      }
      EXPECT_GT(most - least, 60) << lines << ": " << block.text().toStdString();
    }
  }
}

TEST_F(Printing, ThePdfFileHasThePages) {
  PrintedPage page(Html(120), 1042);
  const QString file = folder.filePath(QStringLiteral("uno.pdf"));
  ASSERT_TRUE(page.SavePdf(file, QStringLiteral("Entrada 1042")));
  const std::string pdf = host::Lee(file.toStdString());
  EXPECT_EQ(pdf.substr(0, 5), "%PDF-");
  EXPECT_NE(pdf.find("/Count " + std::to_string(page.Pages())), std::string::npos);
  EXPECT_GT(pdf.size(), 10000U);
  // The title, as the file holds it: two bytes a character.
  std::string title;
  for (const char character : std::string("Entrada 1042")) title += std::string(1, '\0') + character;
  EXPECT_NE(pdf.find(title), std::string::npos);
}

TEST_F(Printing, AFailedPdfLeavesTheOldFileAndSaysWhy) {
  PrintedPage page(Html(3), 1042);
  QString why;
  EXPECT_FALSE(page.SavePdf(folder.filePath(QStringLiteral("no/existe.pdf")), QStringLiteral("x"), &why));
  EXPECT_FALSE(why.isEmpty());
  PreviewWindow window(settings, QStringLiteral("<p>uno</p>"), QStringLiteral("entrada"), 7);
  bool told = false;
  WhenModal([&](QWidget& box) {
    for (const QLabel* label : box.findChildren<QLabel*>()) {
      told = told || label->text().contains(QStringLiteral("nada se ha perdido"));
    }
    Press(box, Qt::Key_Escape);
  });
  EXPECT_FALSE(window.SavePdfTo(folder.filePath(QStringLiteral("no/existe.pdf"))));
  EXPECT_TRUE(told);
}

TEST_F(Printing, ThePaperIsRemembered) {
  const QString html = Html(3);
  {
    PreviewWindow window(settings, html, QStringLiteral("entrada"), 1042);
    EXPECT_EQ(window.findChild<QComboBox*>()->currentText(), "Carta");
    window.UsePaper(QPageSize::A4);
  }
  PreviewWindow window(settings, html, QStringLiteral("entrada"), 1042);
  EXPECT_EQ(window.findChild<QComboBox*>()->currentText(), "A4");
}

TEST_F(Printing, TheHostsPrinterReturnsAtOnceAndThePreviewComesWhenAllIsAtRest) {
  Html(3);
  DesktopPrinter printer(settings);
  printer.Imprime(path, "entrada", 1042);
  const auto previews = [] {
    QList<PreviewWindow*> found;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (auto* window = qobject_cast<PreviewWindow*>(widget)) found += window;
    }
    return found;
  };
  EXPECT_TRUE(previews().isEmpty());
  QTest::qWait(1);
  ASSERT_EQ(previews().size(), 1);
  PreviewWindow* window = previews().front();
  EXPECT_TRUE(window->isVisible());
  EXPECT_FALSE(window->isModal());
  for (const QPushButton* button : window->findChildren<QPushButton*>()) {
    EXPECT_FALSE(button->accessibleName().isEmpty());
  }
  Press(*window, Qt::Key_Escape);
  QTest::qWait(1);
  EXPECT_TRUE(previews().isEmpty());
}

TEST_F(Printing, APageThatIsNotThereIsTheCallersError) {
  DesktopPrinter printer(settings);
  const std::string missing = carpeta.Ruta("no.html").string();
  EXPECT_NE(host::ErrorDe([&] { printer.Imprime(missing, "entrada", 1); }).find(missing), std::string::npos);
}

}  // namespace
}  // namespace tarvik::desktop
