// SPDX-License-Identifier: MIT
#include <numbers>

#include "canvas.h"

namespace cocoa {
namespace {

/// Red rises, green falls, blue is highest in the middle.
void ramp(CGFloat t, CGFloat* rgba) {
  rgba[0] = t;
  rgba[1] = 1 - t;
  rgba[2] = 1 - std::abs(1 - 2 * t);
  rgba[3] = 1;
}

Pixel ramp_pixel(double t) {
  return {byte_of(t), byte_of(1 - t), byte_of(1 - std::abs(1 - 2 * t)), 255};
}

TEST(AxialShading, UprightAgreesWithItsFunctionAtEveryPixelCentre) {
  for (const double scale : {1.0, 1.5, 2.0}) {
    Canvas canvas(30, 60, scale);
    draw_and_release(canvas.context(), axial({0, 5}, {0, 15}, ramp));
    for (int y = 0; y < 60; ++y) {
      const double t = ((y + 0.5) / scale - 5) / 10;
      const Pixel expected = t >= 0 && t <= 1 ? ramp_pixel(t) : clear_pixel;
      for (const int x : {0, 17, 29})
        expect_near(canvas.at(x, y), expected, 1, x, y);
    }
  }
}

TEST(AxialShading, LevelRunsTheWayItsPointsDo) {
  Canvas canvas(40, 10);
  draw_and_release(canvas.context(), axial({35, 3}, {5, 3}, ramp));
  for (int x = 0; x < 40; ++x) {
    const double t = (35 - (x + 0.5)) / 30;
    expect_near(canvas.at(x, 4), t >= 0 && t <= 1 ? ramp_pixel(t) : clear_pixel, 1, x, 4);
  }
}

TEST(AxialShading, DiagonalAgreesWithItsFunctionAtEveryPixelCentre) {
  Canvas canvas(50, 50);
  // Eight cycles, as steep as the editor's steepest rule.
  const auto ribs = [](double t) { return std::abs(std::cos(t * 8 * std::numbers::pi)); };
  draw_and_release(canvas.context(), axial({4, 4}, {46, 40}, [&](CGFloat t, CGFloat* rgba) {
                     rgba[0] = rgba[1] = rgba[2] = static_cast<CGFloat>(ribs(static_cast<double>(t)));
                     rgba[3] = 1;
                   }));
  for (int y = 0; y < 50; ++y) {
    for (int x = 0; x < 50; ++x) {
      const double t = ((x + 0.5 - 4) * 42 + (y + 0.5 - 4) * 36) / (42.0 * 42 + 36.0 * 36);
      if (std::abs(t) < 1e-9 || std::abs(t - 1) < 1e-9)
        continue;
      const int level = byte_of(ribs(t));
      expect_near(canvas.at(x, y), t > 0 && t < 1 ? Pixel{level, level, level, 255} : clear_pixel, 1, x, y);
    }
  }
}

TEST(AxialShading, PaintsTheRowsAndColumnsThatItsEndsCut) {
  for (const bool upright : {false, true}) {
    for (const double part : {0.05, 0.3, 0.5, 0.7, 0.95}) {
      Canvas canvas(20, 20);
      const auto start = static_cast<CGFloat>(5 + part);
      const auto end = static_cast<CGFloat>(12 + part);
      draw_and_release(canvas.context(),
                       upright ? axial({0, start}, {0, end}, ramp) : axial({start, 0}, {end, 0}, ramp));
      for (int i = 0; i < 20; ++i) {
        const double t = std::clamp((i + 0.5 - 5 - part) / 7, 0.0, 1.0);
        expect_near(upright ? canvas.at(3, i) : canvas.at(i, 3),
                    i >= 5 && i <= 12 ? ramp_pixel(t) : clear_pixel, 1, i, 3);
      }
    }
  }
}

TEST(AxialShading, IsEvaluatedOnceARowOrColumn) {
  Canvas canvas(40, 25);
  int calls = 0;
  const auto counting = [&](CGFloat t, CGFloat* rgba) {
    ++calls;
    ramp(t, rgba);
  };
  draw_and_release(canvas.context(), axial({0, 0}, {0, 25}, counting));
  EXPECT_EQ(calls, 25);
  calls = 0;
  draw_and_release(canvas.context(), axial({0, 0}, {40, 0}, counting));
  EXPECT_EQ(calls, 40);
  calls = 0;
  CGContextClipToRect(canvas.context(), CGRectMake(3, 4, 10, 6));
  draw_and_release(canvas.context(), axial({0, 0}, {0, 25}, counting));
  EXPECT_EQ(calls, 6);
}

TEST(AxialShading, AStepStaysSharp) {
  Canvas canvas(4, 100);
  draw_and_release(canvas.context(), axial({0, 0}, {0, 100}, [](CGFloat t, CGFloat* rgba) {
                     rgba[0] = rgba[1] = rgba[2] = t >= 0.35F && t <= 0.65F ? 1 : 0;
                     rgba[3] = 1;
                   }));
  EXPECT_EQ(canvas.at(1, 34), black_pixel);
  EXPECT_EQ(canvas.at(1, 35), white_pixel);
  EXPECT_EQ(canvas.at(1, 64), white_pixel);
  EXPECT_EQ(canvas.at(1, 65), black_pixel);
}

TEST(AxialShading, TranslucentColoursLieOverWhatIsThere) {
  Canvas canvas(4, 20);
  canvas.fill(0xFF4080C0);
  draw_and_release(canvas.context(), axial({0, 0}, {0, 20}, [](CGFloat t, CGFloat* rgba) {
                     rgba[0] = rgba[1] = rgba[2] = 1;
                     rgba[3] = t;
                   }));
  for (int y = 0; y < 20; ++y) {
    const double alpha = (y + 0.5) / 20;
    const auto over = [alpha](int below) { return byte_of(alpha + (1 - alpha) * below / 255); };
    expect_near(canvas.at(2, y), {over(0x40), over(0x80), over(0xC0), 255}, 1, 2, y);
  }
}

TEST(AxialShading, IsPlacedInTheUserSpaceOfTheDrawing) {
  Canvas canvas(40, 40);
  CGShadingRef shading = axial({0, 0}, {1, 0}, ramp);
  CGContextTranslateCTM(canvas.context(), 10, 0);
  CGContextScaleCTM(canvas.context(), 20, 1);
  draw_and_release(canvas.context(), shading);
  for (int x = 0; x < 40; ++x) {
    const double t = (x + 0.5 - 10) / 20;
    expect_near(canvas.at(x, 7), t > 0 && t < 1 ? ramp_pixel(t) : clear_pixel, 1, x, 7);
  }
}

TEST(AxialShading, PaintsOnlyInsideTheClip) {
  Canvas canvas(60, 40);
  CGContextClipToRect(canvas.context(), CGRectMake(30, 0, 30, 40));
  CGContextAddEllipseInRect(canvas.context(), CGRectMake(10, 5, 40, 30));
  CGContextClip(canvas.context());
  draw_and_release(canvas.context(), axial({10, 0}, {50, 0}, ramp));
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 60; ++x) {
      // How far inside the ellipse, in units of its radii, with room for the edge pixels.
      const double r = std::hypot((x + 0.5 - 30) / 20, (y + 0.5 - 20) / 15);
      if (x < 30 || r > 1.08) {
        EXPECT_EQ(canvas.at(x, y), clear_pixel) << x << ", " << y;
      } else if (r < 0.92) {
        expect_near(canvas.at(x, y), ramp_pixel((x + 0.5 - 10) / 40), 1, x, y);
      }
    }
  }
}

TEST(AxialShading, ReachesEveryPixelOfAClipBetweenPixels) {
  Canvas canvas(20, 20);
  CGContextClipToRect(canvas.context(), CGRectMake(4.5, 4.5, 7.5, 7.5));
  draw_and_release(canvas.context(), axial({0, 0}, {0, 20}, [](CGFloat, CGFloat* rgba) {
                     rgba[0] = rgba[1] = rgba[2] = rgba[3] = 1;
                   }));
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{4, 4, 12, 12}));
  EXPECT_NEAR(canvas.at(4, 8).alpha, 128, 2);
  EXPECT_EQ(canvas.at(8, 8), white_pixel);
}

TEST(AxialShading, NeighboursLeaveNoSeamAtAnyScale) {
  for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0}) {
    const int pixels = static_cast<int>(std::ceil(40 * scale));
    Canvas canvas(pixels, pixels, scale);
    const auto fill = [&](CGRect rect, CGPoint start, CGPoint end) {
      CGContextSaveGState(canvas.context());
      CGContextClipToRect(canvas.context(), rect);
      draw_and_release(canvas.context(),
                       axial(start, end, [](CGFloat, CGFloat* rgba) { rgba[1] = rgba[3] = 1; }));
      CGContextRestoreGState(canvas.context());
    };
    fill(CGRectMake(0, 0, 5, 40), {5, 0}, {0, 0});
    fill(CGRectMake(5, 0, 30, 40), {5, 0}, {5, 40});
    fill(CGRectMake(35, 0, 5, 40), {35, 0}, {40, 0});
    for (int x = 0; x < pixels; ++x) {
      EXPECT_EQ(canvas.at(x, 10), (Pixel{0, 255, 0, 255})) << x << " at " << scale;
    }
  }
}

TEST(AxialShading, WithoutLengthPaintsNothing) {
  Canvas canvas(10, 10);
  draw_and_release(canvas.context(), axial({5, 5}, {5, 5}, ramp, true, true));
  draw_and_release(canvas.context(), axial({5, static_cast<CGFloat>(NAN)}, {5, 9}, ramp, true, true));
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{10, 10, 0, 0}));
}

TEST(AxialShading, TakesTheAlphaOfTheState) {
  Canvas canvas(4, 4);
  CGContextSetAlpha(canvas.context(), 0.5);
  draw_and_release(canvas.context(), axial({0, 0}, {0, 4}, [](CGFloat, CGFloat* rgba) {
                     rgba[0] = rgba[3] = 1;
                     rgba[1] = rgba[2] = 0;
                   }));
  EXPECT_EQ(canvas.at(1, 1), (Pixel{128, 0, 0, 128}));
}

TEST(AxialShading, EachEndIsExtendedOnItsOwn) {
  for (const bool start : {false, true}) {
    for (const bool end : {false, true}) {
      Canvas canvas(30, 4);
      draw_and_release(canvas.context(), axial({10, 0}, {20, 0}, ramp, start, end));
      EXPECT_EQ(canvas.at(9, 1), start ? ramp_pixel(0) : clear_pixel);
      EXPECT_EQ(canvas.at(0, 1), start ? ramp_pixel(0) : clear_pixel);
      EXPECT_EQ(canvas.at(20, 1), end ? ramp_pixel(1) : clear_pixel);
      EXPECT_EQ(canvas.at(29, 1), end ? ramp_pixel(1) : clear_pixel);
    }
  }
}

TEST(RadialShading, FromTheRimToTheCentreAgreesWithItsFunction) {
  Canvas canvas(100, 100);
  draw_and_release(canvas.context(), radial({50, 48}, 45, {50, 48}, 0, ramp));
  for (int y = 0; y < 100; ++y) {
    for (int x = 0; x < 100; ++x) {
      const double distance = std::hypot(x + 0.5 - 50, y + 0.5 - 48);
      // Half a pixel beyond the end counts as the end.
      if (std::abs(distance - 45.5) < 0.01)
        continue;
      const double t = std::max(0.0, 1 - distance / 45);
      expect_near(canvas.at(x, y), distance < 45.5 ? ramp_pixel(t) : clear_pixel, 1, x, y);
    }
  }
}

TEST(RadialShading, InAClipOfItsOwnSizeIsAsSmoothAsAColour) {
  for (const double scale : {0.7, 1.0, 1.3, 2.0}) {
    const auto red_only = [](CGFloat, CGFloat* rgba) {
      rgba[0] = rgba[3] = 1;
      rgba[1] = rgba[2] = 0;
    };
    const CGRect disc = {{CGFloat(5.2), CGFloat(3.1)}, {40, 40}};
    Canvas shaded(80, 80, scale);
    CGContextAddEllipseInRect(shaded.context(), disc);
    CGContextClip(shaded.context());
    draw_and_release(shaded.context(),
                     radial({CGFloat(25.2), CGFloat(23.1)}, 20, {CGFloat(25.2), CGFloat(23.1)}, 0, red_only));
    Canvas filled(80, 80, scale);
    CGContextSetRGBFillColor(filled.context(), 1, 0, 0, 1);
    fill_ellipse(filled.context(), disc);
    // Of a pixel whose centre lies further out than half a pixel, the disc covers but a corner.
    for (int y = 0; y < 80; ++y) {
      for (int x = 0; x < 80; ++x)
        expect_near(shaded.at(x, y), filled.at(x, y), 12, x, y);
    }
  }
}

TEST(RadialShading, TowardsACircleEndsOnItToo) {
  Canvas canvas(60, 60);
  draw_and_release(canvas.context(), radial({30, 30}, CGFloat(20.2), {30, 30}, CGFloat(9.8), ramp));
  // Along the row through the middle: pixel centres 20.5, 19.5, 10.5, 9.5 and 8.5 to the right of it.
  EXPECT_EQ(canvas.at(51, 30), clear_pixel);
  EXPECT_EQ(canvas.at(50, 30), ramp_pixel(0));
  expect_near(canvas.at(49, 30), ramp_pixel((20.2 - std::hypot(19.5, 0.5)) / 10.4), 1, 49, 30);
  expect_near(canvas.at(40, 30), ramp_pixel((20.2 - std::hypot(10.5, 0.5)) / 10.4), 1, 40, 30);
  EXPECT_EQ(canvas.at(39, 30), ramp_pixel(1));
  EXPECT_EQ(canvas.at(38, 30), clear_pixel);
}

TEST(RadialShading, TowardsAPointOffTheCentre) {
  // The menu's cap: circles around (15 − 14.25 t, 10) with radius 15 (1 − t). On their common axis, to the
  // left, circle t ends at 15 − 14.25 t − 15 + 15 t = 0.75 t; to the right at 30 − 29.25 t.
  Canvas canvas(40, 20);
  draw_and_release(canvas.context(), radial({15, 10.5}, 15, {0.75, 10.5}, 0, ramp));
  for (int x = 1; x < 30; ++x)
    expect_near(canvas.at(x, 10), ramp_pixel((30 - (x + 0.5)) / 29.25), 1, x, 10);
  EXPECT_EQ(canvas.at(30, 10), clear_pixel);
}

TEST(RadialShading, EachEndIsExtendedOnItsOwn) {
  for (const bool start : {false, true}) {
    for (const bool end : {false, true}) {
      Canvas canvas(60, 60);
      draw_and_release(canvas.context(), radial({30, 30}, 20, {30, 30}, 10, ramp, start, end));
      EXPECT_EQ(canvas.at(55, 30), start ? ramp_pixel(0) : clear_pixel);
      EXPECT_EQ(canvas.at(30, 30), end ? ramp_pixel(1) : clear_pixel);
      expect_near(canvas.at(45, 30), ramp_pixel((20 - std::hypot(15.5, 0.5)) / 10), 1, 45, 30);
    }
  }
}

TEST(RadialShading, CirclesOfOneSizeMakeAStripe) {
  // Later circles lie over earlier ones: what shows on the axis is the circle whose left side is there.
  Canvas canvas(80, 21);
  draw_and_release(canvas.context(), radial({10, 10.5}, 5, {60, 10.5}, 5, ramp));
  for (int x = 6; x < 54; ++x)
    expect_near(canvas.at(x, 10), ramp_pixel((x + 0.5 - 5) / 50), 1, x, 10);
  EXPECT_EQ(canvas.at(62, 10).alpha, 255);
  EXPECT_EQ(canvas.at(66, 10), clear_pixel);
  EXPECT_EQ(canvas.at(30, 4), clear_pixel);
}

TEST(Shading, NeedsAFunctionThatFitsItsColourSpace) {
  CGColorSpaceRef rgb = CGColorSpaceCreateDeviceRGB();
  CGColorSpaceRef gray = CGColorSpaceCreateDeviceGray();
  CGFunctionRef four = function_of(ramp);
  EXPECT_EQ(CGShadingCreateAxial(gray, {}, {1, 0}, four, false, false), nullptr);
  EXPECT_EQ(CGShadingCreateAxial(nullptr, {}, {1, 0}, four, false, false), nullptr);
  EXPECT_EQ(CGShadingCreateAxial(rgb, {}, {1, 0}, nullptr, false, false), nullptr);
  EXPECT_EQ(CGShadingCreateRadial(rgb, {}, 1, {}, 0, nullptr, false, false), nullptr);
  CGFunctionRelease(four);
  CGColorSpaceRelease(rgb);
  CGColorSpaceRelease(gray);
}

TEST(Shading, KeepsItsFunctionAndTheFunctionItsInfo) {
  int released = 0;
  const CGFunctionCallbacks callbacks = {0,
                                         [](void*, const CGFloat* in, CGFloat* out) {
                                           out[0] = out[1] = out[2] = *in;
                                           out[3] = 1;
                                         },
                                         [](void* info) { ++*static_cast<int*>(info); }};
  CGFunctionRef function = CGFunctionCreate(&released, 1, nullptr, 4, nullptr, &callbacks);
  CGColorSpaceRef space = CGColorSpaceCreateDeviceRGB();
  CGShadingRef shading = CGShadingCreateAxial(space, {0, 0}, {10, 0}, function, false, false);
  CGFunctionRelease(function);
  CGColorSpaceRelease(space);
  EXPECT_EQ(released, 0);
  Canvas canvas(10, 2);
  CGContextDrawShading(canvas.context(), shading);
  EXPECT_NEAR(canvas.at(5, 0).red, byte_of(0.55), 1);
  CGShadingRelease(shading);
  EXPECT_EQ(released, 1);
}

TEST(Function, ClampsItsResultsToItsRange) {
  Canvas canvas(4, 2);
  draw_and_release(canvas.context(), axial({0, 0}, {4, 0}, [](CGFloat, CGFloat* rgba) {
                     rgba[0] = 3;
                     rgba[1] = -2;
                     rgba[2] = static_cast<CGFloat>(NAN);
                     rgba[3] = 1.5;
                   }));
  EXPECT_EQ(canvas.at(2, 0), red_pixel);
}

TEST(Function, RefusesWhatItCannotCallAndLeavesTheInfoAlone) {
  static int released;
  released = 0;
  CGFunctionCallbacks callbacks = {1, [](void*, const CGFloat*, CGFloat*) {}, [](void*) { ++released; }};
  EXPECT_EQ(CGFunctionCreate(&callbacks, 1, nullptr, 4, nullptr, &callbacks), nullptr);
  callbacks.version = 0;
  EXPECT_EQ(CGFunctionCreate(&callbacks, 0, nullptr, 4, nullptr, &callbacks), nullptr);
  EXPECT_EQ(CGFunctionCreate(&callbacks, 1, nullptr, 0, nullptr, &callbacks), nullptr);
  EXPECT_EQ(CGFunctionCreate(&callbacks, 1, nullptr, 4, nullptr, nullptr), nullptr);
  callbacks.evaluate = nullptr;
  EXPECT_EQ(CGFunctionCreate(&callbacks, 1, nullptr, 4, nullptr, &callbacks), nullptr);
  EXPECT_EQ(released, 0);
}

}  // namespace
}  // namespace cocoa
