// The one table of what the screens, their controls and their records show to the outside: each member with
// its name, type, parameters and a line of Spanish, and with late-bound access to it. Whoever offers the
// screens to another language walks this table; docs/reference and the Python stub are made from it.
//
//   const Class& type = ClassOf(form);                        // of a frmEntradasWizard
//   const Member* modo = Find(type, "Modo");                  // stands in the table of DocumentWizard
//   modo->set(form, Variant(std::string("CONSULTA")));
//   Variant arguments[] = {std::int64_t{4}, std::int64_t{13}, std::int64_t{0}};
//   Find(type, "txtFields_KeyDown")->call(form, arguments);   // arguments[1] is what it left of the key
//
// Errors. What the member itself throws comes out. data::Error besides for a value of another type, or a
// wrong number of arguments; nothing has been done then.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <typeinfo>
#include <variant>
#include <vector>

#include "members/variant.h"

namespace tarvik {
class EntradasSalidas;
}

namespace tarvik::members {

enum class Base {
  Nothing,  // a procedure that gives nothing
  Boolean,
  Integer,  // 32 bits
  Number,
  Text,
  Date,
  Value,  // whatever a column may hold
  Control,
  Form,
  Array,
  Recordset,
  Field,
  Query,
  Ambiente,
  Parent,
  Texts,     // a list of texts
  Controls,  // a list of controls
};

struct Type {
  Base base = Base::Nothing;
  std::string_view name = {};  // of the class, for an object; of an array, that of its elements
  bool or_nothing = false;
  // Of a control: whether this one is of the class.
  bool (*fits)(const forms::Control&) = nullptr;
};

// Which way an argument goes. One that comes back stands among the arguments after the call.
enum class Way { In, InOut, Out };

struct Parameter {
  std::string_view name;
  Type type = {};
  Way way = Way::In;
  bool optional = false;  // without it: nothing, or false
  // By which it may be given too; empty for none.
  std::string_view other_name = {};
};

// What is acted upon: the root that it is seen through. REQUIRES: lives as long as the call.
class Object {
 public:
  Object(forms::Form& form) : held_(&form) {}              // NOLINT: handed over as it is
  Object(forms::Control& control) : held_(&control) {}     // NOLINT
  Object(data::Recordset& rows) : held_(&rows) {}          // NOLINT
  Object(Field& field) : held_(&field) {}                  // NOLINT
  Object(service::Query& query) : held_(&query) {}         // NOLINT
  Object(tarvik::EntradasSalidas& door) : held_(&door) {}  // NOLINT

  // REQUIRES: it is one. Throws std::bad_variant_access if it has another root.
  template <class T>
  [[nodiscard]] T& As() const {
    if constexpr (std::is_base_of_v<forms::Form, T>) {
      return static_cast<T&>(*std::get<forms::Form*>(held_));
    } else if constexpr (std::is_base_of_v<forms::Control, T>) {
      return static_cast<T&>(*std::get<forms::Control*>(held_));
    } else {
      return *std::get<T*>(held_);
    }
  }

 private:
  std::variant<forms::Form*, forms::Control*, data::Recordset*, Field*, service::Query*,
               tarvik::EntradasSalidas*>
      held_;
};

enum class Kind { ReadOnly, Property, Procedure, Control, ControlArray };

// One control of an array, and what stands in it.
struct Place {
  int index;
  std::string_view line;
};

struct Member {
  std::string_view name;
  Kind kind;
  Type type;                          // of a property or control; what a procedure gives
  std::vector<Parameter> parameters;  // of a procedure
  std::string_view line;              // Spanish: what it is for a writer of routines
  std::vector<Place> places = {};     // of a control array, by index

  // Set where the kind has them: the others are nullptr.
  Variant (*get)(const Object&) = nullptr;
  void (*set)(const Object&, const Variant&) = nullptr;
  // `arguments` has as many as there are parameters, those that only come back included.
  Variant (*call)(const Object&, std::span<Variant> arguments) = nullptr;
};

struct Class {
  std::string_view name;
  std::string_view line;
  const Class* base = nullptr;  // whose members it has too; its own of the same name come first
  const std::type_info* type = nullptr;
  std::vector<Member> members;
};

// Every table, a base before what builds on it. Valid for ever.
std::span<const Class* const> Classes();
// By its name; nullptr if there is none.
const Class* ClassNamed(std::string_view name);
// The table of an object's own class, or of the nearest one that has a table.
const Class& ClassOf(const forms::Form& form);
const Class& ClassOf(const forms::Control& control);
// By its exact name, in the class and in those that it builds on; nullptr if there is none.
const Member* Find(const Class& type, std::string_view name);
// All that an object of the class has, each name once, the base's first.
std::vector<const Member*> All(const Class& type);

// The name among these that was probably meant; empty if none is close. Case and one or two slips are
// forgiven.
std::string Closest(std::string_view wrong, const std::vector<std::string>& names);

}  // namespace tarvik::members
