// FlexGrid: rows and columns of texts with a current cell. Knows nothing of documents.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "forms/control.h"

namespace tarvik::forms {

// Rows and columns count from 0; the first FixedRows() and FixedCols() are headers. Every index
// outside the grid throws data::Error. Widths and heights are in twips; a width of 0 hides.
class FlexGrid : public Control {
 public:
  // A bare grid starts with no rows and columns, and may be emptied again; a designed one has two of
  // each, and keeps at least one row that is no header. While a bare grid has no row of its own,
  // Row() names none.
  enum class Start { Designed, Bare };
  FlexGrid(Form& form, std::string name, Start start = Start::Designed);

  [[nodiscard]] int Rows() const { return static_cast<int>(rows_.size()); }
  void Rows(int count);
  [[nodiscard]] int Cols() const { return static_cast<int>(columns_.size()); }
  void Cols(int count);
  [[nodiscard]] int FixedRows() const { return fixed_rows_; }
  void FixedRows(int count);
  [[nodiscard]] int FixedCols() const { return fixed_cols_; }
  void FixedCols(int count);

  // The current cell. Setting one that differs raises OnLeaveCell before and OnEnterCell, then
  // OnRowColChange, after; what they throw comes out here, with the cell moved unless it was
  // OnLeaveCell that threw.
  [[nodiscard]] int Row() const { return row_; }
  [[nodiscard]] int Col() const { return col_; }
  void Row(int row) { MoveTo(row, col_); }
  void Col(int col) { MoveTo(row_, col); }
  // Both at once: one leaving, one entering.
  void MoveTo(int row, int col);
  // While off, no cell event is raised: for building a grid.
  void CellEvents(bool live) { cell_events_ = live; }

  [[nodiscard]] int TopRow() const { return top_row_; }
  void TopRow(int row);

  [[nodiscard]] const std::string& Text() const { return TextMatrix(row_, col_); }  // current cell
  void Text(std::string_view text) { TextMatrix(row_, col_, text); }
  [[nodiscard]] const std::string& TextMatrix(int row, int col) const;
  void TextMatrix(int row, int col, std::string_view text);

  [[nodiscard]] int ColWidth(int col) const;
  void ColWidth(int col, int width);
  [[nodiscard]] int RowHeight(int row) const;
  void RowHeight(int row, int height);

  [[nodiscard]] int CellBackColor() const { return BackColor(row_, col_); }
  void CellBackColor(int color) { BackColor(row_, col_, color); }
  [[nodiscard]] int BackColor(int row, int col) const;  // 0 where none was set
  void BackColor(int row, int col, int color);

  // A mark of its own, apart from any colour.
  [[nodiscard]] bool Blocked(int row, int col) const;
  void Blocked(int row, int col, bool blocked);

  // Geometry of the current cell, relative to the grid.
  [[nodiscard]] int CellLeft() const;
  [[nodiscard]] int CellTop() const;
  [[nodiscard]] int CellWidth() const { return ColWidth(col_); }
  [[nodiscard]] int CellHeight() const { return RowHeight(row_); }

  // Removes a row with its texts and colours; the rows after it move up. No cell event is raised;
  // the current row stays where it is, or becomes the last one.
  void RemoveItem(int row);
  // Adds a row at the end; the text goes to its first column.
  void AddItem(std::string_view text);

  [[nodiscard]] bool Focusable() const override { return true; }
  void Editing(const Key& key) override;  // arrows, skipping hidden columns and headers

  Event OnLeaveCell;
  Event OnEnterCell;
  Event OnRowColChange;

 private:
  struct Cell {
    std::string text;
    int back_color = 0;
    bool blocked = false;
  };
  struct RowData {
    std::vector<Cell> cells;  // empty until something is written
    int height = 240;
  };

  void RequireCell(int row, int col) const;
  void RequireRow(int row) const;
  void RequireColumn(int col) const;
  [[nodiscard]] const Cell* Look(int row, int col) const;
  Cell& At(int row, int col);

  std::vector<RowData> rows_;
  std::vector<int> columns_;  // widths
  bool bare_ = false;
  int fixed_rows_ = 0;
  int fixed_cols_ = 0;
  int row_ = 0;
  int col_ = 0;
  int top_row_ = 0;
  bool cell_events_ = true;
};

}  // namespace tarvik::forms
