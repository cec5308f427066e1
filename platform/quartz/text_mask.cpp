// SPDX-License-Identifier: MIT
#include "quartz/private/text_mask.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace cocoa {

namespace {

/// Letters beyond these device pixels, and texts beyond this many in all, are filled as shapes.
constexpr double max_letter = 256;
constexpr double max_pixels = 1 << 22;

/// A glyph's mask and the device pixel that it starts in.
struct PlacedGlyph {
  FontFace& face;
  GlyphPlace place;
  int x = 0;
  int y = 0;
  PixelBounds bounds(const GlyphMask& mask) const {
    return {mask.bounds.x0 + x, mask.bounds.y0 + y, mask.bounds.x1 + x, mask.bounds.y1 + y};
  }
};

/// A position in quarters of a pixel: the whole pixels and what is left.
struct Quarters {
  int pixel;
  uint8_t quarter;
};

Quarters quarters_of(double position, bool smooth) {
  if (!smooth)
    return {static_cast<int>(std::floor(position + 0.5)), 0};
  const auto quarters = static_cast<int>(std::floor(position * 4 + 0.5));
  const int pixel = static_cast<int>(std::floor(quarters / 4.0));
  return {pixel, static_cast<uint8_t>(quarters - 4 * pixel)};
}

int32_t fractions(double pixels) {
  return std::max(1, static_cast<int32_t>(std::lround(pixels * 64)));
}

/// Calls `use` with each glyph in its place.
template <typename Use>
void place_glyphs(std::span<const TextLine> lines, double scale_x, double scale_y, int quarter,
                  const Use& use) {
  for (const TextLine& line : lines) {
    const double start = line.x * scale_x + quarter / 4.0;
    const double row = std::round((line.baseline - lines.front().baseline) * scale_y);
    const int32_t width = fractions(line.shaped.size() * scale_x);
    const int32_t height = fractions(line.shaped.size() * scale_y);
    for (const GlyphRun& run : line.shaped.runs()) {
      for (size_t i = run.first; i < run.end; ++i) {
        const Glyph& glyph = line.shaped.glyphs()[i];
        const Quarters x = quarters_of(start + glyph.x * scale_x, run.face->is_smooth());
        const Quarters y = quarters_of(row - glyph.y * scale_y, run.face->is_smooth());
        use(PlacedGlyph{*run.face, {glyph.id, width, height, x.quarter, y.quarter}, x.pixel, y.pixel});
      }
    }
  }
}

/// Where letters touch, each covers its own share of the pixels between them.
void add_coverage(uint8_t* text, const PixelBounds& text_bounds, const GlyphMask& glyph,
                  const PixelBounds& bounds) {
  const auto width = static_cast<size_t>(bounds.width());
  const uint8_t* from = glyph.coverage.data();
  for (int y = bounds.y0; y < bounds.y1; ++y, from += width) {
    uint8_t* to = text + static_cast<ptrdiff_t>(y - text_bounds.y0) * text_bounds.width() +
                  (bounds.x0 - text_bounds.x0);
    for (size_t x = 0; x < width; ++x)
      to[x] = static_cast<uint8_t>(std::min(255, to[x] + from[x]));
  }
}

}  // namespace

bool suits_mask(std::span<const TextLine> lines, double scale_x, double scale_y) {
  double left = 0;
  double right = 0;
  for (const TextLine& line : lines) {
    left = std::min(left, line.x);
    right = std::max(right, line.x + line.width);
  }
  const double size = lines.front().shaped.size();
  return size * scale_x <= max_letter && size * scale_y <= max_letter &&
         (right - left) * scale_x * lines.back().bottom * scale_y <= max_pixels;
}

TextMask make_text_mask(std::span<const TextLine> lines, double scale_x, double scale_y, int quarter) {
  PixelBounds bounds;
  place_glyphs(lines, scale_x, scale_y, quarter, [&](const PlacedGlyph& glyph) {
    bounds = union_of(bounds, glyph.bounds(glyph.face.mask(glyph.place)));
  });
  std::vector<uint8_t> bytes(static_cast<size_t>(bounds.width()) * static_cast<size_t>(bounds.height()));
  place_glyphs(lines, scale_x, scale_y, quarter, [&](const PlacedGlyph& glyph) {
    const GlyphMask& ink = glyph.face.mask(glyph.place);
    add_coverage(bytes.data(), bounds, ink, glyph.bounds(ink));
  });
  return {scale_x, scale_y, quarter, lines.size(), byte_coverage(bounds, bytes.data())};
}

}  // namespace cocoa
