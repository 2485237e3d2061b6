// Variant: what a member of a screen takes and gives, whoever asks. It converts nothing by itself.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "data/recordset.h"
#include "forms/control.h"
#include "forms/form.h"
#include "service/contract/host_services.h"

namespace tarvik::members {

// One column of a record's current row.
struct Field {
  data::Value value;
};

// The controls of one name on a form.
struct Array {
  forms::Form* form;
  std::string_view name;
};

struct Variant;
using List = std::vector<Variant>;
// Nothing (std::monostate) stands for an object, a date or a value that is not there; no pointer is null.
// Objects belong to whoever has them: a control to its form, the builder to its screen.
using Held = std::variant<std::monostate, bool, std::int64_t, double, std::string, data::Date, data::DateTime,
                          forms::Control*, forms::Form*, data::RecordsetRef, service::Query*,
                          service::Ambiente*, service::LateBound*, Field, Array, List>;
struct Variant : Held {
  using Held::Held;

  [[nodiscard]] bool IsNothing() const { return std::holds_alternative<std::monostate>(*this); }
  // The held alternative, or nullptr if another one is held.
  template <class T>
  [[nodiscard]] const T* As() const {
    return std::get_if<T>(static_cast<const Held*>(this));
  }
};

Variant FromValue(const data::Value& value);
// Throws data::Error for what no column can hold.
data::Value ToValue(const Variant& variant);

}  // namespace tarvik::members
