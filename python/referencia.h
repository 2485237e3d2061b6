// What is made from the description of the module: the stub for editors and the pages of docs/reference.
#pragma once

#include "python/binding.h"

namespace tarvik::python {

// `_stub()` and `_paginas()`, for the tests that keep the files up to date. After all else.
void BindReferencia(py::module_& module);

}  // namespace tarvik::python
