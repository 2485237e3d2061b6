#include "python/members_binding.h"

#include <algorithm>
#include <array>
#include <span>

#include "python/descripcion.h"
#include "python/puerta.h"

namespace tarvik::python {

namespace {

using members::Base;
using members::Kind;
using members::Member;
using members::Variant;
using members::Way;

constexpr std::size_t kMostParameters = 4;

[[noreturn]] void NoSirve(std::string_view name, std::string_view wanted) {
  throw py::type_error(std::string(name) + ": se espera " + std::string(wanted));
}

template <class T>
T Load(const py::handle& given, std::string_view name, const char* wanted) {
  py::detail::make_caster<T> caster;
  if (!caster.load(given, true)) NoSirve(name, wanted);
  return py::detail::cast_op<T>(caster);
}

Variant ControlOf(const py::handle& given, const members::Type& type, std::string_view name) {
  if (given.is_none()) {
    if (!type.or_nothing) NoSirve(name, type.name);
    return {};
  }
  auto* control = Load<forms::Control*>(given, name, type.name.data());
  if (!type.fits(*control)) NoSirve(name, type.name);
  return control;
}

Variant RecordsetOf(const py::handle& given, std::string_view name) {
  if (given.is_none()) return {};
  return data::RecordsetRef(Load<std::shared_ptr<data::Recordset>>(given, name, "Recordset"));
}

// What acts on a member: which object, and who keeps it meanwhile.
struct Screen {
  using Self = forms::Form;
  static forms::Form& Object(forms::Form& self) { return self; }
  static forms::Form* Owner(forms::Form& self) { return &self; }
};
struct OnForm {
  using Self = forms::Control;
  static forms::Control& Object(forms::Control& self) { return self; }
  static forms::Form* Owner(forms::Control& self) { return &self.Owner(); }
};
template <class T>
struct Alone {
  using Self = T;
  static T& Object(T& self) { return self; }
  static forms::Form* Owner(T&) { return nullptr; }
};
struct Door {
  using Self = Puerta;
  static EntradasSalidas& Object(Puerta& self) { return self.door; }
  static forms::Form* Owner(Puerta&) { return nullptr; }
};

py::object Call(const Member& member, const members::Object& object, forms::Form* owner,
                std::span<const py::handle> given) {
  const auto held = owner ? owner->shared_from_this() : nullptr;
  std::array<Variant, kMostParameters> arguments;
  const std::size_t count = member.parameters.size();
  std::size_t next = 0;
  std::size_t back = 0;
  std::size_t backs = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const members::Parameter& parameter = member.parameters[i];
    if (parameter.way != Way::Out) arguments[i] = FromPython(given[next++], parameter.type, parameter.name);
    if (parameter.way != Way::In) {
      back = i;
      ++backs;
    }
  }
  const Variant result = Called([&] { return member.call(object, std::span(arguments).first(count)); });
  if (member.type.base != Base::Nothing) return ToPython(result, owner);
  return backs == 1 ? ToPython(arguments[back], owner) : py::object(py::none());
}

template <std::size_t>
using Given = py::handle;

// A procedure with as many parameters as a script gives; the last one may be left out.
template <class Who, bool kLastMayMiss, std::size_t... I>
void Define(const py::handle& type, const Member& member, const MiembroDescrito& row,
            std::index_sequence<I...>) {
  const auto function = [&member](typename Who::Self& self, Given<I>... given) {
    const std::array<py::handle, sizeof...(I)> all{given...};
    return Call(member, Who::Object(self), Who::Owner(self), all);
  };
  [[maybe_unused]] const auto name = [&](std::size_t i) { return py::arg(row.parametros[i].nombre.c_str()); };
  const auto define = [&](const auto&... names) {
    type.attr(member.name.data()) = py::cpp_function(
        function, py::name(member.name.data()), py::is_method(type),
        py::sibling(py::getattr(type, member.name.data(), py::none())), py::doc(row.Doc().c_str()), names...);
  };
  if constexpr (kLastMayMiss) {
    constexpr std::size_t kLast = sizeof...(I) - 1;
    py::object omitted = row.parametros[kLast].omision == "False" ? py::object(py::bool_(false)) : py::none();
    [&]<std::size_t... J>(std::index_sequence<J...>) { define(name(J)..., name(kLast) = omitted); }
    (std::make_index_sequence<kLast>());
  } else {
    define(name(I)...);
  }
}

template <class Who, std::size_t kCount = 0>
void Define(const py::handle& type, const Member& member, const MiembroDescrito& row) {
  if constexpr (kCount > kMostParameters) {
    throw std::logic_error(row.nombre + " has too many parameters");
  } else if (row.parametros.size() != kCount) {
    Define<Who, kCount + 1>(type, member, row);
  } else if constexpr (kCount > 0) {
    if (row.parametros.back().omision) {
      Define<Who, true>(type, member, row, std::make_index_sequence<kCount>());
    } else {
      Define<Who, false>(type, member, row, std::make_index_sequence<kCount>());
    }
  } else {
    Define<Who, false>(type, member, row, std::make_index_sequence<0>());
  }
}

template <class Who>
void Property(const py::handle& type, const Member& member) {
  using Self = typename Who::Self;
  py::object setter = py::none();
  if (member.set) {
    setter = py::cpp_function(
        [&member](Self& self, const py::handle& value) {
          const Variant given = FromPython(value, member.type, member.name);
          Called([&] { member.set(Who::Object(self), given); });
        },
        py::is_method(type));
  }
  const py::cpp_function getter(
      [&member](Self& self) { return ToPython(member.get(Who::Object(self)), Who::Owner(self)); },
      py::is_method(type));
  const py::handle property(reinterpret_cast<PyObject*>(&PyProperty_Type));
  type.attr(member.name.data()) = property(getter, setter, py::none(), py::str(std::string(member.line)));
}

template <class Who>
void Add(const py::handle& type, const members::Class& table) {
  for (const Member& member : table.members) {
    if (member.kind != Kind::Procedure) {
      // The door's references are bound by whoever gives a script its own objects back.
      if constexpr (!std::is_same_v<Who, Door>) Property<Who>(type, member);
      continue;
    }
    MiembroDescrito row = Descrito(member);
    if (TieneDosNombres(member)) {
      Define<Who>(type, member, Descrito(member, true));
      row.linea.clear();  // said once
    }
    Define<Who>(type, member, row);
  }
}

const members::Class& Root(const members::Class& table) { return table.base ? Root(*table.base) : table; }

}  // namespace

Variant FromPython(const py::handle& given, const members::Type& type, std::string_view name) {
  switch (type.base) {
    case Base::Boolean:
      return Load<bool>(given, name, "True o False");
    case Base::Integer:
      return static_cast<std::int64_t>(Load<int>(given, name, "un entero"));
    case Base::Number:
      return Load<double>(given, name, "un número");
    case Base::Text:
      return TextOf(given);
    case Base::Date: {
      const auto day = DateOf(given);
      if (!day && !given.is_none()) throw data::Error("El valor no es una fecha");
      return day ? Variant(*day) : Variant();
    }
    case Base::Value:
      return members::FromValue(ValueOf(given));
    case Base::Control:
      return ControlOf(given, type, name);
    case Base::Recordset:
      return RecordsetOf(given, name);
    case Base::Ambiente: {
      auto* context = AmbienteOf(py::reinterpret_borrow<py::object>(given));
      return context ? Variant(context) : Variant();
    }
    case Base::Parent: {
      auto* parent = ParentOf(py::reinterpret_borrow<py::object>(given));
      return parent ? Variant(parent) : Variant();
    }
    default:
      NoSirve(name, type.name);
  }
}

namespace {

struct Shown {
  forms::Form* owner;

  py::object operator()(std::monostate) const { return py::none(); }
  py::object operator()(bool yes) const { return py::bool_(yes); }
  py::object operator()(std::int64_t number) const { return py::int_(number); }
  py::object operator()(double number) const { return py::float_(number); }
  py::object operator()(const std::string& text) const { return StrOf(text); }
  py::object operator()(const data::Date& day) const { return ToPython(data::Value(day)); }
  py::object operator()(const data::DateTime& when) const { return ToPython(data::Value(when)); }
  py::object operator()(forms::Control* control) const { return ControlObject(*control); }
  py::object operator()(forms::Form* form) const { return FormObject(*form); }
  py::object operator()(const data::RecordsetRef& rows) const { return py::cast(rows.Shared()); }
  py::object operator()(service::Query* query) const {
    return py::cast(std::shared_ptr<service::Query>(owner->shared_from_this(), query));
  }
  py::object operator()(service::Ambiente* context) const { return AmbienteObject(context, *owner); }
  py::object operator()(service::LateBound* parent) const { return ParentObject(parent, *owner); }
  py::object operator()(const members::Field& field) const { return py::cast(field); }
  py::object operator()(const members::Array& array) const { return ArrayObject(*array.form, array.name); }
  py::object operator()(const members::List& list) const {
    py::list items;
    for (const Variant& item : list) items.append(ToPython(item, owner));
    return py::object(std::move(items));
  }
};

}  // namespace

py::object ToPython(const members::Variant& variant, forms::Form* owner) {
  return std::visit(Shown{owner}, static_cast<const members::Held&>(variant));
}

void AgregaMiembros(const py::handle& type, const members::Class& table) {
  const std::string_view root = Root(table).name;
  if (root == "Forma") {
    Add<Screen>(type, table);
  } else if (root == "Control") {
    Add<OnForm>(type, table);
  } else if (root == "Recordset") {
    Add<Alone<data::Recordset>>(type, table);
  } else if (root == "Field") {
    Add<Alone<members::Field>>(type, table);
  } else if (root == "Query") {
    Add<Alone<service::Query>>(type, table);
  } else {
    Add<Door>(type, table);
  }
  Describe(table);
}

}  // namespace tarvik::python
