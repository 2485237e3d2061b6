// BindAll: everything that the module `tarvik` offers. The loadable module and the program that
// embeds an interpreter fill theirs with it, so that a routine finds the same names in both.
#pragma once

#include "python/binding.h"

namespace tarvik::python {

// Once for each start of an interpreter.
void BindAll(py::module_& module);

}  // namespace tarvik::python
