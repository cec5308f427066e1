// SPDX-License-Identifier: MIT
#include "canvas.h"

namespace cocoa {
namespace {

constexpr Pixel blue{0, 0, 255, 255};

void fill_red(CGContextRef c, CGRect rect) {
  CGContextSetRGBFillColor(c, 1, 0, 0, 1);
  CGContextFillRect(c, rect);
}

TEST(Shadow, WithoutBlurIsACopyAndPositiveHeightMovesItUp) {
  Canvas canvas(60, 60);
  CGContextRef c = canvas.context();
  set_shadow(c, {5, 7}, 0, 0, 0, 1, 1);
  fill_red(c, CGRectMake(20, 20, 10, 10));
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{20, 20, 35, 37}));
  EXPECT_EQ(canvas.at(34, 36), blue);
  EXPECT_EQ(canvas.at(29, 29), red_pixel);
  EXPECT_EQ(canvas.at(34, 26), clear_pixel);
}

TEST(Shadow, BlurGrowsItByExactlyThatManyPixels) {
  for (const int blur : {1, 2, 5, 20}) {
    Canvas canvas(160, 120);
    CGContextRef c = canvas.context();
    CGContextClipToRect(c, CGRectMake(80, 0, 80, 120));
    set_shadow(c, {90, 20}, static_cast<CGFloat>(blur), 0, 0, 0, 1);
    fill_red(c, CGRectMake(10, 20, 40, 40));
    EXPECT_EQ(canvas.painted(), (Canvas::Extents{100 - blur, 40 - blur, 140 + blur, 80 + blur})) << blur;
  }
}

/// Averages over 2h + 1 values.
std::vector<double> averaged(const std::vector<double>& in, int h) {
  std::vector<double> out(in.size(), 0);
  for (int i = 0; i < static_cast<int>(in.size()); ++i)
    for (int k = std::max(0, i - h); k <= std::min(static_cast<int>(in.size()) - 1, i + h); ++k)
      out[static_cast<size_t>(i)] += in[static_cast<size_t>(k)] / (2 * h + 1);
  return out;
}

TEST(Shadow, BlurIsThreeAveragesWhoseHalfWidthsSumToIt) {
  Canvas canvas(60, 60);
  CGContextRef c = canvas.context();
  CGContextClipToRect(c, CGRectMake(0, 30, 60, 30));
  set_shadow(c, {0, 30}, 5, 0, 0, 0, 1);
  fill_red(c, CGRectMake(20, 10, 12, 6));
  std::vector<double> across(60, 0);
  std::vector<double> up(60, 0);
  std::fill(across.begin() + 20, across.begin() + 32, 1.0);
  std::fill(up.begin() + 40, up.begin() + 46, 1.0);
  across = averaged(averaged(averaged(across, 2), 2), 1);
  up = averaged(averaged(averaged(up, 2), 2), 1);
  for (int y = 30; y < 60; ++y) {
    for (int x = 0; x < 60; ++x)
      EXPECT_NEAR(canvas.at(x, y).alpha, 255 * across[static_cast<size_t>(x)] * up[static_cast<size_t>(y)], 1)
          << x << ", " << y;
  }
}

TEST(Shadow, OffsetAndBlurDoNotFollowTheTransformButTheScaleOfTheContext) {
  for (const int scale : {1, 2}) {
    Canvas canvas(60 * scale, 60 * scale, scale);
    CGContextRef c = canvas.context();
    CGContextScaleCTM(c, 10, -10);
    set_shadow(c, {-4, 6}, 0, 0, 0, 1, 1);
    fill_red(c, CGRectMake(2, -3, 1, 1));  // 20 to 30 across and upwards, in base space
    EXPECT_EQ(canvas.painted(), (Canvas::Extents{16 * scale, 20 * scale, 30 * scale, 36 * scale}));
  }
}

TEST(Shadow, FractionsOfAPixelMoveItByThatMuch) {
  for (const CGFloat blur : {CGFloat{0}, CGFloat{1}}) {
    Canvas canvas(60, 40);
    CGContextRef c = canvas.context();
    CGContextClipToRect(c, CGRectMake(25, 0, 35, 40));
    set_shadow(c, {20.25, 0}, blur, 0, 0, 0, 1);
    fill_red(c, CGRectMake(10, 10, 10, 10));
    double weight = 0;
    double moment = 0;
    for (int x = 25; x < 60; ++x) {
      weight += canvas.at(x, 15).alpha;
      moment += canvas.at(x, 15).alpha * (x + 0.5);
    }
    EXPECT_NEAR(weight, 10 * 255, 4);
    EXPECT_NEAR(moment / weight, 35.25, 0.02);
  }
}

TEST(Shadow, LandsOnlyInTheClipThatWasThereWhenItWasSet) {
  Canvas canvas(60, 60);
  CGContextRef c = canvas.context();
  CGContextClipToRect(c, CGRectMake(0, 0, 33, 60));
  set_shadow(c, {5, 0}, 0, 0, 0, 1, 1);
  fill_red(c, CGRectMake(20, 20, 10, 10));
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{20, 20, 33, 30}));
}

TEST(Shadow, OfAShapeOutsideTheClipLandsInsideIt) {
  Canvas canvas(60, 60);
  CGContextRef c = canvas.context();
  CGContextClipToRect(c, CGRectMake(30, 0, 30, 60));
  set_shadow(c, {30, 0}, 0, 0, 0, 1, 1);
  fill_red(c, CGRectMake(5, 20, 10, 10));
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{35, 20, 45, 30}));
  EXPECT_EQ(canvas.at(40, 25), blue);
}

TEST(Shadow, ALaterClipShapesItWithoutCuttingIt) {
  Canvas canvas(60, 60);
  CGContextRef c = canvas.context();
  set_shadow(c, {-4, -4}, 0, 0, 0, 1, 1);
  CGContextSaveGState(c);
  CGContextClipToRect(c, CGRectMake(20, 20, 10, 10));
  fill_red(c, CGRectMake(0, 0, 60, 60));
  CGContextRestoreGState(c);
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{16, 16, 30, 30}));
  EXPECT_EQ(canvas.at(17, 17), blue);
  EXPECT_EQ(canvas.at(25, 25), red_pixel);
}

TEST(Shadow, AShadingCastsOneInTheShapeOfItsClip) {
  Canvas canvas(80, 80);
  CGContextRef c = canvas.context();
  set_shadow(c, {-10, -10}, 0, 0, 0, 1, 1);
  CGContextAddEllipseInRect(c, CGRectMake(20, 20, 40, 40));
  CGContextClip(c);
  draw_and_release(c, axial(
                          {20, 20}, {60, 60},
                          [](CGFloat, CGFloat* rgba) {
                            rgba[0] = rgba[3] = 1;
                            rgba[1] = rgba[2] = 0;
                          },
                          true, true));
  for (int y = 0; y < 80; ++y) {
    for (int x = 0; x < 80; ++x) {
      const double shape = std::hypot(x + 0.5 - 40, y + 0.5 - 40);
      const double shadow = std::hypot(x + 0.5 - 30, y + 0.5 - 30);
      if (shape < 19) {
        EXPECT_EQ(canvas.at(x, y), red_pixel) << x << ", " << y;
      } else if (shape > 21 && shadow < 19) {
        EXPECT_EQ(canvas.at(x, y), blue) << x << ", " << y;
      } else if (shape > 21 && shadow > 21) {
        EXPECT_EQ(canvas.at(x, y), clear_pixel) << x << ", " << y;
      }
    }
  }
}

TEST(Shadow, AShadingLooksAsItDoesWithoutOne) {
  const auto ramp = [](CGFloat t, CGFloat* rgba) {
    rgba[0] = t;
    rgba[1] = 1 - t;
    rgba[2] = 0;
    rgba[3] = 1;
  };
  for (const bool is_round : {true, false}) {
    Canvas canvas(80, 80);
    CGContextRef c = canvas.context();
    const auto draw = [&] {
      draw_and_release(c, is_round ? radial({40, 40}, 70, {40, 40}, 0, ramp)
                                   : axial({10, 20}, {70, 50}, ramp, true, true));
    };
    // With a hole, a row is painted in several parts.
    CGContextAddRect(c, CGRectMake(20, 20, 50, 40));
    CGContextAddRect(c, CGRectMake(35, 30, 23, 15));
    CGContextEOClip(c);
    draw();
    std::vector<uint32_t> alone = canvas.pixels();
    set_shadow(c, {-6, 4}, 3, 0, 0, 1, 1);
    draw();
    EXPECT_EQ(canvas.pixels(), alone) << is_round;
  }
}

TEST(Shadow, FillAndStrokeTogetherCastOne) {
  Canvas canvas(80, 40);
  CGContextRef c = canvas.context();
  CGContextSetLineWidth(c, 4);
  set_shadow(c, {40, 0}, 0, 0, 0, 0, 0.5);
  CGContextAddRect(c, CGRectMake(10, 10, 20, 20));
  CGContextDrawPath(c, kCGPathFillStroke);
  for (int x = 48; x < 72; ++x)
    EXPECT_EQ(canvas.at(x, 20).alpha, 128) << x;
  EXPECT_EQ(canvas.at(47, 20), clear_pixel);
  EXPECT_EQ(canvas.at(72, 20), clear_pixel);
}

TEST(Shadow, AlphaIsThatOfItsColourTheObjectAndTheState) {
  Canvas canvas(60, 30);
  CGContextRef c = canvas.context();
  CGContextSetAlpha(c, 0.5);
  set_shadow(c, {30, 0}, 0, 0, 0, 0, 0.5);
  CGContextSetRGBFillColor(c, 1, 0, 0, 0.8F);
  CGContextFillRect(c, CGRectMake(5, 5, 20, 20));
  EXPECT_NEAR(canvas.at(45, 15).alpha, 0.5 * 0.5 * 0.8 * 255, 1);
  EXPECT_NEAR(canvas.at(15, 15).alpha, 0.5 * 0.8 * 255, 1);
}

TEST(Shadow, IsTurnedOffByANullOrTransparentColourAndByRestoring) {
  Canvas canvas(60, 30);
  CGContextRef c = canvas.context();
  set_shadow(c, {30, 0}, 0, 0, 0, 0, 1);
  CGContextSetShadowWithColor(c, {30, 0}, 0, nullptr);
  fill_red(c, CGRectMake(5, 5, 20, 20));
  set_shadow(c, {30, 0}, 0, 0, 0, 0, 0);
  fill_red(c, CGRectMake(5, 5, 20, 20));
  CGContextSaveGState(c);
  set_shadow(c, {30, 0}, 0, 0, 0, 0, 1);
  CGContextRestoreGState(c);
  fill_red(c, CGRectMake(5, 5, 20, 20));
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{5, 5, 25, 25}));
}

TEST(Shadow, OfALaterObjectFallsOnEarlierOnes) {
  Canvas canvas(60, 60);
  CGContextRef c = canvas.context();
  set_shadow(c, {-5, 0}, 0, 0, 0, 1, 1);
  fill_red(c, CGRectMake(10, 10, 20, 20));
  fill_red(c, CGRectMake(30, 10, 20, 20));
  EXPECT_EQ(canvas.at(27, 20), blue);
  EXPECT_EQ(canvas.at(20, 20), red_pixel);
}

}  // namespace
}  // namespace cocoa
