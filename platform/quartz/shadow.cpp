// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "quartz/private/blur.h"
#include "quartz/private/context.h"

namespace cocoa {

namespace {

/// A larger shadow is made for what is seen of it.
constexpr int64_t most_cast_pixels = 1 << 20;

int reach_of(const ShadowState& shadow) {
  return static_cast<int>(std::ceil(shadow.blur));
}

/// Lays the alpha of a part, as far as the clip leaves it, over what is in the bytes of the area.
void add_part(uint8_t* bytes, const PixelBounds& area, const Part& part, const Coverage& clip) {
  constexpr uint32_t alpha = 3;
  CoveredRows rows(part.shape, clip, area);
  for (int y = rows.bounds().y0; y < rows.bounds().y1; ++y) {
    uint8_t* const row = bytes + static_cast<ptrdiff_t>(y - area.y0) * area.width();
    for (const CoveredPart& covered : rows.row(y)) {
      const Colors colors = part.source.row(y, covered.x0, covered.x1);
      for (int x = covered.x0; x < covered.x1; ++x) {
        const FineColor& color = colors.first[colors.is_one ? 0 : x - covered.x0];
        const uint32_t coverage = covered.coverage ? covered.coverage[x - covered.x0] : 255;
        // In 65280ths, as the colours have it.
        const uint32_t above = coverage * color.channel[alpha] / 255;
        uint8_t& sum = row[x - area.x0];
        const uint32_t below = sum * (FineColor::full - above) / 255;
        sum = static_cast<uint8_t>((above + below + 128) >> 8);
      }
    }
  }
}

}  // namespace

PixelBounds CGContext::visible_bounds() const {
  const GraphicsState& s = state();
  const PixelBounds clipped = intersection(s.clip.bounds, target().pixels.bounds);
  if (!s.has_shadow)
    return clipped;
  const PixelBounds landing =
      intersection(s.shadow.landing.bounds, target().pixels.bounds).grown(reach_of(s.shadow) + 1);
  const PixelBounds casting =
      intersection(s.shadow.casting.bounds, moved(landing, -s.shadow.dx, -s.shadow.dy));
  const PixelBounds both = union_of(clipped, casting);
  // Where the shadow comes from far outside, what holds both would be mostly void: the shadow goes.
  constexpr int max_extent = 8192;
  return both.width() <= max_extent && both.height() <= max_extent ? both : clipped;
}

Coverage CGContext::soft_shadow(std::span<const Part> parts) {
  const ShadowState& shadow = state().shadow;
  PixelBounds extents;
  for (const Part& part : parts)
    extents = union_of(extents, intersection(part.shape.bounds, shadow.casting.bounds));
  const int reach = reach_of(shadow);
  const PixelBounds landing = intersection(shadow.landing.bounds, target().pixels.bounds);
  const PixelBounds visible = intersection(moved(extents, shadow.dx, shadow.dy).grown(reach), landing);
  if (extents.empty() || visible.empty())
    return box_coverage({});
  const double dx = std::floor(shadow.dx);
  const double dy = std::floor(shadow.dy);
  const Blur blur{shadow.blur, shadow.dx - dx, shadow.dy - dy};
  // A shading fills all that can be seen: what casts it is the clip.
  const Part& first = parts.front();
  const bool fills_clip =
      !first.shape.rows && intersection(first.shape.bounds, visible_bounds()) == visible_bounds();
  const Coverage cast = fills_clip ? shadow.casting : intersection(first.shape, shadow.casting);
  constexpr double shadow_tag = 8;
  key_ = {shadow_tag,
          shadow.blur,
          shadow.dx,
          shadow.dy,
          static_cast<double>(cast.rows ? cast.rows->serial() : 0),
          static_cast<double>(cast.x),
          static_cast<double>(cast.y),
          static_cast<double>(cast.bounds.x0),
          static_cast<double>(cast.bounds.y0),
          static_cast<double>(cast.bounds.x1),
          static_cast<double>(cast.bounds.y1)};
  const bool may_be_kept = parts.size() == 1 && first.source.add_alpha_to(key_);
  if (const Coverage* const known = may_be_kept ? coverage_.find(key_) : nullptr)
    return *known;
  const bool is_kept = may_be_kept && cast.bounds == extents &&
                       int64_t{extents.width()} * extents.height() <= most_cast_pixels;
  // What lies further from the visible part than blur and rounding reach cannot be seen in it.
  const PixelBounds area =
      is_kept ? extents : intersection(extents, moved(visible.grown(reach + 1), -shadow.dx, -shadow.dy));
  std::vector<uint8_t> bytes(static_cast<size_t>(area.width()) * static_cast<size_t>(area.height()));
  for (const Part& part : parts)
    add_part(bytes.data(), area, part, shadow.casting);
  Coverage soft = moved(byte_coverage(area, bytes.data()), static_cast<int>(dx), static_cast<int>(dy));
  if (!blur.is_nothing())
    soft = blurred(soft, is_kept ? moved(extents, shadow.dx, shadow.dy).grown(reach) : visible, blur);
  if (is_kept)
    coverage_.keep(key_, soft);
  return soft;
}

void CGContext::cast_shadow(std::span<const Part> parts) {
  const ShadowState& shadow = state().shadow;
  const Coverage soft = soft_shadow(parts);
  const PixelBounds visible = intersection(soft.bounds, shadow.landing.bounds);
  if (visible.empty())
    return;
  PlainSource color(fine_color(shadow.color, 1));
  paint(pixels(), soft, shadow.landing, color);
  target().painted = union_of(target().painted, intersection(visible, target().pixels.bounds));
}

}  // namespace cocoa
