// SPDX-License-Identifier: MIT
#include <cmath>
#include <numbers>

#include "session.h"

/// The gestures of the knob, as the program tells them to its host.

namespace ondex::test {
namespace {

class KnobSession : public SessionTest {
 protected:
  /// A place at so many degrees, counterclockwise from the right, and so far from the knob's centre.
  Position at_angle(double degrees, double distance = 60) const {
    const Position centre = knob().centre();
    const double angle = degrees * std::numbers::pi / 180;
    return {centre.x + distance * std::cos(angle), centre.y + distance * std::sin(angle)};
  }
  double value_at(const Parameter& parameter, Position pointer) const {
    return knob_at(parameter, knob().centre(), told(pointer));
  }
};

TEST_F(KnobSession, APressJumpsToTheMouse) {
  start();
  for (const double degrees : {225.0, 180.0, 135.0, 90.0, 45.0, 0.0, -45.0, 10.0, 200.0}) {
    click(at_angle(degrees));
    expect_writes(written(), {{2, value_at(depth, at_angle(degrees))}});
  }
  // Straight up is the middle of the travel, by the way there, not by the formula.
  click(at_angle(90, 80));
  expect_writes(written(), {{2, 0.5}});
}

TEST_F(KnobSession, BelowItTheNearerEndCounts) {
  start();
  const Position centre = knob().centre();
  click({centre.x, centre.y - 50});
  click({centre.x + 12, centre.y - 50});
  click({centre.x - 1, centre.y - 70});
  click({centre.x - 20, centre.y - 50});
  expect_writes(written(), {{2, 1}, {2, 1}, {2, 0}, {2, 0}});
}

TEST_F(KnobSession, ADragFollowsTheMouseOutOfTheKnobAndOfTheWindow) {
  start();
  press(at_angle(180));
  Writes expected = {{2, value_at(depth, at_angle(180))}};
  settle();
  for (const auto& [degrees, distance] :
       {std::pair(120.0, 60.0), {60.0, 130.0}, {20.0, 300.0}, {100.0, 20.0}}) {
    const Position place = at_angle(degrees, distance);
    point(place);
    settle();
    expected.push_back({2, value_at(depth, place)});
  }
  const Position far = {knob().centre().x + 200, map.editor().top() + 100};
  point(far);
  settle();
  expected.push_back({2, value_at(depth, far)});
  release();
  point(at_angle(180));
  expect_writes(written(), expected);
}

TEST_F(KnobSession, ADoubleClickRestoresTheDefault) {
  start({"--set", "1=7"});
  double_click(at_angle(30));
  expect_writes(written(), {{2, value_at(depth, at_angle(30))}, {2, 0.5}});
  click(of(right_rate).centre());
  double_click(at_angle(100));
  expect_writes(written(), {{1, value_at(right_rate, at_angle(100))}, {1, 0}});
}

TEST_F(KnobSession, ADragAfterADoubleClickDoesNothing) {
  start();
  click(at_angle(45));
  press_again();
  EXPECT_EQ(written().size(), 2U);
  move_by(-40, 20);
  move_by(-20, 5);
  release();
  expect_writes(written(), {});
  EXPECT_EQ(value_of(2), "0.5");
}

TEST_F(KnobSession, TheThirdOfThreeClicksIsASingleOne) {
  start();
  clicks(at_angle(0), 3);
  const double pointed = value_at(depth, at_angle(0));
  expect_writes(written(), {{2, pointed}, {2, 0.5}, {2, pointed}});
}

TEST_F(KnobSession, TheWheelTurnsItInBothDirections) {
  start({"--set", "0=10"});
  click(of(left_rate).centre());
  for (const int button : {4, 4, 5, 6, 7, 7})
    wheel(at_angle(90, 30), button);
  expect_writes(written(), {{0, 10.02}, {0, 10.04}, {0, 10.02}, {0, 10}, {0, 10.02}, {0, 10.04}});
}

TEST_F(KnobSession, TheWheelStopsAtTheEndsAndStillWrites) {
  start({"--set", "2=0.9995"});
  wheel(knob().centre(), 4);
  wheel(knob().centre(), 4);
  wheel(knob().centre(), 5);
  expect_writes(written(), {{2, 1}, {2, 1}, {2, 0.999}});
}

TEST_F(KnobSession, AModulationReadoutTurnsWithTheSquareRoot) {
  start();
  click(of(right_factor).centre());
  // Half of the travel is the square of half of sqrt(20).
  click(at_angle(90, 50));
  wheel(knob().centre(), 4);
  expect_writes(written(), {{5, 5}, {5, after_knob_wheel(right_factor, 5, 1)}});
  for (const double degrees : {150.0, 20.0, -40.0, 220.0}) {
    click(at_angle(degrees));
    expect_writes(written(), {{5, value_at(right_factor, at_angle(degrees))}});
  }
}

TEST_F(KnobSession, APressBesideTheEllipseTellsTheValueAsItIs) {
  start({"--set", "2=0.125"});
  const Area area = knob();
  press({area.x + 3, area.top() - 4});
  move_by(30, -30);
  move_by(30, -30);
  release();
  expect_writes(written(), {{2, 0.125}});
}

TEST_F(KnobSession, TheSelectedReadoutAndTheKnobGoTogether) {
  start();
  press(of(depth).centre());
  move_by(0, 20);
  release();
  wheel(knob().centre(), 5);
  expect_writes(written(), {{2, 0.6}, {2, 0.599}});
  press(of(depth).centre());
  move_by(0, 2);
  release();
  expect_writes(written(), {{2, 0.609}});
}

}  // namespace
}  // namespace ondex::test
