// Timers, posted functions, and the end of an operator's act.
#include "tests/forms/test_form.h"

namespace tarvik::forms {
namespace {

class TimerAndPending : public FormsBench {};

TEST_F(TimerAndPending, ATimerRunsOnlyWithAnIntervalAndEnabled) {
  TestForm& f = Shown();
  EXPECT_FALSE(f.timer.Running());
  f.timer.Enabled(true);
  EXPECT_FALSE(f.timer.Running());
  f.timer.Interval(10);
  EXPECT_TRUE(f.timer.Running());
  f.timer.Enabled(false);
  EXPECT_FALSE(f.timer.Running());
  platform.Advance(100);
  EXPECT_TRUE(f.record.empty());
}

TEST_F(TimerAndPending, ATimerTicksWhenItsTimeHasGoneBy) {
  TestForm& f = Shown();
  f.timer.Interval(10);
  f.timer.Enabled(true);
  platform.Advance(9);
  EXPECT_TRUE(f.record.empty());
  platform.Advance(1);
  EXPECT_EQ(f.Taken(), Record{"tick"});
  platform.Advance(30);
  EXPECT_EQ(f.Taken(), (Record{"tick", "tick", "tick"}));
}

TEST_F(TimerAndPending, ATickMayStopItsTimer) {
  TestForm& f = Shown();
  f.timer.OnTimer = [&] {
    f.Note("tick");
    f.timer.Enabled(false);
  };
  f.timer.Interval(10);
  f.timer.Enabled(true);
  platform.Advance(1000);
  EXPECT_EQ(f.Taken(), Record{"tick"});
}

TEST_F(TimerAndPending, ATickMayEndItsForm) {
  TestForm& f = Shown();
  f.timer.OnTimer = [&] { f.Unload(); };
  f.timer.Interval(10);
  f.timer.Enabled(true);
  platform.Advance(1000);
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(f.Taken(), (Record{"query code", "unload"}));
}

TEST_F(TimerAndPending, AnEndedFormsTimerRunsNoMore) {
  TestForm& f = Shown();
  f.timer.Interval(10);
  f.timer.Enabled(true);
  f.Discard();
  EXPECT_FALSE(f.timer.Running());
  platform.Advance(1000);
  EXPECT_TRUE(f.record.empty());
}

TEST_F(TimerAndPending, ATimerOfAFormThatWasNeverLoadedDoesNotRun) {
  form->timer.Interval(10);
  form->timer.Enabled(true);
  EXPECT_FALSE(form->timer.Running());
}

TEST_F(TimerAndPending, TimersTickInTheOrderOfTheirTimes) {
  TestForm& f = Shown();
  Timer slow(f, "slow");
  slow.OnTimer = [&] { f.Note("slow"); };
  slow.Interval(25);
  slow.Enabled(true);
  f.timer.Interval(10);
  f.timer.Enabled(true);
  platform.Advance(30);
  EXPECT_EQ(f.Taken(), (Record{"tick", "tick", "slow", "tick"}));
}

TEST_F(TimerAndPending, AnErrorOfATickIsToldToThePlatform) {
  TestForm& f = Shown();
  f.timer.OnTimer = Fails("reloj");
  f.timer.Interval(10);
  f.timer.Enabled(true);
  platform.Advance(10);
  EXPECT_EQ(unhandled, Record{"reloj"});
}

TEST_F(TimerAndPending, WhatIsPostedRunsInOrderWhenEventsAreLetThrough) {
  Record order;
  platform.Post([&] {
    order.push_back("one");
    platform.Post([&] { order.push_back("three"); });
  });
  platform.Post([&] { order.push_back("two"); });
  EXPECT_TRUE(order.empty());
  platform.ProcessEvents();
  EXPECT_EQ(order, (Record{"one", "two", "three"}));
}

TEST_F(TimerAndPending, APostedFunctionThatFailsDoesNotStopTheOthers) {
  bool ran = false;
  platform.Post(Fails("pendiente"));
  platform.Post([&] { ran = true; });
  platform.ProcessEvents();
  EXPECT_TRUE(ran);
  EXPECT_EQ(unhandled, Record{"pendiente"});
}

TEST_F(TimerAndPending, WhatAnActHasPendedIsWorkedOffBeforeItReturns) {
  TestForm& f = Shown();
  f.first.OnKeyDown = [&](int&, int) { platform.Post([&] { f.Note("pending"); }); };
  f.Press(KeyFor('a'));
  const Record record = f.Taken();
  ASSERT_FALSE(record.empty());
  EXPECT_EQ(record.back(), "pending");
}

TEST_F(TimerAndPending, AnActInsideAnActLeavesThePendingToTheOuterOne) {
  TestForm& f = Shown();
  f.first.OnKeyDown = [&](int&, int) {
    platform.Post([&] { f.Note("pending"); });
    f.Click(f.label);
  };
  f.Press(KeyFor('a'));
  const Record record = f.Taken();
  EXPECT_EQ(record, (Record{"form down 65", "label click", "first press 97", "first change a", "first up 65",
                            "pending"}));
}

TEST_F(TimerAndPending, AnActOnAnotherFormInsideAnActLeavesThePendingToTheOuterOneToo) {
  TestForm& f = Shown();
  auto other = std::make_shared<TestForm>(platform, "otra");
  other->Show(false);
  f.first.OnKeyDown = [&](int&, int) {
    platform.Post([&] { f.Note("pending"); });
    other->Click(other->label);
  };
  f.Press(KeyFor('a'));
  EXPECT_EQ(f.Taken().back(), "pending");
}

TEST_F(TimerAndPending, BoxesAreAnsweredNoToAQuestionAndYesToAllElse) {
  EXPECT_FALSE(platform.ShowBox(BoxKind::Question, "x", kBoxYesNo));
  EXPECT_TRUE(platform.ShowBox(BoxKind::Plain, "x", kBoxPlain));
  platform.on_box = [](BoxKind, const std::string& text, int style) { return text == "x" && style == 36; };
  EXPECT_TRUE(platform.ShowBox(BoxKind::Question, "x", 36));
}

TEST_F(TimerAndPending, TheClockMayStandStill) {
  const data::DateTime fixed{{2024, 3, 5}, {14, 3, 22}};
  platform.clock = [&] { return std::optional(fixed); };
  EXPECT_EQ(platform.Now(), fixed);
  platform.clock = [] { return std::optional<data::DateTime>(); };
  EXPECT_GT(platform.Now().date.year, 2020);
}

TEST_F(TimerAndPending, ABeepIsHeard) {
  int beeps = 0;
  platform.on_beep = [&] { ++beeps; };
  platform.Beep();
  EXPECT_EQ(beeps, 1);
}

}  // namespace
}  // namespace tarvik::forms
