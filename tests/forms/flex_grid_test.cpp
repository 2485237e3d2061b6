// The grid: cells, the current cell with its events, sizes, colours, rows that come and go; and the bare
// grid, which starts with none.
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

TEST_F(Grid, ADoubleClickOnACellThatTheCursorLeavesAtOnceIsNone) {
  TestForm& f = Shown();
  g.OnEnterCell = [&] {
    f.Note("enter " + f.Cell());
    if (g.Row() == 3) g.Row(4);
  };
  f.DoubleClickCell(g, 3, 2);
  EXPECT_EQ(f.Cell(), "4,2");
  const Record seen = f.Taken();
  EXPECT_EQ(std::count(seen.begin(), seen.end(), "grid click"), 1);
  EXPECT_EQ(std::count(seen.begin(), seen.end(), "grid double"), 0);
  f.DoubleClickCell(g, 4, 2);
  EXPECT_EQ(f.Taken(), (Record{"grid click", "grid double"}));
}

TEST_F(Grid, ADoubleClickWhoseClickClosesTheFormIsNone) {
  TestForm& f = Shown();
  g.OnClick = [&] { f.Unload(); };
  f.DoubleClickCell(g, 3, 2);
  const Record seen = f.Taken();
  EXPECT_EQ(std::count(seen.begin(), seen.end(), "grid double"), 0);
  EXPECT_TRUE(unhandled.empty());
}

// A grid whose rows and columns are somebody else's work.
class BareGrid : public FormsBench {
 protected:
  FlexGrid g{*form, "bare", FlexGrid::Start::Bare};
  [[nodiscard]] std::string Cell() const { return std::to_string(g.Row()) + "," + std::to_string(g.Col()); }
};

TEST_F(BareGrid, StartsWithNothing) {
  EXPECT_EQ(g.Rows(), 0);
  EXPECT_EQ(g.Cols(), 0);
  EXPECT_EQ(g.FixedRows(), 0);
  EXPECT_EQ(g.FixedCols(), 0);
  EXPECT_THROW((void)g.Text(), data::Error);
  EXPECT_THROW(g.Text("x"), data::Error);
  EXPECT_THROW((void)g.CellWidth(), data::Error);
  EXPECT_THROW((void)g.CellHeight(), data::Error);
  EXPECT_THROW(g.MoveTo(0, 0), data::Error);
  EXPECT_THROW(g.TopRow(0), data::Error);
  EXPECT_THROW(g.RemoveItem(0), data::Error);
  EXPECT_EQ(g.CellLeft(), 0);
  EXPECT_EQ(g.CellTop(), 0);
}

TEST_F(BareGrid, MayBeEmptiedAgainWhereADesignedOneMayNot) {
  g.Rows(3);
  g.Cols(2);
  g.TextMatrix(1, 1, "x");
  g.MoveTo(2, 1);
  g.Rows(0);
  g.Cols(0);
  EXPECT_EQ(g.Rows(), 0);
  EXPECT_EQ(g.Cols(), 0);
  g.Rows(3);
  g.Cols(2);
  EXPECT_EQ(g.TextMatrix(1, 1), "");
  EXPECT_EQ(Cell(), "0,0");
  EXPECT_THROW(g.Rows(-1), data::Error);
  EXPECT_THROW(g.Cols(-1), data::Error);
  EXPECT_THROW(form->grid.Rows(0), data::Error);
  EXPECT_THROW(form->grid.Cols(0), data::Error);
}

TEST_F(BareGrid, TheFirstRowOfItsOwnIsTheOneItStandsOn) {
  g.Cols(1);
  g.Rows(1);
  g.FixedRows(1);  // a header and nothing else
  EXPECT_EQ(g.Rows(), 1);
  g.AddItem("a");
  EXPECT_EQ(g.Row(), 1);
  EXPECT_EQ(g.Text(), "a");
  g.AddItem("b");
  EXPECT_EQ(g.Row(), 1);
  g.Rows(1);
  g.Rows(4);
  EXPECT_EQ(g.Row(), 1);
}

TEST_F(BareGrid, HeadersMayBeAllThereIs) {
  g.Rows(2);
  g.Cols(2);
  g.FixedRows(2);
  g.FixedCols(2);
  EXPECT_EQ(Cell(), "1,1");
  EXPECT_THROW(g.FixedRows(3), data::Error);
  EXPECT_THROW(g.FixedCols(3), data::Error);
  EXPECT_THROW(g.Rows(1), data::Error);  // a header is not dropped unawares
  EXPECT_THROW(g.Cols(1), data::Error);
}

TEST_F(BareGrid, WidthsCanBeSetBeforeThereIsARow) {
  g.Cols(2);
  g.ColWidth(1, 1440);
  EXPECT_EQ(g.ColWidth(1), 1440);
  EXPECT_THROW(g.ColWidth(2, 1), data::Error);
}

TEST_F(BareGrid, ARowNeedsAColumnForItsText) {
  EXPECT_THROW(g.AddItem("a"), data::Error);
  EXPECT_EQ(g.Rows(), 0);
  g.AddItem("");
  EXPECT_EQ(g.Rows(), 1);
}

TEST_F(BareGrid, EveryRowOfItsOwnCanBeRemovedAndNoHeader) {
  g.Cols(1);
  g.Rows(1);
  g.FixedRows(1);
  g.AddItem("a");
  g.AddItem("b");
  EXPECT_THROW(g.RemoveItem(0), data::Error);
  g.RemoveItem(1);
  EXPECT_EQ(g.Text(), "b");
  g.RemoveItem(1);
  EXPECT_EQ(g.Rows(), 1);
  EXPECT_LT(g.Row(), 1);  // names none of its own
  EXPECT_THROW(g.RemoveItem(1), data::Error);
  EXPECT_THROW(g.RemoveItem(0), data::Error);
}

TEST_F(BareGrid, KeysAndClicksOnAnEmptyOneDoNothing) {
  TestForm& f = Shown();
  f.Enter(g);
  for (const char* key : {"Up", "Down", "Left", "Right", "PageUp", "PageDown"}) f.Press(Named(key));
  g.Rows(1);
  g.Cols(1);
  g.FixedRows(1);
  for (const char* key : {"Up", "Down", "Left", "Right", "PageUp", "PageDown"}) f.Press(Named(key));
  EXPECT_EQ(Cell(), "0,0");
  EXPECT_TRUE(unhandled.empty());
  f.ClickCell(g, 5, 5);
  EXPECT_EQ(unhandled.size(), 1u);
}

TEST_F(BareGrid, WithRowsAndColumnsItIsAnyGrid) {
  TestForm& f = Shown();
  g.Rows(3);
  g.Cols(2);
  g.FixedRows(1);
  int events = 0;
  g.OnEnterCell = [&] { ++events; };
  f.Enter(g);
  f.Press(Named("Down"));
  f.Press(Named("Right"));
  EXPECT_EQ(Cell(), "2,1");
  EXPECT_EQ(events, 2);
}

}  // namespace
}  // namespace tarvik::forms
