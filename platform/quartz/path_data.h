#pragma once

#include <cairo.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "quartz/CGGeometry.h"
#include "quartz/cairo_objects.h"
#include "quartz/pixels.h"

/// Private to this room: the segments of a path, in whatever space its points were transformed to when they
/// were added. Points that are not finite leave it as it was.

namespace cocoa {

class PathData {
 public:
  struct Point {
    double x;
    double y;
    bool operator==(const Point&) const = default;
  };

  /// Whether they have the same segments.
  bool operator==(const PathData& other) const { return verbs_ == other.verbs_ && points_ == other.points_; }

  void clear();
  bool empty() const { return verbs_.empty(); }
  /// How many, moves included.
  size_t segments() const { return verbs_.size(); }
  bool has_current_point() const { return !verbs_.empty(); }
  /// Only when there is one.
  Point current_point() const { return verbs_.back() == Verb::close ? subpath_start_ : points_.back(); }

  /// `m` takes the coordinates into the space of the path.
  void move_to(const cairo_matrix_t& m, double x, double y);
  void line_to(const cairo_matrix_t& m, double x, double y);
  void curve_to(const cairo_matrix_t& m, const Point (&p)[3]);
  void add_arc(const cairo_matrix_t& m, Point center, double radius, double start, double end,
               bool clockwise);
  void add_arc_to_point(const cairo_matrix_t& m, Point p1, Point p2, double radius);
  void add_ellipse(const cairo_matrix_t& m, CGRect rect);
  void add_rect(const cairo_matrix_t& m, CGRect rect);
  void add_path(const cairo_matrix_t& m, const PathData& other);
  void close();

  /// Of all points, those that steer curves too.
  DeviceBox bounds() const;
  /// Whether any segment may come within the area: true of all that do, and of few others.
  bool passes(PixelBounds area) const;
  /// Whether the path is one rectangle with sides along the axes.
  bool is_box() const;
  bool contains(Point p, bool even_odd) const;
  /// Adds the segments to the path of `cr`.
  void append_to(cairo_t* cr) const;

 private:
  enum class Verb : uint8_t { move, line, curve, close };

  void arc_segments(const cairo_matrix_t& m, Point center, double radius, double start, double sweep);
  /// A segment after a closed subpath starts a new one where that one started.
  void begin_segment();

  std::vector<Verb> verbs_;
  std::vector<Point> points_;
  Point subpath_start_{0, 0};
};

/// The rectangle of no area that Quartz answers with.
CGRect rect_from_box(const DeviceBox& box);

}  // namespace cocoa
