// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "drawing/KV_Ondex_Panel_View.h"
#include "drawn_view.h"
#include "shading_faults.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::DrawnView;
using test::Pixel;

Ref<KV_Ondex_Panel_View> panel(CGFloat width, CGFloat height) {
  return make<KV_Ondex_Panel_View>(NSMakeRect(7, 9, width, height));
}

/// Within 1/255 of the blue (0.21, 0.51, 0.82) at the strength k, opaque.
void expect_blue(const Pixel& p, double k) {
  EXPECT_LE(test::distance(p, {0.21 * k, 0.51 * k, 0.82 * k, 1}), 1.01) << p << " is not of strength " << k;
}

// A pixel's centre lies half a point in: over a width of 200 the field's t at x is (x + 0.5) / 200, and a
// rim's (x + 0.5) / 20.

TEST(Panel, IsBrightestAlongTheMiddleAndTheSameFromTopToBottom) {
  const DrawnView drawn(*panel(200, 30), 1);
  expect_blue(drawn.at(100, 15), 0.9975);  // t = 0.5025: (1 - 0.005 + 1) / 2
  expect_blue(drawn.at(100, 0), 0.9975);
  expect_blue(drawn.at(100, 29), 0.9975);
  expect_blue(drawn.at(60, 15), 0.8025);   // t = 0.3025: (0.605 + 1) / 2
  expect_blue(drawn.at(139, 15), 0.8025);  // the same from the right
}

TEST(Panel, HasARaisedRimOfTwentyPointsAtEitherSide) {
  const DrawnView drawn(*panel(200, 30), 1);
  // k = 0.75 (1 - |cos(pi t)|) + 0.25
  expect_blue(drawn.at(0, 10), 0.252312);
  expect_blue(drawn.at(9, 10), 0.941156);
  expect_blue(drawn.at(10, 10), 0.941156);
  expect_blue(drawn.at(19, 10), 0.252312);
  expect_blue(drawn.at(20, 10), 0.6025);  // the field again
  expect_blue(drawn.at(179, 10), 0.6025);
  expect_blue(drawn.at(180, 10), 0.252312);
  expect_blue(drawn.at(190, 10), 0.941156);
  expect_blue(drawn.at(199, 10), 0.252312);
}

TEST(Panel, LooksTheSameAtTwiceTheScale) {
  const DrawnView drawn(*panel(200, 30), 2);
  // 10.25 points in: t = 0.5125, |cos(pi t)| = 0.039260.
  expect_blue(drawn.at(10, 10), 0.75 * (1 - 0.039260) + 0.25);
  expect_blue(drawn.at(100, 10), 0.99875);
}

TEST(Panel, NarrowerThanTwoRimsHasTheRightOneOnTop) {
  const DrawnView drawn(*panel(30, 10), 1);
  // At 15.5 the left rim would have t = 0.775; the right one, which starts at 10, has t = 0.275,
  // |cos(pi t)| = 0.649448.
  expect_blue(drawn.at(10, 5), 0.252312);
  expect_blue(drawn.at(15, 5), 0.75 * (1 - 0.649448) + 0.25);
  expect_blue(drawn.at(29, 5), 0.252312);
  // Left of it, the left one: t = 0.275.
  expect_blue(drawn.at(5, 5), 0.75 * (1 - 0.649448) + 0.25);
}

TEST(Panel, NarrowerThanOneRimShowsTheRightPartOfTheRightOne) {
  const DrawnView drawn(*panel(10, 10), 1);
  // The right rim starts at -10: at 0.5 its t is 0.525, |cos(pi t)| = 0.078459.
  expect_blue(drawn.at(0, 5), 0.75 * (1 - 0.078459) + 0.25);
  expect_blue(drawn.at(9, 5), 0.252312);
}

TEST(Panel, PaintsTheAreaThatItIsGivenWhateverRectangleIsAskedFor) {
  const DrawnView asked(NSMakeSize(200, 30), 1,
                        [](CGContextRef) { panel(200, 30)->drawRect(NSMakeRect(3, 3, 1, 1)); });
  EXPECT_EQ(asked, DrawnView(*panel(200, 30), 1));
  const DrawnView shifted(NSMakeSize(200, 30), 1, [](CGContextRef context) {
    panel(9, 9)->do_2d_bg_area(context, NSMakeRect(50, 10, 100, 5));
  });
  EXPECT_EQ(shifted.at(49, 12), Pixel{});
  expect_blue(shifted.at(50, 12), 0.252312);
  expect_blue(shifted.at(100, 12), 0.995);  // t = 0.505
  // Nothing extends the shadings sideways, nothing bounds them vertically.
  EXPECT_EQ(shifted.at(100, 29), shifted.at(100, 12));
  EXPECT_EQ(shifted.at(150, 12), Pixel{});
}

TEST(Panel, LeavesTheContextAsItWas) {
  const DrawnView drawn(NSMakeSize(60, 10), 1, [](CGContextRef context) {
    panel(60, 10)->drawRect({});
    EXPECT_EQ(CGContextGetClipBoundingBox(context), NSMakeRect(0, 0, 60, 10));
    EXPECT_EQ(CGContextGetCTM(context), CGAffineTransformIdentity);
  });
}

TEST(Panel, LetsTheWindowBeDraggedByItsBackground) {
  EXPECT_TRUE(panel(60, 60)->mouseDownCanMoveWindow());
}

TEST(Panel, KeepsItsColorSpaces) {
  const auto one = panel(60, 60);
  const auto other = panel(60, 60);
  EXPECT_EQ(one->get_RGB_color_space(), other->get_RGB_color_space());
  EXPECT_EQ(one->get_grey_color_space(), other->get_grey_color_space());
  EXPECT_EQ(one->get_CMYK_color_space(), other->get_CMYK_color_space());
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(one->get_RGB_color_space()), 3U);
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(one->get_grey_color_space()), 1U);
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(one->get_CMYK_color_space()), 4U);
}

TEST(Panel, IsMadeByItsClass) {
  const Ref<NSObject> made = KV_Ondex_Panel_View::class_.initWithFrame(NSMakeRect(0, 0, 80, 60));
  EXPECT_EQ(&made->isa(), &KV_Ondex_Panel_View::class_);
  EXPECT_TRUE(made->isKindOfClass(NSView::class_));
  EXPECT_EQ(made->isa().name, "KV_Ondex_Panel_View");
}

// Failures: what was drawn before stays, nothing after it is drawn. The field's strength 4.5 points in is
// (2 * 0.045 + 1) / 2, and 4.5 points from the right the same.

constexpr double field_near_the_side = 0.545;

TEST(PanelFailures, WithoutAFieldThereIsNothing) {
  for (const bool record : {true, false}) {
    const test::LoggedLines log;
    const DrawnView drawn(NSMakeSize(100, 10), 1, [record](CGContextRef) {
      const test::FailingRecord no_record(record ? 1 : -1);
      const test::FailingShading no_shading(record ? -1 : 1);
      panel(100, 10)->drawRect({});
    });
    EXPECT_EQ(log.lines, std::vector<std::string>{record ? test::no_function : test::no_shading});
    EXPECT_EQ(drawn.at(4, 5), Pixel{});
    EXPECT_EQ(drawn.at(50, 5), Pixel{});
  }
}

TEST(PanelFailures, WithoutALeftRimTheFieldStays) {
  for (const bool record : {true, false}) {
    const test::LoggedLines log;
    const DrawnView drawn(NSMakeSize(100, 10), 1, [record](CGContextRef) {
      const test::FailingRecord no_record(record ? 2 : -1);
      const test::FailingShading no_shading(record ? -1 : 2);
      panel(100, 10)->drawRect({});
    });
    EXPECT_EQ(log.lines, std::vector<std::string>{record ? test::no_function : test::no_shading});
    expect_blue(drawn.at(4, 5), field_near_the_side);
    expect_blue(drawn.at(95, 5), field_near_the_side);
  }
}

TEST(PanelFailures, WithoutARightRimFieldAndLeftRimStay) {
  const test::LoggedLines log;
  const DrawnView drawn(NSMakeSize(100, 10), 1, [](CGContextRef) {
    const test::FailingShading failure(3);
    panel(100, 10)->drawRect({});
  });
  EXPECT_EQ(log.lines, std::vector<std::string>{test::no_shading});
  // t = 0.225: |cos(pi t)| = 0.760406.
  expect_blue(drawn.at(4, 5), 0.75 * (1 - 0.760406) + 0.25);
  expect_blue(drawn.at(95, 5), field_near_the_side);
}

TEST(PanelFailures, BothRimsShareOneFunction) {
  const test::LoggedLines log;
  const DrawnView drawn(NSMakeSize(100, 10), 1, [](CGContextRef) {
    const test::FailingRecord third(3);
    panel(100, 10)->drawRect({});
  });
  EXPECT_TRUE(log.lines.empty());
}

}  // namespace
}  // namespace ondex
