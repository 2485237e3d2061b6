// What a wrong name on an object of the module says: in Spanish, with the name that was probably meant.
#pragma once

#include "python/binding.h"

namespace tarvik::python {

// For the class at the root of others: those that build on it say it too.
py::custom_type_setup DiceLoParecido();

}  // namespace tarvik::python
