// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <ostream>
#include <utility>
#include <vector>

#include "quartz/CGBitmapContext.h"
#include "quartz/CGContext.h"

/// A bitmap of the tests' own to draw on, and colours to compare.

namespace cocoa {

/// Premultiplied, as in memory.
struct Pixel {
  int red = 0;
  int green = 0;
  int blue = 0;
  int alpha = 0;
  bool operator==(const Pixel&) const = default;
  friend std::ostream& operator<<(std::ostream& out, const Pixel& p) {
    return out << '(' << p.red << ", " << p.green << ", " << p.blue << ", " << p.alpha << ')';
  }
};

inline constexpr Pixel clear_pixel{0, 0, 0, 0};
inline constexpr Pixel black_pixel{0, 0, 0, 255};
inline constexpr Pixel white_pixel{255, 255, 255, 255};
inline constexpr Pixel red_pixel{255, 0, 0, 255};

class Canvas {
 public:
  /// In device pixels; starts transparent.
  explicit Canvas(int width, int height, double scale = 1)
      : width_(width),
        height_(height),
        pixels_(static_cast<size_t>(width) * static_cast<size_t>(height), 0),
        context_(CGBitmapContextCreateWithScale(pixels_.data(), static_cast<size_t>(width),
                                                static_cast<size_t>(height), 0, scale)) {}
  ~Canvas() { CGContextRelease(context_); }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  CGContextRef context() const { return context_; }
  int width() const { return width_; }
  int height() const { return height_; }

  /// The pixel in that column whose row is counted from the bottom, as user space is.
  Pixel at(int x, int y) const {
    const uint32_t p =
        pixels_[static_cast<size_t>(height_ - 1 - y) * static_cast<size_t>(width_) + static_cast<size_t>(x)];
    const auto part = [p](int shift) { return static_cast<int>(p >> shift & 0xFF); };
    return {part(16), part(8), part(0), part(24)};
  }
  void fill(uint32_t pixel) { pixels_.assign(pixels_.size(), pixel); }
  const std::vector<uint32_t>& pixels() const { return pixels_; }

  /// Of the pixels that are not transparent: left, bottom, right, top, the latter two exclusive.
  struct Extents {
    int left, bottom, right, top;
    bool operator==(const Extents&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Extents& e) {
      return out << e.left << ' ' << e.bottom << ' ' << e.right << ' ' << e.top;
    }
  };
  Extents painted() const {
    Extents e{width_, height_, 0, 0};
    for (int y = 0; y < height_; ++y) {
      for (int x = 0; x < width_; ++x)
        if (at(x, y).alpha > 0)
          e = {std::min(e.left, x), std::min(e.bottom, y), std::max(e.right, x + 1), std::max(e.top, y + 1)};
    }
    return e;
  }

 private:
  int width_;
  int height_;
  std::vector<uint32_t> pixels_;
  CGContextRef context_;
};

/// Turns user space counter-clockwise; in radians.
inline void rotate(CGContextRef context, CGFloat angle) {
  const CGFloat cosine = std::cos(angle);
  const CGFloat sine = std::sin(angle);
  CGContextConcatCTM(context, {cosine, sine, -sine, cosine, 0, 0});
}

inline void fill_ellipse(CGContextRef context, CGRect rect) {
  CGContextBeginPath(context);
  CGContextAddEllipseInRect(context, rect);
  CGContextFillPath(context);
}

/// A shading's colour rule: t to red, green, blue, alpha.
using ColorRule = std::function<void(CGFloat t, CGFloat* rgba)>;

inline CGFunctionRef function_of(ColorRule rule) {
  const CGFloat domain[] = {0, 1};
  const CGFloat range[] = {0, 1, 0, 1, 0, 1, 0, 1};
  const CGFunctionCallbacks callbacks = {
      0, [](void* info, const CGFloat* in, CGFloat* out) { (*static_cast<ColorRule*>(info))(*in, out); },
      [](void* info) { delete static_cast<ColorRule*>(info); }};
  return CGFunctionCreate(new ColorRule(std::move(rule)), 1, domain, 4, range, &callbacks);
}

inline CGShadingRef axial(CGPoint start, CGPoint end, ColorRule rule, bool extend_start = false,
                          bool extend_end = false) {
  CGColorSpaceRef space = CGColorSpaceCreateDeviceRGB();
  CGFunctionRef function = function_of(std::move(rule));
  CGShadingRef shading = CGShadingCreateAxial(space, start, end, function, extend_start, extend_end);
  CGFunctionRelease(function);
  CGColorSpaceRelease(space);
  return shading;
}

inline CGShadingRef radial(CGPoint start, CGFloat start_radius, CGPoint end, CGFloat end_radius,
                           ColorRule rule, bool extend_start = false, bool extend_end = false) {
  CGColorSpaceRef space = CGColorSpaceCreateDeviceRGB();
  CGFunctionRef function = function_of(std::move(rule));
  CGShadingRef shading =
      CGShadingCreateRadial(space, start, start_radius, end, end_radius, function, extend_start, extend_end);
  CGFunctionRelease(function);
  CGColorSpaceRelease(space);
  return shading;
}

inline void draw_and_release(CGContextRef context, CGShadingRef shading) {
  ASSERT_NE(shading, nullptr);
  CGContextDrawShading(context, shading);
  CGShadingRelease(shading);
}

/// Sets a shadow in a device RGB colour.
inline void set_shadow(CGContextRef context, CGSize offset, CGFloat blur, CGFloat r, CGFloat g, CGFloat b,
                       CGFloat a) {
  CGColorSpaceRef space = CGColorSpaceCreateDeviceRGB();
  const CGFloat components[] = {r, g, b, a};
  CGColorRef color = CGColorCreate(space, components);
  CGContextSetShadowWithColor(context, offset, blur, color);
  CGColorRelease(color);
  CGColorSpaceRelease(space);
}

inline int byte_of(double unit) {
  return static_cast<int>(std::lround(unit * 255));
}

inline void expect_near(const Pixel& actual, const Pixel& expected, int tolerance, int x, int y) {
  EXPECT_NEAR(actual.red, expected.red, tolerance) << "red at " << x << ", " << y;
  EXPECT_NEAR(actual.green, expected.green, tolerance) << "green at " << x << ", " << y;
  EXPECT_NEAR(actual.blue, expected.blue, tolerance) << "blue at " << x << ", " << y;
  EXPECT_NEAR(actual.alpha, expected.alpha, tolerance) << "alpha at " << x << ", " << y;
}

}  // namespace cocoa
