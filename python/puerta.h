// The public class as a script holds it.
#pragma once

#include <memory>

#include "python/nucleo.h"
#include "service/door/entradas_salidas.h"

namespace tarvik::python {

// With the references that a script may take away and put back.
struct Puerta {
  std::shared_ptr<Nucleo> nucleo;
  EntradasSalidas door;
  std::shared_ptr<host::AmbienteLocal> ambiente;  // what the door was given
  std::shared_ptr<host::FormaMaestra> parent;
};

}  // namespace tarvik::python
