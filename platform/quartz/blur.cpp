#include "quartz/blur.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace cocoa {

namespace {

/// How much each pixel gives to one, of 65536; the middle one is that pixel or, with a shift, the one after
/// it.
struct Kernel {
  std::vector<uint16_t> weights;
  int before = 0;  ///< how many weights come before that of the pixel itself
};

/// The average of a pixel, the `whole` pixels on each side of it and a `part` of the next one on each side.
std::vector<double> averaged(const std::vector<double>& values, int whole, double part) {
  const auto size = static_cast<int>(values.size());
  const double weight = 1 / (2 * whole + 1 + 2 * part);
  std::vector<double> result(values.size());
  for (int i = 0; i < size; ++i) {
    for (int k = std::max(0, i - whole - 1); k <= std::min(size - 1, i + whole + 1); ++k)
      result[static_cast<size_t>(i)] +=
          values[static_cast<size_t>(k)] * weight * (std::abs(k - i) > whole ? part : 1);
  }
  return result;
}

Kernel kernel_for(double radius, double shift) {
  const auto whole = static_cast<int>(radius);
  const int reach = static_cast<int>(std::ceil(radius)) + 1;
  std::vector<double> shape(static_cast<size_t>(2 * reach) + 1, 0);
  shape[static_cast<size_t>(reach)] = 1 - shift;
  shape[static_cast<size_t>(reach) - 1] = shift;
  shape = averaged(shape, (whole + 2) / 3, 0);
  shape = averaged(shape, (whole + 1) / 3, 0);
  shape = averaged(shape, whole / 3, radius - whole);
  // Rounded so that all together make a whole, but one alone would be too much for its type.
  Kernel kernel;
  double sum = 0;
  long given = 0;
  const auto is_used = [](double weight) { return weight > 0; };
  const auto first = std::find_if(shape.begin(), shape.end(), is_used);
  const auto last = std::find_if(shape.rbegin(), shape.rend(), is_used).base();
  for (auto weight = first; weight < last; ++weight) {
    sum += *weight;
    const long until = std::lround(std::min(sum, 1.0) * 65536);
    kernel.weights.push_back(static_cast<uint16_t>(std::min(until - given, 65535L)));
    given = until;
  }
  kernel.before = reach - static_cast<int>(first - shape.begin());
  return kernel;
}

/// Pixels are treated by strips of this many: most of those around an outline are empty.
constexpr int strip = 32;

/// 8 bits and 8 more.
class Plane {
 public:
  Plane(int width, int height)
      : strips_((width + strip - 1) / strip),
        stride_(strips_ * strip),
        values_(static_cast<size_t>(stride_) * static_cast<size_t>(height)),
        used_(static_cast<size_t>(strips_) * static_cast<size_t>(height)) {}

  int strips() const { return strips_; }
  uint16_t* at(int x, int y) { return values_.data() + static_cast<ptrdiff_t>(y) * stride_ + x; }
  /// Whether a strip of a row has anything in it.
  uint8_t& used(int index, int y) { return used_[static_cast<size_t>(y * strips_ + index)]; }

 private:
  int strips_;
  int stride_;
  std::vector<uint16_t> values_;
  std::vector<uint8_t> used_;
};

void add_part(uint16_t* to, const uint16_t* from, uint16_t weight, int count) {
  for (int i = 0; i < count; ++i)
    to[i] = static_cast<uint16_t>(to[i] + (static_cast<uint32_t>(from[i]) * weight >> 16));
}

bool is_empty(const uint16_t* values, int count) {
  uint32_t any = 0;
  for (int i = 0; i < count; ++i)
    any |= values[i];
  return any == 0;
}

/// Sums up the row's neighbours along it. `row` has room for as many pixels as the kernel has on both sides.
void blur_along(const std::vector<uint16_t>& row, const Kernel& kernel, Plane& to, int y) {
  const auto taps = static_cast<int>(kernel.weights.size());
  for (int index = 0; index < to.strips(); ++index) {
    const uint16_t* from = row.data() + index * strip;
    if (is_empty(from, strip + taps - 1))
      continue;
    to.used(index, y) = 1;
    for (int k = 0; k < taps; ++k)
      add_part(to.at(index * strip, y), from + k, kernel.weights[static_cast<size_t>(k)], strip);
  }
}

/// Rounds up, so that even the faint edge of a wide blur is as wide as it should be.
uint8_t byte_of(uint16_t value) {
  return static_cast<uint8_t>((value + 255) >> 8);
}

}  // namespace

std::vector<uint8_t> blurred(const std::vector<uint8_t>& coverage, PixelBounds bounds, PixelBounds wanted,
                             const Blur& blur) {
  const Kernel across = kernel_for(blur.radius, blur.shift_x);
  const Kernel down = kernel_for(blur.radius, blur.shift_y);
  Plane plane(wanted.width(), bounds.height());
  // The row from as far before the first pixel that is wanted as the kernel reaches.
  const auto taps = static_cast<int>(across.weights.size());
  const PixelBounds used{wanted.x0 - across.before, 0,
                         wanted.x0 - across.before + plane.strips() * strip + taps, 1};
  const PixelBounds loaded = intersection({bounds.x0, 0, bounds.x1, 1}, used);
  std::vector<uint16_t> row(static_cast<size_t>(used.width()));
  for (int y = 0; y < bounds.height(); ++y) {
    const uint8_t* from =
        coverage.data() + static_cast<ptrdiff_t>(y) * bounds.width() + (loaded.x0 - bounds.x0);
    std::transform(from, from + std::max(loaded.width(), 0), row.data() + (loaded.x0 - used.x0),
                   [](uint8_t v) { return static_cast<uint16_t>(v << 8); });
    blur_along(row, across, plane, y);
  }
  const auto width = static_cast<size_t>(wanted.width());
  std::vector<uint8_t> result(width * static_cast<size_t>(wanted.height()));
  uint8_t* to = result.data();
  for (int y = wanted.y0; y < wanted.y1; ++y, to += width) {
    for (int index = 0; index < plane.strips(); ++index) {
      std::array<uint16_t, strip> sum{};
      for (size_t k = 0; k < down.weights.size(); ++k) {
        const int from = y - bounds.y0 - down.before + static_cast<int>(k);
        if (from >= 0 && from < bounds.height() && plane.used(index, from))
          add_part(sum.data(), plane.at(index * strip, from), down.weights[k], strip);
      }
      const int x = index * strip;
      std::transform(sum.begin(), sum.begin() + std::min(strip, wanted.width() - x), to + x, byte_of);
    }
  }
  return result;
}

}  // namespace cocoa
