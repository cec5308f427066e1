// SPDX-License-Identifier: MIT
#include <cmath>
#include <functional>
#include <random>
#include <string>

#include "canvas.h"

namespace cocoa {
namespace {

TEST(Robustness, NumbersThatAreNoneDoNotSpoilTheContext) {
  constexpr unsigned seed = 20240607;
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  Canvas canvas(40, 40);
  CGContextRef c = canvas.context();
  const auto number = [&]() -> CGFloat {
    constexpr CGFloat odd[] = {
        NAN, INFINITY, -INFINITY, static_cast<CGFloat>(3e38), static_cast<CGFloat>(1e-38), 0, -5};
    return random() % 3 ? static_cast<CGFloat>(random() % 80) - 20 : odd[random() % std::size(odd)];
  };
  const auto rect = [&] { return CGRectMake(number(), number(), number(), number()); };
  std::string open;  // what is to be restored or ended, innermost last
  const std::function<void()> close = [&] {
    if (open.empty())
      return;
    if (open.back() == 's') {
      CGContextRestoreGState(c);
    } else {
      CGContextEndTransparencyLayer(c);
    }
    open.pop_back();
  };
  const std::function<void()> operations[] = {
      [&] { CGContextMoveToPoint(c, number(), number()); },
      [&] { CGContextAddLineToPoint(c, number(), number()); },
      [&] { CGContextAddArcToPoint(c, number(), number(), number(), number(), number()); },
      [&] { CGContextAddEllipseInRect(c, rect()); },
      [&] { CGContextAddRect(c, rect()); },
      [&] { CGContextClosePath(c); },
      [&] { CGContextClip(c); },
      [&] { CGContextClipToRect(c, rect()); },
      [&] {
        CGContextDrawPath(c, random() % 2 ? kCGPathFillStroke : random() % 2 ? kCGPathFill : kCGPathStroke);
      },
      [&] { CGContextScaleCTM(c, number(), number()); },
      [&] { CGContextTranslateCTM(c, number(), number()); },
      [&] { rotate(c, number()); },
      [&] { CGContextSetLineWidth(c, number()); },
      [&] { CGContextSetAlpha(c, number()); },
      [&] {
        set_shadow(c, {number(), number()}, number(), 0, 0, 0, number());
      },
      [&] {
        CGContextSaveGState(c);
        open.push_back('s');
      },
      [&] {
        CGContextBeginTransparencyLayer(c, nullptr);
        open.push_back('l');
      },
      close,
      [&] { CGContextFillRect(c, rect()); },
      [&] { CGContextClearRect(c, rect()); },
      [&] {
        draw_and_release(c,
                         axial(rect().origin, rect().origin, [](CGFloat t, CGFloat* rgba) { rgba[3] = t; }));
      },
      [&] {
        draw_and_release(c, radial(
                                rect().origin, number(), rect().origin, number(),
                                [](CGFloat t, CGFloat* rgba) { rgba[3] = t; }, true, true));
      },
  };
  for (int round = 0; round < 100; ++round) {
    CGContextSaveGState(c);
    for (int i = 0; i < 40; ++i)
      operations[random() % std::size(operations)]();
    while (!open.empty())
      close();
    CGContextRestoreGState(c);
  }
  CGContextFillRect(c, CGRectMake(0, 0, 40, 40));
  EXPECT_EQ(canvas.at(20, 20), black_pixel);
  draw_and_release(c,
                   axial(
                       {0, 0}, {0, 40}, [](CGFloat, CGFloat* rgba) { rgba[0] = rgba[3] = 1; }, true, true));
  EXPECT_EQ(canvas.at(20, 20), red_pixel);
}

TEST(Robustness, ATransformWithNumbersThatAreNoneIsIgnored) {
  Canvas canvas(4, 4);
  CGContextTranslateCTM(canvas.context(), static_cast<CGFloat>(NAN), 0);
  CGContextScaleCTM(canvas.context(), static_cast<CGFloat>(INFINITY), 1);
  CGContextFillRect(canvas.context(), CGRectMake(0, 0, 4, 4));
  EXPECT_EQ(canvas.at(1, 1), black_pixel);
}

TEST(Robustness, NullIsAcceptedEverywhere) {
  CGContextSaveGState(nullptr);
  CGContextRestoreGState(nullptr);
  CGContextFillRect(nullptr, CGRectMake(0, 0, 1, 1));
  CGContextClipToRect(nullptr, CGRectMake(0, 0, 1, 1));
  CGContextDrawShading(nullptr, nullptr);
  CGContextBeginTransparencyLayer(nullptr, nullptr);
  CGContextEndTransparencyLayer(nullptr);
  CGContextStrokeRectWithWidth(nullptr, CGRectMake(0, 0, 1, 1), 2);
  CGContextRelease(nullptr);
  CGShadingRelease(nullptr);
  CGFunctionRelease(nullptr);
  CGColorRelease(nullptr);
  CGColorSpaceRelease(nullptr);
  CGPathRelease(nullptr);
  Canvas canvas(4, 4);
  CGContextDrawShading(canvas.context(), nullptr);
  CGContextAddPath(canvas.context(), nullptr);
  EXPECT_TRUE(CGContextIsPathEmpty(nullptr));
  EXPECT_EQ(CGContextGetClipBoundingBox(nullptr), CGRect{});
  EXPECT_EQ(canvas.at(1, 1), clear_pixel);
}

}  // namespace
}  // namespace cocoa
