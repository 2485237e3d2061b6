// The focus: where it starts, how it moves, what leaving and entering raise, and how it is lost.
#include "tests/forms/test_form.h"

namespace tarvik::forms {
namespace {

class Focus : public FormsBench {};

TEST_F(Focus, OnShowTheFirstOfTheTabOrderGetsItWithItsEnteringLogic) {
  form->Show(false);
  EXPECT_EQ(form->ActiveControl(), &form->first);
  EXPECT_EQ(form->Taken(), (Record{"load", "first got"}));
}

TEST_F(Focus, OnShowDisabledAndHiddenControlsArePassedOver) {
  form->first.Enabled(false);
  form->second.Visible(false);
  form->Show(false);
  EXPECT_EQ(form->ActiveControl(), &form->third);
}

TEST_F(Focus, AFormWithNothingToFocusIsShownAllTheSame) {
  for (Control* control : form->Controls()) control->Enabled(false);
  form->Show(false);
  EXPECT_TRUE(form->Visible());
  EXPECT_EQ(form->ActiveControl(), nullptr);
}

TEST_F(Focus, MovingRaisesLeavingThenEntering) {
  TestForm& f = Shown();
  EXPECT_TRUE(f.Enter(f.second));
  EXPECT_EQ(f.Taken(), (Record{"first lost", "second got"}));
  f.third.SetFocus();
  EXPECT_EQ(f.Taken(), (Record{"second lost", "third got"}));
  EXPECT_TRUE(f.third.HasFocus());
}

TEST_F(Focus, AHandIsOnTheControlsOfItsOwnFormAlone) {
  TestForm& f = Shown();
  auto other = std::make_shared<TestForm>(platform, "other");
  other->Show(false);
  EXPECT_THROW(f.Enter(other->second), data::Error);
  EXPECT_THROW(f.Type(other->second, "x"), data::Error);
  EXPECT_THROW(f.Click(other->button), data::Error);
  EXPECT_THROW(f.DoubleClick(other->second), data::Error);
  EXPECT_THROW(f.Choose(other->list, 0), data::Error);
  EXPECT_THROW(f.ClickCell(other->grid, 1, 1), data::Error);
  EXPECT_THROW(f.DoubleClickCell(other->grid, 1, 1), data::Error);
  EXPECT_EQ(f.ActiveControl(), &f.first);
  EXPECT_EQ(other->second.Text(), "");
}

TEST_F(Focus, WhereItIsAlreadyNothingHappens) {
  TestForm& f = Shown();
  f.first.Text("abc");
  f.first.SelectAll();
  f.record.clear();
  EXPECT_TRUE(f.Enter(f.first));
  f.first.SetFocus();
  EXPECT_TRUE(f.record.empty());
  EXPECT_EQ(f.first.SelLength(), 3);
}

TEST_F(Focus, AnOperatorCannotEnterADisabledOrHiddenControl) {
  TestForm& f = Shown();
  f.second.Enabled(false);
  f.third.Visible(false);
  EXPECT_FALSE(f.Enter(f.second));
  EXPECT_FALSE(f.Enter(f.third));
  EXPECT_FALSE(f.Enter(f.label));
  EXPECT_TRUE(f.record.empty());
}

TEST_F(Focus, AProcedureThatSendsItToSuchAControlGetsAnError) {
  TestForm& f = Shown();
  f.second.Enabled(false);
  f.panel.Enabled(false);
  EXPECT_THROW(f.second.SetFocus(), data::Error);
  EXPECT_THROW(f.inside.SetFocus(), data::Error);
  EXPECT_EQ(f.ActiveControl(), &f.first);
}

TEST_F(Focus, BeforeTheFormIsShownNothingTakesIt) {
  form->Load();
  EXPECT_THROW(form->first.SetFocus(), data::Error);
  EXPECT_FALSE(form->Enter(form->first));
}

TEST_F(Focus, AControlDisabledOrHiddenWithTheFocusLosesItWithoutAnEvent) {
  TestForm& f = Shown();
  f.first.Enabled(false);
  EXPECT_EQ(f.ActiveControl(), nullptr);
  EXPECT_TRUE(f.record.empty());
  f.Enter(f.second);
  EXPECT_EQ(f.Taken(), Record{"second got"});
  f.second.Visible(false);
  EXPECT_EQ(f.ActiveControl(), nullptr);
  EXPECT_TRUE(f.record.empty());
}

TEST_F(Focus, AContainerDisabledAroundItTakesItAwayToo) {
  TestForm& f = Shown();
  f.Enter(f.inside);
  f.record.clear();
  f.panel.Enabled(false);
  EXPECT_EQ(f.ActiveControl(), nullptr);
  EXPECT_TRUE(f.record.empty());
}

TEST_F(Focus, LeavingLogicMaySendItElsewhere) {
  TestForm& f = Shown();
  f.first.OnLostFocus = [&] {
    f.Note("first lost");
    f.third.SetFocus();
  };
  f.Enter(f.second);
  EXPECT_EQ(f.ActiveControl(), &f.third);
  EXPECT_EQ(f.Taken(), (Record{"first lost", "third got"}));
}

TEST_F(Focus, LeavingLogicMayBringItBack) {
  TestForm& f = Shown();
  f.first.OnLostFocus = [&] {
    f.Note("first lost");
    f.first.SetFocus();
  };
  f.Enter(f.second);
  EXPECT_EQ(f.ActiveControl(), &f.first);
  EXPECT_EQ(f.Taken(), (Record{"first lost", "first got"}));
}

TEST_F(Focus, LeavingLogicThatDisablesTheTargetLeavesNoFocus) {
  TestForm& f = Shown();
  f.first.OnLostFocus = [&] { f.second.Enabled(false); };
  f.Enter(f.second);
  EXPECT_EQ(f.ActiveControl(), nullptr);
  EXPECT_TRUE(f.record.empty());
}

TEST_F(Focus, EnteringLogicMaySendItOn) {
  TestForm& f = Shown();
  f.second.OnGotFocus = [&] {
    f.Note("second got");
    f.third.SetFocus();
  };
  f.Enter(f.second);
  EXPECT_EQ(f.Taken(), (Record{"first lost", "second got", "second lost", "third got"}));
  EXPECT_EQ(f.ActiveControl(), &f.third);
}

TEST_F(Focus, LeavingLogicThatEndsTheFormEndsTheMove) {
  TestForm& f = Shown();
  f.first.OnLostFocus = [&] { f.Unload(); };
  f.Enter(f.second);
  EXPECT_EQ(f.Taken(), (Record{"query code", "unload"}));
}

TEST_F(Focus, ByAnOperatorEachEventIsABoundaryOfItsOwn) {
  TestForm& f = Shown();
  f.first.OnLostFocus = Fails("al salir");
  f.second.OnGotFocus = Fails("al entrar");
  EXPECT_TRUE(f.Enter(f.second));
  EXPECT_EQ(unhandled, (Record{"al salir", "al entrar"}));
  EXPECT_EQ(f.ActiveControl(), &f.second);
}

TEST_F(Focus, ByAProcedureTheErrorBelongsToTheMoveAfterBothEventsHaveRun) {
  TestForm& f = Shown();
  f.first.OnLostFocus = Fails("al salir");
  try {
    f.second.SetFocus();
    ADD_FAILURE() << "the error was lost";
  } catch (const data::Error& error) {
    EXPECT_STREQ(error.what(), "al salir");
  }
  EXPECT_EQ(f.Taken(), Record{"second got"});
  EXPECT_EQ(f.ActiveControl(), &f.second);
  EXPECT_TRUE(unhandled.empty());
}

TEST_F(Focus, TabWalksTheOrderAroundAndShiftTabBack) {
  TestForm& f = Shown();
  f.second.Enabled(false);
  f.Press(Named("Tab"));
  EXPECT_EQ(f.ActiveControl(), &f.third);
  f.Press({kKeyTab, kShift, 0});
  EXPECT_EQ(f.ActiveControl(), &f.first);
  f.Press({kKeyTab, kShift, 0});
  EXPECT_EQ(f.ActiveControl(), &f.inside);
  f.Press(Named("Tab"));
  EXPECT_EQ(f.ActiveControl(), &f.first);
}

TEST_F(Focus, TabMovesOnlyWhereTheFieldsLogicLeftTheFocus) {
  TestForm& f = Shown();
  f.first.OnKeyDown = [&](int&, int) { f.button.SetFocus(); };
  f.Press(Named("Tab"));
  EXPECT_EQ(f.ActiveControl(), &f.button);
  f.Enter(f.second);
  f.second.OnKeyDown = [](int& code, int) { code = 0; };
  f.Press(Named("Tab"));
  EXPECT_EQ(f.ActiveControl(), &f.second);
}

TEST_F(Focus, AControlWithNoTabIndexIsNotOnTheKeyboardsWay) {
  const auto order = form->TabOrder();
  EXPECT_EQ(order.size(), 9u);
  EXPECT_EQ(order.front(), &form->first);
  EXPECT_EQ(std::count(order.begin(), order.end(), &form->fields(0)), 0);
}

}  // namespace
}  // namespace tarvik::forms
