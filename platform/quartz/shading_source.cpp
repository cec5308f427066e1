// SPDX-License-Identifier: MIT
#include "quartz/private/shading_source.h"

#include <algorithm>
#include <cmath>

namespace cocoa {

namespace {

constexpr FineColor nothing{};
/// How far beyond an end a pixel's centre may lie that counts as on it: the end then cuts the pixel, or,
/// where it is slanted, nearly so. What lies in the next pixel after rounding does not count.
constexpr double less_than_half_a_pixel = 0.5 - 1.0 / 256;

}  // namespace

ShadingSource::ShadingSource(const CGShading& shading, const Matrix& to_device, double alpha,
                             PixelBounds area)
    : shading_(shading), to_device_(to_device), alpha_(alpha), painted_(area) {
  const auto to_user = inverse(to_device);
  if (!to_user)
    return;
  to_user_ = *to_user;
  if (shading.radial) {
    prepare_radial();
  } else {
    prepare_axial();
  }
  const bool has_table = kind_ == Kind::axial || kind_ == Kind::rings || kind_ == Kind::radial;
  if (has_table && (shading.table.empty() || shading.table_alpha != alpha)) {
    shading.table.assign(table_steps + 1, unknown_color);
    shading.table_alpha = alpha;
  }
}

bool ShadingSource::add_alpha_to(CoverageCache::Key& key) const {
  const Matrix& m = to_device_;
  key.insert(key.end(), {static_cast<double>(shading_.serial), alpha_, m.xx, m.yx, m.xy, m.yy, m.x0, m.y0});
  return true;
}

void ShadingSource::prepare_axial() {
  const PixelBounds area = painted_;
  const auto x0 = static_cast<double>(shading_.start.x);
  const auto y0 = static_cast<double>(shading_.start.y);
  const double dx = static_cast<double>(shading_.end.x) - x0;
  const double dy = static_cast<double>(shading_.end.y) - y0;
  const double square = dx * dx + dy * dy;
  slope_x_ = (to_user_.xx * dx + to_user_.yx * dy) / square;
  slope_y_ = (to_user_.xy * dx + to_user_.yy * dy) / square;
  offset_ = ((to_user_.x0 - x0) * dx + (to_user_.y0 - y0) * dy) / square;
  if (!(square > 0) || !std::isfinite(slope_x_) || !std::isfinite(slope_y_) || !std::isfinite(offset_))
    return;
  // Too little to change the colour over the widest bitmap.
  constexpr double negligible = 1e-11;
  if (std::abs(slope_x_) < negligible) {
    kind_ = Kind::by_row;
  } else if (std::abs(slope_y_) < negligible) {
    kind_ = Kind::by_column;
    prepare_columns();
  } else if (std::abs(std::abs(slope_x_) - std::abs(slope_y_)) < negligible) {
    kind_ = Kind::by_diagonal;
    direction_ = slope_x_ * slope_y_ > 0 ? 1 : -1;
    first_ = area.x0 + (direction_ > 0 ? area.y0 : 1 - area.y1);
    prepare_line(first_ + (direction_ > 0 ? 1.0 : 0.0), area.width() + area.height() - 1, 0);
  } else {
    kind_ = Kind::axial;
  }
}

void ShadingSource::prepare_radial() {
  dx_ = static_cast<double>(shading_.end.x - shading_.start.x);
  dy_ = static_cast<double>(shading_.end.y - shading_.start.y);
  dr_ = shading_.end_radius - shading_.start_radius;
  a_ = dx_ * dx_ + dy_ * dy_ - dr_ * dr_;
  half_a_pixel_ = less_than_half_a_pixel * std::sqrt(std::abs(to_user_.determinant()));
  const bool same_circle = dx_ == 0 && dy_ == 0 && dr_ == 0;
  if (!same_circle && std::isfinite(a_) && std::isfinite(shading_.start_radius))
    kind_ = dx_ == 0 && dy_ == 0 ? Kind::rings : Kind::radial;
}

bool ShadingSource::place(double& t, double beyond) const {
  // A pixel centre on the very end counts as inside, however its place was rounded.
  constexpr double rounding = 2e-5;
  const double reach = std::max(rounding, beyond);
  if (t >= -reach && t <= 1 + reach) {
    t = std::clamp(t, 0.0, 1.0);
    return true;
  }
  if (!(t < 0 ? shading_.extend_start : t > 1 && shading_.extend_end))
    return false;
  t = t < 0 ? 0 : 1;
  return true;
}

FineColor ShadingSource::color(double t) const {
  return fine_color(shading_.color(t), alpha_);
}

FineColor ShadingSource::color_or_nothing(double t, double beyond) const {
  return place(t, beyond) ? color(t) : nothing;
}

void ShadingSource::prepare_line(double first, int count, double beyond) {
  colors_.resize(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i)
    colors_[static_cast<size_t>(i)] = color_or_nothing((first + i) * slope_x_ + offset_, beyond);
}

void ShadingSource::prepare_columns() {
  // A pixel that an end cuts is painted whole, in the colour of the end.
  const double beyond = std::abs(slope_x_) * less_than_half_a_pixel;
  const bool runs_left = slope_x_ < 0;
  const double start = (-beyond - offset_) / slope_x_;
  const double end = (1 + beyond - offset_) / slope_x_;
  // And one more on each side for the rounding of these.
  if (!(runs_left ? shading_.extend_end : shading_.extend_start))
    painted_.x0 = std::max(painted_.x0, floor_pixel(runs_left ? end : start) - 1);
  if (!(runs_left ? shading_.extend_start : shading_.extend_end))
    painted_.x1 = std::min(painted_.x1, ceil_pixel(runs_left ? start : end) + 1);
  first_ = painted_.x0;
  prepare_line(first_ + 0.5, std::max(painted_.width(), 0), beyond);
  const auto is_painted = [](const FineColor& c) { return !c.is_nothing(); };
  const auto first = std::find_if(colors_.begin(), colors_.end(), is_painted);
  if (first == colors_.end()) {
    kind_ = Kind::nothing;
    painted_ = {};
    return;
  }
  const auto last = std::find_if(colors_.rbegin(), colors_.rend(), is_painted).base();
  painted_.x0 = first_ + static_cast<int>(first - colors_.begin());
  painted_.x1 = first_ + static_cast<int>(last - colors_.begin());
  if (!std::all_of(first, last, [](const FineColor& c) { return c.is_opaque(); }))
    return;
  pixels_.resize(colors_.size());
  std::transform(colors_.begin(), colors_.end(), pixels_.begin(),
                 [](const FineColor& c) { return c.pixel(); });
}

bool ShadingSource::radial_place(double x, double y, double& t) const {
  // The circles through the point: those t where |p − c(t)| = r(t), a quadratic a·t² − 2·b·t + c = 0. The one
  // that is painted last, with the greatest t, shows.
  const double px = x - static_cast<double>(shading_.start.x);
  const double py = y - static_cast<double>(shading_.start.y);
  const double r0 = shading_.start_radius;
  const double b = px * dx_ + py * dy_ + r0 * dr_;
  const double c = px * px + py * py - r0 * r0;
  const auto shows = [&](double root) {
    t = root;
    return r0 + root * dr_ >= 0 && place(t);
  };
  if (a_ == 0)
    return b != 0 && shows(c / (2 * b));
  const double discriminant = b * b - a_ * c;
  if (!(discriminant >= 0))
    return false;
  const double root = std::sqrt(discriminant);
  const double greater = (b + (a_ > 0 ? root : -root)) / a_;
  const double lesser = (b - (a_ > 0 ? root : -root)) / a_;
  return shows(greater) || shows(lesser) || (a_ < 0 && is_at_an_end(px, py, t));
}

bool ShadingSource::is_painted(int x, int y, double& t) const {
  if (place(t))
    return true;
  const DevicePoint p = to_user_.apply(x + 0.5, y + 0.5);
  return kind_ == Kind::rings && is_at_an_end(p.x - static_cast<double>(shading_.start.x),
                                              p.y - static_cast<double>(shading_.start.y), t);
}

/// Of one circle within the other: beyond an end by less than half a pixel. A clip along the circle would
/// otherwise be left bare where it covers less than half of a pixel, whose centre then lies outside.
bool ShadingSource::is_at_an_end(double px, double py, double& t) const {
  const double half = half_a_pixel_;
  const auto is_near = [half](double x, double y, double radius) {
    const double square = x * x + y * y;
    const double inner = std::max(0.0, radius - half);
    return square >= inner * inner && square <= (radius + half) * (radius + half);
  };
  if (is_near(px, py, shading_.start_radius)) {
    t = 0;
    return true;
  }
  t = 1;
  return shading_.end_radius > 0 && is_near(px - dx_, py - dy_, shading_.end_radius);
}

void ShadingSource::fill_radial(int y, int x0, int x1) {
  for (int x = x0; x < x1; ++x) {
    const DevicePoint p = to_user_.apply(x + 0.5, y + 0.5);
    double t = 0;
    colors_[static_cast<size_t>(x - x0)] = radial_place(p.x, p.y, t) ? table_color(t) : nothing;
  }
}

FineColor ShadingSource::row_color(int y) const {
  return color_or_nothing((y + 0.5) * slope_y_ + offset_, std::abs(slope_y_) * less_than_half_a_pixel);
}

Colors ShadingSource::row(int y, int x0, int x1) {
  switch (kind_) {
    case Kind::by_column:
      return {colors_.data() + (x0 - first_), false,
              pixels_.empty() ? nullptr : pixels_.data() + (x0 - first_)};
    case Kind::by_diagonal:
      return {colors_.data() + (x0 + direction_ * y - first_), false};
    case Kind::axial:
    case Kind::rings:
    case Kind::radial:
      colors_.resize(std::max(colors_.size(), static_cast<size_t>(x1 - x0)));
      kind_ == Kind::axial   ? fill_axial(y, x0, x1)
      : kind_ == Kind::rings ? fill_rings(y, x0, x1)
                             : fill_radial(y, x0, x1);
      return {colors_.data(), false};
    case Kind::nothing:
    case Kind::by_row:
      break;
  }
  colors_.assign(1, kind_ == Kind::by_row ? row_color(y) : nothing);
  return {colors_.data(), true};
}

}  // namespace cocoa
