// What the controls do by themselves: names, states, places, clicks, boxes, lists, dates.
#include "tests/forms/test_form.h"

namespace tarvik::forms {
namespace {

class Controls : public FormsBench {};

TEST_F(Controls, AControlIsFoundByNameAndAnArrayMemberByIndex) {
  EXPECT_EQ(form->first.FullName(), "first");
  EXPECT_EQ(form->fields(4).FullName(), "fields(4)");
  EXPECT_FALSE(form->first.Index().has_value());
  EXPECT_EQ(form->fields(14).Index(), 14);
  EXPECT_EQ(form->Find("fields", 14), &form->fields(14));
  EXPECT_EQ(form->Find("first"), &form->first);
  EXPECT_EQ(form->Find("fields"), nullptr);
  EXPECT_EQ(form->Find("fields", 1), nullptr);
  EXPECT_EQ(form->Find("first", 0), nullptr);
}

TEST_F(Controls, AnArrayRefusesAnIndexThatItDoesNotHave) {
  EXPECT_TRUE(form->fields.Has(4));
  EXPECT_FALSE(form->fields.Has(5));
  EXPECT_EQ(form->fields.Count(), 3);
  EXPECT_THROW(form->fields(5), data::Error);
}

TEST_F(Controls, ADisabledOrHiddenControlCannotTakeTheFocus) {
  EXPECT_TRUE(form->first.CanTakeFocus());
  form->first.Enabled(false);
  EXPECT_FALSE(form->first.CanTakeFocus());
  form->first.Enabled(true);
  form->first.Visible(false);
  EXPECT_FALSE(form->first.CanTakeFocus());
}

TEST_F(Controls, AContainerThatIsDisabledOrHiddenShutsWhatItHolds) {
  form->panel.Enabled(false);
  EXPECT_FALSE(form->inside.CanTakeFocus());
  EXPECT_TRUE(form->inside.Enabled());
  form->panel.Enabled(true);
  form->panel.Visible(false);
  EXPECT_FALSE(form->inside.CanTakeFocus());
  form->panel.Visible(true);
  EXPECT_TRUE(form->inside.CanTakeFocus());
}

TEST_F(Controls, LabelsPanelsAndTimersNeverTakeTheFocus) {
  EXPECT_FALSE(form->label.CanTakeFocus());
  EXPECT_FALSE(form->panel.CanTakeFocus());
  EXPECT_FALSE(form->timer.CanTakeFocus());
  EXPECT_TRUE(form->label.IsLabel());
  EXPECT_FALSE(form->first.IsLabel());
}

TEST_F(Controls, APlaceIsSetInPartsAndInOne) {
  form->first.Place(10, 20, 300, 40);
  form->first.Top(25);
  form->first.Width(310);
  EXPECT_EQ(form->first.Left(), 10);
  EXPECT_EQ(form->first.Top(), 25);
  EXPECT_EQ(form->first.Width(), 310);
  EXPECT_EQ(form->first.Height(), 40);
}

TEST_F(Controls, AClickOfABoxTogglesItAndThenRaisesClick) {
  TestForm& f = Shown();
  f.Click(f.check);
  EXPECT_EQ(f.check.Value(), 1);
  EXPECT_EQ(f.Taken(), (Record{"first lost", "check got", "check click"}));
  f.Click(f.check);
  EXPECT_EQ(f.check.Value(), 0);
}

TEST_F(Controls, AssigningABoxRaisesClickOnlyWhereTheValueDiffers) {
  form->check.Value(0);
  EXPECT_TRUE(form->record.empty());
  form->check.Value(1);
  EXPECT_EQ(form->Taken(), Record{"check click"});
  form->check.Design(0);
  EXPECT_TRUE(form->record.empty());
  EXPECT_EQ(form->check.Value(), 0);
}

TEST_F(Controls, SpaceTogglesAFocusedBoxAndEnterDoesNot) {
  TestForm& f = Shown();
  f.Enter(f.check);
  f.Press(Named("Enter"));
  EXPECT_EQ(f.check.Value(), 0);
  f.Press(Named("Space"));
  EXPECT_EQ(f.check.Value(), 1);
}

TEST_F(Controls, EnterAndSpaceClickAFocusedButton) {
  TestForm& f = Shown();
  f.Enter(f.button);
  f.record.clear();
  f.Press(Named("Enter"));
  f.Press(Named("Space"));
  const Record record = f.Taken();
  EXPECT_EQ(std::count(record.begin(), record.end(), "button click"), 2);
}

TEST_F(Controls, ADisabledOrHiddenControlIgnoresAClick) {
  TestForm& f = Shown();
  f.button.Enabled(false);
  f.Click(f.button);
  f.DoubleClick(f.button);
  f.button.Enabled(true);
  f.button.Visible(false);
  f.Click(f.button);
  f.DoubleClick(f.button);
  EXPECT_TRUE(f.record.empty());
  EXPECT_EQ(f.ActiveControl(), &f.first);
}

TEST_F(Controls, AControlInADisabledContainerIgnoresClickAndDoubleClick) {
  TestForm& f = Shown();
  f.inside.OnClick = [&] { f.Note("inside click"); };
  f.inside.OnDblClick = [&] { f.Note("inside double"); };
  f.panel.Enabled(false);
  f.Click(f.inside);
  f.DoubleClick(f.inside);
  EXPECT_EQ(f.Taken(), Record{});
}

TEST_F(Controls, AClickOnALabelLeavesTheFocusWhereItIs) {
  TestForm& f = Shown();
  f.Click(f.label);
  EXPECT_EQ(f.Taken(), Record{"label click"});
  EXPECT_EQ(f.ActiveControl(), &f.first);
}

TEST_F(Controls, ADoubleClickIsAClickFirst) {
  TestForm& f = Shown();
  f.DoubleClick(f.button);
  EXPECT_EQ(f.Taken(), (Record{"first lost", "button got", "button click", "button double"}));
}

TEST_F(Controls, NothingIsClickedOnAFormThatIsNotShown) {
  form->Load();
  form->record.clear();
  form->Click(form->button);
  form->ClickCell(form->grid, 1, 1);
  EXPECT_TRUE(form->record.empty());
}

TEST_F(Controls, ChoosingTakesTheItemsTextAndRaisesClick) {
  TestForm& f = Shown();
  f.list.AddItem("Norte");
  f.list.AddItem("Sur");
  EXPECT_EQ(f.list.ListIndex(), -1);
  f.Choose(f.list, 1);
  EXPECT_EQ(f.list.Text(), "Sur");
  EXPECT_EQ(f.list.ListIndex(), 1);
  EXPECT_EQ(f.Taken(), (Record{"first lost", "list got", "list click"}));
}

TEST_F(Controls, AnItemThatIsNotThereIsAnError) {
  TestForm& f = Shown();
  f.list.AddItem("Norte");
  EXPECT_THROW(f.list.ListIndex(1), data::Error);
  EXPECT_THROW(f.list.ListIndex(-2), data::Error);
  EXPECT_EQ(f.list.ListIndex(), -1);
  f.Choose(f.list, 7);
  EXPECT_EQ(unhandled.size(), 1u);
}

TEST_F(Controls, ArrowsWalkAListAndStopAtItsEnds) {
  TestForm& f = Shown();
  for (const char* item : {"Norte", "Sur", "Centro"}) f.list.AddItem(item);
  f.Enter(f.list);
  f.Press(Named("Down"));
  f.Press(Named("Down"));
  EXPECT_EQ(f.list.Text(), "Sur");
  f.Press(Named("Down"));
  f.Press(Named("Down"));
  EXPECT_EQ(f.list.ListIndex(), 2);
  f.Press(Named("Up"));
  EXPECT_EQ(f.list.Text(), "Sur");
}

TEST_F(Controls, AListsTextThatDiffersRaisesItsChange) {
  int changes = 0;
  form->list.OnChange = [&] { ++changes; };
  form->list.Text("x");
  form->list.Text("x");
  EXPECT_EQ(changes, 1);
}

TEST_F(Controls, ADatePickerHoldsADateOrNone) {
  TestForm& f = Shown();
  EXPECT_FALSE(f.date.Value().has_value());
  f.Enter(f.date);
  f.Press(Named("Up"));
  EXPECT_FALSE(f.date.Value().has_value());
  f.date.Value(data::Date{2024, 2, 28});
  f.Press(Named("Up"));
  EXPECT_EQ(f.date.Value(), (data::Date{2024, 2, 29}));
  f.Press(Named("Down"));
  f.Press(Named("Down"));
  EXPECT_EQ(f.date.Value(), (data::Date{2024, 2, 27}));
}

TEST_F(Controls, ASearchBoxHoldsAFieldAndAsksThePlatformForItsList) {
  std::string asked;
  platform.on_search_list = [&](SearchBox& box) { asked = box.buscar() + "/" + box.Field()->Name(); };
  form->search.buscar("Almacenes");
  form->search.Hold(form->third);
  EXPECT_EQ(form->third.Container(), &form->search);
  form->search.ShowData();
  EXPECT_EQ(asked, "Almacenes/third");
}

TEST_F(Controls, ABrowserHandsOverTheNameAsItWasComposed) {
  std::string shown;
  platform.on_navigate = [&](WebBrowser&, const std::string& name) { shown = name; };
  form->browser.Navigate("C:\\sys\\05032024.htm");
  EXPECT_EQ(shown, "C:\\sys\\05032024.htm");
  EXPECT_EQ(form->browser.Location(), shown);
}

class Ear : public FormListener {
 public:
  Record heard;
  void ControlChanged(Control& control, Aspect) override { heard.push_back(control.FullName()); }
  void CaptionChanged() override { heard.push_back("caption"); }
  void FocusMoved(Control* from, Control* to) override {
    heard.push_back((from ? from->Name() : "-") + ">" + (to ? to->Name() : "-"));
  }
  void Shown(bool modal) override { heard.push_back(modal ? "modal" : "shown"); }
  void Hidden() override { heard.push_back("hidden"); }
  void Unloaded() override { heard.push_back("unloaded"); }
};

TEST_F(Controls, AViewHearsEveryChangeAfterItHappened) {
  Ear ear;
  form->Listen(ear);
  form->Show(false);
  form->first.Text("a");
  form->fields(4).Enabled(false);
  form->first.Enabled(false);
  form->Caption("Entrada: 1");
  form->Hide();
  form->Unload();
  EXPECT_EQ(ear.heard, (Record{"shown", "->first", "first", "fields(4)", "first>-", "first", "caption",
                               "hidden", "unloaded"}));
  form->StopListening(ear);
}

}  // namespace
}  // namespace tarvik::forms
