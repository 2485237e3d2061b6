// Printers, PDF files and templates that fail.
#include <QPdfWriter>
#include <QPrinter>
#include <QSettings>

#include "desktop/printing/preview_window.h"
#include "desktop/printing/printed_page.h"
#include "tests/desktop/hard_days/dia_dificil.h"

namespace tarvik::desktop {
namespace {

QString ManyPages() {
  QString html;
  for (int line = 0; line < 400; ++line) html += QStringLiteral("<p>Renglón %1 de la entrada</p>").arg(line);
  return html;
}

// Takes its first page and jams.
class ImpresoraAtascada : public QPdfWriter {
 public:
  using QPdfWriter::QPdfWriter;
  bool newPage() override { return ++pages_ < 2 && QPdfWriter::newPage(); }

 private:
  int pages_ = 0;
};

TEST_F(DiaDificil, APrinterThatJamsSaysHowManyPagesCameOut) {
  PrintedPage page(ManyPages(), 7);
  ASSERT_GT(page.Pages(), 3);
  ImpresoraAtascada printer(folder.filePath(QStringLiteral("atasco.pdf")));
  QString why;
  EXPECT_FALSE(page.Paint(printer, &why));
  EXPECT_EQ(why, QStringLiteral("Se imprimieron 2 de %1 páginas.").arg(page.Pages()));
}

TEST_F(DiaDificil, AFullDiskInTheMiddleOfAPdfKeepsTheOldFileAndSaysSo) {
  const fs::path file = File("entrada-7.pdf");
  Graba(file, "la impresión de ayer");
  QSettings settings(folder.filePath(QStringLiteral("ajustes.ini")), QSettings::IniFormat);
  PreviewWindow window(settings, ManyPages(), QStringLiteral("entrada"), 7);
  Lector reader({Qt::Key_Return});
  {
    const DiscoPequeno disk(4096);
    EXPECT_FALSE(window.SavePdfTo(QString::fromStdString(file.string())));
  }
  ASSERT_EQ(reader.read.size(), 1);
  EXPECT_TRUE(reader.read[0].contains(QStringLiteral("No se pudo guardar el PDF.")));
  EXPECT_TRUE(reader.read[0].contains(QStringLiteral("El documento está guardado y nada se ha perdido.")));
  EXPECT_EQ(Contenido(file), "la impresión de ayer");
  int left = 0;
  for (const auto& entry : fs::directory_iterator(file.parent_path())) {
    left += entry.path().filename().string().starts_with("entrada-7.pdf");
  }
  EXPECT_EQ(left, 1) << "no half file beside it";
}

TEST_F(DiaDificil, APrinterThatWritesToAFullDiskHasNotPrinted) {
  PrintedPage page(ManyPages(), 7);
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(folder.filePath(QStringLiteral("a-archivo.pdf")));
  QString why;
  bool printed = true;
  {
    const DiscoPequeno disk(4096);
    printed = page.Paint(printer, &why);
  }
  EXPECT_FALSE(printed);
  EXPECT_FALSE(why.isEmpty());
}

TEST_F(DiaDificil, ATemplateWithATagLeftOpenCostsNoDocument) {
  Graba(File("formatos/entrada.mustache"), "<p>{{numero}}</p>{{#partidas}}<p>{{articulo}}</p>");
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  form.Check2.Value(1);
  Press(Qt::Key_F5);
  Settle();
  QTest::qWait(20);
  ASSERT_EQ(boxes.size(), 2u) << AllSaid();  // the question, and the report
  EXPECT_NE(boxes[1].find("La plantilla " + File("formatos/entrada.mustache").string() + " tiene un error: "),
            std::string::npos)
      << boxes[1];
  EXPECT_NE(boxes[1].find("partidas"), std::string::npos) << boxes[1];
  EXPECT_TRUE(Previews().isEmpty());
  EXPECT_TRUE(program->Platform().Screens().empty());
  EXPECT_EQ(One("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv"), "1");
  EXPECT_EQ(One("SELECT ocupado FROM entradas"), "0");
}

}  // namespace
}  // namespace tarvik::desktop
