// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "capsule_colors.h"
#include "menu_view_fixture.h"
#include "shading_faults.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::distance;
using test::DrawnView;
using test::MenuView;
using test::Pixel;

/// The radial span from colour A to colour B, `s` at a point: t where the point lies on the circle from the
/// one around the middle of the inner edge, as wide as the cap, to the tip. Distances from the inner edge.
double span(double x, double y, double cap, double cap_height) {
  // centre = 0.95 cap t, radius = cap (1 - t): (x - 0.95 cap t)² + y² = cap² (1 - t)²
  const double dy = y - cap_height / 2;
  const double a = cap * cap * (0.95 * 0.95 - 1);
  const double b = -2 * 0.95 * cap * x + 2 * cap * cap;
  const double c = x * x + dy * dy - cap * cap;
  // Of the two roots one lies within the span and the other beyond its tip.
  const double root = std::sqrt(b * b - 4 * a * c);
  const double t = std::min((-b + root) / (2 * a), (-b - root) / (2 * a));
  return t < 0.15 ? t : t * t;
}

Pixel cap_color(double s, bool pressed) {
  const double main = (1 - s) * 0.0425 + s * 0.93;
  const double rest = (1 - s) * 0.0125 + s * 0.25;
  return pressed ? Pixel{main, rest, rest, 1} : Pixel{rest, rest, main, 1};
}

TEST_F(MenuView, IdleCapsGlowBlueTowardsTheirTipsAndAPressedOneRed) {
  menu->select_index(-1);
  for (const bool pressed : {false, true}) {
    if (pressed)
      test::press(*menu, 1, in_left, height);
    menu->select_index(-1);
    const DrawnView drawn(*menu, 4);
    for (const double x : {3.1, 6.1, 9.1, 12.1}) {
      for (const double y : {6.1, 10.1, 15.1}) {
        const double px = drawn.centre(x);
        const double py = drawn.centre(y);
        const Pixel expected = over(test::shine(py, 20), cap_color(span(15 - px, py, 15, 20), pressed));
        EXPECT_LE(distance(drawn.at(x, y), expected), 3) << x << ' ' << y << drawn.at(x, y) << expected;
        const double mirrored = 120 - px;
        const Pixel right = over(test::shine(py, 20), cap_color(span(15 - px, py, 15, 20), false));
        EXPECT_LE(distance(drawn.at(mirrored, y), right), 3) << mirrored << ' ' << y;
      }
    }
  }
}

/// How much of the pixel at (x, y), in points of the given size, lies within 15 points of a place.
double circle_coverage(double x, double y, double size, NSPoint centre) {
  constexpr int samples = 16;
  int inside = 0;
  for (int i = 0; i < samples * samples; ++i) {
    const int row = i / samples;
    const double dx = x + (i % samples + 0.5) / samples * size - centre.x;
    const double dy = y + (row + 0.5) / samples * size - centre.y;
    inside += dx * dx + dy * dy <= 15 * 15 ? 1 : 0;
  }
  return inside / static_cast<double>(samples * samples);
}

/// Its span of colours reaches 15 points from the middle of its inner edge, and no farther. Of a pixel whose
/// centre lies half a pixel out or more, a shading paints nothing: that is at most 11/255.
TEST_F(MenuView, ATallCapIsARoundAndSmoothOne) {
  const auto tall = make<test::Menu>(NSMakeRect(0, 0, 120, 80));
  for (const double scale : {1.0, 2.0, 3.0}) {
    const DrawnView drawn(*tall, scale);
    int partly = 0;
    for (int row = static_cast<int>(24 * scale); row < 27 * scale; ++row) {  // below the glass
      for (int column = 0; column < 14 * scale; ++column) {
        const double x = column / scale;
        const double y = row / scale;
        const double expected = circle_coverage(x, y, 1 / scale, {15, 40});
        EXPECT_NEAR(drawn.pixel(column, row).alpha, expected, 0.045) << scale << ": " << x << ", " << y;
        const int mirrored = drawn.width() - 1 - column;
        EXPECT_NEAR(drawn.pixel(mirrored, row).alpha, expected, 0.045) << scale << ": " << x << ", " << y;
        partly += expected > 0.1 && expected < 0.9 ? 1 : 0;
      }
    }
    EXPECT_GT(partly, 2 * scale) << "something to be smoothed";
  }
}

TEST_F(MenuView, TheRightCapIsRedWhileThePressThatBeganThereLasts) {
  test::press(*menu, 1, in_right, height);
  const DrawnView pressed(*menu, 1);
  EXPECT_GT(pressed.at(115, 10).red, 2 * pressed.at(115, 10).blue);
  EXPECT_GT(pressed.at(4, 10).blue, 2 * pressed.at(4, 10).red);
  test::lift(*menu);
  EXPECT_GT(DrawnView(*menu, 1).at(115, 10).blue, 2 * DrawnView(*menu, 1).at(115, 10).red);
}

TEST_F(MenuView, ACapThatCannotBeShadedIsLoggedAndLeftOut) {
  menu->select_index(-1);
  const test::LoggedLines log;
  const test::FailingRgbRecord failure;
  const DrawnView drawn(*menu, 1);
  EXPECT_EQ(log.lines, std::vector<std::string>{test::no_function});
  EXPECT_EQ(drawn.at(4, 3), Pixel{}) << "the left cap comes first";
  EXPECT_GT(drawn.at(116, 10).blue, 0.3);
  EXPECT_LE(distance(drawn.at(60, 10), test::body(10.5, 20)), 1);
}

TEST_F(MenuView, TheBodyAndTheGlassAreThoseOfEveryCapsule) {
  menu->select_index(-1);
  const DrawnView drawn(*menu, 2);
  for (const double y : {1.1, 5.1, 8.1, 10.1, 15.1}) {
    EXPECT_LE(distance(drawn.at(60.1, y), test::body(drawn.centre(y), 20)), 1) << y;
  }
  EXPECT_EQ(drawn.at(0.1, 0.1), Pixel{}) << "beside the ellipse";
}

TEST_F(MenuView, ADarkAndALightLineStandWhereTheCapsMeetTheMiddle) {
  menu->select_index(-1);
  // Quarters of a point: the lines, half a point wide, are two pixels each.
  const DrawnView drawn(*menu, 4);
  const Pixel plain = drawn.at(20.1, 3.1);
  const double t = drawn.centre(3.1);
  const Pixel dark = over({0, 0, 0, 0.25}, plain);
  const Pixel light = over({1, 1, 1, 0.25}, plain);
  EXPECT_LE(distance(plain, test::body(t, 20)), 1);
  for (const double edge : {15.0, 105.0}) {
    const double inwards = edge == 15.0 ? 1 : -1;
    const auto at = [&](double from_edge) { return drawn.at(edge + inwards * from_edge, 3.1); };
    EXPECT_LE(distance(at(0.3), dark), 1.5);
    EXPECT_LE(distance(at(0.7), dark), 1.5);
    EXPECT_LE(distance(at(0.8), light), 1.5);
    EXPECT_LE(distance(at(1.2), light), 1.5);
    EXPECT_LE(distance(at(1.3), plain), 1);
  }
}

TEST_F(MenuView, ShowsTheSelectedTitleUnderTheGlass) {
  menu->remove_all_items();
  menu->append_item(text("\u2588\u2588\u2588").get());  // full blocks: ink without gaps
  menu->set_colors_for_line(NSColor::colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1).get());
  const DrawnView drawn(*menu, 2);
  double row = 0;
  for (double y = 7; y < 13 && row == 0; y += 0.5) {
    if (drawn.at(60.1, y).red > 0.9)
      row = y;
  }
  ASSERT_NE(row, 0);
  const Pixel expected = over(test::shine(drawn.centre(row), 20), {1, 0, 0, 1});
  EXPECT_LE(distance(drawn.at(60.1, row), expected), 1.5);
}

}  // namespace
}  // namespace ondex
