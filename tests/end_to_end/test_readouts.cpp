// SPDX-License-Identifier: MIT
#include "session.h"

#include <xkbcommon/xkbcommon-keysyms.h>

/// The gestures of the readouts, as the program tells them to its host.

namespace ondex::test {
namespace {

constexpr xcb_keysym_t shift_key = XKB_KEY_Shift_L;
constexpr xcb_keysym_t control_key = XKB_KEY_Control_L;

class ReadoutSession : public SessionTest {};

TEST_F(ReadoutSession, EveryReadoutIsDraggedThroughItsOwnRange) {
  start();
  for (const Parameter& parameter : parameters) {
    press(of(parameter).centre());
    double value = parameter.default_value;
    Writes expected;
    for (const auto& [right, up] : {std::pair(0, 30), {0, -10}, {20, 0}, {-7, 3}}) {
      move_by(right, up);
      value = after_drag(parameter, value, right, up);
      expected.push_back({parameter.id, value});
    }
    release();
    expect_writes(written(), expected);
  }
  expect_quiet_end();
}

TEST_F(ReadoutSession, TwoHundredPointsCrossTheRangeAndABoundAnswersAtOnce) {
  start({"--set", "2=0", "--set", "5=0"});
  for (const Parameter& parameter : {depth, right_factor}) {
    press(of(parameter).centre());
    move_by(0, 100);
    move_by(0, 100);
    move_by(0, 50);
    move_by(0, -10);
    release();
    const double top = parameter.maximum;
    expect_writes(written(), {{parameter.id, after_drag(parameter, 0, 0, 100)},
                              {parameter.id, top},
                              {parameter.id, top},
                              {parameter.id, after_drag(parameter, top, 0, -10)}});
  }
}

TEST_F(ReadoutSession, ASquareRootThatPassesZeroComesBack) {
  start({"--set", "4=0.05"});
  press(of(left_index).centre());
  move_by(0, -60);
  release();
  // sqrt(0.05) - 0.3 sqrt(20), squared.
  expect_writes(written(), {{4, 1.25}});
}

TEST_F(ReadoutSession, ADragThatLeavesTheWindowGoesOn) {
  start();
  press(of(left_rate).centre());
  const auto frame = user.geometry(window);
  move_by(0, 12);
  move_by(frame.width, frame.height);
  move_by(-5, -3);
  const double far = after_drag(left_rate, after_drag(left_rate, 0, 0, 12), frame.width, frame.height);
  release();
  settle();
  move_by(0, 40);
  expect_writes(written(),
                {{0, after_drag(left_rate, 0, 0, 12)}, {0, far}, {0, after_drag(left_rate, far, -5, -3)}});
}

TEST_F(ReadoutSession, TheWheelTurnsTheReadoutUnderThePointerWithoutSelectingIt) {
  start();
  constexpr int away = 4;
  constexpr int back = 5;
  constexpr int left = 6;
  constexpr int right = 7;
  for (const Parameter& parameter : {right_rate, left_factor, depth}) {
    double value = parameter.default_value;
    Writes expected;
    for (const auto& [button, turn, across] :
         {std::tuple(away, 1, 0), {away, 1, 0}, {back, -1, 0}, {right, 0, 1}, {left, 0, -1}}) {
      wheel(of(parameter).centre(), button);
      value = after_wheel(parameter, value, turn, across);
      expected.push_back({parameter.id, value});
    }
    expect_writes(written(), expected);
  }
  // The depth is still what the knob edits: 0.5 and one notch of the readout's are its value now.
  wheel(knob().centre(), away);
  expect_writes(written(), {{2, after_knob_wheel(depth, after_wheel(depth, 0.5, 1), 1)}});
}

TEST_F(ReadoutSession, AClickHandsTheKnobOverAndWritesNothing) {
  start({"--set", "0=3", "--set", "1=4", "--set", "2=0.25", "--set", "3=5", "--set", "4=6", "--set", "5=7",
         "--set", "6=8"});
  const double values[] = {3, 4, 0.25, 5, 6, 7, 8};
  for (const Parameter& parameter : parameters) {
    click(of(parameter).centre());
    expect_writes(written(), {});
    wheel(knob().centre(), 4);
    expect_writes(written(), {{parameter.id, after_knob_wheel(parameter, values[parameter.id], 1)}});
  }
}

TEST_F(ReadoutSession, AClickOnTheSelectedReadoutWritesNothingAndKeepsIt) {
  start();
  click(within(of(depth), 0.25, 0.5));
  click(within(of(depth), 0.75, 0.5));
  wheel(knob().centre(), 4);
  expect_writes(written(), {{2, after_knob_wheel(depth, 0.5, 1)}});
}

TEST_F(ReadoutSession, ADoubleClickSelectsAndWritesNothing) {
  start({"--set", "6=2"});
  double_click(of(right_index).centre());
  expect_writes(written(), {});
  wheel(knob().centre(), 4);
  expect_writes(written(), {{6, after_knob_wheel(right_index, 2, 1)}});
  expect_quiet_end();
}

TEST_F(ReadoutSession, ModifierKeysChangeNothing) {
  start();
  for (const xcb_keysym_t key : {shift_key, control_key}) {
    const double before = std::stod(value_of(2));
    user.press_key(key);
    wheel(of(depth).centre(), 5);
    press(of(depth).centre());
    move_by(0, 8);
    release();
    user.release_key(key);
    const double turned = after_wheel(depth, before, -1);
    expect_writes(written(), {{2, turned}, {2, after_drag(depth, turned, 0, 8)}});
  }
}

TEST_F(ReadoutSession, ReadoutsReachToTheirLastPixelAndNoFurther) {
  start();
  for (const Parameter& parameter : parameters) {
    const Area area = of(parameter);
    // A pixel is named by its lower left corner, in whole points here.
    const double last_x = area.right() - 1;
    const double last_y = area.top() - 1;
    for (const Position corner :
         {Position{area.x, area.y}, {last_x, area.y}, {area.x, last_y}, {last_x, last_y}})
      wheel(corner, 5);
    Writes inside = written();
    EXPECT_EQ(inside.size(), 4U) << parameter.outlet;
    for (const Written& write : inside)
      EXPECT_EQ(write.id, parameter.id);
    const Position middle = area.centre();
    for (const Position beside : {Position{area.x - 1, middle.y},
                                  {area.right(), middle.y},
                                  {middle.x, area.y - 1},
                                  {middle.x, area.top()}})
      wheel(beside, 5);
    expect_writes(written(), {});
  }
}

}  // namespace
}  // namespace ondex::test
