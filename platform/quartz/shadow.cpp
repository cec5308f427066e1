#include <algorithm>
#include <cmath>

#include "quartz/private/blur.h"
#include "quartz/private/context.h"

namespace cocoa {

namespace {

int reach_of(const ShadowState& shadow) {
  return static_cast<int>(std::ceil(shadow.blur));
}

PixelBounds moved_by(PixelBounds b, int dx, int dy) {
  return {b.x0 + dx, b.y0 + dy, b.x1 + dx, b.y1 + dy};
}

/// The alpha of an object, of 255, on its way to where the shadow falls.
class CastShape {
 public:
  /// Empty; objects come to lie in `area` when they are moved by whole pixels.
  CastShape(PixelBounds area, int dx, int dy)
      : area_(area),
        dx_(dx),
        dy_(dy),
        bytes_(static_cast<size_t>(area.width()) * static_cast<size_t>(area.height())) {}

  /// Lays the part, as far as the clip leaves it, over what is there.
  void add(const Part& part, const Coverage& clip) {
    const Coverage shape = intersection(part.shape, clip);
    const PixelBounds from = intersection(shape.bounds, moved_by(area_, -dx_, -dy_));
    if (from.empty())
      return;
    for (int y = from.y0; y < from.y1; ++y) {
      uint8_t* row = bytes_.data() + static_cast<ptrdiff_t>(y + dy_ - area_.y0) * area_.width() +
                     (from.x0 + dx_ - area_.x0);
      if (!shape.bytes) {
        add_row(row, part.source.row(y, from.x0, from.x1), nullptr, from.width());
        continue;
      }
      const uint8_t* const coverage = shape.at(from.x0, y);
      for_covered(
          coverage, static_cast<size_t>(from.width()), [&](const uint8_t* first, const uint8_t* last) {
            const auto begin = static_cast<int>(first - coverage);
            const auto end = static_cast<int>(last - coverage);
            add_row(row + begin, part.source.row(y, from.x0 + begin, from.x0 + end), first, end - begin);
          });
    }
  }

  std::vector<uint8_t>& bytes() { return bytes_; }

 private:
  static void add_row(uint8_t* row, const Colors& colors, const uint8_t* coverage, int width) {
    constexpr uint32_t alpha = 3;
    if (colors.is_one && colors.first->is_opaque() && !coverage) {
      std::fill_n(row, width, uint8_t{255});
      return;
    }
    for (int x = 0; x < width; ++x) {
      if (!colors.is_one && colors.first[x].is_nothing())
        continue;
      const uint32_t covered = coverage ? coverage[x] : 255;
      // In 65280ths, as the colours have it.
      const uint32_t above = covered * colors.first[colors.is_one ? 0 : x].channel[alpha] / 255;
      if (above == 0)
        continue;
      const uint32_t below = row[x] * (FineColor::full - above) / 255;
      row[x] = static_cast<uint8_t>((above + below + 128) >> 8);
    }
  }

  PixelBounds area_;
  int dx_;
  int dy_;
  std::vector<uint8_t> bytes_;
};

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

void CGContext::cast_shadow(std::span<const Part> parts) {
  const ShadowState& shadow = state().shadow;
  PixelBounds extents;
  for (const Part& part : parts)
    extents = union_of(extents, intersection(part.shape.bounds, shadow.casting.bounds));
  const int reach = reach_of(shadow);
  const PixelBounds landing = intersection(shadow.landing.bounds, target().pixels.bounds);
  const PixelBounds cast = moved(extents, shadow.dx, shadow.dy).grown(reach);
  const PixelBounds visible = intersection(cast, landing);
  if (extents.empty() || visible.empty())
    return;
  // What lies further from the visible part than blur and rounding reach cannot be seen in it.
  const PixelBounds area = intersection(cast, visible.grown(reach + 1));
  const double dx = std::floor(shadow.dx);
  const double dy = std::floor(shadow.dy);
  CastShape shape(area, static_cast<int>(dx), static_cast<int>(dy));
  for (const Part& part : parts)
    shape.add(part, shadow.casting);
  const Blur blur{shadow.blur, shadow.dx - dx, shadow.dy - dy};
  const Coverage soft = blur.is_nothing()
                            ? byte_coverage(area, std::move(shape.bytes()))
                            : byte_coverage(visible, blurred(shape.bytes(), area, visible, blur));
  PlainSource color(fine_color(shadow.color, 1));
  paint(pixels(), soft, shadow.landing, color);
  target().painted = union_of(target().painted, visible);
}

}  // namespace cocoa
