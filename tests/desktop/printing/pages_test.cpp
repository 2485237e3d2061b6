// Where pages end, and what stands on each of them: no line is torn, none stands alone on the last page, and
// a page that falls out of the pile says whose it is.
#include <gtest/gtest.h>

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QTextBlock>
#include <QTextTable>
#include <memory>

#include "desktop/printing/printed_page.h"
#include "host/formato.h"
#include "tests/desktop/printing/slices.h"
#include "tests/desktop/support.h"
#include "tests/host/apoyo.h"

namespace tarvik::desktop {
namespace {

// A device that keeps the texts it is given, and draws nothing.
class Ear : public QPaintDevice {
 public:
  Ear() : engine_(texts) {}
  [[nodiscard]] QPaintEngine* paintEngine() const override { return &engine_; }
  QStringList texts;

 protected:
  [[nodiscard]] int metric(PaintDeviceMetric metric) const override {
    switch (metric) {
      case PdmWidth:
      case PdmHeight:
        return 2000;
      case PdmDpiX:
      case PdmDpiY:
      case PdmPhysicalDpiX:
      case PdmPhysicalDpiY:
        return 96;
      case PdmDevicePixelRatio:
        return 1;
      case PdmDevicePixelRatioScaled:
        return static_cast<int>(devicePixelRatioFScale());
      default:
        return 0;
    }
  }

 private:
  class Engine : public QPaintEngine {
   public:
    explicit Engine(QStringList& texts) : QPaintEngine(AllFeatures), texts_(texts) {}
    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState&) override {}
    void drawPath(const QPainterPath&) override {}
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
    void drawTextItem(const QPointF&, const QTextItem& item) override { texts_ += item.text(); }
    [[nodiscard]] Type type() const override { return User; }

   private:
    QStringList& texts_;
  };
  mutable Engine engine_;
};

class Pages : public host::Banco {
 protected:
  Pages() : Banco(true) { App(); }

  // The page of a goods-in with these lines; every third has a description of several rows.
  QString Html(int lines, const std::string& remarks = "dos cajas abiertas") {
    Sql("DELETE FROM entpart");
    Sql("DELETE FROM entradas");
    Sql("INSERT INTO entradas (entrada, tipo_doc, almacen, estado, usuario, observ) VALUES (1042, 'COM', 1, "
        "'CO', 'ANA', ?)",
        {remarks});
    anfitrion->Conexion().Begin();
    for (int i = 1; i <= lines; ++i) {
      std::string text = "Martillo";
      if (i % 3 == 0)
        text =
            "Martillo de uña de acero forjado con mango de fibra, en caja de cartón, con funda, "
            "para la obra de la calle de los Encinos, segunda entrega";
      Sql("INSERT INTO entpart (id_entrada, entrada, articulo, cantidad, precio, observ) VALUES (?, 1042, "
          "'MAR-16', ?, 116, ?)",
          {i, i, text});
    }
    anfitrion->Conexion().Commit();
    host::Pedido wanted;
    wanted.formato = "entrada";
    wanted.numero = 1042;
    wanted.carpeta = carpeta.Ruta("datos").string();
    wanted.empresa = "Ferretería";
    wanted.ahora = ahora;
    return QString::fromStdString(host::Lee(host::ImprimeEnArchivo(anfitrion->Conexion(), wanted)));
  }
  static std::unique_ptr<PrintedPage> Laid(const QString& html) {
    return std::make_unique<PrintedPage>(html, 1042);
  }
  // The table of the lines: the one with a heading.
  static QTextTable* Lines(const PrintedPage& page) {
    for (QTextFrame* frame : page.Document().rootFrame()->childFrames()) {
      auto* table = qobject_cast<QTextTable*>(frame);
      if (table != nullptr && table->format().headerRowCount() > 0) return table;
    }
    return nullptr;
  }
  // What a row's words take up.
  static QRectF Words(const PrintedPage& page, const QTextTable& table, int row) {
    QRectF all;
    for (int column = 0; column < table.columns(); ++column) {
      const QTextTableCell cell = table.cellAt(row, column);
      for (auto part = cell.begin(); part != cell.end(); ++part) {
        all |= page.Document().documentLayout()->blockBoundingRect(part.currentBlock());
      }
    }
    return all;
  }
  static int LinesOn(const PrintedPage& page, int number) {
    const QTextTable* table = Lines(page);
    int count = 0;
    for (int row = 1; row < table->rows(); ++row) {
      count += PageOf(page, Words(page, *table, row).center().y()) == number ? 1 : 0;
    }
    return count;
  }
  static QStringList Heard(const PrintedPage& page, int number) {
    Ear ear;
    QPainter painter(&ear);
    page.PaintPage(painter, number);
    painter.end();
    return ear.texts;
  }
};

TEST_F(Pages, NoLineIsTornOverTwo) {
  for (int lines = 20; lines < 60; ++lines) {
    const auto page = Laid(Html(lines));
    const QTextTable* table = Lines(*page);
    ASSERT_NE(table, nullptr);
    for (int row = 1; row < table->rows(); ++row) {
      const QRectF words = Words(*page, *table, row);
      const int number = PageOf(*page, words.top());
      ASSERT_GE(number, 0) << lines << ", row " << row;
      EXPECT_LE(words.bottom(), page->Slices()[number].bottom) << lines << ", row " << row;
    }
  }
}

TEST_F(Pages, TheLastOneHasNeverFewerThanTwoLines) {
  for (int lines = 1; lines < 70; ++lines) {
    const auto page = Laid(Html(lines));
    EXPECT_GE(LinesOn(*page, page->Pages() - 1), std::min(lines, 2)) << lines;
  }
}

TEST_F(Pages, HoldWhatTheyHaveRoomForAndTogetherEverythingOnce) {
  for (const int lines : {1, 30, 57, 300}) {
    const auto page = Laid(Html(lines));
    double end = -1;
    for (const PageSlice& slice : page->Slices()) {
      EXPECT_GE(slice.top, end);
      EXPECT_LE(slice.Head() + slice.bottom - slice.top, page->Size().height() + 1);
      end = slice.bottom;
    }
    for (QTextBlock block = page->Document().begin(); block.isValid(); block = block.next()) {
      if (block.text().trimmed().isEmpty()) continue;
      const QRectF place = page->Document().documentLayout()->blockBoundingRect(block);
      EXPECT_GE(PageOf(*page, place.center().y()), 0) << block.text().toStdString();
    }
  }
}

TEST_F(Pages, EachBeginsWithTheHeadingOfItsLines) {
  const auto page = Laid(Html(120));
  ASSERT_GT(page->Pages(), 2);
  EXPECT_EQ(page->Slices()[0].Head(), 0);
  for (int number = 1; number < page->Pages(); ++number) {
    EXPECT_GT(page->Slices()[number].Head(), 10);
    EXPECT_TRUE(Heard(*page, number).contains(QStringLiteral("Importe"))) << number;
  }
}

TEST_F(Pages, EachSaysWhoseItIsAndWhichOfHowMany) {
  for (const int lines : {3, 120}) {
    const auto page = Laid(Html(lines));
    for (int number = 0; number < page->Pages(); ++number) {
      const QStringList texts = Heard(*page, number);
      EXPECT_EQ(texts.count(QStringLiteral("Núm. 1042")), number == 0 ? 2 : 1)
          << "at its foot, and in the head";
      const QString which = QStringLiteral("Página %1 de %2").arg(number + 1).arg(page->Pages());
      EXPECT_TRUE(texts.contains(which)) << texts.join(QLatin1Char('|')).toStdString();
    }
  }
}

TEST_F(Pages, UnderTheBarsStandsTheNumberForAPerson) {
  EXPECT_EQ(Heard(*Laid(Html(3)), 0).count(QStringLiteral("1042")), 1);
}

// A shop that signs its pages.
TEST_F(Pages, TheLogoIsOnThePaperInItsOwnShape) {
  QImage logo(520, 60, QImage::Format_RGB32);
  logo.fill(Qt::red);
  std::filesystem::create_directories(carpeta.Ruta("datos"));
  ASSERT_TRUE(logo.save(QString::fromStdString(carpeta.Ruta("datos/logo.png").string())));
  const auto page = Laid(Html(3));
  QImage paper(page->Size().toSize(), QImage::Format_RGB32);
  paper.fill(Qt::white);
  QPainter painter(&paper);
  page->PaintPage(painter, 0);
  painter.end();
  QRect red;
  for (int y = 0; y < paper.height(); ++y) {
    for (int x = 0; x < paper.width(); ++x) {
      if (paper.pixelColor(x, y) == QColor(Qt::red)) red |= QRect(x, y, 1, 1);
    }
  }
  EXPECT_NEAR(red.width(), 260, 2);
  EXPECT_NEAR(red.height(), 30, 2);
  EXPECT_LT(red.bottom(), 80) << "at the head of the page";
}

// As a logo of a kind that this machine's toolkit does not know.
TEST_F(Pages, APictureThatNobodyCanDrawLeavesNoMark) {
  const auto page = Laid(QStringLiteral(
      "<html><body><img src=\"data:image/png;base64,AAAA\" width=\"90\" height=\"90\"></body></html>"));
  QImage paper(page->Size().toSize(), QImage::Format_RGB32);
  paper.fill(Qt::white);
  QImage white = paper;
  QPainter painter(&paper);
  page->PaintPage(painter, 0);
  painter.end();
  EXPECT_EQ(paper, white);
}

// Remarks of a whole page and more can't stay in one piece; their lines can.
TEST_F(Pages, RemarksThatAreTallerThanAPageEndBetweenTwoOfTheirLines) {
  std::string remarks;
  for (int i = 1; i <= 120; ++i) remarks += "observación " + std::to_string(i) + "\n";
  const auto page = Laid(Html(3, remarks));
  EXPECT_GT(page->Pages(), 1);
  for (QTextBlock block = page->Document().begin(); block.isValid(); block = block.next()) {
    if (!block.text().startsWith(QStringLiteral("observación"))) continue;
    const double top = page->Document().documentLayout()->blockBoundingRect(block).top();
    for (int i = 0; i < block.layout()->lineCount(); ++i) {
      const QTextLine line = block.layout()->lineAt(i);
      const int number = PageOf(*page, top + line.y() + 1);
      ASSERT_GE(number, 0);
      EXPECT_LE(top + line.y() + line.height(), page->Slices()[number].bottom + 0.5) << i;
    }
  }
}

// ---- a deployer's own template ----

TEST_F(Pages, ATemplateOfParagraphsEndsItsPagesBetweenThem) {
  QString html = QStringLiteral("<html><body>");
  for (int i = 1; i <= 100; ++i) html += QStringLiteral("<p>renglón %1</p>").arg(i);
  const auto page = Laid(html + QStringLiteral("</body></html>"));
  ASSERT_GT(page->Pages(), 1);
  QStringList all;
  for (int number = 0; number < page->Pages(); ++number) {
    const QStringList texts = Heard(*page, number);
    EXPECT_TRUE(texts.contains(QStringLiteral("Núm. 1042"))) << number;
    all += texts.filter(QStringLiteral("renglón"));
  }
  EXPECT_EQ(all.size(), 100) << "each once";
}

TEST_F(Pages, ATableWithALineAroundEachCellHasThemAllOnEachPage) {
  QString html = QStringLiteral("<html><body><table border=\"1\" width=\"100%\">");
  for (int i = 1; i <= 100; ++i) html += QStringLiteral("<tr><td>renglón %1</td><td>uno</td></tr>").arg(i);
  const auto page = Laid(html + QStringLiteral("</table></body></html>"));
  ASSERT_GT(page->Pages(), 1);
  EXPECT_NEAR(page->Slices().front().top, 0, 0.5) << "with the table's own border";
  for (int number = 0; number < page->Pages(); ++number) {
    QImage paper(page->Size().toSize(), QImage::Format_Grayscale8);
    paper.fill(Qt::white);
    QPainter painter(&paper);
    page->PaintPage(painter, number);
    painter.end();
    std::vector<int> ink;  // of each row of dots
    for (int y = 0; y < paper.height(); ++y) {
      int dots = 0;
      for (int x = 0; x < paper.width(); ++x) dots += qGray(paper.pixel(x, y)) < 200 ? 1 : 0;
      ink.push_back(dots);
    }
    const auto full = [&](int dots) { return dots > paper.width() * 9 / 10; };
    const auto inked = [](int dots) { return dots > 4; };  // more than the table's two sides
    EXPECT_TRUE(full(*std::find_if(ink.begin(), ink.end(), inked))) << "at the top of page " << number;
    EXPECT_TRUE(full(*std::find_if(ink.rbegin(), ink.rend(), inked))) << "at the end of page " << number;
  }
}

TEST_F(Pages, ARulerAtTheEndIsDrawn) {
  const auto page = Laid(QStringLiteral("<html><body><p>uno</p><hr></body></html>"));
  const QRectF last = page->Document().documentLayout()->blockBoundingRect(page->Document().lastBlock());
  EXPECT_GE(page->Slices().back().bottom, last.bottom());
}

TEST_F(Pages, ATemplatesOwnPageBreakIsKept) {
  const auto page = Laid(QStringLiteral(
      "<html><body><p>portada</p><p style=\"page-break-before: always\">hoja</p><p>final</p></body></html>"));
  ASSERT_EQ(page->Pages(), 2);
  EXPECT_TRUE(Heard(*page, 0).contains(QStringLiteral("portada")));
  EXPECT_TRUE(Heard(*page, 1).contains(QStringLiteral("hoja")));
  EXPECT_TRUE(Heard(*page, 1).contains(QStringLiteral("final")));
}

// Wherever it comes, and whatever follows it.
TEST_F(Pages, AShortTableStaysInOnePiece) {
  for (int before = 20; before < 60; ++before) {
    QString html =
        QStringLiteral("<html><style>table { margin-top: 18px; } td { padding: 5px; }</style><body>");
    for (int i = 0; i < before; ++i) html += QStringLiteral("<p>antes</p>");
    html += QStringLiteral(
        "<table><tr><td>cero</td></tr></table>\n"
        "<table><tr><td>uno</td></tr><tr><td>dos</td></tr><tr><td>tres</td></tr></table>");
    for (int i = 0; i < 5; ++i) html += QStringLiteral("<p>después</p>");
    const auto page = Laid(html + QStringLiteral("</body></html>"));
    for (int number = 0; number < page->Pages(); ++number) {
      const QStringList texts = Heard(*page, number);
      EXPECT_EQ(texts.contains(QStringLiteral("uno")), texts.contains(QStringLiteral("tres"))) << before;
      if (number > 0) {
        EXPECT_GE(page->Slices()[number].top, page->Slices()[number - 1].bottom) << before;
      }
    }
  }
}

TEST_F(Pages, AnEmptyTemplateIsOnePage) { EXPECT_EQ(Laid(QString())->Pages(), 1); }

}  // namespace
}  // namespace tarvik::desktop
