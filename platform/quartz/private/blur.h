// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "quartz/private/coverage.h"
#include "quartz/private/pixels.h"

/// Private to this room: the softness of shadows.

namespace cocoa {

struct Blur {
  double radius = 0;  ///< pixels, ≥ 0
  /// Moves everything right and down by a part of a pixel, 0 to below 1.
  double shift_x = 0;
  double shift_y = 0;
  bool is_nothing() const { return radius == 0 && shift_x == 0 && shift_y == 0; }
};

/// How much each pixel gives to one, of 65536; the middle one is that pixel or, with a shift, the one after
/// it.
struct BlurKernel {
  std::vector<uint16_t> weights;
  int before = 0;  ///< how many weights come before that of the pixel itself
};
BlurKernel blur_kernel(double radius, double shift);

/// Spreads coverage over the radius in every direction and no further: three box averages whose half-widths
/// sum to it, close to a Gaussian with a standard deviation of half of it. Gives the part that is wanted.
/// Empty parts cost next to nothing.
Coverage blurred(const Coverage& coverage, PixelBounds wanted, const Blur& blur);

}  // namespace cocoa
