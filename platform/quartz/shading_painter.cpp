#include "quartz/shading_painter.h"

#include <algorithm>
#include <cmath>

namespace cocoa {

namespace {

constexpr int table_steps = 8192;
constexpr uint32_t opaque = 65280;  ///< 256 × 255
/// How far beyond an end a pixel's centre may lie that counts as on it: the end then cuts the pixel, or,
/// where it is slanted, nearly so. What lies in the next pixel after rounding does not count.
constexpr double less_than_half_a_pixel = 0.5 - 1.0 / 256;

/// Of a number that is not negative: the library's rounding, which minds signs and modes, is too slow here.
uint32_t rounded(double value) {
  return static_cast<uint32_t>(value + 0.5);  // NOLINT(bugprone-incorrect-roundings)
}

uint32_t fine(double value) {
  return rounded(value * opaque);
}

}  // namespace

uint32_t FineColor::pixel() const {
  uint32_t result = 0;
  for (uint32_t i = 0; i < 4; ++i)
    result |= ((channel[i] + 128) >> 8) << (8 * i);
  return result;
}

uint32_t FineColor::over(uint32_t below) const {
  uint32_t result = 0;
  for (uint32_t i = 0; i < 4; ++i) {
    const uint32_t under = (below >> (8 * i)) & 0xFF;
    result |= (((channel[i] << 8) + under * rest + 0x8000) >> 16) << (8 * i);
  }
  return result;
}

ShadingPainter::ShadingPainter(const CGShading& shading, const cairo_matrix_t& to_device, double alpha,
                               ColorTable& table)
    : shading_(shading), to_user_(to_device), alpha_(alpha), table_(table) {
  if (cairo_matrix_invert(&to_user_) != CAIRO_STATUS_SUCCESS)
    return;
  if (shading.radial) {
    prepare_radial();
  } else {
    prepare_axial();
  }
  if (kind_ == Kind::axial || kind_ == Kind::radial) {
    table_.colors.resize(table_steps + 1);
    table_.known.assign(table_steps + 1, 0);
  }
}

void ShadingPainter::prepare_axial() {
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
  kind_ = std::abs(slope_x_) < negligible   ? Kind::by_row
          : std::abs(slope_y_) < negligible ? Kind::by_column
                                            : Kind::axial;
}

void ShadingPainter::prepare_radial() {
  dx_ = static_cast<double>(shading_.end.x - shading_.start.x);
  dy_ = static_cast<double>(shading_.end.y - shading_.start.y);
  dr_ = shading_.end_radius - shading_.start_radius;
  a_ = dx_ * dx_ + dy_ * dy_ - dr_ * dr_;
  half_a_pixel_ =
      less_than_half_a_pixel * std::sqrt(std::abs(to_user_.xx * to_user_.yy - to_user_.xy * to_user_.yx));
  const bool same_circle = dx_ == 0 && dy_ == 0 && dr_ == 0;
  if (!same_circle && std::isfinite(a_) && std::isfinite(shading_.start_radius))
    kind_ = Kind::radial;
}

bool ShadingPainter::place(double& t, double beyond) const {
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

FineColor ShadingPainter::color(double t) const {
  const Rgba c = shading_.color(t);
  const double a = c.alpha * alpha_;
  return {{fine(c.blue * a), fine(c.green * a), fine(c.red * a), fine(a)}, rounded((1 - a) * 65536)};
}

FineColor ShadingPainter::color_or_nothing(double t, double beyond) const {
  return place(t, beyond) ? color(t) : FineColor{{0, 0, 0, 0}, 65536};
}

FineColor ShadingPainter::line_color(int i, double slope) const {
  // One that an end cuts is painted whole, in the colour of the end.
  return color_or_nothing((i + 0.5) * slope + offset_, std::abs(slope) * less_than_half_a_pixel);
}

std::vector<FineColor> ShadingPainter::line_colors(int first, int last, double slope) const {
  std::vector<FineColor> colors;
  colors.reserve(static_cast<size_t>(last - first));
  for (int i = first; i < last; ++i)
    colors.push_back(line_color(i, slope));
  return colors;
}

uint32_t ShadingPainter::table_color(double t) {
  const auto i = size_t{rounded(t * table_steps)};
  if (!table_.known[i]) {
    table_.colors[i] = color(static_cast<double>(i) / table_steps).pixel();
    table_.known[i] = 1;
  }
  return table_.colors[i];
}

bool ShadingPainter::radial_place(double x, double y, double& t) const {
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
bool ShadingPainter::is_at_an_end(double px, double py, double& t) const {
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

uint32_t ShadingPainter::general_pixel(int x, int y) {
  double ux = x + 0.5;
  double uy = y + 0.5;
  double t = 0;
  if (kind_ == Kind::axial) {
    t = slope_x_ * ux + slope_y_ * uy + offset_;
    return place(t) ? table_color(t) : 0;
  }
  cairo_matrix_transform_point(&to_user_, &ux, &uy);
  return radial_place(ux, uy, t) ? table_color(t) : 0;
}

void ShadingPainter::fill(const PixelView& view) {
  const PixelBounds& b = view.bounds;
  const auto width = static_cast<size_t>(std::max(b.width(), 0));
  if (kind_ == Kind::by_column) {
    const auto colors = line_colors(b.x0, b.x1, slope_x_);
    for (int y = b.y0; y < b.y1; ++y) {
      if (y == b.y0) {
        std::transform(colors.begin(), colors.end(), view.row(y),
                       [](const FineColor& c) { return c.pixel(); });
      } else {
        std::copy_n(view.row(b.y0), width, view.row(y));
      }
    }
    return;
  }
  for (int y = b.y0; y < b.y1; ++y) {
    uint32_t* row = view.row(y);
    if (kind_ == Kind::nothing) {
      std::fill_n(row, width, 0);
    } else if (kind_ == Kind::by_row) {
      std::fill_n(row, width, line_color(y, slope_y_).pixel());
    } else {
      for (int x = b.x0; x < b.x1; ++x)
        *row++ = general_pixel(x, y);
    }
  }
}

namespace {

void paint_row_over(uint32_t* row, size_t width, const FineColor& color) {
  if (color.is_nothing())
    return;
  if (color.is_opaque()) {
    std::fill_n(row, width, color.pixel());
    return;
  }
  for (size_t x = 0; x < width; ++x)
    row[x] = color.over(row[x]);
}

/// Source over destination in a pixel's own precision.
uint32_t over(uint32_t pixel, uint32_t below) {
  const uint32_t alpha = pixel >> 24;
  if (alpha == 255)
    return pixel;
  const uint32_t rest = 255 - alpha;
  uint32_t result = pixel;
  for (uint32_t shift = 0; shift < 32; shift += 8)
    result += (((below >> shift & 0xFF) * rest + 127) / 255) << shift;
  return result;
}

}  // namespace

void ShadingPainter::paint_columns_over(const PixelView& view) {
  const auto colors = line_colors(view.bounds.x0, view.bounds.x1, slope_x_);
  const auto paints = [](const FineColor& c) { return !c.is_nothing(); };
  const auto first = std::find_if(colors.begin(), colors.end(), paints);
  const auto last = std::find_if(colors.rbegin(), std::make_reverse_iterator(first), paints).base();
  const auto skipped = first - colors.begin();
  if (!std::all_of(first, last, [](const FineColor& c) { return c.is_opaque(); })) {
    for (int y = view.bounds.y0; y < view.bounds.y1; ++y) {
      std::transform(first, last, view.row(y) + skipped, view.row(y) + skipped,
                     [](const FineColor& color, uint32_t below) { return color.over(below); });
    }
    return;
  }
  std::vector<uint32_t> pixels(static_cast<size_t>(last - first));
  std::transform(first, last, pixels.begin(), [](const FineColor& c) { return c.pixel(); });
  for (int y = view.bounds.y0; y < view.bounds.y1; ++y)
    std::copy(pixels.begin(), pixels.end(), view.row(y) + skipped);
}

void ShadingPainter::paint_over(const PixelView& view) {
  const PixelBounds& b = view.bounds;
  if (b.empty() || kind_ == Kind::nothing)
    return;
  if (kind_ == Kind::by_column) {
    paint_columns_over(view);
    return;
  }
  const auto width = static_cast<size_t>(b.width());
  for (int y = b.y0; y < b.y1; ++y) {
    uint32_t* row = view.row(y);
    if (kind_ == Kind::by_row) {
      paint_row_over(row, width, line_color(y, slope_y_));
    } else {
      for (int x = b.x0; x < b.x1; ++x, ++row)
        *row = over(general_pixel(x, y), *row);
    }
  }
}

}  // namespace cocoa
