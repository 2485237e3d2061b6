// LastResort ends a program that was told to end while a routine blocks it, and nothing else.
#include "desktop/program/last_resort.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace tarvik::desktop {
namespace {

using namespace std::chrono_literals;

class UltimoRecurso : public ::testing::Test {
 protected:
  [[nodiscard]] bool Ends() const {
    for (int i = 0; i < 500 && ended == 0; ++i) std::this_thread::sleep_for(20ms);
    return ended > 0;
  }

  std::atomic<bool> told = false;
  std::atomic<int> ended = 0;
  LastResort resort{[this] { return told.load(); }, 1s, [this] { ++ended; }};
};

TEST_F(UltimoRecurso, ARoutineThatGoesOnAndOnAfterTheEndWasAskedFor) {
  resort.Begins();
  std::this_thread::sleep_for(1500ms);
  EXPECT_EQ(ended, 0) << "nobody has asked for the end";
  told = true;
  std::this_thread::sleep_for(300ms);
  EXPECT_EQ(ended, 0) << "it has its time";
  EXPECT_TRUE(Ends());
}

TEST_F(UltimoRecurso, TheProgramsOwnWorkIsLetFinish) {
  told = true;
  std::this_thread::sleep_for(1500ms);
  EXPECT_EQ(ended, 0);
  resort.Begins();
  resort.Ends();
  std::this_thread::sleep_for(1500ms);
  EXPECT_EQ(ended, 0);
}

TEST_F(UltimoRecurso, WhateverEndsGivesTheOthersTimeAnew) {
  told = true;
  resort.Begins();
  for (int i = 0; i < 8; ++i) {
    resort.Begins();
    std::this_thread::sleep_for(200ms);
    resort.Ends();
  }
  EXPECT_EQ(ended, 0);
  EXPECT_TRUE(Ends());
}

}  // namespace
}  // namespace tarvik::desktop
