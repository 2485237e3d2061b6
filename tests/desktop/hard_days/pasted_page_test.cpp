// A page of text pasted where a word belongs, and letters put into the middle of a text.
#include <QTextEdit>

#include "tests/desktop/hard_days/dia_dificil.h"

namespace tarvik::desktop {
namespace {

TEST_F(DiaDificil, APagePastedForAnArticleIsRefusedAndTheNextLineIsMade) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  Paste(Page());
  EXPECT_FALSE(form.txtFields(campo::Articulo).Text().empty());
  Press(Qt::Key_Return);
  Type(QStringLiteral("2"));
  Press(Qt::Key_Return);
  Type(QStringLiteral("10"));
  Press(Qt::Key_Return);
  Settle();
  EXPECT_TRUE(Said("El artículo indicado no existe.")) << AllSaid();
  EXPECT_EQ(form.ActiveControl(), &form.txtFields(campo::Articulo));
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
  Press(Qt::Key_A, Qt::ControlModifier);
  Press(Qt::Key_Delete);
  Article(1, "4");
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "2");
}

TEST_F(DiaDificil, APagePastedForAQuantityIsRefusedWithItsReason) {
  frmEntradasWizard& form = Receiving();
  Type(QString::fromStdString(Escritorio::Article(0)));
  Press(Qt::Key_Return);
  Paste(Page().remove(0, 3));  // no number at its head
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  Settle();
  ASSERT_EQ(boxes.size(), 1u) << AllSaid();
  EXPECT_EQ(boxes[0], "La cantidad debe ser mayor que cero.");
  EXPECT_EQ(form.ActiveControl(), &form.txtFields(campo::Cantidad));
  EXPECT_TRUE(Widget(form, campo::Cantidad)->property("refused").toBool());
  EXPECT_EQ(One("SELECT COUNT(*) FROM entradas"), "0");
  Type(QStringLiteral("6"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  EXPECT_EQ(One("SELECT cantidad FROM entpart"), "6");
}

TEST_F(DiaDificil, APagePastedIntoACellIsDroppedWithEscape) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  form.fg2.MoveTo(1, 1);
  form.Enter(form.fg2);
  Settle();
  Press(Qt::Key_9);
  Settle();
  Paste(Page());
  Press(Qt::Key_Escape);
  Settle();
  EXPECT_EQ(form.fg2.TextMatrix(1, 1), "3");
  EXPECT_EQ(One("SELECT cantidad FROM entpart"), "3");
  EXPECT_TRUE(boxes.empty()) << AllSaid();
}

TEST_F(DiaDificil, APagePastedIntoTheNotesIsKeptWordForWord) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  form.Enter(form.RichTextBox2);
  Settle();
  const QString page = Page();
  Paste(page);
  form.Enter(form.txtFields(campo::Articulo));
  Settle();
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(boxes.size(), 1u) << AllSaid();  // the question
  EXPECT_EQ(One("SELECT estado FROM entradas"), "CO");
  std::string kept = One("SELECT observ FROM entradas");
  std::string wanted = page.toStdString();
  std::erase(kept, '\r');
  std::erase(wanted, '\r');
  EXPECT_EQ(kept, wanted);
}

// The remarks of a document that another program of the suite wrote end their lines by two characters.
TEST_F(DiaDificil, ALetterGoesIntoTheNotesWhereTheCaretStands) {
  frmEntradasWizard& form = Receiving();
  const auto* notes = qobject_cast<QTextEdit*>(program->ViewOf(form)->WidgetOf(form.RichTextBox2));
  for (const char* text : {"uno\ndos\ntres", "uno\r\ndos\r\ntres"}) {
    form.RichTextBox2.Text(text);
    form.Enter(form.RichTextBox2);
    Settle();
    Press(Qt::Key_End);
    Press(Qt::Key_Up);
    Settle();
    Type(QStringLiteral("X"));
    Settle();
    EXPECT_EQ(notes->toPlainText().toStdString(), "uno\ndosX\ntres");
    std::string held = form.RichTextBox2.Text();
    std::erase(held, '\r');
    EXPECT_EQ(held, "uno\ndosX\ntres");
    form.Enter(form.txtFields(campo::Articulo));
    Settle();
  }
}

TEST_F(DiaDificil, WhatIsSelectedByKeyIsWhatTheNextLetterReplaces) {
  frmEntradasWizard& form = Receiving();
  Type(QStringLiteral("MAR-16"));
  Press(Qt::Key_Left, Qt::ShiftModifier);
  Press(Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_EQ(Widget(form, campo::Articulo)->selectedText(), QStringLiteral("16"));
  Type(QStringLiteral("2"));
  EXPECT_EQ(Widget(form, campo::Articulo)->text(), QStringLiteral("MAR-2"));
  EXPECT_EQ(form.txtFields(campo::Articulo).Text(), "MAR-2");
}

}  // namespace
}  // namespace tarvik::desktop
