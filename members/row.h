// How the rows of the table are made: from a member, or a function of one line, a template finds out type and
// parameters and makes the access to it. Nothing but the tables includes this.
//
//   using C = frmEntradasWizard;
//   VARIABLE(Entrada, "Número del documento; 0 mientras no existe.")
//   PROPERTY(Text, "El texto de la caja.")               // a getter and a setter under one name
//   PROCEDURE(SalvaEntrada, "Guarda el encabezado...", {"estado"})
//   CONTROL(Command3, "Botón que no se muestra de diseño...")
//   Reads<C>("abierta", "...", [](C& form) { return form.Open(); })
#pragma once

#include <cmath>
#include <limits>
#include <optional>
#include <tuple>
#include <type_traits>
#include <utility>

#include "data/error.h"
#include "forms/auto_resizer.h"
#include "forms/flex_grid.h"
#include "members/member.h"
#include "service/contract/objeto.h"

namespace tarvik::members {

// ---- types ----

// The name of a class in the table.
template <class T>
inline constexpr std::string_view kClassName = "";
#define TARVIK_CLASS_NAME(Name) \
  template <>                   \
  inline constexpr std::string_view kClassName<forms::Name> = #Name;
TARVIK_CLASS_NAME(Control)
TARVIK_CLASS_NAME(Label)
TARVIK_CLASS_NAME(Button)
TARVIK_CLASS_NAME(CheckBox)
TARVIK_CLASS_NAME(TextBox)
TARVIK_CLASS_NAME(RichTextBox)
TARVIK_CLASS_NAME(DatePicker)
TARVIK_CLASS_NAME(ComboBox)
TARVIK_CLASS_NAME(PictureBox)
TARVIK_CLASS_NAME(SearchBox)
TARVIK_CLASS_NAME(Timer)
TARVIK_CLASS_NAME(WebBrowser)
TARVIK_CLASS_NAME(AutoResizer)
TARVIK_CLASS_NAME(FlexGrid)
#undef TARVIK_CLASS_NAME

template <class T>
bool Fits([[maybe_unused]] const forms::Control& control) {
  if constexpr (std::is_same_v<T, forms::Control>) {
    return true;
  } else {
    return dynamic_cast<const T*>(&control) != nullptr;
  }
}

// What holds a type's value, and what a null of it is.
template <class T>
struct Optional {
  using Inner = T;
  static constexpr bool value = false;
};
template <class T>
struct Optional<std::optional<T>> {
  using Inner = T;
  static constexpr bool value = true;
};

template <class T>
inline constexpr bool kIsControl = std::is_base_of_v<forms::Control, T>;

template <class T>
constexpr Type TypeOf() {
  using U = std::remove_cvref_t<T>;
  using P = std::remove_cv_t<std::remove_pointer_t<U>>;
  if constexpr (Optional<U>::value) {
    Type type = TypeOf<typename Optional<U>::Inner>();
    type.or_nothing = true;
    return type;
  } else if constexpr (std::is_void_v<U>) {
    return {};
  } else if constexpr (std::is_same_v<U, bool>) {
    return {Base::Boolean};
  } else if constexpr (std::is_integral_v<U>) {
    return {Base::Integer};
  } else if constexpr (std::is_floating_point_v<U>) {
    return {Base::Number};
  } else if constexpr (std::is_convertible_v<U, std::string_view>) {
    return {Base::Text};
  } else if constexpr (std::is_same_v<U, data::Date>) {
    return {Base::Date};
  } else if constexpr (std::is_same_v<U, data::Value>) {
    return {Base::Value};
  } else if constexpr (kIsControl<P>) {
    return {Base::Control, kClassName<P>, std::is_pointer_v<U>, &Fits<P>};
  } else if constexpr (std::is_base_of_v<forms::Form, P>) {
    return {Base::Form, "Forma", std::is_pointer_v<U>};
  } else if constexpr (std::is_same_v<U, data::RecordsetRef>) {
    return {Base::Recordset, "Recordset", true};
  } else if constexpr (std::is_same_v<U, Field>) {
    return {Base::Field, "Field"};
  } else if constexpr (std::is_same_v<P, service::Query>) {
    return {Base::Query, "Query", true};
  } else if constexpr (std::is_same_v<U, service::Objeto<service::Ambiente>>) {
    return {Base::Ambiente, "Ambiente", true};
  } else if constexpr (std::is_same_v<U, service::Objeto<service::LateBound>>) {
    return {Base::Parent, "Parent", true};
  } else if constexpr (std::is_same_v<U, std::vector<std::string>>) {
    return {Base::Texts};
  } else {
    static_assert(std::is_same_v<U, std::vector<forms::Control*>>, "no such type in the table");
    return {Base::Controls};
  }
}

// ---- values ----

[[noreturn]] void WrongType(std::string_view expected);
void RequireCount(std::size_t given, std::size_t wanted);

template <class T>
Variant ToVariant(const T& value) {
  if constexpr (Optional<T>::value) {
    return value ? ToVariant(*value) : Variant();
  } else if constexpr (std::is_same_v<T, bool>) {
    return value;
  } else if constexpr (std::is_integral_v<T>) {
    return static_cast<std::int64_t>(value);
  } else if constexpr (std::is_floating_point_v<T>) {
    return static_cast<double>(value);
  } else if constexpr (std::is_convertible_v<T, std::string_view>) {
    return std::string(std::string_view(value));
  } else if constexpr (std::is_same_v<T, data::Value>) {
    return FromValue(value);
  } else if constexpr (std::is_same_v<T, data::RecordsetRef>) {
    return value ? Variant(value) : Variant();
  } else if constexpr (std::is_same_v<T, service::Objeto<service::Ambiente>> ||
                       std::is_same_v<T, service::Objeto<service::LateBound>>) {
    return value ? Variant(value.Get()) : Variant();
  } else if constexpr (std::is_pointer_v<T>) {
    if (!value) return {};
    if constexpr (kIsControl<std::remove_pointer_t<T>>)
      return static_cast<forms::Control*>(value);
    else
      return Variant(value);
  } else if constexpr (std::is_same_v<T, std::vector<std::string>> ||
                       std::is_same_v<T, std::vector<forms::Control*>>) {
    List list;
    for (const auto& item : value) list.push_back(ToVariant(item));
    return list;
  } else {
    return Variant(value);
  }
}

// A control of the class; nullptr for nothing.
template <class T>
T* ControlIn(const Variant& variant) {
  if (variant.IsNothing()) return nullptr;
  auto* const* control = variant.As<forms::Control*>();
  T* wanted = control ? dynamic_cast<T*>(*control) : nullptr;
  if (!wanted) WrongType(kClassName<T>);
  return wanted;
}

template <class T>
T FromVariant(const Variant& variant) {
  if constexpr (Optional<T>::value) {
    if (variant.IsNothing()) return std::nullopt;
    return FromVariant<typename Optional<T>::Inner>(variant);
  } else if constexpr (std::is_same_v<T, bool>) {
    if (const auto* yes = variant.As<bool>()) return *yes;
    if (const auto* number = variant.As<std::int64_t>()) return *number != 0;
    WrongType("un valor lógico");
  } else if constexpr (std::is_integral_v<T>) {
    if (const auto* yes = variant.As<bool>()) return *yes ? 1 : 0;
    const auto* number = variant.As<std::int64_t>();
    if (!number || !std::in_range<T>(*number)) WrongType("un entero");
    return static_cast<T>(*number);
  } else if constexpr (std::is_floating_point_v<T>) {
    if (const auto* number = variant.As<double>()) return *number;
    if (const auto* number = variant.As<std::int64_t>()) return static_cast<T>(*number);
    WrongType("un número");
  } else if constexpr (std::is_same_v<T, data::Value>) {
    return ToValue(variant);
  } else if constexpr (std::is_pointer_v<T>) {
    return ControlIn<std::remove_pointer_t<T>>(variant);
  } else if constexpr (std::is_same_v<T, data::RecordsetRef>) {
    if (variant.IsNothing()) return {};
    if (const auto* rows = variant.As<data::RecordsetRef>()) return *rows;
    WrongType("un Recordset");
  } else if constexpr (std::is_same_v<T, service::Objeto<service::Ambiente>>) {
    if (variant.IsNothing()) return {};
    if (auto* const* held = variant.As<service::Ambiente*>()) return *held;
    WrongType("un Ambiente");
  } else if constexpr (std::is_same_v<T, service::Objeto<service::LateBound>>) {
    if (variant.IsNothing()) return {};
    if (auto* const* held = variant.As<service::LateBound*>()) return *held;
    WrongType("un objeto");
  } else {
    if (const auto* held = variant.As<T>()) return *held;
    WrongType(std::is_same_v<T, std::string> ? "un texto" : "una fecha");
  }
}

// ---- calls ----

// A parameter's argument while the call runs.
template <class A>
struct Argument {
  static constexpr bool kControl = kIsControl<std::remove_cvref_t<A>>;
  using Text = std::is_convertible<std::remove_cvref_t<A>, std::string_view>;
  using Stored = std::conditional_t<kControl, std::remove_cvref_t<A>*,
                                    std::conditional_t<Text::value, std::string, std::remove_cvref_t<A>>>;
  static constexpr bool kComesBack =
      !kControl && std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>;

  Stored stored;

  // An argument that only comes back is not looked at; a text that comes back may be given or not.
  explicit Argument(const Variant& given) : stored(Read(given)) {}
  static Stored Read(const Variant& given) {
    if constexpr (kControl) {
      auto* control = ControlIn<std::remove_cvref_t<A>>(given);
      if (!control) WrongType(kClassName<std::remove_cvref_t<A>>);
      return control;
    } else if constexpr (kComesBack || std::is_same_v<Stored, bool>) {
      return given.IsNothing() ? Stored() : FromVariant<Stored>(given);
    } else {
      return FromVariant<Stored>(given);
    }
  }
  decltype(auto) Pass() {
    if constexpr (kControl) {
      return *stored;
    } else {
      return (stored);
    }
  }
  void Return(Variant& given) const {
    if constexpr (kComesBack) given = ToVariant(stored);
  }
};

template <class R, class... A, class Call, std::size_t... I>
Variant Invoke(std::span<Variant> given, Call&& call, std::index_sequence<I...>) {
  RequireCount(given.size(), sizeof...(A));
  std::tuple<Argument<A>...> arguments{Argument<A>(given[I])...};
  Variant result;
  if constexpr (std::is_void_v<R>) {
    call(std::get<I>(arguments).Pass()...);
  } else {
    result = ToVariant(std::remove_cvref_t<R>(call(std::get<I>(arguments).Pass()...)));
  }
  (std::get<I>(arguments).Return(given[I]), ...);
  return result;
}

// What a function takes behind its object, and gives.
template <class F>
struct Signature;
template <class R, class T, class... A>
struct Signature<R (T::*)(A...)> {
  using Result = R;
  static constexpr std::size_t kCount = sizeof...(A);
  // REQUIRES: as many as it takes.
  static std::vector<Parameter> Parameters(const std::vector<Parameter>& named) {
    std::vector<Parameter> parameters(named);
    const Type types[] = {TypeOf<A>()..., Type()};
    const bool back[] = {Argument<A>::kComesBack..., false};
    const bool boolean[] = {std::is_same_v<std::remove_cvref_t<A>, bool>..., false};
    for (std::size_t i = 0; i < kCount; ++i) {
      parameters[i].type = types[i];
      // A Boolean that comes back is an answer: nobody has anything to say by it.
      if (back[i] && parameters[i].way == Way::In) parameters[i].way = boolean[i] ? Way::Out : Way::InOut;
    }
    return parameters;
  }
  template <class Call>
  static Variant Run(std::span<Variant> given, Call&& call) {
    return Invoke<R, A...>(given, std::forward<Call>(call), std::index_sequence_for<A...>());
  }
};
template <class R, class T, class... A>
struct Signature<R (T::*)(A...) const> : Signature<R (T::*)(A...)> {};
// Of a function of one line: its first parameter is the object.
template <class F>
struct LineSignature;
template <class R, class L, class C, class... A>
struct LineSignature<R (L::*)(C&, A...) const> : Signature<R (L::*)(A...)> {};

// ---- rows ----

// A function without captures that reads the member.
template <class C, class Get>
Member Reads(std::string_view name, std::string_view line, Get) {
  using T = std::remove_cvref_t<std::invoke_result_t<Get, C&>>;
  return {.name = name,
          .kind = Kind::ReadOnly,
          .type = TypeOf<T>(),
          .parameters = {},
          .line = line,
          .get = [](const Object& object) { return ToVariant<T>(Get()(object.As<C>())); }};
}

template <class C, class Get, class Set>
Member Holds(std::string_view name, std::string_view line, Get get, Set) {
  using T = std::remove_cvref_t<std::invoke_result_t<Get, C&>>;
  Member member = Reads<C>(name, line, get);
  member.kind = Kind::Property;
  member.set = [](const Object& object, const Variant& value) {
    Set()(object.As<C>(), FromVariant<T>(value));
  };
  return member;
}

template <class S>
Member Procedure(std::string_view name, std::string_view line, const std::vector<Parameter>& parameters,
                 decltype(Member::call) call) {
  RequireCount(parameters.size(), S::kCount);
  return {.name = name,
          .kind = Kind::Procedure,
          .type = TypeOf<typename S::Result>(),
          .parameters = S::Parameters(parameters),
          .line = line,
          .call = call};
}

template <class C, class Do>
Member Does(std::string_view name, std::string_view line, const std::vector<Parameter>& parameters, Do) {
  using S = LineSignature<decltype(&Do::operator())>;
  return Procedure<S>(name, line, parameters, [](const Object& object, std::span<Variant> given) {
    return S::Run(given, [&](auto&&... arguments) -> typename S::Result {
      return Do()(object.As<C>(), std::forward<decltype(arguments)>(arguments)...);
    });
  });
}

// A procedure of the class, or of one that it builds on.
template <class C, auto kProcedure>
Member Runs(std::string_view name, std::string_view line, const std::vector<Parameter>& parameters = {}) {
  using S = Signature<decltype(kProcedure)>;
  return Procedure<S>(name, line, parameters, [](const Object& object, std::span<Variant> given) {
    return S::Run(given, [&](auto&&... arguments) -> typename S::Result {
      return (object.As<C>().*kProcedure)(std::forward<decltype(arguments)>(arguments)...);
    });
  });
}

template <class T>
struct ElementOf;
template <class T>
struct ElementOf<forms::ControlArray<T>> {
  using Type = T;
};

template <class C, auto kControl>
Member Carries(std::string_view name, std::string_view line) {
  using T = std::remove_cvref_t<decltype(std::declval<C&>().*kControl)>;
  return {.name = name,
          .kind = Kind::Control,
          .type = {Base::Control, kClassName<T>, false, &Fits<T>},
          .parameters = {},
          .line = line,
          .get = [](const Object& object) {
            return Variant(static_cast<forms::Control*>(&(object.As<C>().*kControl)));
          }};
}

template <class C, auto kArray>
Member CarriesMany(std::string_view name, std::string_view line, std::vector<Place> places = {}) {
  using T = typename ElementOf<std::remove_cvref_t<decltype(std::declval<C&>().*kArray)>>::Type;
  return {.name = name,
          .kind = Kind::ControlArray,
          .type = {Base::Array, kClassName<T>},
          .parameters = {},
          .line = line,
          .places = std::move(places),
          .get = [](const Object& object) {
            C& form = object.As<C>();
            return Variant(Array{&form, (form.*kArray).Name()});
          }};
}

// The name is written once, and a row of a member that is not there doesn't compile. REQUIRES: C is the
// class.
#define VARIABLE(Name, line)                                                  \
  Holds<C>(                                                                   \
      #Name, line, [](C& object) -> decltype(auto) { return (object.Name); }, \
      [](C& object, auto&& value) { object.Name = value; })
#define PROPERTY(Name, line)                                                  \
  Holds<C>(                                                                   \
      #Name, line, [](C& object) -> decltype(auto) { return object.Name(); }, \
      [](C& object, auto&& value) { object.Name(value); })
#define READ_ONLY(Name, line) Reads<C>(#Name, line, [](C& object) -> decltype(auto) { return object.Name(); })
#define PROCEDURE(Name, line, ...) Runs<C, &C::Name>(#Name, line, {__VA_ARGS__})
#define CONTROL(Name, line) Carries<C, &C::Name>(#Name, line)
#define CONTROLS(Name, line, ...) CarriesMany<C, &C::Name>(#Name, line, {__VA_ARGS__})

}  // namespace tarvik::members
