// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "capsule_colors.h"
#include "drawn_view.h"
#include "foundation/NSLog.h"
#include "gestures.h"
#include "parameter_control/KV_Ondex_Parameter_Control_View.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::distance;
using test::DrawnView;
using test::over;
using test::Pixel;

constexpr double width = 132;
constexpr double height = 36;

class Readout : public KV_Ondex_Parameter_Control_View {
 public:
  Readout() : KV_Ondex_Parameter_Control_View(NSMakeRect(0, 0, width, height)) {}
  using KV_Ondex_Parameter_Control_View::_info_rect;
  using KV_Ondex_Parameter_Control_View::_info_string_attributes;
  using KV_Ondex_Parameter_Control_View::_readout_rect;
  using KV_Ondex_Parameter_Control_View::_readout_string_attributes;
};

Pixel body(double y) {
  return test::body(y, height);
}

/// `t` from the inner edge of the cap.
Pixel cap(double t, double y, bool selected) {
  const double k = test::inner_share(t);
  return selected ? over(test::shine(y, height), {0.15 * k, 0.75 * k, 0.15 * k, 1}) : test::cap(t, y, height);
}

class ReadoutDrawing : public testing::TestWithParam<double> {
 protected:
  double scale = GetParam();
  Ref<Readout> readout = make<Readout>();
};

INSTANTIATE_TEST_SUITE_P(Scales, ReadoutDrawing, testing::Values(1.0, 2.0));

/// Rows that keep half a pixel away from the band's sharp edges, at 12.6 and 23.4.
constexpr double probed_rows[] = {0.75, 3.75, 8.75, 11.25, 14.25, 18.25, 21.75, 24.75, 30.25, 35.25};

TEST_P(ReadoutDrawing, TheBodyIsARampUnderAGlassBand) {
  const DrawnView picture(*readout, scale);
  for (const double y : probed_rows) {
    const Pixel expected = body(picture.centre(y));
    for (const double x : {5.5, 20.0, 126.25})
      EXPECT_LE(distance(picture.at(x, y), expected), 1.5) << x << ' ' << y << ' ' << picture.at(x, y);
  }
}

TEST_P(ReadoutDrawing, TheCapsShowTheSelection) {
  for (const bool selected : {false, true, false}) {
    readout->set_selected(selected);
    const DrawnView picture(*readout, scale);
    for (const double inward : {0.25, 1.25, 2.25, 3.25}) {
      // At mid-height and near it, inside the half-ellipse.
      for (const double y : {14.25, 18.25, 21.75}) {
        const double left = 5 - inward;
        const double right = 127 + inward;
        const Pixel expected_left = cap((5 - picture.centre(left)) / 5, picture.centre(y), selected);
        const Pixel expected_right = cap((picture.centre(right) - 127) / 5, picture.centre(y), selected);
        EXPECT_LE(distance(picture.at(left, y), expected_left), 1.5) << left << ' ' << y << ' ' << selected;
        EXPECT_LE(distance(picture.at(right, y), expected_right), 1.5)
            << right << ' ' << y << ' ' << selected;
      }
    }
  }
}

TEST_P(ReadoutDrawing, TheCornersStayClearOutsideTheCaps) {
  const DrawnView picture(*readout, scale);
  for (const double x : {0.25, 131.75}) {
    EXPECT_EQ(picture.at(x, 0.25).alpha, 0);
    EXPECT_EQ(picture.at(x, 35.75).alpha, 0);
  }
}

TEST_P(ReadoutDrawing, HoldingTheMouseDownLooksNoDifferent) {
  readout->set_selected(true);
  const DrawnView before(*readout, scale);
  test::press(*readout, 1, 60, 18);
  const DrawnView held(*readout, scale);
  EXPECT_TRUE(before == held);
}

/// The mean column, the lowest and the highest row, in points, of the pixels that the colour fits.
struct Extent {
  int count = 0;
  double mean_x = 0;
  double lowest = height;
  double highest = 0;
};

template <typename Fits>
Extent extent_of(const DrawnView& picture, double scale, Fits fits) {
  Extent extent;
  for (int row = 0; row < picture.height(); ++row) {
    for (int column = 0; column < picture.width(); ++column) {
      if (!fits(picture.pixel(column, row)))
        continue;
      ++extent.count;
      extent.mean_x += (column + 0.5) / scale;
      extent.lowest = std::min(extent.lowest, row / scale);
      extent.highest = std::max(extent.highest, (row + 1) / scale);
    }
  }
  extent.mean_x /= extent.count;
  return extent;
}

bool is_yellow(const Pixel& p) {
  return p.red > p.blue + 0.25;
}
bool is_blue(const Pixel& p) {
  return p.blue > p.red + 0.25;
}

TEST_P(ReadoutDrawing, TheNumberStandsInTheLowerHalfAndTheNameInTheUpper) {
  readout->set_description(make<NSString>("HHHHHHHH").get());
  readout->set_values_minimum_maximum_default_value_scale_type(0, 10, 0, 0);
  readout->set_current_value(8);
  const DrawnView picture(*readout, scale);
  const Extent number = extent_of(picture, scale, is_yellow);
  const Extent name = extent_of(picture, scale, is_blue);
  EXPECT_GT(number.count, 20 * scale);
  EXPECT_GT(name.count, 20 * scale);
  EXPECT_LE(number.highest, 18);
  EXPECT_GE(number.lowest, 4) << "set from the top of its half";
  EXPECT_GE(name.lowest, 18);
  EXPECT_LE(name.highest, 36);
  EXPECT_NEAR(number.mean_x, width / 2, 1.5);
  EXPECT_NEAR(name.mean_x, width / 2, 1.5);
}

TEST_P(ReadoutDrawing, TheTextsTakeTheColoursTheyAreGiven) {
  readout->set_colors_for_readout_info(NSColor::blueColor().get(), NSColor::yellowColor().get());
  const DrawnView picture(*readout, scale);
  EXPECT_LE(extent_of(picture, scale, is_blue).highest, 18);
  EXPECT_GE(extent_of(picture, scale, is_yellow).lowest, 18);
}

/// A readout put together from its layers, with the given text for the number.
bool looks_like(Readout& readout, const char* number, const char* name, double scale) {
  const DrawnView expected(readout.bounds().size, scale, [&](CGContextRef context) {
    readout.do_body_panel(context);
    readout.do_right_end_cap(context);
    readout.do_left_end_cap(context);
    drawInRect_withAttributes(make<NSString>(number).get(), readout._readout_rect,
                              readout._readout_string_attributes.get());
    drawInRect_withAttributes(make<NSString>(name).get(), readout._info_rect,
                              readout._info_string_attributes.get());
    readout.do_shine(context);
  });
  const DrawnView picture(readout, scale);
  return picture == expected;
}

TEST_P(ReadoutDrawing, AFreshOneShowsZeroAndDashes) {
  EXPECT_TRUE(looks_like(*readout, "0.0000", "---", scale));
  EXPECT_FALSE(looks_like(*readout, "0.0001", "---", scale));
}

TEST_P(ReadoutDrawing, TheNumberAlwaysHasFourDecimals) {
  readout->set_values_minimum_maximum_default_value_scale_type(-10, 20000, 0, 0);
  readout->set_description(make<NSString>("Tremolo Depth").get());
  readout->set_current_value(1234.5);
  EXPECT_TRUE(looks_like(*readout, "1234.5000", "Tremolo Depth", scale));
  readout->set_current_value(-0.25);
  EXPECT_TRUE(looks_like(*readout, "-0.2500", "Tremolo Depth", scale));
  readout->set_current_value(0.123449);
  EXPECT_TRUE(looks_like(*readout, "0.1234", "Tremolo Depth", scale));
}

TEST_P(ReadoutDrawing, DrawsQuietlyWhenItIsTooNarrowForABody) {
  std::vector<std::string> messages;
  const NSLogHook hook([&](std::string_view message) { messages.emplace_back(message); });
  const auto narrow = make<KV_Ondex_Parameter_Control_View>(NSMakeRect(0, 0, 8, 36));
  const DrawnView picture(*narrow, scale);
  EXPECT_EQ(picture.at(2.25, 18.25).alpha, 1);
  EXPECT_TRUE(messages.empty());
}

}  // namespace
}  // namespace ondex
