#include "quartz/blur.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "quartz/pixels.h"

namespace cocoa {

namespace {

/// The mean of a pixel, the `whole` pixels on each side of it and a `part` of the next one on each side.
struct Box {
  int whole = 0;
  float part = 0;
  bool is_point() const { return whole == 0 && part == 0; }
  float weight() const { return 1 / (static_cast<float>(2 * whole + 1) + 2 * part); }
};

using Boxes = std::array<Box, 3>;

Boxes boxes_for(double radius) {
  const int whole = static_cast<int>(radius);
  return {{{(whole + 2) / 3, 0}, {(whole + 1) / 3, 0}, {whole / 3, static_cast<float>(radius - whole)}}};
}

/// The smallest bounds within `within` that hold all that is covered there.
PixelBounds covered_part(const Mask& mask, PixelBounds within) {
  within = intersection(within, {0, 0, mask.width, mask.height});
  PixelBounds covered{within.x1, within.y1, within.x0, within.y0};
  const auto is_covered = [](uint8_t v) { return v != 0; };
  for (int y = within.y0; y < within.y1; ++y) {
    const uint8_t* first = mask.row(y) + within.x0;
    const uint8_t* last = mask.row(y) + within.x1;
    const uint8_t* left = std::find_if(first, last, is_covered);
    if (left == last)
      continue;
    while (!is_covered(last[-1]))
      --last;
    covered.x0 = std::min(covered.x0, within.x0 + static_cast<int>(left - first));
    covered.x1 = std::max(covered.x1, within.x0 + static_cast<int>(last - first));
    covered.y0 = std::min(covered.y0, y);
    covered.y1 = y + 1;
  }
  return covered;
}

/// Of the numbers that the averages are made of. The widest sums of whole numbers still fit, and unlike those
/// of floating ones do not depend on where they began: a part of a shadow comes out as the whole does.
constexpr int32_t one = 4096;

int32_t rounded(float value) {
  return static_cast<int32_t>(value + 0.5F);  // NOLINT(bugprone-incorrect-roundings): none is negative
}

/// A part of the mask, finely divided.
class Part {
 public:
  /// Takes `covered` from the mask, with nothing around it.
  void load(const Mask& mask, PixelBounds covered, PixelBounds bounds) {
    width_ = bounds.width();
    height_ = bounds.height();
    values_.assign(static_cast<size_t>(width_) * static_cast<size_t>(height_), 0);
    spare_.resize(values_.size());
    for (int y = covered.y0; y < covered.y1; ++y) {
      std::transform(mask.row(y) + covered.x0, mask.row(y) + covered.x1,
                     row(y - bounds.y0) + (covered.x0 - bounds.x0), [](uint8_t v) { return v * one; });
    }
  }

  /// Rounds up, so that even the faint edge of a wide blur is as wide as it should be, but for what the
  /// averages may be off by.
  void store(const Mask& mask, PixelBounds stored, PixelBounds bounds) {
    for (int y = stored.y0; y < stored.y1; ++y) {
      const int32_t* from = row(y - bounds.y0) + (stored.x0 - bounds.x0);
      std::transform(from, from + stored.width(), mask.row(y) + stored.x0,
                     [](int32_t v) { return static_cast<uint8_t>((v + one - 4) / one); });
    }
  }

  void average_columns(const Box& box) {
    sums_.assign(static_cast<size_t>(width_), 0);
    nothing_.assign(static_cast<size_t>(width_), 0);
    for (int y = 0; y < box.whole; ++y)
      slide(row_or_nothing(y), nothing_.data());
    const float weight = box.weight();
    for (int y = 0; y < height_; ++y) {
      const int32_t* before = row_or_nothing(y - box.whole - 1);
      const int32_t* after = row_or_nothing(y + box.whole + 1);
      slide(row_or_nothing(y + box.whole), before);
      const int32_t* sum = sums_.data();
      int32_t* out = spare_.data() + static_cast<ptrdiff_t>(y) * width_;
      for (int x = 0; x < width_; ++x)
        out[x] = rounded((static_cast<float>(sum[x]) + static_cast<float>(before[x] + after[x]) * box.part) *
                         weight);
    }
    values_.swap(spare_);
  }

  void shift_columns(float shift) {
    nothing_.assign(static_cast<size_t>(width_), 0);
    for (int y = 0; y < height_; ++y) {
      const int32_t* above = row_or_nothing(y - 1);
      const int32_t* here = row(y);
      int32_t* out = spare_.data() + static_cast<ptrdiff_t>(y) * width_;
      for (int x = 0; x < width_; ++x)
        out[x] = rounded(static_cast<float>(here[x]) * (1 - shift) + static_cast<float>(above[x]) * shift);
    }
    values_.swap(spare_);
  }

  /// Exchanges rows and columns.
  void turn() {
    for (int x = 0; x < width_; ++x) {
      int32_t* out = spare_.data() + static_cast<ptrdiff_t>(x) * height_;
      for (int y = 0; y < height_; ++y)
        out[y] = row(y)[x];
    }
    values_.swap(spare_);
    std::swap(width_, height_);
  }

 private:
  int32_t* row(int y) { return values_.data() + static_cast<ptrdiff_t>(y) * width_; }
  const int32_t* row_or_nothing(int y) { return y >= 0 && y < height_ ? row(y) : nothing_.data(); }
  /// Moves the window that the sums are of.
  void slide(const int32_t* entering, const int32_t* leaving) {
    int32_t* sum = sums_.data();
    for (int x = 0; x < width_; ++x)
      sum[x] += entering[x] - leaving[x];
  }

  int width_ = 0;
  int height_ = 0;
  std::vector<int32_t> values_;
  std::vector<int32_t> spare_;
  std::vector<int32_t> sums_;
  std::vector<int32_t> nothing_;
};

}  // namespace

void blur_mask(const Mask& from, const Mask& to, const Blur& blur) {
  const Boxes boxes = boxes_for(blur.radius);
  const int reach = static_cast<int>(std::ceil(blur.radius)) + 1;  // one for the shift
  // By squares: small enough for a processor's nearest memory, and most squares of an outline are empty.
  const int side = std::max(48, 3 * reach);
  Part part;
  for (int y = 0; y < from.height; y += side) {
    for (int x = 0; x < from.width; x += side) {
      const PixelBounds square = intersection({x, y, x + side, y + side}, {0, 0, from.width, from.height});
      const PixelBounds covered = covered_part(from, square.grown(reach));
      if (covered.empty())
        continue;
      const PixelBounds bounds = covered.grown(reach);
      part.load(from, covered, bounds);
      for (const double shift : {blur.shift_y, blur.shift_x}) {
        if (shift > 0)
          part.shift_columns(static_cast<float>(shift));
        for (const Box& box : boxes) {
          if (!box.is_point())
            part.average_columns(box);
        }
        part.turn();
      }
      part.store(to, intersection(square, bounds), bounds);
    }
  }
}

}  // namespace cocoa
