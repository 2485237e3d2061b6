// What libFuzzer calls. TARVIK_HARNESS says which of the harnesses; with TARVIK_SEEDS set to a folder its
// seeds are written there first, and its words into FOLDER.dict.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "tests/fuzz/harness.h"

namespace {

const tarvik::tests::Harness& Chosen() {
  const char* name = std::getenv("TARVIK_HARNESS");
  for (const auto& harness : tarvik::tests::Harnesses()) {
    if (name != nullptr && std::strcmp(harness.name, name) == 0) return harness;
  }
  std::fputs("TARVIK_HARNESS says none of gate, numbers, dialect\n", stderr);
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  const auto& harness = Chosen();
  const char* folder = std::getenv("TARVIK_SEEDS");
  if (folder == nullptr) return 0;
  int number = 0;
  for (const auto& seed : harness.seeds) {
    std::ofstream(std::string(folder) + "/seed-" + std::to_string(++number), std::ios::binary) << seed;
  }
  std::ofstream words(std::string(folder) + ".dict");
  for (const auto& word : harness.words) {
    words << '"';
    for (const char c : word) {
      char hex[8];
      std::snprintf(hex, sizeof hex, "\\x%02X", static_cast<unsigned char>(c));
      words << hex;
    }
    words << "\"\n";
  }
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const tarvik::tests::Harness& harness = Chosen();
  const std::string wrong = harness.fuzz({reinterpret_cast<const char*>(bytes), size});
  if (wrong.empty()) return 0;
  std::fprintf(stderr, "%s\n", wrong.c_str());
  std::abort();
}
