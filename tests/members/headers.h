// Reads a class out of a header: its public members and procedures by name, with the names of their
// parameters. It knows the layout of this project's headers and no more of the language.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace tarvik::tests {

// For each name the parameters of each of its overloads; none for a variable.
using PublicMembers = std::map<std::string, std::vector<std::vector<std::string>>>;

// The file from the project's root. Constructors, types and operators are left out.
PublicMembers MembersInHeader(const std::string& file, const std::string& name);

}  // namespace tarvik::tests
