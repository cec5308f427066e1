// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "foundation/NSGeometry.h"
#include "windows/window_system.h"

/// Between points and device pixels.

namespace cocoa {

/// No window system has windows beyond it: positions and sizes travel as 16-bit numbers.
inline constexpr int largest_pixel_extent = 32767;

/// Device pixels that hold `points` at `scale`: ceil(points · scale), where what rounding noise lifted over a
/// whole number counts as that number. 0 for what is not a positive size.
inline int device_pixels(CGFloat points, double scale) {
  constexpr double noise = 1.0 / 1024;
  const double exact = static_cast<double>(points) * scale;
  if (!(exact > noise))
    return 0;
  return static_cast<int>(std::ceil(std::min<double>(exact, largest_pixel_extent) - noise));
}

/// A window has no more pixels than a screen of 3840 × 2160: hosts give it any size, and of 32000 × 32000
/// neither the memory nor the time to draw them is there.
inline constexpr double most_pixels = 3840.0 * 2160.0;

/// Which part of a window of that many device pixels is drawn: all of it, or of one with more than
/// most_pixels a middle part with its proportions.
inline PixelRect drawn_part(int width, int height) {
  const double area = static_cast<double>(width) * static_cast<double>(height);
  if (!(area > most_pixels))
    return {0, 0, width, height};
  const double part = std::sqrt(most_pixels / area);
  const int w = std::max(1, static_cast<int>(width * part));
  const int h = std::max(1, static_cast<int>(height * part));
  return {(width - w) / 2, (height - h) / 2, w, h};
}

/// The part of `rect` that lies in width × height pixels; without area when there is none.
inline PixelRect clipped(const PixelRect& rect, int width, int height) {
  const auto limit = [](int64_t value, int most) {
    return static_cast<int>(std::clamp<int64_t>(value, 0, most));
  };
  const int x0 = limit(rect.x, width);
  const int y0 = limit(rect.y, height);
  const int x1 = limit(int64_t{rect.x} + rect.width, width);
  const int y1 = limit(int64_t{rect.y} + rect.height, height);
  return {x0, y0, std::max(0, x1 - x0), std::max(0, y1 - y0)};
}

inline bool has_area(const PixelRect& rect) {
  return rect.width > 0 && rect.height > 0;
}

}  // namespace cocoa
