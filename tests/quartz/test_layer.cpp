// SPDX-License-Identifier: MIT
#include "canvas.h"

namespace cocoa {
namespace {

constexpr Pixel blue_pixel{0, 0, 255, 255};

TEST(TransparencyLayer, IsDrawnAsOneObjectWithTheOuterAlpha) {
  Canvas canvas(40, 40);
  CGContextRef c = canvas.context();
  CGContextSetAlpha(c, 0.5);
  CGContextBeginTransparencyLayer(c, nullptr);
  CGContextSetRGBFillColor(c, 1, 0, 0, 1);
  CGContextFillRect(c, CGRectMake(5, 5, 20, 20));
  CGContextSetRGBFillColor(c, 0, 0, 1, 1);
  CGContextFillRect(c, CGRectMake(15, 15, 20, 20));
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{40, 40, 0, 0}));
  CGContextEndTransparencyLayer(c);
  expect_near(canvas.at(10, 10), {128, 0, 0, 128}, 1, 10, 10);
  expect_near(canvas.at(20, 20), {0, 0, 128, 128}, 1, 20, 20);
}

TEST(TransparencyLayer, CastsOneShadowForTheGroup) {
  Canvas canvas(60, 60);
  CGContextRef c = canvas.context();
  set_shadow(c, {-5, 0}, 0, 0, 0, 1, 1);
  CGContextBeginTransparencyLayer(c, nullptr);
  CGContextSetRGBFillColor(c, 1, 0, 0, 1);
  CGContextFillRect(c, CGRectMake(10, 10, 20, 20));
  CGContextFillRect(c, CGRectMake(30, 10, 20, 20));
  CGContextEndTransparencyLayer(c);
  EXPECT_EQ(canvas.at(27, 20), red_pixel);  // the second rectangle's shadow does not fall on the first
  EXPECT_EQ(canvas.at(7, 20), blue_pixel);
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{5, 10, 50, 30}));
}

TEST(TransparencyLayer, ShadowsInsideAreCastInside) {
  // As the knob: the layer is begun before the shadow is set, and the shading clips after it.
  Canvas canvas(60, 60);
  CGContextRef c = canvas.context();
  CGContextTranslateCTM(c, 5, 5);
  CGContextBeginTransparencyLayer(c, nullptr);
  CGContextSaveGState(c);
  set_shadow(c, {-4, -4}, 0, 0, 0, 1, 1);
  CGContextSaveGState(c);
  CGContextClipToRect(c, CGRectMake(15, 15, 10, 10));
  draw_and_release(c,
                   axial(
                       {0, 0}, {30, 30}, [](CGFloat, CGFloat* rgba) { rgba[0] = rgba[3] = 1; }, true, true));
  CGContextRestoreGState(c);
  CGContextRestoreGState(c);
  CGContextEndTransparencyLayer(c);
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{16, 16, 30, 30}));
  EXPECT_EQ(canvas.at(25, 25), red_pixel);
  EXPECT_EQ(canvas.at(17, 17), blue_pixel);
}

TEST(TransparencyLayer, ShadowOfItsShapeOutsideTheClipLandsInside) {
  Canvas canvas(60, 60);
  CGContextRef c = canvas.context();
  CGContextClipToRect(c, CGRectMake(30, 0, 30, 60));
  set_shadow(c, {30, 0}, 0, 0, 0, 1, 1);
  CGContextBeginTransparencyLayer(c, nullptr);
  CGContextSetRGBFillColor(c, 1, 0, 0, 1);
  CGContextFillRect(c, CGRectMake(5, 20, 10, 10));
  CGContextEndTransparencyLayer(c);
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{35, 20, 45, 30}));
}

TEST(TransparencyLayer, StaysWithinTheClip) {
  Canvas canvas(40, 40);
  CGContextRef c = canvas.context();
  CGContextAddEllipseInRect(c, CGRectMake(10, 10, 20, 20));
  CGContextClip(c);
  CGContextBeginTransparencyLayer(c, nullptr);
  CGContextFillRect(c, CGRectMake(0, 0, 40, 40));
  CGContextEndTransparencyLayer(c);
  EXPECT_EQ(canvas.at(20, 20), black_pixel);
  EXPECT_EQ(canvas.at(11, 11), clear_pixel);
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{10, 10, 30, 30}));
}

TEST(TransparencyLayer, TheStateOfBeforeReturns) {
  Canvas canvas(40, 40);
  CGContextRef c = canvas.context();
  CGContextSetRGBFillColor(c, 1, 0, 0, 1);
  CGContextBeginTransparencyLayer(c, nullptr);
  CGContextTranslateCTM(c, 10, 10);
  CGContextClipToRect(c, CGRectMake(0, 0, 1, 1));
  CGContextSaveGState(c);
  CGContextSetRGBFillColor(c, 0, 0, 1, 1);
  CGContextEndTransparencyLayer(c);
  EXPECT_EQ(CGContextGetCTM(c), CGAffineTransformIdentity);
  CGContextFillRect(c, CGRectMake(5, 5, 10, 10));
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{5, 5, 15, 15}));
  EXPECT_EQ(canvas.at(7, 7), red_pixel);
}

TEST(TransparencyLayer, RestoringInsideDoesNotReachOutside) {
  Canvas canvas(40, 40);
  CGContextRef c = canvas.context();
  CGContextSaveGState(c);
  CGContextSetRGBFillColor(c, 1, 0, 0, 1);
  CGContextBeginTransparencyLayer(c, nullptr);
  CGContextRestoreGState(c);
  CGContextFillRect(c, CGRectMake(0, 0, 10, 10));
  CGContextEndTransparencyLayer(c);
  EXPECT_EQ(canvas.at(5, 5), red_pixel);
}

TEST(TransparencyLayer, MayBeNested) {
  Canvas canvas(40, 40);
  CGContextRef c = canvas.context();
  CGContextSetAlpha(c, 0.5);
  CGContextBeginTransparencyLayer(c, nullptr);
  CGContextSetAlpha(c, 0.5);
  CGContextBeginTransparencyLayer(c, nullptr);
  CGContextFillRect(c, CGRectMake(0, 0, 10, 10));
  CGContextEndTransparencyLayer(c);
  CGContextEndTransparencyLayer(c);
  EXPECT_NEAR(canvas.at(5, 5).alpha, 64, 1);
}

TEST(TransparencyLayer, EndWithoutBeginAndLayersWithoutAreaDoNothing) {
  Canvas canvas(10, 10);
  CGContextRef c = canvas.context();
  CGContextEndTransparencyLayer(c);
  CGContextSaveGState(c);
  CGContextClipToRect(c, CGRectMake(0, 0, 0, 0));
  CGContextBeginTransparencyLayer(c, nullptr);
  CGContextFillRect(c, CGRectMake(0, 0, 10, 10));
  CGContextEndTransparencyLayer(c);
  CGContextRestoreGState(c);
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{10, 10, 0, 0}));
  CGContextFillRect(c, CGRectMake(0, 0, 10, 10));
  EXPECT_EQ(canvas.at(5, 5), black_pixel);
}

TEST(TransparencyLayer, MemoryOfAnEarlierLayerDoesNotShow) {
  Canvas canvas(20, 20);
  CGContextRef c = canvas.context();
  for (int i = 0; i < 2; ++i) {
    CGContextBeginTransparencyLayer(c, nullptr);
    if (i == 0)
      CGContextFillRect(c, CGRectMake(0, 0, 20, 20));
    CGContextEndTransparencyLayer(c);
    EXPECT_EQ(canvas.at(5, 5), i == 0 ? black_pixel : clear_pixel);
    canvas.fill(0);
  }
}

}  // namespace
}  // namespace cocoa
