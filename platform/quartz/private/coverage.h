#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "quartz/private/pixels.h"
#include "quartz/private/polygon.h"
#include "quartz/private/rasterizer.h"

/// How much of each pixel a shape, or a clip, covers.

namespace cocoa {

/// Shapes are all of a box of pixels, or bytes that say how much of each. The bytes are shared and never
/// change.
struct Coverage {
  using Bytes = std::shared_ptr<const std::vector<uint8_t>>;

  PixelBounds bounds;  ///< nothing outside of it is covered
  Bytes bytes;         ///< of the pixels in `stored`, row by row; null when all of the bounds are covered
  PixelBounds stored;  ///< holds the bounds

  /// The byte of a pixel.
  const uint8_t* at(int x, int y) const {
    return bytes->data() + static_cast<ptrdiff_t>(y - stored.y0) * stored.width() + (x - stored.x0);
  }
};

/// All of a box.
inline Coverage box_coverage(PixelBounds bounds) {
  return {bounds, nullptr, {}};
}
inline Coverage byte_coverage(PixelBounds bounds, std::vector<uint8_t> bytes) {
  return {bounds, std::make_shared<const std::vector<uint8_t>>(std::move(bytes)), bounds};
}

/// What both cover.
Coverage intersection(const Coverage& a, const Coverage& b);

/// Multiplies coverage, of 255, to the nearest.
void multiply(uint8_t* coverage, const uint8_t* by, size_t count);

/// The first byte that is not 0, or `last`.
const uint8_t* first_covered(const uint8_t* coverage, const uint8_t* last);

/// Calls `use(first, last)` with each part of the coverage around what is covered, in turn. Long gaps lie
/// between parts.
template <typename Use>
void for_covered(const uint8_t* coverage, size_t count, const Use& use) {
  const uint8_t* const end = coverage + count;
  for (const uint8_t* first = first_covered(coverage, end); first < end;) {
    const uint8_t* last = first;
    uint64_t word = 1;
    for (; word != 0 && end - last >= ptrdiff_t{sizeof word}; last += sizeof word)
      std::memcpy(&word, last, sizeof word);
    const uint8_t* const next = word != 0 ? end : first_covered(last, end);
    if (word != 0)
      last = end;
    while (last[-1] == 0)
      --last;
    use(first, last);
    first = next;
  }
}

/// Coverage of shapes that may come again, those used last, wherever they come in whole pixels.
class CoverageCache {
 public:
  /// What the polygon covers, at least of `needed`. Rough edges cover a pixel wholly or not at all.
  Coverage find(Polygon& polygon, FillRule rule, bool smooth, PixelBounds needed);

  /// Of all shapes and their coverage.
  static constexpr size_t most_bytes = 1 << 19;

 private:
  struct Entry {
    uint64_t hash;
    Polygon shape;  ///< from the pixel of its upper left corner
    FillRule rule;
    bool smooth;
    Coverage coverage;
    uint64_t last_use;
    size_t bytes() const;
  };
  Coverage make(const Polygon& polygon, FillRule rule, bool smooth, PixelBounds area);
  void make_room(size_t bytes);

  Rasterizer rasterizer_;
  std::vector<Entry> entries_;
  size_t bytes_ = 0;
  uint64_t uses_ = 0;
};

}  // namespace cocoa
