#include "python/foto.h"

#include <algorithm>
#include <string_view>

#include "data/text.h"
#include "stations/frm_mov_estaciones.h"
#include "wizard/document_wizard.h"

namespace tarvik::python {

namespace {

std::string Modo(const forms::Form& form) {
  const auto* document = dynamic_cast<const DocumentWizard*>(&form);
  return document ? document->Modo : std::string();
}

// What a control holds, as a text; empty for kinds that hold nothing.
std::string Contenido(const forms::Control& control) {
  if (const auto* box = dynamic_cast<const forms::TextBox*>(&control)) return box->Text();
  if (const auto* check = dynamic_cast<const forms::CheckBox*>(&control))
    return std::to_string(check->Value());
  if (const auto* label = dynamic_cast<const forms::Label*>(&control)) return label->Caption();
  if (const auto* button = dynamic_cast<const forms::Button*>(&control)) return button->Caption();
  if (const auto* list = dynamic_cast<const forms::ComboBox*>(&control)) return list->Text();
  if (const auto* picker = dynamic_cast<const forms::DatePicker*>(&control)) {
    return picker->Value() ? data::ToText(data::Value(*picker->Value())) : std::string();
  }
  if (const auto* browser = dynamic_cast<const forms::WebBrowser*>(&control)) return browser->Location();
  return {};
}

const char* SiNo(bool yes) { return yes ? "sí" : "no"; }

std::string Recorta(std::string_view text) {
  constexpr std::size_t kLongest = 400;
  if (text.size() <= kLongest) return std::string(text);
  return data::Substring(data::RepairUtf8(text), 0, kLongest) + "…";
}

std::string Lugar(const std::string& grid, const std::pair<int, int>& cell) {
  return grid + "(" + std::to_string(cell.first) + ", " + std::to_string(cell.second) + ")";
}

// The cells of two pictures of one grid, side by side.
template <class Cells, class Note>
void ComparaCeldas(const std::string& grid, const Cells& before, const Cells& later, const Note& note) {
  auto a = before.begin();
  auto b = later.begin();
  while (a != before.end() || b != later.end()) {
    const bool gone = b == later.end() || (a != before.end() && a->first < b->first);
    const bool come = a == before.end() || (b != later.end() && b->first < a->first);
    if (gone || come || a->second != b->second) {
      note(Lugar(grid, come ? b->first : a->first), come ? std::string_view() : std::string_view(a->second),
           gone ? std::string_view() : std::string_view(b->second));
    }
    if (!come) ++a;
    if (!gone) ++b;
  }
}

}  // namespace

bool Cancelado(const forms::Form& form) {
  if (const auto* document = dynamic_cast<const DocumentWizard*>(&form)) return document->CancelaProceso;
  if (const auto* transfer = dynamic_cast<const frmMovEstaciones*>(&form)) return transfer->CancelaProceso;
  return false;
}

Foto::Foto(const forms::Form& form)
    : caption_(form.Caption()), mode_(Modo(form)), cancelled_(Cancelado(form)) {
  for (const forms::Control* control : form.Controls()) {
    pieces_.push_back({control->FullName(), Contenido(*control), control->Enabled(), control->Visible()});
    if (const auto* grid = dynamic_cast<const forms::FlexGrid*>(control)) grids_.emplace_back(*grid);
  }
}

Foto::Malla::Malla(const forms::FlexGrid& grid)
    : nombre(grid.FullName()), filas(grid.Rows()), columnas(grid.Cols()) {
  for (int row = 0; row < filas; ++row) {
    for (int column = 0; column < columnas; ++column) {
      const std::string& text = grid.TextMatrix(row, column);
      if (!text.empty()) celdas.emplace_back(std::pair(row, column), text);
    }
  }
}

void Foto::Compara(const Foto& later, Corrida& run) const {
  const auto note = [&run](const std::string& name, std::string_view before, std::string_view after) {
    if (before == after) return;
    if (run.cambios.size() < kCambios) {
      run.cambios.push_back({name, Recorta(before), Recorta(after)});
    } else {
      ++run.cambios_omitidos;
    }
  };
  for (std::size_t i = 0; i < std::min(pieces_.size(), later.pieces_.size()); ++i) {
    const Pieza& piece = pieces_[i];
    const Pieza& now = later.pieces_[i];
    note(piece.nombre, piece.contenido, now.contenido);
    note(piece.nombre + ".Enabled", SiNo(piece.habilitado), SiNo(now.habilitado));
    note(piece.nombre + ".Visible", SiNo(piece.visible), SiNo(now.visible));
  }
  for (std::size_t i = 0; i < std::min(grids_.size(), later.grids_.size()); ++i) {
    const Malla& before = grids_[i];
    const Malla& now = later.grids_[i];
    note(before.nombre + ".Rows", std::to_string(before.filas), std::to_string(now.filas));
    note(before.nombre + ".Cols", std::to_string(before.columnas), std::to_string(now.columnas));
    ComparaCeldas(before.nombre, before.celdas, now.celdas, note);
  }
  note("Caption", caption_, later.caption_);
  note("Modo", mode_, later.mode_);
  note("CancelaProceso", SiNo(cancelled_), SiNo(later.cancelled_));
}

}  // namespace tarvik::python
