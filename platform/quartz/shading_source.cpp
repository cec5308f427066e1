#include "quartz/private/shading_source.h"

#include <algorithm>
#include <cmath>

namespace cocoa {

namespace {

constexpr int table_steps = 8192;
constexpr FineColor nothing{};
/// How far beyond an end a pixel's centre may lie that counts as on it: the end then cuts the pixel, or,
/// where it is slanted, nearly so. What lies in the next pixel after rounding does not count.
constexpr double less_than_half_a_pixel = 0.5 - 1.0 / 256;

/// Of a number that is not negative: the library's rounding, which minds signs and modes, is too slow here.
uint32_t rounded(double value) {
  return static_cast<uint32_t>(value + 0.5);  // NOLINT(bugprone-incorrect-roundings)
}

}  // namespace

ShadingSource::ShadingSource(const CGShading& shading, const Matrix& to_device, double alpha,
                             PixelBounds area, ShadingTable& table)
    : shading_(shading), alpha_(alpha), table_(table), painted_(area) {
  const auto to_user = inverse(to_device);
  if (!to_user)
    return;
  to_user_ = *to_user;
  if (shading.radial) {
    prepare_radial();
  } else {
    prepare_axial();
  }
  if (kind_ == Kind::axial || kind_ == Kind::rings || kind_ == Kind::radial) {
    table_.colors.resize(table_steps + 1);
    table_.known.assign(table_steps + 1, 0);
  }
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
    first_ = area.x0;
    // A pixel that an end cuts is painted whole, in the colour of the end.
    prepare_line(first_ + 0.5, area.width(), std::abs(slope_x_) * less_than_half_a_pixel);
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
  colors_.reserve(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i)
    colors_.push_back(color_or_nothing((first + i) * slope_x_ + offset_, beyond));
}

void ShadingSource::prepare_columns() {
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
  pixels_.reserve(colors_.size());
  for (const FineColor& c : colors_)
    pixels_.push_back(c.pixel());
}

void ShadingSource::add_to_table(size_t i) {
  table_.colors[i] = color(static_cast<double>(i) / table_steps);
  table_.known[i] = 1;
}

inline const FineColor& ShadingSource::table_color(double t) {
  const auto i = size_t{rounded(t * table_steps)};
  if (!table_.known[i])
    add_to_table(i);
  return table_.colors[i];
}

template <typename Outside>
void ShadingSource::color_places(const Outside& outside) {
  const double* const places = places_.data();
  FineColor* const colors = colors_.data();
  const size_t count = places_.size();
  for (size_t i = 0; i < count; ++i) {
    double t = places[i];
    const bool is_painted = (t >= 0 && t <= 1) || outside(static_cast<int>(i), t);
    colors[i] = is_painted ? table_color(t) : nothing;
  }
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

void ShadingSource::fill_axial(int y, int x0, int x1) {
  const double start = slope_y_ * (y + 0.5) + offset_;
  for (int x = x0; x < x1; ++x)
    places_[static_cast<size_t>(x - x0)] = slope_x_ * (x + 0.5) + start;
  color_places([this](int, double& t) { return place(t); });
}

/// Circles around one centre: the place is that of the one through the point.
void ShadingSource::fill_rings(int y, int x0, int x1) {
  const Matrix to_user = to_user_;
  const auto center_x = static_cast<double>(shading_.start.x);
  const auto center_y = static_cast<double>(shading_.start.y);
  const auto from_center = [&](int x) {
    const DevicePoint p = to_user.apply(x + 0.5, y + 0.5);
    return DevicePoint{p.x - center_x, p.y - center_y};
  };
  const double r0 = shading_.start_radius;
  const double dr = dr_;
  double* const places = places_.data();
  for (int i = 0; i < x1 - x0; ++i) {
    const DevicePoint p = from_center(x0 + i);
    places[i] = (std::sqrt(p.x * p.x + p.y * p.y) - r0) / dr;
  }
  color_places([&](int i, double& t) {
    const DevicePoint p = from_center(x0 + i);
    return place(t) || is_at_an_end(p.x, p.y, t);
  });
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

Colors ShadingSource::evaluated_row(int y, int x0, int x1) {
  KeptRow* const kept = kept_.empty() ? nullptr : &kept_[static_cast<size_t>(y - painted_.y0)];
  if (kept && kept->x0 <= x0 && x1 <= kept->x1)
    return {kept->colors.data() + (x0 - kept->x0), false};
  const auto count = static_cast<size_t>(x1 - x0);
  colors_.resize(std::max(colors_.size(), count));
  places_.resize(count);
  kind_ == Kind::axial   ? fill_axial(y, x0, x1)
  : kind_ == Kind::rings ? fill_rings(y, x0, x1)
                         : fill_radial(y, x0, x1);
  if (kept)
    *kept = {x0, x1, {colors_.data(), colors_.data() + count}};
  return {colors_.data(), false};
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
      return evaluated_row(y, x0, x1);
    case Kind::nothing:
    case Kind::by_row:
      break;
  }
  colors_.assign(1, kind_ == Kind::by_row ? row_color(y) : nothing);
  return {colors_.data(), true};
}

}  // namespace cocoa
