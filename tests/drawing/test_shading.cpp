// SPDX-License-Identifier: MIT
#include "drawing/shading.h"

#include <gtest/gtest.h>

#include "drawing/KV_Ondex_Box.h"
#include "drawing/KV_Ondex_Label_View.h"
#include "drawing/color_rules.h"
#include "drawn_view.h"
#include "shading_faults.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::distance;
using test::DrawnView;
using test::Pixel;

constexpr NSSize ten_square = {10, 10};
constexpr NSRect all = {{0, 0}, ten_square};
constexpr two_color_info red_to_blue = {1, 0, 0, 1, 0, 0, 1, 1};

/// t itself as red, the rest 0.
void red_evaluate(void*, const CGFloat* in, CGFloat* out) {
  out[0] = *in;
  out[1] = out[2] = 0;
  out[3] = 1;
}

/// Out of range in every component.
void excessive_evaluate(void*, const CGFloat*, CGFloat* out) {
  out[0] = 2;
  out[1] = -1;
  out[2] = CGFloat(0.5);
  out[3] = 7;
}

void expect_color(const Pixel& actual, const Pixel& expected) {
  EXPECT_LE(distance(actual, expected), 1.01) << actual << " is not " << expected;
}

TEST(Shading, TheColorSpaceIsMadeOnceForAll) {
  const auto label = make<KV_Ondex_Label_View>(all);
  const auto box = make<KV_Ondex_Box>(all);
  EXPECT_NE(device_RGB_color_space(), nullptr);
  EXPECT_EQ(device_RGB_color_space(), device_RGB_color_space());
  EXPECT_EQ(label->get_RGB_color_space(), device_RGB_color_space());
  EXPECT_EQ(box->get_RGB_color_space(), device_RGB_color_space());
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(device_RGB_color_space()), 3U);
}

TEST(Shading, ReleasingNoRecordIsNothing) {
  release_two_color_info(nullptr);
}

TEST(Shading, OutsideDrawingThereIsNoPortAndNothingIsDrawn) {
  EXPECT_EQ(current_port(), nullptr);
  const test::LoggedLines log;
  fill_rect_upwards(current_port(), all, red_evaluate, nullptr);
  make<KV_Ondex_Label_View>(all)->drawRect(all);
  EXPECT_TRUE(log.lines.empty());
}

TEST(Shading, RunsUpwardsFromTheBottomEdge) {
  for (const double scale : {1.0, 2.0}) {
    const DrawnView drawn(ten_square, scale, [](CGContextRef context) {
      fill_rect_upwards(context, NSMakeRect(2, 2, 4, 8), red_evaluate, nullptr);
    });
    for (const double y : {2.3, 5.6, 9.9})
      expect_color(drawn.at(3, y), {(drawn.centre(y) - 2) / 8, 0, 0, 1});
    EXPECT_EQ(drawn.at(3, 1.5), Pixel{});
    EXPECT_EQ(drawn.at(1.5, 5), Pixel{});
    EXPECT_EQ(drawn.at(6.5, 5), Pixel{});
  }
}

TEST(Shading, ARuleThatReadsNoColorsNeedsNone) {
  const DrawnView drawn(ten_square, 1, [](CGContextRef context) {
    fill_rect_upwards(context, all, capsule_rules::bg_panel_evaluate, nullptr);
    fill_rect_upwards(context, all, capsule_rules::shine_overlay_evaluate, nullptr);
  });
  // t = 0.45: the body's 0.09 under the band's 0.9 at alpha 0.15 (1 - 0.1666667²).
  constexpr double alpha = 0.1458333;
  constexpr double grey = 0.09 * (1 - alpha) + 0.9 * alpha;
  expect_color(drawn.at(5, 4), {grey, grey, grey, 1});
  expect_color(drawn.at(5, 0), {0.01, 0.01, 0.01, 1});
}

TEST(Shading, TheFunctionOwnsACopyOfTheColors) {
  two_color_info colors = red_to_blue;
  const Function function = create_shader_function(capsule_rules::bg_sidebars_evaluate, &colors);
  colors = {0, 1, 0, 1, 0, 1, 0, 1};
  const DrawnView drawn(ten_square, 1, [&function](CGContextRef context) {
    fill_rect(context, all, create_axial_shading(function, {0, 0}, {1000, 0}));
  });
  expect_color(drawn.at(0, 0), {1, 0, 0, 1});
}

TEST(Shading, IsNotExtendedBeyondEitherEnd) {
  const DrawnView drawn(ten_square, 1, [](CGContextRef context) {
    fill_rect(context, all,
              create_axial_shading(create_shader_function(red_evaluate, nullptr), {3, 0}, {7, 0}));
  });
  EXPECT_EQ(drawn.at(2, 5), Pixel{});
  EXPECT_EQ(drawn.at(7, 5), Pixel{});
  expect_color(drawn.at(3, 0), {0.125, 0, 0, 1});
  expect_color(drawn.at(6, 9), {0.875, 0, 0, 1});
}

TEST(Shading, ColorsOutOfRangeAreClamped) {
  const DrawnView drawn(ten_square, 1, [](CGContextRef context) {
    fill_rect_upwards(context, all, excessive_evaluate, nullptr);
  });
  expect_color(drawn.at(5, 5), {1, 0, 0.5, 1});
}

TEST(Shading, FillsTheEllipseInARectangle) {
  const DrawnView drawn(ten_square, 2, [](CGContextRef context) {
    const Function function = create_shader_function(red_evaluate, nullptr);
    fill_ellipse(context, NSMakeRect(0, 0, 10, 6), create_axial_shading(function, {0, 0}, {10, 0}));
  });
  expect_color(drawn.at(5, 3), {0.525, 0, 0, 1});
  EXPECT_EQ(drawn.at(0.2, 0.2), Pixel{});
  EXPECT_EQ(drawn.at(9.8, 5.8), Pixel{});
  EXPECT_EQ(drawn.at(5, 6.2), Pixel{});
}

TEST(Shading, FillsWhatARectangleAndAnEllipseHaveInCommon) {
  const DrawnView drawn(ten_square, 2, [](CGContextRef context) {
    const Function function = create_shader_function(red_evaluate, nullptr);
    fill_rect_and_ellipse(context, NSMakeRect(0, 0, 5, 10), NSMakeRect(0, 0, 10, 10),
                          create_axial_shading(function, {0, 0}, {10, 0}));
  });
  expect_color(drawn.at(4.75, 5), {0.475, 0, 0, 1});
  EXPECT_EQ(drawn.at(5.25, 5), Pixel{});
  EXPECT_EQ(drawn.at(0.25, 0.25), Pixel{});
}

TEST(Shading, RunsBetweenTwoCircles) {
  const DrawnView drawn(ten_square, 2, [](CGContextRef context) {
    const Function function = create_shader_function(red_evaluate, nullptr);
    fill_rect(context, all, create_radial_shading(function, {{5, 5}, 4}, {{5, 5}, 2}));
  });
  // The pixel's centre lies (3, 0.25) / (3.25, 0.25) from the circles' centre.
  expect_color(drawn.at(8, 5), {(4 - std::hypot(3.25, 0.25)) / 2, 0, 0, 1});
  EXPECT_EQ(drawn.at(5, 5), Pixel{}) << "inside the smaller circle";
  EXPECT_EQ(drawn.at(0.5, 5), Pixel{}) << "outside the larger circle";
}

TEST(Shading, TheRadialSpanRunsFromColorAToColorB) {
  constexpr CGFloat color_a[] = {1, 0, CGFloat(0.2)};
  constexpr CGFloat color_b[] = {0, 1, CGFloat(0.8)};
  const DrawnView drawn(NSMakeSize(100, 10), 1, [&](CGContextRef context) {
    const Function function = create_radial_shader_function(color_a, color_b);
    fill_rect(context, NSMakeRect(0, 0, 100, 10),
              create_radial_shading(function, {{0, CGFloat(4.5)}, 100}, {{0, CGFloat(4.5)}, 0}));
  });
  // t = 1 - 0.005, 0.505 and 0.895 from the right; beyond 0.15 the share of B is t².
  expect_color(drawn.at(49, 4), {1 - 0.255025, 0.255025, 0.2 + 0.6 * 0.255025, 1});
  expect_color(drawn.at(10, 4), {1 - 0.801025, 0.801025, 0.2 + 0.6 * 0.801025, 1});
  expect_color(drawn.at(95, 4), {1 - 0.045, 0.045, 0.2 + 0.6 * 0.045, 1});
}

// Failures

TEST(ShadingFailures, ARecordThatCannotBeAllocatedIsAMissingFunction) {
  const test::FailingRecord failure(1);
  EXPECT_EQ(create_shader_function(red_evaluate, &red_to_blue), nullptr);
}

TEST(ShadingFailures, TheRadialFunctionLeavesTheLogToItsCaller) {
  const test::LoggedLines log;
  const test::FailingRgbRecord failure;
  constexpr CGFloat color[] = {1, 1, 1};
  const Function function = create_radial_shader_function(color, color);
  EXPECT_EQ(function, nullptr);
  EXPECT_TRUE(log.lines.empty());
  EXPECT_EQ(create_radial_shading(function, {{0, 0}, 1}, {{0, 0}, 0}), nullptr);
  EXPECT_EQ(log.lines, std::vector<std::string>{test::no_function});
}

TEST(ShadingFailures, AFunctionThatCannotBeMadeIsLoggedAndFreesItsRecord) {
  const test::LoggedLines log;
  EXPECT_EQ(create_axial_shading(create_shader_function(nullptr, &red_to_blue), {0, 0}, {1, 0}), nullptr);
  EXPECT_EQ(log.lines, std::vector<std::string>{test::no_function});
}

TEST(ShadingFailures, AShadingThatCannotBeMadeIsLogged) {
  // One output too few for red, green, blue and alpha.
  const CGFunctionCallbacks callbacks = {0, red_evaluate, nullptr};
  const Function function(CGFunctionCreate(nullptr, 1, nullptr, 3, nullptr, &callbacks));
  const test::LoggedLines log;
  EXPECT_EQ(create_axial_shading(function, {0, 0}, {1, 0}), nullptr);
  EXPECT_EQ(create_radial_shading(function, {{0, 0}, 1}, {{0, 0}, 0}), nullptr);
  EXPECT_EQ(log.lines, (std::vector<std::string>{test::no_shading, test::no_shading}));
}

TEST(ShadingFailures, AFailedFillLeavesTheContextAsItWas) {
  const test::LoggedLines log;
  const DrawnView drawn(ten_square, 1, [](CGContextRef context) {
    const test::FailingShading failure(1);
    fill_rect_upwards(context, NSMakeRect(4, 4, 2, 2), red_evaluate, nullptr);
    EXPECT_EQ(CGContextGetClipBoundingBox(context), all);
    EXPECT_EQ(CGContextGetCTM(context), CGAffineTransformIdentity);
  });
  EXPECT_EQ(log.lines, std::vector<std::string>{test::no_shading});
  EXPECT_EQ(drawn.at(5, 5), Pixel{});
}

TEST(Shading, AFillLeavesTheContextAsItWas) {
  const DrawnView drawn(ten_square, 1, [](CGContextRef context) {
    fill_rect_upwards(context, NSMakeRect(4, 4, 2, 2), red_evaluate, nullptr);
    EXPECT_EQ(CGContextGetClipBoundingBox(context), all);
  });
  expect_color(drawn.at(5, 5), {0.75, 0, 0, 1});
}

}  // namespace
}  // namespace ondex
