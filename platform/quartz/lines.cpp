#include "quartz/private/lines.h"

#include <agg_vcgen_stroke.h>

#include <algorithm>
#include <cmath>
#include <numbers>

// Compiled for size with the rest of the module, instead of taken from the library, where it is twice as
// large.
template class agg::math_stroke<agg::pod_bvector<agg::point_d, 6>>;

namespace cocoa {

namespace {

/// How far round caps and joins may be off, in device pixels: too little for an eighth of a percent of a
/// pixel.
constexpr double tolerance = 0.004;

class Stroker {
 public:
  Stroker(const Pen& pen, const Matrix& to_device, const Matrix& to_user, Polygon& outline)
      : pen_(pen), to_device_(to_device), to_user_(to_user), outline_(outline) {
    const double stretch =
        std::max(std::hypot(to_device.xx, to_device.yx), std::hypot(to_device.xy, to_device.yy));
    // The generator's own tolerance is an eighth of a unit.
    scale_ = stretch / (8 * tolerance);
    generator_.width(pen.width);
    generator_.miter_limit(pen.miter_limit);
    generator_.approximation_scale(scale_);
    // Goes by the path's own corner where segments are short, so that what is inside of a bend has no holes.
    generator_.inner_join(agg::inner_jag);
    generator_.line_cap(pen.cap == LineCap::round    ? agg::round_cap
                        : pen.cap == LineCap::square ? agg::square_cap
                                                     : agg::butt_cap);
    generator_.line_join(pen.join == LineJoin::round   ? agg::round_join
                         : pen.join == LineJoin::bevel ? agg::bevel_join
                                                       : agg::miter_join_revert);
  }

  void add(const DevicePoint* first, const DevicePoint* last, bool closed) {
    const auto differs = [first](const DevicePoint& p) { return !(p == *first); };
    const DevicePoint* other = std::find_if(first, last, differs);
    if (other == last) {
      if (closed || last - first > 1)
        add_dot(*first);
      return;
    }
    generator_.remove_all();
    for (const DevicePoint* p = first; p < last; ++p)
      add_vertex(*p, p == first);
    if (closed) {
      // The generator wants three corners of a closed line: there and back is one too.
      if (std::all_of(other, last, [&](const DevicePoint& p) { return p == *other || p == *first; }))
        add_vertex({(first->x + last[-1].x) / 2, (first->y + last[-1].y) / 2}, false);
      generator_.add_vertex(0, 0, unsigned{agg::path_cmd_end_poly} | agg::path_flags_close);
    }
    take_outline();
  }

 private:
  void add_vertex(const DevicePoint& p, bool first) {
    const DevicePoint user = to_user_.apply(p.x, p.y);
    generator_.add_vertex(user.x, user.y, first ? agg::path_cmd_move_to : agg::path_cmd_line_to);
  }

  void take_outline() {
    generator_.rewind(0);
    double x = 0;
    double y = 0;
    for (unsigned command = generator_.vertex(&x, &y); !agg::is_stop(command);
         command = generator_.vertex(&x, &y)) {
      if (!agg::is_vertex(command)) {
        outline_.close();
        continue;
      }
      if (agg::is_move_to(command))
        outline_.close();
      add_corner(x, y);
    }
    outline_.close();
  }

  void add_dot(const DevicePoint& p) {
    const DevicePoint at = to_user_.apply(p.x, p.y);
    const double radius = pen_.width / 2;
    if (pen_.cap == LineCap::butt)
      return;
    if (pen_.cap == LineCap::square) {
      for (const auto& [dx, dy] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, 1}})
        add_corner(at.x + dx * radius, at.y + dy * radius);
    } else {
      // As the generator's caps: an arc's height over its chord is the tolerance.
      const int corners =
          std::max(8, static_cast<int>(std::numbers::pi / std::acos(radius / (radius + 0.125 / scale_))) + 1);
      for (int i = 0; i < corners; ++i) {
        const double angle = 2 * std::numbers::pi * i / corners;
        add_corner(at.x + radius * std::cos(angle), at.y + radius * std::sin(angle));
      }
    }
    outline_.close();
  }

  void add_corner(double x, double y) {
    const DevicePoint device = to_device_.apply(x, y);
    if (std::isfinite(device.x) && std::isfinite(device.y))
      outline_.add(device.x, device.y);
  }

  const Pen& pen_;
  const Matrix& to_device_;
  const Matrix& to_user_;
  Polygon& outline_;
  agg::vcgen_stroke generator_;
  double scale_;
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
