#pragma once

#include <cstdint>
#include <vector>

#include "quartz/private/pixels.h"

/// The softness of shadows.

namespace cocoa {

struct Blur {
  double radius = 0;  ///< pixels, ≥ 0
  /// Moves everything right and down by a part of a pixel, 0 to below 1.
  double shift_x = 0;
  double shift_y = 0;
  bool is_nothing() const { return radius == 0 && shift_x == 0 && shift_y == 0; }
};

/// Spreads coverage, the bytes of a box row by row with nothing around it, over the radius in every direction
/// and no further: three box averages whose half-widths sum to it, close to a Gaussian with a standard
/// deviation of half of it. Gives the bytes of the pixels that are wanted. Empty parts cost next to nothing.
std::vector<uint8_t> blurred(const std::vector<uint8_t>& coverage, PixelBounds bounds, PixelBounds wanted,
                             const Blur& blur);

}  // namespace cocoa
