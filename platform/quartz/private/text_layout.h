// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "quartz/private/fonts.h"
#include "quartz/private/path_data.h"
#include "quartz/private/text_lines.h"
#include "quartz/private/text_mask.h"
#include "quartz/text.h"

/// Text set into lines, and the lines' pictures, kept because the same few strings are
/// drawn over and over.

namespace cocoa {

class TextLayout {
 public:
  /// Width in points; negative for no limit.
  TextLayout(Fonts& fonts, std::string_view utf8, const TextStyle& style, double width);

  bool is_for(std::string_view utf8, const TextStyle& style, double width) const;
  const std::vector<TextLine>& lines() const { return lines_; }
  /// How many lines fit wholly into the height; at least one.
  size_t lines_within(double height) const;
  /// Adds the outlines of the first lines. `m` takes points from the upper left of the text, y downwards,
  /// into the space of the path.
  void add_outlines(PathData& path, const Matrix& m, size_t count) const;
  /// Of the first lines; null when they are too large for one. Valid until the next call.
  const TextMask* mask(double scale_x, double scale_y, int quarter, size_t count);

  unsigned long last_use = 0;

 private:
  std::string text_;
  TextStyle style_;  ///< but for the colour
  double width_;
  std::vector<TextLine> lines_;
  std::array<std::optional<TextMask>, 4> masks_;
  size_t next_mask_ = 0;
};

/// The layout from this thread's cache. Valid until the next call on the thread.
TextLayout& text_layout(std::string_view utf8, const TextStyle& style, double width);

}  // namespace cocoa
