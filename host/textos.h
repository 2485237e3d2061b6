// The numbered messages: the texts that a new base starts with, and the reading of what is in
// the base. A deployer's own text is never overwritten here.
#pragma once

#include <string>
#include <vector>

#include "data/engine.h"

namespace tarvik::host {

struct TextoDeMensaje {
  int numero;
  const char* texto;
};

// Every number that the module asks for, with its text in a new base, in ascending order.
const std::vector<TextoDeMensaje>& TextosDeFabrica();

// The text in the base; the number itself where there is none.
std::string LeeMensaje(data::EngineConnection& connection, int number);

// Puts in the texts whose numbers the base does not have. To be called in a transaction of the caller.
void SiembraMensajes(data::EngineConnection& connection);

}  // namespace tarvik::host
