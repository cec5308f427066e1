// SPDX-License-Identifier: MIT
#include "quartz/private/text_layout.h"

#include <algorithm>
#include <memory>
#include <span>

#include "unicode/utf8_text.h"

namespace cocoa {

namespace {

constexpr size_t cached_layouts = 64;
/// The widest line and the largest letters in points.
constexpr double max_width = 1e6;
constexpr double max_size = 1e4;

struct TextCache {
  Fonts fonts;  ///< outlives the layouts, which hold faces
  std::vector<std::unique_ptr<TextLayout>> layouts;
  unsigned long uses = 0;
};

/// The same but for the colour, which layouts and masks do not have.
bool same_setting(const TextStyle& a, const TextStyle& b) {
  return a.size == b.size && a.bold == b.bold && a.alignment == b.alignment && a.line_break == b.line_break &&
         a.family == b.family;
}

std::vector<TextLine> lines_of(Fonts& fonts, std::string_view utf8, const TextStyle& style, double width) {
  TextStyle drawn = style;
  drawn.size = std::min(style.size, max_size);
  FontFamily& family = fonts.family(style.family, style.bold);
  const double limit = std::min(width, max_width);
  return text_lines(family, is_valid_utf8(utf8) ? std::string(utf8) : valid_utf8(utf8), drawn, limit);
}

}  // namespace

TextLayout::TextLayout(Fonts& fonts, std::string_view utf8, const TextStyle& style, double width)
    : text_(utf8), style_(style), width_(width), lines_(lines_of(fonts, utf8, style, width)) {}

bool TextLayout::is_for(std::string_view utf8, const TextStyle& style, double width) const {
  return width == width_ && utf8 == text_ && same_setting(style, style_);
}

size_t TextLayout::lines_within(double height) const {
  constexpr double rounding = 1e-3;
  const auto too_low = [height](const TextLine& line) { return line.bottom > height + rounding; };
  const auto first_too_low = std::find_if(lines_.begin(), lines_.end(), too_low);
  return std::max<size_t>(static_cast<size_t>(first_too_low - lines_.begin()), 1);
}

void TextLayout::add_outlines(PathData& path, const Matrix& m, size_t count) const {
  for (const TextLine& line : std::span(lines_).first(count)) {
    for (const GlyphRun& run : line.shaped.runs()) {
      for (size_t i = run.first; i < run.end; ++i) {
        const Glyph& glyph = line.shaped.glyphs()[i];
        const Matrix at_glyph = moved(m, line.x + glyph.x, line.baseline - glyph.y);
        run.face->add_outline(path, scaled(at_glyph, line.shaped.size(), line.shaped.size()), glyph.id);
      }
    }
  }
}

const TextMask* TextLayout::mask(double scale_x, double scale_y, int quarter, size_t count) {
  const auto fits = [&](const std::optional<TextMask>& m) {
    return m && m->scale_x == scale_x && m->scale_y == scale_y && m->quarter == quarter && m->lines == count;
  };
  const auto found = std::find_if(masks_.begin(), masks_.end(), fits);
  if (found != masks_.end())
    return &**found;
  const std::span<const TextLine> lines = std::span(lines_).first(count);
  if (!suits_mask(lines, scale_x, scale_y))
    return nullptr;
  std::optional<TextMask>& replaced = masks_[next_mask_];
  next_mask_ = (next_mask_ + 1) % masks_.size();
  replaced = make_text_mask(lines, scale_x, scale_y, quarter);
  return &*replaced;
}

TextLayout& text_layout(std::string_view utf8, const TextStyle& style, double width) {
  thread_local TextCache cache;
  auto& layouts = cache.layouts;
  const auto found = std::find_if(layouts.begin(), layouts.end(),
                                  [&](const auto& layout) { return layout->is_for(utf8, style, width); });
  if (found != layouts.end()) {
    (*found)->last_use = ++cache.uses;
    return **found;
  }
  auto layout = std::make_unique<TextLayout>(cache.fonts, utf8, style, width);
  layout->last_use = ++cache.uses;
  if (layouts.size() < cached_layouts)
    return *layouts.emplace_back(std::move(layout));
  const auto oldest = std::min_element(
      layouts.begin(), layouts.end(), [](const auto& a, const auto& b) { return a->last_use < b->last_use; });
  *oldest = std::move(layout);
  return **oldest;
}

}  // namespace cocoa
