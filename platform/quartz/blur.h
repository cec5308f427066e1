#pragma once

#include <cstdint>

/// Private to this room: the softness of shadows.

namespace cocoa {

/// Coverage, one byte a pixel, nothing outside.
struct Mask {
  uint8_t* data;
  int width;
  int height;
  int bytes_per_row;
  uint8_t* row(int y) const { return data + static_cast<long>(y) * bytes_per_row; }
};

struct Blur {
  double radius = 0;  ///< pixels, ≥ 0
  /// Moves everything right and down by a part of a pixel, 0 to below 1.
  double shift_x = 0;
  double shift_y = 0;
};

/// Spreads the coverage of `from` over the radius in every direction and no further: three box averages whose
/// half-widths sum to it, close to a Gaussian with a standard deviation of half of it.
/// `to` has the same size and starts empty. Empty parts cost next to nothing.
void blur_mask(const Mask& from, const Mask& to, const Blur& blur);

}  // namespace cocoa
