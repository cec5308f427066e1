#include <array>

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
  const auto corner = [](CGLineJoin join, CGFloat limit) {
    Canvas canvas(30, 30);
    CGContextRef c = canvas.context();
    CGContextSetLineWidth(c, 8);
    CGContextSetLineJoin(c, join);
    CGContextSetMiterLimit(c, limit);
    CGContextMoveToPoint(c, 5, 10);
    CGContextAddLineToPoint(c, 20, 10);
    CGContextAddLineToPoint(c, 20, 25);
    CGContextStrokePath(c);
    return canvas.at(23, 6).alpha;
  };
  EXPECT_EQ(corner(kCGLineJoinMiter, 10), 255);
  EXPECT_EQ(corner(kCGLineJoinMiter, 1), 0);
  EXPECT_LT(corner(kCGLineJoinRound, 10), 100);
  EXPECT_EQ(corner(kCGLineJoinBevel, 10), 0);
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
  EXPECT_EQ(draw(kCGPathEOFill), (std::array{clear_pixel, red_pixel, red_pixel}));
  EXPECT_EQ(draw(kCGPathStroke), (std::array{clear_pixel, clear_pixel, blue}));
  EXPECT_EQ(draw(kCGPathFillStroke), (std::array{red_pixel, red_pixel, blue}));
  EXPECT_EQ(draw(kCGPathEOFillStroke), (std::array{clear_pixel, red_pixel, blue}));
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
  EXPECT_EQ(CGContextGetCTM(c), CGAffineTransformMake(2, 0, 0, 3, 10, 20));
  CGContextConcatCTM(c, CGAffineTransformMakeTranslation(1, 1));
  EXPECT_EQ(CGContextGetCTM(c), CGAffineTransformMake(2, 0, 0, 3, 12, 23));
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
  CGContextRotateCTM(c, static_cast<CGFloat>(M_PI / 2));
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
  Canvas canvas(10, 10);
  CGContextRef c = canvas.context();
  CGColorSpaceRef gray = CGColorSpaceCreateDeviceGray();
  CGColorSpaceRef cmyk = CGColorSpaceCreateDeviceCMYK();
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(gray), 1U);
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(cmyk), 4U);
  const CGFloat half[] = {0.5F, 1};
  CGContextSetRGBFillColor(c, 1, 0, 0, 1);
  CGContextSetFillColorSpace(c, gray);
  CGContextFillRect(c, CGRectMake(0, 0, 2, 2));
  CGContextSetFillColor(c, half);
  CGContextFillRect(c, CGRectMake(2, 0, 2, 2));
  const CGFloat cyan[] = {1, 0, 0, 0, 1};
  CGContextSetFillColorSpace(c, cmyk);
  CGContextSetFillColor(c, cyan);
  CGContextFillRect(c, CGRectMake(4, 0, 2, 2));
  EXPECT_EQ(canvas.at(1, 1), black_pixel);
  EXPECT_EQ(canvas.at(3, 1), (Pixel{128, 128, 128, 255}));
  EXPECT_EQ(canvas.at(5, 1), (Pixel{0, 255, 255, 255}));
  CGColorSpaceRelease(gray);
  CGColorSpaceRelease(cmyk);
}

TEST(Colour, ObjectsKeepTheirComponentsAndSpace) {
  CGColorSpaceRef space = CGColorSpaceCreateDeviceRGB();
  const CGFloat components[] = {0.25, 0.5, 0.75, 0.5};
  CGColorRef color = CGColorCreate(space, components);
  CGColorSpaceRelease(space);
  ASSERT_EQ(CGColorGetNumberOfComponents(color), 4U);
  EXPECT_EQ(CGColorGetComponents(color)[2], CGFloat{0.75});
  EXPECT_EQ(CGColorGetAlpha(color), CGFloat{0.5});
  Canvas canvas(4, 4);
  CGContextSetFillColorWithColor(canvas.context(), color);
  CGContextFillRect(canvas.context(), CGRectMake(0, 0, 4, 4));
  expect_near(canvas.at(1, 1), {32, 64, 96, 128}, 1, 1, 1);
  CGColorRelease(color);
  EXPECT_EQ(CGColorCreate(nullptr, components), nullptr);
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
