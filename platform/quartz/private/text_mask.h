// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>

#include "quartz/private/coverage.h"
#include "quartz/private/text_lines.h"

/// Private to this room: the picture of lines of text, made for one scale and one fraction of a pixel.

namespace cocoa {

struct TextMask {
  double scale_x = 0;
  double scale_y = 0;
  int quarter = 0;    ///< where the text starts within a device pixel, in quarters
  size_t lines = 0;   ///< how many of them it shows
  Coverage coverage;  ///< from the pixel that the text starts in and the pixel row of the first baseline
};

/// Whether text of such a size is worth a mask.
bool suits_mask(std::span<const TextLine> lines, double scale_x, double scale_y);
TextMask make_text_mask(std::span<const TextLine> lines, double scale_x, double scale_y, int quarter);

}  // namespace cocoa
