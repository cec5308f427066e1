// SPDX-License-Identifier: MIT
#include "drawing/capsule.h"

#include <gtest/gtest.h>

#include "capsule_colors.h"
#include "drawing/KV_Ondex_Button_View.h"
#include "shading_faults.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::body;
using test::cap;
using test::distance;
using test::DrawnView;
using test::Pixel;
using test::premultiplied;
using test::shine;

constexpr double width = 60;
constexpr double height = 20;
constexpr NSRect capsule_frame = {{7, 3}, {60, 20}};

void expect_pixel(const Pixel& actual, const Pixel& expected) {
  EXPECT_LE(distance(actual, expected), 1.5) << actual << " is not " << expected;
}

/// A capsule without letters: nothing hides its colours.
template <typename View>
Ref<View> blank(NSRect rect = capsule_frame) {
  auto view = make<View>(rect);
  view->set_description(make<NSString>("").get());
  return view;
}

TEST(Capsule, CapsAreFivePointsWideAndTheMiddleLiesBetween) {
  constexpr NSRect bounds = {{0, 0}, {60, 20}};
  EXPECT_EQ(left_cap_rect(bounds), NSMakeRect(0, 0, 5, 20));
  EXPECT_EQ(right_cap_rect(bounds), NSMakeRect(55, 0, 5, 20));
  EXPECT_EQ(middle_rect(bounds), NSMakeRect(5, 0, 50, 20));
  EXPECT_EQ(middle_rect(bounds, 15), NSMakeRect(15, 0, 30, 20));
}

class CapsuleColors : public testing::TestWithParam<double> {};

template <typename View>
void expect_capsule(double scale, double strength) {
  const auto view = blank<View>();
  const DrawnView drawn(*view, scale);
  for (const double y : {0.1, 4.4, 6.6, 7.4, 10.0, 12.6, 13.4, 19.9}) {
    const double cy = drawn.centre(y);
    for (const double x : {5.8, 30.0, 54.2})
      expect_pixel(drawn.at(x, y), body(cy, height, strength));
  }
  // Half way up the ellipses are as wide as the caps.
  const double cy = drawn.centre(10);
  for (const double inwards : {0.6, 2.2, 4.9}) {
    const double from_left = drawn.centre(5 - inwards);
    const double from_right = drawn.centre(55 + inwards);
    if (from_left > 1)
      expect_pixel(drawn.at(from_left, 10), cap((5 - from_left) / 5, cy, height, strength));
    if (from_right < width - 1)
      expect_pixel(drawn.at(from_right, 10), cap((from_right - 55) / 5, cy, height, strength));
  }
}

TEST_P(CapsuleColors, OfALabelFollowTheFormulas) {
  expect_capsule<KV_Ondex_Label_View>(GetParam(), 1);
}

TEST_P(CapsuleColors, OfAButtonAreTheSameUnderAThinnerBand) {
  expect_capsule<KV_Ondex_Button_View>(GetParam(), 0.99);
}

INSTANTIATE_TEST_SUITE_P(Scales, CapsuleColors, testing::Values(1.0, 2.0, 1.5));

TEST(Capsule, TheGlassCoversTheCornersOfTheCapsWhereNothingLiesBeneath) {
  const DrawnView drawn(*blank<KV_Ondex_Label_View>(NSMakeRect(0, 0, 40, 60)), 10);
  // At t = 0.37 the ellipse starts 0.172 points from the left.
  const Pixel corner = premultiplied(shine(drawn.centre(22.2), 60));
  EXPECT_GT(corner.alpha, 0.1);
  expect_pixel(drawn.at(0.05, 22.2), corner);
  expect_pixel(drawn.at(39.95, 22.2), corner);
  EXPECT_EQ(drawn.at(0.05, 0.05), Pixel{});
  EXPECT_EQ(drawn.at(39.95, 59.95), Pixel{});
}

TEST(Capsule, CapsAreHalfEllipsesAsTallAsTheView) {
  const DrawnView drawn(*blank<KV_Ondex_Label_View>(NSMakeRect(0, 0, 40, 60)), 4);
  // 0.866 of the height is where an ellipse is half as wide: 2.5 of 5 points.
  const double y = 30 + 30 * 0.8660254;
  EXPECT_GT(drawn.at(2.9, y).alpha, 0.99);
  EXPECT_LT(drawn.at(2.1, y).alpha, 0.01);
  EXPECT_GT(drawn.at(37.1, y).alpha, 0.99);
  EXPECT_LT(drawn.at(37.9, y).alpha, 0.01);
}

TEST(Capsule, ANarrowCapsuleHasNoBodyButCapsAndGlass) {
  for (const CGFloat narrow : {CGFloat(10), CGFloat(8)}) {
    const DrawnView drawn(*blank<KV_Ondex_Label_View>(NSMakeRect(0, 0, narrow, 20)), 1);
    // The caps start out black, and the left one, drawn last, lies on top.
    expect_pixel(drawn.at(4, 10), cap((5 - 4.5) / 5, 10.5, 20));
    EXPECT_GT(drawn.at(1, 10).alpha, 0.99);
    EXPECT_LT(drawn.at(0, 0).alpha, 0.5);
  }
  const auto unlit = make<KV_Ondex_Label_View>(NSMakeRect(0, 0, 8, 20));
  const DrawnView body_only(NSMakeSize(8, 20), 1,
                            [&](CGContextRef context) { unlit->do_body_panel(context); });
  for (int x = 0; x < 8; ++x)
    EXPECT_EQ(body_only.at(x, 10), Pixel{});
}

TEST(Capsule, AResizedCapsuleKeepsDrawingWhereItWasMade) {
  const auto view = blank<KV_Ondex_Label_View>();
  view->setFrameSize(NSMakeSize(100, 30));
  const DrawnView drawn(*view, 1);
  expect_pixel(drawn.at(54, 10), body(10.5, height));
  EXPECT_EQ(drawn.at(61, 10), Pixel{});
  EXPECT_EQ(drawn.at(30, 21), Pixel{});
}

// What fails is left out, and the rest is drawn.

enum Element { body_panel = 1, right_cap, left_cap, glass };

void expect_without(const DrawnView& drawn, Element missing) {
  const Pixel above = premultiplied(shine(10.5, height));
  expect_pixel(drawn.at(30, 10), missing == glass        ? test::grey(0.1 * test::tri(10.5 / height))
                                 : missing == body_panel ? above
                                                         : body(10.5, height));
  EXPECT_EQ(drawn.at(57, 3).alpha > 0.5, missing != right_cap);
  EXPECT_EQ(drawn.at(2, 3).alpha > 0.5, missing != left_cap);
  if (missing == left_cap)
    expect_pixel(drawn.at(2, 10), above);
}

TEST(CapsuleFailures, AnElementWithoutAFunctionIsLeftOut) {
  const auto view = blank<KV_Ondex_Label_View>();
  for (const Element missing : {body_panel, right_cap, left_cap, glass}) {
    const test::LoggedLines log;
    const test::FailingRecord failure(missing);
    expect_without(DrawnView(*view, 1), missing);
    EXPECT_EQ(log.lines, std::vector<std::string>{test::no_function});
  }
}

TEST(CapsuleFailures, AnElementWithoutAShadingIsLeftOut) {
  const auto view = blank<KV_Ondex_Label_View>();
  for (const Element missing : {body_panel, right_cap, left_cap, glass}) {
    const test::LoggedLines log;
    const test::FailingShading failure(missing);
    expect_without(DrawnView(*view, 1), missing);
    EXPECT_EQ(log.lines, std::vector<std::string>{test::no_shading});
  }
}

}  // namespace
}  // namespace ondex
