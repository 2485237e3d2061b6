// The tables themselves, each in a file of its own. Only members/member.cpp and the tables include this.
#pragma once

#include <vector>

#include "members/member.h"

namespace tarvik::members {

std::vector<const Class*> ControlTables();  // a base before what builds on it
const Class& FormTable();
const Class& DocumentWizardTable();
const Class& GoodsInTable();
const Class& GoodsOutTable();
const Class& MatrixTable();
const Class& StationsTable();
std::vector<const Class*> ServiceTables();

}  // namespace tarvik::members
