// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "gestures.h"
#include "open_knob.h"
#include "recording_host.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::drag_to;
using test::edited_selector;
using test::lift;
using test::OpenKnob;
using test::press;
using test::RecordingHost;
using test::turn_wheel;

class KnobGestures : public testing::Test {
 protected:
  KnobGestures() { knob->set_callback_onObject(edited_selector, host.get()); }

  Ref<RecordingHost> host = make<RecordingHost>();
  Ref<OpenKnob> knob = make<OpenKnob>();
};

/// The pointer's angle passes through single precision, whose step near π is about 2.4e-7 rad.
constexpr double angle_tolerance = 1e-7;

TEST_F(KnobGestures, APressTurnsThePointerToItsAngle) {
  knob->show(0, 1, 0, 0);
  press(*knob, 1, 50, 90);
  EXPECT_NEAR(knob->current_value(), 0.5, angle_tolerance);
  EXPECT_NEAR(knob->_x, 50, 1e-5);
  EXPECT_NEAR(knob->_y, 83, 1e-5);
  press(*knob, 1, 10, 50);  // to the left: (5π/4 - π) / (3π/2)
  EXPECT_NEAR(knob->current_value(), 1.0 / 6, angle_tolerance);
  press(*knob, 1, 90, 50);  // to the right: 5π/4 / (3π/2)
  EXPECT_NEAR(knob->current_value(), 5.0 / 6, angle_tolerance);
}

TEST_F(KnobGestures, TheAngleIsComputedInSinglePrecision) {
  knob->show(0, 1, 0, 0);
  press(*knob, 1, 60, 80);
  // atan2f(30, 10) = 1.2490457296371460, one rounding away from 1.2490457723982544.
  EXPECT_DOUBLE_EQ(knob->current_value(), (1.249045729637146 - 3.9269908169872414) / -4.71238898038469);
}

TEST_F(KnobGestures, ThePointerLiesInTheKnobsOwnCoordinates) {
  const auto window_view = make<NSView>(NSMakeRect(0, 0, 400, 300));
  const auto placed = make<OpenKnob>(NSMakeRect(200, 100, 100, 100));
  window_view->addSubview(placed.get());
  press(*placed, 1, 250, 190);
  EXPECT_NEAR(placed->current_value(), 0.5, angle_tolerance);
}

TEST_F(KnobGestures, StraightDownIsTheMaximumAndAHairToItsLeftTheMinimum) {
  knob->show(0, 1, 0, 0.5);
  press(*knob, 1, 50, 10);
  EXPECT_EQ(knob->current_value(), 1.0);
  press(*knob, 1, 49.999, 10);
  EXPECT_EQ(knob->current_value(), 0.0);
}

TEST_F(KnobGestures, TheDeadZoneBelowGivesTheNearerEnd) {
  knob->show(0, 1, 0, 0.5);
  press(*knob, 1, 55, 10);
  EXPECT_EQ(knob->current_value(), 1.0);
  press(*knob, 1, 45, 10);
  EXPECT_EQ(knob->current_value(), 0.0);
}

TEST_F(KnobGestures, ThePointerIsLinearInMappedSpace) {
  knob->show(0, 20, 2, 0);
  press(*knob, 1, 50, 90);
  EXPECT_NEAR(knob->current_value(), 5.0, 1e-5);
  knob->show(0.1, 10, 1, 0.1);
  press(*knob, 1, 50, 90);
  EXPECT_NEAR(knob->current_value(), 1.0, 1e-5);
}

TEST_F(KnobGestures, APressBesideTheKnobReportsTheUnchangedValue) {
  knob->show(0, 1, 0, 0.25);
  press(*knob, 1, 5, 95);
  EXPECT_EQ(knob->current_value(), 0.25);
  EXPECT_FALSE(knob->_mouse_is_down);
  ASSERT_EQ(host->edited.size(), 1U);
  EXPECT_EQ(host->edited.front(), knob.get());
}

TEST_F(KnobGestures, APressBesideTheKnobChangesNothingWhileAnotherIsHeld) {
  press(*knob, 1, 50, 90);
  press(*knob, 1, 95, 5);
  EXPECT_NEAR(knob->current_value(), 0.5, angle_tolerance);
  EXPECT_TRUE(knob->_mouse_is_down);
}

TEST_F(KnobGestures, ADragAfterAPressBesideTheKnobDoesNothing) {
  knob->show(0, 1, 0, 0.25);
  press(*knob, 1, 5, 95);
  drag_to(*knob, 50, 90);
  EXPECT_EQ(knob->current_value(), 0.25);
  EXPECT_EQ(host->edited.size(), 1U);
}

TEST_F(KnobGestures, ADragFollowsTheMouseOutOfTheKnob) {
  press(*knob, 1, 50, 90);
  EXPECT_TRUE(knob->_mouse_is_down);
  drag_to(*knob, 500, 50);
  EXPECT_NEAR(knob->current_value(), 5.0 / 6, angle_tolerance);
  EXPECT_NEAR(knob->_x, 83, 1e-4);
  EXPECT_NEAR(knob->_y, 50, 1e-4);
  EXPECT_TRUE(knob->_mouse_is_down);
  EXPECT_EQ(host->edited.size(), 2U);
}

TEST_F(KnobGestures, TheReleaseEndsTheDragAndReportsNothing) {
  press(*knob, 1, 50, 90);
  lift(*knob);
  EXPECT_FALSE(knob->_mouse_is_down);
  EXPECT_EQ(host->edited.size(), 1U);
  drag_to(*knob, 90, 50);
  EXPECT_NEAR(knob->current_value(), 0.5, angle_tolerance);
  EXPECT_EQ(host->edited.size(), 1U);
}

TEST_F(KnobGestures, ADoubleClickJumpsThenRestoresTheDefault) {
  knob->set_values_minimum_maximum_default_value_scale_type(0, 1, 0.75, 0);
  double first = -1;
  host->on_edited = [&] {
    if (host->edited.size() == 1)
      first = knob->current_value();
  };
  press(*knob, 1, 50, 90);
  lift(*knob);
  press(*knob, 2, 50, 90);
  EXPECT_NEAR(first, 0.5, angle_tolerance);
  EXPECT_EQ(knob->current_value(), 0.75);
  EXPECT_EQ(host->edited.size(), 2U);
  EXPECT_FALSE(knob->_mouse_is_down);
  // 5π/4 - 0.75 × 3π/2 = π/8
  EXPECT_NEAR(knob->_x, 80.48802457287246, 1e-9);
  EXPECT_NEAR(knob->_y, 62.628553268047966, 1e-9);
}

TEST_F(KnobGestures, TheSecondPressRestoresTheDefaultBesideTheKnobToo) {
  knob->set_values_minimum_maximum_default_value_scale_type(0, 100, 25, 2);
  press(*knob, 2, 5, 95);
  EXPECT_EQ(knob->current_value(), 25.0);
}

TEST_F(KnobGestures, ADragAfterADoubleClickDoesNothing) {
  press(*knob, 1, 50, 90);
  lift(*knob);
  press(*knob, 2, 50, 90);
  drag_to(*knob, 90, 50);
  EXPECT_EQ(knob->current_value(), 0.0);
  EXPECT_EQ(host->edited.size(), 2U);
}

TEST_F(KnobGestures, ADoubleClickLeavesAHeldPressHeld) {
  press(*knob, 1, 50, 90);
  press(*knob, 2, 50, 90);
  EXPECT_TRUE(knob->_mouse_is_down);
}

TEST_F(KnobGestures, AThirdClickIsASingleOne) {
  press(*knob, 3, 50, 90);
  EXPECT_NEAR(knob->current_value(), 0.5, angle_tolerance);
  EXPECT_TRUE(knob->_mouse_is_down);
}

TEST_F(KnobGestures, AThousandUnitsOfTheWheelCrossTheRange) {
  knob->show(0, 20, 0, 10);
  turn_wheel(*knob, 0, 1);
  EXPECT_DOUBLE_EQ(knob->current_value(), 10.02);
  turn_wheel(*knob, 0, -2);
  EXPECT_DOUBLE_EQ(knob->current_value(), 9.98);
}

TEST_F(KnobGestures, TurningTheWheelSidewaysLowersAtFullWeight) {
  knob->show(0, 20, 0, 10);
  turn_wheel(*knob, 1, 0);
  EXPECT_DOUBLE_EQ(knob->current_value(), 9.98);
  turn_wheel(*knob, 3, 3);
  EXPECT_DOUBLE_EQ(knob->current_value(), 9.98);
}

TEST_F(KnobGestures, TheWheelStopsAtTheEndsAndStillReports) {
  knob->show(0, 20, 0, 20);
  turn_wheel(*knob, 0, 1);
  EXPECT_EQ(knob->current_value(), 20.0);
  EXPECT_EQ(host->edited.size(), 1U);
  turn_wheel(*knob, 0, -5000);
  EXPECT_EQ(knob->current_value(), 0.0);
  EXPECT_EQ(host->edited.size(), 2U);
  EXPECT_FALSE(knob->_mouse_is_down);
}

TEST_F(KnobGestures, TheWheelMovesThePointer) {
  knob->show(0, 1, 0, 0);
  turn_wheel(*knob, 0, 500);
  EXPECT_NEAR(knob->_x, 50, 1e-12);
  EXPECT_NEAR(knob->_y, 83, 1e-12);
}

TEST_F(KnobGestures, TheWheelIsLinearInMappedSpace) {
  knob->show(0.1, 10, 1, 1);
  turn_wheel(*knob, 0, 100);
  EXPECT_NEAR(knob->current_value(), 1.5848931924611136, 1e-12);  // 10 to the power of 100 × 2 × 0.001
}

TEST_F(KnobGestures, WorkWithoutAnyHost) {
  const auto alone = make<OpenKnob>();
  press(*alone, 1, 50, 90);
  drag_to(*alone, 90, 50);
  turn_wheel(*alone, 0, 1);
  lift(*alone);
  press(*alone, 2, 50, 50);
  EXPECT_EQ(alone->current_value(), 0.0);
}

}  // namespace
}  // namespace ondex
