// SPDX-License-Identifier: MIT
#include "quartz/private/blur.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace cocoa {

namespace {

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
void blur_strip(const uint16_t* around, const BlurKernel& across, const BlurKernel& down, Plane& plane,
                int index, int y) {
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

Coverage blurred(const Coverage& coverage, PixelBounds wanted, const Blur& blur) {
  const BlurKernel across = blur_kernel(blur.radius, blur.shift_x);
  const BlurKernel down = blur_kernel(blur.radius, blur.shift_y);
  const auto reach = static_cast<int>(down.weights.size()) - 1 - down.before;
  Plane plane(wanted.width(), wanted.height());
  // The row from as far before the first pixel that is wanted as the kernel reaches.
  const auto taps = static_cast<int>(across.weights.size());
  const int begin = wanted.x0 - across.before;
  const int end = begin + plane.strips() * strip + taps;
  const Coverage used = box_coverage({begin, wanted.y0 - down.before, end, wanted.y1 + reach});
  CoveredRows rows(coverage, used);
  std::vector<uint16_t> row(static_cast<size_t>(end - begin));
  for (int y = rows.bounds().y0; y < rows.bounds().y1; ++y) {
    const std::span<const CoveredPart> parts = rows.row(y);
    if (parts.empty())
      continue;
    std::fill(row.begin(), row.end(), uint16_t{0});
    for (const CoveredPart& part : parts) {
      for (int x = part.x0; x < part.x1; ++x)
        row[static_cast<size_t>(x - begin)] =
            static_cast<uint16_t>((part.coverage ? part.coverage[x - part.x0] : 255) << 8);
    }
    int done = 0;
    for (const CoveredPart& part : parts) {
      const int strips = std::min((part.x1 - begin + strip - 1) / strip, plane.strips());
      for (int index = std::max((part.x0 - begin - taps + 1) / strip, done); index < strips; ++index)
        blur_strip(row.data() + index * strip, across, down, plane, index, y - wanted.y0);
      done = std::max(done, strips);
    }
  }
  CoverageRows result;
  std::vector<uint8_t> bytes(static_cast<size_t>(plane.strips()) * strip);
  for (int y = 0; y < wanted.height(); ++y) {
    for (int index = 0; index < plane.strips(); ++index) {
      uint8_t* const to = bytes.data() + index * strip;
      if (const Strip* const sum = plane.find(index, y)) {
        std::transform(sum->begin(), sum->end(), to, byte_of);
      } else {
        std::fill_n(to, strip, uint8_t{0});
      }
    }
    result.add_row(bytes.data(), wanted.width());
  }
  return row_coverage(std::move(result), wanted.x0, wanted.y0);
}

}  // namespace cocoa
