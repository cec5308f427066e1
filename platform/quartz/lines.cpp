// SPDX-License-Identifier: MIT
#include "quartz/private/lines.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace cocoa {

namespace {

/// How far round caps and joins may be off, in device pixels: too little for an eighth of a percent of a
/// pixel.
constexpr double tolerance = 0.004;

/// Goes along one side of a line and back along the other. What lies inside of a sharp bend is left by way
/// of the path's own corner, so that short segments leave no holes when it is filled by the non-zero rule.
class Stroker {
 public:
  Stroker(const Pen& pen, const Matrix& to_device, const Matrix& to_user, Polygon& outline)
      : pen_(pen), to_device_(to_device), to_user_(to_user), half_(pen.width / 2), outline_(outline) {
    const double stretch =
        std::max(std::hypot(to_device.xx, to_device.yx), std::hypot(to_device.xy, to_device.yy));
    radius_ = half_ * stretch;
    // An arc's height over its chord is the tolerance.
    largest_step_ = 2 * std::acos(radius_ / (radius_ + tolerance));
  }

  void add(const DevicePoint* first, const DevicePoint* last, bool closed) {
    corners_.clear();
    corners_.reserve(static_cast<size_t>(last - first));
    for (const DevicePoint* p = first; p < last; ++p)
      add_corner(*p);
    // Of a closed line the last corner may be the first one too.
    while (closed && corners_.size() > 1 && !set_segment(corners_.back(), corners_.front().at))
      corners_.pop_back();
    const size_t count = corners_.size();
    if (count == 1) {
      if (closed || last - first > 1)
        add_dot(*first);
      return;
    }
    const Corner* const c = corners_.data();
    for (size_t i = closed ? 0 : 1; i < count - (closed ? 0 : 1); ++i)
      add_join(c[i].at, c[i > 0 ? i - 1 : count - 1], c[i], 1);
    if (closed) {
      outline_.close();
    } else {
      add_cap(c[count - 1].at, c[count - 2], 1);
    }
    for (size_t i = count - (closed ? 0 : 1); i-- > (closed ? 0 : 1);)
      add_join(c[i].at, c[i], c[i > 0 ? i - 1 : count - 1], -1);
    if (!closed)
      add_cap(c[0].at, c[0], -1);
    outline_.close();
  }

 private:
  /// The segment that begins in a corner: of a line as it is gone along.
  struct Corner {
    DevicePoint at;
    DevicePoint normal;  ///< in user space, of length 1: the direction turned by −90°
    DevicePoint offset;  ///< the same in device pixels, as long as half the line is wide
    double length;       ///< squared, in user space
  };

  /// From user space to device pixels, half the line's width for 1.
  DevicePoint offset_of(double x, double y) const {
    return {(to_device_.xx * x + to_device_.xy * y) * half_, (to_device_.yx * x + to_device_.yy * y) * half_};
  }

  /// False when it has no length.
  bool set_segment(Corner& from, const DevicePoint& to) const {
    const double dx = to.x - from.at.x;
    const double dy = to.y - from.at.y;
    const double x = to_user_.xx * dx + to_user_.xy * dy;
    const double y = to_user_.yx * dx + to_user_.yy * dy;
    from.length = x * x + y * y;
    const double length = std::sqrt(from.length);
    from.normal = {y / length, -x / length};
    from.offset = offset_of(from.normal.x, from.normal.y);
    return std::isfinite(from.offset.x) && std::isfinite(from.offset.y);
  }

  void add_corner(const DevicePoint& p) {
    if (corners_.empty() || set_segment(corners_.back(), p))
      corners_.push_back({p, {}, {}, 0});
  }

  void add_beside(const DevicePoint& p, const DevicePoint& offset, double sides) {
    outline_.add(p.x + offset.x * sides, p.y + offset.y * sides);
  }

  /// On the side where the normals are, or, when `side` is −1, on the other one: from the segment that is
  /// gone along first to the second.
  void add_join(const DevicePoint& p, const Corner& first, const Corner& second, double side) {
    const double sine = first.normal.x * second.normal.y - first.normal.y * second.normal.x;
    const double cosine = first.normal.x * second.normal.x + first.normal.y * second.normal.y;
    // Where the sides meet: beside the corner by the tangent of half the angle, from it by 1 / cosine of
    // that.
    bool meet = false;
    if (sine < 0) {
      meet = 4 * half_ * half_ * (1 - cosine) <= std::min(first.length, second.length) * (1 + cosine);
    } else if (pen_.join == LineJoin::miter) {
      meet = 2 <= pen_.miter_limit * pen_.miter_limit * (1 + cosine);
    } else {
      meet = radius_ * (1 - cosine) <= 4 * tolerance;
    }
    if (meet) {
      const DevicePoint sum{first.offset.x + second.offset.x, first.offset.y + second.offset.y};
      add_beside(p, sum, side / (1 + cosine));
      return;
    }
    if (sine >= 0 && pen_.join == LineJoin::round) {
      add_arc(p, first.normal, std::abs(std::atan2(sine, cosine)), side);
      return;
    }
    add_beside(p, first.offset, side);
    if (sine < 0)
      outline_.add(p.x, p.y);
    add_beside(p, second.offset, side);
  }

  /// From the segment's one side to the other.
  void add_cap(const DevicePoint& p, const Corner& segment, double side) {
    if (pen_.cap == LineCap::round) {
      add_arc(p, segment.normal, std::numbers::pi, side);
      return;
    }
    DevicePoint at[] = {p, p};
    if (pen_.cap == LineCap::square) {
      const DevicePoint ahead = offset_of(-segment.normal.y, segment.normal.x);
      at[0] = at[1] = {p.x + ahead.x * side, p.y + ahead.y * side};
    }
    add_beside(at[0], segment.offset, side);
    add_beside(at[1], segment.offset, -side);
  }

  /// From the normal on, to the left.
  void add_arc(const DevicePoint& p, DevicePoint normal, double angle, double side) {
    constexpr double most_steps = 4096;
    const double steps = std::clamp(std::ceil(angle / largest_step_), 1.0, most_steps);
    const double sine = std::sin(angle / steps);
    const double cosine = std::cos(angle / steps);
    for (double i = 0; i <= steps; ++i) {
      add_beside(p, offset_of(normal.x, normal.y), side);
      normal = {normal.x * cosine - normal.y * sine, normal.x * sine + normal.y * cosine};
    }
  }

  void add_dot(const DevicePoint& p) {
    if (pen_.cap == LineCap::round) {
      add_arc(p, {1, 0}, 2 * std::numbers::pi, 1);
    } else if (pen_.cap == LineCap::square) {
      for (const auto& [x, y] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, 1}})
        add_beside(p, offset_of(x, y), 1);
    }
    outline_.close();
  }

  const Pen& pen_;
  const Matrix& to_device_;
  const Matrix& to_user_;
  double half_;          ///< of the width
  double radius_;        ///< the same where it is widest, in device pixels
  double largest_step_;  ///< of a round line's arcs, as an angle
  Polygon& outline_;
  std::vector<Corner> corners_;
};

}  // namespace

void fill_outline(const Lines& lines, Polygon& outline) {
  size_t begin = 0;
  for (const Lines::SubPath& sub_path : lines.sub_paths) {
    for (; begin < sub_path.end; ++begin)
      outline.add(lines.points[begin].x, lines.points[begin].y);
    outline.close();
  }
}

double stroke_reach(const Pen& pen, const Matrix& m) {
  const double stretch = std::hypot(std::hypot(m.xx, m.yx), std::hypot(m.xy, m.yy));
  constexpr double square_corner = 1.5;
  const double corner =
      pen.join == LineJoin::miter ? std::max(pen.miter_limit, square_corner) : square_corner;
  return pen.width / 2 * stretch * corner;
}

void stroke_outline(const Lines& lines, const Pen& pen, const Matrix& to_device, Polygon& outline) {
  const auto to_user = inverse(to_device);
  if (!to_user || !(pen.width > 0))
    return;
  Stroker stroker(pen, to_device, *to_user, outline);
  size_t begin = 0;
  for (const Lines::SubPath& sub_path : lines.sub_paths) {
    if (begin < sub_path.end)
      stroker.add(lines.points.data() + begin, lines.points.data() + sub_path.end, sub_path.closed);
    begin = sub_path.end;
  }
}

}  // namespace cocoa
