// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>

/// Places in device pixels.

namespace cocoa {

/// A place in device pixels.
struct DevicePoint {
  double x;
  double y;
  bool operator==(const DevicePoint&) const = default;
};

/// Device pixels from the top left: columns x0 to x1 − 1, rows y0 to y1 − 1.
struct PixelBounds {
  int x0 = 0;
  int y0 = 0;
  int x1 = 0;
  int y1 = 0;

  bool operator==(const PixelBounds&) const = default;
  constexpr bool empty() const { return x0 >= x1 || y0 >= y1; }
  constexpr int width() const { return x1 - x0; }
  constexpr int height() const { return y1 - y0; }
  constexpr PixelBounds grown(int by) const { return {x0 - by, y0 - by, x1 + by, y1 + by}; }
};

constexpr PixelBounds intersection(const PixelBounds& a, const PixelBounds& b) {
  return {std::max(a.x0, b.x0), std::max(a.y0, b.y0), std::min(a.x1, b.x1), std::min(a.y1, b.y1)};
}

/// Of all that is drawn, since nothing is drawn further out than max_coordinate.
inline constexpr PixelBounds everywhere{-(1 << 23), -(1 << 23), 1 << 23, 1 << 23};

constexpr PixelBounds moved_by(const PixelBounds& a, int dx, int dy) {
  return {a.x0 + dx, a.y0 + dy, a.x1 + dx, a.y1 + dy};
}

/// The smallest bounds that hold both.
constexpr PixelBounds union_of(const PixelBounds& a, const PixelBounds& b) {
  if (a.empty())
    return b;
  if (b.empty())
    return a;
  return {std::min(a.x0, b.x0), std::min(a.y0, b.y0), std::max(a.x1, b.x1), std::max(a.y1, b.y1)};
}

/// The greatest distance from the origin, in device pixels, that is drawn: further out there are no pixels.
inline constexpr double max_coordinate = 4e6;

/// The whole number below a position, and above it; of one that no int can hold, of the last that is drawn.
inline int floor_pixel(double position) {
  return static_cast<int>(std::floor(std::clamp(position, -max_coordinate, max_coordinate)));
}
inline int ceil_pixel(double position) {
  return static_cast<int>(std::ceil(std::clamp(position, -max_coordinate, max_coordinate)));
}

/// The pixels touched by those of `a` when they move by dx and dy.
inline PixelBounds moved(const PixelBounds& a, double dx, double dy) {
  return {a.x0 + floor_pixel(dx), a.y0 + floor_pixel(dy), a.x1 + ceil_pixel(dx), a.y1 + ceil_pixel(dy)};
}

/// A rectangle in device pixels with fractions; empty as long as nothing was added.
struct DeviceBox {
  double x0 = INFINITY;
  double y0 = INFINITY;
  double x1 = -INFINITY;
  double y1 = -INFINITY;

  void add(double x, double y) {
    x0 = std::min(x0, x);
    y0 = std::min(y0, y);
    x1 = std::max(x1, x);
    y1 = std::max(y1, y);
  }
  /// The pixels that it touches.
  PixelBounds pixels() const {
    if (!(x0 <= x1 && y0 <= y1))
      return {};
    return {floor_pixel(x0), floor_pixel(y0), ceil_pixel(x1), ceil_pixel(y1)};
  }
};

}  // namespace cocoa
