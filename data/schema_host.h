// The tables that are the stand-alone host's own. Seen by schema.cpp alone, which joins them to the suite's.
#pragma once

#include <vector>

#include "data/schema.h"

namespace tarvik::data {

std::vector<Table> HostTables();

}  // namespace tarvik::data
