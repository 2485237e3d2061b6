// One line of text: assignment with its change logic, the caret and the selection, the hand's edits.
#include "tests/forms/test_form.h"

namespace tarvik::forms {
namespace {

class TextBoxes : public FormsBench {};

TEST_F(TextBoxes, ATextThatDiffersRunsTheChangeInsideTheAssignment) {
  std::string seen = "nothing";
  form->first.OnChange = [&] { seen = form->first.Text(); };
  form->first.Text("uno");
  EXPECT_EQ(seen, "uno");
}

TEST_F(TextBoxes, TheSameTextDoesNothing) {
  form->first.Text("uno");
  form->record.clear();
  form->first.SelStart(2);
  form->first.Text("uno");
  EXPECT_TRUE(form->record.empty());
  EXPECT_EQ(form->first.SelStart(), 2);
}

TEST_F(TextBoxes, AChangeMayAssignItsOwnFieldAgain) {
  form->first.OnChange = [&] {
    form->Note(form->first.Text());
    if (form->first.Text() == "a") form->first.Text("ab");
  };
  form->first.Text("a");
  EXPECT_EQ(form->Taken(), (Record{"a", "ab"}));
  EXPECT_EQ(form->first.Text(), "ab");
}

TEST_F(TextBoxes, WhatTheChangeThrowsComesOutOfTheAssignmentWithTheTextInPlace) {
  form->first.OnChange = Fails("no hay red");
  EXPECT_THROW(form->first.Text("uno"), data::Error);
  EXPECT_EQ(form->first.Text(), "uno");
}

TEST_F(TextBoxes, AnAssignedTextIsClippedToTheMaximumLength) {
  form->first.MaxLength(3);
  form->first.Text("añejo");
  EXPECT_EQ(form->first.Text(), "añe");
  form->record.clear();
  form->first.Text("añeras");
  EXPECT_TRUE(form->record.empty());
}

TEST_F(TextBoxes, LengthsAndSelectionsCountCharacters) {
  form->first.Text("añejo");
  form->first.SelectAll();
  EXPECT_EQ(form->first.SelStart(), 0);
  EXPECT_EQ(form->first.SelLength(), 5);
  form->first.SelStart(1000);
  EXPECT_EQ(form->first.SelStart(), 5);
  EXPECT_EQ(form->first.SelLength(), 0);
  form->first.SelStart(1);
  form->first.SelLength(1);
  form->first.ReplaceSelection("n");
  EXPECT_EQ(form->first.Text(), "anejo");
  form->first.SelStart(-4);
  EXPECT_EQ(form->first.SelStart(), 0);
  form->first.SelLength(99);
  EXPECT_EQ(form->first.SelLength(), 5);
}

TEST_F(TextBoxes, AnAssignmentPutsTheCaretInFront) {
  form->first.Text("uno");
  form->first.SelectAll();
  form->first.Text("dos");
  EXPECT_EQ(form->first.SelStart(), 0);
  EXPECT_EQ(form->first.SelLength(), 0);
}

TEST_F(TextBoxes, InvalidTextIsRepaired) {
  form->first.Text("a\xFFz");
  EXPECT_EQ(form->first.Text(), "a\xEF\xBF\xBDz");
}

TEST_F(TextBoxes, ReplacingASelectionIsOneChange) {
  form->first.Text("uno");
  form->first.SelectAll();
  form->record.clear();
  form->first.ReplaceSelection("dos mil");
  EXPECT_EQ(form->Taken(), Record{"first change dos mil"});
  EXPECT_EQ(form->first.SelStart(), 7);
}

TEST_F(TextBoxes, BackspaceAndDeleteTakeOneCharacterOrTheSelection) {
  form->first.Text("añejo");
  form->first.SelStart(2);
  form->first.Backspace();
  EXPECT_EQ(form->first.Text(), "aejo");
  EXPECT_EQ(form->first.SelStart(), 1);
  form->first.DeleteForward();
  EXPECT_EQ(form->first.Text(), "ajo");
  form->first.SelLength(2);
  form->first.DeleteForward();
  EXPECT_EQ(form->first.Text(), "a");
  form->first.SelectAll();
  form->first.Backspace();
  EXPECT_EQ(form->first.Text(), "");
  form->record.clear();
  form->first.Backspace();
  form->first.DeleteForward();
  EXPECT_TRUE(form->record.empty());
}

TEST_F(TextBoxes, AFullFieldTakesNoMoreAndAPasteIsCut) {
  form->first.MaxLength(4);
  form->first.Text("ab");
  form->first.SelStart(2);
  form->first.ReplaceSelection("ñandú");
  EXPECT_EQ(form->first.Text(), "abña");
  form->record.clear();
  form->first.ReplaceSelection("x");
  EXPECT_TRUE(form->record.empty());
}

TEST_F(TextBoxes, OneLineTakesNoLineEndAndManyLinesDo) {
  TestForm& f = Shown();
  f.first.ReplaceSelection("uno\r\ndos");
  EXPECT_EQ(f.first.Text(), "unodos");
  f.Press(Named("Enter"));
  EXPECT_EQ(f.first.Text(), "unodos");
  f.second.MultiLine(true);
  f.Type(f.second, "a\nb");
  EXPECT_EQ(f.second.Text(), "a\nb");
}

TEST_F(TextBoxes, TheCaretWalksByKeysWithoutAChange) {
  TestForm& f = Shown();
  f.first.Text("abc");
  f.record.clear();
  f.Press(Named("Right"));
  EXPECT_EQ(f.first.SelStart(), 1);
  f.Press(Named("End"));
  EXPECT_EQ(f.first.SelStart(), 3);
  f.Press(Named("Right"));
  EXPECT_EQ(f.first.SelStart(), 3);
  f.Press(Named("Left"));
  EXPECT_EQ(f.first.SelStart(), 2);
  f.Press(Named("Home"));
  f.Press(Named("Left"));
  EXPECT_EQ(f.first.SelStart(), 0);
  f.first.SelectAll();
  f.Press(Named("Right"));
  EXPECT_EQ(f.first.SelStart(), 3);
  for (const auto& entry : f.record) EXPECT_EQ(entry.find("change"), std::string::npos);
}

TEST_F(TextBoxes, DeleteAndBackByKeyAreOneChangeEach) {
  TestForm& f = Shown();
  f.first.Text("abc");
  f.first.SelStart(1);
  f.record.clear();
  f.Press(Named("Delete"));
  EXPECT_EQ(f.first.Text(), "ac");
  f.Press(Named("Back"));
  EXPECT_EQ(f.first.Text(), "c");
  const Record record = f.Taken();
  EXPECT_EQ(std::count(record.begin(), record.end(), "first change ac"), 1);
  EXPECT_EQ(std::count(record.begin(), record.end(), "first change c"), 1);
}

TEST_F(TextBoxes, APasteIsOneChangeInTheFocusedFieldOnly) {
  TestForm& f = Shown();
  f.Paste("7501");
  EXPECT_EQ(f.Taken(), Record{"first change 7501"});
  f.first.Enabled(false);
  f.Paste("9");
  EXPECT_EQ(f.first.Text(), "7501");
  f.Enter(f.button);
  f.Paste("9");
  EXPECT_EQ(f.second.Text(), "");
}

TEST_F(TextBoxes, WithNoMaximumATextMayBeLong) {
  const std::string text(100000, 'x');
  form->first.Text(text);
  EXPECT_EQ(form->first.Text().size(), text.size());
  EXPECT_EQ(form->first.MaxLength(), 0);
}

}  // namespace
}  // namespace tarvik::forms
