// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "gestures.h"
#include "parameter_control/KV_Ondex_Parameter_Control_View.h"
#include "recording_host.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::drag_by;
using test::edited_selector;
using test::lift;
using test::press;
using test::RecordingHost;
using test::selected_selector;
using test::turn_wheel;

class ReadoutGestures : public testing::Test {
 protected:
  ReadoutGestures() {
    readout->set_callback_onObject(edited_selector, host.get());
    readout->set_selection_callback_onObject(selected_selector, host.get());
  }
  void set(double minimum, double maximum, int32_t scale_type, double value) {
    readout->set_values_minimum_maximum_default_value_scale_type(minimum, maximum, minimum, scale_type);
    readout->set_current_value(value);
  }

  Ref<RecordingHost> host = make<RecordingHost>();
  Ref<KV_Ondex_Parameter_Control_View> readout =
      make<KV_Ondex_Parameter_Control_View>(NSMakeRect(0, 0, 132, 36));
};

TEST_F(ReadoutGestures, TwoHundredPointsOfUpwardDragCrossTheSpan) {
  set(0, 1, 0, 0.5);
  drag_by(*readout, 0, -10);
  EXPECT_DOUBLE_EQ(readout->current_value(), 0.55);
  set(0, 1, 0, 0.5);
  drag_by(*readout, 0, 10);
  EXPECT_DOUBLE_EQ(readout->current_value(), 0.45);
}

TEST_F(ReadoutGestures, DraggingToTheRightRaisesAtATenthOfTheRate) {
  set(0, 1, 0, 0.5);
  drag_by(*readout, 10, 0);
  EXPECT_DOUBLE_EQ(readout->current_value(), 0.505);
}

TEST_F(ReadoutGestures, ALogarithmicStepIsARatio) {
  set(20, 20000, 1, 1000);
  drag_by(*readout, 0, -1);
  EXPECT_NEAR(readout->current_value(), 1035.1421666793441, 1e-9);
  set(20, 20000, 1, 100);
  drag_by(*readout, 0, -1);
  EXPECT_NEAR(readout->current_value(), 103.51421666793441, 1e-10);
}

TEST_F(ReadoutGestures, FiveHundredUnitsOfTheWheelCrossTheSpan) {
  set(0, 20, 0, 10);
  turn_wheel(*readout, 0, 1);
  EXPECT_DOUBLE_EQ(readout->current_value(), 10.04);
  turn_wheel(*readout, 0, -2);
  EXPECT_DOUBLE_EQ(readout->current_value(), 9.96);
}

TEST_F(ReadoutGestures, TurningTheWheelSidewaysLowersAtATenthOfTheRate) {
  set(0, 20, 0, 10);
  turn_wheel(*readout, 1, 0);
  EXPECT_DOUBLE_EQ(readout->current_value(), 9.996);
}

TEST_F(ReadoutGestures, ASquareRootStepIsLinearInTheRoot) {
  set(0, 4, 2, 1);
  turn_wheel(*readout, 0, 1);
  EXPECT_DOUBLE_EQ(readout->current_value(), 1.008016);
}

TEST_F(ReadoutGestures, ARootBelowZeroSquaresBackToAPositiveValue) {
  set(0, 4, 2, 0);
  // The root goes to 2 × 0.005 × -10 = -0.1.
  drag_by(*readout, 0, 10);
  EXPECT_NEAR(readout->current_value(), 0.01, 1e-15);
}

TEST_F(ReadoutGestures, UnknownScaleTypesMoveLinearly) {
  set(0, 1, 7, 0.5);
  drag_by(*readout, 0, -10);
  EXPECT_DOUBLE_EQ(readout->current_value(), 0.55);
}

TEST_F(ReadoutGestures, PastABoundStaysThereAndComesBackAtOnce) {
  set(0, 1, 0, 0.99);
  drag_by(*readout, 0, -50);
  EXPECT_EQ(readout->current_value(), 1.0);
  EXPECT_EQ(host->edited.size(), 1U);
  drag_by(*readout, 0, 2);
  EXPECT_DOUBLE_EQ(readout->current_value(), 0.99);
  EXPECT_EQ(host->edited.size(), 2U);
}

TEST_F(ReadoutGestures, ModifierKeysChangeNothing) {
  for (const uint32_t key : {NSShiftKeyMask, NSControlKeyMask, NSAlternateKeyMask, NSCommandKeyMask}) {
    set(0, 1, 0, 0.5);
    drag_by(*readout, 0, -10, key);
    EXPECT_DOUBLE_EQ(readout->current_value(), 0.55);
    turn_wheel(*readout, 0, 5, key);
    EXPECT_DOUBLE_EQ(readout->current_value(), 0.56);
  }
}

TEST_F(ReadoutGestures, EveryStepReportsOnceAfterTheValueIsStored) {
  set(0, 1, 0, 0.5);
  double reported = -1;
  host->on_edited = [&] { reported = readout->current_value(); };
  drag_by(*readout, 0, -10);
  EXPECT_DOUBLE_EQ(reported, 0.55);
  ASSERT_EQ(host->edited.size(), 1U);
  EXPECT_EQ(host->edited.front(), readout.get());
  turn_wheel(*readout, 0, 5);
  EXPECT_DOUBLE_EQ(reported, 0.56);
  EXPECT_EQ(host->edited.size(), 2U);
  EXPECT_TRUE(host->selected.empty());
}

TEST_F(ReadoutGestures, AStepThatChangesNothingIsReportedAllTheSame) {
  set(0, 1, 0, 1);
  drag_by(*readout, 0, -10);
  turn_wheel(*readout, 0, 3);
  drag_by(*readout, 0, 0);
  turn_wheel(*readout, 0, 0);
  EXPECT_EQ(readout->current_value(), 1.0);
  EXPECT_EQ(host->edited.size(), 4U);
}

TEST_F(ReadoutGestures, AnEmptyRangeStaysPutAndReports) {
  set(3, 3, 0, 3);
  drag_by(*readout, 0, -10);
  turn_wheel(*readout, 0, 10);
  EXPECT_EQ(readout->current_value(), 3.0);
  EXPECT_EQ(host->edited.size(), 2U);
}

TEST_F(ReadoutGestures, ARangeUnfitForItsScaleTypeEndsAtTheMinimum) {
  set(-1, 1, 1, 0.5);
  drag_by(*readout, 0, -1);
  EXPECT_EQ(readout->current_value(), -1.0);
  set(-4, 4, 2, 1);
  turn_wheel(*readout, 0, 1);
  EXPECT_EQ(readout->current_value(), -4.0);
}

TEST_F(ReadoutGestures, WheelAndDragNeitherSelectNorNeedSelection) {
  drag_by(*readout, 0, -10);
  turn_wheel(*readout, 0, 1);
  EXPECT_FALSE(readout->is_selected());
  EXPECT_TRUE(host->selected.empty());
  EXPECT_GT(readout->current_value(), 0.0);
}

TEST_F(ReadoutGestures, AClickSelectsOnce) {
  bool selected_when_told = false;
  host->on_selected = [&] { selected_when_told = readout->is_selected(); };
  press(*readout, 1);
  EXPECT_TRUE(readout->is_selected());
  EXPECT_TRUE(selected_when_told);
  ASSERT_EQ(host->selected.size(), 1U);
  EXPECT_EQ(host->selected.front(), readout.get());
  lift(*readout);
  press(*readout, 1);
  lift(*readout);
  EXPECT_TRUE(readout->is_selected());
  EXPECT_EQ(host->selected.size(), 1U);
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(ReadoutGestures, ATripleClickActsAsASingleOne) {
  press(*readout, 3);
  EXPECT_TRUE(readout->is_selected());
  EXPECT_EQ(host->selected.size(), 1U);
  press(*readout, 3);
  EXPECT_EQ(host->selected.size(), 1U);
}

TEST_F(ReadoutGestures, ADoubleClickWithoutAPanelOnlySelects) {
  press(*readout, 1);
  lift(*readout);
  press(*readout, 2);
  lift(*readout);
  EXPECT_TRUE(readout->is_selected());
  EXPECT_EQ(host->selected.size(), 1U);
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(ReadoutGestures, TheSecondPressAloneSelectsNothing) {
  press(*readout, 2);
  EXPECT_FALSE(readout->is_selected());
  EXPECT_TRUE(host->selected.empty());
}

TEST_F(ReadoutGestures, AReadoutThatTheHostDeselectedIsSelectedAgainByAClick) {
  press(*readout, 1);
  readout->set_selected(false);
  press(*readout, 1);
  EXPECT_TRUE(readout->is_selected());
  EXPECT_EQ(host->selected.size(), 2U);
}

TEST_F(ReadoutGestures, ANullHalfLeavesTheEarlierCallbackInPlace) {
  const auto other = make<RecordingHost>();
  readout->set_callback_onObject(edited_selector, nullptr);
  readout->set_callback_onObject(SEL(), other.get());
  readout->set_selection_callback_onObject(selected_selector, nullptr);
  readout->set_selection_callback_onObject(SEL(), other.get());
  press(*readout, 1);
  drag_by(*readout, 0, -1);
  EXPECT_EQ(host->selected.size(), 1U);
  EXPECT_EQ(host->edited.size(), 1U);
  EXPECT_EQ(other->retainCount(), 1U);
}

TEST_F(ReadoutGestures, WorkWithoutAnyHost) {
  const auto alone = make<KV_Ondex_Parameter_Control_View>(NSMakeRect(0, 0, 132, 36));
  press(*alone, 1);
  drag_by(*alone, 0, -10);
  turn_wheel(*alone, 0, 25);
  lift(*alone);
  EXPECT_TRUE(alone->is_selected());
  EXPECT_DOUBLE_EQ(alone->current_value(), 0.1);
}

}  // namespace
}  // namespace ondex
