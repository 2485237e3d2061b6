// The walk over the table of members: properties and procedures of the module's classes, made from its rows.
#pragma once

#include "members/member.h"
#include "python/binding.h"

namespace tarvik::python {

// Adds the rows of the table to a class that is bound already, and describes it.
void AgregaMiembros(const py::handle& type, const members::Class& table);

// One value on its way. `owner` is the form that keeps what belongs to it; nullptr where nothing does.
// Throws TypeError for what the type doesn't take.
members::Variant FromPython(const py::handle& given, const members::Type& type, std::string_view name);
py::object ToPython(const members::Variant& variant, forms::Form* owner);

}  // namespace tarvik::python
