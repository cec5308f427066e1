// SPDX-License-Identifier: MIT
#include "canvas.h"

namespace cocoa {
namespace {

void opaque_red(CGFloat, CGFloat* rgba) {
  rgba[0] = rgba[3] = 1;
  rgba[1] = rgba[2] = 0;
}

void clip_to_ellipse(CGContextRef context, CGRect ellipse) {
  CGContextBeginPath(context);
  CGContextAddEllipseInRect(context, ellipse);
  CGContextClip(context);
}

/// Nowhere on the edge of a pixel.
const CGRect ellipse = CGRectMake(CGFloat(3.3), CGFloat(4.7), CGFloat(90.1), CGFloat(61.9));

/// A red shading through an ellipse, of which only what lies in `part` is drawn.
void draw_ellipse(CGContextRef context, CGRect shape, CGRect part) {
  CGContextSaveGState(context);
  CGContextClipToRect(context, part);
  clip_to_ellipse(context, shape);
  draw_and_release(context, axial({0, 0}, {100, 0}, opaque_red, true, true));
  CGContextRestoreGState(context);
}

TEST(ShadingInAShape, DrawnInPartsIsAsDrawnAtOnce) {
  Canvas whole(100, 70);
  draw_ellipse(whole.context(), ellipse, {{0, 0}, {100, 70}});
  Canvas parts(100, 70);
  for (int x = 0; x < 100; x += 7) {
    for (int y = 0; y < 70; y += 5)
      draw_ellipse(parts.context(), ellipse, {{CGFloat(x), CGFloat(y)}, {7, 5}});
  }
  EXPECT_EQ(parts.pixels(), whole.pixels());
}

TEST(ShadingInAShape, CoversWhatAColourWouldCover) {
  Canvas shaded(100, 70);
  draw_ellipse(shaded.context(), ellipse, {{0, 0}, {100, 70}});
  Canvas filled(100, 70);
  CGContextSetRGBFillColor(filled.context(), 1, 0, 0, 1);
  fill_ellipse(filled.context(), ellipse);
  for (int y = 0; y < 70; ++y) {
    for (int x = 0; x < 100; ++x)
      expect_near(shaded.at(x, y), filled.at(x, y), 1, x, y);
  }
}

TEST(ShadingInAShape, ShapesThatDifferInAnythingAreToldApart) {
  // A star, whose middle only the one rule covers; with edges smoothed and not; once moved, once larger.
  const auto draw = [](CGContextRef context, CGFloat x, CGFloat size, bool even_odd, bool smooth) {
    CGContextSaveGState(context);
    CGContextSetShouldAntialias(context, smooth);
    CGContextBeginPath(context);
    CGContextMoveToPoint(context, x, 2.25);
    for (const auto& [dx, dy] : {std::pair(0.5, 0.95), {1.0, 0.0}, {0.0, 0.6}, {1.0, 0.6}})
      CGContextAddLineToPoint(context, x + CGFloat(dx) * size, CGFloat(2.25) + CGFloat(dy) * size);
    CGContextClosePath(context);
    even_odd ? CGContextEOClip(context) : CGContextClip(context);
    draw_and_release(context, axial({0, 0}, {100, 0}, opaque_red, true, true));
    CGContextRestoreGState(context);
  };
  Canvas one_after_the_other(40, 40);
  for (const CGFloat x : {CGFloat(2), CGFloat(5)}) {
    for (const CGFloat size : {CGFloat(20), CGFloat(30)}) {
      for (const bool even_odd : {false, true}) {
        for (const bool smooth : {false, true}) {
          one_after_the_other.fill(0);
          draw(one_after_the_other.context(), x, size, even_odd, smooth);
          Canvas fresh(40, 40);
          draw(fresh.context(), x, size, even_odd, smooth);
          EXPECT_EQ(one_after_the_other.pixels(), fresh.pixels()) << x << size << even_odd << smooth;
        }
      }
    }
  }
}

TEST(ShadingInAShape, ManyShapesInTurnAllComeOutRight) {
  Canvas canvas(100, 70);
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 80; ++i) {
      canvas.fill(0);
      draw_ellipse(canvas.context(), {{CGFloat(i) / 4, 5}, {30, 40}}, {{0, 0}, {100, 70}});
      EXPECT_EQ(canvas.at(i / 4 + 15, 25), red_pixel);
      EXPECT_EQ(canvas.painted().left, i / 4);
    }
  }
}

TEST(ShadingInAShape, IsCutByEveryClip) {
  Canvas canvas(100, 70);
  clip_to_ellipse(canvas.context(), {{0, 0}, {60, 60}});
  clip_to_ellipse(canvas.context(), {{40, 0}, {60, 60}});
  draw_and_release(canvas.context(), axial({0, 0}, {100, 0}, opaque_red, true, true));
  EXPECT_EQ(canvas.at(50, 30), red_pixel);
  EXPECT_EQ(canvas.at(30, 30), clear_pixel);
  EXPECT_EQ(canvas.at(70, 30), clear_pixel);
}

TEST(ShadingInAShape, OneClippedToBeforeTheShadowWasSetDoesNotShapeTheShadow) {
  Canvas canvas(100, 70);
  clip_to_ellipse(canvas.context(), {{0, 0}, {40, 40}});
  set_shadow(canvas.context(), {-30, 0}, 0, 0, 0, 1, 1);
  CGContextClipToRect(canvas.context(), {{30, 10}, {40, 20}});
  draw_and_release(canvas.context(), axial({0, 0}, {100, 0}, opaque_red, true, true));
  // Of the rectangle of 40 points only the left 10 are within the ellipse; its shadow there is as wide as
  // that of all.
  EXPECT_EQ(canvas.at(20, 20), (Pixel{0, 0, 255, 255}));
  EXPECT_EQ(canvas.at(35, 20), red_pixel);
  EXPECT_EQ(canvas.at(45, 20), clear_pixel);
}

TEST(TransparencyLayer, OnWhichNothingIsDrawnLeavesNothing) {
  Canvas canvas(20, 20);
  set_shadow(canvas.context(), {2, 2}, 1, 0, 0, 0, 1);
  CGContextBeginTransparencyLayer(canvas.context(), nullptr);
  CGContextSaveGState(canvas.context());
  CGContextClipToRect(canvas.context(), {{5, 5}, {5, 5}});
  CGContextClearRect(canvas.context(), {{0, 0}, {20, 20}});
  CGContextRestoreGState(canvas.context());
  CGContextEndTransparencyLayer(canvas.context());
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{20, 20, 0, 0}));
}

TEST(TransparencyLayer, KeepsClipsAndStatesFromBeforeItsFirstDrawing) {
  Canvas canvas(20, 20);
  CGContextBeginTransparencyLayer(canvas.context(), nullptr);
  CGContextClipToRect(canvas.context(), {{0, 0}, {20, 10}});
  CGContextSaveGState(canvas.context());
  CGContextClipToRect(canvas.context(), {{0, 0}, {10, 20}});
  CGContextSetRGBFillColor(canvas.context(), 1, 0, 0, 1);
  CGContextFillRect(canvas.context(), {{0, 0}, {20, 20}});
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{20, 20, 0, 0}));
  CGContextRestoreGState(canvas.context());
  CGContextFillRect(canvas.context(), {{18, 0}, {2, 20}});
  CGContextEndTransparencyLayer(canvas.context());
  EXPECT_EQ(canvas.at(9, 9), red_pixel);
  EXPECT_EQ(canvas.at(10, 9), clear_pixel);
  EXPECT_EQ(canvas.at(9, 10), clear_pixel);
  EXPECT_EQ(canvas.at(19, 9), black_pixel);
  EXPECT_EQ(canvas.at(19, 10), clear_pixel);
}

/// Something of everything: fills, strokes, shadings in shapes, a layer, shadows of all of them.
void draw_scene(CGContextRef context) {
  CGContextSaveGState(context);
  set_shadow(context, {CGFloat(-2.5), 3}, 3, 0, 0, CGFloat(0.3), CGFloat(0.7));
  CGContextSetRGBFillColor(context, 1, CGFloat(0.4), 0, CGFloat(0.8));
  fill_ellipse(context, ellipse);
  CGContextSetLineWidth(context, CGFloat(2.2));
  CGContextSetLineJoin(context, kCGLineJoinRound);
  CGContextMoveToPoint(context, 0, 10);
  for (int i = 0; i < 40; ++i)
    CGContextAddLineToPoint(context, CGFloat(i) * CGFloat(2.6), CGFloat(35 + 30 * std::sin(i * i)));
  CGContextDrawPath(context, kCGPathFillStroke);
  CGContextSetAlpha(context, CGFloat(0.6));
  CGContextBeginTransparencyLayer(context, nullptr);
  set_shadow(context, {4, -1}, 2, 0, CGFloat(0.2), 0, 1);
  clip_to_ellipse(context, {{30, 10}, {CGFloat(45.5), 40}});
  const auto rule = [](CGFloat t, CGFloat* rgba) {
    rgba[0] = rgba[3] = t;
    rgba[1] = rgba[2] = t * t / 2;
  };
  draw_and_release(context, axial({30, 10}, {70, 50}, rule, true, true));
  draw_and_release(context, axial({30, 10}, {70, 20}, rule));
  draw_and_release(context, radial({50, 30}, 2, {52, 31}, 20, rule));
  CGContextEndTransparencyLayer(context);
  CGContextRestoreGState(context);
}

TEST(Scene, DrawnInPartsIsAsDrawnAtOnce) {
  for (const double scale : {0.5, 1.0, 1.5, 2.0}) {
    const int width = static_cast<int>(100 * scale);
    const int height = static_cast<int>(70 * scale);
    Canvas whole(width, height, scale);
    draw_scene(whole.context());
    Canvas parts(width, height, scale);
    for (int x = 0; x < width; x += 17) {
      for (int y = 0; y < height; y += 13) {
        CGContextSaveGState(parts.context());
        CGContextClipToRect(parts.context(), {{CGFloat(x / scale), CGFloat(y / scale)},
                                              {CGFloat(17 / scale), CGFloat(13 / scale)}});
        draw_scene(parts.context());
        CGContextRestoreGState(parts.context());
      }
    }
    EXPECT_EQ(parts.pixels(), whole.pixels()) << scale;
  }
}

TEST(LongPath, ATranslucentOneCoversAsItsPiecesDo) {
  Canvas canvas(60, 30);
  Canvas pieces(60, 30);
  for (const Canvas* each : {&canvas, &pieces}) {
    CGContextSetRGBFillColor(each->context(), 1, 0, 0, 0.5);
    CGContextBeginPath(each->context());
    for (int i = 0; i < 20; ++i) {
      CGContextAddRect(each->context(), {{CGFloat(i) * 3 + CGFloat(0.25), CGFloat(i)}, {2, 5.5}});
      if (each == &pieces) {
        CGContextFillPath(each->context());
        CGContextBeginPath(each->context());
      }
    }
    CGContextFillPath(each->context());
  }
  for (int y = 0; y < 30; ++y) {
    for (int x = 0; x < 60; ++x)
      expect_near(canvas.at(x, y), pieces.at(x, y), 1, x, y);
  }
}

TEST(LongPath, ALineThatOnlyPassesThroughTheClipIsDrawn) {
  Canvas canvas(40, 40);
  CGContextClipToRect(canvas.context(), {{18, 18}, {4, 4}});
  CGContextBeginPath(canvas.context());
  CGContextMoveToPoint(canvas.context(), 0, 0);
  CGContextAddLineToPoint(canvas.context(), 40, 40);
  CGContextStrokePath(canvas.context());
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{18, 18, 22, 22}));
  // Closing it goes back along the bottom of the clip.
  Canvas closed(40, 40);
  CGContextClipToRect(closed.context(), {{18, 18}, {4, 4}});
  CGContextBeginPath(closed.context());
  CGContextMoveToPoint(closed.context(), 0, 20);
  CGContextAddLineToPoint(closed.context(), 0, 39);
  CGContextAddLineToPoint(closed.context(), 39, 39);
  CGContextAddLineToPoint(closed.context(), 39, 20);
  CGContextClosePath(closed.context());
  CGContextStrokePath(closed.context());
  EXPECT_EQ(closed.painted(), (Canvas::Extents{18, 19, 22, 21}));
}

TEST(LongPath, AnOutlineAroundTheClipDrawsNothing) {
  Canvas canvas(40, 40);
  CGContextClipToRect(canvas.context(), {{18, 18}, {4, 4}});
  CGContextStrokeRect(canvas.context(), {{2, 2}, {36, 36}});
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{40, 40, 0, 0}));
}

}  // namespace
}  // namespace cocoa
