// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

#include "quartz/private/shaped_text.h"
#include "quartz/text.h"

/// Text divided into lines.

namespace cocoa {

/// In points from the upper left of the text, y downwards.
struct TextLine {
  ShapedText shaped;
  double x = 0;  ///< where it starts, as aligned
  double baseline = 0;
  double bottom = 0;
  double width = 0;
};

/// Of valid UTF-8, at least one. A width that is negative has no limit.
std::vector<TextLine> text_lines(FontFamily& family, std::string_view utf8, const TextStyle& style,
                                 double width);

}  // namespace cocoa
