// What an exception of the deployer's says: where it comes from and what it means, in words for an
// operator.
#pragma once

#include <string>

#include "python/binding.h"
#include "python/ganchos.h"

namespace tarvik::python {

struct Explicada {
  Fallo fallo;
  std::string rastro;  // the interpreter's own account
};

// An attribute as a text; empty where there is none, or where it can't be one.
std::string Atributo(const py::handle& object, const char* name);

// Its place is the innermost call in the folder's own files: outside of them nobody can mend anything.
// `failure` comes in with the place to be named if the exception knows no better one.
Explicada Explica(py::error_already_set& raised, const std::string& folder, Fallo failure);

// Why a file did not load. `own` are exceptions whose text is meant for an operator already.
Fallo FalloDeCarga(py::error_already_set& raised, const std::string& folder, const std::string& file,
                   const py::tuple& own);

}  // namespace tarvik::python
