// A goods-out on paper.
#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextTable>
#include <map>

#include "tests/desktop/printing/slices.h"
#include "tests/desktop/screens/salidas_en_el_escritorio.h"

namespace tarvik::desktop {
namespace {

class SalidaEnPapel : public SalidasEnElEscritorio {
 protected:
  // Every mark of the header is set, and so many lines are made.
  void Fill(frmSalidasWizard& form, int lines) {
    Type(QStringLiteral("tra"));
    for (const auto& [field, text] : {std::pair{13, "C001"},
                                      {17, "Obra Los Encinos, lote 12"},
                                      {2, "2"},
                                      {3, "NTE"},
                                      {9, "E2"},
                                      {16, "E02"}}) {
      form.txtFields(field).Text(text);
    }
    for (forms::CheckBox* box : {&form.SSCheck1, &form.SSCheck2, &form.Check1}) form.Click(*box);
    form.RichTextBox2.Text("Entregar antes de las 10.");
    form.Acumulado = false;
    for (int line = 0; line < lines; ++line) {
      form.txtFields(campo::Articulo).Text(Article(line % 30));
      form.PonDescripcion();
      form.txtFields(campo::Cantidad).Text("2");
      form.LlenaPartida();
    }
  }
  // The headings stand on every page; sums and signatures on the last.
  static void ExpectWellBroken(const PrintedPage& printed, int lines) {
    const QTextDocument& page = printed.Document();
    int headers = 0;
    for (const QTextFrame* frame : page.rootFrame()->childFrames()) {
      const auto* table = qobject_cast<const QTextTable*>(frame);
      if (table && table->rows() == lines + 1) headers = table->format().headerRowCount();
    }
    EXPECT_EQ(headers, 1);  // repeated on every page
    std::map<std::string, int> where;
    for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
      const double top = page.documentLayout()->blockBoundingRect(block).top();
      where[block.text().toStdString().substr(0, 7)] = PageOf(printed, top);
    }
    for (const char* word : {"Renglon", "Unidade", "Recibi", "Elabor"}) {
      int found = -1;
      for (const auto& [begin, number] : where) {
        if (begin.starts_with(word)) found = number;
      }
      EXPECT_EQ(found, printed.Pages() - 1) << word << " with " << lines;
    }
  }
};

TEST_F(SalidaEnPapel, OnPaperEveryMarkLeavesRoomForTheLinesAndTheSignaturesStandByTheTotals) {
  ShowHidden();
  for (const int lines : {1, 60}) {
    program->Door().NuevaSalida();
    frmSalidasWizard& form = Last();
    program->Window().activateWindow();
    (void)QTest::qWaitForWindowActive(&program->Window());
    Fill(form, lines);
    form.Enter(form.txtFields(campo::Articulo));
    Settle();
    Press(Qt::Key_F5);
    QTest::qWait(5);
    ASSERT_EQ(Previews().size(), 1);
    PreviewWindow* window = Previews().front();
    for (const auto size : {QPageSize::Letter, QPageSize::A4}) {
      window->UsePaper(size);
      const QTextDocument& page = window->Page().Document();
      EXPECT_EQ(window->Page().Pages(), lines == 1 ? 1 : 3) << lines;
      const QString text = page.toPlainText();
      for (const char* word : {"C001 Constructora del Valle", "Obra Los Encinos, lote 12", "2 Piso de venta",
                               "E2 Mostrador", "NTE Norte", "E02 Patricia", "Folio", "Entregar antes"}) {
        EXPECT_TRUE(text.contains(QString::fromUtf8(word))) << word;
      }
      ExpectWellBroken(window->Page(), lines);
    }
    EXPECT_TRUE(window->SavePdfTo(folder.filePath(QStringLiteral("salida.pdf"))));
    window->close();
    QTest::qWait(5);
  }
}

}  // namespace
}  // namespace tarvik::desktop
