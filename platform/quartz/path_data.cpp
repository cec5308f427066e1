// SPDX-License-Identifier: MIT
#include "quartz/private/path_data.h"

#include <numbers>

namespace cocoa {

namespace {

using std::numbers::pi;

bool finite(DevicePoint p) {
  return std::isfinite(p.x) && std::isfinite(p.y);
}

}  // namespace

void PathData::clear() {
  verbs_.clear();
  points_.clear();
}

void PathData::move_to(const Matrix& m, double x, double y) {
  const DevicePoint p = m.apply(x, y);
  if (!finite(p))
    return;
  verbs_.push_back(Verb::move);
  points_.push_back(p);
  subpath_start_ = p;
}

void PathData::begin_segment() {
  if (verbs_.back() != Verb::close)
    return;
  verbs_.push_back(Verb::move);
  points_.push_back(subpath_start_);
}

void PathData::line_to(const Matrix& m, double x, double y) {
  const DevicePoint p = m.apply(x, y);
  if (!has_current_point() || !finite(p))
    return;
  begin_segment();
  verbs_.push_back(Verb::line);
  points_.push_back(p);
}

void PathData::curve_to(const Matrix& m, const DevicePoint (&p)[3]) {
  const DevicePoint q[3] = {m.apply(p[0].x, p[0].y), m.apply(p[1].x, p[1].y), m.apply(p[2].x, p[2].y)};
  if (!has_current_point() || !finite(q[0]) || !finite(q[1]) || !finite(q[2]))
    return;
  begin_segment();
  verbs_.push_back(Verb::curve);
  points_.insert(points_.end(), {q[0], q[1], q[2]});
}

void PathData::close() {
  if (has_current_point() && verbs_.back() != Verb::close)
    verbs_.push_back(Verb::close);
}

void PathData::arc_segments(const Matrix& m, DevicePoint center, double radius, double start, double sweep) {
  // By eighths of a turn: a quarter would be off by a fiftieth of a pixel on circles as large as the knob.
  const int count = std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / (pi / 4) - 1e-9)));
  const double step = sweep / count;
  // The control points that make a cubic touch the circle at its middle too.
  const double k = 4.0 / 3.0 * std::tan(step / 4) * radius;
  for (int i = 0; i < count; ++i) {
    const double a = start + i * step;
    const double b = a + step;
    const DevicePoint from{center.x + radius * std::cos(a), center.y + radius * std::sin(a)};
    const DevicePoint to{center.x + radius * std::cos(b), center.y + radius * std::sin(b)};
    curve_to(m, {{from.x - k * std::sin(a), from.y + k * std::cos(a)},
                 {to.x + k * std::sin(b), to.y - k * std::cos(b)},
                 to});
  }
}

void PathData::add_arc_to_point(const Matrix& m, DevicePoint p1, DevicePoint p2, double radius) {
  const auto back = inverse(m);
  if (!back || !has_current_point() || !finite(p1) || !finite(p2) || !std::isfinite(radius))
    return;
  const DevicePoint current = current_point();
  const DevicePoint p0 = back->apply(current.x, current.y);
  const double length0 = std::hypot(p0.x - p1.x, p0.y - p1.y);
  const double length2 = std::hypot(p2.x - p1.x, p2.y - p1.y);
  const DevicePoint u{(p0.x - p1.x) / length0, (p0.y - p1.y) / length0};
  const DevicePoint v{(p2.x - p1.x) / length2, (p2.y - p1.y) / length2};
  const double sine = u.x * v.y - u.y * v.x;
  const double cosine = u.x * v.x + u.y * v.y;
  if (!(length0 > 0 && length2 > 0 && radius > 0 && std::abs(sine) > 1e-9)) {
    line_to(m, p1.x, p1.y);
    return;
  }
  // r / tan(θ/2) from the corner, θ being the angle between the two lines.
  const double distance = radius * (1 + cosine) / std::abs(sine);
  const DevicePoint t1{p1.x + u.x * distance, p1.y + u.y * distance};
  const double side = sine > 0 ? 1 : -1;
  const DevicePoint center{t1.x - side * radius * u.y, t1.y + side * radius * u.x};
  const double sweep = -side * (pi - std::atan2(std::abs(sine), cosine));
  if (std::hypot(t1.x - p0.x, t1.y - p0.y) > 1e-9 * length0)
    line_to(m, t1.x, t1.y);
  arc_segments(m, center, radius, std::atan2(t1.y - center.y, t1.x - center.x), sweep);
}

void PathData::add_ellipse(const Matrix& m, CGRect rect) {
  const double rx = static_cast<double>(rect.size.width) / 2;
  const double ry = static_cast<double>(rect.size.height) / 2;
  // Maps the unit circle to the ellipse.
  const Matrix to_ellipse{
      rx, 0, 0, ry, static_cast<double>(rect.origin.x) + rx, static_cast<double>(rect.origin.y) + ry};
  const Matrix both = product(to_ellipse, m);
  if (!finite(both.apply(1, 1)) || !finite(both.apply(-1, -1)))
    return;
  move_to(both, 1, 0);
  arc_segments(both, {0, 0}, 1, 0, -2 * pi);
  close();
}

void PathData::add_rect(const Matrix& m, CGRect rect) {
  const auto x = static_cast<double>(rect.origin.x);
  const auto y = static_cast<double>(rect.origin.y);
  const double right = x + static_cast<double>(rect.size.width);
  const double top = y + static_cast<double>(rect.size.height);
  if (!finite(m.apply(x, y)) || !finite(m.apply(right, top)))
    return;
  move_to(m, x, y);
  line_to(m, right, y);
  line_to(m, right, top);
  line_to(m, x, top);
  close();
}

void PathData::add_path(const Matrix& m, const PathData& other) {
  const PathData source = &other == this ? other : PathData();
  const PathData& from = &other == this ? source : other;
  const DevicePoint* p = from.points_.data();
  for (const Verb verb : from.verbs_) {
    switch (verb) {
      case Verb::move:
        move_to(m, p->x, p->y);
        break;
      case Verb::line:
        line_to(m, p->x, p->y);
        break;
      case Verb::curve:
        curve_to(m, {p[0], p[1], p[2]});
        break;
      case Verb::close:
        close();
        continue;
    }
    p += verb == Verb::curve ? 3 : 1;
  }
}

DeviceBox PathData::bounds() const {
  DeviceBox box;
  for (const DevicePoint& p : points_) {
    box.add(std::clamp(p.x, -max_coordinate, max_coordinate),
            std::clamp(p.y, -max_coordinate, max_coordinate));
  }
  return box;
}

bool PathData::passes(PixelBounds area) const {
  const auto meets = [&area](const DeviceBox& segment) {
    return segment.x0 <= area.x1 && segment.x1 >= area.x0 && segment.y0 <= area.y1 && segment.y1 >= area.y0;
  };
  const DevicePoint* p = points_.data();
  DevicePoint start{};
  DevicePoint from{};
  for (const Verb verb : verbs_) {
    DeviceBox segment;
    segment.add(from.x, from.y);
    if (verb == Verb::close) {
      segment.add(start.x, start.y);
      from = start;
    } else {
      const int count = verb == Verb::curve ? 3 : 1;
      if (verb == Verb::move) {
        start = *p;
        segment = {};
      }
      for (int i = 0; i < count; ++i)
        segment.add(p[i].x, p[i].y);
      p += count;
      from = p[-1];
    }
    if (meets(segment))
      return true;
  }
  return false;
}

bool PathData::is_box() const {
  constexpr Verb box[] = {Verb::move, Verb::line, Verb::line, Verb::line, Verb::close};
  if (!std::equal(verbs_.begin(), verbs_.end(), std::begin(box), std::end(box)))
    return false;
  const auto& p = points_;
  const bool sideways = p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y && p[3].x == p[0].x;
  const bool upright = p[0].x == p[1].x && p[1].y == p[2].y && p[2].x == p[3].x && p[3].y == p[0].y;
  return sideways || upright;
}

bool PathData::is_whole_pixels() const {
  return is_box() && std::all_of(points_.begin(), points_.end(), [](const DevicePoint& p) {
           constexpr double near = 1.0 / 512;
           return std::abs(p.x - std::round(p.x)) <= near && std::abs(p.y - std::round(p.y)) <= near;
         });
}

DevicePoint PathData::place(const PathData& path) {
  DevicePoint origin = path.points_.front();
  const bool is_far = std::max(std::abs(origin.x), std::abs(origin.y)) > max_coordinate / 2;
  origin = is_far ? DevicePoint{} : DevicePoint{std::floor(origin.x), std::floor(origin.y)};
  const auto placed = [](double v, double from) {
    constexpr double steps = 65536;
    // What is added leaves no room for a fraction: the library's rounding is slow.
    constexpr double whole = 0x1.8p52;
    return (std::clamp(v, -max_coordinate, max_coordinate) * steps + whole - whole) / steps - from;
  };
  verbs_ = path.verbs_;
  points_.clear();
  for (const DevicePoint& p : path.points_)
    points_.push_back({placed(p.x, origin.x), placed(p.y, origin.y)});
  return origin;
}

void PathData::add_to(std::vector<double>& key) const {
  for (const Verb verb : verbs_)
    key.push_back(static_cast<double>(verb));
  for (const DevicePoint& p : points_)
    key.insert(key.end(), {p.x, p.y});
}

namespace {

/// In equal steps: of as many that none of the lines is further from the curve than the tolerance.
void add_curve(Lines& lines, DevicePoint from, const DevicePoint* p) {
  constexpr double tolerance = 0.004;
  constexpr double most_steps = 4096;
  const double bend = std::max(std::hypot(from.x - 2 * p[0].x + p[1].x, from.y - 2 * p[0].y + p[1].y),
                               std::hypot(p[0].x - 2 * p[1].x + p[2].x, p[0].y - 2 * p[1].y + p[2].y));
  // Of what is not a number, one: the maximum takes the other.
  const double wanted = std::max(1.0, std::ceil(std::sqrt(0.75 * bend / tolerance)));
  const int steps = static_cast<int>(std::min(wanted, most_steps));
  for (int i = 1; i < steps; ++i) {
    const double t = static_cast<double>(i) / steps;
    const double u = 1 - t;
    const double a = u * u * u;
    const double b = 3 * u * u * t;
    const double c = 3 * u * t * t;
    const double d = t * t * t;
    lines.points.push_back({a * from.x + b * p[0].x + c * p[1].x + d * p[2].x,
                            a * from.y + b * p[0].y + c * p[1].y + d * p[2].y});
  }
  lines.points.push_back(p[2]);
}

}  // namespace

void PathData::flatten(Lines& lines) const {
  lines.points.clear();
  lines.sub_paths.clear();
  const auto within = [](DevicePoint p) {
    return DevicePoint{std::clamp(p.x, -max_coordinate, max_coordinate),
                       std::clamp(p.y, -max_coordinate, max_coordinate)};
  };
  const auto end_sub_path = [&](bool closed) {
    const size_t begin = lines.sub_paths.empty() ? 0 : lines.sub_paths.back().end;
    if (lines.points.size() > begin)
      lines.sub_paths.push_back({lines.points.size(), closed});
  };
  const DevicePoint* p = points_.data();
  for (const Verb verb : verbs_) {
    switch (verb) {
      case Verb::move:
        end_sub_path(false);
        [[fallthrough]];
      case Verb::line:
        lines.points.push_back(within(*p));
        break;
      case Verb::curve: {
        const DevicePoint steering[] = {within(p[0]), within(p[1]), within(p[2])};
        add_curve(lines, lines.points.back(), steering);
        break;
      }
      case Verb::close:
        end_sub_path(true);
        continue;
    }
    p += verb == Verb::curve ? 3 : 1;
  }
  end_sub_path(false);
}

bool PathData::contains(DevicePoint p, bool even_odd) const {
  if (empty() || !finite(p))
    return false;
  Lines lines;
  flatten(lines);
  int winding = 0;
  size_t begin = 0;
  for (const Lines::SubPath& sub_path : lines.sub_paths) {
    for (size_t i = begin; i < sub_path.end; ++i) {
      const DevicePoint a = lines.points[i];
      const DevicePoint b = lines.points[i + 1 < sub_path.end ? i + 1 : begin];
      const double side = (b.x - a.x) * (p.y - a.y) - (p.x - a.x) * (b.y - a.y);
      const bool beside = p.x >= std::min(a.x, b.x) && p.x <= std::max(a.x, b.x) &&
                          p.y >= std::min(a.y, b.y) && p.y <= std::max(a.y, b.y);
      // The outline belongs to the inside.
      if (side == 0 && beside)
        return true;
      if (a.y <= p.y && b.y > p.y && side > 0)
        ++winding;
      if (b.y <= p.y && a.y > p.y && side < 0)
        --winding;
    }
    begin = sub_path.end;
  }
  return even_odd ? winding % 2 != 0 : winding != 0;
}

CGRect rect_from_box(const DeviceBox& box) {
  if (!(box.x0 <= box.x1 && box.y0 <= box.y1))
    return {};
  return CGRectMake(static_cast<CGFloat>(box.x0), static_cast<CGFloat>(box.y0),
                    static_cast<CGFloat>(box.x1 - box.x0), static_cast<CGFloat>(box.y1 - box.y0));
}

}  // namespace cocoa
