// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

#include "quartz/private/pixels.h"

/// Outlines of straight lines.

namespace cocoa {

enum class FillRule : uint8_t { nonzero, even_odd };

/// A place on the grid that corners lie on, in steps of it.
struct GridPoint {
  static constexpr int bits = 8;
  static constexpr int32_t pixel = 1 << bits;  ///< steps
  int32_t x;
  int32_t y;
  bool operator==(const GridPoint&) const = default;
};

/// Closed contours in device pixels. Their corners lie on 256ths of a pixel, so that moving a shape by whole
/// pixels, or mirroring it, moves or mirrors its corners exactly.
class Polygon {
 public:
  void clear() {
    points_.clear();
    ends_.clear();
  }
  /// The next corner of the contour. Further out than max_coordinate it is moved there.
  void add(double x, double y) {
    const GridPoint p{on_grid(x), on_grid(y)};
    if (points_.size() > begin_of_contour() && points_.back() == p)
      return;
    points_.push_back(p);
  }
  /// Ends the contour; the next corner begins another.
  void close() {
    const size_t begin = begin_of_contour();
    // Of less than three corners nothing is enclosed.
    if (points_.size() < begin + 3) {
      points_.resize(begin);
    } else {
      ends_.push_back(points_.size());
    }
  }

  bool operator==(const Polygon&) const = default;
  /// Whether it is one rectangle of whole pixels.
  bool is_whole_pixels() const;
  bool empty() const { return ends_.empty(); }
  const std::vector<GridPoint>& points() const { return points_; }
  /// Behind the last corner of each contour.
  const std::vector<size_t>& ends() const { return ends_; }
  /// All pixels that may be covered.
  PixelBounds bounds() const;
  void move(int dx, int dy) {
    for (GridPoint& p : points_)
      p = {p.x + dx * GridPoint::pixel, p.y + dy * GridPoint::pixel};
  }

 private:
  static int32_t on_grid(double v) {
    // What is added leaves no room for a fraction: the library's rounding is slow.
    constexpr double whole = 0x1.8p52;
    const double steps = std::clamp(v, -max_coordinate, max_coordinate) * GridPoint::pixel + whole;
    return static_cast<int32_t>(std::bit_cast<int64_t>(steps));
  }
  size_t begin_of_contour() const { return ends_.empty() ? 0 : ends_.back(); }

  std::vector<GridPoint> points_;
  std::vector<size_t> ends_;
};

}  // namespace cocoa
