// The flexible grid.
#include "forms/flex_grid.h"

#include <algorithm>

#include "data/error.h"
#include "forms/form.h"
#include "forms/keys.h"

namespace tarvik::forms {

namespace {
constexpr int kDefaultWidth = 960;  // twips
constexpr int kPage = 10;           // rows that PageUp and PageDown move
const std::string kNothing;
}  // namespace

FlexGrid::FlexGrid(Form& form, std::string name, Start start)
    : Control(form, std::move(name)),
      rows_(start == Start::Bare ? 0 : 2),
      columns_(start == Start::Bare ? 0 : 2, kDefaultWidth),
      bare_(start == Start::Bare) {}

void FlexGrid::RequireCell(int row, int col) const {
  if (row < 0 || row >= Rows() || col < 0 || col >= Cols()) {
    throw data::Error("La celda (" + std::to_string(row) + ", " + std::to_string(col) + ") está fuera de " +
                      FullName());
  }
}

void FlexGrid::RequireRow(int row) const {
  if (row < 0 || row >= Rows()) {
    throw data::Error("El renglón " + std::to_string(row) + " está fuera de " + FullName());
  }
}

void FlexGrid::RequireColumn(int col) const {
  if (col < 0 || col >= Cols()) {
    throw data::Error("La columna " + std::to_string(col) + " está fuera de " + FullName());
  }
}

const FlexGrid::Cell* FlexGrid::Look(int row, int col) const {
  RequireCell(row, col);
  const auto& cells = rows_[static_cast<std::size_t>(row)].cells;
  return static_cast<std::size_t>(col) < cells.size() ? &cells[static_cast<std::size_t>(col)] : nullptr;
}

FlexGrid::Cell& FlexGrid::At(int row, int col) {
  RequireCell(row, col);
  auto& cells = rows_[static_cast<std::size_t>(row)].cells;
  if (cells.size() < columns_.size()) cells.resize(columns_.size());
  return cells[static_cast<std::size_t>(col)];
}

void FlexGrid::Rows(int count) {
  if (count < fixed_rows_ || count < (bare_ ? 0 : 1))
    throw data::Error("No puede haber " + std::to_string(count) + " renglones");
  const int from = std::min(count, Rows());
  // The first row that a bare grid gets becomes its current one.
  if (bare_ && Rows() <= fixed_rows_ && count > fixed_rows_) row_ = fixed_rows_;
  rows_.resize(static_cast<std::size_t>(count));
  row_ = std::clamp(row_, 0, std::max(count - 1, 0));
  top_row_ = std::clamp(top_row_, 0, std::max(count - 1, 0));
  Owner().Notify([&](FormListener& listener) { listener.RowsChanged(*this, from); });
}

void FlexGrid::Cols(int count) {
  if (count < fixed_cols_ || count < (bare_ ? 0 : 1))
    throw data::Error("No puede haber " + std::to_string(count) + " columnas");
  columns_.resize(static_cast<std::size_t>(count), kDefaultWidth);
  for (auto& row : rows_) {
    if (row.cells.size() > columns_.size()) row.cells.resize(columns_.size());
  }
  col_ = std::clamp(col_, 0, std::max(count - 1, 0));
  Changed(Aspect::Layout);
}

void FlexGrid::FixedRows(int count) {
  if (count < 0 || count > Rows() - (bare_ ? 0 : 1))
    throw data::Error("No puede haber " + std::to_string(count) + " renglones fijos");
  fixed_rows_ = count;
  const int last = std::max(Rows() - 1, 0);
  row_ = std::min(std::max(row_, count), last);
  top_row_ = std::min(std::max(top_row_, count), last);
  Changed(Aspect::Layout);
}

void FlexGrid::FixedCols(int count) {
  if (count < 0 || count > Cols() - (bare_ ? 0 : 1))
    throw data::Error("No puede haber " + std::to_string(count) + " columnas fijas");
  fixed_cols_ = count;
  col_ = std::min(std::max(col_, count), std::max(Cols() - 1, 0));
  Changed(Aspect::Layout);
}

void FlexGrid::MoveTo(int row, int col) {
  RequireCell(row, col);
  if (row == row_ && col == col_) return;
  if (cell_events_ && OnLeaveCell) OnLeaveCell();
  // What ran on leaving may have changed the grid's size.
  RequireCell(row, col);
  row_ = row;
  col_ = col;
  Owner().Notify([&](FormListener& listener) { listener.CurrentCellMoved(*this); });
  if (!cell_events_) return;
  if (OnEnterCell) OnEnterCell();
  if (OnRowColChange) OnRowColChange();
}

void FlexGrid::TopRow(int row) {
  RequireRow(row);
  top_row_ = std::max(row, fixed_rows_);
  Changed(Aspect::Layout);
}

const std::string& FlexGrid::TextMatrix(int row, int col) const {
  const Cell* cell = Look(row, col);
  return cell ? cell->text : kNothing;
}

void FlexGrid::TextMatrix(int row, int col, std::string_view text) {
  const Cell* cell = Look(row, col);
  if (cell ? cell->text == text : text.empty()) return;
  At(row, col).text = text;
  Owner().Notify([&](FormListener& listener) { listener.CellChanged(*this, row, col); });
}

int FlexGrid::ColWidth(int col) const {
  RequireColumn(col);
  return columns_[static_cast<std::size_t>(col)];
}

void FlexGrid::ColWidth(int col, int width) {
  RequireColumn(col);
  columns_[static_cast<std::size_t>(col)] = width;
  Changed(Aspect::Layout);
}

int FlexGrid::RowHeight(int row) const {
  RequireRow(row);
  return rows_[static_cast<std::size_t>(row)].height;
}

void FlexGrid::RowHeight(int row, int height) {
  RequireRow(row);
  rows_[static_cast<std::size_t>(row)].height = height;
  Owner().Notify([&](FormListener& listener) { listener.RowsChanged(*this, row); });
}

int FlexGrid::BackColor(int row, int col) const {
  const Cell* cell = Look(row, col);
  return cell ? cell->back_color : 0;
}

void FlexGrid::BackColor(int row, int col, int color) {
  Cell& cell = At(row, col);
  if (cell.back_color == color) return;
  cell.back_color = color;
  Owner().Notify([&](FormListener& listener) { listener.CellChanged(*this, row, col); });
}

bool FlexGrid::Blocked(int row, int col) const {
  const Cell* cell = Look(row, col);
  return cell && cell->blocked;
}

void FlexGrid::Blocked(int row, int col, bool blocked) {
  At(row, col).blocked = blocked;
  Owner().Notify([&](FormListener& listener) { listener.CellChanged(*this, row, col); });
}

int FlexGrid::CellLeft() const {
  int left = 0;
  for (int col = 0; col < col_; ++col) left += ColWidth(col);
  return left;
}

int FlexGrid::CellTop() const {
  int top = 0;
  for (int row = 0; row < fixed_rows_; ++row) top += RowHeight(row);
  for (int row = std::max(top_row_, fixed_rows_); row < row_; ++row) top += RowHeight(row);
  return top;
}

void FlexGrid::RemoveItem(int row) {
  if (row < 0 || row >= Rows() || row < fixed_rows_ || Rows() - fixed_rows_ < (bare_ ? 1 : 2)) {
    throw data::Error("El renglón " + std::to_string(row) + " no se puede quitar");
  }
  rows_.erase(rows_.begin() + row);
  row_ = std::clamp(row_, 0, std::max(Rows() - 1, 0));
  top_row_ = std::clamp(top_row_, 0, std::max(Rows() - 1, 0));
  Owner().Notify([&](FormListener& listener) { listener.RowsChanged(*this, row); });
}

void FlexGrid::AddItem(std::string_view text) {
  if (!text.empty() && columns_.empty()) throw data::Error(FullName() + " no tiene columnas");
  Rows(Rows() + 1);
  const int row = Rows() - 1;
  if (!text.empty()) TextMatrix(row, 0, text);
}

void FlexGrid::Editing(const Key& key) {
  if (Rows() <= fixed_rows_ || Cols() <= fixed_cols_) return;  // a bare grid, still empty
  auto step = [&](int by) {
    for (int col = col_ + by; col >= fixed_cols_ && col < Cols(); col += by) {
      if (ColWidth(col) > 0) return MoveTo(row_, col);
    }
  };
  const int last = Rows() - 1;
  switch (key.code) {
    case kKeyLeft:
      step(-1);
      break;
    case kKeyRight:
      step(1);
      break;
    case kKeyUp:
      MoveTo(std::max(row_ - 1, std::min(row_, fixed_rows_)), col_);
      break;
    case kKeyDown:
      MoveTo(std::min(row_ + 1, last), col_);
      break;
    case kKeyPageUp:
      MoveTo(std::max(row_ - kPage, std::min(row_, fixed_rows_)), col_);
      break;
    case kKeyPageDown:
      MoveTo(std::min(row_ + kPage, last), col_);
      break;
    default:
      break;
  }
}

}  // namespace tarvik::forms
