#include "quartz/private/blur.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>

#include "quartz/private/coverage.h"

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

using Strip = std::array<uint16_t, strip>;  ///< 8 bits and 8 more

/// Strips of all rows, and which of them have anything in them.
class Plane {
 public:
  Plane(int width, int height)
      : strips_((width + strip - 1) / strip),
        height_(height),
        used_(static_cast<size_t>(strips_) * static_cast<size_t>(height)),
        values_(std::make_unique_for_overwrite<Strip[]>(used_.size())) {}

  int strips() const { return strips_; }
  int height() const { return height_; }
  /// To add to.
  Strip& use(int index, int y) {
    const size_t i = at(index, y);
    if (!used_[i]) {
      used_[i] = 1;
      values_[i].fill(0);
    }
    return values_[i];
  }
  /// Null when it is empty.
  const Strip* find(int index, int y) const { return used_[at(index, y)] ? &values_[at(index, y)] : nullptr; }

 private:
  size_t at(int index, int y) const { return static_cast<size_t>(y * strips_ + index); }

  int strips_;
  int height_;
  std::vector<uint8_t> used_;
  std::unique_ptr<Strip[]> values_;  ///< set where they are used
};

void add_part(Strip& to, const uint16_t* from, uint16_t weight) {
  for (size_t i = 0; i < to.size(); ++i)
    to[i] = static_cast<uint16_t>(to[i] + (static_cast<uint32_t>(from[i]) * weight >> 16));
}

/// Spreads a strip of a row. `around` begins as far before it as the kernel reaches.
void blur_strip(const uint16_t* around, const Kernel& across, const Kernel& down, Plane& plane, int index,
                int y) {
  Strip sum{};
  for (size_t k = 0; k < across.weights.size(); ++k)
    add_part(sum, around + k, across.weights[k]);
  for (size_t k = 0; k < down.weights.size(); ++k) {
    const int to = y + down.before - static_cast<int>(k);
    if (to >= 0 && to < plane.height())
      add_part(plane.use(index, to), sum.data(), down.weights[k]);
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
  const auto reach = static_cast<int>(down.weights.size()) - 1 - down.before;
  Plane plane(wanted.width(), wanted.height());
  // The row from as far before the first pixel that is wanted as the kernel reaches.
  const auto taps = static_cast<int>(across.weights.size());
  const PixelBounds used{wanted.x0 - across.before, 0,
                         wanted.x0 - across.before + plane.strips() * strip + taps, 1};
  const PixelBounds loaded = intersection({bounds.x0, 0, bounds.x1, 1}, used);
  std::vector<uint16_t> row(static_cast<size_t>(used.width()));
  for (int y = std::max(bounds.y0, wanted.y0 - down.before); y < std::min(bounds.y1, wanted.y1 + reach);
       ++y) {
    const uint8_t* from =
        coverage.data() + static_cast<ptrdiff_t>(y - bounds.y0) * bounds.width() + (loaded.x0 - bounds.x0);
    const auto count = static_cast<size_t>(std::max(loaded.width(), 0));
    if (first_covered(from, from + count) == from + count)
      continue;
    uint16_t* const to = row.data() + (loaded.x0 - used.x0);
    std::transform(from, from + count, to, [](uint8_t v) { return static_cast<uint16_t>(v << 8); });
    int done = 0;
    for_covered(from, count, [&](const uint8_t* first, const uint8_t* last) {
      const auto begin = static_cast<int>(first - from) + loaded.x0 - used.x0 - taps + 1;
      const auto end = static_cast<int>(last - from) + loaded.x0 - used.x0;
      const int strips = std::min((end + strip - 1) / strip, plane.strips());
      for (int index = std::max(begin / strip, done); index < strips; ++index)
        blur_strip(row.data() + index * strip, across, down, plane, index, y - wanted.y0);
      done = std::max(done, strips);
    });
  }
  const auto width = static_cast<size_t>(wanted.width());
  std::vector<uint8_t> result(width * static_cast<size_t>(wanted.height()));
  for (int y = 0; y < wanted.height(); ++y) {
    for (int index = 0; index < plane.strips(); ++index) {
      const int x = index * strip;
      if (const Strip* const sum = plane.find(index, y))
        std::transform(sum->begin(), sum->begin() + std::min(strip, wanted.width() - x),
                       result.data() + static_cast<size_t>(y) * width + x, byte_of);
    }
  }
  return result;
}

}  // namespace cocoa
