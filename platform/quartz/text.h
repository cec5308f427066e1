// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "quartz/CGContext.h"
#include "quartz/CGGeometry.h"

/// Text in a rectangle, as the platform's string drawing sets it. Letters stand from left to right in the
/// order of the text, those of scripts that are written from right to left too.
///
/// Fonts are those of the user's configuration (fontconfig), whose hinting and smoothing they are drawn with;
/// colours of sub-pixels are not. Another font stands in for one that lacks a character; what none has shows
/// as the font's box for that.

namespace cocoa {

/// Natural is left, or right where the text's first letter is of a script from right to left.
enum class TextAlignment { left = 0, right = 1, center = 2, justified = 3, natural = 4 };

/// What happens to a line that is wider than the rectangle: it is wrapped between words (within a word that
/// is too wide) or between any characters; cut off at the rectangle's sides; or shortened with an ellipsis.
enum class LineBreak {
  word_wrap = 0,
  char_wrap = 1,
  clip = 2,
  truncate_head = 3,
  truncate_tail = 4,
  truncate_middle = 5
};

struct TextStyle {
  std::string family;  ///< empty: the system font
  double size = 13;    ///< points
  bool bold = false;
  TextAlignment alignment = TextAlignment::natural;
  LineBreak line_break = LineBreak::word_wrap;
  double red = 0;  ///< colour, not premultiplied, 0 to 1
  double green = 0;
  double blue = 0;
  double alpha = 1;
  bool operator==(const TextStyle&) const = default;
};

/// Draws UTF-8 text into `rect`, in user space with y upwards: from the rectangle's top edge down, line by
/// line, as many lines as fit wholly but always the first. Newlines break lines. Ink may reach beyond the
/// rectangle. Letters keep their distances at every scale, and unless they are hinted their shapes; whole
/// lines move by less than a device pixel so that baselines lie on pixel rows, letters to the nearest quarter
/// of a pixel. Bytes that are not UTF-8 show as replacement characters.
/// Fonts and the layouts of the last few texts are kept, for each thread.
void CGContextDrawText(CGContextRef context, CGRect rect, std::string_view utf8, const TextStyle& style);

/// What the text needs without wrapping, in points: the width of its widest line, the height of all lines.
CGSize text_size(std::string_view utf8, const TextStyle& style);

// Places in valid text of one line that is not wrapped: offsets in bytes, positions in points from its left.

/// Where a caret stands before the character at an offset, or behind the last.
CGFloat text_caret_position(std::string_view utf8, const TextStyle& style, size_t offset);
/// The offset at which the caret stands nearest to a position.
size_t text_offset_at(std::string_view utf8, const TextStyle& style, CGFloat position);
struct TextSpan {
  CGFloat left = 0;
  CGFloat right = 0;
};
/// What lies between two offsets: one piece, or none when nothing does.
std::vector<TextSpan> text_spans(std::string_view utf8, const TextStyle& style, size_t start, size_t end);

}  // namespace cocoa
