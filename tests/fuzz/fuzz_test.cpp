// The harnesses with dice: the same texts at every run. TARVIK_FUZZ_SECONDS=3600 goes on for as long, with
// dice of that day; tests/fuzz/una_hora does it with a compiler that watches.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <random>

#include "tests/fuzz/harness.h"

namespace tarvik::tests {
namespace {

using Dice = std::mt19937;

std::size_t Below(Dice& dice, std::size_t end) { return end == 0 ? 0 : dice() % end; }

// One more text out of those that there are.
std::string Mutated(Dice& dice, const Harness& harness, const std::vector<std::string>& pool) {
  std::string text = pool[Below(dice, pool.size())];
  for (std::size_t times = 1 + Below(dice, 4); times > 0; --times) {
    const std::size_t at = Below(dice, text.size() + 1);
    switch (Below(dice, 6)) {
      case 0:
        text.insert(at, harness.words[Below(dice, harness.words.size())]);
        break;
      case 1:
        text.insert(at, 1, static_cast<char>(Below(dice, 256)));
        break;
      case 2:
        text.erase(at, 1 + Below(dice, 8));
        break;
      case 3:
        if (at < text.size()) text[at] = static_cast<char>(Below(dice, 256));
        break;
      case 4: {
        const std::string& other = pool[Below(dice, pool.size())];
        text.insert(at, other, Below(dice, other.size()), Below(dice, 20));
        break;
      }
      default:
        text += text.substr(at, 30);
    }
  }
  constexpr std::size_t kLongest = 400;
  return text.substr(0, kLongest);
}

class Fuzz : public testing::TestWithParam<std::size_t> {};

TEST_P(Fuzz, NoTextDoesWhatNoneMay) {
  const Harness& harness = Harnesses()[GetParam()];
  for (const std::string& seed : harness.seeds) ASSERT_EQ(harness.fuzz(seed), "") << seed;

  const char* asked = std::getenv("TARVIK_FUZZ_SECONDS");
  const auto end =
      std::chrono::steady_clock::now() + std::chrono::seconds(asked != nullptr ? std::atoi(asked) : 0);
  Dice dice(asked != nullptr ? std::random_device{}() : 20240305U);
  constexpr int kTexts = 12'000;
  std::vector<std::string> pool = harness.seeds;
  for (int i = 0; i < kTexts || (asked != nullptr && std::chrono::steady_clock::now() < end); ++i) {
    const std::string text = Mutated(dice, harness, pool);
    const std::string wrong = harness.fuzz(text);
    ASSERT_EQ(wrong, "") << "with " << testing::PrintToString(text);
    // Some of them are gone on with, so that texts drift away from the seeds.
    constexpr std::size_t kPool = 500;
    if (i % 5 == 0) {
      if (pool.size() < kPool) {
        pool.push_back(text);
      } else {
        pool[harness.seeds.size() + Below(dice, kPool - harness.seeds.size())] = text;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, Fuzz, testing::Values(0U, 1U, 2U),
                         [](const testing::TestParamInfo<std::size_t>& which) {
                           return std::string(Harnesses()[which.param].name);
                         });

}  // namespace
}  // namespace tarvik::tests
