// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "drawn_view.h"
#include "entry_panel.h"
#include "foundation/NSDictionary.h"
#include "quartz/CGPath.h"
#include "recording_host.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::DrawnView;
using test::edited_selector;
using test::EntryPanel;
using test::RecordingHost;

class PopUpView : public testing::Test {
 protected:
  Ref<EntryPanel> panel = make<EntryPanel>();
};

TEST_F(PopUpView, TheFieldHoldsTheValueInSinglePrecision) {
  panel->set_current_value(0.1);
  EXPECT_EQ(panel->current_value(), 0.10000000149011612);
  EXPECT_EQ(panel->field->stringValue()->view(), "0.1");
}

TEST_F(PopUpView, TheFormatterGetsTheBoundsExactly) {
  panel->set_format_minimum_maximum(20, 20000);
  EXPECT_EQ(panel->formatter->minimum(), 20.0);
  EXPECT_EQ(panel->formatter->maximum(), 20000.0);
  panel->set_format_minimum_maximum(0.1F, 0.9F);
  EXPECT_EQ(panel->formatter->minimum(), static_cast<double>(0.1F));
}

TEST_F(PopUpView, WithoutAFormatterTheBoundsAreNobodys) {
  panel->field->setFormatter(nullptr);
  panel->set_format_minimum_maximum(20, 20000);
  panel->set_current_value(50000);
  EXPECT_EQ(panel->current_value(), 50000.0);
}

TEST_F(PopUpView, WithoutAFieldItHasNoNumber) {
  const auto bare = make<KV_Ondex_Pop_Up_View>(NSMakeRect(0, 0, 10, 10));
  bare->set_current_value(5);
  bare->set_format_minimum_maximum(1, 2);
  EXPECT_EQ(bare->current_value(), 0.0);
}

TEST_F(PopUpView, FinishingTellsTheHostWithThePanelAsTheObject) {
  const auto host = make<RecordingHost>();
  panel->done_editing(nullptr);
  panel->set_callback_onObject(edited_selector, host.get());
  panel->set_callback_onObject(SEL(), host.get());
  panel->set_callback_onObject(edited_selector, nullptr);
  panel->done_editing(nullptr);
  ASSERT_EQ(host->edited.size(), 1U);
  EXPECT_EQ(host->edited.front(), panel.get());
}

TEST_F(PopUpView, FinishingAfterTheHostHasGoneDoesNothing) {
  {
    const auto host = make<RecordingHost>();
    panel->set_callback_onObject(edited_selector, host.get());
  }
  panel->done_editing(nullptr);
}

TEST_F(PopUpView, IsDarkGlassWithRoundCornersAndABlackEdge) {
  panel->field->setHidden(true);
  const DrawnView drawn(*panel, 1);
  // 0.66666 of black over nothing.
  EXPECT_NEAR(drawn.at(70, 25).alpha, 0.66666, 0.003);
  EXPECT_EQ(drawn.at(70, 25).red, 0.0);
  // Half of the line of one point lies inside the bounds: 0.5 over 0.66666.
  EXPECT_NEAR(drawn.at(70, 0).alpha, 0.5 + 0.5 * 0.66666, 0.01);
  EXPECT_NEAR(drawn.at(0, 25).alpha, 0.5 + 0.5 * 0.66666, 0.01);
  // The arc of radius 10 passes the corner at 10 - 10 / sqrt(2) = 2.93.
  EXPECT_EQ(drawn.at(1, 1).alpha, 0.0);
  EXPECT_GT(drawn.at(4, 4).alpha, 0.6);
  EXPECT_EQ(drawn.at(138, 48).alpha, 0.0);
}

class RoundedRect : public testing::Test {
 protected:
  static DrawnView drawn(float oval_width, float oval_height) {
    return {{40, 40}, 1, [=](CGContextRef context) {
              CGContextSetRGBFillColor(context, 0, 0, 0, 1);
              CGContextBeginPath(context);
              KV_Ondex_Pop_Up_View::add_rounded_rect_to_path_rect_oval_width_oval_height(
                  context, NSMakeRect(5, 5, 30, 30), oval_width, oval_height);
              CGContextDrawPath(context, kCGPathFill);
            }};
  }
};

TEST_F(RoundedRect, WithoutAnOvalItIsAPlainRectangle) {
  for (const auto& [width, height] :
       {std::pair{0.0F, 20.0F}, std::pair{20.0F, 0.0F}, std::pair{0.0F, 0.0F}}) {
    const DrawnView picture = drawn(width, height);
    EXPECT_EQ(picture.at(5, 5).alpha, 1.0);
    EXPECT_EQ(picture.at(34, 34).alpha, 1.0);
    EXPECT_EQ(picture.at(4, 20).alpha, 0.0);
  }
}

TEST_F(RoundedRect, CornersAreQuartersOfTheOval) {
  const DrawnView picture = drawn(20, 10);
  // The ellipse of radii 10 and 5 around (15, 10): ((15 - x) / 10)² + ((10 - y) / 5)² = 1.
  EXPECT_EQ(picture.at(6, 6).alpha, 0.0);
  EXPECT_EQ(picture.at(10, 7).alpha, 1.0);
  EXPECT_EQ(picture.at(15, 5).alpha, 1.0);
  EXPECT_EQ(picture.at(5, 11).alpha, 1.0);
  EXPECT_EQ(picture.at(33, 33).alpha, 0.0);
  EXPECT_EQ(picture.at(20, 20).alpha, 1.0);
}

}  // namespace
}  // namespace ondex
