// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "drawing/KV_Ondex_Box.h"
#include "drawn_view.h"
#include "shading_faults.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::DrawnView;
using test::Pixel;

constexpr double box_width = 80;
constexpr double box_height = 60;

/// Its border runs along its bounds. The outline's middle lies 4.5 points inside, 1.5 points wide; its shadow
/// is the same shape 0.75 points to the left and 1.5 points lower, blurred by 1.5 points.
Ref<KV_Ondex_Box> untitled(CGFloat w = 80, CGFloat h = 60) {
  auto box = make<KV_Ondex_Box>(NSMakeRect(0, 0, w, h));
  box->setTitlePosition(NSNoTitle);
  return box;
}

/// A quarter black over white of some coverage: whatever alpha is more than a quarter is white.
void expect_outline(const Pixel& p) {
  EXPECT_GE(p.alpha, 0.245);
  EXPECT_NEAR(p.red, p.alpha - 0.25, 0.009);
  EXPECT_EQ(p.red, p.green);
  EXPECT_EQ(p.red, p.blue);
}

void expect_shadow(const Pixel& p) {
  EXPECT_GT(p.alpha, 0.02);
  EXPECT_NEAR(p.red, p.alpha, 0.005);
  EXPECT_EQ(p.red, p.green);
  EXPECT_EQ(p.red, p.blue);
}

class BoxDrawing : public testing::TestWithParam<double> {};

TEST_P(BoxDrawing, IsATranslucentBlackOutlineWithinTheBorder) {
  const DrawnView drawn(*untitled(), GetParam());
  expect_outline(drawn.at(4.2, 30));
  expect_outline(drawn.at(box_width - 4.6, 30));
  expect_outline(drawn.at(40, 4.2));
  expect_outline(drawn.at(40, box_height - 4.6));
}

TEST_P(BoxDrawing, CastsAFaintWhiteShadowDownAndToTheLeft) {
  const DrawnView drawn(*untitled(), GetParam());
  expect_shadow(drawn.at(2.7, 30));
  expect_shadow(drawn.at(40, 2.2));
  expect_shadow(drawn.at(40, box_height - 6.8));
  // The soft edge is rounded up: a pixel that it barely touches has one step of alpha.
  constexpr double one_step = 1.5 / 255;
  EXPECT_LE(drawn.at(7.5, 30).alpha, one_step) << "right of the left side";
  EXPECT_LE(drawn.at(box_width - 1.6, 30).alpha, one_step) << "right of the right side";
  EXPECT_LE(drawn.at(40, box_height - 1.6).alpha, one_step) << "above the top side";
}

TEST_P(BoxDrawing, DrawsNothingInside) {
  const DrawnView drawn(*untitled(), GetParam());
  EXPECT_EQ(drawn.at(40, 30), Pixel{});
  EXPECT_EQ(drawn.at(12, 12), Pixel{});
}

TEST_P(BoxDrawing, HasCornersOfTenPoints) {
  const DrawnView drawn(*untitled(), GetParam());
  // The middle of a corner lies 10 - 10 / sqrt(2) = 2.929 points inside the sides.
  EXPECT_GE(drawn.at(box_width - 7.43, box_height - 7.43).alpha, 0.2);
  EXPECT_GE(drawn.at(7.43, 7.43).alpha, 0.2);
  EXPECT_EQ(drawn.at(box_width - 4.5, box_height - 4.5), Pixel{});
  EXPECT_EQ(drawn.at(4.5, box_height - 4.5), Pixel{});
}

INSTANTIATE_TEST_SUITE_P(Scales, BoxDrawing, testing::Values(1.0, 2.0));

TEST(Box, NeverShowsItsTitle) {
  const auto named = [](const char* title) {
    auto box = make<KV_Ondex_Box>(NSMakeRect(0, 0, 80, 60));
    box->setTitle(title);
    box->setTitlePosition(NSBelowTop);  // where a title does not move the border
    return box;
  };
  EXPECT_EQ(DrawnView(*named("Tremolo"), 2), DrawnView(*named(""), 2));
}

TEST(Box, ABorderOfNinePointsOrLessIsDrawnSomehow) {
  const test::LoggedLines log;
  for (const CGFloat size : {CGFloat(9), CGFloat(5), CGFloat(0.5), CGFloat(0)}) {
    const DrawnView narrow(*untitled(size, 60), 1);
    const DrawnView low(*untitled(80, size), 2);
    const DrawnView small(*untitled(size, size), 1);
  }
  EXPECT_TRUE(log.lines.empty());
}

TEST(Box, IsNotOpaque) {
  EXPECT_FALSE(untitled()->isOpaque());
}

TEST(Box, KeepsItsColors) {
  const auto box = untitled();
  EXPECT_EQ(box->get_edge_color(), untitled()->get_edge_color());
  EXPECT_EQ(box->get_shadow_color(), untitled()->get_shadow_color());
  const CGFloat edge[] = {0, 0, 0, CGFloat(0.25)};
  const CGFloat shadow[] = {1, 1, 1, 1};
  for (size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(CGColorGetComponents(box->get_edge_color())[i], edge[i]);
    EXPECT_EQ(CGColorGetComponents(box->get_shadow_color())[i], shadow[i]);
  }
}

TEST(Box, IsMadeByItsClassAndKnownToInterfaceFilesByItself) {
  const Ref<NSObject> box = KV_Ondex_Box::class_.initWithFrame(NSMakeRect(0, 0, 80, 60));
  EXPECT_EQ(&box->isa(), &KV_Ondex_Box::class_);
  EXPECT_TRUE(box->isKindOfClass(NSBox::class_));
  EXPECT_EQ(box->isa().name, "KV_Ondex_Box");
  EXPECT_NE(KV_Ondex_Box::class_.initWithInterface, nullptr);
}

// The rounded rectangle

DrawnView filled(CGRect rect, float oval_width, float oval_height) {
  return {NSMakeSize(80, 60), 1, [=](CGContextRef context) {
            CGContextBeginPath(context);
            untitled()->add_rounded_rect_to_path_rect_oval_width_oval_height(context, rect, oval_width,
                                                                             oval_height);
            CGContextFillPath(context);
          }};
}

TEST(RoundedRect, AnOvalOfNoSizeHasSquareCorners) {
  for (const auto& [w, h] : {std::pair{0.0F, 20.0F}, {20.0F, 0.0F}, {0.0F, 0.0F}}) {
    const DrawnView drawn = filled(NSMakeRect(10, 10, 40, 30), w, h);
    EXPECT_EQ(drawn.at(10, 10).alpha, 1);
    EXPECT_EQ(drawn.at(49, 39).alpha, 1);
    EXPECT_EQ(drawn.at(50, 39).alpha, 0);
  }
}

TEST(RoundedRect, CornersAreQuartersOfTheOval) {
  const DrawnView drawn = filled(NSMakeRect(10, 10, 40, 30), 32, 8);
  // 16 by 4 points: an ellipse about (26, 14) passes through (26 - 16 * 0.8, 14 - 4 * 0.6) = (13.2, 11.6).
  EXPECT_EQ(drawn.at(15, 12).alpha, 1);
  EXPECT_EQ(drawn.at(11, 10).alpha, 0);
  EXPECT_EQ(drawn.at(26, 10).alpha, 1);
  EXPECT_EQ(drawn.at(10, 20).alpha, 1);
  EXPECT_EQ(drawn.at(48, 39).alpha, 0);
}

TEST(RoundedRect, StartsInTheMiddleOfTheRightSideAndLeavesTheTransform) {
  const DrawnView drawn(NSMakeSize(80, 60), 1, [](CGContextRef context) {
    CGContextBeginPath(context);
    untitled()->add_rounded_rect_to_path_rect_oval_width_oval_height(context, NSMakeRect(10, 10, 40, 30), 20,
                                                                     20);
    const CGPoint start = CGContextGetPathCurrentPoint(context);
    EXPECT_NEAR(static_cast<double>(start.x), 50, 1e-4);
    EXPECT_NEAR(static_cast<double>(start.y), 25, 1e-4);
    EXPECT_EQ(CGContextGetCTM(context), CGAffineTransformIdentity);
  });
}

}  // namespace
}  // namespace ondex
