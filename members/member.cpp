#include "members/member.h"

#include <algorithm>
#include <numeric>
#include <typeindex>
#include <unordered_map>

#include "data/text.h"
#include "members/row.h"
#include "members/tables.h"

namespace tarvik::members {

namespace {

const Class& ClassOf(const std::type_info& type, const Class& otherwise) {
  static const auto by_type = [] {
    std::unordered_map<std::type_index, const Class*> all;
    for (const Class* table : Classes()) {
      if (table->type) all.emplace(*table->type, table);
    }
    return all;
  }();
  const auto found = by_type.find(type);
  return found == by_type.end() ? otherwise : *found->second;
}

// How many characters must be put in, taken out or swapped to make one text of the other.
std::size_t Slips(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), 0);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t changed = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = std::exchange(row[j], std::min({row[j] + 1, row[j - 1] + 1, changed}));
    }
  }
  return row.back();
}

}  // namespace

void WrongType(std::string_view expected) { throw data::Error("Se espera " + std::string(expected)); }

void RequireCount(std::size_t given, std::size_t wanted) {
  if (given == wanted) return;
  throw data::Error("Se esperan " + std::to_string(wanted) + " argumentos y hay " + std::to_string(given));
}

Variant FromValue(const data::Value& value) {
  return value.Visit([](const auto& held) { return Variant(held); });
}

data::Value ToValue(const Variant& variant) {
  if (variant.IsNothing()) return {};
  if (const auto* yes = variant.As<bool>()) return *yes;
  if (const auto* number = variant.As<std::int64_t>()) return *number;
  if (const auto* number = variant.As<double>()) return *number;
  if (const auto* text = variant.As<std::string>()) return *text;
  if (const auto* day = variant.As<data::Date>()) return *day;
  if (const auto* when = variant.As<data::DateTime>()) return *when;
  WrongType("un valor");
}

std::span<const Class* const> Classes() {
  static const std::vector<const Class*> all = [] {
    std::vector<const Class*> tables = ControlTables();
    for (const Class* form : {&FormTable(), &DocumentWizardTable(), &GoodsInTable(), &GoodsOutTable(),
                              &MatrixTable(), &StationsTable()}) {
      tables.push_back(form);
    }
    for (const Class* service : ServiceTables()) tables.push_back(service);
    return tables;
  }();
  return all;
}

const Class* ClassNamed(std::string_view name) {
  for (const Class* table : Classes()) {
    if (table->name == name) return table;
  }
  return nullptr;
}

const Class& ClassOf(const forms::Form& form) { return ClassOf(typeid(form), FormTable()); }
const Class& ClassOf(const forms::Control& control) {
  return ClassOf(typeid(control), *ControlTables().front());
}

const Member* Find(const Class& type, std::string_view name) {
  for (const Class* table = &type; table; table = table->base) {
    for (const Member& member : table->members) {
      if (member.name == name) return &member;
    }
  }
  return nullptr;
}

std::vector<const Member*> All(const Class& type) {
  std::vector<const Member*> all;
  if (type.base) all = All(*type.base);
  for (const Member& member : type.members) {
    const auto same = std::find_if(all.begin(), all.end(),
                                   [&](const Member* inherited) { return inherited->name == member.name; });
    if (same != all.end()) {
      *same = &member;
    } else {
      all.push_back(&member);
    }
  }
  return all;
}

std::string Closest(std::string_view wrong, const std::vector<std::string>& names) {
  const std::string meant = data::LowerAscii(wrong);
  const std::size_t forgiven = meant.size() < 5 ? 1 : 2;
  std::string best;
  std::size_t slips = forgiven + 1;
  for (const std::string& name : names) {
    const std::size_t longer = std::max(name.size(), meant.size());
    if (longer - std::min(name.size(), meant.size()) >= slips) continue;
    const std::size_t found = Slips(meant, data::LowerAscii(name));
    if (found >= slips) continue;
    slips = found;
    best = name;
  }
  return best;
}

}  // namespace tarvik::members
