// Files that are whole or not there.
#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace tarvik::host {

// Writes the whole file or leaves it as it was: a program that dies in the middle, or a disk that is full,
// leaves no half page. Gives what went wrong; no error if nothing did. Makes no folder.
std::error_code EscribeEntero(const std::filesystem::path& path, std::string_view text);

}  // namespace tarvik::host
