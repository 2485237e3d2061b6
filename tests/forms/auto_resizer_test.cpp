// The resizer: controls in proportion to their window, reckoned from the design and never from the last size.
#include "forms/auto_resizer.h"

#include <array>

#include "tests/forms/test_form.h"

namespace tarvik::forms {
namespace {

using Box = std::array<int, 4>;

class Resizing : public FormsBench {
 protected:
  Resizing() {
    form->first.Place(100, 50, 400, 30);
    form->button.Place(500, 300, 101, 33);
    form->label.Place(0, 0, 1000, 400);
    resizer.Design(1000, 400);
  }
  static Box Of(const Control& control) {
    return {control.Left(), control.Top(), control.Width(), control.Height()};
  }

  AutoResizer resizer{*form, "resizer"};
};

TEST_F(Resizing, EveryControlGrowsInProportionEachWayByItself) {
  resizer.Fit(2000, 1200);
  EXPECT_EQ(Of(form->first), (Box{200, 150, 800, 90}));
  EXPECT_EQ(Of(form->button), (Box{1000, 900, 202, 99}));
  EXPECT_EQ(Of(form->label), (Box{0, 0, 2000, 1200}));
}

TEST_F(Resizing, AndShrinksRoundedToTheNearest) {
  resizer.Fit(500, 200);
  EXPECT_EQ(Of(form->first), (Box{50, 25, 200, 15}));
  EXPECT_EQ(Of(form->button), (Box{250, 150, 51, 17}));  // 50.5 and 16.5
}

TEST_F(Resizing, ManySizesLaterTheDesignIsTheDesign) {
  for (int size = 37; size < 3000; size += 61) resizer.Fit(size, size / 2 + 1);
  resizer.Fit(1000, 400);
  EXPECT_EQ(Of(form->first), (Box{100, 50, 400, 30}));
  EXPECT_EQ(Of(form->button), (Box{500, 300, 101, 33}));
}

TEST_F(Resizing, WhatFloatsKeepsItsPlace) {
  resizer.Fit(2000, 800, {&form->first, &form->label});
  EXPECT_EQ(Of(form->first), (Box{100, 50, 400, 30}));
  EXPECT_EQ(Of(form->label), (Box{0, 0, 1000, 400}));
  EXPECT_EQ(Of(form->button), (Box{1000, 600, 202, 66}));
}

TEST_F(Resizing, AWindowWithoutAreaMovesNothing) {
  for (auto [width, height] : {std::pair{0, 400}, {1000, 0}, {-1, 400}, {0, 0}}) resizer.Fit(width, height);
  EXPECT_EQ(Of(form->first), (Box{100, 50, 400, 30}));
}

TEST_F(Resizing, BeforeTheDesignNothingIsMoved) {
  AutoResizer other(*form, "other");
  other.Fit(2000, 800);
  EXPECT_EQ(Of(form->first), (Box{100, 50, 400, 30}));
}

TEST_F(Resizing, ANewDesignTakesTheControlsAsTheyStandThen) {
  form->first.Place(10, 10, 10, 10);
  resizer.Design(100, 100);
  resizer.Fit(300, 200);
  EXPECT_EQ(Of(form->first), (Box{30, 20, 30, 20}));
}

TEST_F(Resizing, ItTakesNoFocusAndRaisesNothing) {
  TestForm& f = Shown();
  EXPECT_FALSE(resizer.Focusable());
  resizer.Fit(2000, 800);
  EXPECT_TRUE(f.record.empty());
}

}  // namespace
}  // namespace tarvik::forms
