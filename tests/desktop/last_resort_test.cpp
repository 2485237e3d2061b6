// The last resort: it ends what a routine holds once the program has been told to end, and nothing else.
#include "desktop/last_resort.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace tarvik::desktop {
namespace {

using namespace std::chrono_literals;

class UltimoRecurso : public ::testing::Test {
 protected:
  std::atomic<bool> told = false;
  std::atomic<int> ended = 0;
  LastResort resort{[this] { return told.load(); }, 200ms, [this] { ++ended; }};
};

TEST_F(UltimoRecurso, ARoutineThatGoesOnAndOnAfterTheEndWasAskedFor) {
  resort.Begins();
  std::this_thread::sleep_for(400ms);
  EXPECT_EQ(ended, 0) << "nobody has asked for the end";
  told = true;
  std::this_thread::sleep_for(100ms);
  EXPECT_EQ(ended, 0) << "it has its time";
  std::this_thread::sleep_for(600ms);
  EXPECT_GT(ended, 0);
}

TEST_F(UltimoRecurso, TheProgramsOwnWorkIsLetFinish) {
  told = true;
  std::this_thread::sleep_for(600ms);
  EXPECT_EQ(ended, 0);
  resort.Begins();
  resort.Ends();
  std::this_thread::sleep_for(600ms);
  EXPECT_EQ(ended, 0);
}

TEST_F(UltimoRecurso, WhateverEndsGivesTheOthersTimeAnew) {
  told = true;
  resort.Begins();
  for (int i = 0; i < 10; ++i) {
    resort.Begins();
    std::this_thread::sleep_for(60ms);
    resort.Ends();
  }
  EXPECT_EQ(ended, 0);
  std::this_thread::sleep_for(600ms);
  EXPECT_GT(ended, 0);
}

}  // namespace
}  // namespace tarvik::desktop
