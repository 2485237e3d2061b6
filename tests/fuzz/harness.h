// What any bytes at all must not be able to do: to the gate before an engine, to numbers and patterns, and to
// the text that is put right for a server. Each gives what was wrong, or nothing; driven by fuzz_test.cpp
// with dice, and by libfuzzer/ with a compiler that watches which way the program takes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarvik::tests {

std::string FuzzGate(std::string_view bytes);
std::string FuzzNumbers(std::string_view bytes);
std::string FuzzDialect(std::string_view bytes);

struct Harness {
  const char* name;
  std::string (*fuzz)(std::string_view);
  std::vector<std::string> seeds;
  std::vector<std::string> words;  // that a blind mutation would not find
};
const std::vector<Harness>& Harnesses();

}  // namespace tarvik::tests
