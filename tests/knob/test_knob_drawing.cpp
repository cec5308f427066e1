// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <numbers>

#include "drawing/shading.h"
#include "drawn_view.h"
#include "gestures.h"
#include "knob/private/knob_colors.h"
#include "open_knob.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::distance;
using test::DrawnView;
using test::OpenKnob;
using test::over;
using test::Pixel;

// The colour rules

/// Of a transparent first and an opaque second colour.
std::array<double, 4> evaluate(CGFunctionEvaluateCallback rule, double t) {
  two_color_info info = {0.25, 0.5, 0.75, 0, 1, 0, 0.5, CGFloat(0.3333)};
  const auto in = static_cast<CGFloat>(t);
  CGFloat out[4] = {};
  rule(&info, &in, out);
  return {out[0], out[1], out[2], out[3]};
}

void expect_near(const std::array<double, 4>& actual, const std::array<double, 4>& expected) {
  for (size_t i = 0; i < 4; ++i)
    EXPECT_NEAR(actual[i], expected[i], 2e-6) << i;
}

TEST(KnobColours, TheRingsRunFromTheFirstColourToTheSecondAndBackEightTimes) {
  EXPECT_EQ(evaluate(two_color_span_evaluate, 0), (std::array<double, 4>{0.25, 0.5, 0.75, 0}));
  for (int ring = 0; ring < 8; ++ring) {
    expect_near(evaluate(two_color_span_evaluate, (2 * ring + 1) / 16.0), {1, 0, 0.5, 0.3333});
    expect_near(evaluate(two_color_span_evaluate, ring / 8.0), {0.25, 0.5, 0.75, 0});
  }
  // cos(8π/48) = 0.8660254037844387
  expect_near(evaluate(two_color_span_evaluate, 1.0 / 48),
              {0.350480947161671, 0.43301270189221935, 0.7165063509461097, 0.04465373292064661});
}

TEST(KnobColours, TheFaceIsLightestInTheMiddle) {
  expect_near(evaluate(body_panel_evaluate, 0), {0.25, 0.5, 0.75, 0});
  expect_near(evaluate(body_panel_evaluate, 0.5), {1, 0, 0.5, 0.3333});
  expect_near(evaluate(body_panel_evaluate, 1), {0.25, 0.5, 0.75, 0});
  expect_near(evaluate(body_panel_evaluate, 0.125), {0.4375, 0.375, 0.6875, 0.083325});
  expect_near(evaluate(body_panel_evaluate, 0.875), {0.4375, 0.375, 0.6875, 0.083325});
}

TEST(KnobColours, TheGlintIsANarrowBandWhoseAlphaFallsBelowZero) {
  EXPECT_NEAR(evaluate(knob_shine_evaluate, 0.5)[3], 0.3333, 1e-7);
  // 1 - 4 × 0.2^0.75 = -0.196279024650976
  EXPECT_NEAR(evaluate(knob_shine_evaluate, 0.3)[3], -0.0654197989161703, 1e-6);
  // 1 - 4 × 0.0625^0.75 = 0.5
  expect_near(evaluate(knob_shine_evaluate, 0.5625), {0.625, 0.25, 0.625, 0.16665});
  // 1 - 4 × 0.5^0.75 = -1.37841423000544
  EXPECT_NEAR(evaluate(knob_shine_evaluate, 0)[3], -0.459425462860814, 1e-6);
}

// The picture of a knob of 100 points: the disc has its centre at (50, 50) and a radius of 45, its face one
// of
// 41. The colours are worked out from the formulas.

Pixel grey(double level) {
  return {level, level, level, 1};
}

/// Along the diagonal from `start` to `end`.
double axial(double x, double y, NSPoint start, NSPoint end) {
  const double dx = end.x - start.x;
  const double dy = end.y - start.y;
  return ((x - start.x) * dx + (y - start.y) * dy) / (dx * dx + dy * dy);
}

Pixel glint(double x, double y) {
  const double t = axial(x, y, {9, 5}, {91, 91});
  const double s = 1 - 4 * std::pow(std::abs(t - 0.5), 0.75);
  return {0.99, 0.99, 0.99, std::max(0.0, 0.3333 * s)};
}

Pixel face(double x, double y) {
  const double t = axial(x, y, {9, 9}, {91, 91});
  const double s = std::abs(1 - 2 * t);
  return over(glint(x, y), grey(0.25 * s + 0.95 * (1 - s)));
}

Pixel rim(double x, double y) {
  const double t = 1 - std::hypot(x - 50, y - 50) / 45;
  const double c = std::abs(std::cos(8 * std::numbers::pi * t));
  return over(glint(x, y), grey(0.25 * c + 0.99 * (1 - c)));
}

class KnobDrawing : public testing::TestWithParam<double> {
 protected:
  /// The pixel at a point, and what `rule` gives for its centre.
  template <typename Rule>
  void expect(const DrawnView& picture, double x, double y, Rule rule, double tolerance) {
    const Pixel expected = rule(picture.centre(x), picture.centre(y));
    EXPECT_LE(distance(picture.at(x, y), expected), tolerance)
        << x << ' ' << y << ": " << picture.at(x, y) << ", not " << expected;
  }

  double scale = GetParam();
  Ref<OpenKnob> knob = make<OpenKnob>();
};

INSTANTIATE_TEST_SUITE_P(Scales, KnobDrawing, testing::Values(1.0, 2.0));

TEST_P(KnobDrawing, TheFaceIsShadedAlongTheDiagonalUnderTheGlint) {
  const DrawnView picture(*knob, scale);
  for (const auto& [x, y] : {std::pair{50.0, 50.0},
                             {60.0, 70.0},
                             {75.0, 75.0},
                             {70.0, 30.0},
                             {30.0, 70.0},
                             {55.0, 20.0},
                             {85.0, 45.0},
                             {40.0, 45.0}})
    expect(picture, x, y, face, 2.5);
}

TEST_P(KnobDrawing, TheRimIsRinged) {
  const DrawnView picture(*knob, scale);
  // Upwards and to the right, where the face casts no shadow on it.
  for (const double degrees : {20.0, 45.0, 80.0}) {
    const double angle = degrees * std::numbers::pi / 180;
    expect(picture, 50 + 43.6 * std::cos(angle), 50 + 43.6 * std::sin(angle), rim, 20.0 / scale);
  }
}

TEST_P(KnobDrawing, TheFaceEndsFourPointsInsideTheRim) {
  const DrawnView picture(*knob, scale);
  // To the right the face ends at 91, where the rim is lightest, and the rim ends at 95.
  expect(picture, 89.5, 50, face, 2.5);
  EXPECT_GT(distance(picture.at(92.5, 50), face(92.5, 50)), 20);
  EXPECT_EQ(picture.at(93.5, 50).alpha, 1);
  EXPECT_EQ(picture.at(96.5, 60).alpha, 0);
}

TEST_P(KnobDrawing, ThePointerStandsAtTheAngleOfTheValue) {
  struct Place {
    double value, x, y;
  };
  for (const Place& place : {Place{0, 26.66547622084393, 26.66547622084393},
                             {0.5, 50, 83},
                             {1, 73.33452377915607, 26.66547622084393}}) {
    knob->set_current_value(place.value);
    const DrawnView picture(*knob, scale);
    const auto dot = [](double x, double y) { return over(glint(x, y), {0.25, 0.25, 0.949999988, 1}); };
    for (const double dx : {-2.5, 0.0, 2.5}) {
      expect(picture, place.x + dx, place.y, dot, 1.5);
      expect(picture, place.x, place.y + dx, dot, 1.5);
    }
    // The outline straddles a circle of 5 points.
    const auto outline = [](double x, double y) { return over(glint(x, y), {0.05, 0.05, 0.25, 1}); };
    EXPECT_NEAR(picture.at(place.x + 4.8, place.y).red, outline(place.x + 4.8, place.y).red, 0.12);
    EXPECT_NEAR(picture.at(place.x, place.y + 4.8).red, outline(place.x, place.y + 4.8).red, 0.12);
    expect(picture, place.x + 8, place.y, face, 2.5);
  }
}

TEST_P(KnobDrawing, TheDiscCastsAShadowDownwardsToTheLeft) {
  const DrawnView picture(*knob, scale);
  const auto outside = [&](double degrees, double radius) {
    const double angle = degrees * std::numbers::pi / 180;
    return picture.at(50 + radius * std::cos(angle), 50 + radius * std::sin(angle));
  };
  const Pixel shadow = outside(225, 46.4);
  EXPECT_GT(shadow.alpha, 0.3);
  EXPECT_LE(shadow.alpha, 0.67);
  EXPECT_LT(shadow.red, 0.02) << "black";
  EXPECT_GT(outside(225, 48).alpha, 0.05);
  EXPECT_EQ(outside(45, 46.5).alpha, 0);
  EXPECT_EQ(outside(225, 53).alpha, 0);
}

TEST_P(KnobDrawing, TheFaceCastsAShadowOnTheRim) {
  const DrawnView picture(*knob, scale);
  const double lower_left = picture.at(50 - 43.3 * std::sqrt(0.5), 50 - 43.3 * std::sqrt(0.5)).red;
  const double upper_right = picture.at(50 + 43.3 * std::sqrt(0.5), 50 + 43.3 * std::sqrt(0.5)).red;
  EXPECT_LT(lower_left, 0.75 * upper_right);
}

TEST_P(KnobDrawing, ThePointerCastsAShadowOnTheFace) {
  knob->set_current_value(0.5);
  const DrawnView picture(*knob, scale);
  const auto darkening = [&](double x, double y) {
    return picture.at(x, y).red / face(picture.centre(x), picture.centre(y)).red;
  };
  EXPECT_LT(darkening(50 - 5.0, 83 - 5.0), 0.6);
  EXPECT_NEAR(darkening(50 + 5.0, 83 + 5.0), 1.0, 0.02);
  EXPECT_NEAR(darkening(50 + 7.5, 83 - 3.5), 1.0, 0.02);
}

TEST_P(KnobDrawing, PressingTheKnobChangesNoColour) {
  knob->set_current_value(0.25);
  const DrawnView released(*knob, scale);
  knob->_mouse_is_down = true;
  const DrawnView pressed(*knob, scale);
  EXPECT_TRUE(released == pressed);
}

TEST_P(KnobDrawing, ThePanelIsColouredByThePress) {
  const auto draw_panel = [this](CGContextRef context) { knob->do_body_panel(context); };
  for (const bool pressed : {false, true}) {
    knob->_mouse_is_down = pressed;
    const DrawnView picture(knob->bounds().size, scale, draw_panel);
    const auto panel = [pressed](double, double y) {
      const double s = std::abs(1 - 2 * y / 100);
      const auto mix = [s](double first, double second) { return first * s + second * (1 - s); };
      return pressed ? Pixel{mix(0.25, 1), mix(0.2125, 0.85), 0, 1}
                     : Pixel{mix(0.2235, 0.894), mix(0.11775, 0.471), mix(0.23525, 0.941), 1};
    };
    for (const double y : {0.5, 25.0, 50.0, 99.5})
      expect(picture, 30, y, panel, 1.5);
  }
}

TEST_P(KnobDrawing, AnEmptyRangeDrawsTheDiscWithoutAPointer) {
  knob->show(2, 2, 0, 2);
  const DrawnView picture(*knob, scale);
  expect(picture, 50, 50, face, 2.5);
}

}  // namespace
}  // namespace ondex
