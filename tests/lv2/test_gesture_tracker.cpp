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

TEST_F(GestureTrackerTest, a_hold_lasts_until_the_button_comes_up) {
  write(2, GestureKind::hold, 0);
  write(2, GestureKind::hold, 100);
  tracker.tick(200);
  EXPECT_TRUE(tracker.isOpen(2));
  tracker.released();
  EXPECT_FALSE(tracker.isOpen(2));
  tracker.released();
  EXPECT_THAT(told, ElementsAre("begin 2", "write 2", "write 2", "end 2"));
}

TEST_F(GestureTrackerTest, a_wheel_lasts_until_it_has_rested) {
  write(0, GestureKind::wheel, 10);
  tracker.tick(10.29);
  write(0, GestureKind::wheel, 10.25);
  tracker.tick(10.54);
  EXPECT_TRUE(tracker.isOpen(0));
  tracker.tick(10.55);
  EXPECT_THAT(told, ElementsAre("begin 0", "write 0", "write 0", "end 0"));
}

TEST_F(GestureTrackerTest, a_release_does_not_end_a_wheel) {
  write(0, GestureKind::wheel, 10);
  tracker.released();
  EXPECT_TRUE(tracker.isOpen(0));
}

TEST_F(GestureTrackerTest, an_entry_ends_with_its_write) {
  write(6, GestureKind::entry, 0);
  EXPECT_THAT(told, ElementsAre("begin 6", "write 6", "end 6"));
}

TEST_F(GestureTrackerTest, an_entry_while_the_wheel_rests_is_part_of_it) {
  write(6, GestureKind::wheel, 0);
  write(6, GestureKind::entry, 0.1);
  EXPECT_TRUE(tracker.isOpen(6));
  tracker.tick(0.3);
  EXPECT_THAT(told, ElementsAre("begin 6", "write 6", "write 6", "end 6"));
}

TEST_F(GestureTrackerTest, a_hold_takes_over_from_the_wheel) {
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

TEST_F(GestureTrackerTest, parameters_are_apart) {
  write(1, GestureKind::wheel, 0);
  write(3, GestureKind::hold, 0.1);
  tracker.released();
  EXPECT_TRUE(tracker.isOpen(1));
  EXPECT_FALSE(tracker.isOpen(3));
}

TEST_F(GestureTrackerTest, all_can_be_ended_at_once_and_only_once) {
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
