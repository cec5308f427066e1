// SPDX-License-Identifier: MIT
#include <random>

#include "canvas.h"

/// What a context keeps from what it drew before must never show.

namespace cocoa {
namespace {

constexpr int width = 90;
constexpr int height = 70;

using Scene = std::function<void(CGContextRef)>;

void set_place(CGContextRef c, CGFloat scale, CGFloat x) {
  CGContextScaleCTM(c, scale, scale);
  CGContextTranslateCTM(c, x, x / 2);
}

void fill_grey(CGContextRef c, CGFloat grey, CGFloat alpha) {
  CGContextSetRGBFillColor(c, grey, grey, grey, alpha);
  fill_ellipse(c, CGRectMake(20, 15, 35, 25));
}

void rising_red(CGFloat t, CGFloat* rgba) {
  rgba[0] = t;
  rgba[1] = rgba[2] = 0;
  rgba[3] = 1 - t / 2;
}

struct Shadings {
  ~Shadings() {
    for (CGShadingRef shading : all)
      CGShadingRelease(shading);
  }
  /// That take a table, and one that does not.
  CGShadingRef all[3] = {radial({35, 30}, 18, {35, 30}, 0, rising_red),
                         axial({15, 10}, {55, 30}, rising_red, true, true),
                         axial({15, 10}, {35, 30}, rising_red, true, true)};
};

/// One shape in several places, sizes, colours and manners, and its shadows; of each two that differ in one
/// thing.
std::vector<Scene> scenes(const Shadings& shadings) {
  std::vector<Scene> all;
  for (const CGFloat scale : {CGFloat{1}, CGFloat(1.1)}) {
    for (const CGFloat x : {CGFloat{0}, CGFloat{3}, CGFloat(0.25), CGFloat(0.3)}) {
      const auto add = [&](const Scene& scene) {
        all.push_back([=](CGContextRef c) {
          set_place(c, scale, x);
          scene(c);
        });
      };
      add([](CGContextRef c) { fill_grey(c, 0, 1); });
      add([](CGContextRef c) { fill_grey(c, CGFloat(0.5), CGFloat(0.5)); });
      add([](CGContextRef c) {
        CGContextSetShouldAntialias(c, false);
        fill_grey(c, 0, 1);
      });
      for (const bool is_even_odd : {true, false}) {
        add([=](CGContextRef c) {
          CGContextAddRect(c, CGRectMake(CGFloat(10.5), CGFloat(10.5), 40, 40));
          CGContextAddEllipseInRect(c, CGRectMake(20, 15, 35, 25));
          is_even_odd ? CGContextEOClip(c) : CGContextClip(c);
          CGContextFillRect(c, CGRectMake(0, 0, width, height));
        });
      }
      for (const CGFloat line : {CGFloat{1}, CGFloat{3}}) {
        for (const CGLineJoin join : {kCGLineJoinMiter, kCGLineJoinRound}) {
          add([=](CGContextRef c) {
            CGContextSetLineWidth(c, line);
            CGContextSetLineJoin(c, join);
            CGContextStrokeRect(c, CGRectMake(10, 10, 40, 30));
          });
        }
      }
      for (const CGFloat blur : {CGFloat{0}, CGFloat{2}, CGFloat{3}}) {
        for (const CGFloat move : {CGFloat{-3}, CGFloat(-3.5)}) {
          for (const CGFloat alpha : {CGFloat{1}, CGFloat(0.5)}) {
            const auto set_scene_shadow = [=](CGContextRef c) {
              set_shadow(c, {move, move}, blur, 0, 0, 1, 1);
            };
            add([=](CGContextRef c) {
              set_scene_shadow(c);
              fill_grey(c, 0, alpha);
            });
            for (CGShadingRef shading : shadings.all) {
              add([=](CGContextRef c) {
                CGContextSetAlpha(c, alpha);
                set_scene_shadow(c);
                CGContextAddEllipseInRect(c, CGRectMake(20, 15, 35, 25));
                CGContextClip(c);
                CGContextDrawShading(c, shading);
              });
            }
          }
        }
      }
      add([](CGContextRef c) {
        set_shadow(c, {-3, -3}, 2, 1, 0, 0, 1);
        CGContextBeginTransparencyLayer(c, nullptr);
        fill_grey(c, CGFloat(0.5), CGFloat(0.5));
        CGContextEndTransparencyLayer(c);
      });
      add([](CGContextRef c) {
        set_shadow(c, {-3, -3}, 2, 1, 0, 0, 1);
        CGContextBeginTransparencyLayer(c, nullptr);
        fill_grey(c, CGFloat(0.5), CGFloat(0.5));
        CGContextFillRect(c, CGRectMake(70, 5, 10, 10));
        CGContextEndTransparencyLayer(c);
      });
    }
  }
  return all;
}

void draw(CGContextRef c, const Scene& scene, CGRect part) {
  CGContextSaveGState(c);
  CGContextClipToRect(c, part);
  CGContextSetRGBFillColor(c, 1, 1, 0, 1);
  CGContextFillRect(c, part);
  scene(c);
  CGContextRestoreGState(c);
}

constexpr CGRect everything{{0, 0}, {width, height}};

std::vector<uint32_t> picture(const Scene& scene) {
  Canvas canvas(width, height);
  draw(canvas.context(), scene, everything);
  return canvas.pixels();
}

TEST(CachedDrawing, ComesOutAsTheFirstTimeWhateverWasDrawnBefore) {
  const Shadings shadings;
  const std::vector<Scene> all = scenes(shadings);
  std::vector<std::vector<uint32_t>> alone;
  for (size_t i = 0; i < all.size(); ++i) {
    // Neither the context nor the shadings have drawn anything.
    const Shadings fresh;
    alone.push_back(picture(scenes(fresh)[i]));
  }
  Canvas canvas(width, height);
  std::mt19937 random(41);
  for (int i = 0; i < 3000; ++i) {
    const size_t which = random() % all.size();
    draw(canvas.context(), all[which], everything);
    ASSERT_EQ(canvas.pixels(), alone[which]) << which;
  }
}

TEST(CachedDrawing, ComesOutInPartsAsInOnePiece) {
  const Shadings shadings;
  std::mt19937 random(42);
  Canvas warm(width, height);
  for (const Scene& scene : scenes(shadings)) {
    const std::vector<uint32_t> whole = picture(scene);
    Canvas cold(width, height);
    for (Canvas* canvas : {&warm, &cold}) {
      canvas->fill(0);
      for (int x = 0; x < width;) {
        const int right = std::min(width, x + 5 + static_cast<int>(random() % 40));
        for (int y = 0; y < height;) {
          const int top = std::min(height, y + 5 + static_cast<int>(random() % 40));
          draw(canvas->context(), scene,
               CGRectMake(static_cast<CGFloat>(x), static_cast<CGFloat>(y), static_cast<CGFloat>(right - x),
                          static_cast<CGFloat>(top - y)));
          y = top;
        }
        x = right;
      }
      ASSERT_EQ(canvas->pixels(), whole);
    }
  }
}

TEST(CachedDrawing, ALayerOfOnePlainShapeIsThatShape) {
  const Scene plain = [](CGContextRef c) { fill_grey(c, CGFloat(0.3), CGFloat(0.7)); };
  const Scene in_layers = [&](CGContextRef c) {
    CGContextBeginTransparencyLayer(c, nullptr);
    CGContextBeginTransparencyLayer(c, nullptr);
    plain(c);
    CGContextEndTransparencyLayer(c);
    CGContextEndTransparencyLayer(c);
  };
  EXPECT_EQ(picture(in_layers), picture(plain));
}

TEST(CachedDrawing, WhatIsClearedFromALayerIsGone) {
  const Scene cleared = [](CGContextRef c) {
    CGContextBeginTransparencyLayer(c, nullptr);
    fill_grey(c, 0, 1);
    CGContextClearRect(c, everything);
    CGContextEndTransparencyLayer(c);
  };
  EXPECT_EQ(picture(cleared), picture([](CGContextRef) {}));
}

TEST(CachedDrawing, AKeptShadingIsAskedForAColourOnce) {
  int calls = 0;
  CGShadingRef shading = radial({35, 30}, 18, {35, 30}, 0, [&](CGFloat t, CGFloat* rgba) {
    ++calls;
    rising_red(t, rgba);
  });
  Canvas canvas(width, height);
  CGContextDrawShading(canvas.context(), shading);
  const int first = calls;
  const std::vector<uint32_t> pixels = canvas.pixels();
  canvas.fill(0);
  CGContextDrawShading(canvas.context(), shading);
  EXPECT_GT(first, 0);
  EXPECT_EQ(calls, first);
  EXPECT_EQ(canvas.pixels(), pixels);
  CGShadingRelease(shading);
}

}  // namespace
}  // namespace cocoa
