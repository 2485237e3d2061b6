// The grid: cells, the current cell with its events, sizes, colours, rows that come and go.
#include "tests/forms/test_form.h"

namespace tarvik::forms {
namespace {

class Grid : public FormsBench {
 protected:
  Grid() {
    g.Rows(6);
    g.Cols(4);
    g.FixedRows(1);
    form->record.clear();
  }
  FlexGrid& g = form->grid;
};

TEST_F(Grid, ACellHoldsItsTextAndTheCurrentOneIsReachedByText) {
  g.TextMatrix(2, 3, "x");
  EXPECT_EQ(g.TextMatrix(2, 3), "x");
  EXPECT_EQ(g.TextMatrix(5, 0), "");
  g.MoveTo(2, 3);
  EXPECT_EQ(g.Text(), "x");
  g.Text("y");
  EXPECT_EQ(g.TextMatrix(2, 3), "y");
}

TEST_F(Grid, EveryIndexOutsideIsAnError) {
  EXPECT_THROW((void)g.TextMatrix(6, 0), data::Error);
  EXPECT_THROW((void)g.TextMatrix(0, 4), data::Error);
  EXPECT_THROW((void)g.TextMatrix(-1, 0), data::Error);
  EXPECT_THROW(g.TextMatrix(6, 0, "x"), data::Error);
  EXPECT_THROW(g.Row(6), data::Error);
  EXPECT_THROW(g.Col(-1), data::Error);
  EXPECT_THROW((void)g.ColWidth(4), data::Error);
  EXPECT_THROW(g.ColWidth(4, 100), data::Error);
  EXPECT_THROW((void)g.RowHeight(6), data::Error);
  EXPECT_THROW(g.TopRow(6), data::Error);
  EXPECT_THROW(g.RemoveItem(6), data::Error);
  EXPECT_THROW(g.BackColor(6, 0, 1), data::Error);
  EXPECT_THROW((void)g.Blocked(0, 4), data::Error);
  EXPECT_EQ(form->Cell(), "1,0");
}

TEST_F(Grid, MovingLeavesOneCellAndEntersTheOther) {
  g.Row(2);
  EXPECT_EQ(form->Taken(), (Record{"leave 1,0", "enter 2,0", "moved 2,0"}));
  g.Col(3);
  EXPECT_EQ(form->Taken(), (Record{"leave 2,0", "enter 2,3", "moved 2,3"}));
}

TEST_F(Grid, BothAtOnceIsOneMove) {
  g.MoveTo(4, 2);
  EXPECT_EQ(form->Taken(), (Record{"leave 1,0", "enter 4,2", "moved 4,2"}));
}

TEST_F(Grid, TheSameCellRaisesNothing) {
  g.Row(1);
  g.Col(0);
  EXPECT_TRUE(form->record.empty());
}

TEST_F(Grid, WhileAGridIsBuiltNoCellEventIsLive) {
  g.CellEvents(false);
  g.MoveTo(3, 3);
  EXPECT_TRUE(form->record.empty());
  EXPECT_EQ(form->Cell(), "3,3");
  g.CellEvents(true);
  g.Row(1);
  EXPECT_EQ(form->record.size(), 3u);
}

TEST_F(Grid, AnErrorOnLeavingKeepsTheCellAndOneOnEnteringDoesNot) {
  g.OnLeaveCell = Fails("no se guarda");
  EXPECT_THROW(g.Row(3), data::Error);
  EXPECT_EQ(g.Row(), 1);
  g.OnLeaveCell = nullptr;
  g.OnEnterCell = Fails("no se entra");
  EXPECT_THROW(g.Row(3), data::Error);
  EXPECT_EQ(g.Row(), 3);
}

TEST_F(Grid, WidthsAndHeightsStartAtTheDefaultAndZeroHides) {
  EXPECT_GT(g.ColWidth(0), 0);
  g.ColWidth(0, 1440);
  g.ColWidth(1, 0);
  EXPECT_EQ(g.ColWidth(0), 1440);
  EXPECT_EQ(g.ColWidth(1), 0);
  g.RowHeight(2, 500);
  EXPECT_EQ(g.RowHeight(2), 500);
  EXPECT_EQ(g.RowHeight(3), g.RowHeight(1));
}

TEST_F(Grid, TheCurrentCellsPlaceFollowsWidthsHeightsAndTheTopRow) {
  g.ColWidth(0, 100);
  g.ColWidth(1, 200);
  for (int row = 0; row < g.Rows(); ++row) g.RowHeight(row, 10);
  g.MoveTo(3, 2);
  EXPECT_EQ(g.CellLeft(), 300);
  EXPECT_EQ(g.CellTop(), 30);
  EXPECT_EQ(g.CellWidth(), g.ColWidth(2));
  EXPECT_EQ(g.CellHeight(), 10);
  g.TopRow(3);
  EXPECT_EQ(g.CellTop(), 10);
}

TEST_F(Grid, ColoursAndMarksBelongToTheirCell) {
  EXPECT_EQ(g.BackColor(2, 2), 0);
  g.BackColor(2, 2, 0xFFFFE0);
  g.Blocked(2, 3, true);
  EXPECT_EQ(g.BackColor(2, 2), 0xFFFFE0);
  EXPECT_EQ(g.BackColor(2, 3), 0);
  EXPECT_TRUE(g.Blocked(2, 3));
  EXPECT_FALSE(g.Blocked(2, 2));
  g.MoveTo(2, 2);
  EXPECT_EQ(g.CellBackColor(), 0xFFFFE0);
  g.CellBackColor(0xFFFFFF);
  EXPECT_EQ(g.BackColor(2, 2), 0xFFFFFF);
}

TEST_F(Grid, ARemovedRowTakesItsTextsAndColoursAndTheOthersMoveUp) {
  g.TextMatrix(1, 0, "a");
  g.TextMatrix(2, 0, "b");
  g.TextMatrix(3, 0, "c");
  g.BackColor(2, 0, 7);
  g.MoveTo(2, 0);
  form->record.clear();
  g.RemoveItem(2);
  EXPECT_EQ(g.Rows(), 5);
  EXPECT_EQ(g.TextMatrix(2, 0), "c");
  EXPECT_EQ(g.BackColor(2, 0), 0);
  EXPECT_EQ(g.Row(), 2);
  EXPECT_TRUE(form->record.empty());
  g.AddItem("z");
  EXPECT_EQ(g.Rows(), 6);
  EXPECT_EQ(g.TextMatrix(5, 0), "z");
}

TEST_F(Grid, RemovingTheLastRowMakesTheOneBeforeCurrent) {
  g.MoveTo(5, 0);
  g.RemoveItem(5);
  EXPECT_EQ(g.Row(), 4);
}

TEST_F(Grid, HeadersAndTheLastFreeRowCannotBeRemoved) {
  EXPECT_THROW(g.RemoveItem(0), data::Error);
  g.Rows(2);
  EXPECT_THROW(g.RemoveItem(1), data::Error);
  EXPECT_EQ(g.Rows(), 2);
}

TEST_F(Grid, ShrinkingDropsCellsForGood) {
  g.TextMatrix(5, 3, "x");
  g.MoveTo(5, 3);
  g.Rows(3);
  g.Cols(2);
  EXPECT_EQ(form->Cell(), "2,1");
  g.Rows(6);
  g.Cols(4);
  EXPECT_EQ(g.TextMatrix(5, 3), "");
  EXPECT_THROW(g.Rows(0), data::Error);
  EXPECT_THROW(g.FixedRows(6), data::Error);
  EXPECT_THROW(g.FixedCols(4), data::Error);
}

TEST_F(Grid, ArrowsMoveTheCurrentCellAndStopAtTheEdges) {
  TestForm& f = Shown();
  f.Enter(g);
  f.Press(Named("Up"));
  EXPECT_EQ(f.Cell(), "1,0");
  f.Press(Named("Down"));
  f.Press(Named("Right"));
  EXPECT_EQ(f.Cell(), "2,1");
  f.Press(Named("Left"));
  f.Press(Named("Left"));
  EXPECT_EQ(f.Cell(), "2,0");
  for (int i = 0; i < 9; ++i) f.Press(Named("Down"));
  EXPECT_EQ(f.Cell(), "5,0");
  for (int i = 0; i < 9; ++i) f.Press(Named("Right"));
  EXPECT_EQ(f.Cell(), "5,3");
}

TEST_F(Grid, ArrowsSkipHiddenColumnsAndFixedOnes) {
  TestForm& f = Shown();
  g.ColWidth(1, 0);
  g.ColWidth(3, 0);
  f.Enter(g);
  f.Press(Named("Right"));
  EXPECT_EQ(g.Col(), 2);
  f.Press(Named("Right"));
  EXPECT_EQ(g.Col(), 2);
  f.Press(Named("Left"));
  EXPECT_EQ(g.Col(), 0);
  g.FixedCols(1);
  g.Col(2);
  f.Press(Named("Left"));
  EXPECT_EQ(g.Col(), 2);
}

TEST_F(Grid, AClickMakesTheCellCurrentFirst) {
  TestForm& f = Shown();
  f.ClickCell(g, 3, 2);
  EXPECT_EQ(f.Taken(),
            (Record{"first lost", "grid got", "leave 1,0", "enter 3,2", "moved 3,2", "grid click"}));
  f.DoubleClickCell(g, 4, 2);
  EXPECT_EQ(f.Taken(), (Record{"leave 3,2", "enter 4,2", "moved 4,2", "grid click", "grid double"}));
  g.Enabled(false);
  f.ClickCell(g, 1, 1);
  f.DoubleClickCell(g, 1, 1);
  EXPECT_TRUE(f.record.empty());
}

TEST_F(Grid, AClickOutsideIsToldToThePlatform) {
  TestForm& f = Shown();
  f.ClickCell(g, 99, 0);
  EXPECT_EQ(unhandled.size(), 1u);
  EXPECT_EQ(f.Cell(), "1,0");
}

}  // namespace
}  // namespace tarvik::forms
