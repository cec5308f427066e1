// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "open_knob.h"
#include "recording_host.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::edited_selector;
using test::OpenKnob;
using test::RecordingHost;

TEST(Knob, AFreshOneIsALinearUnitRangePointingToTheLowerLeft) {
  const auto knob = make<OpenKnob>();
  EXPECT_EQ(knob->current_value(), 0.0);
  EXPECT_EQ(knob->scale_type(), 0);
  EXPECT_EQ(knob->_maximum_value, 1.0);
  EXPECT_DOUBLE_EQ(knob->_theta_min, 3.9269908169872414);
  EXPECT_DOUBLE_EQ(knob->_theta_max, -0.7853981633974483);
  EXPECT_DOUBLE_EQ(knob->_scale, -4.71238898038469);
  EXPECT_DOUBLE_EQ(knob->_rotation_scale, 0.001);
  EXPECT_NEAR(knob->_x, 26.66547622084393, 1e-12);
  EXPECT_NEAR(knob->_y, 26.66547622084393, 1e-12);
  EXPECT_FALSE(knob->_mouse_is_down);
}

TEST(Knob, LiesFivePointsInsideItsBounds) {
  const auto knob = make<OpenKnob>(NSMakeRect(200, 100, 100, 80));
  EXPECT_EQ(knob->_control_rect, NSMakeRect(0, 0, 100, 80));
  EXPECT_EQ(knob->_knob_rect, NSMakeRect(5, 5, 90, 70));
  EXPECT_EQ(knob->_origin, NSMakePoint(50, 40));
  EXPECT_EQ(knob->_radius, 33.0);
}

TEST(Knob, TakesPressesInTheEllipseOfItsWholeBounds) {
  const auto knob = make<OpenKnob>();
  const auto hit = [&](CGFloat x, CGFloat y) {
    return CGPathContainsPoint(knob->_knob_hit_path.get(), nullptr, {x, y}, false);
  };
  EXPECT_TRUE(hit(50, 50));
  EXPECT_TRUE(hit(CGFloat(99.5), 50));
  EXPECT_TRUE(hit(50, CGFloat(0.5)));
  EXPECT_FALSE(hit(10, 10));
  EXPECT_FALSE(hit(101, 50));
}

TEST(Knob, IsMadeFromItsClassWithAFrame) {
  const Ref<NSObject> object = KV_Ondex_Big_Knob_View::class_.initWithFrame(NSMakeRect(1, 2, 90, 90));
  const auto* knob = dynamic_cast<KV_Ondex_Big_Knob_View*>(object.get());
  ASSERT_TRUE(knob);
  EXPECT_EQ(knob->frame(), NSMakeRect(1, 2, 90, 90));
}

TEST(Knob, TheMiddleOfALinearRangeStandsStraightUp) {
  const auto knob = make<OpenKnob>();
  knob->show(0, 1, 0, 0.5);
  EXPECT_NEAR(knob->_x, 50, 1e-12);
  EXPECT_NEAR(knob->_y, 83, 1e-12);
}

TEST(Knob, TheMaximumPointsToTheLowerRight) {
  const auto knob = make<OpenKnob>();
  knob->show(-3, 7, 0, 7);
  EXPECT_NEAR(knob->_x, 73.33452377915607, 1e-12);
  EXPECT_NEAR(knob->_y, 26.66547622084393, 1e-12);
}

TEST(Knob, AQuarterOfASquareRootRangeStandsStraightUp) {
  const auto knob = make<OpenKnob>();
  knob->show(0, 20, 2, 5);
  EXPECT_DOUBLE_EQ(knob->_value, 2.23606797749979);
  EXPECT_DOUBLE_EQ(knob->current_value(), 5.0);
  EXPECT_NEAR(knob->_x, 50, 1e-12);
  EXPECT_NEAR(knob->_y, 83, 1e-12);
}

TEST(Knob, TheGeometricMeanOfALogarithmicRangeStandsStraightUp) {
  const auto knob = make<OpenKnob>();
  knob->show(0.1, 10, 1, 1);
  EXPECT_EQ(knob->_value, 0.0);
  EXPECT_EQ(knob->current_value(), 1.0);
  EXPECT_NEAR(knob->_x, 50, 1e-12);
  EXPECT_NEAR(knob->_y, 83, 1e-12);
}

TEST(Knob, OtherScaleTypesAreKeptAndActLinearly) {
  const auto knob = make<OpenKnob>();
  knob->show(0, 4, 7, 1);
  EXPECT_EQ(knob->scale_type(), 7);
  EXPECT_EQ(knob->_value, 1.0);
  EXPECT_EQ(knob->current_value(), 1.0);
}

TEST(Knob, BringsValuesInsideTheRange) {
  const auto knob = make<OpenKnob>();
  knob->show(-2, 3, 0, 9);
  EXPECT_EQ(knob->current_value(), 3.0);
  knob->set_current_value(-9);
  EXPECT_EQ(knob->current_value(), -2.0);
  knob->set_current_value(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(knob->current_value(), -2.0);
}

TEST(Knob, AMaximumBelowTheMinimumCollapsesTheRangeOntoTheMaximum) {
  const auto knob = make<OpenKnob>();
  knob->set_values_minimum_maximum_default_value_scale_type(5, 2, 9, 0);
  EXPECT_EQ(knob->_minimum_value, 2.0);
  EXPECT_EQ(knob->_maximum_value, 2.0);
  EXPECT_EQ(knob->_default_value, 2.0);
  EXPECT_EQ(knob->current_value(), 2.0);
}

TEST(Knob, AnEmptyRangeFollowsIeeeArithmetic) {
  const auto knob = make<OpenKnob>();
  knob->show(2, 2, 0, 2);
  EXPECT_TRUE(std::isinf(knob->_scale));
  EXPECT_EQ(knob->_rotation_scale, 0.0);
  EXPECT_EQ(knob->current_value(), 2.0);
}

TEST(Knob, RangeAndDefaultAreKeptMapped) {
  const auto knob = make<OpenKnob>();
  knob->set_values_minimum_maximum_default_value_scale_type(0.1, 1000, 10, 1);
  EXPECT_DOUBLE_EQ(knob->_minimum_value, -1.0);
  EXPECT_DOUBLE_EQ(knob->_maximum_value, 3.0);
  EXPECT_DOUBLE_EQ(knob->_default_value, 1.0);
  EXPECT_DOUBLE_EQ(knob->_scale, -1.1780972450961724);
  EXPECT_DOUBLE_EQ(knob->_rotation_scale, 0.004);
}

TEST(Knob, TheDefaultIsBroughtInsideInPlainValues) {
  const auto knob = make<OpenKnob>();
  knob->set_values_minimum_maximum_default_value_scale_type(1, 16, 25, 2);
  EXPECT_EQ(knob->_default_value, 4.0);
  knob->set_values_minimum_maximum_default_value_scale_type(1, 16, -1, 2);
  EXPECT_EQ(knob->_default_value, 1.0);
}

TEST(Knob, AValueGoesFromOneScaleToAnotherThroughItsPlainValue) {
  const auto knob = make<OpenKnob>();
  knob->show(0, 100, 2, 16);
  knob->set_values_minimum_maximum_default_value_scale_type(1, 100, 1, 1);
  EXPECT_DOUBLE_EQ(knob->_value, 1.2041199826559248);
  knob->set_values_minimum_maximum_default_value_scale_type(1, 100, 1, 0);
  EXPECT_NEAR(knob->_value, 16.0, 1e-12);
}

TEST(Knob, UnderTheSameScaleTheOldValueIsMappedOnceMore) {
  const auto knob = make<OpenKnob>();
  knob->show(0, 100, 2, 16);
  knob->set_values_minimum_maximum_default_value_scale_type(0, 100, 0, 2);
  EXPECT_DOUBLE_EQ(knob->_value, 2.0);
  knob->show(0, 100, 0, 16);
  knob->set_values_minimum_maximum_default_value_scale_type(0, 100, 0, 0);
  EXPECT_DOUBLE_EQ(knob->_value, 16.0);
}

TEST(Knob, ANewRangeLeavesThePointerUntilTheNextValue) {
  const auto knob = make<OpenKnob>();
  knob->show(0, 1, 0, 0.5);
  knob->set_values_minimum_maximum_default_value_scale_type(0, 10, 0, 0);
  EXPECT_NEAR(knob->_x, 50, 1e-12);
  EXPECT_NEAR(knob->_y, 83, 1e-12);
  knob->set_current_value(10);
  EXPECT_NEAR(knob->_x, 73.33452377915607, 1e-12);
}

TEST(Knob, SettersSendNothing) {
  const auto knob = make<OpenKnob>();
  const auto host = make<RecordingHost>();
  knob->set_callback_onObject(edited_selector, host.get());
  knob->show(0, 10, 2, 4);
  knob->awakeFromNib();
  knob->update_knob_location();
  EXPECT_TRUE(host->edited.empty());
}

TEST(Knob, RetainsItsHostAndLetsGoOfIt) {
  const auto host = make<RecordingHost>();
  const auto other = make<RecordingHost>();
  {
    const auto knob = make<OpenKnob>();
    knob->set_callback_onObject(edited_selector, host.get());
    EXPECT_EQ(host->retainCount(), 2U);
    knob->set_callback_onObject(edited_selector, other.get());
    EXPECT_EQ(host->retainCount(), 1U);
    knob->set_callback_onObject(edited_selector, nullptr);
    knob->set_callback_onObject(SEL(), host.get());
    EXPECT_EQ(host->retainCount(), 1U);
    EXPECT_EQ(other->retainCount(), 2U);
  }
  EXPECT_EQ(other->retainCount(), 1U);
}

TEST(Knob, NeverLetsADragMoveTheWindow) {
  EXPECT_FALSE(make<OpenKnob>()->mouseDownCanMoveWindow());
}

}  // namespace
}  // namespace ondex
