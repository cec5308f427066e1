// SPDX-License-Identifier: MIT
#include "drawing/color_rules.h"

#include <gtest/gtest.h>

#include <array>

#include "drawing/capsule.h"
#include "drawing/shading.h"

namespace ondex {
namespace {

using namespace cocoa;
using Rule = CGFunctionEvaluateCallback;
using Rgba = std::array<double, 4>;

constexpr bool wide = sizeof(CGFloat) == sizeof(double);
constexpr double exact = wide ? 1e-15 : 2e-7;
/// Of numbers that come from a cosine in single precision, worked out to the last of its bits.
constexpr double single = wide ? 1e-12 : 3e-7;

/// What distinguishes each of its eight numbers.
constexpr two_color_info motley = {CGFloat(0.2), CGFloat(0.4), CGFloat(0.6), CGFloat(0.8),
                                   CGFloat(0.9), CGFloat(0.7), CGFloat(0.5), CGFloat(0.3)};

template <typename Record>
Rgba at(Rule rule, double t, const Record* record) {
  Record copy = record ? *record : Record{};
  const auto in = static_cast<CGFloat>(t);
  CGFloat out[] = {-9, -9, -9, -9};
  rule(record ? &copy : nullptr, &in, out);
  return {static_cast<double>(out[0]), static_cast<double>(out[1]), static_cast<double>(out[2]),
          static_cast<double>(out[3])};
}

Rgba at(Rule rule, double t) {
  return at<two_color_info>(rule, t, nullptr);
}

void expect_color(const Rgba& actual, const Rgba& expected, double tolerance) {
  for (size_t i = 0; i < actual.size(); ++i)
    EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i;
}

TEST(ColorRules, CapsuleBodyIsBlackAtBothEdgesAndATenthGreyHalfWay) {
  const Rule rule = capsule_rules::bg_panel_evaluate;
  EXPECT_EQ(at(rule, 0), (Rgba{0, 0, 0, 1}));
  EXPECT_EQ(at(rule, 1), (Rgba{0, 0, 0, 1}));
  expect_color(at(rule, 0.5), {0.1, 0.1, 0.1, 1}, 1e-8);
  expect_color(at(rule, 0.25), {0.05, 0.05, 0.05, 1}, 1e-8);
  expect_color(at(rule, 0.8), {0.04, 0.04, 0.04, 1}, 1e-8);
}

TEST(ColorRules, CapsuleBodyReadsNoColors) {
  EXPECT_EQ(at(capsule_rules::bg_panel_evaluate, 0.3, &motley), at(capsule_rules::bg_panel_evaluate, 0.3));
}

TEST(ColorRules, ButtonBodyRotatesTheFirstColorsChannels) {
  const Rule rule = button_rules::bg_panel_evaluate;
  expect_color(at(rule, 0.5, &motley), {0.4, 0.6, 0.2, 0.8}, 1e-7);
  expect_color(at(rule, 0.25, &motley), {0.2, 0.3, 0.1, 0.8}, 1e-7);
  expect_color(at(rule, 1, &motley), {0, 0, 0, 0.8}, 1e-7);
}

TEST(ColorRules, ButtonBodyOfATenthGreyIsTheCapsules) {
  constexpr auto tenth = CGFloat(0.1);
  constexpr two_color_info grey = {tenth, tenth, tenth, 1, 0, 0, 0, 0};
  for (const double t : {0.0, 0.1, 0.37, 0.5, 0.9, 1.0})
    EXPECT_EQ(at(button_rules::bg_panel_evaluate, t, &grey), at(capsule_rules::bg_panel_evaluate, t));
}

TEST(ColorRules, CapBlendStartsWithExactlyTheFirstColorAndEndsWithTheSecond) {
  const Rule rule = capsule_rules::bg_sidebars_evaluate;
  EXPECT_EQ(at(rule, 0, &motley), (Rgba{motley.r0, motley.g0, motley.b0, 1}));
  expect_color(at(rule, 1, &motley), {0.9, 0.7, 0.5, 1}, 1e-7);
}

TEST(ColorRules, CapBlendTakesItsCosineInSinglePrecision) {
  constexpr two_color_info black_to_white = {1, 1, 1, 0, 0, 0, 0, 0};
  const Rule rule = capsule_rules::bg_sidebars_evaluate;
  constexpr double third = 0.74999997307765298;  // 0.75 with the whole of double precision
  constexpr double seven_tenths = 0.20610739138436784;
  expect_color(at(rule, 1.0 / 3, &black_to_white), {third, third, third, 1}, single);
  expect_color(at(rule, 0.7, &black_to_white), {seven_tenths, seven_tenths, seven_tenths, 1}, single);
}

TEST(ColorRules, CapBlendIsOpaqueWhateverTheAlphas) {
  constexpr two_color_info translucent = {1, 1, 1, CGFloat(0.2), 0, 0, 0, CGFloat(0.4)};
  for (const double t : {0.0, 0.4, 1.0})
    EXPECT_EQ(at(capsule_rules::bg_sidebars_evaluate, t, &translucent)[3], 1);
}

TEST(ColorRules, ShineIsABandWithHardEdges) {
  const Rule rule = capsule_rules::shine_overlay_evaluate;
  expect_color(at(rule, 0.35), {0.7, 0.7, 0.7, 0.1125}, 1e-6);
  expect_color(at(rule, 0.65), {0.7, 0.7, 0.7, 0.1125}, 1e-6);
  expect_color(at(rule, 0.5), {1, 1, 1, 0.15}, 1e-8);
  expect_color(at(rule, 0.4), {0.8, 0.8, 0.8, 0.133333331}, 3e-8);
  expect_color(at(rule, 0.34), {0.68, 0.68, 0.68, 0}, 1e-7);
  expect_color(at(rule, 0.66), {0.68, 0.68, 0.68, 0}, 1e-7);
  EXPECT_EQ(at(rule, 0.34)[3], 0);
  EXPECT_EQ(at(rule, 0.66)[3], 0);
}

TEST(ColorRules, ShinesOffsetIsADecimalNotTenThirds) {
  if constexpr (wide) {
    // u = 0.3 * 3.333333 - 0.5 = 0.4999999, where ten thirds would give 0.5.
    EXPECT_NEAR(at(capsule_rules::shine_overlay_evaluate, 0.65)[3], 0.1125000149999985, exact);
  } else {
    EXPECT_NEAR(at(capsule_rules::shine_overlay_evaluate, 0.65)[3], 0.1125, exact);
  }
}

TEST(ColorRules, ButtonShineIsScaledByTheFirstAlpha) {
  const Rule rule = button_rules::shine_overlay_evaluate;
  constexpr two_color_info colors = {1, 1, 1, CGFloat(0.99), 1, 1, 1, CGFloat(0.5)};
  expect_color(at(rule, 0.5, &colors), {1, 1, 1, 0.1485}, 2e-8);
  expect_color(at(rule, 0.35, &colors), {0.7, 0.7, 0.7, 0.111375}, 1e-6);
  EXPECT_EQ(at(rule, 0.34, &colors)[3], 0);
}

TEST(ColorRules, GraphShineIsWiderWithTheSameOffsetAndScaledByTheSecondAlpha) {
  const Rule rule = graph_rules::shine_overlay_evaluate;
  expect_color(at(rule, 0.5, &shine_colors), {1, 1, 1, 0.15}, 1e-8);
  expect_color(at(rule, 0.35, &shine_colors), {0.7, 0.7, 0.7, 0.1125}, 1e-7);
  expect_color(at(rule, 0.3, &shine_colors), {0.6, 0.6, 0.6, 0.083333337}, 1e-7);
  EXPECT_NEAR(at(rule, 0.5, &motley)[3], 0.045, 1e-8);
}

TEST(ColorRules, GraphShinesAlphaIsNegativeOutsideTheMiddleAndNothingBeyondItsBand) {
  const Rule rule = graph_rules::shine_overlay_evaluate;
  EXPECT_NEAR(at(rule, 0.15, &shine_colors)[3], -0.0541666433, 1e-7);
  EXPECT_NEAR(at(rule, 0.85, &shine_colors)[3], -0.0541665100, 3e-7);
  EXPECT_NEAR(at(rule, 0.2, &shine_colors)[3], 0, 1e-7);
  EXPECT_NEAR(at(rule, 0.8, &shine_colors)[3], 0, 1e-7);
  EXPECT_EQ(at(rule, 0.14, &shine_colors)[3], 0);
  EXPECT_EQ(at(rule, 0.86, &shine_colors)[3], 0);
}

TEST(ColorRules, RadialSpanStepsBackWhereItStartsToBeSquared) {
  constexpr two_color_rgb_info colors = {1, 0, CGFloat(0.5), 0, 1, CGFloat(0.5)};
  const Rule rule = menu_rules::two_color_span_evaluate;
  expect_color(at(rule, 0.149, &colors), {0.851, 0.149, 0.5, 1}, 1e-7);
  expect_color(at(rule, 0.15, &colors), {0.9775, 0.0225, 0.5, 1}, 1e-7);
  expect_color(at(rule, 0.5, &colors), {0.75, 0.25, 0.5, 1}, 1e-7);
  EXPECT_EQ(at(rule, 0, &colors), (Rgba{1, 0, 0.5, 1}));
  EXPECT_EQ(at(rule, 1, &colors), (Rgba{0, 1, 0.5, 1}));
}

TEST(ColorRules, PanelRulesTintTheFirstColor) {
  expect_color(at(panel_rules::bg_panel_evaluate, 0, &motley), {0.1, 0.2, 0.3, 0.8}, 1e-7);
  expect_color(at(panel_rules::bg_panel_evaluate, 0.5, &motley), {0.2, 0.4, 0.6, 0.8}, 1e-7);
  expect_color(at(panel_rules::bg_sidebars_evaluate, 0, &motley), {0.05, 0.1, 0.15, 0.8}, 1e-7);
  expect_color(at(panel_rules::bg_sidebars_evaluate, 0.5, &motley), {0.2, 0.4, 0.6, 0.8}, 1e-7);
}

TEST(ColorRules, HalfRampRisesFromHalfToFullInTheMiddle) {
  EXPECT_EQ(half_ramp(0), CGFloat(0.5));
  EXPECT_EQ(half_ramp(CGFloat(0.25)), CGFloat(0.75));
  EXPECT_EQ(half_ramp(CGFloat(0.5)), CGFloat(1));
  EXPECT_EQ(half_ramp(1), CGFloat(0.5));
}

TEST(ColorRules, RidgeIsAQuarterAtItsEdgesAndFullAlongItsMiddle) {
  EXPECT_EQ(ridge(0), CGFloat(0.25));
  EXPECT_NEAR(static_cast<double>(ridge(CGFloat(0.5))), 1, 1e-7);
  EXPECT_NEAR(static_cast<double>(ridge(1)), 0.25, 1e-7);
  EXPECT_NEAR(static_cast<double>(ridge(CGFloat(0.4))), 0.76823727041482925, single);
}

}  // namespace
}  // namespace ondex
