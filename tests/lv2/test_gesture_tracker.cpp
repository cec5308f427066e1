// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lv2_ui/gesture_tracker.h"

namespace ondex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GestureTrackerTest : public testing::Test {
 protected:
  void write(unsigned parameter, GestureKind kind, double now) {
    tracker.willWrite(parameter, kind, now);
    told.push_back("write " + std::to_string(parameter));
    tracker.didWrite(parameter);
  }
  std::vector<std::string> told;
  GestureTracker tracker{[this](unsigned parameter, bool begins) {
    told.push_back((begins ? "begin " : "end ") + std::to_string(parameter));
  }};
};

TEST_F(GestureTrackerTest, AHoldLastsUntilTheButtonComesUp) {
  write(2, GestureKind::hold, 0);
  write(2, GestureKind::hold, 100);
  tracker.tick(200);
  EXPECT_TRUE(tracker.isOpen(2));
  tracker.released();
  EXPECT_FALSE(tracker.isOpen(2));
  tracker.released();
  EXPECT_THAT(told, ElementsAre("begin 2", "write 2", "write 2", "end 2"));
}

TEST_F(GestureTrackerTest, AWheelLastsUntilItHasRested) {
  write(0, GestureKind::wheel, 10);
  tracker.tick(10.29);
  write(0, GestureKind::wheel, 10.25);
  tracker.tick(10.54);
  EXPECT_TRUE(tracker.isOpen(0));
  tracker.tick(10.55);
  EXPECT_THAT(told, ElementsAre("begin 0", "write 0", "write 0", "end 0"));
}

TEST_F(GestureTrackerTest, AReleaseDoesNotEndAWheel) {
  write(0, GestureKind::wheel, 10);
  tracker.released();
  EXPECT_TRUE(tracker.isOpen(0));
}

TEST_F(GestureTrackerTest, AnEntryEndsWithItsWrite) {
  write(6, GestureKind::entry, 0);
  EXPECT_THAT(told, ElementsAre("begin 6", "write 6", "end 6"));
}

TEST_F(GestureTrackerTest, AnEntryWhileTheWheelRestsIsPartOfIt) {
  write(6, GestureKind::wheel, 0);
  write(6, GestureKind::entry, 0.1);
  EXPECT_TRUE(tracker.isOpen(6));
  tracker.tick(0.3);
  EXPECT_THAT(told, ElementsAre("begin 6", "write 6", "write 6", "end 6"));
}

TEST_F(GestureTrackerTest, AHoldTakesOverFromTheWheel) {
  write(6, GestureKind::wheel, 0);
  write(6, GestureKind::hold, 0.1);
  tracker.tick(10);
  EXPECT_TRUE(tracker.isOpen(6));
  write(6, GestureKind::wheel, 10);
  tracker.tick(20);
  EXPECT_TRUE(tracker.isOpen(6)) << "the button is still held";
  tracker.released();
  EXPECT_THAT(told, ElementsAre("begin 6", "write 6", "write 6", "write 6", "end 6"));
}

TEST_F(GestureTrackerTest, ParametersAreApart) {
  write(1, GestureKind::wheel, 0);
  write(3, GestureKind::hold, 0.1);
  tracker.released();
  EXPECT_TRUE(tracker.isOpen(1));
  EXPECT_FALSE(tracker.isOpen(3));
}

TEST_F(GestureTrackerTest, AllCanBeEndedAtOnceAndOnlyOnce) {
  write(1, GestureKind::wheel, 0);
  write(3, GestureKind::hold, 0);
  told.clear();
  tracker.endAll();
  EXPECT_THAT(told, ElementsAre("end 1", "end 3"));
  told.clear();
  tracker.endAll();
  tracker.released();
  tracker.tick(100);
  EXPECT_THAT(told, IsEmpty());
}

}  // namespace
}  // namespace ondex
