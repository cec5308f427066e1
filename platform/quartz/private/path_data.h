// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "quartz/CGGeometry.h"
#include "quartz/private/lines.h"
#include "quartz/private/matrix.h"
#include "quartz/private/pixels.h"

/// The segments of a path, in whatever space its points were transformed to when they
/// were added. Points that are not finite leave it as it was.

namespace cocoa {

class PathData {
 public:
  void clear();
  bool empty() const { return verbs_.empty(); }
  bool has_current_point() const { return !verbs_.empty(); }
  /// Only when there is one.
  DevicePoint current_point() const { return verbs_.back() == Verb::close ? subpath_start_ : points_.back(); }

  /// `m` takes the coordinates into the space of the path.
  void move_to(const Matrix& m, double x, double y);
  void line_to(const Matrix& m, double x, double y);
  void curve_to(const Matrix& m, const DevicePoint (&p)[3]);
  void add_arc_to_point(const Matrix& m, DevicePoint p1, DevicePoint p2, double radius);
  void add_ellipse(const Matrix& m, CGRect rect);
  void add_rect(const Matrix& m, CGRect rect);
  void add_path(const Matrix& m, const PathData& other);
  void close();

  /// Of all points, those that steer curves too.
  DeviceBox bounds() const;
  /// Whether any segment may come within the area: true of all that do, and of few others.
  bool passes(PixelBounds area) const;
  /// Whether the path is one rectangle with sides along the axes.
  bool is_box() const;
  /// Whether it is one between pixels, as nearly as outlines are drawn.
  bool is_whole_pixels() const;
  bool contains(DevicePoint p, bool even_odd) const;
  /// Becomes the path, on 65536ths of a pixel and moved by whole pixels into the one that it begins in, so
  /// that one shape has the same points wherever it stands. Gives that pixel; none, and the points as they
  /// are, far out. The path must not be empty.
  DevicePoint place(const PathData& path);
  /// Adds all segments.
  void add_to(std::vector<double>& key) const;
  /// The path without curves, cut off at max_coordinate, in place of what `lines` had.
  void flatten(Lines& lines) const;

 private:
  enum class Verb : uint8_t { move, line, curve, close };

  void arc_segments(const Matrix& m, DevicePoint center, double radius, double start, double sweep);
  /// A segment after a closed subpath starts a new one where that one started.
  void begin_segment();

  std::vector<Verb> verbs_;
  std::vector<DevicePoint> points_;
  DevicePoint subpath_start_{0, 0};
};

/// The rectangle of no area that Quartz answers with.
CGRect rect_from_box(const DeviceBox& box);

}  // namespace cocoa
