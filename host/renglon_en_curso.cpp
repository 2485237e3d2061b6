// The entry row as a text: "24 4 7501\n", field, bytes, text; last, where the operator was: "foco 5 0 1\n".
#include "host/renglon_en_curso.h"

#include <charconv>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "service/report/pantalla.h"
#include "service/report/trampa.h"
#include "wizard/document_wizard.h"

namespace tarvik::host {
namespace {

// In the order in which they are put: a field comes after those whose change fills it. A second key fills
// nearly all, its presentations fill the quantity, and the quantity the amount.
constexpr int kDeEntrada[] = {24, 28, 4, 1, 25, 26, 27, 29, 5, 6, 9};
constexpr int kDeSalida[] = {24, 28, 4, 1, 25, 26, 27, 29, 5, 6};

std::span<const int> Campos(Tipo tipo) {
  return tipo == Tipo::Entrada ? std::span<const int>(kDeEntrada) : std::span<const int>(kDeSalida);
}

std::optional<int> Numero(std::string_view& text) {
  int number = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || rest == text.data() + text.size()) return {};
  text.remove_prefix(static_cast<std::size_t>(rest - text.data()) + 1);
  return number;
}

struct Foco {
  int campo;
  int inicio;
  int largo;
};

struct Renglon {
  std::vector<std::pair<int, std::string>> campos;
  std::optional<Foco> foco;
};

std::optional<Renglon> Lee(std::string_view text) {
  constexpr std::string_view kFoco = "foco ";
  Renglon row;
  while (!text.empty()) {
    if (text.starts_with(kFoco)) {
      text.remove_prefix(kFoco.size());
      const auto field = Numero(text);
      const auto start = Numero(text);
      const auto length = Numero(text);
      if (!field || !start || !length) return {};
      row.foco = Foco{*field, *start, *length};
      continue;
    }
    const auto field = Numero(text);
    const auto bytes = Numero(text);
    if (!field || !bytes || *bytes < 0 || text.size() < static_cast<std::size_t>(*bytes) + 1) return {};
    row.campos.emplace_back(*field, std::string(text.substr(0, static_cast<std::size_t>(*bytes))));
    text.remove_prefix(static_cast<std::size_t>(*bytes) + 1);
  }
  return row;
}

// While it lives a field that is full stays where it is: its last character is not typed now.
class SinAvance {
 public:
  explicit SinAvance(DocumentWizard& screen) {
    screen.txtFields.Each([this](forms::TextBox& field) {
      lengths_.emplace_back(&field, field.MaxLength());
      field.MaxLength(0);
    });
  }
  ~SinAvance() {
    for (const auto& [field, length] : lengths_) field->MaxLength(length);
  }
  SinAvance(const SinAvance&) = delete;
  SinAvance& operator=(const SinAvance&) = delete;

 private:
  std::vector<std::pair<forms::TextBox*, int>> lengths_;
};

}  // namespace

std::string TomaRenglonEnCurso(DocumentWizard& screen, Tipo tipo) {
  std::string text;
  bool anything = false;
  for (const int field : Campos(tipo)) {
    const std::string& held = screen.txtFields(field).Text();
    anything = anything || !held.empty();
    text += std::to_string(field) + " " + std::to_string(held.size()) + " " + held + "\n";
  }
  if (!anything) return "";
  for (const int field : Campos(tipo)) {
    const forms::TextBox& box = screen.txtFields(field);
    if (screen.ActiveControl() != &box) continue;
    text += "foco " + std::to_string(field) + " " + std::to_string(box.SelStart()) + " " +
            std::to_string(box.SelLength()) + "\n";
  }
  return text;
}

void PonRenglonEnCurso(DocumentWizard& screen, Tipo tipo, const std::string& renglon) {
  const auto row = Lee(renglon);
  if (!row || row->campos.empty()) return;
  const auto belongs = [&](int field) {
    const auto fields = Campos(tipo);
    return std::find(fields.begin(), fields.end(), field) != fields.end();
  };
  screen.Act([&] {
    const service::Ignora ignora;
    // The focus first, so that no leaving logic changes what is put.
    const bool placed = row->foco && belongs(row->foco->campo);
    if (placed) service::ColocaFoco(screen.txtFields(row->foco->campo));
    const SinAvance still(screen);
    // Twice: a routine that runs with a change may have touched a field that was put before.
    for (int turn = 0; turn < 2; ++turn) {
      for (const auto& [field, text] : row->campos) {
        if (!belongs(field)) continue;
        forms::TextBox& box = screen.txtFields(field);
        if (box.Text() != text) ignora([&, &wanted = text] { box.Text(wanted); });
      }
    }
    if (!placed) return;
    forms::TextBox& box = screen.txtFields(row->foco->campo);
    service::ColocaFoco(box);
    ignora([&] { box.SelStart(row->foco->inicio); });
    ignora([&] { box.SelLength(row->foco->largo); });
  });
}

}  // namespace tarvik::host
