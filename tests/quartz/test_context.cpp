// SPDX-License-Identifier: MIT
#include <array>
#include <initializer_list>

#include "canvas.h"

namespace cocoa {
namespace {

TEST(Stroke, IsOnePointWideAndStraddlesThePathByDefault) {
  Canvas canvas(20, 20);
  CGContextRef c = canvas.context();
  CGContextMoveToPoint(c, 5, 10.5);
  CGContextAddLineToPoint(c, 15, 10.5);
  CGContextStrokePath(c);
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{5, 10, 15, 11}));  // butt caps
  EXPECT_EQ(canvas.at(7, 10), black_pixel);
}

TEST(Stroke, CapsReachHalfTheWidthBeyondTheEnds) {
  for (const auto cap : {kCGLineCapRound, kCGLineCapSquare}) {
    Canvas canvas(30, 20);
    CGContextRef c = canvas.context();
    CGContextSetLineWidth(c, 6);
    CGContextSetLineCap(c, cap);
    CGContextMoveToPoint(c, 10, 10);
    CGContextAddLineToPoint(c, 20, 10);
    CGContextStrokePath(c);
    EXPECT_EQ(canvas.painted(), (Canvas::Extents{7, 7, 23, 13}));
    EXPECT_EQ(canvas.at(7, 7).alpha > 200, cap == kCGLineCapSquare);
  }
}

TEST(Stroke, JoinsAreMitredUnlessAskedOtherwise) {
  const auto corner = [](CGLineJoin join) {
    Canvas canvas(30, 30);
    CGContextRef c = canvas.context();
    CGContextSetLineWidth(c, 8);
    CGContextSetLineJoin(c, join);
    CGContextMoveToPoint(c, 5, 10);
    CGContextAddLineToPoint(c, 20, 10);
    CGContextAddLineToPoint(c, 20, 25);
    CGContextStrokePath(c);
    return canvas.at(23, 6).alpha;
  };
  EXPECT_EQ(corner(kCGLineJoinMiter), 255);
  EXPECT_LT(corner(kCGLineJoinRound), 100);
  EXPECT_EQ(corner(kCGLineJoinBevel), 0);
}

TEST(Stroke, WidthIsInTheUserSpaceOfTheStroke) {
  Canvas canvas(40, 40);
  CGContextRef c = canvas.context();
  CGContextMoveToPoint(c, 20, 5);
  CGContextAddLineToPoint(c, 20, 35);
  CGContextScaleCTM(c, 4, 1);
  CGContextSetLineWidth(c, 2);
  CGContextStrokePath(c);
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{16, 5, 24, 35}));
}

TEST(Fill, ClosesOpenSubpathsAndEmptiesThePath) {
  Canvas canvas(20, 20);
  CGContextRef c = canvas.context();
  CGContextMoveToPoint(c, 0, 0);
  CGContextAddLineToPoint(c, 20, 0);
  CGContextAddLineToPoint(c, 20, 20);
  CGContextFillPath(c);
  EXPECT_EQ(canvas.at(15, 3), black_pixel);
  EXPECT_EQ(canvas.at(3, 15), clear_pixel);
  EXPECT_TRUE(CGContextIsPathEmpty(c));
}

TEST(DrawPath, ModesFillStrokeOrBoth) {
  const auto draw = [](CGPathDrawingMode mode) {
    Canvas canvas(30, 30);
    CGContextRef c = canvas.context();
    CGContextSetRGBFillColor(c, 1, 0, 0, 1);
    CGContextSetRGBStrokeColor(c, 0, 0, 1, 1);
    CGContextSetLineWidth(c, 2);
    CGContextAddRect(c, CGRectMake(5, 5, 20, 20));
    CGContextAddRect(c, CGRectMake(10, 10, 10, 10));
    CGContextDrawPath(c, mode);
    return std::array{canvas.at(15, 15), canvas.at(7, 7), canvas.at(5, 15)};
  };
  constexpr Pixel blue{0, 0, 255, 255};
  EXPECT_EQ(draw(kCGPathFill), (std::array{red_pixel, red_pixel, red_pixel}));
  EXPECT_EQ(draw(kCGPathStroke), (std::array{clear_pixel, clear_pixel, blue}));
  EXPECT_EQ(draw(kCGPathFillStroke), (std::array{red_pixel, red_pixel, blue}));
}

TEST(State, SaveAndRestoreBringBackEverythingButThePath) {
  Canvas canvas(40, 40);
  CGContextRef c = canvas.context();
  const CGAffineTransform before = CGContextGetCTM(c);
  CGContextSetRGBFillColor(c, 1, 0, 0, 1);
  CGContextSaveGState(c);
  CGContextClipToRect(c, CGRectMake(0, 0, 5, 5));
  CGContextTranslateCTM(c, 7, 7);
  CGContextSetRGBFillColor(c, 0, 1, 0, 1);
  CGContextSetAlpha(c, 0.2F);
  CGContextSetLineWidth(c, 9);
  set_shadow(c, {3, 3}, 0, 0, 0, 1, 1);
  CGContextMoveToPoint(c, 3, 3);  // (10, 10) outside
  CGContextRestoreGState(c);
  EXPECT_EQ(CGContextGetCTM(c), before);
  CGContextAddLineToPoint(c, 20, 10);
  CGContextAddLineToPoint(c, 20, 20);
  CGContextAddLineToPoint(c, 10, 20);
  CGContextFillPath(c);
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{10, 10, 20, 20}));
  EXPECT_EQ(canvas.at(15, 15), red_pixel);
}

TEST(State, RestoringMoreThanWasSavedDoesNothing) {
  Canvas canvas(10, 10);
  CGContextRef c = canvas.context();
  CGContextSetRGBFillColor(c, 1, 0, 0, 1);
  CGContextRestoreGState(c);
  CGContextRestoreGState(c);
  CGContextFillRect(c, CGRectMake(0, 0, 10, 10));
  EXPECT_EQ(canvas.at(5, 5), red_pixel);
}

TEST(State, TransformsMultiplyInFrontOfEarlierOnes) {
  Canvas canvas(10, 10, 2);
  CGContextRef c = canvas.context();
  EXPECT_EQ(CGContextGetCTM(c), CGAffineTransformIdentity);
  CGContextTranslateCTM(c, 10, 20);
  CGContextScaleCTM(c, 2, 3);
  EXPECT_EQ(CGContextGetCTM(c), (CGAffineTransform{2, 0, 0, 3, 10, 20}));
  CGContextConcatCTM(c, CGAffineTransformMakeTranslation(1, 1));
  EXPECT_EQ(CGContextGetCTM(c), (CGAffineTransform{2, 0, 0, 3, 12, 23}));
}

TEST(State, PointsOfThePathStayWhereTheyWereAdded) {
  Canvas canvas(30, 30);
  CGContextRef c = canvas.context();
  CGContextAddRect(c, CGRectMake(5, 5, 10, 10));
  CGContextTranslateCTM(c, 10, 10);
  CGContextFillPath(c);
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{5, 5, 15, 15}));
}

TEST(State, RotationTurnsCounterClockwise) {
  Canvas canvas(20, 20);
  CGContextRef c = canvas.context();
  CGContextTranslateCTM(c, 10, 10);
  rotate(c, static_cast<CGFloat>(M_PI / 2));
  CGContextFillRect(c, CGRectMake(0, 0, 8, 4));
  EXPECT_EQ(canvas.at(8, 15), black_pixel);
  EXPECT_EQ(canvas.at(12, 15), clear_pixel);
}

TEST(Antialiasing, IsOnUntilTurnedOff) {
  for (const bool smooth : {true, false}) {
    Canvas canvas(10, 10);
    CGContextRef c = canvas.context();
    if (!smooth)
      CGContextSetShouldAntialias(c, false);
    CGContextFillRect(c, CGRectMake(2.25, 2, 5, 5));
    const int edge = canvas.at(2, 4).alpha;
    if (smooth) {
      EXPECT_NEAR(edge, 191, 2);
    } else {
      EXPECT_TRUE(edge == 0 || edge == 255);
    }
  }
}

TEST(Scale, PointsBecomeThatManyPixels) {
  Canvas canvas(33, 33, 1.5);  // 22 points
  CGContextRef c = canvas.context();
  CGContextFillRect(c, CGRectMake(2, 4, 6, 8));
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{3, 6, 12, 18}));
}

TEST(Colour, SpacesHaveTheirOwnComponents) {
  const auto stroked = [](CGColorSpaceRef space, size_t count, std::initializer_list<CGFloat> components) {
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(space), count);
    CGColorRef color = CGColorCreate(space, components.begin());
    CGColorSpaceRelease(space);
    Canvas canvas(4, 4);
    CGContextSetStrokeColorWithColor(canvas.context(), color);
    CGContextStrokeRectWithWidth(canvas.context(), CGRectMake(0, 0, 4, 4), 4);
    CGColorRelease(color);
    return canvas.at(1, 1);
  };
  expect_near(stroked(CGColorSpaceCreateDeviceGray(), 1, {0.5, 1}), {128, 128, 128, 255}, 1, 1, 1);
  expect_near(stroked(CGColorSpaceCreateDeviceRGB(), 3, {0.25, 0.5, 0.75, 0.5}), {32, 64, 96, 128}, 1, 1, 1);
  expect_near(stroked(CGColorSpaceCreateDeviceCMYK(), 4, {1, 0, 0, 0, 1}), {0, 255, 255, 255}, 1, 1, 1);
  EXPECT_EQ(CGColorCreate(nullptr, nullptr), nullptr);
}

TEST(ClearRect, MakesPixelsTransparentInsideTheClip) {
  Canvas canvas(10, 10);
  canvas.fill(0xFFFFFFFF);
  CGContextClipToRect(canvas.context(), CGRectMake(0, 0, 5, 10));
  CGContextClearRect(canvas.context(), CGRectMake(2, 2, 8, 8));
  EXPECT_EQ(canvas.at(3, 5), clear_pixel);
  EXPECT_EQ(canvas.at(7, 5), white_pixel);
  EXPECT_EQ(canvas.at(1, 5), white_pixel);
}

}  // namespace
}  // namespace cocoa
