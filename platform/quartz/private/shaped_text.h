// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "quartz/private/fonts.h"

/// A line of text as glyphs, from left to right in the order of the text.

namespace cocoa {

/// In points; the pen starts at 0 on the baseline and moves to the right.
struct Glyph {
  uint32_t id = 0;
  size_t offset = 0;  ///< in bytes, of the text that it stands for together with others of the same offset
  double x = 0;       ///< of its origin
  double y = 0;       ///< upwards
  double advance = 0;
};

struct GlyphRun {
  std::shared_ptr<FontFace> face;
  size_t first = 0;  ///< of its glyphs
  size_t end = 0;
};

/// Where a caret may stand.
struct CaretPlace {
  size_t offset = 0;
  double x = 0;
};

class ShapedText {
 public:
  ShapedText() = default;
  /// Of valid UTF-8 without line breaks.
  ShapedText(FontFamily& family, double size, std::string_view utf8);

  const std::string& text() const { return text_; }
  const std::vector<Glyph>& glyphs() const { return glyphs_; }
  const std::vector<GlyphRun>& runs() const { return runs_; }
  double size() const { return size_; }
  double width() const { return width_; }
  /// Above and below the baseline: the most of all fonts in it.
  double ascent() const { return ascent_; }
  double descent() const { return descent_; }

  /// One before each character and one behind the last.
  std::vector<CaretPlace> caret_places() const;
  /// Widens the blanks between words until the text is as wide.
  void justify(double width);

 private:
  struct Piece;
  void add(const Piece& piece);
  void add_glyphs(const Piece& piece);
  void add_tab(const Piece& piece);

  std::string text_;
  double size_ = 0;
  std::vector<Glyph> glyphs_;
  std::vector<GlyphRun> runs_;
  double width_ = 0;
  double ascent_ = 0;
  double descent_ = 0;
};

}  // namespace cocoa
