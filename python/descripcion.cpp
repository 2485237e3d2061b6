#include "python/descripcion.h"

#include <algorithm>

namespace tarvik::python {

namespace {

std::string Anotacion(const members::Type& type) {
  using members::Base;
  std::string text;
  switch (type.base) {
    case Base::Nothing:
      return "None";
    case Base::Boolean:
      text = "bool";
      break;
    case Base::Integer:
      text = "int";
      break;
    case Base::Number:
      text = "float";
      break;
    case Base::Text:
      text = "str";
      break;
    case Base::Date:
      text = "datetime.date";
      break;
    case Base::Value:
      return "Valor";
    case Base::Array:
      return "ControlArray[" + std::string(type.name) + "]";
    case Base::Texts:
      return "list[str]";
    case Base::Controls:
      return "list[Control]";
    default:
      text = type.name;
  }
  return type.or_nothing ? text + " | None" : text;
}

}  // namespace

std::vector<ClaseDescrita>& Descritas() {
  static std::vector<ClaseDescrita> all;
  return all;
}

ClaseDescrita& Descrita(std::string_view name) {
  return *std::find_if(Descritas().begin(), Descritas().end(),
                       [&](const ClaseDescrita& described) { return described.nombre == name; });
}

std::string MiembroDescrito::Doc() const {
  if (linea.empty()) return {};
  // The form in which the interpreter finds a signature: for help() and for editors.
  std::string text = nombre + "(self";
  for (const auto& parameter : parametros) {
    text += ", " + parameter.nombre;
    if (parameter.omision) text += "=" + *parameter.omision;
  }
  return text + ")\n--\n\n" + linea;
}

bool TieneDosNombres(const members::Member& member) {
  return std::any_of(member.parameters.begin(), member.parameters.end(),
                     [](const auto& parameter) { return !parameter.other_name.empty(); });
}

MiembroDescrito Descrito(const members::Member& member, bool corto) {
  MiembroDescrito row{std::string(member.name), member.kind,  Anotacion(member.type), {},
                      std::string(member.line), member.places};
  const members::Parameter* back = nullptr;
  int count = 0;
  for (const auto& parameter : member.parameters) {
    if (parameter.way != members::Way::In) {
      back = &parameter;
      ++count;
    }
    if (parameter.way == members::Way::Out) continue;
    ParametroDescrito shown{
        std::string(corto && !parameter.other_name.empty() ? parameter.other_name : parameter.name),
        Anotacion(parameter.type)};
    if (parameter.optional) shown.omision = parameter.type.base == members::Base::Boolean ? "False" : "None";
    row.parametros.push_back(std::move(shown));
  }
  // The one argument that comes back is the procedure's answer.
  if (member.type.base == members::Base::Nothing && count == 1) row.tipo = Anotacion(back->type);
  return row;
}

ClaseDescrita& Describe(const members::Class& table) {
  ClaseDescrita described{std::string(table.name),
                          std::string(table.line),
                          table.base ? std::string(table.base->name) : std::string(),
                          {}};
  for (const auto& member : table.members) {
    if (TieneDosNombres(member)) described.miembros.push_back(Descrito(member, true));
    described.miembros.push_back(Descrito(member));
  }
  return Descritas().emplace_back(std::move(described));
}

}  // namespace tarvik::python
