// SPDX-License-Identifier: MIT
#include "canvas.h"

namespace cocoa {
namespace {

TEST(Clip, IntersectsAndEmptiesThePath) {
  Canvas canvas(30, 30);
  CGContextRef c = canvas.context();
  CGContextMoveToPoint(c, 0, 0);
  CGContextAddLineToPoint(c, 30, 30);
  CGContextClipToRect(c, CGRectMake(0, 0, 20, 20));
  EXPECT_TRUE(CGContextIsPathEmpty(c));
  CGContextAddRect(c, CGRectMake(10, 10, 20, 20));
  CGContextClip(c);
  EXPECT_TRUE(CGContextIsPathEmpty(c));
  EXPECT_EQ(CGContextGetClipBoundingBox(c), CGRectMake(10, 10, 10, 10));
  CGContextFillRect(c, CGRectMake(0, 0, 30, 30));
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{10, 10, 20, 20}));
}

TEST(Clip, EvenOddLeavesTheHoleOut) {
  Canvas canvas(30, 30);
  CGContextRef c = canvas.context();
  CGContextAddRect(c, CGRectMake(0, 0, 30, 30));
  CGContextAddRect(c, CGRectMake(10, 10, 10, 10));
  CGContextEOClip(c);
  CGContextFillRect(c, CGRectMake(0, 0, 30, 30));
  EXPECT_EQ(canvas.at(5, 5), black_pixel);
  EXPECT_EQ(canvas.at(15, 15), clear_pixel);
}

TEST(Clip, ARectangleWithoutAreaLeavesNothing) {
  const auto nan = static_cast<CGFloat>(NAN);
  for (const CGRect rect : {CGRectMake(5, 5, 0, 10), CGRectMake(8, 5, -2, 10), CGRectMake(nan, 0, 5, 5),
                            CGRectMake(0, 0, nan, 5)}) {
    Canvas canvas(20, 20);
    CGContextRef c = canvas.context();
    CGContextSaveGState(c);
    CGContextClipToRect(c, rect);
    EXPECT_EQ(CGContextGetClipBoundingBox(c), CGRect{});
    CGContextFillRect(c, CGRectMake(0, 0, 20, 20));
    draw_and_release(c, axial({0, 0}, {0, 20}, [](CGFloat, CGFloat* rgba) { rgba[3] = 1; }));
    EXPECT_EQ(canvas.painted(), (Canvas::Extents{20, 20, 0, 0}));
    CGContextRestoreGState(c);
    CGContextFillRect(c, CGRectMake(0, 0, 20, 20));
    EXPECT_EQ(canvas.at(10, 10), black_pixel);
  }
}

TEST(Clip, AnEmptyPathLeavesItAsItWas) {
  Canvas canvas(10, 10);
  CGContextClip(canvas.context());
  CGContextEOClip(canvas.context());
  CGContextFillRect(canvas.context(), CGRectMake(0, 0, 10, 10));
  EXPECT_EQ(canvas.at(5, 5), black_pixel);
}

TEST(Clip, BoundingBoxIsInUserSpace) {
  Canvas canvas(40, 40, 2);
  CGContextRef c = canvas.context();
  EXPECT_EQ(CGContextGetClipBoundingBox(c), CGRectMake(0, 0, 20, 20));
  CGContextTranslateCTM(c, 5, 5);
  CGContextClipToRect(c, CGRectMake(1, 2, 3, 4));
  EXPECT_EQ(CGContextGetClipBoundingBox(c), CGRectMake(1, 2, 3, 4));
}

}  // namespace
}  // namespace cocoa
