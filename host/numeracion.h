// Number series: 1, 2, 3 ... of each name, drawn by many stations at once. It does not prove that a
// number is free in a table; whoever draws it does.
#pragma once

#include <cstdint>
#include <string>

#include "data/engine.h"

namespace tarvik::host {

// The next number of a series; a series that nobody has drawn from starts with 1. Inside a
// transaction the number goes back if that is rolled back.
// Throws data::Error if the base refuses or the series has reached the end of 32 bits.
std::int32_t SiguienteNumero(data::EngineConnection& connection, const std::string& serie);

}  // namespace tarvik::host
